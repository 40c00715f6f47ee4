#include "ui/analog_dialog.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "editing/level_check.h"
#include "editing/row_model.h"
#include "fields/table_rows.h"
#include "ui/leave_watch.h"
#include "ui/level_graph.h"
#include "ui/notice_box.h"

namespace rm8::ui {
namespace {

constexpr TextBinding<AnalogRow> kTexts[] = {
    { "AINNazev", &AnalogRow::nazev },
    { "AINStateL", &AnalogRow::stateL },
    { "AINStateM", &AnalogRow::stateM },
    { "AINStateH", &AnalogRow::stateH },
    { "AINCL1Level", &AnalogRow::cl1 },
    { "AINHCL1Level", &AnalogRow::hcl1 },
    { "AINCL2Level", &AnalogRow::cl2 },
    { "AINHCL2Level", &AnalogRow::hcl2 },
    { "AINCL1Up", &AnalogRow::cl1Up },
    { "AINCL1Dn", &AnalogRow::cl1Dn },
    { "AINCL2Up", &AnalogRow::cl2Up },
    { "AINCL2Dn", &AnalogRow::cl2Dn },
};

constexpr CheckBinding<AnalogRow> kChecks[] = {
    { "AINZpr", &AnalogRow::zpr },
    { "AINPrc", &AnalogRow::prc },
    { "AINNeg", &AnalogRow::neg },
    { "AINCL1UpEvent", &AnalogRow::cl1UpEvent },
    { "AINCL1DnEvent", &AnalogRow::cl1DnEvent },
    { "AINCL2UpEvent", &AnalogRow::cl2UpEvent },
    { "AINCL2DnEvent", &AnalogRow::cl2DnEvent },
    { "eeCL1Up", &AnalogRow::sendCl1Up },
    { "eeCL1Down", &AnalogRow::sendCl1Dn },
    { "eeCL2Up", &AnalogRow::sendCl2Up },
    { "eeCL2Down", &AnalogRow::sendCl2Dn },
};

// A reported crossing: its box, its text and its send-at-once box.
struct Crossing {
    const char* event;
    const char* text;
    const char* sendAtOnce;
    const char* caption;
};

constexpr Crossing kCrossings[] = {
    { "AINCL1UpEvent", "AINCL1Up", "eeCL1Up", "Hlásit přechod nahoru přes CL1" },
    { "AINCL1DnEvent", "AINCL1Dn", "eeCL1Down", "Hlásit přechod dolu přes CL1" },
    { "AINCL2UpEvent", "AINCL2Up", "eeCL2Up", "Hlásit přechod nahoru přes CL2" },
    { "AINCL2DnEvent", "AINCL2Dn", "eeCL2Down", "Hlásit přechod dolu přes CL2" },
};

// In the order the level check takes them.
constexpr TextBinding<AnalogRow> kLevelTexts[] = {
    { "AINCL1Level", &AnalogRow::cl1 },
    { "AINHCL1Level", &AnalogRow::hcl1 },
    { "AINCL2Level", &AnalogRow::cl2 },
    { "AINHCL2Level", &AnalogRow::hcl2 },
};

QLabel* label(const char* text)
{
    auto* caption = new QLabel(QString::fromUtf8(text));
    // Plain text keeps the runs of dots as they are written.
    caption->setTextFormat(Qt::PlainText);
    return caption;
}

} // namespace

AnalogDialog::AnalogDialog(QWidget* parent)
    : RowDialog(parent, "Analog")
    , graph_(new LevelGraph(this))
{
    auto* name = new QGridLayout;
    name->addWidget(label("Název:"), 0, 0);
    name->addWidget(textField("AINNazev", "Název analogového vstupu"), 0, 1);
    name->addWidget(label("Název analogového vstupu"), 0, 2);
    name->addWidget(checkBox("AINZpr", "Uvádět ve zprávě o stavu jméno stavu"), 1, 0, 1, 3);
    name->addWidget(checkBox("AINPrc", "Uvádět ve zprávě o stavu hodnotu"), 2, 0, 1, 3);
    QCheckBox* negation = checkBox("AINNeg", "Negace vstupu (neguje se ihned po vzorkování)");
    name->addWidget(negation, 3, 0, 1, 3);
    name->setColumnStretch(1, 1);
    // A click, not a toggle: showing a row must not rework its levels.
    connect(negation, &QCheckBox::clicked, this, &AnalogDialog::invertLevels);

    auto* states = new QGroupBox(QStringLiteral("Názvy stavů"));
    auto* stateGrid = new QGridLayout(states);
    stateGrid->addWidget(label("LOW (nízká) ................."), 0, 0);
    stateGrid->addWidget(textField("AINStateL", "Název stavu LOW (nízká)"), 0, 1);
    stateGrid->addWidget(label("MEDIUM (střední) ........"), 1, 0);
    stateGrid->addWidget(textField("AINStateM", "Název stavu MEDIUM (normální)"), 1, 1);
    stateGrid->addWidget(label("HIGH (vysoká) .............."), 2, 0);
    stateGrid->addWidget(textField("AINStateH", "Název stavu HIGH (vysoká)"), 2, 1);

    auto* levels = new QGroupBox(QStringLiteral("Úrovně"));
    auto* levelGrid = new QGridLayout(levels);
    const struct {
        const char* level;
        const char* levelTip;
        const char* band;
        const char* bandTip;
        const char* note;
    } levelRows[] = {
        { "AINCL1Level", "Hodnota úrovně CL1", "AINHCL1Level", "Hodnota  hystereze CL1",
            "(hranice stavů LOW a MEDIUM)" },
        { "AINCL2Level", "Hodnota úrovně CL2", "AINHCL2Level", "Hodnota  hystereze CL2",
            "(hranice stavů MEDIUM a HIGH)" },
    };
    int line = 0;
    for (const auto& row : levelRows) {
        QLineEdit* level = textField(row.level, row.levelTip);
        QLineEdit* band = textField(row.band, row.bandTip);
        // The drawing follows every keystroke, before the field is judged.
        connect(level, &QLineEdit::textChanged, this, &AnalogDialog::redraw);
        connect(band, &QLineEdit::textChanged, this, &AnalogDialog::redraw);
        levelGrid->addWidget(label("úroveň"), line, 0);
        levelGrid->addWidget(level, line, 1);
        levelGrid->addWidget(label("hyster."), line, 2);
        levelGrid->addWidget(band, line, 3);
        levelGrid->addWidget(label(row.note), line, 4);
        ++line;
    }
    levelGrid->addWidget(graph_, line, 0, 1, 5);

    auto* events = new QGridLayout;
    line = 0;
    for (const Crossing& crossing : kCrossings) {
        QCheckBox* box = checkBox(crossing.event, crossing.caption);
        connect(box, &QCheckBox::toggled, this, &AnalogDialog::checkEnabled);
        events->addWidget(box, line, 0);
        events->addWidget(textField(crossing.text), line, 1);
        events->addWidget(checkBox(crossing.sendAtOnce, "odeslat ihned"), line, 2);
        ++line;
    }
    events->setColumnStretch(1, 1);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(name);
    layout->addWidget(states);
    layout->addWidget(levels);
    layout->addLayout(events);
    layout->addLayout(buttonRow());
}

bool AnalogDialog::edit(StationSettings& settings, std::size_t row)
{
    begin(settings, row, QStringLiteral("Analog ") + QString::fromStdString(rowLabel(RowTable::Analog, row)));
    const AnalogRow value = analogRow(settings, row);
    graph_->setRange(value.range);
    showRow<AnalogRow>(value, kTexts, kChecks);
    checkEnabled();
    redraw();
    if (!runModal())
        return false;
    storeInto(settings);
    applyPending(settings);
    // The battery row's falling text is the battery report text.
    AnalogRow stored = analogRow(settings, row);
    if (const auto mirror = batteryMirror(recordFieldOf("AINCL1Dn"), row, stored.cl1Dn))
        applyChange(settings, *mirror);
    return true;
}

void AnalogDialog::checkEnabled()
{
    const bool powerSaving = record().opEnablePS1;
    for (const Crossing& crossing : kCrossings) {
        const auto* event = findChild<QCheckBox*>(QLatin1String(crossing.event));
        findChild<QCheckBox*>(QLatin1String(crossing.sendAtOnce))->setEnabled(powerSaving && event->isChecked());
    }
}

void AnalogDialog::storeInto(StationSettings& record) const
{
    AnalogRow value = analogRow(record, row()); // keeps the measuring range
    readRow<AnalogRow>(value, kTexts, kChecks);
    storeAnalogRow(record, row(), value);
}

bool AnalogDialog::confirmable()
{
    AnalogRow value;
    readRow<AnalogRow>(value, kLevelTexts, {});
    if (levelsConsistent(value.cl1, value.hcl1, value.cl2, value.hcl2, analogRow(record(), row()).range))
        return true;
    // The focus the message box takes and gives back is no field left.
    leaveWatch()->setSuspended(true);
    showNotice(this, Notice { MessageIcon::Stop, std::string(kLevelCheckMessage) });
    leaveWatch()->setSuspended(false);
    auto* first = findChild<QLineEdit*>(QLatin1String(kLevelTexts[0].name));
    first->setFocus();
    first->selectAll();
    return false;
}

void AnalogDialog::invertLevels()
{
    AnalogRow value = analogRow(record(), row());
    readRow<AnalogRow>(value, kTexts, kChecks);
    invertAnalogLevels(value);
    showRow<AnalogRow>(value, kLevelTexts, {});
}

void AnalogDialog::redraw()
{
    const auto text
        = [this](std::size_t i) { return findChild<QLineEdit*>(QLatin1String(kLevelTexts[i].name))->text(); };
    graph_->setLevels(text(0), text(1), text(2), text(3));
}

} // namespace rm8::ui
