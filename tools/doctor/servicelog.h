#pragma once

#include <QString>
#include <QtGlobal>

/// Catches what the program's service code logs while this lives, and prints it to the error output
/// when asked to. One at a time; any thread may log.
class ServiceLog final
{
    Q_DISABLE_COPY_MOVE(ServiceLog)

public:
    explicit ServiceLog(bool printed);
    ~ServiceLog();

    /// Forgets what was caught so far.
    void clear();

    /// What follows \a start in the first caught message that begins with it; empty without one.
    [[nodiscard]] QString after(const QString &start) const;

private:
    QtMessageHandler m_previous;
};
