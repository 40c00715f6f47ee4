// Every golden settings file, as rm8ctl shows it and as the window would:
// the settings the window's load leaves (the workbench's), their report as
// the print command lays it out, and the used size of the memory display.

#include <cstdio>
#include <string>

#include <gtest/gtest.h>

#include "fields/settings_json.h"
#include "report/report_content.h"
#include "report/report_text.h"
#include "settings/used_size.h"
#include "support/recording_interaction.h"
#include "support/test_data.h"
#include "workbench/workbench.h"

namespace rm8::test {
namespace {

std::string rm8ctl(const std::string& arguments)
{
    std::string output;
    FILE* pipe = ::popen((std::string(RM8CTL_PATH) + " " + arguments).c_str(), "r");
    if (pipe == nullptr)
        return output;
    char buffer[4096];
    for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        output.append(buffer, n);
    ::pclose(pipe);
    return output;
}

std::string lineStarting(const std::string& text, const std::string& start)
{
    const auto at = text.find("\n" + start);
    return at == std::string::npos ? std::string() : text.substr(at + 1, text.find('\n', at + 1) - at - 1);
}

TEST(WindowAgreement, GoldenFilesShowAndPrintAsRm8ctlSaysThem)
{
    for (const auto& entry : readJson(dataDir() / "manifest.json")) {
        const std::string name = entry["name"];
        SCOPED_TRACE(name);
        const std::string file = (dataDir() / (name + ".eep")).string();
        RecordingInteraction ui;
        Workbench bench(ui, nullptr);
        ASSERT_EQ(bench.load(file), FlowOutcome::Done);

        EXPECT_EQ(nlohmann::json::parse(rm8ctl("decode '" + file + "'")), settingsToJson(bench.settings()));
        EXPECT_EQ(rm8ctl("report '" + file + "'"), report::reportText(report::buildReport(bench.settings())));
        EXPECT_EQ(lineStarting(rm8ctl("info '" + file + "'"), "Velikost nastavení:"),
            "Velikost nastavení:     " + std::to_string(usedSize(bench.settings())) + " byte");
    }
}

} // namespace
} // namespace rm8::test
