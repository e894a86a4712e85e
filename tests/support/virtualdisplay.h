#pragma once

#include "tests/support/childprocess.h"

/// A private X display (Xvfb), with a window manager when wanted, for tests that look at real
/// windows from outside. Ends with this object.
class VirtualDisplay
{
    Q_DISABLE_COPY(VirtualDisplay)

public:
    VirtualDisplay() = default;

    /// What is missing on this machine to use a display, as one line; empty when all is there.
    [[nodiscard]] static QString missingTools();

    /// Starts the display, 1280 x 1024 px, and waits until it takes clients. False when it does
    /// not.
    [[nodiscard]] bool start();

    /// Starts the window manager (openbox) and waits until it manages the display.
    [[nodiscard]] bool startWindowManager();

    /// The value for DISPLAY, e.g. ":5".
    [[nodiscard]] QString name() const;

    /// Runs xdotool with \a arguments and gives what it printed; empty when it failed.
    QString xdotool(const QStringList &arguments) const;

    /// The id of the first visible window of process \a pid; empty when there is none.
    [[nodiscard]] QString visibleWindow(qint64 pid) const;

    /// Waits until process \a pid has a visible window and gives its id; empty when it gets none.
    [[nodiscard]] QString waitForWindow(qint64 pid) const;

private:
    void startServer(int number);
    [[nodiscard]] QProcessEnvironment environment() const;

    ChildProcess m_server;
    ChildProcess m_windowManager;
    QString m_name;
};
