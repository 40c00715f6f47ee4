#pragma once
// The report as UTF-8 text for scripts and e-mail: the header line, each
// section title on a line of its own, a labelled line as label, tab, value,
// a sentence per line, and each table row (headings first) as one line of
// tab-separated cells. A heading over several cells is followed by empty
// cells, so that the columns of the heading line and of the rows agree.

#include <string>

#include "report/report_content.h"

namespace rm8::report {

std::string reportText(const Report& report);

} // namespace rm8::report
