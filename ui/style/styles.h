#pragma once

#include <QLatin1String>
#include <QString>

/// The style sheet texts of the program that several pieces share, each standing here once. The
/// texts are exact: other programs that look at the window know them.
namespace styles {

/// A white background for a row or an item of a list.
inline const QLatin1String whiteItem("background-color:rgb(255, 255, 255);");

/// A transparent background for a row inside a bubble.
inline const QLatin1String transparentItem("background-color:transparent;");

/// The dark text of a bubble, selectable, in normal weight.
inline const QLatin1String bubbleText(
    "QLabel{selection-color:white;selection-background-color:rgb(0,120,215);background-color:"
    "transparent;color:rgb(29,38,51);font:14px Microsoft YaHei;}");

/// The dark text of a bubble, selectable, bold: assistant messages and answer titles.
inline const QLatin1String bubbleBoldText(
    "QLabel{selection-color:white;selection-background-color:rgb(0,120,215);background-color:"
    "transparent;color:rgb(29,38,51);font:bold 14px Microsoft YaHei;}");

/// A paragraph of an answer.
inline const QLatin1String paragraph(
    "QLabel{selection-color:white;selection-background-color:rgb(0,120,215);background-color:rgb("
    "244, 245, 248);border:none;}");

/// The bubble of the user and that of the assistant.
inline const QLatin1String
    userBubble("QWidget{background-color:rgb(223, 237, 255);border-radius: 6px;border-width:1px;}");
inline const QLatin1String assistantBubble(
    "QWidget{background-color:rgb(244, 245, 248);border-radius: 6px;border-width:1px;}");

/// A thin grey line below the label.
inline const QLatin1String separator("QLabel{border-bottom:1px solid rgb(208, 210, 217);}");

/// A list inside a bubble that shows nothing of its own.
inline const QLatin1String
    plainList("QListWidget{border:none;background-color:transparent;}QListWidget::Item{border:none;"
              "background-color:transparent;}QListWidget::Item:hover{border:none;background-color:"
              "transparent;}QListWidget::Item:selected{border:none;background-color:transparent;}");

/// The blue button of the program with white bold text of 12 px.
inline const QLatin1String blueButton(
    "QPushButton{background-color:rgb(42, 100, 244);color:white;font:bold 12px Microsoft YaHei;"
    "border:none;}QPushButton:hover{background-color:rgb(51, 109, 255);}QPushButton:pressed{"
    "background-color:rgb(38, 95, 237);}QPushButton:checked{background-color:rgb(143, 155, 182);}");

/// A button that is seen only by its cursor.
inline const QLatin1String flatButton("QPushButton{background-color:transparent;border:none;}");

/// A menu, and what its entries are when they have no widgets of their own.
inline const QLatin1String menu("QMenu{background-color: #ffffff;border:1px solid rgba(5, 34, "
                                "91, 0.2); border-radius: 6px;}");
inline const QLatin1String
    menuEntries("QMenu{padding:6px 0px;}QMenu::item{height:27px;padding:0px 24px 0px 12px;"
                "background-color:transparent;color:#1d2633;}QMenu::item:selected{"
                "background-color:#f4f5f8;}");

/// A tool tip, which looks as a menu does.
inline const QLatin1String
    toolTip("QToolTip{background-color:#ffffff;border:1px solid rgba(5, 34, 91, 0.2);"
            "border-radius:6px;padding:4px 8px;color:#1d2633;font:12px Microsoft YaHei;}");

/// How round the corners of menus and tool tips are, in px.
inline constexpr int floatingRadius = 6;

/// A thin vertical scroll bar: 14 px with a right margin of 10 px, only its handle visible.
/// \a verticalPadding px stay free above and below the handle's way.
[[nodiscard]] QString thinScrollBar(int verticalPadding = 0);

/// The declaration that draws row \a row, counted from 0, of a strip of \a rows rows of
/// \a rowHeight px. The strip is \a image below ":/Images/".
[[nodiscard]] QString spriteRow(QLatin1String image, int row, int rows, int rowHeight);

/// A button drawn from a strip of three rows of \a rowHeight px: normal, hover and pressed. The
/// strip is \a image below ":/Images/".
[[nodiscard]] QString threeStateSprite(QLatin1String image, int rowHeight);

} // namespace styles
