#include <gtest/gtest.h>

#include "link/frame.h"
#include "link/station_tables.h"
#include "settings/memory_sizes.h"

namespace rm8::link {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(Frame, AttentionRequestOnTheWire)
{
    EXPECT_EQ(encodeFrame(Bytes{1}), (Bytes{1, 2, 13}));
}

TEST(Frame, ChecksumThatWouldBeACarriageReturnIsTwelve)
{
    // 5 + 7 + 1 = 13
    EXPECT_EQ(encodeFrame(Bytes{5, 7}), (Bytes{5, 7, 12, 13}));
    FrameAssembler assembler;
    assembler.add(Bytes{5, 7, 12, 13});
    ASSERT_TRUE(assembler.complete());
    EXPECT_EQ(assembler.reply(), (Bytes{5, 7}));
}

TEST(Frame, ReplyArrivesInPieces)
{
    const Bytes wire = encodeFrame(Bytes{0x81, 'A', '0'});
    FrameAssembler assembler;
    assembler.add(std::span(wire).first(2));
    EXPECT_FALSE(assembler.complete());
    assembler.add(std::span(wire).subspan(2));
    ASSERT_TRUE(assembler.complete());
    EXPECT_EQ(assembler.reply(), (Bytes{0x81, 'A', '0'}));
}

TEST(Frame, WrongChecksumGivesNoReply)
{
    FrameAssembler assembler;
    assembler.add(Bytes{3, 3, 13});
    ASSERT_TRUE(assembler.complete());
    EXPECT_FALSE(assembler.reply());
    FrameAssembler lone;
    lone.add(Bytes{13});
    EXPECT_FALSE(lone.reply()) << "a terminator alone has no checksum";
}

TEST(Frame, OverlongReplyNeverCompletes)
{
    Bytes data(100, 'x');
    const Bytes wire = encodeFrame(data); // 102 characters
    FrameAssembler assembler;
    assembler.add(wire);
    EXPECT_FALSE(assembler.complete()) << "the terminator is the 102nd character and is dropped";

    const Bytes fits = encodeFrame(Bytes(99, 'x')); // exactly 101
    FrameAssembler exact;
    exact.add(fits);
    EXPECT_TRUE(exact.complete());
    EXPECT_EQ(exact.reply()->size(), 99u);
}

TEST(HexPairs, UpperCaseOutEitherCaseIn)
{
    Bytes frame;
    appendHexByte(frame, 0x0A);
    appendHexByte(frame, 0xFF);
    EXPECT_EQ(frame, (Bytes{'0', 'A', 'F', 'F'}));
    for (int v = 0; v <= 255; ++v) {
        Bytes pair;
        appendHexByte(pair, static_cast<std::uint8_t>(v));
        EXPECT_EQ(hexPairToByte(pair[0], pair[1]), v);
    }
    EXPECT_EQ(hexPairToByte('a', 'f'), 0xAF);
}

TEST(StationTables, SignaturesAndCodes)
{
    EXPECT_EQ(signatureOf(0x19), 1692546u);
    EXPECT_EQ(signatureOf(0x22), 2282370u);
    EXPECT_EQ(signatureOf(0x20), 2151298u);
    EXPECT_EQ(signatureOf(0x21), 2216834u);
    EXPECT_EQ(productName(2151298), "RM8");
    EXPECT_FALSE(productName(12345));
    EXPECT_EQ(modemText(4), "TC35 Siemens");
    EXPECT_EQ(modemText(32), "GM12 Ericsson");
    EXPECT_FALSE(modemText(5)) << "the codes jump from 4 to 32";
    EXPECT_EQ(memorySizeText(6), "  8128 byte");
    EXPECT_FALSE(memorySizeText(10));
    // The shown size is 2^(code + 7) - 64.
    for (const auto& row : kMemorySizes) {
        const auto number = std::stoul(std::string(row.text.substr(0, row.text.size() - 5)));
        EXPECT_EQ(number, (1ul << (row.code + 7)) - 64) << int(row.code);
        EXPECT_EQ(row.text.size(), 11u);
    }
}

} // namespace
} // namespace rm8::link
