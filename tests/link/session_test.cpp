#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "link/fake_station.h"
#include "link/session.h"

namespace rm8::link {
namespace {

using test::Bytes;
using test::FakeStation;
using test::RecordingInteraction;
using test::StationOptions;

const std::string kInstructions = "Uveďte zařízení do vypnutého stavu (CPU LED svítí trvale).\r\n"
                                  "Pokud zařízení není vypnuto, vypnete jej stiskem tlačítka 'GSM OFF'.\r\n"
                                  "Poté připojte konfigurační kabel a potvrďte 'OK'.";
const std::string kActivationError = "Při pokusu aktivovat spojení nastala chyba.";
const std::string kUnknownDevice =
    "Připojené zařízení není známo. Je sice povoleno ho naprogramovat, ale za způsobené chyby není ručeno.";
const std::string kWrongProduct = "Touto verzí programu lze naprogramovat pouze zařízení RM8.";
const std::string kOldProcessor =
    "Touto verzí programu lze naprogramovat pouze zařízení s procesorem verze 1.0 a vyšší.";
const std::string kLeaveFailed = "Při deaktivaci spojení došlo k chybě. Zařízení je zřejmě stále v programovacím "
                                 "módu. Mám přesto přejít do 'Neaktivního stavu'?";

struct Rig {
    explicit Rig(StationOptions options = {}) : station(std::move(options)) {}
    FakeStation station;
    RecordingInteraction ui;
    LineIo io{station, ui};
};

// ---- what goes over the wire ----

TEST(SessionWire, AttentionIsOneByteChecksumAndCarriageReturn)
{
    Rig rig;
    (void)activateLink(rig.io, "COM 1");
    ASSERT_GE(rig.station.wire.size(), 3u);
    EXPECT_EQ(Bytes(rig.station.wire.begin(), rig.station.wire.begin() + 3), (Bytes{0x01, 0x02, 0x0D}));
}

TEST(SessionWire, StationAnsweringAtOnceIsIdentifiedInThreeExchanges)
{
    Rig rig;
    const auto result = activateLink(rig.io, "COM 1");
    EXPECT_EQ(result.state, ConnectionState::Active);
    EXPECT_EQ(rig.station.requests, (std::vector<Bytes>{{1}, {2}, {3}}));
    // 01 02 0D, 02 03 0D, 03 04 0D
    EXPECT_EQ(rig.station.wire, (Bytes{1, 2, 13, 2, 3, 13, 3, 4, 13}));
    EXPECT_TRUE(rig.station.isOpen());
}

TEST(SessionWire, LeaveRequestIs06AA55)
{
    Rig rig;
    ASSERT_EQ(activateLink(rig.io, "COM 1").state, ConnectionState::Active);
    rig.station.wire.clear();
    EXPECT_TRUE(deactivateLink(rig.io));
    // checksum (6 + 170 + 85 + 1) mod 256 = 6
    EXPECT_EQ(rig.station.wire, (Bytes{0x06, 0xAA, 0x55, 0x06, 0x0D}));
    EXPECT_FALSE(rig.station.isOpen());
    EXPECT_TRUE(rig.ui.questions.empty());
}

// ---- judging the identified station ----

struct IdentityRow {
    const char* name;
    std::uint8_t typeByte;
    std::uint8_t major;
    std::uint8_t minor;
    ConnectionState state;
    std::string product;
    std::string version;
    MessageIcon icon;        // of the verdict message, when there is one
    std::string verdict;     // empty: no message besides the instructions
};

class Identification : public ::testing::TestWithParam<IdentityRow> {};

TEST_P(Identification, EndsInStateWithVerdict)
{
    const auto& p = GetParam();
    StationOptions options;
    options.typeByte = p.typeByte;
    options.versionMajor = p.major;
    options.versionMinor = p.minor;
    Rig rig(options);
    const auto result = activateLink(rig.io, "COM 1");
    EXPECT_EQ(result.state, p.state);
    EXPECT_EQ(result.identity.product, p.product);
    EXPECT_EQ(result.identity.version, p.version);
    EXPECT_EQ(result.identity.memorySize, "  8128 byte");
    EXPECT_EQ(result.identity.modem, "TC35 Siemens");
    ASSERT_FALSE(rig.ui.messages.empty());
    EXPECT_EQ(rig.ui.messages[0].icon, MessageIcon::Information);
    EXPECT_EQ(rig.ui.messages[0].text, kInstructions);
    if (p.verdict.empty()) {
        EXPECT_EQ(rig.ui.messages.size(), 1u);
    } else {
        ASSERT_EQ(rig.ui.messages.size(), 2u);
        EXPECT_EQ(rig.ui.messages[1].icon, p.icon);
        EXPECT_EQ(rig.ui.messages[1].text, p.verdict);
    }
    // Also a wrong station stays connected, so that it can be released.
    EXPECT_TRUE(rig.station.isOpen());
    EXPECT_EQ(rig.station.requests.size(), 3u);
    ASSERT_FALSE(rig.ui.progress.empty());
    EXPECT_EQ(rig.ui.progress.front(), "Program se pokouší navázat komunikaci ...");
    EXPECT_EQ(rig.ui.events.back(), "hide");
}

INSTANTIATE_TEST_SUITE_P(
    Session, Identification,
    ::testing::Values(
        IdentityRow{"Rm8Version1_0", 0x20, 1, 0, ConnectionState::Active, "RM8", "1.0", MessageIcon::Information, ""},
        IdentityRow{"Rm8Version2_3", 0x20, 2, 3, ConnectionState::Active, "RM8", "2.3", MessageIcon::Information, ""},
        IdentityRow{"Rm8MinorPairsAreDecimalWithoutPadding", 0x20, 0x01, 0x0A, ConnectionState::Active, "RM8", "1.10",
                    MessageIcon::Information, ""},
        IdentityRow{"Rm8Version0_9", 0x20, 0, 9, ConnectionState::WrongVersion, "RM8", "0.9", MessageIcon::Stop,
                    kOldProcessor},
        IdentityRow{"Rma8", 0x21, 1, 0, ConnectionState::WrongVersion, "RMA8", "1.0", MessageIcon::Stop, kWrongProduct},
        IdentityRow{"Rmadc3", 0x19, 2, 0, ConnectionState::WrongVersion, "RMADC3", "2.0", MessageIcon::Stop,
                    kWrongProduct},
        IdentityRow{"Rmadc2", 0x22, 1, 0, ConnectionState::WrongVersion, "RMADC2", "1.0", MessageIcon::Stop,
                    kWrongProduct},
        IdentityRow{"UnknownSignature", 0x55, 0, 1, ConnectionState::Active, "?", "0.1", MessageIcon::Information,
                    kUnknownDevice}),
    [](const ::testing::TestParamInfo<IdentityRow>& row) { return std::string(row.param.name); });

struct ConfigurationRow {
    const char* name;
    std::uint8_t sizeCode;
    std::uint8_t modemCode;
    std::string memory;
    std::string modem;
};

class ConfigurationLookup : public ::testing::TestWithParam<ConfigurationRow> {};

TEST_P(ConfigurationLookup, ShowsTableTexts)
{
    const auto& p = GetParam();
    StationOptions options;
    options.sizeCode = p.sizeCode;
    options.modemCode = p.modemCode;
    Rig rig(options);
    const auto result = activateLink(rig.io, "COM 1");
    EXPECT_EQ(result.state, ConnectionState::Active);
    EXPECT_EQ(result.identity.memorySize, p.memory);
    EXPECT_EQ(result.identity.modem, p.modem);
}

INSTANTIATE_TEST_SUITE_P(
    Session, ConfigurationLookup,
    ::testing::Values(ConfigurationRow{"Size6Modem4", 6, 4, "  8128 byte", "TC35 Siemens"},
                      ConfigurationRow{"Size0Modem0", 0, 0, "    64 byte", "M1 Siemens"},
                      ConfigurationRow{"Size9Modem33", 9, 33, " 65472 byte", "GM25 Ericsson"},
                      ConfigurationRow{"Size1Modem32", 1, 32, "   192 byte", "GM12 Ericsson"},
                      ConfigurationRow{"Size10IsUnknown", 10, 1, "?", "A1 Falcom"},
                      ConfigurationRow{"Modem5IsUnknown", 3, 5, "   960 byte", "?"}),
    [](const ::testing::TestParamInfo<ConfigurationRow>& row) { return std::string(row.param.name); });

// ---- searching for the station ----

TEST(SessionSearch, SilentStationIsAskedAgainUntilItAnswers)
{
    StationOptions options;
    options.silentAttentions = 2;
    Rig rig(options);
    const auto result = activateLink(rig.io, "COM 1");
    EXPECT_EQ(result.state, ConnectionState::Active);
    EXPECT_EQ(rig.station.requests, (std::vector<Bytes>{{1}, {1}, {1}, {2}, {3}}));
}

TEST(SessionSearch, AttentionReplyWithBadChecksumIsNotAccepted)
{
    StationOptions options;
    options.badChecksumAt = {1};
    Rig rig(options);
    const auto result = activateLink(rig.io, "COM 1");
    EXPECT_EQ(result.state, ConnectionState::Active);
    EXPECT_EQ(rig.station.requests, (std::vector<Bytes>{{1}, {1}, {2}, {3}}));
}

TEST(SessionSearch, LeftoverInputIsDroppedBeforeTheSearch)
{
    Rig rig;
    // Without the flush these bytes would precede the first reply and spoil
    // its checksum, so the station would be asked twice.
    rig.station.injectInput(Bytes{'x', 'y', 0x81});
    const auto result = activateLink(rig.io, "COM 1");
    EXPECT_EQ(result.state, ConnectionState::Active);
    EXPECT_EQ(rig.station.requests, (std::vector<Bytes>{{1}, {2}, {3}}));
}

TEST(SessionSearch, PortIsClosedBeforeItIsOpened)
{
    Rig rig;
    ASSERT_TRUE(rig.station.open());
    const auto result = activateLink(rig.io, "COM 1");
    EXPECT_EQ(result.state, ConnectionState::Active);
    EXPECT_EQ(rig.station.closes, 1);
    EXPECT_EQ(rig.station.opens, 2);
}

TEST(SessionSearch, StornoWhileSearchingEndsInactiveWithClosedPort)
{
    StationOptions options;
    options.dead = true;
    Rig rig(options);
    rig.station.onRequest = [&](std::size_t n) {
        if (n == 1)
            rig.ui.cancel = true;
    };
    const auto result = activateLink(rig.io, "COM 1");
    EXPECT_EQ(result.state, ConnectionState::Inactive);
    EXPECT_EQ(result.identity.product, "?");
    EXPECT_EQ(rig.station.requests, (std::vector<Bytes>{{1}}));
    ASSERT_EQ(rig.ui.messages.size(), 2u);
    EXPECT_EQ(rig.ui.messages[1].icon, MessageIcon::Stop);
    EXPECT_EQ(rig.ui.messages[1].text, kActivationError);
    EXPECT_FALSE(rig.station.isOpen());
}

TEST(SessionSearch, StornoTogetherWithTheAnswerStillFails)
{
    Rig rig;
    rig.station.onRequest = [&](std::size_t n) {
        if (n == 1)
            rig.ui.cancel = true;
    };
    const auto result = activateLink(rig.io, "COM 1");
    EXPECT_EQ(result.state, ConnectionState::Inactive);
    EXPECT_EQ(rig.station.requests, (std::vector<Bytes>{{1}}));
    ASSERT_FALSE(rig.ui.messages.empty());
    EXPECT_EQ(rig.ui.messages.back().text, kActivationError);
    EXPECT_FALSE(rig.station.isOpen());
}

TEST(SessionSearch, PortThatCannotBeOpenedIsNamed)
{
    StationOptions options;
    options.openError = "No such device";
    Rig rig(options);
    const auto result = activateLink(rig.io, "COM 1");
    EXPECT_EQ(result.state, ConnectionState::Inactive);
    ASSERT_EQ(rig.ui.messages.size(), 1u);
    EXPECT_EQ(rig.ui.messages[0].text, "Nelze otevřít port COM 1");
    EXPECT_TRUE(rig.station.wire.empty());
    EXPECT_FALSE(rig.station.isOpen());
}

struct BrokenIdentificationRow {
    const char* name;
    std::set<std::size_t> badChecksumAt;
    std::set<std::size_t> silentAt;
    std::vector<Bytes> requests;
};

class BrokenIdentification : public ::testing::TestWithParam<BrokenIdentificationRow> {};

TEST_P(BrokenIdentification, TakesTheFailurePath)
{
    const auto& p = GetParam();
    StationOptions options;
    options.badChecksumAt = p.badChecksumAt;
    options.silentAt = p.silentAt;
    Rig rig(options);
    const auto result = activateLink(rig.io, "COM 1");
    EXPECT_EQ(result.state, ConnectionState::Inactive);
    EXPECT_EQ(rig.station.requests, p.requests);
    ASSERT_FALSE(rig.ui.messages.empty());
    EXPECT_EQ(rig.ui.messages.back().icon, MessageIcon::Stop);
    EXPECT_EQ(rig.ui.messages.back().text, kActivationError);
    EXPECT_FALSE(rig.station.isOpen());
    EXPECT_EQ(rig.ui.events.back(), "message:" + kActivationError);
}

INSTANTIATE_TEST_SUITE_P(
    Session, BrokenIdentification,
    ::testing::Values(BrokenIdentificationRow{"IdentifyBadChecksum", {2}, {}, {{1}, {2}}},
                      BrokenIdentificationRow{"IdentifySilent", {}, {2}, {{1}, {2}}},
                      BrokenIdentificationRow{"ConfigurationBadChecksum", {3}, {}, {{1}, {2}, {3}}},
                      BrokenIdentificationRow{"ConfigurationSilent", {}, {3}, {{1}, {2}, {3}}}),
    [](const ::testing::TestParamInfo<BrokenIdentificationRow>& row) { return std::string(row.param.name); });

// ---- releasing the station ----

struct DeactivationRow {
    const char* name;
    bool stationAnswers;
    std::optional<Answer> answer;
    bool inactive;
    bool portOpen;
};

class Deactivation : public ::testing::TestWithParam<DeactivationRow> {};

TEST_P(Deactivation, EndsAsChosen)
{
    const auto& p = GetParam();
    Rig rig;
    ASSERT_EQ(activateLink(rig.io, "COM 1").state, ConnectionState::Active);
    StationOptions deadOptions;
    deadOptions.dead = true;
    FakeStation dead(deadOptions);
    ASSERT_TRUE(dead.open());
    LineIo deadIo(dead, rig.ui);
    LineIo& io = p.stationAnswers ? rig.io : deadIo;
    FakeStation& station = p.stationAnswers ? rig.station : dead;
    if (p.answer)
        rig.ui.answers.push_back(*p.answer);

    EXPECT_EQ(deactivateLink(io), p.inactive);
    EXPECT_EQ(station.isOpen(), p.portOpen);
    EXPECT_EQ(station.requestsWithCode(6), (std::vector<Bytes>{{6, 170, 85}}));
    if (p.answer) {
        ASSERT_EQ(rig.ui.questions.size(), 1u);
        EXPECT_EQ(rig.ui.questions[0].icon, MessageIcon::Stop);
        EXPECT_EQ(rig.ui.questions[0].text, kLeaveFailed);
    } else {
        EXPECT_TRUE(rig.ui.questions.empty());
    }
}

INSTANTIATE_TEST_SUITE_P(Session, Deactivation,
                         ::testing::Values(DeactivationRow{"StationLeaves", true, std::nullopt, true, false},
                                           DeactivationRow{"NoReplyYes", false, Answer::Yes, true, false},
                                           DeactivationRow{"NoReplyNo", false, Answer::No, false, true}),
                         [](const ::testing::TestParamInfo<DeactivationRow>& row) { return std::string(row.param.name); });

} // namespace
} // namespace rm8::link
