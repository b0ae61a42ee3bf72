// The command-line client: calls, USSD and audio on a simulated module.

#include "tests/support/scratch_folder.h"
#include "tests/support/talvekctl.h"

#include <gtest/gtest.h>
#include <signal.h>

namespace {

using namespace talvekctl;

Texts With(Texts first, const Texts& more)
{
    first.insert(first.end(), more.begin(), more.end());
    return first;
}

// Runs on a module that was prepared by `scenario`, when the client connects to it.
class CtlVoice : public ::testing::Test {
protected:
    ChildSetup Prepared(const std::string& scenario, const Texts& arguments, const std::string& model = "umts")
    {
        return Talvekctl(With({"--sim", model}, arguments),
                         {{"TALVEK_SIM_SCENARIO", m_folder.Write("setup.sim", scenario)}});
    }
    Result Run(const std::string& scenario, const Texts& arguments, const std::string& model = "umts")
    {
        return RunClient(Prepared(scenario, arguments, model));
    }
    // The result of the last line, or the error.
    Json Answer(const std::string& scenario, const Texts& arguments, const std::string& model = "umts")
    {
        const Result result = Run(scenario, With({"--json"}, arguments), model);
        EXPECT_EQ(result.error, "");
        if (result.lines.empty()) return {};
        const Json answer = Parse(result.lines.back());
        EXPECT_EQ(result.status == 0, answer["ok"] == true) << result.output;
        return answer["ok"] == true ? answer["result"] : answer["error"];
    }

    ScratchFolder m_folder;
};

Json Event(int id, const char* name, const Json& payload)
{
    return {{"event", {{"id", id}, {"name", name}, {"payload", payload}}}};
}

// --- calls

TEST_F(CtlVoice, WatchingADialledCallPrintsItsEventsUntilItEnds)
{
    const std::string ended = "set calls.alert-ms 1\nset calls.answer-ms 1\non DialCall after 200 call ends 1 31\n";
    const struct {
        const char* name;
        const char* model;
        std::string scenario;
        std::vector<Json> events;
        int reason;
    } rows[] = {
        {"answered, then ended by the other side",
         "umts",
         ended,
         {Event(1008, "CallConnected", {{"status", 2}, {"call_id", 1}, {"service_option", 0}}),
          Event(1012, "CallDisconnected", {{"status", 0}, {"call_id", 1}, {"end_reason", 31}})},
         31},
        {"with a service option",
         "cdma",
         ended,
         {Event(1008, "CallConnected", {{"status", 2}, {"call_id", 1}, {"service_option", 3}}),
          Event(1012, "CallDisconnected", {{"status", 0}, {"call_id", 1}, {"end_reason", 31}})},
         31},
        {"refused by the network",
         "umts",
         "set calls.refusal 17\n",
         {Event(1012, "CallDisconnected", {{"status", 0}, {"call_id", 1}, {"end_reason", 17}})},
         17},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Result result = Run(row.scenario, {"--json", "call", "dial", "+12025550123", "--watch"}, row.model);
        EXPECT_EQ(result.status, 0) << result.output << result.error;
        std::vector<Json> expected = row.events;
        expected.push_back({{"ok", true},
                            {"command", "call dial"},
                            {"result",
                             {{"call_id", 1},
                              {"number", "+12025550123"},
                              {"became", "call"},
                              {"sim_text", nullptr},
                              {"end_reason", row.reason},
                              {"delivered", row.events.size()},
                              {"lost", 0}}}});
        std::vector<Json> seen;
        for (const std::string& line : result.lines)
            seen.push_back(Parse(line));
        EXPECT_EQ(seen, expected) << result.output;
    }
}

TEST_F(CtlVoice, AnInterruptionEndsTheCallThatIsWatched)
{
    const std::string quick = "set calls.alert-ms 1\nset calls.answer-ms 1\n";
    const Texts dial = {"call", "dial", "5551234", "--watch"};
    ChildProcess child(Prepared(quick, dial));
    EXPECT_EQ(child.ReadLine(), "Call ID  1");
    EXPECT_EQ(child.ReadLine(), "Number   5551234");
    EXPECT_EQ(child.ReadLine(), "CallConnected (1008) status=2 call_id=1 service_option=0");
    child.Signal(SIGINT);
    EXPECT_EQ(child.Finish(), 0) << child.Error();

    // An end that fails shows that there was one.
    ChildProcess refused(Prepared(quick + "fail EndCall 1025\n", dial));
    for (int line = 0; line < 3; ++line)
        EXPECT_NE(refused.ReadLine(), "");
    refused.Signal(SIGTERM);
    EXPECT_EQ(refused.Finish(), 1);
    EXPECT_TRUE(Contains(refused.Error(), "OrvEndCall failed: ORV_RCODE_UNSUPPORTED")) << refused.Error();

    ChildSetup full = Prepared("fail EndCall 1025\n", With({"--json"}, dial));
    full.output_file = "/dev/full"; // the first event cannot be printed, and what is reported is that
    const Result lost = RunClient(full);
    EXPECT_EQ(lost.status, 1);
    EXPECT_TRUE(Contains(lost.error, "standard output")) << lost.error;
}

TEST_F(CtlVoice, DiallingTellsWhatTheSimSaysAndWhyItFailed)
{
    EXPECT_EQ(Answer("set calls.sim-text Barred\n", {"call", "dial", "5551234"}),
              (Json{{"call_id", 1}, {"number", "5551234"}, {"became", "call"}, {"sim_text", "Barred"}}));
    const Json radio_off = Answer("set power.mode 6\n", {"call", "dial", "5551234"});
    EXPECT_EQ(radio_off["function"], "OrvDialCall");
    EXPECT_EQ(Answer("", {"call", "dial", std::string(81, '1')})["call_id"], 1);
    for (const std::string& number : {std::string("12x"), std::string(), std::string(82, '1')}) {
        const Result result = Run("", {"call", "dial", number});
        EXPECT_EQ(result.status, 2) << number;
        EXPECT_TRUE(Contains(result.error, "is no number")) << result.error;
    }
}

constexpr const char* kRings = "call incoming 11\n";
constexpr const char* kTalks = "call incoming 11\ncall proceeds 1\n";
constexpr const char* kTalksAndWaits = "call incoming 11\ncall proceeds 1\ncall incoming withheld\n";
constexpr const char* kTalksAndIsHeld = "call incoming 11\ncall proceeds 1\ncall incoming 22\ncall proceeds 2\n";

TEST_F(CtlVoice, ListShowsEveryCallWithItsStateAndItsNumber)
{
    const auto entry = [](int id, const char* state, const Json& number, const char* mode) {
        return Json{{"call_id", id}, {"state", state}, {"direction", "incoming"}, {"number", number},
                    {"type", 0},     {"mode", mode},   {"multiparty", false}};
    };
    EXPECT_EQ(Answer("", {"call", "list"})["calls"], Json::array());
    EXPECT_EQ(Answer(kRings, {"call", "list"}, "cdma")["calls"], Json::array({entry(1, "incoming", "11", "CDMA")}));
    EXPECT_EQ(Answer(kTalksAndWaits, {"call", "list"})["calls"],
              (Json{entry(1, "conversation", "11", "UMTS"), entry(2, "waiting", nullptr, "UMTS")}));
    EXPECT_EQ(Run(kTalksAndWaits, {"call", "list"}).lines,
              (Texts{"Call 1  conversation, from 11", "Call 2  waiting, from a withheld number"}));
    // Counts and lengths beyond the records' rooms.
    EXPECT_EQ(Answer(std::string(kRings) + "hostile GetAllCallInfo count 255\n", {"call", "list"})["calls"].size(), 8u);
    EXPECT_EQ(Answer("fail GetAllCallInfo 1025\n", {"call", "list"}),
              (Json{{"function", "COrvGobiDll::GetAllCallInfo"},
                    {"code", 1025},
                    {"name", "VENDOR_STATUS"},
                    {"meaning", "GetAllCallInfo failed: vendor status 1025 (the module does not support it)"}}));
}

TEST_F(CtlVoice, AnswerAndEndTakeTheCallThatTheyMustMean)
{
    const struct {
        const char* name;
        const char* scenario;
        Texts arguments;
        int call_id;         // 0: an error
        const char* meaning; // of it
    } rows[] = {
        {"the one that rings", kRings, {"answer"}, 1, ""},
        {"the one that waits", kTalksAndWaits, {"answer"}, 2, ""},
        {"by its number", kTalksAndWaits, {"answer", "2"}, 2, ""},
        {"none rings", kTalks, {"answer"}, 0, "no call rings or waits"},
        {"the only one", kTalks, {"end"}, 1, ""},
        {"one of two", kTalksAndWaits, {"end", "2"}, 2, ""},
        {"which of two", kTalksAndWaits, {"end"}, 0, "there are several calls: name one of 1, 2"},
        {"none to end", "", {"end"}, 0, "there is no call"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Json answer = Answer(row.scenario, With({"call"}, row.arguments));
        if (row.call_id != 0)
            EXPECT_EQ(answer, (Json{{"call_id", row.call_id}}));
        else
            EXPECT_EQ(answer["meaning"], row.meaning);
    }
    EXPECT_EQ(Answer(kRings, {"call", "end", "7"})["function"], "OrvEndCall");
    const Json watched =
        Answer("call incoming 11\non AnswerCall after 200 call ends 1 31\n", {"call", "answer", "--watch"});
    EXPECT_EQ(watched["call_id"], 1);
    EXPECT_EQ(watched["end_reason"], 31);
    EXPECT_GE(watched["delivered"], 2) << "connected and ended; that it rings may have been told before";
    EXPECT_EQ(Run(kRings, {"call", "end", "0"}).status, 2);
    EXPECT_EQ(Run(kRings, {"call", "end", "256"}).status, 2);
}

TEST_F(CtlVoice, HoldAndSwapLeaveTheCallsInTheirNewStates)
{
    const struct {
        const char* name;
        const char* scenario;
        Texts arguments;
        Texts states; // none: an error
        const char* meaning;
    } rows[] = {
        {"hold", kTalks, {"hold"}, {"held"}, ""},
        {"hold nothing", kRings, {"hold"}, {}, "no call is in conversation"},
        {"hold all but one that is alone", kTalks, {"hold", "1"}, {}, ""},
        {"hold all but one that waits", kTalksAndWaits, {"hold", "2"}, {}, "call 2 is not in conversation"},
        {"swap with the one that waits", kTalksAndWaits, {"swap"}, {"held", "conversation"}, ""},
        {"swap with the one that is held", kTalksAndIsHeld, {"swap"}, {"conversation", "held"}, ""},
        {"swap by its number", kTalksAndIsHeld, {"swap", "1"}, {"conversation", "held"}, ""},
        {"swap with itself", kTalksAndIsHeld, {"swap", "2"}, {}, "call 2 is neither held nor does it wait"},
        {"swap with nothing", kTalks, {"swap"}, {}, "no call is held or waits"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Json answer = Answer(row.scenario, With({"call"}, row.arguments));
        if (!row.states.empty()) {
            Texts states;
            for (const Json& call : answer["calls"])
                states.push_back(call["state"]);
            EXPECT_EQ(states, row.states);
        } else if (*row.meaning) {
            EXPECT_EQ(answer["meaning"], row.meaning);
        } else {
            EXPECT_EQ(answer["function"], "OrvManageCalls");
            EXPECT_EQ(answer["failure_reason"], 98); // not in this state
        }
    }
    const Json both = Answer(std::string(kTalksAndIsHeld) + "call incoming 33\n", {"call", "swap", "1"});
    EXPECT_EQ(both["meaning"], "call 1 cannot be talked to while another one waits");
}

// --- USSD

Json Reply(const Json& type, const std::string& hex, const Json& text)
{
    return {{"type", type}, {"data_coding_scheme", 15}, {"data", hex}, {"text", text}};
}

TEST_F(CtlVoice, UssdPrintsWhatTheNetworkRepliesAndAnswersWhatItAsks)
{
    const std::string credit = "4372656469742031322e3530", bye = "476f6f64627965", more = "31206d6f72652c203020656e64";
    const struct {
        const char* name;
        const char* scenario;
        Texts arguments;
        Json replies;
    } rows[] = {
        {"a request", "", {"send", "*100#"}, Json::array({Reply(nullptr, credit, "Credit 12.50")})},
        {"a dialogue",
         "set ussd.questions 2\n",
         {"send", "*100#", "--then", "1", "--then", "0"},
         {Reply(nullptr, credit, "Credit 12.50"), Reply(2, more, "1 more, 0 end"), Reply(1, bye, "Goodbye")}},
        {"an answer", "set ussd.open 1\n", {"answer", "1"}, Json::array({Reply(1, bye, "Goodbye")})},
        {"the reply comes by the event",
         "set ussd.reply \"\"\non OrigUSSD after 50 emit ussd 1 15 Later\n",
         {"send", "*100#"},
         Json::array({Reply(1, "4c61746572", "Later")})},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(Answer(row.scenario, With({"ussd"}, row.arguments))["replies"], row.replies);
    }
    EXPECT_EQ(Run("set ussd.reply \"One\\r\\nTwo\\x1b\\x65\"\n", {"ussd", "send", "*100#"}).lines,
              (Texts{"One", "Two\u20ac"}));
    const Result asked = Run("set ussd.questions 2\n", {"ussd", "send", "*100#", "--then", "1"});
    EXPECT_EQ(asked.status, 0);
    EXPECT_TRUE(Contains(asked.output, "1 more, 0 end\n(The network waits for an answer")) << asked.output;
    EXPECT_EQ(Answer("set ussd.open 1\n", {"ussd", "cancel"}), (Json{{"cancelled", true}}));
}

TEST_F(CtlVoice, UssdFailsWithTheReason)
{
    const struct {
        const char* name;
        const char* scenario;
        Texts arguments;
        Json expected; // members of the error
    } rows[] = {
        {"refused",
         "set ussd.refusal 71\n",
         {"send", "*100#"},
         {{"function", "COrvGobiDll::OrigUSSD"}, {"failure_reason", 71}}},
        {"nothing was asked", "", {"answer", "1"}, {{"function", "COrvGobiDll::AnswerUSSD"}, {"code", 1026}}},
        {"nothing to cancel", "", {"cancel"}, {{"function", "COrvGobiDll::CancelUSSD"}, {"code", 1026}}},
        {"no reply",
         "set ussd.reply \"\"\n",
         {"send", "*100#", "--timeout", "0.05"},
         {{"meaning", "the time is up: the network's reply did not come"}}},
        {"the network had enough",
         "set ussd.questions 1\n",
         {"send", "*100#", "--then", "1", "--then", "2"},
         {{"meaning", "the network ended the dialogue before the last answer"}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Json error = Answer(row.scenario, With({"ussd"}, row.arguments));
        for (const auto& [key, value] : row.expected.items())
            EXPECT_EQ(error[key], value) << error;
    }
}

TEST_F(CtlVoice, UssdTextsHaveToFitTheirAlphabet)
{
    const auto times = [](int count, const std::string& text) {
        std::string out;
        for (int i = 0; i < count; ++i)
            out += text;
        return out;
    };
    const struct {
        const char* name;
        Texts text;
        const char* refusal; // null: it is sent
    } rows[] = {
        {"as long as can be", {times(160, "x")}, nullptr},
        {"too long", {times(161, "x")}, "at most 160 characters"},
        {"of the extension, two octets each", {times(80, "\u20ac")}, nullptr},
        {"too long with the extension", {times(81, "\u20ac")}, "at most 160"},
        {"not in the alphabet", {"a`b"}, "the GSM alphabet has no '`' (U+0060)"},
        {"beyond 16 bits", {"\U0001F600"}, "the GSM alphabet has no '\U0001F600' (U+1f600)"},
        {"in UCS2", {times(80, "\u0416"), "--ucs2"}, nullptr},
        {"too long in UCS2", {times(81, "\u0416"), "--ucs2"}, "at most 80 characters of UCS2"},
        {"not in UCS2", {"\U0001F600", "--ucs2"}, "UCS2 has no"},
        {"no UTF-8", {"a\xff"}, "not UTF-8"},
        {"cut UTF-8", {"a\xe2\x82"}, "not UTF-8"},
        {"an overlong form", {"\xc0\xaf"}, "not UTF-8"},
        {"a surrogate", {"\xed\xa0\x80", "--ucs2"}, "not UTF-8"},
        {"empty", {""}, "the text is empty"},
        {"an answer to come", {"*100#", "--then", "`"}, "the GSM alphabet has no"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Result result = Run("", With({"ussd", "send"}, row.text));
        EXPECT_EQ(result.status, row.refusal ? 2 : 0) << result.error;
        EXPECT_TRUE(Contains(result.error, row.refusal ? row.refusal : "")) << result.error;
    }
}

// The module is given an octet for each character, and an event's octets are decoded by their coding.
TEST_F(CtlVoice, UssdEventsShowTheirTextInEveryCoding)
{
    const struct {
        const char* name;
        const char* coding;
        const char* hex;
        Json text;
    } rows[] = {
        {"GSM, first row", "15", "000102030405060708090b0c0e0f",
         "@\u00a3$\u00a5\u00e8\u00e9\u00f9\u00ec\u00f2\u00c7\u00d8\u00f8\u00c5\u00e5"},
        {"GSM, second row", "0x0f", "101112131a1c1d1e1f", "\u0394_\u03a6\u0393\u039e\u00c6\u00e6\u00df\u00c9"},
        {"GSM, between digits and letters", "0", "2439404141", "\u00a49\u00a1AA"},
        {"GSM, ends of the letters", "15", "5a5b5c5d5e5f60617a7b7c7d7e7f",
         "Z\u00c4\u00d6\u00d1\u00dc\u00a7\u00bfaz\u00e4\u00f6\u00f1\u00fc\u00e0"},
        {"GSM, extension", "15", "1b141b281b291b2f1b3c1b3d1b3e1b401b65", "^{}\\[~]|\u20ac"},
        {"GSM, unknown extension and an escape at the end", "15", "1b411b", "A "},
        {"GSM, more than seven bits", "15", "41c1", "A\ufffd"},
        {"GSM with a language", "0x10", "656e0d4869", "Hi"},
        {"UCS2", "0x48", "041600e9", "\u0416\u00e9"},
        {"UCS2, half a character", "0x48", "041600", "\u0416"},
        {"UCS2 with a language", "0x11", "65370416", "\u0416"},
        {"octets", "0x44", "4142", nullptr},
        {"compressed", "0x60", "4142", nullptr},
        {"octets, in the group of classes", "0xf4", "4142", nullptr},
        {"GSM, in the group of classes", "0xf1", "4142", "AB"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Result result = RunClient(
            {"--sim", "umts", "--json", "events", "USSD", "--count", "1", "--timeout", "30", "--scenario",
             m_folder.Write("ussd.sim", std::string("emit ussd 1 ") + row.coding + " hex " + row.hex + "\n")});
        ASSERT_FALSE(result.lines.empty()) << result.error;
        EXPECT_EQ(Parse(result.lines[0])["event"]["payload"]["text"], row.text) << result.lines[0];
    }
}

// --- audio

TEST_F(CtlVoice, AudioShowsEverySettingThatTheModuleHas)
{
    const Json filter = {{"enabled", false}, {"stage", 0}, {"coefficient", 0}, {"gain", 0}};
    Json expected = {{"profile", 2},           {"mic_volume", 0x2000}, {"echo_cancel", 1},
                     {"noise_suppression", 1}, {"output_gain", 0},     {"input_gain", 0},
                     {"side_tone", 0},         {"tx_filter", filter},  {"rx_filter", filter}};
    expected["m2m"] = {{"profile", 0},          {"generator", 0},      {"volume", 3},
                       {"ear_mute", false},     {"mic_mute", false},   {"waiting_tone_mute", false},
                       {"side_tone", 0},        {"tx_volume", 0x2000}, {"mic_gain", 0x2000},
                       {"tx_gain", 0},          {"rx_gain", 0},        {"echo_cancel", 1},
                       {"noise_suppression", 1}};
    EXPECT_EQ(Answer("set audio.profile 2\n", {"audio", "show"}), expected);

    // What a module lacks is shown as such; another fault is one.
    expected["profile"] = 0;
    expected["mic_volume"] = expected["side_tone"] = expected["m2m"]["mic_gain"] = nullptr;
    EXPECT_EQ(Answer("fail AudioGetPathWord 1025\nfail OrvM2MAV_AudioGetMicGain 1\n", {"audio", "show"}), expected);
    EXPECT_EQ(Answer("fail AudioGetPathWord 5\n", {"audio", "show"})["function"], "COrvGobiDll::GetMicVolume");
    EXPECT_EQ(Answer("fail AudioGetProfile 1025\nfail OrvM2MAV_AudioGetProfile 1025\n", {"audio", "show"})["code"],
              1025);
}

TEST_F(CtlVoice, AudioSetsEachFieldWithItsOwnOperation)
{
    const struct {
        const char* field;
        Texts values;
        const char* entry; // the vendor's
        Json value;        // as it is read back; null where it cannot be
    } rows[] = {
        {"profile", {"3"}, "AudioSetProfile", 3},
        {"mic-mute", {"1"}, "AudioSetProfile", nullptr},
        {"speaker-mute", {"1"}, "AudioSetProfile", nullptr},
        {"receiver-volume", {"9"}, "AudioSetProfile", nullptr},
        {"mic-volume", {"0xffff"}, "AudioSetAudioPath", 65535},
        {"echo-cancel", {"2"}, "AudioSetAudioPath", 2},
        {"noise-suppression", {"3"}, "AudioSetAudioPath", 3},
        {"output-gain", {"4"}, "AudioSetAudioPath", 4},
        {"input-gain", {"5"}, "AudioSetAudioPath", 5},
        {"side-tone", {"600"}, "AudioSetAudioPath", 600},
        {"tx-filter",
         {"1", "2", "0xffffffff", "4"},
         "AudioSetAudioPath",
         {{"enabled", true}, {"stage", 2}, {"coefficient", 0xFFFFFFFFu}, {"gain", 4}}},
        {"rx-filter",
         {"1", "5", "6", "7"},
         "AudioSetAudioPath",
         {{"enabled", true}, {"stage", 5}, {"coefficient", 6}, {"gain", 7}}},
        {"rx-gain", {"1", "2", "3"}, "AudioSetVolTLBConfig", nullptr},
        {"m2m-profile", {"4"}, "OrvM2MAV_AudioSetProfile", 4},
        {"m2m-generator", {"2"}, "OrvM2MAV_AudioSetProfile", 2},
        {"m2m-volume", {"9"}, "OrvM2MAV_AudioSetVolume", 9},
        {"m2m-ear-mute", {"1"}, "OrvM2MAV_AudioSetAVMute", true},
        {"m2m-mic-mute", {"1"}, "OrvM2MAV_AudioSetAVMute", true},
        {"m2m-waiting-tone-mute", {"1"}, "OrvM2MAV_AudioSetAVMute", true},
        {"m2m-tx-volume", {"1"}, "OrvM2MAV_AudioSetTxVolume", 1},
        {"m2m-mic-gain", {"2"}, "OrvM2MAV_AudioSetMicGain", 2},
        {"m2m-tx-gain", {"3"}, "OrvM2MAV_AudioSetAVTXG", 3},
        {"m2m-rx-gain", {"4"}, "OrvM2MAV_AudioSetAVRXG", 4},
        {"m2m-echo-cancel", {"5"}, "OrvM2MAV_AudioSetAVEC", 5},
        {"m2m-noise-suppression", {"6"}, "OrvM2MAV_AudioSetAVNS", 6},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.field);
        const Texts arguments = With({"audio", "set", row.field}, row.values);
        const Json answer = Answer("", arguments);
        EXPECT_EQ(answer["field"], row.field);
        EXPECT_EQ(answer["value"], row.value) << answer;
        EXPECT_EQ(Answer(std::string("fail ") + row.entry + " 77\n", arguments)["code"], 77);
    }
    const Texts refused[] = {{"side"},         {"m2m-side-tone", "1"},  {"mic-mute", "2"},  {"profile", "256"},
                             {"profile", "x"}, {"mic-volume", "65536"}, {"tx-filter", "1"}, {"profile", "1", "2"}};
    for (const Texts& arguments : refused) {
        SCOPED_TRACE(arguments.back());
        EXPECT_EQ(Run("", With({"audio", "set"}, arguments)).status, 2);
    }
}

TEST_F(CtlVoice, AudioPlaysATone)
{
    EXPECT_EQ(Answer("", {"audio", "tone", "5"}), (Json{{"tone", 5}}));
    EXPECT_EQ(Answer("fail AudioPlayAudioTone 77\n", {"audio", "tone", "5"})["code"], 77);
    const Texts timed = {"audio", "tone", "5", "--volume", "2", "--duration", "300"};
    EXPECT_EQ(Answer("", timed), (Json{{"tone", 5}, {"volume", 2}, {"duration_ms", 300}}));
    EXPECT_EQ(Answer("fail OrvM2MAV_AudioPlayTone 77\n", timed)["code"], 77);
    EXPECT_EQ(Run("", {"audio", "tone", "5", "--volume", "2"}).status, 2);
    EXPECT_EQ(Run("", {"audio", "tone", "256"}).status, 2);
}

} // namespace
