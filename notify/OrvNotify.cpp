#include "notify/OrvNotify.h"

#include "api/OrvError.h"
#include "notify/adapters.h"
#include "notify/record.h"
#include "state/globals.h"
#include "state/sync_block.h"
#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\OrvNotify.cpp");

constexpr ULONG kUnsupportedStatus = 1025;

// What is switched off in the module while the device sleeps.
constexpr ORV_NOTIFY kSuspendList[] = {ORV_NOTIFY_SignalStrength, ORV_NOTIFY_RFInfo, ORV_NOTIFY_CdmaRoaming};

const NotifyRow* FindRow(ORV_NOTIFY id)
{
    for (const NotifyRow& row : kNotifyRows)
        if (row.id == id) return &row;
    return nullptr;
}

template <class Element>
void EraseAt(Element* elements, BYTE* count, Element* gone)
{
    --*count;
    for (Element* element = gone; element != elements + *count; ++element)
        *element = element[1];
}

} // namespace

Shared<COrvNotify*> g_pOrvNotify;

COrvNotify::COrvNotify() { Clear(); }

// Without the lock, which is destroyed before the registry.
COrvNotify::~COrvNotify() { Clear(); }

void COrvNotify::Clear()
{
    m_callbackCount = 0;
    m_pendingOmaDm[0] = m_pendingOmaDm[1] = 0;
    m_callback = nullptr;
    g_pOrvNotify = this;
}

void COrvNotify::RemoveAll()
{
    const OrvSyncGuard guard;
    Clear();
}

// --- bookkeeping
// ------------------------------------------------------------------------------------------------------

szCallbackItem* COrvNotify::Find(NotifySource source)
{
    for (BYTE i = 0; i < m_callbackCount; ++i)
        if (m_callbackList[i].source == source) return &m_callbackList[i];
    return nullptr;
}

const szCallbackItem* COrvNotify::Find(NotifySource source) const
{
    return const_cast<COrvNotify*>(this)->Find(source);
}

szNotifyItem* COrvNotify::FindItem(szCallbackItem& callback_item, ORV_NOTIFY id)
{
    for (BYTE i = 0; i < callback_item.count; ++i)
        if (callback_item.items[i].aNotify == id) return &callback_item.items[i];
    return nullptr;
}

// Returns whether the modem must be told: only for the first identifier of a source.
bool COrvNotify::EnableItem(const NotifyRow& row)
{
    szCallbackItem* active = Find(row.source);
    const bool first = active == nullptr;
    if (first) {
        active = &m_callbackList[m_callbackCount++];
        active->source = row.source;
        active->count = 0;
    }
    if (szNotifyItem* item = FindItem(*active, row.id))
        ++item->dwCount;
    else
        active->items[active->count++] = {row.id, 1};
    return first;
}

// Returns whether the modem must be told: when the last identifier of a source goes, or the source was never active.
bool COrvNotify::DisableItem(const NotifyRow& row)
{
    szCallbackItem* active = Find(row.source);
    if (!active) {
        LOG_C("OrvNotify = %d has never been enabled yet. Stop notification with modem anyway", row.id);
        return true;
    }
    bool bLastCountForNotifyItem = false;
    if (szNotifyItem* item = FindItem(*active, row.id)) {
        bLastCountForNotifyItem = --item->dwCount == 0;
        EraseAt(active->items, &active->count, item); // one disabling ends it, however often it was enabled
    }
    if (active->count != 0) return false;
    TBD_ASSERT(bLastCountForNotifyItem, "ASSERTION FAILURE: ===>bLastCountForNotifyItem == TRUE");
    EraseAt(m_callbackList, &m_callbackCount, active);
    return true;
}

COrvNotify::Bookkeeping COrvNotify::Keep(ORV_NOTIFY id, Mode mode)
{
    Bookkeeping result;
    const OrvSyncGuard guard;
    result.row = FindRow(id);
    if (!result.row) return result;
    if (mode == Mode::Query) result.active = Find(result.row->source) != nullptr;
    if (mode == Mode::Enable) result.tell_modem = EnableItem(*result.row);
    if (mode == Mode::Disable) result.tell_modem = DisableItem(*result.row);
    return result;
}

bool COrvNotify::IsActive(ORV_NOTIFY id) { return Keep(id, Mode::Query).active; }

// --- switching
// --------------------------------------------------------------------------------------------------------

ORV_RCODE COrvNotify::Switch(ORV_NOTIFY id, Mode mode)
{
    const bool on = mode == Mode::Enable;
    const Bookkeeping kept = Keep(id, mode);
    if (!kept.row) {
        LOG_C("ORV_NOTIFY = %d is NOT supported", id);
        return ConvertGobiError2OrvRcode(kUnsupportedStatus);
    }
    ULONG status = 0;
    if (kept.tell_modem) {
        const SourceActions& actions = ActionsOf(kept.row->source);
        if (kept.row->direct)
            status = kept.row->direct(on ? actions.adapter : nullptr);
        else if (on && actions.enable)
            status = actions.enable(id);
        else if (!on && actions.disable)
            status = actions.disable();
        else if (on)
            LOG_C("ORV_NOTIFY = %d is supported but don't know how to alert the modem yet", id);
        else
            LOG_C("ORV_NOTIFY = %d supported but not sure how to handle yet", id);
    }
    return ConvertGobiError2OrvRcode(status);
}

ORV_RCODE COrvNotify::Add(ORV_NOTIFY id, ULONG) { return Switch(id, Mode::Enable); }

ORV_RCODE COrvNotify::Remove(ORV_NOTIFY id, ULONG) { return Switch(id, Mode::Disable); }

// Switches the reporting of the suspend list's sources in the module; the bookkeeping stays as it is.
void COrvNotify::SwitchSuspendList(bool on)
{
    for (const ORV_NOTIFY id : kSuspendList) {
        const Bookkeeping kept = Keep(id, Mode::Query);
        if (!kept.active) {
            LOG_C("Couldn't find OrvNotify = %d in the callbacklist", id);
            continue;
        }
        const SourceActions& actions = ActionsOf(kept.row->source);
        ULONG (*const action)() = on ? actions.resume : actions.suspend;
        ULONG status = 0;
        if (kept.row->direct)
            status = kept.row->direct(on ? actions.adapter : nullptr);
        else if (action)
            status = action();
        else if (on)
            LOG_C("ORV_NOTIFY = %d supported but not to be enable on resume", id);
        else
            LOG_C("ORV_NOTIFY = %d supported but not to be disable on suspend", id);
        if (status != 0 && on) LOG_C("Fail to enable callback for theNotify = %d with setCBResult = %d", id, status);
        if (status != 0 && !on) LOG_C("Fail to disable callback for theNotify = %d with setCBResult = %d", id, status);
    }
}

void COrvNotify::DisableOnSuspend() { SwitchSuspendList(false); }

void COrvNotify::EnableOnResume()
{
    SwitchSuspendList(true);
    DispatchLastSignalStrength();
}

// --- the client
// -------------------------------------------------------------------------------------------------------

void COrvNotify::RegisterClient(OrvNotifyCallback callback, COrvGobiDll* gobi)
{
    const OrvSyncGuard guard;
    m_pGobi = gobi;
    m_callback = callback;
    g_ClientCallback = callback;
}

void COrvNotify::DeregisterClient()
{
    const OrvSyncGuard guard;
    m_callback = nullptr;
    m_pGobi = nullptr;
    g_ClientCallback = nullptr;
}

WORD COrvNotify::PendingOmaDm(ULONG session_class)
{
    const OrvSyncGuard guard;
    return session_class == 1 || session_class == 2 ? m_pendingOmaDm[session_class - 1] : static_cast<WORD>(0);
}

void COrvNotify::SetPendingOmaDm(ULONG session_class, WORD session_id)
{
    const OrvSyncGuard guard;
    if (session_class == 1 || session_class == 2) m_pendingOmaDm[session_class - 1] = session_id;
}

// --- dispatch
// ---------------------------------------------------------------------------------------------------------

bool COrvNotify::Admit(NotifySource source) const
{
    if (m_callbackCount != 0 && !m_pGobi.Load()) {
        LOG_C("m_pGobi is NULL. RETURN!!");
        return false;
    }
    if (Find(source)) return true;
    LOG_C("CallbackList of notification is empty. Suppress the notification");
    return false;
}

void COrvNotify::WalkItems(NotifySource source, void* event, Fill fill)
{
    const szCallbackItem* active = Find(source);
    if (!active) return;
    // A copy: the client may change the list from within its callback.
    const szCallbackItem snapshot = *active;
    OrvNotifyRecord record;
    for (BYTE i = 0; i < snapshot.count; ++i) {
        const szNotifyItem& item = snapshot.items[i];
        szCallbackItem* still_active = Find(source);
        if (!still_active || !FindItem(*still_active, item.aNotify)) continue;
        BeginRecord(record, item.aNotify, 0);
        const Outcome outcome = fill(event, record, item);
        if (outcome == Outcome::Deliver || outcome == Outcome::DeliverAndStop)
            if (const OrvNotifyCallback callback = m_callback) callback(&record);
        if (outcome == Outcome::Stop || outcome == Outcome::DeliverAndStop) return;
    }
}
