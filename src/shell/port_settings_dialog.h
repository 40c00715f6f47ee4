#pragma once
// The technician's choice of device behind each entry of the port list, from
// the serial ports the system knows (USB adapters show their maker) or typed
// by hand (a simulated station's pseudo-terminal).

#include <array>
#include <vector>

#include <QDialog>

#include "link/port_map.h"
#include "shell/port_settings.h"

class QComboBox;

namespace rm8::shell {

class PortSettingsDialog : public QDialog {
    Q_OBJECT
public:
    PortSettingsDialog(const link::PortMap& current, const std::vector<SystemPort>& available,
                       QWidget* parent = nullptr);

    // The map it was given with the listed ports as edited. A device left
    // empty is the platform's own again.
    link::PortMap ports() const;

    // The editor of "COM n", objectName portDevice_n.
    QComboBox* deviceEditor(int number) const;

private:
    link::PortMap base_;
    std::array<QComboBox*, kLastListedPort - kFirstListedPort + 1> editors_{};
};

} // namespace rm8::shell
