// Long texts in parts, and the parts joined again.
#include "tests/support/sms_parts.h"

#include <algorithm>

namespace {

using namespace sms_parts;

TEST(SmsParts, NeitherAnEscapeNorASurrogatePairIsSplit)
{
    const struct {
        const char* name;
        std::string text;
        bool wide;
        std::vector<ULONG> units; // of each part
    } rows[] = {
        {"one part", Times(160, "a"), false, {160}},
        {"one septet more", Times(161, "a"), false, {153, 8}},
        {"a wide reference", Times(161, "a"), true, {152, 9}},
        {"an escape where a part ends", Times(152, "a") + "€" + Times(7, "b"), false, {152, 9}},
        {"all escapes", Times(81, "€"), false, {152, 10}},
        {"one UCS2 part", Times(70, "ш"), false, {70}},
        {"one unit more", Times(71, "ш"), false, {67, 4}},
        {"a wide reference in UCS2", Times(71, "ш"), true, {66, 5}},
        {"a pair where a part ends", Times(66, "ш") + "😀" + Times(4, "ш"), false, {66, 6}},
        {"the most parts", Times(255 * 153, "a"), false, std::vector<ULONG>(255, 153)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const ORV_SMS_OPTIONS options = Options(0x1234, row.wide);
        const auto parts = Split(row.text, options);
        std::vector<ULONG> units;
        for (const ORV_GSM_SMS_OUT& part : parts) {
            units.push_back(part.uUserDataLen);
            const BYTE total = static_cast<BYTE>(parts.size()), number = static_cast<BYTE>(units.size());
            const Octets header(part.abUserDataHeader, part.abUserDataHeader + part.uUserDataHeaderLen);
            const Octets expected = parts.size() == 1 ? Octets{}
                                    : row.wide        ? Octets{0x08, 4, 0x12, 0x34, total, number}
                                                      : Octets{0x00, 3, 0x34, total, number};
            EXPECT_EQ(header, expected);
        }
        EXPECT_EQ(units, row.units);
        Joiner joiner;
        for (const ORV_GSM_SMS_OUT& part : parts)
            joiner.Add(Delivered(part));
        if (parts.size() > 1) {
            EXPECT_EQ(joiner.Text(), row.text);
        }
    }
    ORV_GSM_SMS_OUT record = {};
    ULONG count = 77;
    const std::string longest = Times(255 * 153 + 1, "a");
    EXPECT_EQ(OrvGsmSmsPart("1", longest.data(), static_cast<ULONG>(longest.size()), nullptr, 0, &record, &count),
              ORV_RCODE_VENDOR_5);
    EXPECT_EQ(OrvGsmSmsPart("1", "a", 1, nullptr, 1, &record, &count), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(count, 77u);
}

TEST(SmsJoin, AnyOrderDuplicatesForeignAndMissingParts)
{
    const std::string text = Times(400, "0123456789") + "|";
    const Records parts = Deliver(text, Options());
    ASSERT_EQ(parts.size(), 27u);
    Records foreign(6, parts[3]);
    foreign[0].abUserDataHeader[2] = 0xA6;              // reference
    foreign[1].abUserDataHeader[3] = 28;                // number of parts
    foreign[2].abSenderDigits[9] = 9;                   // sender
    foreign[3].uSenderTypeOfNumber = 0;                 //
    foreign[4] = Deliver(text, Options(0xA5, true))[3]; // the same reference, wide
    foreign[5].uSenderNumberingPlan = 0;
    ORV_GSM_SMS_IN single = {};
    single.uUserDataLen = 5;

    Joiner joiner;
    EXPECT_EQ(joiner.Text(), "result 17");
    EXPECT_EQ(joiner.Missing(), Octets{});
    EXPECT_EQ(joiner.Add(single), ULONG{ORV_SMS_JOIN_SINGLE});
    for (size_t i = parts.size(); i-- > 1;) {
        EXPECT_EQ(joiner.Add(parts[i]), ULONG{ORV_SMS_JOIN_ADDED}) << i;
        EXPECT_EQ(joiner.Add(parts[i]), ULONG{ORV_SMS_JOIN_DUPLICATE}) << i;
    }
    for (size_t i = 0; i < foreign.size(); ++i)
        EXPECT_EQ(joiner.Add(foreign[i]), ULONG{ORV_SMS_JOIN_FOREIGN}) << i;
    ORV_GSM_SMS_IN different = parts[5];
    different.abUserData[0] ^= 1;
    EXPECT_EQ(joiner.Add(different), ULONG{ORV_SMS_JOIN_DUPLICATE});
    EXPECT_EQ(joiner.Missing(), Octets{1});
    EXPECT_EQ(joiner.Text(), "result 17");
    EXPECT_EQ(joiner.Add(parts[0]), ULONG{ORV_SMS_JOIN_COMPLETE});
    EXPECT_EQ(joiner.Missing(), Octets{});
    EXPECT_EQ(joiner.Text(), text);
    EXPECT_EQ(joiner.Add(parts[0]), ULONG{ORV_SMS_JOIN_DUPLICATE});

    BYTE few[3] = {};
    ULONG count = 0;
    Joiner beginning;
    beginning.Add(parts[1]);
    EXPECT_EQ(OrvSmsJoinMissing(&beginning.state, few, 3, &count), ORV_RCODE_VENDOR_5);
    EXPECT_EQ(count, 26u);
    EXPECT_EQ(Octets(few, few + 3), (Octets{1, 3, 4}));
    Joiner small(26);
    EXPECT_EQ(small.Add(parts[0]), 100u + ORV_RCODE_VENDOR_5);
    EXPECT_EQ(small.state.uNeeded, 27u * ORV_SMS_JOINER_PART);
    EXPECT_EQ(small.Add(Deliver(Times(200, "a"), Options())[0]), ULONG{ORV_SMS_JOIN_ADDED});
}

TEST(SmsJoin, WhatOneCharacterIsSplitOverIsJoined)
{
    Records parts = Deliver(Times(161, "a"), Options());
    parts[0].abUserData[133] = 0x1B; // the last septet becomes an escape
    parts[1].abUserData[0] = 0xE5;   // and the first one of the next part its character
    Joiner septets;
    septets.Add(parts[0]);
    septets.Add(parts[1]);
    EXPECT_EQ(septets.Text(), Times(152, "a") + "€" + "aaaaaaa");

    parts = Deliver(Times(71, "ш"), Options());
    parts[0].abUserData[132] = 0xD8;
    parts[0].abUserData[133] = 0x3D;
    parts[1].abUserData[0] = 0xDE;
    parts[1].abUserData[1] = 0x00;
    Joiner units;
    units.Add(parts[1]);
    units.Add(parts[0]);
    EXPECT_EQ(units.Text(), Times(66, "ш") + "😀" + Times(3, "ш"));

    // Alphabets may change from part to part; what one leaves open does not reach into the other.
    Records mixed = Deliver(Times(161, "a"), Options());
    mixed[0].abUserData[133] = 0x1B;
    mixed[1] = parts[1];
    Joiner both;
    both.Add(mixed[0]);
    both.Add(mixed[1]);
    EXPECT_EQ(both.Text(), Times(152, "a") + " \uFFFD" + Times(3, "ш"));
    mixed[1].eEncoding = ORV_GSM_ALPHABET_8BIT;
    Joiner data;
    data.Add(mixed[0]);
    data.Add(mixed[1]);
    EXPECT_EQ(data.Text(), "result 1");
}

TEST(SmsJoin, HeaderElementsAreReadAsTheStandardSays)
{
    const struct {
        const char* name;
        Octets header;
        ULONG reference, parts, part; // 0 parts: it stands by itself
    } rows[] = {
        {"eight bits", {0, 3, 0xAA, 2, 1}, 0xAA, 2, 1},
        {"sixteen bits", {8, 4, 0xAA, 0xBB, 255, 255}, 0xAABB, 255, 255},
        {"behind others", {5, 4, 0x0B, 0x84, 0x23, 0xF0, 0, 3, 3, 2, 1}, 3, 2, 1},
        {"the last one counts", {0, 3, 1, 2, 1, 8, 4, 0, 2, 3, 3}, 2, 3, 3},
        {"an empty element", {0x70, 0, 0, 3, 1, 1, 1}, 1, 1, 1},
        {"none", {}, 0, 0, 0},
        {"others only", {5, 4, 0x0B, 0x84, 0x23, 0xF0}, 0, 0, 0},
        {"part 0 of 0", {0, 3, 1, 0, 0}, 0, 0, 0},
        {"part 0", {0, 3, 1, 2, 0}, 0, 0, 0},
        {"a part of none", {0, 3, 1, 0, 1}, 0, 0, 0},
        {"a part above their number", {0, 3, 1, 2, 3}, 0, 0, 0},
        {"a length of 2", {0, 2, 1, 2}, 0, 0, 0},
        {"a length of 4 with 8 bits", {0, 4, 1, 2, 1, 1}, 0, 0, 0},
        {"sixteen bits cut short", {8, 3, 1, 2, 1}, 0, 0, 0},
        {"a length past the header", {0, 3, 1, 2}, 0, 0, 0},
        {"a good one before a length past the header", {0, 3, 1, 2, 1, 9, 255}, 0, 0, 0},
        {"a good one before half an element", {0, 3, 1, 2, 1, 9}, 0, 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ORV_GSM_SMS_IN record = {};
        record.uUserDataLen = 40;
        record.uUserDataHeaderLen = static_cast<ULONG>(row.header.size());
        std::copy(row.header.begin(), row.header.end(), record.abUserDataHeader);
        ORV_SMS_CONCATENATION found = {};
        EXPECT_EQ(OrvGsmSmsConcatenation(&record, &found), row.parts ? ORV_RCODE_OK : ORV_RCODE_UNSUPPORTED);
        EXPECT_EQ(std::vector<ULONG>({found.uReference, found.uParts, found.uPart}),
                  std::vector<ULONG>({row.reference, row.parts, row.part}));
        Joiner joiner;
        EXPECT_EQ(joiner.Add(record), ULONG(row.parts == 0   ? ORV_SMS_JOIN_SINGLE
                                            : row.parts == 1 ? ORV_SMS_JOIN_COMPLETE
                                                             : ORV_SMS_JOIN_ADDED));
    }
    // User data that cannot be.
    ORV_GSM_SMS_IN record = Deliver(Times(161, "a"), Options())[0];
    for (const ULONG length : {6u, 161u, 0xFFFFFFFFu}) {
        record.uUserDataLen = length;
        EXPECT_EQ(Joiner().Add(record), 100u + ORV_RCODE_FAILED) << length;
    }
    record.uUserDataLen = 7;
    record.uUserDataHeaderLen = ORV_GSM_SMS_HEADER_ROOM + 1;
    EXPECT_EQ(Joiner().Add(record), 100u + ORV_RCODE_FAILED);
}

} // namespace
