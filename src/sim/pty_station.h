#pragma once
// A simulated station behind a pseudo-terminal: the tool opens the slave
// path like any serial port; the station answers on the master side, each
// reply when the simulator says it is due.

#include <atomic>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "link/frame_log.h"
#include "sim/station_simulator.h"

namespace rm8::sim {

class PtyStation {
public:
    // Opens the pseudo-terminal; throws std::runtime_error when it cannot.
    explicit PtyStation(StationSimulator simulator);
    ~PtyStation();
    PtyStation(const PtyStation&) = delete;
    PtyStation& operator=(const PtyStation&) = delete;

    const std::string& path() const { return path_; }

    // Every chunk read from the tool ('>') and every reply written ('<'),
    // with notes on the faults played. Set before serving; the log must
    // outlive the serving.
    void setLog(link::FrameLog* log) { log_ = log; }

    // Answers requests until the stop flag is set or the station hangs up
    // (then the pseudo-terminal is closed and the tool's side fails).
    void serve(const std::atomic<bool>& stop);
    // Serves on a thread of its own until destroyed.
    void start();

    // Copies of the simulator's state, safe while serving.
    std::vector<std::uint8_t> eeprom() const;
    std::size_t framesHandled() const;
    std::size_t blockRequests() const;
    std::vector<std::vector<std::uint8_t>> requests() const;
    // Every byte that came from the tool, as it came (when requests are kept).
    std::vector<std::uint8_t> received() const;
    bool hungUp() const { return hungUp_; }

private:
    bool writeReply(const std::vector<std::uint8_t>& bytes);
    void hangUp();

    StationSimulator simulator_;
    mutable std::mutex mutex_;
    std::vector<std::uint8_t> received_;
    int master_ = -1;
    int slave_ = -1; // held open so that the master never sees a hang-up
    std::string path_;
    link::FrameLog* log_ = nullptr;
    std::atomic<bool> stop_{false};
    std::atomic<bool> hungUp_{false};
    std::thread thread_;
};

} // namespace rm8::sim
