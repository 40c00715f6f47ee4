#pragma once
// A simulated station behind a pseudo-terminal: the tool opens the slave
// path like any serial port; the station answers on the master side.

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

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

    // Answers requests until stop() or until the stop condition holds.
    void serve(const std::atomic<bool>& stop);
    // Serves on a thread of its own until destroyed.
    void start();

    // A copy of the simulator's state, safe while serving.
    std::vector<std::uint8_t> eeprom() const;
    std::size_t framesHandled() const;

private:
    StationSimulator simulator_;
    mutable std::mutex mutex_;
    int master_ = -1;
    int slave_ = -1; // held open so that the master never sees a hang-up
    std::string path_;
    std::atomic<bool> stop_{false};
    std::thread thread_;
};

} // namespace rm8::sim
