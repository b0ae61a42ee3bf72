/*
 * The events of the vendor library: the callback types, and the registration entry points that take them.
 *
 * Callbacks run on a thread of the vendor library. Pointers are valid during the call only.
 */
#ifndef TALVEK_GOBI_CALLBACKS_H
#define TALVEK_GOBI_CALLBACKS_H

#include "talvek/gobi_types.h"

typedef void(ORV_VENDOR_CALL* GobiSessionStateCallback)(ULONG state, ULONG sessionEndReason);
typedef void(ORV_VENDOR_CALL* GobiDataBearerCallback)(ULONG bearer);
typedef void(ORV_VENDOR_CALL* GobiDormancyStatusCallback)(ULONG status);
typedef void(ORV_VENDOR_CALL* GobiMobileIPStatusCallback)(ULONG status);
typedef void(ORV_VENDOR_CALL* GobiActivationStatusCallback)(ULONG status);
typedef void(ORV_VENDOR_CALL* GobiPowerCallback)(ULONG operatingMode);
typedef void(ORV_VENDOR_CALL* GobiRoamingIndicatorCallback)(ULONG roaming);
/* Strength in dBm. */
typedef void(ORV_VENDOR_CALL* GobiSignalStrengthCallback)(ORV_INT8 strength, ULONG radioInterface);
typedef void(ORV_VENDOR_CALL* GobiRFInfoCallback)(ULONG radioInterface, ULONG bandClass, ULONG channel);
typedef void(ORV_VENDOR_CALL* GobiNewSMSCallback)(ULONG storageType, ULONG messageIndex);
/* Cell broadcast: `length` octets at `data`. */
typedef void(ORV_VENDOR_CALL* GobiNewSMSCBCallback)(BYTE messageFormat, ULONG messageMode, BYTE dataType, WORD length,
                                                    BYTE* data);
/* Three arrays of `count` octets: message type, active flag, number of waiting messages. */
typedef void(ORV_VENDOR_CALL* GobiMsgWaitingCallback)(BYTE count, BYTE* types, BYTE* active, BYTE* waiting);
typedef void(ORV_VENDOR_CALL* GobiDataCapabilitiesCallback)(BYTE count, BYTE* capabilities);
typedef void(ORV_VENDOR_CALL* GobiByteTotalsCallback)(ULONGLONG bytesSent, ULONGLONG bytesReceived);
typedef void(ORV_VENDOR_CALL* GobiOMADMStateCallback)(ULONG sessionState, ULONG failureReason);
typedef void(ORV_VENDOR_CALL* GobiOMADMAlertCallback)(ULONG sessionType, WORD sessionID);
/* Each array begins with its entry count; any pointer may be null. */
typedef void(ORV_VENDOR_CALL* GobiCallInfoCallback)(arrCallInfo* calls, arrRemotePartyNum* remoteNumbers,
                                                    arrRemotePartyName* remoteNames, arrAlertingType* alertingTypes,
                                                    arrSvcOption* serviceOptions, arrCallEndReason* endReasons,
                                                    arrAlphaIDInfo* alphaIDs, arrPeerNumInfo* connectedNumbers,
                                                    arrPeerNumInfo* calledNumbers, arrPeerNumInfo* redirectingNumbers);
typedef void(ORV_VENDOR_CALL* GobiInfoRecCallback)(BYTE* callID, signalInfo* signal, callerIDInfo* callerID,
                                                   char* display, BYTE* displayAux, peerNumInfo* calledNumber,
                                                   BYTE* calledNumberAux, redirectNumInfo* redirectingNumber,
                                                   BYTE* nssAudio, lineCtlInfo* lineControl,
                                                   extDisplayInfo* extendedDisplay);
typedef void(ORV_VENDOR_CALL* GobiUSSDCallback)(BYTE* notificationType, USSInfo* info);
typedef void(ORV_VENDOR_CALL* GobiPhonebookRecordReadCallback)(BYTE phonebookType, WORD count, arrPBInfo* records);
typedef void(ORV_VENDOR_CALL* GobiAllPhonebookInitDoneCallback)(BYTE count, BYTE* sessionTypes, WORD* phonebookTypes);
typedef void(ORV_VENDOR_CALL* GobiEmergencyListCallback)(BYTE count, emergencyNumberEntry* entries);
/* Year, then date, time and zone fields in the vendor's order. */
typedef void(ORV_VENDOR_CALL* GobiNetworkTimeCallback)(WORD year, BYTE month, BYTE day, BYTE hour, BYTE minute,
                                                       BYTE second, BYTE dayOfWeek, BYTE timeZone, BYTE daylightSaving);
typedef void(ORV_VENDOR_CALL* GobiSystemSelectionPrefCallback)(BYTE* emergencyMode);
typedef void(ORV_VENDOR_CALL* GobiOMAEXEventCallback)(FUMOInfo* firmwareUpdate, OMAInfo* oma);
typedef void(ORV_VENDOR_CALL* GobiDeviceRemovalCallback)(ULONG status);

/* The registration entry points; a null callback unregisters. Each returns a vendor status, 0 for success. */
typedef ULONG(ORV_VENDOR_CALL* GobiSetSessionState)(GobiSessionStateCallback);
typedef ULONG(ORV_VENDOR_CALL* GobiSetDataBearer)(GobiDataBearerCallback);
typedef ULONG(ORV_VENDOR_CALL* GobiSetDormancyStatus)(GobiDormancyStatusCallback);
typedef ULONG(ORV_VENDOR_CALL* GobiSetMobileIPStatus)(GobiMobileIPStatusCallback);
typedef ULONG(ORV_VENDOR_CALL* GobiSetActivationStatus)(GobiActivationStatusCallback);
typedef ULONG(ORV_VENDOR_CALL* GobiSetPower)(GobiPowerCallback);
typedef ULONG(ORV_VENDOR_CALL* GobiSetRoamingIndicator)(GobiRoamingIndicatorCallback);
typedef ULONG(ORV_VENDOR_CALL* GobiSetSignalStrength)(GobiSignalStrengthCallback, BYTE thresholdCount,
                                                      ORV_INT8* thresholds);
typedef ULONG(ORV_VENDOR_CALL* GobiSetRFInfo)(GobiRFInfoCallback);
typedef ULONG(ORV_VENDOR_CALL* GobiSetNewSMS)(GobiNewSMSCallback);
typedef ULONG(ORV_VENDOR_CALL* GobiSetNewSMSCB)(GobiNewSMSCBCallback);
typedef ULONG(ORV_VENDOR_CALL* GobiSetMsgWaiting)(GobiMsgWaitingCallback);
typedef ULONG(ORV_VENDOR_CALL* GobiSetDataCapabilities)(GobiDataCapabilitiesCallback);
typedef ULONG(ORV_VENDOR_CALL* GobiSetByteTotals)(GobiByteTotalsCallback, BYTE interval);
typedef ULONG(ORV_VENDOR_CALL* GobiSetOMADMState)(GobiOMADMStateCallback);
typedef ULONG(ORV_VENDOR_CALL* GobiSetOMADMAlert)(GobiOMADMAlertCallback);
typedef ULONG(ORV_VENDOR_CALL* GobiSetCallInfo)(GobiCallInfoCallback);
typedef ULONG(ORV_VENDOR_CALL* GobiSetInfoRec)(GobiInfoRecCallback);
typedef ULONG(ORV_VENDOR_CALL* GobiSetUSSD)(GobiUSSDCallback);
typedef ULONG(ORV_VENDOR_CALL* GobiSetPhonebookRecordRead)(GobiPhonebookRecordReadCallback);
typedef ULONG(ORV_VENDOR_CALL* GobiSetAllPhonebookInitDone)(GobiAllPhonebookInitDoneCallback);
typedef ULONG(ORV_VENDOR_CALL* GobiSetEmergencyList)(GobiEmergencyListCallback);
typedef ULONG(ORV_VENDOR_CALL* GobiSetNetworkTime)(GobiNetworkTimeCallback);
typedef ULONG(ORV_VENDOR_CALL* GobiSetSystemSelectionPref)(GobiSystemSelectionPrefCallback);
typedef ULONG(ORV_VENDOR_CALL* GobiSetOMAEXEvent)(GobiOMAEXEventCallback);

#endif /* TALVEK_GOBI_CALLBACKS_H */
