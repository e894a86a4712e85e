#pragma once

#include <QStringList>
#include <QtGlobal>

/// Catches the messages of all threads while it lives, instead of the handler before it. One at a
/// time. Messages are kept as level and text, e.g. "info: can ping"; guarded by a mutex.
class LogCapture final
{
    Q_DISABLE_COPY_MOVE(LogCapture)

public:
    LogCapture();
    ~LogCapture();

    /// The messages of our own sources, in order.
    [[nodiscard]] QStringList lines() const;

    /// The messages of our own sources with every time of day at the end of a line written as
    /// "<time>".
    [[nodiscard]] QStringList timelessLines() const;

    /// The messages of our own sources that begin with \a start, in order.
    [[nodiscard]] QStringList linesWith(const QString &start) const;

    /// Qt's own messages.
    [[nodiscard]] QStringList foreignLines() const;

    /// Forgets what was caught so far.
    void clear();

private:
    QtMessageHandler m_previous;
};
