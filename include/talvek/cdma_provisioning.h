/*
 * Provisioning of CDMA modules: the service programming code, subscription and network items, their commit, Mobile IP,
 * activation, and the call functions that stand on the data session.
 *
 * Expected order: OrvIsModemReady, OrvPstUnlock, the setters, OrvPstLock. The library keeps the code (SPC) of a
 * successful unlock for all later writes that need one. OrvIsModemReady forgets it together with everything that waits
 * for the commit: unlock after it, not before. Without an unlock such writes reach the module with an empty code, and
 * the module refuses them. Three setters keep a value for the commit and also write it at once, or only keep it; their
 * comments say so. What is kept survives a failed commit.
 *
 * There is one NAM (number assignment module, 3GPP2 C.S0005), 0: any other `nam` is logged and taken as 0.
 *
 * Results, in the order in which they are found: 17 before start-up; 1 on a module that is not CDMA; 4 for a null
 * pointer; or vendor: a failing vendor call gives its converted status, 1 (1025), 2 (5), 7 (15), 600 (1026), else 5; 0.
 * The comments below name only what a function gives besides, or instead. Outputs are written on 0 only, unless a
 * comment says otherwise. Texts are terminated. Pointers are the caller's and are not kept.
 */
#ifndef TALVEK_CDMA_PROVISIONING_H
#define TALVEK_CDMA_PROVISIONING_H

#include "talvek/rcode.h"

/* --- the service programming code and the commit ------------------------------------------------------------------ */

/*
 * Has the module check the service programming code (3GPP2 C.S0016), and keeps it for the writes that need one.
 * spc [in]: the code as a number, 0 to 999999: 123 is the code 000123. Other numbers give more than six characters,
 * which the module refuses. Wrong codes are counted by the module, which locks itself after some of them. A failed
 * unlock leaves the code of an earlier one in use. Returns also 5 when the code cannot be formed.
 */
ORV_API ORV_RCODE ORV_CALL OrvPstUnlock(int32_t spc);

/*
 * Commits what waits: the access overload class, and, once directory number, MIN and home SID/NID are all there, these
 * by a manual activation; then resets the module, on a thread of its own: this returns before the module leaves. Items
 * that wait alone (only the directory number, say) go on waiting, and the module is reset all the same. The home NID is
 * not sent: the activation takes the SID only.
 * reserved1, reserved2: ignored. pbResetFollows [out, may be null]: 1 when the reset was started, else 0. puErrorMask
 * [out, may be null]: 0x3 when the activation failed, also with vendor status 1026, else 0. Both are cleared first, in
 * every case.
 * Returns 0, or the result of the last step that was taken. Vendor status 1026 does not end a commit: the step's items
 * go on waiting, the reset follows, and the result is 600 unless a later step succeeds. Any other failure ends it
 * without a reset. 5 when nothing waits, also before start-up and on other modules.
 */
ORV_API ORV_RCODE ORV_CALL OrvPstLock(ULONG reserved1, ULONG reserved2, BYTE* pbResetFollows, ULONG* puErrorMask);

enum { ORV_RTN_FACTORY_DEFAULTS = 0 };

/*
 * Puts the module back to the settings of the factory, with the code of the unlock: all provisioning is lost.
 * eType [in]: ORV_RTN_FACTORY_DEFAULTS. Returns also 18 for another type.
 */
ORV_API ORV_RCODE ORV_CALL OrvRtnReset(ULONG eType);

/* The items that a client may write, always 0x8004. puMask [out]. */
ORV_API ORV_RCODE ORV_CALL OrvPriGetActivationMask(ULONG* puMask);
/* The least and the greatest length of a directory number, always 10 digits both. puMin, puMax [out]. */
ORV_API ORV_RCODE ORV_CALL OrvPriGetMDNLength(ULONG* puMin, ULONG* puMax);
/* The greatest length of an outgoing message, always 160 characters. puLength [out]: written whatever the result. */
ORV_API ORV_RCODE ORV_CALL OrvPriGetMaxMosmsLen(ULONG* puLength);
/* Kept for compatibility: the authentication key cannot be written. Returns 18 in place of 0; aKey is not read. */
ORV_API ORV_RCODE ORV_CALL OrvSetAKey(const char* aKey);

/* --- subscription ------------------------------------------------------------------------------------------------- */

/*
 * The mobile directory number: kept for the commit, and written to the module at once.
 * mdn [in]: digits; at most 15 are read. A failure of that write is only logged.
 * Returns 0, 1, 4 or 17. With 1 and 17 nothing is kept, and yet the number that was kept before is written to the
 * module that is connected, of whichever kind: an empty one if there was none, which erases its number.
 */
ORV_API ORV_RCODE ORV_CALL OrvSetMobileDirNum(ULONG nam, const WCHAR* mdn);

/*
 * The MIN, the ten digits from which a CDMA module's identity is made (3GPP2 C.S0005): kept for the commit, and written
 * at once into both identities of the module, the MIN-based and the true one.
 * min [in]: ten digits; no more are read. Fewer replace the first ones and leave the others as the module has them.
 * Returns 0, 1, 4 or 17: failures of the module are only logged. When the identities cannot be read first, records of
 * zeros with the new digits are written all the same; a module that takes them loses its MCC and IMSI_11_12.
 */
ORV_API ORV_RCODE ORV_CALL OrvSetIMSI(ULONG nam, const WCHAR* min);

/* The MIN as the module has it. min [out]: 11 characters, the digits and a terminator. */
ORV_API ORV_RCODE ORV_CALL OrvGetCdmaIMSI(WCHAR* min);

/* The mobile country code of the home network, and its network code, which stands for the IMSI's digits 11 and 12. */
ORV_API ORV_RCODE ORV_CALL OrvPstGetImsiMcc(ULONG nam, WORD* pwMcc);
ORV_API ORV_RCODE ORV_CALL OrvPstGetImsi1112(ULONG nam, WORD* pwDigits);
/* Kept for compatibility: both only log and return 0, 1 or 17. */
ORV_API ORV_RCODE ORV_CALL OrvPstSetImsiMcc(ULONG nam, WORD mcc);
ORV_API ORV_RCODE ORV_CALL OrvPstSetImsi1112(ULONG nam, WORD digits);

/* Kept for compatibility: NAM 0 is the one in use, whatever `nam` says. Returns 0, 1 or 17. */
ORV_API ORV_RCODE ORV_CALL OrvPstSetCurrentNam(ULONG nam);

/* --- network items ------------------------------------------------------------------------------------------------ */

/*
 * The system and network identification of the home system.
 * sidNid [out, in]: four octets: SID low, SID high, NID low, NID high. The setter only keeps them for the commit, which
 * sends the SID alone.
 */
ORV_API ORV_RCODE ORV_CALL OrvPstGetHomeSidNid(ULONG nam, BYTE* sidNid);
ORV_API ORV_RCODE ORV_CALL OrvPstSetHomeSidNid(ULONG nam, const BYTE* sidNid);

/*
 * The access overload class, 0 to 15 (3GPP2 C.S0005).
 * The setter writes it to the module at once, and whatever comes of that keeps it for the commit, which writes it
 * again. accolc [in]: only the low eight bits reach the module.
 */
ORV_API ORV_RCODE ORV_CALL OrvPstGetAccolc(ULONG nam, BYTE* pbAccolc);
ORV_API ORV_RCODE ORV_CALL OrvPstSetAccolc(ULONG nam, WORD accolc);

/*
 * The slot cycle index, and the home-only, SID-registration and NID-registration flags, 0 or 1. All four as
 * OrvIsModemReady read them, 0 before.
 */
ORV_API ORV_RCODE ORV_CALL OrvPstGetSci(BYTE* pbSci);
ORV_API ORV_RCODE ORV_CALL OrvPstGetTermHome(ULONG nam, BYTE* pbEnabled);
ORV_API ORV_RCODE ORV_CALL OrvPstGetTermSid(ULONG nam, BYTE* pbEnabled);
ORV_API ORV_RCODE ORV_CALL OrvPstGetTermNid(ULONG nam, BYTE* pbEnabled);
/* Kept for compatibility: only logs and returns 0, 1 or 17. */
ORV_API ORV_RCODE ORV_CALL OrvPstSetSci(BYTE sci);

/*
 * The preferred mode of operation: 3 AMPS only, 4 automatic, 9 CDMA 1x only, 10 CDMA 1xEV-DO only.
 * *puMode [out]: 4 for no preference, 3, 9 or 10 for a CDMA-type preference of the vendor's protocols 4, 8 or 16.
 * Returns also 6, with *puMode 0, for any other preference.
 */
ORV_API ORV_RCODE ORV_CALL OrvPstGetPrefMode(ULONG nam, ULONG* puMode);
/* mode [in]: 3, 4, 9 or 10; until it is changed. Returns also 1 for another mode, without asking the module. */
ORV_API ORV_RCODE ORV_CALL OrvPstSetPrefMode(ULONG nam, WORD mode);

/*
 * The roaming preference, read anew.
 * *puPref [out]: 2 home only, 3 automatic, 4 home and affiliated, 10 affiliated. Returns also 6, with nothing written,
 * for another one.
 */
ORV_API ORV_RCODE ORV_CALL OrvPstGetSystemPref(ULONG nam, ULONG* puPref);

enum { CM_MODE_PREF_NO_CHANGE = 30, CNS_MODE_TERM_PERMANENT = 0 };

/*
 * Writes the roaming preference, with the code of the unlock. The module wants a reset afterwards (OrvModemReset).
 * mode, term, duration [in]: CM_MODE_PREF_NO_CHANGE, CNS_MODE_TERM_PERMANENT and 0; others are logged as failed
 * assertions and change nothing. band, roam [in]: roam 1 and 2 choose the vendor's preference of that number (home
 * only, affiliated); roam 255 chooses 3 (home and affiliated) with band 1 or 2, and 0 (automatic) with band 65535 or
 * 65536. Returns also 4 for any other pair.
 * The other network parameters are written back as OrvIsModemReady read them, which undoes what others have changed
 * since; they are left alone when it has not been called.
 */
ORV_API ORV_RCODE ORV_CALL OrvSetTempModePref(ULONG mode, ULONG term, ULONG duration, ULONG band, ULONG roam);

/* Kept for compatibility: user name and password of EV-DO cannot be read. text [out]: an empty text, one character. */
ORV_API ORV_RCODE ORV_CALL OrvPstGetHdrUserId(WCHAR* text);
ORV_API ORV_RCODE ORV_CALL OrvPstGetHdrPassword(WCHAR* text);
/* Nor written. Return first 4 for a null or an empty text, then 5 before start-up, 1 on other modules, and 0. */
ORV_API ORV_RCODE ORV_CALL OrvPstSetHdrUserId(const WCHAR* text);
ORV_API ORV_RCODE ORV_CALL OrvPstSetHdrPassword(const WCHAR* text);

/* --- Mobile IP, IETF RFC 5944 ------------------------------------------------------------------------------------- */
/*
 * Profiles count from 0. Addresses are the vendor's 32-bit numbers, most significant octet first: 192.0.2.1 is
 * 0xC0000201. An NAI (network access identifier) has at most 72 octets. An SPI is a security parameter index, towards
 * the home agent (HA) or the AAA server. What is written takes effect with the module's next reset.
 */

/* 0 off (simple IP), 1 Mobile IP preferred, 2 Mobile IP only; handed through. */
ORV_API ORV_RCODE ORV_CALL OrvPstSetDsQcMip(ULONG mode);
ORV_API ORV_RCODE ORV_CALL OrvPstGetDsQcMip(ULONG* puMode);

/* The profile in use. The setter needs the code of the unlock. */
ORV_API ORV_RCODE ORV_CALL OrvPstSetDsMipActiveProf(BYTE index);
ORV_API ORV_RCODE ORV_CALL OrvPstGetDsMipActiveProf(BYTE* pbIndex);

/*
 * Writes a profile but for its secrets and whether it is enabled, with the code of the unlock.
 * reverseTunneling [in]: 0 or 1. nai [in]: terminated. mnHaSpiEnable, mnAaaSpiEnable [in]: 0 leaves that SPI as the
 * module has it.
 */
ORV_API ORV_RCODE ORV_CALL OrvPstSetDsMipGenUser(BYTE index, BYTE reverseTunneling, ULONG homeAddress,
                                                 ULONG primaryHaAddress, ULONG secondaryHaAddress, const char* nai,
                                                 BYTE mnHaSpiEnable, ULONG mnHaSpi, BYTE mnAaaSpiEnable,
                                                 ULONG mnAaaSpi);
/*
 * Reads it. nai [out]: naiSize octets; no terminator when the text fills them. The enable flags [out] are 1 where the
 * SPI is not 0.
 */
ORV_API ORV_RCODE ORV_CALL OrvPstGetDsMipGenUser(BYTE index, BYTE* pReverseTunneling, ULONG* pHomeAddress,
                                                 ULONG* pPrimaryHaAddress, ULONG* pSecondaryHaAddress, BYTE naiSize,
                                                 char* nai, BYTE* pMnHaSpiEnable, ULONG* pMnHaSpi,
                                                 BYTE* pMnAaaSpiEnable, ULONG* pMnAaaSpi);

/*
 * Writes the shared secrets of a profile, with the code of the unlock; the module never gives them back.
 * mnHaSs, mnAaaSs [in]: octets without a zero among them, as many as the length before each says.
 */
ORV_API ORV_RCODE ORV_CALL OrvPstSetDsMipSsUserProf(BYTE index, BYTE mnHaSsLength, const BYTE* mnHaSs,
                                                    BYTE mnAaaSsLength, const BYTE* mnAaaSs);
/* Kept for compatibility. The lengths [out] become 0; mnHaSs and mnAaaSs are not touched and may be null. */
ORV_API ORV_RCODE ORV_CALL OrvPstGetDsMipSsUserProf(BYTE index, BYTE* pMnHaSsLength, BYTE* mnHaSs, BYTE* pMnAaaSsLength,
                                                    BYTE* mnAaaSs);

/* Whether a profile is enabled. pbEnabled [out]: 0 or 1; also 0 when the module cannot be asked. */
ORV_API ORV_RCODE ORV_CALL OrvPstGetDsMipEnableProf(BYTE index, BYTE* pbEnabled);

/* The code of the last registration reply (RFC 5944 section 3.4); 0: none failed. puError [out]. */
ORV_API ORV_RCODE ORV_CALL OrvGetMipErrCode(ULONG* puError);

/*
 * A whole profile, with the code of the unlock. Arguments are handed to the vendor library as they are: null leaves a
 * value as it is, texts are terminated. On a module of any kind. Returns 0; 10 before start-up; or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvSetMobileIPProfile(BYTE index, BYTE* pEnabled, ULONG* pHomeAddress,
                                                 ULONG* pPrimaryHaAddress, ULONG* pSecondaryHaAddress,
                                                 BYTE* pReverseTunneling, char* nai, ULONG* pMnHaSpi, ULONG* pMnAaaSpi,
                                                 char* mnHaSs, char* mnAaaSs);
/*
 * The same, read. All pointers [out] are handed to the vendor library, which writes them; nai: naiSize octets. Returns
 * as OrvSetMobileIPProfile.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetMobileIPProfile(BYTE index, BYTE* pEnabled, ULONG* pHomeAddress,
                                                 ULONG* pPrimaryHaAddress, ULONG* pSecondaryHaAddress,
                                                 BYTE* pReverseTunneling, BYTE naiSize, char* nai, ULONG* pMnHaSpi,
                                                 ULONG* pMnAaaSpi);

/* --- activation and calls ----------------------------------------------------------------------------------------- */

/*
 * Starts the network's automatic activation (OTASP, 3GPP2 C.S0016). Notification 1032 tells how it goes on.
 * activationCode [in]: the number to dial, such as "*22899"; terminated. It is logged. On a module of any kind. Returns
 * 0; 10 before start-up; 4 for a null code; or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvActivateAutomatic(char* activationCode);

/*
 * How far the activation is, in the vendor's numbers: 0 not activated, 1 activated, others a step on the way. These are
 * not the numbers of notification 1032. puState [out].
 */
ORV_API ORV_RCODE ORV_CALL OrvGetActivationStatus(ULONG* puState);

/*
 * Does what comes nearest to placing a circuit-switched call of a kind.
 * callType [in]: 257 starts a data session with the profile's own settings and keeps its handle; a second one replaces
 * the handle of the first, whose session then has no owner here. 0 starts an automatic activation with callNumber.
 * callNumber [in]: for callType 0, at most 255 characters; else it is only logged and may be null.
 * Returns 0; 17; 1; 4 for another callType or a null or too long callNumber; or vendor.
 */
ORV_API ORV_RCODE ORV_CALL OrvSetCallOriginateCmd(ULONG callType, const WCHAR* callNumber);

/*
 * The state of the data session, whoever started it, as that of a call.
 * puStatus [out]: 0 disconnected, 1 connecting, 2 connected. puError [out]: the last Mobile IP error
 * (OrvGetMipErrCode); 0 while connected or when it cannot be had. When the state itself cannot be had the status is
 * written as 0 and the result is the vendor's.
 */
ORV_API ORV_RCODE ORV_CALL OrvGetCallConnectionState(ULONG* puStatus, ULONG* puError);

/*
 * Ends the data session that OrvSetCallOriginateCmd started; its handle is kept when that fails.
 * Returns also 19 when there is none; a handle of 0x80000000 or more counts as none.
 */
ORV_API ORV_RCODE ORV_CALL OrvSetCallDisconnectCmd(void);

#endif /* TALVEK_CDMA_PROVISIONING_H */
