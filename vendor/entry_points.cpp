#include "vendor/entry_points.h"

namespace {

constexpr Lookup InstanceField(const WCHAR* name, size_t offset) { return {name, offset, nullptr}; }

template <auto Member>
void SetStatic(FARPROC address)
{
    memcpy(Member, &address, sizeof *Member);
}

template <auto Member>
constexpr Lookup StaticMember(const WCHAR* name)
{
    return {name, kStaticMember, &SetStatic<Member>};
}

} // namespace

constexpr Lookup kLookups[] = {
    InstanceField(TXT("GetCellLocationInfo"), offsetof(GobiEntryPoints, GetCellLocationInfo)),
    InstanceField(TXT("GetRTREConfig"), offsetof(GobiEntryPoints, GetRTREConfig)),
    InstanceField(TXT("GetWaitingMsgInfo"), offsetof(GobiEntryPoints, GetWaitingMsgInfo)),
    InstanceField(TXT("AudioSetProfile"), offsetof(GobiEntryPoints, AudioSetProfile)),
    InstanceField(TXT("AudioGetProfile"), offsetof(GobiEntryPoints, AudioGetProfile)),
    InstanceField(TXT("AudioSetVolTLBConfig"), offsetof(GobiEntryPoints, AudioSetVolTLBConfig)),
    InstanceField(TXT("AudioPlayAudioTone"), offsetof(GobiEntryPoints, AudioPlayAudioTone)),
    InstanceField(TXT("AudioSetAudioPath"), offsetof(GobiEntryPoints, AudioSetAudioPath)),
    InstanceField(TXT("AudioGetPathByte"), offsetof(GobiEntryPoints, AudioGetPathByte)),
    InstanceField(TXT("AudioGetPathWord"), offsetof(GobiEntryPoints, AudioGetPathWord)),
    InstanceField(TXT("AudioGetPathPCMFilter"), offsetof(GobiEntryPoints, AudioGetPathPCMFilter)),
    InstanceField(TXT("OrigUSSD"), offsetof(GobiEntryPoints, OrigUSSD)),
    InstanceField(TXT("AnsUSSD"), offsetof(GobiEntryPoints, AnsUSSD)),
    InstanceField(TXT("AbortsUSSD"), offsetof(GobiEntryPoints, AbortsUSSD)),
    InstanceField(TXT("SetCallBarringPassword"), offsetof(GobiEntryPoints, SetCallBarringPassword)),
    InstanceField(TXT("GetImagesPreference"), offsetof(GobiEntryPoints, GetImagesPreference)),
    InstanceField(TXT("SetImagesPreference"), offsetof(GobiEntryPoints, SetImagesPreference)),
    InstanceField(TXT("DialCall"), offsetof(GobiEntryPoints, DialCall)),
    InstanceField(TXT("AnswerCall"), offsetof(GobiEntryPoints, AnswerCall)),
    InstanceField(TXT("EndCall"), offsetof(GobiEntryPoints, EndCall)),
    StaticMember<&COrvGobiDll::mpFNSetCallInfoCB>(TXT("SetCallInfoCallback")),
    StaticMember<&COrvGobiDll::mpFNSetInfoRecCB>(TXT("SetInfoRecCallback")),
    StaticMember<&COrvGobiDll::mpFNSetUSSDInfoCB>(TXT("SetUSSDNotificationCallback")),
    StaticMember<&COrvGobiDll::mpFNSetAllPbInitDoneCB>(TXT("SetAllPhonebookInitDoneCallback")),
    StaticMember<&COrvGobiDll::mpFNSetEmergencyListCB>(TXT("SetEmergencyListCallback")),
    StaticMember<&COrvGobiDll::mpFNSetOMAEXEventCB>(TXT("SetORVOMAEXEventCallback")),
    InstanceField(TXT("ManageCalls"), offsetof(GobiEntryPoints, ManageCalls)),
    InstanceField(TXT("GetCallBarring"), offsetof(GobiEntryPoints, GetCallBarring)),
    InstanceField(TXT("SetSupsService"), offsetof(GobiEntryPoints, SetSupsService)),
    InstanceField(TXT("GetCLIR"), offsetof(GobiEntryPoints, GetCLIR)),
    InstanceField(TXT("GetCallForwarding"), offsetof(GobiEntryPoints, GetCallForwarding)),
    InstanceField(TXT("GetCallWaiting"), offsetof(GobiEntryPoints, GetCallWaiting)),
    InstanceField(TXT("GetAllCallInfo"), offsetof(GobiEntryPoints, GetAllCallInfo)),
    InstanceField(TXT("SendFlash"), offsetof(GobiEntryPoints, SendFlash)),
    InstanceField(TXT("StartContDTMF"), offsetof(GobiEntryPoints, StartContDTMF)),
    InstanceField(TXT("StopContDTMF"), offsetof(GobiEntryPoints, StopContDTMF)),
    InstanceField(TXT("QCWWANConnect"), offsetof(GobiEntryPoints, QCWWANConnect)),
    InstanceField(TXT("QCWWANDisconnect"), offsetof(GobiEntryPoints, QCWWANDisconnect)),
    InstanceField(TXT("QCWWANGetConnectedDeviceID"), offsetof(GobiEntryPoints, QCWWANGetConnectedDeviceID)),
    InstanceField(TXT("GetFirmwareRevision"), offsetof(GobiEntryPoints, GetFirmwareRevision)),
    InstanceField(TXT("GetFirmwareInfo"), offsetof(GobiEntryPoints, GetFirmwareInfo)),
    InstanceField(TXT("OrvGetCwePkgsInfo"), offsetof(GobiEntryPoints, OrvGetCwePkgsInfo)),
    StaticMember<&COrvGobiDll::mpFNSetSessionStateCB>(TXT("SetSessionStateCallback")),
    StaticMember<&COrvGobiDll::mpFNSetDataBearerCB>(TXT("SetDataBearerCallback")),
    StaticMember<&COrvGobiDll::mpFNSetDormancyStatusCB>(TXT("SetDormancyStatusCallback")),
    StaticMember<&COrvGobiDll::mpFNSetMobileIPStatusCB>(TXT("SetMobileIPStatusCallback")),
    StaticMember<&COrvGobiDll::mpFNSetActivationStatusCB>(TXT("SetActivationStatusCallback")),
    StaticMember<&COrvGobiDll::mpFNSetPowerCB>(TXT("SetPowerCallback")),
    StaticMember<&COrvGobiDll::mpFNSetRoamingIndicatorCB>(TXT("SetRoamingIndicatorCallback")),
    StaticMember<&COrvGobiDll::mpFNSetSignalStrengthCB>(TXT("SetSignalStrengthCallback")),
    StaticMember<&COrvGobiDll::mpFNSetRFInfoCB>(TXT("SetRFInfoCallback")),
    StaticMember<&COrvGobiDll::mpFNSetNewSMSCB>(TXT("SetNewSMSCallback")),
    StaticMember<&COrvGobiDll::mpFNSetNewSMSCBCB>(TXT("SetNewSMSCBCallback")),
    StaticMember<&COrvGobiDll::mpFNSetVoiceMsgCB>(TXT("SetMsgWaitingCallback")),
    StaticMember<&COrvGobiDll::mpFNSetPhonebookRecordReadCB>(TXT("SetPhonebookRecordReadCallback")),
    StaticMember<&COrvGobiDll::mpFNSetNITZCB>(TXT("SetNetworkTimeCallback")),
    StaticMember<&COrvGobiDll::mpFNSetEmergencyModeCB>(TXT("SetSystemSelectionPrefCallback")),
    StaticMember<&COrvGobiDll::mpFNSetDataCapabilitiesCB>(TXT("SetDataCapabilitiesCallback")),
    StaticMember<&COrvGobiDll::mpFNSetByteTotalsCB>(TXT("SetByteTotalsCallback")),
    StaticMember<&COrvGobiDll::mpFNSetOMADMStateCB>(TXT("SetOMADMStateCallback")),
    StaticMember<&COrvGobiDll::mpFNSetOMADMNIAlertCB>(TXT("SetOMADMAlertCallback")),
    InstanceField(TXT("StartDataSession2"), offsetof(GobiEntryPoints, StartDataSession2)),
    InstanceField(TXT("StopDataSession"), offsetof(GobiEntryPoints, StopDataSession)),
    InstanceField(TXT("GetIPAddress"), offsetof(GobiEntryPoints, GetIPAddress)),
    InstanceField(TXT("GetPacketStatus"), offsetof(GobiEntryPoints, GetPacketStatus)),
    InstanceField(TXT("SetMobileIP"), offsetof(GobiEntryPoints, SetMobileIP)),
    InstanceField(TXT("GetMobileIP"), offsetof(GobiEntryPoints, GetMobileIP)),
    InstanceField(TXT("SetActiveMobileIPProfile"), offsetof(GobiEntryPoints, SetActiveMobileIPProfile)),
    InstanceField(TXT("GetActiveMobileIPProfile"), offsetof(GobiEntryPoints, GetActiveMobileIPProfile)),
    InstanceField(TXT("SetMobileIPProfile"), offsetof(GobiEntryPoints, SetMobileIPProfile)),
    InstanceField(TXT("GetMobileIPProfile"), offsetof(GobiEntryPoints, GetMobileIPProfile)),
    InstanceField(TXT("SetMobileIPParameters"), offsetof(GobiEntryPoints, SetMobileIPParameters)),
    InstanceField(TXT("GetMobileIPParameters"), offsetof(GobiEntryPoints, GetMobileIPParameters)),
    InstanceField(TXT("GetLastMobileIPError"), offsetof(GobiEntryPoints, GetLastMobileIPError)),
    InstanceField(TXT("GetAutoConnect"), offsetof(GobiEntryPoints, GetAutoConnect)),
    InstanceField(TXT("SetAutoConnect"), offsetof(GobiEntryPoints, SetAutoConnect)),
    InstanceField(TXT("SetDefaultProfile"), offsetof(GobiEntryPoints, SetDefaultProfile)),
    InstanceField(TXT("GetDefaultProfile"), offsetof(GobiEntryPoints, GetDefaultProfile)),
    InstanceField(TXT("GetByteTotals"), offsetof(GobiEntryPoints, GetByteTotals)),
    InstanceField(TXT("GetRFInfo"), offsetof(GobiEntryPoints, GetRFInfo)),
    InstanceField(TXT("PerformNetworkScan"), offsetof(GobiEntryPoints, PerformNetworkScan)),
    InstanceField(TXT("PerformNetworkRATScan"), offsetof(GobiEntryPoints, PerformNetworkRATScan)),
    InstanceField(TXT("InitiateNetworkRegistration"), offsetof(GobiEntryPoints, InitiateNetworkRegistration)),
    InstanceField(TXT("InitiateDomainAttach"), offsetof(GobiEntryPoints, InitiateDomainAttach)),
    InstanceField(TXT("GetNetworkPreference"), offsetof(GobiEntryPoints, GetNetworkPreference)),
    InstanceField(TXT("SetNetworkPreference"), offsetof(GobiEntryPoints, SetNetworkPreference)),
    InstanceField(TXT("SetCDMANetworkParameters"), offsetof(GobiEntryPoints, SetCDMANetworkParameters)),
    InstanceField(TXT("GetCDMANetworkParameters"), offsetof(GobiEntryPoints, GetCDMANetworkParameters)),
    InstanceField(TXT("GetACCOLC"), offsetof(GobiEntryPoints, GetACCOLC)),
    InstanceField(TXT("SetACCOLC"), offsetof(GobiEntryPoints, SetACCOLC)),
    InstanceField(TXT("GetANAAAAuthenticationStatus"), offsetof(GobiEntryPoints, GetANAAAAuthenticationStatus)),
    InstanceField(TXT("GetDeviceCapabilities"), offsetof(GobiEntryPoints, GetDeviceCapabilities)),
    InstanceField(TXT("GetFirmwareRevisions"), offsetof(GobiEntryPoints, GetFirmwareRevisions)),
    InstanceField(TXT("GetPRLVersion"), offsetof(GobiEntryPoints, GetPRLVersion)),
    InstanceField(TXT("Set3Gpp2SubscriptionInfo"), offsetof(GobiEntryPoints, Set3Gpp2SubscriptionInfo)),
    InstanceField(TXT("Get3Gpp2SubscriptionInfo"), offsetof(GobiEntryPoints, Get3Gpp2SubscriptionInfo)),
    InstanceField(TXT("GetERIFile"), offsetof(GobiEntryPoints, GetERIFile)),
    InstanceField(TXT("ActivateManual"), offsetof(GobiEntryPoints, ActivateManual)),
    InstanceField(TXT("GetPower"), offsetof(GobiEntryPoints, GetPower)),
    InstanceField(TXT("GetOfflineReason"), offsetof(GobiEntryPoints, GetOfflineReason)),
    InstanceField(TXT("GetNetworkTime"), offsetof(GobiEntryPoints, GetNetworkTime)),
    InstanceField(TXT("ValidateSPC"), offsetof(GobiEntryPoints, ValidateSPC)),
    InstanceField(TXT("DeleteSMS"), offsetof(GobiEntryPoints, DeleteSMS)),
    InstanceField(TXT("GetSMSList"), offsetof(GobiEntryPoints, GetSMSList)),
    InstanceField(TXT("GetSMS"), offsetof(GobiEntryPoints, GetSMS)),
    InstanceField(TXT("ModifySMSStatus"), offsetof(GobiEntryPoints, ModifySMSStatus)),
    InstanceField(TXT("SaveSMS"), offsetof(GobiEntryPoints, SaveSMS)),
    InstanceField(TXT("SendSMS"), offsetof(GobiEntryPoints, SendSMS)),
    InstanceField(TXT("GetSMSCAddress"), offsetof(GobiEntryPoints, GetSMSCAddress)),
    InstanceField(TXT("SetSMSCAddress"), offsetof(GobiEntryPoints, SetSMSCAddress)),
    InstanceField(TXT("SetSMSProtocol"), offsetof(GobiEntryPoints, SetSMSProtocol)),
    InstanceField(TXT("SetRoutes"), offsetof(GobiEntryPoints, SetRoutes)),
    InstanceField(TXT("SetBroadcastActivation"), offsetof(GobiEntryPoints, SetBroadcastActivation)),
    InstanceField(TXT("DMSUIMSetPINProtection"), offsetof(GobiEntryPoints, DMSUIMSetPINProtection)),
    InstanceField(TXT("DMSUIMVerifyPIN"), offsetof(GobiEntryPoints, DMSUIMVerifyPIN)),
    InstanceField(TXT("DMSUIMUnblockPIN"), offsetof(GobiEntryPoints, DMSUIMUnblockPIN)),
    InstanceField(TXT("DMSUIMChangePIN"), offsetof(GobiEntryPoints, DMSUIMChangePIN)),
    InstanceField(TXT("DMSUIMGetPINStatus"), offsetof(GobiEntryPoints, DMSUIMGetPINStatus)),
    InstanceField(TXT("DMSUIMGetICCID"), offsetof(GobiEntryPoints, DMSUIMGetICCID)),
    InstanceField(TXT("DMSUIMGetControlKeyStatus"), offsetof(GobiEntryPoints, DMSUIMGetControlKeyStatus)),
    InstanceField(TXT("DMSUIMSetControlKeyProtection"), offsetof(GobiEntryPoints, DMSUIMSetControlKeyProtection)),
    InstanceField(TXT("DMSUIMUnblockControlKey"), offsetof(GobiEntryPoints, DMSUIMUnblockControlKey)),
    InstanceField(TXT("UIMGetCardStatus"), offsetof(GobiEntryPoints, UIMGetCardStatus)),
    InstanceField(TXT("UIMVerifyPIN"), offsetof(GobiEntryPoints, UIMVerifyPIN)),
    InstanceField(TXT("UIMUnblockPIN"), offsetof(GobiEntryPoints, UIMUnblockPIN)),
    InstanceField(TXT("UIMSetPINProtection"), offsetof(GobiEntryPoints, UIMSetPINProtection)),
    InstanceField(TXT("UIMChangePIN"), offsetof(GobiEntryPoints, UIMChangePIN)),
    InstanceField(TXT("ResetToFactoryDefaults"), offsetof(GobiEntryPoints, ResetToFactoryDefaults)),
    InstanceField(TXT("GetPDSState"), offsetof(GobiEntryPoints, GetPDSState)),
    InstanceField(TXT("SetPDSState"), offsetof(GobiEntryPoints, SetPDSState)),
    InstanceField(TXT("PDSInjectTimeReference"), offsetof(GobiEntryPoints, PDSInjectTimeReference)),
    InstanceField(TXT("GetPDSDefaults"), offsetof(GobiEntryPoints, GetPDSDefaults)),
    InstanceField(TXT("SetPDSDefaults"), offsetof(GobiEntryPoints, SetPDSDefaults)),
    InstanceField(TXT("GetXTRAAutomaticDownload"), offsetof(GobiEntryPoints, GetXTRAAutomaticDownload)),
    InstanceField(TXT("SetXTRAAutomaticDownload"), offsetof(GobiEntryPoints, SetXTRAAutomaticDownload)),
    InstanceField(TXT("GetXTRANetwork"), offsetof(GobiEntryPoints, GetXTRANetwork)),
    InstanceField(TXT("SetXTRANetwork"), offsetof(GobiEntryPoints, SetXTRANetwork)),
    InstanceField(TXT("GetXTRAValidity"), offsetof(GobiEntryPoints, GetXTRAValidity)),
    InstanceField(TXT("SetXTRAValidity"), offsetof(GobiEntryPoints, SetXTRAValidity)),
    InstanceField(TXT("SetXTRAEmbeddedClient"), offsetof(GobiEntryPoints, SetXTRAEmbeddedClient)),
    InstanceField(TXT("SetNMEAConfig"), offsetof(GobiEntryPoints, SetNMEAConfig)),
    InstanceField(TXT("GetNMEAConfig"), offsetof(GobiEntryPoints, GetNMEAConfig)),
    InstanceField(TXT("ForceXTRADownload"), offsetof(GobiEntryPoints, ForceXTRADownload)),
    InstanceField(TXT("GetAGPSConfig"), offsetof(GobiEntryPoints, GetAGPSConfig)),
    InstanceField(TXT("SetAGPSConfig"), offsetof(GobiEntryPoints, SetAGPSConfig)),
    InstanceField(TXT("GetServiceAutomaticTracking"), offsetof(GobiEntryPoints, GetServiceAutomaticTracking)),
    InstanceField(TXT("SetServiceAutomaticTracking"), offsetof(GobiEntryPoints, SetServiceAutomaticTracking)),
    InstanceField(TXT("GetPortAutomaticTracking"), offsetof(GobiEntryPoints, GetPortAutomaticTracking)),
    InstanceField(TXT("SetPortAutomaticTracking"), offsetof(GobiEntryPoints, SetPortAutomaticTracking)),
    InstanceField(TXT("ResetPDSData"), offsetof(GobiEntryPoints, ResetPDSData)),
    InstanceField(TXT("GetPhonebookCapabilities"), offsetof(GobiEntryPoints, GetPhonebookCapabilities)),
    InstanceField(TXT("ReadPhonebookRecords"), offsetof(GobiEntryPoints, ReadPhonebookRecords)),
    InstanceField(TXT("WritePhonebookRecord"), offsetof(GobiEntryPoints, WritePhonebookRecord)),
    InstanceField(TXT("DeletePhonebookRecord"), offsetof(GobiEntryPoints, DeletePhonebookRecord)),
    InstanceField(TXT("GetSessionState"), offsetof(GobiEntryPoints, GetSessionState)),
    InstanceField(TXT("GetDormancyState"), offsetof(GobiEntryPoints, GetDormancyState)),
    InstanceField(TXT("GetDunCallInfo"), offsetof(GobiEntryPoints, GetDunCallInfo)),
    InstanceField(TXT("GetDataBearerTechnology"), offsetof(GobiEntryPoints, GetDataBearerTechnology)),
    InstanceField(TXT("GetSessionDuration"), offsetof(GobiEntryPoints, GetSessionDuration)),
    InstanceField(TXT("GetSignalStrengths"), offsetof(GobiEntryPoints, GetSignalStrengths)),
    InstanceField(TXT("GetServingNetworkCapabilities"), offsetof(GobiEntryPoints, GetServingNetworkCapabilities)),
    InstanceField(TXT("GetConnectionRate"), offsetof(GobiEntryPoints, GetConnectionRate)),
    InstanceField(TXT("GetServingNetwork"), offsetof(GobiEntryPoints, GetServingNetwork)),
    InstanceField(TXT("GetHomeNetwork"), offsetof(GobiEntryPoints, GetHomeNetwork)),
    InstanceField(TXT("GetManufacturer"), offsetof(GobiEntryPoints, GetManufacturer)),
    InstanceField(TXT("GetModelID"), offsetof(GobiEntryPoints, GetModelID)),
    InstanceField(TXT("GetHardwareRevision"), offsetof(GobiEntryPoints, GetHardwareRevision)),
    InstanceField(TXT("GetVoiceNumber"), offsetof(GobiEntryPoints, GetVoiceNumber)),
    InstanceField(TXT("GetSerialNumbers"), offsetof(GobiEntryPoints, GetSerialNumbers)),
    InstanceField(TXT("UpgradeFirmware2kW"), offsetof(GobiEntryPoints, UpgradeFirmware2kW)),
    InstanceField(TXT("GetImageStoreW"), offsetof(GobiEntryPoints, GetImageStoreW)),
    InstanceField(TXT("GetImageInfoW"), offsetof(GobiEntryPoints, GetImageInfoW)),
    InstanceField(TXT("GetIMSI"), offsetof(GobiEntryPoints, GetIMSI)),
    InstanceField(TXT("OrvSetDeviceRemovalCallback"), offsetof(GobiEntryPoints, OrvSetDeviceRemovalCallback)),
    InstanceField(TXT("SetPower"), offsetof(GobiEntryPoints, SetPower)),
    InstanceField(TXT("ActivateAutomatic"), offsetof(GobiEntryPoints, ActivateAutomatic)),
    InstanceField(TXT("GetActivationState"), offsetof(GobiEntryPoints, GetActivationState)),
    InstanceField(TXT("OMADMGetFeatureSettings"), offsetof(GobiEntryPoints, OMADMGetFeatureSettings)),
    InstanceField(TXT("OMADMGetSessionInfo"), offsetof(GobiEntryPoints, OMADMGetSessionInfo)),
    InstanceField(TXT("OMADMSetProvisioningFeature"), offsetof(GobiEntryPoints, OMADMSetProvisioningFeature)),
    InstanceField(TXT("OMADMSetPRLUpdateFeature"), offsetof(GobiEntryPoints, OMADMSetPRLUpdateFeature)),
    InstanceField(TXT("OMADMStartSession"), offsetof(GobiEntryPoints, OMADMStartSession)),
    InstanceField(TXT("OMADMCancelSession"), offsetof(GobiEntryPoints, OMADMCancelSession)),
    InstanceField(TXT("OMADMGetPendingNIA"), offsetof(GobiEntryPoints, OMADMGetPendingNIA)),
    InstanceField(TXT("OMADMSendSelection"), offsetof(GobiEntryPoints, OMADMSendSelection)),
    InstanceField(TXT("GetIPConfiguration"), offsetof(GobiEntryPoints, GetIPConfiguration)),
    InstanceField(TXT("ORVOMAEXSetEventReport"), offsetof(GobiEntryPoints, ORVOMAEXSetEventReport)),
    InstanceField(TXT("ORVOMAEXSessionStart"), offsetof(GobiEntryPoints, ORVOMAEXSessionStart)),
    InstanceField(TXT("ORVOMAEXSessionCancel"), offsetof(GobiEntryPoints, ORVOMAEXSessionCancel)),
    InstanceField(TXT("ORVOMAEXSelection"), offsetof(GobiEntryPoints, ORVOMAEXSelection)),
    InstanceField(TXT("ORVOMAEXGetSettings"), offsetof(GobiEntryPoints, ORVOMAEXGetSettings)),
    InstanceField(TXT("ORVOMAEXSetSettings"), offsetof(GobiEntryPoints, ORVOMAEXSetSettings)),
    InstanceField(TXT("ORVOMAEXSessionGetInfo"), offsetof(GobiEntryPoints, ORVOMAEXSessionGetInfo)),
    InstanceField(TXT("ORVOMAEXInitApi"), offsetof(GobiEntryPoints, ORVOMAEXInitApi)),
    InstanceField(TXT("ORVOMAEXShutdownApi"), offsetof(GobiEntryPoints, ORVOMAEXShutdownApi)),
    InstanceField(TXT("OrvM2MAV_AudioGetProfile"), offsetof(GobiEntryPoints, OrvM2MAV_AudioGetProfile)),
    InstanceField(TXT("OrvM2MAV_AudioSetProfile"), offsetof(GobiEntryPoints, OrvM2MAV_AudioSetProfile)),
    InstanceField(TXT("OrvM2MAV_AudioGetVolume"), offsetof(GobiEntryPoints, OrvM2MAV_AudioGetVolume)),
    InstanceField(TXT("OrvM2MAV_AudioSetVolume"), offsetof(GobiEntryPoints, OrvM2MAV_AudioSetVolume)),
    InstanceField(TXT("OrvM2MAV_AudioGetAVMute"), offsetof(GobiEntryPoints, OrvM2MAV_AudioGetAVMute)),
    InstanceField(TXT("OrvM2MAV_AudioSetAVMute"), offsetof(GobiEntryPoints, OrvM2MAV_AudioSetAVMute)),
    InstanceField(TXT("OrvM2MAV_AudioGetAVCFG"), offsetof(GobiEntryPoints, OrvM2MAV_AudioGetAVCFG)),
    InstanceField(TXT("OrvM2MAV_AudioSetAVCFG"), offsetof(GobiEntryPoints, OrvM2MAV_AudioSetAVCFG)),
    InstanceField(TXT("OrvM2MAV_AudioNVDef"), offsetof(GobiEntryPoints, OrvM2MAV_AudioNVDef)),
    InstanceField(TXT("OrvM2MAV_AudioSetLPBK"), offsetof(GobiEntryPoints, OrvM2MAV_AudioSetLPBK)),
    InstanceField(TXT("OrvM2MAV_AudioGetTxVolume"), offsetof(GobiEntryPoints, OrvM2MAV_AudioGetTxVolume)),
    InstanceField(TXT("OrvM2MAV_AudioSetTxVolume"), offsetof(GobiEntryPoints, OrvM2MAV_AudioSetTxVolume)),
    InstanceField(TXT("OrvM2MAV_AudioGetMicGain"), offsetof(GobiEntryPoints, OrvM2MAV_AudioGetMicGain)),
    InstanceField(TXT("OrvM2MAV_AudioSetMicGain"), offsetof(GobiEntryPoints, OrvM2MAV_AudioSetMicGain)),
    InstanceField(TXT("OrvM2MAV_AudioGetVolDB"), offsetof(GobiEntryPoints, OrvM2MAV_AudioGetVolDB)),
    InstanceField(TXT("OrvM2MAV_AudioSetVolDB"), offsetof(GobiEntryPoints, OrvM2MAV_AudioSetVolDB)),
    InstanceField(TXT("OrvM2MAV_AudioGetAVTXG"), offsetof(GobiEntryPoints, OrvM2MAV_AudioGetAVTXG)),
    InstanceField(TXT("OrvM2MAV_AudioSetAVTXG"), offsetof(GobiEntryPoints, OrvM2MAV_AudioSetAVTXG)),
    InstanceField(TXT("OrvM2MAV_AudioSetAVTXG"), offsetof(GobiEntryPoints, OrvM2MAV_AudioSetAVTXGAgain)),
    InstanceField(TXT("OrvM2MAV_AudioGetAVRXG"), offsetof(GobiEntryPoints, OrvM2MAV_AudioGetAVRXG)),
    InstanceField(TXT("OrvM2MAV_AudioSetAVRXG"), offsetof(GobiEntryPoints, OrvM2MAV_AudioSetAVRXG)),
    InstanceField(TXT("OrvM2MAV_AudioGetAVEC"), offsetof(GobiEntryPoints, OrvM2MAV_AudioGetAVEC)),
    InstanceField(TXT("OrvM2MAV_AudioSetAVEC"), offsetof(GobiEntryPoints, OrvM2MAV_AudioSetAVEC)),
    InstanceField(TXT("OrvM2MAV_AudioGetAVNS"), offsetof(GobiEntryPoints, OrvM2MAV_AudioGetAVNS)),
    InstanceField(TXT("OrvM2MAV_AudioSetAVNS"), offsetof(GobiEntryPoints, OrvM2MAV_AudioSetAVNS)),
    InstanceField(TXT("OrvM2MAV_AudioPlayTone"), offsetof(GobiEntryPoints, OrvM2MAV_AudioPlayTone)),
};

namespace {

constexpr size_t kInstanceFieldSize = sizeof(FARPROC);
constexpr size_t kStaticMembers = 25;
constexpr size_t kFieldsWithoutLookup = 4;

// Every field but the last four is filled by exactly one look-up.
constexpr bool EveryFieldIsFilledOnce()
{
    bool filled[sizeof(GobiEntryPoints) / kInstanceFieldSize] = {};
    size_t statics = 0;
    for (const Lookup& lookup : kLookups) {
        if (lookup.offset == kStaticMember) {
            ++statics;
            continue;
        }
        bool& field = filled[lookup.offset / kInstanceFieldSize];
        if (field) return false;
        field = true;
    }
    for (size_t i = 0; i < std::size(filled); ++i)
        if (filled[i] != (i + kFieldsWithoutLookup < std::size(filled))) return false;
    return statics == kStaticMembers;
}

static_assert(EveryFieldIsFilledOnce(), "a field is missing from the look-ups or stands in them twice");
static_assert(offsetof(GobiEntryPoints, QCWWANConnect) == 0 &&
                  offsetof(GobiEntryPoints, QCWWANDisconnect) == kInstanceFieldSize,
              "the two mandatory entry points come first");
static_assert(offsetof(GobiEntryPoints, OrvM2MAV_AudioSetAVTXGAgain) ==
                  offsetof(GobiEntryPoints, OrvM2MAV_AudioSetAVTXG) + kInstanceFieldSize,
              "looked up twice, into two neighbouring fields");

} // namespace
