// What the two directions of the GSM short-message transfer layer share (3GPP TS 23.040).
#pragma once

#include "talvek/gsm_sms.h"
#include "talvek/rcode.h"

// TP-MTI, bits 1 and 0 of a message's first octet, and its user data header indicator.
enum : BYTE { kMtiMask = 0x03, kMtiDeliver = 0x00, kMtiSubmit = 0x01, kUserDataHeaderIndicator = 0x40 };

// Numbering plan identifications, by the code of the records.
constexpr BYTE kNumberingPlans[] = {0x0, 0x1, 0x3, 0x4, 0x9, 0xA, 0x8};
constexpr ULONG kNumberingPlanCount = sizeof kNumberingPlans;

// The type-of-address octet; a plan code without a row counts as unknown.
inline BYTE EncodeTypeOfAddr(ULONG type_of_number, ULONG plan)
{
    const ULONG identification = plan < kNumberingPlanCount ? kNumberingPlans[plan] : 0;
    return static_cast<BYTE>(0x80 | type_of_number << 4 | identification);
}

// The type of number and the plan code of a type-of-address octet, whose extension bit is taken as set. Returns 4 for a
// null pointer.
inline ORV_RCODE DecodTypeofAddr(BYTE octet, ULONG* type_of_number, ULONG* plan)
{
    // By numbering plan identification.
    static constexpr BYTE kCodes[16] = {0, 1, 0, 2, 3, 0, 0, 0, 6, 4, 5};
    static_assert(kCodes[kNumberingPlans[1]] == 1 && kCodes[kNumberingPlans[2]] == 2 &&
                      kCodes[kNumberingPlans[3]] == 3 && kCodes[kNumberingPlans[4]] == 4 &&
                      kCodes[kNumberingPlans[5]] == 5 && kCodes[kNumberingPlans[6]] == 6,
                  "each table is the other's inverse");
    if (!type_of_number || !plan) return ORV_RCODE_BAD_PARAMETER;
    *type_of_number = octet >> 4 & 7;
    *plan = kCodes[octet & 0x0F];
    return ORV_RCODE_OK;
}

// Octets that hold `septets` packed characters of the 7-bit alphabet.
constexpr ULONG OctetsOfSeptets(ULONG septets) { return (septets * 7 + 7) / 8; }

// Bits between a user data header of `header_length` octets (UDHL itself comes on top) and the septet boundary where
// 7-bit text begins.
constexpr ULONG FillBits(ULONG header_length)
{
    const ULONG beyond = (header_length + 1) * 8 % 7;
    return beyond ? 7 - beyond : 0;
}

// Copies `count` octets to `out` and moves all bits by `bits`, 1 to 7, towards the most significant end: octet n gets
// what leaves octet n - 1. `out_count` is `count`, or one more for what leaves the last octet. The two must not
// overlap.
void ShiftLeftBits(BYTE* out, ULONG out_count, const BYTE* octets, ULONG count, ULONG bits);
// The same towards the least significant end: octet n gets what leaves octet n + 1.
void ShiftRightBits(BYTE* out, const BYTE* octets, ULONG count, ULONG bits);
