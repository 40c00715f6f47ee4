#pragma once
// The text of a PDF's pages, as poppler's pdftotext lays it out
// (scripts/install-deps.sh installs it), with runs of blanks made one.

#include <QProcess>
#include <QRegularExpression>
#include <QStringList>

namespace rm8::shell::test {

// One entry per page, each a list of its non-empty lines; empty when the
// file could not be read.
inline QList<QStringList> pdfPages(const QString& path)
{
    QProcess extract;
    extract.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), path, QStringLiteral("-")});
    if (!extract.waitForFinished(30000) || extract.exitCode() != 0)
        return {};
    QList<QStringList> pages;
    const QString text = QString::fromUtf8(extract.readAllStandardOutput());
    for (const QString& page : text.split(QLatin1Char('\f'), Qt::SkipEmptyParts)) {
        QStringList lines;
        for (QString line : page.split(QLatin1Char('\n'))) {
            line = line.simplified();
            if (!line.isEmpty())
                lines << line;
        }
        if (!lines.isEmpty())
            pages << lines;
    }
    return pages;
}

} // namespace rm8::shell::test
