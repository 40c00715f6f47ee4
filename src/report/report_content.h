#pragma once
// The settings report as plain data: what btTisk prints, rm8config --print-pdf
// renders and rm8ctl report writes as text. It is built from the settings the
// window shows, saved or not; the analog inputs are not part of it.

#include <cstddef>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "settings/station_settings.h"

namespace rm8::report {

// The program's own words in front of " stanice: " in the page header. Only
// its first kHeaderTitleLimit characters are ever printed.
inline constexpr std::string_view kHeaderTitle = "Nastavení";
inline constexpr std::size_t kHeaderTitleLimit = 20;

// A label in the first column and its value in the second.
struct LabelledLine {
    std::string label;
    std::string value;
    friend bool operator==(const LabelledLine&, const LabelledLine&) = default;
};

struct Sentence {
    std::string text;
    friend bool operator==(const Sentence&, const Sentence&) = default;
};

// A heading stands over `span` cells of every row.
struct Heading {
    std::string text;
    std::size_t span = 1;
    friend bool operator==(const Heading&, const Heading&) = default;
};

struct Table {
    std::vector<Heading> headings;
    std::vector<std::vector<std::string>> rows; // each with columns() cells
    std::size_t columns() const;
    friend bool operator==(const Table&, const Table&) = default;
};

using Item = std::variant<LabelledLine, Sentence, Table>;

struct Section {
    std::string title;
    std::vector<Item> items;
};

struct Report {
    std::string header; // the left part of every page header
    // The name proposed for a file of the report (a PDF): the station's name
    // as any file system takes it, "nastaveni" without one.
    std::string fileStem;
    std::vector<Section> sections;
};

Report buildReport(const StationSettings& settings);

// The header title cut to its limit, " stanice: " and the station name.
std::string headerText(std::string_view stationName);
// The right part of the page header: "2. stránka".
std::string pageNumberText(int page);
// The progress window's two lines while a page is printed:
// "Tisk 1. stránky" and "1. kopie z 2".
std::string progressText(int page, int copy, int copies);
// What the progress window shows before the first page.
inline constexpr std::string_view kPreparingText = "Příprava tisku ...";

// The first `count` characters (not bytes) of a UTF-8 text.
std::string firstCharacters(std::string_view text, std::size_t count);

} // namespace rm8::report
