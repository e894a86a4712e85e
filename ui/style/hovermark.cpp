#include "ui/style/hovermark.h"

#include <QEvent>
#include <QPushButton>

namespace {

// On white it is the hover colour of the menus. All of it is said, or the row's style would give
// the tint a background.
const QLatin1String tintStyle("QWidget{background-color:rgba(5, 34, 91, 12);border:none;"
                              "border-radius:6px;}");

QWidget *makeTint(QWidget *row)
{
    auto *tint = new QWidget(row);
    tint->setGeometry(row->rect());
    tint->setAttribute(Qt::WA_TransparentForMouseEvents);
    tint->setStyleSheet(tintStyle);
    tint->show();
    return tint;
}

} // namespace

HoverMark::HoverMark(QPushButton *button)
    : QObject(button)
    , m_button(button)
{
    button->installEventFilter(this);
}

HoverMark::~HoverMark()
{
    removeTint();
}

void HoverMark::removeTint()
{
    if (!m_tint.isNull()) {
        m_tint->hide();
        m_tint->deleteLater(); // the row may be hiding its children right now
        m_tint.clear();
    }
}

bool HoverMark::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Enter && m_tint.isNull()) {
        m_tint = makeTint(m_button->parentWidget());
    } else if (event->type() == QEvent::Leave || event->type() == QEvent::Hide) {
        removeTint();
    }
    return QObject::eventFilter(watched, event);
}
