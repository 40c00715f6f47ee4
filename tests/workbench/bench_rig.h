#pragma once
// A workbench whose "COM 1" is a simulated station in process; the other
// port entries have no device. The station and its transcript outlive the
// sessions the workbench opens and closes on it.

#include <algorithm>
#include <memory>
#include <string>

#include "support/recording_interaction.h"
#include "support/sim_line.h"
#include "workbench/workbench.h"

namespace rm8::test {

// What the workbench owns for a session: the rig's line, lent.
class LentLine : public link::SerialLine, public link::LineClock {
public:
    explicit LentLine(SimLine& line)
        : line_(line)
    {
    }
    Expected<void, std::string> open() override { return line_.open(); }
    void close() override { line_.close(); }
    bool isOpen() const override { return line_.isOpen(); }
    Expected<void, std::string> write(std::span<const std::uint8_t> bytes) override { return line_.write(bytes); }
    Expected<Bytes, std::string> read(Clock::time_point deadline) override { return line_.read(deadline); }
    void flushInput() override { line_.flushInput(); }
    Clock::time_point now() override { return line_.now(); }
    void sleepUntil(Clock::time_point until) override { line_.sleepUntil(until); }

private:
    SimLine& line_;
};

struct BenchRig {
    explicit BenchRig(sim::StationProfile profile = {}, Bytes eeprom = {})
        : line(sim::StationSimulator(profile, std::move(eeprom)))
    {
    }

    // Requests of one code that reached the station.
    std::size_t requests(std::uint8_t code) const
    {
        const std::string head = ">" + hexText(std::span(&code, 1));
        return std::size_t(
            std::ranges::count_if(line.transcript, [&](const std::string& entry) { return entry.starts_with(head); }));
    }

    SimLine line;
    RecordingInteraction ui;
    Workbench bench { ui, [this](std::string_view port) -> std::unique_ptr<link::SerialLine> {
                         if (port != "COM 1")
                             return nullptr;
                         return std::make_unique<LentLine>(line);
                     } };
};

} // namespace rm8::test
