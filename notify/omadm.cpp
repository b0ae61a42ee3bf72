// Events of device management.

#include <string.h>

#include "api/OrvError.h"
#include "notify/adapters.h"
#include "notify/delivery.h"
#include "notify/direct.h"
#include "notify/omadm_alert.h"
#include "notify/record.h"
#include "state/globals.h"
#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\OrvNotify.cpp");

static_assert(sizeof(FUMOInfo) + sizeof(ULONG) == sizeof(OrvFUMOEventPayload), "the record, then a reserved word");
static_assert(sizeof(OMAInfo) + sizeof(ULONG) == sizeof(OrvOMAEventPayload), "the record, then a reserved word");

struct OmadmStateEvent {
    ULONG session_state;
    ULONG failure_reason;

    void Dispatch(COrvNotify& registry)
    {
        LOG_C("COrvNotify::OMADMStateCallback: sessionState = %d", session_state);
        if (registry.Admit(NotifySource::OmadmState)) registry.Walk(NotifySource::OmadmState, *this);
    }

    Outcome Fill(OrvNotifyRecord& record, const szNotifyItem&)
    {
        OrvOMADMSessionState& state = record.payload.OMADMState;
        record.uPayloadSize = sizeof state;
        state.sizeStruct = sizeof state;
        state.nState = ConvertGobi2OrvOMADMSessionState(failure_reason, session_state);
        LOG_C("omadmsessionstate.nState = %d, sessionState = %d", state.nState, session_state);
        return Outcome::Deliver;
    }
};

struct OmadmAlertEvent {
    ULONG session_type;
    WORD session_id;
    ULONG session_class = 0;

    void Dispatch(COrvNotify& registry)
    {
        LOG_C("COrvNotify::OMADMAlertCallback: sessionType = %d, sessionID = %d", session_type, session_id);
        ULONG initiator = 0;
        ConvertGobi2OrvSessionType(session_type, &session_class, &initiator);
        registry.SetPendingOmaDm(session_class, session_id);
        if (registry.Admit(NotifySource::OmadmAlert)) registry.Walk(NotifySource::OmadmAlert, *this);
    }

    Outcome Fill(OrvNotifyRecord& record, const szNotifyItem&)
    {
        record.uPayloadSize = sizeof record.payload.OMADMAlert;
        record.payload.OMADMAlert = PendingOmadmAlert(session_class, session_id);
        return Outcome::Deliver;
    }
};

} // namespace

void ORV_VENDOR_CALL OMADMStateCallback(ULONG sessionState, ULONG failureReason)
{
    DeliverCopyOnThread(OmadmStateEvent{sessionState, failureReason});
}

void ORV_VENDOR_CALL OMADMAlertCallback(ULONG sessionType, WORD sessionID)
{
    g_sessionType = sessionType;
    g_sessionID = sessionID;
    TBD_ASSERT(sessionID != 0, "ASSERTION FAILURE: ===>g_sessionID != 0");
    DeliverCopyOnThread(OmadmAlertEvent{sessionType, sessionID});
}

// Delivered directly, with no lock. Either record may be absent.
void ORV_VENDOR_CALL OMAEXEventCallback(FUMOInfo* firmwareUpdate, OMAInfo* oma)
{
    LOG_C("OMAEXEventCallback");
    OrvNotifyRecord record;
    if (firmwareUpdate) {
        BeginRecord(record, ORV_NOTIFY_FUMOEvent, sizeof(OrvFUMOEventPayload));
        memcpy(&record.payload, firmwareUpdate, sizeof *firmwareUpdate);
        DeliverDirectly(record);
    }
    if (oma) {
        BeginRecord(record, ORV_NOTIFY_OMAEvent, sizeof(OrvOMAEventPayload));
        memcpy(&record.payload, oma, sizeof *oma);
        DeliverDirectly(record);
    }
}
