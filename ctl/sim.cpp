// The commands for the simulated module itself: sim run, sim command, sim emit, sim exec.

#include "ctl/client.h"
#include "ctl/listen.h"

#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <mutex>

extern char** environ;

namespace ctl {

namespace {

int RunCommands(Client& client, const std::vector<std::string>& lines)
{
    Simulator& simulator = client.RequireSimulator();
    Report report("sim command");
    Json replies = Json::array();
    for (const std::string& line : lines) {
        const std::string reply = simulator.Command(line);
        replies.push_back({{"line", line}, {"reply", reply}});
        size_t begin = 0; // an answer may have several lines
        while (begin <= reply.size()) {
            const size_t end = std::min(reply.find('\n', begin), reply.size());
            if (end != begin) report.AddLine(reply.substr(begin, end - begin));
            begin = end + 1;
        }
    }
    report.AddHidden("replies", std::move(replies));
    client.Answer(report);
    return 0;
}

// --- sim emit
// ---------------------------------------------------------------------------------------------------------

// A word as it has to stand in a line: in quotes where it would be read as something else.
std::string Quoted(const std::string& word)
{
    if (!word.empty() && word.find_first_of(" \t\r\n\"\\#") == std::string::npos) return word;
    std::string out = "\"";
    for (const char c : word) {
        if (c == '"' || c == '\\') out += '\\';
        out += c == '\n' ? "\\n" : c == '\r' ? "\\r" : c == '\t' ? "\\t" : std::string(1, c);
    }
    return out + '"';
}

int Emit(Client& client, const std::vector<std::string>& words)
{
    std::string line = "emit";
    for (const std::string& word : words)
        line += " " + Quoted(word);
    std::string reply;
    ListenOptions options;
    options.command = "sim emit";
    options.cause = [&](Simulator& simulator) { reply = simulator.Command(line); };
    options.ends_with_cause = true;
    options.end = [&](bool) {
        if (!client.Json() && reply != "delivered") PrintLine(reply);
    };
    options.report = [&](Report& report) {
        report.AddHidden("line", line);
        report.AddHidden("reply", reply);
    };
    return Listen(client, options);
}

// --- sim exec
// ---------------------------------------------------------------------------------------------------------

// A process attribute block that undoes what StartSignalThread did, so that the program starts as from a shell.
class SpawnAttributes {
public:
    SpawnAttributes()
    {
        posix_spawnattr_init(&m_attributes);
        sigset_t none, pipe;
        sigemptyset(&none);
        sigemptyset(&pipe);
        sigaddset(&pipe, SIGPIPE);
        posix_spawnattr_setsigmask(&m_attributes, &none);
        posix_spawnattr_setsigdefault(&m_attributes, &pipe);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    }
    ~SpawnAttributes() { posix_spawnattr_destroy(&m_attributes); }
    SpawnAttributes(const SpawnAttributes&) = delete;
    SpawnAttributes& operator=(const SpawnAttributes&) = delete;
    const posix_spawnattr_t* Get() const { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes;
};

int RunProgram(const std::vector<std::string>& program)
{
    std::vector<char*> arguments;
    arguments.reserve(program.size() + 1);
    for (const std::string& argument : program)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);

    // A terminal sends Ctrl-C to the program as well. A signal sent to the client alone is passed on, while there is a
    // program of that number: the lock is held while it starts and while it is buried.
    std::mutex mutex;
    pid_t child = 0;
    const Interruptible interruptible([&] {
        std::lock_guard<std::mutex> lock(mutex);
        if (child > 0) kill(child, SIGTERM);
    });
    {
        const SpawnAttributes attributes;
        std::lock_guard<std::mutex> lock(mutex);
        const int error = posix_spawnp(&child, arguments[0], nullptr, attributes.Get(), arguments.data(), environ);
        if (error != 0) throw ClientError(program[0] + " cannot be started: " + std::strerror(error), kExitNoProgram);
    }
    siginfo_t ended = {};
    while (waitid(P_PID, static_cast<id_t>(child), &ended, WEXITED | WNOWAIT) != 0)
        if (errno != EINTR) throw ClientError(program[0] + " cannot be waited for: " + std::strerror(errno));
    std::lock_guard<std::mutex> lock(mutex);
    int status = 0;
    waitpid(child, &status, 0);
    child = 0;
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

int Exec(Client& client, const std::string& model_text, const std::string& scenario)
{
    std::optional<Model> model = Model::Parse(model_text);
    if (!model) model = client.SimulatedModel();
    if (!model) throw UsageError("sim exec needs a model: sim exec cdma -- PROGRAM");
    if (client.Program().empty())
        throw UsageError("sim exec needs a program: sim exec " + model->Text() + " -- PROGRAM");

    const std::filesystem::path folder = SimulatorFolder();
    const TemporaryFolder temporary;
    const std::filesystem::path registry = temporary.Path() / "registry.reg";
    const std::filesystem::path port = temporary.Path() / "at"; // the simulator makes it a link to its terminal
    WriteRegistry(registry, model->product_id, port.string());
    setenv("TALVEK_LIBRARY_PATH", folder.c_str(), 1);
    setenv("TALVEK_SIM", model->Text().c_str(), 1);
    setenv("TALVEK_SIM_PORT", port.c_str(), 1);
    setenv("TALVEK_REGISTRY", registry.c_str(), 1);
    if (!scenario.empty()) setenv("TALVEK_SIM_SCENARIO", scenario.c_str(), 1);
    return RunProgram(client.Program());
}

} // namespace

void AddSimulatorCommands(Client& client)
{
    CLI::App* const sim =
        client.App().add_subcommand("sim", "The SIM card of the module; and the simulated module itself");
    sim->require_subcommand(1);

    CLI::App* const run = sim->add_subcommand("run", "Run a scenario and print the events that it causes");
    const auto file = std::make_shared<std::string>();
    run->add_option("FILE", *file, "The scenario")->required();
    client.Run(run, [&client, file] {
        ListenOptions options;
        options.command = "sim run";
        options.cause = RunsScenario(*file);
        options.ends_with_cause = true;
        return Listen(client, options);
    });

    CLI::App* const command =
        sim->add_subcommand("command", "Give the simulated module commands and print its answers");
    const auto lines = std::make_shared<std::vector<std::string>>();
    command->add_option("LINE", *lines, "Commands, each one argument")->required();
    client.Run(command, [&client, lines] { return RunCommands(client, *lines); });

    CLI::App* const emit =
        sim->add_subcommand("emit", "Let the simulated module raise an event, and print what is delivered");
    const auto words = std::make_shared<std::vector<std::string>>();
    emit->add_option("EVENT", *words, "The event and its arguments (sim command events lists them)")->required();
    client.Run(emit, [&client, words] { return Emit(client, *words); });

    CLI::App* const exec = sim->add_subcommand(
        "exec", "Run a program against a simulated module: sim exec MODEL -- PROGRAM [ARGUMENT...]");
    const auto model = std::make_shared<std::string>();
    exec->add_option("MODEL", *model, "cdma or umts, with a product ID if wanted")->check(CheckModel);
    const auto scenario = std::make_shared<std::string>();
    exec->add_option("--scenario", *scenario, "A scenario that runs when the program selects the module")
        ->type_name("FILE")
        ->check(CLI::ExistingFile);
    client.TakesProgram(exec);
    client.Run(exec, [&client, model, scenario] { return Exec(client, *model, *scenario); });

    // Apart from the commands for the card, which join this group.
    for (CLI::App* const sub : {run, command, emit, exec})
        sub->group("The simulated module");
}

} // namespace ctl
