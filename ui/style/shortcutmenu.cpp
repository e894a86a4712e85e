#include "ui/style/shortcutmenu.h"

#include <QLabel>
#include <QPushButton>
#include <QWidgetAction>

namespace {

const QLatin1String
    disabledHint("QLabel{background-color:transparent;color:#d0d2d9;font:12px;border:none;}");
const QLatin1String
    enabledHint("QLabel{background-color:transparent;color: #757575;font:12px;border:none;}");

QString buttonStyle(const ShortcutMenu::Row &row, bool enabled)
{
    QString normal
        = QStringLiteral("QPushButton{text-align:left;padding-left:12px;margin-top:%1px;margin-"
                         "bottom:%2px;background-color:transparent;color: %3;font:14px;border:none;"
                         "}")
              .arg(row.topMargin)
              .arg(row.bottomMargin)
              .arg(enabled ? QLatin1String("#1d2633") : QLatin1String("#d0d2d9"));
    if (!enabled) {
        return normal;
    }
    return normal
         + QLatin1String("QPushButton:hover{background-color: #f4f5f8;color: #1d2633;font:14px;"
                         "border:none;}QPushButton:pressed{background-color: #f4f5f8;color: "
                         "#1d2633;font:14px;border:none;}");
}

} // namespace

ShortcutMenu::ShortcutMenu(const QSize &size, QWidget *parent)
    : HouseMenu(parent)
{
    setFixedSize(size);
}

QAction *ShortcutMenu::addRow(const Row &row, bool enabled)
{
    auto *button = new QPushButton(row.text, this);
    button->setFlat(true);
    button->setFocusPolicy(Qt::NoFocus);
    button->setCursor(Qt::PointingHandCursor);
    button->setFixedSize(row.size);
    button->setStyleSheet(buttonStyle(row, enabled));
    auto *hint = new QLabel(row.shortcut, button);
    hint->setGeometry(row.shortcutPlace);
    hint->setStyleSheet(enabled ? enabledHint : disabledHint);
    auto *action = new QWidgetAction(this);
    action->setText(row.text); // for screen readers
    action->setDefaultWidget(button);
    action->setEnabled(enabled);
    addAction(action);
    connect(button, &QPushButton::clicked, action, &QAction::trigger);
    // The arrow keys choose a row without giving its button the focus.
    connect(this, &QMenu::hovered, button,
            [button, action](const QAction *chosen) { button->setDown(chosen == action); });
    return action;
}
