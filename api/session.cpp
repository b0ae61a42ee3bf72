// The packet data session.

#include "api/OrvError.h"
#include "api/admission.h"

namespace {

// An IPv4 address as the module gives it, most significant octet first in memory, as a number.
ULONG HostOrder(ULONG network_order)
{
    const BYTE* octets = reinterpret_cast<const BYTE*>(&network_order);
    return static_cast<ULONG>(octets[0]) << 24 | static_cast<ULONG>(octets[1]) << 16 |
           static_cast<ULONG>(octets[2]) << 8 | octets[3];
}

} // namespace

ORV_RCODE ORV_CALL OrvStartDataSession(char* pAPN, char* pUser, char* pPassword, ULONG* pSessionId,
                                       ULONG* pFailureReason)
{
    TRACE_ENTRY("OrvStartDataSession");
    if (const ORV_RCODE refused = RequireInitializedTraced()) return refused;
    const ORV_RCODE result =
        ConvertGobiError2OrvRcode(Gobi().StartDataSession(pAPN, pUser, pPassword, pSessionId, pFailureReason));
    if (result != ORV_RCODE_OK)
        TRACE_ERROR(TXT("OrvStartDataSession returning: %d, Failure Reason = %d"), result,
                    pFailureReason ? *pFailureReason : 0);
    return result;
}

ORV_RCODE ORV_CALL OrvStopDataSession(ULONG sessionId)
{
    TRACE_ENTRY("OrvStopDataSession");
    if (const ORV_RCODE refused = RequireInitializedTraced()) return refused;
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().StopDataSession(sessionId));
    if (result != ORV_RCODE_OK) TRACE_ERROR(TXT("OrvStopDataSession returning: %d"), result);
    return result;
}

ORV_RCODE ORV_CALL OrvGetIPConfigurationGobi(OrvIpConfiguration* record)
{
    TRACE_ENTRY("OrvGetIPConfigurationGobi");
    if (const ORV_RCODE refused = RequireInitializedTraced()) return refused;
    if (!record) return ORV_RCODE_BAD_PARAMETER;
    ULONG address = 0, primary_dns = 0, secondary_dns = 0, gateway = 0, mask = 0;
    const ORV_RCODE result =
        ConvertGobiError2OrvRcode(Gobi().GetIPConfiguration(&address, &primary_dns, &secondary_dns, &gateway, &mask));
    if (result != ORV_RCODE_OK) {
        TRACE_ERROR(TXT("OrvGetIPConfigurationGobi returning: %d"), result);
        return result;
    }
    record->bValid = 1;
    record->uIpAddress = HostOrder(address);
    record->uPrimaryDns = HostOrder(primary_dns);
    record->uSecondaryDns = HostOrder(secondary_dns);
    record->uDefaultGateway = HostOrder(gateway);
    record->uSubnetMask = HostOrder(mask);
    return ORV_RCODE_OK;
}
