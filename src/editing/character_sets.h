#pragma once
// The characters the station accepts in each kind of text, exactly as it
// parses them. Deliberately kept as they are: the output-name set has no
// space and no punctuation but the underscore, the input-name set has neither
// double quote nor tilde, the message-text set has no double quote, and no
// set holds a letter with a diacritic.

#include <string_view>

namespace rm8::sets {

inline constexpr std::string_view kInputName =
    " `!@#$%^&*()-_=+\\|[{]};:',<.>/?0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
inline constexpr std::string_view kOutputName = "_0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
inline constexpr std::string_view kMessageText =
    " !#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[]\\^_`abcdefghijklmnopqrstuvwxyz{}|~";
inline constexpr std::string_view kPhone = "+0123456789";
inline constexpr std::string_view kDigits = "0123456789";
inline constexpr std::string_view kDecimal = "0123456789,.";

// The station's own command words; a name may be none of them nor begin one.
inline constexpr std::string_view kReservedKeywords = "STATE;STAV;BACK;NOBACK;RESET;SHUTDOWN;NAME;ZPET;NEZPET;JMENO";

// True when every character of the text is in the set; an empty text always
// is. The sets are plain ASCII, so any byte of a multi-byte character fails.
constexpr bool inSet(std::string_view text, std::string_view set)
{
    for (char c : text)
        if (set.find(c) == std::string_view::npos)
            return false;
    return true;
}

} // namespace rm8::sets
