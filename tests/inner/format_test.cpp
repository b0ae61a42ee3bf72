// The formatter. What the host's printf has in common with it serves as a second opinion.
#include "utility/format.h"

#include <gtest/gtest.h>
#include <limits.h>
#include <stdio.h>
#include <string.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

namespace {

std::u16string Widen(const std::string& text)
{
    std::u16string wide;
    for (const char c : text)
        wide.push_back(static_cast<BYTE>(c));
    return wide;
}

std::string Narrow(const char* format, ...)
{
    char out[4096];
    va_list arguments;
    va_start(arguments, format);
    const ULONG length = FormatNarrow(out, sizeof out, format, arguments);
    va_end(arguments);
    EXPECT_EQ(out[length], 0);
    return std::string(out, length);
}

std::u16string Wide(const WCHAR* format, ...)
{
    WCHAR out[4096];
    va_list arguments;
    va_start(arguments, format);
    const ULONG length = FormatWide(out, 4096, format, arguments);
    va_end(arguments);
    EXPECT_EQ(out[length], 0);
    return std::u16string(out, length);
}

TEST(Formatter, AgreesWithTheHostOnIntegers)
{
    const ULONG values[] = {0, 1, 9, 10, 0xAB, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
    for (const char* conversion : {"d", "i", "u", "x", "X", "ld", "lu", "lx"})
        for (const char* flags : {"", "0", "-", "-0"})
            for (const char* width : {"", "1", "2", "8", "14"})
                for (const char* precision : {"", ".0", ".", ".1", ".8", ".12"})
                    for (const ULONG value : values) {
                        const std::string options = std::string("%") + flags + width + precision;
                        const std::string format = options + conversion;
                        const std::string host = options + conversion[strlen(conversion) - 1];
                        char expected[64];
                        snprintf(expected, sizeof expected, host.c_str(), value);
                        EXPECT_EQ(Narrow(format.c_str(), value), expected) << format;
                        EXPECT_EQ(Wide(Widen(format).c_str(), value), Widen(expected)) << format;
                    }
}

TEST(Formatter, AgreesWithTheHostOnStrings)
{
    for (const char* format : {"[%s]", "[%8s]", "[%-8s]", "[%2s]", "[%.2s]", "[%8.2s]", "[%-8.2s]", "[%.0s]", "[%.9s]"})
        for (const char* text : {"", "a", "abcd"}) {
            char expected[64];
            snprintf(expected, sizeof expected, format, text);
            EXPECT_EQ(Narrow(format, text), expected) << format;
            EXPECT_EQ(Wide(Widen(format).c_str(), Widen(text).c_str()), Widen(expected)) << format;
        }
}

TEST(Formatter, WritesWhatTheTableSays)
{
    const void* const pointer = reinterpret_cast<const void*>(static_cast<uintptr_t>(0x1234567800ABCDEFull));
    const char* const no_text = nullptr;
    const WCHAR* const no_wide = nullptr;
    const struct {
        const char* name;
        const char* expected;
        std::string narrow;
        std::u16string wide;
    } rows[] = {
        {"l is 32 bits wide", "-1", Narrow("%ld", 0xFFFFFFFFu), Wide(TXT("%ld"), 0xFFFFFFFFu)},
        {"h changes nothing", "100000 -1", Narrow("%hd %hhd", 100000, -1), Wide(TXT("%hd %hhd"), 100000, -1)},
        {"two conversions of eight digits", "0x0000002A00000000", Narrow("0x%8.8X%8.8X", 42, 0),
         Wide(TXT("0x%8.8X%8.8X"), 42, 0)},
        {"offsets of a dump", "  1f: ", Narrow("%4x: ", 31), Wide(TXT("%4x: "), 31)},
        {"characters", "[A][  B][C  ]", Narrow("[%c][%3c][%-3c]", 'A', 'B', 'C'),
         Wide(TXT("[%c][%3c][%-3c]"), 'A', 'B', 'C')},
        {"pointer", "00ABCDEF", Narrow("%p", pointer), Wide(TXT("%p"), pointer)},
        {"per cent", "100%", Narrow("%d%%", 100), Wide(TXT("%d%%"), 100)},
        {"null string", "(null)", Narrow("%s", no_text), Wide(TXT("%s"), no_wide)},
        {"null string of the other width", "  (null)", Narrow("%8S", no_wide), Wide(TXT("%8S"), no_text)},
        {"null format", "(null)", Narrow(nullptr), Wide(nullptr)},
        {"the other width", "[  ab][ab  ][a]", Narrow("[%4S][%-4S][%.1S]", TXT("ab"), TXT("ab"), TXT("ab")),
         Wide(TXT("[%4S][%-4S][%.1S]"), "ab", "ab", "ab")},
        {"unknown ones take no argument", "%q %#x %5.2f %lld 7", Narrow("%q %#x %5.2f %lld %d", 7),
         Wide(TXT("%q %#x %5.2f %lld %d"), 7)},
        {"an end amid a conversion", "a% a%-05.3l", Narrow("a%% a%-05.3l"), Wide(TXT("a%% a%-05.3l"))},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.narrow, row.expected) << row.name;
        EXPECT_EQ(row.wide, Widen(row.expected)) << row.name;
    }
}

TEST(Formatter, ConvertsBetweenTheWidths)
{
    EXPECT_EQ(Wide(TXT("%S"), "\xE9\xFF"), u"\u00E9\u00FF");
    EXPECT_EQ(Narrow("%S", u"\u007F\u0080\u07FF\u0800\uFFFF\U00010000\U0010FFFF"),
              u8"\u007F\u0080\u07FF\u0800\uFFFF\U00010000\U0010FFFF");
    const WCHAR unpaired[] = {0xDC00, 0xDC01, 'a', 0xD800, 0xE000, 0xD800, 0xD800, 0xDC00, 0xD800, 0};
    EXPECT_EQ(Narrow("%S", unpaired), u8"\uFFFD\uFFFDa\uFFFD\uE000\uFFFD\U00010000\uFFFD");
    EXPECT_EQ(Narrow("[%5S]", u"\u20AC"), u8"[  \u20AC]") << "a width counts the octets written";
    EXPECT_EQ(Narrow("%.1S", u"\U00010000"), u8"\uFFFD") << "a precision counts the characters taken";
}

// The arrays are as long as what may be read, so that AddressSanitizer sees a step too far.
TEST(Formatter, ReadsNoFurtherThanItMay)
{
    const std::vector<char> narrow(512, 'x');
    const std::vector<WCHAR> wide(512, 'x');
    EXPECT_EQ(Narrow("%s|", narrow.data()), std::string(512, 'x') + "|");
    EXPECT_EQ(Narrow("%S|", wide.data()), std::string(512, 'x') + "|");
    EXPECT_EQ(Narrow("%.600s|", narrow.data()), std::string(512, 'x') + "|");
    EXPECT_EQ(Wide(TXT("%s|"), wide.data()), std::u16string(512, 'x') + u"|");
    EXPECT_EQ(Wide(TXT("%S|"), narrow.data()), std::u16string(512, 'x') + u"|");
    const std::vector<char> three(3, 'y');
    EXPECT_EQ(Narrow("%.3s", three.data()), "yyy");
    const std::vector<WCHAR> high = {0xD83D};
    EXPECT_EQ(Narrow("%.1S", high.data()), u8"\uFFFD");
    EXPECT_EQ(Narrow("%.5000d", 1), std::string(4095, '0')) << "cut by the room";
    EXPECT_EQ(Narrow("%4294967298d", 1), std::string(4095, ' '));
}

template <class Char, class Format>
void CheckEveryRoom(const std::basic_string<Char>& whole, Format format)
{
    for (ULONG room = 0; room <= whole.size() + 2; ++room) {
        const Char mark = 0x55;
        std::vector<Char> out(room + 1, mark);
        const ULONG length = format(out.data(), room);
        const size_t expected = room == 0 ? 0 : std::min<size_t>(room - 1, whole.size());
        ASSERT_EQ(length, expected) << room;
        EXPECT_EQ(std::basic_string<Char>(out.data(), length), whole.substr(0, length)) << room;
        EXPECT_EQ(out[length], room > 0 ? Char(0) : mark) << room;
        EXPECT_EQ(out[room], mark) << room;
    }
}

ULONG FormatInto(WCHAR* out, ULONG room, const WCHAR* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    const ULONG length = FormatWide(out, room, format, arguments);
    va_end(arguments);
    return length;
}

TEST(Formatter, CutsWhatDoesNotFit)
{
    CheckEveryRoom<char>("<-2147483648|  ab|0000002a|%q>", [](char* out, ULONG room) {
        return PrintNarrow(out, room, "<%d|%4s|%8.8x|%q>", INT_MIN, "ab", 42);
    });
    CheckEveryRoom<WCHAR>(u"<-2147483648|  ab|0000002a|%q>", [](WCHAR* out, ULONG room) {
        return FormatInto(out, room, TXT("<%d|%4S|%8.8x|%q>"), INT_MIN, "ab", 42);
    });
}

TEST(Formatter, CutsNarrowedStringsBetweenCharacters)
{
    const size_t lengths[] = {0, 0, 1, 1, 3, 3, 3, 6, 6, 6, 6, 10, 11, 11}; // by room
    for (ULONG room = 0; room < std::size(lengths); ++room) {
        char out[32];
        EXPECT_EQ(PrintNarrow(out, room, "%Sz", u"a\u00E9\u20AC\U0001F600"), lengths[room]) << room;
    }
}

} // namespace
