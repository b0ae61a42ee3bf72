// Texts on their way from one mobile to another: split, sent, delivered, joined.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "talvek/talvek.h"

namespace sms_parts {

using Octets = std::vector<BYTE>;
using Records = std::vector<ORV_GSM_SMS_IN>;

// The parts of a text, as records to be sent.
inline std::vector<ORV_GSM_SMS_OUT> Split(const std::string& text, const ORV_SMS_OPTIONS& options)
{
    std::vector<ORV_GSM_SMS_OUT> out;
    for (ULONG part = 0, count = 1; part < count; ++part) {
        ORV_GSM_SMS_OUT record = {};
        const ORV_RCODE result =
            OrvGsmSmsPart("+4915112345", text.data(), static_cast<ULONG>(text.size()), &options, part, &record, &count);
        EXPECT_EQ(result, ORV_RCODE_OK);
        if (result != ORV_RCODE_OK) break;
        out.push_back(record);
    }
    return out;
}

// What arrives at the other end: the SMS-SUBMIT as an SMS-DELIVER, decoded.
inline ORV_GSM_SMS_IN Delivered(const ORV_GSM_SMS_OUT& sent)
{
    BYTE pdu[ORV_GSM_SMS_PDU_ROOM];
    ULONG length = sizeof pdu;
    EXPECT_EQ(OrvGsmSmsEncode(&sent, pdu, &length), ORV_RCODE_OK);
    const ULONG address = 5 + (sent.uDestAddrLen + 1) / 2; // up to TP-DA; no service centre
    Octets deliver = {0x00, static_cast<BYTE>(pdu[1] & 0x40)};
    deliver.insert(deliver.end(), pdu + 3, pdu + address + 2); // TP-OA, TP-PID, TP-DCS
    deliver.insert(deliver.end(), 7, BYTE{0x11});              // TP-SCTS
    deliver.insert(deliver.end(), pdu + address + 2, pdu + length);
    EXPECT_LE(length - address - 3, 140u) << "the network takes 140 octets";
    ORV_GSM_SMS_IN record = {};
    EXPECT_EQ(OrvGsmSmsDecode(deliver.data(), static_cast<ULONG>(deliver.size()), &record), ORV_RCODE_OK);
    return record;
}

inline Records Deliver(const std::string& text, const ORV_SMS_OPTIONS& options)
{
    Records out;
    for (const ORV_GSM_SMS_OUT& part : Split(text, options))
        out.push_back(Delivered(part));
    return out;
}

// A joiner with memory of its own.
class Joiner {
public:
    explicit Joiner(ULONG parts = ORV_SMS_MAX_PARTS) : m_memory(parts * ORV_SMS_JOINER_PART, 0xEE)
    {
        EXPECT_EQ(OrvSmsJoinStart(&state, m_memory.data(), static_cast<ULONG>(m_memory.size())), ORV_RCODE_OK);
    }
    // The outcome, or 100 and the result.
    ULONG Add(const ORV_GSM_SMS_IN& record)
    {
        ULONG outcome = 99;
        const ORV_RCODE result = OrvSmsJoinAdd(&state, &record, &outcome);
        return result == ORV_RCODE_OK ? outcome : 100 + static_cast<ULONG>(result);
    }
    Octets Missing() const
    {
        Octets parts(ORV_SMS_MAX_PARTS);
        ULONG count = 0;
        EXPECT_EQ(OrvSmsJoinMissing(&state, parts.data(), static_cast<ULONG>(parts.size()), &count), ORV_RCODE_OK);
        parts.resize(count);
        return parts;
    }
    std::string Text() const
    {
        ULONG length = 0;
        const ORV_RCODE asked = OrvSmsJoinText(&state, nullptr, 0, &length);
        if (asked != ORV_RCODE_VENDOR_5) return "result " + std::to_string(asked);
        std::string text(length + 1, 'x');
        EXPECT_EQ(OrvSmsJoinText(&state, text.data(), length + 1, &length), ORV_RCODE_OK);
        text.resize(length);
        return text;
    }

    ORV_SMS_JOINER state = {};

private:
    Octets m_memory;
};

inline ORV_SMS_OPTIONS Options(ULONG reference = 0xA5, bool wide = false)
{
    ORV_SMS_OPTIONS options = ORV_SMS_OPTIONS_DEFAULT;
    options.uReference = reference;
    options.bWideReference = wide;
    return options;
}

inline std::string Times(size_t count, const std::string& text)
{
    std::string out;
    while (count-- != 0)
        out += text;
    return out;
}

} // namespace sms_parts
