#include "ui/mainwindow/suggestions/suggestionpopup.h"

#include "service/reply/listedquestion.h"
#include "ui/mainwindow/questionlist.h"
#include "ui/mainwindow/suggestions/suggestionhighlight.h"
#include "ui/style/focusmark.h"
#include "ui/style/hovermark.h"
#include "ui/style/styles.h"
#include "ui/text/plaintooltip.h"

#include <QGraphicsDropShadowEffect>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>

#include <memory>

namespace {

// The popup grows upwards from the row of pixels above the input panel.
constexpr int rowHeight = 28;
constexpr int popupBottom = 490;
constexpr int popupWidth = 648;
constexpr int popupPadding = 16;

constexpr QRect closePlace(622, 10, 16, 16);
constexpr QPoint listCorner(16, 10);
constexpr QSize rowSize(600, rowHeight);
constexpr int scrollBarPadding = 5;

constexpr int textLimit = 575;
constexpr int mostMeasured = 4000; ///< characters; more never fit

constexpr QColor shadowColour(238, 240, 244);
constexpr qreal shadowBlurRadius = 28;

const QLatin1String rowTextStyle(
    "QLabel{color:rgb(117,117,117);font:12px Microsoft YaHei;text-align: left;border:none;}");

QRect popupPlace(int rows)
{
    const int height = rowHeight * rows + popupPadding;
    return {0, popupBottom - height, popupWidth, height};
}

void addShadow(QWidget *widget)
{
    auto *shadow = new QGraphicsDropShadowEffect(widget);
    shadow->setOffset(0, 0);
    shadow->setColor(shadowColour);
    shadow->setBlurRadius(shadowBlurRadius);
    widget->setGraphicsEffect(shadow);
}

/// Whether a row has room for all of \a question.
bool fits(const QString &question, const QFontMetrics &metrics)
{
    return question.size() <= mostMeasured && metrics.horizontalAdvance(question) < textLimit;
}

void setRowText(QLabel *label, const QString &text, SuggestionHighlight &highlight)
{
    const QString highlighted = highlight.apply(text);
    label->setTextFormat(highlighted.isEmpty() ? Qt::PlainText : Qt::RichText);
    label->setText(highlighted.isEmpty() ? text : highlighted);
}

} // namespace

SuggestionPopup::SuggestionPopup(const QVector<ListedQuestion> &suggestions, const QString &typed,
                                 QWidget *parent)
    : QWidget(parent)
    , m_list(new QuestionList(this))
{
    const int rows = qMin(suggestions.size(), capacity);
    setGeometry(popupPlace(rows));
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(QStringLiteral("QWidget{background-color:white;border:none;}"));
    addShadow(this);
    m_list->setGeometry(QRect(listCorner, QSize(rowSize.width(), rowHeight * rows)));
    m_list->setStyleSheet(QStringLiteral("QListWidget{background-color:white;}"));
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->verticalScrollBar()->setStyleSheet(styles::thinScrollBar(scrollBarPadding));
    m_list->setSelectionMode(QAbstractItemView::NoSelection);
    m_list->setFocusPolicy(Qt::NoFocus); // its buttons take the focus
    m_list->setAccessibleName(tr("联想问题"));
    SuggestionHighlight highlight(typed);
    for (int row = 0; row < rows; ++row) {
        addRow(suggestions.at(row), highlight);
    }
    addCloseButton();
    show();
}

void SuggestionPopup::addCloseButton()
{
    auto *close = new QPushButton(this);
    close->setGeometry(closePlace);
    close->setStyleSheet(
        styles::threeStateSprite(QLatin1String("btn-close.png"), closePlace.height()));
    close->setCursor(Qt::PointingHandCursor);
    close->setAccessibleName(tr("关闭"));
    close->setToolTip(tr("关闭"));
    connect(close, &QPushButton::clicked, this, &SuggestionPopup::closeClicked);
}

void SuggestionPopup::addRow(const ListedQuestion &suggestion, SuggestionHighlight &highlight)
{
    auto *row = new QWidget(m_list->viewport());
    row->setStyleSheet(styles::whiteItem);
    row->setFixedSize(rowSize);
    auto *label = new QLabel(row);
    label->setStyleSheet(rowTextStyle);
    label->setGeometry(QRect(QPoint(), rowSize));
    label->ensurePolished(); // measured with its own font
    const QFontMetrics metrics = label->fontMetrics();
    const bool whole = fits(suggestion.text, metrics);
    setRowText(
        label,
        whole ? suggestion.text
              : metrics.elidedText(suggestion.text.left(mostMeasured), Qt::ElideRight, textLimit),
        highlight);

    auto *button = new QPushButton(row);
    button->setGeometry(label->geometry());
    button->setFlat(true);
    button->setStyleSheet(styles::flatButton);
    button->setCursor(Qt::PointingHandCursor);
    button->setAccessibleName(suggestion.text);
    new FocusMark(button);
    new HoverMark(button);
    if (!whole) {
        button->setToolTip(plainToolTip(suggestion.text));
    }
    connect(button, &QPushButton::clicked, this,
            [this, suggestion] { emit suggestionClicked(suggestion.text, suggestion.id); });
    button->installEventFilter(this);
    m_buttons.append(button);

    auto item = std::make_unique<QListWidgetItem>();
    item->setSizeHint(rowSize);
    item->setData(Qt::AccessibleTextRole, suggestion.text);
    m_list->addItem(item.get());
    m_list->setItemWidget(item.release(), row); // owned by the list since addItem()
}

void SuggestionPopup::focusFirstRow()
{
    m_buttons.first()->setFocus(Qt::TabFocusReason);
}

bool SuggestionPopup::eventFilter(QObject *watched, QEvent *event)
{
    // A button would take Up and Down for the way to any neighbour, the one that closes too.
    auto *button = qobject_cast<QPushButton *>(watched);
    if (button != nullptr && event->type() == QEvent::KeyPress) {
        return takeKey(button, static_cast<QKeyEvent *>(event)->key());
    }
    return QWidget::eventFilter(watched, event);
}

/// Returns whether \a key has done what it does for the row of \a button.
bool SuggestionPopup::takeKey(QPushButton *button, int key)
{
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        button->click();
        return true;
    }
    if (key != Qt::Key_Up && key != Qt::Key_Down) {
        return false;
    }
    const int row = m_buttons.indexOf(button) + (key == Qt::Key_Down ? 1 : -1);
    if (row >= 0 && row < m_buttons.size()) {
        m_buttons.at(row)->setFocus(Qt::TabFocusReason);
    }
    return true;
}
