#include "settings/station_settings.h"

#include "settings/conversions.h"

namespace rm8 {

StationSettings::StationSettings()
{
    tabOUTimpulsLEN.fill("2");
    tabAINHCL1Level.fill("0");
    tabAINHCL2Level.fill("0");
    // The level columns start at the ends of each input's measuring range,
    // written as the start-up fills them (" 0", " 100", " 27").
    for (std::size_t i = 0; i < kRows; ++i) {
        tabAINCL1Level[i] = startupNumberText(ranges[i].lower);
        tabAINCL2Level[i] = startupNumberText(ranges[i].upper);
    }
}

} // namespace rm8
