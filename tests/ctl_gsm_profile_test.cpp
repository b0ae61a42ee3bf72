// talvekctl profile and session.

#include <gtest/gtest.h>
#include <signal.h>

#include "tests/support/scratch_folder.h"
#include "tests/support/talvekctl.h"

namespace {

using namespace talvekctl;

Result Ask(Texts arguments, const std::string& scenario = "", const std::string& input = "")
{
    const ScratchFolder folder;
    arguments.insert(arguments.end(), {"--sim", "umts", "--json"});
    ChildSetup setup = Talvekctl(arguments, {{"TALVEK_SIM_SCENARIO", folder.Write("a.sim", scenario)}});
    setup.input = input;
    return RunClient(setup);
}

TEST(CtlGsmProfile, SetChangesWhatIsGivenAndReadsItBack)
{
    Json shown = Parse(R"({"name": "default", "apn": "internet", "pdp_type": 0, "pdp_type_name": "IPv4", "user": "",
        "dynamic_address": true, "address": null, "authentication": 0, "authentication_name": "none"})");
    EXPECT_EQ(Parse(Ask({"profile", "show"}).output)["result"], shown);
    const Result set = Ask({"profile", "set", "--apn", "vpn.example", "--user", "J\xC3\xBCrgen", "--address",
                            "198.51.100.7", "--authentication", "both", "--password-stdin"},
                           "", "secret\n");
    shown.update(Parse(R"({"apn": "vpn.example", "user": "Jürgen", "dynamic_address": false, "address": "198.51.100.7",
        "authentication": 3, "authentication_name": "PAP or CHAP", "password_set": true})"));
    EXPECT_EQ(Parse(set.output)["result"], shown) << set.output;
    EXPECT_FALSE(Contains(set.output + set.error, "secret"));
    const std::string before = "set profile.0.address 1\nset profile.0.password p\n";
    EXPECT_EQ(Parse(Ask({"profile", "set", "--dynamic"}, before).output)["result"]["address"], nullptr);
    EXPECT_EQ(Parse(Ask({"profile", "set", "--name", "n"}, before).output)["result"]["address"], "0.0.0.1");
}

TEST(CtlGsmProfile, RefusesWhatAProfileCannotHold)
{
    const std::string n128(128, 'n');
    for (const Texts& row : {Texts{"--name", n128.substr(96)},
                             {"--apn", n128.substr(26)},
                             {"--user", n128 + "n"},
                             {"--user", "\xE2\x82\xAC"},
                             {"--password-stdin"},
                             {"--address", "0.0.0.0"},
                             {}}) {
        Texts arguments = {"profile", "set"};
        arguments.insert(arguments.end(), row.begin(), row.end());
        const Result result = Ask(arguments, "", n128 + "n"); // the password is too long, too
        EXPECT_EQ(result.status, 2) << result.output;
    }
}

TEST(CtlGsmProfile, SessionCommandsAnswer)
{
    const std::string up = "set session.state 2\nset session.handle 9\nset session.sent 4294967296\n";
    const struct {
        Texts arguments;
        std::string scenario;
        Json answer; // or the function that fails
    } rows[] = {
        {{"session", "up"}, "", {{"handle", 0x1001}, {"address", "192.0.2.10"}, {"session", "ended"}}},
        {{"session", "down"}, "", {{"handle", nullptr}, {"ended", false}}},
        {{"session", "down", "9"}, up, {{"handle", 9}, {"ended", true}}},
        {{"session", "address"}, up, {{"address", "192.0.2.10"}}},
        {{"session", "traffic"}, up, {{"bytes_sent", 4294967296}, {"bytes_received", 0}}},
        {{"session", "up"}, "set session.start-status 5", "OrvActivateProfile"},
    };
    for (const auto& row : rows) {
        const Json answer = Parse(Ask(row.arguments, row.scenario).output);
        EXPECT_EQ(row.answer.is_object() ? answer["result"] : answer["error"]["function"], row.answer) << answer;
    }
}

TEST(CtlGsmProfile, AHeldSessionEndsWithTheClientOrTheNetwork)
{
    const ScratchFolder folder; // a stop that fails shows that there was one
    ChildProcess held(Talvekctl({"session", "up", "--hold", "--sim", "umts", "--json"},
                                {{"TALVEK_SIM_SCENARIO", folder.Write("a.sim", "fail StopDataSession 5\n")}}));
    EXPECT_EQ(Parse(held.ReadLine())["result"]["session"], "held");
    held.Signal(SIGINT);
    EXPECT_EQ(Parse(held.ReadLine())["error"]["function"], "OrvActivateProfile");
    EXPECT_EQ(held.Finish(), 1);
    const Result lost = Ask({"session", "up", "--hold"}, "on GetIPAddress after 1 session ends 3\n");
    EXPECT_TRUE(Contains(lost.output, "the network ended the packet session")) << lost.output;
}

} // namespace
