#include "api/OrvError.h"

#include <iterator>

#include "at/parse.h"
#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\OrvError.cpp");

// Result codes of the vendor statuses that have an entry of their own, three ranges, each indexed from its low bound.
constexpr ORV_RCODE F = ORV_RCODE_FAILED;

// clang-format off
constexpr ULONG kFirstGeneralStatus = 0;
constexpr ORV_RCODE kGeneralStatuses[] = {
    /*    0 */ ORV_RCODE_OK, F, F, F, F, ORV_RCODE_VENDOR_5, F, F, F, F,
    /*   10 */ F, F, F, F, F, ORV_RCODE_VENDOR_15, F, F, F, F,
    /*   20 */ F, F, F, F, F, F, F, F, F, F,
};

constexpr ULONG kFirstServiceStatus = 1001;
constexpr ORV_RCODE kServiceStatuses[] = {
    /* 1001 */ F, F, F, F, F, F, F, F, F, F,
    /* 1011 */ F, F, F, F, F, F, F, F, F, F,
    /* 1021 */ F, F, F, F, ORV_RCODE_UNSUPPORTED, ORV_RCODE_VENDOR_1026, F, F, F, F,
    /* 1031 */ F, F, F, F, F, F, F, F, F, F,
    /* 1041 */ F, F, F, F, F, F, F, F, F, F,
    /* 1051 */ F, F, F, F, F, F, F, F, F, F,
    /* 1061 */ F, F, F, F, F, F, F, F, F, F,
    /* 1071 */ F, F, F, F, F, F, F, F, F, F,
    /* 1081 */ F, F, F,
};

constexpr ULONG kFirstHighStatus = 62441;
constexpr ORV_RCODE kHighStatuses[] = {
    /* 62441 */ F, F, F, F, F,
};
// clang-format on

static_assert(std::size(kGeneralStatuses) == 30 &&
                  kServiceStatuses[1025 - kFirstServiceStatus] == ORV_RCODE_UNSUPPORTED,
              "statuses stand at their place");
static_assert(std::size(kServiceStatuses) == 83 &&
                  kServiceStatuses[1026 - kFirstServiceStatus] == ORV_RCODE_VENDOR_1026,
              "statuses stand at their place");

// The entry of `status` in a table that begins at `first`, or null when it lies outside.
template <size_t Count>
const ORV_RCODE* Entry(const ORV_RCODE (&table)[Count], ULONG first, ULONG status)
{
    return status >= first && status - first < Count ? &table[status - first] : nullptr;
}

struct SessionType {
    ULONG session_class;
    ULONG initiator;
};
constexpr SessionType kSessionTypes[] = {{1, 1}, {2, 1}, {4, 1}, {4, 2}, {2, 3}, {1, 3}};

// Index: the vendor's operating mode; entry: our power mode.
constexpr ULONG kPowerModes[] = {0, 5, 0, 1, 2, 3, 4};

struct ValuePair {
    ULONG from;
    ULONG to;
};

// The counterpart of `value`, or null.
template <size_t Count>
const ULONG* Counterpart(const ValuePair (&table)[Count], ULONG value)
{
    for (const ValuePair& pair : table)
        if (pair.from == value) return &pair.to;
    return nullptr;
}

constexpr ValuePair kDataBearers[] = {{3, 1}, {4, 3}, {6, 2}, {7, 4}, {8, 5}, {9, 6}};
// Preferred mode, for technology 1: protocol mask to our mode; and our mode to the vendor's packed value.
constexpr ValuePair kProtocolToPrefMode[] = {{4, 3}, {8, 9}, {16, 10}};
constexpr ValuePair kPrefModeToVendor[] = {{3, 5}, {4, 0}, {9, 9}, {10, 17}};

// The shared search of the two table functions.
template <class Element>
bool FindInTable(Element value, BYTE count, const Element* table, BYTE* index)
{
    for (BYTE i = 0; i < count; ++i) {
        if (table[i] != value) continue;
        *index = i;
        return true;
    }
    return false;
}

} // namespace

ORV_RCODE ConvertGobiError2OrvRcode(ULONG uError)
{
    if (uError != 0) LOG_W(TXT("Got GobiAPI error = %d"), uError);
    if (const ORV_RCODE* code = Entry(kHighStatuses, kFirstHighStatus, uError)) return *code;
    if (const ORV_RCODE* code = Entry(kServiceStatuses, kFirstServiceStatus, uError)) return *code;
    if (const ORV_RCODE* code = Entry(kGeneralStatuses, kFirstGeneralStatus, uError)) return *code;
    LOG_C("Out of range uError = %d", uError);
    return ORV_RCODE_FAILED;
}

void ConvertGobi2OrvSessionType(ULONG uSessionType, ULONG* uOut1, ULONG* uOut2)
{
    *uOut1 = 0;
    *uOut2 = 0;
    if (uSessionType >= std::size(kSessionTypes)) {
        LOG_C("SessionType out of range = %d", uSessionType);
        return;
    }
    *uOut1 = kSessionTypes[uSessionType].session_class;
    *uOut2 = kSessionTypes[uSessionType].initiator;
}

ULONG ConvertGobi2OrvOMADMSessionState(ULONG uFailureReason, ULONG uState)
{
    switch (uState) {
    case 1:
        return 0x502;
    case 2:
        return 0x503;
    case 3:
        return 0x401;
    case 4:
        LOG_C("Maximum Device Initiated OMADM retry exceeded");
        return 0x504;
    case 5:
        return uFailureReason >= 1 && uFailureReason <= 3 ? 0xFF + uFailureReason : 0;
    default:
        return 1;
    }
}

ULONG ConvertGobi2OrvOperatingMode(ULONG uOperatingMode)
{
    if (uOperatingMode < std::size(kPowerModes)) return kPowerModes[uOperatingMode];
    LOG_C("Out of range operatingMode = %d", uOperatingMode);
    return 2;
}

ULONG ConvertOrv2GobiOperatingMode(ULONG uOrvPowerMode)
{
    if (uOrvPowerMode == 2) return 5; // although the table would give 4
    for (ULONG mode = 0; mode < std::size(kPowerModes); ++mode)
        if (kPowerModes[mode] == uOrvPowerMode) return mode;
    return 4;
}

ULONG ConvertGobi2OrvGSMServiceStatus(ULONG regState)
{
    switch (regState) {
    case 0:
    case 2:
        LOG_W(TXT("Debug: ConvertGobi2OrvGSMServiceStatus, regState == searching"));
        return 2;
    case 1:
        return 0;
    case 3:
        return 4;
    case 4:
        return 9;
    default:
        LOG_C("Unsupported regState = %d", regState);
        return 2;
    }
}

ULONG ConvertGobi2OrvRoamFlags(bool bFirst, bool bSecond)
{
    if (bFirst) return bSecond ? 2 : 0;
    return bSecond ? 1 : 3;
}

ULONG ConvertGobi2OrvDataBearerTech(ULONG dataBearerTech)
{
    if (const ULONG* ours = Counterpart(kDataBearers, dataBearerTech)) return *ours;
    LOG_C("Not recognized dataBearerTech = %d", dataBearerTech);
    return 0;
}

ULONG ConvertGobi2OrvNvPrefOpMode(ULONG uPrefMode, BYTE* bNotSupported)
{
    const ULONG technology = uPrefMode & 3;
    LOG_C("ConvertGobi2OrvNvPrefOpMode uPrefMode = %lu   uTechnology = %lu", uPrefMode, technology);
    *bNotSupported = 0;
    if (technology == 0) return 4;
    if (technology == 1) {
        const ULONG protocol = uPrefMode & ~static_cast<ULONG>(3);
        LOG_C("ConvertGobi2OrvNvPrefOpMode uProtocol = %lu", protocol);
        if (const ULONG* ours = Counterpart(kProtocolToPrefMode, protocol)) return *ours;
        LOG_C("Pref Mode protocol= %lu Not supported", protocol);
    } else {
        LOG_C("Pref Mode Technology = %lu Not supported", technology);
    }
    *bNotSupported = 1;
    return 0;
}

ULONG ConvertOrv2GobiNvPrefOpMode(ULONG uOrvPrefMode, BYTE* bNotSupported)
{
    const ULONG* vendor = Counterpart(kPrefModeToVendor, uOrvPrefMode);
    *bNotSupported = vendor ? 0 : 1;
    if (!vendor) LOG_C("Pref mode not supported by Gobi = %d", uOrvPrefMode);
    const ULONG result = vendor ? *vendor : 0;
    LOG_C("Gobi Pref mode = %u", result);
    return result;
}

bool FindByteInTable(BYTE uValue, BYTE uCount, const BYTE* pTable, BYTE* uIndex)
{
    return FindInTable(uValue, uCount, pTable, uIndex);
}

bool FindWordInTable(ULONG uValue, BYTE uCount, const ULONG* pTable, BYTE* uIndex)
{
    return FindInTable(uValue, uCount, pTable, uIndex);
}

ULONG BandListToMask(BYTE uCount, const BYTE* pList)
{
    ULONG mask = 0;
    for (BYTE i = 0; pList && i < uCount; ++i)
        if (pList[i] >= 1 && pList[i] <= 32) mask |= static_cast<ULONG>(1) << (pList[i] - 1);
    return mask;
}

bool ExtractErrorCode(const char* reply, const char* command, ULONG* code)
{
    const char* rest = reply;
    if (!MatchStringBeginning(rest, command, &rest)) LOG_C("ExtractErrorCode:MatchStringBeginning failed (echo ) ");
    if (!ParseRspPrefix(rest, &rest)) LOG_C("ExtractErrorCode:ParseRspPrefix failed ");
    if (!MatchStringBeginning(rest, "+CME ERROR: ", &rest)) {
        LOG_C("ExtractErrorCode:MatchStringBeginning failed ");
        return false;
    }
    if (!ParseUInt(rest, 1, code, &rest)) {
        LOG_C("ExtractErrorCode:ParseUInt 1 failed ");
        return false;
    }
    return true;
}
