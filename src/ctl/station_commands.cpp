#include "ctl/station_commands.h"

#include <atomic>
#include <csignal>
#include <cstdlib>

#include "common/atomic_file.h"
#include "ctl/check_command.h"
#include "ctl/cli_interaction.h"
#include "ctl/configuration_input.h"
#include "ctl/file_commands.h"
#include "fields/settings_json.h"
#include "flow/file_flows.h"
#include "link/posix_serial_line.h"
#include "link/session.h"
#include "link/station_flows.h"
#include "settings/conversions.h"
#include "settings/image_encoder.h"
#include "settings/settings_file.h"
#include "settings/used_size.h"

namespace rm8::ctl {
namespace {

std::atomic<bool> interrupted{false};

void onInterrupt(int)
{
    interrupted = true;
}

// Prints the flows' messages as they come; Ctrl-C is Storno; the search for
// the station gives up after a time, as a technician would press Storno.
class StationInteraction : public Interaction {
public:
    StationInteraction(std::ostream& out, std::ostream& err, bool answerYes, std::chrono::seconds searchLimit)
        : out_(out), err_(err), answerYes_(answerYes), searchLimit_(searchLimit)
    {
        std::signal(SIGINT, onInterrupt);
    }

    void showProgress(std::string_view text, bool) override
    {
        interrupted = false;
        searchDeadline_ = text == link::kSearchingText ? std::optional(link::Clock::now() + searchLimit_)
                                                       : std::nullopt;
    }
    void hideProgress() override { searchDeadline_.reset(); }
    bool cancelRequested() override
    {
        return interrupted || (searchDeadline_ && link::Clock::now() >= *searchDeadline_);
    }
    void message(MessageIcon icon, std::string_view text, std::string_view detail) override
    {
        std::ostream& stream = icon == MessageIcon::Information ? out_ : err_;
        stream << text;
        if (!detail.empty())
            stream << " (" << detail << ")";
        stream << '\n';
    }
    Answer ask(MessageIcon, std::string_view question, Buttons) override
    {
        err_ << question << (answerYes_ ? " Ano\n" : " Ne\n");
        return answerYes_ ? Answer::Yes : Answer::No;
    }

private:
    std::ostream& out_;
    std::ostream& err_;
    bool answerYes_;
    std::chrono::seconds searchLimit_;
    std::optional<link::Clock::time_point> searchDeadline_;
};

struct Connection {
    link::PosixSerialLine line;
    StationInteraction ui;
    link::LineIo io;
    link::Activation activation;

    Connection(const Arguments& arguments, std::ostream& out, std::ostream& err)
        : line(devicePath(*arguments.value("--port")))
        , ui(out, err, arguments.has("--yes"), searchLimit(arguments))
        , io(line, ui)
    {
    }

    static std::chrono::seconds searchLimit(const Arguments& arguments)
    {
        const auto value = arguments.value("--search-timeout");
        return std::chrono::seconds(value ? std::atoi(value->c_str()) : 30);
    }

    std::size_t eepromSize() const
    {
        return static_cast<std::size_t>(textValue(activation.identity.memorySize));
    }
};

int needPort(const Arguments& arguments, std::ostream& err)
{
    if (!arguments.value("--port")) {
        err << "rm8ctl: " << arguments.command << ": chybí volba --port PORT\n";
        return kBadInput;
    }
    return kSuccess;
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

} // namespace

std::string devicePath(const std::string& port)
{
    if (port.size() == 5 && port.rfind("COM ", 0) == 0 && port[4] >= '1' && port[4] <= '9')
        return "/dev/ttyS" + std::to_string(port[4] - '1');
    return port;
}

int identifyCommand(const Arguments& arguments, std::ostream& out, std::ostream& err)
{
    if (needPort(arguments, err) != kSuccess)
        return kBadInput;
    Connection connection(arguments, out, err);
    connection.activation = link::activateLink(connection.io, *arguments.value("--port"));
    if (connection.activation.state == link::ConnectionState::Inactive)
        return kBadInput;
    const auto& identity = connection.activation.identity;
    out << "Produkt:          " << identity.product << '\n'
        << "Verze:            " << identity.version << '\n'
        << "Velikost paměti:  " << identity.memorySize << '\n'
        << "Typ modemu:       " << identity.modem << '\n'
        << "Spojení:          " << link::stateWord(connection.activation.state) << '\n';
    link::deactivateLink(connection.io);
    return connection.activation.state == link::ConnectionState::Active ? kSuccess : kDifferent;
}

int readCommand(const Arguments& arguments, std::ostream& out, std::ostream& err)
{
    if (needPort(arguments, err) != kSuccess)
        return kBadInput;
    const auto target = arguments.value("--out");
    if (!target) {
        err << "rm8ctl: read: chybí volba --out SOUBOR\n";
        return kBadInput;
    }
    Connection connection(arguments, out, err);
    if (const int status = activate(connection, *arguments.value("--port"), err); status != kSuccess)
        return status;
    EepromImage image;
    StationSettings settings;
    const FlowOutcome outcome = link::readStation(connection.io, image, settings, connection.eepromSize());
    link::deactivateLink(connection.io);
    if (outcome != FlowOutcome::Done && !(arguments.has("--raw") && outcome == FlowOutcome::Rejected))
        return outcome == FlowOutcome::Failed ? kBadInput : kDifferent;

    Expected<void, std::string> written;
    if (arguments.has("--raw")) {
        const auto bytes = image.bytes().first(connection.eepromSize());
        written = writeFileAtomically(*target, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    } else if (arguments.has("--json")) {
        written = writeFileAtomically(*target, settingsToJsonText(settings));
    } else {
        // The file the main window would save right after this read.
        CliInteraction ui(arguments.has("--yes"));
        if (saveSettingsFile(*target, image, settings, ui) != FlowOutcome::Done)
            written = unexpected(ui.messages().empty() ? std::string("nebyl zapsán") : ui.messages().back().line());
    }
    if (!written) {
        err << "rm8ctl: Soubor '" << *target << "': " << written.error() << '\n';
        return kBadInput;
    }
    return kSuccess;
}

int writeCommand(const Arguments& arguments, std::ostream& out, std::ostream& err)
{
    if (needPort(arguments, err) != kSuccess)
        return kBadInput;
    if (arguments.operands.size() != 1) {
        err << "rm8ctl: write: očekáváno 1 jméno souboru (viz rm8ctl --help)\n";
        return kBadInput;
    }
    auto configuration = loadConfiguration(arguments.operands[0]);
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
    Connection connection(arguments, out, err);
    if (const int status = activate(connection, *arguments.value("--port"), err); status != kSuccess)
        return status;
    const FlowOutcome outcome = link::writeStation(connection.io, configuration->image, configuration->settings,
                                                   connection.eepromSize(), arguments.has("--verify"));
    link::deactivateLink(connection.io);
    switch (outcome) {
    case FlowOutcome::Done:
        return kSuccess;
    case FlowOutcome::Failed:
        return kBadInput;
    default:
        return kDifferent;
    }
}

} // namespace rm8::ctl
