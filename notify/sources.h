// The event sources, and which one each notification comes from.
//
// A source is one adapter that the library hands to the vendor library. What a source does when its first notification
// is enabled, when its last one is disabled, on suspend and on resume are four functions of their own, because they
// differ: an asymmetry between them is visible as code.
#pragma once

#include "platform/win32.h"
#include "talvek/gobi_callbacks.h"
#include "talvek/notify.h"

enum class NotifySource : BYTE {
    Power,
    SignalStrength,
    RFInfo,
    Sms,
    RoamingIndicator,
    ByteTotals,
    SessionState,
    DormancyStatus,
    CallNotification,
    ActivationStatus,
    OmadmState,
    OmadmAlert,
    // Sources that the library itself raises; the modem is never told. One a notification, so that each is switched
    // alone.
    SmsSendStatus,
    PhonebookReady,
    PlmnModeSet,
    PlmnSearchDone,
    PlmnManual,
    Count
};
constexpr BYTE kNotifySourceCount = static_cast<BYTE>(NotifySource::Count);

// The sources with a setter of their own all take this kind of adapter.
using WordCallback = void(ORV_VENDOR_CALL*)(ULONG);
using DirectSetter = ULONG (*)(WordCallback);

struct NotifyRow {
    ORV_NOTIFY id;
    DirectSetter direct; // tells the modem, for a source with one setter; else null
    NotifySource source;
};

constexpr BYTE kNotifyRowCount = 31;
// Searched from the top.
extern const NotifyRow kNotifyRows[kNotifyRowCount];

// Each function returns the vendor's status. Null: the source has nothing to do then.
struct SourceActions {
    WordCallback adapter; // for rows with a direct setter
    ULONG (*enable)(ORV_NOTIFY row);
    ULONG (*disable)();
    ULONG (*suspend)();
    ULONG (*resume)();
};
const SourceActions& ActionsOf(NotifySource source);
