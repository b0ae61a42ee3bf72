#include "sms/text_address.h"

#include "sms/text_convert.h"
#include "talvek/gsm_sms.h"

namespace {

constexpr const char kDigits[] = "0123456789*#abc";
static_assert(sizeof kDigits == kFillerDigit + 1, "the filler is no digit");

} // namespace

BYTE DigitValue(char character)
{
    if (character >= 'A' && character <= 'C') character = static_cast<char>(character - 'A' + 'a');
    BYTE value = 0;
    while (value < kFillerDigit && kDigits[value] != character)
        ++value;
    return value;
}

bool PackDigits(const char* digits, BYTE* octets, ULONG capacity, ULONG& count)
{
    for (count = 0; digits[count] != '\0'; ++count) {
        const BYTE value = DigitValue(digits[count]);
        if (value == kFillerDigit) return false;
        const ULONG octet = count / 2;
        if (octet >= capacity) continue;
        if (count % 2 == 0) {
            octets[octet] = static_cast<BYTE>(kFillerDigit << 4 | value);
        } else {
            octets[octet] = static_cast<BYTE>(value << 4 | (octets[octet] & 0x0F));
        }
    }
    return true;
}

void PutDigits(Utf8Output& out, const BYTE* values, ULONG count)
{
    for (ULONG i = 0; i < count && values[i] < kFillerDigit; ++i)
        out.Put(&kDigits[values[i]], 1);
}

void PutPackedDigits(Utf8Output& out, const BYTE* octets, ULONG octet_count, ULONG digits)
{
    for (ULONG i = 0; i < digits && i / 2 < octet_count; ++i) {
        const ULONG value = i % 2 == 0 ? octets[i / 2] & 0x0Fu : octets[i / 2] >> 4;
        if (value == kFillerDigit) return;
        out.Put(&kDigits[value], 1);
    }
}

void PutGsmAddress(Utf8Output& out, ULONG type_of_number, const BYTE* values, ULONG count)
{
    if (type_of_number != ORV_GSM_TON_ALPHANUMERIC) {
        if (type_of_number == ORV_GSM_TON_INTERNATIONAL) out.Put("+", 1);
        PutDigits(out, values, count);
        return;
    }
    BYTE octets[ORV_GSM_SMS_MAX_DIGITS / 2] = {};
    for (ULONG i = 0; i < count && i / 2 < sizeof octets; ++i)
        octets[i / 2] = static_cast<BYTE>(octets[i / 2] | (values[i] & 0x0F) << (i % 2 * 4));
    GsmToUtf8 name(out);
    name.FeedPacked(octets, 0, count * 4 / 7);
    name.Finish();
}
