#include "ui/answer/recommend/recommendpage.h"

#include "service/reply/listedquestion.h"
#include "ui/answer/recommend/recommendpaging.h"
#include "ui/style/focusmark.h"
#include "ui/style/hovermark.h"
#include "ui/style/styles.h"
#include "ui/text/textwrap.h"

#include <QCoreApplication>
#include <QLabel>
#include <QPushButton>
#include <QTextDocument>

#include <memory>

namespace {

constexpr QSize rowSize(440, 31);
constexpr QRect textPlace(0, 6, 440, 19);
constexpr int boxTextLimit = 380;
constexpr int answerTextLimit = 375;
constexpr int answerElidedWidth = 376;

QLatin1String rowTextStyle()
{
    return QLatin1String("QLabel{background-color:rgb(244, 245, 248);color:rgb(41,100,245);font:"
                         "14px Microsoft YaHei;text-align: left;border:none;}");
}

QString elided(const QString &text, RecommendPage::Elision elision, QLabel *measure)
{
    measure->ensurePolished();
    const QFontMetrics metrics = measure->fontMetrics();
    if (elision == RecommendPage::Elision::FirstOfBox) {
        return metrics.horizontalAdvance(text) > boxTextLimit
                 ? metrics.elidedText(text, Qt::ElideRight, boxTextLimit)
                 : text;
    }
    measure->setText(text);
    measure->adjustSize();
    return measure->width() - 1 > answerTextLimit
             ? metrics.elidedText(text, Qt::ElideRight, answerElidedWidth)
             : text;
}

/// \a text as a tool tip that shows it letter by letter, markup too.
QString asShown(const QString &text)
{
    return Qt::mightBeRichText(text)
             ? QLatin1String("<span>") + text.toHtmlEscaped() + QLatin1String("</span>")
             : text;
}

} // namespace

RecommendPage::RecommendPage(const QVector<ListedQuestion> &recommends, int start, Elision elision,
                             QLabel *measure, QWidget *parent)
    : QListWidget(parent)
{
    setStyleSheet(styles::plainList);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus); // its buttons take the focus
    setAccessibleName(QCoreApplication::translate("QARegion", "推荐问题"));
    if (elision == Elision::Later) {
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    }
    for (int row = 0; row < recommendRowsPerPage; ++row) {
        addRow(recommends.value(start + row), elision, measure);
    }
}

void RecommendPage::addRow(const ListedQuestion &recommend, Elision elision, QLabel *measure)
{
    const QString shown = elided(rowPart(recommend.text), elision, measure);

    auto *row = new QWidget(viewport());
    row->setContentsMargins(0, 0, 0, 0);
    row->setFixedSize(rowSize);
    row->setStyleSheet(styles::transparentItem);
    auto *label = new QLabel(row);
    label->setTextFormat(Qt::PlainText);
    label->setStyleSheet(rowTextStyle());
    label->setText(shown);
    label->setGeometry(textPlace);
    auto *button = new QPushButton(row);
    button->setFlat(true);
    button->setStyleSheet(styles::flatButton);
    button->setCursor(Qt::PointingHandCursor);
    button->setGeometry(textPlace);
    button->setAccessibleName(recommend.text);
    if (recommend.text.isEmpty()) {
        button->setFocusPolicy(Qt::NoFocus); // nothing is there
    } else {
        new FocusMark(button);
        new HoverMark(button);
        m_questions.append(button);
    }
    if (elision == Elision::Later && shown != recommend.text) {
        button->setToolTip(asShown(rowPart(recommend.text)));
    }
    connect(button, &QPushButton::clicked, this,
            [this, recommend] { emit recommendClicked(recommend.text, recommend.id); });

    auto item = std::make_unique<QListWidgetItem>();
    item->setSizeHint(rowSize);
    addItem(item.get());
    setItemWidget(item.release(), row); // owned by the list since addItem()
}
