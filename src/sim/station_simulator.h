#pragma once
// A station in programming mode, as far as the configuration cable sees it:
// it takes request frames and gives reply frames. rm8sim puts it on a
// pseudo-terminal; tests can drive it directly.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace rm8::sim {

struct StationProfile {
    std::uint32_t signature = 2151298; // RM8
    std::uint8_t versionMajor = 1;
    std::uint8_t versionMinor = 0;
    std::uint8_t memorySizeCode = 6; // 8128 bytes of settings area
    std::uint8_t modemCode = 4;      // TC35 Siemens
};

// The settings area for a memory-size code: 2^(code + 7) - 64 bytes.
std::size_t memoryBytes(std::uint8_t memorySizeCode);

class StationSimulator {
public:
    explicit StationSimulator(StationProfile profile, std::vector<std::uint8_t> eeprom = {});

    // Bytes as they arrive from the tool; returns the reply bytes to send
    // back (possibly several frames, possibly none).
    std::vector<std::uint8_t> receive(std::span<const std::uint8_t> bytes);

    const std::vector<std::uint8_t>& eeprom() const { return eeprom_; }
    bool inProgrammingMode() const { return programming_; }
    std::size_t framesHandled() const { return frames_; }

private:
    std::optional<std::vector<std::uint8_t>> answer(const std::vector<std::uint8_t>& request);

    StationProfile profile_;
    std::vector<std::uint8_t> eeprom_;
    std::vector<std::uint8_t> pending_;
    bool programming_ = true;
    std::size_t frames_ = 0;
};

} // namespace rm8::sim
