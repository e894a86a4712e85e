#pragma once

class InputPanel;
class QARegion;
class QWidget;
class TitleBar;

/// What the window consists of from the start. All of it belongs to the window.
struct WindowForm
{
    QWidget *inner; ///< covers the window, holds the rest
    TitleBar *titleBar;
    QARegion *region;
    InputPanel *inputPanel;
};

/// Gives \a window its size, name, title and flags and fills it. With \a aboutMenu the about button
/// is the one that opens a menu.
[[nodiscard]] WindowForm buildWindowForm(QWidget &window, bool aboutMenu);
