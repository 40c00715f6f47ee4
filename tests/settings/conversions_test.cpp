#include <functional>
#include <map>

#include "settings/conversions.h"
#include "settings/memory_sizes.h"
#include "settings/table_file.h"

namespace rm8 {
namespace {

const MeasuringRange kPercent { 0, 100, 1, "%" };
const MeasuringRange kBattery { 0, 27, 1, "V" };

TEST(Conversions, TableOfInputsAndResults)
{
    const auto range = [](const std::string& name) { return name == "bat" ? kBattery : kPercent; };
    const auto byte = [](const std::string& text) { return static_cast<std::uint8_t>(std::stoi(text)); };
    const std::map<std::string, std::function<std::string(const test::Row&)>> functions {
        { "round", [&](const auto& r) { return decimalText(roundHalfUp(std::stod(r[1]), std::stoi(r[2]))); } },
        { "clamp", [&](const auto& r) { return clampText(r[1], std::stod(r[2]), std::stod(r[3]), std::stoi(r[4])); } },
        { "decimal", [&](const auto& r) { return decimalText(std::stod(r[1])); } },
        { "startup", [&](const auto& r) { return startupNumberText(std::stod(r[1])); } },
        { "value", [&](const auto& r) { return decimalText(textValue(r[1])); } },
        { "point", [&](const auto& r) { return decimalPoint(r[1]); } },
        { "toLevel", [&](const auto& r) { return std::to_string(levelToByte(range(r[1]), r[2])); } },
        { "fromLevel", [&](const auto& r) { return decimalText(byteToLevel(range(r[1]), byte(r[2]))); } },
        { "toHysteresis", [&](const auto& r) { return std::to_string(hysteresisToByte(range(r[1]), r[2])); } },
        { "fromHysteresis", [&](const auto& r) { return decimalText(byteToHysteresis(range(r[1]), byte(r[2]))); } },
        { "phone", [&](const auto& r) { return phoneToAddressForm(r[1]); } },
        { "fromPhone", [&](const auto& r) { return addressFormToPhone(r[1]); } },
        { "memory", [&](const auto& r) { return std::string(memorySizeText(byte(r[1])).value_or("-")); } },
        { "memoryNumber", [&](const auto& r) { return memorySizeNumberText(std::stoul(r[1])); } },
    };
    for (const auto& row : test::readTable("settings/conversions.tsv"))
        EXPECT_EQ(functions.at(row[0])(row), row.back()) << row[0] << "(" << row[1] << ")";
}

// Every level byte shown in a field must store back as the same byte, or a
// read followed by a write would drift the station's levels.
TEST(Conversions, EveryLevelByteSurvivesTextAndBack)
{
    for (const auto& range : { kPercent, kBattery }) {
        for (int b = 0; b <= 255; ++b) {
            const auto byte = static_cast<std::uint8_t>(b);
            EXPECT_EQ(levelToByte(range, decimalText(byteToLevel(range, byte))), byte) << b;
            if (b <= 127) {
                EXPECT_EQ(hysteresisToByte(range, decimalText(byteToHysteresis(range, byte))), byte) << b;
            }
        }
    }
}

} // namespace
} // namespace rm8
