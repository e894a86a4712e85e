#pragma once

#include "tools/doctor/finding.h"

#include <QByteArray>
#include <QString>

class QJsonDocument;

/// One of the three calls.
struct CallKind
{
    const char *name;    ///< as the report calls it
    const char *pathKey; ///< the key of its path

    /// Judges what a good \a reply holds; \a name is the one above.
    Finding (*judgeResult)(const QString &name, const QJsonDocument &reply);
};

extern const CallKind hotKind;
extern const CallKind associationKind;
extern const CallKind askKind;

/// Judges the bytes of a reply. \a error is the name of the network's error, empty for none.
[[nodiscard]] Finding judgeReply(const CallKind &kind, const QByteArray &reply,
                                 const QString &error);
