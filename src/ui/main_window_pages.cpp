// The widgets of the main window and how they are laid out. Fields are made
// from their catalogue rows (name, length limit, initial text); only where
// they stand is written out here.

#include <QCheckBox>
#include <QComboBox>
#include <QFont>
#include <QFontMetrics>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QStyle>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cassert>

#include "fields/field_catalogue.h"
#include "ui/check_panel.h"
#include "ui/field_names.h"
#include "ui/main_window.h"

namespace rm8::ui {
namespace {

QString u8(const char* text)
{
    return QString::fromUtf8(text);
}

QLabel* plainLabel(const QString& text)
{
    auto* label = new QLabel(text);
    // Plain text keeps runs of blanks ("dnů  (1-30).") as they are written.
    label->setTextFormat(Qt::PlainText);
    return label;
}

QLabel* columnHeader(const char* text, const char* toolTip)
{
    auto* label = plainLabel(u8(text));
    label->setAlignment(Qt::AlignHCenter | Qt::AlignBottom);
    if (toolTip)
        label->setToolTip(u8(toolTip));
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}

// Pages scroll rather than squeeze their tables below a readable width.
QWidget* scrolled(QWidget* content)
{
    auto* area = new QScrollArea;
    area->setWidget(content);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    return area;
}

// Wide enough for the longest of the given captions, so the panel does not
// jump when the caption changes.
void reserveWidthFor(QWidget* widget, std::initializer_list<const char*> captions)
{
    const QFontMetrics metrics(widget->font());
    int widest = 0;
    for (const char* caption : captions)
        widest = std::max(widest, metrics.horizontalAdvance(u8(caption)));
    widget->setMinimumWidth(std::max(widget->minimumWidth(), widest + metrics.averageCharWidth() * 4));
}

} // namespace

enum class CellKind {
    Text, // a text field
    Check, // a check box, centred
    Event, // a check box (secondName) and its text (name) in one cell
};

struct MainWindow::TableColumn {
    CellKind kind;
    const char* name;
    const char* header;
    const char* toolTip = nullptr;
    const char* secondName = nullptr;
    // For a text column that the others must not squeeze below a usable
    // width (a name is read more often than a state word), in digit widths.
    int minimumDigits = 0;
};

QLineEdit* MainWindow::textField(const char* name, int row)
{
    const FieldInfo* info = findField(name);
    assert(info && (info->shape == FieldShape::Text || info->shape == FieldShape::TextRow));
    const QString objectName = fieldName(u8(name), row);
    auto* edit = named(new QLineEdit, objectName);
    const int limit = info->maxLength;
    if (limit > 0)
        edit->setMaxLength(limit);
    // The start-up text is the start-up record's, which record_ still is.
    const std::string_view startup = info->textIn(record_, fieldRowOf(row).value_or(0));
    edit->setText(QString::fromUtf8(startup.data(), static_cast<qsizetype>(startup.size())));
    if (limit > 0 && limit <= 50) {
        // Numbers: as wide as the longest entry, phone numbers at least as
        // wide as an international one.
        const QFontMetrics metrics(edit->font());
        const auto digits
            = [&metrics](int count) { return metrics.horizontalAdvance(QString(count, QLatin1Char('0'))) + 12; };
        edit->setMaximumWidth(digits(limit + 1));
        if (limit > 8)
            edit->setMinimumWidth(digits(std::min(limit, 22)));
    }
    connect(edit, &QLineEdit::textChanged, this, [this, edit, limit, name, row](const QString& text) {
        // An over-long loaded text raised the limit; it returns once the
        // text fits again.
        if (limit > 0 && edit->maxLength() > limit && text.size() <= limit)
            edit->setMaxLength(limit);
        onFieldTextChanged(name, row, text);
    });
    watchField(edit, name, row);
    return edit;
}

QCheckBox* MainWindow::checkField(const char* name, int row, const QString& caption)
{
    const FieldInfo* info = findField(name);
    assert(info && (info->shape == FieldShape::CheckBox || info->shape == FieldShape::CheckRow));
    (void)info;
    auto* box = named(new QCheckBox(caption), fieldName(u8(name), row));
    connect(box, &QCheckBox::toggled, this, [this] {
        if (!loading_)
            emit settingsEdited();
    });
    return box;
}

void MainWindow::buildWindow()
{
    auto* central = new QWidget;
    auto* layout = new QVBoxLayout(central);

    auto* tabs = named(new QTabWidget, QStringLiteral("TabList"));
    tabs->addTab(scrolled(buildGeneralPage()), u8("Všeobecné"));
    tabs->addTab(scrolled(buildSmsPage()), u8("SMS zprávy"));
    tabs->addTab(scrolled(buildInputsPage()), u8("Dig. vstupy"));
    tabs->addTab(scrolled(buildOutputsPage()), u8("Dig. výstupy"));
    tabs->addTab(scrolled(buildAnalogPage(0)), u8("Analog. vstupy 1-4"));
    tabs->addTab(scrolled(buildAnalogPage(4)), u8("Analog. vstupy 5-8"));
    tabs->addTab(scrolled(buildPhonesPage()), u8("Tel. čísla"));
    layout->addWidget(tabs, 1);
    // Folded to its title line until a loaded configuration breaks a rule:
    // the pages keep their height at 1024x768.
    checkPanel_ = named(new CheckPanel, QStringLiteral("frmKontrola"));
    checkPanel_->setExpanded(false);
    connect(checkPanel_, &CheckPanel::entryActivated, this, &MainWindow::revealField);
    layout->addWidget(checkPanel_);

    auto* panels = new QHBoxLayout;
    panels->addWidget(buildLinkPanel());
    panels->addWidget(buildTransferPanel());
    panels->addWidget(buildInformationPanel(), 1);
    panels->addWidget(buildProgramPanel());
    layout->addLayout(panels);

    setCentralWidget(central);
    resize(QSize(1000, 720).expandedTo(minimumSizeHint()));
}

QWidget* MainWindow::buildGeneralPage()
{
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);

    auto* device = named(new QGroupBox(u8("Zařízení")), QStringLiteral("Frame3"));
    auto* deviceGrid = new QGridLayout(device);
    auto* stationName = textField("tabJmenoStanice");
    stationName->setToolTip(u8("Název stanice"));
    deviceGrid->addWidget(plainLabel(u8("Název stanice:")), 0, 0);
    deviceGrid->addWidget(stationName, 0, 1);
    auto* pin = textField("tabPIN");
    pin->setToolTip(u8("PIN SIM karty, která je uložena ve stanici"));
    deviceGrid->addWidget(plainLabel(u8("PIN SIM karty:")), 1, 0);
    deviceGrid->addWidget(pin, 1, 1, Qt::AlignLeft);

    auto* centre = named(new QComboBox, QStringLiteral("tabTCcentra"));
    centre->setEditable(true);
    // The list offers the presets; what is typed is neither completed nor
    // added to it.
    centre->setInsertPolicy(QComboBox::NoInsert);
    centre->setCompleter(nullptr);
    if (const FieldInfo* info = findField("tabTCcentra"); info && info->maxLength > 0)
        centre->lineEdit()->setMaxLength(info->maxLength);
    centre->setMinimumContentsLength(16);
    connect(centre, &QComboBox::editTextChanged, this, [this] { onFieldTextChanged(); });
    watchField(centre->lineEdit(), "tabTCcentra", -1);
    deviceGrid->addWidget(plainLabel(u8("Telefonní číslo servisního centra:")), 2, 0);
    deviceGrid->addWidget(centre, 2, 1, Qt::AlignLeft);
    deviceGrid->setColumnStretch(1, 1);
    layout->addWidget(device);

    auto* saving = named(new QGroupBox(u8("Šetřící režim")), QStringLiteral("Frame7"));
    auto* savingGrid = new QGridLayout(saving);
    auto* savingOff = named(new QRadioButton(u8("Bez šetřícího režimu")), QStringLiteral("opEnablePS0"));
    auto* savingOn = named(new QRadioButton(u8("Povolit šetřící režim")), QStringLiteral("opEnablePS1"));
    (record_.opEnablePS1 ? savingOn : savingOff)->setChecked(true);
    connect(savingOff, &QRadioButton::toggled, this, [this] { checkEnabled(); });
    connect(savingOn, &QRadioButton::toggled, this, [this] { checkEnabled(); });
    savingGrid->addWidget(savingOff, 0, 0, 1, 6);
    savingGrid->addWidget(savingOn, 1, 0, 1, 6);

    const auto addPeriod
        = [&](int gridRow, const char* prefix, const char* caption, const char* hours, const char* minutes) {
              const QString base = u8(prefix);
              savingGrid->addWidget(named(plainLabel(u8(caption)), base + QLatin1Char('1')), gridRow, 0);
              savingGrid->addWidget(textField(hours), gridRow, 1);
              savingGrid->addWidget(named(plainLabel(u8("hod.")), base + QLatin1Char('2')), gridRow, 2);
              savingGrid->addWidget(textField(minutes), gridRow, 3);
              savingGrid->addWidget(named(plainLabel(u8("min.")), base + QLatin1Char('3')), gridRow, 4);
          };
    addPeriod(2, "lblPSOn", "Doba zapnutého modemu ................................", "eePSOnH", "eePSOnM");
    addPeriod(3, "lblPSOff", "Doba vypnutého modemu ................................", "eePSOffH", "eePSOffM");
    savingGrid->addWidget(checkField("opSuperPS", -1, u8("Super šetřící režim")), 4, 0, 1, 6);
    savingGrid->addWidget(checkField("opPSOutOff", -1, u8("Při vypnutém modemu vypnout výstupy")), 5, 0, 1, 6);
    savingGrid->setColumnStretch(5, 1);
    layout->addWidget(saving);
    layout->addStretch(1);
    return page;
}

QWidget* MainWindow::buildSmsPage()
{
    auto* page = new QWidget;
    auto* columns = new QHBoxLayout(page);
    auto* left = new QVBoxLayout;
    auto* right = new QVBoxLayout;
    columns->addLayout(left, 1);
    columns->addLayout(right, 1);

    // An option with the two report texts it switches on and off.
    const auto reportFrame
        = [&](const char* frameName, const char* caption, const char* option, const char* optionCaption,
              const char* firstLabel, const char* firstCaption, const char* firstText, const char* secondLabel,
              const char* secondCaption, const char* secondText) {
              auto* frame = named(new QGroupBox(u8(caption)), u8(frameName));
              auto* grid = new QGridLayout(frame);
              grid->addWidget(checkField(option, -1, u8(optionCaption)), 0, 0, 1, 2);
              grid->addWidget(named(plainLabel(u8(firstCaption)), u8(firstLabel)), 1, 0);
              grid->addWidget(textField(firstText), 1, 1);
              grid->addWidget(named(plainLabel(u8(secondCaption)), u8(secondLabel)), 2, 0);
              grid->addWidget(textField(secondText), 2, 1);
              grid->setColumnStretch(1, 1);
              return frame;
          };
    left->addWidget(reportFrame("Frame1", "Zapnutí/Vypnutí zařízení", "opSwitchReport",
        "posílat hlášení o zapnutí/vypnutí", "txtSwitchOn", "Text hlášení při zapnutí:", "rtSwitchOn", "txtSwitchOff",
        "Text hlášení při vypnutí:", "rtSwitchOff"));
    left->addWidget(reportFrame("Frame9", "Zapnutí/Vypnutí síťového napájení", "opPowerReport",
        "posílat hlášení o zapnutí/vypnutí", "txtPowerUp", "Text hlášení při zapnutí:", "rtPowerUp", "txtPowerDown",
        "Text hlášení při vypnutí:", "rtPowerDown"));
    connect(
        field<QCheckBox>(QStringLiteral("opSwitchReport")), &QCheckBox::toggled, this, [this] { applySwitchReport(); });
    connect(
        field<QCheckBox>(QStringLiteral("opPowerReport")), &QCheckBox::toggled, this, [this] { applyPowerReport(); });

    auto* battery = named(new QGroupBox(u8("Baterie")), QStringLiteral("Frame2"));
    auto* batteryLayout = new QVBoxLayout(battery);
    batteryLayout->addWidget(checkField("opBatt", -1, u8("při poklesu napětí pod CL1 vypnout zařízení")));
    batteryLayout->addWidget(named(plainLabel(u8("Text hlášení při poklesu napětí")), QStringLiteral("txtBattLow1")));
    batteryLayout->addWidget(
        named(plainLabel(u8(" = text při přechodu CL1 dolu u analog.vstup BAT:")), QStringLiteral("txtBattLow2")));
    batteryLayout->addWidget(textField("rtBattLow"));
    left->addWidget(battery);
    left->addStretch(1);

    auto* validity = named(new QGroupBox, QStringLiteral("Frame5"));
    auto* validityLayout = new QHBoxLayout(validity);
    validityLayout->addWidget(plainLabel(u8("Doba platnosti SMS zprávy je")));
    validityLayout->addWidget(textField("tabDobaPlatnostiSMS"));
    validityLayout->addWidget(plainLabel(u8("dnů  (1-30).")));
    validityLayout->addStretch(1);
    right->addWidget(validity);

    auto* access = named(new QGroupBox, QStringLiteral("Frame4"));
    auto* accessLayout = new QVBoxLayout(access);
    accessLayout->addWidget(checkField("opPINAuth", -1, u8("Autorizace pomocí zadání PINu v příkazové zprávě")));
    accessLayout->addWidget(checkField("tabOdpovidatT0", -1, u8("Hlášení o stavu posílat i na telefonní číslo T1")));
    accessLayout->addWidget(
        checkField("tabPrepnoutNepovolPristup", -1, u8("Hlášení o nepovoleném přístupu posílat i na tel. číslo T1")));
    auto* notAuthorized = checkField("opNotAuthorized", -1, u8("Posílat hlášení, že není povolen přístup"));
    accessLayout->addWidget(notAuthorized);
    accessLayout->addWidget(
        named(plainLabel(u8("Text hlášení o nepovolení přístupu:")), QStringLiteral("txtNotAuthorized")));
    accessLayout->addWidget(textField("rtNotAuthorized"));
    connect(notAuthorized, &QCheckBox::toggled, this, [this] { applyNotAuthorized(); });
    right->addWidget(access);
    right->addStretch(1);
    return page;
}

QWidget* MainWindow::buildTable(RowTable table, const char* labelName, std::span<const TableColumn> columns,
    int firstRow, int rowCount, const char* buttonName, const QString& buttonCaption)
{
    auto* box = new QWidget;
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(0, 0, 0, 0);
    // Wider between columns than within an event cell, so that a check box
    // is seen to belong to the text on its right, not to the one before it.
    const bool events = std::any_of(
        columns.begin(), columns.end(), [](const TableColumn& spec) { return spec.kind == CellKind::Event; });
    grid->setHorizontalSpacing(events ? 14 : 8);
    grid->setVerticalSpacing(4);

    int column = 1;
    bool stretches = false;
    for (const TableColumn& spec : columns) {
        grid->addWidget(columnHeader(spec.header, spec.toolTip), 0, column);
        if (spec.kind != CellKind::Check) {
            const FieldInfo* info = findField(spec.name);
            const bool wide = info && (info->maxLength == 0 || info->maxLength > 50);
            grid->setColumnStretch(column, wide ? 1 : 0);
            stretches = stretches || wide;
        }
        ++column;
    }
    if (!stretches) // keep the columns together on the left
        grid->setColumnStretch(column + 1, 1);

    for (int row = firstRow; row < firstRow + rowCount; ++row) {
        const int gridRow = row - firstRow + 1;
        auto* rowLabelWidget = plainLabel(QString::fromStdString(rowLabel(table, static_cast<std::size_t>(row))));
        QFont font = rowLabelWidget->font();
        font.setBold(true);
        rowLabelWidget->setFont(font);
        if (labelName)
            named(rowLabelWidget, rowName(u8(labelName), row));
        grid->addWidget(rowLabelWidget, gridRow, 0);

        column = 1;
        for (const TableColumn& spec : columns) {
            switch (spec.kind) {
            case CellKind::Text: {
                auto* edit = textField(spec.name, row);
                if (spec.minimumDigits > 0) {
                    const QFontMetrics metrics(edit->font());
                    edit->setMinimumWidth(
                        metrics.horizontalAdvance(QString(spec.minimumDigits, QLatin1Char('0'))) + 12);
                }
                grid->addWidget(edit, gridRow, column);
                break;
            }
            case CellKind::Check: {
                auto* tick = checkField(spec.name, row);
                if (spec.toolTip)
                    tick->setToolTip(u8(spec.toolTip));
                grid->addWidget(tick, gridRow, column, Qt::AlignCenter);
                break;
            }
            case CellKind::Event: {
                auto* cell = new QHBoxLayout;
                cell->setSpacing(3);
                auto* tick = checkField(spec.secondName, row);
                if (spec.toolTip)
                    tick->setToolTip(u8(spec.toolTip));
                cell->addWidget(tick);
                cell->addWidget(textField(spec.name, row), 1);
                grid->addLayout(cell, gridRow, column);
                break;
            }
            }
            ++column;
        }
        if (buttonName)
            grid->addWidget(named(new QPushButton(buttonCaption), rowName(u8(buttonName), row)), gridRow, column);
    }
    return box;
}

QWidget* MainWindow::buildInputsPage()
{
    static const TableColumn columns[] = {
        { CellKind::Text, "tabINPNazev", "Název", "Název vstupu", nullptr, 16 },
        { CellKind::Text, "tabINPZap", "Zapnuto (1)", "Název stavu zapnuto (1)" },
        { CellKind::Text, "tabINPVyp", "Vypnuto (0)", "Název stavu vypnuto (0)" },
        { CellKind::Text, "tabINPLH", "Přechod\nNeaktivní->Aktivní", "Text přechodu 0->1" },
        { CellKind::Text, "tabINPHL", "Přechod\nAktivní->Neaktivní", "Text přechodu 1->0" },
        { CellKind::Check, "tabINPLHEvent", "Zpráva\n0->1", "Poslat zprávu při změně stavu 0->1" },
        { CellKind::Check, "tabINPHLEvent", "Zpráva\n1->0", "Poslat zprávu při změně stavu 1->0" },
        { CellKind::Check, "tabINPNeg", "Negace", "Negace vstupu" },
        { CellKind::Check, "tabINPZpr", "Ve zprávě\no stavu", "Uvádět tento vstup ve zprávě o stavu" },
    };
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(buildTable(RowTable::Inputs, "tabINPjmeno", columns, 0, 8, "tabINPbt", u8("Možnosti")));
    layout->addStretch(1);
    return page;
}

QWidget* MainWindow::buildOutputsPage()
{
    static const TableColumn columns[] = {
        { CellKind::Text, "tabOUTNazev", "Název", "Název výstupu" },
        { CellKind::Text, "tabOUTZap", "Zapnuto", "Příkaz pro zapnutí" },
        { CellKind::Text, "tabOUTVyp", "Vypnuto", "Příkaz pro vypnutí" },
        { CellKind::Check, "tabOUTZpr", "Ve zprávě\no stavu", "Uvádět tento výstup ve zprávě o stavu" },
        { CellKind::Text, "tabOUTimpuls", "Impuls", "Příkaz pro vyslání impulsu" },
        { CellKind::Text, "tabOUTimpulsLEN", "Délka\nimpulsu [s]", "Délka jednoho impulsu v sekundách" },
        { CellKind::Check, "tabOUTNeg", "Negace", "Negace výstupu" },
    };
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(buildTable(RowTable::Outputs, "tabOUTjmeno", columns, 0, 8, "tabOUTbt", u8("Možnosti")));
    layout->addStretch(1);
    return page;
}

QWidget* MainWindow::buildAnalogPage(int firstRow)
{
    // Twenty columns do not fit a screen's width: the names, states and
    // levels form one band, the level-crossing messages a second band below.
    static const TableColumn states[] = {
        { CellKind::Text, "tabAINNazev", "Název", "Název analogového vstupu", nullptr, 12 },
        { CellKind::Text, "tabAINStateL", "LOW", "Název stavu LOW (nízká)" },
        { CellKind::Text, "tabAINStateM", "MEDIUM", "Název stavu MEDIUM (normální)" },
        { CellKind::Text, "tabAINStateH", "HIGH", "Název stavu HIGH (vysoká)" },
        { CellKind::Text, "tabAINCL1Level", "CL1", "Hodnota úrovně CL1" },
        { CellKind::Text, "tabAINHCL1Level", "HCL1", "Hodnota hystereze CL1" },
        { CellKind::Text, "tabAINCL2Level", "CL2", "Hodnota úrovně CL2" },
        { CellKind::Text, "tabAINHCL2Level", "HCL2", "Hodnota hystereze CL2" },
        { CellKind::Check, "tabAINPrc", "Hodnota\nve zprávě", "Uvádět ve zprávě o stavu hodnotu" },
        { CellKind::Check, "tabAINNeg", "Negace", "Negace vstupu" },
        { CellKind::Check, "tabAINZpr", "Stav\nve zprávě", "Uvádět ve zprávě o stavu jméno stavu" },
    };
    static const TableColumn events[] = {
        { CellKind::Event, "tabAINCL1Up", "Přechod nahoru přes CL1", "Hlásit přechod nahoru přes CL1",
            "tabAINCL1UpEvent" },
        { CellKind::Event, "tabAINCL1Dn", "Přechod dolu přes CL1", "Hlásit přechod dolu přes CL1", "tabAINCL1DnEvent" },
        { CellKind::Event, "tabAINCL2Up", "Přechod nahoru přes CL2", "Hlásit přechod nahoru přes CL2",
            "tabAINCL2UpEvent" },
        { CellKind::Event, "tabAINCL2Dn", "Přechod dolu přes CL2", "Hlásit přechod dolu přes CL2", "tabAINCL2DnEvent" },
    };
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    auto* statesFrame = new QGroupBox(u8("Názvy stavů a úrovně"));
    auto* statesLayout = new QVBoxLayout(statesFrame);
    statesLayout->addWidget(
        buildTable(RowTable::Analog, "tabAINJmeno", states, firstRow, 4, "tabAINbt", u8("Možnosti")));
    layout->addWidget(statesFrame);
    auto* eventsFrame = new QGroupBox(u8("Hlášení přechodů přes úrovně"));
    auto* eventsLayout = new QVBoxLayout(eventsFrame);
    eventsLayout->addWidget(buildTable(RowTable::Analog, nullptr, events, firstRow, 4));
    layout->addWidget(eventsFrame);
    layout->addStretch(1);
    return page;
}

QWidget* MainWindow::buildPhonesPage()
{
    static const TableColumn columns[] = {
        // The page has the room to show a number of any allowed length whole.
        { CellKind::Text, "tabTC", "Telefonní číslo", nullptr, nullptr, 50 },
        { CellKind::Check, "tabTCPrijem", "Příjem", "Příkazy z tohoto čísla se přijímají" },
        { CellKind::Check, "tabTCUdalost", "Události", "Na toto číslo se posílají zprávy o událostech" },
    };
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(buildTable(RowTable::Phones, "tabTCjmeno", columns, 0, 8, "tabTCZmenit", u8("Změnit")));

    auto* prefix = new QHBoxLayout;
    prefix->addWidget(checkField("tabUTOEnable", -1, u8("Automaticky vkládat před tel. číslo UTO:")));
    prefix->addWidget(textField("tabUTO"));
    prefix->addStretch(1);
    layout->addLayout(prefix);
    layout->addStretch(1);
    return page;
}

QWidget* MainWindow::buildLinkPanel()
{
    auto* frame = named(new QGroupBox(u8("Komunikace PC se zařízením")), QStringLiteral("Frame6"));
    auto* grid = new QGridLayout(frame);

    auto* port = named(new QComboBox, QStringLiteral("tabPort"));
    for (const char* name : { "COM 1", "COM 2", "COM 3", "COM 4" })
        port->addItem(u8(name));
    port->setToolTip(u8("Sériový port PC, ke kterému je připojeno zařízení"));
    auto* portSettings = named(new QToolButton, QStringLiteral("btPortSettings"));
    portSettings->setText(u8("…"));
    portSettings->setToolTip(u8("Nastavení sériových portů"));
    grid->addWidget(named(plainLabel(u8("Sériový port:")), QStringLiteral("Label7")), 0, 0);
    grid->addWidget(port, 0, 1);
    grid->addWidget(portSettings, 0, 2);

    auto* state = named(plainLabel(u8("Neaktivní")), QStringLiteral("tabDeAktivNapis"));
    QFont bold = state->font();
    bold.setBold(true);
    state->setFont(bold);
    reserveWidthFor(state, { "Neaktivní", "Aktivní", "Chybné zařízení" });
    grid->addWidget(named(plainLabel(u8("Spojení")), QStringLiteral("Label41")), 1, 0);
    grid->addWidget(state, 1, 1, 1, 2);

    auto* activate = named(new QPushButton(u8("Aktivovat")), QStringLiteral("btDEA"));
    reserveWidthFor(activate, { "Aktivovat", "Deaktivovat" });
    grid->addWidget(activate, 2, 0, 1, 3);
    grid->setRowStretch(3, 1);
    return frame;
}

QWidget* MainWindow::buildTransferPanel()
{
    auto* frame = named(new QGroupBox(u8("Nastavení")), QStringLiteral("frmTrans"));
    auto* grid = new QGridLayout(frame);
    const auto command = [&](const char* name, const char* caption, const char* toolTip, QStyle::StandardPixmap icon) {
        auto* button = named(new QPushButton(style()->standardIcon(icon), u8(caption)), u8(name));
        button->setToolTip(u8(toolTip));
        return button;
    };
    grid->addWidget(command("btEEPROMLoad", "Z EEPROM", "Načíst  nastavení z EEPROM", QStyle::SP_ArrowDown), 0, 0);
    grid->addWidget(command("btEEPROMSave", "Do EEPROM", "Uložit nastavení do EEPROM", QStyle::SP_ArrowUp), 0, 1);
    // Reading back what was written is the only proof that the station
    // holds it: on unless the technician chooses otherwise.
    auto* checkWrite = named(new QCheckBox(u8("Kontrolovat zápis do EEPROM")), QStringLiteral("CheckWrite"));
    checkWrite->setChecked(true);
    auto* boxes = new QVBoxLayout;
    boxes->setSpacing(0);
    boxes->addWidget(checkWrite);
    // A station's previous content kept in a file before it is overwritten.
    auto* backup = named(new QCheckBox(u8("Před zápisem zálohovat obsah stanice")), QStringLiteral("CheckBackup"));
    backup->setToolTip(u8("Před každým zápisem uložit dosavadní obsah EEPROM stanice do složky záloh"));
    boxes->addWidget(backup);
    grid->addLayout(boxes, 1, 0, 1, 2);
    // The preview beside the print and the recent files beside the load,
    // as small buttons: the panel keeps its height and the window its width.
    const auto withCompanion = [](QWidget* main, QToolButton* companion) {
        auto* pair = new QHBoxLayout;
        pair->setSpacing(2);
        pair->addWidget(main, 1);
        pair->addWidget(companion);
        return pair;
    };
    const auto companion
        = [&](const char* name, const char* caption, const char* toolTip, QStyle::StandardPixmap icon) {
              auto* button = named(new QToolButton, u8(name));
              button->setText(u8(caption));
              button->setToolTip(u8(toolTip));
              button->setIcon(style()->standardIcon(icon));
              button->setToolButtonStyle(Qt::ToolButtonIconOnly);
              return button;
          };
    auto* load = command("btFileLoad", "Ze souboru", "Načíst nastavení ze souboru", QStyle::SP_DialogOpenButton);
    auto* recent = companion("btNedavne", "Nedávné soubory", "Nedávné soubory", QStyle::SP_FileDialogListView);
    recentMenu_ = new QMenu(recent);
    recentMenu_->setObjectName(QStringLiteral("mnuNedavne"));
    recent->setMenu(recentMenu_);
    recent->setPopupMode(QToolButton::InstantPopup);
    grid->addLayout(withCompanion(load, recent), 2, 0);
    grid->addWidget(
        command("btFileSave", "Do souboru", "Uložit nastavení do souboru", QStyle::SP_DialogSaveButton), 2, 1);
    auto* print = command("btTisk", "Tisk", "Tisk nastavení", QStyle::SP_FileDialogDetailedView);
    grid->addLayout(
        withCompanion(print, companion("btNahled", "Náhled tisku", "Náhled tisku", QStyle::SP_FileDialogInfoView)), 3,
        0);
    // What a load or a write would change, field by field.
    grid->addWidget(command("btPorovnatSoubor", "Porovnat se souborem…",
                        "Porovnat nastavení v okně s nastavením v souboru", QStyle::SP_FileDialogContentsView),
        3, 1);
    auto* compareStation = command("btPorovnatStanici", "Porovnat se stanicí",
        "Porovnat nastavení v okně s nastavením ve stanici", QStyle::SP_FileDialogContentsView);
    compareStation->setEnabled(false);
    grid->addWidget(compareStation, 4, 0, 1, 2);
    grid->setRowStretch(5, 1);
    return frame;
}

QWidget* MainWindow::buildInformationPanel()
{
    auto* frame = named(new QGroupBox(u8("Informace o připojeném zařízení")), QStringLiteral("frmInformace"));
    auto* grid = new QGridLayout(frame);
    const struct {
        const char* caption;
        const char* name;
    } rows[] = {
        { "Produkt:", "lblInfoProdukt" },
        { "Verze:", "lblInfoVerze" },
        { "Typ modemu:", "lblInfoModem" },
        { "Velikost paměti:", "lblInfoPamSize" },
        { "Velikost nastavení:", "lblInfoPamUsage" },
        { "Volné místo:", "lblInfoPamFree" },
    };
    int gridRow = 0;
    for (const auto& row : rows) {
        auto* value = named(plainLabel(QStringLiteral("?")), u8(row.name));
        reserveWidthFor(value, { "GM25 Ericsson", " 65472 byte" });
        grid->addWidget(plainLabel(u8(row.caption)), gridRow, 0);
        grid->addWidget(value, gridRow, 1);
        ++gridRow;
    }
    grid->setColumnStretch(1, 1);
    grid->setRowStretch(gridRow, 1);
    return frame;
}

QWidget* MainWindow::buildProgramPanel()
{
    auto* frame = named(new QGroupBox(u8("Program")), QStringLiteral("Frame8"));
    auto* layout = new QVBoxLayout(frame);
    auto* about = named(new QPushButton(u8("&Informace")), QStringLiteral("btInformace"));
    about->setToolTip(u8("Informace o programu"));
    auto* quit = named(new QPushButton(u8("U&končit")), QStringLiteral("btKonec"));
    quit->setToolTip(u8("Ukončit program"));
    // The buttons show the step they would take in their tooltips.
    auto* undo
        = named(new QPushButton(style()->standardIcon(QStyle::SP_ArrowBack), u8("Zpět")), QStringLiteral("btZpet"));
    auto* redo = named(
        new QPushButton(style()->standardIcon(QStyle::SP_ArrowForward), u8("Znovu")), QStringLiteral("btZnovu"));
    layout->addWidget(undo);
    layout->addWidget(redo);
    layout->addWidget(about);
    layout->addWidget(quit);
    layout->addStretch(1);
    return frame;
}

} // namespace rm8::ui
