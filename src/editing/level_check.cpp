#include "editing/level_check.h"

#include "settings/conversions.h"

namespace rm8 {

bool levelsConsistent(std::string_view cl1, std::string_view hcl1, std::string_view cl2, std::string_view hcl2,
                      const MeasuringRange& range)
{
    const double level1 = textValue(cl1);
    const double band1 = textValue(hcl1);
    const double level2 = textValue(cl2);
    const double band2 = textValue(hcl2);
    const bool wrong = level1 - band1 < range.lower || level1 + band1 > range.upper
                       || level2 - band2 < range.lower || level2 + band2 > range.upper
                       || level1 + band1 > level2 - band2;
    return !wrong;
}

} // namespace rm8
