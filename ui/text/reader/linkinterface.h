#pragma once

#include <QAccessible>
#include <QPointer>

class QLabel;

/// A link in a text: what it says, where it leads, and where in the text it begins.
struct ReadLink
{
    QString text;
    QString address;
    int position;

    [[nodiscard]] bool operator==(const ReadLink &other) const
    {
        return text == other.text && address == other.address && position == other.position;
    }
};

/// How a link in a label meets a screen reader: what it does when it is pressed is what a click on
/// it does. Owned by Qt's cache of interfaces.
class LinkInterface final : public QAccessibleInterface, public QAccessibleActionInterface
{
    Q_DISABLE_COPY(LinkInterface)

public:
    LinkInterface(QLabel *label, const ReadLink &link);

    [[nodiscard]] const ReadLink &link() const { return m_link; }

    [[nodiscard]] bool isValid() const override { return !m_label.isNull(); }
    [[nodiscard]] QObject *object() const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface *childAt(int x, int y) const override;
    [[nodiscard]] QAccessibleInterface *parent() const override;
    [[nodiscard]] QAccessibleInterface *child(int index) const override;
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override;

    /// What the link says is its name, where it leads its value.
    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text kind, const QString &text) override;

    /// The line that it begins on, in px of the screen.
    [[nodiscard]] QRect rect() const override;
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::Link; }
    [[nodiscard]] QAccessible::State state() const override;
    [[nodiscard]] void *interface_cast(QAccessible::InterfaceType type) override;

    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString &name) override;
    [[nodiscard]] QStringList keyBindingsForAction(const QString &name) const override;

private:
    QPointer<QLabel> m_label;
    ReadLink m_link;
};
