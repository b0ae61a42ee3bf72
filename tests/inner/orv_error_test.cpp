// Conversions of vendor values and the small searches.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "api/OrvError.h"
#include "tests/support/log_capture.h"

namespace {

using Texts = std::vector<std::string>;

std::string Got(int status) { return "Got GobiAPI error = " + std::to_string(status); }
std::string Out(int status) { return "Out of range uError = " + std::to_string(status); }

TEST(OrvError, GivesEveryVendorStatusItsCodeAndLogLines)
{
    const struct {
        ULONG status;
        ULONG code;
        Texts log;
    } rows[] = {
        {0, 0, {}},
        {1, 5, {Got(1)}},
        {5, 2, {Got(5)}},
        {15, 7, {Got(15)}},
        {29, 5, {Got(29)}},
        {30, 5, {Got(30), Out(30)}},
        {1000, 5, {Got(1000), Out(1000)}},
        {1001, 5, {Got(1001)}},
        {1025, 1, {Got(1025)}},
        {1026, 600, {Got(1026)}},
        {1083, 5, {Got(1083)}},
        {1084, 5, {Got(1084), Out(1084)}},
        {62440, 5, {Got(62440), Out(62440)}},
        {62441, 5, {Got(62441)}},
        {62445, 5, {Got(62445)}},
        {62446, 5, {Got(62446), Out(62446)}},
        {0xFFFFFFFFu, 5, {Got(-1), Out(-1)}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.status);
        LogCapture log;
        EXPECT_EQ(ConvertGobiError2OrvRcode(row.status), row.code);
        EXPECT_EQ(log.Texts(), row.log);
        for (const LogCapture::Record& record : log.Records())
            EXPECT_EQ(record.module, "OrvError");
    }
}

TEST(OrvError, HasNoOtherStatusWithACodeOfItsOwn)
{
    for (ULONG status = 0; status < 63000; ++status) {
        const ULONG code = ConvertGobiError2OrvRcode(status);
        const ULONG expected = status == 0      ? 0
                               : status == 5    ? 2
                               : status == 15   ? 7
                               : status == 1025 ? 1
                               : status == 1026 ? 600
                                                : 5;
        ASSERT_EQ(code, expected) << status;
    }
}

struct Conversion {
    ULONG in;
    ULONG out;
    Texts log;
};

template <size_t Count, class Convert>
void Check(const Conversion (&rows)[Count], Convert convert)
{
    for (const Conversion& row : rows) {
        SCOPED_TRACE(row.in);
        LogCapture log;
        EXPECT_EQ(convert(row.in), row.out);
        EXPECT_EQ(log.Texts(), row.log);
    }
}

TEST(OrvError, ConvertsOperatingModesInBothDirections)
{
    const Conversion from_vendor[] = {{0, 0, {}},
                                      {1, 5, {}},
                                      {2, 0, {}},
                                      {3, 1, {}},
                                      {4, 2, {}},
                                      {5, 3, {}},
                                      {6, 4, {}},
                                      {7, 2, {"Out of range operatingMode = 7"}},
                                      {0xFFFFFFFF, 2, {"Out of range operatingMode = -1"}}};
    Check(from_vendor, ConvertGobi2OrvOperatingMode);
    const Conversion to_vendor[] = {{0, 0, {}}, {1, 3, {}}, {2, 5, {}}, {3, 5, {}},
                                    {4, 6, {}}, {5, 1, {}}, {6, 4, {}}, {7, 4, {}}};
    Check(to_vendor, ConvertOrv2GobiOperatingMode);
}

TEST(OrvError, ConvertsServiceStatusAndDataBearer)
{
    const std::string searching = "Debug: ConvertGobi2OrvGSMServiceStatus, regState == searching";
    const Conversion service[] = {{0, 2, {searching}}, {1, 0, {}}, {2, 2, {searching}},
                                  {3, 4, {}},          {4, 9, {}}, {5, 2, {"Unsupported regState = 5"}}};
    Check(service, ConvertGobi2OrvGSMServiceStatus);
    const Conversion bearer[] = {{3, 1, {}},
                                 {4, 3, {}},
                                 {6, 2, {}},
                                 {7, 4, {}},
                                 {8, 5, {}},
                                 {9, 6, {}},
                                 {0, 0, {"Not recognized dataBearerTech = 0"}},
                                 {5, 0, {"Not recognized dataBearerTech = 5"}},
                                 {10, 0, {"Not recognized dataBearerTech = 10"}}};
    Check(bearer, ConvertGobi2OrvDataBearerTech);
    EXPECT_EQ(ConvertGobi2OrvRoamFlags(true, true), 2u);
    EXPECT_EQ(ConvertGobi2OrvRoamFlags(true, false), 0u);
    EXPECT_EQ(ConvertGobi2OrvRoamFlags(false, true), 1u);
    EXPECT_EQ(ConvertGobi2OrvRoamFlags(false, false), 3u);
}

TEST(OrvError, ConvertsOmaDmSessions)
{
    const struct {
        ULONG type, session_class, initiator;
    } types[] = {{0, 1, 1}, {1, 2, 1}, {2, 4, 1}, {3, 4, 2}, {4, 2, 3}, {5, 1, 3}, {6, 0, 0}};
    for (const auto& row : types) {
        SCOPED_TRACE(row.type);
        LogCapture log;
        ULONG session_class = 77, initiator = 77;
        ConvertGobi2OrvSessionType(row.type, &session_class, &initiator);
        EXPECT_EQ(session_class, row.session_class);
        EXPECT_EQ(initiator, row.initiator);
        EXPECT_EQ(log.Texts(), row.type < 6 ? Texts() : Texts{"SessionType out of range = 6"});
    }
    const struct {
        ULONG state, reason, result;
    } states[] = {{0, 0, 1},     {1, 9, 0x502}, {2, 9, 0x503}, {3, 9, 0x401}, {4, 9, 0x504}, {5, 0, 0},
                  {5, 1, 0x100}, {5, 2, 0x101}, {5, 3, 0x102}, {5, 4, 0},     {6, 1, 1}};
    for (const auto& row : states) {
        LogCapture log;
        EXPECT_EQ(ConvertGobi2OrvOMADMSessionState(row.reason, row.state), row.result)
            << row.state << " " << row.reason;
        EXPECT_EQ(log.Texts(), row.state == 4 ? Texts{"Maximum Device Initiated OMADM retry exceeded"} : Texts());
    }
}

TEST(OrvError, ConvertsPreferredModesAndReportsTheUnsupportedOnes)
{
    const auto head = [](const std::string& value, const std::string& technology) {
        return "ConvertGobi2OrvNvPrefOpMode uPrefMode = " + value + "   uTechnology = " + technology;
    };
    const auto protocol = [](const std::string& value) { return "ConvertGobi2OrvNvPrefOpMode uProtocol = " + value; };
    const struct {
        ULONG in, out;
        BYTE unsupported;
        Texts log;
    } from_vendor[] = {
        {0, 4, 0, {head("0", "0")}},
        {5, 3, 0, {head("5", "1"), protocol("4")}},
        {9, 9, 0, {head("9", "1"), protocol("8")}},
        {17, 10, 0, {head("17", "1"), protocol("16")}},
        {1, 0, 1, {head("1", "1"), protocol("0"), "Pref Mode protocol= 0 Not supported"}},
        {2, 0, 1, {head("2", "2"), "Pref Mode Technology = 2 Not supported"}},
        {7, 0, 1, {head("7", "3"), "Pref Mode Technology = 3 Not supported"}},
        {0xFFFFFFFD,
         0,
         1,
         {head("4294967293", "1"), protocol("4294967292"), "Pref Mode protocol= 4294967292 Not supported"}},
    };
    for (const auto& row : from_vendor) {
        SCOPED_TRACE(row.in);
        LogCapture log;
        BYTE unsupported = 9;
        EXPECT_EQ(ConvertGobi2OrvNvPrefOpMode(row.in, &unsupported), row.out);
        EXPECT_EQ(unsupported, row.unsupported);
        EXPECT_EQ(log.Texts(), row.log);
    }
    const struct {
        ULONG in, out;
        BYTE unsupported;
        Texts log;
    } to_vendor[] = {
        {3, 5, 0, {"Gobi Pref mode = 5"}},
        {4, 0, 0, {"Gobi Pref mode = 0"}},
        {9, 9, 0, {"Gobi Pref mode = 9"}},
        {10, 17, 0, {"Gobi Pref mode = 17"}},
        {0, 0, 1, {"Pref mode not supported by Gobi = 0", "Gobi Pref mode = 0"}},
    };
    for (const auto& row : to_vendor) {
        SCOPED_TRACE(row.in);
        LogCapture log;
        BYTE unsupported = 9;
        EXPECT_EQ(ConvertOrv2GobiNvPrefOpMode(row.in, &unsupported), row.out);
        EXPECT_EQ(unsupported, row.unsupported);
        EXPECT_EQ(log.Texts(), row.log);
    }
}

TEST(OrvError, SearchesTablesAndBuildsMasks)
{
    const BYTE octets[] = {4, 7, 7, 9};
    const ULONG words[] = {0x10000, 7, 7};
    BYTE index = 99;
    EXPECT_TRUE(FindByteInTable(7, 4, octets, &index));
    EXPECT_EQ(index, 1);
    EXPECT_FALSE(FindByteInTable(9, 3, octets, &index));
    EXPECT_EQ(index, 1) << "untouched when there is no match";
    EXPECT_TRUE(FindWordInTable(0x10000, 3, words, &index));
    EXPECT_EQ(index, 0);
    EXPECT_FALSE(FindWordInTable(7, 0, words, &index));

    const BYTE bands[] = {1, 0, 32, 33, 255};
    EXPECT_EQ(BandListToMask(4, bands), 0x80000001u);
    EXPECT_EQ(BandListToMask(5, bands), 0x80000001u);
    EXPECT_EQ(BandListToMask(0, bands), 0u);
    EXPECT_EQ(BandListToMask(3, nullptr), 0u);
}

TEST(OrvError, ExtractsTheNumberOfAnErrorReply)
{
    const struct {
        const char* name;
        const char* reply;
        bool found;
        ULONG code;
        Texts log;
    } rows[] = {
        {"echo", "AT+CLIP=1\r\r\n+CME ERROR: 30\r\n", true, 30, {}},
        {"no echo", "\r\n+CME ERROR: 4\r\n", true, 4, {"ExtractErrorCode:MatchStringBeginning failed (echo ) "}},
        {"bare", "AT+CLIP=1\r\r\nERROR\r\n", false, 77, {"ExtractErrorCode:MatchStringBeginning failed "}},
        {"verbose", "AT+CLIP=1\r\r\n+CME ERROR: SIM busy\r\n", false, 0, {"ExtractErrorCode:ParseUInt 1 failed "}},
        {"cut", "AT+CLIP=1\r\r\n+CME ERROR: ", false, 0, {"ExtractErrorCode:ParseUInt 1 failed "}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        LogCapture log;
        ULONG code = 77;
        EXPECT_EQ(ExtractErrorCode(row.reply, "AT+CLIP=1\r", &code), row.found);
        EXPECT_EQ(code, row.code);
        EXPECT_EQ(log.Texts(), row.log);
    }
}

} // namespace
