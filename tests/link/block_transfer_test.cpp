#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "link/block_transfer.h"
#include "link/fake_station.h"
#include "settings/image_encoder.h"
#include "settings/image_header.h"

namespace rm8::link {
namespace {

using test::Bytes;
using test::FakeStation;
using test::RecordingInteraction;
using test::StationOptions;

const std::vector<std::uint16_t> kHeaderOrder = {0,   8,   16,  24,  32,  40,  48,  56,  128, 136, 144, 152, 160,
                                                 168, 176, 184, 192, 200, 208, 216, 224, 232, 240, 248, 256, 264};

struct Rig {
    explicit Rig(StationOptions options = {}) : station(std::move(options)) { EXPECT_TRUE(station.open()); }
    FakeStation station;
    RecordingInteraction ui;
    LineIo io{station, ui};
    EepromImage image;
    BlockTransfer transfer{io, image};
};

Bytes patterned(std::size_t size)
{
    Bytes b(size);
    for (std::size_t i = 0; i < size; ++i)
        b[i] = static_cast<std::uint8_t>((i * 7 + 3) % 251);
    return b;
}

void fillImage(EepromImage& image, std::size_t size)
{
    const auto b = patterned(size);
    std::copy(b.begin(), b.end(), image.bytes().begin());
}

EepromImage imageOf(const Bytes& eeprom)
{
    EepromImage image(0xFF);
    std::copy(eeprom.begin(), eeprom.end(), image.bytes().begin());
    return image;
}

std::vector<std::uint16_t> range(std::uint16_t from, std::uint16_t to)
{
    std::vector<std::uint16_t> out;
    for (std::uint16_t a = from; a <= to; a = static_cast<std::uint16_t>(a + 8))
        out.push_back(a);
    return out;
}

std::vector<std::uint16_t> concat(std::initializer_list<std::vector<std::uint16_t>> parts)
{
    std::vector<std::uint16_t> out;
    for (const auto& p : parts)
        out.insert(out.end(), p.begin(), p.end());
    return out;
}

std::vector<std::uint8_t> blockData(const Bytes& request)
{
    std::vector<std::uint8_t> out;
    for (std::size_t k = 0; k < 8; ++k)
        out.push_back(static_cast<std::uint8_t>(test::hexDigit(request[5 + 2 * k]) * 16
                                                + test::hexDigit(request[6 + 2 * k])));
    return out;
}

// ---- single exchanges ----

struct BlockFrameRow {
    const char* name;
    std::uint16_t address;
    Bytes readRequest;
};

class BlockFrames : public ::testing::TestWithParam<BlockFrameRow> {};

TEST_P(BlockFrames, AddressTravelsLowByteFirstInUpperCaseHex)
{
    const auto& p = GetParam();
    StationOptions options;
    options.sizeCode = 9;
    Rig rig(options);
    EXPECT_TRUE(rig.transfer.readBlock(p.address));
    ASSERT_EQ(rig.station.requests.size(), 1u);
    EXPECT_EQ(rig.station.requests[0], p.readRequest);

    for (std::size_t k = 0; k < 8; ++k)
        rig.image.putByte(p.address + k, static_cast<long long>(0xA0 + k));
    EXPECT_TRUE(rig.transfer.writeBlock(p.address));
    ASSERT_EQ(rig.station.requests.size(), 2u);
    Bytes expected = p.readRequest;
    expected[0] = 5;
    for (const char c : std::string("A0A1A2A3A4A5A6A7"))
        expected.push_back(static_cast<std::uint8_t>(c));
    EXPECT_EQ(rig.station.requests[1], expected);
}

INSTANTIATE_TEST_SUITE_P(BlockTransfer, BlockFrames,
                         ::testing::Values(BlockFrameRow{"Zero", 0, {4, '0', '0', '0', '0'}},
                                           BlockFrameRow{"A264", 264, {4, '0', '8', '0', '1'}},
                                           BlockFrameRow{"A43976", 43976, {4, 'C', '8', 'A', 'B'}},
                                           BlockFrameRow{"A65464", 65464, {4, 'B', '8', 'F', 'F'}}),
                         [](const ::testing::TestParamInfo<BlockFrameRow>& row) { return std::string(row.param.name); });

TEST(BlockRead, StoresTheEightBytesInOrder)
{
    StationOptions options;
    options.eeprom = patterned(8128);
    Rig rig(options);
    rig.image = EepromImage(0x11);
    EXPECT_TRUE(rig.transfer.readBlock(272));
    for (std::size_t k = 0; k < 8; ++k)
        EXPECT_EQ(rig.image.byte(272 + k), options.eeprom->at(272 + k)) << k;
    EXPECT_EQ(rig.image.byte(271), 0x11);
    EXPECT_EQ(rig.image.byte(280), 0x11);
}

TEST(BlockRead, BadReplyStoresNothing)
{
    StationOptions options;
    options.eeprom = patterned(8128);
    options.badChecksumAt = {1};
    Rig rig(options);
    rig.image = EepromImage(0x11);
    EXPECT_FALSE(rig.transfer.readBlock(272));
    for (std::size_t k = 0; k < 8; ++k)
        EXPECT_EQ(rig.image.byte(272 + k), 0x11);
}

// ---- reading the whole memory ----

struct WholeReadRow {
    const char* name;
    std::uint8_t sizeCode;
    std::size_t size;
    std::size_t blocks;
};

class WholeRead : public ::testing::TestWithParam<WholeReadRow> {};

TEST_P(WholeRead, ReadsEveryBlockInOrderIntoTheImage)
{
    const auto& p = GetParam();
    StationOptions options;
    options.sizeCode = p.sizeCode;
    options.eeprom = patterned(p.size);
    Rig rig(options);
    EXPECT_TRUE(rig.transfer.readAllBlocks(p.size));
    const auto addresses = rig.station.blockAddresses(4);
    ASSERT_EQ(addresses.size(), p.blocks);
    for (std::size_t i = 0; i < addresses.size(); ++i)
        ASSERT_EQ(addresses[i], i * 8) << i;
    EXPECT_TRUE(std::equal(options.eeprom->begin(), options.eeprom->end(), rig.image.bytes().begin()));
    EXPECT_EQ(rig.ui.progress, (std::vector<std::string>{"Načítám data z EEPROM do PC."}));
    EXPECT_EQ(rig.ui.events.back(), "hide");
}

INSTANTIATE_TEST_SUITE_P(BlockTransfer, WholeRead,
                         ::testing::Values(WholeReadRow{"Bytes64", 0, 64, 8}, WholeReadRow{"Bytes8128", 6, 8128, 1016},
                                           WholeReadRow{"Bytes65472", 9, 65472, 8184}),
                         [](const ::testing::TestParamInfo<WholeReadRow>& row) { return std::string(row.param.name); });

TEST(WholeReadRetries, UnansweredBlockIsAskedAgain)
{
    StationOptions options;
    options.sizeCode = 0;
    options.eeprom = patterned(64);
    options.silentAt = {2};
    Rig rig(options);
    EXPECT_TRUE(rig.transfer.readAllBlocks(64));
    EXPECT_EQ(rig.station.blockAddresses(4), (std::vector<std::uint16_t>{0, 8, 8, 16, 24, 32, 40, 48, 56}));
    EXPECT_TRUE(std::equal(options.eeprom->begin(), options.eeprom->end(), rig.image.bytes().begin()));
}

TEST(WholeReadRetries, BlockIsTriedTwelveTimesThenTheReadFails)
{
    StationOptions options;
    options.sizeCode = 0;
    // Block 8 is requests 2 onwards; bad checksums fail at once, so the
    // growing waits cost nothing here.
    for (std::size_t n = 2; n <= 40; ++n)
        options.badChecksumAt.insert(n);
    Rig rig(options);
    EXPECT_FALSE(rig.transfer.readAllBlocks(64));
    EXPECT_EQ(rig.station.blockAddresses(4), concat({{0}, std::vector<std::uint16_t>(12, 8)}));
    EXPECT_EQ(rig.ui.events.back(), "hide");
}

TEST(WholeReadRetries, TwelfthAttemptStillSucceeds)
{
    StationOptions options;
    options.sizeCode = 0;
    for (std::size_t n = 2; n <= 12; ++n)
        options.badChecksumAt.insert(n);
    Rig rig(options);
    EXPECT_TRUE(rig.transfer.readAllBlocks(64));
    EXPECT_EQ(rig.station.blockAddresses(4).size(), 8u + 11u);
}

TEST(WholeReadStorno, StopsAfterTheCurrentBlockAndReportsSuccess)
{
    StationOptions options;
    options.sizeCode = 0;
    Rig rig(options);
    rig.station.onRequest = [&](std::size_t n) {
        if (n == 3)
            rig.ui.cancel = true;
    };
    EXPECT_TRUE(rig.transfer.readAllBlocks(64));
    EXPECT_EQ(rig.station.blockAddresses(4), (std::vector<std::uint16_t>{0, 8, 16}));
    EXPECT_TRUE(rig.ui.cancel);
}

// ---- writing the whole memory ----

TEST(WholeWrite, ThreePassesInOrder)
{
    Rig rig;
    fillImage(rig.image, 8128);
    const EepromImage before = rig.image;
    EXPECT_TRUE(rig.transfer.writeAllBlocks(300, false));

    const auto addresses = rig.station.blockAddresses(5);
    EXPECT_EQ(addresses, concat({kHeaderOrder, range(272, 304), kHeaderOrder}));
    EXPECT_TRUE(rig.station.blockAddresses(4).empty());

    // Pass 1 sends zeros, pass 3 the real header bytes.
    const auto writes = rig.station.requestsWithCode(5);
    ASSERT_EQ(writes.size(), addresses.size());
    for (std::size_t i = 0; i < kHeaderOrder.size(); ++i) {
        EXPECT_EQ(blockData(writes[i]), Bytes(8, 0)) << "first pass, block " << kHeaderOrder[i];
        const auto& last = writes[writes.size() - kHeaderOrder.size() + i];
        Bytes real(before.bytes().begin() + kHeaderOrder[i], before.bytes().begin() + kHeaderOrder[i] + 8);
        EXPECT_EQ(blockData(last), real) << "last pass, block " << kHeaderOrder[i];
    }
    // The station ends up with the image, except the never-written bytes.
    for (std::size_t a = 0; a < 312; ++a) {
        const std::uint8_t want = (a >= 64 && a < 128) ? std::uint8_t{0xFF} : before.byte(a);
        EXPECT_EQ(rig.station.eeprom[a], want) << a;
    }
    EXPECT_EQ(rig.station.eeprom[312], 0xFF);
    EXPECT_EQ(rig.image, before);
    EXPECT_EQ(rig.ui.progress, (std::vector<std::string>{"Ukládám data z PC do EEPROM."}));
    EXPECT_EQ(rig.ui.events.back(), "hide");
}

TEST(WholeWrite, Bytes64To127AreNeverSent)
{
    Rig rig;
    fillImage(rig.image, 8128);
    EXPECT_TRUE(rig.transfer.writeAllBlocks(8000, true));
    for (const auto a : rig.station.blockAddresses(5))
        EXPECT_FALSE(a + 8 > 64 && a < 128) << a;
}

struct DataPassRow {
    const char* name;
    std::size_t used;
    std::vector<std::uint16_t> dataBlocks;
};

class DataPass : public ::testing::TestWithParam<DataPassRow> {};

TEST_P(DataPass, WritesUpToTheBlockAtOrPastTheUsedSize)
{
    const auto& p = GetParam();
    Rig rig;
    fillImage(rig.image, 8128);
    EXPECT_TRUE(rig.transfer.writeAllBlocks(p.used, false));
    EXPECT_EQ(rig.station.blockAddresses(5), concat({kHeaderOrder, p.dataBlocks, kHeaderOrder}));
}

INSTANTIATE_TEST_SUITE_P(BlockTransfer, DataPass,
                         ::testing::Values(DataPassRow{"Used0", 0, {272}}, DataPassRow{"Used272", 272, {272}},
                                           DataPassRow{"Used273", 273, {272, 280}},
                                           DataPassRow{"Used280", 280, {272, 280}},
                                           DataPassRow{"Used300", 300, {272, 280, 288, 296, 304}},
                                           DataPassRow{"Used304", 304, {272, 280, 288, 296, 304}},
                                           DataPassRow{"Used305", 305, {272, 280, 288, 296, 304, 312}}),
                         [](const ::testing::TestParamInfo<DataPassRow>& row) { return std::string(row.param.name); });

TEST(WholeWriteCheck, EveryWrittenBlockIsReadBackAtOnce)
{
    Rig rig;
    fillImage(rig.image, 8128);
    EXPECT_TRUE(rig.transfer.writeAllBlocks(272, true));
    const auto expectedOrder = concat({kHeaderOrder, {272}, kHeaderOrder});
    ASSERT_EQ(rig.station.requests.size(), 2 * expectedOrder.size());
    for (std::size_t i = 0; i < expectedOrder.size(); ++i) {
        EXPECT_EQ(rig.station.requests[2 * i][0], 5) << i;
        EXPECT_EQ(FakeStation::addressOf(rig.station.requests[2 * i]), expectedOrder[i]) << i;
        EXPECT_EQ(rig.station.requests[2 * i + 1][0], 4) << i;
        EXPECT_EQ(FakeStation::addressOf(rig.station.requests[2 * i + 1]), expectedOrder[i]) << i;
    }
}

struct StoreFaultRow {
    const char* name;
    bool checkWrite;
    bool result;
    std::size_t writes;
    std::size_t reads;
};

class StationStoringOtherBytes : public ::testing::TestWithParam<StoreFaultRow> {};

TEST_P(StationStoringOtherBytes, IsCaughtOnlyWithReadBack)
{
    const auto& p = GetParam();
    StationOptions options;
    options.corruptStores = true;
    Rig rig(options);
    fillImage(rig.image, 8128);
    EXPECT_EQ(rig.transfer.writeAllBlocks(272, p.checkWrite), p.result);
    EXPECT_EQ(rig.station.blockAddresses(5).size(), p.writes);
    EXPECT_EQ(rig.station.blockAddresses(4).size(), p.reads);
    EXPECT_EQ(rig.ui.events.back(), "hide");
}

INSTANTIATE_TEST_SUITE_P(BlockTransfer, StationStoringOtherBytes,
                         // With the check the first block is written once and read back 9 times.
                         ::testing::Values(StoreFaultRow{"Checked", true, false, 1, 9},
                                           StoreFaultRow{"Unchecked", false, true, 26 + 1 + 26, 0}),
                         [](const ::testing::TestParamInfo<StoreFaultRow>& row) { return std::string(row.param.name); });

TEST(WholeWriteCheck, ReadBackThatAgreesOnALaterAttemptPasses)
{
    // Request 2 is the first read-back of block 0; requests 2..5 fail.
    StationOptions options;
    for (std::size_t n = 2; n <= 5; ++n)
        options.badChecksumAt.insert(n);
    Rig flaky(options);
    fillImage(flaky.image, 8128);
    EXPECT_TRUE(flaky.transfer.writeAllBlocks(272, true));
    const auto firstReads = flaky.station.blockAddresses(4);
    EXPECT_EQ(std::count(firstReads.begin(), firstReads.end(), std::uint16_t{0}), 5 + 1);
}

TEST(WholeWriteRetries, BlockUnansweredTwiceIsWrittenOnTheThirdAttempt)
{
    StationOptions options;
    options.failFirstWrites = {{8, 2}};
    Rig rig(options);
    fillImage(rig.image, 8128);
    EXPECT_TRUE(rig.transfer.writeAllBlocks(272, false));
    const auto addresses = rig.station.blockAddresses(5);
    EXPECT_EQ(addresses, concat({{0, 8, 8, 8}, range(16, 56), range(128, 264), {272}, kHeaderOrder}));
    EXPECT_EQ(rig.station.eeprom[8], rig.image.byte(8));
}

TEST(WholeWriteRetries, BlockFailingTenTimesStopsTheWrite)
{
    StationOptions options;
    // Bad checksums fail at once, so ten attempts take no time.
    for (std::size_t n = 1; n <= 10; ++n)
        options.badChecksumAt.insert(n);
    Rig rig(options);
    fillImage(rig.image, 8128);
    EXPECT_FALSE(rig.transfer.writeAllBlocks(272, false));
    EXPECT_EQ(rig.station.blockAddresses(5), std::vector<std::uint16_t>(10, 0));
    EXPECT_EQ(rig.ui.events.back(), "hide");
}

TEST(WholeWriteRetries, TenthAttemptStillSucceeds)
{
    StationOptions options;
    for (std::size_t n = 1; n <= 9; ++n)
        options.badChecksumAt.insert(n);
    Rig rig(options);
    fillImage(rig.image, 8128);
    EXPECT_TRUE(rig.transfer.writeAllBlocks(272, false));
    EXPECT_EQ(rig.station.blockAddresses(5).size(), 9u + 26u + 1u + 26u);
}

// ---- a write cut short leaves no valid header behind ----

EepromImage configuredImage()
{
    EepromImage image(0xFF);
    const auto encoded = encodeImage(StationSettings{}, image);
    EXPECT_TRUE(encoded);
    EXPECT_TRUE(imageHeaderValid(image));
    return image;
}

struct CutShortRow {
    const char* name;
    std::optional<std::size_t> cancelAt;    // request number
    std::optional<std::size_t> badFrom;     // from this request on, ten bad replies
    std::size_t writes;
    bool headerZeroInImage; // all header blocks of the image hold zeros
};

class CutShortWrite : public ::testing::TestWithParam<CutShortRow> {};

TEST_P(CutShortWrite, StationReadsAsNotProgrammed)
{
    const auto& p = GetParam();
    const EepromImage configured = configuredImage();
    StationOptions options;
    options.eeprom = Bytes(configured.bytes().begin(), configured.bytes().begin() + 8128);
    if (p.badFrom)
        for (std::size_t n = *p.badFrom; n < *p.badFrom + 10; ++n)
            options.badChecksumAt.insert(n);
    Rig rig(options);
    ASSERT_TRUE(imageHeaderValid(imageOf(rig.station.eeprom)));
    rig.image = configured;
    rig.station.onRequest = [&](std::size_t n) {
        if (p.cancelAt && n == *p.cancelAt)
            rig.ui.cancel = true;
    };
    EXPECT_FALSE(rig.transfer.writeAllBlocks(8128, false));
    EXPECT_EQ(rig.station.blockAddresses(5).size(), p.writes);
    EXPECT_FALSE(imageHeaderValid(imageOf(rig.station.eeprom)));
    EXPECT_FALSE(imageHeaderValid(rig.image));
    if (p.headerZeroInImage) {
        for (const auto a : kHeaderOrder)
            for (std::size_t k = 0; k < 8; ++k)
                EXPECT_EQ(rig.image.byte(a + k), 0) << a + k;
    }
    EXPECT_EQ(rig.ui.events.back(), "hide");
}

INSTANTIATE_TEST_SUITE_P(
    BlockTransfer, CutShortWrite,
    ::testing::Values(CutShortRow{"StornoOnFirstBlock", 1, std::nullopt, 1, false},
                      CutShortRow{"StornoInHeaderPass", 7, std::nullopt, 7, false},
                      CutShortRow{"StornoOnFirstDataBlock", 27, std::nullopt, 27, true},
                      CutShortRow{"StornoInDataPass", 40, std::nullopt, 40, true},
                      CutShortRow{"StationStopsInHeaderPass", std::nullopt, 4, 3 + 10, false},
                      CutShortRow{"StationStopsInDataPass", std::nullopt, 30, 29 + 10, true}),
    [](const ::testing::TestParamInfo<CutShortRow>& row) { return std::string(row.param.name); });

// The progress bar of the command line counts on these figures: every block
// once, in order, ending at the total.
TEST(BlockProgress, CountsEveryBlockOfAReadAndOfAWrite)
{
    StationOptions small;
    small.sizeCode = 0;
    Rig reading(small);
    ASSERT_TRUE(reading.transfer.readAllBlocks(64));
    std::vector<std::pair<std::size_t, std::size_t>> expected;
    for (std::size_t n = 0; n <= 8; ++n)
        expected.emplace_back(n, 8);
    EXPECT_EQ(reading.ui.blocks, expected);

    Rig writing;
    ASSERT_TRUE(writing.transfer.writeAllBlocks(300, false));
    const std::size_t total = 26 + 5 + 26;
    ASSERT_EQ(writing.ui.blocks.size(), total + 1);
    for (std::size_t n = 0; n <= total; ++n)
        EXPECT_EQ(writing.ui.blocks[n], std::make_pair(n, total)) << n;
}

} // namespace
} // namespace rm8::link
