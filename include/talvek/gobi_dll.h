/*
 * COrvGobiDll: the vendor library "GobiApi.dll" as a class, one method an operation. C++ only.
 *
 * Every method returns the vendor's status, 0 for success, unchanged, and 1 without a call when the library lacks the
 * entry point. Arguments are handed on as they are. Buffers and their sizes are the caller's and are used during the
 * call only. Unless a comment says otherwise a pointer addresses one value, which a Get method fills and a Set method
 * reads.
 *
 * The class holds no lock: callers serialise Initialize and Disconnect against other calls. The static callback members
 * belong to all instances: a second instance's Initialize overwrites them, and its destructor clears them for all.
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

    /* --- life cycle ----------------------------------------------------------------------------------------------- */

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

    /* --- events; a null callback unregisters, see talvek/gobi_callbacks.h ----------------------------------------- */

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

    /* --- session and data ----------------------------------------------------------------------------------------- */

    /* The device ID as a text of `size` octets, terminated by the vendor where it fits. */
    ULONG GetConnectedDeviceID(ULONG size, char* deviceID);
    /* 1 disconnected, 2 connected; others as the vendor has them. */
    ULONG GetSessionState(ULONG* state);
    /* The vendor's dormancy state of the traffic channel. */
    ULONG GetDormancyState(ULONG* state);
    /*
     * The call of the dial-up port. Rates in bit/s, durations in ms, totals in octets; `last...` belong to the call
     * before. The reports are 0 or 1: what the module tells by itself, every `reportSeconds`.
     */
    ULONG GetDunCallInfo(ULONG* state, BYTE* dormant, BYTE* bearer, ULONG* endReason, BYTE* stateReport,
                         BYTE* dormancyReport, BYTE* bearerReport, BYTE* errorReport, ULONGLONG* duration,
                         WORD* reportSeconds, ULONGLONG* sent, ULONGLONG* received, BYTE* totalsReport,
                         BYTE* rateReport, ULONG* txRate, ULONG* rxRate, ULONG* maxTxRate, ULONG* maxRxRate,
                         ULONGLONG* lastDuration, ULONGLONG* lastSent, ULONGLONG* lastReceived, BYTE* lastBearer);
    /* Terminated texts in; APN, user and password may be null. The session's handle and the vendor's reason out. */
    ULONG StartDataSession(char* apn, char* user, char* password, ULONG* sessionId, ULONG* failureReason);
    ULONG StopDataSession(ULONG sessionId);
    /* An IPv4 address as a number, the first octet the most significant. */
    ULONG GetIPAddress(ULONG* address);
    /* Packets of the session. */
    ULONG GetPacketStatus(ULONG* sent, ULONG* received, ULONG* txErrors, ULONG* rxErrors, ULONG* txOverflows,
                          ULONG* rxOverflows);
    /*
     * Octets sent and received. Each pointer must address eight octets, aligned for a 64-bit integer: the vendor writes
     * 64 bits through it.
     */
    ULONG GetByteTotals(ULONG* sent, ULONG* received);
    /* The vendor's data bearer technology. */
    ULONG GetDataBearerTechnology(ULONG* technology);
    /* In ms. */
    ULONG GetSessionDuration(ULONGLONG* duration);
    /* In bit/s. */
    ULONG GetConnectionRate(ULONG* txRate, ULONG* rxRate, ULONG* maxTxRate, ULONG* maxRxRate);
    /* Five IPv4 addresses in network byte order. Logs its status. */
    ULONG GetIPConfiguration(ULONG* ipAddress, ULONG* primaryDns, ULONG* secondaryDns, ULONG* defaultGateway,
                             ULONG* subnetMask);
    /* 0 off, 1 on: the module starts a session by itself. */
    ULONG GetAutoconnect(ULONG* setting);
    ULONG SetAutoconnect(ULONG setting);
    /*
     * The default profile of `type` (0: 3GPP). PDP type 0 is IPv4. Addresses as numbers, the first octet the most
     * significant; 0 (Get) or a null pointer (Set): none. Authentication: a bit mask, 1 PAP, 2 CHAP. Texts: the
     * profile's name of 31 octets, the APN of 101, user and password of 128; sizes in octets. Set takes null for
     * anything else that stays as it is and reads terminated texts. Both log their status.
     */
    ULONG SetDefaultProfile(ULONG type, ULONG* pdpType, ULONG* ipAddress, ULONG* primaryDns, ULONG* secondaryDns,
                            ULONG* authentication, char* name, char* apn, char* user, char* password);
    ULONG GetDefaultProfile(ULONG type, ULONG* pdpType, ULONG* ipAddress, ULONG* primaryDns, ULONG* secondaryDns,
                            ULONG* authentication, BYTE nameSize, char* name, BYTE apnSize, char* apn, BYTE userSize,
                            char* user);

    /* --- Mobile IP, IETF RFC 5944; `spc`: the service programming code, six digits and a terminator --------------- */

    /* 0 off (simple IP), 1 preferred, 2 only. */
    ULONG SetMobileIP(ULONG mode);
    ULONG GetMobileIP(ULONG* mode);
    /* A profile's index counts from 0. */
    ULONG SetActiveMobileIPProfile(char* spc, BYTE index);
    ULONG GetActiveMobileIPProfile(BYTE* index);
    /*
     * A profile: flags 0 or 1; IPv4 addresses (own, primary and secondary home agent); the network access identifier,
     * of `naiSize` octets; the security parameter indices and shared secrets towards home agent and AAA server. Set
     * takes null for what stays as it is and reads terminated texts. Secrets cannot be read.
     */
    ULONG SetMobileIPProfile(char* spc, BYTE index, BYTE* enabled, ULONG* address, ULONG* primaryHA, ULONG* secondaryHA,
                             BYTE* reverseTunneling, char* nai, ULONG* haSPI, ULONG* aaaSPI, char* haSecret,
                             char* aaaSecret);
    ULONG GetMobileIPProfile(BYTE index, BYTE* enabled, ULONG* address, ULONG* primaryHA, ULONG* secondaryHA,
                             BYTE* reverseTunneling, BYTE naiSize, char* nai, ULONG* haSPI, ULONG* aaaSPI);
    /*
     * Of all profiles: the mode as SetMobileIP; registration attempts; seconds between them and before the lifetime
     * ends; three flags, 0 or 1. Set takes null for what stays as it is.
     */
    ULONG SetMobileIPParameters(char* spc, ULONG* mode, BYTE* retryLimit, BYTE* retryInterval, BYTE* reRegPeriod,
                                BYTE* reRegOnTraffic, BYTE* haAuthenticator, BYTE* haRFC2002bis);
    ULONG GetMobileIPParameters(ULONG* mode, BYTE* retryLimit, BYTE* retryInterval, BYTE* reRegPeriod,
                                BYTE* reRegOnTraffic, BYTE* haAuthenticator, BYTE* haRFC2002bis);
    /* The code of the last registration reply, RFC 5944 section 3.4; 0: none failed. */
    ULONG GetLastMobileIPError(ULONG* error);

    /* --- network access ------------------------------------------------------------------------------------------- */

    /* `*count` in: room, out: instances filled; `instances` addresses GobiRFInfo records, at most 20. */
    ULONG GetRFInfo(BYTE* count, BYTE* instances);
    /* `*count` in: room, out: networks filled; `networks` addresses GobiNetworkInfo records, at most 50. */
    ULONG PerformNetworkScan(BYTE* count, BYTE* networks);
    /* The same, and GobiNetworkRAT records, at most 50, at `rats`. */
    ULONG PerformNetworkRATScan(BYTE* count, BYTE* networks, BYTE* ratCount, BYTE* rats);
    /* Type 1 automatic, 2 manual, with the network wanted; `rat` 4 GSM, 5 UMTS. Status 1026: already so. */
    ULONG InitiateNetworkRegistration(ULONG type, WORD mcc, WORD mnc, ULONG rat);
    /* 1 attach, 2 detach. */
    ULONG InitiateDomainAttach(ULONG action);
    /* The technology preferred now, for how long, and for good. Set: duration 0 for good. */
    ULONG GetNetworkPreference(ULONG* technology, ULONG* duration, ULONG* persistentTechnology);
    ULONG SetNetworkPreference(ULONG technology, ULONG duration);
    /* `*count` in: room, out: pairs filled, at most 10. Strengths in dBm, radio interfaces as GOBI_RADIO_... */
    ULONG GetSignalStrengths(ULONG* count, ORV_INT8* strengths, ULONG* radioInterfaces);
    /* `*count` in: room, out: capabilities filled, at most 20. */
    ULONG GetServingNetworkCaps(BYTE* count, BYTE* capabilities);
    /*
     * Registration: 0 not registered, 1 registered, 2 searching, 3 denied, 4 unknown. Domains: the vendor's attach
     * states. `ran`: 0 unknown, 1 CDMA, 2 GSM/UMTS. `*radioInterfaceCount` in: room, out: radio interfaces filled.
     * Roaming: 0 roaming, 1 home, others as the vendor has them. `nameSize` octets at `name`.
     */
    ULONG GetServingNetwork(ULONG* registrationState, ULONG* csDomain, ULONG* psDomain, ULONG* ran,
                            BYTE* radioInterfaceCount, BYTE* radioInterfaces, ULONG* roaming, WORD* mcc, WORD* mnc,
                            BYTE nameSize, char* name);
    /* `nameSize` octets at `name`; SID 0 to 32767 and NID of a CDMA subscription. */
    ULONG GetHomeNetwork(WORD* mcc, WORD* mnc, BYTE nameSize, char* name, WORD* sid, WORD* nid);
    /* The cells in use; `present` out: which records were filled, a sum of GOBI_CELL_... */
    ULONG GetCellLocationInfo(geranCellInfo* geran, umtsCellInfo* umts, cdmaCellInfo* cdma, ULONG* present);
    /* In the vendor's count; the source of the time. */
    ULONG GetNetworkTime(ULONGLONG* timeStamp, ULONG* timeSource);

    /* --- CDMA provisioning; `spc`: as above ----------------------------------------------------------------------- */

    /*
     * Flags and revisions in 8 bits; protocol, broadcast and application masks; roaming preference: 0 automatic, 1 home
     * only, 2 affiliated, 3 home and affiliated. Set takes null for what stays as it is.
     */
    ULONG SetCDMANetworkParameters(char* spc, BYTE* forceRev0, BYTE* customSCP, ULONG* protocol, ULONG* broadcast,
                                   ULONG* application, ULONG* roaming);
    ULONG GetCDMANetworkParameters(BYTE* slotCycleIndex, BYTE* stationClassMark, BYTE* homeOnly, BYTE* sidRegistration,
                                   BYTE* nidRegistration, BYTE* forceRev0, BYTE* customSCP, ULONG* protocol,
                                   ULONG* broadcast, ULONG* application, ULONG* roaming);
    /* The access overload class, 0 to 15. */
    ULONG GetACCOLC(BYTE* accolc);
    ULONG SetACCOLC(char* spc, BYTE accolc);
    ULONG GetANAAAAuthenticationStatus(ULONG* status);
    /* The version of the preferred roaming list. */
    ULONG GetPRLVersion(WORD* version);
    /*
     * The number assignment module `*namIndex` (0xFF: the current one): both identities, and the mobile directory
     * number: at most 15 digits, not terminated. `*mdnLength` in Set: digits; in Get: room, then digits. Set takes null
     * for what stays as it is.
     */
    ULONG Set3Gpp2SubscriptionInfo(BYTE* namIndex, MinBasedImsi* minBased, TrueImsi* trueImsi, BYTE* mdnLength,
                                   BYTE* mdn);
    ULONG Get3Gpp2SubscriptionInfo(BYTE* namIndex, MinBasedImsi* minBased, TrueImsi* trueImsi, BYTE* mdnLength,
                                   BYTE* mdn);
    /* The enhanced roaming indicator file; `*size` in: room, out: octets of the file. */
    ULONG GetERIFile(ULONG* size, BYTE* file);
    /* Terminated texts; the PRL of `prlSize` octets and the Mobile IP secrets may be null. */
    ULONG ActivateManual(char* spc, WORD sid, char* mdn, char* min, ULONG prlSize, BYTE* prl, char* haSecret,
                         char* aaaSecret);
    /* Logs code and status. The code is a terminated text. */
    ULONG ActivateAutomatic(char* activationCode);
    /* 0 not activated, 1 activated, others: a step on the way. Logs its status. */
    ULONG GetActivationState(ULONG* state);
    ULONG ValidateSPC(char* spc);

    /* --- messages ------------------------------------------------------------------------------------------------- */

    /*
     * Each but the last logs its name before it does anything. Storage: 0 SIM, 1 the module. Tags as GobiSMSListEntry.
     * Format: 0 CDMA, 6 GSM, 8 message waiting.
     */

    /* A null index stands for all, a null tag for any. */
    ULONG DeleteSMS(ULONG storage, ULONG* index, ULONG* tag);
    /* `*count` in: room, out: entries filled; `list` addresses GobiSMSListEntry records. */
    ULONG GetSMSList(ULONG storage, ULONG* tag, ULONG* count, BYTE* list);
    /* `*size` in: octets of room, out: octets of the message. */
    ULONG GetSMS(ULONG storage, ULONG index, ULONG* tag, ULONG* format, ULONG* size, BYTE* message);
    ULONG ModifySMSStatus(ULONG storage, ULONG index, ULONG tag);
    /* `size` octets at `message`; the index out. */
    ULONG SaveSMS(ULONG storage, ULONG format, ULONG size, BYTE* message, ULONG* index);
    /* `linkTimer`: for how many seconds the link is kept for the next message; the network's failure code out. */
    ULONG SendSMS(ULONG format, ULONG size, BYTE* message, BYTE linkTimer, ULONG* failureCode);
    /* The service centre and its type of address, "145" international, else "129"; Set reads terminated texts. */
    ULONG GetSMSCAddress(BYTE addressSize, char* address, BYTE typeSize, char* type);
    ULONG SetSMSCAddress(char* address, char* type);
    /* 0 CDMA, 1 GSM/UMTS. */
    ULONG SetSMSProtocol(BYTE protocol);
    /* `count` GobiSMSRoute records at `routes`. */
    ULONG SetSMSRoute(ULONG count, BYTE* routes);
    /* Mode 0 CDMA, 1 GSM/UMTS; 0 off, 1 on. */
    ULONG SetSMSBroadcastActivation(BYTE messageMode, BYTE activate);
    /* Messages waiting at servers. Logs when the vendor library lacks it. */
    ULONG GetWaitingMessage(waitingMsgInfo* info);

    /* --- card and PINs; PINs and keys are terminated texts; attempts left out, 0xFFFFFFFF: not known -------------- */

    /* PIN 1 or 2, states GOBI_PIN_...; `enable` 0 or 1. A wrong PIN gives 1012, a blocked one 1035. */
    ULONG DMSUIMSetPINProtection(ULONG pin, ULONG enable, char* value, ULONG* verifyLeft, ULONG* unblockLeft);
    ULONG DMSUIMVerifyPIN(ULONG pin, char* value, ULONG* verifyLeft, ULONG* unblockLeft);
    ULONG DMSUIMUnblockPIN(ULONG pin, char* puk, char* newValue, ULONG* verifyLeft, ULONG* unblockLeft);
    ULONG DMSUIMChangePIN(ULONG pin, char* oldValue, char* newValue, ULONG* verifyLeft, ULONG* unblockLeft);
    ULONG DMSUIMGetPINStatus(ULONG pin, ULONG* status, ULONG* verifyLeft, ULONG* unblockLeft);
    /* Up to 20 digits, ITU-T E.118; `size` octets. */
    ULONG DMSUIMGetICCID(BYTE size, char* iccid);
    /* Personalisation, 3GPP TS 22.022: 0 network, 1 network subset, 2 service provider, 3 corporate, 4 SIM. */
    ULONG DMSUIMGetControlKeyStatus(ULONG facility, ULONG* status, ULONG* verifyLeft, ULONG* unblockLeft);
    ULONG DMSUIMSetControlKeyProtection(ULONG facility, ULONG enable, char* key, ULONG* verifyLeft);
    ULONG DMSUIMUnblockControlKey(ULONG facility, char* key, ULONG* unblockLeft);
    /* `present` out: 1 when the record was filled. */
    ULONG UIMGetCardStatus(int* present, QMI_UIM_GET_CARD_STATUS_RESP* status);
    /* Session and request in; attempts left out, also when the request fails. */
    ULONG UIMVerifyPIN(QMI_UIM_VERIFY_PIN_REQ_SESSION_INFORMATION* session, QMI_UIM_VERIFY_PIN_REQ_VERIFY_PIN* request,
                       QMI_UIM_VERIFY_PIN_RESP_RETRIES_REMAINING* left);
    ULONG UIMUnblockPIN(QMI_UIM_UNBLOCK_PIN_REQ_SESSION_INFORMATION* session,
                        QMI_UIM_UNBLOCK_PIN_REQ_UNBLOCK_PIN* request, QMI_UIM_UNBLOCK_PIN_RESP_RETRIES_REMAINING* left);
    ULONG UIMSetPINProtection(QMI_UIM_SET_PIN_PROTECTION_REQ_SESSION_INFORMATION* session,
                              QMI_UIM_SET_PIN_PROTECTION_REQ_SET_PIN_PROTECTION* request,
                              QMI_UIM_SET_PIN_PROTECTION_RESP_RETRIES_REMAINING* left);
    ULONG UIMChangePIN(QMI_UIM_CHANGE_PIN_REQ_SESSION_INFORMATION* session, QMI_UIM_CHANGE_PIN_REQ_CHANGE_PIN* request,
                       QMI_UIM_CHANGE_PIN_RESP_RETRIES_REMAINING* left);

    /* --- position ------------------------------------------------------------------------------------------------- */

    /* 0 off, 1 on; whether a fix is under way. */
    ULONG GetPDSState(ULONG* enabled, ULONG* tracking);
    ULONG SetPDSState(ULONG enabled);
    /* Time and its uncertainty, both in ms. */
    ULONG PDSInjectTimeReference(ULONGLONG time, WORD uncertainty);
    /* The kind of fix, its time limit in s (1 to 255), the time between fixes in s, and the accuracy wanted in m. */
    ULONG GetPDSDefaults(ULONG* operation, BYTE* timeout, ULONG* interval, ULONG* accuracy);
    ULONG SetPDSDefaults(ULONG operation, BYTE timeout, ULONG interval, ULONG accuracy);
    /* 0 off, 1 on; the time between downloads in hours. */
    ULONG GetXTRAAutomaticDownload(ULONG* enabled, WORD* interval);
    ULONG SetXTRAAutomaticDownload(ULONG enabled, WORD interval);
    /* The networks over which files may be loaded. */
    ULONG GetXTRANetwork(ULONG* preference);
    ULONG SetXTRANetwork(ULONG preference);
    /* When the file begins to be valid: GPS week, minutes into it (0 to 10079); and for how many hours. */
    ULONG GetXTRAValidity(WORD* gpsWeek, WORD* weekOffset, WORD* duration);
    ULONG SetXTRAValidity(WORD gpsWeek, WORD weekOffset, WORD duration);
    /* Both 0 or 1: the module's own client, and whether that outlives a reset. */
    ULONG SetXTRAEmbeddedClient(BYTE enabled, BYTE persistent);
    /* 0 off, 1 on; the port; the time between reports in s; a bit a sentence. Set reads `sentences`. */
    ULONG SetNMEAConfig(BYTE enabled, BYTE port, BYTE interval, WORD* sentences);
    ULONG GetNMEAConfig(BYTE* enabled, BYTE* port, BYTE* interval, WORD* sentences);
    ULONG ForceXTRADownload();
    /* The assistance server: IPv4 address and port, 1 to 65535. */
    ULONG GetAGPSConfig(ULONG* address, ULONG* port);
    ULONG SetAGPSConfig(ULONG address, ULONG port);
    /* 0 off, 1 on: a fix starts with the service, or when the port is opened. */
    ULONG GetServiceAutomaticTracking(ULONG* enabled);
    ULONG SetServiceAutomaticTracking(ULONG enabled);
    ULONG GetPortAutomaticTracking(ULONG* enabled);
    ULONG SetPortAutomaticTracking(ULONG enabled);
    /* What to forget: bit masks in; null for nothing. */
    ULONG ResetPDSData(ULONG* gpsData, ULONG* cellData);

    /* --- identity, firmware and images; sizes in octets, texts terminated where they fit -------------------------- */

    ULONG GetManufacturer(BYTE size, char* manufacturer);
    ULONG GetModelID(BYTE size, char* model);
    ULONG GetFirmwareRevision(BYTE size, char* revision);
    ULONG GetFirmwareRevisions(BYTE firmwareSize, char* firmware, BYTE bootSize, char* boot, BYTE priSize, char* pri);
    ULONG GetHardwareRevision(BYTE size, char* revision);
    /* MDN and MIN, or the number of the SIM. */
    ULONG GetVoiceNumber(BYTE numberSize, char* number, BYTE minSize, char* min);
    /* Hexadecimal ESN (8 digits) and MEID (14), decimal IMEI (15); empty for those that the module has not. */
    ULONG GetSerialNumbers(BYTE esnSize, char* esn, BYTE imeiSize, char* imei, BYTE meidSize, char* meid);
    /* Up to 15 digits. */
    ULONG GetIMSI(BYTE size, char* imsi);
    /* Rates in bit/s; `*radioInterfaceCount` in: room, out: 32-bit radio interfaces filled at `radioInterfaces`. */
    ULONG GetDeviceCapabilities(ULONG* maxTxRate, ULONG* maxRxRate, ULONG* dataService, ULONG* simSupported,
                                ULONG* radioInterfaceCount, BYTE* radioInterfaces);
    /* Technology 0 CDMA, else UMTS; carriers from 101 on. */
    ULONG GetFirmwareInfo(ULONG* firmwareID, ULONG* technology, ULONG* carrier, ULONG* region, ULONG* gpsCapability);
    /*
     * Seven texts of the installed package, not terminated. Each length in: room, out: length. The first is the model,
     * the sixth the package's carrier.
     */
    ULONG GetCwePkgsInfo(WORD* modelLength, BYTE* model, WORD* firmwareLength, BYTE* firmware, WORD* bootLength,
                         BYTE* boot, WORD* priLength, BYTE* pri, WORD* skuLength, BYTE* sku, WORD* carrierLength,
                         BYTE* carrier, WORD* carrierRevisionLength, BYTE* carrierRevision);
    /* Whether the card or the module holds the CDMA identity. Logs when the vendor library lacks it. */
    ULONG GetRTREConfig(BYTE* configuration, BYTE* supported);
    /* `path` is terminated and must not be null: it is logged. */
    ULONG UpgradeFirmwareW(WCHAR* path);
    /* `size` characters at `path`. */
    ULONG GetImageStoreW(WORD size, WCHAR* path);
    /* As GetFirmwareInfo, of the image in the folder `path` (terminated). */
    ULONG GetImageInfoW(const WCHAR* path, ULONG* firmwareID, ULONG* technology, ULONG* carrier, ULONG* region,
                        ULONG* gpsCapability);
    /* The vendor's list. `*imageListSize` in: octets of room, out: octets of the list. */
    ULONG GetImagePreference(ULONG* imageListSize, BYTE* imageList);
    /* `*imageTypesSize` in: room at `imageTypes`, out: image types that are to be loaded. */
    ULONG SetImagePreference(ULONG imageListSize, BYTE* imageList, ULONG forceDownload, BYTE modemIndex,
                             ULONG* imageTypesSize, BYTE* imageTypes);
    ULONG ResetToFactoryDefaults(char* spc);

    /* --- power; the vendor's operating mode: 0 online, 5 reset, 6 low power, others as the vendor has them -------- */

    ULONG GetPower(ULONG* mode);
    /* Logs mode and status. */
    ULONG SetPower(ULONG mode);
    /* A bit a reason; the vendor's platform. */
    ULONG GetOfflineReason(ULONG* reasons, ULONG* platform);

    /* --- device management; each logs its status ------------------------------------------------------------------ */

    /* 0 off, 1 on. */
    ULONG OMADMGetFeatureSettings(ULONG* provisioning, ULONG* prlUpdate);
    /* Type 0 to 5, as a session is started with; pause and remaining time in s. */
    ULONG OMADMGetSessionInfo(ULONG* state, ULONG* type, ULONG* failureReason, BYTE* retryCount, WORD* pauseSeconds,
                              WORD* remainingSeconds);
    ULONG OMADMSetProvisioningFeature(ULONG enabled);
    ULONG OMADMSetPRLUpdateFeature(ULONG enabled);
    ULONG OMADMStartSession(ULONG type);
    ULONG OMADMCancelSession();
    /* The network-initiated session that waits for an answer. */
    ULONG OMADMGetPendingNIA(ULONG* type, WORD* sessionID);
    /* 0 refuse, 1 accept. */
    ULONG OMADMSendSelection(ULONG selection, WORD sessionID);
    ULONG OMAEXSetEventReport();
    ULONG OMAEXSessionStart(BYTE* type);
    ULONG OMAEXSessionCancel();
    ULONG OMAEXSelection(BYTE* selection);
    /* Each 0 or 1; Set takes null for what stays as it is. */
    ULONG OMAEXGetSettings(BYTE* provisioning, BYTE* prlUpdate, BYTE* firmwareUpdate, BYTE* clientInitiated,
                           BYTE* networkInitiated, BYTE* autoAccept);
    ULONG OMAEXSetSettings(BYTE* provisioning, BYTE* prlUpdate, BYTE* firmwareUpdate, BYTE* clientInitiated,
                           BYTE* networkInitiated, BYTE* autoAccept);
    ULONG OMAEXSessionGetInfo(omaSessionInfo* info);
    ULONG OMAEXInit();
    ULONG OMAEXShutdown();

    /* --- audio profiles ------------------------------------------------------------------------------------------- */

    /*
     * All but PlayAudioTone read the profile in use first; when that fails they log it, return its status and stop.
     * Mute is 0 or 1; profile numbers, levels, gains and modes are the vendor's.
     */
    ULONG GetAudioProfile(BYTE* profile);
    ULONG SetAudioProfile(BYTE* profile);
    ULONG SetMICMuteStatus(BYTE* mute);
    ULONG SetSpeakerMuteStatus(BYTE* mute);
    ULONG SetReceiverVolume(BYTE* volume);
    ULONG SetMicVolume(WORD* volume);
    ULONG GetMicVolume(WORD* volume);
    ULONG SetEchoCancelMode(BYTE* mode);
    ULONG GetEchoCancelMode(BYTE* mode);
    ULONG SetNoiseSuppression(BYTE* mode);
    ULONG GetNoiseSuppression(BYTE* mode);
    ULONG SetAutoOutputGain(BYTE* mode);
    ULONG GetAutoOutputGain(BYTE* mode);
    ULONG SetAutoInputGain(BYTE* mode);
    ULONG GetAutoInputGain(BYTE* mode);
    /* A filter of the transmit or receive path: 0 or 1, which stage, its coefficient, its gain. */
    ULONG SetTXPCMFilter(WORD* enabled, WORD* stage, ULONG* coefficient, WORD* gain);
    ULONG GetTXPCMFilter(WORD* enabled, WORD* stage, ULONG* coefficient, WORD* gain);
    ULONG SetRXPCMFilter(WORD* enabled, WORD* stage, ULONG* coefficient, WORD* gain);
    ULONG GetRXPCMFilter(WORD* enabled, WORD* stage, ULONG* coefficient, WORD* gain);
    ULONG SetRXGainLevel(BYTE* level, WORD* codecGain, WORD* digitalGain);
    ULONG SetSideToneGain(WORD* gain);
    ULONG GetSideToneGain(WORD* gain);
    /* The vendor's tone record. Logs its address when the call fails. */
    ULONG PlayAudioTone(BYTE* tone);

    /* --- voice, supplementary services and USSD ------------------------------------------------------------------- */

    /*
     * Outputs that recur: `failureCause` of 3GPP TS 24.008 annex H or the vendor's; what the SIM's call control made of
     * the request: its text `alphaID`, GOBI_CALL_CONTROL_... in `controlResult`, the call it became in `callID`, or the
     * service it became in `controlService`. Reasons GOBI_SUPS_..., classes GOBI_CLASS_..., both in.
     */
    ULONG OrigUSSD(USSInfo* request, WORD* failureCause, alphaIDInfo* alphaID, USSInfo* answer, BYTE* controlResult,
                   BYTE* callID, ccSUPSType* controlService);
    ULONG AnswerUSSD(USSInfo* answer);
    ULONG CancelUSSD();
    ULONG ChangeBarringPwd(callBarringPwd* change, WORD* failureCause, alphaIDInfo* alphaID, BYTE* controlResult,
                           BYTE* callID, ccSUPSType* controlService);
    /* The request in; the call's id out, 1 to 255. */
    ULONG DialCall(tDialReqParam* request, BYTE* callID, alphaIDInfo* alphaID, BYTE* controlResult,
                   ccSUPSType* controlService);
    /* The call's id in; the id of the call that the module ended or answered out. */
    ULONG EndCall(BYTE* callID, BYTE* endedCallID);
    ULONG AnserCall(BYTE* callID, BYTE* answeredCallID);
    /* GOBI_MANAGE_... and, for the last two of those, the call's id in. */
    ULONG ManageCalls(BYTE* kind, BYTE* callID, WORD* failureCause);
    ULONG GetCLIR(statusResp* status, WORD* failureCause, alphaIDInfo* alphaID, BYTE* controlResult, BYTE* callID,
                  ccSUPSType* controlService);
    /* `activeClasses` out: a sum of GOBI_CLASS_... */
    ULONG GetCallWaiting(BYTE* serviceClass, BYTE* activeClasses, WORD* failureCause, alphaIDInfo* alphaID,
                         BYTE* controlResult, BYTE* callID, ccSUPSType* controlService);
    ULONG SetSUPS(voiceSetSUPSServiceReq* request, WORD* failureCause, alphaIDInfo* alphaID, BYTE* controlResult,
                  BYTE* callID, ccSUPSType* controlService);
    ULONG GetCallBarring(BYTE* reason, BYTE* serviceClass, BYTE* activeClasses, WORD* failureCause,
                         alphaIDInfo* alphaID, BYTE* controlResult, BYTE* callID, ccSUPSType* controlService);
    /* The failure cause is an octet here. */
    ULONG GetCallForwarding(BYTE* reason, BYTE* serviceClass, getCallFWInfo* info, BYTE* failureCause,
                            alphaIDInfo* alphaID, BYTE* controlResult, BYTE* callID, ccSUPSType* controlService,
                            getExtCallFWInfo* extendedInfo);
    /* Everything about all calls; voice privacy 0 or 1, and the over-the-air provisioning status of a CDMA call. */
    ULONG GetAllCallInfo(arrCallInfo* calls, arrRemotePartyNum* remoteNumbers, arrRemotePartyName* remoteNames,
                         arrAlertingType* alertingTypes, arrUUSInfo* uusInfos, arrSvcOption* serviceOptions,
                         BYTE* voicePrivacy, BYTE* otaspStatus, arrCallEndReason* endReasons, arrAlphaIDInfo* alphaIDs,
                         arrPeerNumInfo* connectedNumbers, arrDiagInfo* diagnostics, arrPeerNumInfo* calledNumbers,
                         arrPeerNumInfo* redirectingNumbers, arrAlertingPattern* alertingPatterns);
    /* A CDMA flash: the call's id, terminated digits (may be null) and kind in; the id of the call out. */
    ULONG SendFlash(BYTE* callID, char* digits, BYTE* kind, BYTE* flashedCallID);
    /* The call's id and the key ('0' to '9', '*', '#', 'A' to 'D') in; the id of the call out. */
    ULONG StartDTMF(BYTE* callID, BYTE* key, BYTE* startedCallID);
    ULONG StopDTMF(BYTE* callID, BYTE* stoppedCallID);

    /* --- phonebook; session type as GOBI_UIM_SESSION_..., the vendor's phonebook type; records count from 1 ------- */

    /* Records in use and in all; octets that a number and a name may have. */
    ULONG GetPhonebookCapabilities(BYTE* sessionType, WORD* phonebookType, WORD* used, WORD* capacity,
                                   BYTE* maxNumberLength, BYTE* maxNameLength);
    /* First and last record in; how many there are out. The records come by SetPhonebookRecordReadCB. */
    ULONG ReadPhonebookRecords(BYTE* sessionType, WORD* phonebookType, WORD* first, WORD* last, WORD* count);
    /* `*recordID` in: 0 for the first free one; out: the record written. Texts as arrPBInfo, coding as USSInfo. */
    ULONG WritePhonebookRecord(BYTE* sessionType, WORD* phonebookType, WORD* recordID, BYTE* numberType,
                               BYTE* numberLength, BYTE* number, BYTE* nameLength, BYTE* name, BYTE* nameCoding);
    ULONG DeletePhonebookRecord(BYTE* sessionType, WORD* phonebookType, WORD* recordID);

    /* --- the second audio family ---------------------------------------------------------------------------------- */

    /*
     * `profile` is an input but for the first. Set reads through all pointers, Get fills all others. Mute is 0 or 1;
     * levels, gains and modes are the vendor's.
     */
    ULONG OrvM2MAV_AudioGetProfile(BYTE* profile, BYTE* earMute, BYTE* micMute, BYTE* generator, BYTE* volume,
                                   BYTE* waitingToneMute, BYTE* sideTone);
    ULONG OrvM2MAV_AudioSetProfile(BYTE* profile, BYTE* earMute, BYTE* micMute, BYTE* generator, BYTE* volume,
                                   BYTE* waitingToneMute);
    ULONG OrvM2MAV_AudioGetVolume(BYTE* profile, BYTE* generator, BYTE* volume);
    ULONG OrvM2MAV_AudioSetVolume(BYTE* profile, BYTE* generator, BYTE* volume);
    ULONG OrvM2MAV_AudioGetAVMute(BYTE* profile, BYTE* earMute, BYTE* micMute, BYTE* waitingToneMute);
    ULONG OrvM2MAV_AudioSetAVMute(BYTE* profile, BYTE* earMute, BYTE* micMute, BYTE* waitingToneMute);
    ULONG OrvM2MAV_AudioGetAVCFG(AudioConfig* config, BYTE* profile);
    ULONG OrvM2MAV_AudioSetAVCFG(BYTE* profile, BYTE* kind, BYTE* id, PIFACETable* table);
    /* Puts all settings of the family back to their defaults. */
    ULONG OrvM2MAV_AudioNVDef();
    /* Loopback, 0 or 1. */
    ULONG OrvM2MAV_AudioSetLPBK(BYTE* enabled);
    /* No vendor library has these four: they return 1. */
    ULONG OrvM2MAV_AudioGetSpeakerGain(BYTE* profile, WORD* gain);
    ULONG OrvM2MAV_AudioSetSpeakerGain(BYTE* profile, WORD* gain);
    ULONG OrvM2MAV_AudioGetSTG(BYTE* profile, WORD* gain);
    ULONG OrvM2MAV_AudioSetSTG(BYTE* profile, WORD* gain);
    ULONG OrvM2MAV_AudioGetTxVolume(BYTE* profile, WORD* volume);
    ULONG OrvM2MAV_AudioSetTxVolume(BYTE* profile, WORD* volume);
    ULONG OrvM2MAV_AudioGetMicGain(BYTE* profile, WORD* gain);
    ULONG OrvM2MAV_AudioSetMicGain(BYTE* profile, WORD* gain);
    /* The gain that stands behind one level of one generator. */
    ULONG OrvM2MAV_AudioGetVolDB(BYTE* profile, BYTE* generator, BYTE* level, WORD* gain);
    ULONG OrvM2MAV_AudioSetVolDB(BYTE* profile, BYTE* generator, BYTE* level, WORD* gain);
    ULONG OrvM2MAV_AudioGetAVTXG(BYTE* profile, WORD* gain);
    ULONG OrvM2MAV_AudioSetAVTXG(BYTE* profile, WORD* gain);
    ULONG OrvM2MAV_AudioGetAVRXG(BYTE* profile, WORD* gain);
    ULONG OrvM2MAV_AudioSetAVRXG(BYTE* profile, WORD* gain);
    ULONG OrvM2MAV_AudioGetAVEC(BYTE* profile, BYTE* mode);
    ULONG OrvM2MAV_AudioSetAVEC(BYTE* profile, BYTE* mode);
    ULONG OrvM2MAV_AudioGetAVNS(BYTE* profile, BYTE* mode);
    ULONG OrvM2MAV_AudioSetAVNS(BYTE* profile, BYTE* mode);
    /* Which tone, how loud, and for how many ms. */
    ULONG OrvM2MAV_AudioPlayTone(BYTE* tone, BYTE* volume, WORD* duration);

public:
    /* The registration entry points, shared by all instances. mpFNSetEmergencyListCB keeps its value after an unload;
     * the setter does not call it then. */
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
