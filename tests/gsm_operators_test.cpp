// The SIM's preferred operators over the AT port: the command lines, the module's list, and replies of any kind.

#include <string.h>

#include <string>
#include <vector>

#include "tests/support/gsm_module.h"

namespace {

using Lines = std::vector<std::string>;

constexpr ULONG kAny = ORV_OPERATOR_ANY_INDEX;

class GsmOperators : public GsmModule {
public:
    GsmOperators() { Start(); }

    Lines Sent()
    {
        const Lines lines = SplitLines(sim.Command("at log"));
        sim.Command("at log clear");
        return lines;
    }
    // From now on the module answers the command so, behind the echo.
    void Answer(const std::string& command, const std::string& reply)
    {
        std::string line = "at reply";
        for (const std::string& word : {command, reply}) {
            line += " \"";
            for (const char character : word) {
                char escape[8];
                snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned char>(character));
                line += escape;
            }
            line += "\"";
        }
        sim.Command(line);
    }
};

// "INDEX/FORMAT/ACCESS/OPERATOR" for each entry, or the code.
Lines List(ULONG format = 2)
{
    ORV_PREF_OPERATOR_LIST list;
    memset(&list, 0x77, sizeof list);
    if (const ORV_RCODE code = OrvGetPreferredOperatorListGobi(format, &list)) {
        EXPECT_EQ(list.uCount, 0x77777777u) << "written without success";
        return {std::to_string(code)};
    }
    EXPECT_EQ(list.sizeStruct, sizeof list);
    EXPECT_EQ(list.pEntries == nullptr, list.uCount == 0);
    Lines lines;
    for (ULONG i = 0; i < list.uCount; ++i) {
        const ORV_PREF_OPERATOR& entry = list.pEntries[i];
        char access[16];
        snprintf(access, sizeof access, "/%02x/", static_cast<unsigned>(entry.uAccessFlags));
        lines.push_back(std::to_string(entry.uIndex) + "/" + std::to_string(entry.uFormat) + access +
                        std::string(entry.szOperator, strnlen(entry.szOperator, sizeof entry.szOperator)));
    }
    OrvFreeBuffer(list.pEntries);
    return lines;
}

TEST_F(GsmOperators, TheCommandSaysWhatTheFlagsMean)
{
    const std::string longest(32, 'x');
    // clang-format off
    const struct {
        const char* name;
        ULONG index, flags;
        std::string text, sent; // without "AT+CPOL="
        ULONG result;
    } rows[] = {
        {"numeric", 3, 0x04, "26201", "3,2,\"26201\"", 0},
        {"numeric before short and long", 4, 0x07, "26202", "4,2,\"26202\"", 0},
        {"short before long", 4, 0x03, "Second N", "4,1,\"Second N\"", 0},
        {"long", 4, 0x01, "Second Network", "4,0,\"Second Network\"", 0},
        {"UTRAN before all", 5, 0x74, "26203", "5,2,\"26203\",0,0,1", 0},
        {"GSM compact before GSM", 5, 0x34, "26203", "5,2,\"26203\",0,1,0", 0},
        {"GSM", 5, 0x14, "26203", "5,2,\"26203\",1,0,0", 0},
        {"the module's choice", kAny, 0x04, "310410", ",2,\"310410\"", 0},
        {"the largest index", 0xFFFFFFFE, 0x04, "26201", "4294967294,2,\"26201\"", 5},
        {"32 characters", 5, 0x01, longest, "5,0,\"" + longest + "\"", 5},
        {"a conversion", 5, 0x01, "%s%n%d", "5,0,\"%s%n%d\"", 5},
        {"no naming flag", 5, 0xF0, "26201", "", 4},
        {"33 characters", 5, 0x01, longest + "x", "", 4},
        {"a quotation mark", 5, 0x01, "a\"b", "", 4},
        {"a line break", 5, 0x04, "26201\rAT+CPOL=1", "", 4},
        {"the last control character", 5, 0x01, "a\x7f", "", 4},
    };
    // clang-format on
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Sent();
        EXPECT_EQ(OrvAddPreferredOperatorGobi(row.index, row.flags, row.text.c_str()), row.result);
        EXPECT_EQ(Sent(), row.sent.empty() ? Lines() : Lines{"AT+CPOL=" + row.sent});
    }
    EXPECT_EQ(List(), Parts("1/2/50/00101; 2/2/40/00102; 3/2/00/26201; 4/2/00/00102; 5/2/10/26203; 6/2/00/310410"));
    EXPECT_EQ(Sent(), Parts("AT+CPOL=,2; AT+CPOL?"));
}

TEST_F(GsmOperators, TheModuleKeepsTheList)
{
    EXPECT_EQ(List(1), Parts("1/1/50/Test Net; 2/1/40/Second N"));
    EXPECT_EQ(OrvRemovePreferredOperatorGobi(1), ORV_RCODE_OK);
    EXPECT_EQ(OrvRemovePreferredOperatorGobi(1), ORV_RCODE_FAILED);
    EXPECT_EQ(OrvRemovePreferredOperatorGobi(0xFFFFFFFF), ORV_RCODE_FAILED);
    EXPECT_EQ(OrvAddPreferredOperatorGobi(kAny, 0x44, "00170"), ORV_RCODE_OK) << "takes the free place";
    EXPECT_EQ(List(0), Parts("1/2/40/00170; 2/0/40/Second Network")) << "digits where there is no name";
    EXPECT_EQ(List(3), Lines{"5"});
    sim.Command("set operators.capacity 2");
    EXPECT_EQ(OrvAddPreferredOperatorGobi(kAny, 0x04, "00171"), ORV_RCODE_FAILED) << "no room";
    sim.Command("set operators.list none");
    EXPECT_EQ(List(), Lines());
    std::string all = "set operators.list";
    for (int i = 1; i <= 50; ++i)
        all += " " + std::to_string(i) + ":262:" + std::to_string(i) + ":2:2";
    sim.Command(all);
    EXPECT_EQ(List().back(), "50/2/20/26250");
    platform_hooks::FailCall("HeapAlloc", 2, 1, 8);
    LogCapture log;
    EXPECT_EQ(List(), Lines{"5"});
    EXPECT_EQ(log.Count("OrvGetPreferredOperatorListGobi:  FAILED to allocate memory"), 1) << log.Dump();
}

TEST_F(GsmOperators, EachRefusalIsLoggedWithItsTexts)
{
    const std::string add = "OrvRemovePreferredOperator: ", list = "OrvGetPreferredOperatorListGobi";
    const std::string listed = list + "::Extracted CME Error code = 21; " + list + ": Failed to extract CME Error";
    const auto get = [] { return List(1) == Lines{"5"} ? ORV_RCODE_FAILED : ORV_RCODE_OK; };
    const struct {
        const char* command;
        ORV_RCODE (*call)();
        std::string logs; // with a number and without, and what else
    } rows[] = {
        {"AT+CPOL=1,2,\"26201\"", [] { return OrvAddPreferredOperatorGobi(1, 4, "26201"); },
         add + "Extracted CME Error code = 21; " + add + "Failed to extract CME Error"},
        {"AT+CPOL=1", [] { return OrvRemovePreferredOperatorGobi(1); }, listed},
        {"AT+CPOL=,1", get, listed + "; AT command to set the Operator format AT+CPOL=,1 FAILED"},
        {"AT+CPOL?", get, listed},
    };
    for (const auto& row : rows) {
        for (const bool numbered : {true, false}) {
            SCOPED_TRACE(row.command);
            sim.Command("at clear");
            Answer(row.command, numbered ? "\r\n+CME ERROR: 21\r\n" : "\r\nERROR\r\n");
            LogCapture log;
            EXPECT_EQ(row.call(), ORV_RCODE_FAILED);
            const Lines logs = Parts(row.logs);
            EXPECT_EQ(log.Find(logs[numbered ? 0 : 1]).module, "TALVEKGsm") << log.Dump();
            EXPECT_TRUE(logs.size() == 2 || log.Count(logs.back()) == 1) << log.Dump();
            EXPECT_EQ(Sent().back(), row.command) << "nothing follows";
        }
    }
    platform_hooks::ReplaceCall("Sleep", reinterpret_cast<FARPROC>(+[](DWORD) {}));
    platform_hooks::ReplaceCall("GetTickCount", reinterpret_cast<FARPROC>(+[] { return TicksByCall() * 2001; }));
    LogCapture log;
    EXPECT_EQ(OrvRemovePreferredOperatorGobi(2), ORV_RCODE_OK) << "late, but whole";
    EXPECT_EQ(log.Count("atcmd timedout!"), 1) << "after two seconds";
}

// The first three rows are replies of modules in the field.
TEST_F(GsmOperators, ReadsEachKindOfReply)
{
    const char* const index = "OrvGetPreferredOperatorListGobi: ParseUInt for Index failed";
    const char* const format = "OrvGetPreferredOperatorListGobi: ParseUInt for format failed";
    const char *const prefix = "ParseRspPrefix failed", *const rest = "ParseRspSuffix failed ";
    const char* const no_result = "OrvGetPreferredOperatorListGobi: FindRspPostfix failed";
    const std::string begin = "\r\n+CPOL: ", end = "\r\n\r\nOK\r\n", long_name(300, 'n'), name33(33, 'n');
    // clang-format off
    const struct {
        const char* name;
        std::string reply, entries;
        const char* log; // null: none
    } rows[] = {
        {"without quotes", begin + "1,2,24412,0,0,0,0" + end, "1/2/00/24412", nullptr},
        {"without technologies", begin + "101,2,\"24491\"" + end, "101/2/00/24491", nullptr},
        {"no index", begin + "X,2,\"24491\"" + end, "5", index},
        {"side by side", begin + "1,2,\"24412\",1,1,1" + begin + "2,0,\"A, B\",0,1,0" + end,
         "1/2/70/24412; 2/0/20/A, B", nullptr},
        {"line breaks of their own", begin + "1,2,\"24412\",1,0,0,1,1\r\n" + begin + "2,2,\"24413\"" + end,
         "1/2/10/24412; 2/2/00/24413", nullptr},
        {"no line break in front", "+CPOL: 1,2,\"24412\"" + end, "1/2/00/24412", nullptr},
        {"nothing", "\r\nOK\r\n", "", nullptr},
        {"no operator", begin + "7,2" + end, "7/2/00/", nullptr},
        {"33 characters", begin + "7,0,\"" + name33 + "\"" + end, "7/0/00/" + name33, nullptr},
        {"300 characters", begin + "7,0,\"" + long_name + "\"" + end, "7/0/00/" + long_name.substr(0, 35), nullptr},
        {"a quotation mark within", begin + "7,0,\"a\"b\"" + end, "5", rest},
        {"a line break within", begin + "7,0,\"a\r\nb\"" + end, "5", rest},
        {"no quotation mark behind", begin + "7,0,\"ab" + end, "5", rest},
        {"no format", begin + "7" + end, "5", format},
        {"a format that is none", begin + "7,x" + end, "5", format},
        {"a technology that is none", begin + "7,2,\"24412\",1,x,0" + end, "5", rest},
        {"another line", begin + "1,2,\"24412\"\r\n+COPS: 0" + end, "5", prefix},
        {"another line first", "\r\nRING\r\n" + begin + "1,2,\"24412\"" + end, "5", prefix},
        {"a name with the result in it", begin + "1,2,\"OKLA", "5", no_result},
        {"a result without its line breaks", begin + "1,2,\"24412\"\r\nOK", "5", no_result},
        {"conversions", begin + "%s,%n" + end, "5", index},
    };
    // clang-format on
    for (const auto& row : rows) {
        Answer("AT+CPOL?", row.reply);
        for (const char* echo : {"on", "off"}) {
            SCOPED_TRACE(std::string(row.name) + ", echo " + echo);
            sim.Command(std::string("at echo ") + echo);
            LogCapture log;
            EXPECT_EQ(List(), Parts(row.entries));
            EXPECT_TRUE(!row.log || log.Count(row.log) == 1) << log.Dump();
            const bool echo_missed = row.log != no_result && std::string(echo) == "off";
            EXPECT_EQ(log.Count("MatchStringBeginning failed (echo ) "), echo_missed ? 1 : 0);
        }
    }
}

} // namespace
