// The QSerialPort line keeps every promise of a serial line.

#include <QCoreApplication>

#include <gtest/gtest.h>

#include "serial/qt_serial_line.h"
#include "support/serial_line_contract.h"

namespace rm8::test {

template <> std::unique_ptr<serial::QtSerialLine> makeLineFor<serial::QtSerialLine>(const std::string& path)
{
    return std::make_unique<serial::QtSerialLine>(QString::fromStdString(path));
}

INSTANTIATE_TYPED_TEST_SUITE_P(Qt, SerialLineContract, testing::Types<serial::QtSerialLine>);

} // namespace rm8::test

int main(int argc, char** argv)
{
    // QSerialPort's notifiers want an application object, even unused.
    QCoreApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
