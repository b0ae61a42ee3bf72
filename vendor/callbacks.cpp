// Registration of the module's events.

#include "vendor/forward.h"
#include "vendor/loaded.h"

GobiSetSessionState COrvGobiDll::mpFNSetSessionStateCB;
GobiSetDataBearer COrvGobiDll::mpFNSetDataBearerCB;
GobiSetDormancyStatus COrvGobiDll::mpFNSetDormancyStatusCB;
GobiSetMobileIPStatus COrvGobiDll::mpFNSetMobileIPStatusCB;
GobiSetActivationStatus COrvGobiDll::mpFNSetActivationStatusCB;
GobiSetPower COrvGobiDll::mpFNSetPowerCB;
GobiSetRoamingIndicator COrvGobiDll::mpFNSetRoamingIndicatorCB;
GobiSetSignalStrength COrvGobiDll::mpFNSetSignalStrengthCB;
GobiSetRFInfo COrvGobiDll::mpFNSetRFInfoCB;
GobiSetNewSMS COrvGobiDll::mpFNSetNewSMSCB;
GobiSetNewSMSCB COrvGobiDll::mpFNSetNewSMSCBCB;
GobiSetMsgWaiting COrvGobiDll::mpFNSetVoiceMsgCB;
GobiSetDataCapabilities COrvGobiDll::mpFNSetDataCapabilitiesCB;
GobiSetByteTotals COrvGobiDll::mpFNSetByteTotalsCB;
GobiSetOMADMState COrvGobiDll::mpFNSetOMADMStateCB;
GobiSetOMADMAlert COrvGobiDll::mpFNSetOMADMNIAlertCB;
GobiSetCallInfo COrvGobiDll::mpFNSetCallInfoCB;
GobiSetInfoRec COrvGobiDll::mpFNSetInfoRecCB;
GobiSetUSSD COrvGobiDll::mpFNSetUSSDInfoCB;
GobiSetPhonebookRecordRead COrvGobiDll::mpFNSetPhonebookRecordReadCB;
GobiSetAllPhonebookInitDone COrvGobiDll::mpFNSetAllPbInitDoneCB;
GobiSetEmergencyList COrvGobiDll::mpFNSetEmergencyListCB;
GobiSetNetworkTime COrvGobiDll::mpFNSetNITZCB;
GobiSetSystemSelectionPref COrvGobiDll::mpFNSetEmergencyModeCB;
GobiSetOMAEXEvent COrvGobiDll::mpFNSetOMAEXEventCB;

ULONG COrvGobiDll::SetSessionStateCB(GobiSessionStateCallback callback)
{
    if (!mpFNSetSessionStateCB) return kEntryPointMissing;
    const ULONG status = mpFNSetSessionStateCB(callback);
    if (status != 0)
        LOG_C("Calling mpFNSetSessionStateCB = 0x%x return status = %d", Low32(mpFNSetSessionStateCB), status);
    return status;
}

ULONG COrvGobiDll::SetDataBearerCB(GobiDataBearerCallback callback) { return Forward(mpFNSetDataBearerCB, callback); }

ULONG COrvGobiDll::SetDormancyStatusCB(GobiDormancyStatusCallback callback)
{
    return Forward(mpFNSetDormancyStatusCB, callback);
}

ULONG COrvGobiDll::SetMobileIPStatusCB(GobiMobileIPStatusCallback callback)
{
    return Forward(mpFNSetMobileIPStatusCB, callback);
}

ULONG COrvGobiDll::SetActivationStatusCB(GobiActivationStatusCallback callback)
{
    return Forward(mpFNSetActivationStatusCB, callback);
}

ULONG COrvGobiDll::SetPowerCB(GobiPowerCallback callback) { return Forward(mpFNSetPowerCB, callback); }

ULONG COrvGobiDll::SetRoamingIndicatorCB(GobiRoamingIndicatorCallback callback)
{
    return Forward(mpFNSetRoamingIndicatorCB, callback);
}

ULONG COrvGobiDll::SetSignalStrengthCB(GobiSignalStrengthCallback callback, BYTE count, ORV_INT8* thresholds)
{
    return Forward(mpFNSetSignalStrengthCB, callback, count, thresholds);
}

ULONG COrvGobiDll::SetRFInfoCB(GobiRFInfoCallback callback) { return Forward(mpFNSetRFInfoCB, callback); }

ULONG COrvGobiDll::SetNewSMSCB(GobiNewSMSCallback callback) { return Forward(mpFNSetNewSMSCB, callback); }

ULONG COrvGobiDll::SetNewSMSCBCB(GobiNewSMSCBCallback callback) { return Forward(mpFNSetNewSMSCBCB, callback); }

ULONG COrvGobiDll::SetVoiceMessageCB(GobiMsgWaitingCallback callback)
{
    const ULONG status = Forward(mpFNSetVoiceMsgCB, callback);
    LOG_C("SetVoiceMessageCB %d", status);
    return status;
}

ULONG COrvGobiDll::SetDataCapsCB(GobiDataCapabilitiesCallback callback)
{
    return Forward(mpFNSetDataCapabilitiesCB, callback);
}

ULONG COrvGobiDll::SetByteTotalsCB(GobiByteTotalsCallback callback, BYTE interval)
{
    return Forward(mpFNSetByteTotalsCB, callback, interval);
}

ULONG COrvGobiDll::SetOMADMStateCB(GobiOMADMStateCallback callback) { return Forward(mpFNSetOMADMStateCB, callback); }

ULONG COrvGobiDll::SetOMADMAlertCB(GobiOMADMAlertCallback callback) { return Forward(mpFNSetOMADMNIAlertCB, callback); }

ULONG COrvGobiDll::SetCallInfoCB(GobiCallInfoCallback callback) { return Forward(mpFNSetCallInfoCB, callback); }

ULONG COrvGobiDll::SetInfoRecCB(GobiInfoRecCallback callback) { return Forward(mpFNSetInfoRecCB, callback); }

ULONG COrvGobiDll::SetUSSDInfoCB(GobiUSSDCallback callback) { return Forward(mpFNSetUSSDInfoCB, callback); }

ULONG COrvGobiDll::SetPhonebookRecordReadCB(GobiPhonebookRecordReadCallback callback)
{
    return Forward(mpFNSetPhonebookRecordReadCB, callback);
}

ULONG COrvGobiDll::SetAllPbInitDoneCB(GobiAllPhonebookInitDoneCallback callback)
{
    if (!mpFNSetAllPbInitDoneCB) LOG_C("mpFNSetAllPbInitDoneCB is NULL!");
    return Forward(mpFNSetAllPbInitDoneCB, callback);
}

ULONG COrvGobiDll::SetEmergencyListCB(GobiEmergencyListCallback callback)
{
    // The member outlives the library that it points into, so it counts as null while none is loaded.
    const GobiSetEmergencyList entry = GobiLibraryIsLoaded() ? mpFNSetEmergencyListCB : nullptr;
    if (!entry) LOG_C("mpFNSetEmergencyListCB is NULL!");
    return Forward(entry, callback);
}

ULONG COrvGobiDll::SetNITZCB(GobiNetworkTimeCallback callback) { return Forward(mpFNSetNITZCB, callback); }

ULONG COrvGobiDll::SetEmergencyModeCB(GobiSystemSelectionPrefCallback callback)
{
    return Forward(mpFNSetEmergencyModeCB, callback);
}

ULONG COrvGobiDll::SetOMAEXEventCB(GobiOMAEXEventCallback callback)
{
    if (!mpFNSetOMAEXEventCB) LOG_C("mpFNSetOMAEXEventCB is NULL!");
    return Forward(mpFNSetOMAEXEventCB, callback);
}

ULONG COrvGobiDll::SetDeviceRemovalCallback(GobiDeviceRemovalCallback callback)
{
    if (!m_entry.OrvSetDeviceRemovalCallback) return kEntryPointMissing;
    const ULONG status = m_entry.OrvSetDeviceRemovalCallback(callback);
    if (status != 0) LOG_C("SetDeviceRemovalCallback returns status = %d", status);
    return status;
}

void COrvGobiDll::DisableCallbacks()
{
    if (!m_hLibrary) return; // what the static members hold may belong to a library that is gone
    Forward(mpFNSetSessionStateCB, GobiSessionStateCallback());
    Forward(mpFNSetDataBearerCB, GobiDataBearerCallback());
    Forward(mpFNSetDormancyStatusCB, GobiDormancyStatusCallback());
    Forward(mpFNSetMobileIPStatusCB, GobiMobileIPStatusCallback());
    Forward(mpFNSetActivationStatusCB, GobiActivationStatusCallback());
    Forward(mpFNSetPowerCB, GobiPowerCallback());
    Forward(mpFNSetRoamingIndicatorCB, GobiRoamingIndicatorCallback());
    Forward(mpFNSetSignalStrengthCB, GobiSignalStrengthCallback(), BYTE(), static_cast<ORV_INT8*>(nullptr));
    Forward(mpFNSetRFInfoCB, GobiRFInfoCallback());
    Forward(mpFNSetNewSMSCB, GobiNewSMSCallback());
    Forward(mpFNSetNewSMSCBCB, GobiNewSMSCBCallback());
    Forward(mpFNSetVoiceMsgCB, GobiMsgWaitingCallback());
    Forward(mpFNSetPhonebookRecordReadCB, GobiPhonebookRecordReadCallback());
    Forward(mpFNSetNITZCB, GobiNetworkTimeCallback());
    Forward(mpFNSetEmergencyModeCB, GobiSystemSelectionPrefCallback());
    Forward(mpFNSetDataCapabilitiesCB, GobiDataCapabilitiesCallback());
    Forward(mpFNSetByteTotalsCB, GobiByteTotalsCallback(), BYTE());
    Forward(mpFNSetOMADMStateCB, GobiOMADMStateCallback());
    Forward(mpFNSetOMADMNIAlertCB, GobiOMADMAlertCallback());
    Forward(mpFNSetCallInfoCB, GobiCallInfoCallback());
    Forward(mpFNSetInfoRecCB, GobiInfoRecCallback());
    Forward(mpFNSetUSSDInfoCB, GobiUSSDCallback());
    Forward(mpFNSetAllPbInitDoneCB, GobiAllPhonebookInitDoneCallback());
    Forward(mpFNSetEmergencyListCB, GobiEmergencyListCallback());
    Forward(mpFNSetOMAEXEventCB, GobiOMAEXEventCallback());
}
