#pragma once

#include <QProxyStyle>

/// The application's style with a mark of its own for the focus: a thin blue line with rounded
/// corners, seen once the keyboard has moved the focus and until the mouse is pressed. GUI thread
/// only.
class FocusStyle : public QProxyStyle
{
    Q_OBJECT
    Q_DISABLE_COPY(FocusStyle)

public:
    FocusStyle();

    /// Makes it the application's, once.
    static void install();

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;

    /// As the style below, but without a shape for tool tips: they have one of ours.
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returnData) const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
