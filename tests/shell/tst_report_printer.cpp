// The print run of btTisk on Qt's PDF printer: copies as documents of their
// own, each from page 1, the progress texts, Storno, a printer that fails,
// and the print dialog.

#include <fstream>
#include <sstream>

#include <QPrintDialog>
#include <QPrinter>

#include "fields/settings_json.h"
#include "modal_helpers.h"
#include "report_pdf.h"
#include "shell/report_printer.h"
#include "support/recording_interaction.h"

namespace {

using rm8::shell::test::pdfPages;

rm8::report::Report sampleReport()
{
    std::ifstream in(rm8::test::dataDir() / "report" / "all_rows.json");
    std::ostringstream text;
    text << in.rdbuf();
    return rm8::report::buildReport(*rm8::parseSettingsJson(text.str()));
}

// A page small enough that the report takes several.
void smallPdfPrinter(QPrinter& printer, int copies)
{
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setPageSize(QPageSize(QPageSize::A6));
    printer.setCopyCount(copies);
}

QString copyFile(const QTemporaryDir& dir, int copy)
{
    return dir.filePath(QStringLiteral("copy%1.pdf").arg(copy));
}

} // namespace

class TestReportPrinter : public QObject {
    Q_OBJECT
private slots:
    void copiesAreDocumentsOfTheirOwnFromPageOne();
    void stornoHidesTheProgressAndPrintingGoesOn();
    void aPrinterErrorEndsTheRunSilently();
    void aCancelledPrintDialogPrintsNothing();
    void theCopiesChosenInTheDialogArePrinted();
};

void TestReportPrinter::copiesAreDocumentsOfTheirOwnFromPageOne()
{
    const QTemporaryDir dir;
    QPrinter printer(QPrinter::HighResolution);
    smallPdfPrinter(printer, 3);
    rm8::test::RecordingInteraction ui;
    const auto report = sampleReport();
    QVERIFY(rm8::shell::printReportCopies(printer, report, ui, [&](int copy) {
        printer.setOutputFileName(copyFile(dir, copy));
    }));

    const auto first = pdfPages(copyFile(dir, 1));
    QVERIFY2(first.size() >= 2, "pdftotext (scripts/install-deps.sh) reads no pages of several");
    std::vector<std::string> progress{std::string(rm8::report::kPreparingText)};
    for (int copy = 1; copy <= 3; ++copy) {
        const auto pages = pdfPages(copyFile(dir, copy));
        QCOMPARE(pages.size(), first.size());
        for (int page = 1; page <= pages.size(); ++page) {
            // The header's first line, with the page number at its end.
            const QString header = pages[page - 1].front();
            QVERIFY2(header.startsWith(QStringLiteral("Nastavení ")), qPrintable(header));
            QVERIFY2(header.endsWith(QString::fromStdString(rm8::report::pageNumberText(page))), qPrintable(header));
            progress.push_back(rm8::report::progressText(page, copy, 3));
        }
    }
    QCOMPARE(ui.progress, progress);
    QCOMPARE(ui.events.back(), std::string("hide"));
    QVERIFY(ui.messages.empty());
}

void TestReportPrinter::stornoHidesTheProgressAndPrintingGoesOn()
{
    const QTemporaryDir dir;
    QPrinter printer(QPrinter::HighResolution);
    smallPdfPrinter(printer, 2);
    rm8::test::RecordingInteraction ui;
    ui.stornoAfterTurns = 2; // pressed while page 1 of the first copy prints
    QVERIFY(rm8::shell::printReportCopies(printer, sampleReport(), ui, [&](int copy) {
        printer.setOutputFileName(copyFile(dir, copy));
    }));
    QCOMPARE(ui.progress, (std::vector<std::string>{std::string(rm8::report::kPreparingText),
                                                    rm8::report::progressText(1, 1, 2)}));
    const auto pages = pdfPages(copyFile(dir, 2));
    QVERIFY(pages.size() >= 2);
    QCOMPARE(pdfPages(copyFile(dir, 1)).size(), pages.size());
}

void TestReportPrinter::aPrinterErrorEndsTheRunSilently()
{
    const QTemporaryDir dir;
    QPrinter printer(QPrinter::HighResolution);
    smallPdfPrinter(printer, 2);
    printer.setOutputFileName(dir.filePath(QStringLiteral("no/such/folder/x.pdf")));
    rm8::test::RecordingInteraction ui;
    QVERIFY(!rm8::shell::printReportCopies(printer, sampleReport(), ui));
    QCOMPARE(ui.events, (std::vector<std::string>{"progress:" + std::string(rm8::report::kPreparingText), "hide"}));
}

void TestReportPrinter::aCancelledPrintDialogPrintsNothing()
{
    rm8::test::RecordingInteraction ui;
    const auto wait = rm8::shell::test::onNextModal<QPrintDialog>(QStringLiteral("print dialog"),
                                                                  [](QPrintDialog* dialog) { dialog->reject(); });
    rm8::shell::printSettingsReport(nullptr, sampleReport(), ui);
    QVERIFY2(wait->isEmpty(), qPrintable(*wait));
    QVERIFY(ui.events.empty());
}

void TestReportPrinter::theCopiesChosenInTheDialogArePrinted()
{
    const QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("dialog.pdf"));
    rm8::test::RecordingInteraction ui;
    bool selectionOffered = true;
    // Qt's own dialog, as on Linux: the PDF entry, its file name, the copies.
    const auto wait = rm8::shell::test::onNextModal<QPrintDialog>(
        QStringLiteral("print dialog"), [&](QPrintDialog* dialog) {
            selectionOffered = dialog->testOption(QAbstractPrintDialog::PrintSelection);
            auto* printers = dialog->findChild<QComboBox*>(QStringLiteral("printers"));
            auto* file = dialog->findChild<QLineEdit*>(QStringLiteral("filename"));
            auto* copies = dialog->findChild<QSpinBox*>(QStringLiteral("copies"));
            if (!printers || !file || !copies)
                return; // the wait reports the dialog as still open
            printers->setCurrentIndex(printers->count() - 1);
            file->setText(pdf);
            copies->setValue(2);
            dialog->accept();
        });
    rm8::shell::printSettingsReport(nullptr, sampleReport(), ui);
    QVERIFY2(wait->isEmpty(), qPrintable(*wait));
    QVERIFY(!selectionOffered);
    QCOMPARE(ui.progress.back(), rm8::report::progressText(1, 2, 2));
    QCOMPARE(pdfPages(pdf).size(), 1);
}

QTEST_MAIN(TestReportPrinter)
#include "tst_report_printer.moc"
