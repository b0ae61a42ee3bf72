// CDMA modules: the guards of their functions, and who they are.

#include <string.h>

#include <algorithm>

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

struct Function {
    GuardedFunction guard;
    const char* entry = nullptr; // that is asked first, where its failure is the function's
    ULONG word = kAsItWas;       // the output when it fails
    bool takes_null = false;
};

// clang-format off
#define GET(name, out) {#name, 17, 1, 0, [] { return name(To(g_out.out)); }}
#define CALL(name, before, wrong, ready) {#name, before, wrong, ready, [] { return name(); }}
const Function kFunctions[] = {
    // The module itself is asked, not the selection.
    {{"OrvGetCDMANetworkParameters", 17, 17, 0, GetNetworkParameters, true}, nullptr, 0, true},
    {{"OrvIsModemReady", 17, 17, 0, [] { return OrvIsModemReady(); }, true}, nullptr, 0, true},
    // Either kind of module is served; the other one has no MEID.
    {{"OrvGetMEIDESN", 17, 5, 0, [] { return OrvGetMEIDESN(To(g_out.serial)); }, true}, "GetSerialNumbers"},
    {{"OrvGetRssi", 17, 0, 0, [] { return OrvGetRssi(To(g_out.word)); }, true}, "GetSignalStrengths", 250},
    {GET(OrvGetRssiEcio, rssi), "GetSignalStrengths"}, {GET(OrvGetESNGobi, word), "GetSerialNumbers"},
    {GET(OrvGetChannelNumber, word), "GetRFInfo", 0}, {GET(OrvGetTechBandClass, word), "GetRFInfo", 0},
    {GET(OrvGetServiceIndication, word), "GetServingNetwork"}, {GET(OrvGetHdrSrvState, word), "GetServingNetwork"},
    {GET(OrvGetRoamingStatus, word), "GetServingNetwork"}, {GET(OrvGetHdrRoamStatus, word), "GetServingNetwork"},
    {GET(OrvGetTechSID, half), "GetHomeNetwork"}, {GET(OrvGetTechNID, half), "GetHomeNetwork"},
    {GET(OrvGetCurrentBaseStation, word), "GetServingNetwork"}, {GET(OrvGetPRLVersion, half), "GetPRLVersion"},
    {GET(OrvGetPower, word), "GetPower"}, {GET(OrvGetCarrierID, number)}, {GET(OrvGetECIO, half)},
    {GET(OrvGetHdrHybrPref, word)}, {GET(OrvGetIOTADisable, word)},
    {{"OrvGetGeneralFeatureSupport", 10, 1, 0, [] { return OrvGetGeneralFeatureSupport(To(g_out.word)); }}},
    {{"OrvGetPhoneNumber", 17, 1, 0, [] { return OrvGetPhoneNumber(To(g_out.text[0]), 8); }}, "GetVoiceNumber"},
    {{"OrvPstGetDisplayBannerName", 17, 1, 0, [] { return OrvPstGetDisplayBannerName(To(g_out.text[0]), 8); }}},
    {{"OrvGetSystemTime", 17, 1, 0, [] { return OrvGetSystemTime(To(g_out.stamp), To(g_out.word)); }},
     "GetNetworkTime", kAsItWas, true},
    {{"OrvGetByteCounter", 17, 1, 7, [] { return OrvGetByteCounter(To(g_out.word), To(g_out.words[0])); }},
     "GetConnectionRate", kAsItWas, true}, // 7: there is no session
    {{"OrvSetPower", 17, 1, 0, [] { return OrvSetPower(0); }}, "SetPower", kAsItWas, true},
    {CALL(OrvSetPowerDown, 17, 1, 0), "SetPower", kAsItWas, true},
    {CALL(OrvResetModem, 17, 1, 0), "SetPower", kAsItWas, true},
    {{"OrvSetHdrHybrPref", 17, 1, 0, [] { return OrvSetHdrHybrPref(1); }}, nullptr, 0, true},
    {CALL(OrvResetByteCounter, 17, 1, 0), nullptr, 0, true}, {CALL(OrvSetDormant, 17, 1, 0), nullptr, 0, true},
    {CALL(OrvPowerSaveExit, 17, 1, 18), nullptr, 0, true}, {CALL(OrvGetESN, 1, 1, 1), nullptr, 0, true},
    {CALL(OrvGetNDISMode, 0, 0, 0), nullptr, 0, true}, {CALL(OrvSetNDISPrefMode, 0, 0, 0), nullptr, 0, true},
};
#undef CALL
#undef GET
// clang-format on
static_assert(std::size(kFunctions) == 36);

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
    memset(&g_out, 0x77, sizeof g_out);
    EXPECT_EQ(function.guard.call(), code) << function.guard.name;
    EXPECT_EQ(g_out.word, function.word) << function.guard.name;
    const BYTE* const octets = reinterpret_cast<const BYTE*>(&g_out);
    EXPECT_EQ(std::count(octets + sizeof g_out.word, octets + sizeof g_out, 0x77), sizeof g_out - sizeof g_out.word)
        << function.guard.name;
}

TEST_F(CdmaModule, FailuresLeaveTheOutputsAsTheyWereOrAtTheirDefault)
{
    for (const Function& function : kFunctions)
        if (function.entry) ExpectFailure(function, function.guard.before_start_up);
    Start();
    constexpr ULONG kCodes[][2] = {{1025, 1}, {5, 2}, {1026, 600}, {3, 5}};
    for (const Function& function : kFunctions) {
        for (const auto& [status, code] : kCodes) {
            if (!function.entry) continue;
            sim.Command(std::string("fail ") + function.entry + " " + std::to_string(status));
            ExpectFailure(function, code);
        }
        sim.Command("clear all");
    }
}

TEST_F(CdmaModule, NullPointersAreRefusedBeforeTheModuleIsAsked)
{
    Start();
    EXPECT_EQ(OrvGetPhoneNumber(g_out.text, 0), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvPstGetDisplayBannerName(g_out.text, 0), ORV_RCODE_BAD_PARAMETER);
    g_null = true;
    for (const Function& function : kFunctions) {
        sim.ClearJournal();
        EXPECT_EQ(function.guard.call(), function.takes_null ? function.guard.ready : 4u) << function.guard.name;
        EXPECT_TRUE(function.takes_null || sim.Journal().empty()) << function.guard.name;
    }
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
        const char* numbers;
    } rows[] = {
        {"A1000000000001", "80E5C86D", 0, 1, "Meid_High = A10000  Meid_Low = 1 PESN = 80E5C86D"},
        {"a10000fedcba98ff", "12", 0, 1, "Meid_High = A10000  Meid_Low = FEDCBA98 PESN = 12"}, // two digits too many
        {"A10000", "80E5C86D", 5, 1, "Meid_High = A10000  Meid_Low = 0 PESN = 80E5C86D"},
        {"A1", "80E5C86D", 5, 1, "Meid_High = A1  Meid_Low = 0 PESN = 80E5C86D"},
        {"", "80E5C86D", 5, 0, "Meid_High = 0  Meid_Low = 0 PESN = 80E5C86D"},
        {"A10000FFFFFFFF", "80E5C86D", 5, 1, "Meid_High = A10000  Meid_Low = FFFFFFFF PESN = 80E5C86D"},
        {"A1000000000001", "no", 5, 1, "Meid_High = A10000  Meid_Low = 1 PESN = 0"},
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
        EXPECT_EQ(record.wReserved + record.uReserved, 0u);
        char numbers[100];
        snprintf(numbers, sizeof numbers, "Meid_High = %X  Meid_Low = %X PESN = %X", record.uMeidHigh, record.uMeidLow,
                 record.uPesn);
        EXPECT_STREQ(numbers, row.numbers);
        EXPECT_EQ(log.Texts(), row.code ? (Lines{"strtoul failed on either meid or esn", numbers}) : Lines{numbers});
        EXPECT_EQ(log.Find(numbers).module, "TALVEKCdma");
    }
    sim.Command("hostile GetSerialNumbers scribble");
    EXPECT_EQ(OrvGetMEIDESN(&g_out.serial), ORV_RCODE_FAILED);
    EXPECT_EQ(sim.Journal()[0], "GetSerialNumbers(50, 50, 50)");
}

TEST_F(CdmaModule, WidensThePhoneNumberIntoTheRoomThatThereIs)
{
    Start();
    for (const char* command : {"clear all", "hostile GetVoiceNumber scribble"}) {
        sim.Command(command);
        for (const ULONG size : {3u, 10u, 11u, 300u}) {
            std::u16string buffer(400, u'x');
            EXPECT_EQ(OrvGetPhoneNumber(&buffer[0], size), ORV_RCODE_OK);
            EXPECT_EQ(buffer.substr(size), std::u16string(400 - size, u'x')) << "beyond the buffer of " << size;
            if (*command == 'c') {
                EXPECT_EQ(buffer.substr(0, size).compare(0, 11, std::u16string(u"2025550123\0", 11).substr(0, size)),
                          0);
            }
        }
    }
    EXPECT_EQ(sim.Journal()[0], "GetVoiceNumber(3, 20)");
    EXPECT_EQ(sim.Journal()[3], "GetVoiceNumber(255, 20)");
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
    Start();
    // `name`: what is logged; the buffer gets it unless the package told it.
    const auto expect = [&](const std::string& commands, const std::string& id, const std::string& name, bool told) {
        SCOPED_TRACE(commands);
        Run(commands);
        EXPECT_EQ(Answer(OrvGetCarrierID), id);
        LogCapture log;
        std::u16string banner(20, u'x'), expected(told ? Widen(name) : u"");
        const ORV_RCODE code = OrvPstGetDisplayBannerName(&banner[0], 20);
        expected.resize(20);
        EXPECT_EQ(banner, expected);
        EXPECT_EQ(log.Texts().back(), "Display banner Name = " + name + " and return code = " + std::to_string(code));
        EXPECT_EQ(log.Texts().size(), static_cast<size_t>(std::count(id.begin(), id.end(), '|') + 1)) << log.Dump();
        EXPECT_EQ(std::to_string(code), id.substr(0, id.find(' ')));
        sim.Command("clear all");
    };
    const struct {
        int32_t id;
        const char* name;
    } images[] = {
        {5, "Verizon"},       {2, "Sprint"},         {8, "Alltel"},        {3, "Bell"},           {4, "Telus"},
        {9, "US Cellular"},   {20, "Telstra"},       {14, "China Unicom"}, {18, "TNZ"},           {-1, "SK Telecom"},
        {19, "Reliance Com"}, {29, "Tata Com"},      {-1, "MetroPCS Com"}, {-1, "Leap Wireless"}, {-1, "KDDI"},
        {17, "Iusacell"},     {30, "China Telecom"}, {-1, "OM Handset"},
    };
    sim.Command("set package.model \"KT5 2KT5\""); // not quite
    int number = 101;
    for (const auto& image : images)
        expect("set firmware.carrier " + std::to_string(number++), "0 " + std::to_string(image.id), image.name, true);
    const std::string beyond = "0 -1 | Out of range GobiCarrierID for CDMA = ";
    for (const char* image : {"100", "119", "0", "2147483647"})
        expect(std::string("set firmware.carrier ") + image, beyond + image, "", true);

    const std::string no_package = " | GetCwePkgsInfo returns 3", no_image = " | GetFirmwareInfo returns 1026";
    sim.Command("set firmware.carrier 102");
    sim.Command("set package.model \"a KT5230\"");
    expect("set package.carrier 5", "0 5", "Verizon", false);
    expect("set package.carrier 11", "0 2", "Sprint", false);
    expect("set package.carrier 102", "0 -1", "", false);
    expect("set package.carrier 1011", "0 -1", "", false);
    expect("set package.carrier 101", "0 5", "Verizon", false);
    expect("fail GetFirmwareInfo 1026", "0 5" + no_image, "Verizon", false);
    expect("fail OrvGetCwePkgsInfo 3", "0 2" + no_package, "Sprint", true);
    expect("fail OrvGetCwePkgsInfo 3; fail GetFirmwareInfo 1026",
           "600 -" + no_package + no_image + " | Got GobiAPI error = 1026", "", true);
    expect("hostile OrvGetCwePkgsInfo count 65535", "0 5", "Verizon", false); // lengths beyond the room
    expect("hostile OrvGetCwePkgsInfo scribble", "0 2", "Sprint", true);
}

TEST_F(CdmaModule, TheBannerIsCutToItsBufferAndClearedFirst)
{
    std::u16string banner(20, u'x');
    EXPECT_EQ(OrvPstGetDisplayBannerName(&banner[0], 4), ORV_RCODE_NOT_AVAILABLE);
    EXPECT_EQ(banner, std::u16string(4, 0) + std::u16string(16, u'x')) << "before start-up";
    Start();
    sim.Command("set package.model OM9000");
    for (const size_t size : {3u, 7u, 8u}) {
        banner = std::u16string(9, u'x');
        EXPECT_EQ(OrvPstGetDisplayBannerName(&banner[0], static_cast<ULONG>(size)), ORV_RCODE_OK);
        EXPECT_EQ(banner, std::u16string(u"Verizon\0", 8).substr(0, size) + std::u16string(9 - size, u'x'));
    }
}

} // namespace
