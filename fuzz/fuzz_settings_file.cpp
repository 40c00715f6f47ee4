// libFuzzer target: arbitrary bytes as the content of a settings file, and as
// the text of a settings JSON document.
//
// The first byte picks the route. Most inputs go straight into the image from
// memory, so that the fuzzer spends its time in the decoder and the encoder
// rather than in the file system; one input in eight takes the real file path
// (write, readImageFile, save and load again), which also checks that the
// file reader and an in-memory copy agree byte for byte.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include <unistd.h>

#include "fields/settings_json.h"
#include "settings/codec_error.h"
#include "settings/eeprom_image.h"
#include "settings/image_decoder.h"
#include "settings/image_encoder.h"
#include "settings/image_header.h"
#include "settings/settings_file.h"
#include "settings/station_settings.h"
#include "settings/used_size.h"
#include "settings/windows1250.h"

namespace {

namespace fs = std::filesystem;

[[noreturn]] void violated(const char* what)
{
    std::fprintf(stderr, "invariant violated: %s\n", what);
    std::fflush(stderr);
    std::abort();
}

#define FUZZ_CHECK(condition)                                                                       \
    do {                                                                                            \
        if (!(condition))                                                                           \
            violated(#condition);                                                                   \
    } while (false)

// The bytes a load does not overwrite keep what the image held before. A
// pattern that is neither constant nor zero-free lets a text or a pointer
// that runs past the end of a short file meet a terminator now and then, so
// decoding past the file's end is exercised and not just always failing.
const rm8::EepromImage& startImage()
{
    static const rm8::EepromImage image = [] {
        rm8::EepromImage built(0);
        auto bytes = built.bytes();
        for (std::size_t i = 0; i < bytes.size(); ++i)
            bytes[i] = static_cast<std::uint8_t>(((i * 7u) + 0x5Au) ^ (i >> 8));
        return built;
    }();
    return image;
}

// One directory per process, removed at a normal exit; libFuzzer workers run
// in parallel and must not share files.
const fs::path& scratchDirectory()
{
    static const fs::path directory = [] {
        std::error_code error;
        fs::path base = fs::temp_directory_path(error);
        if (error)
            base = "/tmp";
        std::string pattern = (base / "rm8-fuzz-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) {
            std::perror("mkdtemp");
            std::abort();
        }
        std::atexit([] {
            std::error_code ignored;
            fs::remove_all(scratchDirectory(), ignored);
        });
        return fs::path(pattern);
    }();
    return directory;
}

void writeWholeFile(const fs::path& path, const std::uint8_t* data, std::size_t size)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    out.close();
    if (!out)
        violated("the scratch file could not be written");
}

// What readImageFile promises for a file of this content: its bytes at the
// start of the image, the rest untouched, and a 0 at offset 0 for an empty file.
rm8::EepromImage loadedFromMemory(const std::uint8_t* data, std::size_t size)
{
    rm8::EepromImage image = startImage();
    auto bytes = image.bytes();
    if (size > 0)
        std::memcpy(bytes.data(), data, size);
    else
        bytes[0] = 0;
    return image;
}

// The level-1 and level-2 message texts of inverted analog inputs come back
// exchanged from every pass through the image; this undoes that.
void exchangeInvertedAnalogTexts(rm8::StationSettings& s, const rm8::Row8<bool>& inverted)
{
    for (std::size_t i = 0; i < rm8::kRows; ++i) {
        if (!inverted[i])
            continue;
        std::swap(s.tabAINCL1Dn[i], s.tabAINCL2Dn[i]);
        std::swap(s.tabAINCL1Up[i], s.tabAINCL2Up[i]);
    }
}

bool plainPhoneNumber(std::string_view phone)
{
    if (!phone.empty() && phone.front() == '+')
        phone.remove_prefix(1);
    return std::all_of(phone.begin(), phone.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// What one pass through the image must keep exactly: the encoder accepted
// every text, so each one comes back byte for byte, and every check box and
// mask has a bit of its own. Numbers are left out: a byte holds fewer values
// than a text.
void checkKeptByOnePass(const rm8::StationSettings& before, rm8::StationSettings after, bool fromImage)
{
    exchangeInvertedAnalogTexts(after, before.tabAINNeg);

    for (auto text : {&rm8::StationSettings::tabJmenoStanice, &rm8::StationSettings::tabPIN,
                      &rm8::StationSettings::tabTCcentra, &rm8::StationSettings::rtNotAuthorized,
                      &rm8::StationSettings::rtPowerUp, &rm8::StationSettings::rtPowerDown,
                      &rm8::StationSettings::rtSwitchOn, &rm8::StationSettings::rtSwitchOff})
        FUZZ_CHECK(after.*text == before.*text);
    for (auto row : {&rm8::StationSettings::tabINPNazev, &rm8::StationSettings::tabINPZap,
                     &rm8::StationSettings::tabINPVyp, &rm8::StationSettings::tabINPLH,
                     &rm8::StationSettings::tabINPHL, &rm8::StationSettings::tabOUTNazev,
                     &rm8::StationSettings::tabOUTZap, &rm8::StationSettings::tabOUTVyp,
                     &rm8::StationSettings::tabOUTimpuls, &rm8::StationSettings::tabAINNazev,
                     &rm8::StationSettings::tabAINStateL, &rm8::StationSettings::tabAINStateM,
                     &rm8::StationSettings::tabAINStateH, &rm8::StationSettings::tabAINCL1Dn,
                     &rm8::StationSettings::tabAINCL1Up, &rm8::StationSettings::tabAINCL2Dn,
                     &rm8::StationSettings::tabAINCL2Up})
        FUZZ_CHECK(after.*row == before.*row);

    for (auto bits : {&rm8::StationSettings::tabTCPrijem, &rm8::StationSettings::tabTCUdalost,
                      &rm8::StationSettings::tabINPZpr, &rm8::StationSettings::tabINPLHEvent,
                      &rm8::StationSettings::tabINPHLEvent, &rm8::StationSettings::tabINPNeg,
                      &rm8::StationSettings::tabOUTZpr, &rm8::StationSettings::tabOUTNeg,
                      &rm8::StationSettings::tabAINZpr, &rm8::StationSettings::tabAINPrc,
                      &rm8::StationSettings::tabAINNeg, &rm8::StationSettings::tabAINCL1DnEvent,
                      &rm8::StationSettings::tabAINCL1UpEvent, &rm8::StationSettings::tabAINCL2DnEvent,
                      &rm8::StationSettings::tabAINCL2UpEvent, &rm8::StationSettings::eeMaskDInLHAlarm,
                      &rm8::StationSettings::eeMaskDInHLAlarm})
        FUZZ_CHECK(after.*bits == before.*bits);
    FUZZ_CHECK(after.eeMaskDOutFnc == before.eeMaskDOutFnc);
    FUZZ_CHECK(after.analogOptions == before.analogOptions);

    for (auto flag : {&rm8::StationSettings::tabPrepnoutNepovolPristup, &rm8::StationSettings::tabOdpovidatT0,
                      &rm8::StationSettings::opBatt, &rm8::StationSettings::opEnablePS1,
                      &rm8::StationSettings::opSuperPS, &rm8::StationSettings::opPSOutOff,
                      &rm8::StationSettings::opPINAuth})
        FUZZ_CHECK(after.*flag == before.*flag);
    // A report option without any text to send is stored off.
    FUZZ_CHECK(after.opNotAuthorized == (before.opNotAuthorized && !before.rtNotAuthorized.empty()));
    FUZZ_CHECK(after.opPowerReport
               == (before.opPowerReport && !(before.rtPowerUp.empty() && before.rtPowerDown.empty())));
    FUZZ_CHECK(after.opSwitchReport
               == (before.opSwitchReport && !(before.rtSwitchOn.empty() && before.rtSwitchOff.empty())));

    // A number typed as digits, with or without "+", comes back as typed; a
    // decoded number may have had a form the encoder never writes.
    if (!fromImage)
        for (std::size_t i = 0; i < rm8::kRows; ++i)
            if (plainPhoneNumber(before.tabTC[i]))
                FUZZ_CHECK(after.tabTC[i] == before.tabTC[i]);
}

// Settings that came out of an image, or out of a JSON document, going back
// into an image: whatever the encoder accepts must decode again and must take
// exactly the room that the used-size figure (and with it the file length)
// claims.
void checkEncodeOf(const rm8::StationSettings& settings, const rm8::EepromImage& base, bool fromImage,
                   const fs::path* saveTo)
{
    rm8::EepromImage encoded = base;
    const auto summary = rm8::encodeImage(settings, encoded);
    if (!summary) {
        FUZZ_CHECK(encoded == base); // a failed encoding leaves the image alone
        if (fromImage) {
            // Every character the decoder produces has a Windows-1250 byte and
            // none is a NUL, and every value came from a byte, so only room
            // may run out, or a phone number be too long.
            FUZZ_CHECK(summary.error().fault != rm8::CodecFault::TextConversion);
            // A phone number of more digits than its two-digit count can say
            // is the one value a decoded image can hold and not store.
            FUZZ_CHECK(summary.error().fault != rm8::CodecFault::ValueOverflow || summary.error().field == "tabTC");
        }
        return;
    }

    FUZZ_CHECK(rm8::imageHeaderValid(encoded));
    FUZZ_CHECK(summary->end <= rm8::EepromImage::kSize);
    const std::size_t used = rm8::usedSize(settings);
    FUZZ_CHECK(used == summary->end + 2 + rm8::cp1250::characterCount(settings.rtBattLow));

    rm8::StationSettings again;
    FUZZ_CHECK(rm8::decodeImage(encoded, again));
    checkKeptByOnePass(settings, again, fromImage);

    // One pass through the image settles every value onto what a byte can
    // say, so a second pass must change nothing but the level-1 and level-2
    // texts of inverted analog inputs, which every pass exchanges.
    rm8::EepromImage reencoded = encoded;
    const auto second = rm8::encodeImage(again, reencoded);
    if (!second) {
        FUZZ_CHECK(second.error().fault == rm8::CodecFault::AddressOutOfRange);
    } else {
        rm8::StationSettings settled;
        FUZZ_CHECK(rm8::decodeImage(reencoded, settled));
        exchangeInvertedAnalogTexts(settled, again.tabAINNeg);
        FUZZ_CHECK(settled == again);
    }

    if (saveTo == nullptr)
        return;

    const auto written = rm8::writeImageFile(*saveTo, encoded, used);
    const std::size_t length = rm8::settingsFileLength(used);
    if (length > rm8::EepromImage::kSize) {
        FUZZ_CHECK(!written);
        return;
    }
    FUZZ_CHECK(written);
    FUZZ_CHECK(fs::file_size(*saveTo) == length);

    // A saved file loads back into any image and decodes to the same settings:
    // everything the decoder reads lies inside the saved bytes.
    rm8::EepromImage reloaded = startImage();
    const auto read = rm8::readImageFile(*saveTo, reloaded);
    FUZZ_CHECK(read);
    FUZZ_CHECK(*read == length);
    FUZZ_CHECK(std::memcmp(reloaded.bytes().data(), encoded.bytes().data(), length) == 0);
    FUZZ_CHECK(rm8::imageHeaderValid(reloaded));
    rm8::StationSettings fromFile;
    FUZZ_CHECK(rm8::decodeImage(reloaded, fromFile));
    FUZZ_CHECK(fromFile == again);
}

void decodeAndReencode(const rm8::EepromImage& image, const fs::path* saveTo)
{
    (void)rm8::imageHeaderValid(image);

    // The tool decodes whatever the header says; it only warns.
    rm8::StationSettings decoded;
    const auto result = rm8::decodeImage(image, decoded);
    if (!result) {
        FUZZ_CHECK(result.error().fault == rm8::CodecFault::AddressOutOfRange);
        return;
    }
    checkEncodeOf(decoded, image, true, saveTo);
}

void fromFile(const std::uint8_t* data, std::size_t size)
{
    const fs::path& directory = scratchDirectory();
    const fs::path input = directory / "input.eep";
    writeWholeFile(input, data, size);

    rm8::EepromImage image = startImage();
    const auto read = rm8::readImageFile(input, image);
    if (size > rm8::EepromImage::kSize) {
        FUZZ_CHECK(!read);
        FUZZ_CHECK(read.error().fault == rm8::FileFault::TooLarge);
        FUZZ_CHECK(image == startImage());
        return;
    }
    FUZZ_CHECK(read);
    FUZZ_CHECK(*read == size);
    FUZZ_CHECK(image == loadedFromMemory(data, size));

    const fs::path output = directory / "output.eep";
    decodeAndReencode(image, &output);
}

void fromMemory(const std::uint8_t* data, std::size_t size)
{
    if (size > rm8::EepromImage::kSize)
        return; // the load refuses such a file; the file route checks that
    decodeAndReencode(loadedFromMemory(data, size), nullptr);
}

void fromJson(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto parsed = rm8::parseSettingsJson(text);
    if (!parsed)
        return;

    // What the tool writes it must read back unchanged.
    const auto reparsed = rm8::parseSettingsJson(rm8::settingsToJsonText(*parsed));
    FUZZ_CHECK(reparsed);
    FUZZ_CHECK(*reparsed == *parsed);

    // Arbitrary texts and numbers reach the encoder only this way.
    checkEncodeOf(*parsed, startImage(), false, nullptr);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size > 0 && data[0] % 8 == 7)
        fromFile(data, size);
    else
        fromMemory(data, size);
    fromJson(data, size);
    return 0;
}
