#include "sms/gsm_common.h"

#include "sms/bits.h"

namespace {

// Both go seven octets a step, all that is whole in a word of eight once it has been shifted; the eighth octet that a
// step writes is put right by what follows. A step needs eight octets.
constexpr ULONG Steps(ULONG count) { return count ? (count - 1) / 7 : 0; }

} // namespace

void ShiftLeftBits(BYTE* out, ULONG out_count, const BYTE* octets, ULONG count, ULONG bits)
{
    const BYTE* const end = octets + count;
    BYTE* const out_end = out + out_count;
    ULONG before = 0;
    if (count > 0) {
        before = *octets;
        *out++ = static_cast<BYTE>(before << bits);
        // From the octet before on, which has been dealt with: as many octets are left to write as are behind it.
        for (ULONG steps = Steps(count - 1); steps > 0; --steps, octets += 7, out += 7)
            StoreLittle(out, LoadLittle(octets) << bits >> 8);
        before = *octets++;
    }
    for (; octets < end; ++octets) {
        *out++ = static_cast<BYTE>(*octets << bits | before >> (8 - bits));
        before = *octets;
    }
    if (out < out_end) *out = static_cast<BYTE>(before >> (8 - bits));
}

void ShiftRightBits(BYTE* out, const BYTE* octets, ULONG count, ULONG bits)
{
    const BYTE* const end = octets + count;
    for (ULONG steps = Steps(count); steps > 0; --steps, octets += 7, out += 7)
        StoreLittle(out, LoadLittle(octets) >> bits);
    for (; octets < end; ++octets) {
        const ULONG behind = octets + 1 < end ? octets[1] : 0u;
        *out++ = static_cast<BYTE>(*octets >> bits | behind << (8 - bits));
    }
}
