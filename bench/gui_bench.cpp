// Figures for the main window: the time from process start to the window
// shown, the time to load a 65,536-byte settings file into the window, and
// the peak memory of the idle window. Prints the figures and whether each
// target is met; it is not a test and never fails on a slow machine.
//
// The start-up figure is taken across a process boundary: the parent reads
// the monotonic clock, starts this program again in child mode, and the
// child reports the same clock once its window is exposed, so the loading of
// the Qt libraries is counted as a technician would feel it.

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <QApplication>
#include <QTest>

#include "flow/file_flows.h"
#include "shell/main_controller.h"
#include "shell/qt_interaction.h"
#include "ui/main_window.h"

extern char** environ;

namespace {

long long monotonicNs()
{
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<long long>(now.tv_sec) * 1'000'000'000LL + now.tv_nsec;
}

// The high-water mark of the resident set, in KiB.
long peakResidentKiB()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmHWM:", 0) == 0)
            return std::stol(line.substr(6));
    return -1;
}

// Child mode: build the window as rm8config does, show it, and report the
// clock and the memory once it is on the screen and idle.
int runChild(int argc, char** argv)
{
    QApplication app(argc, argv);
    rm8::ui::MainWindow window;
    rm8::shell::QtInteraction interaction(&window);
    rm8::shell::MainController controller(window, interaction, {});
    window.show();
    if (!QTest::qWaitForWindowExposed(&window))
        return 1;
    const long long shown = monotonicNs();
    // A moment of idling lets lazily created resources (fonts, styles) count.
    QTest::qWait(300);
    std::printf("%lld %ld\n", shown, peakResidentKiB());
    return 0;
}

struct ChildFigures {
    double startupMs;
    long peakKiB;
};

bool runOnce(const char* self, ChildFigures& figures)
{
    int out[2];
    if (::pipe(out) != 0)
        return false;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, out[1], 1);
    posix_spawn_file_actions_addclose(&actions, out[0]);
    std::vector<std::string> words{self, "--child", "-platform", "offscreen"};
    std::vector<char*> argv;
    for (auto& w : words)
        argv.push_back(w.data());
    argv.push_back(nullptr);
    pid_t pid = -1;
    const long long started = monotonicNs();
    const int spawned = ::posix_spawn(&pid, self, &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(out[1]);
    if (spawned != 0) {
        ::close(out[0]);
        return false;
    }
    std::string text;
    char buffer[256];
    for (ssize_t n; (n = ::read(out[0], buffer, sizeof buffer)) > 0;)
        text.append(buffer, static_cast<std::size_t>(n));
    ::close(out[0]);
    int status = 0;
    ::waitpid(pid, &status, 0);
    long long shown = 0;
    long peak = 0;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0 || std::sscanf(text.c_str(), "%lld %ld", &shown, &peak) != 2)
        return false;
    figures = {static_cast<double>(shown - started) / 1e6, peak};
    return true;
}

// A 65,536-byte settings file: a golden configuration, its image padded with
// the bytes a full EEPROM dump would carry after the settings.
std::filesystem::path makeFullSizeFile()
{
    std::ifstream in(std::filesystem::path(RM8_TEST_DATA_DIR) / "long_texts.eep", std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    bytes.resize(65536, '\xFF');
    const auto path = std::filesystem::temp_directory_path() / ("rm8-gui-bench-" + std::to_string(::getpid()) + ".eep");
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return path;
}

// Answers nothing is asked of it; a load that shows a message is a failure.
class SilentInteraction : public rm8::Interaction {
public:
    void showProgress(std::string_view, bool) override {}
    void hideProgress() override {}
    bool cancelRequested() override { return false; }
    void message(rm8::MessageIcon, std::string_view text, std::string_view) override { failures.emplace_back(text); }
    rm8::Answer ask(rm8::MessageIcon, std::string_view, rm8::Buttons) override { return rm8::Answer::No; }
    std::vector<std::string> failures;
};

double medianOf(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

const char* verdict(bool met)
{
    return met ? "met" : "NOT met";
}

} // namespace

int main(int argc, char** argv)
{
    if (argc > 1 && std::strcmp(argv[1], "--child") == 0)
        return runChild(argc, argv);

    constexpr int kStarts = 7;
    std::vector<double> startups;
    long peak = 0;
    for (int i = 0; i < kStarts; ++i) {
        ChildFigures figures{};
        if (!runOnce(argv[0], figures)) {
            std::fprintf(stderr, "gui_bench: the child run failed\n");
            return 1;
        }
        startups.push_back(figures.startupMs);
        peak = std::max(peak, figures.peakKiB);
    }

    // Loading into the window: the file flow (read, header test, decode)
    // and filling every field.
    int qtArgc = 3;
    char platformFlag[] = "-platform";
    char platformName[] = "offscreen";
    char* qtArgv[] = {argv[0], platformFlag, platformName, nullptr};
    QApplication app(qtArgc, qtArgv);
    rm8::ui::MainWindow window;
    window.show();
    (void)QTest::qWaitForWindowExposed(&window);
    const auto file = makeFullSizeFile();
    constexpr int kLoads = 50;
    std::vector<double> loads;
    SilentInteraction ui;
    for (int i = 0; i < kLoads; ++i) {
        rm8::EepromImage image;
        rm8::StationSettings settings;
        const long long t0 = monotonicNs();
        const auto outcome = rm8::loadSettingsFile(file, image, settings, ui);
        window.fillSettings(settings);
        QCoreApplication::processEvents();
        const long long t1 = monotonicNs();
        if (outcome != rm8::FlowOutcome::Done) {
            std::fprintf(stderr, "gui_bench: loading the 65,536-byte file failed\n");
            std::filesystem::remove(file);
            return 1;
        }
        loads.push_back(static_cast<double>(t1 - t0) / 1e6);
    }
    std::filesystem::remove(file);

    const double startup = medianOf(startups);
    const double load = medianOf(loads);
    const double peakMiB = static_cast<double>(peak) / 1024.0;
    std::printf("start to main window shown (offscreen, median of %d): %.1f ms  (target < 400 ms: %s)\n", kStarts,
                startup, verdict(startup < 400));
    std::printf("load a 65,536-byte file into the window (median of %d): %.2f ms  (target < 50 ms: %s)\n", kLoads,
                load, verdict(load < 50));
    std::printf("peak memory of the idle window: %.1f MiB  (target < 80 MiB: %s)\n", peakMiB, verdict(peakMiB < 80));
    return 0;
}
