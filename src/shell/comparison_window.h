#pragma once
// The comparison window "Porovnani": what the window's settings would change
// against a file or a station, kept open beside the pages while the
// technician looks through the differences; a new comparison replaces its
// table. Activating an entry reveals that field in the main window.

#include <QPointer>
#include <QString>

#include "settings/station_settings.h"

class QDialog;

namespace rm8::ui {
class MainWindow;
}

namespace rm8::shell {

class ComparisonWindow {
public:
    explicit ComparisonWindow(ui::MainWindow& window)
        : window_(window)
    {
    }

    void show(const StationSettings& ours, const StationSettings& other, const QString& otherHeading);

private:
    void build();

    ui::MainWindow& window_;
    QPointer<QDialog> dialog_;
    QPointer<QObject> view_;
};

} // namespace rm8::shell
