// One copy of a single-instance program, for tests that start several:
// singlecopy [minimised | maximised | normal | gone]
// It prints "first" or "running"; the first copy then prints what happens to its window, and ends
// when its standard input is closed.

#include "app/startup/singleapplication.h"

#include <QEvent>
#include <QTest>

#include <cstdio>
#include <iostream>
#include <memory>
#include <string>
#include <thread>

namespace {

void print(const char *text)
{
    std::puts(text);
    std::fflush(stdout);
}

class Window : public QWidget
{
public:
    /// From now on events are printed, beginning with its being raised: the window system may tell
    /// late of the focus that it had when it was shown.
    void watch() { m_watched = true; }

protected:
    bool event(QEvent *event) override
    {
        if (m_watched) {
            printEvent(event->type());
        }
        return QWidget::event(event);
    }

private:
    void printEvent(QEvent::Type type)
    {
        if (type == QEvent::ZOrderChange) {
            m_raised = true;
            print("raised");
        } else if (m_raised && type == QEvent::WindowStateChange
                   && windowState() == Qt::WindowNoState) {
            print("normal");
        } else if (m_raised && type == QEvent::WindowActivate) {
            print("active");
        }
    }

    bool m_watched = false;
    bool m_raised = false;
};

/// Shows \a window and lets \a other take the focus, so that coming to the front can be seen.
void show(Window *window, QWidget *other, const QString &state)
{
    if (state == QLatin1String("minimised")) {
        window->showMinimized();
    } else if (state == QLatin1String("maximised")) {
        window->showMaximized();
    } else {
        window->show();
    }
    QCoreApplication::processEvents();
    other->show();
    other->activateWindow();
    // The window system gives the focus when it gets round to it.
    if (!QTest::qWaitForWindowActive(other)) {
        print("not set up");
    }
    window->watch();
}

} // namespace

int main(int argc, char *argv[])
{
    SingleApplication app(argc, argv);
    if (app.isRunning()) {
        print("running");
        return EXIT_SUCCESS;
    }
    const QString state = QCoreApplication::arguments().value(1);
    auto window = std::make_unique<Window>();
    QWidget other;
    if (!state.isEmpty()) {
        app.w = window.get();
        show(window.get(), &other, state);
    }
    if (state == QLatin1String("gone")) {
        window.reset();
    }
    print("first");
    std::thread input([&app] {
        std::string line;
        while (std::getline(std::cin, line)) { }
        QMetaObject::invokeMethod(&app, &QCoreApplication::quit, Qt::QueuedConnection);
    });
    const int status = QApplication::exec();
    input.join();
    return status;
}
