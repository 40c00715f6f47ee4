#pragma once
// Where every text of the report goes on which page. Positions are in twips
// (1/1440 inch) from the top left corner of the printable area. The page
// header stands at the top of each page; before each line, table row and
// section end the layout checks that the item still fits above the bottom
// margin, and starts a new page when it does not, so nothing is cut at a page
// end. Texts too wide for their column are wrapped onto further lines. The
// fonts are the renderer's: it measures the texts for the layout.

#include <string>
#include <string_view>
#include <vector>

#include "report/report_content.h"

namespace rm8::report {

enum class TextStyle { Header, Title, Body, Heading };

class TextMeasure {
public:
    virtual ~TextMeasure() = default;
    // Both in twips.
    virtual double width(TextStyle style, std::string_view text) const = 0;
    virtual double lineHeight(TextStyle style) const = 0;
};

struct PageGeometry {
    double width = 11906; // A4
    double height = 16838;
};

inline constexpr double kLeftMargin = 1000;
inline constexpr double kRightMargin = 1000;
inline constexpr double kHeaderTop = 1500;
inline constexpr double kBottomMargin = 1500;
inline constexpr double kValueColumn = 2600; // from the left margin
inline constexpr double kCellGap = 120;

struct PlacedText {
    TextStyle style = TextStyle::Body;
    double x = 0;
    double y = 0; // top of the line
    double width = 0; // the room the text was laid out in
    std::string text;
    bool alignRight = false;
};

struct PlacedRule {
    double x1 = 0;
    double x2 = 0;
    double y = 0;
};

struct Page {
    int number = 1;
    std::vector<PlacedText> texts;
    std::vector<PlacedRule> rules;
};

std::vector<Page> layoutReport(const Report& report, const TextMeasure& measure, PageGeometry geometry = {});

// The text as lines no wider than width: broken at the last blank that
// lets a line fit, or inside a word that does not fit on a line alone.
// Always at least one line, and every line holds at least one character.
std::vector<std::string> wrapText(std::string_view text, double width, TextStyle style, const TextMeasure& measure);

} // namespace rm8::report
