#include "ui/text/reader/textinterface.h"

#include "ui/text/reader/linkinterface.h"

#include <QLabel>
#include <QTextBlock>
#include <QTextDocument>

namespace {

/// The links in \a document, in order. One that changes its look within is one all the same.
QVector<ReadLink> linksIn(const QTextDocument &document)
{
    QVector<ReadLink> links;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        bool goesOn = false;
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            const QString address = fragment.charFormat().anchorHref();
            if (goesOn && !address.isEmpty() && links.last().address == address) {
                links.last().text += fragment.text();
            } else if (!address.isEmpty()) {
                links.append({fragment.text(), address, fragment.position()});
            }
            goesOn = !address.isEmpty();
        }
    }
    return links;
}

const ReadLink &linkOf(QAccessible::Id id)
{
    return static_cast<LinkInterface *>(QAccessible::accessibleInterface(id))->link();
}

} // namespace

TextInterface::TextInterface(QLabel *label)
    : PartInterface(label, QAccessible::StaticText)
{
}

TextInterface::~TextInterface()
{
    dropLinks();
}

void TextInterface::dropLinks() const
{
    for (const QAccessible::Id link : qAsConst(m_links)) {
        QAccessible::deleteAccessibleInterface(link);
    }
    m_links.clear();
}

/// Readers may ask before the label has its text, so what was read is read again when it changes.
const QVector<QAccessible::Id> &TextInterface::links() const
{
    auto *label = qobject_cast<QLabel *>(widget());
    const auto *document = label == nullptr ? nullptr : label->findChild<QTextDocument *>();
    if (document == nullptr) {
        dropLinks();
        return m_links;
    }
    if (label->text() != m_text || document->revision() != m_revision) {
        m_text = label->text();
        m_revision = document->revision();
        takeLinks(label, linksIn(*document));
    }
    return m_links;
}

/// The same links stay: a reader may still know them.
void TextInterface::takeLinks(QLabel *label, const QVector<ReadLink> &found) const
{
    QVector<ReadLink> known;
    for (const QAccessible::Id id : qAsConst(m_links)) {
        known.append(linkOf(id));
    }
    if (known == found) {
        return;
    }
    dropLinks();
    for (const ReadLink &link : found) {
        m_links.append(QAccessible::registerAccessibleInterface(new LinkInterface(label, link)));
    }
}

int TextInterface::childCount() const
{
    return links().size();
}

QAccessibleInterface *TextInterface::child(int index) const
{
    return index < 0 || index >= links().size() ? nullptr
                                                : QAccessible::accessibleInterface(links()[index]);
}

int TextInterface::indexOfChild(const QAccessibleInterface *child) const
{
    for (int index = 0; index < links().size(); ++index) {
        if (QAccessible::accessibleInterface(links()[index]) == child) {
            return index;
        }
    }
    return -1;
}

int TextInterface::linkAt(int position) const
{
    const QVector<QAccessible::Id> &found = links();
    for (int index = 0; index < found.size(); ++index) {
        if (linkOf(found[index]).position == position) {
            return index;
        }
    }
    return -1;
}
