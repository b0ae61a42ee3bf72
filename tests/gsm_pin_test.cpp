// The PINs of the card: guards, the life of a PIN, what the functions write and log, passwords as clients give them.

#include <gtest/gtest.h>

#include <string.h>

#include <string>

#include "talvek/talvek.h"
#include "tests/support/guard_sweep.h"
#include "tests/support/log_capture.h"

namespace {

constexpr ULONG kUntouched = 77;

void Put(char (&field)[ORV_SIM_PASSWORD_SIZE], const std::string& text)
{
    memset(field, 'x', sizeof field); // behind the terminator, if there is one
    memcpy(field, text.c_str(), text.size() < sizeof field ? text.size() + 1 : sizeof field);
}

// A request of one of the three functions: v verify, u unblock through the same record, e enable, d disable, or the
// digit of a password type. Returns "result cme".
std::string Ask(char request, const std::string& first, const std::string& second)
{
    ULONG cme = kUntouched;
    ORV_RCODE result = ORV_RCODE_OK;
    if (request == 'v' || request == 'u') {
        OrvSimVerifyRecord record = {};
        record.dwCmeError = cme;
        Put(record.szPassword, first);
        Put(record.szNewPassword, second);
        result = OrvSetSimVerifyGobi(&record);
        cme = record.dwCmeError;
    } else if (request == 'e' || request == 'd') {
        OrvSimLockRecord record = {};
        record.bLocked = request == 'e' ? 2 : 0; // any value but 0 is on
        record.dwCmeError = cme;
        Put(record.szPassword, first);
        result = OrvSetSimLockGobi(&record);
        cme = record.dwCmeError;
    } else {
        OrvSimPasswordRecord record = {};
        record.dwFacility = 1;
        record.dwCmeError = cme;
        record.dwPasswordType = static_cast<ULONG>(request - '0');
        Put(record.szOldPassword, first);
        Put(record.szNewPassword, second);
        result = OrvSetSimPasswordGobi(&record);
        cme = record.dwCmeError;
    }
    return std::to_string(static_cast<ULONG>(result)) + " " + std::to_string(cme);
}

// "state locked PIN1 PIN2 PUK1 PUK2", the last four as attempts left.
std::string State()
{
    ULONG state = kUntouched;
    OrvSimLockRecord lock = {};
    EXPECT_EQ(OrvGetSimVerifyGobi(&state), ORV_RCODE_OK);
    EXPECT_EQ(OrvGetSimLockGobi(&lock), ORV_RCODE_OK);
    std::string text = std::to_string(state) + " " + std::to_string(lock.bLocked);
    for (ULONG kind = 0; kind < 4; ++kind) {
        BYTE retries = kUntouched;
        EXPECT_EQ(OrvGetPinStatus(kind, &retries), ORV_RCODE_OK);
        text += " " + std::to_string(retries);
    }
    return text;
}

class GsmPin : public ::testing::Test {
protected:
    ~GsmPin() override { OrvApiShutdown(); }
    SimHarness sim{"umts:5120"};
};

BYTE g_octet;
ULONG g_word;
OrvSimLockRecord g_lock = {0, 0, 0, 0, "1234"};
OrvSimPasswordRecord g_password = {0, 1, 0, 2, "5678", "5678"};
OrvSimVerifyRecord g_verify = {0, "1234", "", 0};
ORV_SIM_RESPONSE g_response;
ORV_SIM_RECORD_STATUS g_record;
const BYTE kCommand[] = {0xA0, 0xF2, 0, 0, 22};

ORV_RCODE WithoutPayload(ORV_RCODE result)
{
    OrvFreeBuffer(g_response.pPayload);
    g_response = {};
    return result;
}

TEST_F(GsmPin, TheFunctionsForGsmModulesHaveTheirGuards)
{
    const GuardedFunction functions[] = {
        {"OrvGetPinStatus", 10, 17, 0, [] { return OrvGetPinStatus(0, &g_octet); }},
        {"OrvGetSimLock", 10, 17, 1, [] { return OrvGetSimLock(nullptr); }},
        {"OrvSetSimLock", 10, 17, 1, [] { return OrvSetSimLock(&g_lock); }},
        {"OrvSetSimPassword", 10, 17, 1, [] { return OrvSetSimPassword(&g_password); }},
        {"OrvSendRestrictedSIMCmd", 10, 17, 0,
         [] { return WithoutPayload(OrvSendRestrictedSIMCmd(242, 0, 0, 0, 0, 0, 0, nullptr, &g_response)); }},
        {"OrvSendGenericSimCommand", 10, 17, 0,
         [] {
             return WithoutPayload(OrvSendGenericSimCommand({0, sizeof kCommand, kCommand}, &g_response));
         }},
        {"OrvGetSIMRecordStatus", 10, 17, 0, [] { return OrvGetSIMRecordStatus(0x2FE2, &g_record); }},
    };
    SweepGuards(sim, functions, "umts:5120", "cdma:5101");
}

TEST_F(GsmPin, TheOtherFunctionsNeedAModuleOfEitherKind)
{
    const struct {
        const char* name;
        ORV_RCODE (*call)();
        const char* asks; // the vendor library
    } functions[] = {
        {"OrvGetSimLockGobi", [] { return OrvGetSimLockGobi(&g_lock); }, "DMSUIMGetPINStatus(1)"},
        {"OrvSetSimLockGobi", [] { return OrvSetSimLockGobi(&g_lock); }, "DMSUIMSetPINProtection(1, 0, \"1234\")"},
        {"OrvGetSimVerifyGobi", [] { return OrvGetSimVerifyGobi(&g_word); }, "DMSUIMGetPINStatus(1)"},
        {"OrvSetSimVerifyGobi", [] { return OrvSetSimVerifyGobi(&g_verify); }, "DMSUIMVerifyPIN(1, \"1234\")"},
        {"OrvSetSimPasswordGobi", [] { return OrvSetSimPasswordGobi(&g_password); },
         "DMSUIMChangePIN(2, \"5678\", \"5678\")"},
    };
    for (const auto& function : functions)
        EXPECT_EQ(function.call(), 10u) << function.name;
    OrvApiStartup();
    for (const auto& function : functions)
        EXPECT_EQ(function.call(), 17u) << function.name;
    EXPECT_TRUE(sim.Journal().empty());
    for (const char* model : {"umts:5120", "cdma:5101"}) {
        SelectModule(sim, model); // PIN1 is worked on again
        for (const auto& function : functions) {
            SCOPED_TRACE(std::string(function.name) + " on " + model);
            sim.ClearJournal();
            function.call();
            EXPECT_EQ(sim.Journal(), std::vector<std::string>{function.asks});
        }
        OrvApiShutdown();
    }
}

TEST_F(GsmPin, LivesFromDisabledToPermanentlyBlocked)
{
    const struct {
        const char* name;
        char request;
        const char *first, *second;
        const char *answer, *state;
        const char* before = nullptr; // what happens to the module first
    } steps[] = {
        {"verify while disabled", 'v', "1234", "", "5 3", "1 0 3 3 10 10"},
        {"change while disabled", '1', "1234", "4321", "5 3", "1 0 3 3 10 10"},
        {"disable while disabled", 'd', "1234", "", "600 100", "1 0 3 3 10 10"},
        {"what is no PIN", 'e', "12", "", "5 100", "1 0 3 3 10 10"},
        {"enable with a wrong PIN", 'e', "0000", "", "5 16", "1 0 2 3 10 10"},
        {"enable", 'e', "1234", "", "0 77", "1 1 3 3 10 10"},
        {"wrong after a restart", 'v', "0000", "", "5 16", "2 1 2 3 10 10", "set pin1.verified 0"},
        {"verify", 'v', "1234", "", "0 77", "1 1 3 3 10 10"},
        {"change", '1', "1234", "98765432", "0 77", "1 1 3 3 10 10"},
        {"the old PIN", 'd', "1234", "", "5 16", "1 1 2 3 10 10"},
        {"wrong twice", '1', "1234", "1111", "5 16", "1 1 1 3 10 10"},
        {"wrong thrice", 'v', "1234", "", "5 16", "3 1 0 3 10 10"},
        {"verify, blocked", 'v', "98765432", "", "5 12", "3 1 0 3 10 10"},
        {"change, blocked", '1', "98765432", "1111", "5 12", "3 1 0 3 10 10"},
        {"disable, blocked", 'd', "98765432", "", "5 12", "3 1 0 3 10 10"},
        {"wrong PUK", '3', "00000000", "1111", "5 16", "3 1 0 3 9 10"},
        {"PUK with the verify record", 'u', "12345678", "1111", "0 77", "1 1 3 3 10 10"},
        {"disable", 'd', "1111", "", "0 77", "1 0 3 3 10 10"},
        {"PUK of a PIN that is not blocked", '3', "12345678", "2222", "0 77", "1 1 3 3 10 10"},
        {"wrong PIN2", '2', "0000", "1111", "5 16", "7 1 3 2 10 10"},
        {"verify is PIN2's now", 'v', "5678", "", "0 77", "1 1 3 3 10 10"},
        {"the lock stays PIN1's", 'd', "2222", "", "0 77", "1 0 3 3 10 10"},
        {"change PIN2", '2', "5678", "8765", "0 77", "1 0 3 3 10 10"},
        {"PIN2 wrong once", 'v', "5678", "", "5 16", "1 0 3 2 10 10"},
        {"PIN2 wrong twice", 'v', "5678", "", "5 16", "1 0 3 1 10 10"},
        {"PIN2 wrong thrice", 'v', "5678", "", "5 16", "8 0 3 0 10 10"},
        {"PIN2 blocked", 'v', "8765", "", "5 18", "8 0 3 0 10 10"},
        {"PUK1 for PIN2", '4', "12345678", "1111", "5 16", "8 0 3 0 10 9"},
        {"PUK2", '4', "87654321", "1111", "0 77", "1 0 3 3 10 10"},
        {"the last attempt with PUK2", '4', "00000000", "1111", "5 16", "0 0 3 0 10 0",
         "set pin2.attempts 0\nset pin2.puk-attempts 1"},
        {"PIN2 blocked for good", '4', "87654321", "1111", "5 18", "0 0 3 0 10 0"},
        {"PIN1 again", '3', "12345678", "1234", "0 77", "1 1 3 0 10 0"},
        {"the last attempt with PUK1", 'u', "00000000", "1111", "5 16", "0 1 0 0 0 0",
         "set pin1.attempts 0\nset pin1.puk-attempts 1"},
        {"PIN1 blocked for good", 'u', "12345678", "1111", "5 12", "0 1 0 0 0 0"},
    };
    SelectModule(sim, "umts:5120");
    LogCapture log;
    for (const auto& step : steps) {
        SCOPED_TRACE(step.name);
        if (step.before) {
            for (const std::string& line : SplitLines(step.before))
                sim.Command(line);
        }
        EXPECT_EQ(Ask(step.request, step.first, step.second), step.answer);
        EXPECT_EQ(State(), step.state);
    }
    EXPECT_EQ(log.Count("OrvSetSimPasswordGobi: PIN TYPE changed to 2"), 1); // changes alone, not each request
    EXPECT_EQ(log.Count("OrvSetSimPasswordGobi: PIN TYPE changed to 1"), 1);
    for (const std::string& text : log.Texts()) {
        for (const char* secret : {"98765432", "12345678", "87654321", "5678"})
            EXPECT_EQ(text.find(secret), std::string::npos) << text;
    }
    OrvApiShutdown();
    SelectModule(sim, "umts:5120");
    sim.Command("set pin1.enabled 1");
    EXPECT_EQ(State().substr(0, 1), "2") << "a selection brings PIN1 back";
}

TEST_F(GsmPin, RetriesAreTheLowOctetUnlessTheVerifyCounterIsUnknown)
{
    const struct {
        const char* name;
        const char *pin, *puk; // of PIN1 and, one less, of PIN2
        ULONG kind, result;
        BYTE retries;
    } rows[] = {
        {"PIN1", "3", "300", 0, 0, 3},
        {"PIN2", "3", "300", 1, 0, 3},
        {"PUK1, low octet", "3", "300", 2, 0, 44},
        {"PUK2", "3", "9", 3, 0, 9},
        {"PIN1, all bits but one", "4294967294", "9", 0, 0, 254},
        {"PIN1 unknown", "4294967295", "9", 0, 6, 77},
        {"PIN2 unknown", "4294967295", "9", 1, 6, 77},
        {"PUK1 known", "4294967295", "9", 2, 6, 77},
        {"PUK2 known", "4294967295", "9", 3, 6, 77},
        {"PUK1 unknown", "3", "4294967295", 2, 0, 255},
        {"no such kind", "3", "9", 4, 4, 77},
        {"nor this", "3", "9", 0xFFFFFFFF, 4, 77},
    };
    SelectModule(sim, "umts:5120");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        for (const char* pin : {"pin1", "pin2"}) {
            sim.Command(std::string("set ") + pin + ".attempts " + row.pin);
            sim.Command(std::string("set ") + pin + ".puk-attempts " + row.puk);
        }
        BYTE retries = kUntouched;
        EXPECT_EQ(OrvGetPinStatus(row.kind, &retries), row.result);
        EXPECT_EQ(retries, row.retries);
    }
}

TEST_F(GsmPin, AFailingVendorCallIsLoggedAndWritesNothingElse)
{
    const struct {
        const char* entry;
        ORV_RCODE (*call)();
        const char* log; // null: none
    } rows[] = {
        {"DMSUIMGetPINStatus", [] { return OrvGetPinStatus(0, &g_octet); },
         "OrvGetPinStatus failed with error code rc = 7"},
        {"DMSUIMGetPINStatus", [] { return OrvGetSimLockGobi(&g_lock); },
         "OrvGetSimLockGobi failed with error code rc = 7"},
        {"DMSUIMGetPINStatus", [] { return OrvGetSimVerifyGobi(&g_word); },
         "OrvGetPinStatus failed with error code rc = 7"},
        {"DMSUIMSetPINProtection", [] { return OrvSetSimLockGobi(&g_lock); },
         "OrvSetSimLockGobi failed with error code rc = 7"},
        {"DMSUIMVerifyPIN", [] { return OrvSetSimVerifyGobi(&g_verify); },
         "OrvSetSimVerifyGobi failed with error code rc = 7"},
        {"DMSUIMChangePIN", [] { return OrvSetSimPasswordGobi(&g_password); }, nullptr},
    };
    SelectModule(sim, "umts:5120");
    g_octet = g_lock.bLocked = static_cast<BYTE>(g_word = kUntouched);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.entry);
        sim.Command("clear all");
        sim.Command(std::string("fail ") + row.entry + " 15");
        LogCapture log;
        EXPECT_EQ(row.call(), 7u);
        if (row.log) {
            EXPECT_EQ(log.Find(row.log).module, "TALVEKGsm") << log.Dump();
        }
    }
    EXPECT_EQ(g_octet, kUntouched);
    EXPECT_EQ(g_lock.bLocked, kUntouched);
    EXPECT_EQ(g_word, kUntouched);
    for (const ULONG cme : {g_lock.dwCmeError, g_verify.dwCmeError, g_password.dwCmeError})
        EXPECT_EQ(cme, 100u);

    sim.Command("clear all");
    sim.Command("hostile DMSUIMGetPINStatus scribble"); // a status that there is none of
    EXPECT_EQ(OrvGetSimLockGobi(&g_lock), ORV_RCODE_OK);
    EXPECT_EQ(g_lock.bLocked, kUntouched);
    EXPECT_EQ(OrvGetSimVerifyGobi(&g_word), ORV_RCODE_OK);
    EXPECT_EQ(g_word, 0u);
}

TEST_F(GsmPin, PasswordsOfEveryLengthAreHandedOverAsFarAsTheyGo)
{
    SelectModule(sim, "umts:5120");
    const auto call = [this](char request, const std::string& first, const std::string& second) {
        sim.ClearJournal();
        const std::string answer = Ask(request, first, second);
        const std::vector<std::string> journal = sim.Journal();
        return answer + (journal.empty() ? "" : " " + journal[0]);
    };
    EXPECT_EQ(call('1', "", "1234"), "4 77");
    EXPECT_EQ(call('4', "1234", ""), "4 77");
    EXPECT_EQ(call('5', "1234", "1234"), "5 100");
    EXPECT_EQ(call('0', "1234", "1234"), "5 100");
    EXPECT_EQ(call('e', "", ""), "5 100 DMSUIMSetPINProtection(1, 1, \"\")");
    EXPECT_EQ(call('v', "", ""), "5 100 DMSUIMVerifyPIN(1, \"\")");
    EXPECT_EQ(call('v', "12345678", ""), "5 3 DMSUIMVerifyPIN(1, \"12345678\")");
    for (const size_t length : {size_t{255}, size_t{256}, size_t{300}}) {
        const std::string text(length, '7');
        const std::string shown = "\"" + std::string(200, '7') + "...\"";
        EXPECT_EQ(call('e', text, ""), "5 100 DMSUIMSetPINProtection(1, 1, " + shown + ")") << length;
        EXPECT_EQ(call('u', text, text), "5 100 DMSUIMUnblockPIN(1, " + shown + ", " + shown + ")") << length;
        EXPECT_EQ(call('2', text, text), "5 100 DMSUIMChangePIN(2, " + shown + ", " + shown + ")") << length;
        OrvApiShutdown();
        SelectModule(sim, "umts:5120");
    }
}

TEST_F(GsmPin, AFacilityOutOfRangeIsOnlyLogged)
{
    constexpr const char* kText = "ASSERTION FAILURE: ===>pSim->dwFacility && NUM_LOCKFACILITIES > pSim->dwFacility";
    SelectModule(sim, "umts:5120");
    for (const ULONG facility : {0u, 1u, 10u, 11u}) {
        OrvSimPasswordRecord record = {0, facility, 0, 2, "5678", "5678"};
        LogCapture log;
        EXPECT_EQ(OrvSetSimPasswordGobi(&record), ORV_RCODE_OK);
        EXPECT_EQ(log.Count(kText), facility == 0 || facility == 11) << facility;
    }
    EXPECT_EQ(OrvGetPinStatus(0, nullptr), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvGetSimLockGobi(nullptr), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvSetSimLockGobi(nullptr), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvSetSimPasswordGobi(nullptr), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvGetSimVerifyGobi(nullptr), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvSetSimVerifyGobi(nullptr), ORV_RCODE_BAD_PARAMETER);
}

} // namespace
