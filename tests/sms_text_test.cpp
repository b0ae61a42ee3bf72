// The helpers for message texts: alphabets, UCS2, addresses, records.
#include "talvek/talvek.h"
#include "tests/support/vectors.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

struct Text {
    ORV_RCODE result;
    std::string text;
    ULONG length;
};

// Calls a function that gives a text, with a buffer of exactly this capacity.
template <class Function, class... Arguments>
Text Give(ULONG capacity, Function function, Arguments... arguments)
{
    std::vector<char> buffer(capacity, 'x');
    Text out = {ORV_RCODE_OK, "", 0xDEAD};
    out.result = function(arguments..., buffer.data(), capacity, &out.length);
    if (capacity != 0) out.text.assign(buffer.data(), std::min<size_t>(out.length, strnlen(buffer.data(), capacity)));
    return out;
}

std::string Unpacked(const Octets& octets, ULONG septets, ULONG first = 0)
{
    const Text out = Give(1000, OrvGsmTextUnpack, octets.data(), static_cast<ULONG>(octets.size()), first, septets);
    return out.result == ORV_RCODE_OK ? out.text : "result " + std::to_string(out.result);
}

struct Packed {
    ORV_RCODE result;
    ULONG septets;
    Octets octets;
};

Packed Pack(const std::string& text, ULONG capacity = 2000)
{
    Packed out = {ORV_RCODE_OK, 0, Octets(capacity)};
    out.result =
        OrvGsmTextPack(text.data(), static_cast<ULONG>(text.size()), out.octets.data(), capacity, &out.septets);
    if (out.result == ORV_RCODE_OK) out.octets.resize((out.septets * 7 + 7) / 8);
    return out;
}

// --- the GSM alphabet ------------------------------------------------------------------------------------------------

// By code, in sixteens; the escape is given as a space, which it is where nothing follows.
const char* const kAlphabet[8] = {
    "@£$¥èéùìòÇ\nØø\rÅå", "Δ_ΦΓΛΩΠΨΣΘΞ ÆæßÉ", " !\"#¤%&'()*+,-./", "0123456789:;<=>?",
    "¡ABCDEFGHIJKLMNO",   "PQRSTUVWXYZÄÖÑÜ§", "¿abcdefghijklmno",  "pqrstuvwxyzäöñüà",
};
constexpr struct {
    BYTE code;
    const char* character;
} kExtended[] = {{0x0A, "\f"}, {0x14, "^"}, {0x28, "{"}, {0x29, "}"}, {0x2F, "\\"},
                 {0x3C, "["},  {0x3D, "~"}, {0x3E, "]"}, {0x40, "|"}, {0x65, "€"}};

TEST(SmsAlphabet, EveryCodeHasItsCharacterThereAndBack)
{
    for (ULONG row = 0; row < 8; ++row) {
        const char* at = kAlphabet[row];
        for (ULONG code = row * 16; code < row * 16 + 16; ++code) {
            const size_t size = static_cast<BYTE>(*at) < 0x80 ? 1 : 2;
            const std::string character(at, size);
            at += size;
            EXPECT_EQ(Unpacked({static_cast<BYTE>(code)}, 1), character) << code;
            if (code == 0x1B) continue;
            const Packed packed = Pack(character);
            EXPECT_EQ(packed.septets, 1u) << code;
            EXPECT_EQ(packed.octets, Octets{static_cast<BYTE>(code)});
        }
        EXPECT_EQ(*at, '\0');
    }
    for (ULONG code = 0; code < 128; ++code) {
        const Octets octets = {static_cast<BYTE>(0x1B | (code & 1) << 7), static_cast<BYTE>(code >> 1)};
        std::string expected = code == 0x1B ? " " : Unpacked({static_cast<BYTE>(code)}, 1);
        for (const auto& row : kExtended) {
            if (row.code != code) continue;
            expected = row.character;
            EXPECT_EQ(Pack(expected).septets, 2u);
            EXPECT_EQ(Pack(expected).octets, octets) << expected;
        }
        EXPECT_EQ(Unpacked(octets, 2), expected) << code;
    }
}

TEST(SmsAlphabet, OnlyTheCharactersOfTheTableFit)
{
    ULONG fitting = 0;
    for (ULONG character = 0; character < 0x110000; ++character) {
        if (character >= 0xD800 && character < 0xE000) continue;
        std::string text;
        const auto put = [&](ULONG octet) { text += static_cast<char>(static_cast<BYTE>(octet)); };
        if (character < 0x80) {
            put(character);
        } else if (character < 0x800) {
            put(0xC0 | character >> 6);
            put(0x80 | (character & 0x3F));
        } else if (character < 0x10000) {
            put(0xE0 | character >> 12);
            put(0x80 | (character >> 6 & 0x3F));
            put(0x80 | (character & 0x3F));
        } else {
            put(0xF0 | character >> 18);
            put(0x80 | (character >> 12 & 0x3F));
            put(0x80 | (character >> 6 & 0x3F));
            put(0x80 | (character & 0x3F));
        }
        ULONG septets = 0;
        const ORV_RCODE result = OrvGsmTextSeptets(text.data(), static_cast<ULONG>(text.size()), &septets);
        ASSERT_TRUE(result == ORV_RCODE_OK || result == ORV_RCODE_UNSUPPORTED) << character;
        fitting += result == ORV_RCODE_OK;
    }
    EXPECT_EQ(fitting, 127u + std::size(kExtended));
}

TEST(SmsAlphabet, SeptetsArePackedAsTheStandardPacksThem)
{
    const struct {
        const char* text;
        Octets octets;
    } rows[] = {
        {"", {}},
        {"hello", {0xE8, 0x32, 0x9B, 0xFD, 0x06}},
        {"ABCDEFGH", {0x41, 0xE1, 0x90, 0x58, 0x34, 0x1E, 0x91}},
        {"hellohello", {0xE8, 0x32, 0x9B, 0xFD, 0x46, 0x97, 0xD9, 0xEC, 0x37}},
        {"{test}", {0x1B, 0x14, 0xBD, 0x3C, 0xA7, 0x6F, 0x52}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        const Packed packed = Pack(row.text);
        EXPECT_EQ(packed.octets, row.octets);
        EXPECT_EQ(Unpacked(row.octets, packed.septets), row.text);
    }
    // Behind a header of five octets and one fill bit: TP-UD of a second part, " matata".
    EXPECT_EQ(Unpacked({0x05, 0x00, 0x03, 0x2E, 0x02, 0x02, 0x40, 0xED, 0x30, 0x3D, 0x4C, 0x0F, 0x03}, 7, 7),
              " matata");
    // An escape before the last of several characters, one at the end, one before another.
    EXPECT_EQ(Unpacked(Octets(140), 160), std::string(160, '@'));
    EXPECT_EQ(Unpacked({0x9B, 0x0D, 0x00}, 2), " ");
    EXPECT_EQ(Unpacked({0x9B, 0x4D, 0x19}, 3), " e");
    EXPECT_EQ(Unpacked({0x00}, 2), "result 5");
    EXPECT_EQ(Unpacked({0x00, 0x00}, 1, 1), "@");
    EXPECT_EQ(Unpacked({}, 0), "");
}

TEST(SmsAlphabet, TextsThatDoNotFitAreCutBetweenCharactersAndTheirLengthIsTold)
{
    const std::string text = "5 € for Ångström: " + std::string(40, 'x');
    const Packed packed = Pack(text);
    for (ULONG capacity = 0; capacity < text.size() + 3; ++capacity) {
        const Text out = Give(capacity, OrvGsmTextUnpack, packed.octets.data(),
                              static_cast<ULONG>(packed.octets.size()), ULONG{0}, packed.septets);
        EXPECT_EQ(out.result, capacity > text.size() ? ORV_RCODE_OK : ORV_RCODE_VENDOR_5) << capacity;
        EXPECT_EQ(out.length, text.size());
        EXPECT_EQ(out.text, text.substr(0, out.text.size()));
        EXPECT_TRUE(capacity == 0 || out.text.size() + 4 > std::min<size_t>(capacity, text.size())) << capacity;
        EXPECT_TRUE((static_cast<BYTE>(text[out.text.size()]) & 0xC0) != 0x80) << capacity;
    }
    EXPECT_EQ(Pack(text, static_cast<ULONG>(packed.octets.size()) - 1).result, ORV_RCODE_VENDOR_5);
}

TEST(SmsAlphabet, BadTextsHaveTheirResults)
{
    ULONG count = 7;
    const struct {
        const char* name;
        std::string text;
        ORV_RCODE septets, ucs2;
    } rows[] = {
        {"outside of the alphabet", "ç", ORV_RCODE_UNSUPPORTED, ORV_RCODE_OK},
        {"zero", std::string(1, '\0'), ORV_RCODE_UNSUPPORTED, ORV_RCODE_OK},
        {"cut short", "a\xE2\x82", ORV_RCODE_FAILED, ORV_RCODE_FAILED},
        {"overlong", "\xC0\x80", ORV_RCODE_FAILED, ORV_RCODE_FAILED},
        {"a surrogate", "\xED\xA0\x80", ORV_RCODE_FAILED, ORV_RCODE_FAILED},
        {"above U+10FFFF", "\xF4\x90\x80\x80", ORV_RCODE_FAILED, ORV_RCODE_FAILED},
        {"malformed behind a character that does not fit", "ç\xFF", ORV_RCODE_FAILED, ORV_RCODE_FAILED},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        BYTE octets[8];
        const ULONG length = static_cast<ULONG>(row.text.size());
        EXPECT_EQ(OrvGsmTextSeptets(row.text.data(), length, &count), row.septets);
        EXPECT_EQ(OrvUcs2FromText(row.text.data(), length, ORV_UCS2_BIG_ENDIAN, octets, sizeof octets, &count),
                  row.ucs2);
    }
    EXPECT_EQ(OrvGsmTextSeptets("abc", ORV_TEXT_MAX + 1, &count), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvGsmTextSeptets("abc", ORV_TEXT_TERMINATED, &count), ORV_RCODE_OK);
    EXPECT_EQ(count, 3u);
}

// --- UCS2 ------------------------------------------------------------------------------------------------------------

TEST(SmsUcs2, UnitsBecomeTextAndTextUnits)
{
    const struct {
        const char* name;
        Octets octets;
        std::string text;
        bool back; // the text gives the octets
    } rows[] = {
        {"empty", {}, "", true},
        {"one unit each", {0x00, 0xE9, 0x20, 0xAC}, "é€", true},
        {"U+0000", {0x00, 0x41, 0x00, 0x00, 0x00, 0x42}, std::string("A\0B", 3), true},
        {"a pair", {0xD8, 0x3D, 0xDE, 0x00}, "😀", true},
        {"the first and the last pair", {0xD8, 0x00, 0xDC, 0x00, 0xDB, 0xFF, 0xDF, 0xFF}, "𐀀\U0010FFFF", true},
        {"a high one alone", {0xD8, 0x3D, 0x00, 0x41}, "\uFFFDA", false},
        {"a high one at the end", {0xD8, 0x3D}, "\uFFFD", false},
        {"two high ones and a low one", {0xD8, 0x3D, 0xD8, 0x3D, 0xDE, 0x00}, "\uFFFD😀", false},
        {"a low one alone", {0xDE, 0x00, 0x00, 0x41}, "\uFFFDA", false},
        {"an octet alone", {0x00, 0x41, 0x00}, "A\uFFFD", false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Octets host = row.octets;
        const WORD one = 1;
        if (*reinterpret_cast<const BYTE*>(&one) == 1) {
            for (size_t i = 0; i + 1 < host.size(); i += 2)
                std::swap(host[i], host[i + 1]);
        }
        for (const ULONG order : {ORV_UCS2_BIG_ENDIAN, ORV_UCS2_HOST}) {
            const Octets& octets = order == ORV_UCS2_HOST ? host : row.octets;
            const ULONG size = static_cast<ULONG>(octets.size());
            std::vector<char> text(row.text.size() + 1, 'x');
            ULONG length = 0;
            EXPECT_EQ(OrvUcs2ToText(octets.data(), size, order, text.data(), static_cast<ULONG>(text.size()), &length),
                      ORV_RCODE_OK);
            EXPECT_EQ(std::string(text.data(), length), row.text);
            EXPECT_EQ(Give(static_cast<ULONG>(row.text.size()), OrvUcs2ToText, octets.data(), size, order).result,
                      ORV_RCODE_VENDOR_5);
            if (!row.back) continue;
            Octets back(octets.size());
            EXPECT_EQ(OrvUcs2FromText(row.text.data(), static_cast<ULONG>(row.text.size()), order, back.data(), size,
                                      &length),
                      ORV_RCODE_OK);
            EXPECT_EQ(back, octets);
            if (size == 0) continue;
            EXPECT_EQ(OrvUcs2FromText(row.text.data(), static_cast<ULONG>(row.text.size()), order, back.data(),
                                      size - 1, &length),
                      ORV_RCODE_VENDOR_5);
            EXPECT_EQ(length, size);
        }
    }
}

// --- digits and addresses --------------------------------------------------------------------------------------------

TEST(SmsAddress, DigitsArePackedWithTheFillerAtTheEnd)
{
    const struct {
        const char* digits;
        Octets octets;
    } rows[] = {
        {"12345", {0x21, 0x43, 0xF5}},
        {"49171", {0x94, 0x71, 0xF1}},
        {"*#abc#*51", {0xBA, 0xDC, 0xBE, 0x5A, 0xF1}},
        {"0", {0xF0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.digits);
        Octets octets(row.octets.size());
        const ULONG size = static_cast<ULONG>(octets.size());
        ULONG count = 0;
        EXPECT_EQ(OrvSemiOctetsFromText(row.digits, octets.data(), size, &count), ORV_RCODE_OK);
        EXPECT_EQ(octets, row.octets);
        EXPECT_EQ(count, strlen(row.digits));
        EXPECT_EQ(OrvSemiOctetsFromText(row.digits, octets.data(), size - 1, &count), ORV_RCODE_VENDOR_5);
        EXPECT_EQ(count, strlen(row.digits));
        EXPECT_EQ(Give(50, OrvSemiOctetsToText, octets.data(), size, ULONG{99}).text, row.digits);
        EXPECT_EQ(Give(50, OrvSemiOctetsToText, octets.data(), size, ULONG{1}).text, std::string(row.digits, 1));
    }
    ULONG count = 0;
    BYTE octets[4];
    EXPECT_EQ(OrvSemiOctetsFromText("aBC", octets, 4, &count), ORV_RCODE_OK);
    EXPECT_EQ(octets[0], 0xDC);
    EXPECT_EQ(OrvSemiOctetsFromText("12 3", octets, 4, &count), ORV_RCODE_BAD_PARAMETER);
    const BYTE inner[] = {0xF1, 0x32};
    EXPECT_EQ(Give(50, OrvSemiOctetsToText, inner, ULONG{2}, ULONG{4}).text, "1");
}

TEST(SmsAddress, NumbersAndNamesOfTheRecords)
{
    ULONG type = 9, plan = 9, count = 9;
    BYTE octets[20] = {};
    EXPECT_EQ(OrvGsmAddressFromText("+15551234567", &type, &plan, &count, octets, sizeof octets), ORV_RCODE_OK);
    EXPECT_EQ(std::vector<ULONG>({type, plan, count, octets[0], octets[5]}),
              std::vector<ULONG>({1, 1, 11, 0x51, 0xF7}));
    EXPECT_EQ(OrvGsmAddressFromText("12345", &type, &plan, &count, octets, sizeof octets), ORV_RCODE_OK);
    EXPECT_EQ(type, ULONG{ORV_GSM_TON_UNKNOWN});
    for (const char* const wrong : {"", "+", "1+2", "+49 151", "++1"})
        EXPECT_EQ(OrvGsmAddressFromText(wrong, &type, &plan, &count, octets, 20), ORV_RCODE_BAD_PARAMETER) << wrong;

    const struct {
        ULONG type;
        Octets digits;
        const char* text;
    } rows[] = {
        {1, {4, 9, 1, 5}, "+4915"},
        {0, {10, 11, 12, 13, 14, 0}, "*#abc0"},
        {2, {1, 2, 15, 3}, "12"},
        {5, {9, 4, 7, 3, 13, 11, 12, 2, 7, 7, 7, 9, 9, 14, 3, 13, 6, 14, 4, 1}, "InternetSMS"},
        {5, {0, 0}, "@"},
        {5, {}, ""},
    };
    for (const auto& row : rows) {
        const ULONG size = static_cast<ULONG>(row.digits.size());
        EXPECT_EQ(Give(50, OrvGsmAddressToText, row.type, row.digits.data(), size).text, row.text);
    }
    const Octets many(30, 1);
    EXPECT_EQ(Give(50, OrvGsmAddressToText, ULONG{0}, many.data(), ULONG{30}).length, 20u);
}

// --- records ---------------------------------------------------------------------------------------------------------

TEST(SmsRecord, AShortTextFillsARecordInTheSmallestAlphabet)
{
    const std::string unit_pair = "😀";
    std::string emoji, faces;
    for (int i = 0; i < 35; ++i)
        emoji += unit_pair;
    const struct {
        const char* name;
        std::string text;
        ULONG ucs2, alphabet, units;
        ORV_RCODE result;
    } rows[] = {
        {"empty", "", 0, 0, 0, ORV_RCODE_OK},
        {"the most septets", std::string(160, 'a'), 0, 0, 160, ORV_RCODE_OK},
        {"one septet more", std::string(161, 'a'), 0, 0, 0, ORV_RCODE_VENDOR_5},
        {"an extension counts twice", std::string(159, 'a') + "€", 0, 0, 0, ORV_RCODE_VENDOR_5},
        {"a character that the alphabet lacks", "ç", 0, 2, 1, ORV_RCODE_OK},
        {"the most units", emoji, 0, 2, 70, ORV_RCODE_OK},
        {"one unit more", emoji + "a", 0, 2, 0, ORV_RCODE_VENDOR_5},
        {"UCS2 asked for", "hello", 1, 2, 5, ORV_RCODE_OK},
        {"malformed", "\xFF", 0, 0, 0, ORV_RCODE_FAILED},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ORV_SMS_OPTIONS options = ORV_SMS_OPTIONS_DEFAULT;
        options.bUcs2 = row.ucs2;
        ORV_GSM_SMS_OUT record = {};
        ASSERT_EQ(OrvGsmSmsFromText("+491", row.text.data(), static_cast<ULONG>(row.text.size()), &options, &record),
                  row.result);
        if (row.result != ORV_RCODE_OK) continue;
        EXPECT_EQ(record.eEncoding, row.alphabet);
        EXPECT_EQ(record.uUserDataLen, row.units);
        EXPECT_EQ(record.uUserDataHeaderLen, 0u);
        EXPECT_EQ(record.eMessageClass, ULONG{ORV_GSM_CLASS_NONE});
    }
    ORV_SMS_OPTIONS options = ORV_SMS_OPTIONS_DEFAULT;
    ORV_GSM_SMS_OUT record = {};
    options.pSmsc = "+49171";
    EXPECT_EQ(OrvGsmSmsFromText("12345", "hi", 2, &options, &record), ORV_RCODE_OK);
    EXPECT_EQ(record.uSmscAddrLen, 5u);
    for (const char* const wrong : {"", "x", "+", "123456789012345678901234567890123456789012345678901234567"})
        EXPECT_EQ(OrvGsmSmsFromText(wrong, "hi", 2, nullptr, &record), ORV_RCODE_BAD_PARAMETER) << wrong;
    options.pSmsc = "12345678901234567890123456789012345678901";
    EXPECT_EQ(OrvGsmSmsFromText("1", "hi", 2, &options, &record), ORV_RCODE_BAD_PARAMETER);
    options = ORV_SMS_OPTIONS_DEFAULT;
    options.eMessageClass = 5;
    EXPECT_EQ(OrvGsmSmsFromText("1", "hi", 2, &options, &record), ORV_RCODE_BAD_PARAMETER);
}

TEST(SmsRecord, WhatIsNoTextIsSaidToBeNone)
{
    ORV_GSM_SMS_IN record = {};
    record.uUserDataLen = 4;
    const auto result = [&record] { return Give(50, OrvGsmSmsToText, &record).result; };
    for (const ULONG alphabet : {1u, 3u, 255u}) {
        record.eEncoding = alphabet;
        EXPECT_EQ(result(), ORV_RCODE_UNSUPPORTED) << alphabet;
    }
    record.eEncoding = 0;
    EXPECT_EQ(result(), ORV_RCODE_OK);
    record.bCompressed = 1;
    EXPECT_EQ(result(), ORV_RCODE_UNSUPPORTED);
    record.bCompressed = 0;
    record.uUserDataHeaderLen = 5; // 7 septets
    EXPECT_EQ(result(), ORV_RCODE_FAILED);
    record.uUserDataLen = 7;
    EXPECT_EQ(result(), ORV_RCODE_OK);
    record.uUserDataLen = ORV_GSM_SMS_IN_ROOM + 1;
    EXPECT_EQ(result(), ORV_RCODE_FAILED);
    record.uUserDataHeaderLen = 0xFFFFFFFF;
    EXPECT_EQ(result(), ORV_RCODE_FAILED);
}

TEST(SmsRecord, CdmaMessagesTakeAsciiOrUnicode)
{
    ORV_CDMA_SMS_SEND record = {};
    BYTE data[ORV_CDMA_SMS_MAX_USER_DATA];
    BYTE message[ORV_CDMA_SMS_MESSAGE_ROOM];
    const auto fill = [&](const char* to, const std::string& text, ULONG capacity = sizeof data) {
        return OrvCdmaSmsFromText(to, text.data(), static_cast<ULONG>(text.size()), &record, data, capacity);
    };
    EXPECT_EQ(fill("1", std::string(160, 'a')), ORV_RCODE_OK);
    EXPECT_EQ(fill("1", std::string(161, 'a')), ORV_RCODE_VENDOR_5);
    EXPECT_EQ(fill("1", "abc", 2), ORV_RCODE_VENDOR_5);
    EXPECT_EQ(fill("1", ""), ORV_RCODE_BAD_PARAMETER);
    for (const char* const wrong :
         {"", "+1", "1a", "*1", "1234567890123456789012345678901234567890123456789012345678901234567"})
        EXPECT_EQ(fill(wrong, "a"), ORV_RCODE_BAD_PARAMETER) << wrong;
    EXPECT_EQ(fill("5551234567", "é€"), ORV_RCODE_OK);
    EXPECT_EQ(record.uEncoding, ULONG{ORV_CDMA_SMS_ENCODING_UNICODE});

    ASSERT_EQ(fill("5551234567", "Hi"), ORV_RCODE_OK);
    record.uMsgId = 0x1234;
    const Octets expected = {0x00, 0x00, 0x02, 0x10, 0x02, 0x04, 0x07, 0x02, 0x95, 0x54, 0x48, 0xD1, 0x59, 0xC0, 0x08,
                             0x0E, 0x00, 0x03, 0x21, 0x23, 0x40, 0x01, 0x04, 0x10, 0x14, 0x8D, 0x20, 0x08, 0x01, 0x00};
    for (const ULONG capacity : {ULONG{sizeof message}, ULONG{30}, ULONG{29}}) {
        ULONG length = capacity;
        EXPECT_EQ(OrvCdmaSmsEncode(&record, message, &length), capacity < 30 ? ORV_RCODE_VENDOR_5 : ORV_RCODE_OK);
        EXPECT_EQ(length, 30u);
    }
    EXPECT_EQ(Octets(message, message + 30), expected);
    record.uAddrLen = ORV_CDMA_SMS_MAX_DIGITS + 1;
    ULONG length = sizeof message;
    EXPECT_EQ(OrvCdmaSmsEncode(&record, message, &length), ORV_RCODE_BAD_PARAMETER);
}

TEST(SmsRecord, CdmaUserDataReadsByItsEncoding)
{
    const struct {
        ULONG encoding;
        Octets data;
        ORV_RCODE result;
        const char* text;
    } rows[] = {
        {2, {'H', 'i', 0xE9}, ORV_RCODE_OK, "Hii"},
        {9, {0x10, 0x1B, 0x65, 0x1B}, ORV_RCODE_OK, "Δ€ "},
        {0, {'H', 'i'}, ORV_RCODE_UNSUPPORTED, ""},
        {3, {'H', 'i'}, ORV_RCODE_UNSUPPORTED, ""},
    };
    for (const auto& row : rows) {
        ORV_CDMA_SMS record = {};
        Octets data = row.data;
        record.uParamMask = ORV_CDMA_SMS_HAS_USER_DATA;
        record.uEncoding = row.encoding;
        record.pUserData = data.data();
        record.uUserDataLen = static_cast<ULONG>(data.size());
        const Text text = Give(50, OrvCdmaSmsToText, static_cast<const ORV_CDMA_SMS*>(&record));
        EXPECT_EQ(text.result, row.result) << row.encoding;
        if (row.result == ORV_RCODE_OK) {
            EXPECT_EQ(text.text, row.text);
        }
        record.uParamMask = 0;
        EXPECT_EQ(Give(50, OrvCdmaSmsToText, static_cast<const ORV_CDMA_SMS*>(&record)).length, 0u);
    }
    const BYTE wire[] = {0x00, 0x00, 0x02, 0x10, 0x03, 0x02, 0x03, 0x00, 0x84, 0x80, 0x08, 0x10, 0x00, 0x03,
                         0x0F, 0x12, 0x30, 0x01, 0x06, 0x20, 0x10, 0x07, 0x49, 0x05, 0x60, 0x08, 0x01, 0x41};
    ORV_CDMA_SMS record = {};
    ASSERT_EQ(OrvCdmaSmsDecode(wire, sizeof wire, &record), ORV_RCODE_OK);
    EXPECT_EQ(Give(50, OrvCdmaSmsToText, static_cast<const ORV_CDMA_SMS*>(&record)).text, "é€");
    OrvFreeBuffer(record.pUserData);
}

// With the schemes that the library reads as the standard does.
TEST(SmsRecord, MessagesFromTheFieldReadAsTheirSendersWroteThem)
{
    size_t read = 0;
    for (const VectorRow& row : ReadVectors("gsm_deliver.tsv")) {
        const std::string& expected = row.at("text");
        if (expected.empty() || expected.find('\\') != std::string::npos) continue;
        if (const ULONG scheme = Number(row.at("dcs"), 16); scheme >= 0x40 && scheme < 0xF0) continue;
        SCOPED_TRACE(row.at("hex"));
        const Octets pdu = FromHex(row.at("hex"));
        ORV_GSM_SMS_IN record = {};
        ASSERT_EQ(OrvGsmSmsDecode(pdu.data(), static_cast<ULONG>(pdu.size()), &record), ORV_RCODE_OK);
        EXPECT_EQ(Give(1000, OrvGsmSmsToText, static_cast<const ORV_GSM_SMS_IN*>(&record)).text, expected);
        ++read;
    }
    EXPECT_GT(read, 50u);
}

TEST(SmsText, NullPointersAreRefused)
{
    ULONG number = 0;
    BYTE octets[1] = {};
    char text[1];
    ORV_GSM_SMS_OUT out = {};
    ORV_GSM_SMS_IN in = {};
    ORV_CDMA_SMS_SEND send = {};
    ORV_SMS_JOINER joiner = {};
    const ORV_RCODE rows[] = {
        OrvGsmTextSeptets(nullptr, 0, &number),
        OrvGsmTextSeptets("", 0, nullptr),
        OrvGsmTextPack("", 0, nullptr, 1, &number),
        OrvGsmTextPack("", 0, octets, 1, nullptr),
        OrvGsmTextUnpack(nullptr, 1, 0, 1, text, 1, &number),
        OrvGsmTextUnpack(octets, 1, 0, 1, nullptr, 1, &number),
        OrvGsmTextUnpack(octets, 1, 0, 1, text, 1, nullptr),
        OrvGsmTextUnpack(octets, 1, ORV_TEXT_MAX + 1, 1, text, 1, &number),
        OrvUcs2FromText(nullptr, 0, 0, octets, 1, &number),
        OrvUcs2FromText("", 0, 2, octets, 1, &number),
        OrvUcs2ToText(octets, 1, 2, text, 1, &number),
        OrvUcs2ToText(nullptr, 1, 0, text, 1, &number),
        OrvSemiOctetsFromText(nullptr, octets, 1, &number),
        OrvSemiOctetsToText(nullptr, 1, 1, text, 1, &number),
        OrvGsmAddressFromText(nullptr, &number, &number, &number, octets, 1),
        OrvGsmAddressToText(0, nullptr, 1, text, 1, &number),
        OrvGsmSmsToText(nullptr, text, 1, &number),
        OrvGsmSmsSender(nullptr, text, 1, &number),
        OrvCdmaSmsToText(nullptr, text, 1, &number),
        OrvGsmSmsFromText(nullptr, "", 0, nullptr, &out),
        OrvGsmSmsFromText("1", nullptr, 0, nullptr, &out),
        OrvGsmSmsFromText("1", "", 0, nullptr, nullptr),
        OrvGsmSmsPart("1", "", 0, nullptr, 0, &out, nullptr),
        OrvGsmSmsPart("1", "", 0, nullptr, 1, &out, &number),
        OrvCdmaSmsFromText("1", "a", 1, nullptr, octets, 1),
        OrvCdmaSmsFromText("1", "a", 1, &send, nullptr, 1),
        OrvGsmSmsConcatenation(&in, nullptr),
        OrvSmsJoinStart(nullptr, octets, 1),
        OrvSmsJoinStart(&joiner, nullptr, 1),
        OrvSmsJoinAdd(&joiner, nullptr, &number),
        OrvSmsJoinAdd(&joiner, &in, nullptr),
        OrvSmsJoinMissing(&joiner, nullptr, 1, &number),
        OrvSmsJoinText(nullptr, text, 1, &number),
        OrvGsmSmsDecode(nullptr, 0, &in),
        OrvGsmSmsEncode(&out, octets, nullptr),
        OrvCdmaSmsDecode(octets, 1, nullptr),
        OrvCdmaSmsEncode(&send, octets, nullptr),
        OrvCdmaSmsEncode(nullptr, octets, &number),
    };
    for (size_t i = 0; i < std::size(rows); ++i)
        EXPECT_EQ(rows[i], ORV_RCODE_BAD_PARAMETER) << i;
}

} // namespace
