#pragma once

#include "tools/conformance/exchange.h"
#include "tools/doctor/finding.h"

#include <QJsonValue>

/// What the outside of a reply is worth: how it came, and the frame that all replies share.
struct Envelope
{
    Findings complaints; ///< one at most that keeps the rest from being read
    QJsonValue result;   ///< undefined when the reply cannot be read
};

/// Judges a \a response to a right request. \a limitMs is how long it was waited for.
[[nodiscard]] Envelope judgeEnvelope(const Response &response, int limitMs);

/// Judges a \a response to a wrong request, which must be refused in the documented form and give
/// away neither \a secret nor \a rightSignature. \a must says whether accepting it is a fault.
[[nodiscard]] Findings judgeRefusal(const Response &response, int limitMs, bool must,
                                    const QString &secret, const QByteArray &rightSignature);

/// "errorCode" of a refusal with "errorMsg", to name it in a report.
[[nodiscard]] QString refusalWords(const Response &response);
