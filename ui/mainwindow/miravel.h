#pragma once

#include <QWidget>

/// The program's only top-level window: a frameless chat window of 920 x 640 px. Lives on the GUI
/// thread.
class Miravel : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(Miravel)

public:
    explicit Miravel(QWidget *parent = nullptr);

    /// Starts in online mode at once: the virtual-desktop client started the program.
    void startForVdiClient();

    /// Starts in the mode that the desktop's login state asks for: the launcher started the program.
    void startForLauncher();
};
