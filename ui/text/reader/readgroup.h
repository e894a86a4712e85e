#pragma once

#include <QAccessible>

class QWidget;

/// What a widget implements that tells a screen reader itself what is in it: its parts in reading
/// order, at whatever depth, in place of all its child widgets. GUI thread.
class ReadGroup
{
public:
    [[nodiscard]] virtual QAccessible::Role readRole() const = 0;
    [[nodiscard]] virtual QString readName() const = 0;

    /// How many parts there are now. Those that are made on demand are made for it.
    [[nodiscard]] virtual int partCount() = 0;

    /// Part \a number, from 0 to partCount() - 1.
    [[nodiscard]] virtual QWidget *part(int number) = 0;

protected:
    ReadGroup() = default;
    ReadGroup(const ReadGroup &) = default;
    ReadGroup &operator=(const ReadGroup &) = default;
    ~ReadGroup() = default;
};

/// For the constructor of a group whose base class may have told readers of itself: what Qt made
/// for them then knows nothing of the group, and is dropped.
void forgetEarlyInterface(QWidget *group);

/// The group that \a widget is read in; null when there is none.
[[nodiscard]] QWidget *groupAround(const QWidget *widget);
