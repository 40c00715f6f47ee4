#include "ctl/station_commands.h"

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>

#include "common/atomic_file.h"
#include "ctl/check_command.h"
#include "ctl/cli_interaction.h"
#include "ctl/configuration_input.h"
#include "ctl/file_commands.h"
#include "fields/settings_json.h"
#include "flow/file_flows.h"
#include "ctl/progress_bar.h"
#include "link/frame_log.h"
#include "link/serial_line_factory.h"
#include "link/tracing_line.h"
#include "link/session.h"
#include "link/station_backup.h"
#include "link/station_flows.h"
#include "platform/console.h"
#include "platform/utf8_path.h"
#include "settings/memory_sizes.h"
#include "settings/image_encoder.h"
#include "settings/settings_file.h"
#include "settings/used_size.h"

namespace rm8::ctl {
namespace {

std::atomic<bool> interrupted{false};

void onInterrupt()
{
    interrupted = true;
}

// The memory table right-aligns its sizes for the window's label; a line of
// its own starts at the number.
std::string_view trimmedLeft(std::string_view text)
{
    const auto first = text.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string_view() : text.substr(first);
}

// Prints the flows' messages as they come; Ctrl-C is Storno; the search for
// the station gives up after a time, as a technician would press Storno. On a
// terminal a transfer shows a bar with the blocks done and the time left.
class StationInteraction : public Interaction {
public:
    StationInteraction(std::ostream& out, std::ostream& err, bool answerYes, std::chrono::seconds searchLimit,
                       bool showBar)
        : out_(out), err_(err), answerYes_(answerYes), searchLimit_(searchLimit), bar_(showBar)
    {
        platform::onInterrupt(onInterrupt);
    }

    void showProgress(std::string_view text, bool) override
    {
        interrupted = false;
        searchDeadline_.reset();
        endBar();
        if (bar_.enabled())
            err_ << text << std::endl;
        bar_.start();
    }
    void stationSearchStarted() override { searchDeadline_ = link::Clock::now() + searchLimit_; }
    void hideProgress() override
    {
        searchDeadline_.reset();
        endBar();
    }
    void progressBlocks(std::size_t done, std::size_t total) override
    {
        if (const auto line = bar_.update(done, total); !line.empty()) {
            err_ << '\r' << line << std::flush;
            barShown_ = true;
        }
    }
    bool cancelRequested() override
    {
        return interrupted || (searchDeadline_ && link::Clock::now() >= *searchDeadline_);
    }
    void message(MessageIcon icon, std::string_view text, std::string_view detail) override
    {
        endBar();
        std::ostream& stream = icon == MessageIcon::Information ? out_ : err_;
        stream << text;
        if (!detail.empty())
            stream << " (" << detail << ")";
        // At once, also into a pipe: a script that gives up on rm8ctl must
        // still see how far it came.
        stream << std::endl;
    }
    Answer ask(MessageIcon, std::string_view question, Buttons) override
    {
        endBar();
        err_ << question << (answerYes_ ? " Ano" : " Ne") << std::endl;
        return answerYes_ ? Answer::Yes : Answer::No;
    }

private:
    void endBar()
    {
        if (barShown_)
            err_ << '\n';
        barShown_ = false;
    }

    std::ostream& out_;
    std::ostream& err_;
    bool answerYes_;
    std::chrono::seconds searchLimit_;
    std::optional<link::Clock::time_point> searchDeadline_;
    ProgressBar bar_;
    bool barShown_ = false;
};

// The line to the station, with every frame written to the --trace file when
// one is asked for.
struct Connection {
    std::unique_ptr<link::SerialLine> port;
    std::unique_ptr<link::FrameLog> log;
    std::optional<link::TracingLine> traced;
    StationInteraction ui;
    link::LineIo io;
    link::Activation activation;

    Connection(const Arguments& arguments, const std::string& device, std::unique_ptr<link::FrameLog> frameLog,
               std::ostream& out, std::ostream& err)
        : port(link::makeSerialLine(device))
        , log(std::move(frameLog))
        , traced(log ? std::optional<link::TracingLine>(std::in_place, *port, sink(*log)) : std::nullopt)
        , ui(out, err, arguments.has("--yes"), searchLimit(arguments), platform::errorStreamIsTerminal())
        , io(traced ? static_cast<link::SerialLine&>(*traced) : *port, ui)
    {
    }

    static link::TracingLine::Sink sink(link::FrameLog& frameLog)
    {
        return [&frameLog](link::FrameDirection direction, std::span<const std::uint8_t> bytes) {
            frameLog.record(direction, bytes);
        };
    }

    static std::chrono::seconds searchLimit(const Arguments& arguments)
    {
        const auto value = arguments.value("--search-timeout");
        return std::chrono::seconds(value ? std::atoi(value->c_str()) : 30);
    }

    std::size_t eepromSize() const { return memorySizeBytes(activation.identity.memorySize).value_or(0); }
};

// Everything a station command needs before it touches the line: the port
// and the device it names, and the trace file. Bad options end here.
std::unique_ptr<Connection> connect(const Arguments& arguments, std::ostream& out, std::ostream& err)
{
    const auto port = arguments.value("--port");
    if (!port) {
        err << "rm8ctl: " << arguments.command << ": chybí volba --port PORT\n";
        return nullptr;
    }
    if (const auto search = arguments.value("--search-timeout");
        search && (search->empty() || search->find_first_not_of("0123456789") != std::string::npos)) {
        err << "rm8ctl: --search-timeout: očekáván počet sekund, ne '" << *search << "'\n";
        return nullptr;
    }
    auto map = portMap(arguments);
    if (!map) {
        err << "rm8ctl: --com " << map.error() << '\n';
        return nullptr;
    }
    std::unique_ptr<link::FrameLog> log;
    if (const auto trace = arguments.value("--trace")) {
        auto opened = link::FrameLog::toFile(*trace);
        if (!opened) {
            err << "rm8ctl: --trace: " << opened.error() << '\n';
            return nullptr;
        }
        log = std::move(*opened);
    }
    // A port-list name without a device ("COM 0") opens nothing, and the
    // session says so with its own message.
    return std::make_unique<Connection>(arguments, map->device(*port).value_or(std::string()), std::move(log), out,
                                        err);
}

// Activates; on anything but an active station, releases it and says why.
int activate(Connection& connection, const std::string& port, std::ostream& err)
{
    connection.activation = link::activateLink(connection.io, port);
    if (connection.activation.state == link::ConnectionState::Active && connection.eepromSize() > 0)
        return kSuccess;
    if (connection.activation.state == link::ConnectionState::Inactive) {
        err << "rm8ctl: stanice na portu '" << port << "' není aktivní\n";
        return kBadInput;
    }
    err << "rm8ctl: stanici na portu '" << port << "' nelze číst ani programovat\n";
    link::deactivateLink(connection.io);
    return kDifferent;
}

// Takes the station out of programming mode. The work's own status stands
// unless it succeeded and the station did not answer the leave request.
int release(Connection& connection, int status)
{
    const bool left = link::leaveProgrammingMode(connection.io) == link::Leave::Left;
    return status == kSuccess && !left ? kLeftInProgrammingMode : status;
}

int outcomeStatus(FlowOutcome outcome)
{
    switch (outcome) {
    case FlowOutcome::Done:
        return kSuccess;
    case FlowOutcome::Failed:
        return kBadInput;
    default:
        return kDifferent;
    }
}

} // namespace

Expected<link::PortMap, std::string> portMap(const Arguments& arguments)
{
    link::PortMap map = link::PortMap::platformDefault();
    const auto table = arguments.value("--com");
    if (!table)
        return map;
    // "COM 1=/dev/ttyUSB0,COM 2=/dev/ttyACM0"
    std::size_t from = 0;
    while (from <= table->size()) {
        const std::size_t comma = std::min(table->find(',', from), table->size());
        if (auto assigned = map.assign(std::string_view(*table).substr(from, comma - from)); !assigned)
            return unexpected(assigned.error());
        from = comma + 1;
    }
    return map;
}

int identifyCommand(const Arguments& arguments, std::ostream& out, std::ostream& err)
{
    const auto opened = connect(arguments, out, err);
    if (!opened)
        return kBadInput;
    Connection& connection = *opened;
    connection.activation = link::activateLink(connection.io, *arguments.value("--port"));
    if (connection.activation.state == link::ConnectionState::Inactive)
        return kBadInput;
    const auto& identity = connection.activation.identity;
    out << "Produkt:          " << identity.product << '\n'
        << "Verze:            " << identity.version << '\n'
        << "Velikost paměti:  " << trimmedLeft(identity.memorySize) << '\n'
        << "Typ modemu:       " << identity.modem << '\n'
        << "Spojení:          " << link::stateWord(connection.activation.state) << std::endl;
    return release(connection, connection.activation.state == link::ConnectionState::Active ? kSuccess : kDifferent);
}

int readCommand(const Arguments& arguments, std::ostream& out, std::ostream& err)
{
    const auto target = arguments.value("--out");
    if (!target) {
        err << "rm8ctl: read: chybí volba --out SOUBOR\n";
        return kBadInput;
    }
    const auto opened = connect(arguments, out, err);
    if (!opened)
        return kBadInput;
    Connection& connection = *opened;
    if (const int status = activate(connection, *arguments.value("--port"), err); status != kSuccess)
        return status;
    EepromImage image;
    StationSettings settings;
    const FlowOutcome outcome = link::readStation(connection.io, image, settings, connection.eepromSize());
    const int released = release(connection, kSuccess);
    if (outcome != FlowOutcome::Done && !(arguments.has("--raw") && outcome == FlowOutcome::Rejected))
        return outcome == FlowOutcome::Failed ? kBadInput : kDifferent;

    Expected<void, std::string> written;
    if (arguments.has("--raw")) {
        const auto bytes = image.bytes().first(connection.eepromSize());
        written = writeFileAtomically(
            platform::pathFromUtf8(*target), { reinterpret_cast<const char*>(bytes.data()), bytes.size() });
    } else if (arguments.has("--json")) {
        written = writeFileAtomically(platform::pathFromUtf8(*target), settingsToJsonText(settings));
    } else {
        // The file the main window would save right after this read.
        CliInteraction ui(arguments.has("--yes"));
        if (saveSettingsFile(platform::pathFromUtf8(*target), image, settings, ui) != FlowOutcome::Done)
            written = unexpected(ui.messages().empty() ? std::string("nebyl zapsán") : ui.messages().back().line());
    }
    if (!written) {
        err << "rm8ctl: Soubor '" << *target << "': " << written.error() << '\n';
        return kBadInput;
    }
    return released;
}

int writeCommand(const Arguments& arguments, std::ostream& out, std::ostream& err)
{
    if (arguments.operands.size() != 1) {
        err << "rm8ctl: write: očekáváno " << fileNames(1) << ", zadáno " << arguments.operands.size()
            << " (viz rm8ctl --help)\n";
        return kBadInput;
    }
    if (arguments.has("--verify") && arguments.has("--no-verify")) {
        err << "rm8ctl: write: --verify a --no-verify se vylučují\n";
        return kBadInput;
    }
    const auto backup = arguments.value("--backup");
    std::error_code ignored;
    if (backup && std::filesystem::exists(platform::pathFromUtf8(*backup), ignored) && !arguments.has("--yes")) {
        err << "rm8ctl: Soubor '" << *backup << "' již existuje a nebyl přepsán (přepsání povolí volba --yes).\n";
        return kDifferent;
    }
    auto configuration = loadConfiguration(platform::pathFromUtf8(arguments.operands[0]));
    if (!configuration) {
        err << "rm8ctl: " << configuration.error() << '\n';
        return kBadInput;
    }
    if (const CheckReport report = checkConfiguration(configuration->settings);
        !report.clean() && !arguments.has("--force")) {
        printViolations(report, err, "rm8ctl: Soubor '" + arguments.operands[0] + "': ");
        err << "rm8ctl: nastavení porušují pravidla stanice a nebyla zapsána (--force je zapíše i tak)\n";
        return kDifferent;
    }
    const auto opened = connect(arguments, out, err);
    if (!opened)
        return kBadInput;
    Connection& connection = *opened;
    if (const int status = activate(connection, *arguments.value("--port"), err); status != kSuccess)
        return status;
    // The rules were settled above by --force; the flow's gates are the
    // window's, and the backup is made only for a write they let through.
    link::WriteGates gates;
    if (backup)
        gates.backUp = [&] {
            // The station as it was, before anything of it is overwritten;
            // no backup, no write.
            const FlowOutcome saved
                = link::backupStation(connection.io, connection.eepromSize(), platform::pathFromUtf8(*backup));
            if (saved == FlowOutcome::Done)
                out << "Původní obsah EEPROM uložen do souboru '" << *backup << "'." << std::endl;
            return saved;
        };
    const FlowOutcome outcome = link::writeStation(connection.io, configuration->image, configuration->settings,
                                                   connection.eepromSize(), !arguments.has("--no-verify"), gates);
    return release(connection, outcomeStatus(outcome));
}

} // namespace rm8::ctl
