#pragma once

class PictureArea;
class PreviewTitleBar;
class PreviewToolBar;
class QWidget;

/// What the preview window consists of. All of it belongs to the window.
struct PreviewForm
{
    PreviewTitleBar *titleBar;
    PictureArea *area;
    PreviewToolBar *toolBar;
};

/// Gives \a window its flags, name, title and style and fills it, the tool bar below the picture.
[[nodiscard]] PreviewForm buildPreviewForm(QWidget &window);
