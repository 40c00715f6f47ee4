// libFuzzer target: random texts through every field's rules, the clamps,
// the phone normalisation and the whole-configuration check. Each must give
// a verdict or a message, never crash, and a message must be one of the
// texts the rule table holds.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "editing/configuration_check.h"
#include "editing/field_rules.h"
#include "editing/level_check.h"
#include "editing/numeric_clamps.h"
#include "editing/phone_rules.h"
#include "editing/text_compare.h"

namespace {

[[noreturn]] void violated(const char* what)
{
    std::fprintf(stderr, "invariant violated: %s\n", what);
    std::abort();
}

// Splits the input into a few texts at NUL bytes.
std::string_view take(std::string_view& rest)
{
    const auto end = rest.find('\0');
    const std::string_view piece = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    return piece;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    const std::string_view text = take(rest);
    const std::string other(take(rest));

    for (const auto& entry : rm8::fieldRuleTable()) {
        const auto failure = rm8::checkFieldText(entry.field, text, [&](std::string_view) { return other; });
        if (!failure)
            continue;
        bool known = false;
        for (const auto& rule : entry.rules)
            known = known || (rule.kind == failure->rule && failure->message.starts_with(rule.message));
        if (!known)
            violated("a failure that the field's rules do not hold");
    }

    const std::string impulse = rm8::clampImpulseLength(text);
    if (rm8::clampImpulseLength(impulse) != impulse)
        violated("clamping an impulse length twice changed it");
    const auto schedule = rm8::clampScheduleMinutes(rm8::clampScheduleHours({std::string(text), other}));
    if (rm8::clampScheduleMinutes(rm8::clampScheduleHours(schedule)) != schedule)
        violated("clamping a schedule twice changed it");

    (void)rm8::normalisePhoneNumber(text, true, other);
    (void)rm8::isPrefixOfEachOther(text, other);
    (void)rm8::passesKeywordTest(text, other);
    (void)rm8::levelsConsistent(text, other, text, other, rm8::MeasuringRange{});

    rm8::StationSettings settings;
    settings.tabINPNazev[0] = std::string(text);
    settings.tabOUTNazev[1] = std::string(text);
    settings.tabOUTZap[1] = other;
    settings.tabAINCL1Level[2] = std::string(text);
    settings.tabTC[3] = other;
    settings.tabTCPrijem[3] = true;
    settings.tabDobaPlatnostiSMS = other;
    const auto report = rm8::checkConfiguration(settings, size);
    for (const auto& violation : report.violations)
        if (violation.message.empty() || violation.field.empty() || (violation.row && *violation.row >= rm8::kRows))
            violated("a violation without a field, a row or a message");
    return 0;
}
