#pragma once

#include <QString>
#include <QStringList>

#include <initializer_list>

/// What is to be said about a library of the VPN client without asking the library anything.
struct LibraryReport
{
    enum class State {
        Absent,
        Unusable, ///< there, but the system cannot load it or it lacks a function
        Usable,
    };

    State state = State::Absent;
    QString file;   ///< the first one that counts; empty for an absent one
    QString reason; ///< why an unusable one is so, with the system's own words
};

/// Looks for a library at \a files, in that order, and loads the first that has all of \a
/// functions. Logs nothing. Any thread.
[[nodiscard]] LibraryReport examineLibrary(const QStringList &files,
                                           std::initializer_list<const char *> functions);
