#include "ui/answer/bubble/foldbar.h"

#include "ui/style/styles.h"

#include <QLabel>
#include <QPushButton>

namespace {

constexpr int lineLeft = 11;
constexpr int lineWidth = 446;
constexpr QRect buttonPlace(235, 22, 16, 9);

} // namespace

FoldBar::FoldBar(QLatin1String image, const QString &name, const QVector<int> &lineTops,
                 QWidget *bubble)
    : QWidget(bubble)
    , m_button(new QPushButton(this))
{
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(QStringLiteral("QWidget{background-color:rgb(244, 245, 248);border:none;}"));
    for (const int top : lineTops) {
        auto *line = new QLabel(this);
        line->setStyleSheet(styles::separator);
        line->setGeometry(lineLeft, top, lineWidth, 1);
    }
    m_button->setStyleSheet(
        QStringLiteral("QPushButton{border-image:url(:/Images/%1);border:none;}").arg(image));
    m_button->setGeometry(buttonPlace);
    m_button->setCursor(Qt::PointingHandCursor);
    m_button->setAccessibleName(name);
    m_button->setToolTip(name);
    connect(m_button, &QPushButton::clicked, this, &FoldBar::clicked);
    hide();
}

void FoldBar::placeAt(const QRect &place)
{
    setGeometry(place);
    setVisible(!place.isNull());
}

bool FoldBar::holdsFocus() const
{
    return window()->focusWidget() == m_button;
}

QWidget *FoldBar::button() const
{
    return m_button;
}

void FoldBar::takeFocus()
{
    m_button->setFocus();
}
