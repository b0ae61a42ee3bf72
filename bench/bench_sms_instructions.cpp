// Puts one message through its codec, again and again, for bench/sms_instructions.py, which counts what is executed
// there; and counts the heap allocations itself: bench_sms_instructions CASE TIMES.
#include <stdio.h>
#include <stdlib.h>

#include "bench/heap_count.h"
#include "bench/sms_cases.h"
#include "talvek/sms_text.h"

namespace {

ORV_GSM_SMS_IN s_in;
ORV_CDMA_SMS s_cdma;
sms_cases::Deliver s_deliver;
const ORV_GSM_SMS_OUT s_out = sms_cases::Submit();
BYTE s_pdu[300];
WORD s_length;
char s_text[500];

bool Deliver()
{
    return DecodeCompletePDU(s_deliver.pdu, s_deliver.length, &s_in) == ORV_RCODE_OK &&
           s_in.abUserData[s_deliver.octets - 1] != 0;
}

bool Submit()
{
    s_length = sizeof s_pdu;
    return EncodeMOPDU(&s_out, s_pdu, &s_length) == ORV_RCODE_OK && s_pdu[s_length - 1] == 140;
}

bool Cdma()
{
    if (DecodeCompleteMTSms(sms_cases::kCdma, sizeof sms_cases::kCdma, &s_cdma) != ORV_RCODE_OK) return false;
    const bool decoded = s_cdma.uUserDataLen == 4 && memcmp(s_cdma.pUserData, "AAAA", 4) == 0;
    HeapBuffer::Free(s_cdma.pUserData);
    return decoded;
}

// The pattern holds an escape now and then, and characters of one and two octets.
bool Unpack()
{
    ULONG length = 0;
    return OrvGsmTextUnpack(s_out.abUserData, 140, 0, 160, s_text, sizeof s_text, &length) == ORV_RCODE_OK &&
           length > 160;
}

constexpr struct Case {
    const char* name;
    bool (*run)();
    sms_cases::Deliver (*deliver)();
    unsigned long allocations; // a message
} kCases[] = {
    {"deliver", Deliver, sms_cases::DeliverPlain, 0},
    {"concatenated", Deliver, sms_cases::DeliverConcatenated, 0},
    {"ucs2", Deliver, sms_cases::DeliverUcs2, 0},
    {"submit", Submit, nullptr, 0},
    {"cdma", Cdma, nullptr, 1},
    {"unpack", Unpack, nullptr, 0},
};

} // namespace

int main(int argc, char** argv)
{
    const unsigned long times = argc == 3 ? strtoul(argv[2], nullptr, 10) : 0;
    for (const Case& row : kCases) {
        if (times == 0 || strcmp(argv[1], row.name) != 0) continue;
        if (row.deliver) s_deliver = row.deliver();
        const unsigned long before = HeapAllocations();
        for (unsigned long i = 0; i < times; ++i) {
            if (row.run()) continue;
            fprintf(stderr, "%s: not what was expected\n", row.name);
            return 1;
        }
        const unsigned long allocations = HeapAllocations() - before;
        printf("%lu allocations\n", allocations);
        return allocations == row.allocations * times ? 0 : 1;
    }
    fprintf(stderr, "usage: bench_sms_instructions deliver|concatenated|ucs2|submit|cdma|unpack TIMES\n");
    return 2;
}
