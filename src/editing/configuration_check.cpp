#include "editing/configuration_check.h"

#include "editing/field_clamps.h"
#include "editing/level_check.h"
#include "editing/output_cross_check.h"
#include "editing/phone_rules.h"
#include "fields/field_catalogue.h"
#include "settings/memory_sizes.h"
#include "settings/used_size.h"

namespace rm8 {
namespace {

using S = StationSettings;

std::string textOf(const S& s, std::string_view field, std::size_t row)
{
    const FieldInfo* info = findField(field);
    if (info == nullptr)
        return {};
    if (const auto* single = std::get_if<std::string S::*>(&info->member))
        return s.**single;
    if (const auto* column = std::get_if<Row8<std::string> S::*>(&info->member))
        return (s.**column)[row];
    return {};
}

// The window's own start-up texts (" 0" and " 100" in the level columns) are
// not what a technician typed, so they are not held against the settings.
bool isStartupText(const S& s, std::string_view field, std::size_t row)
{
    static const S startup;
    return textOf(s, field, row) == textOf(startup, field, row);
}

void checkFields(const S& s, CheckReport& report)
{
    for (const auto& info : fieldCatalogue()) {
        if (info.shape != FieldShape::Text && info.shape != FieldShape::TextRow)
            continue;
        const FieldRules* rules = findFieldRules(info.name);
        if (rules == nullptr)
            continue;
        const std::size_t rows = info.perRow() ? kRows : 1;
        for (std::size_t row = 0; row < rows; ++row) {
            if (isStartupText(s, info.name, row))
                continue;
            const auto other = [&](std::string_view field) { return textOf(s, field, row); };
            if (auto failure = checkFieldText(info.name, textOf(s, info.name, row), other))
                report.violations.push_back(
                    {std::string(info.name), rowOfField(info, row), failure->rule, std::move(failure->message)});
        }
    }
}

void noteChange(CheckReport& report, std::string_view field, FieldRow row, const std::string& from, const std::string& to)
{
    if (from != to)
        report.adjustments.push_back({std::string(field), row, from, to});
}

void collectAdjustments(const S& s, CheckReport& report)
{
    for (auto& change : clampChanges(s))
        report.adjustments.push_back({std::move(change.field), change.row, std::move(change.from), std::move(change.to)});

    for (std::size_t row = 0; row < kRows; ++row)
        noteChange(report, "tabTC", row, s.tabTC[row],
                   normalisePhoneNumber(s.tabTC[row], s.tabUTOEnable, s.tabUTO));
}

void checkPhoneTable(const S& s, CheckReport& report)
{
    for (std::size_t row = 0; row < kRows; ++row) {
        const auto outcome = applyPhoneTableRule(s.tabTC[row], s.tabTCPrijem[row], s.tabTCUdalost[row]);
        if (outcome.clearPrijem)
            report.violations.push_back({"tabTCPrijem", row, RuleKind::PhoneTable, std::string(kPrijemNeedsNumber)});
        if (outcome.clearUdalost)
            report.violations.push_back(
                {"tabTCUdalost", row, RuleKind::PhoneTable, std::string(kUdalostNeedsNumber)});
    }
}

void checkLevels(const S& s, CheckReport& report)
{
    static constexpr std::array<std::string_view, 4> kLevelFields{"tabAINCL1Level", "tabAINHCL1Level",
                                                                  "tabAINCL2Level", "tabAINHCL2Level"};
    for (std::size_t row = 0; row < kRows; ++row) {
        // A level that its own field refuses is reported there; the set as a
        // whole can only be judged from four numbers.
        bool readable = true;
        for (auto field : kLevelFields)
            readable = readable
                       && (isStartupText(s, field, row)
                           || !checkFieldText(field, textOf(s, field, row), [](std::string_view) { return ""; }));
        if (!readable)
            continue;
        if (!levelsConsistent(s.tabAINCL1Level[row], s.tabAINHCL1Level[row], s.tabAINCL2Level[row],
                              s.tabAINHCL2Level[row], s.ranges[row]))
            report.violations.push_back({"tabAINCL1Level", row, RuleKind::LevelCheck,
                                         std::string(kLevelCheckMessage)});
    }
}

} // namespace

std::optional<Violation> sizeCheck(const StationSettings& settings, std::size_t eepromSize)
{
    const std::size_t used = usedSize(settings);
    if (used <= eepromSize)
        return std::nullopt;
    return Violation{"lblInfoPamUsage", std::nullopt, RuleKind::SizeCheck,
                     "Velikost dat v nastavení (" + std::to_string(used)
                         + ") je větší než je možno vložit do EEPROM (" + memorySizeNumberText(eepromSize) + ")."};
}

CheckReport checkConfiguration(const StationSettings& settings, std::optional<std::size_t> eepromSize)
{
    CheckReport report;
    checkFields(settings, report);
    checkPhoneTable(settings, report);
    checkLevels(settings, report);
    for (auto& conflict : outputCrossCheck(settings))
        report.violations.push_back({conflict.field, conflict.row, RuleKind::OutputCrossCheck,
                                     std::move(conflict.message)});
    if (eepromSize)
        if (auto violation = sizeCheck(settings, *eepromSize))
            report.violations.push_back(std::move(*violation));
    collectAdjustments(settings, report);
    return report;
}

} // namespace rm8
