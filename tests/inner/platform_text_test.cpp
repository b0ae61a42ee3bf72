// The platform seam: text, environment, memory and clock.
#include <gtest/gtest.h>

#include <stdlib.h>
#include <string>
#include <time.h>

#include "platform/win32.h"

TEST(PlatformText, IsWidenedByCodePage)
{
    const struct {
        const char* name;
        UINT page;
        std::string text;
        std::u16string wide;
    } rows[] = {
        {"ISO 8859-1", CP_ACP, "a\xE4\x80\xFF", u"a\u00E4\u0080\u00FF"},
        {"UTF-8 of each length", CP_UTF8, "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80", u"a\u00E4\u20AC\U0001F600"},
        {"the bounds of the lengths", CP_UTF8,
         "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF",
         u"\u007F\u0080\u07FF\u0800\uFFFF\U00010000\U0010FFFF"},
        {"a lone continuation", CP_UTF8, "\x80x", u"\uFFFDx"},
        {"a long form", CP_UTF8, "\xC0\xAF", u"\uFFFD\uFFFD"},
        {"a long form of three", CP_UTF8, "\xE0\x9F\xBF", u"\uFFFD\uFFFD\uFFFD"},
        {"a surrogate", CP_UTF8, "\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},
        {"above U+10FFFF", CP_UTF8, "\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"cut short, then text", CP_UTF8, "\xE2\x82z", u"\uFFFDz"},
        {"cut short at the end", CP_UTF8, "\xF0\x9F\x98", u"\uFFFD"},
        {"a NUL within", CP_UTF8, std::string("a\0b", 3), std::u16string(u"a\0b", 3)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const int size = static_cast<int>(row.text.size());
        const int needed = static_cast<int>(row.wide.size());
        EXPECT_EQ(MultiByteToWideChar(row.page, 0, row.text.data(), size, nullptr, 0), needed);
        std::u16string wide(row.wide.size() + 1, u'#');
        EXPECT_EQ(MultiByteToWideChar(row.page, 0, row.text.data(), size, wide.data(), needed), needed);
        EXPECT_EQ(wide, row.wide + u'#');
        if (needed < 2) continue;
        std::u16string small(row.wide.size(), u'#');
        EXPECT_EQ(MultiByteToWideChar(row.page, 0, row.text.data(), size, small.data(), needed - 1), 0);
        EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
        EXPECT_EQ(small, std::u16string(row.wide.size(), u'#')) << "nothing is written";
    }
    WCHAR wide[4] = {};
    EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "abc", -1, wide, 4), 4) << "with the terminator";
    EXPECT_EQ(std::u16string(wide), u"abc");
    const struct {
        UINT page;
        DWORD flags;
        const char* text;
        int size;
        WCHAR* wide;
        int room;
    } refused[] = {{1252, 0, "a", 1, wide, 4},   {CP_UTF8, 8, "a", 1, wide, 4}, {CP_ACP, 0, nullptr, 1, wide, 4},
                   {CP_ACP, 0, "a", 0, wide, 4}, {CP_ACP, 0, "a", -2, wide, 4}, {CP_ACP, 0, "a", 1, nullptr, 4},
                   {CP_ACP, 0, "a", 1, wide, -1}};
    for (const auto& row : refused) {
        SetLastError(0);
        EXPECT_EQ(MultiByteToWideChar(row.page, row.flags, row.text, row.size, row.wide, row.room), 0);
        EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER) << &row - refused;
    }
}

TEST(PlatformEnvironment, IsCopiedWhenItFits)
{
    setenv("TALVEK_PLATFORM_TEST",
           "\xC3\xA4"
           "bc",
           1);
    WCHAR buffer[8] = {u'#', u'#', u'#', u'#', u'#'};
    EXPECT_EQ(GetEnvironmentVariableW(TXT("TALVEK_PLATFORM_TEST"), buffer, 3), 4u) << "room with the terminator";
    EXPECT_EQ(buffer[0], u'#');
    EXPECT_EQ(GetEnvironmentVariableW(TXT("TALVEK_PLATFORM_TEST"), nullptr, 0), 4u);
    EXPECT_EQ(GetEnvironmentVariableW(TXT("TALVEK_PLATFORM_TEST"), buffer, 4), 3u);
    EXPECT_EQ(std::u16string(buffer), u"\u00E4bc");
    EXPECT_EQ(buffer[4], u'#');

    setenv("TALVEK_PLATFORM_TEST", "", 1);
    SetLastError(1);
    EXPECT_EQ(GetEnvironmentVariableW(TXT("TALVEK_PLATFORM_TEST"), buffer, 8), 0u);
    EXPECT_EQ(GetLastError(), ERROR_SUCCESS);
    unsetenv("TALVEK_PLATFORM_TEST");
    EXPECT_EQ(GetEnvironmentVariableW(TXT("TALVEK_PLATFORM_TEST"), buffer, 8), 0u);
    EXPECT_EQ(GetLastError(), ERROR_ENVVAR_NOT_FOUND);
}

TEST(PlatformClock, SleepsAtLeastAsLongAsAskedAndKnowsTheLocalTime)
{
    setenv("TZ", "UTC-5:30", 1);
    tzset();
    const time_t before = time(nullptr);
    const DWORD start = GetTickCount();
    Sleep(20);
    Sleep(0);
    EXPECT_GE(GetTickCount() - start, 19u); // ticks are cut to milliseconds
    SYSTEMTIME now = {};
    GetLocalTime(&now);
    const time_t after = time(nullptr);
    tm local = {};
    local.tm_year = now.wYear - 1900;
    local.tm_mon = now.wMonth - 1;
    local.tm_mday = now.wDay;
    local.tm_hour = now.wHour;
    local.tm_min = now.wMinute;
    local.tm_sec = now.wSecond;
    const time_t told = mktime(&local);
    EXPECT_GE(told, before);
    EXPECT_LE(told, after);
    EXPECT_EQ(local.tm_wday, now.wDayOfWeek);
    EXPECT_LT(now.wMilliseconds, 1000);
    unsetenv("TZ");
    tzset();
}

TEST(PlatformMemory, IsZeroedOnRequestAndRefusedWithoutAHeap)
{
    auto* block = static_cast<BYTE*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, 64));
    ASSERT_NE(block, nullptr);
    for (int i = 0; i < 64; ++i)
        ASSERT_EQ(block[i], 0);
    EXPECT_TRUE(HeapFree(GetProcessHeap(), 0, block));
    EXPECT_EQ(HeapAlloc(nullptr, 0, 1), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_FALSE(HeapFree(nullptr, 0, nullptr));
}
