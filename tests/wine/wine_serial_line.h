#pragma once
// The Win32 serial line, seen from Linux: each call goes to
// win32_line_agent.exe running under Wine, whose COM ports are links in the
// Wine prefix's dosdevices folder. A device path becomes COM n by a link
// made there, so the agent opens "COM n" through the Windows API while the
// test holds the pseudo-terminal's other end, as it does for the POSIX line.
// One agent serves every line of the test program: each start of Wine costs
// seconds.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include <spawn.h>
#include <unistd.h>

#include "link/serial_line.h"

extern char** environ;

namespace rm8::test {

class WineLineAgent {
public:
    static WineLineAgent& instance()
    {
        static WineLineAgent agent;
        return agent;
    }

    // One command, one answer line; a dead agent answers "err".
    std::string call(const std::string& command)
    {
        if (std::fprintf(toAgent_, "%s\n", command.c_str()) < 0 || std::fflush(toAgent_) != 0)
            return "err the agent is gone";
        std::string line;
        for (int c; (c = std::fgetc(fromAgent_)) != EOF && c != '\n';)
            line += static_cast<char>(c);
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        return line.empty() ? "err the agent is gone" : line;
    }

    // Points COM number at the device, as a technician's adapter would be,
    // until the agent ends.
    std::string mapPort(int number, const std::string& device)
    {
        const std::filesystem::path link
            = std::filesystem::path(std::getenv("WINEPREFIX")) / "dosdevices" / ("com" + std::to_string(number));
        std::filesystem::remove(link);
        std::filesystem::create_symlink(device, link);
        links_.push_back(link);
        return "COM " + std::to_string(number);
    }

private:
    WineLineAgent()
    {
        const char* agent = std::getenv("RM8_WIN32_LINE_AGENT");
        if (agent == nullptr || std::getenv("WINEPREFIX") == nullptr)
            throw std::runtime_error("RM8_WIN32_LINE_AGENT and WINEPREFIX must name the agent and a Wine prefix");
        int in[2], out[2];
        if (::pipe(in) != 0 || ::pipe(out) != 0)
            throw std::runtime_error("no pipe");
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, in[0], 0);
        posix_spawn_file_actions_adddup2(&actions, out[1], 1);
        posix_spawn_file_actions_addclose(&actions, in[1]);
        posix_spawn_file_actions_addclose(&actions, out[0]);
        char wine[] = "wine";
        std::string program = agent;
        char* argv[] = { wine, program.data(), nullptr };
        if (::posix_spawnp(&pid_, "wine", &actions, nullptr, argv, environ) != 0)
            throw std::runtime_error("wine does not start");
        posix_spawn_file_actions_destroy(&actions);
        ::close(in[0]);
        ::close(out[1]);
        toAgent_ = ::fdopen(in[1], "w");
        fromAgent_ = ::fdopen(out[0], "r");
    }
    ~WineLineAgent()
    {
        std::fclose(toAgent_); // the agent ends at the end of its input
        std::fclose(fromAgent_);
        std::error_code ignored;
        for (const auto& link : links_)
            std::filesystem::remove(link, ignored);
    }

    pid_t pid_ = 0; // ends by itself at the end of its input
    std::FILE* toAgent_ = nullptr;
    std::FILE* fromAgent_ = nullptr;
    std::vector<std::filesystem::path> links_;
};

class WineSerialLine : public link::SerialLine {
public:
    explicit WineSerialLine(const std::string& port)
        : id_(++lastId())
    {
        WineLineAgent::instance().call("new " + std::to_string(id_) + " " + port);
    }
    ~WineSerialLine() override { call("delete"); }

    Expected<void, std::string> open() override { return result(call("open")); }
    void close() override { call("close"); }
    bool isOpen() const override { return call("isopen") == "ok 1"; }
    Expected<void, std::string> write(std::span<const std::uint8_t> bytes) override
    {
        std::string hex;
        for (const auto b : bytes)
            hex += { "0123456789ABCDEF"[b / 16], "0123456789ABCDEF"[b % 16] };
        return result(call("write", hex));
    }
    Expected<std::vector<std::uint8_t>, std::string> read(link::Clock::time_point deadline) override
    {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - link::Clock::now()).count();
        const std::string answer = call("read", std::to_string(std::max<long long>(left, 0)));
        if (auto failed = result(answer); !failed)
            return unexpected(failed.error());
        std::vector<std::uint8_t> bytes;
        for (std::size_t i = 3; i + 1 < answer.size(); i += 2)
            bytes.push_back(static_cast<std::uint8_t>(std::stoi(answer.substr(i, 2), nullptr, 16)));
        return bytes;
    }
    void flushInput() override { call("flush"); }

private:
    static int& lastId()
    {
        static int id = 0;
        return id;
    }
    std::string call(const std::string& verb, const std::string& argument = {}) const
    {
        return WineLineAgent::instance().call(
            verb + " " + std::to_string(id_) + (argument.empty() ? "" : " ") + argument);
    }
    static Expected<void, std::string> result(const std::string& answer)
    {
        if (answer.rfind("ok", 0) == 0)
            return {};
        return unexpected(answer.substr(std::min<std::size_t>(answer.size(), 4)));
    }

    int id_;
};

} // namespace rm8::test
