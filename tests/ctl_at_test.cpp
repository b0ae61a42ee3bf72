// The client's commands over the AT port.

#include "talvek/at.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/talvekctl.h"

#include <gtest/gtest.h>

namespace {

using namespace talvekctl;

std::string Line(const Texts& arguments)
{
    std::string line;
    for (const std::string& argument : arguments)
        line += argument + " ";
    return line;
}

TEST(CtlAt, AnswersWithWhatTheModuleSays)
{
    const ScratchFolder folder;
    const Environment environment = {
        {"TALVEK_SIM_SCENARIO", folder.Write("module.sim", "set at.calls 2\nset at.clir-service 9\n"
                                                           "set at.mdn 0000000000\n")}};
    const struct {
        Texts arguments;
        Json result;
        const char* text; // a part of the answer without --json
    } rows[] = {
        {{"at", "clip", "--sim", "umts"},
         {{"action", "get"}, {"mode", 0}, {"mode_name", "off"}, {"service", 1}, {"service_name", "provisioned"}},
         "0 (off)"},
        {{"at", "clip", "1", "--sim", "umts"},
         {{"action", "set"}, {"mode", 1}, {"mode_name", "on"}, {"service", 1}, {"service_name", "provisioned"}},
         "1 (on)"},
        {{"at", "clir", "2", "--sim", "umts"},
         {{"action", "set"}, {"mode", 2}, {"mode_name", "shown"}, {"service", 9}, {"service_name", nullptr}},
         "2 (shown)"},
        {{"at", "colp", "--sim", "umts"},
         {{"action", "get"}, {"mode", 0}, {"mode_name", "off"}, {"service", 1}, {"service_name", "provisioned"}},
         "1 (provisioned)"},
        {{"at", "colr", "--sim", "umts"}, {{"service", 0}, {"service_name", "not provisioned"}}, "not provisioned"},
        {{"at", "release", "2", "--sim", "umts"}, {{"call", 2}}, "2"},
        {{"at", "enum", "a \"b\"", "--sim", "cdma"}, {{"setting", "a \"b\""}}, "a \"b\""},
        {{"at", "side-tone", "-5", "0x1f", "--sim", "umts"}, {{"first", -5}, {"second", 31}}, "-5"},
        {{"at", "reset", "--sim", "cdma"}, Json::object(), "resetting"},
        {{"at", "rtn", "1", "--sim", "cdma"}, {{"reset", "1"}}, "1"},
        {{"at", "provisioned", "--sim", "cdma"}, {{"six_zeros", true}}, "yes"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Line(row.arguments));
        const Result text = RunClient(row.arguments, environment);
        EXPECT_EQ(text.status, 0) << text.error;
        EXPECT_TRUE(Contains(text.output, row.text)) << text.output;
        Texts arguments = row.arguments;
        arguments.push_back("--json");
        const Result json = RunClient(arguments, environment);
        EXPECT_EQ(json.status, 0) << json.output;
        const std::string command = row.arguments[0] + " " + row.arguments[1];
        EXPECT_EQ(Parse(json.output), (Json{{"ok", true}, {"command", command}, {"result", row.result}}));
    }
}

TEST(CtlAt, ErrorsNameTheFunction)
{
    const struct {
        Texts arguments;
        const char* function;
        ORV_RCODE code;
    } rows[] = {
        {{"at", "clip", "--sim", "cdma"}, "OrvATGetCLIP", ORV_RCODE_UNSUPPORTED},
        {{"at", "clip", "7", "--sim", "umts"}, "OrvATSetCLIP", ORV_RCODE_FAILED},
        {{"at", "colr", "--sim", "cdma"}, "OrvATGetCOLR", ORV_RCODE_UNSUPPORTED},
        {{"at", "release", "2", "--sim", "umts"}, "OrvATReleaseCall", ORV_RCODE_FAILED},
        {{"at", "side-tone", "1", "2", "--sim", "cdma"}, "OrvATSetSideToneGain", ORV_RCODE_PORT_NOT_OPEN},
        {{"at", "enum", std::string(300, 'x'), "--sim", "umts"}, "OrvATSetEnum", ORV_RCODE_BAD_PARAMETER},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(Line(row.arguments));
        Texts arguments = row.arguments;
        arguments.push_back("--json");
        const Result result = RunClient(arguments);
        EXPECT_EQ(result.status, 1);
        const Json answer = Parse(result.output);
        EXPECT_EQ(answer["error"]["function"], row.function) << result.output;
        EXPECT_EQ(answer["error"]["code"], static_cast<int>(row.code));
    }
}

TEST(CtlAt, UsageErrorsEndWithTwo)
{
    const Texts rows[] = {
        {"at"},
        {"at", "frobnicate"},
        {"at", "clip", "256"},
        {"at", "clip", "-1"},
        {"at", "colp", "1"}, // there is nothing to set
        {"at", "release"},
        {"at", "side-tone", "1"},
        {"at", "side-tone", "1", "2147483648"},
        {"at", "enum"},
    };
    for (const Texts& row : rows) {
        SCOPED_TRACE(Line(row));
        EXPECT_EQ(RunClient(row).status, 2);
    }
}

} // namespace
