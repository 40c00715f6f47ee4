#include "shell/recent_files.h"

#include <QFileInfo>
#include <QSettings>

namespace rm8::shell {
namespace {

const QString kKey = QStringLiteral("recentFiles");

} // namespace

RecentFiles::RecentFiles(QSettings* store)
    : store_(store)
{
    if (store_)
        paths_ = store_->value(kKey).toStringList().mid(0, kLimit);
}

void RecentFiles::add(const QString& path)
{
    // One entry per file, however it was named.
    const QString absolute = QFileInfo(path).absoluteFilePath();
    paths_.removeAll(absolute);
    paths_.prepend(absolute);
    paths_ = paths_.mid(0, kLimit);
    keep();
}

void RecentFiles::remove(const QString& path)
{
    paths_.removeAll(path);
    keep();
}

void RecentFiles::keep()
{
    if (store_)
        store_->setValue(kKey, paths_);
}

} // namespace rm8::shell
