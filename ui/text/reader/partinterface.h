#pragma once

#include <QAccessibleWidget>

/// How a widget inside a ReadGroup meets a screen reader: as a part of the group, wherever it lies
/// in it. Owned by Qt's cache of interfaces.
class PartInterface : public QAccessibleWidget
{
public:
    PartInterface(QWidget *widget, QAccessible::Role role);

    [[nodiscard]] QAccessibleInterface *parent() const override;

    /// The widget's accessible name, or else the text that it shows, without blanks around it.
    [[nodiscard]] QString text(QAccessible::Text kind) const override;

    // A button is pressed; other parts do what every widget does.
    [[nodiscard]] QStringList actionNames() const override;
    void doAction(const QString &name) override;

private:
    [[nodiscard]] QString name() const;
};
