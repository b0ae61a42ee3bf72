#include "sms/gsm_common.h"

#include "sms/bits.h"

// Both go seven octets a step, all that is whole in a word of eight once it has been shifted.

void ShiftLeftBits(BYTE* out, ULONG out_count, const BYTE* octets, ULONG count, ULONG bits)
{
    ULONG i = 0;
    BYTE before = 0;
    if (count >= 8) {
        out[0] = static_cast<BYTE>(octets[0] << bits);
        // The octet before comes along; the eighth octet written is put right by the next step.
        for (i = 1; i + 8 <= count; i += 7)
            StoreLittle(out + i, LoadLittle(octets + i - 1) << bits >> 8);
        before = octets[i - 1];
    }
    for (; i < count; ++i) {
        out[i] = static_cast<BYTE>(octets[i] << bits | before >> (8 - bits));
        before = octets[i];
    }
    if (out_count > count) out[count] = static_cast<BYTE>(before >> (8 - bits));
}

void ShiftRightBits(BYTE* out, const BYTE* octets, ULONG count, ULONG bits)
{
    ULONG i = 0;
    for (; i + 8 <= count; i += 7)
        StoreLittle(out + i, LoadLittle(octets + i) >> bits);
    for (; i < count; ++i) {
        const ULONG behind = i + 1 < count ? octets[i + 1] : 0u;
        out[i] = static_cast<BYTE>(octets[i] >> bits | behind << (8 - bits));
    }
}
