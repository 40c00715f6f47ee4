#pragma once
// The command line of rm8ctl: a command, its operands and its options.

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "common/expected.h"

namespace rm8::ctl {

struct Arguments {
    std::string command;
    std::vector<std::string> operands;
    std::map<std::string, std::string> values; // --out FILE
    std::set<std::string> flags;               // --yes

    bool has(const std::string& flag) const { return flags.count(flag) != 0; }
    std::optional<std::string> value(const std::string& option) const;
};

// Options that take a value, and options that stand alone.
struct OptionSet {
    std::set<std::string> withValue;
    std::set<std::string> alone;
};

// "1 jméno souboru", "2 jména souborů", "5 jmen souborů": the count with the
// Czech plural it takes.
std::string fileNames(std::size_t count);

Expected<Arguments, std::string> parseArguments(const std::vector<std::string>& words, const OptionSet& options);

} // namespace rm8::ctl
