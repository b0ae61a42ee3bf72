// talvekctl sms.

#include <gtest/gtest.h>

#include <signal.h>

#include "tests/support/scratch_folder.h"
#include "tests/support/talvekctl.h"

namespace {

using namespace talvekctl;

Result Ask(Texts arguments, const std::string& model, const std::string& scenario = "")
{
    const ScratchFolder folder;
    arguments.insert(arguments.begin(), "sms");
    arguments.insert(arguments.end(), {"--sim", model, "--json"});
    return RunClient(Talvekctl(arguments, {{"TALVEK_SIM_SCENARIO", folder.Write("a.sim", scenario)}}));
}
Json Answer(const Texts& arguments, const std::string& model, const std::string& scenario = "")
{
    const Result result = Ask(arguments, model, scenario);
    const Json answer = Parse(result.lines.empty() ? "" : result.lines.back());
    return answer["ok"] == true ? answer["result"] : answer["error"];
}

const std::string kGsm = "sms add 1 1 6 0791947101670000040B915155214365F700002130412135850005E8329BFD06\n";
const std::string kCdma = "sms add 1 1 0 0000021002020702955686AA9080080D00031000100106102C8CBB366F\n";

TEST(CtlSms, AnswersOnBothTechnologies)
{
    const std::string parts(161, 'x');
    const struct {
        const char* name;
        Texts arguments;
        const char* model;
        std::string scenario;
        Json expected; // members of the answer, by pointer
    } rows[] = {
        {"list",
         {"list"},
         "umts",
         kGsm + "sms add 0 3 6 00\n",
         {{"/module/unread", 1}, {"/module/sent", 0}, {"/card/sent", 1}, {"/card/readable", true}}},
        {"list, no card",
         {"list"},
         "cdma",
         "set card.present 0\n",
         {{"/card/unread", nullptr}, {"/card/readable", false}}},
        {"read",
         {"read"},
         "umts",
         kGsm + kGsm,
         {{"/messages/0/text", "hello"},
          {"/messages/0/sender", "+15551234567"},
          {"/messages/1", nullptr},
          {"/unread_left", 1}}},
        {"read all",
         {"read", "--all"},
         "umts",
         kGsm + kGsm,
         {{"/messages/1/text", "hello"}, {"/unread_left", 0}, {"/failure", nullptr}}},
        {"read a bad one",
         {"read", "--all"},
         "umts",
         kGsm + "sms add 1 1 6 0001\n",
         {{"/messages/0/text", "hello"}, {"/unread_left", 1}, {"/failure/code", 5}}},
        {"read CDMA",
         {"read", "--all"},
         "cdma",
         "sms add 1 1 8 07\n" + kCdma,
         {{"/messages/0/waiting_indication", 7}, {"/messages/1/text", "Hello"}, {"/unread_left", 0}}},
        {"read nothing", {"read"}, "cdma", "", {{"/messages", Json::array()}}},
        {"send", {"send", "+15551234567", parts}, "umts", "", {{"/parts", 2}, {"/parts_sent", 2}, {"/sent", true}}},
        {"send CDMA", {"send", "5551234567", "Hi"}, "cdma", "", {{"/parts", 1}, {"/sent", true}}},
        {"send fails",
         {"send", "1", "Hi"},
         "cdma",
         "set sms.send-status 5\n",
         {{"/function", "OrvSendCdmaSMS"}, {"/code", 2}}},
        {"send CDMA abroad", {"send", "+1", "Hi"}, "cdma", "", {{"/name", "USAGE_ERROR"}}},
        {"smsc", {"smsc"}, "umts", "", {{"/address", "+12025550100"}, {"/international", true}}},
        {"smsc set", {"smsc", "4917", "--national"}, "umts", "", {{"/address", "4917"}, {"/international", false}}},
        {"smsc not told", {"smsc"}, "umts", "fail GetSMSCAddress 5\n", {{"/address", nullptr}}},
        {"smsc CDMA", {"smsc"}, "cdma", "", {{"/code", 17}}},
    };
    for (const auto& row : rows) {
        const Json answer = Answer(row.arguments, row.model, row.scenario);
        for (const auto& member : row.expected.items()) {
            EXPECT_EQ(answer.value(Json::json_pointer(member.key()), Json()), member.value())
                << row.name << member.key() << " in " << answer;
        }
    }
}

TEST(CtlSms, WatchPrintsWhatIsThereAndWhatComes)
{
    for (const std::string model : {"umts", "cdma"}) {
        const ScratchFolder folder;
        const std::string message = model == "umts" ? kGsm : kCdma;
        const std::string arrival = "sms arrives" + message.substr(7, 2) + message.substr(11);
        ChildProcess watch(Talvekctl(
            {"sms", "watch", "--sim", model, "--json", "--scenario", folder.Write("b.sim", arrival), "--timeout", "60"},
            {{"TALVEK_SIM_SCENARIO", folder.Write("a.sim", message)}}));
        for (int i = 0; i < 2; ++i)
            EXPECT_EQ(Parse(watch.ReadLine())["message"]["text"], model == "umts" ? "hello" : "Hello");
        watch.Signal(SIGINT);
        EXPECT_EQ(Parse(watch.ReadLine())["result"]["delivered"], 1);
        EXPECT_EQ(watch.Finish(), 0);
    }
}

} // namespace
