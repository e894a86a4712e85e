#include "ui/text/linklabel.h"

#include "ui/text/linkaddress.h"
#include "ui/text/reader/textinterface.h"

#include <QAccessible>
#include <QEvent>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>
#include <QToolTip>

namespace {

/// What QLabel lets its text control do, which opens whatever a link says.
constexpr const char *opensLinks = "openExternalLinks";

bool mayActivate(QEvent::Type type)
{
    return type == QEvent::MouseButtonPress || type == QEvent::MouseButtonRelease
        || type == QEvent::MouseButtonDblClick || type == QEvent::KeyPress;
}

} // namespace

LinkLabel::LinkLabel(QWidget *parent)
    : QLabel(parent)
{
    connect(this, &QLabel::linkActivated, this, &LinkLabel::activate);
    connect(this, &QLabel::linkHovered, this, &LinkLabel::showHovered);
}

bool LinkLabel::event(QEvent *event)
{
    // Every new text may bring a new text control, and none acts but in an event of the label.
    if (mayActivate(event->type())) {
        takeLinks();
    }
    return QLabel::event(event);
}

bool LinkLabel::focusNextPrevChild(bool next)
{
    const bool stayed = QLabel::focusNextPrevChild(next);
    if (stayed) {
        showFocused();
        announceFocused();
    } else {
        QToolTip::hideText();
    }
    return stayed;
}

/// Lets the text control hand links over instead of opening them. The label's own property stays.
void LinkLabel::takeLinks()
{
    for (QObject *child : children()) {
        const QVariant opens = child->property(opensLinks);
        if (opens.toBool()) {
            child->setProperty(opensLinks, false);
        }
    }
}

void LinkLabel::activate(const QString &address)
{
    if (openExternalLinks()) {
        followLink(address);
    } else {
        refuseLink(address);
    }
}

void LinkLabel::showHovered(const QString &address)
{
    setToolTip(linkToolTip(address));
    if (address.isEmpty()) {
        QToolTip::hideText();
    }
}

void LinkLabel::showFocused()
{
    const QRect place = placeOfFocused();
    QToolTip::showText(mapToGlobal(place.bottomLeft()), linkToolTip(focusedAddress()), this);
}

/// Qt tells a screen reader of the label that gets the focus, not of the links in it.
void LinkLabel::announceFocused()
{
    const auto *text = dynamic_cast<TextInterface *>(QAccessible::queryAccessibleInterface(this));
    const int link = text == nullptr || !hasSelectedText() ? -1 : text->linkAt(selectionStart());
    if (link >= 0) {
        QAccessibleEvent focus(this, QAccessible::Focus);
        focus.setChild(link);
        QAccessible::updateAccessibility(&focus);
    }
}

QString LinkLabel::focusedAddress() const
{
    auto *document = findChild<QTextDocument *>();
    if (document == nullptr || !hasSelectedText()) {
        return {};
    }
    QTextCursor cursor(document);
    cursor.setPosition(selectionStart() + 1); // a format is that of the character before
    return cursor.charFormat().anchorHref();
}

/// The line that holds the focused link, in px of the label.
QRect LinkLabel::placeOfFocused() const
{
    auto *document = findChild<QTextDocument *>();
    if (document == nullptr || !hasSelectedText()) {
        return rect();
    }
    const QTextBlock block = document->findBlock(selectionStart());
    const QTextLayout *layout = block.layout();
    const int position = selectionStart() - block.position();
    const QTextLine line = layout->lineForTextPosition(position);
    const QPointF place = layout->position() + QPointF(line.cursorToX(position), line.y());
    return QRectF(place, QSizeF(line.naturalTextWidth(), line.height())).toAlignedRect();
}
