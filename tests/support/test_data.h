#pragma once
// Shared helpers of the tests: the golden data directory, scratch folders and
// small file utilities.

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace rm8::test {

inline std::filesystem::path dataDir()
{
    return RM8_TEST_DATA_DIR;
}

inline std::vector<char> readBytes(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

inline void writeBytes(const std::filesystem::path& path, const std::vector<char>& bytes)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

inline nlohmann::json readJson(const std::filesystem::path& path)
{
    std::ifstream in(path);
    return nlohmann::json::parse(in);
}

// A folder of its own for one test, removed with it.
class ScratchDir {
public:
    ScratchDir()
    {
        std::random_device entropy;
        path_ = std::filesystem::temp_directory_path() / ("rm8-test-" + std::to_string(entropy()));
        std::filesystem::create_directories(path_);
    }
    ~ScratchDir()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchDir(const ScratchDir&) = delete;
    ScratchDir& operator=(const ScratchDir&) = delete;

    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

} // namespace rm8::test
