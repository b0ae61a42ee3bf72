// Text messages: the stores of the card and of the module, and what became of the last message that was sent.
#pragma once

#include "sim/values.h"

namespace sim {

constexpr ULONG kSmsStores = 2;
constexpr ULONG kMaxStoredSms = 1000;
constexpr ULONG kMaxSmsOctets = 512;

struct StoredSms {
    ULONG tag, format; // as GetSMS gives them
    WORD size;
    bool used;
    BYTE octets[kMaxSmsOctets];
};

struct SmsState {
    ULONG capacity[kSmsStores]; // messages, of the card and of the module
    BYTE protocol;              // 0 CDMA, 1 GSM/UMTS
    BYTE broadcast[2];          // by that, 1: on
    Octets<16> routes;
    Text<42> centre;
    Text<8> centre_type;
    ULONG send_status, failure_cause; // a status other than 0 makes SendSMS fail with this cause
    ULONG send_count;
    ULONG sent_format;
    Octets<1026> sent;
    BYTE reference; // of the message that was sent last
    BYTE link_timer;
    BYTE loopback; // how often a GSM/UMTS message that was sent comes back
    ULONG loopback_ms;
    StoredSms messages[kSmsStores][kMaxStoredSms]; // by index
};

} // namespace sim
