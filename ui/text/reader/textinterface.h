#pragma once

#include "ui/text/reader/partinterface.h"

#include <QVector>

class QLabel;
struct ReadLink;

/// How a text inside a ReadGroup meets a screen reader: with the links in it as children. Owned by
/// Qt's cache of interfaces.
class TextInterface final : public PartInterface
{
    Q_DISABLE_COPY(TextInterface)

public:
    explicit TextInterface(QLabel *label);
    ~TextInterface() override;

    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QAccessibleInterface *child(int index) const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override;

    /// The number of the link that begins at \a position of the label's text, or -1.
    [[nodiscard]] int linkAt(int position) const;

private:
    [[nodiscard]] const QVector<QAccessible::Id> &links() const;
    void takeLinks(QLabel *label, const QVector<ReadLink> &found) const;
    void dropLinks() const;

    mutable QVector<QAccessible::Id> m_links; ///< read on demand
    mutable QString m_text;                   ///< of the label, when they were read
    mutable int m_revision = -1;              ///< of its document then
};
