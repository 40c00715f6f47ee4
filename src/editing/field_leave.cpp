#include "editing/field_leave.h"

#include <array>
#include <type_traits>
#include <utility>

#include "editing/field_clamps.h"
#include "editing/field_rules.h"
#include "editing/phone_rules.h"

namespace rm8 {
namespace {

using S = StationSettings;

// The row dialogs' fields and their counterparts in the record.
constexpr std::array<std::pair<std::string_view, std::string_view>, 23> kDialogFields{{
    {"INPNazev", "tabINPNazev"},   {"INPZap", "tabINPZap"},         {"INPVyp", "tabINPVyp"},
    {"INPLH", "tabINPLH"},         {"INPHL", "tabINPHL"},           {"OUTNazev", "tabOUTNazev"},
    {"OUTZap", "tabOUTZap"},       {"OUTVyp", "tabOUTVyp"},         {"OUTimpuls", "tabOUTimpuls"},
    {"OUTimpulsLEN", "tabOUTimpulsLEN"}, {"AINNazev", "tabAINNazev"}, {"AINStateL", "tabAINStateL"},
    {"AINStateM", "tabAINStateM"}, {"AINStateH", "tabAINStateH"},   {"AINCL1Level", "tabAINCL1Level"},
    {"AINHCL1Level", "tabAINHCL1Level"}, {"AINCL2Level", "tabAINCL2Level"}, {"AINHCL2Level", "tabAINHCL2Level"},
    {"AINCL1Up", "tabAINCL1Up"},   {"AINCL1Dn", "tabAINCL1Dn"},     {"AINCL2Up", "tabAINCL2Up"},
    {"AINCL2Dn", "tabAINCL2Dn"},   {"TC", "tabTC"},
}};

std::string textOf(const S& s, std::string_view field, std::size_t row)
{
    const FieldInfo* info = findField(recordFieldOf(field));
    return info == nullptr ? std::string() : std::string(info->textIn(s, row));
}

void acceptPhoneNumber(const S& s, std::string_view field, std::size_t row, LeaveOutcome& out)
{
    if (!out.text.empty())
        out.text = normalisePhoneNumber(out.text, s.tabUTOEnable, s.tabUTO);
    // The dialog's number is judged with its boxes when the dialog closes.
    if (field != "tabTC")
        return;
    S after = s;
    after.tabTC[row] = out.text;
    for (auto& change : phoneTableRule(after, row))
        out.changes.push_back(std::move(change));
}

void acceptBatteryText(const S& s, std::string_view typed, LeaveOutcome& out)
{
    if (auto mirror = batteryMirror("rtBattLow", std::nullopt, typed); mirror && s.tabAINCL1Dn[kBatteryRow] != typed)
        out.changes.push_back(std::move(*mirror));
    if (!typed.empty() && !s.tabAINCL1DnEvent[kBatteryRow])
        out.changes.push_back({"tabAINCL1DnEvent", kBatteryRow, true, std::nullopt});
}

} // namespace

std::string_view recordFieldOf(std::string_view field)
{
    for (const auto& [dialog, record] : kDialogFields)
        if (dialog == field)
            return record;
    return field;
}

LeaveOutcome leaveField(const S& s, std::string_view field, FieldRow fieldRow, std::string_view typed)
{
    // A single field ignores the row it is read at.
    const std::size_t row = fieldRow.value_or(0);
    LeaveOutcome out;
    out.text = std::string(typed);
    if (recordFieldOf(field) == field)
        if (const FieldInfo* info = findField(field))
            out.page = info->pageOfRow(row);

    if (auto clamped = clampOnLeave(s, recordFieldOf(field), typed)) {
        out.text = std::move(clamped->text);
        out.changes = std::move(clamped->changes);
        out.verdict = out.text == typed ? LeaveVerdict::Accept : LeaveVerdict::Replace;
        return out;
    }

    const auto other = [&](std::string_view name) { return name == field ? std::string(typed) : textOf(s, name, row); };
    if (auto failure = checkFieldText(field, typed, other)) {
        out.verdict = LeaveVerdict::Refuse;
        out.refusal = Notice{MessageIcon::Stop, std::move(failure->message)};
        return out;
    }

    if (recordFieldOf(field) == "tabTC")
        acceptPhoneNumber(s, field, row, out);
    else if (field == "rtBattLow")
        acceptBatteryText(s, typed, out);
    out.verdict = out.text == typed ? LeaveVerdict::Accept : LeaveVerdict::Replace;
    return out;
}

std::vector<FieldChange> phoneTableRule(const S& s, std::size_t row)
{
    std::vector<FieldChange> changes;
    const auto outcome = applyPhoneTableRule(s.tabTC[row], s.tabTCPrijem[row], s.tabTCUdalost[row]);
    if (outcome.clearPrijem)
        changes.push_back({"tabTCPrijem", row, false, Notice{MessageIcon::Exclamation, std::string(kPrijemNeedsNumber)}});
    if (outcome.clearUdalost)
        changes.push_back(
            {"tabTCUdalost", row, false, Notice{MessageIcon::Exclamation, std::string(kUdalostNeedsNumber)}});
    return changes;
}

std::optional<FieldChange> batteryMirror(std::string_view field, FieldRow row, std::string_view text)
{
    if (field == "rtBattLow")
        return FieldChange{"tabAINCL1Dn", kBatteryRow, std::string(text), std::nullopt};
    if (field == "tabAINCL1Dn" && row == kBatteryRow)
        return FieldChange{"rtBattLow", std::nullopt, std::string(text), std::nullopt};
    return std::nullopt;
}

void applyChange(S& s, const FieldChange& change)
{
    const FieldInfo* info = findField(recordFieldOf(change.field));
    if (info == nullptr || (info->perRow() && !(change.row && *change.row < kRows)))
        return;
    std::visit(
        [&](auto member) {
            using Value = std::remove_cvref_t<decltype(s.*member)>;
            if constexpr (std::is_same_v<Value, std::string>) {
                if (const auto* text = std::get_if<std::string>(&change.value))
                    s.*member = *text;
            } else if constexpr (std::is_same_v<Value, bool>) {
                if (const auto* on = std::get_if<bool>(&change.value))
                    s.*member = *on;
            } else if constexpr (std::is_same_v<Value, Row8<std::string>>) {
                if (const auto* text = std::get_if<std::string>(&change.value))
                    (s.*member)[*change.row] = *text;
            } else if constexpr (std::is_same_v<Value, Row8<bool>>) {
                if (const auto* on = std::get_if<bool>(&change.value))
                    (s.*member)[*change.row] = *on;
            }
        },
        info->member);
}

} // namespace rm8
