// The messages that the codecs are measured with.
#pragma once

#include <string.h>

#include "sms/cdma_decode.h"
#include "sms/gsm_deliver.h"
#include "sms/gsm_submit.h"
#include "utility/heap_buffer.h"

namespace sms_cases {

// An SMS-DELIVER from +15551234567 by way of a service centre, with user data of the pattern 1, 2, 3, ….
struct Deliver {
    BYTE pdu[180];
    ULONG length;
    ULONG octets; // of user data behind the header
};

inline Deliver MakeDeliver(BYTE coding_scheme, BYTE user_data_length, ULONG octets, bool concatenated)
{
    static constexpr BYTE kHead[] = {0x07, 0x91, 0x94, 0x71, 0x01, 0x67, 0x00, 0x00, 0x04, 0x0B, 0x91, 0x51, 0x55,
                                     0x21, 0x43, 0x65, 0xF7, 0x00, 0x00, 0x21, 0x30, 0x41, 0x21, 0x35, 0x85, 0x00};
    static constexpr BYTE kHeader[] = {0x05, 0x00, 0x03, 0xAA, 0x02, 0x01};
    Deliver made = {};
    memcpy(made.pdu, kHead, sizeof kHead);
    made.pdu[18] = coding_scheme;
    made.length = sizeof kHead;
    made.pdu[made.length++] = user_data_length;
    if (concatenated) {
        made.pdu[8] |= 0x40;
        memcpy(made.pdu + made.length, kHeader, sizeof kHeader);
        made.length += sizeof kHeader;
    }
    for (ULONG i = 0; i < octets; ++i)
        made.pdu[made.length++] = static_cast<BYTE>(i + 1);
    made.octets = octets;
    return made;
}

inline Deliver DeliverPlain() { return MakeDeliver(0x00, 160, 140, false); }
inline Deliver DeliverConcatenated() { return MakeDeliver(0x00, 160, 134, true); }
inline Deliver DeliverUcs2() { return MakeDeliver(0x08, 140, 140, false); }

inline ORV_GSM_SMS_OUT Submit()
{
    static constexpr BYTE kDestination[] = {0x51, 0x55, 0x21, 0x43, 0x65, 0xF7};
    ORV_GSM_SMS_OUT record = {};
    record.uUserDataLen = 160;
    record.uDestTypeOfNumber = ORV_GSM_TON_INTERNATIONAL;
    record.uDestNumberingPlan = ORV_GSM_PLAN_ISDN;
    record.uDestAddrLen = 11;
    memcpy(record.abDestAddr, kDestination, sizeof kDestination);
    record.eMessageClass = ORV_GSM_CLASS_NONE;
    for (ULONG i = 0; i < 140; ++i)
        record.abUserData[i] = static_cast<BYTE>(i + 1);
    return record;
}

// "AAAA" from 5550100042, with a bearer reply option and a time stamp.
constexpr BYTE kCdma[] = {0x00, 0x00, 0x02, 0x10, 0x02, 0x02, 0x07, 0x02, 0x95, 0x56, 0x86, 0xAA, 0x90, 0x80,
                          0x06, 0x01, 0x44, 0x08, 0x15, 0x00, 0x03, 0x1A, 0xBC, 0xD0, 0x01, 0x06, 0x10, 0x24,
                          0x18, 0x30, 0x60, 0x80, 0x03, 0x06, 0x09, 0x12, 0x31, 0x23, 0x59, 0x58};

} // namespace sms_cases
