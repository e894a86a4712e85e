#include "ui/answer/conversationcopier.h"

#include "ui/answer/bubble/answeritem.h"
#include "ui/answer/content/answercontent.h"
#include "ui/answer/copymenu.h"
#include "ui/answer/picture/conversationpictures.h"

#include <QApplication>
#include <QClipboard>
#include <QCursor>
#include <QLabel>
#include <QTextEdit>

ConversationCopier::ConversationCopier(ConversationPictures &pictures, QWidget *region)
    : QObject(region)
    , m_pictures(pictures)
    , m_region(region)
{
}

void ConversationCopier::addEntry(const ConversationItem *entry, MenuKind kind)
{
    const int num = m_texts[kind].size();
    m_texts[kind].append({entry, 0});
    connect(entry, &ConversationItem::copyMenuRequested, this,
            [this, num, kind] { emit menuRequested(num, kind); });
}

void ConversationCopier::addAnswer(const AnswerItem *answer)
{
    const int title = m_texts[Title].size();
    const int firstParagraph = m_texts[Paragraph].size();
    m_texts[Title].append({answer, 0});
    for (int number = 1; number <= answer->content()->paragraphs().size(); ++number) {
        m_texts[Paragraph].append({answer, number});
    }
    connect(answer, &ConversationItem::copyMenuRequested, this,
            [this, title, firstParagraph](int number) {
                number == 0 ? emit menuRequested(title, Title)
                            : emit menuRequested(firstParagraph + number - 1, Paragraph);
            });
    connect(answer, &AnswerItem::pictureMenuRequested, this,
            [this](int num) { emit menuRequested(num, Picture); });
}

QString ConversationCopier::selectedText(int num, int type) const
{
    if (type < Paragraph || type > Message || num < 0 || num >= m_texts[type].size()) {
        return {};
    }
    const NumberedText &text = m_texts[type].at(num);
    const QLabel *label = text.entry->text(text.number); // none while nothing is selected far away
    return label == nullptr ? QString() : label->selectedText();
}

void ConversationCopier::show(int num, int type)
{
    const bool enabled = type == Picture || !selectedText(num, type).isEmpty();
    rightHitMenu = new CopyMenu(enabled, m_region);
    connect(rightHitMenu, &CopyMenu::copyRequested, this,
            [this, num, type] { emit copyRequested(num, type); });
    rightHitMenu->move(QCursor::pos());
    rightHitMenu->show();
}

void ConversationCopier::copy(int num, int type)
{
    if (type == Picture) {
        m_pictures.copy(num);
    } else {
        // Line and paragraph separators of the label become line ends.
        QTextEdit text(m_region);
        text.setPlainText(selectedText(num, type));
        QApplication::clipboard()->setText(text.toPlainText());
    }
    if (rightHitMenu != nullptr) {
        rightHitMenu->close(); // which deletes it
    }
}
