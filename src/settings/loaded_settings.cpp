#include "settings/loaded_settings.h"

#include "settings/image_decoder.h"

namespace rm8 {

void takeBatteryTextFromRow(StationSettings& settings)
{
    settings.rtBattLow = settings.tabAINCL1Dn[kBatteryRow];
}

Expected<void, CodecError> decodeLoadedImage(const EepromImage& image, StationSettings& settings)
{
    StationSettings decoded = settings;
    if (auto result = decodeImage(image, decoded); !result)
        return result;
    takeBatteryTextFromRow(decoded);
    settings = std::move(decoded);
    return {};
}

} // namespace rm8
