// CDMA modules: how they are served, their power, and the fixed answers.

#include "tests/support/cdma_module.h"

namespace {

TEST_F(CdmaModule, ReportsTheFirstStrengthOrTheLastOneOfEachInterface)
{
    const struct {
        const char *pairs, *rssi, *on_umts;
        ULONG cdma, hdr;
    } rows[] = {
        {"-75:1 -80:2", "0 75", "0 250", 75, 80},
        {"-80:2 -75:1 -70:5 -60:1 -61:2 -50:4", "0 75", "0 70", 60, 61},
        {"-80:2 -60:4 -70:5", "0 250", "0 60", 250, 80},
        {"-128:1 -72:8", "0 128", "0 250", 128, 250},
        {"127:1 0:2", "0 127", "0 250", 127, 0},
        {"none", "0 250", "0 250", 250, 250},
        {"-1:8 -2:8 -3:8 -4:8 -5:8 -6:8 -7:8 -8:4 -9:2 -10:1", "0 10", "0 8", 10, 9},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.pairs);
        SelectModule(sim, "umts:5120");
        sim.Command(std::string("set signal.pairs ") + row.pairs);
        EXPECT_EQ(Answer(OrvGetRssi), row.on_umts);
        OrvApiShutdown();
        Start();
        sim.Command(std::string("set signal.pairs ") + row.pairs);
        EXPECT_EQ(Answer(OrvGetRssi), row.rssi);
        EXPECT_EQ(sim.Journal(), Lines{"GetSignalStrengths(10)"});
        ORV_RSSI_ECIO record = {};
        EXPECT_EQ(OrvGetRssiEcio(&record), ORV_RCODE_OK);
        EXPECT_EQ(record.uSize, 12u);
        EXPECT_EQ(record.u1xRssi, row.cdma);
        EXPECT_EQ(record.uHdrRssi, row.hdr);
        OrvApiShutdown();
    }
    Run("model cdma:5101; set signal.pairs -75:1");
    ASSERT_EQ(OrvApiStartup(), ORV_RCODE_OK);
    EXPECT_EQ(Answer(OrvGetRssi), "0 250") << "no module is selected";
    Start();
    sim.Command("hostile GetSignalStrengths count 4000000000");
    EXPECT_EQ(Answer(OrvGetRssi), "0 75");
    sim.Command("hostile GetSignalStrengths scribble");
    EXPECT_EQ(Answer(OrvGetRssi), "0 250");
}

TEST_F(CdmaModule, FindsTheFirstInstanceOf1xrttWhereverTheWordOneStands)
{
    Start();
    const std::string none =
        "6 0 | OrvGetTechBandClass failed, FindRFInfoIndex couldn't find any 1X interface, rfInfoSize = ";
    const struct {
        const char* commands;
        std::string channel, band;
    } rows[] = {
        {"set rf.instances 1:0:384 2:1:425", "0 384", "0 0"},
        {"set rf.instances 2:1:425 1:5:100 1:6:101", "0 100", "0 5"},
        {"set rf.instances 2:1:1", "0 0", none + "1"},
        {"set rf.instances none", "0 0", none + "0"},
        {"hostile GetRFInfo count 255", "0 0", none + "20"},
        {"hostile GetRFInfo scribble", "0 0", none + "20"},
    };
    for (const auto& row : rows) {
        Run(row.commands);
        EXPECT_EQ(Answer(OrvGetChannelNumber), row.channel) << row.commands;
        EXPECT_EQ(Answer(OrvGetTechBandClass), row.band) << row.commands;
    }
    EXPECT_EQ(sim.Journal()[0], "GetRFInfo(20)");
}

TEST_F(CdmaModule, ServiceAcceptsAnUnknownNetworkAndRoamingDoesNot)
{
    EXPECT_EQ(Answer(OrvGetCurrentBaseStation), "17 - | Current Base Station = 77") << "logged in every case";
    Start();
    const struct {
        const char *ran, *interfaces, *registration, *roaming;
        const char *service, *hdr_service, *status, *hdr_status; // a value; or RAN and index, as a refusal logs them
        const char* station;
    } rows[] = {
        {"1", "1 2", "1", "1", "2", "4", "0", "0", "6"},
        {"1", "2 1", "1", "0", "2", "4", "1", "1", "6"},
        {"1", "1 2", "2", "2", "0", "0", "2", "2", "6"},
        {"1", "1 2", "1", "64", "2", "4", "64", "64", "6"},
        {"1", "1 2", "1", "0x10003", "2", "4", "3", "3", "6"},
        {"1", "1", "1", "1", "2", "1, ifIndex = 255", "0", "1, ifIndex = 255", "6"},
        {"1", "2", "1", "1", "1, ifIndex = 255", "4", "1, ifIndex = 255", "0", "6"},
        {"0", "1 2", "1", "1", "2", "4", "0, ifIndex = 0", "0, ifIndex = 1", "0"},
        {"0", "none", "1", "1", "2", "4", "0, ifIndex = 255", "0, ifIndex = 255", "0"},
        {"2", "5 1 2", "1", "1", "2, ifIndex = 1", "2, ifIndex = 2", "2, ifIndex = 1", "2, ifIndex = 2", "0"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.ran) + ", " + row.interfaces + ", " + row.registration + ", " + row.roaming);
        Run(std::string("set network.ran ") + row.ran + "; set network.interfaces " + row.interfaces +
            "; set network.registration " + row.registration + "; set network.roaming " + row.roaming);
        const auto expected = [](const char* function, const std::string& value) {
            if (value.find(',') == std::string::npos) return "0 " + value;
            return std::string("18 - | ") + function + " detects incompatible RAN = " + value;
        };
        EXPECT_EQ(Answer(OrvGetServiceIndication), expected("OrvGetServiceIndication", row.service));
        EXPECT_EQ(Answer(OrvGetHdrSrvState), expected("OrvGetHdrSrvState", row.hdr_service));
        EXPECT_EQ(Answer(OrvGetRoamingStatus), expected("OrvGetRoamingStatus", row.status));
        EXPECT_EQ(Answer(OrvGetHdrRoamStatus), expected("OrvGetHdrRoamStatus", row.hdr_status));
        std::string station = std::string("0 ") + row.station;
        station.append(" | Current Base Station = ").append(row.station);
        EXPECT_EQ(Answer(OrvGetCurrentBaseStation), station);
    }
    EXPECT_EQ(sim.Journal()[0], "GetServingNetwork(10, 50)");
    sim.Command("fail GetServingNetwork 5");
    EXPECT_EQ(Answer(OrvGetCurrentBaseStation), "2 - | Got GobiAPI error = 5 | Current Base Station = 77");
    Run("clear all; hostile GetServingNetwork scribble");
    EXPECT_EQ(Answer(OrvGetHdrRoamStatus), "18 - | OrvGetHdrRoamStatus detects incompatible RAN = -1, ifIndex = 255");
}

// --- power, counters, fixed answers ----------------------------------------------------------------------------------

TEST_F(CdmaModule, TranslatesThePowerModes)
{
    Start();
    const char* const given[] = {"0 0", "0 5", "0 0", "0 1", "0 2", "0 3", "0 4"}; // by the vendor's mode
    for (size_t vendor = 0; vendor < std::size(given); ++vendor) {
        sim.Command("set power.mode " + std::to_string(vendor));
        EXPECT_EQ(Answer(OrvGetPower), given[vendor]) << vendor;
    }
    sim.ClearJournal();
    for (ULONG mode = 0; mode < 7; ++mode)
        EXPECT_EQ(OrvSetPower(mode), ORV_RCODE_OK);
    EXPECT_EQ(sim.Journal(), (Lines{"SetPower(0)", "SetPower(3)", "SetPower(5)", "SetPower(5)", "SetPower(6)",
                                    "SetPower(1)", "SetPower(4)"}));
}

TEST_F(CdmaModule, AResetModuleLeavesAndComesBack)
{
    for (const auto reset : {OrvResetModem, OrvSetPowerDown}) {
        Start();
        EXPECT_EQ(reset(), ORV_RCODE_OK);
        EXPECT_EQ(sim.Journal(), Lines{"SetPower(5)"});
        sim.Command("advance 60");
        EXPECT_EQ(Answer(OrvGetPower), "5 - | Got GobiAPI error = 6");
        sim.Command("advance 3000");
        EXPECT_EQ(Answer(OrvGetPower), "0 0");
        OrvApiShutdown();
    }
}

TEST_F(CdmaModule, CountsBytesAsRateTimesWholeSeconds)
{
    Start();
    char apn[] = "";
    ULONG session = 0, reason = 0;
    ASSERT_EQ(OrvStartDataSession(apn, nullptr, nullptr, &session, &reason), ORV_RCODE_OK);
    Run("advance 100; set data.started-ms 0; set data.tx-rate 900000; set data.rx-rate 3000000"); // it is up
    const struct {
        const char *commands, *sent, *received;
    } rows[] = {
        {"advance 0", "0 0", "0 0"},
        {"advance 1899", "0 900000", "0 3000000"},
        {"advance 1", "0 1800000", "0 6000000"},
        {"advance 1498000", "0 50775D80", "0 C388D00"}, // 1350000000, and 4500000000 in 32 bits
        {"fail GetSessionDuration 5", "2 - | Got GobiAPI error = 5", "2 - | Got GobiAPI error = 5"},
    };
    for (const auto& row : rows) {
        Run(row.commands);
        EXPECT_EQ(Answer<ULONG>([](ULONG* out) { return OrvGetByteCounter(out, nullptr); }), row.sent) << row.commands;
        sim.ClearJournal();
        EXPECT_EQ(Answer<ULONG>([](ULONG* out) { return OrvGetByteCounter(nullptr, out); }), row.received);
        EXPECT_EQ(sim.Journal(), (Lines{"GetConnectionRate()", "GetSessionDuration()"}));
    }
}

TEST_F(CdmaModule, GivesFixedAnswersWithoutAskingTheModule)
{
    Start();
    EXPECT_EQ(Answer(OrvGetHdrHybrPref), "0 1");
    EXPECT_EQ(Answer(OrvGetGeneralFeatureSupport), "0 2");
    EXPECT_EQ(Answer(OrvGetIOTADisable), "0 1");
    EXPECT_EQ(Answer(OrvGetECIO), "0 0");
    LogCapture log;
    EXPECT_EQ(OrvSetHdrHybrPref(0), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvSetHdrHybrPref(257), ORV_RCODE_BAD_PARAMETER);
    OrvPowerSaveExit();
    OrvSetNDISPrefMode();
    const char* const off = "OrvSetHdrHybrPref doesn't allow Hdr Hybrid Off";
    EXPECT_EQ(log.Texts(), (Lines{off, off, "OrvPowerSaveExit not supported by Gobi.",
                                  "OrvSetNDISPrefMode noop. Always return OK"}));
    EXPECT_EQ(sim.Journal(), Lines());
}

} // namespace
