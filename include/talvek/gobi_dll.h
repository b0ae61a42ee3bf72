/*
 * COrvGobiDll: the vendor library "GobiApi.dll" as a class, one method an operation. C++ only.
 *
 * Every method returns the vendor's status, 0 for success, unchanged, and 1 without a call when the library lacks the entry
 * point. Arguments are handed on as they are; buffers and their sizes are the caller's. The class holds no lock: callers
 * serialise Initialize and Disconnect against other calls. The static callback members belong to all instances: a second
 * instance's Initialize overwrites them, and its destructor clears them for all.
 */
#ifndef TALVEK_GOBI_DLL_H
#define TALVEK_GOBI_DLL_H

#include "talvek/core.h"
#include "talvek/gobi_entry_points.h"

class ORV_EXPORT COrvGobiDll {
public:
    COrvGobiDll();
    /* Unloads the vendor library. */
    ~COrvGobiDll();
    COrvGobiDll(const COrvGobiDll&) = delete;
    COrvGobiDll& operator=(const COrvGobiDll&) = delete;

    /* --- life cycle -------------------------------------------------------------------------------------------------- */

    /*
     * Loads the vendor library and looks up its entry points. True at once when IsInitialized(). False when the library
     * cannot be loaded (IsInitialized() is then true all the same, and every method returns 1) or lacks its connect or
     * disconnect entry point (it is unloaded; a later call tries again).
     */
    bool Initialize();
    bool IsInitialized() const { return m_bInitialized; }
    /* Connects to the one module that the vendor library finds. */
    ULONG Connect();
    ULONG Disconnect();
    /* Always 0. */
    ULONG GetDLLVersion() const { return m_dllVersion; }
    /* ORV_TECH_CDMA, ORV_TECH_UMTS, or 0 when neither the package nor the firmware query succeeds. */
    ORV_TYPE_WirelessTech GetWirelessTech();

    /* --- events; a null callback unregisters, see talvek/gobi_callbacks.h -------------------------------------------- */

    static ULONG SetSessionStateCB(GobiSessionStateCallback callback);
    static ULONG SetDataBearerCB(GobiDataBearerCallback callback);
    static ULONG SetDormancyStatusCB(GobiDormancyStatusCallback callback);
    static ULONG SetMobileIPStatusCB(GobiMobileIPStatusCallback callback);
    static ULONG SetActivationStatusCB(GobiActivationStatusCallback callback);
    static ULONG SetPowerCB(GobiPowerCallback callback);
    static ULONG SetRoamingIndicatorCB(GobiRoamingIndicatorCallback callback);
    /* `count` thresholds in dBm: the module reports when the strength crosses one. */
    static ULONG SetSignalStrengthCB(GobiSignalStrengthCallback callback, BYTE count, ORV_INT8* thresholds);
    static ULONG SetRFInfoCB(GobiRFInfoCallback callback);
    static ULONG SetNewSMSCB(GobiNewSMSCallback callback);
    static ULONG SetNewSMSCBCB(GobiNewSMSCBCallback callback);
    static ULONG SetVoiceMessageCB(GobiMsgWaitingCallback callback);
    static ULONG SetDataCapsCB(GobiDataCapabilitiesCallback callback);
    /* `interval` in seconds between two reports. */
    static ULONG SetByteTotalsCB(GobiByteTotalsCallback callback, BYTE interval);
    static ULONG SetOMADMStateCB(GobiOMADMStateCallback callback);
    static ULONG SetOMADMAlertCB(GobiOMADMAlertCallback callback);
    static ULONG SetCallInfoCB(GobiCallInfoCallback callback);
    static ULONG SetInfoRecCB(GobiInfoRecCallback callback);
    static ULONG SetUSSDInfoCB(GobiUSSDCallback callback);
    static ULONG SetPhonebookRecordReadCB(GobiPhonebookRecordReadCallback callback);
    static ULONG SetAllPbInitDoneCB(GobiAllPhonebookInitDoneCallback callback);
    static ULONG SetEmergencyListCB(GobiEmergencyListCallback callback);
    static ULONG SetNITZCB(GobiNetworkTimeCallback callback);
    static ULONG SetEmergencyModeCB(GobiSystemSelectionPrefCallback callback);
    static ULONG SetOMAEXEventCB(GobiOMAEXEventCallback callback);

    ULONG SetDeviceRemovalCallback(GobiDeviceRemovalCallback callback);
    /* Unregisters every event but the device removal. Does nothing while the library is not loaded. */
    void DisableCallbacks();

    /* --- session and data -------------------------------------------------------------------------------------------- */

    /* The device ID as text. `size` octets at `deviceID`, terminated by the vendor where it fits. */
    ULONG GetConnectedDeviceID(ULONG size, char* deviceID);
    ULONG GetSessionState(ULONG* state);
    /* APN, user and password may be null. */
    ULONG StartDataSession(char* apn, char* user, char* password, ULONG* sessionId, ULONG* failureReason);
    ULONG StopDataSession(ULONG sessionId);
    /* Five IPv4 addresses in network byte order. */
    ULONG GetIPConfiguration(ULONG* ipAddress, ULONG* primaryDns, ULONG* secondaryDns, ULONG* defaultGateway,
                             ULONG* subnetMask);

    /* --- network access ---------------------------------------------------------------------------------------------- */

    /* `*count` in: room, out: pairs filled. Strengths in dBm. */
    ULONG GetSignalStrengths(ULONG* count, ORV_INT8* strengths, ULONG* radioInterfaces);
    /* `*count` in: room, out: capabilities filled. */
    ULONG GetServingNetworkCaps(BYTE* count, BYTE* capabilities);
    /* `*radioInterfaceCount` in: room, out: radio interfaces filled; `nameSize` octets at `name`. */
    ULONG GetServingNetwork(ULONG* registrationState, ULONG* csDomain, ULONG* psDomain, ULONG* ran,
                            BYTE* radioInterfaceCount, BYTE* radioInterfaces, ULONG* roaming, WORD* mcc, WORD* mnc,
                            BYTE nameSize, char* name);
    ULONG SetNetworkPreference(ULONG technology, ULONG duration);

    /* --- identity, firmware and images ------------------------------------------------------------------------------- */

    ULONG GetFirmwareInfo(ULONG* firmwareID, ULONG* technology, ULONG* carrier, ULONG* region, ULONG* gpsCapability);
    /*
     * Seven texts of the installed package. Each length in: room, out: length. The first is the model, the sixth the
     * package's carrier.
     */
    ULONG GetCwePkgsInfo(WORD* modelLength, BYTE* model, WORD* firmwareLength, BYTE* firmware, WORD* bootLength,
                         BYTE* boot, WORD* priLength, BYTE* pri, WORD* skuLength, BYTE* sku, WORD* carrierLength,
                         BYTE* carrier, WORD* carrierRevisionLength, BYTE* carrierRevision);
    ULONG GetRTREConfig(BYTE* configuration, BYTE* supported);
    ULONG GetFirmwareRevisions(BYTE firmwareSize, char* firmware, BYTE bootSize, char* boot, BYTE priSize, char* pri);
    ULONG GetManufacturer(BYTE size, char* manufacturer);
    ULONG GetModelID(BYTE size, char* model);
    ULONG GetHardwareRevision(BYTE size, char* revision);
    ULONG GetImagePreference(ULONG* imageListSize, BYTE* imageList);
    ULONG SetImagePreference(ULONG imageListSize, BYTE* imageList, ULONG forceDownload, BYTE modemIndex,
                             ULONG* imageTypesSize, BYTE* imageTypes);
    /* `path` is terminated and must not be null: it is logged. */
    ULONG UpgradeFirmwareW(WCHAR* path);

    /* --- power ------------------------------------------------------------------------------------------------------- */

    /* The vendor's operating mode: 0 online, 5 reset, 6 low power, others as the vendor defines them. */
    ULONG GetPower(ULONG* mode);
    ULONG SetPower(ULONG mode);

    /* --- voice calls ------------------------------------------------------------------------------------------------- */

    ULONG DialCall(tDialReqParam* request, BYTE* callID, alphaIDInfo* alphaID, BYTE* supplementaryKind,
                   ccSUPSType* supplementary);
    ULONG EndCall(BYTE* callID, BYTE* endedCallID);
    ULONG AnserCall(BYTE* callID, BYTE* answeredCallID);
    ULONG ManageCalls(BYTE* kind, BYTE* callID, WORD* failureCause);

public:
    /* The registration entry points, shared by all instances. mpFNSetEmergencyListCB keeps its value after an unload; the
     * setter does not call it then. */
    static GobiSetSessionState mpFNSetSessionStateCB;
    static GobiSetDataBearer mpFNSetDataBearerCB;
    static GobiSetDormancyStatus mpFNSetDormancyStatusCB;
    static GobiSetMobileIPStatus mpFNSetMobileIPStatusCB;
    static GobiSetActivationStatus mpFNSetActivationStatusCB;
    static GobiSetPower mpFNSetPowerCB;
    static GobiSetRoamingIndicator mpFNSetRoamingIndicatorCB;
    static GobiSetSignalStrength mpFNSetSignalStrengthCB;
    static GobiSetRFInfo mpFNSetRFInfoCB;
    static GobiSetNewSMS mpFNSetNewSMSCB;
    static GobiSetNewSMSCB mpFNSetNewSMSCBCB;
    static GobiSetMsgWaiting mpFNSetVoiceMsgCB;
    static GobiSetDataCapabilities mpFNSetDataCapabilitiesCB;
    static GobiSetByteTotals mpFNSetByteTotalsCB;
    static GobiSetOMADMState mpFNSetOMADMStateCB;
    static GobiSetOMADMAlert mpFNSetOMADMNIAlertCB;
    static GobiSetCallInfo mpFNSetCallInfoCB;
    static GobiSetInfoRec mpFNSetInfoRecCB;
    static GobiSetUSSD mpFNSetUSSDInfoCB;
    static GobiSetPhonebookRecordRead mpFNSetPhonebookRecordReadCB;
    static GobiSetAllPhonebookInitDone mpFNSetAllPbInitDoneCB;
    static GobiSetEmergencyList mpFNSetEmergencyListCB;
    static GobiSetNetworkTime mpFNSetNITZCB;
    static GobiSetSystemSelectionPref mpFNSetEmergencyModeCB;
    static GobiSetOMAEXEvent mpFNSetOMAEXEventCB;

protected:
    /* Unloads the library and clears what was looked up. Does nothing unless it is loaded. */
    void Cleanup();

private:
    GobiEntryPoints m_entry;
    void* m_hLibrary; /* null while not loaded */
    bool m_bInitialized;
    ULONG m_dllVersion;
};

#endif /* TALVEK_GOBI_DLL_H */
