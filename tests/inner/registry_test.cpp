// Registry values as the library reads them, and the conversions between narrow and wide texts.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/hooks.h"
#include "tests/support/log_capture.h"
#include "tests/support/scratch_folder.h"
#include "utility/ov_utility.h"

namespace {

constexpr WCHAR kMark = 0x5555;
constexpr const WCHAR* kKey = TXT("Software\\Kestavo Inc");
const char kHeader[] = "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\Kestavo Inc]\n";

struct Reading {
    int32_t result;
    DWORD size;
    std::u16string text;   // what is in the buffer before its first mark
    bool kept_to_its_room; // nothing behind the room has been written
};

Reading Read(const WCHAR* name, DWORD room)
{
    std::vector<WCHAR> buffer(room + 8, kMark);
    Reading reading = {0, room, u"", false};
    reading.result = GetRegValue(HKEY_CURRENT_USER, kKey, name, buffer.data(), &reading.size);
    const auto end = std::find(buffer.begin(), buffer.end(), kMark);
    reading.text.assign(buffer.begin(), end);
    reading.kept_to_its_room = static_cast<DWORD>(end - buffer.begin()) <= room;
    return reading;
}

class RegistryValue : public testing::Test {
protected:
    void Use(const std::string& content) { setenv("TALVEK_REGISTRY", m_folder.Write("test.reg", content).c_str(), 1); }
    ScratchFolder m_folder;
};

TEST_F(RegistryValue, FitsOrIsRefused)
{
    const struct {
        const char* name;
        DWORD length;
        DWORD room;
        int32_t result;
    } rows[] = {
        {"empty", 0, 259, 0},
        {"empty, no room", 0, 0, 0},
        {"one", 1, 259, 0},
        {"room for a terminator", 258, 259, 0},
        {"no room for a terminator", 259, 259, 0},
        {"one too many", 260, 259, 234},
        {"far too many", 400, 259, 234},
        {"one, no room", 1, 0, 234},
        {"as long as any value", 1024, 2000, 0},
        {"as long as any value, and its room", 1024, 1024, 0},
        {"longer than any value", 1025, 2000, 234},
        {"much longer than any value", 3000, 4000, 234},
    };
    for (const auto& row : rows) {
        Use(kHeader + ("\"DeviceID\"=\"" + std::string(row.length, 'v')) + "\"\n");
        SetLastError(4711);
        const Reading reading = Read(TXT("DeviceID"), row.room);
        EXPECT_EQ(reading.result, row.result) << row.name;
        EXPECT_EQ(GetLastError(), row.result ? 234u : 4711u) << row.name;
        EXPECT_TRUE(reading.kept_to_its_room) << row.name;
        std::u16string expected;
        if (row.result == 0) {
            expected.assign(row.length, 'v');
            if (row.length < row.room) expected.push_back(0);
        }
        EXPECT_EQ(reading.text, expected) << row.name;
        EXPECT_EQ(reading.size, row.result == 0 ? row.length : row.room) << row.name;
    }
}

TEST_F(RegistryValue, TellsWhyItCannotBeRead)
{
    Use(kHeader + std::string("\"DeviceID\"=\"VID_1&PID_2\"\n\"Number\"=dword:00000001\n"));
    WCHAR buffer[32] = {kMark};
    const struct {
        const char* name;
        const WCHAR* key;
        const WCHAR* value;
        WCHAR* buffer;
        bool with_size;
        const char* failing_call;
        int32_t result;
    } rows[] = {
        {"no such value", kKey, TXT("Absent"), buffer, true, nullptr, 2},
        {"no such key", TXT("Software\\Absent"), TXT("DeviceID"), buffer, true, nullptr, 2},
        {"a number", kKey, TXT("Number"), buffer, true, nullptr, 13},
        {"null key", nullptr, TXT("DeviceID"), buffer, true, nullptr, 87},
        {"null value", kKey, nullptr, buffer, true, nullptr, 87},
        {"null buffer", kKey, TXT("DeviceID"), nullptr, true, nullptr, 87},
        {"null size", kKey, TXT("DeviceID"), buffer, false, nullptr, 87},
        {"the key does not open", kKey, TXT("DeviceID"), buffer, true, "RegOpenKeyExW", 5},
        {"the query fails", kKey, TXT("DeviceID"), buffer, true, "RegQueryValueExW", 5},
    };
    for (const auto& row : rows) {
        DWORD size = 32;
        ASSERT_TRUE(!row.failing_call || platform_hooks::FailCall(row.failing_call, 1, 1, 5)) << row.name;
        SetLastError(0);
        EXPECT_EQ(GetRegValue(HKEY_CURRENT_USER, row.key, row.value, row.buffer, row.with_size ? &size : nullptr),
                  row.result)
            << row.name;
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(row.result)) << row.name;
        EXPECT_EQ(size, 32u) << row.name;
        EXPECT_EQ(buffer[0], kMark) << row.name;
        platform_hooks::Reset();
    }
}

TEST_F(RegistryValue, IsAbsentWithoutARegistry)
{
    setenv("TALVEK_REGISTRY", m_folder.Path("absent.reg").c_str(), 1);
    const LogCapture log;
    EXPECT_EQ(Read(TXT("DeviceID"), 259).result, 2);
    EXPECT_EQ(log.Texts(), std::vector<std::string>());
}

TEST_F(RegistryValue, IsRefusedWithFileAndLineWhenTheRegistryIsMalformed)
{
    Use(kHeader + std::string("\"DeviceID\"=\"VID_1&PID_2\"\n\"Other\"=\"no end\n"));
    const LogCapture log;
    SetLastError(0);
    EXPECT_EQ(Read(TXT("DeviceID"), 259).result, 1009);
    EXPECT_EQ(GetLastError(), 1009u);
    const std::vector<LogCapture::Record> records = log.Records();
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(records[0].text.find(m_folder.Path("test.reg") + ":5: "), 0u) << records[0].text;
    EXPECT_EQ(records[0].function, "TBD_Output");
    EXPECT_EQ(records[0].kind, 2);
}

// --- text ----------------------------------------------------------------------------------------------------------

TEST(TextConversion, WritesWhatFitsAndATerminatorWhenThereIsRoom)
{
    const struct {
        const char* name;
        const char* narrow;
        ULONG size;
        std::u16string expected;
    } rows[] = {
        {"shorter", "AT\xE9", 5, std::u16string(u"AT\u00E9\0", 4)},
        {"one less than the room", "ATZ", 4, std::u16string(u"ATZ\0", 4)},
        {"fills the room", "ATZ", 3, u"ATZ"},
        {"longer", "ATZ", 2, u"AT"},
        {"empty", "", 3, std::u16string(1, 0)},
        {"null", nullptr, 3, std::u16string(1, 0)},
        {"no room", "ATZ", 0, u""},
        {"null, no room", nullptr, 0, u""},
    };
    for (const auto& row : rows) {
        std::vector<WCHAR> wide(8, kMark);
        OV_AtoT(row.narrow, wide.data(), row.size);
        std::vector<WCHAR> expected(8, kMark);
        std::copy(row.expected.begin(), row.expected.end(), expected.begin());
        EXPECT_EQ(wide, expected) << row.name;

        std::vector<char> narrow(8, '#');
        std::u16string text;
        for (const char* c = row.narrow; c && *c; ++c)
            text.push_back(static_cast<BYTE>(*c));
        OV_TtoA(row.narrow ? text.c_str() : nullptr, narrow.data(), row.size);
        std::vector<char> back(8, '#');
        std::transform(row.expected.begin(), row.expected.end(), back.begin(),
                       [](WCHAR c) { return static_cast<char>(c); });
        EXPECT_EQ(narrow, back) << row.name;
    }
}

TEST(TextConversion, NarrowsWhatHasNoOctetToAQuestionMark)
{
    char narrow[6];
    OV_TtoA(TXT("\u00FF\u0100\u20AC\uFFFFa"), narrow, sizeof narrow);
    EXPECT_STREQ(narrow, "\xFF???a");
}

// The source has no terminator: as many characters are read as there is room for.
TEST(TextConversion, ReadsNoFurtherThanTheSize)
{
    const std::vector<char> narrow(4, 'n');
    std::vector<WCHAR> wide(4);
    OV_AtoT(narrow.data(), wide.data(), 4);
    EXPECT_EQ(wide, std::vector<WCHAR>(4, 'n'));
    std::vector<char> back(4);
    OV_TtoA(wide.data(), back.data(), 4);
    EXPECT_EQ(back, narrow);
}

} // namespace
