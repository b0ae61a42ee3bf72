/*
 * Records of the vendor's network access service: radio interfaces, scan results, cells, and the identities of a CDMA
 * subscription. See talvek/gobi_types.h for what holds for all records.
 */
#ifndef TALVEK_GOBI_RADIO_TYPES_H
#define TALVEK_GOBI_RADIO_TYPES_H

#include "talvek/types.h"

/* Capacities that the vendor's arrays have. */
enum {
    GOBI_MAX_SERVING_NETWORK_CAPS = 20,
    GOBI_MAX_SIGNAL_STRENGTHS = 10,
    GOBI_MAX_RF_INSTANCES = 20,
    GOBI_MAX_RADIO_INTERFACES = 10,
    GOBI_MAX_SCANNED_NETWORKS = 50,
    GOBI_MAX_NEIGHBOUR_CELLS = 6 /* a terminal reports the six strongest, 3GPP TS 45.008 */
};

/* A radio interface. */
enum {
    GOBI_RADIO_NONE = 0,
    GOBI_RADIO_CDMA_1XRTT = 1,
    GOBI_RADIO_CDMA_1XEVDO = 2,
    GOBI_RADIO_GSM = 4,
    GOBI_RADIO_UMTS = 5,
    GOBI_RADIO_LTE = 8
};

/* One radio interface in use, as GetRFInfo fills it: three 32-bit words. */
typedef struct GobiRFInfo {
    ULONG uRadioInterface; /* GOBI_RADIO_... */
    ULONG uBandClass;
    ULONG uChannel;
} GobiRFInfo;

/* One network that a scan found. In each status the value 1 means that the property holds. */
typedef struct GobiNetworkInfo {
    WORD mcc; /* 0 to 999 */
    WORD mnc; /* 0 to 999 */
    ULONG inUse;
    ULONG roaming;
    ULONG forbidden;
    ULONG preferred;
    char description[256]; /* terminated unless it fills the field */
} GobiNetworkInfo;

/* The radio access technology of one network that a scan found. */
typedef struct GobiNetworkRAT {
    WORD mcc;
    WORD mnc;
    ULONG rat; /* 4 GSM, 5 UMTS */
} GobiNetworkRAT;

/* Which records GetCellLocationInfo filled: a sum. */
enum { GOBI_CELL_GERAN = 1, GOBI_CELL_UMTS = 2, GOBI_CELL_CDMA = 4 };

/*
 * The serving GSM cell and its neighbours.
 * plmn: MCC and MNC, two digits an octet, 3GPP TS 24.008, 10.5.1.3. bsic: network colour code (bits 5 to 3) and base
 * station colour code (bits 2 to 0). rxLevel: 0 to 63 for -110 to -48 dBm, 3GPP TS 45.008, 8.1.4. arfcn: 0 to 1023.
 */
typedef struct geranNeighbourCell {
    ULONG cellId; /* 16 bits, or 0xFFFFFFFF: not known */
    WORD lac;
    WORD arfcn;
    WORD rxLevel;
    BYTE plmn[3];
    BYTE bsic;
    BYTE reserved[2];
} geranNeighbourCell;

typedef struct geranCellInfo {
    ULONG cellId;        /* 16 bits, or 0xFFFFFFFF: not known */
    ULONG timingAdvance; /* 0 to 63 bit periods, or 0xFFFFFFFF: not known */
    WORD lac;
    WORD arfcn;
    WORD rxLevel;
    BYTE plmn[3];
    BYTE bsic;
    BYTE neighbourCount; /* 0 to 6 */
    BYTE reserved;
    geranNeighbourCell neighbours[GOBI_MAX_NEIGHBOUR_CELLS];
} geranCellInfo;

/*
 * The serving UMTS cell and its neighbours of both kinds.
 * uarfcn: 0 to 16383. psc: primary scrambling code, 0 to 511. rscp: dBm, -120 to -25. ecio: dB, -24 to 0.
 */
typedef struct umtsNeighbourCell {
    WORD uarfcn;
    WORD psc;
    int16_t rscp;
    int16_t ecio;
} umtsNeighbourCell;

typedef struct umtsGeranNeighbourCell {
    WORD arfcn;
    int16_t rssi; /* dBm */
    BYTE bsic;
    BYTE reserved;
} umtsGeranNeighbourCell;

typedef struct umtsCellInfo {
    ULONG cellId; /* 28 bits, 3GPP TS 25.331; or 0xFFFFFFFF: not known */
    WORD lac;
    WORD uarfcn;
    WORD psc;
    int16_t rscp;
    int16_t ecio;
    BYTE plmn[3];
    BYTE umtsCount;  /* 0 to 6 */
    BYTE geranCount; /* 0 to 6 */
    BYTE reserved;
    umtsNeighbourCell umts[GOBI_MAX_NEIGHBOUR_CELLS];
    umtsGeranNeighbourCell geran[GOBI_MAX_NEIGHBOUR_CELLS];
} umtsCellInfo;

/* The serving CDMA cell, from the system parameters message of 3GPP2 C.S0005. */
typedef struct cdmaCellInfo {
    int32_t latitude;  /* quarters of a second, -1296000 to 1296000, north positive */
    int32_t longitude; /* quarters of a second, -2592000 to 2592000, east positive */
    WORD sid;          /* 0 to 32767 */
    WORD nid;          /* 0 to 65535 */
    WORD baseId;       /* 0 to 65535 */
    WORD refPn;        /* 0 to 511, units of 64 chips */
} cdmaCellInfo;

/* The IMSI_M of a CDMA subscription, 3GPP2 C.S0005, 2.3.1: decimal digits, 8-bit, no terminators. */
typedef struct MinBasedImsi {
    char mcc[3];
    char imsi1112[2];
    char s1[7]; /* the last seven digits of the MIN */
    char s2[3]; /* its first three */
} MinBasedImsi;

/* The IMSI_T. */
typedef struct TrueImsi {
    char mcc[3];
    char imsi1112[2];
    char s1[7];
    char s2[3];
    BYTE addrNum; /* digits of the IMSI beyond the MCC, less four: 0 to 7 */
} TrueImsi;

#ifdef __cplusplus
static_assert(sizeof(GobiRFInfo) == 12, "three packed words");
static_assert(sizeof(GobiNetworkInfo) == 276 && offsetof(GobiNetworkInfo, description) == 20, "natural boundaries");
static_assert(sizeof(GobiNetworkRAT) == 8, "natural boundaries");
static_assert(sizeof(geranNeighbourCell) == 16, "no hidden padding");
static_assert(sizeof(geranCellInfo) == 116 && offsetof(geranCellInfo, neighbours) == 20, "no hidden padding");
static_assert(sizeof(umtsNeighbourCell) == 8 && sizeof(umtsGeranNeighbourCell) == 6, "no hidden padding");
static_assert(sizeof(umtsCellInfo) == 104 && offsetof(umtsCellInfo, umts) == 20 && offsetof(umtsCellInfo, geran) == 68,
              "no hidden padding");
static_assert(sizeof(cdmaCellInfo) == 16, "no hidden padding");
static_assert(sizeof(MinBasedImsi) == 15 && sizeof(TrueImsi) == 16, "octets only");
#endif

#endif /* TALVEK_GOBI_RADIO_TYPES_H */
