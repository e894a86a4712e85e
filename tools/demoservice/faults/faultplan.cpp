#include "tools/demoservice/faults/faultplan.h"

namespace demo {

void FaultPlan::set(std::optional<Call> call, const Fault &fault, std::optional<int> times)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (call) {
        m_calls.at(static_cast<std::size_t>(*call)) = {fault, times};
        return;
    }
    if (fault.kind == FaultKind::None) {
        m_calls = {};
    }
    m_any = {fault, times};
}

Fault FaultPlan::take(Call call)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Slot &own = m_calls.at(static_cast<std::size_t>(call));
    return takeFrom(own.fault.kind == FaultKind::None ? m_any : own);
}

Fault FaultPlan::takeFrom(Slot &slot)
{
    Fault fault = slot.fault;
    if (slot.left && --*slot.left <= 0) {
        slot = {};
    }
    return fault;
}

nlohmann::json FaultPlan::toJson() const
{
    const auto show = [](const Slot &slot) {
        nlohmann::json left = nullptr;
        if (slot.left) {
            left = *slot.left;
        }
        return nlohmann::json{{"fault", faultText(slot.fault)}, {"timesLeft", left}};
    };
    const std::lock_guard<std::mutex> lock(m_mutex);
    nlohmann::json all = {{"any", show(m_any)}};
    for (int i = 0; i < callCount; ++i) {
        const auto call = static_cast<Call>(i);
        all[callName(call)] = show(m_calls.at(static_cast<std::size_t>(i)));
    }
    return all;
}

} // namespace demo
