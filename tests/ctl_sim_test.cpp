// The command-line client: events, and the commands for the simulated module.

#include "tests/support/scratch_folder.h"
#include "tests/support/talvekctl.h"

#include <gtest/gtest.h>

namespace {

using namespace talvekctl;

// The session's events come on the module's clock; the scenarios move it.
TEST(CtlSim, EventsArePrintedAsTheyAreDelivered)
{
    const ScratchFolder folder;
    const struct {
        const char* name;
        const char* model;
        Texts identifiers;
        const char* scenario;
        std::vector<Json> expected; // id, name, payload
    } rows[] = {
        {"power, by number and by name",
         "cdma",
         {"5", "radiooff"},
         "emit power 6\n",
         {{5, "PowerState", {{"power_state", 4}, {"radio_on", false}}}, {2018, "RadioOff", {{"radio_off", true}}}}},
        {"only what was asked for", "cdma", {"ModemReset"}, "emit power 4\n", {{105, "ModemReset", Json::object()}}},
        {"a call's four events",
         "umts",
         {"2029", "1012", "1007", "1008"},
         "emit session 2 0\nemit session 4 0\nemit session 1 3\n",
         {{1008, "CallConnected", {{"status", 4}, {"call_id", 0}, {"service_option", 33}}},
          {2029, "PktSessionCall", {{"connected", true}, {"end_reason", nullptr}}},
          {1007, "CallOriginating", {{"call_type", 257}, {"status", 1}, {"number", "Gobi Number"}}},
          {2029, "PktSessionCall", {{"connected", true}, {"end_reason", nullptr}}},
          {1012, "CallDisconnected", {{"status", 0}, {"call_id", 0}, {"end_reason", 0}}},
          {2029, "PktSessionCall", {{"connected", false}, {"end_reason", 30}}}}},
        {"signal",
         "cdma",
         {"103", "1039", "1040", "1002"},
         "emit signal -70 1\n",
         {{103, "SignalStrength", {{"rssi_dbm", -75}, {"ecio", nullptr}}},
          {1002, "CdmaService", {{"service", true}, {"value", 2}}},
          {1039, "HdrSignalStrength", {{"rssi_dbm", -80}}},
          {1040,
           "CdmaSignalQuality",
           {{"cdma_ecio", nullptr}, {"cdma_rssi_dbm", -75}, {"hdr_ecio", nullptr}, {"hdr_rssi_dbm", -80}}}}},
        {"carried by another",
         "cdma",
         {"NetworkTime", "EmergencyMode"},
         "emit nitz 2012 11 24 9 30 15 6 8 1\nemit emergency-mode 1\n",
         {{116,
           "NetworkTime",
           {{"year", 2012},
            {"month", 11},
            {"day", 24},
            {"day_of_week", 6},
            {"hour", 9},
            {"minute", 30},
            {"second", 15},
            {"time_zone", 8},
            {"daylight_saving", 1}}},
          {1030, "EmergencyMode", {{"mode", 1}}}}},
        {"messages",
         "umts",
         {"500", "502", "2020"},
         "emit sms 1 4\nemit broadcast 0 0 2 00ff41\nemit voicemail 0:1:255\nemit voicemail 0:1:3\n",
         {{500, "NewSMS", Json::object()},
          {502, "CellBroadcast", {{"data_type", 2}, {"length", 3}, {"data", "00ff41"}}},
          {2020, "VoiceMail", {{"active", true}, {"waiting", nullptr}}},
          {2020, "VoiceMail", {{"active", true}, {"waiting", 3}}}}},
        {"activation",
         "cdma",
         {"1032"},
         "emit activation 0\nemit activation 10\n",
         {{1032, "ActivationStatus", {{"state", nullptr}}}, {1032, "ActivationStatus", {{"state", 8}}}}},
        {"byte totals",
         "umts",
         {"2012"},
         "emit bytes 4294967297 2\n",
         {{2012, "GsmByteTotals", {{"bytes_sent", 1}, {"bytes_received", 2}}}}},
        {"removal, which nothing enables",
         "umts",
         {"DeviceRemoved"},
         "emit removal 0\n",
         {{1, "DeviceRemoved", Json::object()}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const std::string scenario = folder.Write("scenario.sim", row.scenario);
        Texts arguments = {"events", "--sim",     row.model, "--json", "--scenario",
                           scenario, "--timeout", "30",      "--count"};
        arguments.push_back(std::to_string(row.expected.size()));
        arguments.insert(arguments.end(), row.identifiers.begin(), row.identifiers.end());
        const Result result = RunClient(arguments);
        EXPECT_EQ(result.status, 0) << result.output << result.error;
        std::vector<Json> lines;
        for (const Json& event : row.expected)
            lines.push_back({{"event", {{"id", event[0]}, {"name", event[1]}, {"payload", event[2]}}}});
        lines.push_back(
            {{"ok", true}, {"command", "events"}, {"result", {{"delivered", row.expected.size()}, {"lost", 0}}}});
        std::vector<Json> seen;
        for (const std::string& line : result.lines)
            seen.push_back(Parse(line));
        EXPECT_EQ(seen, lines) << result.output;
    }
}

TEST(CtlSim, EventsEndWithTheirCountOrFailWithTheTime)
{
    const ScratchFolder folder;
    const std::string scenario = folder.Write("three.sim", "emit session 2 0\nemit session 1 0\nemit session 2 0\n");
    const Texts common = {"events", "2029", "--sim", "umts", "--scenario", scenario};
    Texts two = common, four = common, listen = {"events", "2029", "--sim", "umts", "--timeout", "0.05"};
    two.insert(two.end(), {"--count", "2"});
    four.insert(four.end(), {"--count", "4", "--timeout", "0.2"});

    const Result enough = RunClient(two);
    EXPECT_EQ(enough.status, 0) << enough.error;
    EXPECT_EQ(enough.lines, (Texts{"PktSessionCall (2029) connected=yes end_reason=-",
                                   "PktSessionCall (2029) connected=no end_reason=30"}));
    const Result late = RunClient(four);
    EXPECT_EQ(late.status, 1);
    EXPECT_EQ(late.lines.size(), 3u) << late.output;
    EXPECT_TRUE(Contains(late.error, "3 of 4 events")) << late.error;
    EXPECT_EQ(RunClient(listen).status, 0);
}

TEST(CtlSim, RunPrintsEverythingAScenarioCauses)
{
    const ScratchFolder folder;
    const std::string scenario =
        folder.Write("run.sim", "# everything that can be enabled is\nclock virtual\nafter 1000 emit power 6\nafter "
                                "500 emit session 2 0\nadvance 1000\n");
    const Result result = RunClient({"sim", "run", scenario, "--sim", "cdma", "--json"});
    EXPECT_EQ(result.status, 0) << result.output;
    std::vector<int> ids;
    for (const std::string& line : result.lines)
        if (const Json json = Parse(line); json.contains("event")) ids.push_back(json["event"]["id"]);
    EXPECT_EQ(ids, (std::vector<int>{1008, 2029, 5, 2018}));

    // What is still to come when the scenario is over, on the live clock, is waited for.
    const std::string later = folder.Write("later.sim", "after 700 emit session 1 0\n");
    EXPECT_EQ(RunClient({"sim", "run", later, "--sim", "cdma"}).lines.size(), 2u);

    const std::string wrong = folder.Write("wrong.sim", "emit power 6\nemit thunder 1\n");
    const Result fault = RunClient({"sim", "run", wrong, "--sim", "cdma"});
    EXPECT_EQ(fault.status, 1);
    EXPECT_TRUE(Contains(fault.error, wrong + ": line 2: ")) << fault.error;
    EXPECT_EQ(RunClient({"sim", "run", folder.Path("absent.sim"), "--sim", "cdma"}).status, 1);
}

TEST(CtlSim, CommandGivesTheSimulatorsAnswers)
{
    const Result result =
        RunClient({"sim", "command", "set network.name \"A B\"", "get network.name", "--sim", "umts", "--json"});
    EXPECT_EQ(result.status, 0) << result.output;
    const Json replies = Parse(result.output)["result"]["replies"];
    ASSERT_EQ(replies.size(), 2u);
    EXPECT_EQ(replies[1], (Json{{"line", "get network.name"}, {"reply", "A B"}}));
    const Result wrong = RunClient({"sim", "command", "get no.field", "--sim", "umts"});
    EXPECT_EQ(wrong.status, 1);
    EXPECT_TRUE(Contains(wrong.error, "no.field")) << wrong.error;
}

// The client that prints its module, as the program that `sim exec` runs.
Texts ExecInfo(const Texts& module)
{
    Texts arguments = {"sim", "exec"};
    for (const Texts& part : {module, Texts{"--"}, kClient, Texts{"info", "--json"}})
        arguments.insert(arguments.end(), part.begin(), part.end());
    return arguments;
}

TEST(CtlSim, ExecRunsAProgramAgainstASimulatedModule)
{
    const ScratchFolder folder;
    const Environment environment = {{"TMPDIR", folder.Path("")}};
    const Result shown = RunClient({"sim", "exec", "umts:5141", "--", "/usr/bin/env"}, environment);
    EXPECT_EQ(shown.status, 0) << shown.error;
    EXPECT_TRUE(Contains(shown.output, "TALVEK_SIM=umts:5141\n")) << shown.output;
    EXPECT_TRUE(Contains(shown.output, std::string("TALVEK_LIBRARY_PATH=") + TALVEK_SIM_DIRECTORY + "\n"))
        << shown.output;
    EXPECT_TRUE(Contains(shown.output, "TALVEK_REGISTRY=" + folder.Path(""))) << shown.output;
    EXPECT_TRUE(Contains(shown.output, "TALVEK_SIM_PORT=" + folder.Path(""))) << shown.output;

    // A client that knows nothing of the simulator finds the module and its AT port.
    const std::string log = folder.Path("log");
    const Result info =
        RunClient(ExecInfo({"umts:5141"}), {{"TMPDIR", folder.Path("")}, {"TALVEK_LOG", "info:" + log}});
    EXPECT_EQ(info.status, 0) << info.output << info.error;
    EXPECT_EQ(Parse(info.output)["result"]["device_id"], 0x5141);
    EXPECT_TRUE(Contains(folder.Read("log"), "Mobile Termination Error Values set to Numeric")) << folder.Read("log");

    const std::string scenario = folder.Write("name.sim", "set identity.model Other\n");
    const Result other = RunClient(ExecInfo({"cdma", "--scenario", scenario}), environment);
    EXPECT_EQ(Parse(other.output)["result"]["model"], "Other") << other.output;
}

TEST(CtlSim, ExecReturnsTheProgramsStatus)
{
    const struct {
        const char* name;
        Texts program;
        int status;
    } rows[] = {
        {"its own", {"/bin/sh", "-c", "exit 7"}, 7},
        {"ended by a signal", {"/bin/sh", "-c", "kill -9 $$"}, 128 + 9},
        {"signals as a shell leaves them", {"/bin/sh", "-c", "kill -TERM $$; exit 5"}, 128 + 15},
        {"cannot be started", {"/nonexistent/program"}, 127},
        {"options are the program's", {"/bin/sh", "-c", "test \"$0\" = --json", "--json"}, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Texts arguments = {"sim", "exec", "cdma", "--"};
        arguments.insert(arguments.end(), row.program.begin(), row.program.end());
        EXPECT_EQ(RunClient(arguments).status, row.status);
    }
}

} // namespace
