// The notification registry: which notifications are enabled, who the client is, and the delivery of records to it.
//
// Bookkeeping, registration and dispatch run under the API-wide lock; the vendor's setters are called outside it.
// Storage is fixed: there are only so many identifiers.
#pragma once

#include "notify/sources.h"
#include "platform/shared.h"
#include "talvek/gobi_dll.h"

// One enabled identifier of a source, and how often it was enabled.
struct szNotifyItem {
    ORV_NOTIFY aNotify;
    ULONG dwCount;
};

// The most identifiers that share one source (signal strength).
constexpr BYTE kMaxItemsPerSource = 7;

// One active source, its identifiers in the order of their first enabling.
struct szCallbackItem {
    NotifySource source;
    BYTE count;
    szNotifyItem items[kMaxItemsPerSource];
};

// What an event has for one enabled identifier.
enum class Outcome {
    Nothing,        // no record
    Deliver,        // the record is filled
    DeliverAndStop, // the record is filled, and later identifiers of the source get nothing
    Stop
};

class COrvNotify {
public:
    COrvNotify();
    ~COrvNotify();
    COrvNotify(const COrvNotify&) = delete;
    COrvNotify& operator=(const COrvNotify&) = delete;

    // --- switching; results as OrvNotify and OrvStopNotify give them ---

    ORV_RCODE Add(ORV_NOTIFY id, ULONG reserved);
    ORV_RCODE Remove(ORV_NOTIFY id, ULONG reserved);
    // Forgets every enabled identifier, the pending OMA-DM sessions and the client's callback.
    void RemoveAll();
    // Whether the identifier's source is active.
    bool IsActive(ORV_NOTIFY id);

    void DisableOnSuspend();
    void EnableOnResume();

    // --- the client ---

    void RegisterClient(OrvNotifyCallback callback, COrvGobiDll* gobi);
    void DeregisterClient();
    OrvNotifyCallback ClientCallback() const { return m_callback; }
    COrvGobiDll* Gobi() const { return m_pGobi; }

    // The identifier of the pending OMA-DM session of a class (1 device configuration, 2 PRL update), or 0.
    WORD PendingOmaDm(ULONG session_class);
    // Other classes are ignored.
    void SetPendingOmaDm(ULONG session_class, WORD session_id);

    // --- dispatch; the caller holds the API-wide lock ---

    // Whether an event of `source` has anybody to go to; logs why not.
    bool Admit(NotifySource source) const;
    // Hands each enabled identifier of the source to `event.Fill(record, item)`, an Outcome, with a cleared record that
    // has no size yet, and delivers what it fills. The client may enable, disable and register from within its
    // callback.
    template <class Event>
    void Walk(NotifySource source, Event& event)
    {
        WalkItems(source, &event, [](void* context, OrvNotifyRecord& record, const szNotifyItem& item) {
            return static_cast<Event*>(context)->Fill(record, item);
        });
    }

private:
    enum class Mode { Disable = 0, Enable = 1, Query = 2 };
    struct Bookkeeping {
        const NotifyRow* row = nullptr; // null: the identifier is not supported
        bool tell_modem = false;
        bool active = false; // Query only
    };
    using Fill = Outcome (*)(void* event, OrvNotifyRecord& record, const szNotifyItem& item);

    Bookkeeping Keep(ORV_NOTIFY id, Mode mode);
    ORV_RCODE Switch(ORV_NOTIFY id, Mode mode);
    void SwitchSuspendList(bool on);
    bool EnableItem(const NotifyRow& row);
    bool DisableItem(const NotifyRow& row);
    void Clear();
    szCallbackItem* Find(NotifySource source);
    const szCallbackItem* Find(NotifySource source) const;
    static szNotifyItem* FindItem(szCallbackItem& callback_item, ORV_NOTIFY id);
    void WalkItems(NotifySource source, void* event, Fill fill);

    szCallbackItem m_callbackList[kNotifySourceCount] = {}; // in the order of first enabling
    BYTE m_callbackCount = 0;
    WORD m_pendingOmaDm[2] = {}; // by class - 1
    Shared<OrvNotifyCallback> m_callback;
    Shared<COrvGobiDll*> m_pGobi;
};

// The one registry, and the pointer to it that its constructor sets.
extern COrvNotify g_OrvNotify;
extern Shared<COrvNotify*> g_pOrvNotify;
