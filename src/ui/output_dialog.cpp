#include "ui/output_dialog.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include "editing/row_model.h"
#include "fields/table_rows.h"

namespace rm8::ui {
namespace {

constexpr TextBinding<OutputRow> kTexts[] = {
    { "OUTNazev", &OutputRow::nazev },
    { "OUTVyp", &OutputRow::vyp },
    { "OUTZap", &OutputRow::zap },
    { "OUTimpuls", &OutputRow::impuls },
    { "OUTimpulsLEN", &OutputRow::impulsLen },
};

constexpr CheckBinding<OutputRow> kChecks[] = {
    { "OUTZpr", &OutputRow::zpr },
    { "OUTNeg", &OutputRow::neg },
};

struct FunctionButton {
    const char* name;
    OutputFunction function;
    const char* caption;
};

// "Standartní" is the station's own spelling.
constexpr FunctionButton kFunctions[] = {
    { "eeMaskDOutFnc1", OutputFunction::Standard, "Standartní výstup" },
    { "eeMaskDOutFnc2", OutputFunction::ModemState, "Indikace stavu modemu" },
    { "eeMaskDOutFnc3", OutputFunction::PowerSavingState, "Indikace stavu šetřícího režimu" },
};

QRadioButton* functionButton(const QWidget* dialog, const FunctionButton& button)
{
    return dialog->findChild<QRadioButton*>(QLatin1String(button.name));
}

} // namespace

OutputDialog::OutputDialog(QWidget* parent)
    : RowDialog(parent, "Vystup")
{
    auto* name = new QGridLayout;
    name->addWidget(new QLabel(QStringLiteral("Název:")), 0, 0);
    name->addWidget(textField("OUTNazev"), 0, 1);
    // "vstup" stands here on purpose: the station's texts say so.
    name->addWidget(checkBox("OUTZpr", "Uvádět tento vstup ve zprávě o stavu"), 1, 0, 1, 2);

    auto* functions = new QGroupBox;
    auto* functionLayout = new QVBoxLayout(functions);
    for (const FunctionButton& button : kFunctions) {
        auto* option = new QRadioButton(QString::fromUtf8(button.caption), functions);
        option->setObjectName(QLatin1String(button.name));
        functionLayout->addWidget(option);
    }

    auto* states = new QGroupBox(QStringLiteral("Stavy"));
    auto* stateGrid = new QGridLayout(states);
    stateGrid->addWidget(new QLabel(QStringLiteral("Název stavu vypnuto (0):")), 0, 0);
    stateGrid->addWidget(textField("OUTVyp"), 0, 1);
    stateGrid->addWidget(new QLabel(QStringLiteral("Název stavu zapnuto (1):")), 1, 0);
    stateGrid->addWidget(textField("OUTZap"), 1, 1);

    auto* impulse = new QGroupBox(QStringLiteral("Impuls"));
    auto* impulseGrid = new QGridLayout(impulse);
    impulseGrid->addWidget(new QLabel(QStringLiteral("Příkaz pro vyslání impulsu:")), 0, 0);
    impulseGrid->addWidget(textField("OUTimpuls"), 0, 1, 1, 2);
    impulseGrid->addWidget(new QLabel(QStringLiteral("Délka jednoho impulsu ....................")), 1, 0);
    impulseGrid->addWidget(textField("OUTimpulsLEN"), 1, 1);
    impulseGrid->addWidget(new QLabel(QStringLiteral("sekund")), 1, 2);
    impulseGrid->setColumnStretch(1, 1);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(name);
    layout->addWidget(functions);
    layout->addWidget(states);
    layout->addWidget(checkBox("OUTNeg", "Negace výstupu"));
    layout->addWidget(impulse);
    layout->addLayout(buttonRow());
}

bool OutputDialog::edit(StationSettings& settings, std::size_t row)
{
    begin(settings, row, QStringLiteral("Vystup ") + QString::fromStdString(rowLabel(RowTable::Outputs, row)));
    const OutputRow value = outputRow(settings, row);
    showRow<OutputRow>(value, kTexts, kChecks);
    for (const FunctionButton& button : kFunctions) {
        QRadioButton* option = functionButton(this, button);
        option->setEnabled(outputFunctionAvailable(row, button.function));
        option->setChecked(value.function == button.function);
    }
    if (!runModal())
        return false;
    storeInto(settings);
    applyPending(settings);
    return true;
}

void OutputDialog::storeInto(StationSettings& record) const
{
    OutputRow value;
    readRow<OutputRow>(value, kTexts, kChecks);
    for (const FunctionButton& button : kFunctions)
        if (functionButton(this, button)->isChecked())
            value.function = button.function;
    storeOutputRow(record, row(), value);
}

} // namespace rm8::ui
