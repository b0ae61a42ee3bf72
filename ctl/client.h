// What the commands share, and how a file adds its own.
//
// To add a family: write ctl/<family>.cpp with one function Add<Family>Commands(Client&), declare it below, call it in
// main.cpp, and describe its answers in docs/json.md.
#pragma once

#include "ctl/output.h"
#include "ctl/simulator.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ctl {

// The command line and what it stands for.
class Client {
public:
    using Body = std::function<int()>; // returns the exit status; failures are thrown

    Client();

    CLI::App& App() { return m_app; }

    // Makes `sub` run `body` when it is the innermost command given. `sub` may have sub-commands of its own.
    void Run(CLI::App* sub, Body body) { m_commands.push_back({sub, std::move(body)}); }
    // The same for a command that needs the module: sets --sim's up first.
    void RunWithModule(CLI::App* sub, Body body);

    // Parses and runs. Throws ClientError and CallFailed, and CLI::ParseError for what CLI11 finds.
    int Execute(int argc, char** argv);

    bool Json() const { return m_json; }
    void Answer(const Report& report) const { Print(report, m_json); }

    // The model of --sim, if given.
    const std::optional<Model>& SimulatedModel() const { return m_model; }
    // The simulated module of --sim. Throws UsageError without it.
    Simulator& RequireSimulator();
    // Sets --sim's module up where it was given: before the first Session of a command.
    void Prepare();

    // What stands after "--".
    const std::vector<std::string>& Program() const { return m_program; }
    // Marks `sub` as taking a program; elsewhere "--" is a usage error.
    void TakesProgram(CLI::App* sub) { m_takes_program = sub; }

private:
    struct Command {
        CLI::App* sub;
        Body body;
    };

    CLI::App m_app;
    std::vector<Command> m_commands;
    std::string m_model_text;
    std::optional<Model> m_model;
    bool m_json = false;
    std::vector<std::string> m_program;
    CLI::App* m_takes_program = nullptr;
    std::unique_ptr<Simulator> m_simulator;
};

// A CLI11 check for options that name a model.
std::string CheckModel(const std::string& text);

void AddCoreCommands(Client& client);       // info, power, connect, disconnect, network, codes
void AddGsmNetworkCommands(Client& client); // network register, detach, scan, status, preferred; after those of core
void AddAtCommands(Client& client);         // at
void AddCdmaCommands(Client& client);       // cdma, banner
void AddProvisionCommands(Client& client);  // provision
void AddMobileIpCommands(Client& client);   // mip
void AddOmaDmCommands(Client& client);      // omadm
void AddOmaExCommands(Client& client);      // omaex
void AddEriCommands(Client& client);        // eri get
void AddGsmSimCommands(Client& client);     // sim status, pin, puk, lock, file, apdu; after the simulator's
void AddGsmProfileCommands(Client& client); // profile show, set; session up, down, address, traffic
void AddEventCommands(Client& client);      // events
void AddMonitorCommands(Client& client);    // monitor
void AddCallCommands(Client& client);       // call dial, list, answer, end, hold, swap
void AddUssdCommands(Client& client);       // ussd send, answer, cancel
void AddAudioCommands(Client& client);      // audio show, set, tone
void AddSimulatorCommands(Client& client);  // sim run, sim command, sim emit, sim exec
void AddDemoCommands(Client& client);       // demo
void AddSmsCommands(Client& client);        // sms list, read, watch, send, smsc
void AddPduCommands(Client& client);        // pdu decode, encode, explain

} // namespace ctl
