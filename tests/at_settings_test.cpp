// The functions over the AT port: their guards, command lines, replies, log texts and the port of a CDMA module.

#include <gtest/gtest.h>

#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "talvek/talvek.h"
#include "tests/support/log_capture.h"
#include "tests/support/sim_harness.h"

namespace {

using Lines = std::vector<std::string>;

constexpr BYTE kUntouched = 0x77;
BYTE g_n, g_m;

// What a function logs when its command is refused, with a number and without.
struct Errors {
    const char *code, *no_code;
};

enum class Serves { GsmOnly, AnyModule, OpensThePort };

struct Function {
    const char* name;
    ORV_RCODE (*call)();
    Serves serves;
    Lines sent;    // the command lines
    Errors errors; // when the last of them is refused
};

const Lines kNothing;
const char* const kUnlock = "AT!UNLOCK=\"C582\"";
const char* const kNotNumeric = "CME Error values from modem are not in NUMERIC format, Cannot parse error value";

const Function kFunctions[] = {
    {"OrvATSetCLIP",
     [] { return OrvATSetCLIP(1); },
     Serves::GsmOnly,
     {"AT+CLIP=1"},
     {"OrvATSetCLIP::Extracted CME Error code = 30", "OrvATSetCLIP: Failed to extract CME Error"}},
    {"OrvATGetCLIP",
     [] { return OrvATGetCLIP(&g_n, &g_m); },
     Serves::GsmOnly,
     {"AT+CLIP?"},
     {"OrvATGetCLIP::Extracted CME Error code = 30", "OrvATGetCLIP: Failed to extract CME Error"}},
    {"OrvATSetCLIR",
     [] { return OrvATSetCLIR(2); },
     Serves::GsmOnly,
     {"AT+CLIR=2"},
     {"OrvATSetCLIR::Extracted CME Error code = 30", "OrvATSetCLIR: Failed to extract CME Error"}},
    {"OrvATGetCLIR",
     [] { return OrvATGetCLIR(&g_n, &g_m); },
     Serves::GsmOnly,
     {"AT+CLIR?"},
     {"OrvATGetCLIR::Extracted CME Error code = 30", "OrvATGetCLIR: Failed to extract CME Error"}},
    {"OrvATSetCOLP", [] { return OrvATSetCOLP(); }, Serves::GsmOnly, {}, {}},
    {"OrvATGetCOLP",
     [] { return OrvATGetCOLP(&g_n, &g_m); },
     Serves::GsmOnly,
     {"AT+COLP?"},
     {"OrvATGetCLIP::Extracted CME Error code = 30", "OrvATGetCLIP: Failed to extract CME Error"}},
    {"OrvATSetCOLR", [] { return OrvATSetCOLR(); }, Serves::GsmOnly, {}, {}},
    {"OrvATGetCOLR",
     [] { return OrvATGetCOLR(&g_n); },
     Serves::GsmOnly,
     {"AT+COLR?"},
     {"OrvATGetCLIR::Extracted CME Error code = 30", "OrvATGetCLIR: Failed to extract CME Error"}},
    {"OrvATReleaseCall",
     [] { return OrvATReleaseCall(3); },
     Serves::GsmOnly,
     {"AT+CHLD=13"},
     {"OrvATReleaseCall::Extracted CME Error code = 30", "OrvATReleaseCall: Failed to extract CME Error"}},
    {"OrvATSetEnum",
     [] { return OrvATSetEnum("2,\"a\""); },
     Serves::OpensThePort,
     {kUnlock, "AT!NVENUM=2,\"a\""},
     {"OrvATSetEnum::Extracted CME Error code = 30", "OrvATSetEnum: Failed to extract CME Error"}},
    {"OrvATSetSideToneGain",
     [] { return OrvATSetSideToneGain(-5, 31); },
     Serves::AnyModule,
     {kUnlock, "AT!AVCODECSTG=-5,1f"},
     {"OrvATSetSideToneGain::Extracted CME Error code = 30", "OrvATSetSideToneGain: Failed to extract CME Error"}},
    {"OrvATReset",
     [] { return OrvATReset(); },
     Serves::OpensThePort,
     {"AT!RESET"},
     {"OrvATReset::Extracted CME Error code = 30", "OrvATReset: Failed to extract CME Error"}},
    {"OrvATRtnReset",
     [] { return OrvATRtnReset("1"); },
     Serves::OpensThePort,
     {"AT$RTN=1"},
     {"OrvATRtnReset::Extracted CME Error code = 30", "OrvATRtnReset: Failed to extract CME Error"}},
    {"OrvATGetProvisionStatus",
     [] { return OrvATGetProvisionStatus(&g_n); },
     Serves::OpensThePort,
     {"AT+MDN"},
     {"OrvATGetProvisionStatus::Extracted CME Error code = 30",
      "OrvATGetProvisionStatus: Failed to extract CME Error"}},
};

const char* const kNotInitialized = "IsInitialized failed";
const char* const kNotGsm = "ORV_WIRELESSTECH_Gsm not gsm";
const char* const kNotOpen = "g_ATPortInstance not init";

// A word of the simulated module's command lines.
std::string Quoted(const std::string& text)
{
    std::string quoted = "\"";
    for (const char character : text) {
        char escape[8] = {character};
        const bool plain = character >= ' ' && character <= '~' && character != '"' && character != '\\';
        if (!plain) snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned char>(character));
        quoted += escape;
    }
    return quoted + "\"";
}

class AtSettings : public ::testing::Test {
public:
    AtSettings() { g_n = g_m = kUntouched; }
    ~AtSettings() override { OrvApiShutdown(); }

    void PlugIn(const std::string& model)
    {
        sim.Command("model " + model);
        sim.Command("set at.calls 1 3");
    }
    void Select(ULONG product)
    {
        ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
        OrvAirServer record = {};
        record.uDeviceID = product;
        ASSERT_EQ(OrvSelectAirServer(&record), ORV_RCODE_OK);
        sim.Command("at log clear");
    }
    void StartUmts()
    {
        PlugIn("umts:5120");
        Select(0x5120);
    }
    void StartCdma()
    {
        PlugIn("cdma:5101");
        Select(0x5101);
    }
    // From now on the module answers the command so, behind the echo, instead of what it would.
    void Answer(const std::string& command, const std::string& reply)
    {
        sim.Command("at reply " + Quoted(command) + " " + Quoted(reply));
    }
    Lines Sent()
    {
        const Lines lines = SplitLines(sim.Command("at log"));
        sim.Command("at log clear");
        return lines;
    }

    SimHarness sim{"umts:5120"};
};

// --- guards ----------------------------------------------------------------------------------------------------------

TEST_F(AtSettings, EachFunctionHasItsGuardAndItsCommands)
{
    const struct {
        const char* name;
        ULONG gsm_only, any_module, opens_the_port;
        const char *gsm_log, *any_log, *port_log;
        void (*prepare)(AtSettings& self);
    } states[] = {
        {"before start-up", 10, 10, 10, kNotInitialized, kNotInitialized, kNotInitialized, [](AtSettings&) {}},
        {"nothing selected", 1, 354, 354, kNotGsm, kNotOpen, kNotOpen, [](AtSettings&) { OrvApiStartup(); }},
        {"GSM/UMTS without a port", 354, 354, 354, kNotOpen, kNotOpen, kNotOpen,
         [](AtSettings& self) {
             self.sim.WriteRegistry("VID_3D5E&PID_5120", "/nonexistent/port");
             self.StartUmts();
             self.sim.WriteRegistry("VID_3D5E&PID_5120", self.sim.Command("serial name"));
         }},
        {"CDMA", 1, 354, 0, kNotGsm, kNotOpen, nullptr, [](AtSettings& self) { self.StartCdma(); }},
        {"GSM/UMTS", 0, 0, 0, nullptr, nullptr, nullptr, [](AtSettings& self) { self.StartUmts(); }},
    };
    for (const auto& state : states) {
        for (const Function& function : kFunctions) {
            SCOPED_TRACE(std::string(function.name) + ", " + state.name);
            state.prepare(*this);
            g_n = g_m = kUntouched;
            LogCapture log;
            const Serves serves = function.serves;
            const ULONG expected = serves == Serves::GsmOnly     ? state.gsm_only
                                   : serves == Serves::AnyModule ? state.any_module
                                                                 : state.opens_the_port;
            const char* const text = serves == Serves::GsmOnly     ? state.gsm_log
                                     : serves == Serves::AnyModule ? state.any_log
                                                                   : state.port_log;
            EXPECT_EQ(function.call(), expected);
            if (text) {
                EXPECT_EQ(log.Count(text), 1) << log.Dump();
                EXPECT_EQ(log.Find(text).module, "TALVEK");
                EXPECT_EQ(g_n, kUntouched);
            }
            EXPECT_EQ(Sent(), expected == 0 ? function.sent : kNothing);
            OrvApiShutdown();
        }
    }
}

TEST_F(AtSettings, TheFunctionsThatSetNothingLogTheirNames)
{
    const std::pair<const char*, ORV_RCODE (*)()> functions[] = {{"OrvATSetCOLP", OrvATSetCOLP},
                                                                 {"OrvATSetCOLR", OrvATSetCOLR}};
    StartUmts();
    for (const auto& [name, function] : functions) {
        LogCapture log;
        EXPECT_EQ(function(), ORV_RCODE_OK);
        EXPECT_EQ(log.Texts(), Lines{name});
        EXPECT_EQ(log.Find(name).module, "TALVEK");
    }
}

TEST_F(AtSettings, NullPointersAndTextsThatDoNotFitAreRefusedBeforeAnythingIsSent)
{
    const auto with_length = [](ORV_RCODE (*function)(const char*), size_t length) {
        return function(std::string(length, 'x').c_str());
    };
    StartUmts();
    EXPECT_EQ(OrvATGetCLIP(nullptr, &g_m), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvATGetCLIR(&g_n, nullptr), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvATGetCOLP(nullptr, nullptr), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvATGetCOLR(nullptr), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvATGetProvisionStatus(nullptr), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvATSetEnum(nullptr), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvATRtnReset(nullptr), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(with_length(OrvATSetEnum, 249), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(with_length(OrvATSetEnum, 100000), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(with_length(OrvATRtnReset, 252), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(Sent(), kNothing);
    EXPECT_EQ(with_length(OrvATSetEnum, 248), ORV_RCODE_OK);
    EXPECT_EQ(Sent(), (Lines{kUnlock, "AT!NVENUM=" + std::string(248, 'x')}));
    EXPECT_EQ(with_length(OrvATRtnReset, 251), ORV_RCODE_OK);
    EXPECT_EQ(Sent(), Lines{"AT$RTN=" + std::string(251, 'x')});
}

// --- what the module makes of it -------------------------------------------------------------------------------------

TEST_F(AtSettings, TheModuleKeepsWhatIsSet)
{
    StartUmts();
    sim.Command("set at.calls 1 3 5");
    const struct {
        const char* name;
        ORV_RCODE (*call)();
        const char *field, *value;
        ULONG result;
    } rows[] = {
        {"CLIP", [] { return OrvATSetCLIP(1); }, "at.clip", "1", 0},
        {"CLIP out of range", [] { return OrvATSetCLIP(255); }, "at.clip", "1", 5},
        {"CLIR", [] { return OrvATSetCLIR(2); }, "at.clir", "2", 0},
        {"call", [] { return OrvATReleaseCall(3); }, "at.calls", "1 5", 0},
        {"no such call", [] { return OrvATReleaseCall(0xFFFFFFFF); }, "at.calls", "1 5", 5},
        {"enumeration", [] { return OrvATSetEnum("1,\"%s\""); }, "at.enumeration", "1,\"%s\"", 0},
        {"gain", [] { return OrvATSetSideToneGain(INT32_MIN, -1); }, "at.side-tone", "-2147483648:-1", 0},
        {"reset", OrvATReset, "at.resets", "1", 0},
        {"factory reset", [] { return OrvATRtnReset("7"); }, "at.factory-reset", "7", 0},
        {"after it", [] { return OrvATSetCLIP(0); }, "at.side-tone", "0:0", 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.call(), row.result);
        EXPECT_EQ(sim.Command(std::string("get ") + row.field), row.value);
    }
    sim.Command("set at.clir-service 3");
    EXPECT_EQ(OrvATGetCLIR(&g_n, &g_m), ORV_RCODE_OK);
    EXPECT_EQ(g_n, 2);
    EXPECT_EQ(g_m, 3);
    sim.Command("set at.colr-service 2");
    EXPECT_EQ(OrvATGetCOLR(&g_n), ORV_RCODE_OK);
    EXPECT_EQ(g_n, 2);
    sim.Command("advance 3050"); // the reset
    EXPECT_EQ(OrvATGetCLIR(&g_n, &g_m), ORV_RCODE_OK);
    EXPECT_EQ(g_n, 0);
}

TEST_F(AtSettings, ARefusedUnlockHasATextOfItsOwn)
{
    StartUmts();
    Answer(kUnlock, "\r\n+CME ERROR: 30\r\n");
    const std::pair<const char*, ORV_RCODE (*)()> rows[] = {
        {"OrvATSetEnum failed to unlock modem", [] { return OrvATSetEnum("1"); }},
        {"OrvATSetSideToneGain failed to unlock modem", [] { return OrvATSetSideToneGain(1, 1); }},
    };
    for (const auto& [text, call] : rows) {
        LogCapture log;
        EXPECT_EQ(call(), ORV_RCODE_FAILED);
        EXPECT_EQ(log.Count(text), 1) << log.Dump();
        for (const std::string& line : log.Texts())
            EXPECT_EQ(line.find("CME Error"), std::string::npos) << line;
        EXPECT_EQ(Sent(), Lines{kUnlock});
    }
}

TEST_F(AtSettings, EachRefusalIsLoggedWithTheFunctionsTexts)
{
    const struct {
        const char* name;
        const char* reply;
        bool numeric;   // whether the module was made to give numbers
        bool extracted; // whether there is one
    } refusals[] = {
        {"a number", "\r\n+CME ERROR: 30\r\n", true, true},
        {"no number", "\r\nERROR\r\n", true, false},
        {"a text", "\r\n+CME ERROR: SIM busy\r\n", true, false},
        {"a number that came too late", "\r\n+CME ERROR", true, false},
        {"not asked for numbers", "\r\n+CME ERROR: 30\r\n", false, false},
    };
    for (const auto& refusal : refusals) {
        PlugIn("umts:5120");
        if (!refusal.numeric) Answer("AT+CMEE=1", "\r\nERROR\r\n");
        Select(0x5120);
        for (const Function& function : kFunctions) {
            if (function.sent.empty()) continue;
            SCOPED_TRACE(std::string(function.name) + ", " + refusal.name);
            Answer(function.sent.back(), refusal.reply);
            LogCapture log;
            EXPECT_EQ(function.call(), ORV_RCODE_FAILED);
            const char* const text = !refusal.numeric    ? kNotNumeric
                                     : refusal.extracted ? function.errors.code
                                                         : function.errors.no_code;
            EXPECT_EQ(log.Count(text), 1) << log.Dump();
            EXPECT_EQ(log.Find(text).module, "TALVEK");
            EXPECT_EQ(g_n, kUntouched);
            EXPECT_EQ(g_m, kUntouched);
        }
        OrvApiShutdown();
    }
}

// --- replies ---------------------------------------------------------------------------------------------------------

struct ReplyRow {
    const char* name;
    const char* reply; // behind the echo
    ULONG result;
    BYTE n, m;
    const char* log; // of the step that fails; null: none does
};

class AtReplies : public AtSettings {
public:
    // Every row, in fragments of 1, 8 and all octets, with echo and without. A reply ends with its final result, so
    // that nothing of it is left for the next one.
    void Play(const char* command, ORV_RCODE (*call)(), const ReplyRow* begin, const ReplyRow* end)
    {
        for (const ReplyRow* row = begin; row != end; ++row) {
            Answer(command, row->reply);
            for (const int fragment : {1, 8, 0}) {
                for (const char* echo : {"on", "off"}) {
                    SCOPED_TRACE(std::string(row->name) + ", fragments of " + std::to_string(fragment) + ", echo " +
                                 echo);
                    sim.Command("at fragment " + std::to_string(fragment));
                    sim.Command(std::string("at echo ") + echo);
                    g_n = g_m = kUntouched;
                    LogCapture log;
                    EXPECT_EQ(call(), row->result);
                    EXPECT_EQ(g_n, row->result == 0 ? row->n : kUntouched) << log.Dump();
                    EXPECT_EQ(g_m, row->result == 0 ? row->m : kUntouched);
                    EXPECT_TRUE(!row->log || log.Count(row->log) == 1) << log.Dump();
                    const bool no_echo = std::string(echo) == "off";
                    EXPECT_EQ(log.Count("MatchStringBeginning failed (echo ) "), no_echo ? 1 : 0) << log.Dump();
                }
            }
        }
    }
};

constexpr const char* kMatch = "MatchStringBeginning failed ";
constexpr const char* kNumber = "ParseUInt 1 failed ";
constexpr const char* kSuffix = "ParseRspSuffix failed ";

TEST_F(AtReplies, OfTheGettersOfTwoValues)
{
    const struct {
        const char *command, *prefix;
        ORV_RCODE (*call)();
    } getters[] = {{"AT+CLIP?", "+CLIP: ", [] { return OrvATGetCLIP(&g_n, &g_m); }},
                   {"AT+CLIR?", "+CLIR: ", [] { return OrvATGetCLIR(&g_n, &g_m); }},
                   {"AT+COLP?", "+COLP: ", [] { return OrvATGetCOLP(&g_n, &g_m); }}};
    StartUmts();
    for (const auto& getter : getters) {
        SCOPED_TRACE(getter.command);
        const std::string prefix = getter.prefix;
        const struct {
            const char* name;
            std::string reply;
            ULONG result;
            BYTE n, m;
            const char* log;
        } texts[] = {
            {"as it should be", "\r\n" + prefix + "1,2\r\n\r\nOK", 0, 1, 2, nullptr},
            {"no line break in front", prefix + "0,4\r\nOK", 0, 0, 4, nullptr},
            {"blanks and zeros", "\r\n" + prefix + " 007 , 02 \r\nOK", 0, 7, 2, nullptr},
            {"eight bits of 32", "\r\n" + prefix + "4294967297,258\r\nOK", 0, 1, 2, nullptr},
            {"one value", "\r\n" + prefix + "1\r\n\r\nOK", 5, 0, 0, kMatch},
            {"no value", "\r\n" + prefix + "\r\nOK", 5, 0, 0, kNumber},
            {"no second value", "\r\n" + prefix + "1,\r\nOK", 5, 0, 0, kNumber},
            {"a sign", "\r\n" + prefix + "1,-2\r\nOK", 5, 0, 0, kNumber},
            {"something behind", "\r\n" + prefix + "1,2,3\r\nOK", 5, 0, 0, kSuffix},
            {"no line break behind", "\r\n" + prefix + "1,2 OK", 5, 0, 0, kSuffix},
            {"another answer", "\r\n+CREG: 0,1\r\nOK", 5, 0, 0, kMatch},
            {"only a result", "\r\nOK", 5, 0, 0, kMatch},
            {"two line breaks", "\r\n\r\n" + prefix + "1,2\r\nOK", 5, 0, 0, kMatch},
        };
        std::vector<ReplyRow> rows;
        for (const auto& text : texts)
            rows.push_back({text.name, text.reply.c_str(), text.result, text.n, text.m, text.log});
        Play(getter.command, getter.call, rows.data(), rows.data() + rows.size());
    }
}

TEST_F(AtReplies, OfTheGetterOfOneValue)
{
    const ReplyRow rows[] = {
        {"as it should be", "\r\n+COLR: 2\r\n\r\nOK", 0, 2, kUntouched, nullptr},
        {"nothing behind", "\r\n+COLR: 1OK", 0, 1, kUntouched, nullptr},
        {"no value", "\r\n+COLR: OK", 5, 0, 0, kNumber},
        {"another answer", "\r\n+COLP: 1\r\nOK", 5, 0, 0, kMatch},
    };
    StartUmts();
    Play(
        "AT+COLR?", [] { return OrvATGetCOLR(&g_n); }, std::begin(rows), std::end(rows));
}

TEST_F(AtReplies, OfTheDirectoryNumber)
{
    const ReplyRow rows[] = {
        {"six zeros", "\r\n000000\r\n\r\nOK", 0, 1, kUntouched, nullptr},
        {"ten digits", "\r\n0000001234\r\nOK", 0, 1, kUntouched, nullptr},
        {"the last is none", "\r\n000001\r\nOK", 0, 0, kUntouched, nullptr},
        {"the first is none", "\r\n100000\r\nOK", 0, 0, kUntouched, nullptr},
        {"five zeros", "\r\n00000\r\nOK", 0, 0, kUntouched, nullptr},
        {"none", "\r\nOK", 0, 0, kUntouched, nullptr},
        {"no line break", "000000\r\nOK", 5, 0, 0, kMatch},
    };
    StartUmts();
    Play(
        "AT+MDN", [] { return OrvATGetProvisionStatus(&g_n); }, std::begin(rows), std::end(rows));
}

TEST_F(AtReplies, WithAnUnsolicitedLine)
{
    const std::string echo = "AT+CLIP?\r";
    const std::string reply = "\r\n+CLIP: 1,2\r\n\r\nOK\r\n";
    StartUmts();
    Answer("AT+CLIP?", reply);
    for (const char* line : {"+PACSP0\r\n", "+PACSP1\r\n"}) {
        for (size_t at = 0; at <= echo.size() + reply.size(); ++at) {
            SCOPED_TRACE(std::string(line) + " at " + std::to_string(at));
            // Between the two letters of the final result it hides that one, and nothing else would ever come.
            if (at == echo.size() + reply.find("K")) continue;
            sim.Command("at insert " + std::to_string(at) + " " + Quoted(line));
            g_n = g_m = kUntouched;
            EXPECT_EQ(OrvATGetCLIP(&g_n, &g_m), ORV_RCODE_OK);
            EXPECT_EQ(g_n, 1);
            EXPECT_EQ(g_m, 2);
        }
    }
    // Any other line is not the answer, unless it comes behind it.
    sim.Command("at insert 9 \"\\r\\nRING\\r\\n\"");
    EXPECT_EQ(OrvATGetCLIP(&g_n, &g_m), ORV_RCODE_FAILED);
    sim.Command("at insert 99 \"\\r\\nRING\\r\\n\"");
    EXPECT_EQ(OrvATGetCLIP(&g_n, &g_m), ORV_RCODE_OK);
}

TEST_F(AtReplies, ThatNoModuleWouldGive)
{
    StartUmts();
    const std::pair<const char*, std::string> rows[] = {
        {"digits without end", "\r\n+CLIP: " + std::string(1900, '9') + "\r\nOK"},
        {"a format", "\r\n+CLIP: %s%n%s\r\nOK"},
        {"a result and an error", "\r\n+CLIP: 1,2\r\n\r\nOK\r\nERROR"},
        {"zero octets and an error", std::string("\0\0ERR\0OR\0", 9)},
        {"octets above 127", "\xFF\xFE\x80OK"},
        {"more than fits, without a result", std::string(4000, '1')},
    };
    for (const auto& [name, reply] : rows) {
        SCOPED_TRACE(name);
        Answer("AT+CLIP?", reply);
        EXPECT_EQ(OrvATGetCLIP(&g_n, &g_m), ORV_RCODE_FAILED);
        EXPECT_EQ(g_n, kUntouched);
        EXPECT_EQ(g_m, kUntouched);
    }
    for (const char* when : {"before", "during"}) {
        sim.Command("at clear");
        sim.Command("serial hangup");
        sim.WriteRegistry("VID_3D5E&PID_5120", sim.Command("serial name"));
        OrvApiShutdown();
        Select(0x5120);
        sim.Command(std::string("at hangup ") + when);
        EXPECT_EQ(OrvATGetCLIP(&g_n, &g_m), ORV_RCODE_FAILED) << when;
        EXPECT_EQ(g_n, kUntouched);
    }
}

// --- the port of a CDMA module ---------------------------------------------------------------------------------------

const struct {
    const char* name;
    ORV_RCODE (*call)();
    const char* port_text;
    const char* done_text; // logged on success; null: nothing
} kOnDemand[] = {
    {"OrvATSetEnum", [] { return OrvATSetEnum("1"); }, "OrvATSetEnum: AT PORT NAME detected is ", nullptr},
    {"OrvATReset", OrvATReset, "OrvATRtnReset: AT PORT NAME detected is ", "OrvATReset::no Error"},
    {"OrvATRtnReset", [] { return OrvATRtnReset("1"); }, "OrvATSetEnum: AT PORT NAME detected is ",
     "OrvATRtnReset::no Error"},
    {"OrvATGetProvisionStatus", [] { return OrvATGetProvisionStatus(&g_n); }, "OrvATSetEnum: AT PORT NAME detected is ",
     nullptr},
};

bool PortIsOpen() { return OrvATSetSideToneGain(0, 0) != ORV_RCODE_PORT_NOT_OPEN; }

TEST_F(AtSettings, ThePortOfACdmaModuleIsOpenForTheCallOnly)
{
    StartCdma();
    const std::string port = sim.Command("serial name");
    for (const char* refusal : {"", "\r\nERROR\r\n"}) {
        for (const char* command : {kUnlock, "AT!RESET", "AT$RTN=1", "AT+MDN"})
            if (*refusal) Answer(command, refusal);
        for (const auto& row : kOnDemand) {
            SCOPED_TRACE(std::string(row.name) + (*refusal ? ", refused" : ""));
            LogCapture log;
            EXPECT_EQ(row.call(), *refusal ? ORV_RCODE_FAILED : ORV_RCODE_OK);
            EXPECT_EQ(log.Count(row.port_text + port), 1) << log.Dump();
            EXPECT_TRUE(!row.done_text || log.Count(row.done_text) == (*refusal ? 0 : 1)) << log.Dump();
            EXPECT_FALSE(PortIsOpen());
        }
    }
}

TEST_F(AtSettings, APortThatIsOpenStaysOpen)
{
    StartUmts();
    for (const char* module : {"GSM/UMTS", "CDMA"}) {
        for (const auto& row : kOnDemand) {
            SCOPED_TRACE(std::string(row.name) + ", " + module);
            LogCapture log;
            EXPECT_EQ(row.call(), ORV_RCODE_OK);
            EXPECT_EQ(log.Count(row.port_text + sim.Command("serial name")), 0) << log.Dump();
            EXPECT_TRUE(PortIsOpen());
        }
        StartCdma(); // the other module is not shut down first, and leaves its port open
    }
}

TEST_F(AtSettings, APortThatCannotBeOpenedIsReported)
{
    StartCdma();
    const std::string none = sim.Path("no-such-port");
    const struct {
        const char* name;
        std::string port;
        bool named;
    } rows[] = {
        {"not there", none, true},
        {"name of 259 characters", "/" + std::string(258, 'x'), true},
        {"name that is too long", std::string(300, 'x'), false},
        {"no name", "", true},
    };
    for (const auto& row : rows) {
        sim.WriteRegistry("VID_3D5E&PID_5101", row.port);
        for (const auto& function : kOnDemand) {
            SCOPED_TRACE(std::string(function.name) + ", " + row.name);
            LogCapture log;
            EXPECT_EQ(function.call(), ORV_RCODE_PORT_NOT_OPEN);
            EXPECT_EQ(log.Count(function.port_text + row.port), row.named ? 1 : 0) << log.Dump();
            EXPECT_EQ(log.Count("Cannot open Registry for AT port"), row.named ? 0 : 1);
            EXPECT_EQ(log.Count(kNotOpen), 1);
        }
    }
    sim.RemoveRegistry();
    EXPECT_EQ(OrvATReset(), ORV_RCODE_PORT_NOT_OPEN);
    EXPECT_EQ(Sent(), kNothing);
}

} // namespace
