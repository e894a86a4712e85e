#pragma once

#include "ui/text/reader/partinterface.h"

class ReadGroup;

/// How a ReadGroup meets a screen reader. Owned by Qt's cache of interfaces.
class GroupInterface final : public PartInterface
{
public:
    /// \a widget is a ReadGroup.
    explicit GroupInterface(QWidget *widget);

    [[nodiscard]] QString text(QAccessible::Text kind) const override;
    [[nodiscard]] int childCount() const override;
    [[nodiscard]] QAccessibleInterface *child(int index) const override;
    [[nodiscard]] int indexOfChild(const QAccessibleInterface *child) const override;

private:
    [[nodiscard]] ReadGroup *group() const;
};
