#pragma once
// The files last loaded or saved ("Nedávné soubory"), the latest first, at
// most eight, kept between runs with the other remembered options.

#include <QString>
#include <QStringList>

class QSettings;

namespace rm8::shell {

class RecentFiles {
public:
    static constexpr qsizetype kLimit = 8;

    // store: where the list lives between runs; nothing keeps it for this
    // run only.
    explicit RecentFiles(QSettings* store);

    const QStringList& paths() const { return paths_; }
    void add(const QString& path);
    void remove(const QString& path);

private:
    void keep();

    QSettings* store_;
    QStringList paths_;
};

} // namespace rm8::shell
