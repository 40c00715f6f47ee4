// The link against the simulated station, case by case from data files. A
// case's head sets the station up and names the commands to run; its body is
// what must happen, line by line, of the kinds of line it holds: what crosses
// the line and the waits ("open", ">", "<", "~", "hang-up"), what the
// technician sees ("progress", "hide", "blocks", "message", "ask"), and what
// each command returns ("="). The transcripts in data/wire are written from
// the documented protocol by make_transcripts.py; the cases in data/link by
// hand. Cases are separated by "----".

#include <fstream>
#include <map>
#include <sstream>

#include <gtest/gtest.h>

#include "fields/settings_json.h"
#include "link/block_transfer.h"
#include "link/session.h"
#include "link/station_flows.h"
#include "settings/image_decoder.h"
#include "support/sim_line.h"
#include "support/test_data.h"

namespace rm8::test {
namespace {

// Sets up and runs what a case's head says; the result is all that happened.
std::vector<std::string> replay(const std::vector<std::string>& head)
{
    using enum sim::RequestFault;
    const std::map<std::string, sim::RequestFault> kinds { { "drop", Drop }, { "garble", Garble }, { "late", Late },
        { "hangup", HangUp }, { "store-other", StoreOther }, { "twice", Twice } };
    sim::StationProfile profile;
    sim::StationBehaviour behaviour;
    StationSettings given; // what the commands write and a read may replace
    for (const auto& line : head) {
        std::istringstream in(line);
        std::string word;
        unsigned a = 0, b = 0;
        if (in >> word && word == "signature")
            in >> profile.signature;
        if (word == "version" && in >> a >> b)
            profile.versionMajor = std::uint8_t(a), profile.versionMinor = std::uint8_t(b);
        if ((word == "size-code" || word == "modem") && in >> a)
            (word == "modem" ? profile.modemCode : profile.memorySizeCode) = std::uint8_t(a);
        if (word == "settings")
            given = parseSettingsJson(line.substr(9)).value();
        if (word == "late-by" && in >> a)
            behaviour.faults.lateBy = std::chrono::milliseconds(a);
    }
    const std::size_t size = sim::memoryBytes(profile.memorySizeCode) + 64;
    const bool blank = std::ranges::count(head, "blank-eeprom") != 0;
    SimRig rig(profile, blank ? Bytes(size, 0xFF) : pattern(size, 7, 3, 251), behaviour);
    rig.line.refuseOpen = std::ranges::count(head, "refuse-open") != 0;
    if (std::ranges::count(head, "run activate") != 0)
        rig.line.close(); // as before a session; the block commands find it open
    rig.line.transcript.clear();
    EepromImage image, written;
    link::BlockTransfer transfer(rig.io, image);
    const auto said = [&](const std::string& what) { rig.line.note("= " + what); };
    auto counted = [&, before = std::size_t { 0 }]() mutable {
        const std::size_t handled = rig.line.station.framesHandled();
        rig.line.note("requests " + std::to_string(handled - std::exchange(before, handled)));
    };
    const auto port = [&] { return rig.line.isOpen() ? "|open" : "|closed"; };
    const auto outcome = [](FlowOutcome o) {
        return std::array { "Done", "Declined", "Rejected", "Failed" }[std::size_t(o)];
    };
    for (const auto& line : head) {
        std::istringstream in(line);
        std::string word, command, option, check;
        std::size_t a = 0, b = 0;
        if (in >> word && word == "storno")
            in >> rig.stornoAt;
        if (word == "fault" && in >> a) {
            if (in.peek() != '-' || !(in.ignore() >> b))
                b = a;
            for (in >> word; a <= b; ++a)
                rig.faults[a] = kinds.at(word);
        }
        if (word != "run")
            continue;
        in >> command >> option >> check >> word;
        const std::size_t number = std::strtoul(option.c_str(), nullptr, 10);
        if (command == "activate") {
            const auto [state, id] = link::activateLink(rig.io, "COM 1");
            said(std::string(link::stateWord(state)) + "|" + id.product + "|" + id.version + "|" + id.memorySize + "|"
                + id.modem + port());
        } else if (command == "deactivate") {
            rig.answer = option == "yes" ? Answer::Yes : Answer::No;
            const bool left = link::deactivateLink(rig.io);
            said((left ? "true" : "false") + std::string(port()));
        } else if (command == "read") {
            image = EepromImage(0);
            said(transfer.readAllBlocks(number) ? "true" : "false");
            counted();
            said("image" + hexText(image.bytes().first(number)));
        } else if (command == "write") {
            const Bytes content = pattern(EepromImage::kSize, 3, 4, 256);
            std::copy(content.begin(), content.end(), image.bytes().begin());
            said(transfer.writeAllBlocks(number, check == "check") ? "true" : "false");
            counted();
        } else if (command == "read-station") {
            StationSettings settings = given, decoded;
            const auto done = link::readStation(rig.io, image, settings, number);
            const bool asWritten = decodeImage(written, decoded).hasValue() && settings == decoded;
            said(outcome(done)
                + std::string(settings == given ? " settings unchanged"
                        : asWritten             ? " settings as written"
                                                : " settings changed"));
        } else if (command == "write-station") {
            said(outcome(link::writeStation(rig.io, written, given, number, check == "check")));
        } else {
            ADD_FAILURE() << "unknown command: " << line;
        }
    }
    return rig.line.transcript;
}

class Cases : public testing::TestWithParam<std::string> { };

TEST_P(Cases, HappenLineByLineAsTheirDataFileSays)
{
    std::ifstream file(dataDir() / (GetParam() + ".txt"));
    std::vector<std::pair<std::vector<std::string>, std::vector<std::string>>> cases(1);
    bool body = false;
    for (std::string line; std::getline(file, line);) {
        if (line == "----")
            cases.emplace_back(), body = false;
        else if (!body && line.empty())
            body = true;
        else if (!line.empty())
            (body ? cases.back().second : cases.back().first).push_back(line);
    }
    for (const auto& [head, expected] : cases) {
        ASSERT_FALSE(expected.empty()) << GetParam() << ": a case without a body";
        const auto kind = [](const std::string& line) { return line.substr(0, line.find_first_of(" :")); };
        std::vector<std::string> got;
        for (const auto& line : replay(head))
            if (std::ranges::any_of(expected, [&](const auto& e) { return kind(e) == kind(line); }))
                got.push_back(line);
        for (std::size_t i = 0; i < std::max(got.size(), expected.size()); ++i)
            ASSERT_EQ(i < got.size() ? got[i] : "(nothing)", i < expected.size() ? expected[i] : "(nothing)")
                << "line " << i + 1 << " of the body of the case that begins " << head.front();
    }
}

INSTANTIATE_TEST_SUITE_P(Link, Cases,
    testing::Values("wire/session", "wire/read", "wire/write", "wire/data_pass", "wire/write_checked", "wire/hangup",
        "link/session", "link/station_flows", "link/block_transfer"),
    [](const auto& row) { return row.param.substr(0, 4) + "_" + row.param.substr(5); });

} // namespace
} // namespace rm8::test
