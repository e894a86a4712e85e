#pragma once

#include "tools/doctor/finding.h"

#include <QJsonValue>

/// The rows that the suggestion popup of the window has.
inline constexpr int mostSuggestions = 21;

/// A list entry whose text is longer than this is shown cut off, whatever the list.
inline constexpr int longestListedText = 300;

/// A list of hot questions or suggestions of which \a asked were asked for.
[[nodiscard]] Findings judgeHotList(const QJsonValue &result, int asked);
[[nodiscard]] Findings judgeSuggestionList(const QJsonValue &result, int asked);

/// The member "recommends" of an answer.
[[nodiscard]] Findings judgeRecommendations(const QJsonValue &recommends, int asked);
