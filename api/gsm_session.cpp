// The packet session of a GSM/UMTS module, with its default profile.

#include "api/OrvError.h"
#include "api/admission.h"
#include "state/globals.h"
#include "talvek/gsm_profile.h"
#include "utility/format.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKGsm.cpp");

constexpr ULONG kProfileId = 1;

ORV_RCODE Deactivate()
{
    const ULONG handle = g_PktSessionHandle; // an event may clear it meanwhile
    if (handle == 0) {
        LOG_C("Data session NOT active, DatsSessionId == 0");
        return ORV_RCODE_OK;
    }
    const ULONG status = Gobi().StopDataSession(handle);
    if (const ORV_RCODE failed = ConvertGobiError2OrvRcode(status)) {
        LOG_C("Gobi API StopDataSession Failed with GOBI error = %lu", status);
        return failed;
    }
    g_PktSessionHandle = 0;
    return ORV_RCODE_OK;
}

ORV_RCODE Activate()
{
    if (const ULONG active = g_PktSessionHandle) {
        LOG_C("Data session already active, DataSessionId = %d", active);
        return ORV_RCODE_VENDOR_1026;
    }
    // Whatever a start that fails writes to the handle, it is no session.
    ULONG handle = 0, reason = 0;
    const ULONG status = Gobi().StartDataSession(nullptr, nullptr, nullptr, &handle, &reason);
    if (const ORV_RCODE failed = ConvertGobiError2OrvRcode(status)) {
        LOG_C("Gobi API StartDataSession Failed with GOBI error = %lu and Failure reason = %lu", status, reason);
        return failed;
    }
    g_PktSessionHandle = handle;
    return ORV_RCODE_OK;
}

// The address as dotted text, "255.255.255.255" at the longest. Returns its length.
constexpr ULONG kDottedSize = 16;
ULONG Dotted(ULONG address, char (&text)[kDottedSize])
{
    return PrintNarrow(text, sizeof text, "%u.%u.%u.%u", address >> 24, address >> 16 & 0xFF, address >> 8 & 0xFF,
                       address & 0xFF);
}

} // namespace

ORV_RCODE ORV_CALL OrvActivateProfile(ULONG, BYTE activate)
{
    TRACE_ENTRY("OrvActivateProfile");
    if (const ORV_RCODE refused = RequireInitialized()) return refused; // the technology is not looked at
    return activate == 0 ? Deactivate() : Activate();
}

ORV_RCODE ORV_CALL OrvGetIPAddress(WCHAR* buffer, ULONG length, ULONG* address)
{
    TRACE_ENTRY("OrvGetIPAddress");
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_NOT_AVAILABLE)) return refused;
    if (!buffer) return ORV_RCODE_BAD_PARAMETER;
    ULONG own = 0;
    if (!address) address = &own;
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().GetIPAddress(address));
    if (result != ORV_RCODE_OK) return result;

    const ULONG given = *address;
    char text[kDottedSize] = {};
    const ULONG text_length = Dotted(given, text);
    if (text_length == 0) {
        LOG_C("inet_ntoa failed, uAddress = %d", given);
        return result;
    }
    if (text_length < length)
        OV_AtoT(text, buffer, length);
    else if (length > 0)
        buffer[0] = 0; // a part of an address would be another address
    return result;
}

ORV_RCODE ORV_CALL OrvGetTrafficStatistics(ULONGLONG* pTx, ULONGLONG* pRx)
{
    TRACE_ENTRY("OrvGetTrafficStatistics");
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_NOT_AVAILABLE)) return refused;
    if (const ORV_RCODE refused = RequireOpenAtPort()) return refused; // nothing is sent there
    if (!pTx || !pRx) return ORV_RCODE_BAD_PARAMETER;
    // The vendor writes 64 bits through each pointer, whatever their type says.
    const ULONG status = Gobi().GetByteTotals(reinterpret_cast<ULONG*>(pTx), reinterpret_cast<ULONG*>(pRx));
    const ORV_RCODE result = ConvertGobiError2OrvRcode(status);
    if (result != ORV_RCODE_OK) LOG_C("Gobi API GetByteTotals returned error = %d\n", status);
    return result;
}

ORV_RCODE ORV_CALL OrvGetPktSessionStatusEx(ORV_PKT_SESSION_STATUS* status, ULONG)
{
    TRACE_ENTRY("OrvGetPktSessionStatusEx");
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_NOT_AVAILABLE)) return refused;
    if (!status) return ORV_RCODE_BAD_PARAMETER;
    *status = {};
    status->uSessionHandle = g_PktSessionHandle;
    if (status->uSessionHandle == 0) return ORV_RCODE_OK;
    status->bConnected = 1;
    status->uProfile = kProfileId;
    return ORV_RCODE_OK;
}
