// The record of a network-initiated session that waits for an answer: notification 2270 and OrvGetOMADMNIAlert give the
// same one.
#pragma once

#include "talvek/cdma_omadm.h"

// `session_class`: ORV_OMADM_TYPE_…. Of another class the identifier is not given.
inline OrvOMADMAlert PendingOmadmAlert(ULONG session_class, WORD session_id)
{
    OrvOMADMAlert alert = {};
    alert.sizeStruct = sizeof alert;
    alert.nState = ORV_OMADM_ALERT_PENDING;
    alert.nType = session_class;
    if (session_class == ORV_OMADM_TYPE_DEVICE_CONFIGURATION) alert.uDcSessionId = session_id;
    if (session_class == ORV_OMADM_TYPE_PRL_UPDATE) alert.uPrlSessionId = session_id;
    return alert;
}
