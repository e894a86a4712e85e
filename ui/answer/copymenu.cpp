#include "ui/answer/copymenu.h"

#include <QCoreApplication>
#include <QLabel>
#include <QPushButton>
#include <QWidgetAction>

namespace {

constexpr QSize menuSize(137, 37);
constexpr QSize buttonSize(135, 37);
constexpr QRect hintPlace(88, 5, 38, 27);

constexpr QLatin1String enabledButton(
    "QPushButton{text-align:left;padding-left:12px;margin-top:4px;margin-bottom:6px;background-"
    "color:transparent;color: #1d2633;font:14px;border:none;}QPushButton:hover{background-color: "
    "#f4f5f8;color: #1d2633;font:14px;border:none;}QPushButton:pressed{background-color: #f4f5f8;"
    "color: #1d2633;font:14px;border:none;}");
constexpr QLatin1String disabledButton(
    "QPushButton{text-align:left;padding-left:12px;margin-top:4px;margin-bottom:6px;background-"
    "color:transparent;color: #d0d2d9;font:14px;border:none;}");
constexpr QLatin1String
    enabledHint("QLabel{background-color:transparent;color: #757575;font:12px;border:none;}");
constexpr QLatin1String
    disabledHint("QLabel{background-color:transparent;color:#d0d2d9;font:12px;border:none;}");

QString text(const char *source)
{
    return QCoreApplication::translate("QARegion", source);
}

} // namespace

CopyMenu::CopyMenu(bool enabled, QWidget *parent)
    : QMenu(parent)
{
    setFixedSize(menuSize);
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_DeleteOnClose);
    setStyleSheet(QStringLiteral("QMenu{background-color: #ffffff;border:1px solid rgba(5, 34, 91, "
                                 "0.2); border-radius: 6px;}"));
    auto *button = new QPushButton(text("复制"), this);
    button->setFocusPolicy(Qt::NoFocus);
    button->setCursor(Qt::PointingHandCursor);
    button->setFixedSize(buttonSize);
    button->setEnabled(enabled);
    button->setStyleSheet(enabled ? enabledButton : disabledButton);
    auto *hint = new QLabel(text("Ctrl+C"), button);
    hint->setGeometry(hintPlace);
    hint->setStyleSheet(enabled ? enabledHint : disabledHint);
    auto *action = new QWidgetAction(this);
    action->setDefaultWidget(button);
    addAction(action);
    connect(button, &QPushButton::clicked, this, &CopyMenu::copyRequested);
}
