// The client's callback, and which notifications it gets.

#include "api/admission.h"
#include "notify/OrvNotify.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEK.cpp");

} // namespace

ORV_RCODE ORV_CALL OrvRegisterCallback(OrvNotifyCallback callback, ULONGLONG filter)
{
    LOG_C("OrvRegisterCallback");
    LOG_C("handle: 0x%x filter: 0x%8.8x%8.8x", static_cast<ULONG>(reinterpret_cast<uintptr_t>(callback)),
          static_cast<ULONG>(filter >> 32), static_cast<ULONG>(filter));
    if (!callback) return ORV_RCODE_BAD_PARAMETER;
    g_OrvNotify.RegisterClient(callback, &Gobi());
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvDeRegisterCallback(OrvNotifyCallback)
{
    LOG_C("OrvDeRegisterCallback");
    g_OrvNotify.DeregisterClient();
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvNotify(ORV_NOTIFY id, ULONG reserved)
{
    if (const ORV_RCODE refused = RequireAvailable()) return refused;
    return g_OrvNotify.Add(id, reserved);
}

ORV_RCODE ORV_CALL OrvStopNotify(ORV_NOTIFY id, ULONG reserved)
{
    if (const ORV_RCODE refused = RequireAvailable()) return refused;
    return g_OrvNotify.Remove(id, reserved);
}
