// talvekctl: the command-line client of TALVEK.

#include "ctl/client.h"
#include "ctl/interrupt.h"

#include <algorithm>
#include <cstring>
#include <iostream>

namespace ctl {

std::string CheckModel(const std::string& text)
{
    return Model::Parse(text) ? ""
                              : "'" + text +
                                    "' is no model: cdma or umts, with a product ID if wanted (5101, 5111, 5120, "
                                    "5141), as in umts:5120";
}

Client::Client() : m_app("Controls a Gobi cellular module, or a simulated one.", "talvekctl")
{
    m_app.fallthrough();
    m_app.require_subcommand(0, 1); // behind the first one such a word is an argument: sim exec cdma
    m_app
        .add_option("--sim", m_model_text,
                    "Use a simulated module: cdma or umts, with a product ID if wanted (umts:5120)")
        ->type_name("MODEL")
        ->check(CheckModel);
    m_app.add_flag("--json", m_json, "Answer with one line of JSON");
    m_app.add_flag("--version", "Print the version and exit");
    m_app.footer("Exit status: 0 success, 1 failure, 2 usage error.");
}

int Client::Execute(int argc, char** argv)
{
    char** const end = argv + argc;
    char** const mark = std::find_if(argv, end, [](const char* argument) { return std::strcmp(argument, "--") == 0; });
    m_json = std::any_of(argv, mark, [](const char* argument) { return std::strcmp(argument, "--json") == 0; });
    if (mark != end) m_program.assign(mark + 1, end);

    try {
        m_app.parse(static_cast<int>(mark - argv), argv);
    } catch (const CLI::CallForHelp&) {
        Report report("help");
        std::string text = m_app.help();
        while (!text.empty() && text.back() == '\n')
            text.pop_back();
        report.AddHidden("text", text);
        if (m_json)
            PrintJson(report.ToJson());
        else
            PrintLine(text);
        return 0;
    }
    if (m_app.count("--version") != 0) {
        Report report("version");
        report.AddHidden("version", TALVEKCTL_VERSION);
        report.AddLine("talvekctl " TALVEKCTL_VERSION);
        Answer(report);
        return 0;
    }
    if (!m_model_text.empty()) m_model = Model::Parse(m_model_text);

    for (const Command& command : m_commands) {
        if (!command.sub->parsed() || !command.sub->get_subcommands().empty()) continue;
        if (mark != end && command.sub != m_takes_program) throw UsageError("only sim exec takes a program after --");
        return command.body();
    }
    throw UsageError("a command is needed");
}

void Client::RunWithModule(CLI::App* sub, Body body)
{
    Run(sub, [this, body = std::move(body)] {
        Prepare();
        return body();
    });
}

Simulator& Client::RequireSimulator()
{
    if (!m_model) throw UsageError("this command needs a simulated module: --sim cdma or --sim umts");
    Prepare();
    return *m_simulator;
}

void Client::Prepare()
{
    if (m_model && !m_simulator) m_simulator = std::make_unique<Simulator>(*m_model);
}

} // namespace ctl

namespace {

int Run(int argc, char** argv)
{
    ctl::StartSignalThread();
    ctl::Client client;
    ctl::AddCoreCommands(client);
    ctl::AddGsmNetworkCommands(client);
    ctl::AddAtCommands(client);
    ctl::AddCdmaCommands(client);
    ctl::AddProvisionCommands(client);
    ctl::AddMobileIpCommands(client);
    ctl::AddEventCommands(client);
    ctl::AddMonitorCommands(client);
    ctl::AddCallCommands(client);
    ctl::AddUssdCommands(client);
    ctl::AddAudioCommands(client);
    ctl::AddGsmProfileCommands(client);
    ctl::AddOmaDmCommands(client);
    ctl::AddOmaExCommands(client);
    ctl::AddEriCommands(client);
    ctl::AddSmsCommands(client);
    ctl::AddPduCommands(client);
    ctl::AddSimulatorCommands(client);
    ctl::AddGsmSimCommands(client);
    ctl::AddDemoCommands(client);
    try {
        return client.Execute(argc, argv);
    } catch (const CLI::ParseError& error) {
        ctl::PrintError(ctl::UsageError(error.what()), client.Json());
        return ctl::kExitUsage;
    } catch (const ctl::ClientError& error) {
        ctl::PrintError(error, client.Json());
        return error.Status();
    } catch (const std::exception& error) {
        ctl::PrintError(error, client.Json());
        return ctl::kExitFailure;
    }
}

} // namespace

int main(int argc, char** argv)
{
    try {
        return Run(argc, argv);
    } catch (...) { // the failure itself could not be reported
        return ctl::kExitFailure;
    }
}
