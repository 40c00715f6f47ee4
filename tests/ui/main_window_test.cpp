// The main window as the technician and the shell meet it: the start-up
// state, the names and kinds of its widgets, the connection states, the memory
// display, and the binding between the fields and the settings record.

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTest>
#include <QToolButton>

#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <variant>

#include "fields/field_catalogue.h"
#include "fields/settings_diff.h"
#include "settings/image_decoder.h"
#include "settings/settings_file.h"
#include "settings/station_settings.h"
#include "support/test_data.h"
#include "ui/main_window.h"

using rm8::StationSettings;
using rm8::ui::MainWindow;

namespace {

const QColor kRed(255, 0, 0);
const QColor kBlue(0, 0, 255);

QString q(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString textOf(MainWindow& window, const QString& name, int row = -1)
{
    QWidget* widget = window.field(name, row);
    if (auto* label = qobject_cast<QLabel*>(widget))
        return label->text();
    if (auto* edit = qobject_cast<QLineEdit*>(widget))
        return edit->text();
    if (auto* list = qobject_cast<QComboBox*>(widget))
        return list->currentText();
    if (auto* button = qobject_cast<QAbstractButton*>(widget))
        return button->text();
    return QStringLiteral("<no field %1 %2>").arg(name).arg(row);
}

QColor colourOf(MainWindow& window, const QString& name)
{
    return window.field(name)->palette().color(QPalette::WindowText);
}

// Typing as on a Czech keyboard: QTest's key tables know only ASCII, so
// other characters arrive as the text of a key event.
void typeText(QWidget* widget, const QString& text)
{
    for (const QChar ch : text) {
        if (ch.unicode() < 128)
            QTest::keyClick(widget, static_cast<char>(ch.unicode()));
        else
            QTest::sendKeyEvent(QTest::Click, widget, Qt::Key_unknown, QString(ch), Qt::NoModifier);
    }
}

bool enabled(MainWindow& window, const char* name)
{
    return window.field(QString::fromLatin1(name))->isEnabled();
}

// The fields in which two records differ, for a readable failure.
QByteArray differences(const StationSettings& left, const StationSettings& right)
{
    std::string text;
    for (const auto& difference : rm8::diffSettings(left, right))
        text += std::string(difference.field) + "[" + std::to_string(difference.row) + "]: \"" + difference.left
            + "\" -> \"" + difference.right + "\"\n";
    return QByteArray::fromStdString(text);
}

rm8::link::StationIdentity identity(const char* memorySize)
{
    return { "RMA8", "1.0", memorySize, "TC35 Siemens" };
}

template <class T> struct IsRow : std::false_type {
};
template <class T> struct IsRow<rm8::Row8<T>> : std::true_type {
};

const char* const kPowerSavingControls[] = { "lblPSOn1", "lblPSOn2", "lblPSOn3", "eePSOnH", "eePSOnM", "lblPSOff1",
    "lblPSOff2", "lblPSOff3", "eePSOffH", "eePSOffM", "opSuperPS", "opPSOutOff" };

} // namespace

class MainWindowTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void startUpState();
    void startUpFieldsAreTheStartRecord();
    void namesAndKinds_data();
    void namesAndKinds();
    void tabPages();
    void captionsAndToolTips_data();
    void captionsAndToolTips();
    void labelTexts_data();
    void labelTexts();
    void catalogueFields_data();
    void catalogueFields();
    void typingStopsAtTheLimit();
    void checkEnabledFollowsTheOptionPair();
    void reportOptionsEnableTheirTexts();
    void connectionStates_data();
    void connectionStates();
    void memoryDisplay_data();
    void memoryDisplay();
    void eepromSize_data();
    void eepromSize();
    void goldenImages_data();
    void goldenImages();
    void fillingIsSilent();
    void overlongLoadedTextIsKept();
    void typingUpdatesTheUsage_data();
    void typingUpdatesTheUsage();
    void fitsASmallScreen();

private:
    // The tests that only look at a fresh window share one: building it for
    // each of several hundred rows would only cost time.
    std::unique_ptr<MainWindow> fresh_;
};

void MainWindowTest::initTestCase()
{
    fresh_ = std::make_unique<MainWindow>();
}

void MainWindowTest::cleanupTestCase()
{
    fresh_.reset();
}

void MainWindowTest::startUpState()
{
    MainWindow window;
    QCOMPARE(window.objectName(), QStringLiteral("Hlavni"));
    QCOMPARE(window.windowTitle(), QStringLiteral("Inicializační program pro zařízení RM8"));
    QVERIFY(!window.loading());

    auto* port = window.field<QComboBox>(QStringLiteral("tabPort"));
    QVERIFY(port);
    QVERIFY(!port->isEditable());
    QCOMPARE(port->count(), 4);
    for (int i = 0; i < 4; ++i)
        QCOMPARE(port->itemText(i), QStringLiteral("COM %1").arg(i + 1));
    QCOMPARE(port->currentText(), QStringLiteral("COM 1"));
    QVERIFY(port->isEnabled());

    QCOMPARE(textOf(window, QStringLiteral("btDEA")), QStringLiteral("Aktivovat"));

    // The presets are offered, not chosen: the field itself starts empty.
    auto* centre = window.field<QComboBox>(QStringLiteral("tabTCcentra"));
    QVERIFY(centre);
    QVERIFY(centre->isEditable());
    const QStringList presets { "+420602909909", "+420603052000", "+420608005681" };
    QCOMPARE(centre->count(), presets.size());
    for (int i = 0; i < presets.size(); ++i)
        QCOMPARE(centre->itemText(i), presets[i]);
    QCOMPARE(centre->currentText(), QString());

    for (int row = 0; row < 8; ++row) {
        QCOMPARE(textOf(window, QStringLiteral("tabAINCL1Level"), row), QStringLiteral(" 0"));
        QCOMPARE(textOf(window, QStringLiteral("tabAINCL2Level"), row),
            row == 7 ? QStringLiteral(" 27") : QStringLiteral(" 100"));
    }

    QVERIFY(!enabled(window, "btEEPROMLoad"));
    QVERIFY(!enabled(window, "btEEPROMSave"));
    for (const char* name : { "btDEA", "btFileLoad", "btFileSave", "btTisk", "btInformace", "btKonec" })
        QVERIFY2(enabled(window, name), name);

    for (const char* name : { "lblInfoModem", "lblInfoProdukt", "lblInfoVerze", "lblInfoPamSize" })
        QCOMPARE(textOf(window, QString::fromLatin1(name)), QStringLiteral("?"));
    QCOMPARE(textOf(window, QStringLiteral("tabDeAktivNapis")), QStringLiteral("Neaktivní"));
    QCOMPARE(colourOf(window, QStringLiteral("tabDeAktivNapis")), kRed);

    // Every text empty and no phone number: 275 + 9 + 136 + 2 + 8.
    QCOMPARE(textOf(window, QStringLiteral("lblInfoPamUsage")), QStringLiteral("430 byte"));
    QCOMPARE(textOf(window, QStringLiteral("lblInfoPamFree")), QStringLiteral("?"));
    QCOMPARE(colourOf(window, QStringLiteral("lblInfoPamFree")), kBlue);

    // Power saving is off, so CheckEnabled left its controls disabled; the
    // report options are clear, so their texts are disabled too.
    QVERIFY(window.field<QRadioButton>(QStringLiteral("opEnablePS0"))->isChecked());
    for (const char* name : kPowerSavingControls)
        QVERIFY2(!enabled(window, name), name);
    for (const char* name : { "rtSwitchOn", "rtSwitchOff", "txtSwitchOn", "txtSwitchOff", "rtPowerUp", "rtPowerDown",
             "txtPowerUp", "txtPowerDown" })
        QVERIFY2(!enabled(window, name), name);
}

void MainWindowTest::startUpFieldsAreTheStartRecord()
{
    // A window that starts differently from a fresh record would make a new
    // configuration differ from what rm8ctl writes for the same start.
    MainWindow window;
    StationSettings read;
    read.tabJmenoStanice = "not from the window";
    read.tabAINCL2Level.fill("5");
    window.readSettings(read);
    QVERIFY2(read == StationSettings {}, differences(StationSettings {}, read).constData());
}

void MainWindowTest::namesAndKinds_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("kind");
    const auto add = [](const char* kind, std::initializer_list<const char*> names) {
        for (const char* name : names)
            QTest::newRow(name) << QString::fromLatin1(name) << QString::fromLatin1(kind);
    };
    const auto addRows = [](const char* kind, std::initializer_list<const char*> names) {
        for (const char* name : names)
            for (int row = 0; row < 8; ++row) {
                const QString rowName = QStringLiteral("%1_%2").arg(QLatin1String(name)).arg(row);
                QTest::newRow(rowName.toLatin1().constData()) << rowName << QString::fromLatin1(kind);
            }
    };
    add("QTabWidget", { "TabList" });
    add("QGroupBox",
        { "Frame1", "Frame2", "Frame3", "Frame4", "Frame5", "Frame6", "Frame7", "Frame8", "Frame9", "frmTrans",
            "frmInformace" });
    add("QPushButton",
        { "btDEA", "btEEPROMLoad", "btEEPROMSave", "btFileLoad", "btFileSave", "btTisk", "btInformace", "btKonec" });
    add("QToolButton", { "btPortSettings" });
    add("QComboBox", { "tabPort", "tabTCcentra" });
    add("QRadioButton", { "opEnablePS0", "opEnablePS1" });
    add("QCheckBox",
        { "opPINAuth", "tabPrepnoutNepovolPristup", "tabOdpovidatT0", "opSuperPS", "opPSOutOff", "opNotAuthorized",
            "opPowerReport", "opSwitchReport", "opBatt", "tabUTOEnable", "CheckWrite" });
    add("QLineEdit",
        { "tabJmenoStanice", "tabPIN", "tabDobaPlatnostiSMS", "rtNotAuthorized", "rtPowerUp", "rtPowerDown",
            "rtSwitchOn", "rtSwitchOff", "rtBattLow", "tabUTO", "eePSOnH", "eePSOnM", "eePSOffH", "eePSOffM" });
    add("QLabel",
        { "lblPSOn1", "lblPSOn2", "lblPSOn3", "lblPSOff1", "lblPSOff2", "lblPSOff3", "txtSwitchOn", "txtSwitchOff",
            "txtPowerUp", "txtPowerDown", "txtNotAuthorized", "Label7", "Label41", "tabDeAktivNapis", "lblInfoModem",
            "lblInfoPamSize", "lblInfoProdukt", "lblInfoVerze", "lblInfoPamUsage", "lblInfoPamFree" });
    addRows("QLabel", { "tabINPjmeno", "tabOUTjmeno", "tabAINJmeno", "tabTCjmeno" });
    addRows("QPushButton", { "tabINPbt", "tabOUTbt", "tabAINbt", "tabTCZmenit" });
    addRows("QLineEdit",
        { "tabINPNazev", "tabINPZap", "tabINPVyp", "tabINPLH", "tabINPHL", "tabOUTNazev", "tabOUTZap", "tabOUTVyp",
            "tabOUTimpuls", "tabOUTimpulsLEN", "tabAINNazev", "tabAINStateL", "tabAINStateM", "tabAINStateH",
            "tabAINCL1Level", "tabAINHCL1Level", "tabAINCL2Level", "tabAINHCL2Level", "tabAINCL1Up", "tabAINCL1Dn",
            "tabAINCL2Up", "tabAINCL2Dn", "tabTC" });
    addRows("QCheckBox",
        { "tabINPLHEvent", "tabINPHLEvent", "tabINPNeg", "tabINPZpr", "tabOUTZpr", "tabOUTNeg", "tabAINCL1UpEvent",
            "tabAINCL1DnEvent", "tabAINCL2UpEvent", "tabAINCL2DnEvent", "tabAINPrc", "tabAINNeg", "tabAINZpr",
            "tabTCPrijem", "tabTCUdalost" });
}

void MainWindowTest::namesAndKinds()
{
    QFETCH(QString, name);
    QFETCH(QString, kind);
    MainWindow& window = *fresh_;
    // The shell finds the widgets by name: each name exactly once.
    const auto found = window.findChildren<QWidget*>(name);
    QCOMPARE(found.size(), 1);
    QCOMPARE(QString::fromLatin1(found.front()->metaObject()->className()), kind);
    QCOMPARE(window.field(name), found.front());
}

void MainWindowTest::tabPages()
{
    MainWindow& window = *fresh_;
    auto* tabs = window.field<QTabWidget>(QStringLiteral("TabList"));
    QVERIFY(tabs);
    const QStringList captions { "Všeobecné", "SMS zprávy", "Dig. vstupy", "Dig. výstupy", "Analog. vstupy 1-4",
        "Analog. vstupy 5-8", "Tel. čísla" };
    QCOMPARE(tabs->count(), captions.size());
    for (int i = 0; i < captions.size(); ++i)
        QCOMPARE(tabs->tabText(i), captions[i]);

    // Each field sits on the page the catalogue gives it, analog rows 5 to 8
    // on the second analog page.
    for (const rm8::FieldInfo& info : rm8::fieldCatalogue()) {
        for (int row = info.perRow() ? 0 : -1; row < (info.perRow() ? 8 : 0); ++row) {
            QWidget* widget = window.field(q(info.name), row);
            if (!widget)
                continue;
            const auto page = static_cast<int>(info.pageOfRow(static_cast<std::size_t>(row < 0 ? 0 : row)));
            QVERIFY2(tabs->widget(page)->isAncestorOf(widget), widget->objectName().toLatin1().constData());
        }
    }
}

void MainWindowTest::captionsAndToolTips_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QString>("expected");
    const auto add = [](const char* name, const char* property, const char* expected) {
        QTest::newRow(QByteArray(name).append(' ').append(property).constData())
            << QString::fromLatin1(name) << QByteArray(property) << QString::fromUtf8(expected);
    };
    add("Frame3", "title", "Zařízení");
    add("Frame7", "title", "Šetřící režim");
    add("Frame1", "title", "Zapnutí/Vypnutí zařízení");
    add("Frame9", "title", "Zapnutí/Vypnutí síťového napájení");
    add("Frame2", "title", "Baterie");
    add("Frame6", "title", "Komunikace PC se zařízením");
    add("frmTrans", "title", "Nastavení");
    add("frmInformace", "title", "Informace o připojeném zařízení");
    add("Frame8", "title", "Program");
    add("tabJmenoStanice", "toolTip", "Název stanice");
    add("tabPIN", "toolTip", "PIN SIM karty, která je uložena ve stanici");
    add("opEnablePS0", "text", "Bez šetřícího režimu");
    add("opEnablePS1", "text", "Povolit šetřící režim");
    add("lblPSOn1", "text", "Doba zapnutého modemu ................................");
    add("lblPSOff1", "text", "Doba vypnutého modemu ................................");
    add("opSuperPS", "text", "Super šetřící režim");
    add("opPSOutOff", "text", "Při vypnutém modemu vypnout výstupy");
    add("opPowerReport", "text", "posílat hlášení o zapnutí/vypnutí");
    add("txtPowerUp", "text", "Text hlášení při zapnutí:");
    add("txtPowerDown", "text", "Text hlášení při vypnutí:");
    add("opBatt", "text", "při poklesu napětí pod CL1 vypnout zařízení");
    add("opPINAuth", "text", "Autorizace pomocí zadání PINu v příkazové zprávě");
    add("tabOdpovidatT0", "text", "Hlášení o stavu posílat i na telefonní číslo T1");
    add("tabPrepnoutNepovolPristup", "text", "Hlášení o nepovoleném přístupu posílat i na tel. číslo T1");
    add("opNotAuthorized", "text", "Posílat hlášení, že není povolen přístup");
    add("txtNotAuthorized", "text", "Text hlášení o nepovolení přístupu:");
    add("tabOUTbt_0", "text", "Možnosti");
    add("tabOUTbt_7", "text", "Možnosti");
    add("tabUTOEnable", "text", "Automaticky vkládat před tel. číslo UTO:");
    add("tabPort", "toolTip", "Sériový port PC, ke kterému je připojeno zařízení");
    add("btPortSettings", "text", "…");
    add("btPortSettings", "toolTip", "Nastavení sériových portů");
    add("Label7", "text", "Sériový port:");
    add("Label41", "text", "Spojení");
    add("btEEPROMLoad", "toolTip", "Načíst  nastavení z EEPROM");
    add("btEEPROMSave", "toolTip", "Uložit nastavení do EEPROM");
    add("CheckWrite", "text", "Kontrolovat zápis do EEPROM");
    add("btFileLoad", "toolTip", "Načíst nastavení ze souboru");
    add("btFileSave", "toolTip", "Uložit nastavení do souboru");
    add("btTisk", "toolTip", "Tisk nastavení");
    add("btInformace", "text", "&Informace");
    add("btInformace", "toolTip", "Informace o programu");
    add("btKonec", "text", "U&končit");
    add("btKonec", "toolTip", "Ukončit program");
    for (int row = 0; row < 8; ++row) {
        const std::string n = std::to_string(row);
        const std::string number = std::to_string(row + 1);
        QTest::newRow(("tabINPjmeno_" + n).c_str())
            << QStringLiteral("tabINPjmeno_%1").arg(row) << QByteArray("text") << q("IN" + number);
        QTest::newRow(("tabOUTjmeno_" + n).c_str())
            << QStringLiteral("tabOUTjmeno_%1").arg(row) << QByteArray("text") << q("OUT" + number);
        QTest::newRow(("tabAINJmeno_" + n).c_str()) << QStringLiteral("tabAINJmeno_%1").arg(row) << QByteArray("text")
                                                    << (row == 7 ? QStringLiteral("BAT") : q("AIN" + number));
        QTest::newRow(("tabTCjmeno_" + n).c_str())
            << QStringLiteral("tabTCjmeno_%1").arg(row) << QByteArray("text") << q("T" + number);
    }
}

void MainWindowTest::captionsAndToolTips()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, property);
    QFETCH(QString, expected);
    MainWindow& window = *fresh_;
    QWidget* widget = window.field(name);
    QVERIFY(widget);
    const QVariant value = widget->property(property.constData());
    QVERIFY(value.isValid());
    QCOMPARE(value.toString(), expected);
}

void MainWindowTest::labelTexts_data()
{
    QTest::addColumn<QString>("text");
    for (const char* text : { "Název stanice:", "Telefonní číslo servisního centra:", "Text hlášení při poklesu napětí",
             " = text při přechodu CL1 dolu u analog.vstup BAT:", "Doba platnosti SMS zprávy je", "dnů  (1-30).",
             "Typ modemu:", "Velikost paměti:", "Produkt:", "Verze:", "Velikost nastavení:", "Volné místo:" })
        QTest::newRow(text) << QString::fromUtf8(text);
}

void MainWindowTest::labelTexts()
{
    // Labels the shell never addresses by name: present with their exact
    // text (blanks included).
    QFETCH(QString, text);
    MainWindow& window = *fresh_;
    int found = 0;
    for (const QLabel* label : window.findChildren<QLabel*>())
        if (label->text() == text)
            ++found;
    QCOMPARE(found, 1);
}

void MainWindowTest::catalogueFields_data()
{
    QTest::addColumn<QString>("name");
    for (const rm8::FieldInfo& info : rm8::fieldCatalogue())
        QTest::newRow(std::string(info.name).c_str()) << q(info.name);
}

void MainWindowTest::catalogueFields()
{
    QFETCH(QString, name);
    const rm8::FieldInfo* info = rm8::findField(name.toStdString());
    QVERIFY(info);
    MainWindow& window = *fresh_;
    const bool perRow = info->perRow();
    for (int row = perRow ? 0 : -1; row < (perRow ? 8 : 0); ++row) {
        QWidget* widget = window.field(name, row);
        switch (info->shape) {
        case rm8::FieldShape::Text:
        case rm8::FieldShape::TextRow: {
            QVERIFY(widget);
            auto* edit = qobject_cast<QLineEdit*>(widget);
            if (auto* list = qobject_cast<QComboBox*>(widget))
                edit = list->lineEdit();
            QVERIFY(edit);
            QCOMPARE(edit->maxLength(), info->maxLength > 0 ? info->maxLength : 32767);
            // The level columns are rewritten by the start-up from the
            // measuring ranges; startUpState checks those.
            if (name != QLatin1String("tabAINCL1Level") && name != QLatin1String("tabAINCL2Level"))
                QCOMPARE(edit->text(), q(info->initialText));
            break;
        }
        case rm8::FieldShape::CheckBox:
        case rm8::FieldShape::CheckRow:
            QVERIFY(qobject_cast<QCheckBox*>(widget));
            QVERIFY(!qobject_cast<QCheckBox*>(widget)->isChecked());
            break;
        case rm8::FieldShape::OptionPair:
            QVERIFY(qobject_cast<QRadioButton*>(widget));
            QVERIFY(!qobject_cast<QRadioButton*>(widget)->isChecked());
            break;
        case rm8::FieldShape::FlagRow:
        case rm8::FieldShape::Byte:
        case rm8::FieldShape::ByteRow:
            // Kept by the row dialogs, not shown in the window.
            QVERIFY(!widget);
            break;
        }
    }
}

void MainWindowTest::typingStopsAtTheLimit()
{
    MainWindow window;
    auto* pin = window.field<QLineEdit>(QStringLiteral("tabPIN"));
    QTest::keyClicks(pin, QStringLiteral("1234567890"));
    QCOMPARE(pin->text(), QStringLiteral("12345678"));
    auto* validity = window.field<QLineEdit>(QStringLiteral("tabDobaPlatnostiSMS"));
    QTest::keyClicks(validity, QStringLiteral("012"));
    QCOMPARE(validity->text(), QStringLiteral("30"));
}

void MainWindowTest::checkEnabledFollowsTheOptionPair()
{
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    window.field<QTabWidget>(QStringLiteral("TabList"))->setCurrentIndex(0);

    StationSettings values;
    values.eePSOnH = "12";
    values.eePSOnM = "35";
    values.eePSOffH = "465";
    values.eePSOffM = "59";
    values.opSuperPS = true;
    values.opPSOutOff = false;
    window.fillSettings(values);
    for (const char* name : kPowerSavingControls)
        QVERIFY2(!enabled(window, name), name);

    // Clicking as the technician does, both ways; the values must survive.
    for (const bool on : { true, false, true }) {
        auto* option = window.field<QRadioButton>(on ? QStringLiteral("opEnablePS1") : QStringLiteral("opEnablePS0"));
        // Near the indicator: the button may be wider than its caption.
        QTest::mouseClick(option, Qt::LeftButton, {}, QPoint(6, option->height() / 2));
        QCOMPARE(option->isChecked(), true);
        for (const char* name : kPowerSavingControls)
            QVERIFY2(enabled(window, name) == on, name);
        StationSettings read;
        window.readSettings(read);
        values.opEnablePS1 = on;
        QVERIFY2(read == values, differences(values, read).constData());
    }

    // Called directly it follows the selection too.
    window.field<QRadioButton>(QStringLiteral("opEnablePS0"))->setChecked(true);
    window.checkEnabled();
    for (const char* name : kPowerSavingControls)
        QVERIFY2(!enabled(window, name), name);
}

void MainWindowTest::reportOptionsEnableTheirTexts()
{
    MainWindow window;
    const struct {
        const char* option;
        std::initializer_list<const char*> dependents;
    } options[] = {
        { "opSwitchReport", { "rtSwitchOn", "rtSwitchOff", "txtSwitchOn", "txtSwitchOff" } },
        { "opPowerReport", { "rtPowerUp", "rtPowerDown", "txtPowerUp", "txtPowerDown" } },
        { "opNotAuthorized", { "rtNotAuthorized", "txtNotAuthorized" } },
    };
    for (const auto& entry : options) {
        auto* option = window.field<QCheckBox>(QString::fromLatin1(entry.option));
        for (const bool on : { true, false }) {
            option->click();
            QCOMPARE(option->isChecked(), on);
            for (const char* name : entry.dependents)
                QVERIFY2(enabled(window, name) == on, name);
        }
    }

    // Filled settings bring the texts in line with their options, and the
    // texts of disabled fields stay.
    StationSettings settings;
    settings.opSwitchReport = true;
    settings.rtSwitchOn = "ZAPNUTO";
    settings.opPowerReport = false;
    settings.rtPowerUp = "SIT OK";
    settings.opNotAuthorized = false;
    settings.rtNotAuthorized = "NEPOVOLENO";
    window.fillSettings(settings);
    QVERIFY(enabled(window, "rtSwitchOn"));
    QVERIFY(!enabled(window, "rtPowerUp"));
    QVERIFY(!enabled(window, "rtNotAuthorized"));
    QCOMPARE(textOf(window, QStringLiteral("rtPowerUp")), QStringLiteral("SIT OK"));
    QCOMPARE(textOf(window, QStringLiteral("rtNotAuthorized")), QStringLiteral("NEPOVOLENO"));
}

void MainWindowTest::connectionStates_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("word");
    QTest::addColumn<bool>("applies");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QColor>("colour");
    QTest::addColumn<bool>("portEnabled");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<bool>("eepromEnabled");
    QTest::addColumn<bool>("identityShown");

    const QString inactive = QStringLiteral("Neaktivni");
    const QString active = QStringLiteral("Aktivni");
    const QString wrong = QStringLiteral("Aktivni-spatna verze");
    QTest::newRow("inactive to active") << inactive << active << true << QStringLiteral("Aktivní") << kBlue << false
                                        << QStringLiteral("Deaktivovat") << true << true;
    QTest::newRow("inactive to wrong version") << inactive << wrong << true << QStringLiteral("Chybné zařízení")
                                               << kBlue << false << QStringLiteral("Deaktivovat") << false << true;
    QTest::newRow("active to wrong version") << active << wrong << true << QStringLiteral("Chybné zařízení") << kBlue
                                             << false << QStringLiteral("Deaktivovat") << true << true;
    QTest::newRow("active to inactive") << active << inactive << true << QStringLiteral("Neaktivní") << kRed << true
                                        << QStringLiteral("Aktivovat") << false << false;
    QTest::newRow("wrong version to inactive") << wrong << inactive << true << QStringLiteral("Neaktivní") << kRed
                                               << true << QStringLiteral("Aktivovat") << false << false;
    // Unknown words change nothing; the expected columns are unused.
    for (const char* word : { "Neaktivní", "Aktivní", "aktivni", "NEAKTIVNI", "", "Aktivni ", "Aktivni-spatna" }) {
        QTest::newRow(QByteArray("active, unknown '").append(word).append('\'').constData())
            << active << QString::fromUtf8(word) << false << QString() << QColor() << false << QString() << false
            << false;
        QTest::newRow(QByteArray("inactive, unknown '").append(word).append('\'').constData())
            << inactive << QString::fromUtf8(word) << false << QString() << QColor() << false << QString() << false
            << false;
    }
}

void MainWindowTest::connectionStates()
{
    QFETCH(QString, from);
    QFETCH(QString, word);
    QFETCH(bool, applies);

    MainWindow window;
    window.showConnectionState(from.toStdString());
    window.showIdentity(identity("  8128 byte"));

    struct Look {
        QString label;
        QColor colour;
        bool portEnabled;
        bool portSettingsEnabled;
        QString caption;
        bool loadEnabled;
        bool saveEnabled;
        QStringList identity;
        bool operator==(const Look&) const = default;
    };
    const auto look = [&window] {
        QStringList shown;
        for (const char* name : { "lblInfoProdukt", "lblInfoVerze", "lblInfoPamSize", "lblInfoModem" })
            shown << textOf(window, QString::fromLatin1(name));
        return Look { textOf(window, QStringLiteral("tabDeAktivNapis")),
            colourOf(window, QStringLiteral("tabDeAktivNapis")), enabled(window, "tabPort"),
            enabled(window, "btPortSettings"), textOf(window, QStringLiteral("btDEA")), enabled(window, "btEEPROMLoad"),
            enabled(window, "btEEPROMSave"), shown };
    };
    const Look before = look();

    QSignalSpy shown(&window, &MainWindow::connectionStateShown);
    QSignalSpy hideProgress(&window, &MainWindow::hideProgressRequested);
    window.showConnectionState(word.toStdString());
    const Look after = look();

    if (!applies) {
        QVERIFY(after == before);
        QCOMPARE(shown.count(), 0);
        QCOMPARE(hideProgress.count(), 0);
        return;
    }
    QFETCH(QString, label);
    QFETCH(QColor, colour);
    QFETCH(bool, portEnabled);
    QFETCH(QString, caption);
    QFETCH(bool, eepromEnabled);
    QFETCH(bool, identityShown);
    QCOMPARE(after.label, label);
    QCOMPARE(after.colour, colour);
    QCOMPARE(after.portEnabled, portEnabled);
    QCOMPARE(after.portSettingsEnabled, portEnabled);
    QCOMPARE(after.caption, caption);
    QCOMPARE(after.loadEnabled, eepromEnabled);
    QCOMPARE(after.saveEnabled, eepromEnabled);
    const QStringList expectedIdentity = identityShown ? QStringList { "RMA8", "1.0", "  8128 byte", "TC35 Siemens" }
                                                       : QStringList { "?", "?", "?", "?" };
    QCOMPARE(after.identity, expectedIdentity);
    QCOMPARE(shown.count(), 1);
    QCOMPARE(shown.front().front().toString(), word);
    QCOMPARE(hideProgress.count(), word == QLatin1String("Aktivni-spatna verze") ? 1 : 0);
}

void MainWindowTest::memoryDisplay_data()
{
    QTest::addColumn<QString>("memorySize");
    QTest::addColumn<QString>("stationName");
    QTest::addColumn<QString>("usage");
    QTest::addColumn<QString>("freeRoom");
    QTest::addColumn<QColor>("colour");

    // The empty configuration takes 430 bytes; a station name adds one byte
    // per character, diacritics included.
    QTest::newRow("size unknown") << "?"
                                  << ""
                                  << "430 byte"
                                  << "?" << kBlue;
    QTest::newRow("8128-byte station") << "  8128 byte"
                                       << ""
                                       << "430 byte"
                                       << "7698 byte" << kBlue;
    QTest::newRow("64-byte station") << "    64 byte"
                                     << ""
                                     << "430 byte"
                                     << "-366 byte" << kRed;
    QTest::newRow("exactly full") << "   448 byte"
                                  << "Čerpací stanice No"
                                  << "448 byte"
                                  << "0 byte" << kBlue;
    QTest::newRow("one byte over") << "   448 byte"
                                   << "Čerpací stanice Nov"
                                   << "449 byte"
                                   << "-1 byte" << kRed;
    QTest::newRow("two bytes left") << "   448 byte"
                                    << "Čerpací stanice!"
                                    << "446 byte"
                                    << "2 byte" << kBlue;
}

void MainWindowTest::memoryDisplay()
{
    QFETCH(QString, memorySize);
    QFETCH(QString, stationName);
    QFETCH(QString, usage);
    QFETCH(QString, freeRoom);
    QFETCH(QColor, colour);

    MainWindow window;
    StationSettings settings;
    settings.tabJmenoStanice = stationName.toStdString();
    window.fillSettings(settings);
    window.showIdentity(identity(memorySize.toUtf8().constData()));
    window.showConnectionState("Aktivni");

    QCOMPARE(textOf(window, QStringLiteral("lblInfoPamUsage")), usage);
    QCOMPARE(textOf(window, QStringLiteral("lblInfoPamFree")), freeRoom);
    QCOMPARE(colourOf(window, QStringLiteral("lblInfoPamFree")), colour);

    // Back to inactive, the size is unknown again.
    window.showConnectionState("Neaktivni");
    QCOMPARE(textOf(window, QStringLiteral("lblInfoPamUsage")), usage);
    QCOMPARE(textOf(window, QStringLiteral("lblInfoPamFree")), QStringLiteral("?"));
    QCOMPARE(colourOf(window, QStringLiteral("lblInfoPamFree")), kBlue);
}

void MainWindowTest::eepromSize_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<qlonglong>("size"); // -1: none
    QTest::newRow("unknown") << "?" << qlonglong { -1 };
    QTest::newRow("smallest") << "    64 byte" << qlonglong { 64 };
    QTest::newRow("8128") << "  8128 byte" << qlonglong { 8128 };
    QTest::newRow("largest") << " 65472 byte" << qlonglong { 65472 };
    QTest::newRow("no number") << "     ? byte" << qlonglong { -1 };
    QTest::newRow("too short") << "byte" << qlonglong { -1 };
}

void MainWindowTest::eepromSize()
{
    QFETCH(QString, label);
    QFETCH(qlonglong, size);
    MainWindow window;
    window.showIdentity(identity(label.toUtf8().constData()));
    const std::optional<std::size_t> parsed = window.eepromSize();
    QCOMPARE(parsed.has_value(), size >= 0);
    if (parsed)
        QCOMPARE(static_cast<qlonglong>(*parsed), size);
}

void MainWindowTest::goldenImages_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<qlonglong>("usedSize");
    for (const auto& entry : rm8::test::readJson(rm8::test::dataDir() / "manifest.json"))
        QTest::newRow(entry["name"].get<std::string>().c_str())
            << q(entry["name"].get<std::string>()) << entry["used_size"].get<qlonglong>();
}

void MainWindowTest::goldenImages()
{
    QFETCH(QString, name);
    QFETCH(qlonglong, usedSize);

    rm8::EepromImage image;
    const auto read = rm8::readImageFile(rm8::test::dataDir() / (name.toStdString() + ".eep"), image);
    QVERIFY(read.hasValue());
    StationSettings loaded;
    QVERIFY(rm8::decodeImage(image, loaded).hasValue());

    MainWindow window;
    window.fillSettings(loaded);

    // The round trip alone would also pass if everything came back from the
    // window's copy of the record: the fields must show the values as well.
    for (const rm8::FieldInfo& info : rm8::fieldCatalogue()) {
        const auto check = [&](QWidget* widget, const auto& value) {
            if (!widget)
                return;
            using Value = std::remove_cvref_t<decltype(value)>;
            if constexpr (std::is_same_v<Value, std::string>) {
                QCOMPARE(textOf(window, widget->objectName()), q(value));
            } else if constexpr (std::is_same_v<Value, bool>) {
                QCOMPARE(qobject_cast<QAbstractButton*>(widget)->isChecked(), value);
            }
        };
        std::visit(
            [&](auto member) {
                const auto& value = loaded.*member;
                if constexpr (IsRow<std::remove_cvref_t<decltype(value)>>::value) {
                    for (int row = 0; row < 8; ++row)
                        check(window.field(q(info.name), row), value[static_cast<std::size_t>(row)]);
                } else {
                    check(window.field(q(info.name)), value);
                }
            },
            info.member);
        if (QTest::currentTestFailed())
            return;
    }

    StationSettings back;
    window.readSettings(back);
    QVERIFY2(back == loaded, differences(loaded, back).constData());

    // The generator's own figure, not the core's.
    QCOMPARE(textOf(window, QStringLiteral("lblInfoPamUsage")), QStringLiteral("%1 byte").arg(usedSize));
}

void MainWindowTest::fillingIsSilent()
{
    MainWindow window;
    QStringList usageSeen;
    bool loadingSeen = true;
    auto* stationName = window.field<QLineEdit>(QStringLiteral("tabJmenoStanice"));
    connect(stationName, &QLineEdit::textChanged, &window, [&] {
        loadingSeen = loadingSeen && window.loading();
        usageSeen << textOf(window, QStringLiteral("lblInfoPamUsage"));
    });

    StationSettings settings;
    settings.tabJmenoStanice = "Čerpací stanice";
    window.fillSettings(settings);
    QCOMPARE(usageSeen, QStringList { QStringLiteral("430 byte") });
    QVERIFY(loadingSeen);
    QVERIFY(!window.loading());
    // Recomputed once, after the fill.
    QCOMPARE(textOf(window, QStringLiteral("lblInfoPamUsage")), QStringLiteral("445 byte"));
}

void MainWindowTest::overlongLoadedTextIsKept()
{
    // A file may hold texts longer than the fields accept while typing;
    // saving what was loaded must not cut them.
    MainWindow window;
    StationSettings settings;
    settings.tabPIN = "1234567890123";
    settings.tabDobaPlatnostiSMS = "-166";
    window.fillSettings(settings);
    StationSettings read;
    window.readSettings(read);
    QCOMPARE(read.tabPIN, settings.tabPIN);
    QCOMPARE(read.tabDobaPlatnostiSMS, settings.tabDobaPlatnostiSMS);

    // Once the technician shortens it to fit, the usual limit holds again.
    auto* pin = window.field<QLineEdit>(QStringLiteral("tabPIN"));
    pin->selectAll();
    QTest::keyClicks(pin, QStringLiteral("12"));
    QCOMPARE(pin->text(), QStringLiteral("12"));
    QTest::keyClicks(pin, QStringLiteral("3456789"));
    QCOMPARE(pin->text(), QStringLiteral("12345678"));
    QCOMPARE(pin->maxLength(), 8);
}

void MainWindowTest::typingUpdatesTheUsage_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("growth");

    QTest::newRow("input name") << "tabINPNazev" << 0 << "Cerpadlo" << 8;
    QTest::newRow("station name with diacritics") << "tabJmenoStanice" << -1 << "Čerpací stanice" << 15;
    QTest::newRow("battery report") << "rtBattLow" << -1 << "Baterie" << 7;
    QTest::newRow("analog event, last row") << "tabAINCL2Dn" << 7 << "NIZKE" << 5;
    QTest::newRow("service centre") << "tabTCcentra" << -1 << "+420602909909" << 13;
    // Stored as "0C91241032547698": 16 characters and the end byte, where an
    // empty number takes one byte.
    QTest::newRow("phone number") << "tabTC" << 3 << "+420123456789" << 16;
    QTest::newRow("validity is not stored as text") << "tabDobaPlatnostiSMS" << -1 << "0" << 0;
}

void MainWindowTest::typingUpdatesTheUsage()
{
    QFETCH(QString, name);
    QFETCH(int, row);
    QFETCH(QString, typed);
    QFETCH(int, growth);

    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QWidget* target = window.field(name, row);
    QVERIFY(target);
    if (auto* list = qobject_cast<QComboBox*>(target))
        target = list->lineEdit();
    auto* tabs = window.field<QTabWidget>(QStringLiteral("TabList"));
    for (int page = 0; page < tabs->count(); ++page)
        if (tabs->widget(page)->isAncestorOf(target))
            tabs->setCurrentIndex(page);
    target->setFocus();

    const QString before = textOf(window, QStringLiteral("lblInfoPamUsage"));
    QCOMPARE(before, QStringLiteral("430 byte"));
    typeText(target, typed);
    QCOMPARE(textOf(window, name, row).endsWith(typed), true);
    QCOMPARE(textOf(window, QStringLiteral("lblInfoPamUsage")), QStringLiteral("%1 byte").arg(430 + growth));
}

void MainWindowTest::fitsASmallScreen()
{
    // A 1024x768 screen less the title bar and a panel: every page must show
    // whole, without scrolling and without a cut caption.
    MainWindow window;
    window.resize(1024, 700);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QVERIFY2(window.minimumSizeHint().width() <= 1024, QByteArray::number(window.minimumSizeHint().width()));
    QCOMPARE(window.size(), QSize(1024, 700));

    auto* tabs = window.field<QTabWidget>(QStringLiteral("TabList"));
    for (int page = 0; page < tabs->count(); ++page) {
        tabs->setCurrentIndex(page);
        QCoreApplication::processEvents();
        auto* area = qobject_cast<QScrollArea*>(tabs->widget(page));
        QVERIFY(area);
        const QByteArray where = tabs->tabText(page).toUtf8();
        QVERIFY2(!area->horizontalScrollBar()->isVisible(), where.constData());
        QVERIFY2(!area->verticalScrollBar()->isVisible(), where.constData());
    }
    for (int page = 0; page < tabs->count(); ++page) {
        tabs->setCurrentIndex(page);
        QCoreApplication::processEvents();
        for (QWidget* widget : window.findChildren<QWidget*>()) {
            if (!widget->isVisible())
                continue;
            const bool hasCaption = qobject_cast<QLabel*>(widget) || qobject_cast<QAbstractButton*>(widget);
            if (!hasCaption)
                continue;
            if (auto* label = qobject_cast<QLabel*>(widget); label && label->wordWrap())
                continue;
            const QByteArray what = (widget->objectName() + QLatin1Char(' ') + textOf(window, widget->objectName())
                + QLatin1Char(' ') + widget->property("text").toString())
                                        .toUtf8();
            QVERIFY2(widget->width() >= widget->minimumSizeHint().width(), what.constData());
        }
    }
}

QTEST_MAIN(MainWindowTest)
#include "main_window_test.moc"
