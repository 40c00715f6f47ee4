// Link benchmark: a program that prints figures, not a timed test. The
// station is rm8sim in a process of its own, so that the tool's CPU time
// (getrusage of this process) holds nothing of the station's.
//
//  (a) with the station emulating a 9,600-baud 8N1 line: a full read and a
//      full write with read-back of an 8,128-byte EEPROM, measured time over
//      the ideal time (every request and reply byte at 10 bits per byte plus
//      the station's write time per block); target at most 1.03;
//  (b) without emulation: exchanges per second over the pseudo-terminal
//      (target at least 5,000) and the tool's CPU time per exchange;
//  (c) the tool's CPU time while it searches a silent station for 10 s
//      (target under 0.2 s);
//  (d) on a simulated 9,600-baud line with one reply in every 13 late by
//      150 ms: a full read and a full write with read-back, their time over
//      the physical limit (wire time plus the line's total lateness); target
//      at most 1.15 with the image exact;
//  (e) one stall (a reply 300 ms late) on a clean line: a full read's time
//      over a clean read's; target at most 1.05;
//  (f) the worst cases: every 7th reply 1,300 ms late, replies later than
//      the longest reply time, later than all of a block's attempts together
//      (the read must fail rather than give other bytes).
// Parts (d) to (f) run on the simulated station's clock and take seconds.
//
// Usage: link_bench [--only a|b|c|d|e|f] [--rm8sim PATH]

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "flow/interaction.h"
#include "link/block_transfer.h"
#include "link/posix_serial_line.h"
#include "link/session.h"
#include "settings/eeprom_image.h"
#include "support/sim_line.h"

extern char** environ;

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using rm8::link::LineIo;

constexpr std::size_t kEeprom = 8128; // size code 6
constexpr unsigned kBaud = 9600;
constexpr unsigned kWriteTimeMs = 5;
// A clean full read, and a clean full write with read-back up to the last
// block: the 26 header blocks twice and the data blocks from 272, each
// written and read back.
constexpr std::size_t kReadExchanges = kEeprom / 8;
constexpr std::size_t kWriteExchanges = 2 * (2 * 26 + (kEeprom - 8 - 272 + 7) / 8 + 1);

double secondsOf(Clock::duration d)
{
    return std::chrono::duration<double>(d).count();
}

double cpuSeconds()
{
    rusage usage {};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto tv
        = [](const timeval& t) { return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6; };
    return tv(usage.ru_utime) + tv(usage.ru_stime);
}

// rm8sim started with the given options; its first line is the device path.
class StationProcess {
public:
    StationProcess(const std::string& program, std::vector<std::string> options)
    {
        int out[2];
        if (::pipe2(out, O_CLOEXEC) != 0)
            throw std::runtime_error("pipe2 failed");
        options.insert(options.begin(), program);
        std::vector<char*> argv;
        for (auto& o : options)
            argv.push_back(o.data());
        argv.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, out[1], 1);
        const int failed = ::posix_spawn(&pid_, program.c_str(), &actions, nullptr, argv.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        ::close(out[1]);
        if (failed != 0) {
            ::close(out[0]);
            throw std::runtime_error("cannot start " + program + ": " + std::strerror(failed));
        }
        std::string line;
        const auto giveUp = Clock::now() + 10s;
        while (line.empty() || line.back() != '\n') {
            pollfd waiting { out[0], POLLIN, 0 };
            if (Clock::now() > giveUp || ::poll(&waiting, 1, 100) < 0)
                break;
            char c = 0;
            if ((waiting.revents & (POLLIN | POLLHUP)) != 0) {
                if (::read(out[0], &c, 1) != 1)
                    break;
                line += c;
            }
        }
        ::close(out[0]);
        if (line.empty() || line.back() != '\n')
            throw std::runtime_error(program + " printed no device path");
        line.pop_back();
        path_ = line;
    }
    ~StationProcess()
    {
        ::kill(pid_, SIGTERM);
        int status = 0;
        ::waitpid(pid_, &status, 0);
    }
    StationProcess(const StationProcess&) = delete;
    StationProcess& operator=(const StationProcess&) = delete;

    const std::string& path() const { return path_; }

private:
    pid_t pid_ = -1;
    std::string path_;
};

// Counts what crosses the line, for the ideal wire time.
class CountingLine : public rm8::link::SerialLine {
public:
    explicit CountingLine(rm8::link::SerialLine& line)
        : line_(line)
    {
    }

    rm8::Expected<void, std::string> open() override { return line_.open(); }
    void close() override { line_.close(); }
    bool isOpen() const override { return line_.isOpen(); }
    rm8::Expected<void, std::string> write(std::span<const std::uint8_t> bytes) override
    {
        sent += bytes.size();
        if (!bytes.empty() && bytes[0] == 5)
            ++blockWrites;
        ++requests;
        // The same request again is a retry: its reply did not come in time.
        if (std::vector<std::uint8_t>(bytes.begin(), bytes.end()) == last_)
            ++repeats;
        last_.assign(bytes.begin(), bytes.end());
        return line_.write(bytes);
    }
    rm8::Expected<std::vector<std::uint8_t>, std::string> read(rm8::link::Clock::time_point deadline) override
    {
        auto bytes = line_.read(deadline);
        if (bytes)
            received += bytes->size();
        return bytes;
    }
    void flushInput() override { line_.flushInput(); }

    void reset() { sent = received = blockWrites = requests = repeats = 0; }

    std::size_t sent = 0;
    std::size_t received = 0;
    std::size_t blockWrites = 0;
    std::size_t requests = 0;
    std::size_t repeats = 0;

private:
    rm8::link::SerialLine& line_;
    std::vector<std::uint8_t> last_;
};

// No person in front: no Storno, except after a set time.
class Unattended : public rm8::Interaction {
public:
    explicit Unattended(Clock::duration stornoAfter = Clock::duration::max())
        : stornoAfter_(stornoAfter)
    {
    }
    void showProgress(std::string_view, bool) override { shown_ = Clock::now(); }
    void hideProgress() override { }
    bool cancelRequested() override
    {
        ++turns;
        return stornoAfter_ != Clock::duration::max() && Clock::now() - shown_ >= stornoAfter_;
    }
    void message(rm8::MessageIcon, std::string_view, std::string_view) override { }
    rm8::Answer ask(rm8::MessageIcon, std::string_view, rm8::Buttons) override { return rm8::Answer::Yes; }

    long turns = 0;

private:
    Clock::duration stornoAfter_;
    Clock::time_point shown_ = Clock::now();
};

const char* verdict(bool met)
{
    return met ? "met" : "MISSED";
}

bool activate(LineIo& io)
{
    return rm8::link::activateLink(io, "bench").state == rm8::link::ConnectionState::Active;
}

rm8::EepromImage randomImage()
{
    rm8::EepromImage image;
    std::mt19937 random(2026);
    for (std::size_t a = 0; a < kEeprom + 64; ++a)
        image.putByte(a, static_cast<long long>(random() % 256));
    return image;
}

// (a) The emulated line: how close the tool comes to the wire's own time.
bool emulated(const std::string& rm8sim)
{
    StationProcess station(rm8sim,
        { "--size-code", "6", "--line-rate", std::to_string(kBaud), "--write-time", std::to_string(kWriteTimeMs) });
    rm8::link::PosixSerialLine posix(station.path());
    CountingLine line(posix);
    Unattended ui;
    LineIo io(line, ui);
    if (!activate(io))
        throw std::runtime_error("the station did not answer");
    std::printf("(a) line-rate emulation: %u baud 8N1 (10 bits per byte), %u ms per written block, EEPROM %zu bytes\n",
        kBaud, kWriteTimeMs, kEeprom);
    const double byteSeconds = 10.0 / kBaud;
    bool allMet = true;

    const auto report = [&](const char* what, Clock::duration took) {
        const double ideal = static_cast<double>(line.sent + line.received) * byteSeconds
            + static_cast<double>(line.blockWrites) * kWriteTimeMs / 1000.0;
        const double ratio = secondsOf(took) / ideal;
        const bool met = ratio <= 1.03;
        allMet = allMet && met;
        std::printf("    %-27s %5zu exchanges (%zu retried), %6zu bytes out, %6zu bytes in: measured %8.3f s, "
                    "ideal %8.3f s, ratio %.4f, %.0f us over the wire per exchange (target <= 1.03: %s)\n",
            what, line.requests, line.repeats, line.sent, line.received, secondsOf(took), ideal, ratio,
            (secondsOf(took) - ideal) * 1e6 / static_cast<double>(line.requests), verdict(met));
    };

    rm8::EepromImage image;
    rm8::link::BlockTransfer transfer(io, image);
    line.reset();
    auto started = Clock::now();
    if (!transfer.readAllBlocks(kEeprom))
        throw std::runtime_error("the full read failed");
    report("full read", Clock::now() - started);

    image = randomImage();
    line.reset();
    started = Clock::now();
    // A used size that takes the data pass to the last block of the memory.
    if (!transfer.writeAllBlocks(kEeprom - 8, true))
        throw std::runtime_error("the full write failed");
    report("full write with read-back", Clock::now() - started);
    return allMet;
}

// (b) No emulation: what the pseudo-terminal and the tool manage.
bool unthrottled(const std::string& rm8sim)
{
    StationProcess station(rm8sim, { "--size-code", "6" });
    rm8::link::PosixSerialLine posix(station.path());
    CountingLine line(posix);
    Unattended ui;
    LineIo io(line, ui);
    if (!activate(io))
        throw std::runtime_error("the station did not answer");
    rm8::EepromImage image;
    rm8::link::BlockTransfer transfer(io, image);
    constexpr int kRounds = 5;
    line.reset();
    const double cpuBefore = cpuSeconds();
    const auto started = Clock::now();
    for (int round = 0; round < kRounds; ++round)
        if (!transfer.readAllBlocks(kEeprom))
            throw std::runtime_error("a full read failed");
    const double took = secondsOf(Clock::now() - started);
    const double cpu = cpuSeconds() - cpuBefore;
    const double rate = static_cast<double>(line.requests) / took;
    const bool met = rate >= 5000;
    std::printf("(b) no emulation: %d full reads, %zu exchanges in %.3f s: %.0f exchanges per second "
                "(target >= 5000: %s); tool CPU %.3f s, %.1f us per exchange\n",
        kRounds, line.requests, took, rate, verdict(met), cpu, cpu * 1e6 / static_cast<double>(line.requests));
    return met;
}

// (c) Waiting on a station that never answers.
bool silent(const std::string& rm8sim)
{
    StationProcess station(rm8sim, { "--silent-attention", "1000000000" });
    rm8::link::PosixSerialLine line(station.path());
    Unattended ui(10s);
    LineIo io(line, ui);
    const double cpuBefore = cpuSeconds();
    const auto started = Clock::now();
    const bool found = activate(io);
    const double took = secondsOf(Clock::now() - started);
    const double cpu = cpuSeconds() - cpuBefore;
    const bool met = !found && cpu < 0.2;
    std::printf("(c) silent station searched for %.2f s (attention loop until Storno): tool CPU %.4f s, "
                "%ld turns of the user interface (target < 0.2 s: %s)\n",
        took, cpu, ui.turns, verdict(met));
    return met;
}

// The parts on a troubled line run against the simulated station in this
// process, on the station's own clock: reply times hold to the millisecond
// and a read of minutes takes a fraction of a second.
struct TroubledLine {
    unsigned lateEvery = 0; // every Nth request's reply is late; 0: only the one below
    std::size_t lateRequest = 0;
    std::chrono::milliseconds lateBy { 0 };
};

struct Outcome {
    bool done = false;
    bool exact = false;
    double seconds = 0;
    double lateness = 0; // of the late replies among as many as a clean transfer has
    double lineLateness = 0; // of all the replies the line held back, retries' included
    std::size_t requests = 0;
};

rm8::sim::StationBehaviour lineAt9600(std::chrono::milliseconds lateBy)
{
    rm8::sim::StationBehaviour behaviour;
    behaviour.line.baud = kBaud;
    behaviour.line.writeTime = std::chrono::milliseconds(kWriteTimeMs);
    behaviour.faults.lateBy = lateBy;
    behaviour.keepRequests = false;
    return behaviour;
}

Outcome transfer(const TroubledLine& trouble, bool write)
{
    const rm8::EepromImage held = randomImage();
    rm8::test::SimRig rig(
        {}, rm8::test::Bytes(held.bytes().begin(), held.bytes().begin() + kEeprom + 64), lineAt9600(trouble.lateBy));
    // More requests than any transfer here makes.
    for (std::size_t n = 1; n < 40000; ++n)
        if ((trouble.lateEvery != 0 && n % trouble.lateEvery == 0) || n == trouble.lateRequest)
            rig.faults[n] = rm8::sim::RequestFault::Late;
    rm8::EepromImage image(0);
    rm8::EepromImage intended = randomImage();
    if (write)
        image = intended;
    rm8::link::BlockTransfer blocks(rig.io, image);
    const auto started = rig.line.now();
    Outcome outcome;
    outcome.done = write ? blocks.writeAllBlocks(kEeprom - 8, true) : blocks.readAllBlocks(kEeprom);
    outcome.seconds = secondsOf(rig.line.now() - started);
    outcome.requests = rig.line.station.framesHandled();
    const std::size_t clean = write ? kWriteExchanges : kReadExchanges;
    const double late = std::chrono::duration<double>(trouble.lateBy).count();
    for (const auto& [n, fault] : rig.faults) {
        outcome.lateness += n <= clean ? late : 0;
        outcome.lineLateness += n <= outcome.requests ? late : 0;
    }
    const auto& station = rig.line.station.eeprom();
    outcome.exact = outcome.done
        && (write ? std::equal(station.begin() + 128, station.begin() + kEeprom, intended.bytes().begin() + 128)
                  : std::equal(held.bytes().begin(), held.bytes().begin() + kEeprom, image.bytes().begin()));
    return outcome;
}

// The wire's own time for a clean transfer: every request and reply byte at
// 10 bits per byte, and the station's write time per written block.
double wireSeconds(bool write)
{
    const double byteSeconds = 10.0 / kBaud;
    if (!write)
        return kReadExchanges * (7 + 19) * byteSeconds;
    const double writes = kWriteExchanges / 2.0;
    return writes * ((23 + 3) * byteSeconds + kWriteTimeMs / 1000.0) + writes * (7 + 19) * byteSeconds;
}

bool printTroubled(const char* what, const TroubledLine& trouble, bool write, double target)
{
    const Outcome o = transfer(trouble, write);
    const double limit = wireSeconds(write) + o.lateness;
    const double ratio = o.seconds / limit;
    const bool met = o.exact && (target == 0 || ratio <= target);
    char goal[48] = "";
    if (target != 0)
        std::snprintf(goal, sizeof goal, " (target <= %.2f: %s)", target, verdict(met));
    std::printf("    %-46s %s in %8.3f s, %5zu requests; limit %8.3f s (wire %.3f s + lateness %.3f s), ratio %.3f "
                "(%.3f over wire + all %.3f s the line held replies back, retries' included); %s%s\n",
        what, o.done ? "done" : "FAILED (block error)", o.seconds, o.requests, limit, wireSeconds(write), o.lateness,
        ratio, o.seconds / (wireSeconds(write) + o.lineLateness), o.lineLateness,
        o.exact      ? "image exact"
            : o.done ? "image DIFFERS"
                     : "nothing taken as read",
        goal);
    return target == 0 || met;
}

// (d) A noisy line: late replies, taken for what they answer.
bool lateReplies()
{
    std::printf(
        "(d) simulated station, %u baud 8N1, %zu-byte EEPROM, one reply in 13 late by 150 ms:\n", kBaud, kEeprom);
    const TroubledLine line { 13, 0, 150ms };
    const bool read = printTroubled("full read", line, false, 1.15);
    const bool written = printTroubled("full write with read-back", line, true, 1.15);
    return read && written;
}

// (e) One stall of the machine on a clean line: one reply 300 ms late.
bool oneStall()
{
    const Outcome clean = transfer({}, false);
    const Outcome stalled = transfer({ 0, 500, 300ms }, false);
    const double ratio = stalled.seconds / clean.seconds;
    const bool met = stalled.exact && clean.exact && ratio <= 1.05;
    std::printf("(e) simulated station, %u baud: full read clean %.3f s (%zu requests), with one reply 300 ms late "
                "%.3f s (%zu requests), ratio %.4f, image %s (target <= 1.05: %s)\n",
        kBaud, clean.seconds, clean.requests, stalled.seconds, stalled.requests, ratio,
        stalled.exact ? "exact" : "WRONG", verdict(met));
    return met;
}

// (f) The worst cases: no target but the right bytes or a block error.
bool worstCases()
{
    std::printf("(f) simulated station, %u baud, worst cases (the image exact, or the read fails):\n", kBaud);
    bool right = true;
    for (const auto& [what, line] :
        std::vector<std::pair<const char*, TroubledLine>> { { "read, 1 in 7 late by 1,300 ms", { 7, 0, 1300ms } },
            { "read, 1 in 13 late by 1,500 ms (> 1,200)", { 13, 0, 1500ms } },
            { "read, 1 in 13 late by 9,000 ms (> all waits)", { 13, 0, 9000ms } },
            { "write with read-back, 1 in 7 late by 1,300 ms", { 7, 0, 1300ms } } }) {
        const bool write = std::string_view(what).starts_with("write");
        const Outcome o = transfer(line, write);
        right = right && (o.exact || !o.done);
        printTroubled(what, line, write, 0);
    }
    return right;
}

} // namespace

int main(int argc, char** argv)
{
    // Each figure as soon as it is measured, also into a pipe or a file.
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    std::string only;
    std::string rm8sim = RM8SIM_PATH;
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string option = argv[i];
        if (option == "--only")
            only = argv[i + 1];
        else if (option == "--rm8sim")
            rm8sim = argv[i + 1];
    }
    std::printf("link benchmark: station %s in a process of its own\n", rm8sim.c_str());
    bool allMet = true;
    try {
        if (only.empty() || only == "a")
            allMet = emulated(rm8sim) && allMet;
        if (only.empty() || only == "b")
            allMet = unthrottled(rm8sim) && allMet;
        if (only.empty() || only == "c")
            allMet = silent(rm8sim) && allMet;
        if (only.empty() || only == "d")
            allMet = lateReplies() && allMet;
        if (only.empty() || only == "e")
            allMet = oneStall() && allMet;
        if (only.empty() || only == "f")
            allMet = worstCases() && allMet;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "link_bench: %s\n", e.what());
        return 2;
    }
    std::printf("%s\n", allMet ? "all targets met" : "some targets MISSED");
    return 0;
}
