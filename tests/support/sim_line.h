#pragma once
// The one station of the link's tests: the simulated station in process,
// behind the serial-line interface and on a clock of its own. A reply arrives
// when the simulator says it is due; a wait for nothing moves the clock to
// its deadline at once, so reply times hold to the millisecond and no test
// waits in real time. Everything that crosses the line is kept as transcript
// lines: "open", "close", "> 01 02 0D" a request, "< 81 82 0D" a reply,
// "~ 500" the milliseconds waited before the next line, "hang-up".

#include <algorithm>
#include <cstdio>
#include <deque>
#include <string>
#include <vector>

#include "link/line_io.h"
#include "sim/station_simulator.h"
#include "support/recording_interaction.h"

namespace rm8::test {

using Bytes = std::vector<std::uint8_t>;

class FakeClock : public link::LineClock {
public:
    link::Clock::time_point now() override { return now_; }
    void sleepUntil(link::Clock::time_point until) override { now_ = std::max(now_, until); }

private:
    link::Clock::time_point now_{};
};

inline std::string hexText(std::span<const std::uint8_t> bytes)
{
    std::string out;
    char pair[4];
    for (const auto b : bytes) {
        std::snprintf(pair, sizeof pair, " %02X", b);
        out += pair;
    }
    return out;
}

class SimLine : public link::SerialLine {
public:
    explicit SimLine(sim::StationSimulator simulator) : station(std::move(simulator)) {}

    Expected<void, std::string> open() override
    {
        if (refuseOpen)
            return unexpected(std::string("zařízení je obsazeno"));
        open_ = true;
        note("open");
        return {};
    }
    void close() override
    {
        if (open_)
            note("close");
        open_ = false;
        due_.clear();
    }
    bool isOpen() const override { return open_; }
    Expected<void, std::string> write(std::span<const std::uint8_t> bytes) override
    {
        if (!open_)
            return unexpected(std::string("port není otevřen"));
        note(">" + hexText(bytes));
        if (station.hungUp())
            return unexpected(std::string("odpojeno"));
        for (auto& reply : station.respond(bytes))
            if (reply.sent()) // one line: a held-back reply holds back those after it
                due_.push_back({std::max(clock.now() + std::chrono::duration_cast<link::Clock::duration>(reply.delay),
                                         due_.empty() ? link::Clock::time_point{} : due_.back().at),
                                std::move(reply.bytes)});
        if (station.hungUp())
            note("hang-up");
        return {};
    }
    Expected<Bytes, std::string> read(link::Clock::time_point deadline) override
    {
        if (!open_ || (due_.empty() && station.hungUp()))
            return unexpected(std::string("odpojeno"));
        if (due_.empty() || due_.front().at > deadline) {
            clock.sleepUntil(deadline);
            return Bytes{};
        }
        clock.sleepUntil(due_.front().at);
        Bytes bytes = std::move(due_.front().bytes);
        due_.pop_front();
        note("<" + hexText(bytes));
        return bytes;
    }
    void flushInput() override
    {
        while (!due_.empty() && due_.front().at <= clock.now())
            due_.pop_front();
    }

    // A transcript line, after the wait that came before it.
    void note(const std::string& line)
    {
        const auto waited = std::chrono::duration_cast<std::chrono::milliseconds>(clock.now() - noted_).count();
        if (waited > 0)
            transcript.push_back("~ " + std::to_string(waited));
        noted_ = clock.now();
        transcript.push_back(line);
    }

    sim::StationSimulator station;
    FakeClock clock;
    std::vector<std::string> transcript;
    bool refuseOpen = false;

private:
    struct Due {
        link::Clock::time_point at;
        Bytes bytes;
    };
    std::deque<Due> due_;
    bool open_ = false;
    link::Clock::time_point noted_{};
};

// The station, the technician and the tool's side of the line.
struct SimRig {
    explicit SimRig(sim::StationProfile profile = {}, Bytes eeprom = {}, sim::StationBehaviour behaviour = {})
        : line(sim::StationSimulator(profile, std::move(eeprom), std::move(behaviour)))
    {
    }
    SimLine line;
    RecordingInteraction ui;
    link::LineIo io{line, ui, line.clock};
};

// A fault for the requests numbered first to last (1-based).
inline std::function<sim::RequestFault(std::size_t, std::span<const std::uint8_t>)>
faultAt(std::size_t first, std::size_t last, sim::RequestFault fault)
{
    return [=](std::size_t n, std::span<const std::uint8_t>) {
        return n >= first && n <= last ? fault : sim::RequestFault::None;
    };
}

} // namespace rm8::test
