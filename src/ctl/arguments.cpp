#include "ctl/arguments.h"

namespace rm8::ctl {

std::optional<std::string> Arguments::value(const std::string& option) const
{
    const auto found = values.find(option);
    if (found == values.end())
        return std::nullopt;
    return found->second;
}

std::string fileNames(std::size_t count)
{
    const char* const noun = count == 1 ? " jméno souboru" : count >= 2 && count <= 4 ? " jména souborů" : " jmen souborů";
    return std::to_string(count) + noun;
}

Expected<Arguments, std::string> parseArguments(const std::vector<std::string>& words, const OptionSet& options)
{
    Arguments arguments;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (word.size() > 2 && word.rfind("--", 0) == 0) {
            std::string name = word;
            std::optional<std::string> inlineValue;
            if (const auto equals = word.find('='); equals != std::string::npos) {
                name = word.substr(0, equals);
                inlineValue = word.substr(equals + 1);
            }
            if (options.withValue.count(name)) {
                if (!inlineValue) {
                    if (i + 1 >= words.size())
                        return unexpected("volba " + name + " potřebuje hodnotu");
                    inlineValue = words[++i];
                }
                arguments.values[name] = *inlineValue;
            } else if (options.alone.count(name) && !inlineValue) {
                arguments.flags.insert(name);
            } else {
                return unexpected("neznámá volba " + word);
            }
        } else if (arguments.command.empty()) {
            arguments.command = word;
        } else {
            arguments.operands.push_back(word);
        }
    }
    return arguments;
}

} // namespace rm8::ctl
