/*
 * CDMA modules: who the module is, how it is served, power, and what else the interface has for them.
 *
 * Results named in a comment are those that the function gives itself. "CDMA" means 17 before start-up, then 1 on a
 * module that is not CDMA (also while none is selected), then 4 for a null pointer; "vendor" means that a failing
 * vendor call gives its converted status: 1 (1025), 2 (5), 7 (15), 600 (1026), else 5. Outputs are written on 0 only
 * unless the comment says otherwise.
 */
#ifndef TALVEK_CDMA_H
#define TALVEK_CDMA_H

#include "talvek/rcode.h"

/* --- identity ----------------------------------------------------------------------------------------------------- */

/* The serial numbers of a module, as numbers. */
typedef struct tagORV_MEID_ESN {
    ULONG sizeStruct; /* the caller's; neither read nor written */
    WORD bMeidValid;  /* 1 when the module has an MEID */
    WORD bEsnValid;   /* the same, whatever the ESN */
    ULONG uMeidHigh;  /* the first 6 of the 14 hexadecimal digits of the MEID, 3GPP2 S.R0048 */
    ULONG uMeidLow;   /* the 8 that follow */
    ULONG uPesn;      /* the ESN; of a module with an MEID the pseudo-ESN, 0x80 and 24 bits of a hash of the MEID */
    WORD wReserved;   /* 0 */
    ULONG uReserved;  /* 0 */
} ORV_MEID_ESN;

/* A carrier, as OrvGetCarrierID gives it. */
enum {
    ORV_CARRIER_NONE = -1, /* not known, or one without a number */
    ORV_CARRIER_SPRINT = 2,
    ORV_CARRIER_BELL = 3,
    ORV_CARRIER_TELUS = 4,
    ORV_CARRIER_VERIZON = 5,
    ORV_CARRIER_ALLTEL = 8,
    ORV_CARRIER_US_CELLULAR = 9,
    ORV_CARRIER_CHINA_UNICOM = 14,
    ORV_CARRIER_IUSACELL = 17,
    ORV_CARRIER_TNZ = 18,
    ORV_CARRIER_RELIANCE_COM = 19,
    ORV_CARRIER_TELSTRA = 20,
    ORV_CARRIER_TATA_COM = 29,
    ORV_CARRIER_CHINA_TELECOM = 30
};

/* Not supported. Returns 1, in every state. */
ORV_API ORV_RCODE ORV_CALL OrvGetESN(void);

/*
 * The electronic serial number, 32 bits, 3GPP2 C.S0005.
 * esn [out]: untouched when the module has none, which is no failure. Returns 0, CDMA or vendor; 5 when the module's
 * text is no hexadecimal number, or one of 0 or 0xFFFFFFFF: that value is then written.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetESNGobi(ULONG* esn);

/*
 * Both serial numbers. Serves modules of either technology.
 * record [out]: the caller's. Returns 0; 17 before start-up; 4 for a null record; or vendor; 5 also when one of the
 * three numbers is 0 or 0xFFFFFFFF, as a missing or short MEID makes it: the record is then written all the same.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetMEIDESN(ORV_MEID_ESN* record);

/*
 * The voice number of the module (the mobile directory number), widened.
 * number [out]: `size` characters; min(size, length) are written, and a terminator when there is room. At most 255 are
 * asked for. Returns 0, CDMA or vendor; 4 also for size 0. When the memory for the call cannot be had the result is 0
 * and nothing is written.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetPhoneNumber(WCHAR* number, ULONG size);

/*
 * How the module registers and what it is allowed, as the module has it now.
 * slotCycleIndex [out]: 3GPP2 C.S0005, as the next four. stationClassMark [out]. homeOnly, sidRegistration,
 * nidRegistration [out]: 0 or 1, registration at home, and as a roamer of another system or network. forceRev0,
 * customScp [out]: 0 or 1, EV-DO held to revision 0, and a custom set of protocols. protocol, broadcast, application
 * [out]: the masks of that set. roaming [out]: 0 automatic, 1 home only, 2 affiliated, 3 home and affiliated.
 * All are handed to the vendor library as they are, null ones too. Returns 17 unless the module that is connected says
 * that it is CDMA (it is asked with each call); else 0, whatever the vendor library answered.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetCDMANetworkParameters(BYTE* slotCycleIndex, BYTE* stationClassMark, BYTE* homeOnly,
                                                       BYTE* sidRegistration, BYTE* nidRegistration, BYTE* forceRev0,
                                                       BYTE* customScp, ULONG* protocol, ULONG* broadcast,
                                                       ULONG* application, ULONG* roaming);

/*
 * Reads the parameters above into the library, for the provisioning getters that give them, and begins provisioning
 * anew: changes that wait for a commit are dropped, and the service programming code is forgotten, so that a client
 * which has unlocked the module has to do it again. When the module does not answer, the earlier parameters stay.
 * Returns 0; 17 unless the module that is connected says that it is CDMA.
 */
ORV_API ORV_RCODE ORV_CALL OrvIsModemReady(void);

/* The version of the preferred roaming list, 3GPP2 C.S0016. version [out]. Returns 0, CDMA or vendor. */
ORV_API ORV_RCODE ORV_CALL OrvGetPRLVersion(WORD* version);

/*
 * The home system (SID, 0 to 32767) and network (NID), 3GPP2 C.S0005.
 * sid, nid [out]: the vendor library writes them itself, so that a call that fails may have written. Return 0, CDMA or
 * vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetTechSID(WORD* sid);
ORV_API ORV_RCODE ORV_CALL OrvGetTechNID(WORD* nid);

/*
 * The carrier that the module is made for.
 * carrier [out]: one of ORV_CARRIER_…. A module whose model has "KT52" in it is asked for its package, any other one
 * for its firmware image. Returns 0, CDMA or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetCarrierID(int32_t* carrier);

/*
 * The name of that carrier, for display.
 * banner [out]: `size` characters, cleared first, also when the call is refused; min(size, length) are written, and
 * there is a terminator when there is room. It stays cleared for a carrier that is not known, and on a module whose
 * model has "KT52" in it: the name is then only logged. Returns 0, CDMA or vendor; 4 also for size 0.
 */
ORV_API ORV_RCODE ORV_CALL OrvPstGetDisplayBannerName(WCHAR* banner, ULONG size);

/*
 * Asks the module for the time of the network, and tells only whether it answered: nothing is ever written, and both
 * pointers may be null. COrvGobiDll::GetNetworkTime gives the time itself.
 * timeStamp, timeSource: not used. Returns 0; 17 before start-up; 1 on a module that is not CDMA; or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetSystemTime(ULONGLONG* timeStamp, ULONG* timeSource);

/* --- radio -------------------------------------------------------------------------------------------------------- */

/* No signal; any other strength is the magnitude of a dBm value: 75 stands for -75 dBm. */
enum { ORV_RSSI_NO_SIGNAL = 250 };

/* The received strength of either air interface. */
typedef struct tagORV_RSSI_ECIO {
    ULONG uSize;    /* 12; written */
    ULONG u1xRssi;  /* CDMA 1xRTT: 0 to 128, or ORV_RSSI_NO_SIGNAL */
    ULONG uHdrRssi; /* CDMA 1xEV-DO, likewise */
} ORV_RSSI_ECIO;

/*
 * The strength of the signal: of CDMA 1xRTT on a CDMA module, of GSM or UMTS on the others, the first that is told.
 * rssi [out]: 0 to 128, or ORV_RSSI_NO_SIGNAL, which is written first and so stays when the call fails or is refused.
 * Returns 0, also without a signal; 17 before start-up; 4 for a null pointer; or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetRssi(ULONG* rssi);

/* The strengths of both CDMA air interfaces, the last that is told of each. There is no Ec/Io. record [out]: the
 * caller's. Returns 0, CDMA or vendor. */
ORV_API ORV_RCODE ORV_CALL OrvGetRssiEcio(ORV_RSSI_ECIO* record);

/* Kept for compatibility. ecio [out]: 0. Returns 0 or CDMA. */
ORV_API ORV_RCODE ORV_CALL OrvGetECIO(WORD* ecio);

/*
 * The CDMA 1xRTT channel in use, 3GPP2 C.S0057.
 * channel [out]: 0 is written first, and stays when there is none, or when the call fails or is refused.
 * Returns 0, CDMA or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetChannelNumber(ULONG* channel);

/*
 * Its band class, 3GPP2 C.S0057.
 * bandClass [out]: as the channel. Returns 0, CDMA or vendor; 6 when CDMA 1xRTT is not in use.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetTechBandClass(ULONG* bandClass);

/*
 * Whether the module has service, on CDMA 1xRTT and on 1xEV-DO.
 * service, state [out]: 2 and 4 when it is registered, else 0. Return 0, CDMA or vendor; 18 when it is served by
 * another kind of network than CDMA, or not over that air interface. A network of unknown kind is accepted.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetServiceIndication(ULONG* service);
ORV_API ORV_RCODE ORV_CALL OrvGetHdrSrvState(ULONG* state);

/*
 * The roaming indicator, on CDMA 1xRTT and on 1xEV-DO.
 * status [out]: 0 off (at home), 1 on (roaming), 2 flashing, any other of 3GPP2 C.R1001 as it is; its low 16 bits.
 * Return 0, CDMA or vendor; 18 as above, and also when the kind of the network is not known.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetRoamingStatus(ULONG* status);
ORV_API ORV_RCODE ORV_CALL OrvGetHdrRoamStatus(ULONG* status);

/*
 * The kind of the base station.
 * station [out]: 6 on a CDMA network, else 0. It is logged with every call, so it must hold a value before. Returns 0,
 * CDMA or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetCurrentBaseStation(ULONG* station);

/* Whether CDMA 1xRTT and 1xEV-DO are used side by side, which cannot be switched off. preference [out]: 1. Returns 0 or
 * CDMA. */
ORV_API ORV_RCODE ORV_CALL OrvGetHdrHybrPref(ULONG* preference);
/* preference [in]: 1. Returns 0; 17 before start-up; 1 on a module that is not CDMA; 4 for any other preference. */
ORV_API ORV_RCODE ORV_CALL OrvSetHdrHybrPref(WORD preference);

/* --- power, counters and fixed answers ---------------------------------------------------------------------------- */

/*
 * The power mode of the module.
 * mode [out]: 0 online, 3 resetting, 4 low power (the vendor's 0, 5 and 6); 1, 2 and 5 are its 3, 4 and 1; 2 also for a
 * mode that is not known. Returns 0, CDMA or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetPower(ULONG* mode);
/*
 * Sets it. mode [in]: as OrvGetPower has it, but 2 resets the module, too, and one that is not known becomes the
 * vendor's 4. Returns 0; 17 before start-up; 1 on a module that is not CDMA; or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvSetPower(ULONG mode);
/* Asks the module for the vendor's mode 5: it leaves, and comes back if it restarts by itself. Returns as OrvSetPower.
 */
ORV_API ORV_RCODE ORV_CALL OrvSetPowerDown(void);
/* Not served. Returns 18; 17 before start-up; 1 on a module that is not CDMA. */
ORV_API ORV_RCODE ORV_CALL OrvPowerSaveExit(void);
/* Resets the module, which leaves and comes back. Returns as OrvSetPower. */
ORV_API ORV_RCODE ORV_CALL OrvResetModem(void);
/* Kept for compatibility: does nothing. Returns 0; 17 before start-up; 1 on a module that is not CDMA. */
ORV_API ORV_RCODE ORV_CALL OrvSetDormant(void);

/*
 * How much the data session has moved, estimated: the rate of the channel now, in bit/s, times the session's duration
 * in whole seconds. The module's own counters are not read.
 * transmitted, received [out]: in bits, the low 32 bits of the product; either may be null. Returns 0; 17 before
 * start-up; 1 on a module that is not CDMA; or vendor, as while there is no session.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetByteCounter(ULONG* transmitted, ULONG* received);
/* Kept for compatibility: does nothing. Returns as OrvSetDormant. */
ORV_API ORV_RCODE ORV_CALL OrvResetByteCounter(void);

/* Kept for compatibility. features [out]: 2. Returns 0; 10 before start-up; 1 on a module that is not CDMA; 4 for a
 * null pointer. */
ORV_API ORV_RCODE ORV_CALL OrvGetGeneralFeatureSupport(ULONG* features);
/* Whether provisioning over the air by IOTA is disabled. disabled [out]: 1, it always is. Returns 0 or CDMA. */
ORV_API ORV_RCODE ORV_CALL OrvGetIOTADisable(ULONG* disabled);

/* Kept for compatibility: both return 0, in every state, and do nothing. */
ORV_API ORV_RCODE ORV_CALL OrvGetNDISMode(void);
ORV_API ORV_RCODE ORV_CALL OrvSetNDISPrefMode(void);

#ifdef __cplusplus
static_assert(sizeof(ORV_MEID_ESN) == 28 && offsetof(ORV_MEID_ESN, uMeidHigh) == 8, "the flags share a word");
static_assert(offsetof(ORV_MEID_ESN, wReserved) == 20 && offsetof(ORV_MEID_ESN, uReserved) == 24, "padded to a word");
static_assert(sizeof(ORV_RSSI_ECIO) == 12, "three words");
#endif

#endif /* TALVEK_CDMA_H */
