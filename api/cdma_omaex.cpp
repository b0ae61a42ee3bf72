// Extended device management: the arguments go to the vendor's operations as they are.

#include "api/OrvError.h"
#include "api/admission.h"
#include "talvek/cdma_omadm.h"

ORV_RCODE ORV_CALL OrvOMAEXInit(void)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    return ConvertGobiError2OrvRcode(Gobi().OMAEXInit());
}

ORV_RCODE ORV_CALL OrvOMAEXShutdown(void)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    return ConvertGobiError2OrvRcode(Gobi().OMAEXShutdown());
}

ORV_RCODE ORV_CALL OrvSetOMAEXEventReport(void)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    return ConvertGobiError2OrvRcode(Gobi().OMAEXSetEventReport());
}

ORV_RCODE ORV_CALL OrvOMAEXSessionStart(BYTE* type)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    return ConvertGobiError2OrvRcode(Gobi().OMAEXSessionStart(type));
}

ORV_RCODE ORV_CALL OrvOMAEXSessionCancel(void)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    return ConvertGobiError2OrvRcode(Gobi().OMAEXSessionCancel());
}

ORV_RCODE ORV_CALL OrvOMAEXSelection(BYTE* selection)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    return ConvertGobiError2OrvRcode(Gobi().OMAEXSelection(selection));
}

ORV_RCODE ORV_CALL OrvOMAEXGetSettings(BYTE* provisioning, BYTE* prlUpdate, BYTE* firmwareUpdate, BYTE* clientInitiated,
                                       BYTE* networkInitiated, BYTE* autoAccept)
{
    if (const ORV_RCODE refused = RequireInitializedCdma()) return refused;
    return ConvertGobiError2OrvRcode(Gobi().OMAEXGetSettings(provisioning, prlUpdate, firmwareUpdate, clientInitiated,
                                                             networkInitiated, autoAccept));
}

ORV_RCODE ORV_CALL OrvOMAEXSetSettings(BYTE* provisioning, BYTE* prlUpdate, BYTE* firmwareUpdate, BYTE* clientInitiated,
                                       BYTE* networkInitiated, BYTE* autoAccept)
{
    if (const ORV_RCODE refused = RequireInitializedCdma()) return refused;
    return ConvertGobiError2OrvRcode(Gobi().OMAEXSetSettings(provisioning, prlUpdate, firmwareUpdate, clientInitiated,
                                                             networkInitiated, autoAccept));
}

ORV_RCODE ORV_CALL OrvOMAEXGetSessionInfo(omaSessionInfo* info)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    return ConvertGobiError2OrvRcode(Gobi().OMAEXSessionGetInfo(info));
}
