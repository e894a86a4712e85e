#pragma once

#include "tools/doctor/finding.h"

#include <QJsonValue>

/// Judges the member "result" of an answer for which \a asked recommendations were asked.
[[nodiscard]] Findings judgeAnswer(const QJsonValue &result, int asked);

/// Judges the rich text of an answer: its paragraphs, the one form of pictures, the links.
[[nodiscard]] Findings judgeReplyText(const QString &reply);
