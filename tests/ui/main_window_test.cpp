// The main window as the technician and the shell meet it. Its widgets are
// compared, one line each, with tests/data/ui/main_window.snapshot; what the
// window does is a table of steps and the lines they change from there
// (tests/data/ui/window_steps.json).
//
// On a mismatch the first differing line is shown. To regenerate the
// snapshot after a deliberate change of the window, run
//     RM8_UPDATE_SNAPSHOT=1 tests/ui/main_window_test -platform offscreen startUp
// in the build folder, and read `git diff` of the snapshot before
// committing it.

#include "fields/settings_json.h"
#include "settings/loaded_settings.h"
#include "settings/memory_sizes.h"
#include "settings/settings_file.h"
#include "shell/window_tests.h"
#include "ui/main_window.h"

using rm8::StationSettings;
using rm8::link::ConnectionState;
using rm8::test::qs;
using rm8::ui::MainWindow;

namespace {

int pageOf(const QTabWidget* tabs, const QWidget* widget)
{
    for (int page = 0; page < tabs->count(); ++page)
        if (tabs->widget(page)->isAncestorOf(widget))
            return page;
    return -1;
}

// One line per widget: name and class, then what it shows, its limit, tip,
// colour, state and tab page. Empty values are left out.
QString describe(const QWidget* widget, const QTabWidget* tabs)
{
    QStringList items; // the pages of a tab control, the entries of a list
    for (int i = 0; widget == tabs && i < tabs->count(); ++i)
        items << tabs->tabText(i);
    const auto* list = qobject_cast<const QComboBox*>(widget);
    for (int i = 0; list && i < list->count(); ++i)
        items << list->itemText(i);
    const auto* edit = list ? list->lineEdit() : qobject_cast<const QLineEdit*>(widget);
    const int page = pageOf(tabs, widget);
    const std::pair<const char*, QVariant> shown[] = {
        { "title", widget->isWindow() ? widget->windowTitle() : widget->property("title") },
        { "items", items.join(u';') },
        { "text", widget->property(list ? "currentText" : "text") },
        { "max", edit ? QVariant(edit->maxLength()) : QVariant() },
        { "tip", widget->toolTip() },
        { "colour",
            widget->testAttribute(Qt::WA_SetPalette) ? widget->palette().color(QPalette::WindowText).name()
                                                     : QVariant() },
        { "checked", widget->property("checked").toBool() },
        { "disabled", !widget->isEnabled() },
        { "page", page < 0 ? QVariant() : page },
    };
    QStringList parts { (widget->objectName().isEmpty() ? QStringLiteral("-") : widget->objectName()) + u' '
        + QLatin1String(widget->metaObject()->className()) };
    for (const auto& [key, value] : shown) {
        const bool flag = value.typeId() == QMetaType::Bool;
        const QString text = value.toString().replace(u'\n', QLatin1String("\\n"));
        if (flag ? value.toBool() : !text.isEmpty())
            parts << QLatin1String(key) + (flag ? QString() : u'=' + text);
    }
    return parts.join(QLatin1String(" | "));
}

// The window's named widgets and the captions that stand without a name,
// page by page and then the panels below the pages; not the parts Qt builds
// inside its own widgets.
QStringList widgetLines(const MainWindow& window)
{
    const auto* tabs = window.field<QTabWidget>(QStringLiteral("TabList"));
    QList<QWidget*> widgets = window.findChildren<QWidget*>();
    std::stable_sort(widgets.begin(), widgets.end(),
        [tabs](auto* a, auto* b) { return unsigned(pageOf(tabs, a)) < unsigned(pageOf(tabs, b)); });
    QStringList lines { describe(&window, tabs) };
    for (const QWidget* widget : widgets) {
        const bool caption = qobject_cast<const QLabel*>(widget) || qobject_cast<const QGroupBox*>(widget);
        if (widget->objectName().isEmpty() ? caption : window.field(widget->objectName()) == widget)
            lines << describe(widget, tabs);
    }
    return lines;
}

} // namespace

class MainWindowTest : public QObject {
    Q_OBJECT

private slots:
    // The window as it starts: the fields hold a fresh record, the widgets
    // are the snapshot's, and it fits a small screen.
    void startUp()
    {
        MainWindow window;
        // The fields start as a fresh record does, as rm8ctl starts a new one.
        StationSettings read;
        window.readSettings(read);
        QVERIFY(read == StationSettings {});

        QFile file(QStringLiteral(RM8_TEST_DATA_DIR "/ui/main_window.snapshot"));
        if (qEnvironmentVariableIntValue("RM8_UPDATE_SNAPSHOT") == 1 && file.open(QIODevice::WriteOnly)) {
            file.write((widgetLines(window).join(u'\n') + u'\n').toUtf8());
            file.close();
        }
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(widgetLines(window), QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts));

        // On a 1024x768 screen less the title bar and a panel every page
        // shows whole: no scrolling, no caption cut or covered by another.
#ifdef Q_OS_WIN
        // The offscreen platform of a Windows Qt under Wine measures text
        // with no system font (the window's least width comes out 1,536);
        // the fit on the real platform is what rm8shots.exe reports there.
        QSKIP("the offscreen platform under Wine has no system fonts to measure the pages with");
#endif
        window.resize(1024, 700);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(window.size(), QSize(1024, 700));
        auto* tabs = window.field<QTabWidget>(QStringLiteral("TabList"));
        for (int page = 0; page < tabs->count(); ++page) {
            tabs->setCurrentIndex(page);
            QCoreApplication::processEvents();
            auto* area = qobject_cast<QScrollArea*>(tabs->widget(page));
            QVERIFY2(!area->horizontalScrollBar()->isVisible() && !area->verticalScrollBar()->isVisible(),
                qPrintable(tabs->tabText(page)));
            QList<QRect> taken; // no caption lies over another
            for (const QWidget* widget : window.findChildren<QWidget*>()) {
                const auto* label = qobject_cast<const QLabel*>(widget);
                if (!widget->isVisible()
                    || !((label && !label->wordWrap()) || qobject_cast<const QAbstractButton*>(widget)))
                    continue;
                const QRect place(widget->mapTo(&window, QPoint()), widget->size());
                QVERIFY2(widget->width() >= widget->minimumSizeHint().width()
                        && std::none_of(
                            taken.begin(), taken.end(), [&](const QRect& other) { return other.intersects(place); }),
                    qPrintable(describe(widget, tabs)));
                taken << place;
            }
        }
    }

    void steps_data() { rm8::test::addJsonCases("ui/window_steps.json"); }
    // Each case starts from a fresh window, takes its steps, and must end
    // with exactly the listed lines changed from the start.
    void steps()
    {
        FETCH_CASE(c);
        MainWindow window;
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const QStringList before = widgetLines(window);
        auto* tabs = window.field<QTabWidget>(QStringLiteral("TabList"));
        for (const auto& step : c["steps"]) {
            QWidget* target = step.size() > 1 && step[1].is_string() ? window.field(qs(step[1])) : nullptr;
            if (target && pageOf(tabs, target) >= 0) // shown, as the technician sees it
                tabs->setCurrentIndex(pageOf(tabs, target));
            if (step[0] == "state") {
                // A word of no state (also one with diacritics) names nothing to show.
                for (const auto state : { ConnectionState::Inactive, ConnectionState::Active,
                         ConnectionState::WrongVersion })
                    if (rm8::link::stateWord(state) == step[1].get<std::string>())
                        window.setConnectionState(state);
            } else if (step[0] == "size") {
                window.showIdentity({ "?", "?", step[1].get<std::string>(), "?" });
                window.setEepromSize(rm8::memorySizeBytes(step[1].get<std::string>()));
            } else if (step[0] == "fill") {
                const auto settings = rm8::settingsFromJson(step[1]);
                QVERIFY2(settings, settings ? "" : settings.error().c_str());
                window.fillSettings(*settings);
            } else if (auto* button = qobject_cast<QAbstractButton*>(target); button && step[0] == "click") {
                // Near the indicator: the button may be wider than its caption.
                QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(6, button->height() / 2));
            } else if (step[0] == "type") {
                auto* list = qobject_cast<QComboBox*>(target);
                auto* edit = list ? list->lineEdit() : qobject_cast<QLineEdit*>(target);
                QVERIFY2(edit, step.dump().c_str());
                edit->setFocus();
                edit->selectAll();
                // As on a Czech keyboard: QTest's key tables know only
                // ASCII, other characters come as the text of a key event.
                for (const QChar ch : qs(step[2]))
                    QTest::sendKeyEvent(QTest::Click, edit,
                        ch.unicode() < 128 ? QTest::asciiToKey(char(ch.unicode())) : Qt::Key_unknown, QString(ch),
                        Qt::NoModifier);
            } else {
                QFAIL(step.dump().c_str());
            }
        }
        QStringList changed;
        for (const QString& line : widgetLines(window))
            if (!before.contains(line))
                changed << line;
        QStringList changes;
        for (const auto& line : c["changes"])
            changes << qs(line);
        QCOMPARE(changed, changes);
    }

    void goldenFilesThroughTheFields_data() { rm8::test::addJsonCases("manifest.json", "name"); }
    // Load -> fill -> read loses nothing, and the memory display counts what
    // the file's own length says.
    void goldenFilesThroughTheFields()
    {
        FETCH_CASE(c);
        rm8::EepromImage image;
        QVERIFY(rm8::readImageFile(rm8::test::dataDir() / (c["name"].get<std::string>() + ".eep"), image).hasValue());
        StationSettings loaded;
        QVERIFY(rm8::decodeLoadedImage(image, loaded).hasValue());
        MainWindow window;
        window.fillSettings(loaded);
        StationSettings back;
        window.readSettings(back);
        QVERIFY(back == loaded);
        QCOMPARE(window.field<QLabel>(QStringLiteral("lblInfoPamUsage"))->text(),
            QStringLiteral("%1 byte").arg(c["loaded_used_size"].get<int>()));
    }
};

QTEST_MAIN(MainWindowTest)
#include "main_window_test.moc"
