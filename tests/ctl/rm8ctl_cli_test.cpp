// rm8ctl driven as a technician or a script drives it. Every row of
// ctl/cases.tsv is one command line, judged by the exit status, the first line
// printed (or the whole output against a golden file) and the files left
// behind. The rows run in order in one scratch folder, beside one simulated
// station ({port}), one too old to program ({foreign}), one of an unknown
// memory size ({unsized}), one that never leaves programming mode ({stuck})
// and a pseudo-terminal that nobody answers ({silent}).

#include <sys/wait.h>

#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "sim/pty_station.h"
#include "support/test_data.h"

namespace {

namespace fs = std::filesystem;

std::string slurp(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::vector<std::string> split(const std::string& text, char separator)
{
    std::vector<std::string> parts;
    std::istringstream in(text);
    for (std::string part; std::getline(in, part, separator);)
        if (!part.empty() || separator == '\t')
            parts.push_back(part);
    return parts;
}

std::set<std::string> listing(const fs::path& dir)
{
    std::set<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(dir))
        names.insert(entry.path().string());
    return names;
}

TEST(Rm8ctl, EveryRowOfTheCaseTable)
{
    rm8::sim::StationProfile profile;
    profile.memorySizeCode = 3; // 960 bytes
    rm8::sim::PtyStation station{rm8::sim::StationSimulator(profile)};
    station.start();
    rm8::sim::StationProfile older = profile;
    older.versionMajor = 0; // a processor too old to be programmed
    rm8::sim::PtyStation foreign{rm8::sim::StationSimulator(older)};
    foreign.start();
    rm8::sim::StationProfile unsized = profile;
    unsized.memorySizeCode = 10; // a memory size no row of the table has
    rm8::sim::PtyStation odd{rm8::sim::StationSimulator(unsized)};
    odd.start();
    const rm8::sim::PtyStation silent{rm8::sim::StationSimulator(profile)};
    rm8::sim::StationBehaviour staying;
    staying.faults.silentLeave = true;
    rm8::sim::PtyStation stuck{rm8::sim::StationSimulator(profile, {}, staying)};
    stuck.start();
    const rm8::test::ScratchDir dir;
    const rm8::test::ScratchDir capture;
    const std::map<std::string, std::string> places{{"{data}", rm8::test::dataDir().string()},
                                                    {"{examples}", (rm8::test::dataDir() / "../../examples").lexically_normal().string()},
                                                    {"{dir}", dir.path().string()},
                                                    {"{port}", station.path()},
                                                    {"{foreign}", foreign.path()},
                                                    {"{unsized}", odd.path()},
                                                    {"{silent}", silent.path()},
                                                    {"{stuck}", stuck.path()}};
    const auto fill = [&](std::string text) {
        for (const auto& [key, value] : places)
            for (std::size_t at; (at = text.find(key)) != std::string::npos;)
                text.replace(at, key.size(), value);
        return text;
    };

    std::ifstream table(rm8::test::dataDir() / "ctl/cases.tsv");
    int rows = 0;
    for (std::string line; std::getline(table, line);) {
        if (line.empty() || line[0] == '#')
            continue;
        // name, arguments, exit status, expected output, files
        const auto column = split(line, '\t');
        ASSERT_EQ(column.size(), 5u) << line;
        SCOPED_TRACE(column[0]);
        ++rows;
        std::map<std::string, std::string> kept; // file -> the bytes it must keep
        for (const auto& word : split(fill(column[4]), ' '))
            if (word != "-" && word.find_first_of("=#") == std::string::npos)
                kept[word] = slurp(word);
        const auto before = listing(dir.path());

        const std::string out = capture / "out", err = capture / "err";
        const int status = std::system(("'" RM8CTL_PATH "' " + fill(column[1]) + " </dev/null >" + out
                                        + " 2>" + err)
                                           .c_str());
        const std::string printed = slurp(out), complaint = slurp(err);
        const std::string shown = "\n--- stdout ---\n" + printed + "--- stderr ---\n" + complaint;
        ASSERT_TRUE(WIFEXITED(status)) << shown;
        EXPECT_EQ(WEXITSTATUS(status), std::stoi(column[2])) << shown;

        const std::string expected = fill(column[3]), kind = expected.substr(0, 4);
        std::string want = expected.substr(std::min<std::size_t>(4, expected.size())), got;
        if (expected == "-")
            want = "", got = printed + complaint;
        else if (kind == "out=") // and nothing on standard error
            want = fill(slurp(rm8::test::dataDir() / want)), got = printed + complaint;
        else if (kind == "out:") // one of the lines printed
            got = ("\n" + printed).find("\n" + want + "\n") != std::string::npos ? want : printed;
        else if (kind == "err:") // the first line of the complaint
            got = complaint.substr(0, complaint.find('\n'));
        else
            got = "an expectation of no known kind";
        EXPECT_EQ(got, want) << shown;

        // A refused command creates nothing and removes nothing.
        EXPECT_TRUE(WEXITSTATUS(status) == 0 || listing(dir.path()) == before) << "the scratch folder changed";
        for (const auto& word : split(fill(column[4]), ' ')) {
            if (word == "-")
                continue;
            const auto mark = word.find_first_of("=#");
            const std::string written = slurp(word.substr(0, mark));
            const bool right = mark == std::string::npos ? written == kept[word]
                               : word[mark] == '='   ? written == slurp(word.substr(mark + 1))
                                                     : std::count(written.begin(), written.end(), '\n')
                                                           == std::stoi(word.substr(mark + 1));
            EXPECT_TRUE(right) << word << " holds:\n" << written.substr(0, 400);
        }
    }
    EXPECT_GT(rows, 0);
}

// What rm8ctl says reaches a pipe as it is said, not when the program ends: a
// script that gives up on a long search still sees how far it came.
TEST(Rm8ctl, OutputReachesAPipeWhileItRuns)
{
    const rm8::sim::PtyStation silent{rm8::sim::StationSimulator({})};
    // The search would go on for an hour; the first message must not wait
    // for its end.
    FILE* out = ::popen(("echo $$; exec '" RM8CTL_PATH "' identify --search-timeout 3600 --port " + silent.path()
                            + " 2>&1")
                            .c_str(),
        "r");
    ASSERT_NE(out, nullptr);
    // Read without stdio's buffer, so that poll sees all that has come.
    std::string said;
    pollfd waiting{::fileno(out), POLLIN, 0};
    char chunk[512];
    while (std::count(said.begin(), said.end(), '\n') < 2 && ::poll(&waiting, 1, 10000) == 1) {
        const ssize_t n = ::read(waiting.fd, chunk, sizeof chunk);
        if (n <= 0)
            break;
        said.append(chunk, static_cast<std::size_t>(n));
    }
    const bool came = std::count(said.begin(), said.end(), '\n') >= 2;
    if (const pid_t pid = std::atoi(said.c_str()); pid > 0)
        ::kill(pid, SIGTERM);
    (void)::pclose(out);
    ASSERT_TRUE(came) << "nothing while the program ran: " << said;
    EXPECT_TRUE(said.substr(said.find('\n') + 1).starts_with("Uveďte zařízení do vypnutého stavu")) << said;
}

} // namespace
