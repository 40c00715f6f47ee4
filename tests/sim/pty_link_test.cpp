// The link's flows on a real pseudo-terminal against the simulated station,
// grouped by flow: the bytes on the wire, the session, the three write
// passes, retries after faults, read-back, a write cut short by a hang-up,
// and replies that are garbage. What the in-process protocol tests already
// pin (every retry wait, every message variant) is not repeated; here the
// point is that the same holds through the kernel's terminal layer, with its
// chunking and timing, and with the station on its own thread.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include "link/block_transfer.h"
#include "link/fake_station.h"
#include "link/posix_serial_line.h"
#include "link/session.h"
#include "link/station_flows.h"
#include "settings/image_encoder.h"
#include "settings/image_header.h"
#include "settings/used_size.h"
#include "sim/pty_station.h"
#include "sim/wire.h"

namespace rm8::link {
namespace {

using namespace std::chrono_literals;
using test::Bytes;
using test::RecordingInteraction;
namespace wire = test::wire;
using SteadyClock = std::chrono::steady_clock;

const std::string kInstructions = "Uveďte zařízení do vypnutého stavu (CPU LED svítí trvale).\r\n"
                                  "Pokud zařízení není vypnuto, vypnete jej stiskem tlačítka 'GSM OFF'.\r\n"
                                  "Poté připojte konfigurační kabel a potvrďte 'OK'.";
const std::string kActivationFailed = "Při pokusu aktivovat spojení nastala chyba.";
const std::string kNotProgrammed = "Data nebyla úspěšně načtena z EEPROM. EEPROM zřejmě není naprogramována.";
const std::string kReadFailed = "Data nebyla úspěšně načtena z EEPROM. Došlo k chybě při načítání bloku dat.";
const std::string kWriteDone = "Data byla úspěšně uložena do EEPROM.";
const std::string kWriteFailed = "Data nebyla úspěšně uložena do EEPROM. Došlo k chybě při ukládání bloku do EEPROM.";

// Generous: only a hang must be caught, never a slow machine.
constexpr auto kHangGuard = 60s;

sim::StationProfile profileWithSize(std::uint8_t code)
{
    sim::StationProfile profile;
    profile.memorySizeCode = code;
    return profile;
}

// A station on a pseudo-terminal and the tool's side of the line.
struct Rig {
    explicit Rig(sim::StationProfile profile = profileWithSize(2), sim::StationBehaviour behaviour = {},
                 Bytes eeprom = {})
        : station(sim::StationSimulator(profile, std::move(eeprom), behaviour))
    {
        station.start();
    }

    Activation activate() { return activateLink(io, "COM 1"); }

    sim::PtyStation station;
    PosixSerialLine line{station.path()};
    RecordingInteraction ui;
    LineIo io{line, ui};
};

// Presses Storno after a number of turns of the user interface.
class StornoAfter : public RecordingInteraction {
public:
    explicit StornoAfter(int turns) : turns_(turns) {}
    bool cancelRequested() override
    {
        if (cancelPolls + 1 >= turns_)
            cancel = true;
        return RecordingInteraction::cancelRequested();
    }

private:
    int turns_;
};

sim::StationBehaviour withFaults(sim::StationFaults faults)
{
    sim::StationBehaviour behaviour;
    behaviour.faults = faults;
    return behaviour;
}

StationSettings configured()
{
    StationSettings s;
    s.tabJmenoStanice = "Vrt 3";
    s.tabINPNazev[0] = "DVERE";
    s.tabOUTNazev[0] = "PUMPA";
    s.tabOUTZap[0] = "ZAP";
    s.tabOUTVyp[0] = "VYP";
    s.tabTC[0] = "+420602123456";
    s.tabTCPrijem[0] = true;
    return s;
}

// A station's EEPROM holding a valid configuration.
Bytes programmedEeprom(std::size_t settingsArea)
{
    EepromImage image(0xFF);
    EXPECT_TRUE(encodeImage(configured(), image));
    EXPECT_TRUE(imageHeaderValid(image));
    return Bytes(image.bytes().begin(), image.bytes().begin() + static_cast<long>(settingsArea + 64));
}

std::vector<std::string> texts(const std::vector<RecordingInteraction::Shown>& shown)
{
    std::vector<std::string> out;
    for (const auto& s : shown)
        out.push_back(s.text);
    return out;
}

// ---- the bytes on the wire ----

TEST(OnTheWire, ActivationReadAndReleaseSendExactlyTheDocumentedFrames)
{
    Rig rig(profileWithSize(0)); // 64 bytes: eight blocks
    ASSERT_EQ(rig.activate().state, ConnectionState::Active);
    EepromImage image;
    StationSettings settings;
    EXPECT_EQ(readStation(rig.io, image, settings, 64), FlowOutcome::Rejected);
    EXPECT_TRUE(deactivateLink(rig.io));

    std::vector<Bytes> frames{wire::frame({1}), wire::frame({2}), wire::frame({3})};
    for (std::uint16_t a = 0; a < 64; a = static_cast<std::uint16_t>(a + 8))
        frames.push_back(wire::frame(wire::addressed(4, a)));
    frames.push_back(wire::frame({6, 170, 85}));
    const Bytes received = rig.station.received();
    ASSERT_GE(received.size(), 3u);
    EXPECT_EQ(Bytes(received.begin(), received.begin() + 3), (Bytes{0x01, 0x02, 0x0D})) << "the attention request";
    EXPECT_EQ(received, wire::join(frames));
}

TEST(OnTheWire, WriteRequestCarriesAddressLowByteFirstAndTheBlockInUpperCaseHex)
{
    Rig rig;
    ASSERT_EQ(rig.activate().state, ConnectionState::Active);
    EepromImage image;
    const Bytes block{0x00, 0x0A, 0xAB, 0xFF, 0x10, 0x0D, 0x5C, 0xE7};
    std::copy(block.begin(), block.end(), image.bytes().begin() + 0x0118);
    BlockTransfer transfer(rig.io, image);
    ASSERT_TRUE(transfer.writeBlock(0x0118));

    const auto requests = rig.station.requests();
    ASSERT_EQ(requests.size(), 4u);
    const std::string text(requests.back().begin(), requests.back().end());
    EXPECT_EQ(text, "\x05" "1801" "000AABFF100D5CE7");
    const Bytes received = rig.station.received();
    const Bytes expected = wire::frame(requests.back());
    EXPECT_TRUE(std::equal(expected.rbegin(), expected.rend(), received.rbegin())) << "checksum and terminator";
    const auto held = rig.station.eeprom();
    EXPECT_TRUE(std::equal(block.begin(), block.end(), held.begin() + 0x0118));
}

// ---- the session ----

TEST(Session, StationAnsweringTheFirstAttentionIsIdentifiedInThreeExchanges)
{
    Rig rig(profileWithSize(6));
    const Activation activation = rig.activate();
    EXPECT_EQ(activation.state, ConnectionState::Active);
    EXPECT_EQ(activation.identity.product, "RM8");
    EXPECT_EQ(activation.identity.version, "1.0");
    EXPECT_EQ(activation.identity.memorySize, "  8128 byte");
    EXPECT_EQ(activation.identity.modem, "TC35 Siemens");
    EXPECT_EQ(rig.station.framesHandled(), 3u);
    EXPECT_EQ(rig.station.requests(), (std::vector<Bytes>{{1}, {2}, {3}}));
    EXPECT_TRUE(rig.line.isOpen()) << "the session keeps the port";
}

struct IdentityRow {
    const char* name;
    std::uint32_t signature;
    std::uint8_t major;
    std::uint8_t minor;
    ConnectionState state;
    std::string product;
    std::string version;
    std::string verdict; // the message after the instructions, or none
};

class Identification : public ::testing::TestWithParam<IdentityRow> {};

TEST_P(Identification, EndsInTheStateTheVersionAndProductAllow)
{
    const auto& row = GetParam();
    sim::StationProfile profile = profileWithSize(3);
    profile.signature = row.signature;
    profile.versionMajor = row.major;
    profile.versionMinor = row.minor;
    Rig rig(profile);
    const Activation activation = rig.activate();
    EXPECT_EQ(stateWord(activation.state), stateWord(row.state));
    EXPECT_EQ(activation.identity.product, row.product);
    EXPECT_EQ(activation.identity.version, row.version);
    std::vector<std::string> expected{kInstructions};
    if (!row.verdict.empty())
        expected.push_back(row.verdict);
    EXPECT_EQ(texts(rig.ui.messages), expected);
    EXPECT_EQ(rig.station.framesHandled(), 3u) << "the configuration is asked for in every case";
    EXPECT_TRUE(rig.line.isOpen());
}

INSTANTIATE_TEST_SUITE_P(
    PtyLink, Identification,
    ::testing::Values(
        IdentityRow{"Rm8Version09", 2151298, 0, 9, ConnectionState::WrongVersion, "RM8", "0.9",
                    "Touto verzí programu lze naprogramovat pouze zařízení s procesorem verze 1.0 a vyšší."},
        IdentityRow{"Rm8Version10", 2151298, 1, 0, ConnectionState::Active, "RM8", "1.0", ""},
        IdentityRow{"Rm8Version110", 2151298, 1, 10, ConnectionState::Active, "RM8", "1.10", ""},
        IdentityRow{"UnknownSignature", 0x123456, 2, 0, ConnectionState::Active, "?", "2.0",
                    "Připojené zařízení není známo. Je sice povoleno ho naprogramovat, ale za způsobené chyby není "
                    "ručeno."},
        IdentityRow{"Rma8", 2216834, 1, 0, ConnectionState::WrongVersion, "RMA8", "1.0",
                    "Touto verzí programu lze naprogramovat pouze zařízení RM8."}),
    [](const ::testing::TestParamInfo<IdentityRow>& row) { return std::string(row.param.name); });

TEST(Session, SilentStationIsFoundOnTheThirdAttention)
{
    sim::StationFaults faults;
    faults.silentAttentions = 2;
    Rig rig(profileWithSize(2), withFaults(faults));
    const auto started = SteadyClock::now();
    EXPECT_EQ(rig.activate().state, ConnectionState::Active);
    // Each unanswered attention is waited for 500 ms before it is repeated.
    EXPECT_GE(SteadyClock::now() - started, 2 * 500ms);
    EXPECT_EQ(rig.station.requests(), (std::vector<Bytes>{{1}, {1}, {1}, {2}, {3}}));
}

TEST(Session, StornoWhileASilentStationIsSearchedEndsInactiveWithThePortClosed)
{
    sim::StationFaults faults;
    faults.silentAttentions = 1'000'000;
    sim::PtyStation station{sim::StationSimulator(profileWithSize(2), {}, withFaults(faults))};
    station.start();
    PosixSerialLine line(station.path());
    StornoAfter ui(30); // about three attention requests' worth of turns
    LineIo io(line, ui);
    const auto started = SteadyClock::now();
    const Activation activation = activateLink(io, "COM 1");
    EXPECT_LT(SteadyClock::now() - started, kHangGuard);
    EXPECT_EQ(activation.state, ConnectionState::Inactive);
    EXPECT_EQ(activation.identity.product, "?");
    ASSERT_FALSE(ui.messages.empty());
    EXPECT_EQ(ui.messages.back().text, kActivationFailed);
    EXPECT_EQ(ui.messages.back().icon, MessageIcon::Stop);
    EXPECT_FALSE(line.isOpen());
    EXPECT_EQ(ui.progress, std::vector<std::string>{std::string(kSearchingText)});
    const auto requests = station.requests();
    EXPECT_GE(requests.size(), 1u);
    EXPECT_TRUE(std::all_of(requests.begin(), requests.end(), [](const Bytes& r) { return r == Bytes{1}; }))
        << "nothing but attention requests while searching";
}

struct BrokenRow {
    const char* name;
    sim::StationFaults faults;
};

class BrokenIdentification : public ::testing::TestWithParam<BrokenRow> {};

TEST_P(BrokenIdentification, TakesTheFailurePathAndClosesThePort)
{
    Rig rig(profileWithSize(2), withFaults(GetParam().faults));
    const auto started = SteadyClock::now();
    const Activation activation = rig.activate();
    EXPECT_LT(SteadyClock::now() - started, kHangGuard);
    EXPECT_EQ(activation.state, ConnectionState::Inactive);
    EXPECT_EQ(texts(rig.ui.messages).back(), kActivationFailed);
    EXPECT_FALSE(rig.line.isOpen());
}

sim::StationFaults every(unsigned drop, unsigned bad, unsigned late)
{
    sim::StationFaults f;
    f.dropEvery = drop;
    f.badChecksumEvery = bad;
    f.lateEvery = late;
    return f;
}

// Reply 1 answers the attention, 2 the identification, 3 the configuration.
INSTANTIATE_TEST_SUITE_P(PtyLink, BrokenIdentification,
                         ::testing::Values(BrokenRow{"IdentifyReplyDropped", every(2, 0, 0)},
                                           BrokenRow{"IdentifyReplyGarbled", every(0, 2, 0)},
                                           BrokenRow{"IdentifyReplyLate", every(0, 0, 2)},
                                           BrokenRow{"ConfigurationReplyDropped", every(3, 0, 0)},
                                           BrokenRow{"ConfigurationReplyGarbled", every(0, 3, 0)},
                                           BrokenRow{"ConfigurationReplyLate", every(0, 0, 3)}),
                         [](const ::testing::TestParamInfo<BrokenRow>& row) { return std::string(row.param.name); });

// ---- the three write passes ----

struct PassRow {
    const char* name;
    std::size_t used;
    std::vector<std::uint16_t> data;
};

class WritePasses : public ::testing::TestWithParam<PassRow> {};

TEST_P(WritePasses, HeaderZeroedThenDataThenHeaderAndBytes64To127NeverWritten)
{
    const auto& row = GetParam();
    // The station holds a pattern, so that a stray write to 64..127 shows.
    const Bytes before = wire::patterned(448 + 64, 11);
    Rig rig(profileWithSize(2), {}, before);
    ASSERT_EQ(rig.activate().state, ConnectionState::Active);
    EepromImage image;
    const Bytes content = wire::patterned(448, 5);
    std::copy(content.begin(), content.end(), image.bytes().begin());
    BlockTransfer transfer(rig.io, image);
    ASSERT_TRUE(transfer.writeAllBlocks(row.used, false));

    const auto requests = rig.station.requests();
    std::vector<Bytes> writes;
    for (const auto& r : requests)
        if (r[0] == 5)
            writes.push_back(r);
    std::vector<std::uint16_t> expected = wire::headerOrder();
    expected.insert(expected.end(), row.data.begin(), row.data.end());
    const auto header = wire::headerOrder();
    expected.insert(expected.end(), header.begin(), header.end());
    EXPECT_EQ(wire::blockAddresses(writes, 5), expected);

    // Pass 1 sends zeros; pass 3 the real header.
    for (std::size_t i = 0; i < header.size() && i < writes.size(); ++i)
        EXPECT_EQ(std::string(writes[i].begin() + 5, writes[i].end()), std::string(16, '0')) << header[i];
    const auto held = rig.station.eeprom();
    for (std::size_t a = 64; a < 128; ++a)
        ASSERT_EQ(held[a], before[a]) << "address " << a << " must never be written";
    for (const auto a : expected)
        for (std::size_t k = 0; k < 8; ++k)
            ASSERT_EQ(held[a + k], content[a + k]) << a + k;
}

INSTANTIATE_TEST_SUITE_P(PtyLink, WritePasses,
                         ::testing::Values(PassRow{"UsedSize272", 272, {272}},
                                           PassRow{"UsedSize300", 300, {272, 280, 288, 296, 304}}),
                         [](const ::testing::TestParamInfo<PassRow>& row) { return std::string(row.param.name); });

// ---- retries after faults ----

struct RetryRow {
    const char* name;
    sim::StationFaults faults;
    bool write; // else a read
    int missedEvery; // every Nth reply lost
    bool dropped;    // a dropped reply costs its whole wait
};

class Retries : public ::testing::TestWithParam<RetryRow> {};

TEST_P(Retries, FaultyRepliesAreRetriedAndTheDataArrivesWhole)
{
    const auto& row = GetParam();
    const Bytes held = wire::patterned(448 + 64, 17);
    Rig rig(profileWithSize(2), withFaults(row.faults), held);
    // The attention is reply 1; the faults are counted from it.
    ASSERT_EQ(rig.activate().state, ConnectionState::Active) << "the faults must miss the session's replies";
    const std::size_t sessionRequests = rig.station.requests().size();
    EepromImage image(0x00);
    BlockTransfer transfer(rig.io, image);
    const auto started = SteadyClock::now();
    std::size_t exchanges = 0;
    if (row.write) {
        const Bytes content = wire::patterned(448, 29);
        std::copy(content.begin(), content.end(), image.bytes().begin());
        ASSERT_TRUE(transfer.writeAllBlocks(440, true));
        const auto stored = rig.station.eeprom();
        for (std::size_t a = 272; a < 448; ++a)
            ASSERT_EQ(stored[a], content[a]) << a;
        exchanges = 26 * 2 + wire::dataOrder(440).size();
        exchanges *= 2; // each block is read back
    } else {
        ASSERT_TRUE(transfer.readAllBlocks(448));
        for (std::size_t a = 0; a < 448; ++a)
            ASSERT_EQ(image.byte(a), held[a]) << a;
        exchanges = 448 / 8;
    }
    const std::size_t made = rig.station.requests().size() - sessionRequests;
    // Every lost reply costs one more exchange.
    EXPECT_GT(made, exchanges);
    EXPECT_GE(made, exchanges + exchanges / static_cast<std::size_t>(row.missedEvery));
    if (row.dropped) {
        // A reply that never comes is waited for: at least 100 ms each.
        const auto lost = made - exchanges;
        EXPECT_GE(SteadyClock::now() - started, lost * 100ms);
    }
}

INSTANTIATE_TEST_SUITE_P(PtyLink, Retries,
                         ::testing::Values(RetryRow{"ReadWithDroppedReplies", every(7, 0, 0), false, 7, true},
                                           RetryRow{"ReadWithGarbledReplies", every(0, 5, 0), false, 5, false},
                                           RetryRow{"WriteWithDroppedReplies", every(11, 0, 0), true, 11, true},
                                           RetryRow{"WriteWithGarbledReplies", every(0, 7, 0), true, 7, false}),
                         [](const ::testing::TestParamInfo<RetryRow>& row) { return std::string(row.param.name); });

// ---- read-back ----

struct ReadBackRow {
    const char* name;
    bool checkWrite;
    FlowOutcome outcome;
    std::string message;
};

class CorruptingStation : public ::testing::TestWithParam<ReadBackRow> {};

TEST_P(CorruptingStation, IsCaughtOnlyWhenEveryBlockIsReadBack)
{
    const auto& row = GetParam();
    sim::StationFaults faults;
    faults.corruptWrites = true;
    Rig rig(profileWithSize(3), withFaults(faults));
    ASSERT_EQ(rig.activate().state, ConnectionState::Active);
    EepromImage image;
    EXPECT_EQ(writeStation(rig.io, image, configured(), 960, row.checkWrite), row.outcome);
    EXPECT_EQ(texts(rig.ui.messages).back(), row.message);
    // Whatever the tool believes, the station holds the first byte of each
    // block inverted: the zero of pass 1 where the read-back stopped the
    // write at once, the real header byte of pass 3 where nothing checked.
    const auto requests = rig.station.requests();
    const auto writes = wire::blockAddresses(requests, 5);
    const auto reads = wire::blockAddresses(requests, 4);
    if (row.checkWrite) {
        EXPECT_EQ(writes, std::vector<std::uint16_t>{0}) << "the first block stops the write";
        EXPECT_EQ(reads, std::vector<std::uint16_t>(9, 0)) << "after nine read-backs";
        EXPECT_EQ(rig.station.eeprom()[0], 0xFF);
    } else {
        EXPECT_TRUE(reads.empty());
        EXPECT_EQ(rig.station.eeprom()[0], static_cast<std::uint8_t>(~image.byte(0)));
        EXPECT_EQ(rig.station.eeprom()[1], image.byte(1));
    }
}

INSTANTIATE_TEST_SUITE_P(PtyLink, CorruptingStation,
                         ::testing::Values(ReadBackRow{"WithoutReadBack", false, FlowOutcome::Done, kWriteDone},
                                           ReadBackRow{"WithReadBack", true, FlowOutcome::Failed, kWriteFailed}),
                         [](const ::testing::TestParamInfo<ReadBackRow>& row) { return std::string(row.param.name); });

// ---- a write cut short ----

struct HangUpRow {
    const char* name;
    // Block requests the station answers before it hangs up, counted from
    // the pass it falls into.
    std::size_t pass;
    std::size_t within;
};

class HungUpStation : public ::testing::TestWithParam<HangUpRow> {};

TEST_P(HungUpStation, WriteFailsWithoutHangingAndTheStationReadsAsNotProgrammed)
{
    const auto& row = GetParam();
    const std::size_t used = usedSize(configured());
    const std::size_t dataBlocks = wire::dataOrder(used).size();
    const std::size_t offset = row.pass == 1 ? 0 : row.pass == 2 ? 26 : 26 + dataBlocks;
    sim::StationFaults faults;
    faults.hangUpAfterBlocks = static_cast<unsigned>(offset + row.within);

    Bytes after;
    {
        Rig rig(profileWithSize(3), withFaults(faults), programmedEeprom(960));
        ASSERT_EQ(rig.activate().state, ConnectionState::Active);
        EepromImage image;
        const auto started = SteadyClock::now();
        EXPECT_EQ(writeStation(rig.io, image, configured(), 960, false), FlowOutcome::Failed);
        EXPECT_LT(SteadyClock::now() - started, kHangGuard);
        EXPECT_EQ(texts(rig.ui.messages).back(), kWriteFailed);
        EXPECT_TRUE(rig.station.hungUp());
        EXPECT_EQ(rig.station.blockRequests(), offset + row.within);
        after = rig.station.eeprom();
    }

    // The same EEPROM behind a new line: a technician reconnecting.
    Rig again(profileWithSize(3), {}, after);
    ASSERT_EQ(again.activate().state, ConnectionState::Active);
    EepromImage image(0x55);
    StationSettings settings = configured();
    settings.tabJmenoStanice = "unchanged";
    EXPECT_EQ(readStation(again.io, image, settings, 960), FlowOutcome::Rejected);
    EXPECT_EQ(texts(again.ui.messages).back(), kNotProgrammed);
    EXPECT_EQ(settings.tabJmenoStanice, "unchanged");
}

INSTANTIATE_TEST_SUITE_P(PtyLink, HungUpStation,
                         ::testing::Values(HangUpRow{"InTheHeaderPass", 1, 5}, HangUpRow{"InTheDataPass", 2, 3},
                                           HangUpRow{"OnTheFirstCommitBlock", 3, 1}),
                         [](const ::testing::TestParamInfo<HangUpRow>& row) { return std::string(row.param.name); });

// ---- reading ----

TEST(Reading, SixtyFourByteEepromIsReadInEightBlocks)
{
    const Bytes held = wire::patterned(64 + 64, 23);
    Rig rig(profileWithSize(0), {}, held);
    const Activation activation = rig.activate();
    ASSERT_EQ(activation.state, ConnectionState::Active);
    EXPECT_EQ(activation.identity.memorySize, "    64 byte");
    EepromImage image(0x00);
    BlockTransfer transfer(rig.io, image);
    ASSERT_TRUE(transfer.readAllBlocks(64));
    EXPECT_EQ(wire::blockAddresses(rig.station.requests(), 4),
              (std::vector<std::uint16_t>{0, 8, 16, 24, 32, 40, 48, 56}));
    for (std::size_t a = 0; a < 64; ++a)
        EXPECT_EQ(image.byte(a), held[a]) << a;
    EXPECT_EQ(image.byte(64), 0) << "nothing past the memory is read";
}

// ---- garbage on the line ----

// A station that answers the attention properly and every later request
// with a scripted reply, on a pseudo-terminal of its own.
class ScriptedStation {
public:
    explicit ScriptedStation(std::function<Bytes(const Bytes&)> reply) : reply_(std::move(reply))
    {
        char name[256] = {};
        termios raw{};
        ::cfmakeraw(&raw);
        if (::openpty(&master_, &slave_, name, &raw, nullptr) != 0)
            throw std::runtime_error("openpty");
        path_ = name;
        thread_ = std::thread([this] { serve(); });
    }
    ~ScriptedStation()
    {
        stop_ = true;
        thread_.join();
        ::close(master_);
        ::close(slave_);
    }
    const std::string& path() const { return path_; }
    int requests() const { return requests_; }

private:
    void serve()
    {
        Bytes pending;
        while (!stop_) {
            pollfd waiting{master_, POLLIN, 0};
            if (::poll(&waiting, 1, 20) <= 0)
                continue;
            std::uint8_t buffer[256];
            const ssize_t n = ::read(master_, buffer, sizeof buffer);
            for (ssize_t i = 0; i < n; ++i) {
                pending.push_back(buffer[i]);
                if (buffer[i] != 13)
                    continue;
                const Bytes data(pending.begin(), pending.end() - 2);
                pending.clear();
                ++requests_;
                const Bytes out = data == Bytes{1} ? wire::frame({129}) : reply_(data);
                if (!out.empty() && ::write(master_, out.data(), out.size()) < 0)
                    return;
            }
        }
    }

    std::function<Bytes(const Bytes&)> reply_;
    int master_ = -1;
    int slave_ = -1;
    std::string path_;
    std::atomic<bool> stop_{false};
    std::atomic<int> requests_{0};
    std::thread thread_;
};

Bytes identifyData()
{
    Bytes data{130};
    for (const std::uint8_t b : Bytes{0x82, 0xD3, 0x20, 0x01, 0x00})
        test::appendHex(data, b);
    return data;
}

struct GarbageRow {
    const char* name;
    Bytes reply; // what the station sends for the identification
};

class GarbageReply : public ::testing::TestWithParam<GarbageRow> {};

TEST_P(GarbageReply, ToTheIdentificationTakesTheFailurePath)
{
    const Bytes reply = GetParam().reply;
    ScriptedStation station([&reply](const Bytes&) { return reply; });
    PosixSerialLine line(station.path());
    RecordingInteraction ui;
    LineIo io(line, ui);
    const auto started = SteadyClock::now();
    const Activation activation = activateLink(io, "COM 1");
    EXPECT_LT(SteadyClock::now() - started, kHangGuard);
    EXPECT_EQ(activation.state, ConnectionState::Inactive);
    EXPECT_EQ(texts(ui.messages).back(), kActivationFailed);
    EXPECT_FALSE(line.isOpen());
    EXPECT_EQ(station.requests(), 2) << "no retry of the identification";
}

Bytes overlong()
{
    // A well-formed frame, but longer than the 101 characters a reply may
    // have: its terminator is never stored.
    Bytes data = identifyData();
    while (data.size() < 120)
        test::appendHex(data, 0x42);
    return wire::frame(data);
}

Bytes noisy()
{
    Bytes out{0x00, 0xFF, 0x7E};
    const Bytes good = wire::frame(identifyData());
    out.insert(out.end(), good.begin(), good.end());
    return out;
}

Bytes unterminated()
{
    Bytes out(60, 0x5A);
    out[7] = 0x82;
    return out;
}

Bytes wrongCode()
{
    Bytes data = identifyData();
    data[0] = 132;
    return wire::frame(data);
}

Bytes badChecksum()
{
    Bytes good = wire::frame(identifyData());
    good[good.size() - 2] = static_cast<std::uint8_t>(good[good.size() - 2] ^ 0x01);
    if (good[good.size() - 2] == 13)
        good[good.size() - 2] = 14;
    return good;
}

INSTANTIATE_TEST_SUITE_P(PtyLink, GarbageReply,
                         ::testing::Values(GarbageRow{"Overlong", overlong()}, GarbageRow{"NoiseBeforeTheFrame", noisy()},
                                           GarbageRow{"NoTerminator", unterminated()},
                                           GarbageRow{"WrongReplyCode", wrongCode()},
                                           GarbageRow{"WrongChecksum", badChecksum()},
                                           GarbageRow{"TerminatorOnly", Bytes{13}}),
                         [](const ::testing::TestParamInfo<GarbageRow>& row) { return std::string(row.param.name); });

TEST(GarbageReplies, OverlongBlockRepliesEndTheReadWithTheBlockMessage)
{
    const Bytes longReply = [] {
        Bytes data{132};
        while (data.size() < 110)
            test::appendHex(data, 0x00);
        return wire::frame(data);
    }();
    ScriptedStation station([&](const Bytes& request) {
        if (request == Bytes{2})
            return wire::frame(identifyData());
        if (request == Bytes{3}) {
            Bytes data{131};
            test::appendHex(data, 2);
            test::appendHex(data, 4);
            return wire::frame(data);
        }
        return longReply;
    });
    PosixSerialLine line(station.path());
    RecordingInteraction ui;
    LineIo io(line, ui);
    ASSERT_EQ(activateLink(io, "COM 1").state, ConnectionState::Active);
    EepromImage image(0x55);
    const EepromImage before = image;
    StationSettings settings = configured();
    const auto started = SteadyClock::now();
    EXPECT_EQ(readStation(io, image, settings, 448), FlowOutcome::Failed);
    EXPECT_LT(SteadyClock::now() - started, kHangGuard);
    EXPECT_EQ(texts(ui.messages).back(), kReadFailed);
    EXPECT_EQ(settings, configured());
    EXPECT_EQ(image, before) << "nothing of an overlong reply is stored";
    EXPECT_EQ(station.requests(), 3 + 12) << "the first block, twelve times";
}

} // namespace
} // namespace rm8::link
