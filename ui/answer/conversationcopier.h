#pragma once

#include <QObject>
#include <QPointer>
#include <QVector>

class AnswerItem;
class ConversationItem;
class ConversationPictures;
class CopyMenu;
class QWidget;

/// Copies from the conversation: knows its texts, by kind and number, and its pictures, and shows
/// the menu that offers it. GUI thread.
class ConversationCopier : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(ConversationCopier)

public:
    /// What a copy menu belongs to, and the number by which its kind is known.
    enum MenuKind {
        Paragraph = 0,
        Picture = 1,
        Question = 2,
        Title = 3,
        Message = 4,
    };

    /// Copies pictures out of \a pictures, which must live as long as this. Menus belong to
    /// \a region.
    ConversationCopier(ConversationPictures &pictures, QWidget *region);

    /// Numbers the one text of \a entry among those of \a kind.
    void addEntry(const ConversationItem *entry, MenuKind kind);

    /// Numbers title and paragraphs of \a answer; its pictures have their numbers.
    void addAnswer(const AnswerItem *answer);

    /// The selected text of text \a num of the MenuKind \a type; empty for a picture, or when there
    /// is no such text.
    [[nodiscard]] QString selectedText(int num, int type) const;

    /// Shows the menu of text or picture \a num of the MenuKind \a type at the mouse, its item
    /// greyed when no text is selected.
    void show(int num, int type);

    /// Copies that text's selection, or that picture, to the clipboard and closes the menu.
    void copy(int num, int type);

signals:
    /// The menu of text or picture \a num of the MenuKind \a type is wanted.
    void menuRequested(int num, int type);

    /// The item of that menu was clicked.
    void copyRequested(int num, int type);

private:
    /// Text number \a number of an entry, which the list owns.
    struct NumberedText
    {
        const ConversationItem *entry;
        int number;
    };

    ConversationPictures &m_pictures;
    QWidget *m_region;
    QVector<NumberedText> m_texts[Message + 1]; ///< of each MenuKind; pictures have none
    QPointer<CopyMenu> rightHitMenu;            ///< the one that is open
};
