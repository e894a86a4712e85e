#include "ui/preview/previewform.h"

#include "ui/preview/picturearea.h"
#include "ui/preview/previewtitlebar.h"
#include "ui/preview/previewtoolbar.h"

#include <QCoreApplication>
#include <QVBoxLayout>

namespace {

constexpr int frameWidth = 2;

} // namespace

PreviewForm buildPreviewForm(QWidget &window)
{
    window.setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowSystemMenuHint
                          | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint);
    window.setAttribute(Qt::WA_StyledBackground);
    window.setMouseTracking(true);
    window.setObjectName(QStringLiteral("ImageDisplay"));
    window.setWindowTitle(QCoreApplication::translate("ImageDisplay", "图片预览"));
    window.setStyleSheet(QStringLiteral(
        "QWidget{background-color:rgb(244, 245, 248);border:2px solid rgb(230,231,235);}"));
    const PreviewForm form{new PreviewTitleBar(&window), new PictureArea(&window),
                           new PreviewToolBar(&window)};
    auto *layout = new QVBoxLayout(&window);
    layout->setContentsMargins(frameWidth, frameWidth, frameWidth, frameWidth);
    layout->setSpacing(0);
    layout->setSizeConstraint(QLayout::SetNoConstraint); // a restored animation may be smaller
    layout->addWidget(form.titleBar);
    layout->addWidget(form.area, 1);
    layout->addWidget(form.toolBar);
    return form;
}
