/*
 * The records of the vendor library's interface. The binding passes pointers to them through and never reads a field.
 */
#ifndef TALVEK_GOBI_TYPES_H
#define TALVEK_GOBI_TYPES_H

#include "talvek/types.h"

typedef struct AudioConfig AudioConfig;
typedef struct MinBasedImsi MinBasedImsi;
typedef struct PIFACETable PIFACETable;
typedef struct TrueImsi TrueImsi;
typedef struct USSInfo USSInfo;
typedef struct alphaIDInfo alphaIDInfo;
typedef struct arrAlertingPattern arrAlertingPattern;
typedef struct arrAlertingType arrAlertingType;
typedef struct arrAlphaIDInfo arrAlphaIDInfo;
typedef struct arrCallEndReason arrCallEndReason;
typedef struct arrCallInfo arrCallInfo;
typedef struct arrDiagInfo arrDiagInfo;
typedef struct arrPBInfo arrPBInfo;
typedef struct arrPeerNumInfo arrPeerNumInfo;
typedef struct arrRemotePartyName arrRemotePartyName;
typedef struct arrRemotePartyNum arrRemotePartyNum;
typedef struct arrSvcOption arrSvcOption;
typedef struct arrUUSInfo arrUUSInfo;
typedef struct callBarringPwd callBarringPwd;
typedef struct callerIDInfo callerIDInfo;
typedef struct ccSUPSType ccSUPSType;
typedef struct cdmaCellInfo cdmaCellInfo;
typedef struct emergencyNumberEntry emergencyNumberEntry;
typedef struct extDisplayInfo extDisplayInfo;
typedef struct FUMOInfo FUMOInfo;
typedef struct geranCellInfo geranCellInfo;
typedef struct getCallFWInfo getCallFWInfo;
typedef struct getExtCallFWInfo getExtCallFWInfo;
typedef struct lineCtlInfo lineCtlInfo;
typedef struct OMAInfo OMAInfo;
typedef struct omaSessionInfo omaSessionInfo;
typedef struct peerNumInfo peerNumInfo;
typedef struct redirectNumInfo redirectNumInfo;
typedef struct signalInfo signalInfo;
typedef struct statusResp statusResp;
typedef struct tDialReqParam tDialReqParam;
typedef struct umtsCellInfo umtsCellInfo;
typedef struct voiceSetSUPSServiceReq voiceSetSUPSServiceReq;
typedef struct waitingMsgInfo waitingMsgInfo;
typedef struct QMI_UIM_CHANGE_PIN_REQ_CHANGE_PIN QMI_UIM_CHANGE_PIN_REQ_CHANGE_PIN;
typedef struct QMI_UIM_CHANGE_PIN_REQ_SESSION_INFORMATION QMI_UIM_CHANGE_PIN_REQ_SESSION_INFORMATION;
typedef struct QMI_UIM_CHANGE_PIN_RESP_RETRIES_REMAINING QMI_UIM_CHANGE_PIN_RESP_RETRIES_REMAINING;
typedef struct QMI_UIM_GET_CARD_STATUS_RESP QMI_UIM_GET_CARD_STATUS_RESP;
typedef struct QMI_UIM_SET_PIN_PROTECTION_REQ_SESSION_INFORMATION QMI_UIM_SET_PIN_PROTECTION_REQ_SESSION_INFORMATION;
typedef struct QMI_UIM_SET_PIN_PROTECTION_REQ_SET_PIN_PROTECTION QMI_UIM_SET_PIN_PROTECTION_REQ_SET_PIN_PROTECTION;
typedef struct QMI_UIM_SET_PIN_PROTECTION_RESP_RETRIES_REMAINING QMI_UIM_SET_PIN_PROTECTION_RESP_RETRIES_REMAINING;
typedef struct QMI_UIM_UNBLOCK_PIN_REQ_SESSION_INFORMATION QMI_UIM_UNBLOCK_PIN_REQ_SESSION_INFORMATION;
typedef struct QMI_UIM_UNBLOCK_PIN_REQ_UNBLOCK_PIN QMI_UIM_UNBLOCK_PIN_REQ_UNBLOCK_PIN;
typedef struct QMI_UIM_UNBLOCK_PIN_RESP_RETRIES_REMAINING QMI_UIM_UNBLOCK_PIN_RESP_RETRIES_REMAINING;
typedef struct QMI_UIM_VERIFY_PIN_REQ_SESSION_INFORMATION QMI_UIM_VERIFY_PIN_REQ_SESSION_INFORMATION;
typedef struct QMI_UIM_VERIFY_PIN_REQ_VERIFY_PIN QMI_UIM_VERIFY_PIN_REQ_VERIFY_PIN;
typedef struct QMI_UIM_VERIFY_PIN_RESP_RETRIES_REMAINING QMI_UIM_VERIFY_PIN_RESP_RETRIES_REMAINING;

/* One radio interface in use, as GetRFInfo fills it: three 32-bit words. */
typedef struct GobiRFInfo {
    ULONG uRadioInterface; /* 1 CDMA 1xRTT, 2 CDMA 1xEV-DO, 4 GSM, 5 UMTS */
    ULONG uBandClass;
    ULONG uChannel;
} GobiRFInfo;

/* Capacities that the vendor's arrays have. */
enum {
    GOBI_MAX_SERVING_NETWORK_CAPS = 20,
    GOBI_MAX_SIGNAL_STRENGTHS = 10,
    GOBI_MAX_RF_INSTANCES = 20,
    GOBI_MAX_RADIO_INTERFACES = 10,
    GOBI_REVISION_SIZE = 85 /* octets of a revision string, terminator included */
};

#ifdef __cplusplus
static_assert(sizeof(GobiRFInfo) == 12, "three packed words");
#endif

#endif /* TALVEK_GOBI_TYPES_H */
