#include "report/report_text.h"

namespace rm8::report {
namespace {

void appendCells(std::string& out, const std::vector<std::string>& cells)
{
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (i > 0)
            out += '\t';
        out += cells[i];
    }
    out += '\n';
}

struct ItemWriter {
    std::string& out;

    void operator()(const LabelledLine& line) const { out += line.label + '\t' + line.value + '\n'; }
    void operator()(const Sentence& sentence) const { out += sentence.text + '\n'; }
    void operator()(const Table& table) const
    {
        std::vector<std::string> headings;
        for (const auto& heading : table.headings) {
            headings.push_back(heading.text);
            if (heading.span > 1)
                headings.resize(headings.size() + heading.span - 1);
        }
        appendCells(out, headings);
        for (const auto& row : table.rows)
            appendCells(out, row);
    }
};

} // namespace

std::string reportText(const Report& report)
{
    std::string out = report.header + '\n';
    for (const auto& section : report.sections) {
        out += section.title + '\n';
        for (const auto& item : section.items)
            std::visit(ItemWriter { out }, item);
    }
    return out;
}

} // namespace rm8::report
