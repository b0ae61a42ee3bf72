// The client's commands for the SIM card.

#include "talvek/gsm_sim.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/talvekctl.h"

#include <gtest/gtest.h>

namespace {

using namespace talvekctl;

Result RunOnCard(const Texts& arguments, const std::string& input, const std::string& scenario,
                 const char* model = "umts")
{
    const ScratchFolder folder;
    Texts all = arguments;
    all.insert(all.end(), {"--sim", model});
    ChildSetup setup = Talvekctl(all, {{"TALVEK_SIM_SCENARIO", folder.Write("module.sim", scenario)}});
    setup.input = input;
    return RunClient(setup);
}

TEST(CtlGsmSim, AnswersWithWhatTheCardSays)
{
    const char* const lock = "set pin1.enabled 1\n";
    const struct {
        Texts arguments;
        const char *input, *scenario;
        const char* command;
        Json result;
        const char* text; // a part of the answer without --json
    } rows[] = {
        {{"sim", "status"},
         "",
         lock,
         "sim status",
         {{"state", 2},
          {"state_name", "PIN required"},
          {"locked", true},
          {"pin1_attempts", 3},
          {"puk1_attempts", 10},
          {"pin2_attempts", 3},
          {"puk2_attempts", 10}},
         "2 (PIN required)"},
        {{"sim", "pin", "status"},
         "",
         "set pin2.attempts 4294967295\n",
         "sim pin status",
         {{"locked", false},
          {"pin1_attempts", 3},
          {"puk1_attempts", 10},
          {"pin2_attempts", nullptr},
          {"puk2_attempts", nullptr}},
         "PIN2 attempts left  -"},
        {{"sim", "lock"}, "", lock, "sim lock", {{"locked", true}}, "on"},
        {{"sim", "pin", "verify"}, "1234\n", lock, "sim pin verify", {{"state", 1}, {"state_name", "ready"}}, "ready"},
        {{"sim", "pin", "enable"}, "1234\n", "", "sim pin enable", {{"locked", true}}, "on"},
        {{"sim", "pin", "disable"}, "1234\n", lock, "sim pin disable", {{"locked", false}}, "off"},
        {{"sim", "pin", "change"},
         "1234\n4321\n",
         lock,
         "sim pin change",
         {{"pin", "PIN1"}, {"state", 1}, {"state_name", "ready"}},
         "PIN1"},
        {{"sim", "puk", "--pin2"},
         "87654321\n4321\n",
         "set pin2.attempts 0\n",
         "sim puk",
         {{"pin", "PIN2"}, {"state", 1}, {"state_name", "ready"}},
         "PIN2"},
        {{"sim", "file", "read", "imsi"},
         "",
         "",
         "sim file read",
         {{"file", 0x6F07},
          {"name", "imsi"},
          {"structure", "transparent"},
          {"size", 9},
          {"data", "080910101032547698"},
          {"reading", "001010123456789"}},
         "001010123456789"},
        {{"sim", "file", "read", "0x2fe2"},
         "",
         "set card.application 1\n",
         "sim file read",
         {{"file", 0x2FE2},
          {"name", "iccid"},
          {"structure", "transparent"},
          {"size", 10},
          {"data", "98880100000000000081"},
          {"reading", "89881000000000000018"}},
         "89881000000000000018"},
        {{"sim", "file", "read", "SPN"},
         "",
         "set file.spn 018004220440FFFF\n",
         "sim file read",
         {{"file", 0x6F46},
          {"name", "spn"},
          {"structure", "transparent"},
          {"size", 8},
          {"data", "018004220440ffff"},
          {"reading", "\u0422\u0440"}},
         "\u0422\u0440"},
        {{"sim", "file", "read", "6F39", "--record", "2"},
         "",
         "set file.acm 000001000102\n",
         "sim file read",
         {{"file", 0x6F39},
          {"name", "acm"},
          {"structure", "cyclic"},
          {"size", 6},
          {"record_size", 3},
          {"record_count", 2},
          {"records", {{{"record", 2}, {"data", "000102"}, {"reading", "258"}}}}},
         "000102"},
        {{"sim", "apdu", "a0a40000027f20"},
         "",
         "",
         "sim apdu",
         {{"data", nullptr}, {"sw1", 0x9F}, {"sw2", 23}, {"meaning", "23 octets wait"}},
         "9F 17 (23 octets wait)"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.arguments.back() + ", " + row.command);
        const Result text = RunOnCard(row.arguments, row.input, row.scenario);
        EXPECT_EQ(text.status, 0) << text.error;
        EXPECT_TRUE(Contains(text.output, row.text)) << text.output;
        Texts arguments = row.arguments;
        arguments.push_back("--json");
        const Result json = RunOnCard(arguments, row.input, row.scenario);
        EXPECT_EQ(Parse(json.output), (Json{{"ok", true}, {"command", row.command}, {"result", row.result}}));
    }
    const Result cdma = RunOnCard({"sim", "status", "--json"}, "", "", "cdma");
    EXPECT_EQ(Parse(cdma.output)["result"]["state"], 1);
    EXPECT_EQ(Parse(cdma.output)["result"]["pin1_attempts"], nullptr);
}

TEST(CtlGsmSim, ARefusalTellsWhyAndHowOftenOneMayTryAndNeverTheSecret)
{
    const struct {
        Texts arguments;
        const char *input, *scenario;
        Json error; // members that matter
    } rows[] = {
        {{"sim", "pin", "verify"},
         "2345\n",
         "set pin1.enabled 1\n",
         {{"function", "OrvSetSimVerifyGobi"}, {"code", 5}, {"cme_error", 16}, {"attempts_left", 2}}},
        {{"sim", "pin", "enable"},
         "2345\n",
         "set pin1.attempts 0\n",
         {{"function", "OrvSetSimLockGobi"}, {"code", 5}, {"cme_error", 12}, {"attempts_left", 0}}},
        {{"sim", "puk", "--pin2"},
         "23456789\n2345\n",
         "",
         {{"function", "OrvSetSimPasswordGobi"}, {"code", 5}, {"cme_error", 16}, {"attempts_left", 9}}},
        {{"sim", "file", "read", "6F99"}, "", "", {{"function", "OrvGetSIMRecordStatus"}, {"code", 6}}},
        {{"sim", "file", "read", "imsi"}, "", "set pin1.enabled 1\n", {{"name", "CLIENT_ERROR"}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.arguments[1] + " " + row.arguments.back());
        Texts arguments = row.arguments;
        arguments.push_back("--json");
        const Result result = RunOnCard(arguments, row.input, row.scenario);
        EXPECT_EQ(result.status, 1);
        const Json error = Parse(result.output)["error"];
        for (const auto& [name, value] : row.error.items())
            EXPECT_EQ(error[name], value) << result.output;
        EXPECT_FALSE(Contains(result.output + result.error, "2345")) << result.output;
    }
    const Texts usage[] = {{"sim", "pin"},
                           {"sim", "pin", "verify"},
                           {"sim", "file", "read"},
                           {"sim", "file", "read", "6F0"},
                           {"sim", "file", "read", "imsi", "--record", "1"},
                           {"sim", "file", "read", "adn", "--record", "11"},
                           {"sim", "apdu", "A0A"},
                           {"sim", "apdu", "A0xx"}};
    for (const Texts& row : usage)
        EXPECT_EQ(RunOnCard(row, "", "").status, 2) << row.back();
}

} // namespace
