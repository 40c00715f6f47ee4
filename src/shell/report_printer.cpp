#include "shell/report_printer.h"

#include <algorithm>

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPageSize>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QSaveFile>

#include "shell/application_info.h"

namespace rm8::shell {
namespace {

constexpr double kTwipsPerInch = 1440.0;

// Lines under table headings: half a point.
constexpr double kRuleTwips = 10.0;

class DeviceMeasure : public report::TextMeasure {
public:
    explicit DeviceMeasure(QPaintDevice& device)
        : twipsX_(kTwipsPerInch / device.logicalDpiX())
        , twipsY_(kTwipsPerInch / device.logicalDpiY())
    {
        for (const auto style : { report::TextStyle::Header, report::TextStyle::Title, report::TextStyle::Body,
                 report::TextStyle::Heading })
            metrics_.emplace_back(reportFont(style), &device);
    }

    double width(report::TextStyle style, std::string_view text) const override
    {
        return metrics(style).horizontalAdvance(fromCore(text)) * twipsX_;
    }
    double lineHeight(report::TextStyle style) const override { return metrics(style).lineSpacing() * twipsY_; }

private:
    const QFontMetricsF& metrics(report::TextStyle style) const { return metrics_[static_cast<std::size_t>(style)]; }

    double twipsX_;
    double twipsY_;
    std::vector<QFontMetricsF> metrics_;
};

void drawPage(QPainter& painter, const report::Page& page, const DeviceMeasure& measure, double pixelsX, double pixelsY)
{
    for (const auto& text : page.texts) {
        painter.setFont(reportFont(text.style));
        const QRectF box(
            text.x * pixelsX, text.y * pixelsY, text.width * pixelsX, measure.lineHeight(text.style) * pixelsY);
        const Qt::Alignment align = (text.alignRight ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignTop;
        // Each text was measured to fit its box; nothing is clipped even if
        // the printer's rounding makes it a hair wider.
        painter.drawText(box, static_cast<int>(align) | Qt::TextSingleLine | Qt::TextDontClip, fromCore(text.text));
    }
    painter.setPen(QPen(Qt::black, kRuleTwips * pixelsY));
    for (const auto& rule : page.rules)
        painter.drawLine(QPointF(rule.x1 * pixelsX, rule.y * pixelsY), QPointF(rule.x2 * pixelsX, rule.y * pixelsY));
}

} // namespace

QFont reportFont(report::TextStyle style)
{
    QFont font(QStringLiteral("Arial CE"));
    font.setFamilies({ QStringLiteral("Arial CE"), QStringLiteral("Arial"), QStringLiteral("Liberation Sans"),
        QStringLiteral("DejaVu Sans") });
    font.setStyleHint(QFont::SansSerif);
    switch (style) {
    case report::TextStyle::Header:
        font.setPointSizeF(14);
        break;
    case report::TextStyle::Title:
        font.setPointSizeF(10);
        font.setBold(true);
        break;
    case report::TextStyle::Heading:
        font.setPointSizeF(8);
        font.setBold(true);
        break;
    case report::TextStyle::Body:
        font.setPointSizeF(8);
        break;
    }
    return font;
}

bool drawReportDocument(
    QPagedPaintDevice& device, const report::Report& report, const std::function<void(int page)>& onPage)
{
    QPainter painter;
    if (!painter.begin(&device))
        return false;
    const DeviceMeasure measure(device);
    const double pixelsX = device.logicalDpiX() / kTwipsPerInch;
    const double pixelsY = device.logicalDpiY() / kTwipsPerInch;
    const report::PageGeometry geometry { device.width() / pixelsX, device.height() / pixelsY };
    const auto pages = report::layoutReport(report, measure, geometry);
    for (const auto& page : pages) {
        if (page.number > 1 && !device.newPage()) {
            painter.end();
            return false;
        }
        if (onPage)
            onPage(page.number);
        drawPage(painter, page, measure, pixelsX, pixelsY);
    }
    return painter.end();
}

bool printReportCopies(
    QPrinter& printer, const report::Report& report, Interaction& ui, const std::function<void(int copy)>& beforeCopy)
{
    ui.showProgress(report::kPreparingText, true);
    const int copies = std::max(1, printer.copyCount());
    // Each copy is a document of its own, printed once.
    printer.setCopyCount(1);
    // After Storno the window stays hidden; the printing goes on.
    bool hidden = false;
    bool printed = true;
    for (int copy = 1; copy <= copies && printed; ++copy) {
        if (beforeCopy)
            beforeCopy(copy);
        printed = drawReportDocument(printer, report, [&](int page) {
            hidden = hidden || ui.cancelRequested();
            if (!hidden)
                ui.showProgress(report::progressText(page, copy, copies), true);
        });
    }
    ui.hideProgress();
    return printed;
}

namespace {

void nameDocument(QPrinter& printer, const report::Report& report)
{
    // Qt proposes the document name for a PDF: a name any file system takes.
    printer.setDocName(fromCore(report.fileStem));
    printer.setCreator(programName());
}

} // namespace

void printSettingsReport(QWidget* owner, const report::Report& report, Interaction& ui)
{
    QPrinter printer(QPrinter::HighResolution);
    nameDocument(printer, report);
    QPrintDialog dialog(&printer, owner);
    dialog.setOption(QAbstractPrintDialog::PrintSelection, false);
#ifdef Q_OS_WIN
    dialog.setOption(QAbstractPrintDialog::PrintToFile, false);
#endif
    if (dialog.exec() != QDialog::Accepted)
        return;
    (void)printReportCopies(printer, report, ui);
}

void previewSettingsReport(QWidget* owner, const report::Report& report)
{
    QPrinter printer(QPrinter::HighResolution);
    nameDocument(printer, report);
    QPrintPreviewDialog dialog(&printer, owner);
    dialog.setObjectName(QStringLiteral("NahledTisku"));
    dialog.setWindowTitle(QStringLiteral("Náhled tisku"));
    // The same pages for the preview and for the printer chosen from it.
    QObject::connect(&dialog, &QPrintPreviewDialog::paintRequested,
        [&report](QPrinter* target) { (void)drawReportDocument(*target, report); });
    dialog.exec();
}

Expected<void, QString> writeReportPdf(const QString& path, const report::Report& report)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return unexpected(file.errorString());
    bool drawn = false;
    {
        QPdfWriter writer(&file);
        writer.setPageSize(QPageSize(QPageSize::A4));
        writer.setPageMargins(QMarginsF(0, 0, 0, 0));
        writer.setTitle(fromCore(report.header));
        writer.setCreator(programName());
        drawn = drawReportDocument(writer, report);
    }
    if (!drawn) {
        file.cancelWriting();
        return unexpected(QStringLiteral("PDF se nepodařilo vykreslit"));
    }
    if (!file.commit())
        return unexpected(file.errorString());
    return {};
}

} // namespace rm8::shell
