#pragma once
// The two alarm levels of an analog input with their hystereses must lie in
// the measuring range, and the band of level 1 must lie below that of level 2.

#include <string_view>

#include "settings/measuring_range.h"

namespace rm8 {

inline constexpr std::string_view kLevelCheckMessage = "Hodnoty CL1, HCL1, CL2, HCL2 jsou chybně zadány.";

// Texts are read with a comma or a point as the decimal separator. Bands that
// just touch, or an edge on the end of the range, are allowed.
bool levelsConsistent(std::string_view cl1, std::string_view hcl1, std::string_view cl2, std::string_view hcl2,
                      const MeasuringRange& range);

} // namespace rm8
