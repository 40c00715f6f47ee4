#include "ui/phone_dialog.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "editing/row_model.h"
#include "fields/table_rows.h"

namespace rm8::ui {
namespace {

constexpr TextBinding<PhoneRow> kTexts[] = { { "TC", &PhoneRow::number } };

constexpr CheckBinding<PhoneRow> kChecks[] = {
    { "TCPrijem", &PhoneRow::prijem },
    { "TCUdalost", &PhoneRow::udalost },
};

} // namespace

PhoneDialog::PhoneDialog(QWidget* parent)
    : RowDialog(parent, "TelCislo")
{
    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(QStringLiteral("Telefonní číslo:")), 0, 0);
    QLineEdit* number = textField("TC", "Telefonní číslo");
    // Room for an international number with its prefix.
    number->setMinimumWidth(number->fontMetrics().horizontalAdvance(QString(20, u'0')));
    grid->addWidget(number, 0, 1);
    grid->addWidget(checkBox("TCPrijem", "Přijímat příkazy", "Přijímat příkazy z tohoto tel. čísla"), 1, 0, 1, 2);
    grid->addWidget(
        checkBox("TCUdalost", "Odesílat zprávy o událostech", "Odesílat zprávy o událostech na toto tel. číslo"), 2, 0,
        1, 2);
    grid->setColumnStretch(1, 1);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addLayout(buttonRow());
}

bool PhoneDialog::edit(StationSettings& settings, std::size_t row)
{
    begin(settings, row, QStringLiteral("Telefonní číslo ") + QString::fromStdString(rowLabel(RowTable::Phones, row)));
    showRow<PhoneRow>(phoneRow(settings, row), kTexts, kChecks);
    if (!runModal())
        return false;
    storeInto(settings);
    applyPending(settings);
    return true;
}

void PhoneDialog::storeInto(StationSettings& record) const
{
    PhoneRow value;
    readRow<PhoneRow>(value, kTexts, kChecks);
    storePhoneRow(record, row(), value);
}

} // namespace rm8::ui
