// rm8config --print-pdf run as a technician runs it, without a display: the
// PDF holds every line of the report's golden text in order; a bad file
// gives status 2 and one line.

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include "report_pdf.h"
#include "support/test_data.h"

namespace {

struct Run {
    int status = -1;
    QString errors;
};

Run printPdf(const QStringList& arguments)
{
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    program.setProcessEnvironment(environment);
    program.start(QStringLiteral(RM8CONFIG_PATH), QStringList{QStringLiteral("--print-pdf")} + arguments);
    if (!program.waitForFinished(60000))
        program.kill();
    return {program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1,
            QString::fromUtf8(program.readAllStandardError())};
}

QString data(const char* name)
{
    return QString::fromStdString((rm8::test::dataDir() / name).string());
}

} // namespace

class TestPrintPdfProgram : public QObject {
    Q_OBJECT
private slots:
    void everyLineOfTheReportInOrder_data();
    void everyLineOfTheReportInOrder();
    void aBadFileIsOneLineAndStatusTwo();
};

void TestPrintPdfProgram::everyLineOfTheReportInOrder_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("golden");
    QTest::newRow("settings file") << QStringList{data("full.eep")} << data("report/full.txt");
    QTest::newRow("settings JSON") << QStringList{data("report/all_rows.json")} << data("report/all_rows.txt");
    QTest::newRow("start-up settings") << QStringList{} << data("report/empty.txt");
}

void TestPrintPdfProgram::everyLineOfTheReportInOrder()
{
    QFETCH(QStringList, files);
    QFETCH(QString, golden);
    const QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("report.pdf"));
    const Run run = printPdf(QStringList{pdf} + files);
    QVERIFY2(run.status == 0, qPrintable(run.errors));

    QStringList printed;
    for (const auto& page : rm8::shell::test::pdfPages(pdf))
        printed += page;
    QVERIFY2(!printed.isEmpty(), "pdftotext (scripts/install-deps.sh) read nothing");
    QFile expected(golden);
    QVERIFY(expected.open(QIODevice::ReadOnly));
    // Cells of the golden's table lines are tab-separated; on the page they
    // stand side by side on one line.
    qsizetype at = 0;
    for (const QString& line : QString::fromUtf8(expected.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const QString wanted = line.split(QLatin1Char('\t'), Qt::SkipEmptyParts).join(QLatin1Char(' ')).simplified();
        while (at < printed.size() && !printed[at].startsWith(wanted))
            ++at;
        QVERIFY2(at < printed.size(), qPrintable(QStringLiteral("not in the PDF, or out of order: ") + wanted));
        ++at;
    }
}

void TestPrintPdfProgram::aBadFileIsOneLineAndStatusTwo()
{
    const QTemporaryDir dir;
    const QString pdf = dir.filePath(QStringLiteral("report.pdf"));
    const Run run = printPdf({pdf, data("ctl/mark.eep")});
    QCOMPARE(run.status, 2);
    QCOMPARE(run.errors, QStringLiteral("rm8config: Data v souboru '%1' nejsou v pořádku - neodpovídají formátu EEPROM.\n")
                             .arg(data("ctl/mark.eep")));
    QVERIFY(!QFile::exists(pdf));
}

QTEST_GUILESS_MAIN(TestPrintPdfProgram)
#include "tst_print_pdf_program.moc"
