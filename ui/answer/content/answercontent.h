#pragma once

#include <QListWidget>
#include <QVector>

class ConversationPictures;
class MarkupBudget;
class PictureRow;
class QLabel;

/// What a row of an answer is made from.
struct ContentRow
{
    QString paragraph; ///< rich text; empty for a picture
    int picture = -1;  ///< its number in the conversation; -1 for a paragraph
};

/// The rows of an answer: a list that never scrolls, as high as its rows together.
class AnswerContent : public QListWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(AnswerContent)

public:
    /// What decoding the pictures of an answer may cost before it is shown, in pixels. The others
    /// come when another thread has decoded them; large ones would let the window wait.
    static constexpr qint64 mostCostAtOnce = 500'000;

    /// Builds the rows of \a reply, the rich text of the service, inside \a bubble. The pictures in
    /// it are appended to \a pictures, those of the whole conversation, under \a title.
    AnswerContent(const QString &reply, const QString &title, ConversationPictures &pictures,
                  QWidget *bubble);

    /// Builds the rows \a rows of such an answer again. Its pictures are those in \a pictures.
    AnswerContent(const QVector<ContentRow> &rows, const QString &title,
                  ConversationPictures &pictures, QWidget *bubble);

    /// What the rows are made from, in order.
    [[nodiscard]] const QVector<ContentRow> &rows() const { return m_rows; }

    /// The height of all rows in px.
    [[nodiscard]] int contentHeight() const { return m_contentHeight; }

    /// The labels of the paragraphs, in order.
    [[nodiscard]] const QVector<QLabel *> &paragraphs() const { return m_paragraphs; }

    /// The rows of the pictures, in order.
    [[nodiscard]] const QVector<PictureRow *> &pictureRows() const { return m_pictureRows; }

    /// Whether the same would be seen if it was deleted and built again.
    [[nodiscard]] bool maySleep() const;

    /// What a screen reader reads in row \a row: a text, or the button over a picture.
    [[nodiscard]] QWidget *readPart(int row) const;

signals:
    /// A picture turned out to have another size than its header said, or to be none.
    void heightChanged();

private:
    AnswerContent(const QString &title, ConversationPictures &pictures, QWidget *bubble);
    [[nodiscard]] int addPicture(const QString &source, const QString &title);
    void addPictureRow(int number);
    void addParagraph(const QString &source, MarkupBudget &budget);
    QListWidgetItem *addRow(QWidget *row);
    void measureRows();

    ConversationPictures &m_pictures;
    QVector<ContentRow> m_rows;
    QVector<QLabel *> m_paragraphs;
    QVector<PictureRow *> m_pictureRows;
    int m_contentHeight = 0;
    qint64 m_costLeft = mostCostAtOnce; ///< of what may still be decoded at once
};
