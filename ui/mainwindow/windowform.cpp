#include "ui/mainwindow/windowform.h"

#include "ui/answer/qaregion.h"
#include "ui/mainwindow/frame/titlebar.h"
#include "ui/mainwindow/input/inputpanel.h"
#include "ui/style/focusstyle.h"
#include "ui/style/screenfollower.h"
#include "ui/style/windowsize.h"

#include <QCoreApplication>
#include <QGridLayout>
#include <QTextEdit>

namespace {

constexpr QRect regionPlace(2, 58, 646, 490);

QWidget *makeInner(QWidget &window)
{
    auto *layout = new QGridLayout(&window);
    layout->setSpacing(0);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *inner = new QWidget(&window);
    inner->setFixedSize(windowSize);
    layout->addWidget(inner);
    return inner;
}

} // namespace

WindowForm buildWindowForm(QWidget &window, bool aboutMenu)
{
    FocusStyle::install(); // before there are widgets that would have to be polished anew
    if (window.objectName().isEmpty()) {
        window.setObjectName(QStringLiteral("Miravel"));
    }
    window.setFixedSize(windowSize);
    new ScreenFollower(&window); // which the window owns
    WindowForm form{};
    form.inner = makeInner(window);
    window.setWindowTitle(QCoreApplication::translate("Miravel", "Miravel"));
    window.setAttribute(Qt::WA_QuitOnClose);
    window.setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowSystemMenuHint
                          | Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint);
    form.titleBar = new TitleBar(aboutMenu ? TitleBar::AboutButton::OpensMenu
                                           : TitleBar::AboutButton::OpensDialog,
                                 form.inner);
    form.region = new QARegion(form.inner);
    form.region->setGeometry(regionPlace);
    form.inputPanel = new InputPanel(form.inner);
    form.region->setTypingPlace(form.inputPanel->input());
    return form;
}
