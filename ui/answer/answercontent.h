#pragma once

#include <QListWidget>
#include <QVector>

class QLabel;

/// The rows of an answer: a list that never scrolls, as high as its rows together.
class AnswerContent : public QListWidget
{
public:
    /// Builds the rows of \a reply, the rich text of the service, inside \a bubble.
    AnswerContent(const QString &reply, QWidget *bubble);

    /// The height of all rows in px.
    [[nodiscard]] int contentHeight() const { return m_contentHeight; }

    /// The labels of the paragraphs, in order.
    [[nodiscard]] const QVector<QLabel *> &paragraphs() const { return m_paragraphs; }

private:
    void addParagraph(const QString &source);
    void addRow(QWidget *row);

    QVector<QLabel *> m_paragraphs;
    int m_contentHeight = 0;
};
