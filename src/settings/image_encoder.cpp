#include "settings/image_encoder.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string_view>

#include "settings/conversions.h"
#include "settings/image_header.h"
#include "settings/image_layout.h"
#include "settings/value_limits.h"
#include "settings/windows1250.h"

namespace rm8 {
namespace {

namespace L = layout;

constexpr std::size_t kMaxPhoneDigits = 255;

struct TextConversionFault {
    std::string detail;
};

// A number stored into a byte rounds to the nearest whole number, ties to
// even, and must fit.
long long storedWhole(double value)
{
    if (!std::isfinite(value) || std::fabs(value) > 1e15)
        return -1;
    return static_cast<long long>(std::nearbyint(value));
}

std::string describeCharacter(char32_t c)
{
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "U+%04X", static_cast<unsigned>(c));
    return buffer;
}

class Encoder {
public:
    Encoder(const StationSettings& settings, EepromImage& image) : s_(settings), image_(image) {}

    std::uint32_t run()
    {
        image_.putWord(L::kConstantWordAddress, L::kConstantWordValue);
        writeFlags(L::kFlags1Address);
        writeFlags(L::kFlags2Address);
        writeSmsValidity();
        for (const auto& bits : L::kBitBytes)
            writeBits(bits);
        for (const auto& run : L::kAnalogByteRuns)
            writeAnalogRun(run);
        writeImpulseLengths();
        for (const auto& bits : L::kAlarmBytes)
            writeBits(bits);
        image_.putByte(L::kOutputFunctionAddress, s_.eeMaskDOutFnc);
        for (std::size_t i = 0; i < kRows; ++i)
            image_.putByte(L::kAnalogOptionsBase + i, s_.analogOptions[i]);
        for (const auto& interval : L::kIntervals)
            writeInterval(interval);
        writeHeap();
        image_.putWord(L::kLayoutMarkAddress, L::kLayoutMark);
        at("", 0);
        image_.putWord(p_, L::kEndMark);
        image_.putByte(L::kCheckByteAddress, headerCheckByte(image_));
        return static_cast<std::uint32_t>(p_ + 2);
    }

    const std::string& field() const { return field_; }
    int row() const { return row_; }

private:
    void at(std::string_view field, int row)
    {
        field_ = field;
        row_ = row;
    }

    void writeFlags(std::uint16_t address)
    {
        long long value = 0;
        for (const auto& flag : L::kFlagBits) {
            if (flag.address != address || !(s_.*flag.field))
                continue;
            const bool needsText = flag.texts[0] != nullptr;
            bool hasText = false;
            for (auto text : flag.texts)
                hasText = hasText || (text != nullptr && !(s_.*text).empty());
            if (!needsText || hasText)
                value += 1LL << flag.bit;
        }
        image_.putByte(address, value);
    }

    void writeSmsValidity()
    {
        at("tabDobaPlatnostiSMS", 0);
        const double days = textValue(s_.tabDobaPlatnostiSMS);
        image_.putByte(L::kSmsValidityAddress, storedWhole(days + L::kSmsValidityOffset));
    }

    void writeBits(const L::BitByte& bits)
    {
        long long value = 0;
        if (bits.field != nullptr)
            for (std::size_t i = 0; i < kRows; ++i)
                if ((s_.*bits.field)[i])
                    value += 1LL << i;
        image_.putByte(bits.address, value);
    }

    void writeAnalogRun(const L::AnalogByteRun& run)
    {
        for (std::size_t i = 0; i < kRows; ++i) {
            at(run.name, static_cast<int>(i + 1));
            const std::string& text = (s_.*run.field)[i];
            const std::uint8_t b = run.scale == L::AnalogScale::Level
                                       ? levelToByte(s_.ranges[i], text)
                                       : hysteresisToByte(s_.ranges[i], text);
            image_.putByte(run.base + i, b);
        }
    }

    void writeImpulseLengths()
    {
        for (std::size_t i = 0; i < kRows; ++i) {
            at("tabOUTimpulsLEN", static_cast<int>(i + 1));
            const std::string t = clampText(s_.tabOUTimpulsLEN[i], limits::kImpulseLengthMin, limits::kImpulseLengthMax,
                                           limits::kImpulseLengthDecimals);
            image_.putByte(L::kImpulseLengthBase + i, storedWhole(textValue(t) * 10));
        }
    }

    void writeInterval(const L::Interval& interval)
    {
        at(interval.hoursName, 0);
        const double hours = textValue(clampText(s_.*interval.hours, 0, limits::kIntervalHoursMax, 0));
        const double minutes = textValue(clampText(s_.*interval.minutes, 0, limits::kIntervalMinutesMax, 0));
        const long long tenths = storedWhole((hours * 60 + minutes) * 600);
        image_.putByte(interval.address, tenths % 256);
        image_.putByte(interval.address + 1u, (tenths / 256) % 256);
        image_.putByte(interval.address + 2u, (tenths / 65536) % 256);
    }

    void writeHeap()
    {
        p_ = L::kHeapStart;
        for (const auto& group : L::kRowTextGroups)
            writeGroup(group.pointer, s_.*group.field, group.name);
        for (const auto& slot : L::kAnalogSlots)
            writeGroup(slot.pointer, s_.*slot.notInverted, slot.notInvertedName);

        at("", 0);
        pointTo(L::kReservedTextsPointer);
        for (std::size_t i = 0; i < L::kReservedTextCount; ++i)
            writeText("");

        pointTo(L::kPhonesPointer);
        for (std::size_t i = 0; i < kRows; ++i) {
            at("tabTC", static_cast<int>(i + 1));
            writePhone(s_.tabTC[i]);
        }

        at("", 0);
        pointTo(L::kGeneralTextsPointer);
        for (const auto& text : L::kGeneralTexts) {
            at(text.name, 0);
            writeText(s_.*text.field);
        }
    }

    // The running address as a pointer word: past the image it is an address
    // fault, whichever word would have held it.
    void pointTo(std::uint16_t pointer)
    {
        if (p_ >= EepromImage::kSize)
            throw ImageRangeError(p_);
        image_.putWord(pointer, static_cast<long long>(p_));
    }

    void writeGroup(std::uint16_t pointer, const Row8<std::string>& texts, std::string_view name)
    {
        at(name, 0);
        pointTo(pointer);
        for (std::size_t i = 0; i < kRows; ++i) {
            at(name, static_cast<int>(i + 1));
            writeText(texts[i]);
        }
    }

    // The digit count is stored in two hexadecimal characters; a longer
    // number would shift every entry after it.
    void writePhone(const std::string& phone)
    {
        const std::size_t digits = cp1250::characterCount(phone) - (phone.starts_with("+") ? 1 : 0);
        if (!phone.empty() && digits > kMaxPhoneDigits)
            throw ImageOverflowError(p_, static_cast<long long>(digits));
        writeText(phoneToAddressForm(phone));
    }

    void writeText(std::string_view utf8)
    {
        auto bytes = cp1250::fromUtf8(utf8);
        if (!bytes) {
            const auto& failure = bytes.error();
            throw TextConversionFault{failure.invalidUtf8
                                          ? std::string("neplatný zápis UTF-8")
                                          : "znak " + describeCharacter(failure.character)};
        }
        if (bytes->find('\0') != std::string::npos)
            throw TextConversionFault{"znak U+0000"};
        for (char c : *bytes)
            image_.putByte(p_++, static_cast<unsigned char>(c));
        image_.putByte(p_++, 0);
    }

    const StationSettings& s_;
    EepromImage& image_;
    std::uint64_t p_ = L::kHeapStart;
    std::string field_;
    int row_ = 0;
};

} // namespace

Expected<EncodeSummary, CodecError> encodeImage(const StationSettings& settings, EepromImage& image)
{
    // Work on a copy so that a failed encoding leaves no half-written image.
    EepromImage work = image;
    Encoder encoder(settings, work);
    CodecError error;
    try {
        const std::uint32_t end = encoder.run();
        // Copied rather than moved, so that views of the image stay valid.
        std::copy(work.bytes().begin(), work.bytes().end(), image.bytes().begin());
        return EncodeSummary{end};
    } catch (const ImageRangeError& e) {
        error.fault = CodecFault::AddressOutOfRange;
        error.address = e.address();
    } catch (const ImageOverflowError& e) {
        error.fault = CodecFault::ValueOverflow;
        error.address = e.address();
        error.detail = std::to_string(e.value());
    } catch (const TextConversionFault& e) {
        error.fault = CodecFault::TextConversion;
        error.detail = e.detail;
    }
    error.field = encoder.field();
    error.row = encoder.row();
    return unexpected(error);
}

} // namespace rm8
