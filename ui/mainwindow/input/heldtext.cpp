#include "ui/mainwindow/input/heldtext.h"

#include <QAbstractTextDocumentLayout>
#include <QFontMetricsF>
#include <QPainter>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextLayout>

namespace {

constexpr int objectType = QTextFormat::UserObject + 1;
constexpr int heldProperty = QTextFormat::UserProperty + 1;
constexpr QColor noteColour(117, 117, 117);

QString note(const QTextFormat &format)
{
    return HeldText::tr("…（其余 %1 字不显示，将一并发送）")
        .arg(format.stringProperty(heldProperty).size());
}

/// What the note's letters need below the line that they stand on. Qt gives an object none of it,
/// so where the note is alone on its line it is drawn higher, within the height of the object.
qreal roomBelow(const QTextDocument &document, int position, const QFontMetricsF &metrics)
{
    const QTextBlock block = document.findBlock(position);
    const QTextLine line = block.layout()->lineForTextPosition(position - block.position());
    return line.isValid() && line.descent() > 0 ? 0 : metrics.descent();
}

bool holdsText(const QTextFormat &format)
{
    return format.objectType() == objectType;
}

/// What \a fragment says from \a begin to \a end, which lie inside it. Only the object stands for
/// the held text: Qt gives its format to a text that is set later, too.
QString fragmentText(const QTextFragment &fragment, int begin, int end)
{
    QString text = fragment.text().mid(begin - fragment.position(), end - begin);
    if (holdsText(fragment.charFormat())) {
        text.replace(QChar::ObjectReplacementCharacter,
                     fragment.charFormat().stringProperty(heldProperty));
    }
    return text;
}

QString blockText(const QTextBlock &block, int begin, int end)
{
    QString text;
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        const int from = qMax(begin, fragment.position());
        const int to = qMin(end, fragment.position() + fragment.length());
        if (from < to) {
            text += fragmentText(fragment, from, to);
        }
    }
    return text;
}

/// \a text with the line ends that Qt's own plain text has.
QString plain(QString text)
{
    for (QChar &character : text) {
        if (character == QChar::LineSeparator) {
            character = QLatin1Char('\n');
        } else if (character == QChar::Nbsp) {
            character = QLatin1Char(' ');
        }
    }
    return text;
}

} // namespace

HeldText::HeldText(QTextDocument *document)
    : QObject(document)
{
    document->documentLayout()->registerHandler(objectType, this);
}

void HeldText::insert(QTextCursor &cursor, const QString &text)
{
    const QTextCharFormat before = cursor.charFormat();
    QTextCharFormat format = before;
    format.setObjectType(objectType);
    format.setProperty(heldProperty, text);
    cursor.insertText(QString(QChar::ObjectReplacementCharacter), format);
    cursor.setCharFormat(before);
}

QSizeF HeldText::intrinsicSize(QTextDocument *document, int position, const QTextFormat &format)
{
    Q_UNUSED(position)
    const QFontMetricsF metrics(document->defaultFont());
    return {metrics.horizontalAdvance(note(format)), metrics.height()};
}

void HeldText::drawObject(QPainter *painter, const QRectF &place, QTextDocument *document,
                          int position, const QTextFormat &format)
{
    const QFontMetricsF metrics(document->defaultFont());
    const QPointF start = place.bottomLeft() - QPointF(0, roomBelow(*document, position, metrics));
    painter->setFont(document->defaultFont());
    painter->setPen(noteColour);
    painter->drawText(start, note(format));
}

QString wholeText(const QTextDocument &document)
{
    const QString shown = document.toPlainText();
    return shown.contains(QChar::ObjectReplacementCharacter)
             ? wholeText(document, 0, document.characterCount())
             : shown;
}

QString wholeText(const QTextDocument &document, int begin, int end)
{
    QString text;
    for (QTextBlock block = document.findBlock(begin); block.isValid() && block.position() <= end;
         block = block.next()) {
        if (block.position() > begin) {
            text += QLatin1Char('\n');
        }
        text += plain(blockText(block, begin, end));
    }
    return text;
}
