// The Win32 serial line driven from outside, for the contract tests that run
// on Linux: a Linux test cannot load a Windows line, so it starts this
// program under Wine and sends it one command a line on stdin. The answer is
// one line on stdout: "ok", "ok <hex bytes>", "ok 1" / "ok 0", or
// "err <message>".
//
//   new ID PORT... | open ID | close ID | isopen ID | write ID HEX | read ID MS
//   flush ID | delete ID

#include <cstdio>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <string>

#include "link/win32_serial_line.h"

namespace {

using rm8::link::Win32SerialLine;

std::string hexText(const std::vector<std::uint8_t>& bytes)
{
    std::string out;
    for (const auto b : bytes)
        out += { "0123456789ABCDEF"[b / 16], "0123456789ABCDEF"[b % 16] };
    return out;
}

std::vector<std::uint8_t> bytesOf(const std::string& hex)
{
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    return bytes;
}

template <class T> std::string answer(const rm8::Expected<T, std::string>& result, const std::string& value = {})
{
    if (!result)
        return "err " + result.error();
    return value.empty() ? "ok" : "ok " + value;
}

std::string run(std::map<int, std::unique_ptr<Win32SerialLine>>& lines, const std::string& command)
{
    std::istringstream words(command);
    std::string verb, argument;
    int id = 0;
    words >> verb >> id;
    std::getline(words >> std::ws, argument);
    if (verb == "new") {
        lines[id] = std::make_unique<Win32SerialLine>(argument);
        return "ok";
    }
    const auto found = lines.find(id);
    if (found == lines.end())
        return "err no line " + std::to_string(id);
    Win32SerialLine& line = *found->second;
    if (verb == "open")
        return answer(line.open());
    if (verb == "close")
        line.close();
    else if (verb == "isopen")
        return line.isOpen() ? "ok 1" : "ok 0";
    else if (verb == "write")
        return answer(line.write(bytesOf(argument)));
    else if (verb == "read") {
        const auto bytes = line.read(rm8::link::Clock::now() + std::chrono::milliseconds(std::stoll(argument)));
        return answer(bytes, bytes ? hexText(*bytes) : std::string());
    } else if (verb == "flush")
        line.flushInput();
    else if (verb == "delete")
        lines.erase(found);
    else
        return "err unknown command " + verb;
    return "ok";
}

} // namespace

int main()
{
    std::map<int, std::unique_ptr<Win32SerialLine>> lines;
    std::string command;
    while (std::getline(std::cin, command))
        std::cout << run(lines, command) << std::endl;
    return 0;
}
