// Provisioning of CDMA modules: the code, the items, the commit and its reset, Mobile IP, activation and calls.

#include <gtest/gtest.h>

#include <string.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/hooks.h"
#include "tests/support/cdma_module.h"

namespace {

BYTE g_octets[256], g_octet, g_other_octet;
WORD g_half;
ULONG g_words[6];
char g_text[256];
WCHAR g_wide[32];
const WCHAR* const kMin = u"4155550188";

// The code comes first, which the others need, and the commit last, which resets the module.
// clang-format off
#define GIVES(before, ready, call) {#call, before, 1, ready, [] { return call; }}
#define CDMA(call) GIVES(17, 0, call)
const GuardedFunction kFunctions[] = {
    CDMA(OrvPstUnlock(0)), {"OrvSetMobileDirNum", 17, 1, 0, [] { return OrvSetMobileDirNum(0, u"2025550199"); }, true},
    CDMA(OrvPstGetSci(&g_octet)), CDMA(OrvPstSetSci(1)), CDMA(OrvPstGetPrefMode(0, g_words)),
    CDMA(OrvPstSetPrefMode(0, 4)), CDMA(OrvPstGetTermHome(0, &g_octet)), CDMA(OrvPstGetTermSid(0, &g_octet)),
    CDMA(OrvPstGetTermNid(0, &g_octet)), CDMA(OrvPstGetAccolc(0, &g_octet)), CDMA(OrvPstSetAccolc(0, 1)),
    CDMA(OrvPstSetCurrentNam(0)), CDMA(OrvPstGetImsiMcc(0, &g_half)), CDMA(OrvPstGetImsi1112(0, &g_half)),
    CDMA(OrvPstSetImsiMcc(0, 1)), CDMA(OrvPstSetImsi1112(0, 1)), CDMA(OrvPstGetSystemPref(0, g_words)),
    CDMA(OrvPstGetHomeSidNid(0, g_octets)), CDMA(OrvPstSetHomeSidNid(0, g_octets)), CDMA(OrvSetIMSI(0, kMin)),
    CDMA(OrvGetCdmaIMSI(g_wide)), GIVES(17, 18, OrvSetAKey(nullptr)), CDMA(OrvPriGetActivationMask(g_words)),
    CDMA(OrvPriGetMDNLength(g_words, g_words + 1)), CDMA(OrvPriGetMaxMosmsLen(g_words)), CDMA(OrvPstSetDsQcMip(1)),
    CDMA(OrvPstGetDsQcMip(g_words)), CDMA(OrvPstSetDsMipActiveProf(1)), CDMA(OrvPstGetDsMipActiveProf(&g_octet)),
    CDMA(OrvPstSetDsMipGenUser(1, 0, 0, 0, 0, "", 0, 0, 0, 0)),
    CDMA(OrvPstGetDsMipGenUser(0, &g_octet, g_words, g_words + 1, g_words + 2, 100, g_text, &g_octet,
                               g_words + 3, &g_other_octet, g_words + 4)),
    CDMA(OrvPstSetDsMipSsUserProf(1, 1, g_octets, 1, g_octets)),
    CDMA(OrvPstGetDsMipSsUserProf(1, &g_octet, nullptr, &g_other_octet, nullptr)),
    CDMA(OrvPstGetDsMipEnableProf(0, &g_octet)), CDMA(OrvGetMipErrCode(g_words)), CDMA(OrvPstGetHdrUserId(g_wide)),
    CDMA(OrvPstGetHdrPassword(g_wide)), GIVES(5, 0, OrvPstSetHdrUserId(u"a")), GIVES(5, 0, OrvPstSetHdrPassword(u"a")),
    CDMA(OrvGetActivationStatus(g_words)), CDMA(OrvGetCallConnectionState(g_words, g_words + 1)),
    GIVES(17, 19, OrvSetCallDisconnectCmd()), GIVES(17, 4, OrvSetCallOriginateCmd(1, nullptr)),
    CDMA(OrvSetTempModePref(30, 0, 0, 65535, 255)), CDMA(OrvRtnReset(0)),
    GIVES(5, 0, OrvPstLock(0, 0, nullptr, nullptr)),
};
#undef CDMA
#undef GIVES

// Each lacks something that it needs.
#define LACKS(call) {#call, [] { return call; }}
const struct { const char* name; ORV_RCODE (*call)(); } kLacking[] = {
    LACKS(OrvSetMobileDirNum(0, nullptr)), LACKS(OrvSetIMSI(0, nullptr)), LACKS(OrvGetCdmaIMSI(nullptr)),
    LACKS(OrvPstGetSci(nullptr)), LACKS(OrvPstGetTermSid(0, nullptr)), LACKS(OrvPstGetPrefMode(0, nullptr)),
    LACKS(OrvPstGetSystemPref(0, nullptr)), LACKS(OrvPstGetAccolc(0, nullptr)), LACKS(OrvPstGetImsiMcc(0, nullptr)),
    LACKS(OrvPstGetImsi1112(0, nullptr)), LACKS(OrvPstGetHomeSidNid(0, nullptr)),
    LACKS(OrvPstSetHomeSidNid(0, nullptr)), LACKS(OrvPriGetActivationMask(nullptr)),
    LACKS(OrvPriGetMDNLength(g_words, nullptr)), LACKS(OrvPriGetMaxMosmsLen(nullptr)),
    LACKS(OrvPstGetDsQcMip(nullptr)), LACKS(OrvPstGetDsMipActiveProf(nullptr)),
    LACKS(OrvPstSetDsMipGenUser(0, 0, 0, 0, 0, nullptr, 0, 0, 0, 0)),
    LACKS(OrvPstGetDsMipGenUser(0, &g_octet, g_words, g_words, g_words, 9, g_text, nullptr, g_words,
                                &g_octet, g_words)),
    LACKS(OrvPstSetDsMipSsUserProf(0, 0, nullptr, 1, g_octets)),
    LACKS(OrvPstSetDsMipSsUserProf(0, 1, g_octets, 0, nullptr)),
    LACKS(OrvPstGetDsMipSsUserProf(0, &g_octet, g_octets, nullptr, g_octets)),
    LACKS(OrvPstGetDsMipEnableProf(0, nullptr)), LACKS(OrvGetMipErrCode(nullptr)),
    LACKS(OrvActivateAutomatic(nullptr)), LACKS(OrvGetActivationStatus(nullptr)),
    LACKS(OrvGetCallConnectionState(g_words, nullptr)), LACKS(OrvSetCallOriginateCmd(0, nullptr)),
    LACKS(OrvPstGetHdrUserId(nullptr)), LACKS(OrvPstGetHdrPassword(nullptr)), LACKS(OrvPstSetHdrUserId(nullptr)),
    LACKS(OrvPstSetHdrPassword(u"")),
};
#undef LACKS
// clang-format on

class CdmaProvisioning : public CdmaModule {
protected:
    ~CdmaProvisioning() override
    {
        EXPECT_TRUE(platform_hooks::DrainThreads(10000));
        platform_hooks::Reset();
    }

    void StartUnlocked()
    {
        Start();
        ASSERT_EQ(OrvIsModemReady(), ORV_RCODE_OK);
        ASSERT_EQ(OrvPstUnlock(0), ORV_RCODE_OK);
        sim.ClearJournal();
    }
    // When no thread of the library runs any more.
    Lines AllCalls()
    {
        EXPECT_TRUE(platform_hooks::DrainThreads(10000));
        return Calls();
    }
};

TEST_F(CdmaProvisioning, EachFunctionHasItsGuard)
{
    const auto profile = [] { return OrvSetMobileIPProfile(1, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}); };
    const auto read = [] {
        return OrvGetMobileIPProfile(0, &g_octet, g_words, g_words, g_words, &g_octet, 100, g_text, g_words, g_words);
    };
    LogCapture log;
    EXPECT_EQ(profile(), ORV_RCODE_API_NOT_INIT);
    EXPECT_EQ(read(), ORV_RCODE_API_NOT_INIT);
    EXPECT_EQ(OrvActivateAutomatic(nullptr), ORV_RCODE_API_NOT_INIT);
    EXPECT_EQ(log.Texts(), (Lines{"OrvSetMobileIPProfile", "API not initialzed", "OrvSetMobileIPProfile",
                                  "API not initialzed", "OrvActivateAutomatic", "API not initialzed"}));
    SweepGuards(sim, kFunctions, "cdma:5101", "umts:5120");
    EXPECT_TRUE(platform_hooks::DrainThreads(10000));
    SelectModule(sim, "umts:5120");
    char code[] = "*22899";
    EXPECT_EQ(profile(), ORV_RCODE_OK) << "on a module of any kind";
    EXPECT_EQ(read(), ORV_RCODE_OK);
    EXPECT_EQ(OrvActivateAutomatic(code), ORV_RCODE_OK);
    log.Clear();
    EXPECT_EQ(OrvActivateAutomatic(code), 600u) << "is under way";
    EXPECT_EQ(log.Count("OrvActivateAutomatic returning: 600"), 1) << log.Dump();
}

TEST_F(CdmaProvisioning, NullPointersAreRefusedBeforeTheModuleIsAsked)
{
    Start();
    for (const auto& [name, call] : kLacking)
        EXPECT_EQ(call(), ORV_RCODE_BAD_PARAMETER) << name;
    EXPECT_EQ(sim.Journal(), Lines());
    EXPECT_EQ(OrvPstLock(0, 0, &g_octet, nullptr), ORV_RCODE_FAILED) << "and nothing was kept";
    OrvApiShutdown();
    EXPECT_EQ(OrvPstSetHdrPassword(u""), ORV_RCODE_BAD_PARAMETER) << "before the guard";
}

// --- items -----------------------------------------------------------------------------------------------------------

using ItemCall = std::function<ORV_RCODE(std::string& out)>;

template <class T>
ItemCall Reads(ORV_RCODE(ORV_CALL* get)(ULONG, T*))
{
    return [get](std::string& out) {
        T value = 77;
        const ORV_RCODE result = get(2, &value);
        out = std::to_string(value);
        return result;
    };
}

TEST_F(CdmaProvisioning, ItemsReachTheModuleAndComeBack)
{
    const auto home = [](std::string& out) {
        BYTE octets[] = {7, 7, 7, 7};
        const ORV_RCODE result = OrvPstGetHomeSidNid(2, octets);
        for (const BYTE value : octets)
            out += std::to_string(value) + " ";
        return result;
    };
    const auto min = [](std::string& out) {
        WCHAR wide[11] = u"untouched";
        const ORV_RCODE result = OrvGetCdmaIMSI(wide);
        for (const WCHAR* c = wide; *c; ++c)
            out += static_cast<char>(*c);
        return result;
    };
    const auto set = [](ORV_RCODE(ORV_CALL * put)(ULONG, WORD), WORD value) {
        return [put, value](std::string&) { return put(2, value); };
    };
    const auto roam = [](ULONG band, ULONG preference) {
        return [=](std::string&) { return OrvSetTempModePref(30, 0, 0, band, preference); };
    };
    const char* const kReader = "Gobi doesn't support NAM = 2. Treated as Nam = 0";
    const char* const kWriter = "Gobi only handles one Nam. Treated (Nam = 2) as 0";
    const char* const kAssertion = "ASSERTION FAILURE: ===>g_ulRoaming == ulNewRoaming";
    const char* const kNoWay = "OrvSetTempModePref cannot interpret nRoamPref = 255, nBandPref = 3";
    const Lines kHome = {"GetHomeNetwork(50)"}, kPreference = {"GetNetworkPreference()"},
                kParameters = {"GetCDMANetworkParameters()"}, kRecords = {"Get3Gpp2SubscriptionInfo(255, 15)"}, kNone;
    const auto written = [](const char* value) {
        return Lines{std::string("SetCDMANetworkParameters(\"000000\", 1, 0, 0, 0, 0, ") + value + ")"};
    };
    // clang-format off
    const struct { const char* name; Lines setup; /* before start-up's OrvIsModemReady */ ItemCall call;
        ULONG result; const char* out; Lines calls; Lines log; /* among the others */
        Lines later = {}; /* set up after OrvIsModemReady */ } rows[] = {
        {"home", {"cdma.home-only 1"}, Reads(OrvPstGetTermHome), 0, "1", {}, {"TermHomeEnable = 1", kReader}},
        {"SID", {"cdma.sid-registration 2"}, Reads(OrvPstGetTermSid), 0, "2", {}, {"TermSidEnable = 2", kReader}},
        {"NID", {"cdma.nid-registration 3"}, Reads(OrvPstGetTermNid), 0, "3", {}, {"TermNidEnable = 3", kReader}},
        {"class", {"cdma.accolc 9"}, Reads(OrvPstGetAccolc), 0, "9", {"GetACCOLC()"}, {"Accolc = 9", kReader}},
        {"class, low octet", {}, set(OrvPstSetAccolc, 0x107), 0, "", {"SetACCOLC(\"000000\", 7)"}, {kWriter}},
        {"class out of range", {}, set(OrvPstSetAccolc, 16), 5, "", {"SetACCOLC(\"000000\", 16)"}, {}},
        {"MCC", {"home.mcc 310"}, Reads(OrvPstGetImsiMcc), 0, "310", kHome, {"ImsiMcc = 310", kReader}},
        {"MNC", {"home.mnc 65"}, Reads(OrvPstGetImsi1112), 0, "65", kHome, {"Digits112 = 65", kReader}},
        {"no MCC", {}, Reads(OrvPstGetImsiMcc), 1, "77", kHome, {}, {"fail GetHomeNetwork 1025"}},
        {"set MCC", {}, set(OrvPstSetImsiMcc, 1), 0, "", {}, {"Gobi module does not support SetIMSIMcc", kWriter}},
        {"set MNC", {}, set(OrvPstSetImsi1112, 1), 0, "", {}, {"Gobi module does not support SetImsi1112", kWriter}},
        {"current", {}, [](std::string&) { return OrvPstSetCurrentNam(2); }, 0, "", {}, {kWriter}},
        {"SCI", {}, [](std::string&) { return OrvPstSetSci(1); }, 0, "", {},
         {"Gobi module does not allo to set Slot cycle index"}},
        {"home system", {"home.sid 0x1234", "home.nid 0xABCD"}, home, 0, "52 18 205 171 ", kHome,
         {"Home Sid = 4660  and Home NID = 43981, rc = 0", kReader}},
        {"no home system", {}, home, 600, "7 7 7 7 ", kHome, {"Home Sid = 0  and Home NID = 0, rc = 600"},
         {"fail GetHomeNetwork 1026"}},
        {"MIN", {}, min, 0, "2025550123", kRecords, {"CDMA IMSI (MIN) = 2025550123"}},
        {"short MIN", {"cdma.min 12"}, min, 0, "12", kRecords, {}},
        {"hostile MIN", {}, min, 0, "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF", kRecords, {},
         {"hostile Get3Gpp2SubscriptionInfo scribble"}},
        {"no MIN", {}, min, 7, "untouched", kRecords, {"Get3Gpp2SubscriptionInfo failed, ret = 15"},
         {"fail Get3Gpp2SubscriptionInfo 15"}},
        {"mode", {"network.preference 9", "network.preference-duration 1"}, Reads(OrvPstGetPrefMode), 0, "9",
         kPreference, {"Gobi GetNetworkPreference : uTechPref = 9, uDuration = 1, uPermanentTechPref = 0",
         "Orv PrefMode = 9"}},
        {"mode of no number", {"network.preference 2"}, Reads(OrvPstGetPrefMode), 6, "0", kPreference,
         {"Orv PrefMode = 0", kReader}},
        {"no mode", {}, Reads(OrvPstGetPrefMode), 5, "77", kPreference, {"Orv PrefMode = 77"},
         {"fail GetNetworkPreference 3"}},
        {"set mode", {}, set(OrvPstSetPrefMode, 10), 0, "", {"SetNetworkPreference(17, 0)"}, {kWriter}},
        {"set a mode of no number", {}, set(OrvPstSetPrefMode, 5), 1, "", {}, {kWriter}},
        {"roaming 0", {"cdma.roaming 0"}, Reads(OrvPstGetSystemPref), 0, "3", kParameters, {kReader}},
        {"roaming 1", {"cdma.roaming 1"}, Reads(OrvPstGetSystemPref), 0, "2", kParameters, {}},
        {"roaming 2", {"cdma.roaming 2"}, Reads(OrvPstGetSystemPref), 0, "10", kParameters, {}},
        {"roaming 3 since", {}, Reads(OrvPstGetSystemPref), 0, "4", kParameters, {kAssertion},
         {"set cdma.roaming 3"}},
        {"roaming 4", {"cdma.roaming 4"}, Reads(OrvPstGetSystemPref), 6, "77", kParameters,
         {"OrvPstGetSystemPref fail: Out of range ulNewRoaming = 4"}},
        {"home only", {}, roam(9, 1), 0, "", written("1"),
         {"This action needs modem reset.If this API was not called as part of phone utility...please reset modem"}},
        {"affiliated", {}, roam(0, 2), 0, "", written("2"), {}},
        {"both, band 2", {}, roam(2, 255), 0, "", written("3"), {}},
        {"any", {}, roam(65536, 255), 0, "", written("0"), {}},
        {"any on no band", {}, roam(3, 255), 4, "", kNone, {kNoWay}}, {"roam 3", {}, roam(1, 3), 4, "", kNone, {}},
        {"EV-DO user", {}, [](std::string&) { return OrvPstSetHdrUserId(u"a"); }, 0, "", kNone,
         {"Gobi does allow to set HDR User ID, do nothing"}},
        {"EV-DO password", {}, [](std::string&) { return OrvPstSetHdrPassword(u"a"); }, 0, "", kNone,
         {"Gobi does allow to set HDR password, do nothing"}},
        {"factory, other type", {}, [](std::string&) { return OrvRtnReset(1); }, 18, "", kNone,
         {"RTN reset type = 1 not supported by Gobi"}},
    };
    // clang-format on
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Start();
        for (const std::string& line : row.setup)
            sim.Command("set " + line);
        sim.Command("set cdma.force-rev0 1");
        ASSERT_EQ(OrvIsModemReady(), ORV_RCODE_OK);
        ASSERT_EQ(OrvPstUnlock(0), ORV_RCODE_OK);
        for (const std::string& line : row.later)
            sim.Command(line);
        sim.ClearJournal();
        LogCapture log;
        std::string out;
        EXPECT_EQ(row.call(out), row.result);
        EXPECT_EQ(out, row.out);
        EXPECT_EQ(sim.Journal(), row.calls);
        for (const std::string& text : row.log)
            EXPECT_EQ(log.Count(text), 1) << text << "\n" << log.Dump();
        if (row.log.empty() || row.log[0] != kAssertion) {
            EXPECT_EQ(log.Count(kAssertion), 0);
        }
        OrvApiShutdown();
    }
}

TEST_F(CdmaProvisioning, FixedAnswers)
{
    ULONG length = 0, least = 0, most = 0, mask = 0;
    EXPECT_EQ(OrvPriGetMaxMosmsLen(&length), ORV_RCODE_NOT_AVAILABLE);
    EXPECT_EQ(length, 160u) << "whatever the module";
    Start();
    EXPECT_EQ(OrvPriGetMDNLength(&least, &most), ORV_RCODE_OK);
    EXPECT_EQ(OrvPriGetActivationMask(&mask), ORV_RCODE_OK);
    EXPECT_EQ(std::vector<ULONG>({least, most, mask}), std::vector<ULONG>({10, 10, 0x8004}));
    WCHAR text[] = u"x";
    EXPECT_EQ(OrvPstGetHdrUserId(text), ORV_RCODE_OK);
    EXPECT_EQ(text[0], 0);
    LogCapture log;
    EXPECT_EQ(OrvSetTempModePref(1, 1, 1, 65535, 255), ORV_RCODE_FAILED) << "without the code";
    for (const char* part : {"Pref == CM_MODE_PREF_NO_CHANGE", "Term == CNS_MODE_TERM_PERMANENT", "Dur == 0"})
        EXPECT_EQ(log.Count(std::string("ASSERTION FAILURE: ===>nMode") + part), 1) << log.Dump();
    EXPECT_EQ(Calls(), Lines{"SetCDMANetworkParameters(\"\", null, null, null, null, null, 0)"})
        << "what was never read is left alone";
}

TEST_F(CdmaProvisioning, TheCodeIsKeptAsSixDigits)
{
    Start();
    // clang-format off
    const struct { int32_t code; const char* passed; const char* set; /* the module's own */ ULONG result;
        } rows[] = {{123, "000123", "000123", 0}, {999999, "999999", "999999", 0}, {1, "000001", "999999", 5},
        {1234567, "1234567", "", 5},  {-5, "-00005", "", 5},           {INT32_MIN, "-2147483648", "", 5}};
        for (const auto& row : rows) { sim.Command(std::string("set cdma.spc \"") + row.set + "\"");
        sim.ClearJournal(); EXPECT_EQ(OrvPstUnlock(row.code), row.result) << row.passed;
        EXPECT_EQ(Calls(), Lines{std::string("ValidateSPC(\"") + row.passed + "\")"}); }
        OrvPstSetDsMipActiveProf(1);
        EXPECT_EQ(Calls(), Lines{"SetActiveMobileIPProfile(\"999999\", 1)"}) << "the last right one";
        OrvIsModemReady(); sim.ClearJournal(); OrvPstSetDsMipActiveProf(1);
        EXPECT_EQ(Calls(), Lines{"SetActiveMobileIPProfile(\"\", 1)"}); }
        TEST_F(CdmaProvisioning, NumbersAreBoundedAndWrittenAtOnce) { WCHAR endless[64];
        for (WCHAR& c : endless) c = u'7';
        const char* const kSetFailed = "Set3Gpp2SubscriptionInfo failed, ret = 4";
        const auto number = [](const char* digits) {
        return "Set3Gpp2SubscriptionInfo(255, null, null, " + std::to_string(strlen(digits)) + ", \"" + digits + "\")";
        }; const auto records = [](const std::string& s1s2) { return Lines{"Get3Gpp2SubscriptionInfo(255, 15)",
        "Set3Gpp2SubscriptionInfo(255, \"00101" + s1s2 + "\", \"00101" + s1s2 + "\", null, null)"}; };
        const struct { const char* name; ORV_RCODE(ORV_CALL* set)(ULONG, const WCHAR*); const WCHAR* text;
        Lines calls; Lines log; const char* fault = "clear all"; } rows[] = {
        {"MDN", OrvSetMobileDirNum, u"4155550100", {number("4155550100")}, {}},
        {"no MDN", OrvSetMobileDirNum, u"", {number("")}, {}},
        {"unterminated MDN", OrvSetMobileDirNum, endless, {number("777777777777777")}, {}},
        {"MDN of no digits", OrvSetMobileDirNum, u"41\u0665x", {number("41?x")}, {kSetFailed}},
        {"MIN", OrvSetIMSI, u"4155550188", records("5550188415"), {}},
        {"unterminated MIN", OrvSetIMSI, endless, records("7777777777"), {}},
        {"short MIN", OrvSetIMSI, u"41", records("7777777417"), {}},
        {"shorter than ten", OrvSetIMSI, u"41555", records("5577777415"), {}},
        {"no MIN", OrvSetIMSI, u"", records("5577777415"), {}},
        {"MIN of no digits", OrvSetIMSI, u"41x", records("557777741x"), {kSetFailed}},
        {"records that cannot be read", OrvSetIMSI, u"4155550188",
         {"Get3Gpp2SubscriptionInfo(255, 15)", "Set3Gpp2SubscriptionInfo(255, \"\", \"\", null, null)"},
         {"Get3Gpp2SubscriptionInfo failed, ret = 5", kSetFailed}, "fail Get3Gpp2SubscriptionInfo 5"},
    };
    // clang-format on
    Start();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        sim.Command(row.fault);
        LogCapture log;
        EXPECT_EQ(row.set(1, row.text), ORV_RCODE_OK) << "whatever the module says";
        EXPECT_EQ(Calls(), row.calls);
        EXPECT_EQ(log.Count("Gobi only handles one Nam. Treated (Nam = 1) as 0"), 1);
        for (const std::string& text : row.log)
            EXPECT_EQ(log.Count(text), 1) << log.Dump();
    }
    sim.Command("clear all");
    OrvApiShutdown();
    SelectModule(sim, "umts:5120");
    EXPECT_EQ(OrvSetMobileDirNum(0, u"1"), ORV_RCODE_UNSUPPORTED);
    EXPECT_EQ(Calls(), Lines{number("41?x")}) << "the one that was kept before, on any module";
}

// --- the commit ------------------------------------------------------------------------------------------------------

TEST_F(CdmaProvisioning, TheCommitTakesItsStepsInOrderAndKeepsWhatFailed)
{
    enum Item { kMdnItem = 1, kMinItem = 2, kClass = 4, kHome = 8, kActivation = kMdnItem | kMinItem | kHome };
    const std::string accolc = "SetACCOLC(\"000000\", 7)", reset = "SetPower(5)",
                      manual = "ActivateManual(\"000000\", 4660, \"4155550100\", \"4155550188\", 0, null, null)";
    const char* const kAccolcFailed = "OrvSetSecureCommitUpdate: failed at ACCOLC, status =";
    const char* const kManualFailed = "OrvSetSecureCommitUpdate: failed at ActivateManual";
    // clang-format off
    const struct { const char* name; int items; Lines faults; Lines calls; ULONG result, flag, error_mask;
        std::string log; Lines again; /* the calls of a second commit without faults */ ULONG again_result = 0; } rows[] = {
        {"all", kActivation | kClass, {}, {accolc, manual, reset}, 0, 1, 0, "", {}, 5},
        {"class alone", kClass, {}, {accolc, reset}, 0, 1, 0, "", {}, 5},
        {"activation alone", kActivation, {}, {manual, reset}, 0, 1, 0, "", {}, 5},
        {"number alone", kMdnItem, {}, {reset}, 0, 1, 0, "", {reset}},
        {"number and MIN", kMdnItem | kMinItem, {}, {reset}, 0, 1, 0, "", {reset}},
        {"no MIN", kMdnItem | kHome | kClass, {}, {accolc, reset}, 0, 1, 0, "", {reset}},
        {"class fails", kActivation | kClass, {"SetACCOLC 1025"}, {accolc}, 1, 0, 0,
         kAccolcFailed + std::string("1025"), {accolc, manual, reset}},
        {"class tolerated", kActivation | kClass, {"SetACCOLC 1026"}, {accolc, manual, reset}, 0, 1, 0,
         kAccolcFailed + std::string("1026"), {accolc, reset}},
        {"class tolerated, alone", kClass, {"SetACCOLC 1026"}, {accolc, reset}, 600, 1, 0,
         kAccolcFailed + std::string("1026"), {accolc, reset}},
        {"activation fails", kActivation | kClass, {"ActivateManual 15"}, {accolc, manual}, 7, 0, 3, kManualFailed,
         {manual, reset}},
        {"activation tolerated", kActivation | kClass, {"ActivateManual 1026"}, {accolc, manual, reset}, 600, 1, 3,
         kManualFailed, {manual, reset}},
        {"both tolerated", kActivation | kClass, {"SetACCOLC 1026", "ActivateManual 1026"}, {accolc, manual, reset},
         600, 1, 3, kManualFailed, {accolc, manual, reset}},
        {"a reset that is refused", kClass, {"SetPower 3"}, {accolc, reset}, 0, 1, 0, "", {}, 5},
        {"nothing", 0, {}, {}, 5, 0, 0, "No provisionning data to be commited. Return ORV_RCODE_FAILED", {}, 5},
    };
    // clang-format on
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        StartUnlocked();
        const BYTE sid_nid[] = {0x34, 0x12, 0xCD, 0xAB};
        if (row.items & kMdnItem) OrvSetMobileDirNum(0, u"4155550100");
        if (row.items & kMinItem) OrvSetIMSI(0, kMin);
        if (row.items & kClass) OrvPstSetAccolc(0, 7);
        if (row.items & kHome) OrvPstSetHomeSidNid(0, sid_nid);
        for (const std::string& fault : row.faults)
            sim.Command("fail " + fault);
        sim.ClearJournal();
        LogCapture log;
        BYTE flag = 9;
        ULONG error_mask = 9;
        EXPECT_EQ(OrvPstLock(1, 2, &flag, &error_mask), row.result);
        EXPECT_EQ(std::make_pair(ULONG{flag}, error_mask), std::make_pair(row.flag, row.error_mask));
        EXPECT_EQ(AllCalls(), row.calls);
        if (!row.log.empty()) {
            EXPECT_EQ(log.Count(row.log), 1) << log.Dump();
        }
        sim.Command("clear all");
        sim.Command("advance 50");
        const bool left = !row.calls.empty() && row.calls.back() == "SetPower(5)" && row.faults != Lines{"SetPower 3"};
        EXPECT_EQ(sim.Command("get module.present"), left ? "0" : "1");
        sim.Command("advance 3000"); // it is back
        EXPECT_EQ(OrvPstLock(0, 0, nullptr, nullptr), row.again_result);
        EXPECT_EQ(AllCalls(), row.again);
        OrvApiShutdown();
    }
    BYTE flag = 9;
    ULONG error_mask = 9;
    EXPECT_EQ(OrvPstLock(0, 0, &flag, &error_mask), ORV_RCODE_FAILED) << "nothing waits: before the guard";
    EXPECT_EQ(flag + error_mask, 0u);
}

TEST_F(CdmaProvisioning, AThreadThatCannotBeHadIsNotReported)
{
    StartUnlocked();
    OrvPstSetAccolc(0, 12);
    platform_hooks::FailCall("CreateThread", 1, 1, ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(OrvPstLock(0, 0, &g_octet, nullptr), ORV_RCODE_OK);
    EXPECT_EQ(g_octet, 1);
}

TEST(ThreadsProvisioning, TheResetMeetsAClientThatShutsDown)
{
    SimHarness sim("cdma:5101");
    for (int i = 0; i < 30; ++i) {
        SelectModule(sim, "cdma:5101");
        EXPECT_EQ(OrvPstUnlock(0), ORV_RCODE_OK);
        EXPECT_EQ(OrvPstSetAccolc(0, 7), ORV_RCODE_OK);
        EXPECT_EQ(OrvPstLock(0, 0, nullptr, nullptr), ORV_RCODE_OK);
        EXPECT_EQ(OrvApiShutdown(), ORV_RCODE_OK);
        EXPECT_TRUE(platform_hooks::DrainThreads(10000));
    }
}

} // namespace
