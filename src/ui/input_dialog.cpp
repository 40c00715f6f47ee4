#include "ui/input_dialog.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "editing/row_model.h"
#include "fields/table_rows.h"

namespace rm8::ui {
namespace {

constexpr TextBinding<InputRow> kTexts[] = {
    { "INPNazev", &InputRow::nazev },
    { "INPVyp", &InputRow::vyp },
    { "INPZap", &InputRow::zap },
    { "INPLH", &InputRow::lh },
    { "INPHL", &InputRow::hl },
};

constexpr CheckBinding<InputRow> kChecks[] = {
    { "INPZpr", &InputRow::zpr },
    { "INPLHEvent", &InputRow::lhEvent },
    { "eeMaskDInLHAlarm", &InputRow::lhAlarm },
    { "INPHLEvent", &InputRow::hlEvent },
    { "eeMaskDInHLAlarm", &InputRow::hlAlarm },
    { "INPNeg", &InputRow::neg },
};

} // namespace

InputDialog::InputDialog(QWidget* parent)
    : RowDialog(parent, "Vstup")
{
    auto* name = new QGridLayout;
    name->addWidget(new QLabel(QStringLiteral("Název:")), 0, 0);
    name->addWidget(textField("INPNazev"), 0, 1);
    name->addWidget(checkBox("INPZpr", "Uvádět tento vstup ve zprávě o stavu"), 1, 0, 1, 2);

    auto* states = new QGroupBox(QStringLiteral("Stavy"));
    auto* grid = new QGridLayout(states);
    grid->addWidget(new QLabel(QStringLiteral("Název stavu vypnuto (0):")), 0, 0);
    grid->addWidget(textField("INPVyp"), 0, 1, 1, 2);
    grid->addWidget(new QLabel(QStringLiteral("Název stavu zapnuto (1):")), 1, 0);
    grid->addWidget(textField("INPZap"), 1, 1, 1, 2);
    int line = 2;
    for (const auto& [event, text, alarm, caption] : {
             std::tuple { "INPLHEvent", "INPLH", "eeMaskDInLHAlarm", "Poslat zprávu při změně stavu 0->1" },
             std::tuple { "INPHLEvent", "INPHL", "eeMaskDInHLAlarm", "Poslat zprávu při změně stavu 1->0" },
         }) {
        QCheckBox* box = checkBox(event, caption);
        connect(box, &QCheckBox::toggled, this, &InputDialog::checkEnabled);
        grid->addWidget(box, line, 0, 1, 3);
        grid->addWidget(textField(text), line + 1, 0, 1, 2);
        grid->addWidget(checkBox(alarm, "odeslat ihned"), line + 1, 2);
        line += 2;
    }
    grid->setColumnStretch(1, 1);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(name);
    layout->addWidget(states);
    layout->addWidget(checkBox("INPNeg", "Negace vstupu (neguje se ihned po vzorkování - teprve poté se analyzuje)"));
    layout->addLayout(buttonRow());
}

bool InputDialog::edit(StationSettings& settings, std::size_t row)
{
    begin(settings, row, QStringLiteral("Vstup ") + QString::fromStdString(rowLabel(RowTable::Inputs, row)));
    showRow<InputRow>(inputRow(settings, row), kTexts, kChecks);
    checkEnabled();
    if (!runModal())
        return false;
    storeInto(settings);
    applyPending(settings);
    return true;
}

void InputDialog::checkEnabled()
{
    const bool powerSaving = record().opEnablePS1;
    for (const auto& [event, alarm] :
        { std::pair { "INPLHEvent", "eeMaskDInLHAlarm" }, std::pair { "INPHLEvent", "eeMaskDInHLAlarm" } }) {
        const auto* box = findChild<QCheckBox*>(QLatin1String(event));
        findChild<QCheckBox*>(QLatin1String(alarm))->setEnabled(powerSaving && box->isChecked());
    }
}

void InputDialog::storeInto(StationSettings& record) const
{
    InputRow value;
    readRow<InputRow>(value, kTexts, kChecks);
    storeInputRow(record, row(), value);
}

} // namespace rm8::ui
