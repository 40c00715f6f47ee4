#include "link/station_flows.h"

#include "editing/check_listing.h"
#include "editing/write_plan.h"
#include "flow/messages.h"
#include "link/block_transfer.h"
#include "settings/image_encoder.h"
#include "settings/image_header.h"
#include "settings/used_size.h"

namespace rm8::link {

FlowOutcome readStationImage(LineIo& io, EepromImage& image, std::size_t eepromSize)
{
    Interaction& ui = io.ui();
    BlockTransfer transfer(io, image);
    if (!transfer.readAllBlocks(eepromSize)) {
        ui.hideProgress();
        ui.message(MessageIcon::Stop, messages::kStationReadFailed);
        return FlowOutcome::Failed;
    }
    if (ui.cancelRequested()) {
        ui.hideProgress();
        ui.message(MessageIcon::Information, messages::kStationReadCancelled);
        return FlowOutcome::Declined;
    }
    return FlowOutcome::Done;
}

FlowOutcome readStation(LineIo& io, EepromImage& image, StationSettings& settings, std::size_t eepromSize,
                        const DecodeWatch& watch)
{
    Interaction& ui = io.ui();
    if (const FlowOutcome read = readStationImage(io, image, eepromSize); read != FlowOutcome::Done)
        return read;
    if (!imageHeaderValid(image)) {
        ui.hideProgress();
        ui.message(MessageIcon::Exclamation, messages::kStationNotProgrammed);
        return FlowOutcome::Rejected;
    }
    auto result = decodeWithProgress(image, settings, ui, watch);
    if (!result) {
        ui.message(MessageIcon::Stop, messages::kStationReadFailed, result.error().describe());
        return FlowOutcome::Failed;
    }
    ui.message(MessageIcon::Information, messages::kStationReadDone);
    return FlowOutcome::Done;
}

FlowOutcome writeStation(LineIo& io, EepromImage& image, const StationSettings& settings, std::size_t eepromSize,
                         bool checkWrite, const WriteGates& gates)
{
    Interaction& ui = io.ui();
    const WritePlan plan = planWrite(settings, eepromSize);
    if (plan.conflict) {
        ui.message(MessageIcon::Stop, plan.conflict->message);
        return FlowOutcome::Rejected;
    }
    if (plan.tooBig) {
        ui.hideProgress();
        ui.message(MessageIcon::Stop, plan.tooBig->message);
        return FlowOutcome::Rejected;
    }
    if (gates.askAboutViolations && plan.violations > 0
        && ui.ask(MessageIcon::Question, writeQuestion(plan.violations), Buttons::YesNoDefaultNo) != Answer::Yes)
        return FlowOutcome::Declined;
    if (gates.backUp)
        if (const FlowOutcome kept = gates.backUp(); kept != FlowOutcome::Done)
            return kept;
    // The transfer zeroes the header in the image while it writes, and a
    // read-back leaves there what the station held.
    const EepromImage given = image;
    auto encoded = encodeImage(settings, image);
    if (!encoded || !imageHeaderValid(image)) {
        image = given;
        ui.hideProgress();
        ui.message(MessageIcon::Stop, messages::kEepromConversionFailed,
                   encoded ? std::string() : encoded.error().describe());
        return FlowOutcome::Failed;
    }
    BlockTransfer transfer(io, image);
    if (!transfer.writeAllBlocks(usedSize(settings), checkWrite)) {
        ui.hideProgress();
        image = given;
        ui.message(MessageIcon::Stop, messages::kStationWriteFailed);
        return FlowOutcome::Failed;
    }
    if (ui.cancelRequested()) {
        ui.hideProgress();
        image = given;
        ui.message(MessageIcon::Information, messages::kStationWriteCancelled);
        return FlowOutcome::Declined;
    }
    ui.hideProgress();
    ui.message(MessageIcon::Information, messages::kStationWriteDone);
    return FlowOutcome::Done;
}

} // namespace rm8::link
