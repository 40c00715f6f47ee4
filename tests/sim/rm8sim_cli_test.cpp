// rm8sim as a program: what the process adds to the simulated station, whose
// logic is tested in process. A wrong option is refused with its reason, the
// log holds every frame with its time, and the EEPROM file is saved however
// the program ends.

#include <csignal>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sys/wait.h>

#include <gtest/gtest.h>

#include "link/block_transfer.h"
#include "link/posix_serial_line.h"
#include "link/session.h"
#include "link/tracing_line.h"
#include "support/recording_interaction.h"
#include "support/sim_line.h"
#include "support/test_data.h"

namespace rm8::test {
namespace {

// rm8sim started by a shell that first prints its process number; the
// program's own first line is the device path, or why it refuses to start.
struct Rm8sim {
    explicit Rm8sim(const std::string& options)
        : out(::popen(("echo $$; exec " RM8SIM_PATH " " + options + " 2>&1").c_str(), "r"))
        , pid(std::stoi(line()))
        , first(line())
    {
    }
    std::string line()
    {
        char text[512] = {};
        return std::fgets(text, sizeof text, out) ? std::string(text, std::strcspn(text, "\n")) : "";
    }
    // Waits for the end; what it said after its first line is kept.
    int exitStatus()
    {
        for (std::string more; !(more = line()).empty();)
            said += more + "\n";
        const int status = ::pclose(out);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    FILE* out;
    pid_t pid;
    std::string first, said;
};

TEST(Rm8sim, RefusesAWrongOptionWithStatusTwoAndOneLineSayingWhy)
{
    for (const auto& [options, named] : std::vector<std::pair<std::string, std::string>>{
             {"--line-rate 0", "--line-rate"}, {"--write-time 5", "--line-rate"}, {"--drop-every x", "--drop-every"},
             {"--hangup-after -1", "--hangup-after"}, {"--size-code 10", "--size-code"}, {"--bogus 1", "--bogus"},
             {"--late-every", "--late-every"}, {"--log /no-such-dir/frames.log", "/no-such-dir/frames.log"}}) {
        Rm8sim sim(options);
        EXPECT_EQ(sim.exitStatus(), 2) << options;
        EXPECT_TRUE(sim.first.starts_with("rm8sim: ") && sim.first.find(named) != std::string::npos) << sim.first;
        EXPECT_EQ(sim.said, "") << "one line, and no device offered";
    }
}

TEST(Rm8sim, LogsEveryFrameAndWhenItHangsUpSavesTheEepromAndRemovesItsLink)
{
    ScratchDir dir;
    std::vector<char> eeprom(512, 0x11);
    writeBytes(dir / "station.eep", eeprom);
    writeBytes(dir / "frames.log", {'o', 'l', 'd', '\n'});
    Rm8sim sim("--eeprom " + (dir / "station.eep").string() + " --log " + (dir / "frames.log").string() + " --link "
        + (dir / "rm8").string() + " --size-code 2 --type RMA8 --version 2.5 --modem 33 --hangup-after 2");
    EXPECT_EQ(std::filesystem::read_symlink(dir / "rm8"), sim.first);
    link::PosixSerialLine posix((dir / "rm8").string());
    std::vector<std::string> seen; // by the tool
    link::TracingLine line(posix, [&](link::FrameDirection d, std::span<const std::uint8_t> bytes) {
        seen.push_back((d == link::FrameDirection::ToStation ? " >" : " <") + hexText(bytes));
    });
    RecordingInteraction ui;
    link::LineIo io(line, ui);
    const auto id = link::activateLink(io, "COM 1").identity;
    EXPECT_EQ(std::vector<std::string>({id.product, id.version, id.memorySize, id.modem}),
        std::vector<std::string>({"RMA8", "2.5", "   448 byte", "GM25 Ericsson"}));
    EepromImage image(0x77);
    EXPECT_TRUE(link::BlockTransfer(io, image).writeBlock(272));
    (void)link::BlockTransfer(io, image).readBlock(0); // its reply may be lost as the line goes dead
    EXPECT_EQ(sim.exitStatus(), 0) << "it ends by itself once it has hung up";
    EXPECT_NE(sim.said.find("linka zavěšena po 2 požadavcích"), std::string::npos) << sim.said;
    std::fill_n(eeprom.begin() + 272, 8, 0x77);
    EXPECT_EQ(readBytes(dir / "station.eep"), eeprom);
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(dir / "rm8"))) << "the link goes with it";

    seen.resize(9); // three exchanges of the session, a write, the read request
    seen.insert(seen.end(),
        {" < 84 31 31 31 31 31 31 31 31 31 31 31 31 31 31 31 31 95 0D", " # line hung up after 2 block requests"});
    std::ifstream log(dir / "frames.log");
    std::vector<std::string> logged;
    for (std::string entry; std::getline(log, entry); logged.push_back(entry.substr(26)))
        EXPECT_TRUE(std::regex_match(entry.substr(0, 26), std::regex(R"(\d{4}(-\d\d){2} (\d\d:){2}\d\d\.\d{6})")));
    EXPECT_EQ(logged, seen);
    EXPECT_EQ(seen[0], " > 01 02 0D");
}

TEST(Rm8sim, CtrlCEndsItSavingTheEeprom)
{
    ScratchDir dir;
    Rm8sim sim("--eeprom " + (dir / "new.eep").string() + " --size-code 2");
    ASSERT_TRUE(sim.first.starts_with("/dev/")) << sim.first;
    ::kill(sim.pid, SIGINT);
    EXPECT_EQ(sim.exitStatus(), 0) << sim.said;
    EXPECT_EQ(readBytes(dir / "new.eep"), std::vector<char>(512, char(0xFF))) << "an EEPROM never written";
}

} // namespace
} // namespace rm8::test
