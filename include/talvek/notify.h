/*
 * Notifications: the identifiers, the record that the client callback receives, and every payload.
 *
 * A record is cleared before it is filled. uPayloadSize is the number of payload octets that are meant; the last words
 * of most payloads are reserved and read 0. The record is the library's own and is valid during the callback only.
 */
#ifndef TALVEK_NOTIFY_H
#define TALVEK_NOTIFY_H

#include "talvek/types.h"

/* An identifier. "Carried by N": delivered while N is enabled; OrvNotify itself refuses it. */
typedef ULONG ORV_NOTIFY;
enum {
    ORV_NOTIFY_DeviceRemoved = 1, /* the module left; needs a registered callback and a selected module only */
    ORV_NOTIFY_PowerState = 5,    /* radio power changed; OrvSelectAirServer enables it */
    ORV_NOTIFY_SignalStrength = 103,
    ORV_NOTIFY_ModemReset = 105,
    ORV_NOTIFY_RFInfo = 114,      /* never delivered: only makes the module report, which is logged */
    ORV_NOTIFY_NetworkTime = 116, /* carried by the first of 103, 1002, 1039, 1040, 1042, 2027, 2032, and for good */
    ORV_NOTIFY_NewSMS = 500,
    ORV_NOTIFY_SMSSendStatus = 501, /* of OrvSendCdmaSMS and OrvSendSMS */
    ORV_NOTIFY_CellBroadcast = 502, /* carried by 500 */
    ORV_NOTIFY_RFInfoCdma = 1000,   /* as 114 */
    ORV_NOTIFY_CdmaService = 1002,
    ORV_NOTIFY_CdmaRoaming = 1003,
    ORV_NOTIFY_ByteTotals = 1006,
    ORV_NOTIFY_CallOriginating = 1007,
    ORV_NOTIFY_CallConnected = 1008,
    ORV_NOTIFY_CallIncoming = 1009, /* carried by 1027 */
    ORV_NOTIFY_CallDisconnected = 1012,
    ORV_NOTIFY_CallNotificationStatus = 1027, /* enables 1028, 1007, 1008, 1012 and the call events */
    ORV_NOTIFY_DormancyStatus = 1028,         /* never delivered: only logged */
    ORV_NOTIFY_EmergencyMode = 1030,          /* carried as 116 */
    ORV_NOTIFY_ActivationStatus = 1032,
    ORV_NOTIFY_HdrSignalStrength = 1039,
    ORV_NOTIFY_CdmaSignalQuality = 1040,
    ORV_NOTIFY_HdrRoaming = 1041,
    ORV_NOTIFY_HdrService = 1042,
    ORV_NOTIFY_GsmByteTotals = 2012,
    ORV_NOTIFY_PhonebookReady = 2013,   /* carried by 500, too */
    ORV_NOTIFY_PhonebookRecords = 2014, /* carried by 500 */
    ORV_NOTIFY_EmergencyNumbers = 2015, /* carried by 500, and for good */
    ORV_NOTIFY_PLMNModeSet = 2016,      /* of OrvSetPLMNMode: a mode was accepted */
    ORV_NOTIFY_PLMNSearchDone = 2017,   /* of OrvStartPLMNSearch: 1 = networks were found */
    ORV_NOTIFY_RadioOff = 2018,
    ORV_NOTIFY_PLMNManual = 2019, /* of OrvSetPLMNMode: a manual mode is in force */
    ORV_NOTIFY_VoiceMail = 2020,  /* carried by 500; also of OrvRetrieveCdmaSMSMessage */
    ORV_NOTIFY_GsmPacketState = 2027,
    ORV_NOTIFY_PktSessionCall = 2029,
    ORV_NOTIFY_GsmSystemStatus = 2032,
    ORV_NOTIFY_GsmPacketAlert = 2035, /* cannot be enabled, so never delivered */
    ORV_NOTIFY_OMADMState = 2269,
    ORV_NOTIFY_OMADMAlert = 2270,
    ORV_NOTIFY_CallHold = 2280,  /* carried by 1027 */
    ORV_NOTIFY_USSD = 2281,      /* carried by 1027 */
    ORV_NOTIFY_FUMOEvent = 2283, /* carried by 2269 */
    ORV_NOTIFY_OMAEvent = 2284   /* carried by 2269 */
};

/* --- payloads, by identifier -------------------------------------------------------------------------------------- */

typedef struct tagOrvPowerStatePayload { /* 5 */
    ULONG uPowerState;                   /* 0 radio on; 5, 1, 2, 3, 4 as the module's operating mode is converted */
    ULONG uValid;                        /* 1 */
    ULONG uReserved;
} OrvPowerStatePayload;

typedef struct tagOrvSignalStrengthPayload { /* 103 */
    int32_t nRssi;                           /* dBm; -250 = no signal */
    int32_t nEcio;                           /* -50 */
    ULONG uReserved;
} OrvSignalStrengthPayload;

typedef struct tagOrvNetworkTimePayload { /* 116: in the order in which the module's fields are placed */
    ULONG uYear;
    ULONG uMonth;
    ULONG uDay;
    ULONG uDayOfWeek;
    ULONG uHour;
    ULONG uMinute;
    ULONG uSecond;
    ULONG uTimeZone;
    ULONG uDaylightSaving;
    ULONG uReserved;
} OrvNetworkTimePayload;

typedef struct tagOrvNewSMSPayload { /* 500: read the message with the SMS functions */
    ULONG uReserved[7];              /* payload size 16 on CDMA, 28 on GSM/UMTS */
} OrvNewSMSPayload;

typedef struct tagOrvSMSSendStatusPayload { /* 501 */
    ULONG uMsgId;                           /* CDMA: the message; GSM/UMTS: 0 */
    ULONG uStatus;                          /* 0 sent; CDMA 2, GSM/UMTS 1 not sent */
    ULONG uReserved[9];                     /* payload size 16 on CDMA, 44 on GSM/UMTS */
} OrvSMSSendStatusPayload;

typedef struct tagOrvCellBroadcastPayload { /* 502 */
    BYTE uDataType;
    BYTE bReserved;
    WORD uLength; /* octets at aData */
    BYTE aData[168];
    ULONG uReserved;
} OrvCellBroadcastPayload;

typedef struct tagOrvValuePayload { /* 1002, 1003, 1041, 1042, 2013, 2016, 2017, 2019 */
    ULONG uValue; /* 1002, 1042: 0 no service, 2 or 4 service; 1003, 1041: roaming indicator, 0 off, 1 on, 2 flashing */
    ULONG uReserved;
} OrvValuePayload;

typedef struct tagOrvByteTotalsPayload { /* 1006, 2012 */
    ULONG uBytesSent;                    /* low 32 bits */
    ULONG uBytesReceived;                /* low 32 bits */
    ULONG uReserved;
} OrvByteTotalsPayload;

typedef struct tagOrvCallOriginatingPayload { /* 1007 */
    ULONG uCallType;                          /* 257 */
    ULONG uStatus;                            /* 1 */
    WCHAR szNumber[36];
    ULONG uReserved;
} OrvCallOriginatingPayload;

typedef struct tagOrvCallStatusPayload { /* 1008, 1012, 2280 */
    ULONG uStatus;
    ULONG uCallId;
    ULONG uDetail; /* 1008: service option; 1012: end reason; 2280: 0 */
    ULONG uReserved;
} OrvCallStatusPayload;

typedef struct tagOrvCallIncomingPayload { /* 1009 */
    ULONG uKind;                           /* 0 voice, 5 emergency, 256 waiting */
    ULONG uCallId;
    char szNumber[36]; /* terminated */
    ULONG uReserved;
} OrvCallIncomingPayload;

typedef struct tagOrvFlagPayload { /* 1030: the emergency mode; 2018: 1 = radio off, 0 = not off */
    BYTE bFlag;
    BYTE bReserved[3];
    ULONG uReserved;
} OrvFlagPayload;

typedef struct tagOrvActivationStatusPayload { /* 1032 */
    ULONG uState;                              /* 8 when the module reports 0, else the mapped state */
    ULONG uValid;                              /* 0 when the module reports 0, else 1 */
    ULONG uReserved;
} OrvActivationStatusPayload;

typedef struct tagOrvHdrSignalStrengthPayload { /* 1039 */
    int32_t nRssi;                              /* dBm; -250 = no signal */
    ULONG uReserved;
} OrvHdrSignalStrengthPayload;

typedef struct tagOrvCdmaSignalQualityPayload { /* 1040 */
    int16_t nCdmaEcio;                          /* -50 = none */
    int16_t nCdmaRssi;                          /* dBm; -250 = no signal */
    int16_t nHdrEcio;
    int16_t nHdrRssi;
    ULONG uReserved;
} OrvCdmaSignalQualityPayload;

typedef struct tagOrvPhonebookEntry {
    ULONG uRecordId;
    ULONG uNumberType;
    ULONG uNumberLength; /* octets at aNumber, at most 256 */
    ULONG uNameLength;   /* octets at aName, at most 256 */
    BYTE aNumber[256];
    BYTE aName[256];
    ULONG uPhonebookType;
} OrvPhonebookEntry;

enum { ORV_PHONEBOOK_BATCH = 10, ORV_EMERGENCY_BATCH = 10, ORV_EMERGENCY_DIGITS = 81 };

typedef struct tagOrvPhonebookRecordsPayload { /* 2014 */
    ULONG uCount;                              /* entries used */
    OrvPhonebookEntry entries[ORV_PHONEBOOK_BATCH];
    ULONG uReserved;
} OrvPhonebookRecordsPayload;

typedef struct tagOrvEmergencyNumbersPayload { /* 2015: one array an octet position of the module's entries */
    ULONG uCount;                              /* entries used */
    BYTE aHeader[6][ORV_EMERGENCY_BATCH];      /* the sixth is the number of digits */
    BYTE aDigits[ORV_EMERGENCY_BATCH][ORV_EMERGENCY_DIGITS];
    BYTE bReserved[6];
} OrvEmergencyNumbersPayload;

typedef struct tagOrvVoiceMailPayload { /* 2020 */
    BYTE bActive;                       /* 1 */
    BYTE bReserved[3];
    int32_t nWaiting; /* -1 = some, number unknown */
    BYTE bZero[3];
    BYTE bReserved2[5];
} OrvVoiceMailPayload;

typedef struct tagOrvGsmPacketStatePayload { /* 2027 */
    ULONG uSessionState;                     /* 1 disconnected, 2 connected, 3 suspended, 4 authenticating */
    ULONG uTechnology;                       /* 0, 1 GSM, 3 UMTS */
    ULONG uZero[2];
    ULONG uReserved;
} OrvGsmPacketStatePayload;

typedef struct tagOrvPktSessionPayload { /* 2029 */
    BYTE bConnected;
    BYTE bZero;
    BYTE bReserved[2];
    ULONG uEndReason;     /* 30 when the session ended */
    ULONG uSessionHandle; /* 0 in the notification, as all that follows */
    ULONG uProfile;
    BYTE aReserved[76];
} OrvPktSessionPayload;

typedef struct tagOrvGsmSystemStatus { /* 2032, and the record of OrvGetGsmSystemStatus */
    ULONG sizeStruct;                  /* 144 */
    ULONG eRadioState;
    ULONG eServiceStatus;
    ULONG eServiceDomain;
    ULONG eRegistration;
    ULONG eRoaming;
    ULONG eSelectionMode;
    ULONG eDataTechnology;
    ULONG uRan;
    ULONG eRadioInterface;
    ULONG uBandClass;
    ULONG uChannel;
    ULONG uCsState;
    ULONG uPsState;
    ULONG uMCC;
    ULONG uMNC;
    WCHAR szNetworkName[40];
} OrvGsmSystemStatus;

typedef struct tagOrvGsmPacketAlertPayload { /* 2035 */
    ULONG uValue;
    ULONG uZero;
    ULONG uReserved[2];
} OrvGsmPacketAlertPayload;

/* Values: talvek/cdma_omadm.h. In 2269 every field but sizeStruct and nState is 0; in the record of
 * OrvGetOMADMSessionState nState is 0. */
typedef struct tagOrvOMADMSessionState { /* 2269 */
    ULONG sizeStruct;                    /* 32 */
    ULONG bBusy;                         /* 1 while the session is under way */
    WORD uPauseSeconds;                  /* between two attempts */
    WORD uPadding;
    ULONG eType;   /* ORV_OMADM_TYPE_… */
    ULONG eSource; /* ORV_OMADM_SOURCE_… */
    ULONG nState;  /* ORV_OMADM_STATE_… */
    ULONG uError;  /* 0, or ORV_OMADM_STATE_FAILED */
    ULONG bIdle;   /* 1 when there is none, or it has ended with success */
} OrvOMADMSessionState;

typedef struct tagOrvOMADMAlert { /* 2270; the session's identifier stands in the field of its class */
    ULONG sizeStruct;             /* 20 */
    ULONG nState;                 /* ORV_OMADM_ALERT_…; in 2270 it is ORV_OMADM_ALERT_PENDING */
    ULONG uDcSessionId;           /* device configuration */
    ULONG uPrlSessionId;          /* preferred roaming list */
    ULONG nType;                  /* ORV_OMADM_TYPE_… */
} OrvOMADMAlert;

typedef struct tagOrvUSSDPayload { /* 2281 */
    ULONG uType;
    ULONG uDataCodingScheme;
    ULONG uLength; /* octets at aData */
    BYTE aData[260];
    ULONG uReserved;
} OrvUSSDPayload;

typedef struct tagOrvFUMOEventPayload { /* 2283 */
    ULONG uEvent;
    BYTE aData[4096];
    ULONG uReserved;
} OrvFUMOEventPayload;

typedef struct tagOrvOMAEventPayload { /* 2284 */
    ULONG uEvent;
    ULONG uStatus;
    BYTE aData[512];
    ULONG uReserved;
} OrvOMAEventPayload;

/* --- the record --------------------------------------------------------------------------------------------------- */

typedef union tagOrvNotifyPayload {
    BYTE aOctets[5328];
    OrvPowerStatePayload PowerState;
    OrvSignalStrengthPayload SignalStrength;
    OrvNetworkTimePayload NetworkTime;
    OrvNewSMSPayload NewSMS;
    OrvSMSSendStatusPayload SMSSendStatus;
    OrvCellBroadcastPayload CellBroadcast;
    OrvValuePayload Value;
    OrvByteTotalsPayload ByteTotals;
    OrvCallOriginatingPayload CallOriginating;
    OrvCallStatusPayload CallStatus;
    OrvCallIncomingPayload CallIncoming;
    OrvFlagPayload Flag;
    OrvActivationStatusPayload ActivationStatus;
    OrvHdrSignalStrengthPayload HdrSignalStrength;
    OrvCdmaSignalQualityPayload CdmaSignalQuality;
    OrvPhonebookRecordsPayload PhonebookRecords;
    OrvEmergencyNumbersPayload EmergencyNumbers;
    OrvVoiceMailPayload VoiceMail;
    OrvGsmPacketStatePayload GsmPacketState;
    OrvPktSessionPayload PktSession;
    OrvGsmSystemStatus GsmSystemStatus;
    OrvGsmPacketAlertPayload GsmPacketAlert;
    OrvOMADMSessionState OMADMState;
    OrvOMADMAlert OMADMAlert;
    OrvUSSDPayload USSD;
    OrvFUMOEventPayload FUMOEvent;
    OrvOMAEventPayload OMAEvent;
} OrvNotifyPayload;

typedef struct tagOrvNotifyRecord {
    ORV_NOTIFY uNotify; /* which payload */
    ULONG uPayloadSize; /* octets of it that are meant */
    OrvNotifyPayload payload;
} OrvNotifyRecord;

/* The client's callback. The record is the library's and valid during the call only. */
typedef void(ORV_CALL* OrvNotifyCallback)(OrvNotifyRecord* record);

/* Addition to the interface: the identifier's name without its prefix, for example "PowerState"; "?" for an unknown
 * one. */
ORV_API const char* ORV_CALL OrvNotifyName(ORV_NOTIFY id);

#ifdef __cplusplus
static_assert(sizeof(OrvPowerStatePayload) == 12, "5");
static_assert(sizeof(OrvSignalStrengthPayload) == 12, "103");
static_assert(sizeof(OrvNetworkTimePayload) == 40, "116");
static_assert(sizeof(OrvNewSMSPayload) == 28, "500");
static_assert(sizeof(OrvSMSSendStatusPayload) == 44, "501");
static_assert(sizeof(OrvCellBroadcastPayload) == 176 && offsetof(OrvCellBroadcastPayload, aData) == 4, "502");
static_assert(sizeof(OrvValuePayload) == 8, "1002, 1003, 1041, 1042, 2013, 2016, 2017, 2019");
static_assert(sizeof(OrvByteTotalsPayload) == 12, "1006, 2012");
static_assert(sizeof(OrvCallOriginatingPayload) == 84 && offsetof(OrvCallOriginatingPayload, szNumber) == 8, "1007");
static_assert(sizeof(OrvCallStatusPayload) == 16, "1008, 1012, 2280");
static_assert(sizeof(OrvCallIncomingPayload) == 48 && offsetof(OrvCallIncomingPayload, szNumber) == 8, "1009");
static_assert(sizeof(OrvFlagPayload) == 8, "1030, 2018");
static_assert(sizeof(OrvActivationStatusPayload) == 12, "1032");
static_assert(sizeof(OrvHdrSignalStrengthPayload) == 8, "1039");
static_assert(sizeof(OrvCdmaSignalQualityPayload) == 12, "1040");
static_assert(sizeof(OrvPhonebookEntry) == 532 && sizeof(OrvPhonebookRecordsPayload) == 5328, "2014");
static_assert(sizeof(OrvEmergencyNumbersPayload) == 880 && offsetof(OrvEmergencyNumbersPayload, aDigits) == 64, "2015");
static_assert(sizeof(OrvVoiceMailPayload) == 16 && offsetof(OrvVoiceMailPayload, nWaiting) == 4, "2020");
static_assert(sizeof(OrvGsmPacketStatePayload) == 20, "2027");
static_assert(sizeof(OrvPktSessionPayload) == 92 && offsetof(OrvPktSessionPayload, uEndReason) == 4, "2029");
static_assert(sizeof(OrvGsmSystemStatus) == 144 && offsetof(OrvGsmSystemStatus, szNetworkName) == 64, "2032");
static_assert(sizeof(OrvGsmPacketAlertPayload) == 16, "2035");
static_assert(sizeof(OrvOMADMSessionState) == 32 && offsetof(OrvOMADMSessionState, eType) == 12, "2269");
static_assert(sizeof(OrvOMADMAlert) == 20, "2270");
static_assert(sizeof(OrvUSSDPayload) == 276, "2281");
static_assert(sizeof(OrvFUMOEventPayload) == 4104, "2283");
static_assert(sizeof(OrvOMAEventPayload) == 524, "2284");
static_assert(sizeof(OrvNotifyPayload) == 5328, "the largest payload is 2014");
static_assert(sizeof(OrvNotifyRecord) == 5336 && offsetof(OrvNotifyRecord, payload) == 8, "header of two words");
static_assert(alignof(OrvNotifyRecord) == 4, "no 64-bit member");
#endif

#endif /* TALVEK_NOTIFY_H */
