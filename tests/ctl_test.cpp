// The command-line client: what its commands answer, on success and on failure.

#include "talvek/core.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/talvekctl.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

namespace {

using namespace talvekctl;

// The environment of a module that is set up, without --sim: the stand-in library, a registry and a kind of module.
Environment ConfiguredModule(const std::string& registry)
{
    return {{"TALVEK_LIBRARY_PATH", TALVEK_SIM_DIRECTORY}, {"TALVEK_REGISTRY", registry}, {"TALVEK_SIM", "cdma"}};
}

TEST(Ctl, DemoGoesThroughTheMainJobOnEitherTechnology)
{
    for (const std::string model : {"cdma", "umts"}) {
        SCOPED_TRACE(model);
        const Result text = RunClient({"--sim", model, "demo"});
        EXPECT_EQ(text.status, 0) << text.error;
        EXPECT_TRUE(Contains(text.output, "Everything was as it must be.")) << text.output;

        const Result json = RunClient({"--sim", model, "--json", "demo"});
        EXPECT_EQ(json.status, 0) << json.output;
        ASSERT_EQ(json.lines.size(), 1u);
        const Json answer = Parse(json.lines[0]);
        EXPECT_EQ(answer["ok"], true);
        Texts steps;
        for (const Json& step : answer["result"]["steps"])
            steps.push_back(step["step"]);
        EXPECT_EQ(steps, (Texts{"start-up", "discovery", "selection", "versions", "PRI information", "radio power",
                                "data session", "serving network", "suspend and resume", "shutdown"}));
        const auto delivered = [&](int id, const Json& payload) {
            return std::any_of(answer["result"]["events"].begin(), answer["result"]["events"].end(),
                               [&](const Json& event) { return event["id"] == id && event["payload"] == payload; });
        };
        EXPECT_TRUE(delivered(5, {{"power_state", 0}, {"radio_on", true}})) << answer;
        EXPECT_TRUE(delivered(2029, {{"connected", true}, {"end_reason", nullptr}})) << answer;
        EXPECT_TRUE(delivered(2029, {{"connected", false}, {"end_reason", 30}})) << answer;
    }
}

TEST(Ctl, DemoFailsWhenTheModuleDoesNotDoItsPart)
{
    const ScratchFolder folder;
    const struct {
        const char* scenario;
        const char* reason;
    } rows[] = {
        {"fail SetPower 1025", "OrvSetRadioPower failed: ORV_RCODE_UNSUPPORTED (1)"},
        {"set session.start-status 15\nset session.failure-reason 7", "(failure reason 7)"},
        {"set ip.address 0.0.0.0", "the session has no address"},
        {"set identity.boot \"\"", "OrvGetBootVersion failed: ORV_RCODE_NOT_AVAILABLE (17)"},
        {"set power.mode 6", "the radio is off to begin with"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.scenario);
        const std::string file = folder.Write("fault.sim", row.scenario);
        const Result result = RunClient({"demo", "--sim", "cdma"}, {{"TALVEK_SIM_SCENARIO", file}});
        EXPECT_EQ(result.status, 1);
        EXPECT_TRUE(Contains(result.error, row.reason)) << result.error;
        EXPECT_FALSE(Contains(result.output, "as it must be")) << result.output;
    }
}

TEST(Ctl, InfoDescribesEveryProductOnEitherTechnology)
{
    for (const std::string technology : {"cdma", "umts"}) {
        for (const std::string product : {"5101", "5111", "5120", "5141"}) {
            SCOPED_TRACE(technology + ":" + product);
            const Result result = RunClient({"info", "--json", "--sim", technology + ":" + product});
            ASSERT_EQ(result.status, 0) << result.output << result.error;
            const bool umts = technology == "umts";
            const Json expected = {
                {"device_id", std::stoul(product, nullptr, 16)},
                {"name", "KT52-" + product},
                {"technology", umts ? "GSM/UMTS" : "CDMA"},
                {"hardware_version", "Kestavo:KT5230:10012"},
                {"model", "KT5230"},
                {"firmware_version", umts ? "K2.0.12U-SIM" : "K2.0.12C-SIM"},
                {"boot_version", "KB2.0.3-SIM"},
                {"pri",
                 {{"text", umts ? "03020104" : "05010203"},
                  {"carrier", umts ? 3 : 5},
                  {"version", umts ? 201 : 102},
                  {"revision", umts ? 4 : 3}}},
                {"capabilities",
                 {{"mask", umts ? 0x15 : 0x60},
                  {"names", umts ? Json{"GPRS", "HSDPA", "WCDMA"} : Json{"CDMA 1xRTT", "EV-DO rev 0"}}}},
            };
            EXPECT_EQ(Parse(result.output), (Json{{"ok", true}, {"command", "info"}, {"result", expected}}));
        }
    }
}

TEST(Ctl, InfoShowsWhatTheModuleLacksAndNeverItsControlCharacters)
{
    const ScratchFolder folder;
    const std::string file = folder.Write(
        "odd.sim", "set identity.pri \"\"\nset network.caps\nset identity.model \"\\x1b[31m\\x9b1m\\xe4\"\n");
    const Environment environment = {{"TALVEK_SIM_SCENARIO", file}};
    const Result json = RunClient({"info", "--json", "--sim", "cdma"}, environment);
    const Json result = Parse(json.output)["result"];
    EXPECT_EQ(result["pri"],
              (Json{{"text", nullptr}, {"carrier", nullptr}, {"version", nullptr}, {"revision", nullptr}}));
    EXPECT_EQ(result["capabilities"], (Json{{"mask", 0}, {"names", Json::array()}}));
    EXPECT_EQ(result["model"], "\x1b[31m\u009b1m\u00e4");
    const Result text = RunClient({"info", "--sim", "cdma"}, environment);
    EXPECT_TRUE(Contains(text.output, "\\x1b[31m\\x9b1m\u00e4\n")) << text.output;
    EXPECT_TRUE(Contains(text.output, "(no service)")) << text.output;
}

TEST(Ctl, PowerAndNetworkAnswerWithWhatWasDone)
{
    const struct {
        Texts arguments;
        Json result;
    } rows[] = {
        {{"power"}, {{"action", "get"}, {"radio_on", true}}},
        {{"power", "off"}, {{"action", "off"}, {"radio_on", false}}},
        {{"power", "on"}, {{"action", "on"}, {"radio_on", true}}},
        {{"power", "reset"}, {{"action", "reset"}, {"radio_on", nullptr}}},
        {{"network"}, {{"capabilities", {{"mask", 0x15}, {"names", {"GPRS", "HSDPA", "WCDMA"}}}}}},
        {{"network", "prefer", "2"}, {{"preference", 2}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.arguments.back());
        Texts arguments = row.arguments;
        arguments.insert(arguments.end(), {"--sim", "umts", "--json"});
        const Result result = RunClient(arguments);
        EXPECT_EQ(result.status, 0) << result.output;
        EXPECT_EQ(Parse(result.output)["result"], row.result);
    }
}

TEST(Ctl, ErrorsNameTheFunctionAndTheCode)
{
    const ScratchFolder folder;
    const std::string other = folder.Write("other.reg", "Windows Registry Editor Version 5.00\n\n"
                                                        "[HKEY_CURRENT_USER\\Software\\Kestavo Inc]\n"
                                                        "\"DeviceID\"=\"VID_3D5E&PID_5102\"\n");
    const std::string reset = folder.Write("refuse.sim", "fail SetPower 1026\n");
    const std::string fixed = folder.Write("fixed.sim", "fail SetNetworkPreference 1025\n");
    const std::string refused =
        folder.Write("session.sim", "set session.start-status 1\nset session.failure-reason 33\n");
    const Environment none = {};
    const struct {
        const char* name;
        Texts arguments;
        Environment environment;
        const char* function;
        ORV_RCODE code;
    } rows[] = {
        {"no registry",
         {"info"},
         ConfiguredModule(folder.Path("absent.reg")),
         "OrvGetAvailAirServers",
         ORV_RCODE_FAILED},
        {"unknown product", {"network"}, ConfiguredModule(other), "OrvGetAvailAirServers", ORV_RCODE_FAILED},
        {"reset refused",
         {"power", "reset", "--sim", "cdma"},
         {{"TALVEK_SIM_SCENARIO", reset}},
         "OrvModemReset",
         ORV_RCODE_VENDOR_1026},
        {"session refused",
         {"connect", "--sim", "umts"},
         {{"TALVEK_SIM_SCENARIO", refused}},
         "OrvStartDataSession",
         ORV_RCODE_FAILED},
        {"preference refused",
         {"network", "prefer", "2", "--sim", "umts"},
         {{"TALVEK_SIM_SCENARIO", fixed}},
         "OrvSetNetworkPreferenceGobi",
         ORV_RCODE_UNSUPPORTED},
        {"no such session", {"disconnect", "7", "--sim", "umts"}, none, "OrvStopDataSession", ORV_RCODE_VENDOR_15},
        {"identifier that cannot be enabled",
         {"events", "999", "--sim", "cdma"},
         none,
         "OrvNotify",
         ORV_RCODE_UNSUPPORTED},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Result text = RunClient(row.arguments, row.environment);
        EXPECT_EQ(text.status, 1);
        EXPECT_EQ(text.output, "");
        const std::string expected = std::string("error: ") + row.function + " failed: " + OrvRcodeName(row.code) +
                                     " (" + std::to_string(static_cast<int>(row.code)) +
                                     "): " + OrvRcodeMeaning(row.code);
        EXPECT_EQ(text.error.substr(0, expected.size()), expected);

        Texts arguments = row.arguments;
        arguments.push_back("--json");
        const Result json = RunClient(arguments, row.environment);
        EXPECT_EQ(json.status, 1);
        ASSERT_EQ(json.lines.size(), 1u) << json.output;
        const Json answer = Parse(json.lines[0]);
        EXPECT_EQ(answer["ok"], false);
        EXPECT_EQ(answer["error"]["function"], row.function);
        EXPECT_EQ(answer["error"]["code"], static_cast<int>(row.code));
        EXPECT_EQ(answer["error"]["name"], OrvRcodeName(row.code));
        EXPECT_EQ(answer["error"]["meaning"], OrvRcodeMeaning(row.code));
        EXPECT_EQ(answer["error"].contains("failure_reason"), std::string(row.name) == "session refused");
        EXPECT_EQ(json.error, "");
    }
}

TEST(Ctl, UsageErrorsEndWithTwo)
{
    const Texts rows[] = {
        {},
        {"frobnicate"},
        {"info", "extra"},
        {"info", "--sim", "wimax"},
        {"info", "--sim", "cdma:51"},
        {"info", "--sim", "cdma:5102"},
        {"power", "sideways"},
        {"disconnect"},
        {"disconnect", "-1"},
        {"network", "prefer"},
        {"connect", "--hold", "--keep", "--sim", "cdma"},
        {"events", "--sim", "cdma"},
        {"events", "--all", "5", "--sim", "cdma"},
        {"events", "NoSuchEvent", "--sim", "cdma"},
        {"events", "5", "--count", "0", "--sim", "cdma"},
        {"events", "5", "--scenario", "x"},
        {"demo"},
        {"sim"},
        {"sim", "command", "--sim", "cdma"},
        {"sim", "exec", "cdma"},
        {"sim", "exec", "--", "/bin/true"},
        {"codes", "--", "/bin/true"},
    };
    for (Texts row : rows) {
        std::string name;
        for (const std::string& argument : row)
            name += argument + " ";
        SCOPED_TRACE(name);
        const Result text = RunClient(row);
        EXPECT_EQ(text.status, 2);
        EXPECT_EQ(text.output, "");
        EXPECT_EQ(text.error.substr(0, 7), "error: ");

        row.insert(row.begin(), "--json");
        const Result json = RunClient(row);
        EXPECT_EQ(json.status, 2);
        const Json answer = Parse(json.output);
        EXPECT_EQ(answer["ok"], false) << json.output;
        EXPECT_EQ(answer["error"]["name"], "USAGE_ERROR");
        EXPECT_EQ(answer["error"]["code"], nullptr);
        EXPECT_EQ(json.error, "");
    }
}

// Whatever ends the client, nothing of it stays behind.
TEST(Ctl, TemporaryFoldersAreRemoved)
{
    const struct {
        const char* name;
        Texts arguments;
        const char* ready; // a line that is waited for before the signal; null: no signal
        int signal;
        int status;
    } rows[] = {
        {"success", {"info", "--sim", "umts"}, nullptr, 0, 0},
        {"failure", {"disconnect", "9", "--sim", "umts"}, nullptr, 0, 1},
        {"listening interrupted",
         {"events", "5", "--sim", "cdma", "--scenario", "power.sim", "--timeout", "60"},
         "PowerState (5) power_state=4 radio_on=no",
         SIGINT,
         0},
        {"program passed a signal on",
         {"sim", "exec", "cdma", "--", "/bin/sh", "-c", "echo ready; exec sleep 60"},
         "ready",
         SIGTERM,
         128 + 15},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const ScratchFolder folder;
        std::filesystem::create_directory(folder.Path("tmp"));
        Texts arguments = row.arguments;
        for (std::string& argument : arguments)
            if (argument == "power.sim") argument = folder.Write("power.sim", "emit power 6\n");
        ChildProcess child(Talvekctl(arguments, {{"TMPDIR", folder.Path("tmp")}}));
        if (row.ready) {
            EXPECT_EQ(child.ReadLine(), row.ready);
            EXPECT_FALSE(std::filesystem::is_empty(folder.Path("tmp")));
            child.Signal(row.signal);
        }
        EXPECT_EQ(child.Finish(), row.status) << child.Error();
        EXPECT_TRUE(std::filesystem::is_empty(folder.Path("tmp")));
    }
}

TEST(Ctl, ConnectShowsTheAddressesAndEndsTheSession)
{
    const Json ip = {{"address", "192.0.2.10"},
                     {"subnet_mask", "255.255.255.0"},
                     {"gateway", "192.0.2.1"},
                     {"primary_dns", "192.0.2.53"},
                     {"secondary_dns", "192.0.2.54"}};
    const Result plain = RunClient({"connect", "--sim", "umts", "--json", "--apn", "internet"});
    EXPECT_EQ(plain.status, 0) << plain.output;
    EXPECT_EQ(Parse(plain.output)["result"], (Json{{"handle", 0x1001}, {"ip", ip}, {"session", "ended"}}));
    EXPECT_EQ(Parse(RunClient({"connect", "--sim", "umts", "--json", "--keep"}).output)["result"]["session"], "kept");

    ChildProcess held(Talvekctl({"connect", "--sim", "umts", "--json", "--hold"}));
    EXPECT_EQ(Parse(held.ReadLine())["result"]["session"], "held");
    held.Signal(SIGINT);
    EXPECT_EQ(held.Finish(), 0) << held.Output();

    // A stop that fails shows that the interruption led to one.
    const ScratchFolder folder;
    const std::string stuck = folder.Write("stuck.sim", "fail StopDataSession 5\n");
    ChildProcess refused(Talvekctl({"connect", "--sim", "umts", "--json", "--hold"}, {{"TALVEK_SIM_SCENARIO", stuck}}));
    EXPECT_NE(refused.ReadLine(), "");
    refused.Signal(SIGTERM);
    EXPECT_EQ(Parse(refused.ReadLine())["error"]["function"], "OrvStopDataSession");
    EXPECT_EQ(refused.Finish(), 1);

    const std::string dropped = folder.Write("dropped.sim", "after 200 emit session 1 3\n");
    const Result lost = RunClient({"connect", "--sim", "umts", "--hold"}, {{"TALVEK_SIM_SCENARIO", dropped}});
    EXPECT_EQ(lost.status, 1);
    EXPECT_TRUE(Contains(lost.error, "the module ended the data session")) << lost.error;
}

// The simulated module keeps 127 octets of each text and refuses a longer one: so it has been given it.
TEST(Ctl, ConnectHandsItsTextsToTheModule)
{
    const struct {
        const char* name;
        Texts arguments;
        std::string input;
    } rows[] = {
        {"apn", {"--apn", std::string(128, 'a')}, ""},
        {"user", {"--user", std::string(128, 'u')}, ""},
        {"password", {"--password-stdin"}, std::string(128, 'p')},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ChildSetup setup = Talvekctl({"connect", "--sim", "umts", "--json"});
        setup.command.insert(setup.command.end(), row.arguments.begin(), row.arguments.end());
        setup.input = row.input;
        EXPECT_EQ(Parse(RunClient(setup).output)["error"]["function"], "OrvStartDataSession");
        if (row.input.empty())
            setup.command.back().pop_back();
        else
            setup.input.pop_back();
        EXPECT_EQ(Parse(RunClient(setup).output)["ok"], true);
    }
}

TEST(Ctl, PasswordsAreNeverShown)
{
    const std::string secret = "correct-horse";
    ChildSetup piped = Talvekctl({"connect", "--sim", "cdma", "--user", "me", "--password-stdin"});
    piped.input = secret + "\n";
    const Result result = RunClient(piped);
    EXPECT_EQ(result.status, 0) << result.error;
    EXPECT_FALSE(Contains(result.output + result.error, secret));

    const struct {
        const char* name;
        std::string input;
    } refused[] = {{"empty", ""}, {"too long", std::string(256, 'x')}, {"zero octet", std::string("a\0b\n", 4)}};
    for (const auto& row : refused) {
        SCOPED_TRACE(row.name);
        piped.input = row.input;
        EXPECT_EQ(RunClient(piped).status, 2);
    }
}

// The echo is off while the password is typed, and on again afterwards, however that ends.
TEST(Ctl, ATerminalDoesNotEchoThePassword)
{
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_TRUE(terminal >= 0 && grantpt(terminal) == 0 && unlockpt(terminal) == 0);
    const int user_side = open(ptsname(terminal), O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_GE(user_side, 0);
    const auto echoes = [user_side] {
        termios settings = {};
        return tcgetattr(user_side, &settings) == 0 && (settings.c_lflag & ECHO) != 0;
    };
    const ScratchFolder folder;
    std::filesystem::create_directory(folder.Path("tmp"));
    ChildSetup setup = Talvekctl({"connect", "--sim", "cdma", "--password-stdin"}, {{"TMPDIR", folder.Path("tmp")}});
    setup.terminal = user_side;
    const struct {
        const char* name;
        const char* typed;
        int signal;
        int status;
    } rows[] = {{"typed", "correct-horse\n", 0, 0}, {"interrupted", "", SIGTERM, 1000 + SIGTERM}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ASSERT_TRUE(echoes());
        ChildProcess child(setup);
        EXPECT_TRUE(child.ReadErrorUntil("Password: "));
        EXPECT_FALSE(echoes());
        const std::string typed = row.typed;
        EXPECT_EQ(write(terminal, typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
        if (row.signal) child.Signal(row.signal);
        EXPECT_EQ(child.Finish(), row.status) << child.Error();
        EXPECT_TRUE(echoes());
        EXPECT_FALSE(Contains(child.Output() + child.Error(), "correct-horse"));
        EXPECT_TRUE(std::filesystem::is_empty(folder.Path("tmp")));
    }
    close(user_side);
    close(terminal);
}

TEST(Ctl, CodesListsEveryResultWithItsMeaning)
{
    const Result result = RunClient({"codes", "--json"});
    EXPECT_EQ(result.status, 0);
    const Json codes = Parse(result.output)["result"]["codes"];
    std::vector<int> numbers;
    for (const Json& row : codes) {
        numbers.push_back(row["code"]);
        EXPECT_NE(row["name"], "ORV_RCODE_?") << row;
        EXPECT_NE(row["meaning"], "unknown result code") << row;
    }
    EXPECT_EQ(numbers, (std::vector<int>{0, 1, 2, 4, 5, 6, 7, 9, 10, 17, 18, 19, 353, 354, 600}));
    EXPECT_EQ(RunClient({"codes"}).lines.size(), codes.size());
}

TEST(Ctl, HelpAndVersionAnswerInEitherForm)
{
    EXPECT_EQ(RunClient({"--version"}).lines.at(0).substr(0, 10), "talvekctl ");
    EXPECT_EQ("talvekctl " + Parse(RunClient({"--version", "--json"}).output)["result"]["version"].get<std::string>(),
              RunClient({"--version"}).lines.at(0));
    const Result help = RunClient({"connect", "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(Contains(help.output, "--password-stdin")) << help.output;
    EXPECT_EQ(Parse(RunClient({"connect", "--help", "--json"}).output)["result"]["text"].get<std::string>() + "\n",
              help.output);
}

TEST(Ctl, AnOutputThatCannotBeWrittenIsAFailure)
{
    for (const Texts& arguments :
         {Texts{"codes"}, Texts{"codes", "--json"}, Texts{"--help"}, Texts{"demo", "--sim", "cdma"}}) {
        SCOPED_TRACE(arguments[0]);
        ChildSetup setup = Talvekctl(arguments);
        setup.output_file = "/dev/full";
        const Result result = RunClient(setup);
        EXPECT_EQ(result.status, 1);
        EXPECT_TRUE(Contains(result.error, "standard output")) << result.error;
    }
}

} // namespace
