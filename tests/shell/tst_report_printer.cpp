// The report on Qt's PDF printer: copies as documents of their own from
// page 1, the progress texts, Storno, a failing printer, the print dialog;
// and rm8config --print-pdf run without a display. PDFs are read back with
// poppler's pdftotext (scripts/install-deps.sh).

#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrintPreviewWidget>
#include <QPrinter>

#include "fields/settings_json.h"
#include "modal_helpers.h"
#include "shell/report_printer.h"
#include "support/recording_interaction.h"

// pdftotext, which reads the PDFs back, is a Linux program: not inside Wine.
#ifdef Q_OS_WIN
#define SKIP_WITHOUT_PDFTOTEXT() QSKIP("pdftotext is a Linux program: not inside Wine")
#else
#define SKIP_WITHOUT_PDFTOTEXT() \
    do {                         \
    } while (false)
#endif

namespace {

// The non-empty lines of each page, blanks simplified.
QList<QStringList> pdfPages(const QString& path)
{
    QProcess extract;
    extract.start(QStringLiteral("pdftotext"), { QStringLiteral("-layout"), path, QStringLiteral("-") });
    extract.waitForFinished(30000);
    QList<QStringList> pages;
    for (const QString& page : QString::fromUtf8(extract.readAllStandardOutput()).split(QLatin1Char('\f'))) {
        QStringList lines;
        for (const QString& line : page.split(QLatin1Char('\n')))
            if (!line.simplified().isEmpty())
                lines << line.simplified();
        if (!lines.isEmpty())
            pages << lines;
    }
    return pages;
}

QString data(const char* name)
{
    return QString::fromStdString((rm8::test::dataDir() / name).string());
}

rm8::report::Report sampleReport()
{
    return rm8::report::buildReport(
        *rm8::settingsFromJson(rm8::test::readJson(rm8::test::dataDir() / "report/all_rows.json")));
}

// The run on an A6 PDF printer, so that the report takes several pages;
// copy k goes to copyK.pdf.
bool printCopies(const QTemporaryDir& dir, int copies, rm8::test::RecordingInteraction& ui)
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setPageSize(QPageSize(QPageSize::A6));
    printer.setCopyCount(copies);
    return rm8::shell::printReportCopies(printer, sampleReport(), ui,
        [&](int copy) { printer.setOutputFileName(dir.filePath(QStringLiteral("copy%1.pdf").arg(copy))); });
}

} // namespace

class TestReportPrinter : public QObject {
    Q_OBJECT
private slots:
    void copiesAreDocumentsOfTheirOwnFromPageOne();
    void stornoHidesTheProgressAndPrintingGoesOn();
    void aPrinterErrorEndsTheRunSilently();
    void theDialogsCopiesOrNothingWhenCancelled();
    void previewShowsThePagesOfThePdf();
    void printPdfHasEveryLineInOrder_data();
    void printPdfHasEveryLineInOrder();
};

void TestReportPrinter::copiesAreDocumentsOfTheirOwnFromPageOne()
{
    SKIP_WITHOUT_PDFTOTEXT();
    const QTemporaryDir dir;
    rm8::test::RecordingInteraction ui;
    QVERIFY(printCopies(dir, 3, ui));
    const auto pageCount = pdfPages(dir.filePath(QStringLiteral("copy1.pdf"))).size();
    QVERIFY2(pageCount >= 2, "pdftotext reads no pages of several");
    std::vector<std::string> progress { std::string(rm8::report::kPreparingText) };
    for (int copy = 1; copy <= 3; ++copy) {
        const auto pages = pdfPages(dir.filePath(QStringLiteral("copy%1.pdf").arg(copy)));
        QCOMPARE(pages.size(), pageCount);
        for (int page = 1; page <= pages.size(); ++page) {
            // The header's first line, with the page number at its end.
            QVERIFY(pages[page - 1].front().startsWith(QStringLiteral("Nastavení ")));
            QVERIFY(pages[page - 1].front().endsWith(QString::fromStdString(rm8::report::pageNumberText(page))));
            progress.push_back(rm8::report::progressText(page, copy, 3));
        }
    }
    QCOMPARE(ui.progress, progress);
    QCOMPARE(ui.events.back(), std::string("hide"));
}

void TestReportPrinter::stornoHidesTheProgressAndPrintingGoesOn()
{
    SKIP_WITHOUT_PDFTOTEXT();
    const QTemporaryDir dir;
    rm8::test::RecordingInteraction ui;
    ui.stornoAfterTurns = 2; // pressed while page 1 of the first copy prints
    QVERIFY(printCopies(dir, 2, ui));
    QCOMPARE(ui.progress,
        (std::vector<std::string> { std::string(rm8::report::kPreparingText), rm8::report::progressText(1, 1, 2) }));
    QVERIFY(pdfPages(dir.filePath(QStringLiteral("copy2.pdf"))).size() >= 2);
}

void TestReportPrinter::aPrinterErrorEndsTheRunSilently()
{
    QTemporaryDir dir;
    QVERIFY(dir.remove()); // the printer's files have nowhere to go
    rm8::test::RecordingInteraction ui;
    QVERIFY(!printCopies(dir, 2, ui));
    QCOMPARE(ui.events, (std::vector<std::string> { "progress:" + std::string(rm8::report::kPreparingText), "hide" }));
}

void TestReportPrinter::theDialogsCopiesOrNothingWhenCancelled()
{
#ifdef Q_OS_WIN
    QSKIP("on Windows the print dialog is the system's own window, which a Qt test cannot drive");
#endif
    const QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("dialog.pdf"));
    for (const bool accept : { false, true }) {
        rm8::test::RecordingInteraction ui;
        bool selectionOffered = true;
        // Qt's own dialog, as on Linux: the PDF entry, its file name, the copies.
        const auto wait
            = rm8::shell::test::onNextModal<QPrintDialog>(QStringLiteral("print dialog"), [&](QPrintDialog* dialog) {
                  selectionOffered = dialog->testOption(QAbstractPrintDialog::PrintSelection);
                  // The PDF entry comes after the system's printers, if it has any.
                  if (auto* printers = dialog->findChild<QComboBox*>(QStringLiteral("printers")))
                      printers->setCurrentIndex(printers->count() - 1);
                  auto* file = dialog->findChild<QLineEdit*>(QStringLiteral("filename"));
                  auto* copies = dialog->findChild<QSpinBox*>(QStringLiteral("copies"));
                  if (file && copies) {
                      file->setText(pdf);
                      copies->setValue(2);
                  }
                  accept ? dialog->accept() : dialog->reject();
              });
        rm8::shell::printSettingsReport(nullptr, sampleReport(), ui);
        QVERIFY2(wait->isEmpty(), qPrintable(*wait));
        QVERIFY(!selectionOffered);
        QCOMPARE(QFile::exists(pdf), accept);
        QCOMPARE(ui.progress.empty() ? std::string() : ui.progress.back(),
            accept ? rm8::report::progressText(1, 2, 2) : std::string());
    }
}

void TestReportPrinter::previewShowsThePagesOfThePdf()
{
    SKIP_WITHOUT_PDFTOTEXT();
    const QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("report.pdf"));
    QVERIFY(rm8::shell::writeReportPdf(pdf, sampleReport()));
    int previewed = 0;
    QString title;
    const auto wait = rm8::shell::test::onNextModal<QPrintPreviewDialog>(
        QStringLiteral("print preview"), [&](QPrintPreviewDialog* dialog) {
            title = dialog->windowTitle();
            previewed = dialog->findChild<QPrintPreviewWidget*>()->pageCount();
            dialog->reject();
        });
    rm8::shell::previewSettingsReport(nullptr, sampleReport());
    QVERIFY2(wait->isEmpty(), qPrintable(*wait));
    QCOMPARE(title, QStringLiteral("Náhled tisku"));
    QVERIFY(previewed > 0);
    QCOMPARE(previewed, pdfPages(pdf).size());
}

void TestReportPrinter::printPdfHasEveryLineInOrder_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("golden");
    QTest::addColumn<int>("status");
    QTest::newRow("settings file") << QStringList { data("full.eep") } << data("report/full.txt") << 0;
    QTest::newRow("battery text from the battery row")
        << QStringList { data("flags_conditional.eep") } << data("report/flags_conditional.txt") << 0;
    QTest::newRow("settings JSON") << QStringList { data("report/all_rows.json") } << data("report/all_rows.txt") << 0;
    QTest::newRow("start-up") << QStringList {} << data("report/empty.txt") << 0;
    QTest::newRow("no image") << QStringList { data("ctl/mark.eep") }
                              << QStringLiteral("rm8config: Data v souboru '%1' nejsou v pořádku - neodpovídají "
                                                "formátu EEPROM.\n")
                                     .arg(data("ctl/mark.eep"))
                              << 2;
}

void TestReportPrinter::printPdfHasEveryLineInOrder()
{
    SKIP_WITHOUT_PDFTOTEXT();
#ifndef RM8CONFIG_PATH
    QSKIP("rm8config is not built");
#else
    QFETCH(QStringList, files);
    QFETCH(QString, golden);
    QFETCH(int, status);
    const QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("report.pdf"));
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : { "DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM" })
        environment.remove(QString::fromLatin1(name));
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(RM8CONFIG_PATH), QStringList { QStringLiteral("--print-pdf"), pdf } + files);
    QVERIFY(program.waitForFinished(60000));
    const QString errors = QString::fromUtf8(program.readAllStandardError());
    QCOMPARE(program.exitCode(), status);
    if (status != 0) {
        QCOMPARE(errors, golden); // one line that names the file
        QVERIFY(!QFile::exists(pdf));
        return;
    }
    QStringList printed;
    for (const auto& page : pdfPages(pdf))
        printed += page;
    QFile expected(golden);
    QVERIFY(expected.open(QIODevice::ReadOnly));
    // The golden's tab-separated cells stand side by side on the page.
    qsizetype at = 0;
    for (const QString& line : QString::fromUtf8(expected.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QString wanted = line.split(QLatin1Char('\t'), Qt::SkipEmptyParts).join(QLatin1Char(' ')).simplified();
        while (at < printed.size() && !printed[at].startsWith(wanted))
            ++at;
        QVERIFY2(at++ < printed.size(), qPrintable(QStringLiteral("not in the PDF, or out of order: ") + wanted));
    }
#endif
}

QTEST_MAIN(TestReportPrinter)
#include "tst_report_printer.moc"
