// Figures for the settings report: building it and rendering it into a PDF
// for a configuration whose every text is at its length limit (wide letters,
// no blanks, so that every long cell is broken inside its words). Prints the
// median and the slowest of the runs and whether the target is met; it is
// not a test and never fails on a slow machine.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <variant>
#include <vector>

#include <QGuiApplication>
#include <QTemporaryDir>

#include "fields/field_catalogue.h"
#include "report/report_content.h"
#include "shell/report_printer.h"

namespace {

constexpr double kTargetMs = 200;
constexpr int kRuns = 15;
// tabTCcentra takes any length; a service-centre number is never longer.
constexpr int kUnlimitedLength = 100;

std::string wideText(int characters)
{
    std::string text;
    for (int i = 0; i < characters; ++i)
        text += i % 2 ? "W" : "Ř";
    return text;
}

rm8::StationSettings longestSettings()
{
    rm8::StationSettings settings;
    settings.opEnablePS1 = true;
    for (const auto& field : rm8::fieldCatalogue()) {
        const std::string text = wideText(field.maxLength > 0 ? field.maxLength : kUnlimitedLength);
        if (const auto* single = std::get_if<std::string rm8::StationSettings::*>(&field.member))
            settings.*(*single) = text;
        else if (const auto* column = std::get_if<rm8::Row8<std::string> rm8::StationSettings::*>(&field.member))
            (settings.*(*column)).fill(text);
    }
    return settings;
}

} // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("report.pdf"));
    const rm8::StationSettings settings = longestSettings();

    std::vector<double> times;
    for (int run = 0; run < kRuns; ++run) {
        const auto start = std::chrono::steady_clock::now();
        const auto written = rm8::shell::writeReportPdf(pdf, rm8::report::buildReport(settings));
        const auto end = std::chrono::steady_clock::now();
        if (!written) {
            std::fprintf(stderr, "report_bench: %s\n", qPrintable(written.error()));
            return 1;
        }
        times.push_back(std::chrono::duration<double, std::milli>(end - start).count());
    }
    std::sort(times.begin(), times.end());
    const double median = times[times.size() / 2];
    std::printf("Report of every text at its limit into a PDF (%d runs, the first one included):\n", kRuns);
    std::printf("  median %.1f ms, slowest %.1f ms, fastest %.1f ms; target under %.0f ms: %s\n", median, times.back(),
        times.front(), kTargetMs, median < kTargetMs ? "met" : "NOT met");
    return 0;
}
