#include "flow/file_flows.h"

#include "flow/decode_step.h"
#include "flow/messages.h"
#include "platform/utf8_path.h"
#include "settings/image_encoder.h"
#include "settings/image_header.h"
#include "settings/settings_file.h"
#include "settings/used_size.h"

namespace rm8 {

namespace {

// The load flow hides the progress window once more when it ends, whichever
// way it ends.
class HideProgressAtEnd {
public:
    explicit HideProgressAtEnd(Interaction& ui) : ui_(ui) {}
    ~HideProgressAtEnd() { ui_.hideProgress(); }
    HideProgressAtEnd(const HideProgressAtEnd&) = delete;
    HideProgressAtEnd& operator=(const HideProgressAtEnd&) = delete;

private:
    Interaction& ui_;
};

} // namespace

FlowOutcome loadSettingsFile(const std::filesystem::path& path, EepromImage& image, StationSettings& settings,
                             Interaction& ui, const DecodeWatch& watch)
{
    const HideProgressAtEnd hideAtEnd(ui);
    const std::string name = platform::utf8FromPath(path);
    ui.showProgress(messages::loadingFile(name), false);
    auto read = readImageFile(path, image);
    if (!read) {
        ui.hideProgress();
        ui.message(MessageIcon::Stop, messages::loadFailed(name), read.error().describe());
        return FlowOutcome::Failed;
    }
    if (!imageHeaderValid(image)) {
        ui.hideProgress();
        ui.message(MessageIcon::Information, messages::notEepromFormat(name));
        return FlowOutcome::Rejected;
    }
    auto decoding = decodeWithProgress(image, settings, ui, watch);
    if (!decoding) {
        ui.message(MessageIcon::Stop, messages::loadFailed(name), decoding.error().describe());
        return FlowOutcome::Failed;
    }
    ui.message(MessageIcon::Information, messages::loadSucceeded(name));
    return FlowOutcome::Done;
}

FlowOutcome saveSettingsFile(const std::filesystem::path& path, EepromImage& image,
                             const StationSettings& settings, Interaction& ui)
{
    const std::string name = platform::utf8FromPath(path);
    ui.showProgress(messages::savingFile(name), false);
    auto encoded = encodeImage(settings, image);
    if (!encoded || !imageHeaderValid(image)) {
        ui.hideProgress();
        ui.message(MessageIcon::Stop, messages::kConversionFailed,
                   encoded ? std::string() : encoded.error().describe());
        return FlowOutcome::Failed;
    }
    std::error_code error;
    if (std::filesystem::exists(path, error)
        && ui.ask(MessageIcon::Question, messages::kOverwriteQuestion, Buttons::YesNo) != Answer::Yes) {
        ui.hideProgress();
        return FlowOutcome::Declined;
    }
    auto written = writeImageFile(path, image, usedSize(settings));
    ui.hideProgress();
    if (!written) {
        ui.message(MessageIcon::Stop, messages::saveFailed(name), written.error().describe());
        return FlowOutcome::Failed;
    }
    return FlowOutcome::Done;
}

} // namespace rm8
