#pragma once

#include <QElapsedTimer>

#include <algorithm>
#include <vector>

/// How long \a work takes once, in microseconds.
template <typename Work>
double microseconds(Work work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1000;
}

/// The middle one of \a values, which must not be empty.
inline double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The least of \a values, which must not be empty.
inline double least(const std::vector<double> &values)
{
    return *std::min_element(values.begin(), values.end());
}

/// The medians of two costs.
struct TwoCosts
{
    double first;
    double second;
};

/// Runs \a first and \a second in turn, \a rounds times each, so that whatever else the machine
/// does meanwhile weighs on both. One round before them is not counted. Both return microseconds.
template <typename First, typename Second>
TwoCosts compare(int rounds, First first, Second second)
{
    std::vector<double> firsts;
    std::vector<double> seconds;
    first();
    second();
    for (int round = 0; round < rounds; ++round) {
        firsts.push_back(first());
        seconds.push_back(second());
    }
    return {median(firsts), median(seconds)};
}
