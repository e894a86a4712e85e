#pragma once

#include <QDebug>

// Qt's message macros without quotes around texts and blanks between values: a log message
// is its fixed text directly followed by the value. Macros, because file and line are the caller's.
#define LOG_DEBUG() qDebug().noquote().nospace()
#define LOG_INFO() qInfo().noquote().nospace()
#define LOG_WARNING() qWarning().noquote().nospace()
#define LOG_CRITICAL() qCritical().noquote().nospace()
