// rm8ctl driven from the outside, as a technician or a script would: the real
// binary is started with arguments, stdin on /dev/null, and judged by its exit
// status, its stdout and stderr, and the files it leaves behind.

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <optional>
#include <random>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <pty.h>

#include "sim/pty_station.h"
#include <nlohmann/json.hpp>

extern char** environ;

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;
using OrderedJson = nlohmann::ordered_json;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr std::size_t kImageCapacity = 65536;

// ---------------------------------------------------------------------------
// Running the program
// ---------------------------------------------------------------------------

struct Outcome {
    int status = -1; // the exit status, or 128 + signal when the program was killed
    std::string out;
    std::string err;
};

std::ostream& operator<<(std::ostream& os, const Outcome& run)
{
    return os << "exit " << run.status << "\n--- stdout ---\n" << run.out << "--- stderr ---\n" << run.err;
}

// Both pipes are drained together so that a chatty program cannot block on a
// full stderr while the test waits on stdout.
Outcome runCtl(const std::vector<std::string>& args)
{
    int outPipe[2];
    int errPipe[2];
    if (pipe2(outPipe, O_CLOEXEC) != 0 || pipe2(errPipe, O_CLOEXEC) != 0) {
        ADD_FAILURE() << "pipe2: " << std::strerror(errno);
        return {};
    }

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, outPipe[1], 1);
    posix_spawn_file_actions_adddup2(&actions, errPipe[1], 2);

    std::vector<std::string> words { RM8CTL_PATH };
    words.insert(words.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (auto& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);

    pid_t pid = -1;
    const int spawned = posix_spawn(&pid, RM8CTL_PATH, &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(outPipe[1]);
    close(errPipe[1]);
    Outcome run;
    if (spawned != 0) {
        close(outPipe[0]);
        close(errPipe[0]);
        ADD_FAILURE() << "posix_spawn " << RM8CTL_PATH << ": " << std::strerror(spawned);
        return run;
    }

    std::array<pollfd, 2> fds { { { outPipe[0], POLLIN, 0 }, { errPipe[0], POLLIN, 0 } } };
    std::array<std::string*, 2> sinks { &run.out, &run.err };
    int remaining = 2;
    while (remaining > 0) {
        if (poll(fds.data(), fds.size(), -1) < 0) {
            if (errno == EINTR)
                continue;
            ADD_FAILURE() << "poll: " << std::strerror(errno);
            break;
        }
        for (std::size_t i = 0; i < fds.size(); ++i) {
            if (fds[i].fd < 0 || fds[i].revents == 0)
                continue;
            char buffer[4096];
            const ssize_t got = read(fds[i].fd, buffer, sizeof buffer);
            if (got > 0) {
                sinks[i]->append(buffer, static_cast<std::size_t>(got));
            } else if (got == 0 || errno != EINTR) {
                close(fds[i].fd);
                fds[i].fd = -1;
                --remaining;
            }
        }
    }
    for (const auto& fd : fds)
        if (fd.fd >= 0)
            close(fd.fd);

    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) { }
    if (WIFEXITED(status))
        run.status = WEXITSTATUS(status);
    else if (WIFSIGNALED(status))
        run.status = 128 + WTERMSIG(status);
    return run;
}

// ---------------------------------------------------------------------------
// Files
// ---------------------------------------------------------------------------

fs::path dataFile(const std::string& name)
{
    return fs::path(RM8_TEST_DATA_DIR) / name;
}

std::string readBytes(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    EXPECT_TRUE(in) << "cannot open " << path;
    return { std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>() };
}

void writeBytes(const fs::path& path, const std::string& bytes)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    ASSERT_TRUE(out) << "cannot write " << path;
}

Json readJson(const fs::path& path)
{
    return Json::parse(readBytes(path));
}

std::set<std::string> listing(const fs::path& dir)
{
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(dir))
        names.insert(entry.path().filename().string());
    return names;
}

// One fresh directory per test, gone afterwards whatever the outcome.
class TempDir {
public:
    TempDir()
    {
        static std::atomic<unsigned> counter { 0 };
        std::random_device entropy;
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        std::string stem = "rm8ctl_cli_" + std::to_string(getpid()) + "_" + std::to_string(counter++) + "_"
            + std::to_string(entropy() % 100000);
        if (info != nullptr)
            stem += std::string("_") + info->name();
        std::replace(stem.begin(), stem.end(), '/', '_');
        path_ = fs::temp_directory_path() / stem;
        fs::create_directories(path_);
    }
    ~TempDir()
    {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const fs::path& path() const { return path_; }
    fs::path operator/(const std::string& name) const { return path_ / name; }

private:
    fs::path path_;
};

// ---------------------------------------------------------------------------
// Images
// ---------------------------------------------------------------------------

unsigned byteAt(const std::string& image, std::size_t address)
{
    return static_cast<unsigned char>(image.at(address));
}

void putByte(std::string& image, std::size_t address, unsigned value)
{
    image.at(address) = static_cast<char>(static_cast<unsigned char>(value));
}

void putWord(std::string& image, std::size_t address, unsigned value)
{
    putByte(image, address, value % 256);
    putByte(image, address + 1, value / 256);
}

// Sum of bytes 0..47 plus one, modulo 256, with 13 replaced by 12.
unsigned headerCheckByte(const std::string& image)
{
    unsigned sum = 1;
    for (std::size_t a = 0; a < 48; ++a)
        sum += byteAt(image, a);
    sum %= 256;
    return sum == 13 ? 12 : sum;
}

bool headerValid(const std::string& image)
{
    return image.size() > 48 && byteAt(image, 46) + 256 * byteAt(image, 47) == 9602
        && byteAt(image, 48) == headerCheckByte(image);
}

// A full-size image with a valid header whose every text pointer leads into a
// tail that holds no byte 0, so the first text never ends inside the image.
std::string runawayImage()
{
    std::mt19937 random(0x5EED);
    std::string image(kImageCapacity, '\0');
    for (std::size_t a = 0; a < image.size(); ++a)
        putByte(image, a, static_cast<unsigned>(1 + random() % 255));
    for (std::size_t pointer = 0; pointer <= 40; pointer += 2)
        putWord(image, pointer, 0xFF00);
    putWord(image, 46, 9602);
    putByte(image, 48, headerCheckByte(image));
    return image;
}

std::string padded(std::string bytes, std::size_t length)
{
    bytes.resize(length, '\0');
    return bytes;
}

// ---------------------------------------------------------------------------
// Output checks
// ---------------------------------------------------------------------------

std::vector<std::string> lines(const std::string& text)
{
    std::vector<std::string> result;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        result.push_back(line);
    return result;
}

// An error is reported as exactly one line on stderr, and nothing on stdout.
void expectOneErrorLine(const Outcome& run, const std::vector<std::string>& mentions = {})
{
    EXPECT_EQ(run.out, "") << run;
    ASSERT_FALSE(run.err.empty()) << run;
    EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), 1) << run;
    EXPECT_EQ(run.err.back(), '\n') << run;
    EXPECT_THAT(run.err, StartsWith("rm8ctl: ")) << run;
    for (const auto& mention : mentions)
        EXPECT_THAT(run.err, HasSubstr(mention)) << run;
}

// The text after "label" on the line that begins with it, without the blanks
// that align the columns.
std::optional<std::string> valueAfter(const std::string& report, const std::string& label)
{
    for (const auto& line : lines(report)) {
        if (line.rfind(label, 0) != 0)
            continue;
        std::string rest = line.substr(label.size());
        const auto first = rest.find_first_not_of(' ');
        rest = first == std::string::npos ? std::string() : rest.substr(first);
        while (!rest.empty() && rest.back() == ' ')
            rest.pop_back();
        return rest;
    }
    return std::nullopt;
}

// The lines that a comparison of two configurations must print, one per
// differing field and row, worked out from their JSON forms.
std::multiset<std::string> expectedDiffLines(const Json& left, const Json& right)
{
    std::multiset<std::string> result;
    for (const auto& [key, a] : left.items()) {
        const Json& b = right.at(key);
        if (a.is_array()) {
            EXPECT_EQ(a.size(), 8u) << key;
            for (std::size_t i = 0; i < a.size(); ++i)
                if (a[i] != b[i])
                    result.insert(key + "[" + std::to_string(i + 1) + "]: " + a[i].dump() + " -> " + b[i].dump());
        } else if (a != b) {
            result.insert(key + ": " + a.dump() + " -> " + b.dump());
        }
    }
    return result;
}

// ---------------------------------------------------------------------------
// The golden cases
// ---------------------------------------------------------------------------

const std::vector<std::string> kAllCases
    = { "empty", "full", "all_bytes", "long_texts", "header_checksum_13", "flags_conditional", "decode_edge" };
const std::vector<std::string> kEncodableCases
    = { "empty", "full", "all_bytes", "long_texts", "header_checksum_13", "flags_conditional" };

std::string caseName(const ::testing::TestParamInfo<std::string>& info)
{
    return info.param;
}

bool allZero(const Json& row)
{
    return std::all_of(row.begin(), row.end(), [](const Json& v) { return v == 0; });
}

TEST(GoldenData, CaseTablesFollowTheManifest)
{
    const Json manifest = readJson(dataFile("manifest.json"));
    std::set<std::string> all;
    std::set<std::string> withInput;
    for (const auto& entry : manifest) {
        all.insert(entry.at("name").get<std::string>());
        if (entry.at("has_input").get<bool>())
            withInput.insert(entry.at("name").get<std::string>());
    }
    EXPECT_EQ(all, std::set<std::string>(kAllCases.begin(), kAllCases.end()));
    EXPECT_EQ(withInput, std::set<std::string>(kEncodableCases.begin(), kEncodableCases.end()));
}

// ---------------------------------------------------------------------------
// decode
// ---------------------------------------------------------------------------

class DecodeGolden : public ::testing::TestWithParam<std::string> { };

TEST_P(DecodeGolden, PrintsTheExpectedSettings)
{
    const Outcome run = runCtl({ "decode", dataFile(GetParam() + ".eep").string() });
    ASSERT_EQ(run.status, 0) << run;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(Json::parse(run.out), readJson(dataFile(GetParam() + ".json")));
}

TEST_P(DecodeGolden, KeyOrderIsStableAndStartsWithTheGeneralTexts)
{
    const Outcome first = runCtl({ "decode", dataFile(GetParam() + ".eep").string() });
    const Outcome second = runCtl({ "decode", dataFile(GetParam() + ".eep").string() });
    ASSERT_EQ(first.status, 0) << first;
    ASSERT_EQ(second.status, 0) << second;
    EXPECT_EQ(first.out, second.out);

    const OrderedJson json = OrderedJson::parse(first.out);
    std::vector<std::string> keys;
    for (const auto& [key, value] : json.items())
        keys.push_back(key);
    ASSERT_GE(keys.size(), 3u);
    EXPECT_EQ(keys[0], "tabJmenoStanice");
    EXPECT_EQ(keys[1], "tabPIN");
    EXPECT_EQ(keys[2], "tabTCcentra");
}

TEST_P(DecodeGolden, WritesTheSettingsIntoOutInsteadOfStdout)
{
    TempDir dir;
    const fs::path target = dir / "settings.json";
    const Outcome run = runCtl({ "decode", dataFile(GetParam() + ".eep").string(), "--out", target.string() });
    ASSERT_EQ(run.status, 0) << run;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(readJson(target), readJson(dataFile(GetParam() + ".json")));
    EXPECT_EQ(listing(dir.path()), std::set<std::string> { "settings.json" });
}

INSTANTIATE_TEST_SUITE_P(Golden, DecodeGolden, ::testing::ValuesIn(kAllCases), caseName);

TEST(Decode, AcceptsAFileOfExactlyTheImageCapacity)
{
    TempDir dir;
    const fs::path source = dir / "full_padded.eep";
    writeBytes(source, padded(readBytes(dataFile("full.eep")), kImageCapacity));
    const Outcome run = runCtl({ "decode", source.string() });
    ASSERT_EQ(run.status, 0) << run;
    EXPECT_EQ(Json::parse(run.out), readJson(dataFile("full.json")));
}

// A file that stops right after the header leaves the rest of a fresh image
// at 0: every pointer leads to byte 0 at 272 and above, so all texts and
// phones are empty, and every byte-coded value reads as its zero.
TEST(Decode, ShortFileWithValidHeaderReadsTheRestAsZeros)
{
    TempDir dir;
    const fs::path source = dir / "header_only.eep";
    const std::string header = readBytes(dataFile("empty.eep")).substr(0, 49);
    ASSERT_TRUE(headerValid(header));
    writeBytes(source, header);

    Json expected = readJson(dataFile("empty.json"));
    expected["tabDobaPlatnostiSMS"] = "-166";
    expected["tabAINCL2Level"] = Json::array({ "0", "0", "0", "0", "0", "0", "0", "0" });
    expected["tabOUTimpulsLEN"] = Json::array({ "0", "0", "0", "0", "0", "0", "0", "0" });
    expected["eePSOnH"] = "0";
    expected["eePSOffH"] = "0";

    const Outcome run = runCtl({ "decode", source.string() });
    ASSERT_EQ(run.status, 0) << run;
    EXPECT_EQ(Json::parse(run.out), expected);
}

// ---------------------------------------------------------------------------
// encode
// ---------------------------------------------------------------------------

class EncodeGolden : public ::testing::TestWithParam<std::string> { };

TEST_P(EncodeGolden, InputOverItsBaseGivesTheGoldenFile)
{
    TempDir dir;
    const fs::path target = dir / "out.eep";
    const Outcome run = runCtl({ "encode", "--force", dataFile(GetParam() + ".input.json").string(), "--base",
        dataFile(GetParam() + ".eep").string(), "--out", target.string() });
    ASSERT_EQ(run.status, 0) << run;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "");
    const std::string golden = readBytes(dataFile(GetParam() + ".eep"));
    const std::string written = readBytes(target);
    EXPECT_EQ(written.size(), golden.size());
    EXPECT_TRUE(written == golden) << "the written file differs from " << GetParam() << ".eep";
    EXPECT_EQ(listing(dir.path()), std::set<std::string> { "out.eep" });
}

// An inverted analog input reads its level-1 message texts from the level-2
// slots and the reverse, while the encoder always writes the fields in slot
// order; decode, encode and decode again therefore exchange them.
TEST_P(EncodeGolden, ReEncodingExchangesTheMessageTextsOfInvertedInputsOnly)
{
    TempDir dir;
    const fs::path decoded = dir / "decoded.json";
    const fs::path reencoded = dir / "again.eep";
    const fs::path base = dataFile(GetParam() + ".eep");
    const Outcome decode = runCtl({ "decode", base.string(), "--out", decoded.string() });
    ASSERT_EQ(decode.status, 0) << decode;
    const Outcome encode = runCtl({ "encode", "--force", decoded.string(), "--base", base.string(), "--out", reencoded.string() });
    ASSERT_EQ(encode.status, 0) << encode;
    const Outcome again = runCtl({ "decode", reencoded.string() });
    ASSERT_EQ(again.status, 0) << again;

    Json expected = readJson(dataFile(GetParam() + ".json"));
    const Json original = expected;
    for (std::size_t i = 0; i < 8; ++i) {
        if (original["tabAINNeg"][i] != 1)
            continue;
        expected["tabAINCL1Dn"][i] = original["tabAINCL2Dn"][i];
        expected["tabAINCL2Dn"][i] = original["tabAINCL1Dn"][i];
        expected["tabAINCL1Up"][i] = original["tabAINCL2Up"][i];
        expected["tabAINCL2Up"][i] = original["tabAINCL1Up"][i];
    }
    EXPECT_EQ(Json::parse(again.out), expected);
    if (allZero(original["tabAINNeg"])) {
        EXPECT_TRUE(readBytes(reencoded) == readBytes(base)) << "round trip changed the bytes";
    }
}

INSTANTIATE_TEST_SUITE_P(Golden, EncodeGolden, ::testing::ValuesIn(kEncodableCases), caseName);

// A configuration without inverted analog inputs survives decode and encode
// over its own image byte for byte.
TEST(Encode, DecodedSettingsEncodeBackToTheSameBytes)
{
    std::vector<std::string> cases;
    for (const auto& name : kEncodableCases)
        if (allZero(readJson(dataFile(name + ".json"))["tabAINNeg"]))
            cases.push_back(name);
    ASSERT_FALSE(cases.empty());

    for (const auto& name : cases) {
        SCOPED_TRACE(name);
        TempDir dir;
        const fs::path base = dataFile(name + ".eep");
        const Outcome decode = runCtl({ "decode", base.string() });
        ASSERT_EQ(decode.status, 0) << decode;
        writeBytes(dir / "settings.json", decode.out);
        const Outcome encode = runCtl({ "encode", "--force", (dir / "settings.json").string(), "--base", base.string(), "--out",
            (dir / "again.eep").string() });
        ASSERT_EQ(encode.status, 0) << encode;
        EXPECT_TRUE(readBytes(dir / "again.eep") == readBytes(base)) << "round trip changed the bytes";
    }
}

// Without a base the image starts as zeros, which is the base empty.eep was
// made on; the file is U - 1 = 429 bytes.
TEST(Encode, WithoutBaseStartsFromAZeroImage)
{
    TempDir dir;
    const fs::path target = dir / "new.eep";
    const Outcome run = runCtl({ "encode", dataFile("empty.input.json").string(), "--out", target.string() });
    ASSERT_EQ(run.status, 0) << run;
    const std::string written = readBytes(target);
    EXPECT_EQ(written.size(), 429u);
    EXPECT_TRUE(written == readBytes(dataFile("empty.eep")));
}

Json emptyInputWith(const std::string& key, const Json& value)
{
    Json json = readJson(dataFile("empty.input.json"));
    json[key] = value;
    return json;
}

// The used size counts rtBattLow although the image does not carry it: three
// characters instead of none make U 433, so the file is 432 bytes, its tail
// taken from the (zero) base.
TEST(Encode, FileLengthFollowsTheUsedSizeIncludingBatteryText)
{
    TempDir dir;
    writeBytes(dir / "settings.json", emptyInputWith("rtBattLow", "abc").dump());
    const Outcome run = runCtl({ "encode", (dir / "settings.json").string(), "--out", (dir / "out.eep").string() });
    ASSERT_EQ(run.status, 0) << run;
    const std::string written = readBytes(dir / "out.eep");
    EXPECT_EQ(written.size(), 432u);
    EXPECT_TRUE(written == padded(readBytes(dataFile("empty.eep")), 432));
}

// The general block comes last, so a three-character station name shifts only
// the block's tail; each character takes its single Windows-1250 byte.
TEST(Encode, StoresWindows1250CharactersAsSingleBytes)
{
    TempDir dir;
    writeBytes(dir / "settings.json", emptyInputWith("tabJmenoStanice", "€Ťž").dump());
    const Outcome run = runCtl({ "encode", (dir / "settings.json").string(), "--out", (dir / "out.eep").string() });
    ASSERT_EQ(run.status, 0) << run;
    std::string expected = readBytes(dataFile("empty.eep"));
    ASSERT_EQ(byteAt(expected, 38) + 256 * byteAt(expected, 39), 418u);
    expected.insert(418, "\x80\x8D\x9E");
    EXPECT_TRUE(readBytes(dir / "out.eep") == expected);
}

// Only the bytes the encoder is defined to write change; the others, and the
// one byte past the end mark, are the base's. The check byte follows the
// base's words 6 and 44.
TEST(Encode, KeepsTheBaseBytesThatTheLayoutLeavesAlone)
{
    TempDir dir;
    const std::string base = runawayImage();
    writeBytes(dir / "base.eep", base);
    const Outcome run = runCtl({ "encode", dataFile("empty.input.json").string(), "--base", (dir / "base.eep").string(),
        "--out", (dir / "out.eep").string() });
    ASSERT_EQ(run.status, 0) << run;

    std::string expected = readBytes(dataFile("empty.eep"));
    const auto keep = [&](std::size_t from, std::size_t to) {
        for (std::size_t a = from; a <= to; ++a)
            putByte(expected, a, byteAt(base, a));
    };
    keep(6, 7);
    keep(44, 45);
    keep(49, 127);
    keep(191, 239);
    keep(257, 271);
    keep(428, 428);
    putByte(expected, 48, headerCheckByte(expected));
    EXPECT_TRUE(readBytes(dir / "out.eep") == expected);
}

// ---------------------------------------------------------------------------
// Overwriting
// ---------------------------------------------------------------------------

TEST(Overwrite, ExistingFileIsKeptWithoutYes)
{
    TempDir dir;
    const fs::path target = dir / "station.eep";
    const std::string old = readBytes(dataFile("full.eep"));
    writeBytes(target, old);
    const Outcome run = runCtl({ "encode", dataFile("empty.input.json").string(), "--out", target.string() });
    EXPECT_EQ(run.status, 1) << run;
    expectOneErrorLine(run, { target.string() });
    EXPECT_TRUE(readBytes(target) == old);
    EXPECT_EQ(listing(dir.path()), std::set<std::string> { "station.eep" });
}

TEST(Overwrite, ExistingFileIsReplacedWithYes)
{
    TempDir dir;
    const fs::path target = dir / "station.eep";
    writeBytes(target, readBytes(dataFile("full.eep")));
    const Outcome run = runCtl({ "encode", dataFile("empty.input.json").string(), "--out", target.string(), "--yes" });
    ASSERT_EQ(run.status, 0) << run;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "");
    EXPECT_TRUE(readBytes(target) == readBytes(dataFile("empty.eep")));
    EXPECT_EQ(listing(dir.path()), std::set<std::string> { "station.eep" });
}

// A longer file replaced by a shorter one must not keep its old tail.
TEST(Overwrite, ReplacedFileTakesTheNewLength)
{
    TempDir dir;
    const fs::path target = dir / "station.eep";
    writeBytes(target, readBytes(dataFile("long_texts.eep")));
    const Outcome run = runCtl({ "encode", "--force", dataFile("full.input.json").string(), "--base",
        dataFile("full.eep").string(), "--out", target.string(), "--yes" });
    ASSERT_EQ(run.status, 0) << run;
    EXPECT_TRUE(readBytes(target) == readBytes(dataFile("full.eep")));
}

TEST(Overwrite, FileCanBeItsOwnBase)
{
    TempDir dir;
    const fs::path target = dir / "station.eep";
    writeBytes(target, readBytes(dataFile("full.eep")));
    const Outcome run = runCtl({ "encode", "--force", dataFile("full.input.json").string(), "--base", target.string(), "--out",
        target.string(), "--yes" });
    ASSERT_EQ(run.status, 0) << run;
    EXPECT_TRUE(readBytes(target) == readBytes(dataFile("full.eep")));
    EXPECT_EQ(listing(dir.path()), std::set<std::string> { "station.eep" });
}

TEST(Overwrite, DirectoryAsTargetIsNotReplaced)
{
    TempDir dir;
    const fs::path target = dir / "folder.eep";
    fs::create_directory(target);
    writeBytes(target / "inside", "x");
    const Outcome run = runCtl({ "encode", dataFile("empty.input.json").string(), "--out", target.string(), "--yes" });
    EXPECT_EQ(run.status, 2) << run;
    expectOneErrorLine(run, { target.string() });
    EXPECT_TRUE(fs::is_directory(target));
    EXPECT_EQ(readBytes(target / "inside"), "x");
    EXPECT_EQ(listing(dir.path()), std::set<std::string> { "folder.eep" });
}

TEST(Overwrite, TargetInMissingDirectoryIsAnError)
{
    TempDir dir;
    const fs::path target = dir / "no_such_dir" / "station.eep";
    const Outcome run = runCtl({ "encode", dataFile("empty.input.json").string(), "--out", target.string() });
    EXPECT_EQ(run.status, 2) << run;
    expectOneErrorLine(run, { target.string() });
    EXPECT_TRUE(listing(dir.path()).empty());
}

// ---------------------------------------------------------------------------
// Bad input
// ---------------------------------------------------------------------------

struct Scenario {
    std::vector<std::string> args; // without --out
    std::optional<fs::path> out; // passed as --out when set
    std::vector<std::string> overwrite; // added when --out names an existing file
    std::vector<fs::path> namedAnyOf; // the message must name one of these
    std::vector<std::string> mentions; // and hold all of these
};

struct BadInputCase {
    std::string label;
    std::function<Scenario(const fs::path& dir)> make;
};

template <typename Case> std::string labelOf(const ::testing::TestParamInfo<Case>& param)
{
    return param.param.label;
}

void writeText(const fs::path& path, const std::string& text)
{
    writeBytes(path, text);
}

Scenario decodeOf(const fs::path& source, std::vector<std::string> mentions = {})
{
    return { { "decode", source.string() }, source.parent_path() / "out.json", {}, { source }, std::move(mentions) };
}

Scenario encodeOf(const fs::path& settings, std::vector<std::string> mentions = {})
{
    return { { "encode", settings.string() }, settings.parent_path() / "out.eep", { "--yes" }, { settings },
        std::move(mentions) };
}

Scenario encodeWithBase(const fs::path& base)
{
    return { { "encode", "--force", dataFile("full.input.json").string(), "--base", base.string() },
        base.parent_path() / "out.eep", { "--yes" }, { base }, {} };
}

Scenario infoOf(const fs::path& source)
{
    return { { "info", source.string() }, std::nullopt, {}, { source }, {} };
}

Scenario settingsWith(const fs::path& dir, const std::string& key, const Json& value)
{
    const fs::path settings = dir / "settings.json";
    writeText(settings, emptyInputWith(key, value).dump());
    return encodeOf(settings, { key });
}

Scenario encodeUnencodable(const fs::path& dir, const std::string& key, const Json& value)
{
    const fs::path settings = dir / "settings.json";
    writeText(settings, emptyInputWith(key, value).dump());
    Scenario scenario = encodeOf(settings);
    scenario.namedAnyOf.push_back(*scenario.out);
    return scenario;
}

std::string notFormat()
{
    return "nejsou v pořádku - neodpovídají formátu EEPROM.";
}

// empty.eep with one header byte changed; the check byte is made right again
// when only the mark is to be wrong.
std::string emptyWithHeader(std::size_t address, unsigned value, bool fixCheckByte)
{
    std::string image = readBytes(dataFile("empty.eep"));
    putByte(image, address, value);
    if (fixCheckByte)
        putByte(image, 48, headerCheckByte(image));
    return image;
}

const std::vector<BadInputCase> kBadInputs = {
    { "DecodeMissingFile", [](const fs::path& dir) { return decodeOf(dir / "missing.eep"); } },
    { "DecodeDirectory",
        [](const fs::path& dir) {
            fs::create_directory(dir / "folder.eep");
            return decodeOf(dir / "folder.eep");
        } },
    { "DecodeEmptyFile",
        [](const fs::path& dir) {
            writeBytes(dir / "zero.eep", "");
            return decodeOf(dir / "zero.eep", { notFormat() });
        } },
    { "DecodeFileOneByteOverCapacity",
        [](const fs::path& dir) {
            writeBytes(dir / "huge.eep", padded(readBytes(dataFile("full.eep")), kImageCapacity + 1));
            return decodeOf(dir / "huge.eep");
        } },
    { "DecodeTextRunsOffTheImage",
        [](const fs::path& dir) {
            const std::string image = runawayImage();
            EXPECT_TRUE(headerValid(image));
            writeBytes(dir / "runaway.eep", image);
            return decodeOf(dir / "runaway.eep");
        } },
    { "DecodeWrongLayoutMark",
        [](const fs::path& dir) {
            writeBytes(dir / "mark.eep", emptyWithHeader(46, 0x83, true));
            return decodeOf(dir / "mark.eep", { notFormat() });
        } },
    { "DecodeWrongCheckByte",
        [](const fs::path& dir) {
            const std::string good = readBytes(dataFile("empty.eep"));
            writeBytes(dir / "check.eep", emptyWithHeader(48, (byteAt(good, 48) + 1) % 256, false));
            return decodeOf(dir / "check.eep", { notFormat() });
        } },
    { "DecodeCheckByteThirteen",
        [](const fs::path& dir) {
            std::string image = readBytes(dataFile("header_checksum_13.eep"));
            putByte(image, 48, 13);
            writeBytes(dir / "thirteen.eep", image);
            return decodeOf(dir / "thirteen.eep", { notFormat() });
        } },
    { "DecodeJsonSyntaxError",
        [](const fs::path& dir) {
            writeText(dir / "broken.json", R"({"tabPIN": "1234",)");
            return decodeOf(dir / "broken.json");
        } },
    { "InfoMissingFile", [](const fs::path& dir) { return infoOf(dir / "missing.eep"); } },
    { "InfoDirectory",
        [](const fs::path& dir) {
            fs::create_directory(dir / "folder.eep");
            return infoOf(dir / "folder.eep");
        } },
    { "InfoFileOneByteOverCapacity",
        [](const fs::path& dir) {
            writeBytes(dir / "huge.eep", std::string(kImageCapacity + 1, '\x01'));
            return infoOf(dir / "huge.eep");
        } },
    { "EncodeMissingSettings", [](const fs::path& dir) { return encodeOf(dir / "missing.json"); } },
    { "EncodeSettingsDirectory",
        [](const fs::path& dir) {
            fs::create_directory(dir / "folder.json");
            return encodeOf(dir / "folder.json");
        } },
    { "EncodeEmptySettingsFile",
        [](const fs::path& dir) {
            writeText(dir / "zero.json", "");
            return encodeOf(dir / "zero.json");
        } },
    { "EncodeJsonSyntaxError",
        [](const fs::path& dir) {
            writeText(dir / "broken.json", R"({"tabPIN": "1234", "opBatt": 1,})");
            return encodeOf(dir / "broken.json");
        } },
    { "EncodeJsonNotAnObject",
        [](const fs::path& dir) {
            writeText(dir / "array.json", "[1, 2, 3]");
            return encodeOf(dir / "array.json");
        } },
    { "EncodeInvalidUtf8",
        [](const fs::path& dir) {
            writeText(dir / "latin2.json",
                "{\"tabJmenoStanice\": \"\xC8"
                "erpadlo\"}");
            return encodeOf(dir / "latin2.json");
        } },
    { "EncodeCheckBoxAsText", [](const fs::path& dir) { return settingsWith(dir, "opBatt", "yes"); } },
    { "EncodeCheckBoxOutOfRange", [](const fs::path& dir) { return settingsWith(dir, "opBatt", 2); } },
    { "EncodeOptionAsNumber", [](const fs::path& dir) { return settingsWith(dir, "opEnablePS1", 1); } },
    { "EncodeTextAsNumber", [](const fs::path& dir) { return settingsWith(dir, "tabPIN", 1234); } },
    { "EncodeRowTooShort", [](const fs::path& dir) { return settingsWith(dir, "tabINPNazev", Json::array({ "a" })); } },
    { "EncodeRowTooLong",
        [](const fs::path& dir) {
            return settingsWith(dir, "tabTC", Json::array({ "", "", "", "", "", "", "", "", "" }));
        } },
    { "EncodeRowElementOfWrongType",
        [](const fs::path& dir) {
            return settingsWith(dir, "tabAINNeg", Json::array({ 0, 0, 0, 0, 0, 0, 0, "1" }));
        } },
    { "EncodeFlagRowOfNumbers",
        [](const fs::path& dir) {
            return settingsWith(dir, "eeMaskDInLHAlarm", Json::array({ 1, 0, 0, 0, 0, 0, 0, 0 }));
        } },
    { "EncodeByteOutOfRange", [](const fs::path& dir) { return settingsWith(dir, "eeMaskDOutFnc", 256); } },
    { "EncodeByteRowNegative",
        [](const fs::path& dir) {
            return settingsWith(dir, "analogOptions", Json::array({ 0, 0, 0, -1, 0, 0, 0, 0 }));
        } },
    { "EncodeUnknownKey", [](const fs::path& dir) { return settingsWith(dir, "tabNeznamePole", "x"); } },
    { "EncodeNameOutsideWindows1250",
        [](const fs::path& dir) { return encodeUnencodable(dir, "tabJmenoStanice", "Ω"); } },
    { "EncodeRowTextOutsideWindows1250",
        [](const fs::path& dir) {
            return encodeUnencodable(dir, "tabINPNazev", Json::array({ "", "", "Vstup 😀", "", "", "", "", "" }));
        } },
    { "EncodeBaseMissing", [](const fs::path& dir) { return encodeWithBase(dir / "missing.eep"); } },
    { "EncodeBaseDirectory",
        [](const fs::path& dir) {
            fs::create_directory(dir / "folder.eep");
            return encodeWithBase(dir / "folder.eep");
        } },
    { "EncodeBaseOneByteOverCapacity",
        [](const fs::path& dir) {
            writeBytes(dir / "huge.eep", padded(readBytes(dataFile("full.eep")), kImageCapacity + 1));
            return encodeWithBase(dir / "huge.eep");
        } },
    { "DiffMissingRight",
        [](const fs::path& dir) {
            return Scenario { { "diff", dataFile("full.eep").string(), (dir / "missing.json").string() }, std::nullopt,
                {}, { dir / "missing.json" }, {} };
        } },
    { "DiffBrokenJsonLeft",
        [](const fs::path& dir) {
            writeText(dir / "broken.json", "{");
            return Scenario { { "diff", (dir / "broken.json").string(), dataFile("full.eep").string() }, std::nullopt,
                {}, { dir / "broken.json" }, {} };
        } },
    { "DiffNotASettingsFile",
        [](const fs::path& dir) {
            writeBytes(dir / "zero.eep", "");
            return Scenario { { "diff", dataFile("full.eep").string(), (dir / "zero.eep").string() }, std::nullopt, {},
                { dir / "zero.eep" }, { notFormat() } };
        } },
};

void expectNamesOneOf(const Outcome& run, const std::vector<fs::path>& candidates)
{
    const bool named = std::any_of(candidates.begin(), candidates.end(),
        [&](const fs::path& p) { return run.err.find(p.string()) != std::string::npos; });
    std::string names;
    for (const auto& p : candidates)
        names += " '" + p.string() + "'";
    EXPECT_TRUE(named) << "the message names none of" << names << "\n" << run;
}

void PrintTo(const BadInputCase& c, std::ostream* os)
{
    *os << c.label;
}

// The cases whose command takes --out.
std::vector<BadInputCase> writingCases()
{
    std::vector<BadInputCase> result;
    for (const auto& c : kBadInputs)
        if (c.label.rfind("Decode", 0) == 0 || c.label.rfind("Encode", 0) == 0)
            result.push_back(c);
    return result;
}

class BadInput : public ::testing::TestWithParam<BadInputCase> { };
class BadInputOverExisting : public ::testing::TestWithParam<BadInputCase> { };

TEST_P(BadInput, IsRefusedWithOneLineAndNoOutputFile)
{
    TempDir dir;
    const Scenario scenario = GetParam().make(dir.path());
    const auto before = listing(dir.path());
    std::vector<std::string> args = scenario.args;
    if (scenario.out) {
        args.push_back("--out");
        args.push_back(scenario.out->string());
    }
    const Outcome run = runCtl(args);
    EXPECT_EQ(run.status, 2) << run;
    expectOneErrorLine(run, scenario.mentions);
    expectNamesOneOf(run, scenario.namedAnyOf);
    EXPECT_EQ(listing(dir.path()), before) << "files were created or removed";
}

TEST_P(BadInputOverExisting, LeavesTheExistingOutputFileAsItWas)
{
    TempDir dir;
    const Scenario scenario = GetParam().make(dir.path());
    ASSERT_TRUE(scenario.out.has_value());
    const std::string old = readBytes(dataFile("long_texts.eep"));
    writeBytes(*scenario.out, old);
    const auto before = listing(dir.path());
    std::vector<std::string> args = scenario.args;
    args.push_back("--out");
    args.push_back(scenario.out->string());
    args.insert(args.end(), scenario.overwrite.begin(), scenario.overwrite.end());
    const Outcome run = runCtl(args);
    EXPECT_EQ(run.status, 2) << run;
    expectOneErrorLine(run, scenario.mentions);
    EXPECT_TRUE(readBytes(*scenario.out) == old) << "the existing file was changed";
    EXPECT_EQ(listing(dir.path()), before) << "files were created or removed";
}

INSTANTIATE_TEST_SUITE_P(Cli, BadInput, ::testing::ValuesIn(kBadInputs), labelOf<BadInputCase>);
INSTANTIATE_TEST_SUITE_P(Cli, BadInputOverExisting, ::testing::ValuesIn(writingCases()), labelOf<BadInputCase>);

// ---------------------------------------------------------------------------
// Bad usage
// ---------------------------------------------------------------------------

struct UsageCase {
    std::string label;
    std::vector<std::string> args; // "@" stands for the test's directory
};

const std::vector<UsageCase> kBadUsage = {
    { "NoCommand", {} },
    { "UnknownCommand", { "convert", "@/a.eep" } },
    { "UnknownOption", { "decode", "@/a.eep", "--verbose" } },
    { "UnknownOptionBeforeCommand", { "--frobnicate", "decode", "@/a.eep" } },
    { "OutWithoutValue", { "decode", "@/a.eep", "--out" } },
    { "EncodeWithoutOut", { "encode", "@/settings.json" } },
    { "EncodeWithoutOutButWithYes", { "encode", "@/settings.json", "--yes" } },
    { "DecodeWithoutFile", { "decode" } },
    { "DecodeWithTwoFiles", { "decode", "@/a.eep", "@/b.eep", "--out", "@/out.json" } },
    { "EncodeWithoutSettings", { "encode", "--out", "@/out.eep" } },
    { "EncodeWithTwoSettings", { "encode", "@/a.json", "@/b.json", "--out", "@/out.eep" } },
    { "InfoWithoutFile", { "info" } },
    { "InfoWithTwoFiles", { "info", "@/a.eep", "@/b.eep" } },
    { "DiffWithOneFile", { "diff", "@/a.eep" } },
    { "DiffWithThreeFiles", { "diff", "@/a.eep", "@/b.eep", "@/c.eep" } },
};

void PrintTo(const UsageCase& c, std::ostream* os)
{
    *os << c.label;
}

class BadUsage : public ::testing::TestWithParam<UsageCase> { };

TEST_P(BadUsage, ExitsWithTwoAndOneLine)
{
    TempDir dir;
    // Real, valid inputs, so that only the command line can be at fault.
    writeBytes(dir / "a.eep", readBytes(dataFile("empty.eep")));
    writeBytes(dir / "b.eep", readBytes(dataFile("full.eep")));
    writeBytes(dir / "c.eep", readBytes(dataFile("full.eep")));
    writeBytes(dir / "a.json", readBytes(dataFile("empty.input.json")));
    writeBytes(dir / "b.json", readBytes(dataFile("full.input.json")));
    writeBytes(dir / "settings.json", readBytes(dataFile("empty.input.json")));
    const auto before = listing(dir.path());

    std::vector<std::string> args;
    for (const auto& word : GetParam().args)
        args.push_back(word.rfind('@', 0) == 0 ? dir.path().string() + word.substr(1) : word);
    const Outcome run = runCtl(args);
    EXPECT_EQ(run.status, 2) << run;
    expectOneErrorLine(run);
    EXPECT_EQ(listing(dir.path()), before);
}

INSTANTIATE_TEST_SUITE_P(Cli, BadUsage, ::testing::ValuesIn(kBadUsage), labelOf<UsageCase>);

TEST(Usage, HelpGoesToStdoutAndSucceeds)
{
    const Outcome run = runCtl({ "--help" });
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_EQ(run.err, "");
    for (const char* command : { "decode", "encode", "info", "diff", "--out", "--base", "--yes" })
        EXPECT_THAT(run.out, HasSubstr(command));
}

// ---------------------------------------------------------------------------
// info
// ---------------------------------------------------------------------------

class InfoGolden : public ::testing::TestWithParam<std::string> { };

TEST_P(InfoGolden, ReportsTheFiguresOfTheManifest)
{
    const Json manifest = readJson(dataFile("manifest.json"));
    const auto entry
        = std::find_if(manifest.begin(), manifest.end(), [&](const Json& e) { return e.at("name") == GetParam(); });
    ASSERT_NE(entry, manifest.end());
    const unsigned rule = entry->at("check_sum_rule").get<unsigned>();

    const Outcome run = runCtl({ "info", dataFile(GetParam() + ".eep").string() });
    ASSERT_EQ(run.status, 0) << run;
    EXPECT_EQ(run.err, "");
    EXPECT_THAT(run.out, HasSubstr("(" + std::to_string(entry->at("file_size").get<unsigned>()) + " bajtů)"));
    EXPECT_EQ(valueAfter(run.out, "Hlavička:"), "platná");
    EXPECT_EQ(valueAfter(run.out, "Kontrolní bajt (48):"),
        "uložený " + std::to_string(entry->at("check_byte").get<unsigned>()) + ", vypočtený "
            + std::to_string(rule == 13 ? 12 : rule));
    EXPECT_EQ(valueAfter(run.out, "Konec zakódovaných dat:"), std::to_string(entry->at("encoded_end").get<unsigned>()));
    EXPECT_EQ(
        valueAfter(run.out, "Velikost nastavení:"), std::to_string(entry->at("used_size").get<unsigned>()) + " byte");
}

INSTANTIATE_TEST_SUITE_P(Golden, InfoGolden, ::testing::ValuesIn(kAllCases), caseName);

TEST(Info, EmptySettingsEndAt428AndUse430Bytes)
{
    const Outcome run = runCtl({ "info", dataFile("empty.eep").string() });
    ASSERT_EQ(run.status, 0) << run;
    EXPECT_EQ(valueAfter(run.out, "Hlavička:"), "platná");
    EXPECT_EQ(valueAfter(run.out, "Konec zakódovaných dat:"), "428");
    EXPECT_THAT(lines(run.out), ::testing::Contains("Velikost nastavení:     430 byte"));
}

TEST(Info, WrongLayoutMarkIsReportedNotRefused)
{
    TempDir dir;
    writeBytes(dir / "mark.eep", emptyWithHeader(46, 0x83, true)); // 0x2583 = 9603
    const Outcome run = runCtl({ "info", (dir / "mark.eep").string() });
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(valueAfter(run.out, "Hlavička:"), "neplatná");
    EXPECT_THAT(valueAfter(run.out, "Značka formátu (46):").value_or(""), HasSubstr("9603"));
}

TEST(Info, CheckSumOfThirteenIsStoredAsTwelve)
{
    const Outcome run = runCtl({ "info", dataFile("header_checksum_13.eep").string() });
    ASSERT_EQ(run.status, 0) << run;
    EXPECT_EQ(valueAfter(run.out, "Kontrolní bajt (48):"), "uložený 12, vypočtený 12");
    EXPECT_EQ(valueAfter(run.out, "Hlavička:"), "platná");
}

TEST(Info, StoredThirteenIsInvalid)
{
    TempDir dir;
    std::string image = readBytes(dataFile("header_checksum_13.eep"));
    putByte(image, 48, 13);
    writeBytes(dir / "thirteen.eep", image);
    const Outcome run = runCtl({ "info", (dir / "thirteen.eep").string() });
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_EQ(valueAfter(run.out, "Kontrolní bajt (48):"), "uložený 13, vypočtený 12");
    EXPECT_EQ(valueAfter(run.out, "Hlavička:"), "neplatná");
}

// The header is fine but no text ends inside the image: there is no size to
// report, and the walk over the texts must stay inside the image.
TEST(Info, TextsRunningOffTheImageGiveNoUsedSize)
{
    TempDir dir;
    writeBytes(dir / "runaway.eep", runawayImage());
    const Outcome run = runCtl({ "info", (dir / "runaway.eep").string() });
    ASSERT_TRUE(run.status == 0 || run.status == 2) << run;
    if (run.status == 2) {
        expectOneErrorLine(run, { (dir / "runaway.eep").string() });
        return;
    }
    EXPECT_EQ(valueAfter(run.out, "Hlavička:"), "platná");
    const std::string size = valueAfter(run.out, "Velikost nastavení:").value_or("");
    EXPECT_FALSE(std::regex_match(size, std::regex("[0-9]+ byte"))) << size;
}

// ---------------------------------------------------------------------------
// diff
// ---------------------------------------------------------------------------

TEST(Diff, IdenticalFilesPrintNothing)
{
    TempDir dir;
    writeBytes(dir / "a.eep", readBytes(dataFile("full.eep")));
    writeBytes(dir / "b.eep", readBytes(dataFile("full.eep")));
    const Outcome run = runCtl({ "diff", (dir / "a.eep").string(), (dir / "b.eep").string() });
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "");

    const Outcome json = runCtl({ "diff", dataFile("full.json").string(), dataFile("full.json").string() });
    EXPECT_EQ(json.status, 0) << json;
    EXPECT_EQ(json.out, "");
}

class DiffGolden : public ::testing::TestWithParam<std::string> { };

TEST_P(DiffGolden, SettingsFileEqualsItsExpectedDecoding)
{
    const Outcome run
        = runCtl({ "diff", dataFile(GetParam() + ".eep").string(), dataFile(GetParam() + ".json").string() });
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "");
}

INSTANTIATE_TEST_SUITE_P(Golden, DiffGolden, ::testing::ValuesIn(kAllCases), caseName);

struct DiffPair {
    std::string label;
    std::string left; // file in the data folder
    std::string right;
    std::string leftJson; // its expected decoding
    std::string rightJson;
};

void PrintTo(const DiffPair& pair, std::ostream* os)
{
    *os << pair.left << " vs " << pair.right;
}

class DiffDifferent : public ::testing::TestWithParam<DiffPair> { };

TEST_P(DiffDifferent, PrintsOneLinePerDifferingFieldAndRow)
{
    const DiffPair& pair = GetParam();
    const auto expected = expectedDiffLines(readJson(dataFile(pair.leftJson)), readJson(dataFile(pair.rightJson)));
    ASSERT_FALSE(expected.empty());

    const Outcome run = runCtl({ "diff", dataFile(pair.left).string(), dataFile(pair.right).string() });
    EXPECT_EQ(run.status, 1) << run;
    EXPECT_EQ(run.err, "");
    const auto printed = lines(run.out);
    EXPECT_EQ(printed.size(), expected.size()) << run;
    EXPECT_EQ(std::multiset<std::string>(printed.begin(), printed.end()), expected);
}

INSTANTIATE_TEST_SUITE_P(Cli, DiffDifferent,
    ::testing::Values(DiffPair { "EmptyToFull", "empty.eep", "full.eep", "empty.json", "full.json" },
        DiffPair { "FullToEmptyJson", "full.eep", "empty.json", "full.json", "empty.json" },
        DiffPair { "AllBytesToLongTexts", "all_bytes.json", "long_texts.eep", "all_bytes.json", "long_texts.json" },
        DiffPair { "EdgeToChecksum", "decode_edge.eep", "header_checksum_13.eep", "decode_edge.json",
            "header_checksum_13.json" }),
    labelOf<DiffPair>);

TEST(Diff, EmptyAgainstFullNamesTheStationAndTheRows)
{
    const Json full = readJson(dataFile("full.json"));
    const Outcome run = runCtl({ "diff", dataFile("empty.eep").string(), dataFile("full.eep").string() });
    EXPECT_EQ(run.status, 1) << run;
    const auto printed = lines(run.out);
    EXPECT_THAT(printed, ::testing::Contains("tabJmenoStanice: \"\" -> " + full["tabJmenoStanice"].dump()));
    EXPECT_THAT(printed, ::testing::Contains("tabINPNazev[1]: \"\" -> " + full["tabINPNazev"][0].dump()));
    EXPECT_THAT(printed, ::testing::Contains("tabINPNazev[7]: \"\" -> " + full["tabINPNazev"][6].dump()));
    // Row 8 has no name in either configuration.
    ASSERT_EQ(full["tabINPNazev"][7], "");
    EXPECT_THAT(printed, ::testing::Not(::testing::Contains(StartsWith("tabINPNazev[8]"))));
    EXPECT_THAT(printed, ::testing::Not(::testing::Contains(StartsWith("tabINPNazev[0]"))));
    EXPECT_THAT(printed, ::testing::Not(::testing::Contains(StartsWith("tabINPNazev: "))));
}

} // namespace

// ---------------------------------------------------------------------------
// check, and encode's refusal of settings that break the station's rules
// ---------------------------------------------------------------------------

namespace rm8_check_tests {

// An input name that is a prefix of a reserved keyword, and an output whose
// name begins another output's name: two rules, three violations.
const char* const kSeeded = R"({
  "tabINPNazev": ["st", "", "", "", "", "", "", ""],
  "tabOUTNazev": ["PUMPA", "PUMPA2", "", "", "", "", "", ""]
})";

TEST(Check, CleanConfigurationReportsNothing)
{
    const Outcome run = runCtl({ "check", dataFile("empty.eep").string() });
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "");
}

TEST(Check, EveryViolationOnItsOwnLine)
{
    TempDir dir;
    writeText(dir / "seeded.json", kSeeded);
    const Outcome run = runCtl({ "check", (dir / "seeded.json").string() });
    EXPECT_EQ(run.status, 1) << run;
    EXPECT_EQ(run.out,
              "tabINPNazev[1]: Název vstupu nesmí být žádné z těchto klíčových slov (ani jejich předpony): "
              "STATE;STAV;BACK;NOBACK;RESET;SHUTDOWN;NAME;ZPET;NEZPET;JMENO\n"
              "tabOUTNazev[1]: Název výstupu 'OUT1' není správně zadán. Jména výstupů se nesmějí shodovat a ani být "
              "předponou jiného názvu výstupu. EEPROM nelze naprogramovat dokud toto nebude odstraněno.\n");
}

TEST(Check, JsonListsFieldRowAndMessage)
{
    TempDir dir;
    writeText(dir / "seeded.json", kSeeded);
    const Outcome run = runCtl({ "check", (dir / "seeded.json").string(), "--json", "--eeprom-size", "192" });
    EXPECT_EQ(run.status, 1) << run;
    const auto report = nlohmann::json::parse(run.out);
    ASSERT_EQ(report.size(), 3u) << run;
    EXPECT_EQ(report[0]["field"], "tabINPNazev");
    EXPECT_EQ(report[0]["row"], 1);
    EXPECT_EQ(report[2]["field"], "lblInfoPamUsage");
    EXPECT_TRUE(report[2]["row"].is_null());
    // 430 bytes of an empty configuration plus "st", "PUMPA" and "PUMPA2";
    // 192 is a size of the memory table and keeps its alignment.
    EXPECT_EQ(report[2]["message"], "Velikost dat v nastavení (443) je větší než je možno vložit do EEPROM (   192).");
}

TEST(Check, BadSizeOrFileIsBadInput)
{
    const Outcome size = runCtl({ "check", dataFile("empty.eep").string(), "--eeprom-size", "lots" });
    EXPECT_EQ(size.status, 2) << size;
    const Outcome missing = runCtl({ "check", "/nonexistent/x.json" });
    EXPECT_EQ(missing.status, 2) << missing;
    EXPECT_THAT(missing.err, HasSubstr("/nonexistent/x.json"));
}

TEST(EncodeRefusal, ViolationsAreRefusedUnlessForced)
{
    TempDir dir;
    writeText(dir / "seeded.json", kSeeded);
    const Outcome refused = runCtl({ "encode", (dir / "seeded.json").string(), "--out", (dir / "out.eep").string() });
    EXPECT_EQ(refused.status, 1) << refused;
    EXPECT_THAT(refused.err, HasSubstr("Název vstupu nesmí být"));
    EXPECT_FALSE(fs::exists(dir / "out.eep"));

    const Outcome forced
        = runCtl({ "encode", "--force", (dir / "seeded.json").string(), "--out", (dir / "out.eep").string() });
    EXPECT_EQ(forced.status, 0) << forced;
    EXPECT_TRUE(fs::exists(dir / "out.eep"));
}

} // namespace rm8_check_tests

namespace rm8_check_tests {

TEST(Check, OneViolationOfEachKindWithItsExactMessage)
{
    const Outcome run = runCtl({ "check", dataFile("check/seeded.json").string(), "--eeprom-size", "448" });
    EXPECT_EQ(run.status, 1) << run;
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out, readBytes(dataFile("check/seeded.check.txt")));

    const Outcome json
        = runCtl({ "check", dataFile("check/seeded.json").string(), "--eeprom-size", "448", "--json" });
    const auto report = nlohmann::json::parse(json.out);
    std::size_t lines = 0;
    for (char c : run.out)
        lines += c == '\n';
    EXPECT_EQ(report.size(), lines - 2) << "the same violations, without the two adjustments";
}

} // namespace rm8_check_tests

// ---------------------------------------------------------------------------
// Station commands against a simulated station on a pseudo-terminal
// ---------------------------------------------------------------------------

namespace rm8_station_tests {

rm8::sim::StationSimulator simulated()
{
    rm8::sim::StationProfile profile;
    profile.memorySizeCode = 3; // 960 bytes
    return rm8::sim::StationSimulator(profile);
}

TEST(Station, IdentifyNamesTheStation)
{
    rm8::sim::PtyStation station{simulated()};
    station.start();
    const Outcome run = runCtl({ "identify", "--port", station.path() });
    EXPECT_EQ(run.status, 0) << run;
    EXPECT_THAT(run.out, HasSubstr("Produkt:          RM8\n"));
    EXPECT_THAT(run.out, HasSubstr("Velikost paměti:     960 byte\n"));
    EXPECT_THAT(run.out, HasSubstr("Spojení:          Aktivni\n"));
}

TEST(Station, WriteThenReadGivesTheSameSettings)
{
    rm8::sim::PtyStation station{simulated()};
    station.start();
    TempDir dir;
    const Outcome write
        = runCtl({ "write", "--port", station.path(), dataFile("empty.eep").string(), "--verify" });
    ASSERT_EQ(write.status, 0) << write;
    EXPECT_THAT(write.out, HasSubstr("Data byla úspěšně uložena do EEPROM."));

    const Outcome read = runCtl({ "read", "--port", station.path(), "--out", (dir / "read.eep").string() });
    ASSERT_EQ(read.status, 0) << read;
    const Outcome diff = runCtl({ "diff", (dir / "read.eep").string(), dataFile("empty.json").string() });
    EXPECT_EQ(diff.status, 0) << diff;
    const auto eeprom = station.eeprom();
    for (std::size_t a = 64; a < 128; ++a)
        EXPECT_EQ(eeprom[a], 0xFF) << "address " << a << " is never written";
}

TEST(Station, UnprogrammedStationIsNotSaved)
{
    rm8::sim::PtyStation station{simulated()};
    station.start();
    TempDir dir;
    const Outcome read = runCtl({ "read", "--port", station.path(), "--out", (dir / "read.eep").string() });
    EXPECT_EQ(read.status, 1) << read;
    EXPECT_THAT(read.err, HasSubstr("EEPROM zřejmě není naprogramována."));
    EXPECT_FALSE(fs::exists(dir / "read.eep"));
}

TEST(Station, SilentPortEndsAfterTheSearchTimeout)
{
    int master = -1;
    int slave = -1;
    char name[256] = {};
    ASSERT_EQ(::openpty(&master, &slave, name, nullptr, nullptr), 0);
    const Outcome run = runCtl({ "identify", "--port", name, "--search-timeout", "1" });
    ::close(master);
    ::close(slave);
    EXPECT_EQ(run.status, 2) << run;
    EXPECT_THAT(run.err, HasSubstr("Při pokusu aktivovat spojení nastala chyba."));
}

// The file a read saves, written back and read again, is the same file byte
// for byte; and a golden file comes back as it went in, except for bytes 64
// to 127, which the tool never writes and so come from the station.
class StationRoundTrip : public testing::TestWithParam<const char*> {};

TEST_P(StationRoundTrip, ReadWriteReadIsByteExact)
{
    rm8::sim::StationProfile profile;
    profile.memorySizeCode = 9; // 65472 bytes: room for the longest golden file
    rm8::sim::PtyStation station{rm8::sim::StationSimulator(profile)};
    station.start();
    TempDir dir;
    const fs::path golden = dataFile(GetParam());
    const auto first = dir / "first.eep";
    const auto second = dir / "second.eep";

    const Outcome write = runCtl({ "write", "--port", station.path(), golden.string(), "--force" });
    ASSERT_EQ(write.status, 0) << write;
    const Outcome read = runCtl({ "read", "--port", station.path(), "--out", first.string() });
    ASSERT_EQ(read.status, 0) << read;
    const std::string original = readBytes(golden);
    const std::string back = readBytes(first);
    ASSERT_EQ(back.size(), original.size());
    for (std::size_t a = 0; a < back.size(); ++a) {
        if (a < 64 || a >= 128)
            ASSERT_EQ(back[a], original[a]) << "address " << a;
        else
            ASSERT_EQ(static_cast<unsigned char>(back[a]), 0xFF) << "address " << a << " was written";
    }

    const Outcome again = runCtl({ "write", "--port", station.path(), first.string(), "--verify", "--force" });
    ASSERT_EQ(again.status, 0) << again;
    const Outcome reread = runCtl({ "read", "--port", station.path(), "--out", second.string() });
    ASSERT_EQ(reread.status, 0) << reread;
    EXPECT_EQ(readBytes(second), back);
}

INSTANTIATE_TEST_SUITE_P(Golden, StationRoundTrip,
                         testing::Values("empty.eep", "long_texts.eep", "flags_conditional.eep",
                                         "header_checksum_13.eep"),
                         [](const auto& param) { return std::string(fs::path(param.param).stem()); });

TEST(Station, TraceLogsEveryFrameBothWays)
{
    rm8::sim::PtyStation station{simulated()};
    station.start();
    TempDir dir;
    const auto trace = dir / "trace.log";
    const Outcome run = runCtl({ "identify", "--port", station.path(), "--trace", trace.string() });
    ASSERT_EQ(run.status, 0) << run;
    std::ifstream in(trace);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    // Attention, identify, configuration and leave, each with its reply.
    ASSERT_EQ(lines.size(), 8u) << readBytes(trace);
    const std::regex stamped(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{6} [<>]( [0-9A-F]{2})+)");
    for (const auto& line : lines)
        EXPECT_TRUE(std::regex_match(line, stamped)) << line;
    EXPECT_THAT(lines[0], testing::EndsWith("> 01 02 0D"));
    EXPECT_THAT(lines[1], testing::EndsWith("< 81 82 0D"));
    EXPECT_THAT(lines[6], testing::EndsWith("> 06 AA 55 06 0D"));
    EXPECT_THAT(lines[7], HasSubstr("< 86 "));
}

TEST(Station, PortTableNamesTheDeviceOfAListName)
{
    rm8::sim::PtyStation station{simulated()};
    station.start();
    const Outcome mapped = runCtl({ "identify", "--port", "COM 3", "--com", "COM 1=/dev/null,COM 3=" + station.path() });
    EXPECT_EQ(mapped.status, 0) << mapped;
    EXPECT_THAT(mapped.out, HasSubstr("Produkt:          RM8\n"));

    const Outcome noDevice = runCtl({ "identify", "--port", "COM 0" });
    EXPECT_EQ(noDevice.status, 2) << noDevice;
    EXPECT_THAT(noDevice.err, HasSubstr("Nelze otevřít port COM 0"));

    for (const char* bad : { "COM 3", "COM 0=/dev/x", "LPT 1=/dev/x" }) {
        const Outcome refused = runCtl({ "identify", "--port", "COM 3", "--com", bad });
        EXPECT_EQ(refused.status, 2) << refused;
        EXPECT_THAT(refused.err, StartsWith("rm8ctl: --com ")) << bad;
    }
}

} // namespace rm8_station_tests
