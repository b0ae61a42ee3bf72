#include "at/parse.h"

#include <gtest/gtest.h>
#include <string.h>

#include <string>
#include <vector>

#include "at/util.h"
#include "platform/hooks.h"
#include "tests/support/log_capture.h"

namespace {

constexpr ptrdiff_t kUntouched = -1; // the primitive must leave `rest` alone

TEST(AtParse, MatchesAtThePositionOnly)
{
    struct Row {
        const char *text, *expected;
        ptrdiff_t rest;
    };
    const Row rows[] = {
        {"OK", "OK", 2},
        {"OK\r\n", "OK", 2},
        {"xxOK", "OK", kUntouched},
        {"O", "OK", kUntouched},
        {"", "OK", kUntouched},
        {"ok", "OK", kUntouched},
        {"abc", "", 0},
        {"", "", 0},
        {"OKOK", "OK", 2},
        {"+CLIP: 1", "+CLIP: ", 7},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << "'" << row.expected << "' in '" << row.text << "'");
        const bool matches = row.rest != kUntouched;
        const char* rest = nullptr;
        EXPECT_EQ(MatchStringBeginning(row.text, row.expected, &rest), matches);
        EXPECT_EQ(rest, matches ? row.text + row.rest : nullptr);
    }
}

TEST(AtParse, TakesTheLeadingLineBreakAsOptionalAndTheTrailingOneAsRequired)
{
    struct Row {
        const char* text;
        bool present;
    };
    for (const Row& row : {Row{"\r\n+CLIP", true}, Row{"\r\n", true}, Row{"+CLIP\r\n", false}, Row{"\r", false},
                           Row{"\n\r\n", false}, Row{"", false}}) {
        SCOPED_TRACE(row.text);
        const char* rest = nullptr;
        EXPECT_TRUE(ParseRspPrefix(row.text, &rest));
        EXPECT_EQ(rest, row.text + (row.present ? 2 : 0));
        rest = nullptr;
        EXPECT_EQ(ParseRspSuffix(row.text, &rest), row.present);
        EXPECT_EQ(rest, row.present ? row.text + 2 : nullptr);
    }
}

TEST(AtParse, ReadsNumbersWithBlanksAround)
{
    struct Row {
        const char* text;
        int allow_leading_zero;
        bool success;
        ULONG value;
        ptrdiff_t rest;
    };
    const Row rows[] = {
        // text          0?  ok     value        rest
        {"7", 1, true, 7, 1},
        {" 007 ", 1, true, 7, 5},
        {" 007 ", 0, false, 0, 0},
        {"0", 0, true, 0, 1},
        {"0,", 0, true, 0, 1},
        {"  12  ,3", 1, true, 12, 6},
        {"12x", 1, true, 12, 2},
        {"\t12", 1, false, 0, 0},
        {"-1", 1, false, 0, 0},
        {"  x", 1, false, 0, 0},
        {"", 1, false, 0, 0},
        {"   ", 1, false, 0, 0},
        {"4294967295", 1, true, 4294967295u, 10},
        {"4294967296", 1, true, 0, 10},
        {"99999999999999999999", 1, true, 1661992959u, 20},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << "'" << row.text << "', flag " << row.allow_leading_zero);
        ULONG value = 99;
        const char* rest = nullptr;
        EXPECT_EQ(ParseUInt(row.text, row.allow_leading_zero, &value, &rest), row.success);
        EXPECT_EQ(value, row.value);
        EXPECT_EQ(rest - row.text, row.rest);
    }
}

class AtUtil : public ::testing::Test {
protected:
    ~AtUtil() override { platform_hooks::Reset(); }
    LogCapture log;
};

TEST_F(AtUtil, BuildsCommandsWithQuotedHex)
{
    struct Row {
        const char* name;
        std::string prefix;
        std::vector<BYTE> data;
        std::string postfix, command;
    };
    const std::string long_text(5000, 'p');
    const Row rows[] = {
        {"two octets", "AT+X=", {0x0A, 0xFF}, "\r", "AT+X=\"0AFF\"\r"},
        {"none, no quotes", "AT+X=", {}, "\r", "AT+X=\r"},
        {"every nibble", "", {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF}, "", "\"0123456789ABCDEF\""},
        {"long texts", long_text, {0x00}, long_text, long_text + "\"00\"" + long_text},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        char* command = nullptr;
        ASSERT_TRUE(BuildHexCommand(row.prefix.c_str(), row.data.data(), static_cast<ULONG>(row.data.size()),
                                    row.postfix.c_str(), &command));
        EXPECT_EQ(command, row.command);
        FreeCommand(command);
    }
    EXPECT_TRUE(log.Texts().empty()) << log.Dump();
}

TEST_F(AtUtil, RefusesCommandsThatCannotBeBuilt)
{
    const BYTE octet = 0x12;
    struct Row {
        const char *name, *prefix;
        const BYTE* data;
        ULONG size;
        const char *postfix, *text;
    };
    const Row rows[] = {
        {"no prefix", nullptr, &octet, 1, "", "ASSERTION FAILURE: ===>NULL != szPrefix"},
        {"no postfix", "", &octet, 1, nullptr, "ASSERTION FAILURE: ===>NULL != szPostfix"},
        {"no data", "", nullptr, 1, "", "BuildHexCommand refused, 1 bytes"},
        {"more than 32 bits count", "", &octet, 0x7FFFFFFF, "", "BuildHexCommand refused, 2147483647 bytes"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        log.Clear();
        char* command = nullptr;
        EXPECT_FALSE(BuildHexCommand(row.prefix, row.data, row.size, row.postfix, &command));
        EXPECT_EQ(command, nullptr);
        EXPECT_EQ(log.Texts(), std::vector<std::string>{row.text});
        EXPECT_EQ(log.Records()[0].module, "util");
    }
    char* command = nullptr;
    ASSERT_TRUE(platform_hooks::FailCall("HeapAlloc", 1, 1, ERROR_NOT_ENOUGH_MEMORY));
    EXPECT_FALSE(BuildHexCommand("AT", &octet, 1, "\r", &command));
    EXPECT_EQ(command, nullptr);
}

TEST_F(AtUtil, BoundsTheStartOfACommand)
{
    const char* const expected[] = {"####", "", "A", "AT", "AT"};
    for (ULONG capacity = 0; capacity < 5; ++capacity) {
        SCOPED_TRACE(capacity);
        char buffer[] = "####";
        char* const end = AppendAT(buffer, capacity);
        EXPECT_STREQ(buffer, expected[capacity]);
        EXPECT_EQ(end, capacity ? buffer + strlen(expected[capacity]) : buffer);
    }
}

TEST_F(AtUtil, GrowsAnArrayAndKeepsWhatIsInUse)
{
    void* array = nullptr;
    ULONG allocated = 0;
    ASSERT_TRUE(GrowArray(&array, sizeof(ULONG), 0, &allocated, 2));
    EXPECT_EQ(allocated, 2u);
    static_cast<ULONG*>(array)[0] = 11;
    static_cast<ULONG*>(array)[1] = 22;

    platform_hooks::FailCall("HeapAlloc", 1, 1, ERROR_NOT_ENOUGH_MEMORY);
    void* const before = array;
    EXPECT_FALSE(GrowArray(&array, sizeof(ULONG), 2, &allocated, 3));
    EXPECT_EQ(array, before);
    EXPECT_EQ(allocated, 2u);
    platform_hooks::Reset();

    ASSERT_TRUE(GrowArray(&array, sizeof(ULONG), 2, &allocated, 3));
    EXPECT_EQ(allocated, 5u);
    static_cast<ULONG*>(array)[4] = 55;
    EXPECT_EQ(static_cast<ULONG*>(array)[0], 11u);
    EXPECT_EQ(static_cast<ULONG*>(array)[1], 22u);

    EXPECT_FALSE(GrowArray(&array, sizeof(ULONG), 6, &allocated, 1)) << "more in use than there is";
    EXPECT_FALSE(GrowArray(&array, sizeof(ULONG), 2, &allocated, 0xFFFFFFFFu)) << "the count overflows";
    EXPECT_EQ(allocated, 5u);
    FreeArray(array);
    EXPECT_TRUE(log.Texts().empty()) << log.Dump();
}

TEST_F(AtUtil, AssertsOnAnArrayThatContradictsItself)
{
    const std::vector<std::string> assertion = {
        "ASSERTION FAILURE: ===>prgrData && pnAllocated && (*prgrData || (0 == *pnAllocated))"};
    void* array = nullptr;
    ULONG allocated = 1;
    EXPECT_FALSE(GrowArray(&array, 4, 0, &allocated, 1));
    EXPECT_EQ(log.Texts(), assertion);
    log.Clear();
    EXPECT_FALSE(GrowArray(nullptr, 4, 0, &allocated, 1));
    EXPECT_EQ(log.Texts(), assertion);
    log.Clear();
    EXPECT_FALSE(GrowArray(&array, 4, 0, nullptr, 1));
    EXPECT_EQ(log.Texts(), assertion);
}

TEST_F(AtUtil, DumpsSixteenOctetsALine)
{
    BYTE data[33];
    for (unsigned i = 0; i < sizeof(data); ++i)
        data[i] = static_cast<BYTE>(i * 8);
    char address[16];
    snprintf(address, sizeof(address), "0x%x", static_cast<unsigned>(reinterpret_cast<uintptr_t>(data)));
    const std::string separator(40, '-');

    const std::string full[] = {"   0:  0,  8, 10, 18, 20, 28, 30, 38, 40, 48, 50, 58, 60, 68, 70, 78",
                                "  10: 80, 88, 90, 98, a0, a8, b0, b8, c0, c8, d0, d8, e0, e8, f0, f8"};
    struct Row {
        ULONG size;
        std::vector<std::string> lines;
    };
    const Row rows[] = {
        {0, {}},
        {1, {"   0:  0"}},
        {15, {full[0].substr(0, 64)}},
        {16, {full[0]}},
        {33, {full[0], full[1], "  20:  0"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.size);
        log.Clear();
        HexDump(data, row.size);
        std::vector<std::string> expected = {separator, "dumping " + std::string(address) + " " +
                                                            std::to_string(row.size) + " bytes"};
        expected.insert(expected.end(), row.lines.begin(), row.lines.end());
        expected.push_back(separator);
        EXPECT_EQ(log.Texts(), expected);
        for (const LogCapture::Record& record : log.Records()) {
            EXPECT_EQ(record.module, "util");
            EXPECT_GT(record.line, 0);
        }
    }
}

} // namespace
