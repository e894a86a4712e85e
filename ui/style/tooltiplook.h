#pragma once

#include <QObject>

/// Gives every tool tip of the program the look of its menus, whatever styles the widgets have that
/// it belongs to. Qt makes tool tips by a class of its own, so this waits for them. GUI thread
/// only.
class ToolTipLook : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(ToolTipLook)

public:
    /// Works as long as it lives.
    explicit ToolTipLook(QObject *parent);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
