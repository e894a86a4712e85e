#pragma once

/// Rows on a page of the hot questions.
inline constexpr int hotRowsPerPage = 16;

/// Where the page after the one at \a start begins in a list of \a count questions of the service.
/// Only full pages follow the first one; after the last the first comes again.
[[nodiscard]] constexpr int nextServicePage(int start, int count)
{
    return start + 2 * hotRowsPerPage - 1 >= count ? 0 : start + hotRowsPerPage;
}

/// The same for the local library, whose list of \a entries begins with one that is no question.
/// Here a last page that is partly filled is shown as well.
[[nodiscard]] constexpr int nextLocalPage(int start, int entries)
{
    const int bound = hotRowsPerPage * ((entries - 2) / hotRowsPerPage) + hotRowsPerPage;
    return start + 2 * hotRowsPerPage - 1 >= bound ? 0 : start + hotRowsPerPage;
}
