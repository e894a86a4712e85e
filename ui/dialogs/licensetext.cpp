#include "ui/dialogs/licensetext.h"

#include "ui/text/linkaddress.h"

#include <QHelpEvent>
#include <QImage>
#include <QMouseEvent>
#include <QTextDocument>
#include <QToolTip>
#include <QUrl>
#include <QVariant>

LicenseText::LicenseText(QWidget *parent)
    : QTextEdit(parent)
{
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setAcceptDrops(false);
    setTabChangesFocus(true);
    setFrameShape(QFrame::NoFrame);
}

QVariant LicenseText::loadResource(int type, const QUrl &name)
{
    Q_UNUSED(name)
    if (type != QTextDocument::ImageResource) {
        return {};
    }
    // QTextDocument looks for a file of that name itself when it gets no value at all.
    QImage nothing(1, 1, QImage::Format_ARGB32);
    nothing.fill(Qt::transparent);
    return nothing;
}

bool LicenseText::viewportEvent(QEvent *event)
{
    if (event->type() != QEvent::ToolTip) {
        return QTextEdit::viewportEvent(event);
    }
    const auto *help = static_cast<QHelpEvent *>(event);
    QToolTip::showText(help->globalPos(), linkToolTip(anchorAt(help->pos())), this);
    return true;
}

void LicenseText::mousePressEvent(QMouseEvent *event)
{
    m_pressedLink = event->button() == Qt::LeftButton ? anchorAt(event->pos()) : QString();
    QTextEdit::mousePressEvent(event);
}

void LicenseText::mouseReleaseEvent(QMouseEvent *event)
{
    QTextEdit::mouseReleaseEvent(event);
    const bool clicked = !m_pressedLink.isEmpty() && !textCursor().hasSelection()
                      && anchorAt(event->pos()) == m_pressedLink;
    if (clicked) {
        refuseLink(m_pressedLink);
    }
    m_pressedLink.clear();
}
