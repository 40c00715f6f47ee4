#include "link/session.h"

#include <array>

#include "flow/messages.h"
#include "link/frame.h"
#include "link/protocol_codes.h"
#include "link/station_tables.h"
#include "settings/conversions.h"
#include "settings/memory_sizes.h"

namespace rm8::link {
namespace {

using namespace std::chrono_literals;

constexpr std::array<std::uint8_t, 1> kAttention{protocol::kAttention};
constexpr std::array<std::uint8_t, 1> kIdentify{protocol::kIdentify};
constexpr std::array<std::uint8_t, 1> kConfiguration{protocol::kConfiguration};

constexpr std::string_view kProgrammableProduct = "RM8";
constexpr std::string_view kMinimumVersion = "1.0";

std::uint8_t pairAt(const std::vector<std::uint8_t>& reply, std::size_t index)
{
    if (index + 1 >= reply.size())
        return 0;
    return hexPairToByte(reply[index], reply[index + 1]);
}

Activation failed(LineIo& io)
{
    io.ui().hideProgress();
    io.ui().message(MessageIcon::Stop, messages::kActivationFailed);
    io.line().close();
    return {};
}

// Decides whether this tool may program the identified station.
bool judge(const StationIdentity& identity, Interaction& ui)
{
    if (identity.product == "?") {
        ui.message(MessageIcon::Information, messages::kUnknownDevice);
        return true;
    }
    if (identity.product != kProgrammableProduct) {
        ui.message(MessageIcon::Stop, messages::wrongProduct(kProgrammableProduct));
        return false;
    }
    if (textValue(identity.version) < textValue(kMinimumVersion)) {
        ui.message(MessageIcon::Stop, messages::oldProcessor(kMinimumVersion));
        return false;
    }
    return true;
}

} // namespace

std::string_view stateWord(ConnectionState state)
{
    switch (state) {
    case ConnectionState::Inactive:
        return "Neaktivni";
    case ConnectionState::Active:
        return "Aktivni";
    case ConnectionState::WrongVersion:
        return "Aktivni-spatna verze";
    }
    return "Neaktivni";
}

Activation activateLink(LineIo& io, std::string_view portName)
{
    Interaction& ui = io.ui();
    io.line().close();
    if (auto opened = io.line().open(); !opened) {
        ui.hideProgress();
        ui.message(MessageIcon::Stop, messages::portNotOpened(portName), opened.error());
        return {};
    }
    ui.message(MessageIcon::Information, messages::kConnectInstructions);
    io.flushInput();
    ui.showProgress(messages::kSearchingStation, true);
    ui.stationSearchStarted();

    // No limit on attempts: the technician ends the search with Storno.
    while (!io.exchange(kAttention, protocol::replyCode(protocol::kAttention), 500ms))
        if (ui.cancelRequested())
            return failed(io);
    if (ui.cancelRequested())
        return failed(io);

    Activation result;
    const auto identify = io.exchange(kIdentify, protocol::replyCode(protocol::kIdentify), 100ms);
    if (!identify)
        return failed(io);
    const std::uint32_t signature = pairAt(*identify, 1) + 256u * pairAt(*identify, 3) + 65536u * pairAt(*identify, 5);
    if (const auto product = productName(signature))
        result.identity.product = std::string(*product);
    result.identity.version =
        std::to_string(pairAt(*identify, 7)) + "." + std::to_string(pairAt(*identify, 9));
    const bool versionOk = judge(result.identity, ui);

    const auto configuration = io.exchange(kConfiguration, protocol::replyCode(protocol::kConfiguration), 100ms);
    if (!configuration)
        return failed(io);
    if (const auto size = memorySizeText(pairAt(*configuration, 1)))
        result.identity.memorySize = std::string(*size);
    if (const auto modem = modemText(pairAt(*configuration, 3)))
        result.identity.modem = std::string(*modem);

    result.state = versionOk ? ConnectionState::Active : ConnectionState::WrongVersion;
    ui.hideProgress();
    return result;
}

Leave leaveProgrammingMode(LineIo& io)
{
    io.flushInput();
    Leave result = Leave::Left;
    if (!io.exchange(protocol::kLeaveRequest, protocol::replyCode(protocol::kLeave), 100ms)) {
        const Answer answer = io.ui().ask(MessageIcon::Stop, messages::kLeaveFailedQuestion, Buttons::YesNo);
        if (answer != Answer::Yes)
            return Leave::Kept;
        result = Leave::GivenUp;
    }
    io.line().close();
    return result;
}

bool deactivateLink(LineIo& io)
{
    return leaveProgrammingMode(io) != Leave::Kept;
}

} // namespace rm8::link
