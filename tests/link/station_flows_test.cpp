#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "editing/row_labels.h"
#include "fields/settings_diff.h"
#include "link/fake_station.h"
#include "link/station_flows.h"
#include "settings/image_decoder.h"
#include "settings/image_header.h"
#include "settings/used_size.h"

namespace rm8::link {
namespace {

using test::Bytes;
using test::FakeStation;
using test::RecordingInteraction;
using test::StationOptions;

constexpr std::size_t kEeprom = 8128;
const std::string kNotProgrammed = "Data nebyla úspěšně načtena z EEPROM. EEPROM zřejmě není naprogramována.";
const std::string kReadDone = "Data byla úspěšně načtena z EEPROM.";
const std::string kWriteDone = "Data byla úspěšně uložena do EEPROM.";
const std::string kWriteFailed = "Data nebyla úspěšně uložena do EEPROM. Došlo k chybě při ukládání bloku do EEPROM.";
const std::string kReadCancelled = "Načtítání dat z EEPROM do PC bylo stornováno.";

struct Rig {
    explicit Rig(StationOptions options = {}) : station(std::move(options)) { EXPECT_TRUE(station.open()); }
    FakeStation station;
    RecordingInteraction ui;
    LineIo io{station, ui};
    EepromImage image;
};

StationSettings edited()
{
    StationSettings s;
    s.tabJmenoStanice = "Čerpací stanice";
    s.tabINPNazev[0] = "DVERE";
    s.tabOUTNazev[0] = "CERPADLO";
    s.tabOUTNazev[1] = "SVETLO";
    s.tabTC[0] = "+420602123456";
    return s;
}

// ---- reading ----

TEST(ReadStationFlow, NeverProgrammedStationLeavesSettingsAlone)
{
    Rig rig;
    StationSettings settings = edited();
    const StationSettings before = settings;
    EXPECT_EQ(readStation(rig.io, rig.image, settings, kEeprom), FlowOutcome::Rejected);
    EXPECT_EQ(settings, before);
    ASSERT_EQ(rig.ui.messages.size(), 1u);
    EXPECT_EQ(rig.ui.messages[0].icon, MessageIcon::Exclamation);
    EXPECT_EQ(rig.ui.messages[0].text, kNotProgrammed);
    // The whole memory was read without a block error.
    EXPECT_EQ(rig.station.blockAddresses(4).size(), kEeprom / 8);
}

TEST(ReadStationFlow, StornoEndsWithTheCancelMessageAndNoChange)
{
    Rig rig;
    StationSettings settings = edited();
    const StationSettings before = settings;
    rig.station.onRequest = [&](std::size_t n) {
        if (n == 10)
            rig.ui.cancel = true;
    };
    (void)readStation(rig.io, rig.image, settings, kEeprom);
    EXPECT_EQ(settings, before);
    EXPECT_EQ(rig.station.blockAddresses(4).size(), 10u);
    ASSERT_EQ(rig.ui.messages.size(), 1u);
    EXPECT_EQ(rig.ui.messages[0].icon, MessageIcon::Information);
    EXPECT_EQ(rig.ui.messages[0].text, kReadCancelled);
}

TEST(ReadStationFlow, FailingBlockEndsWithTheBlockMessage)
{
    StationOptions options;
    for (std::size_t n = 1; n <= 12; ++n)
        options.badChecksumAt.insert(n);
    Rig rig(options);
    StationSettings settings = edited();
    const StationSettings before = settings;
    EXPECT_EQ(readStation(rig.io, rig.image, settings, kEeprom), FlowOutcome::Failed);
    EXPECT_EQ(settings, before);
    ASSERT_EQ(rig.ui.messages.size(), 1u);
    EXPECT_EQ(rig.ui.messages[0].icon, MessageIcon::Stop);
    EXPECT_EQ(rig.ui.messages[0].text,
              "Data nebyla úspěšně načtena z EEPROM. Došlo k chybě při načítání bloku dat.");
}

// ---- writing, then reading back ----

TEST(WriteStationFlow, RoundTripGivesTheSameSettings)
{
    Rig rig;
    const StationSettings written = edited();
    EXPECT_EQ(writeStation(rig.io, rig.image, written, kEeprom, true), FlowOutcome::Done);
    ASSERT_FALSE(rig.ui.messages.empty());
    EXPECT_EQ(rig.ui.messages.back().text, kWriteDone);
    EXPECT_EQ(rig.ui.messages.back().icon, MessageIcon::Information);

    RecordingInteraction readUi;
    LineIo readIo(rig.station, readUi);
    EepromImage fresh(0xFF);
    StationSettings loaded;
    EXPECT_EQ(readStation(readIo, fresh, loaded, kEeprom), FlowOutcome::Done);
    // The level texts come back in the decoder's own form (" 100" reads as "100"),
    // so the reference is the written image decoded on this side of the line.
    StationSettings expected;
    ASSERT_TRUE(decodeImage(rig.image, expected).hasValue());
    EXPECT_EQ(expected.tabJmenoStanice, written.tabJmenoStanice);
    for (const auto& d : diffSettings(loaded, expected))
        ADD_FAILURE() << d.field << " row " << d.row << ": read " << d.left << ", written " << d.right;
    ASSERT_EQ(readUi.messages.size(), 1u);
    EXPECT_EQ(readUi.messages[0].text, kReadDone);
    EXPECT_EQ(readUi.progress,
              (std::vector<std::string>{"Načítám data z EEPROM do PC.", "Převádím data ..."}));
}

TEST(WriteStationFlow, StornoDuringWriteLeavesAStationThatReadsAsNotProgrammed)
{
    Rig rig;
    ASSERT_EQ(writeStation(rig.io, rig.image, edited(), kEeprom, false), FlowOutcome::Done);
    rig.station.requests.clear();
    rig.station.onRequest = [&](std::size_t n) {
        if (n == 30)
            rig.ui.cancel = true;
    };
    rig.ui.messages.clear();
    EXPECT_EQ(writeStation(rig.io, rig.image, edited(), kEeprom, false), FlowOutcome::Failed);
    ASSERT_EQ(rig.ui.messages.size(), 1u);
    EXPECT_EQ(rig.ui.messages[0].icon, MessageIcon::Stop);
    EXPECT_EQ(rig.ui.messages[0].text, kWriteFailed);

    rig.station.onRequest = nullptr;
    RecordingInteraction readUi;
    LineIo readIo(rig.station, readUi);
    EepromImage fresh(0xFF);
    StationSettings loaded;
    EXPECT_EQ(readStation(readIo, fresh, loaded, kEeprom), FlowOutcome::Rejected);
    ASSERT_EQ(readUi.messages.size(), 1u);
    EXPECT_EQ(readUi.messages[0].text, kNotProgrammed);
}

// ---- checks made before anything is sent ----

const std::string kNameTail = "' není správně zadán. Jména výstupů se nesmějí shodovat a ani být předponou jiného "
                              "názvu výstupu. EEPROM nelze naprogramovat dokud toto nebude odstraněno.";
const std::string kOnTail = "' není správně zadán. Povel pro zapnutí se musí lišit od povelu pro vypnutí i impuls a "
                            "nesmí být předponou názvu některého výstupu. EEPROM nelze naprogramovat dokud toto nebude "
                            "odstraněno.";
const std::string kOffTail = "' není správně zadán. Povel pro vypnutí se musí lišit od povelu pro impuls i zapnutí a "
                             "nesmí být předponou názvu některého výstupu. EEPROM nelze naprogramovat dokud toto "
                             "nebude odstraněno.";

struct CrossCheckRow {
    const char* name;
    std::vector<std::pair<std::size_t, std::string>> names;
    std::vector<std::pair<std::size_t, std::string>> onCommands;
    std::vector<std::pair<std::size_t, std::string>> offCommands;
    std::size_t row; // 0-based row of the message
    std::string head;
    std::string tail;
};

class OutputCrossCheck : public ::testing::TestWithParam<CrossCheckRow> {};

TEST_P(OutputCrossCheck, StopsTheWriteBeforeAnythingIsSent)
{
    const auto& p = GetParam();
    StationSettings settings;
    for (const auto& [i, v] : p.names)
        settings.tabOUTNazev[i] = v;
    for (const auto& [i, v] : p.onCommands)
        settings.tabOUTZap[i] = v;
    for (const auto& [i, v] : p.offCommands)
        settings.tabOUTVyp[i] = v;
    Rig rig;
    EXPECT_EQ(writeStation(rig.io, rig.image, settings, kEeprom, false), FlowOutcome::Rejected);
    EXPECT_TRUE(rig.station.requests.empty());
    ASSERT_EQ(rig.ui.messages.size(), 1u);
    EXPECT_EQ(rig.ui.messages[0].icon, MessageIcon::Stop);
    EXPECT_EQ(rig.ui.messages[0].text, p.head + rowLabel(RowTable::Outputs, p.row) + p.tail);
}

INSTANTIATE_TEST_SUITE_P(
    StationFlows, OutputCrossCheck,
    ::testing::Values(
        CrossCheckRow{"ShorterNameFirst", {{0, "SVETLO"}, {1, "SVETLOKUCHYN"}}, {}, {}, 0, "Název výstupu '", kNameTail},
        CrossCheckRow{"ShorterNameLater", {{2, "SVETLOKUCHYN"}, {5, "SVETLO"}}, {}, {}, 5, "Název výstupu '", kNameTail},
        CrossCheckRow{"EqualNamesAnyCase", {{3, "pumpa"}, {6, "PUMPA"}}, {}, {}, 3, "Název výstupu '", kNameTail},
        CrossCheckRow{"OnEqualsOff", {{1, "PUMPA"}}, {{1, "ZAP"}}, {{1, "ZAP"}}, 1, "Název 'Zapnuto' výstupu '",
                      kOnTail},
        CrossCheckRow{"OffIsPrefixOfAName", {{0, "VYPINAC"}, {4, "TOPENI"}}, {{4, "ZAP"}}, {{4, "VYP"}}, 4,
                      "Název 'Vypnuto' výstupu '", kOffTail}),
    [](const ::testing::TestParamInfo<CrossCheckRow>& row) { return std::string(row.param.name); });

struct SizeRow {
    const char* name;
    std::ptrdiff_t sizeOffset; // EEPROM size relative to the used size
    bool fits;
};

class SizeCheck : public ::testing::TestWithParam<SizeRow> {};

TEST_P(SizeCheck, UsedSizeMustNotExceedTheMemory)
{
    const auto& p = GetParam();
    const StationSettings settings = edited();
    const std::size_t used = usedSize(settings);
    const auto size = static_cast<std::size_t>(static_cast<std::ptrdiff_t>(used) + p.sizeOffset);
    Rig rig;
    const auto outcome = writeStation(rig.io, rig.image, settings, size, false);
    if (p.fits) {
        EXPECT_EQ(outcome, FlowOutcome::Done);
        EXPECT_FALSE(rig.station.requests.empty());
    } else {
        EXPECT_EQ(outcome, FlowOutcome::Rejected);
        EXPECT_TRUE(rig.station.requests.empty());
        ASSERT_EQ(rig.ui.messages.size(), 1u);
        EXPECT_EQ(rig.ui.messages[0].icon, MessageIcon::Stop);
        EXPECT_EQ(rig.ui.messages[0].text, "Velikost dat v nastavení (" + std::to_string(used)
                                               + ") je větší než je možno vložit do EEPROM (" + std::to_string(size)
                                               + ").");
    }
}

INSTANTIATE_TEST_SUITE_P(StationFlows, SizeCheck,
                         ::testing::Values(SizeRow{"Equal", 0, true}, SizeRow{"OneByteShort", -1, false},
                                           SizeRow{"Roomy", 100, true}),
                         [](const ::testing::TestParamInfo<SizeRow>& row) { return std::string(row.param.name); });

TEST(SizeCheckTableSize, MemoryIsQuotedAsTheDisplayShowsIt)
{
    // The memory text is the size label without " byte", so the table's
    // right alignment stays in the message.
    const StationSettings settings = edited();
    const std::size_t used = usedSize(settings);
    ASSERT_GT(used, 64u);
    Rig rig;
    EXPECT_EQ(writeStation(rig.io, rig.image, settings, 64, false), FlowOutcome::Rejected);
    ASSERT_EQ(rig.ui.messages.size(), 1u);
    EXPECT_EQ(rig.ui.messages[0].text, "Velikost dat v nastavení (" + std::to_string(used)
                                           + ") je větší než je možno vložit do EEPROM (    64).");
}

} // namespace
} // namespace rm8::link
