#include "ui/answer/questioncycle.h"
#include "ui/answer/questionlimit.h"

#include <sys/resource.h>

#include <algorithm>

int mostQuestionsUnderWay()
{
    // A question that waits was seen to hold two.
    constexpr rlim_t descriptorsOfAQuestion = 3;
    constexpr rlim_t descriptorsOfTheRest = 96;
    constexpr rlim_t most = QuestionCycle::mostUnderWay;
    rlimit limit = {};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) {
        return QuestionCycle::mostUnderWay;
    }
    const rlim_t left = limit.rlim_cur - std::min(limit.rlim_cur, descriptorsOfTheRest);
    return static_cast<int>(std::clamp<rlim_t>(left / descriptorsOfAQuestion, 1, most));
}
