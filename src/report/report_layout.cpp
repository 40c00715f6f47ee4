#include "report/report_layout.h"

#include <algorithm>
#include <numeric>

namespace rm8::report {
namespace {

// The space between the heading row of a table and its rule, and below it.
constexpr double kRuleGap = 40;
// Widths are sums of measured widths; a text measured into a room of exactly
// its own width is not to be wrapped for the rounding of that sum.
constexpr double kTolerance = 0.5;

std::vector<std::size_t> characterEnds(std::string_view text)
{
    std::vector<std::size_t> ends;
    for (std::size_t i = 0; i < text.size();) {
        ++i;
        while (i < text.size() && (static_cast<unsigned char>(text[i]) & 0xC0) == 0x80)
            ++i;
        ends.push_back(i);
    }
    return ends;
}

// Widths of the columns: each as wide as its widest cell (and its heading,
// spread over the cells it stands over); when they do not fit side by side,
// the narrow ones keep their width and the wide ones share the rest evenly.
std::vector<double> columnWidths(const Table& table, const TextMeasure& measure, double available)
{
    const std::size_t count = table.columns();
    std::vector<double> natural(count, kCellGap);
    for (const auto& row : table.rows)
        for (std::size_t c = 0; c < count && c < row.size(); ++c)
            natural[c] = std::max(natural[c], measure.width(TextStyle::Body, row[c]) + kCellGap);
    std::size_t first = 0;
    for (const auto& heading : table.headings) {
        if (heading.span == 0)
            continue;
        const std::size_t last = first + heading.span - 1;
        const double covered = std::accumulate(natural.begin() + static_cast<std::ptrdiff_t>(first),
            natural.begin() + static_cast<std::ptrdiff_t>(last + 1), 0.0);
        const double needed = measure.width(TextStyle::Heading, heading.text) + kCellGap;
        if (covered < needed)
            natural[last] += needed - covered;
        first = last + 1;
    }
    if (std::accumulate(natural.begin(), natural.end(), 0.0) <= available)
        return natural;

    std::vector<bool> fixed(count, false);
    double left = available;
    std::size_t open = count;
    for (bool changed = true; changed && open > 0;) {
        changed = false;
        const double share = left / static_cast<double>(open);
        for (std::size_t c = 0; c < count; ++c)
            if (!fixed[c] && natural[c] <= share) {
                fixed[c] = true;
                left -= natural[c];
                --open;
                changed = true;
            }
    }
    std::vector<double> widths = natural;
    for (std::size_t c = 0; c < count; ++c)
        if (!fixed[c])
            widths[c] = std::max(kCellGap, left / static_cast<double>(open));
    return widths;
}

class Layout {
public:
    Layout(const Report& report, const TextMeasure& measure, PageGeometry geometry)
        : report_(report)
        , measure_(measure)
        , geometry_(geometry)
        , available_(std::max(kCellGap, geometry.width - kLeftMargin - kRightMargin))
        , body_(measure.lineHeight(TextStyle::Body))
    {
    }

    std::vector<Page> run()
    {
        newPage();
        for (const auto& section : report_.sections) {
            const double title = measure_.lineHeight(TextStyle::Title);
            // A title is kept with the first line below it.
            ensure(title + (section.items.empty() ? 0.0 : firstHeight(section.items.front())));
            place(TextStyle::Title, kLeftMargin, available_, section.title);
            y_ += title;
            for (const auto& item : section.items)
                std::visit([this](const auto& shown) { add(shown); }, item);
            // The blank line that ends a section is checked like a line.
            ensure(body_);
            if (!atTop())
                y_ += body_;
        }
        return std::move(pages_);
    }

private:
    struct Block {
        std::vector<std::vector<std::string>> cells; // lines per cell
        double height = 0;
    };

    void newPage()
    {
        Page page;
        page.number = static_cast<int>(pages_.size()) + 1;
        pages_.push_back(std::move(page));
        y_ = kHeaderTop;
        // A long station name goes on under itself, clear of the page number.
        std::string number = pageNumberText(pages_.back().number);
        const double width = std::max(kCellGap, available_ - measure_.width(TextStyle::Header, number) - kCellGap);
        const auto lines = wrapText(report_.header, width, TextStyle::Header, measure_);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            place(TextStyle::Header, kLeftMargin, width, lines[i]);
            if (i == 0)
                place(TextStyle::Header, kLeftMargin, available_, std::move(number), true);
            y_ += measure_.lineHeight(TextStyle::Header);
        }
        y_ += body_;
        top_ = y_;
    }

    bool atTop() const { return y_ <= top_; }

    // The page check: an item that does not fit above the bottom margin goes
    // to a new page, unless the page is still empty (it would fit nowhere).
    bool ensure(double height)
    {
        if (y_ + height + kBottomMargin < geometry_.height || atTop())
            return false;
        newPage();
        return true;
    }

    void place(TextStyle style, double x, double width, std::string text, bool right = false)
    {
        pages_.back().texts.push_back({ style, x, y_, width, std::move(text), right });
    }

    double firstHeight(const Item& item) const
    {
        if (const auto* table = std::get_if<Table>(&item)) {
            const auto widths = columnWidths(*table, measure_, available_);
            return headingBlock(*table, widths).height
                + (table->rows.empty() ? 0.0 : rowBlock(table->rows.front(), widths).height);
        }
        return body_;
    }

    void add(const LabelledLine& line)
    {
        const double labelWidth = std::min(kValueColumn, available_) - kCellGap;
        const double valueWidth = std::max(kCellGap, available_ - kValueColumn);
        const auto labels = wrapText(line.label, labelWidth, TextStyle::Body, measure_);
        const auto values = wrapText(line.value, valueWidth, TextStyle::Body, measure_);
        for (std::size_t i = 0; i < std::max(labels.size(), values.size()); ++i) {
            ensure(body_);
            if (i < labels.size())
                place(TextStyle::Body, kLeftMargin, labelWidth, labels[i]);
            if (i < values.size())
                place(TextStyle::Body, kLeftMargin + kValueColumn, valueWidth, values[i]);
            y_ += body_;
        }
    }

    void add(const Sentence& sentence)
    {
        for (auto& line : wrapText(sentence.text, available_, TextStyle::Body, measure_)) {
            ensure(body_);
            place(TextStyle::Body, kLeftMargin, available_, std::move(line));
            y_ += body_;
        }
    }

    void add(const Table& table)
    {
        const auto widths = columnWidths(table, measure_, available_);
        const Block headings = headingBlock(table, widths);
        ensure(headings.height + (table.rows.empty() ? 0.0 : rowBlock(table.rows.front(), widths).height));
        placeHeadings(table, widths, headings);
        for (const auto& row : table.rows) {
            const Block block = rowBlock(row, widths);
            // A row that moves to a new page takes the headings with it.
            if (ensure(block.height))
                placeHeadings(table, widths, headings);
            placeBlock(block, spans(table.columns()), widths, TextStyle::Body);
        }
    }

    static std::vector<std::size_t> spans(std::size_t count) { return std::vector<std::size_t>(count, 1); }

    static std::vector<std::size_t> spans(const Table& table)
    {
        std::vector<std::size_t> result;
        for (const auto& heading : table.headings)
            result.push_back(heading.span);
        return result;
    }

    // The widths of consecutive groups of columns.
    static std::vector<double> grouped(const std::vector<double>& widths, const std::vector<std::size_t>& groups)
    {
        std::vector<double> result;
        std::size_t c = 0;
        for (const std::size_t span : groups) {
            double width = 0;
            for (std::size_t i = 0; i < span && c < widths.size(); ++i, ++c)
                width += widths[c];
            result.push_back(width);
        }
        return result;
    }

    Block makeBlock(const std::vector<std::string>& texts, const std::vector<double>& widths, TextStyle style) const
    {
        Block block;
        std::size_t lines = 1;
        for (std::size_t c = 0; c < widths.size(); ++c) {
            const std::string_view text = c < texts.size() ? std::string_view(texts[c]) : std::string_view();
            block.cells.push_back(wrapText(text, widths[c] - kCellGap, style, measure_));
            lines = std::max(lines, block.cells.back().size());
        }
        block.height = static_cast<double>(lines) * measure_.lineHeight(style);
        return block;
    }

    Block headingBlock(const Table& table, const std::vector<double>& widths) const
    {
        std::vector<std::string> texts;
        for (const auto& heading : table.headings)
            texts.push_back(heading.text);
        return makeBlock(texts, grouped(widths, spans(table)), TextStyle::Heading);
    }

    Block rowBlock(const std::vector<std::string>& row, const std::vector<double>& widths) const
    {
        return makeBlock(row, widths, TextStyle::Body);
    }

    void placeHeadings(const Table& table, const std::vector<double>& widths, const Block& block)
    {
        placeBlock(block, spans(table), widths, TextStyle::Heading);
        const double total = std::accumulate(widths.begin(), widths.end(), 0.0);
        pages_.back().rules.push_back({ kLeftMargin, kLeftMargin + total, y_ + kRuleGap / 2 });
        y_ += kRuleGap;
    }

    void placeBlock(
        const Block& block, const std::vector<std::size_t>& groups, const std::vector<double>& widths, TextStyle style)
    {
        const auto cellWidths = grouped(widths, groups);
        const double lineHeight = measure_.lineHeight(style);
        const double top = y_;
        double x = kLeftMargin;
        for (std::size_t c = 0; c < block.cells.size(); ++c) {
            y_ = top;
            for (const auto& line : block.cells[c]) {
                place(style, x, cellWidths[c] - kCellGap, line);
                y_ += lineHeight;
            }
            x += cellWidths[c];
        }
        y_ = top + block.height;
    }

    const Report& report_;
    const TextMeasure& measure_;
    PageGeometry geometry_;
    double available_;
    double body_;
    double y_ = 0;
    double top_ = 0;
    std::vector<Page> pages_;
};

} // namespace

std::vector<std::string> wrapText(std::string_view text, double width, TextStyle style, const TextMeasure& measure)
{
    std::vector<std::string> lines;
    while (!text.empty()) {
        if (measure.width(style, text) <= width + kTolerance) {
            lines.emplace_back(text);
            break;
        }
        const auto ends = characterEnds(text);
        // The longest run of characters that fits, and at least one.
        std::size_t low = 0;
        std::size_t high = ends.size() - 1;
        while (low < high) {
            const std::size_t mid = (low + high + 1) / 2;
            if (measure.width(style, text.substr(0, ends[mid])) <= width + kTolerance)
                low = mid;
            else
                high = mid - 1;
        }
        const std::size_t cut = ends[low];
        const std::size_t blank = text.rfind(' ', cut);
        if (blank != std::string_view::npos && blank > 0) {
            lines.emplace_back(text.substr(0, blank));
            text.remove_prefix(blank + 1);
        } else {
            lines.emplace_back(text.substr(0, cut));
            text.remove_prefix(cut);
        }
    }
    if (lines.empty())
        lines.emplace_back();
    return lines;
}

std::vector<Page> layoutReport(const Report& report, const TextMeasure& measure, PageGeometry geometry)
{
    return Layout(report, measure, geometry).run();
}

} // namespace rm8::report
