#include "editing/write_plan.h"

namespace rm8 {

WritePlan planWrite(const StationSettings& settings, std::optional<std::size_t> eepromSize)
{
    WritePlan plan;
    if (auto conflicts = outputCrossCheck(settings); !conflicts.empty()) {
        plan.conflict = std::move(conflicts.front());
        return plan;
    }
    if (eepromSize) {
        plan.tooBig = sizeCheck(settings, *eepromSize);
        if (plan.tooBig)
            return plan;
    }
    plan.violations = checkConfiguration(settings, eepromSize).violations.size();
    return plan;
}

} // namespace rm8
