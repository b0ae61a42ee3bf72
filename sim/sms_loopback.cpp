// A message that was sent comes back: the SMS-SUBMIT of the caller as the SMS-DELIVER that the network makes of it
// (3GPP TS 23.040, 9.2.2). The receiver's number becomes the sender's.
#include "sim/sms_loopback.h"

#include <string.h>

#include "sim/clock.h"
#include "sim/module.h"

namespace sim {

constexpr ULONGLONG kUnitsInDay = 24ULL * 3600 * 800; // of 1.25 ms
constexpr BYTE kHeader = 0x40, kTypeMask = 0x03;      // TP-UDHI; TP-MTI
constexpr ULONG kTimeOctets = 7;                      // of a time stamp, and of two of the three validity periods

static bool IsLeap(ULONG year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

static ULONG DaysInMonth(ULONG year, ULONG month)
{
    constexpr BYTE kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return kDays[month] + (month == 1 && IsLeap(year) ? 1u : 0u);
}

// TP-SCTS of the module's own time, UTC.
static void WriteTimeStamp(BYTE* out)
{
    const ULONGLONG now = TheModule().subscriber.time + Now() * 4 / 5;
    const ULONG second = static_cast<ULONG>(now % kUnitsInDay / 800);
    ULONGLONG day = now / kUnitsInDay + 5; // of the year 1980, which began five days before the count
    ULONG year = 1980, month = 0;
    for (; day >= (IsLeap(year) ? 366u : 365u); ++year)
        day -= IsLeap(year) ? 366 : 365;
    for (; day >= DaysInMonth(year, month); ++month)
        day -= DaysInMonth(year, month);
    const ULONG values[kTimeOctets] = {
        year % 100, month + 1, static_cast<ULONG>(day) + 1, second / 3600, second / 60 % 60, second % 60, 0};
    for (ULONG i = 0; i < kTimeOctets; ++i)
        out[i] = static_cast<BYTE>(values[i] % 10 << 4 | values[i] / 10);
}

// Octets of TP-VP in a message that begins with `first`.
static ULONG ValidityOctets(BYTE first)
{
    constexpr ULONG kOctets[] = {0, kTimeOctets, 1, kTimeOctets}; // none, enhanced, relative, absolute
    return kOctets[first >> 3 & 3];
}

ULONG DeliverOfSubmit(const BYTE* submit, ULONG size, BYTE* deliver, ULONG room)
{
    const ULONG begin = 1u + submit[0]; // behind the service centre; TP-MTI to TP-UDHI, TP-MR, TP-DA follow
    if (begin + 4 > size || (submit[begin] & kTypeMask) != 1) return 0;
    const BYTE first = submit[begin];
    const ULONG address = begin + 2, address_octets = 2u + (submit[address] + 1u) / 2;
    const ULONG schemes = address + address_octets; // TP-PID, TP-DCS
    const ULONG user_data = schemes + 2 + ValidityOctets(first);
    if (user_data >= size) return 0;
    const ULONG whole = begin + 1 + address_octets + 2 + kTimeOctets + (size - user_data);
    if (whole > room) return 0;
    memcpy(deliver, submit, begin);
    BYTE* out = deliver + begin;
    *out++ = static_cast<BYTE>((first & kHeader) | 0x04); // SMS-DELIVER, no more messages
    memcpy(out, submit + address, address_octets + 2);
    out += address_octets + 2;
    WriteTimeStamp(out);
    memcpy(out + kTimeOctets, submit + user_data, size - user_data);
    return whole;
}

void SendBack(const BYTE* submit, ULONG size)
{
    const SmsState& sms = TheModule().sms;
    BYTE deliver[kMaxSmsOctets];
    const ULONG length = sms.loopback ? DeliverOfSubmit(submit, size, deliver, sizeof(deliver)) : 0;
    if (length == 0) return;
    Text<kMaxKeptLine> line;
    Writer writer(line);
    writer.Add("sms arrives 1 6 ").HexOctets(deliver, length);
    if (writer.Cut()) return; // more than any network carries
    for (ULONG i = 0; i < sms.loopback; ++i)
        ScheduleModuleEvent(sms.loopback_ms, line);
}

} // namespace sim
