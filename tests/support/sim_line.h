#pragma once
// The one station of the link's tests: the simulated station in process,
// behind the serial-line interface and on a clock of its own. A reply arrives
// when the simulator says it is due; a wait for nothing moves the clock to
// its deadline at once, so reply times hold to the millisecond and no test
// waits in real time. What crosses the line is kept as transcript lines:
// "open", "close", "> 01 02 0D" a request, "< 81 82 0D" a reply, "~ 500" the
// milliseconds waited before the next line, "hang-up".

#include <algorithm>
#include <deque>
#include <map>

#include "flow/interaction.h"
#include "link/line_io.h"
#include "sim/station_simulator.h"

namespace rm8::test {

using Bytes = std::vector<std::uint8_t>;
using link::Clock;

inline std::string hexText(std::span<const std::uint8_t> bytes)
{
    std::string out;
    for (const auto b : bytes)
        out += {' ', "0123456789ABCDEF"[b / 16], "0123456789ABCDEF"[b % 16]};
    return out;
}

// Byte i is (i * factor + add) mod mod.
inline Bytes pattern(std::size_t size, unsigned factor, unsigned add, unsigned mod)
{
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>((i * factor + add) % mod);
    return bytes;
}

class SimLine : public link::SerialLine, public link::LineClock {
public:
    explicit SimLine(sim::StationSimulator simulator)
        : station(std::move(simulator))
    {
    }

    Expected<void, std::string> open() override
    {
        if (refuseOpen)
            return unexpected(std::string("zařízení je obsazeno"));
        note("open");
        open_ = true;
        return {};
    }
    void close() override
    {
        if (std::exchange(open_, false))
            note("close");
        due_.clear();
    }
    bool isOpen() const override { return open_; }
    Expected<void, std::string> write(std::span<const std::uint8_t> bytes) override
    {
        if (!open_)
            return unexpected(std::string("port není otevřen"));
        note(">" + hexText(bytes));
        const bool dead = station.hungUp();
        // One line: a held-back reply holds back those after it, and on an
        // emulated line each still takes its own time on the wire.
        for (auto& reply : dead ? std::vector<sim::Reply>{} : station.respond(bytes))
            if (reply.sent()) {
                const auto wire = std::chrono::duration_cast<Clock::duration>(
                    station.behaviour().line.wireTime(reply.bytes.size()));
                due_.push_back({std::max(now_ + std::chrono::duration_cast<Clock::duration>(reply.delay),
                                    due_.empty() ? now_ : due_.back().first + wire),
                    std::move(reply.bytes)});
            }
        if (!dead && station.hungUp())
            note("hang-up");
        return dead ? unexpected(std::string("odpojeno")) : Expected<void, std::string>{};
    }
    Expected<Bytes, std::string> read(Clock::time_point deadline) override
    {
        if (!open_ || (due_.empty() && station.hungUp()))
            return unexpected(std::string("odpojeno"));
        if (due_.empty() || due_.front().first > deadline) {
            sleepUntil(deadline);
            return Bytes{};
        }
        sleepUntil(due_.front().first);
        Bytes bytes = std::move(due_.front().second);
        due_.pop_front();
        note("<" + hexText(bytes));
        return bytes;
    }
    void flushInput() override
    {
        while (!due_.empty() && due_.front().first <= now_)
            due_.pop_front();
    }
    Clock::time_point now() override { return now_; }
    void sleepUntil(Clock::time_point until) override { now_ = std::max(now_, until); }

    // A transcript line, after the wait that came before it; a line break
    // in a text is written \r and \n.
    void note(const std::string& line)
    {
        if (const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(now_ - noted_).count(); ms > 0)
            transcript.push_back("~ " + std::to_string(ms));
        noted_ = now_;
        transcript.emplace_back();
        for (const char c : line)
            transcript.back() += c == '\r' ? "\\r" : c == '\n' ? "\\n" : std::string(1, c);
    }

    sim::StationSimulator station;
    std::vector<std::string> transcript;
    bool refuseOpen = false;

private:
    std::deque<std::pair<Clock::time_point, Bytes>> due_;
    bool open_ = false;
    Clock::time_point now_{};
    Clock::time_point noted_{};
};

// The station, the technician and the tool's side of the line, open. The
// technician's every step is noted in the transcript too, in order with what
// crosses the line: "progress: text" ("progress Storno: text" with the
// button), "hide", "blocks 3/8", "message Stop: text [detail]", "ask Stop
// YesNo: question". Storno is pressed as the station receives request number
// stornoAt; faults[n] is what happens to request n.
struct SimRig : Interaction {
    explicit SimRig(sim::StationProfile profile = {}, Bytes eeprom = {}, sim::StationBehaviour behaviour = {})
        : line(sim::StationSimulator(profile, std::move(eeprom), hooked(std::move(behaviour))))
    {
        (void)line.open();
    }
    sim::StationBehaviour hooked(sim::StationBehaviour behaviour)
    {
        behaviour.faultFor = [this](std::size_t n, std::span<const std::uint8_t>) {
            cancel = cancel || n == stornoAt;
            return faults.contains(n) ? faults[n] : sim::RequestFault::None;
        };
        return behaviour;
    }
    void showProgress(std::string_view text, bool storno) override
    {
        cancel = false;
        line.note((storno ? "progress Storno: " : "progress: ") + std::string(text));
    }
    void hideProgress() override { line.note("hide"); }
    bool cancelRequested() override { return ++turns, cancel; }
    void progressBlocks(std::size_t done, std::size_t total) override
    {
        line.note("blocks " + std::to_string(done) + "/" + std::to_string(total));
    }
    void message(MessageIcon icon, std::string_view text, std::string_view detail) override
    {
        line.note(std::string("message ") + kIcons[static_cast<std::size_t>(icon)] + ": " + std::string(text)
            + (detail.empty() ? "" : " [" + std::string(detail) + "]"));
    }
    Answer ask(MessageIcon icon, std::string_view question, Buttons buttons) override
    {
        line.note(std::string("ask ") + kIcons[static_cast<std::size_t>(icon)]
            + (buttons == Buttons::YesNo ? " YesNo: " : " ?: ") + std::string(question));
        return answer;
    }

    static constexpr const char* kIcons[] = {"Stop", "Exclamation", "Question", "Information"};
    SimLine line;
    link::LineIo io{line, *this, line};
    std::map<std::size_t, sim::RequestFault> faults;
    std::size_t stornoAt = 0, turns = 0;
    bool cancel = false;
    Answer answer = Answer::No;
};

} // namespace rm8::test
