#pragma once

#include "tools/demoservice/faults/fault.h"
#include "tools/demoservice/requests/call.h"

#include <nlohmann/json.hpp>

#include <array>
#include <mutex>
#include <optional>
#include <string>

namespace demo {

/// Which call misbehaves how, and how many times more. Any thread may use any operation: one mutex
/// guards all of it.
class FaultPlan
{
public:
    /// From now on `call` (no value: every call) misbehaves as `fault` says, `times` times (no
    /// value: until told otherwise). A fault of kind None ends what was set for that call; with no
    /// call it ends everything.
    void set(std::optional<Call> call, const Fault &fault, std::optional<int> times);

    /// The fault that the next answer to `call` shows, counted as used. What is set for the call
    /// itself goes before what is set for every call.
    Fault take(Call call);

    /// What is set now, as the control endpoint shows it.
    nlohmann::json toJson() const;

private:
    struct Slot
    {
        Fault fault;
        std::optional<int> left;
    };

    static Fault takeFrom(Slot &slot);

    mutable std::mutex m_mutex;
    std::array<Slot, callCount> m_calls;
    Slot m_any;
};

} // namespace demo
