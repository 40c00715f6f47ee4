// The link byte for byte and millisecond for millisecond: each transcript in
// data/wire names a station, its faults and the commands to run, and holds
// what must cross the line. The transcripts are made from the documented
// protocol by make_transcripts.py, not from this code.

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include <gtest/gtest.h>

#include "link/block_transfer.h"
#include "link/session.h"
#include "support/sim_line.h"
#include "support/test_data.h"

namespace rm8::test {
namespace {

Bytes pattern(std::size_t size, unsigned factor, unsigned add, unsigned mod)
{
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>((i * factor + add) % mod);
    return bytes;
}

std::vector<std::string> replay(std::istream& head)
{
    const std::map<std::string, sim::RequestFault> kinds{{"drop", sim::RequestFault::Drop},
                                                         {"garble", sim::RequestFault::Garble},
                                                         {"hangup", sim::RequestFault::HangUp},
                                                         {"store-other", sim::RequestFault::StoreOther}};
    sim::StationProfile profile;
    std::map<std::size_t, sim::RequestFault> faults;
    std::vector<std::string> runs;
    for (std::string line; std::getline(head, line) && !line.empty();) {
        std::istringstream in(line);
        std::string word, what;
        in >> word;
        if (word == "size-code") {
            unsigned code = 0;
            in >> code;
            profile.memorySizeCode = static_cast<std::uint8_t>(code);
        } else if (word == "fault") {
            std::size_t first = 0, last = 0;
            char dash = 0;
            in >> first;
            last = first;
            if (in.peek() == '-')
                in >> dash >> last;
            in >> what;
            for (std::size_t n = first; n <= last; ++n)
                faults[n] = kinds.at(what);
        } else if (word == "run") {
            std::getline(in >> std::ws, what);
            runs.push_back(what);
        } else if (word[0] != '#') {
            ADD_FAILURE() << "not a head line: " << line;
        }
    }
    sim::StationBehaviour behaviour;
    behaviour.faultFor = [faults](std::size_t n, std::span<const std::uint8_t>) {
        const auto it = faults.find(n);
        return it == faults.end() ? sim::RequestFault::None : it->second;
    };
    SimRig rig(profile, pattern(sim::memoryBytes(profile.memorySizeCode) + 64, 7, 3, 251), behaviour);
    EepromImage image;
    link::BlockTransfer transfer(rig.io, image);
    const auto said = [&](bool done) { rig.line.note(done ? "= true" : "= false"); };
    for (const auto& run : runs) {
        std::istringstream in(run);
        std::string command, option;
        std::size_t size = 0;
        in >> command >> option;
        size = std::strtoul(option.c_str(), nullptr, 10);
        in >> option;
        if (command == "activate") {
            rig.line.note("= " + std::string(link::stateWord(link::activateLink(rig.io, "COM 1").state)));
        } else if (command == "deactivate") {
            rig.ui.answers.push_back(option == "yes" ? Answer::Yes : Answer::No);
            said(link::deactivateLink(rig.io));
        } else if (command == "read") {
            image = EepromImage(0);
            said(transfer.readAllBlocks(size));
            rig.line.note("= image" + hexText(image.bytes().first(size)));
        } else if (command == "write") {
            const Bytes content = pattern(EepromImage::kSize, 11, 5, 256);
            std::copy(content.begin(), content.end(), image.bytes().begin());
            said(transfer.writeAllBlocks(size, option == "check"));
        } else {
            ADD_FAILURE() << "unknown command: " << run;
        }
    }
    return rig.line.transcript;
}

class Transcript : public testing::TestWithParam<std::string> {};

TEST_P(Transcript, IsWhatCrossesTheLine)
{
    std::ifstream file(dataDir() / "wire" / (GetParam() + ".txt"));
    ASSERT_TRUE(file) << GetParam();
    std::stringstream head;
    std::vector<std::string> expected;
    bool body = false;
    for (std::string line; std::getline(file, line);) {
        if (body)
            expected.push_back(line);
        else
            head << line << '\n';
        body = body || line.empty();
    }
    const auto got = replay(head);
    for (std::size_t i = 0; i < std::max(got.size(), expected.size()); ++i)
        ASSERT_EQ(i < got.size() ? got[i] : "(nothing)", i < expected.size() ? expected[i] : "(nothing)")
            << "line " << i + 1 << " of the transcript's body";
}

INSTANTIATE_TEST_SUITE_P(Wire, Transcript,
                         testing::Values("session", "read", "write", "write_checked", "hangup"),
                         [](const auto& row) { return row.param; });

} // namespace
} // namespace rm8::test
