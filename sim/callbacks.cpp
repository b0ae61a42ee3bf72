// The entry points that register a callback. They keep it whether or not a module is connected, as long as no fault
// rule says otherwise.
#include "sim/call.h"
#include "sim/reset.h"

namespace sim {

template <class Callback, class... Arguments>
static ULONG Register(EntryPoint entry, Callback callback, const Arguments&... arguments)
{
    Call call(entry, CallbackArgument{callback != nullptr}, arguments...);
    if (const ULONG fault = call.Fault()) return fault;
    const bool keeps = !callback && TheModule().connection.sticky_callbacks;
    if (!keeps) TheModule().callbacks[static_cast<ULONG>(entry)] = reinterpret_cast<void (*)()>(callback);
    return call.Done();
}

} // namespace sim

using namespace sim;

extern "C" ULONG SetSessionStateCallback(GobiSessionStateCallback f)
{
    return Register(EntryPoint::SetSessionStateCallback, f);
}
extern "C" ULONG SetDataBearerCallback(GobiDataBearerCallback f)
{
    return Register(EntryPoint::SetDataBearerCallback, f);
}
extern "C" ULONG SetDormancyStatusCallback(GobiDormancyStatusCallback f)
{
    return Register(EntryPoint::SetDormancyStatusCallback, f);
}
extern "C" ULONG SetMobileIPStatusCallback(GobiMobileIPStatusCallback f)
{
    return Register(EntryPoint::SetMobileIPStatusCallback, f);
}
extern "C" ULONG SetActivationStatusCallback(GobiActivationStatusCallback f)
{
    return Register(EntryPoint::SetActivationStatusCallback, f);
}
extern "C" ULONG SetPowerCallback(GobiPowerCallback f) { return Register(EntryPoint::SetPowerCallback, f); }
extern "C" ULONG SetRoamingIndicatorCallback(GobiRoamingIndicatorCallback f)
{
    return Register(EntryPoint::SetRoamingIndicatorCallback, f);
}
extern "C" ULONG SetSignalStrengthCallback(GobiSignalStrengthCallback f, BYTE count, ORV_INT8* thresholds)
{
    return Register(EntryPoint::SetSignalStrengthCallback, f, count, ArrayArgument<ORV_INT8>{thresholds, count});
}
extern "C" ULONG SetRFInfoCallback(GobiRFInfoCallback f) { return Register(EntryPoint::SetRFInfoCallback, f); }
extern "C" ULONG SetNewSMSCallback(GobiNewSMSCallback f) { return Register(EntryPoint::SetNewSMSCallback, f); }
extern "C" ULONG SetNewSMSCBCallback(GobiNewSMSCBCallback f) { return Register(EntryPoint::SetNewSMSCBCallback, f); }
extern "C" ULONG SetMsgWaitingCallback(GobiMsgWaitingCallback f)
{
    return Register(EntryPoint::SetMsgWaitingCallback, f);
}
extern "C" ULONG SetDataCapabilitiesCallback(GobiDataCapabilitiesCallback f)
{
    return Register(EntryPoint::SetDataCapabilitiesCallback, f);
}
extern "C" ULONG SetByteTotalsCallback(GobiByteTotalsCallback f, BYTE interval)
{
    const ULONG status = Register(EntryPoint::SetByteTotalsCallback, f, interval);
    if (status == kSuccess) {
        Guard guard;
        ReportEvery(f ? interval : 0);
    }
    return status;
}
extern "C" ULONG SetOMADMStateCallback(GobiOMADMStateCallback f)
{
    return Register(EntryPoint::SetOMADMStateCallback, f);
}
extern "C" ULONG SetOMADMAlertCallback(GobiOMADMAlertCallback f)
{
    return Register(EntryPoint::SetOMADMAlertCallback, f);
}
extern "C" ULONG SetCallInfoCallback(GobiCallInfoCallback f) { return Register(EntryPoint::SetCallInfoCallback, f); }
extern "C" ULONG SetInfoRecCallback(GobiInfoRecCallback f) { return Register(EntryPoint::SetInfoRecCallback, f); }
extern "C" ULONG SetUSSDNotificationCallback(GobiUSSDCallback f)
{
    return Register(EntryPoint::SetUSSDNotificationCallback, f);
}
extern "C" ULONG SetPhonebookRecordReadCallback(GobiPhonebookRecordReadCallback f)
{
    return Register(EntryPoint::SetPhonebookRecordReadCallback, f);
}
extern "C" ULONG SetAllPhonebookInitDoneCallback(GobiAllPhonebookInitDoneCallback f)
{
    return Register(EntryPoint::SetAllPhonebookInitDoneCallback, f);
}
extern "C" ULONG SetEmergencyListCallback(GobiEmergencyListCallback f)
{
    return Register(EntryPoint::SetEmergencyListCallback, f);
}
extern "C" ULONG SetNetworkTimeCallback(GobiNetworkTimeCallback f)
{
    return Register(EntryPoint::SetNetworkTimeCallback, f);
}
extern "C" ULONG SetSystemSelectionPrefCallback(GobiSystemSelectionPrefCallback f)
{
    return Register(EntryPoint::SetSystemSelectionPrefCallback, f);
}
extern "C" ULONG SetORVOMAEXEventCallback(GobiOMAEXEventCallback f)
{
    return Register(EntryPoint::SetORVOMAEXEventCallback, f);
}
extern "C" ULONG OrvSetDeviceRemovalCallback(GobiDeviceRemovalCallback f)
{
    return Register(EntryPoint::OrvSetDeviceRemovalCallback, f);
}
