#pragma once

#include <QProcess>

/// A process that never outlives the test: it is killed with this object and, on Linux, even when
/// the test program itself dies.
class ChildProcess : public QProcess
{
    Q_OBJECT
    Q_DISABLE_COPY(ChildProcess)

public:
    explicit ChildProcess(QObject *parent = nullptr);
    ~ChildProcess() override;

    /// Kills the process, as a crash ends it, and waits until it is gone.
    void crash();

    /// Waits at most \a patienceMs until the process has ended by itself. True when it did so in an
    /// orderly way with exit status \a status.
    [[nodiscard]] bool endsWith(int status, int patienceMs = 20'000);

    /// The next line of its standard output without the line end, waited for at most \a patienceMs;
    /// empty when there is none.
    [[nodiscard]] QString nextLine(int patienceMs = 20'000);

    /// True while it is being started or runs. Notices an end that nobody waited for.
    [[nodiscard]] bool isRunning();

protected:
    void setupChildProcess() override;
};
