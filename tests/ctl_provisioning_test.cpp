// The command-line client: provisioning and Mobile IP of a simulated CDMA module.

#include <gtest/gtest.h>

#include "tests/support/scratch_folder.h"
#include "tests/support/talvekctl.h"

namespace {

using namespace talvekctl;

const char* const kQuick = "set power.settle-ms 1\nset power.reset-ms 20\nset activation.step-ms 1\n"
                           "set cdma.spc 135790\nset activation.state 0\n";

class CtlProvisioning : public ::testing::Test {
protected:
    Result Run(const std::string& scenario, const std::string& command, const std::string& input = "",
               const char* model = "cdma")
    {
        Texts arguments = {"--sim", model};
        for (size_t begin = 0, end = 0; begin < command.size(); begin = end + 1) {
            end = std::min(command.find(' ', begin), command.size());
            arguments.push_back(command.substr(begin, end - begin));
        }
        ChildSetup setup =
            Talvekctl(arguments, {{"TALVEK_SIM_SCENARIO", m_folder.Write("setup.sim", kQuick + scenario)},
                                  {"TALVEK_LOG", "trace:" + m_folder.Path("log")}});
        setup.input = input;
        return RunClient(setup);
    }

    ScratchFolder m_folder;
};

TEST_F(CtlProvisioning, ASessionIsUnlockedCommittedResetAndReadBack)
{
    const std::string all = "--json provision commit --mdn 4155550100 --min 4155550188 --accolc 12 --home-sid 32 "
                            "--home-nid 5";
    const std::string code = "135790\n";
    // clang-format off
    const struct { const char* name; std::string scenario, command, input; int status;
        Json answer; /* members of the result, or of the error */ } rows[] = {
        {"all items", "", all, code, 0, {{"mdn", "4155550100"}, {"min", "4155550188"}, {"accolc", 12},
         {"home_sid", 32}, {"home_nid", 65535}, {"committed", true}}},
        {"wrong code", "", all, "135791\n", 1, {{"function", "OrvPstUnlock"}, {"code", 5}}},
        {"locked", "set cdma.spc-attempts 0\n", all, code, 1, {{"function", "OrvPstUnlock"}, {"code", 5}}},
        {"no code", "", all, "13579\n", 2, {{"name", "USAGE_ERROR"}}},
        {"class tolerated", "fail SetACCOLC 1026 from 2\n", all, code, 0, {{"accolc", 12}, {"home_sid", 32}}},
        {"activation refused", "fail ActivateManual 15\n", all, code, 1, {{"function", "OrvPstLock"}, {"code", 7}}},
        {"activation tolerated", "fail ActivateManual 1026\n", all, code, 1,
         {{"function", "OrvPstLock"}, {"code", 600}}},
        {"a module that stays away", "set power.reset-ms 60000\n", all + " --wait 3", code, 1,
         {{"name", "CLIENT_ERROR"}, {"meaning", "the module has not come back within 3 seconds"}}},
        {"a module that does not leave", "fail SetPower 3\n", all + " --wait 1", code, 1,
         {{"meaning", "the module has not left within 1 seconds"}}},
        {"a number that is not kept", "fail Set3Gpp2SubscriptionInfo 3\n", "--json provision set --mdn 1", "", 1,
         {{"meaning", "the module has the directory number 2025550123, not 1"}}},
        {"a SID alone", "", "--json provision commit --home-sid 32", code, 2, {{"name", "USAGE_ERROR"}}},
        {"nothing to commit", "", "--json provision commit --mdn 1", code, 2, {{"name", "USAGE_ERROR"}}},
        {"preferences", "", "--json provision set --unlock --mode 9 --roaming home", code, 0,
         {{"mode_name", "1x only"}, {"roaming_name", "home only"}, {"committed", false}}},
        {"no number for it", "set network.preference 2\nset cdma.roaming 4\n", "--json provision show", "", 0,
         {{"mode", nullptr}, {"mode_name", nullptr}, {"roaming", nullptr}, {"slot_cycle_index", 2}}},
        {"code", "", "--json provision unlock", code, 0, {{"unlocked", true}}},
        {"status", "", "--json provision status", "", 0,
         {{"activation", 0}, {"activation_name", "not activated"}, {"call_name", "disconnected"}}},
        {"activation", "", "--json provision activate *22899", "", 0, {{"activation", 1}, {"delivered", 10}}},
        {"activation that fails", "set activation.fail-at 4\n", "--json provision activate *22899", "", 1,
         {{"meaning", "the module has not been activated"}}},
        {"profile", "", "--json mip profile 2 --unlock --enabled on --nai u@x --primary-ha 192.0.2.9 --ha-spi 7 --use", code, 0, {{"enabled", true}, {"nai", "u@x"}, {"primary_ha", "192.0.2.9"}, {"ha_spi", 7}, {"in_use", true}}},
        {"secrets", "", "--json mip profile 0 --unlock --secrets", code + "hidden1\nhidden2\n", 0,
         {{"nai", "user@example.net"}, {"secondary_ha", "192.0.2.6"}, {"aaa_spi", 2}}},
        {"profile without a code", "", "--json mip profile 0 --use", "", 2, {{"name", "USAGE_ERROR"}}},
        {"mode", "", "--json mip mode only", "", 0, {{"action", "set"}, {"mode", 2}, {"mode_name", "only"}}},
        {"Mobile IP", "set mip.error 67\nset mip.active 3\n", "--json mip show", "", 0,
         {{"error", 67}, {"active", 3}}},
    };
    // clang-format on
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Result result = Run(row.scenario, row.command, row.input);
        EXPECT_EQ(result.status, row.status) << result.output << result.error;
        ASSERT_FALSE(result.lines.empty());
        const Json line = Parse(result.lines.back());
        const Json& answer = line[row.status == 0 ? "result" : "error"];
        for (const auto& [name, value] : row.answer.items())
            EXPECT_EQ(answer[name], value) << name << " " << result.output;
        const std::string told = result.output + result.error + m_folder.Read("log");
        EXPECT_TRUE(row.status == 2 || Contains(told, "OrvApiStartup"));
        for (const char* secret : {"135790", "hidden"})
            EXPECT_FALSE(Contains(told, secret));
    }
}

TEST_F(CtlProvisioning, APersonReadsNamesBesideNumbers)
{
    const Result items =
        Run("", "provision commit --mdn 4155550100 --min 4155550188 --home-sid 32 --home-nid 5", "135790\n");
    for (const char* text : {"Home SID                32\n", "Home NID                65535 (any)\n", "4 (automatic)",
                             "The module has been reset and is back.\n", "a commit sends the SID alone."})
        EXPECT_TRUE(Contains(items.output, text)) << text << "\n" << items.output << items.error;
    const Result profiles = Run("", "mip show");
    EXPECT_TRUE(Contains(profiles.output, "Profile 0  enabled, user@example.net, home agent 192.0.2.5\n"
                                          "Profile 1  disabled, no NAI\n"))
        << profiles.output;
    EXPECT_EQ(Run("", "mip show", "", "umts").status, 1);
}

} // namespace
