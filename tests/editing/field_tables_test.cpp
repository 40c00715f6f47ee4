// The rules of single fields, as tables in tests/data/editing: what each text
// field says of a typed text when it is left (field_rules.tsv), and what the
// clamped fields and the phone numbers make of a typed text (clamps.tsv).
// Every row checks the exact outcome, so a changed character in a set, a
// keyword or a message fails the row that shows it.

#include <fstream>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "editing/field_leave.h"
#include "editing/field_rules.h"
#include "editing/numeric_clamps.h"
#include "editing/phone_rules.h"
#include "editing/text_compare.h"
#include "fields/table_rows.h"
#include "support/test_data.h"

namespace rm8 {
namespace {

struct TableRow {
    int line;
    std::vector<std::string> cells; // never fewer than four
};

// Tab-separated cells; '#' starts a comment line. A row "$NAME<tab>text"
// defines a text that the cells after it write as {NAME}; \xNN is one byte.
std::vector<TableRow> readTable(const std::string& name)
{
    std::ifstream in(test::dataDir() / "editing" / name);
    std::map<std::string, std::string> defined;
    std::vector<TableRow> rows;
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        if (line.empty() || line.starts_with('#'))
            continue;
        TableRow row{number, {}};
        for (std::size_t start = 0;;) {
            const std::size_t tab = line.find('\t', start);
            std::string cell = line.substr(start, tab - start);
            for (const auto& [key, text] : defined)
                for (std::size_t at; (at = cell.find('{' + key + '}')) != std::string::npos;)
                    cell.replace(at, key.size() + 2, text);
            for (std::size_t at; (at = cell.find("\\x")) != std::string::npos;)
                cell.replace(at, 4, 1, static_cast<char>(std::stoi(cell.substr(at + 2, 2), nullptr, 16)));
            row.cells.push_back(std::move(cell));
            if (tab == std::string::npos)
                break;
            start = tab + 1;
        }
        if (row.cells[0].starts_with('$')) {
            defined[row.cells[0].substr(1)] = row.cells.at(1);
            continue;
        }
        row.cells.resize(std::max<std::size_t>(row.cells.size(), 4));
        rows.push_back(std::move(row));
    }
    EXPECT_GT(rows.size(), 50u) << name << " is missing or nearly empty";
    return rows;
}

std::string where(const std::string& table, const TableRow& row)
{
    return table + " line " + std::to_string(row.line) + ": " + row.cells[0] + " '" + row.cells[1] + "'";
}

// The record as the window holds it when the field is left: the other fields
// of the row (row 1 of each table) as the table row gives them.
StationSettings recordWith(const TableRow& row, std::size_t firstOther)
{
    StationSettings s;
    for (std::size_t i = firstOther; i < row.cells.size(); ++i) {
        const std::size_t equals = row.cells[i].find('=');
        if (equals != std::string::npos)
            applyChange(s, {row.cells[i].substr(0, equals), 0, row.cells[i].substr(equals + 1), std::nullopt});
    }
    return s;
}

TEST(FieldRules, JudgeEveryTypedTextAsTheTableSays)
{
    for (const auto& row : readTable("field_rules.tsv")) {
        SCOPED_TRACE(where("field_rules.tsv", row));
        const auto& [field, text, expected, message] = std::tie(row.cells[0], row.cells[1], row.cells[2], row.cells[3]);
        StationSettings s = recordWith(row, 4);
        if (field.starts_with('~')) {
            const std::string with = row.cells[4].substr(row.cells[4].find('=') + 1);
            const bool same = field == "~equal" ? equalIgnoringCase(text, with) : isPrefixOfEachOther(text, with);
            EXPECT_EQ(same ? "yes" : "no", expected);
            continue;
        }
        applyChange(s, {field, 0, text, std::nullopt});
        const LeaveOutcome outcome = leaveField(s, field, 0, text);
        EXPECT_EQ(outcome.verdict == LeaveVerdict::Refuse, expected != "ok");
        EXPECT_EQ(outcome.refusal ? outcome.refusal->text : "", message);
        if (outcome.refusal) {
            EXPECT_EQ(outcome.refusal->icon, MessageIcon::Stop);
        }
    }
}

TEST(Clamps, ReplaceEveryTypedTextAsTheTableSays)
{
    for (const auto& row : readTable("clamps.tsv")) {
        SCOPED_TRACE(where("clamps.tsv", row));
        const auto& [field, typed, with, expected] = std::tie(row.cells[0], row.cells[1], row.cells[2], row.cells[3]);
        StationSettings s;
        s.tabUTOEnable = !with.empty();
        s.tabUTO = with.empty() ? "+420" : with;
        const bool hours = field.ends_with('H');
        if (field.starts_with("eePS"))
            applyChange(s, {field.substr(0, field.size() - 1) + (hours ? "M" : "H"), 0, with, std::nullopt});
        const LeaveOutcome outcome = leaveField(s, field, 0, typed);
        std::string result = outcome.text;
        if (field.starts_with("eePS")) {
            const std::string partner = outcome.changes.empty() ? with : std::get<std::string>(outcome.changes[0].value);
            result = hours ? result + ":" + partner : partner + ":" + result;
        }
        EXPECT_EQ(result, expected);
        EXPECT_EQ(outcome.verdict, outcome.text == typed ? LeaveVerdict::Accept : LeaveVerdict::Replace);
    }
}

// Output labels show in the write check's messages; the others only here.
TEST(RowLabels, NameTheRowsOfEachTable)
{
    EXPECT_EQ(rowLabel(RowTable::Inputs, 0), "IN1");
    EXPECT_EQ(rowLabel(RowTable::Analog, 6), "AIN7");
    EXPECT_EQ(rowLabel(RowTable::Analog, 7), "BAT");
    EXPECT_EQ(rowLabel(RowTable::Phones, 7), "T8");
}

} // namespace
} // namespace rm8
