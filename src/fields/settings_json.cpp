#include "fields/settings_json.h"

#include <algorithm>

#include "fields/field_catalogue.h"
#include "settings/loaded_settings.h"

namespace rm8 {
namespace {

using Json = nlohmann::json;
using S = StationSettings;

struct ToJson {
    const S& s;
    nlohmann::ordered_json operator()(std::string S::*m) const { return s.*m; }
    nlohmann::ordered_json operator()(Row8<std::string> S::*m) const { return s.*m; }
    nlohmann::ordered_json operator()(std::uint8_t S::*m) const { return s.*m; }
    nlohmann::ordered_json operator()(Row8<std::uint8_t> S::*m) const { return s.*m; }
    nlohmann::ordered_json operator()(bool S::*m) const
    {
        if (shape == FieldShape::OptionPair)
            return s.*m;
        return (s.*m) ? 1 : 0;
    }
    nlohmann::ordered_json operator()(Row8<bool> S::*m) const
    {
        auto array = nlohmann::ordered_json::array();
        for (bool v : s.*m) {
            if (shape == FieldShape::FlagRow)
                array.push_back(v);
            else
                array.push_back(v ? 1 : 0);
        }
        return array;
    }
    FieldShape shape;
};

// Reads one JSON value into one field, or says what is wrong with it.
class FromJson {
public:
    FromJson(S& s, const FieldInfo& field, const Json& value) : s_(s), field_(field), value_(value) {}

    std::string operator()(std::string S::*m) const
    {
        if (!value_.is_string())
            return "očekáván text";
        s_.*m = value_.get<std::string>();
        return {};
    }
    std::string operator()(bool S::*m) const
    {
        bool v = false;
        if (auto problem = readFlag(value_, v); !problem.empty())
            return problem;
        s_.*m = v;
        return {};
    }
    std::string operator()(std::uint8_t S::*m) const
    {
        if (!isByte(value_))
            return "očekáváno celé číslo 0 až 255";
        s_.*m = value_.get<std::uint8_t>();
        return {};
    }
    std::string operator()(Row8<std::string> S::*m) const
    {
        if (!isRow(value_) || !std::all_of(value_.begin(), value_.end(), [](const Json& v) { return v.is_string(); }))
            return "očekáváno pole osmi textů";
        for (std::size_t i = 0; i < kRows; ++i)
            (s_.*m)[i] = value_[i].get<std::string>();
        return {};
    }
    std::string operator()(Row8<bool> S::*m) const
    {
        if (!isRow(value_))
            return field_.shape == FieldShape::FlagRow ? "očekáváno pole osmi hodnot true/false"
                                                       : "očekáváno pole osmi hodnot 0/1";
        Row8<bool> row{};
        for (std::size_t i = 0; i < kRows; ++i)
            if (auto problem = readFlag(value_[i], row[i]); !problem.empty())
                return "prvek " + std::to_string(i + 1) + ": " + problem;
        s_.*m = row;
        return {};
    }
    std::string operator()(Row8<std::uint8_t> S::*m) const
    {
        if (!isRow(value_) || !std::all_of(value_.begin(), value_.end(), isByte))
            return "očekáváno pole osmi celých čísel 0 až 255";
        for (std::size_t i = 0; i < kRows; ++i)
            (s_.*m)[i] = value_[i].get<std::uint8_t>();
        return {};
    }

private:
    static bool isRow(const Json& v) { return v.is_array() && v.size() == kRows; }
    static bool isByte(const Json& v)
    {
        return v.is_number_integer() && v.get<long long>() >= 0 && v.get<long long>() <= 255;
    }

    // Check boxes are 0 or 1; options are true or false.
    std::string readFlag(const Json& v, bool& out) const
    {
        const bool option = field_.shape == FieldShape::OptionPair || field_.shape == FieldShape::FlagRow;
        if (option) {
            if (!v.is_boolean())
                return "očekáváno true nebo false";
            out = v.get<bool>();
            return {};
        }
        if (!v.is_number_integer() || (v.get<long long>() != 0 && v.get<long long>() != 1))
            return "očekáváno 0 nebo 1";
        out = v.get<long long>() == 1;
        return {};
    }

    S& s_;
    const FieldInfo& field_;
    const Json& value_;
};

// The battery text and the battery row's falling-CL1 text are one text in
// the station. A form that gives only one of them (older forms carried an
// empty battery text) gives both; two different texts are refused rather
// than one of them dropped unseen.
std::string settleBatteryText(S& s)
{
    std::string& row = s.tabAINCL1Dn[kBatteryRow];
    if (!s.rtBattLow.empty() && !row.empty() && s.rtBattLow != row)
        return "klíč 'rtBattLow': text baterie '" + s.rtBattLow + "' se liší od textu tabAINCL1Dn[" +
               std::to_string(kBatteryRow + 1) + "] '" + row + "'; stanice zná jen jeden";
    if (row.empty())
        row = s.rtBattLow;
    takeBatteryTextFromRow(s);
    return {};
}

} // namespace

nlohmann::ordered_json settingsToJson(const StationSettings& settings)
{
    nlohmann::ordered_json json = nlohmann::ordered_json::object();
    for (const auto& field : fieldCatalogue())
        json[std::string(field.name)] = std::visit(ToJson{settings, field.shape}, field.member);
    return json;
}

std::string settingsToJsonText(const StationSettings& settings)
{
    return settingsToJson(settings).dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

Expected<StationSettings, std::string> settingsFromJson(const nlohmann::json& json)
{
    if (!json.is_object())
        return unexpected(std::string("nastavení musí být objekt JSON"));
    StationSettings settings;
    for (const auto& [key, value] : json.items()) {
        const FieldInfo* field = findField(key);
        if (field == nullptr)
            return unexpected("neznámý klíč '" + key + "'");
        const std::string problem = std::visit(FromJson{settings, *field, value}, field->member);
        if (!problem.empty())
            return unexpected("klíč '" + key + "': " + problem);
    }
    if (auto problem = settleBatteryText(settings); !problem.empty())
        return unexpected(problem);
    return settings;
}

Expected<StationSettings, std::string> parseSettingsJson(std::string_view text)
{
    nlohmann::json json;
    try {
        json = nlohmann::json::parse(text.begin(), text.end());
    } catch (const nlohmann::json::parse_error& e) {
        return unexpected("neplatný JSON na bajtu " + std::to_string(e.byte) + ": " + e.what());
    }
    return settingsFromJson(json);
}

} // namespace rm8
