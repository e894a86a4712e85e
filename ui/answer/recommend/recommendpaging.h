#pragma once

/// Rows on every page of a recommendation box, whatever the number of recommendations.
inline constexpr int recommendRowsPerPage = 5;

/// Where the next page of a recommendation box starts whose cursor stands at \a cursor, of \a count
/// recommendations. Only full pages are shown; after the last one the first comes again. The first
/// page leaves the cursor behind its rows, so the first step skips a page: boxes have always paged
/// so.
[[nodiscard]] constexpr int nextRecommendCursor(int cursor, int count)
{
    const int next = cursor + recommendRowsPerPage;
    return next + recommendRowsPerPage - 1 >= count ? 0 : next;
}
