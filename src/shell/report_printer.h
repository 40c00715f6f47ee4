#pragma once
// The settings report on paper and in PDF: the report's fonts, its pages
// drawn on any paged device (a printer, a PDF writer), the print run of
// btTisk with its copies and progress texts, and the PDF that
// rm8config --print-pdf writes.

#include <functional>

#include <QFont>
#include <QString>

#include "common/expected.h"
#include "flow/interaction.h"
#include "report/report_content.h"
#include "report/report_layout.h"

class QPagedPaintDevice;
class QPrinter;
class QWidget;

namespace rm8::shell {

// The printer font the report was drawn for where it is installed, else a
// sans of the same metrics with the Czech letters (Liberation Sans comes
// with the package), else any sans. Body 8 points, page header 14 points.
QFont reportFont(report::TextStyle style);

// One copy as one document: painting on the device opens the document and
// ending it sends the document off. onPage(n) runs before page n is drawn.
// False when the device fails (the printer is not ready, a file cannot be
// written); the pages drawn so far stay.
bool drawReportDocument(
    QPagedPaintDevice& device, const report::Report& report, const std::function<void(int page)>& onPage = {});

// The print run on a printer the print dialog has set up: the copies it
// chose become as many documents, each from page 1, while the progress
// window counts pages and copies. Storno only hides the progress window:
// the run goes on to the last copy. A printer error ends the run silently.
// beforeCopy(k) runs before copy k is started.
bool printReportCopies(QPrinter& printer, const report::Report& report, Interaction& ui,
    const std::function<void(int copy)>& beforeCopy = {});

// btTisk: the print dialog (copies chosen there; on Windows without the
// print-to-file box, elsewhere Qt's dialog offers PDF output), then the
// print run. A cancelled dialog prints nothing.
void printSettingsReport(QWidget* owner, const report::Report& report, Interaction& ui);

// "Náhled tisku": the pages btTisk prints, in Qt's preview, from which
// they can be printed.
void previewSettingsReport(QWidget* owner, const report::Report& report);

// One copy on A4 into a PDF file, written to a temporary and renamed.
Expected<void, QString> writeReportPdf(const QString& path, const report::Report& report);

} // namespace rm8::shell
