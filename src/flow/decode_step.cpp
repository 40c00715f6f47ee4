#include "flow/decode_step.h"

#include "flow/messages.h"
#include "settings/loaded_settings.h"

namespace rm8 {

Expected<void, CodecError> decodeWithProgress(
    const EepromImage& image, StationSettings& settings, Interaction& ui, const DecodeWatch& watch)
{
    if (watch.converting)
        watch.converting();
    ui.showProgress(messages::kConvertingData, false);
    auto result = decodeLoadedImage(image, settings);
    ui.hideProgress();
    if (result && watch.decoded)
        watch.decoded(settings);
    return result;
}

} // namespace rm8
