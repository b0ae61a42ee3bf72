// Mobile IP, activation, and the call functions that stand on the data session.

#include <gtest/gtest.h>

#include <string.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/cdma_module.h"

namespace {

const char* const kReset =
    "This API needs to modem reset, if any application uses this API it needs to reset the modem";

class CdmaMobileIp : public CdmaModule {
protected:
    void SetUp() override
    {
        Start();
        OrvPstUnlock(0);
        sim.ClearJournal();
    }
};
using CdmaCalls = CdmaMobileIp;

TEST_F(CdmaMobileIp, WhatIsWrittenOfAProfile)
{
    BYTE on = 1, off = 0, secret[] = {'a', 'b', 'c'}, long_secret[255];
    memset(long_secret, 'x', sizeof long_secret);
    ULONG address = 1, spi = 9;
    char nai[] = "u@x";
    // clang-format off
    const struct { const char* name; std::function<ORV_RCODE()> call; ULONG result;
        std::string arguments; /* behind code and index */ bool warns; } rows[] = {
        {"both SPIs", [] { return OrvPstSetDsMipGenUser(2, 1, 1, 2, 3, "a@b", 1, 4, 1, 5); }, 0,
         "null, 1, 2, 3, 1, \"a@b\", 4, 5, null, null", true},
        {"neither", [] { return OrvPstSetDsMipGenUser(2, 0, 0, 0, 0, "", 0, 4, 0, 5); }, 0,
         "null, 0, 0, 0, 0, \"\", null, null, null, null", true},
        {"one", [] { return OrvPstSetDsMipGenUser(2, 0, 0, 0, 0, "", 2, 0, 0, 5); }, 0,
         "null, 0, 0, 0, 0, \"\", 0, null, null, null", true},
        {"out of range", [] { return OrvPstSetDsMipGenUser(2, 9, 0, 0, 0, "", 0, 0, 0, 0); }, 5,
         "null, 0, 0, 0, 9, \"\", null, null, null, null", true},
        {"secrets", [&] { return OrvPstSetDsMipSsUserProf(2, 3, secret, 2, secret); }, 0,
         "null, null, null, null, null, null, null, null, \"abc\", \"ab\"", true},
        {"no secrets", [&] { return OrvPstSetDsMipSsUserProf(2, 0, secret, 0, secret); }, 0,
         "null, null, null, null, null, null, null, null, \"\", \"\"", true},
        {"long secret", [&] { return OrvPstSetDsMipSsUserProf(2, 255, long_secret, 0, secret); }, 5, "", true},
        {"as they are", [&] { return OrvSetMobileIPProfile(2, &on, &address, nullptr, nullptr, &off, nai, &spi,
         nullptr, nai, nullptr); }, 0, "1, 1, null, null, 0, \"u@x\", 9, null, \"u@x\", null", false},
    };
    // clang-format on
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        LogCapture log;
        EXPECT_EQ(row.call(), row.result);
        const Lines calls = Calls();
        ASSERT_EQ(calls.size(), 1u);
        if (!row.arguments.empty()) {
            EXPECT_EQ(calls[0], "SetMobileIPProfile(\"000000\", 2, " + row.arguments + ")");
        }
        EXPECT_EQ(log.Count(kReset), row.warns ? 1 : 0);
    }
    EXPECT_EQ(OrvPstSetDsMipActiveProf(6), ORV_RCODE_FAILED);
    LogCapture log;
    EXPECT_EQ(OrvSetMobileIPProfile(6, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}), ORV_RCODE_FAILED);
    EXPECT_EQ(log.Count("OrvSetMobileIPProfile returning: 5"), 1) << log.Dump();
}

TEST_F(CdmaMobileIp, WhatIsReadOfAProfile)
{
    char nai[20];
    BYTE reverse = 9, ha = 9, aaa = 9, enabled = 9, lengths[] = {7, 7};
    ULONG words[5] = {};
    const auto read = [&](BYTE index, BYTE room) {
        memset(nai, '#', sizeof nai);
        return OrvPstGetDsMipGenUser(index, &reverse, &words[0], &words[1], &words[2], room, nai, &ha, &words[3], &aaa,
                                     &words[4]);
    };
    LogCapture log;
    EXPECT_EQ(read(0, 20), ORV_RCODE_OK);
    EXPECT_STREQ(nai, "user@example.net");
    EXPECT_EQ(std::vector<ULONG>({reverse, ha, aaa}), std::vector<ULONG>({1, 1, 1}));
    EXPECT_EQ(std::vector<ULONG>(words, words + 5), std::vector<ULONG>({0, 0xC0000205, 0xC0000206, 300, 2}));
    const std::pair<BYTE, const char*> rooms[] = {{16, "user@example.net####"}, {4, "user################"}, {0, ""}};
    for (const auto& [room, text] : rooms) {
        EXPECT_EQ(read(0, room), ORV_RCODE_OK);
        EXPECT_EQ(std::string(nai, sizeof nai), room ? text : std::string(20, '#'));
    }
    sim.Command("hostile GetMobileIPProfile scribble");
    EXPECT_EQ(read(0, 4), ORV_RCODE_OK);
    EXPECT_EQ(std::string(nai, sizeof nai), "%s%n################");
    sim.Command("clear all");
    EXPECT_EQ(read(1, 20), ORV_RCODE_OK);
    EXPECT_EQ(ha + aaa, 0) << "SPIs of 0";
    EXPECT_EQ(OrvPstGetDsMipEnableProf(0, &enabled), ORV_RCODE_OK);
    EXPECT_EQ(enabled, 1);
    Calls();
    EXPECT_EQ(OrvPstGetDsMipEnableProf(6, &enabled), ORV_RCODE_FAILED);
    EXPECT_EQ(enabled, 0) << "also after a failure";
    EXPECT_EQ(Calls(), Lines{"GetMobileIPProfile(6, 100)"});
    EXPECT_EQ(OrvPstGetDsMipSsUserProf(0, &lengths[0], nullptr, &lengths[1], nullptr), ORV_RCODE_OK);
    EXPECT_EQ(lengths[0] + lengths[1], 0);
    reverse = 77;
    EXPECT_EQ(read(6, 20), ORV_RCODE_FAILED);
    EXPECT_EQ(reverse, 77);
    EXPECT_EQ(OrvGetMobileIPProfile(6, &ha, words, words, words, &ha, 9, nai, words, words), ORV_RCODE_FAILED);
    const char* const texts[] = {
        "pReverseTunneling = 1, pHomeAddress = 0, pPrimaryHaAddress = 3221225989 , pSecondaryHaAddress = 3221225990",
        "nai =user@example.net,pMnHaSpiEnable = 1 , pMnHaSpi = 300 , pMnAaaSpiEnable = 1, pMnAaaSpi = 2",
        "Gobi GetMobileIPProfile returning: 5",
        "Assuming Mobile IP profile index = 6 NOT Enabled",
        "OrvGetMobileIPProfile returning: 5  for index = 6",
        "OrvGetMobileIPProfile returning: 5",
        "Gobi module does not allow to read mnHaSs and mnAaaSs, return blank"};
    for (const char* text : texts)
        EXPECT_GE(log.Count(text), 1) << text << log.Dump();
}

TEST_F(CdmaMobileIp, ModeProfileInUseAndLastError)
{
    ULONG mode = 0, error = 0;
    BYTE index = 0;
    LogCapture log;
    sim.Command("set mip.error 131");
    EXPECT_EQ(OrvPstSetDsQcMip(2), ORV_RCODE_OK);
    EXPECT_EQ(OrvPstSetDsQcMip(3), ORV_RCODE_FAILED);
    EXPECT_EQ(OrvPstGetDsQcMip(&mode), ORV_RCODE_OK);
    EXPECT_EQ(OrvPstSetDsMipActiveProf(3), ORV_RCODE_OK);
    EXPECT_EQ(OrvPstGetDsMipActiveProf(&index), ORV_RCODE_OK);
    EXPECT_EQ(OrvGetMipErrCode(&error), ORV_RCODE_OK);
    sim.Command("fail GetLastMobileIPError 1026");
    EXPECT_EQ(OrvGetMipErrCode(&error), 600u);
    EXPECT_EQ(std::vector<ULONG>({mode, index, error}), std::vector<ULONG>({2, 3, 131}));
    for (const char* text : {"Active MIP profile index = 3", kReset, "GetLastMobileIPError gets to rc = 600"})
        EXPECT_EQ(log.Count(text), 1) << text;
}

// --- calls -----------------------------------------------------------------------------------------------------------

TEST_F(CdmaCalls, ACallIsADataSessionOrAnActivation)
{
    const char* const kInstead = "OrvSetCallOriginateCmd not officially supported. Trying OrvStartDataSession instead";
    const char* const kStop = "OrvSetCallDisconnectCmd not officially supported. Trying OrvStopDataSession instead";
    const std::u16string longest(255, u'1'), too_long(256, u'1');
    LogCapture log;
    EXPECT_EQ(OrvSetCallDisconnectCmd(), ORV_RCODE_WRONG_STATE);
    sim.Command("fail StartDataSession2 1025");
    EXPECT_EQ(OrvSetCallOriginateCmd(257, nullptr), ORV_RCODE_UNSUPPORTED);
    EXPECT_EQ(OrvSetCallDisconnectCmd(), ORV_RCODE_WRONG_STATE) << "no handle of a session that failed";
    sim.Command("clear all");
    Calls();
    EXPECT_EQ(OrvSetCallOriginateCmd(257, u"ignored"), ORV_RCODE_OK);
    EXPECT_EQ(Calls(), Lines{"StartDataSession2(\"\", \"\", \"\")"});
    sim.Command("fail StopDataSession 1026 times 1");
    EXPECT_EQ(OrvSetCallDisconnectCmd(), 600u);
    EXPECT_EQ(OrvSetCallDisconnectCmd(), ORV_RCODE_OK) << "the handle was kept";
    EXPECT_EQ(OrvSetCallDisconnectCmd(), ORV_RCODE_WRONG_STATE);
    EXPECT_EQ(log.Count(kInstead), 2);
    EXPECT_EQ(log.Count(kStop), 5);

    Calls();
    EXPECT_EQ(OrvSetCallOriginateCmd(0, u"*22899"), ORV_RCODE_OK);
    EXPECT_EQ(Calls(), Lines{"ActivateAutomatic(\"*22899\")"});
    OrvSetCallOriginateCmd(0, longest.c_str());
    EXPECT_EQ(Calls().size(), 1u);
    EXPECT_EQ(OrvSetCallOriginateCmd(0, too_long.c_str()), ORV_RCODE_BAD_PARAMETER) << "not cut";
    EXPECT_EQ(OrvSetCallOriginateCmd(1, u"55"), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(Calls(), Lines());
    EXPECT_EQ(log.Count("OrvSetCallOriginateCmd unhandle callType = 1, callNumber = 55"), 1) << log.Dump();
}

TEST_F(CdmaCalls, TheStateOfTheSessionIsThatOfTheCall)
{
    // clang-format off
    const struct { const char *name, *setup; ULONG result, status, error; } rows[] = {
        {"disconnected", "set session.state 1", 0, 0, 67}, {"connected", "set session.state 2", 0, 2, 0},
        {"authenticating", "set session.state 4", 0, 1, 67}, {"no state", "fail GetSessionState 1026", 600, 0, 67},
        {"no error to be had", "fail GetLastMobileIPError 3", 0, 0, 0},
        {"hostile", "hostile GetSessionState scribble", 0, 1, 67},
    };
    // clang-format on
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        sim.Command("reset");
        sim.Command("set mip.error 67");
        sim.Command(row.setup);
        LogCapture log;
        ULONG status = 9, error = 9;
        EXPECT_EQ(OrvGetCallConnectionState(&status, &error), row.result);
        EXPECT_EQ(std::make_pair(status, error), std::make_pair(row.status, row.error));
        EXPECT_EQ(log.Count("OrvGetCallConnectionState returns uStatus = " + std::to_string(row.status) +
                            ", uError = " + std::to_string(row.error)),
                  1)
            << log.Dump();
    }
}

} // namespace
