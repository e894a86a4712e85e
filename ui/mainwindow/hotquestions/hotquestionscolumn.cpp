#include "ui/mainwindow/hotquestions/hotquestionscolumn.h"

#include "ui/mainwindow/hotquestions/hotpaging.h"
#include "ui/mainwindow/questionlist.h"
#include "ui/style/focusmark.h"
#include "ui/style/hovermark.h"
#include "ui/style/styles.h"
#include "ui/style/surfaceshadow.h"
#include "ui/text/plaintooltip.h"

#include <QLabel>
#include <QPushButton>

#include <memory>

namespace {

constexpr QRect columnPlace(648, 58, 272, 582);
constexpr QRect markPlace(24, 24, 4, 18);
constexpr QRect headingPlace(36, 23, 56, 19);
constexpr QRect nextPagePlace(192, 26, 56, 14);
constexpr QRect framePlace(24, 53, 224, 496);
constexpr QRect listPlace(0, 8, 224, 480);
constexpr QRect listInsideFrame(1, 0, 222, 480); ///< in the list; the frame's border is outside

constexpr QSize rowSize(224, 30);
constexpr QRect rowButtonPlace(16, 7, 192, 16);

// The rows that carry the icon, and how their texts and those of the others are cut.
constexpr int iconRows = 3;
constexpr QSize iconSize(22, 12);
constexpr int iconTop = 2;
constexpr int iconGap = 12;
constexpr int iconLastLeft = 170;
constexpr int iconFreeWidth = 160;
constexpr int iconRowWidth = 168;
constexpr int rowLimit = 190;
constexpr int rowElidedWidth = 184;
constexpr int mostMeasured = 4000; ///< characters; more never fit

const QLatin1String rowButtonStyle(
    "QPushButton{color:rgb(29,38,51);font:12px Microsoft YaHei;text-align: left;border:none;}");
const QLatin1String nextPageStyle(
    "QPushButton{background:url(:/Images/btn-switch.png) no-repeat;margin-left: 0px;margin-top:0px;"
    "text-align: right bottom; padding-right: 0px;  padding-bottom: -1px;color:rgb(51,47,29);}"
    "QPushButton:hover{background:url(:/Images/btn-switch-hover.png) no-repeat;color:rgb(41,100,"
    "245);}QPushButton:pressed{background:url(:/Images/btn-switch-pressed.png) no-repeat;color:rgb("
    "37,90,219);}QPushButton{background-color: transparent;border:none;font:12px Microsoft YaHei;}");

QFontMetrics rowMetrics(QWidget *parent)
{
    QLabel measure(parent);
    measure.setStyleSheet(QStringLiteral("QLabel{font:12px Microsoft YaHei;}"));
    measure.ensurePolished();
    return measure.fontMetrics();
}

void addIcon(QPushButton *button, int textWidth)
{
    auto *icon = new QLabel(button);
    icon->setStyleSheet(QStringLiteral("QLabel{border-image: url(:/Images/icon-hot.png);}"));
    const int left = textWidth < iconFreeWidth ? textWidth + iconGap : iconLastLeft;
    icon->setGeometry(QRect(QPoint(left, iconTop), iconSize));
    icon->setAttribute(Qt::WA_TransparentForMouseEvents);
}

/// As it must be given to a button for an ampersand to be seen, and one line to stay one.
QString buttonText(QString text)
{
    for (QChar &character : text) {
        if (character.category() == QChar::Other_Control || character == QChar::LineSeparator
            || character == QChar::ParagraphSeparator) {
            character = QLatin1Char(' ');
        }
    }
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

QPushButton *makeNextPageButton(QWidget *parent)
{
    auto *button = new QPushButton(HotQuestionsColumn::tr("换一换"), parent);
    button->setGeometry(nextPagePlace);
    button->setStyleSheet(nextPageStyle);
    button->setCursor(Qt::PointingHandCursor);
    button->setFocusPolicy(Qt::TabFocus); // the mouse leaves the focus where it was
    new FocusMark(button);
    return button;
}

HotQuestionsColumn::HotQuestionsColumn(QWidget *parent)
    : QWidget(parent)
{
    setGeometry(columnPlace);
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(
        QStringLiteral("QWidget{background-color:rgb(240, 241, 245);border-left:1px solid "
                       "rgb(208, 210, 217);}"));
    auto *mark = new QLabel(this);
    mark->setGeometry(markPlace);
    mark->setStyleSheet(QStringLiteral("QLabel{background-color:rgb(41, 100, 245);border:none;}"));
    auto *heading = new QLabel(tr("热门问答"), this);
    heading->setGeometry(headingPlace);
    heading->setStyleSheet(QStringLiteral(
        "QLabel{color:rgb(29, 38, 51);font:bold 14px Microsoft YaHei;border:none;}"));

    auto *frame = new QFrame(this);
    frame->setGeometry(framePlace);
    frame->setStyleSheet(QStringLiteral("QFrame{background-color:white;border:1px solid rgb(238, "
                                        "240, 244);}"));
    addSurfaceShadow(frame);
    m_list = new QuestionList(frame);
    m_list->setGeometry(listPlace);
    m_list->setMask(listInsideFrame);
    // The column's border is for itself alone.
    m_list->setStyleSheet(styles::plainList + QLatin1String("QWidget{border:none;}"));
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setSelectionMode(QAbstractItemView::NoSelection);
    m_list->setFocusPolicy(Qt::NoFocus); // its buttons take the focus
    m_list->setAccessibleName(tr("热门问答"));
    m_nextPage = makeNextPageButton(this);
    m_nextPage->hide();
    connect(m_nextPage, &QPushButton::clicked, this, &HotQuestionsColumn::turnPage);
}

void HotQuestionsColumn::showServiceQuestions(const QVector<ListedQuestion> &questions)
{
    m_questions = questions;
    m_showsLocal = false;
    hotPage = 0;
    showPage();
}

void HotQuestionsColumn::showLocalQuestions(const QStringList &entries)
{
    m_entries = entries;
    m_showsLocal = true;
    m_localPage = 0;
    showPage();
}

void HotQuestionsColumn::turnPage()
{
    if (m_showsLocal) {
        emit nextLocalPageWanted();
    } else {
        showNextServicePage();
    }
}

void HotQuestionsColumn::showNextServicePage()
{
    m_showsLocal = false;
    hotPage = nextServicePage(hotPage, m_questions.size());
    showPage();
}

void HotQuestionsColumn::showNextLocalPage()
{
    m_showsLocal = true;
    m_localPage = nextLocalPage(m_localPage, m_entries.size());
    showPage();
}

void HotQuestionsColumn::showPage()
{
    m_nextPage->show();
    const int row = focusedRow();
    if (row >= 0) {
        m_nextPage->setFocus(); // or it is passed on from a row that is no more
    }
    m_list->clear();
    if (m_showsLocal) {
        fillLocalPage();
    } else {
        fillServicePage();
    }
    if (row >= 0) {
        focusRow(row);
    }
}

/// The row whose button has the window's focus, or -1.
int HotQuestionsColumn::focusedRow() const
{
    const QWidget *focus = window()->focusWidget();
    for (int row = 0; focus != nullptr && row < m_list->count(); ++row) {
        if (m_list->rowButton(row) == focus) {
            return row;
        }
    }
    return -1;
}

void HotQuestionsColumn::focusRow(int row)
{
    QPushButton *button = m_list->rowButton(row);
    if (button != nullptr && button->focusPolicy() != Qt::NoFocus) {
        button->setFocus();
    }
}

void HotQuestionsColumn::fillServicePage()
{
    for (int row = 0; row < hotRowsPerPage; ++row) {
        const ListedQuestion question = m_questions.value(hotPage + row);
        fillRow(addRow(question.text), row + 1, question);
    }
}

void HotQuestionsColumn::fillLocalPage()
{
    for (int row = 0; row < hotRowsPerPage; ++row) {
        const int entry = m_localPage + row + 1;
        QWidget *widget = addRow(m_entries.value(entry));
        if (entry >= m_entries.size()) {
            return;
        }
        fillRow(widget, row + 1, {m_entries.at(entry), 0});
    }
}

QWidget *HotQuestionsColumn::addRow(const QString &accessibleName)
{
    auto *row = new QWidget(m_list->viewport());
    row->setStyleSheet(styles::whiteItem);
    row->setFixedSize(rowSize);
    auto item = std::make_unique<QListWidgetItem>();
    item->setSizeHint(rowSize);
    item->setData(Qt::AccessibleTextRole, accessibleName);
    m_list->addItem(item.get());
    m_list->setItemWidget(item.release(), row); // owned by the list since addItem()
    return row;
}

void HotQuestionsColumn::fillRow(QWidget *row, int number, const ListedQuestion &question)
{
    const QString text
        = QString::number(number) + QLatin1String(". ") + question.text.left(mostMeasured);
    const QFontMetrics metrics = rowMetrics(row);
    const int width = metrics.horizontalAdvance(text);
    const bool hasIcon = number <= iconRows;
    auto *button = new QPushButton(row);
    button->setFlat(true);
    button->setGeometry(rowButtonPlace);
    button->setStyleSheet(rowButtonStyle);
    button->setCursor(Qt::PointingHandCursor);
    button->setAccessibleName(question.text);
    if (question.text.isEmpty()) {
        button->setFocusPolicy(Qt::NoFocus); // nothing is there
    } else {
        new FocusMark(button);
        new HoverMark(button);
    }
    if (width > (hasIcon ? iconRowWidth : rowLimit)) {
        const int limit = hasIcon ? iconRowWidth : rowElidedWidth;
        button->setText(buttonText(metrics.elidedText(text, Qt::ElideRight, limit)));
        button->setToolTip(plainToolTip(question.text));
    } else {
        button->setText(buttonText(text));
    }
    if (hasIcon && !question.text.isEmpty()) {
        addIcon(button, width);
    }
    connect(button, &QPushButton::clicked, this,
            [this, question] { emit questionClicked(question.text, question.id); });
    button->show();
}
