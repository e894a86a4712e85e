#pragma once

#include <QProxyStyle>

/// The application's style without the focus frame around links in rich text, for the labels of
/// answer bubbles.
class MyProxyStyle : public QProxyStyle
{
    Q_OBJECT
    Q_DISABLE_COPY(MyProxyStyle)

public:
    /// A style on top of the application's own; \a parent owns it, since QWidget::setStyle() takes
    /// no ownership.
    explicit MyProxyStyle(QObject *parent);

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returnData) const override;
};
