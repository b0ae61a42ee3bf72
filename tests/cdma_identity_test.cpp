// CDMA modules: the guards of their functions, and who they are.

#include <string.h>

#include "platform/hooks.h"
#include "tests/support/cdma_module.h"

namespace {

struct Outputs {
    ULONG word;
    WORD half;
    int32_t number;
    ORV_MEID_ESN serial;
    ORV_RSSI_ECIO rssi;
    WCHAR text[8];
    BYTE octets[7];
    ULONG words[4];
    ULONGLONG stamp;
};
Outputs g_out;
bool g_null; // every pointer argument is

template <class T>
T* To(T& member)
{
    return g_null ? nullptr : &member;
}

ORV_RCODE GetNetworkParameters()
{
    BYTE(&o)[7] = g_out.octets;
    ULONG(&w)[4] = g_out.words;
    return OrvGetCDMANetworkParameters(To(o[0]), To(o[1]), To(o[2]), To(o[3]), To(o[4]), To(o[5]), To(o[6]), To(w[0]),
                                       To(w[1]), To(w[2]), To(w[3]));
}

constexpr ULONG kAsItWas = 0x77777777;
enum class Null { Refused, Allowed };

struct Function {
    GuardedFunction guard;
    const char* entry = nullptr; // that is asked first, where its failure is the function's
    ULONG word = kAsItWas;       // the output when it fails
    Null null = Null::Refused;
};

// clang-format off
#define CALL(name, ...) #name, __VA_ARGS__, [] { return name(); }
#define GET(name, out, ...) #name, __VA_ARGS__, [] { return name(To(g_out.out)); }
const Function kFunctions[] = {
    // The module itself is asked, not the selection.
    {{"OrvGetCDMANetworkParameters", 17, 17, 0, GetNetworkParameters, true}, nullptr, 0, Null::Allowed},
    {{CALL(OrvIsModemReady, 17, 17, 0), true}, nullptr, 0, Null::Allowed},
    // Either kind of module is served; the other one has no MEID.
    {{GET(OrvGetMEIDESN, serial, 17, 5, 0), true}, "GetSerialNumbers"},
    {{GET(OrvGetRssi, word, 17, 0, 0), true}, "GetSignalStrengths", 250},
    {{CALL(OrvGetESN, 1, 1, 1)}, nullptr, 0, Null::Allowed},
    {{GET(OrvGetESNGobi, word, 17, 1, 0)}, "GetSerialNumbers"},
    {{GET(OrvGetRssiEcio, rssi, 17, 1, 0)}, "GetSignalStrengths"},
    {{GET(OrvGetECIO, half, 17, 1, 0)}},
    {{GET(OrvGetChannelNumber, word, 17, 1, 0)}, "GetRFInfo", 0},
    {{GET(OrvGetTechBandClass, word, 17, 1, 0)}, "GetRFInfo", 0},
    {{GET(OrvGetServiceIndication, word, 17, 1, 0)}, "GetServingNetwork"},
    {{GET(OrvGetRoamingStatus, word, 17, 1, 0)}, "GetServingNetwork"},
    {{GET(OrvGetHdrRoamStatus, word, 17, 1, 0)}, "GetServingNetwork"},
    {{GET(OrvGetHdrSrvState, word, 17, 1, 0)}, "GetServingNetwork"},
    {{GET(OrvGetHdrHybrPref, word, 17, 1, 0)}},
    {{GET(OrvGetCurrentBaseStation, word, 17, 1, 0)}, "GetServingNetwork"},
    {{GET(OrvGetTechSID, half, 17, 1, 0)}, "GetHomeNetwork"},
    {{GET(OrvGetTechNID, half, 17, 1, 0)}, "GetHomeNetwork"},
    {{GET(OrvGetCarrierID, number, 17, 1, 0)}},
    {{GET(OrvGetPRLVersion, half, 17, 1, 0)}, "GetPRLVersion"},
    {{"OrvGetSystemTime", 17, 1, 0, [] { return OrvGetSystemTime(To(g_out.stamp), To(g_out.word)); }},
     "GetNetworkTime", kAsItWas, Null::Allowed},
    {{"OrvGetPhoneNumber", 17, 1, 0, [] { return OrvGetPhoneNumber(To(g_out.text[0]), 8); }}, "GetVoiceNumber"},
    {{"OrvPstGetDisplayBannerName", 17, 1, 0, [] { return OrvPstGetDisplayBannerName(To(g_out.text[0]), 8); }}},
    {{"OrvGetByteCounter", 17, 1, 7, [] { return OrvGetByteCounter(To(g_out.word), To(g_out.words[0])); }},
     "GetConnectionRate", kAsItWas, Null::Allowed}, // 7: there is no session
    {{CALL(OrvResetByteCounter, 17, 1, 0)}, nullptr, 0, Null::Allowed},
    {{GET(OrvGetGeneralFeatureSupport, word, 10, 1, 0)}},
    {{GET(OrvGetIOTADisable, word, 17, 1, 0)}},
    {{CALL(OrvSetDormant, 17, 1, 0)}, nullptr, 0, Null::Allowed},
    {{GET(OrvGetPower, word, 17, 1, 0)}, "GetPower"},
    {{"OrvSetPower", 17, 1, 0, [] { return OrvSetPower(0); }}, "SetPower", kAsItWas, Null::Allowed},
    {{CALL(OrvSetPowerDown, 17, 1, 0)}, "SetPower", kAsItWas, Null::Allowed},
    {{CALL(OrvResetModem, 17, 1, 0)}, "SetPower", kAsItWas, Null::Allowed},
    {{CALL(OrvPowerSaveExit, 17, 1, 18)}, nullptr, 0, Null::Allowed},
    {{CALL(OrvGetNDISMode, 0, 0, 0)}, nullptr, 0, Null::Allowed},
    {{CALL(OrvSetNDISPrefMode, 0, 0, 0)}, nullptr, 0, Null::Allowed},
    {{"OrvSetHdrHybrPref", 17, 1, 0, [] { return OrvSetHdrHybrPref(1); }}, nullptr, 0, Null::Allowed},
};
#undef GET
#undef CALL
// clang-format on

TEST_F(CdmaModule, EachFunctionHasItsGuard)
{
    GuardedFunction guards[std::size(kFunctions)];
    for (size_t i = 0; i < std::size(kFunctions); ++i)
        guards[i] = kFunctions[i].guard;
    SweepGuards(sim, guards, "cdma:5101", "umts:5120");
}

// Calls with outputs of 0x77 and expects them untouched but for the first word.
void ExpectFailure(const Function& function, ULONG code)
{
    Outputs expected;
    memset(&expected, 0x77, sizeof expected);
    g_out = expected;
    EXPECT_EQ(function.guard.call(), code) << function.guard.name;
    expected.word = function.word;
    EXPECT_EQ(memcmp(&g_out, &expected, sizeof expected), 0) << function.guard.name;
}

TEST_F(CdmaModule, FailuresLeaveTheOutputsAsTheyWereOrAtTheirDefault)
{
    for (const Function& function : kFunctions)
        if (function.entry) ExpectFailure(function, function.guard.before_start_up);
    Start();
    for (const Function& function : kFunctions) {
        if (!function.entry) continue;
        const ULONG codes[][2] = {{1025, 1}, {5, 2}, {1026, 600}, {3, 5}};
        for (const auto& [status, code] : codes) {
            sim.Command(std::string("fail ") + function.entry + " " + std::to_string(status));
            ExpectFailure(function, code);
        }
        sim.Command("clear all");
    }
}

TEST_F(CdmaModule, NullPointersAreRefusedBehindTheGuardsAndBeforeTheModuleIsAsked)
{
    g_null = true;
    for (const bool started : {false, true}) {
        if (started) Start();
        for (const Function& function : kFunctions) {
            sim.ClearJournal();
            const ULONG ready = function.null == Null::Allowed ? function.guard.ready : 4;
            EXPECT_EQ(function.guard.call(), started ? ready : function.guard.before_start_up) << function.guard.name;
            if (function.null == Null::Refused) {
                EXPECT_EQ(sim.Journal(), Lines()) << function.guard.name;
            }
        }
    }
    EXPECT_EQ(OrvGetPhoneNumber(g_out.text, 0), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvPstGetDisplayBannerName(g_out.text, 0), ORV_RCODE_BAD_PARAMETER);
    g_null = false;
}

TEST_F(CdmaModule, ReadsTheEsnAsAHexadecimalNumberOf32Bits)
{
    Start();
    const std::string failed = " | strtoul failed and returned value = ";
    const struct {
        const char* esn;
        std::string answer;
    } rows[] = {
        {"80E5C86D", "0 80E5C86D"},
        {"fffffffe", "0 FFFFFFFE"},
        {" +0x12G4", "0 18"},
        {"-2", "0 FFFFFFFE"},
        {"", "0 -"},
        {"0", "5 0" + failed + "0"},
        {"0x", "5 0" + failed + "0"},
        {"none", "5 0" + failed + "0"},
        {"FFFFFFFF", "5 FFFFFFFF" + failed + "-1"},
        {"100000000", "5 FFFFFFFF" + failed + "-1"},
        {"-1234567890ABCDE", "5 FFFFFFFF" + failed + "-1"},
    };
    for (const auto& row : rows) {
        sim.Command("set identity.esn \"" + std::string(row.esn) + "\"");
        EXPECT_EQ(Answer(OrvGetESNGobi), row.answer) << row.esn;
    }
    EXPECT_EQ(sim.Journal()[0], "GetSerialNumbers(16, 32, 32)");
    sim.Command("hostile GetSerialNumbers scribble"); // no terminator anywhere
    EXPECT_EQ(Answer(OrvGetESNGobi), "5 0" + failed + "0");
}

TEST_F(CdmaModule, TakesTheMeidApart)
{
    Start();
    const struct {
        const char *meid, *esn;
        ULONG code;
        WORD valid;
        ULONG high, low, pesn;
    } rows[] = {
        {"A1000000000001", "80E5C86D", 0, 1, 0xA10000, 1, 0x80E5C86D},
        {"a10000fedcba98ff", "80E5C86D", 0, 1, 0xA10000, 0xFEDCBA98, 0x80E5C86D}, // two digits too many
        {"A10000", "80E5C86D", 5, 1, 0xA10000, 0, 0x80E5C86D},
        {"A1", "80E5C86D", 5, 1, 0xA1, 0, 0x80E5C86D},
        {"", "80E5C86D", 5, 0, 0, 0, 0x80E5C86D},
        {"A10000FFFFFFFF", "80E5C86D", 5, 1, 0xA10000, 0xFFFFFFFF, 0x80E5C86D},
        {"A1000000000001", "no", 5, 1, 0xA10000, 1, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.meid) + " " + row.esn);
        Run("set identity.meid \"" + std::string(row.meid) + "\"; set identity.esn " + row.esn);
        LogCapture log;
        ORV_MEID_ESN record;
        memset(&record, 0x77, sizeof record);
        EXPECT_EQ(OrvGetMEIDESN(&record), row.code);
        EXPECT_EQ(record.sizeStruct, 0x77777777u) << "the caller's";
        EXPECT_EQ(record.bMeidValid, row.valid);
        EXPECT_EQ(record.bEsnValid, row.valid) << "follows the MEID";
        EXPECT_EQ(record.uMeidHigh, row.high);
        EXPECT_EQ(record.uMeidLow, row.low);
        EXPECT_EQ(record.uPesn, row.pesn);
        EXPECT_EQ(record.wReserved + record.uReserved, 0u);
        char numbers[100];
        snprintf(numbers, sizeof numbers, "Meid_High = %X  Meid_Low = %X PESN = %X", row.high, row.low, row.pesn);
        Lines expected(row.code != 0, "strtoul failed on either meid or esn");
        expected.push_back(numbers);
        EXPECT_EQ(log.Texts(), expected);
        EXPECT_EQ(log.Find(numbers).module, "TALVEKCdma");
    }
    sim.Command("hostile GetSerialNumbers scribble");
    EXPECT_EQ(OrvGetMEIDESN(&g_out.serial), ORV_RCODE_FAILED);
    EXPECT_EQ(sim.Journal()[0], "GetSerialNumbers(50, 50, 50)");
}

TEST_F(CdmaModule, WidensThePhoneNumberIntoTheRoomThatThereIs)
{
    Start();
    const std::u16string whole(u"2025550123\0x", 12);
    for (const ULONG size : {3u, 10u, 11u, 300u}) {
        std::u16string buffer(400, u'x');
        EXPECT_EQ(OrvGetPhoneNumber(&buffer[0], size), ORV_RCODE_OK);
        EXPECT_EQ(buffer.substr(0, 12), (whole.substr(0, std::min(size, 11u)) + u"xxxxxxxxx").substr(0, 12)) << size;
    }
    EXPECT_EQ(sim.Journal(), (Lines{"GetVoiceNumber(3, 20)", "GetVoiceNumber(10, 20)", "GetVoiceNumber(11, 20)",
                                    "GetVoiceNumber(255, 20)"}));
    sim.Command("hostile GetVoiceNumber scribble");
    for (const ULONG size : {1u, 255u, 300u}) {
        std::u16string buffer(400, u'x');
        EXPECT_EQ(OrvGetPhoneNumber(&buffer[0], size), ORV_RCODE_OK);
        EXPECT_EQ(buffer.substr(size), std::u16string(400 - size, u'x')) << "beyond the buffer of " << size;
    }
    sim.ClearJournal();
    std::u16string buffer(8, u'x');
    ASSERT_TRUE(platform_hooks::FailCall("HeapAlloc", 1, 1, 8));
    EXPECT_EQ(OrvGetPhoneNumber(&buffer[0], 8), ORV_RCODE_OK) << "without memory";
    platform_hooks::Reset();
    EXPECT_EQ(buffer, std::u16string(8, u'x'));
    EXPECT_EQ(sim.Journal(), Lines());
}

TEST_F(CdmaModule, NetworkParametersComeStraightFromTheModuleThatIsThere)
{
    ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK); // nothing need be selected
    Run("set cdma.roaming 3; set cdma.custom-scp 1; set cdma.protocol 0x11223344");
    EXPECT_EQ(GetNetworkParameters(), ORV_RCODE_OK);
    const BYTE octets[] = {2, 82, 0, 1, 1, 0, 1};
    const ULONG words[] = {0x11223344, 0, 0, 3};
    EXPECT_EQ(memcmp(g_out.octets, octets, sizeof octets), 0);
    EXPECT_EQ(memcmp(g_out.words, words, sizeof words), 0);
    sim.Command("fail GetCDMANetworkParameters 5");
    sim.ClearJournal();
    LogCapture log;
    EXPECT_EQ(GetNetworkParameters(), ORV_RCODE_OK) << "whatever the vendor library answers";
    EXPECT_EQ(log.Texts(), Lines());
    EXPECT_EQ(sim.Journal(), (Lines{"OrvGetCwePkgsInfo(20, 85, 85, 15, 85, 20, 10)", "GetFirmwareInfo()",
                                    "GetCDMANetworkParameters()"}));
}

TEST_F(CdmaModule, GivesHomeNetworkAndRoamingListAndOnlyAsksForTheTime)
{
    Start();
    EXPECT_EQ(Answer(OrvGetTechSID), "0 4107");
    EXPECT_EQ(Answer(OrvGetTechNID), "0 65535");
    EXPECT_EQ(Answer(OrvGetPRLVersion), "0 50001 | PRL Version = 50001");
    ULONGLONG stamp = 77;
    ULONG source = 78;
    EXPECT_EQ(OrvGetSystemTime(&stamp, &source), ORV_RCODE_OK);
    EXPECT_EQ(stamp + source, 155u) << "not given";
    EXPECT_EQ(sim.Journal(),
              (Lines{"GetHomeNetwork(50)", "GetHomeNetwork(50)", "GetPRLVersion()", "GetNetworkTime()"}));
    sim.Command("hostile GetHomeNetwork scribble");
    EXPECT_EQ(Answer(OrvGetTechSID), "0 65535");
}

// --- carrier ---------------------------------------------------------------------------------------------------------

TEST_F(CdmaModule, TheCarrierIsThatOfThePackageOrOfTheImage)
{
    const struct {
        const char *model, *package, *image; // the carriers of either
        int32_t id;
        const char* name;
    } rows[] = {
        {"OM9000", "5", "101", 5, "Verizon"},
        {"OM9000", "5", "102", 2, "Sprint"},
        {"OM9000", "5", "103", 8, "Alltel"},
        {"OM9000", "5", "104", 3, "Bell"},
        {"OM9000", "5", "105", 4, "Telus"},
        {"OM9000", "5", "106", 9, "US Cellular"},
        {"OM9000", "5", "107", 20, "Telstra"},
        {"OM9000", "5", "108", 14, "China Unicom"},
        {"OM9000", "5", "109", 18, "TNZ"},
        {"OM9000", "5", "110", -1, "SK Telecom"},
        {"OM9000", "5", "111", 19, "Reliance Com"},
        {"OM9000", "5", "112", 29, "Tata Com"},
        {"OM9000", "5", "113", -1, "MetroPCS Com"},
        {"OM9000", "5", "114", -1, "Leap Wireless"},
        {"OM9000", "5", "115", -1, "KDDI"},
        {"OM9000", "5", "116", 17, "Iusacell"},
        {"OM9000", "5", "117", 30, "China Telecom"},
        {"OM9000", "5", "118", -1, "OM Handset"},
        {"OM9000", "5", "100", -1, ""},
        {"OM9000", "5", "119", -1, ""},
        {"OM9000", "5", "0", -1, ""},
        {"OM9000", "5", "2147483647", -1, ""},
        {"KT52", "5", "108", 5, "Verizon"},
        {"a KT5230", "101", "108", 5, "Verizon"},
        {"KT5230", "11", "108", 2, "Sprint"},
        {"KT5230", "102", "108", -1, ""},
        {"KT5230", "1011", "108", -1, ""},
        {"KT5 2KT5", "5", "108", 14, "China Unicom"},
    };
    Start();
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.model) + " " + row.package + " " + row.image);
        Run("set package.model \"" + std::string(row.model) + "\"; set package.carrier " + row.package +
            "; set firmware.carrier " + row.image);
        const bool kt52 = strstr(row.model, "KT52") != nullptr;
        Lines texts;
        if (!kt52 && !*row.name) texts = {std::string("Out of range GobiCarrierID for CDMA = ") + row.image};
        EXPECT_EQ(Answer(OrvGetCarrierID), "0 " + std::to_string(row.id) + (texts.empty() ? "" : " | " + texts[0]));
        LogCapture log;
        std::u16string banner(20, u'x'), expected(kt52 ? u"" : Widen(row.name));
        EXPECT_EQ(OrvPstGetDisplayBannerName(&banner[0], 20), ORV_RCODE_OK);
        expected.resize(20);
        EXPECT_EQ(banner, expected) << "a name that the package told is only logged";
        texts.push_back("Display banner Name = " + std::string(row.name) + " and return code = 0");
        EXPECT_EQ(log.Texts(), texts);
    }
}

TEST_F(CdmaModule, TheCarrierIsFoundWithOneAnswerOfTwo)
{
    const struct {
        const char *commands, *id, *log; // what the banner adds
    } rows[] = {
        {"fail OrvGetCwePkgsInfo 3", "0 2 | GetCwePkgsInfo returns 3", "Sprint and return code = 0"},
        {"fail GetFirmwareInfo 5", "0 5 | GetFirmwareInfo returns 5", "Verizon and return code = 0"},
        {"fail OrvGetCwePkgsInfo 3; fail GetFirmwareInfo 1026",
         "600 - | GetCwePkgsInfo returns 3 | GetFirmwareInfo returns 1026 | Got GobiAPI error = 1026",
         " and return code = 600"},
        // Lengths beyond the room, and texts that fill it.
        {"hostile OrvGetCwePkgsInfo count 65535", "0 5", "Verizon and return code = 0"},
        {"hostile OrvGetCwePkgsInfo scribble", "0 2", "Sprint and return code = 0"},
    };
    Start();
    sim.Command("set firmware.carrier 102");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.commands);
        Run(row.commands);
        EXPECT_EQ(Answer(OrvGetCarrierID), row.id);
        LogCapture log;
        OrvPstGetDisplayBannerName(g_out.text, 8);
        EXPECT_EQ(log.Texts().back(), std::string("Display banner Name = ") + row.log);
        sim.Command("clear all");
    }
}

TEST_F(CdmaModule, TheBannerIsCutToItsBufferAndClearedFirst)
{
    std::u16string banner(20, u'x');
    EXPECT_EQ(OrvPstGetDisplayBannerName(&banner[0], 4), ORV_RCODE_NOT_AVAILABLE);
    EXPECT_EQ(banner, std::u16string(4, 0) + std::u16string(16, u'x')) << "before start-up";
    Start();
    sim.Command("set package.model OM9000");
    EXPECT_EQ(OrvPstGetDisplayBannerName(&banner[0], 3), ORV_RCODE_OK);
    EXPECT_EQ(banner.substr(0, 5), std::u16string(u"Ver\0x", 5));
    EXPECT_EQ(OrvPstGetDisplayBannerName(&banner[0], 8), ORV_RCODE_OK);
    EXPECT_EQ(banner.substr(0, 9), std::u16string(u"Verizon\0x", 9));
}

} // namespace
