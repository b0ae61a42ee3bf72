// The client's commands for the networks of a GSM/UMTS module.

#include "tests/support/scratch_folder.h"
#include "tests/support/talvekctl.h"

#include <gtest/gtest.h>
#include <signal.h>

namespace {

using namespace talvekctl;

class CtlNetwork : public ::testing::Test {
public:
    // "network ARGUMENTS" on a module that the lines have prepared.
    ChildSetup Network(const std::string& model, Texts arguments, const std::string& lines)
    {
        arguments.insert(arguments.begin(), {"--sim", model, "network"});
        return Talvekctl(arguments, {{"TALVEK_SIM_SCENARIO", folder.Write("module.sim", lines)}});
    }

    ScratchFolder folder;
};

TEST_F(CtlNetwork, AnswersWithWhatTheModuleSays)
{
    // clang-format off
    const Json found = {{"name", "\xC3\xA9t\\"}, {"mcc", 262}, {"mnc", 410}, {"technology", "UMTS"}, {"in_use", false},
                        {"preferred", false}, {"roaming", true}, {"forbidden", true}};
    const Json first = {{"index", 1}, {"operator", "Second Network"}, {"format", 0}, {"format_name", "long"},
                        {"technologies", {"GSM", "UTRAN"}}};
    const struct {
        Texts arguments;
        const char *model, *lines;
        Json part; // of the result
        const char* text;
    } rows[] = {
        {{"scan"}, "umts:5111", "set scan.networks 1:1:4:4 262:410:5:3\nset scan.names \"Test Network|\\xe9t\\\\\"\n",
         {{"networks", {{1, found}}}}, "\xC3\xA9t\\           262  410  UMTS        roaming, forbidden"},
        {{"scan"}, "umts", "set scan.networks none\n", {{"networks", Json::array()}}, "No network was found"},
        {{"register", "auto"}, "umts", "set network.registration 0\n", {{"mode_name", "automatic"}, {"mnc", 1}}, "0 (automatic)"},
        {{"register", "001", "02"}, "umts", "", {{"mode_name", "manual"}, {"network_name", "Second Network"}}, "02"},
        {{"register", "1", "1", "--gsm"}, "umts", "", {{"radio_interface_name", "GSM"}}, "4 (GSM)"},
        {{"detach"}, "umts", "", {{"detached", true}}, "detached"},
        {{"status"}, "umts", "set network.cs 2\n", {{"service_domain_name", "packet-switched"}, {"cs_state_name", "detached"},
          {"imsi", "001010123456789"}, {"imei", "001017400000018"}, {"channel", 10700}}, "1 (packet-switched)"},
        {{"status"}, "umts", "fail GetIMSI 11\nset identity.imei \"\"\nset network.registration 9\n",
         {{"imsi", nullptr}, {"imei", nullptr}, {"registration_name", nullptr}}, "IMEI                      -"},
        {{"preferred", "list", "--format", "long"}, "umts", "set operators.list 1:1:2:2:5 7:262:1:2:0\n",
         {{"operators", {{0, first}}}}, "7      26201           numeric  -"},
        {{"preferred", "add", "26201", "--access", "gsm"}, "umts", "", {{"index", nullptr}, {"format", "numeric"}}, "chosen by"},
        {{"preferred", "remove", "2"}, "umts", "", {{"index", 2}}, "2 (removed)"},
    };
    // clang-format on
    for (const auto& row : rows) {
        SCOPED_TRACE(row.arguments[0] + " " + row.lines);
        const std::string lines = std::string("set scan.duration-ms 0\n") + row.lines;
        const Result text = RunClient(Network(row.model, row.arguments, lines));
        EXPECT_EQ(text.status, 0) << text.error;
        EXPECT_TRUE(Contains(text.output, row.text)) << text.output;
        Texts arguments = row.arguments;
        arguments.push_back("--json");
        const Result json = RunClient(Network(row.model, arguments, lines));
        EXPECT_EQ(json.error, "");
        Json result = Parse(json.output)["result"];
        for (const auto& [name, value] : row.part.items()) {
            const bool is_element = value.is_array() && !value.empty(); // its place, and what stands there
            EXPECT_EQ(is_element ? result[name][value[0][0].get<size_t>()] : result[name],
                      is_element ? value[0][1] : value);
        }
    }
}

TEST_F(CtlNetwork, AnUnhappyEndIsAFailure)
{
    const struct {
        Texts arguments;
        const char *model, *lines;
        int status;
        const char* error;
    } rows[] = {
        {{"register", "1", "3", "--gsm"}, "umts", "", 1, "denied"},
        {{"register", "262", "1"}, "umts", "", 1, "no network could be registered with"},
        {{"register", "--timeout", "0"}, "umts", "set network.registration 2\n", 1, "the time is up"},
        {{"register", "1", "1000"}, "umts", "", 2, "'1000'"},
        {{"register", "auto", "--gsm"}, "umts", "", 2, "--gsm"},
        {{"scan"}, "cdma", "", 1, "OrvStartPLMNSearch"},
        {{"scan", "--timeout", "0.1"}, "umts", "set scan.duration-ms 60000\n", 1, "the scan is not over"},
        {{"preferred", "add", "a\"b"}, "umts", "", 1, "OrvAddPreferredOperatorGobi"},
    };
    for (const auto& row : rows) {
        const Result result = RunClient(Network(row.model, row.arguments, row.lines));
        EXPECT_EQ(result.status, row.status) << row.error;
        EXPECT_TRUE(Contains(result.error, row.error)) << row.error << " in " << result.error;
    }
}

TEST_F(CtlNetwork, AScanShowsProgressAndCanBeInterrupted)
{
    const Result scan = RunClient(Network("umts", {"scan"}, "set scan.duration-ms 1100\n"));
    EXPECT_TRUE(Contains(scan.error, "Scanning for networks: 1 s")) << scan.error;
    ChildProcess child(Network("umts", {"scan"}, "set scan.duration-ms 60000\n"));
    ASSERT_TRUE(child.ReadErrorUntil("Scanning for networks: 0 s"));
    child.Signal(SIGINT);
    EXPECT_EQ(child.Finish(), 1);
    EXPECT_TRUE(Contains(child.Error(), "the scan was interrupted")) << child.Error();
}

} // namespace
