/*
 * The table of the vendor library's entry points: one typed field an operation, under the vendor's own name.
 *
 * It is the first member of COrvGobiDll, which fills it; clients read it through the methods of that class. The meaning
 * of each argument stands with the method. Callback-registration entry points are static members of the class instead.
 */
#ifndef TALVEK_GOBI_ENTRY_POINTS_H
#define TALVEK_GOBI_ENTRY_POINTS_H

#include "talvek/gobi_callbacks.h"
#include "talvek/gobi_types.h"

struct GobiEntryPoints {
    /* The two that must exist. */
    ULONG(ORV_VENDOR_CALL* QCWWANConnect)();
    ULONG(ORV_VENDOR_CALL* QCWWANDisconnect)();

    /* In the order in which they are looked up. */
    ULONG(ORV_VENDOR_CALL* GetCellLocationInfo)(geranCellInfo*, umtsCellInfo*, cdmaCellInfo*, ULONG*);
    ULONG(ORV_VENDOR_CALL* GetRTREConfig)(BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* GetWaitingMsgInfo)(waitingMsgInfo*);
    /*
     * The audio path. Each begins with generator and profile, in but for AudioGetProfile; that and AudioSetProfile go
     * on with ear mute, microphone mute and volume.
     */
    ULONG(ORV_VENDOR_CALL* AudioSetProfile)(BYTE*, BYTE*, BYTE*, BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* AudioGetProfile)(BYTE*, BYTE*, BYTE*, BYTE*, BYTE*);
    /* Which level (GOBI_AUDIO_LEVEL_...), the volume level, codec gain and digital gain. */
    ULONG(ORV_VENDOR_CALL* AudioSetVolTLBConfig)(BYTE*, BYTE*, BYTE*, BYTE*, WORD*, WORD*);
    ULONG(ORV_VENDOR_CALL* AudioPlayAudioTone)(BYTE*);
    /*
     * A pointer for each item of the path, null for what stays as it is: microphone volume, echo cancellation, noise
     * suppression, output gain, input gain, the transmit filter's four, the receive filter's four, side tone.
     */
    ULONG(ORV_VENDOR_CALL* AudioSetAudioPath)
    (BYTE*, BYTE*, WORD*, BYTE*, BYTE*, BYTE*, BYTE*, WORD*, WORD*, ULONG*, WORD*, WORD*, WORD*, ULONG*, WORD*, WORD*);
    /* Which item (GOBI_AUDIO_PATH_...), and its value out. */
    ULONG(ORV_VENDOR_CALL* AudioGetPathByte)(BYTE*, BYTE*, BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* AudioGetPathWord)(BYTE*, BYTE*, BYTE*, WORD*);
    ULONG(ORV_VENDOR_CALL* AudioGetPathPCMFilter)(BYTE*, BYTE*, BYTE*, WORD*, WORD*, ULONG*, WORD*);
    ULONG(ORV_VENDOR_CALL* OrigUSSD)(USSInfo*, WORD*, alphaIDInfo*, USSInfo*, BYTE*, BYTE*, ccSUPSType*);
    ULONG(ORV_VENDOR_CALL* AnsUSSD)(USSInfo*);
    ULONG(ORV_VENDOR_CALL* AbortsUSSD)();
    ULONG(ORV_VENDOR_CALL* SetCallBarringPassword)(callBarringPwd*, WORD*, alphaIDInfo*, BYTE*, BYTE*, ccSUPSType*);
    ULONG(ORV_VENDOR_CALL* GetImagesPreference)(ULONG*, BYTE*);
    ULONG(ORV_VENDOR_CALL* SetImagesPreference)(ULONG, BYTE*, ULONG, BYTE, ULONG*, BYTE*);
    ULONG(ORV_VENDOR_CALL* DialCall)(tDialReqParam*, BYTE*, alphaIDInfo*, BYTE*, ccSUPSType*);
    ULONG(ORV_VENDOR_CALL* AnswerCall)(BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* EndCall)(BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* ManageCalls)(BYTE*, BYTE*, WORD*);
    ULONG(ORV_VENDOR_CALL* GetCallBarring)(BYTE*, BYTE*, BYTE*, WORD*, alphaIDInfo*, BYTE*, BYTE*, ccSUPSType*);
    ULONG(ORV_VENDOR_CALL* SetSupsService)(voiceSetSUPSServiceReq*, WORD*, alphaIDInfo*, BYTE*, BYTE*, ccSUPSType*);
    ULONG(ORV_VENDOR_CALL* GetCLIR)(statusResp*, WORD*, alphaIDInfo*, BYTE*, BYTE*, ccSUPSType*);
    ULONG(ORV_VENDOR_CALL* GetCallForwarding)
    (BYTE*, BYTE*, getCallFWInfo*, BYTE*, alphaIDInfo*, BYTE*, BYTE*, ccSUPSType*, getExtCallFWInfo*);
    ULONG(ORV_VENDOR_CALL* GetCallWaiting)(BYTE*, BYTE*, WORD*, alphaIDInfo*, BYTE*, BYTE*, ccSUPSType*);
    ULONG(ORV_VENDOR_CALL* GetAllCallInfo)
    (arrCallInfo*, arrRemotePartyNum*, arrRemotePartyName*, arrAlertingType*, arrUUSInfo*, arrSvcOption*, BYTE*, BYTE*,
     arrCallEndReason*, arrAlphaIDInfo*, arrPeerNumInfo*, arrDiagInfo*, arrPeerNumInfo*, arrPeerNumInfo*,
     arrAlertingPattern*);
    ULONG(ORV_VENDOR_CALL* SendFlash)(BYTE*, char*, BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* StartContDTMF)(BYTE*, BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* StopContDTMF)(BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* QCWWANGetConnectedDeviceID)(ULONG, char*);
    ULONG(ORV_VENDOR_CALL* GetFirmwareRevision)(BYTE, char*);
    ULONG(ORV_VENDOR_CALL* GetFirmwareInfo)(ULONG*, ULONG*, ULONG*, ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* OrvGetCwePkgsInfo)
    (WORD*, BYTE*, WORD*, BYTE*, WORD*, BYTE*, WORD*, BYTE*, WORD*, BYTE*, WORD*, BYTE*, WORD*, BYTE*);
    ULONG(ORV_VENDOR_CALL* StartDataSession2)(char*, char*, char*, ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* StopDataSession)(ULONG);
    ULONG(ORV_VENDOR_CALL* GetIPAddress)(ULONG*);
    ULONG(ORV_VENDOR_CALL* GetPacketStatus)(ULONG*, ULONG*, ULONG*, ULONG*, ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* SetMobileIP)(ULONG);
    ULONG(ORV_VENDOR_CALL* GetMobileIP)(ULONG*);
    ULONG(ORV_VENDOR_CALL* SetActiveMobileIPProfile)(char*, BYTE);
    ULONG(ORV_VENDOR_CALL* GetActiveMobileIPProfile)(BYTE*);
    ULONG(ORV_VENDOR_CALL* SetMobileIPProfile)
    (char*, BYTE, BYTE*, ULONG*, ULONG*, ULONG*, BYTE*, char*, ULONG*, ULONG*, char*, char*);
    ULONG(ORV_VENDOR_CALL* GetMobileIPProfile)(BYTE, BYTE*, ULONG*, ULONG*, ULONG*, BYTE*, BYTE, char*, ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* SetMobileIPParameters)(char*, ULONG*, BYTE*, BYTE*, BYTE*, BYTE*, BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* GetMobileIPParameters)(ULONG*, BYTE*, BYTE*, BYTE*, BYTE*, BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* GetLastMobileIPError)(ULONG*);
    ULONG(ORV_VENDOR_CALL* GetAutoConnect)(ULONG*);
    ULONG(ORV_VENDOR_CALL* SetAutoConnect)(ULONG);
    ULONG(ORV_VENDOR_CALL* SetDefaultProfile)
    (ULONG, ULONG*, ULONG*, ULONG*, ULONG*, ULONG*, char*, char*, char*, char*);
    ULONG(ORV_VENDOR_CALL* GetDefaultProfile)
    (ULONG, ULONG*, ULONG*, ULONG*, ULONG*, ULONG*, BYTE, char*, BYTE, char*, BYTE, char*);
    ULONG(ORV_VENDOR_CALL* GetByteTotals)(ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* GetRFInfo)(BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* PerformNetworkScan)(BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* PerformNetworkRATScan)(BYTE*, BYTE*, BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* InitiateNetworkRegistration)(ULONG, WORD, WORD, ULONG);
    ULONG(ORV_VENDOR_CALL* InitiateDomainAttach)(ULONG);
    ULONG(ORV_VENDOR_CALL* GetNetworkPreference)(ULONG*, ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* SetNetworkPreference)(ULONG, ULONG);
    ULONG(ORV_VENDOR_CALL* SetCDMANetworkParameters)(char*, BYTE*, BYTE*, ULONG*, ULONG*, ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* GetCDMANetworkParameters)
    (BYTE*, BYTE*, BYTE*, BYTE*, BYTE*, BYTE*, BYTE*, ULONG*, ULONG*, ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* GetACCOLC)(BYTE*);
    ULONG(ORV_VENDOR_CALL* SetACCOLC)(char*, BYTE);
    ULONG(ORV_VENDOR_CALL* GetANAAAAuthenticationStatus)(ULONG*);
    ULONG(ORV_VENDOR_CALL* GetDeviceCapabilities)(ULONG*, ULONG*, ULONG*, ULONG*, ULONG*, BYTE*);
    ULONG(ORV_VENDOR_CALL* GetFirmwareRevisions)(BYTE, char*, BYTE, char*, BYTE, char*);
    ULONG(ORV_VENDOR_CALL* GetPRLVersion)(WORD*);
    ULONG(ORV_VENDOR_CALL* Set3Gpp2SubscriptionInfo)(BYTE*, MinBasedImsi*, TrueImsi*, BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* Get3Gpp2SubscriptionInfo)(BYTE*, MinBasedImsi*, TrueImsi*, BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* GetERIFile)(ULONG*, BYTE*);
    ULONG(ORV_VENDOR_CALL* ActivateManual)(char*, WORD, char*, char*, ULONG, BYTE*, char*, char*);
    ULONG(ORV_VENDOR_CALL* GetPower)(ULONG*);
    ULONG(ORV_VENDOR_CALL* GetOfflineReason)(ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* GetNetworkTime)(ULONGLONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* ValidateSPC)(char*);
    ULONG(ORV_VENDOR_CALL* DeleteSMS)(ULONG, ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* GetSMSList)(ULONG, ULONG*, ULONG*, BYTE*);
    ULONG(ORV_VENDOR_CALL* GetSMS)(ULONG, ULONG, ULONG*, ULONG*, ULONG*, BYTE*);
    ULONG(ORV_VENDOR_CALL* ModifySMSStatus)(ULONG, ULONG, ULONG);
    ULONG(ORV_VENDOR_CALL* SaveSMS)(ULONG, ULONG, ULONG, BYTE*, ULONG*);
    ULONG(ORV_VENDOR_CALL* SendSMS)(ULONG, ULONG, BYTE*, BYTE, ULONG*);
    ULONG(ORV_VENDOR_CALL* GetSMSCAddress)(BYTE, char*, BYTE, char*);
    ULONG(ORV_VENDOR_CALL* SetSMSCAddress)(char*, char*);
    ULONG(ORV_VENDOR_CALL* SetSMSProtocol)(BYTE);
    ULONG(ORV_VENDOR_CALL* SetRoutes)(ULONG, BYTE*);
    ULONG(ORV_VENDOR_CALL* SetBroadcastActivation)(BYTE, BYTE);
    ULONG(ORV_VENDOR_CALL* DMSUIMSetPINProtection)(ULONG, ULONG, char*, ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* DMSUIMVerifyPIN)(ULONG, char*, ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* DMSUIMUnblockPIN)(ULONG, char*, char*, ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* DMSUIMChangePIN)(ULONG, char*, char*, ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* DMSUIMGetPINStatus)(ULONG, ULONG*, ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* DMSUIMGetICCID)(BYTE, char*);
    ULONG(ORV_VENDOR_CALL* DMSUIMGetControlKeyStatus)(ULONG, ULONG*, ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* DMSUIMSetControlKeyProtection)(ULONG, ULONG, char*, ULONG*);
    ULONG(ORV_VENDOR_CALL* DMSUIMUnblockControlKey)(ULONG, char*, ULONG*);
    ULONG(ORV_VENDOR_CALL* UIMGetCardStatus)(int*, QMI_UIM_GET_CARD_STATUS_RESP*);
    ULONG(ORV_VENDOR_CALL* UIMVerifyPIN)
    (QMI_UIM_VERIFY_PIN_REQ_SESSION_INFORMATION*, QMI_UIM_VERIFY_PIN_REQ_VERIFY_PIN*,
     QMI_UIM_VERIFY_PIN_RESP_RETRIES_REMAINING*);
    ULONG(ORV_VENDOR_CALL* UIMUnblockPIN)
    (QMI_UIM_UNBLOCK_PIN_REQ_SESSION_INFORMATION*, QMI_UIM_UNBLOCK_PIN_REQ_UNBLOCK_PIN*,
     QMI_UIM_UNBLOCK_PIN_RESP_RETRIES_REMAINING*);
    ULONG(ORV_VENDOR_CALL* UIMSetPINProtection)
    (QMI_UIM_SET_PIN_PROTECTION_REQ_SESSION_INFORMATION*, QMI_UIM_SET_PIN_PROTECTION_REQ_SET_PIN_PROTECTION*,
     QMI_UIM_SET_PIN_PROTECTION_RESP_RETRIES_REMAINING*);
    ULONG(ORV_VENDOR_CALL* UIMChangePIN)
    (QMI_UIM_CHANGE_PIN_REQ_SESSION_INFORMATION*, QMI_UIM_CHANGE_PIN_REQ_CHANGE_PIN*,
     QMI_UIM_CHANGE_PIN_RESP_RETRIES_REMAINING*);
    ULONG(ORV_VENDOR_CALL* ResetToFactoryDefaults)(char*);
    ULONG(ORV_VENDOR_CALL* GetPDSState)(ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* SetPDSState)(ULONG);
    ULONG(ORV_VENDOR_CALL* PDSInjectTimeReference)(ULONGLONG, WORD);
    ULONG(ORV_VENDOR_CALL* GetPDSDefaults)(ULONG*, BYTE*, ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* SetPDSDefaults)(ULONG, BYTE, ULONG, ULONG);
    ULONG(ORV_VENDOR_CALL* GetXTRAAutomaticDownload)(ULONG*, WORD*);
    ULONG(ORV_VENDOR_CALL* SetXTRAAutomaticDownload)(ULONG, WORD);
    ULONG(ORV_VENDOR_CALL* GetXTRANetwork)(ULONG*);
    ULONG(ORV_VENDOR_CALL* SetXTRANetwork)(ULONG);
    ULONG(ORV_VENDOR_CALL* GetXTRAValidity)(WORD*, WORD*, WORD*);
    ULONG(ORV_VENDOR_CALL* SetXTRAValidity)(WORD, WORD, WORD);
    ULONG(ORV_VENDOR_CALL* SetXTRAEmbeddedClient)(BYTE, BYTE);
    ULONG(ORV_VENDOR_CALL* SetNMEAConfig)(BYTE, BYTE, BYTE, WORD*);
    ULONG(ORV_VENDOR_CALL* GetNMEAConfig)(BYTE*, BYTE*, BYTE*, WORD*);
    ULONG(ORV_VENDOR_CALL* ForceXTRADownload)();
    ULONG(ORV_VENDOR_CALL* GetAGPSConfig)(ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* SetAGPSConfig)(ULONG, ULONG);
    ULONG(ORV_VENDOR_CALL* GetServiceAutomaticTracking)(ULONG*);
    ULONG(ORV_VENDOR_CALL* SetServiceAutomaticTracking)(ULONG);
    ULONG(ORV_VENDOR_CALL* GetPortAutomaticTracking)(ULONG*);
    ULONG(ORV_VENDOR_CALL* SetPortAutomaticTracking)(ULONG);
    ULONG(ORV_VENDOR_CALL* ResetPDSData)(ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* GetPhonebookCapabilities)(BYTE*, WORD*, WORD*, WORD*, BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* ReadPhonebookRecords)(BYTE*, WORD*, WORD*, WORD*, WORD*);
    ULONG(ORV_VENDOR_CALL* WritePhonebookRecord)(BYTE*, WORD*, WORD*, BYTE*, BYTE*, BYTE*, BYTE*, BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* DeletePhonebookRecord)(BYTE*, WORD*, WORD*);
    ULONG(ORV_VENDOR_CALL* GetSessionState)(ULONG*);
    ULONG(ORV_VENDOR_CALL* GetDormancyState)(ULONG*);
    ULONG(ORV_VENDOR_CALL* GetDunCallInfo)
    (ULONG*, BYTE*, BYTE*, ULONG*, BYTE*, BYTE*, BYTE*, BYTE*, ULONGLONG*, WORD*, ULONGLONG*, ULONGLONG*, BYTE*, BYTE*,
     ULONG*, ULONG*, ULONG*, ULONG*, ULONGLONG*, ULONGLONG*, ULONGLONG*, BYTE*);
    ULONG(ORV_VENDOR_CALL* GetDataBearerTechnology)(ULONG*);
    ULONG(ORV_VENDOR_CALL* GetSessionDuration)(ULONGLONG*);
    ULONG(ORV_VENDOR_CALL* GetSignalStrengths)(ULONG*, ORV_INT8*, ULONG*);
    ULONG(ORV_VENDOR_CALL* GetServingNetworkCapabilities)(BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* GetConnectionRate)(ULONG*, ULONG*, ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* GetServingNetwork)
    (ULONG*, ULONG*, ULONG*, ULONG*, BYTE*, BYTE*, ULONG*, WORD*, WORD*, BYTE, char*);
    ULONG(ORV_VENDOR_CALL* GetHomeNetwork)(WORD*, WORD*, BYTE, char*, WORD*, WORD*);
    ULONG(ORV_VENDOR_CALL* GetManufacturer)(BYTE, char*);
    ULONG(ORV_VENDOR_CALL* GetModelID)(BYTE, char*);
    ULONG(ORV_VENDOR_CALL* GetHardwareRevision)(BYTE, char*);
    ULONG(ORV_VENDOR_CALL* GetVoiceNumber)(BYTE, char*, BYTE, char*);
    ULONG(ORV_VENDOR_CALL* GetSerialNumbers)(BYTE, char*, BYTE, char*, BYTE, char*);
    ULONG(ORV_VENDOR_CALL* UpgradeFirmware2kW)(WCHAR*);
    ULONG(ORV_VENDOR_CALL* GetImageStoreW)(WORD, WCHAR*);
    ULONG(ORV_VENDOR_CALL* GetImageInfoW)(const WCHAR*, ULONG*, ULONG*, ULONG*, ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* GetIMSI)(BYTE, char*);
    ULONG(ORV_VENDOR_CALL* OrvSetDeviceRemovalCallback)(GobiDeviceRemovalCallback);
    ULONG(ORV_VENDOR_CALL* SetPower)(ULONG);
    ULONG(ORV_VENDOR_CALL* ActivateAutomatic)(char*);
    ULONG(ORV_VENDOR_CALL* GetActivationState)(ULONG*);
    ULONG(ORV_VENDOR_CALL* OMADMGetFeatureSettings)(ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* OMADMGetSessionInfo)(ULONG*, ULONG*, ULONG*, BYTE*, WORD*, WORD*);
    ULONG(ORV_VENDOR_CALL* OMADMSetProvisioningFeature)(ULONG);
    ULONG(ORV_VENDOR_CALL* OMADMSetPRLUpdateFeature)(ULONG);
    ULONG(ORV_VENDOR_CALL* OMADMStartSession)(ULONG);
    ULONG(ORV_VENDOR_CALL* OMADMCancelSession)();
    ULONG(ORV_VENDOR_CALL* OMADMGetPendingNIA)(ULONG*, WORD*);
    ULONG(ORV_VENDOR_CALL* OMADMSendSelection)(ULONG, WORD);
    ULONG(ORV_VENDOR_CALL* GetIPConfiguration)(ULONG*, ULONG*, ULONG*, ULONG*, ULONG*);
    ULONG(ORV_VENDOR_CALL* ORVOMAEXSetEventReport)();
    ULONG(ORV_VENDOR_CALL* ORVOMAEXSessionStart)(BYTE*);
    ULONG(ORV_VENDOR_CALL* ORVOMAEXSessionCancel)();
    ULONG(ORV_VENDOR_CALL* ORVOMAEXSelection)(BYTE*);
    ULONG(ORV_VENDOR_CALL* ORVOMAEXGetSettings)(BYTE*, BYTE*, BYTE*, BYTE*, BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* ORVOMAEXSetSettings)(BYTE*, BYTE*, BYTE*, BYTE*, BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* ORVOMAEXSessionGetInfo)(omaSessionInfo*);
    ULONG(ORV_VENDOR_CALL* ORVOMAEXInitApi)();
    ULONG(ORV_VENDOR_CALL* ORVOMAEXShutdownApi)();
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioGetProfile)(BYTE*, BYTE*, BYTE*, BYTE*, BYTE*, BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioSetProfile)(BYTE*, BYTE*, BYTE*, BYTE*, BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioGetVolume)(BYTE*, BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioSetVolume)(BYTE*, BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioGetAVMute)(BYTE*, BYTE*, BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioSetAVMute)(BYTE*, BYTE*, BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioGetAVCFG)(AudioConfig*, BYTE*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioSetAVCFG)(BYTE*, BYTE*, BYTE*, PIFACETable*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioNVDef)();
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioSetLPBK)(BYTE*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioGetTxVolume)(BYTE*, WORD*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioSetTxVolume)(BYTE*, WORD*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioGetMicGain)(BYTE*, WORD*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioSetMicGain)(BYTE*, WORD*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioGetVolDB)(BYTE*, BYTE*, BYTE*, WORD*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioSetVolDB)(BYTE*, BYTE*, BYTE*, WORD*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioGetAVTXG)(BYTE*, WORD*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioSetAVTXG)(BYTE*, WORD*);
    /* Holds the entry point of the field before it, which is looked up twice. */
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioSetAVTXGAgain)(BYTE*, WORD*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioGetAVRXG)(BYTE*, WORD*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioSetAVRXG)(BYTE*, WORD*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioGetAVEC)(BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioSetAVEC)(BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioGetAVNS)(BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioSetAVNS)(BYTE*, BYTE*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioPlayTone)(BYTE*, BYTE*, WORD*);

    /* Not looked up under names of their own: null unless a caller fills them. */
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioGetSpeakerGain)(BYTE*, WORD*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioSetSpeakerGain)(BYTE*, WORD*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioGetSTG)(BYTE*, WORD*);
    ULONG(ORV_VENDOR_CALL* OrvM2MAV_AudioSetSTG)(BYTE*, WORD*);
};

#endif /* TALVEK_GOBI_ENTRY_POINTS_H */
