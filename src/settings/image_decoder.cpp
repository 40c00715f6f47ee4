#include "settings/image_decoder.h"

#include <string_view>

#include "settings/conversions.h"
#include "settings/image_layout.h"
#include "settings/windows1250.h"

namespace rm8 {
namespace {

namespace L = layout;

bool bitOf(std::uint8_t byte, std::size_t bit)
{
    return ((static_cast<unsigned>(byte) >> bit) & 1u) != 0;
}

// The value of up to two hexadecimal characters, read as far as they are
// hexadecimal digits.
unsigned leadingHexValue(std::string_view text)
{
    unsigned value = 0;
    for (char c : text) {
        unsigned digit;
        if (c >= '0' && c <= '9')
            digit = static_cast<unsigned>(c - '0');
        else if (c >= 'A' && c <= 'F')
            digit = static_cast<unsigned>(c - 'A' + 10);
        else if (c >= 'a' && c <= 'f')
            digit = static_cast<unsigned>(c - 'a' + 10);
        else
            break;
        value = value * 16 + digit;
    }
    return value;
}

std::string untilNul(std::string text)
{
    const auto nul = text.find('\0');
    if (nul != std::string::npos)
        text.resize(nul);
    return text;
}

class Decoder {
public:
    Decoder(const EepromImage& image, StationSettings& settings) : image_(image), s_(settings) {}

    void run()
    {
        for (const auto& flag : L::kFlagBits)
            s_.*flag.field = bitOf(image_.byte(flag.address), static_cast<std::size_t>(flag.bit));
        const int days = image_.byte(L::kSmsValidityAddress) - L::kSmsValidityOffset;
        s_.tabDobaPlatnostiSMS = std::to_string(days);
        for (const auto& bits : L::kBitBytes)
            readBits(bits);
        for (const auto& run : L::kAnalogByteRuns)
            readAnalogRun(run);
        for (std::size_t i = 0; i < kRows; ++i)
            s_.tabOUTimpulsLEN[i] = decimalText(image_.byte(L::kImpulseLengthBase + i) / 10.0);
        for (const auto& bits : L::kAlarmBytes)
            readBits(bits);
        s_.eeMaskDOutFnc = image_.byte(L::kOutputFunctionAddress);
        for (std::size_t i = 0; i < kRows; ++i)
            s_.analogOptions[i] = image_.byte(L::kAnalogOptionsBase + i);
        for (const auto& interval : L::kIntervals)
            readInterval(interval);
        readHeap();
    }

    const std::string& field() const { return field_; }
    int row() const { return row_; }

private:
    void at(std::string_view field, int row)
    {
        field_ = field;
        row_ = row;
    }

    void readBits(const L::BitByte& bits)
    {
        const std::uint8_t byte = image_.byte(bits.address);
        if (bits.field == nullptr)
            return;
        for (std::size_t i = 0; i < kRows; ++i)
            (s_.*bits.field)[i] = bitOf(byte, i);
    }

    void readAnalogRun(const L::AnalogByteRun& run)
    {
        for (std::size_t i = 0; i < kRows; ++i) {
            const std::uint8_t b = image_.byte(run.base + i);
            const double value = run.scale == L::AnalogScale::Level ? byteToLevel(s_.ranges[i], b)
                                                                    : byteToHysteresis(s_.ranges[i], b);
            (s_.*run.field)[i] = decimalText(value);
        }
    }

    void readInterval(const L::Interval& interval)
    {
        const unsigned tenths = image_.byte(interval.address) + 256u * image_.byte(interval.address + 1u)
                                + 65536u * image_.byte(interval.address + 2u);
        s_.*interval.hours = std::to_string(tenths / 36000);
        s_.*interval.minutes = std::to_string((tenths / 600) % 60);
    }

    void readHeap()
    {
        for (const auto& group : L::kRowTextGroups) {
            p_ = image_.word(group.pointer);
            for (std::size_t i = 0; i < kRows; ++i) {
                at(group.name, static_cast<int>(i + 1));
                readTextInto((s_.*group.field)[i]);
            }
        }
        for (const auto& slot : L::kAnalogSlots) {
            p_ = image_.word(slot.pointer);
            for (std::size_t i = 0; i < kRows; ++i) {
                const bool inverted = s_.tabAINNeg[i];
                at(inverted ? slot.invertedName : slot.notInvertedName, static_cast<int>(i + 1));
                readTextInto((s_.*(inverted ? slot.inverted : slot.notInverted))[i]);
            }
        }

        at("", 0);
        p_ = image_.word(L::kReservedTextsPointer);
        std::string reserved;
        for (std::size_t i = 0; i < L::kReservedTextCount; ++i)
            readTextInto(reserved);

        p_ = image_.word(L::kPhonesPointer);
        for (std::size_t i = 0; i < kRows; ++i) {
            at("tabTC", static_cast<int>(i + 1));
            s_.tabTC[i] = readPhone();
        }

        p_ = image_.word(L::kGeneralTextsPointer);
        for (const auto& text : L::kGeneralTexts) {
            at(text.name, 0);
            readTextInto(s_.*text.field);
        }
    }

    // The characters up to the byte 0, which is consumed but not kept. A text
    // that runs off the image leaves what was collected in the field.
    void readTextInto(std::string& field)
    {
        const std::uint64_t start = p_;
        const auto collected = [&] {
            const auto bytes = image_.bytes().subspan(start, p_ - start);
            return cp1250::toUtf8(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
        };
        try {
            while (image_.byte(p_) != 0)
                ++p_;
        } catch (const ImageRangeError&) {
            field = collected();
            throw;
        }
        field = collected();
        ++p_;
    }

    std::string readPhone()
    {
        if (image_.byte(p_) == 0) {
            ++p_;
            return {};
        }
        std::string stored;
        stored += static_cast<char>(image_.byte(p_));
        stored += static_cast<char>(image_.byte(p_ + 1));
        p_ += 2;
        unsigned count = leadingHexValue(stored);
        count += count % 2;
        count += 2;
        for (unsigned k = 0; k < count; ++k)
            stored += static_cast<char>(image_.byte(p_++));
        ++p_; // the terminating 0, taken on trust
        return untilNul(addressFormToPhone(cp1250::toUtf8(stored)));
    }

    const EepromImage& image_;
    StationSettings& s_;
    std::uint64_t p_ = 0;
    std::string field_;
    int row_ = 0;
};

} // namespace

Expected<void, CodecError> decodeImage(const EepromImage& image, StationSettings& settings)
{
    Decoder decoder(image, settings);
    try {
        decoder.run();
        return {};
    } catch (const ImageRangeError& e) {
        CodecError error;
        error.fault = CodecFault::AddressOutOfRange;
        error.address = e.address();
        error.field = decoder.field();
        error.row = decoder.row();
        return unexpected(error);
    }
}

} // namespace rm8
