#include "shell/port_settings.h"

#ifdef RM8_QT_SERIALPORT
#include <QSerialPortInfo>
#else
#include "link/system_ports.h"
#endif
#include <QSettings>

namespace rm8::shell {
namespace {

QString keyOf(int number)
{
    return QStringLiteral("ports/COM%1").arg(number);
}

} // namespace

void loadPortAssignments(QSettings& store, link::PortMap& ports)
{
    for (int number = kFirstListedPort; number <= kLastListedPort; ++number) {
        const QString device = store.value(keyOf(number)).toString().trimmed();
        if (!device.isEmpty())
            ports.set(number, device.toStdString());
    }
}

void savePortAssignments(QSettings& store, const link::PortMap& ports)
{
    const auto platform = link::PortMap::platformDefault();
    for (int number = kFirstListedPort; number <= kLastListedPort; ++number) {
        const auto own = platform.entries().find(number);
        const auto chosen = ports.entries().find(number);
        const bool isPlatformOwn = chosen == ports.entries().end()
                                   || (own != platform.entries().end() && own->second == chosen->second);
        if (isPlatformOwn)
            store.remove(keyOf(number));
        else
            store.setValue(keyOf(number), QString::fromStdString(chosen->second));
    }
    store.sync();
}

std::vector<SystemPort> systemSerialPorts()
{
    std::vector<SystemPort> ports;
#ifndef RM8_QT_SERIALPORT
    for (const link::SystemPort& port : link::systemSerialPorts())
        ports.push_back({QString::fromStdString(port.device), QString::fromStdString(port.description)});
#else
    for (const QSerialPortInfo& info : QSerialPortInfo::availablePorts()) {
        QString description = info.description();
        if (!info.manufacturer().isEmpty() && !description.contains(info.manufacturer()))
            description += description.isEmpty() ? info.manufacturer() : QStringLiteral(" (%1)").arg(info.manufacturer());
        ports.push_back({info.systemLocation(), description});
    }
#endif
    return ports;
}

} // namespace rm8::shell
