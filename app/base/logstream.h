#pragma once

#include "app/base/loghandler.h"

#include <QDebug>

// Qt's message macros without quotes around texts and blanks between values: a log message
// is its fixed text directly followed by the value. Macros, because file and line are the caller's.
// What the handler would drop is not put together at all: naming an object or a time of day takes
// some 20 µs. The loop, which runs once or not at all, is a statement that no "else" can follow.
#define LOG_DEBUG() MIRAVEL_LOG(QtDebugMsg, qDebug)
#define LOG_INFO() MIRAVEL_LOG(QtInfoMsg, qInfo)
#define LOG_WARNING() MIRAVEL_LOG(QtWarningMsg, qWarning)
#define LOG_CRITICAL() MIRAVEL_LOG(QtCriticalMsg, qCritical)

#define MIRAVEL_LOG(type, stream)                                                                  \
    for (bool logIsDue = isLogged(type); logIsDue; logIsDue = false)                               \
    stream().noquote().nospace()
