#include <gtest/gtest.h>

#include "settings/eeprom_image.h"

namespace rm8 {
namespace {

TEST(EepromImage, WordsAreLittleEndian)
{
    EepromImage image;
    image.putWord(46, 9602);
    EXPECT_EQ(image.byte(46), 0x82);
    EXPECT_EQ(image.byte(47), 0x25);
    EXPECT_EQ(image.word(46), 9602);
}

TEST(EepromImage, LastAddressIsUsableAndTheNextIsNot)
{
    EepromImage image;
    image.putByte(65535, 7);
    EXPECT_EQ(image.byte(65535), 7);
    EXPECT_THROW(image.byte(65536), ImageRangeError);
    EXPECT_THROW(image.putByte(65536, 1), ImageRangeError);
    // A word at the last address would need a byte past the end.
    EXPECT_THROW(image.word(65535), ImageRangeError);
    EXPECT_THROW(image.putWord(65535, 0xFFFF), ImageRangeError);
    EXPECT_EQ(image.byte(65535), 7) << "a failed word store must not change its low byte";
}

TEST(EepromImage, ValuesThatDoNotFitAreRefused)
{
    EepromImage image(0xAA);
    EXPECT_THROW(image.putByte(10, 256), ImageOverflowError);
    EXPECT_THROW(image.putByte(10, -1), ImageOverflowError);
    EXPECT_THROW(image.putWord(10, 65536), ImageOverflowError);
    EXPECT_EQ(image.byte(10), 0xAA);
    EXPECT_EQ(image.byte(11), 0xAA);
}

TEST(EepromImage, StartsFilledAndComparesByContent)
{
    EepromImage a(0xFF);
    EXPECT_EQ(a.bytes().size(), 65536u);
    EXPECT_EQ(a.byte(0), 0xFF);
    EepromImage b(0xFF);
    EXPECT_EQ(a, b);
    b.putByte(40000, 1);
    EXPECT_NE(a, b);
}

} // namespace
} // namespace rm8
