#pragma once

#include "tools/doctor/finding.h"

class httpsRequest;
class ServiceLog;

/// Makes the three calls of the service through \a request, each waiting \a limitMs at most, and
/// judges their replies. \a log is what they log.
[[nodiscard]] Findings checkCalls(httpsRequest &request, ServiceLog &log, int limitMs,
                                  const QString &question);
