// The command-line client: the monitor, and events that the simulated module is told to raise.

#include "tests/support/scratch_folder.h"
#include "tests/support/talvekctl.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <stdlib.h>
#include <unistd.h>

#include <algorithm>

namespace {

using namespace talvekctl;

// "00:00:00" for any time.
std::string Form(std::string time)
{
    for (char& c : time)
        c = c >= '0' && c <= '9' ? '0' : c;
    return time;
}

// What a signal event of the module that is plugged in brings besides.
const std::string kPacketState = "GsmPacketState (2027) session_state=1 technology=3";
const std::string kSystemStatus =
    "GsmSystemStatus (2032) radio_state=2 service_status=0 service_domain=2 registration=1 roaming=1 selection_mode=0 "
    "data_technology=6 ran=2 radio_interface=5 band_class=80 channel=10700 cs_state=1 ps_state=1 mcc=1 mnc=1 "
    "network_name=\"Test Network\"";

TEST(CtlMonitor, PrintsEveryEventWithItsTimeAndEndsWithItsScenario)
{
    const ScratchFolder folder;
    const std::string day =
        folder.Write("day.sim", "emit signal -93 5\ncall incoming 11\nafter 50 emit sms 1 4\nafter 100 call ends 1\n");
    const Result text = RunClient({"--sim", "umts", "monitor", "--scenario", day});
    EXPECT_EQ(text.status, 0) << text.error;
    Texts lines;
    for (const std::string& line : text.lines) {
        EXPECT_EQ(Form(line.substr(0, 14)), "00:00:00.000  ") << line;
        lines.push_back(line.substr(14));
    }
    std::sort(lines.begin(), lines.end()); // they come from different threads
    EXPECT_EQ(lines, (Texts{"CallDisconnected (1012) status=0 call_id=1 end_reason=16",
                            "CallIncoming (1009) kind=0 call_id=1 number=11", kPacketState, kSystemStatus,
                            "NewSMS (500)", "SignalStrength (103) rssi_dbm=-93 ecio=-"}));

    const std::string call = folder.Write("call.sim", "emit call 1:2:0:11\nemit call 1:3:0\nemit call 1:9:0\n");
    const Result json = RunClient({"--sim", "umts", "--json", "monitor", "--scenario", call, "--count", "2"});
    ASSERT_EQ(json.lines.size(), 3u) << json.output;
    const Json event = Parse(json.lines[1])["event"];
    EXPECT_EQ(event["id"], 1008);
    EXPECT_EQ(Form(event["time"]), "0000-00-00T00:00:00.000Z");
    EXPECT_EQ(Parse(json.lines[2]),
              (Json{{"ok", true}, {"command", "monitor"}, {"result", {{"delivered", 2}, {"lost", 0}}}}));
}

TEST(CtlMonitor, EndsWhenNothingMoreCanCome)
{
    const ScratchFolder folder;
    const std::string two = folder.Write("two.sim", "emit sms 1 4\nemit sms 1 5\n");
    const Result few = RunClient({"--sim", "umts", "monitor", "--scenario", two, "--count", "3", "--timeout", "60"});
    EXPECT_EQ(few.status, 1);
    EXPECT_TRUE(Contains(few.error, "nothing more is to come: 2 of 3 events came")) << few.error;

    // A clock that only the scenario moves leaves its queue as it is.
    const std::string still = folder.Write("still.sim", "clock virtual\nemit sms 1 4\nafter 1000 emit sms 1 5\n");
    EXPECT_EQ(RunClient({"--sim", "umts", "monitor", "--scenario", still}).lines.size(), 1u);

    const Result late = RunClient({"--sim", "umts", "monitor", "--count", "1", "--timeout", "0.05"});
    EXPECT_EQ(late.status, 1);
    EXPECT_TRUE(Contains(late.error, "the time is up: 0 of 1 events came")) << late.error;
    EXPECT_EQ(RunClient({"monitor", "--scenario", two}).status, 2) << "without --sim";

    ChildProcess child(Talvekctl({"--sim", "umts", "monitor", "--scenario",
                                  folder.Write("long.sim", "emit sms 1 4\nafter 600000 emit sms 1 5\n")}));
    EXPECT_NE(child.ReadLine(), "");
    child.Signal(SIGINT);
    EXPECT_EQ(child.Finish(), 0) << child.Error();
}

// What a terminal is sent, up to its end.
std::string ReadTerminal(int terminal)
{
    std::string text;
    char buffer[4096];
    for (ssize_t count; (count = read(terminal, buffer, sizeof buffer)) > 0;)
        text.append(buffer, static_cast<size_t>(count));
    return text;
}

// The five events of one signal report, in their order: the line is drawn at the first, and again below each other one.
TEST(CtlMonitor, DrawsTheSignalStrengthOnATerminal)
{
    const ScratchFolder folder;
    const struct {
        const char* name;
        const char* pairs;
        const char* bar;  // after the first event
        const char* both; // from the third one on
    } rows[] = {
        {"the ends of the bar", "-113:1 -51:2", "signal -113 dBm [--------------------]",
         "HDR -51 dBm [####################]"},
        {"within", "-82:1 -71:2", "signal -82 dBm [##########----------]", "HDR -71 dBm [##############------]"},
        {"beyond the ends", "-120:1 -40:2", "signal -120 dBm [--------------------]",
         "HDR -40 dBm [####################]"},
        {"none", "none", "signal none [--------------------]", "HDR none [--------------------]"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
        ASSERT_TRUE(terminal >= 0 && grantpt(terminal) == 0 && unlockpt(terminal) == 0);
        const std::string scenario =
            folder.Write("signal.sim", std::string("set signal.pairs ") + row.pairs + "\nemit signal -70 1\n");
        ChildSetup setup =
            Talvekctl({"--sim", "cdma", "monitor", "--count", "5", "--timeout", "60", "--scenario", scenario});
        setup.output_file = ptsname(terminal);
        ChildProcess child(setup);
        EXPECT_EQ(child.Finish(), 0) << child.Error();
        const std::string text = ReadTerminal(terminal);
        close(terminal);

        // "EVENT\r\nLINE", with what takes the line away between them.
        Texts drawn;
        const std::string clear = "\r\x1b[K";
        for (size_t begin = 0; begin < text.size();) {
            const size_t end = std::min(text.find(clear, begin), text.size());
            const std::string block = text.substr(begin, end - begin);
            drawn.push_back(block.substr(std::min(block.find("\r\n"), block.size())));
            begin = end + clear.size();
        }
        const std::string one = std::string("\r\n") + row.bar, two = one + "  " + row.both;
        EXPECT_EQ(drawn, (Texts{one, one, two, two, two + "\r\n"})) << text;
    }
}

TEST(CtlMonitor, EmitPrintsWhatTheEventBrings)
{
    const Result call = RunClient({"--sim", "umts", "sim", "emit", "call", "3:3:0:5551234", "4:9:0::17"});
    EXPECT_EQ(call.lines, (Texts{"CallConnected (1008) status=2 call_id=3 service_option=0",
                                 "CallDisconnected (1012) status=0 call_id=4 end_reason=17"}))
        << call.error;
    EXPECT_EQ(RunClient({"--sim", "umts", "sim", "emit", "signal", "-71", "5"}).lines,
              (Texts{"SignalStrength (103) rssi_dbm=-71 ecio=-", kPacketState, kSystemStatus}));

    const Result quoted = RunClient({"--sim", "umts", "--json", "sim", "emit", "ussd", "1", "15", "# a \"b\\c\"\n"});
    ASSERT_EQ(quoted.lines.size(), 2u) << quoted.output;
    EXPECT_EQ(Parse(quoted.lines[0])["event"]["payload"]["data"], "23206120226"
                                                                  "25c63220a");
    EXPECT_EQ(Parse(quoted.lines[1])["result"]["reply"], "delivered");

    EXPECT_EQ(RunClient({"--sim", "umts", "sim", "emit", "mobileip", "1"}).output, "not registered\n");
    const Result wrong = RunClient({"--sim", "umts", "sim", "emit", "thunder"});
    EXPECT_EQ(wrong.status, 1);
    EXPECT_TRUE(Contains(wrong.error, "unknown event \"thunder\"")) << wrong.error;
    EXPECT_EQ(RunClient({"sim", "emit", "sms", "1", "4"}).status, 2) << "without --sim";
}

} // namespace
