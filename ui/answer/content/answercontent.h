#pragma once

#include "ui/answer/picture/inlinepicture.h"

#include <QListWidget>
#include <QVector>

class MarkupBudget;
class PictureRow;
class QLabel;

/// The rows of an answer: a list that never scrolls, as high as its rows together.
class AnswerContent : public QListWidget
{
public:
    /// The pixels of an answer that are decoded before it is shown. Pictures beyond them come when
    /// another thread has decoded them.
    static constexpr qint64 mostPixelsAtOnce = 32'000'000;

    /// Builds the rows of \a reply, the rich text of the service, inside \a bubble. The pictures in
    /// it are appended to \a pictures, those of the whole conversation, under \a title.
    AnswerContent(const QString &reply, const QString &title,
                  QVector<ConversationPicture> &pictures, QWidget *bubble);

    /// The height of all rows in px.
    [[nodiscard]] int contentHeight() const { return m_contentHeight; }

    /// The labels of the paragraphs, in order.
    [[nodiscard]] const QVector<QLabel *> &paragraphs() const { return m_paragraphs; }

    /// The rows of the pictures, in order.
    [[nodiscard]] const QVector<PictureRow *> &pictureRows() const { return m_pictureRows; }

    /// What a screen reader reads in row \a row: a text, or the button over a picture.
    [[nodiscard]] QWidget *readPart(int row) const;

private:
    void addPicture(const QString &source, const QString &title,
                    QVector<ConversationPicture> &pictures);
    void addParagraph(const QString &source, MarkupBudget &budget);
    QListWidgetItem *addRow(QWidget *row);

    QVector<QLabel *> m_paragraphs;
    QVector<PictureRow *> m_pictureRows;
    int m_contentHeight = 0;
    qint64 m_pixelsLeft = mostPixelsAtOnce; ///< that may still be decoded at once
};
