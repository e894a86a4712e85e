#pragma once

#include <QString>

/// Whether \a output of the system's ping program tells of an answer: it contains, in any case,
/// "TTL=", "时间=" or "time=".
[[nodiscard]] bool pingAnswered(const QString &output);

/// Reads the summary that the Windows ping program prints in its Chinese locale.
///
/// \a address becomes the text between the first "[" and the first "]", the whole output when there
/// is neither (a numeric host). \a averageMs, not null, becomes the number between the first
/// "平均 = " and the last "ms", 0 without the label. \a lossPercent becomes the number between the
/// first "(" and the first "%"; it stays as it is when one of them is missing, and may be null.
/// What should be a number and is none counts as 0.
void parsePingOutput(const QString &output, QString &address, int *averageMs, int *lossPercent);
