// The adapters: what the library hands to the vendor library, one an event, each with exactly its callback's signature.
// They run on the vendor library's threads.
#pragma once

#include "talvek/gobi_callbacks.h"

// power.cpp
void ORV_VENDOR_CALL GobiAPIPowerCallback(ULONG operatingMode);
void ORV_VENDOR_CALL DormancyStatusCallback(ULONG status);
void ORV_VENDOR_CALL ActivationStatusCallback(ULONG state);

// signal.cpp
void ORV_VENDOR_CALL GobiAPISignalStrengthCallback(ORV_INT8 strength, ULONG radioInterface);
void ORV_VENDOR_CALL GobiAPIDataCapabilities(BYTE count, BYTE* capabilities);
// Delivers the last known strength again, on the calling thread.
void DispatchLastSignalStrength();

// network.cpp
void ORV_VENDOR_CALL GobiAPIRoamingIndicatorCallback(ULONG roaming);
void ORV_VENDOR_CALL RFInfoCallback(ULONG radioInterface, ULONG bandClass, ULONG channel);
void ORV_VENDOR_CALL NITZCallback(WORD year, BYTE month, BYTE day, BYTE hour, BYTE minute, BYTE second, BYTE dayOfWeek,
                                  BYTE timeZone, BYTE daylightSaving);
void ORV_VENDOR_CALL EmergencyModeCallback(BYTE* mode);

// data_session.cpp
void ORV_VENDOR_CALL SessionStateCallback(ULONG state, ULONG sessionEndReason);
void ORV_VENDOR_CALL ByteTotalsCallback(ULONGLONG bytesSent, ULONGLONG bytesReceived);

// sms.cpp
void ORV_VENDOR_CALL NewSMSCallback(ULONG storageType, ULONG messageIndex);
void ORV_VENDOR_CALL NewSMSCBCallback(BYTE messageFormat, ULONG messageMode, BYTE dataType, WORD length, BYTE* data);
void ORV_VENDOR_CALL VoiceMessageCallback(BYTE count, BYTE* types, BYTE* active, BYTE* waiting);

// omadm.cpp
void ORV_VENDOR_CALL OMADMStateCallback(ULONG sessionState, ULONG failureReason);
void ORV_VENDOR_CALL OMADMAlertCallback(ULONG sessionType, WORD sessionID);
void ORV_VENDOR_CALL OMAEXEventCallback(FUMOInfo* firmwareUpdate, OMAInfo* oma);

// calls.cpp
void ORV_VENDOR_CALL CallInfoCallback(arrCallInfo* calls, arrRemotePartyNum* remoteNumbers,
                                      arrRemotePartyName* remoteNames, arrAlertingType* alertingTypes,
                                      arrSvcOption* serviceOptions, arrCallEndReason* endReasons,
                                      arrAlphaIDInfo* alphaIDs, arrPeerNumInfo* connectedNumbers,
                                      arrPeerNumInfo* calledNumbers, arrPeerNumInfo* redirectingNumbers);
void ORV_VENDOR_CALL InfoRecCallback(BYTE* callID, signalInfo* signal, callerIDInfo* callerID, char* display,
                                     BYTE* displayAux, peerNumInfo* calledNumber, BYTE* calledNumberAux,
                                     redirectNumInfo* redirectingNumber, BYTE* nssAudio, lineCtlInfo* lineControl,
                                     extDisplayInfo* extendedDisplay);
void ORV_VENDOR_CALL USSDCallback(BYTE* notificationType, USSInfo* info);

// phonebook.cpp
void ORV_VENDOR_CALL AllPhonebookInitDoneCallback(BYTE count, BYTE* sessionTypes, WORD* phonebookTypes);
void ORV_VENDOR_CALL ReadSIMPhoneBookCallback(BYTE phonebookType, WORD count, arrPBInfo* records);
void ORV_VENDOR_CALL EmergencyListCallback(BYTE count, emergencyNumberEntry* entries);
