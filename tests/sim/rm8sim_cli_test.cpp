// rm8sim as a program: the options are the point here. The binary is started
// as a technician would start it, its first line names the device, and the
// link's flows talk to it through a real pseudo-terminal.

#include <algorithm>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "link/block_transfer.h"
#include "link/fake_station.h"
#include "link/posix_serial_line.h"
#include "link/session.h"
#include "link/station_flows.h"
#include "settings/image_encoder.h"
#include "settings/image_header.h"
#include "sim/wire.h"

extern char** environ;

namespace rm8::link {
namespace {

namespace fs = std::filesystem;
namespace wire = test::wire;
using namespace std::chrono_literals;
using test::Bytes;
using test::RecordingInteraction;
using SteadyClock = std::chrono::steady_clock;

const std::string kActivationFailed = "Při pokusu aktivovat spojení nastala chyba.";
const std::string kNotProgrammed = "Data nebyla úspěšně načtena z EEPROM. EEPROM zřejmě není naprogramována.";
const std::string kWriteDone = "Data byla úspěšně uložena do EEPROM.";
const std::string kWriteFailed = "Data nebyla úspěšně uložena do EEPROM. Došlo k chybě při ukládání bloku do EEPROM.";

std::string readAll(int fd)
{
    std::string out;
    char buffer[4096];
    for (ssize_t n; (n = ::read(fd, buffer, sizeof buffer)) > 0;)
        out.append(buffer, static_cast<std::size_t>(n));
    return out;
}

// rm8sim in a process of its own. The device path is the first line of its
// standard output; standard error is kept for the end.
class Rm8sim {
public:
    explicit Rm8sim(std::vector<std::string> options)
    {
        int out[2];
        int err[2];
        if (::pipe2(out, O_CLOEXEC) != 0 || ::pipe2(err, O_CLOEXEC) != 0)
            throw std::runtime_error("pipe2");
        options.insert(options.begin(), RM8SIM_PATH);
        std::vector<char*> argv;
        for (auto& o : options)
            argv.push_back(o.data());
        argv.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_adddup2(&actions, out[1], 1);
        posix_spawn_file_actions_adddup2(&actions, err[1], 2);
        const int failed = ::posix_spawn(&pid_, RM8SIM_PATH, &actions, nullptr, argv.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        ::close(out[1]);
        ::close(err[1]);
        out_ = out[0];
        err_ = err[0];
        if (failed != 0)
            throw std::runtime_error(std::string("posix_spawn: ") + std::strerror(failed));
        // The first line, or end of output when the program refuses to start.
        const auto giveUp = SteadyClock::now() + 20s;
        char c = 0;
        while (SteadyClock::now() < giveUp) {
            pollfd waiting{out_, POLLIN, 0};
            if (::poll(&waiting, 1, 100) <= 0)
                continue;
            if (::read(out_, &c, 1) != 1)
                break;
            if (c == '\n') {
                lineComplete_ = true;
                break;
            }
            firstLine_ += c;
        }
    }
    ~Rm8sim()
    {
        if (!exited_) {
            ::kill(pid_, SIGTERM);
            (void)waitExit(20s);
        }
        ::close(out_);
        ::close(err_);
    }

    bool started() const { return lineComplete_; }
    const std::string& path() const { return firstLine_; }

    // Ends it as Ctrl-C would.
    int stop()
    {
        ::kill(pid_, SIGINT);
        return waitExit(20s);
    }

    // The exit status once it has ended by itself, or -1 after the timeout.
    int waitExit(std::chrono::seconds timeout)
    {
        const auto giveUp = SteadyClock::now() + timeout;
        while (!exited_) {
            int status = 0;
            const pid_t done = ::waitpid(pid_, &status, WNOHANG);
            if (done == pid_) {
                exited_ = true;
                status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
                rest_ = readAll(out_);
                errors_ = readAll(err_);
                break;
            }
            if (SteadyClock::now() > giveUp)
                return -1;
            std::this_thread::sleep_for(20ms);
        }
        return status_;
    }
    const std::string& errors() const { return errors_; }
    const std::string& restOfOutput() const { return rest_; }

private:
    pid_t pid_ = -1;
    int out_ = -1;
    int err_ = -1;
    std::string firstLine_;
    bool lineComplete_ = false;
    bool exited_ = false;
    int status_ = -1;
    std::string errors_;
    std::string rest_;
};

struct Tool {
    explicit Tool(const std::string& path) : line(path) {}
    Activation activate() { return activateLink(io, "COM 1"); }
    PosixSerialLine line;
    RecordingInteraction ui;
    LineIo io{line, ui};
};

struct TempDir {
    TempDir()
    {
        std::string pattern = (fs::temp_directory_path() / "rm8sim-test-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr)
            throw std::runtime_error("mkdtemp");
        path = pattern;
    }
    ~TempDir()
    {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
    fs::path operator/(const std::string& name) const { return path / name; }
    fs::path path;
};

StationSettings configured()
{
    StationSettings s;
    s.tabJmenoStanice = "Vrt 3";
    s.tabOUTNazev[0] = "PUMPA";
    s.tabTC[0] = "+420602123456";
    return s;
}

std::string hexLine(const Bytes& bytes)
{
    std::string out;
    char pair[4];
    for (const auto b : bytes) {
        std::snprintf(pair, sizeof pair, " %02X", b);
        out += pair;
    }
    return out;
}

std::vector<std::string> linesOf(const fs::path& file)
{
    std::ifstream in(file);
    std::vector<std::string> out;
    for (std::string line; std::getline(in, line);)
        out.push_back(line);
    return out;
}

// ---- starting ----

TEST(Rm8simProgram, FirstLineIsTheDeviceAndTheLinkPointsToIt)
{
    TempDir dir;
    const fs::path link = dir / "rm8";
    Rm8sim sim({"--link", link.string()});
    ASSERT_TRUE(sim.started()) << sim.path();
    EXPECT_EQ(sim.path().rfind("/dev/", 0), 0u) << sim.path();
    struct stat info {};
    ASSERT_EQ(::stat(sim.path().c_str(), &info), 0);
    EXPECT_TRUE(S_ISCHR(info.st_mode));
    EXPECT_EQ(fs::read_symlink(link).string(), sim.path());
    Tool tool(link.string());
    EXPECT_EQ(tool.activate().state, ConnectionState::Active);
    EXPECT_EQ(sim.stop(), 0) << sim.errors();
    EXPECT_FALSE(fs::exists(fs::symlink_status(link))) << "the link goes with the program";
}

struct RefusedRow {
    const char* name;
    std::vector<std::string> options;
    std::string mentions;
};

class RefusedOptions : public ::testing::TestWithParam<RefusedRow> {};

TEST_P(RefusedOptions, EndWithStatusTwoAndOneLineOnStandardError)
{
    Rm8sim sim(GetParam().options);
    EXPECT_FALSE(sim.started());
    EXPECT_EQ(sim.waitExit(20s), 2);
    EXPECT_EQ(sim.path() + sim.restOfOutput(), "") << "no device is offered";
    EXPECT_EQ(sim.errors().rfind("rm8sim: ", 0), 0u) << sim.errors();
    EXPECT_NE(sim.errors().find(GetParam().mentions), std::string::npos) << sim.errors();
    EXPECT_EQ(std::count(sim.errors().begin(), sim.errors().end(), '\n'), 1) << sim.errors();
}

INSTANTIATE_TEST_SUITE_P(
    Rm8simProgram, RefusedOptions,
    ::testing::Values(RefusedRow{"ZeroLineRate", {"--line-rate", "0"}, "--line-rate"},
                      RefusedRow{"WriteTimeWithoutEmulation", {"--write-time", "5"}, "--line-rate"},
                      RefusedRow{"DropEveryNotANumber", {"--drop-every", "x"}, "--drop-every"},
                      RefusedRow{"NegativeHangUp", {"--hangup-after", "-1"}, "--hangup-after"},
                      RefusedRow{"SizeCodeTen", {"--size-code", "10"}, "--size-code"},
                      RefusedRow{"UnknownOption", {"--bogus", "1"}, "--bogus"},
                      RefusedRow{"MissingValue", {"--late-every"}, "--late-every"}),
    [](const ::testing::TestParamInfo<RefusedRow>& row) { return std::string(row.param.name); });

// ---- the frame log ----

TEST(Rm8simProgram, LogHoldsEveryFrameInAndOutWithItsTime)
{
    TempDir dir;
    const fs::path log = dir / "frames.log";
    Rm8sim sim({"--log", log.string(), "--size-code", "6", "--modem", "4"});
    ASSERT_TRUE(sim.started());
    Tool tool(sim.path());
    ASSERT_EQ(tool.activate().state, ConnectionState::Active);
    ASSERT_TRUE(deactivateLink(tool.io));
    EXPECT_EQ(sim.stop(), 0);

    Bytes identify{130};
    for (const std::uint8_t b : Bytes{0x82, 0xD3, 0x20, 0x01, 0x00})
        test::appendHex(identify, b);
    Bytes configuration{131};
    test::appendHex(configuration, 6);
    test::appendHex(configuration, 4);
    const std::vector<std::string> expected{
        " >" + hexLine(wire::frame({1})),          " <" + hexLine(wire::frame({129})),
        " >" + hexLine(wire::frame({2})),          " <" + hexLine(wire::frame(identify)),
        " >" + hexLine(wire::frame({3})),          " <" + hexLine(wire::frame(configuration)),
        " >" + hexLine(wire::frame({6, 170, 85})), " <" + hexLine(wire::frame({134})),
    };
    EXPECT_EQ(expected[0], " > 01 02 0D");
    const auto lines = linesOf(log);
    ASSERT_EQ(lines.size(), expected.size());
    const std::regex time(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{6})");
    std::string previous;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        ASSERT_GT(lines[i].size(), 26u) << lines[i];
        const std::string stamp = lines[i].substr(0, 26);
        EXPECT_TRUE(std::regex_match(stamp, time)) << lines[i];
        EXPECT_GE(stamp, previous) << "in the order they crossed the line";
        previous = stamp;
        EXPECT_EQ(lines[i].substr(26), expected[i]);
    }
}

TEST(Rm8simProgram, LogNotesTheFaultsPlayed)
{
    TempDir dir;
    const fs::path log = dir / "frames.log";
    Rm8sim sim({"--log", log.string(), "--drop-every", "2"});
    ASSERT_TRUE(sim.started());
    Tool tool(sim.path());
    EXPECT_EQ(tool.activate().state, ConnectionState::Inactive);
    EXPECT_EQ(sim.stop(), 0);
    const auto lines = linesOf(log);
    // Attention, its reply, the identification, the note instead of its reply.
    ASSERT_GE(lines.size(), 4u);
    EXPECT_EQ(lines[2].substr(26), " > 02 03 0D");
    EXPECT_EQ(lines[3].substr(26), " # reply dropped");
}

// ---- faults chosen by option ----

struct FaultRow {
    const char* name;
    std::vector<std::string> options;
    ConnectionState state;
    std::string lastMessage;
};

class FaultOptions : public ::testing::TestWithParam<FaultRow> {};

TEST_P(FaultOptions, ShapeTheSession)
{
    Rm8sim sim(GetParam().options);
    ASSERT_TRUE(sim.started()) << sim.path();
    Tool tool(sim.path());
    EXPECT_EQ(stateWord(tool.activate().state), stateWord(GetParam().state));
    ASSERT_FALSE(tool.ui.messages.empty());
    EXPECT_EQ(tool.ui.messages.back().text, GetParam().lastMessage);
}

const std::string kInstructions = "Uveďte zařízení do vypnutého stavu (CPU LED svítí trvale).\r\n"
                                  "Pokud zařízení není vypnuto, vypnete jej stiskem tlačítka 'GSM OFF'.\r\n"
                                  "Poté připojte konfigurační kabel a potvrďte 'OK'.";

INSTANTIATE_TEST_SUITE_P(
    Rm8simProgram, FaultOptions,
    ::testing::Values(
        FaultRow{"SilentForTwoAttentions", {"--silent-attention", "2"}, ConnectionState::Active, kInstructions},
        FaultRow{"IdentifyReplyDropped", {"--drop-every", "2"}, ConnectionState::Inactive, kActivationFailed},
        FaultRow{"ConfigurationReplyGarbled", {"--bad-checksum-every", "3"}, ConnectionState::Inactive, kActivationFailed},
        FaultRow{"IdentifyReplyLate", {"--late-every", "2", "--late-by", "300"}, ConnectionState::Inactive,
                 kActivationFailed},
        FaultRow{"OldProcessor", {"--version", "0.9"}, ConnectionState::WrongVersion,
                 "Touto verzí programu lze naprogramovat pouze zařízení s procesorem verze 1.0 a vyšší."}),
    [](const ::testing::TestParamInfo<FaultRow>& row) { return std::string(row.param.name); });

TEST(Rm8simProgram, CorruptWritesAreCaughtOnlyWithReadBack)
{
    for (const bool check : {false, true}) {
        Rm8sim sim({"--corrupt-writes", "--size-code", "3"});
        ASSERT_TRUE(sim.started());
        Tool tool(sim.path());
        ASSERT_EQ(tool.activate().state, ConnectionState::Active);
        EepromImage image;
        EXPECT_EQ(writeStation(tool.io, image, configured(), 960, check),
                  check ? FlowOutcome::Failed : FlowOutcome::Done);
        EXPECT_EQ(tool.ui.messages.back().text, check ? kWriteFailed : kWriteDone);
    }
}

// ---- a station that hangs up ----

TEST(Rm8simProgram, HangUpEndsTheWriteAndTheSavedEepromReadsAsNotProgrammed)
{
    TempDir dir;
    const fs::path eep = dir / "station.eep";
    {
        EepromImage image(0xFF);
        ASSERT_TRUE(encodeImage(configured(), image));
        std::ofstream out(eep, std::ios::binary);
        out.write(reinterpret_cast<const char*>(image.bytes().data()), 1024);
    }
    {
        Rm8sim sim({"--eeprom", eep.string(), "--size-code", "3", "--hangup-after", "30"});
        ASSERT_TRUE(sim.started());
        Tool tool(sim.path());
        ASSERT_EQ(tool.activate().state, ConnectionState::Active);
        EepromImage image;
        const auto started = SteadyClock::now();
        EXPECT_EQ(writeStation(tool.io, image, configured(), 960, false), FlowOutcome::Failed);
        EXPECT_LT(SteadyClock::now() - started, 60s) << "the tool must not hang on a dead line";
        EXPECT_EQ(tool.ui.messages.back().text, kWriteFailed);
        // The program ends by itself once it has hung up, saving the EEPROM.
        EXPECT_EQ(sim.waitExit(30s), 0) << sim.errors();
        EXPECT_NE(sim.errors().find("zavěšena po 30 "), std::string::npos) << sim.errors();
    }
    Rm8sim again({"--eeprom", eep.string(), "--size-code", "3"});
    ASSERT_TRUE(again.started());
    Tool tool(again.path());
    ASSERT_EQ(tool.activate().state, ConnectionState::Active);
    EepromImage image;
    StationSettings settings;
    EXPECT_EQ(readStation(tool.io, image, settings, 960), FlowOutcome::Rejected);
    EXPECT_EQ(tool.ui.messages.back().text, kNotProgrammed);
}

// ---- line-rate emulation ----

struct RateRow {
    const char* name;
    std::vector<std::string> options;
    bool write;                       // three block writes, else a read of 64 bytes
    std::chrono::milliseconds atLeast; // what the emulated line cannot beat
};

class LineRate : public ::testing::TestWithParam<RateRow> {};

// Only a lower bound: a loaded machine may be slower, never faster than the
// line it emulates.
TEST_P(LineRate, RepliesComeNoSoonerThanTheLineCouldCarryThem)
{
    std::vector<std::string> options = GetParam().options;
    options.insert(options.end(), {"--size-code", "0"});
    Rm8sim sim(options);
    ASSERT_TRUE(sim.started());
    Tool tool(sim.path());
    ASSERT_EQ(tool.activate().state, ConnectionState::Active);
    EepromImage image;
    BlockTransfer transfer(tool.io, image);
    const auto started = SteadyClock::now();
    if (GetParam().write) {
        for (const std::uint16_t a : std::vector<std::uint16_t>{272, 280, 288})
            ASSERT_TRUE(transfer.writeBlock(a));
    } else {
        ASSERT_TRUE(transfer.readAllBlocks(64));
    }
    EXPECT_GE(SteadyClock::now() - started, GetParam().atLeast);
}

INSTANTIATE_TEST_SUITE_P(
    Rm8simProgram, LineRate,
    ::testing::Values(
        // Eight exchanges of 7 + 19 bytes: 2,080 bits.
        RateRow{"Read9600", {"--line-rate", "9600"}, false, 216ms},
        // Half the rate, twice the time; still inside the tool's 100 ms wait.
        RateRow{"Read4800", {"--line-rate", "4800"}, false, 433ms},
        // Three exchanges of 23 + 3 bytes at 115,200 baud and 60 ms per block.
        RateRow{"WriteTime", {"--line-rate", "115200", "--write-time", "60"}, true, 180ms}),
    [](const ::testing::TestParamInfo<RateRow>& row) { return std::string(row.param.name); });

} // namespace
} // namespace rm8::link
