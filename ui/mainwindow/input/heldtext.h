#pragma once

#include <QObject>
#include <QString>
#include <QTextObjectInterface>

class QTextCursor;
class QTextDocument;

/// A long text inside the input box of which the box shows a note alone: it is one object to the
/// cursor, is sent, copied and deleted as a whole, and costs no laying out, which takes minutes for
/// a megabyte without a blank.
class HeldText : public QObject, public QTextObjectInterface
{
    Q_OBJECT
    Q_DISABLE_COPY(HeldText)
    Q_INTERFACES(QTextObjectInterface)

public:
    /// Draws the notes of \a document, which owns it from now on.
    explicit HeldText(QTextDocument *document);

    /// Puts \a text in place of what is selected at \a cursor.
    static void insert(QTextCursor &cursor, const QString &text);

    QSizeF intrinsicSize(QTextDocument *document, int position, const QTextFormat &format) override;
    void drawObject(QPainter *painter, const QRectF &place, QTextDocument *document, int position,
                    const QTextFormat &format) override;
};

/// The text of \a document, or from \a begin to \a end of it, with what it holds; line ends are
/// "\n".
[[nodiscard]] QString wholeText(const QTextDocument &document);
[[nodiscard]] QString wholeText(const QTextDocument &document, int begin, int end);
