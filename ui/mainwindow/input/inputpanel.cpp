#include "ui/mainwindow/input/inputpanel.h"

#include "ui/mainwindow/input/heldtext.h"
#include "ui/mainwindow/input/inputbox.h"
#include "ui/mainwindow/input/inputmenu.h"
#include "ui/style/focusmark.h"

#include <QCursor>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextEdit>
#include <QTextLayout>

namespace {

constexpr QRect panelPlace(1, 490, 647, 149);
constexpr QRect inputPlace(16, 8, 616, 82);
constexpr QRect sendPlace(538, 97, 86, 29);

constexpr QColor placeholderColour(168, 178, 191);

const QLatin1String idleStyle(
    "QTextEdit{selection-color:white;selection-background-color:rgb(0,120,215);color:rgb(168,178,"
    "191);font:bold 14px Microsoft YaHei;border:none;}");
const QLatin1String typingStyle(
    "QTextEdit{selection-color:white;selection-background-color:rgb(0,120,215);color:rgb(29,38,51);"
    "font:14px Microsoft YaHei;border:none;}");

void setInputStyle(QTextEdit *input, const QString &style)
{
    input->setStyleSheet(style);
    // The place-holder stays grey in both styles; a style sheet makes it look like typed text.
    input->ensurePolished();
    QPalette palette = input->palette();
    palette.setColor(QPalette::PlaceholderText, placeholderColour);
    input->setPalette(palette);
}

QTextEdit *makeInput(QWidget *parent)
{
    auto *input = new InputBox(parent);
    input->setGeometry(inputPlace);
    input->setPlaceholderText(InputPanel::tr("您可以尝试在此描述您的问题。"));
    input->setAlignment(Qt::AlignLeft);
    input->setAcceptRichText(false);
    input->setAcceptDrops(false);
    input->viewport()->setAcceptDrops(false);
    input->setTabChangesFocus(true);
    input->setContextMenuPolicy(Qt::CustomContextMenu);
    setInputStyle(input, idleStyle);
    input->setAccessibleName(InputPanel::tr("问题"));
    input->verticalScrollBar()->setStyleSheet(
        QStringLiteral("QScrollBar:vertical{width:4px;background:transparent;}"
                       "QScrollBar::handle:vertical{background:rgb(207,207,207);border-radius:2px;"
                       "min-height:20px;}"
                       "QScrollBar::add-page:vertical,QScrollBar::sub-page:vertical{background:"
                       "transparent;}"
                       "QScrollBar::add-line:vertical,QScrollBar::sub-line:vertical{height:0px;}"));
    return input;
}

} // namespace

InputPanel::InputPanel(QWidget *parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("inputPanel"));
    setGeometry(panelPlace);
    setAttribute(Qt::WA_StyledBackground);
    setStyleSheet(QStringLiteral("QWidget#inputPanel{background-color:white;"
                                 "border-top:1px solid rgb(208, 210, 217);"
                                 "border-left:1px solid rgb(244, 245, 248);"
                                 "border-bottom:1px solid rgb(244, 245, 248);}"));
    m_input = makeInput(this);
    connect(m_input, &QWidget::customContextMenuRequested, this, &InputPanel::menuRequested);

    auto *send = new QPushButton(tr("发送"), this);
    send->setGeometry(sendPlace);
    send->setCursor(Qt::PointingHandCursor);
    send->setStyleSheet(QStringLiteral(
        "QPushButton{background-color:rgb(42, 100, 244);color:white;font:bold 16px Microsoft YaHei;"
        "border:none;}QPushButton:hover{background-color:rgb(51, 109, 255);}"
        "QPushButton:pressed{background-color:rgb(38, 95, 237);}"));
    new FocusMark(send);
    connect(send, &QPushButton::clicked, this, &InputPanel::sendClicked);
}

void InputPanel::applyTypingStyle()
{
    // Setting an equal text would parse it anew and repaint the box.
    if (m_input->styleSheet() != typingStyle) {
        setInputStyle(m_input, typingStyle);
    }
}

QString InputPanel::text() const
{
    return wholeText(*m_input->document());
}

bool InputPanel::isComposing() const
{
    const QTextLayout *layout = m_input->textCursor().block().layout();
    return layout != nullptr && !layout->preeditAreaText().isEmpty();
}

void InputPanel::openMenu()
{
    closeMenu();
    menuOpen = true; // before the box loses the focus to the menu
    m_menu = new InputMenu(*m_input, this);
    connect(m_menu, &InputMenu::cutRequested, this, &InputPanel::cutRequested);
    connect(m_menu, &InputMenu::copyRequested, this, &InputPanel::copyRequested);
    connect(m_menu, &InputMenu::pasteRequested, this, &InputPanel::pasteRequested);
    connect(m_menu, &QMenu::aboutToHide, this, [this] { menuOpen = false; });
    m_menu->popup(QCursor::pos());
}

void InputPanel::cut()
{
    m_input->cut();
    closeMenu();
}

void InputPanel::copy()
{
    m_input->copy();
    closeMenu();
}

void InputPanel::paste()
{
    m_input->paste();
    closeMenu();
}

void InputPanel::closeMenu()
{
    menuOpen = false;
    if (!m_menu.isNull()) {
        m_menu->close(); // which deletes it
    }
}
