/*
 * Settings that the vendor library does not offer, over the module's AT port.
 *
 * OrvSelectAirServer opens the port of a GSM/UMTS module. On a CDMA module it stays closed: the functions that say so
 * open it for the length of the call, on the port that the registry value "ComPort" names.
 *
 * Each function sends one command line, or two, and waits for "OK" or "ERROR" without a time-out: a module that keeps
 * silent keeps the caller waiting until the port is hung up. One call at a time; a command and its reply must not meet
 * another.
 *
 * Results, in the order in which they are found: 10 before start-up; 1 on a module that is not GSM/UMTS, where a
 * function serves these only; 354 when the port is not open (or cannot be opened); 5 when the module refuses a command,
 * or answers with something else than the function expects; 0. The log has the number of a "+CME ERROR" where the
 * module gives one. Outputs are written on 0 only.
 */
#ifndef TALVEK_AT_H
#define TALVEK_AT_H

#include "talvek/rcode.h"

/* --- supplementary services of a GSM/UMTS module ------------------------------------------------------------------ */

/*
 * The presentation of the caller's number (3GPP TS 27.007, +CLIP).
 * mode [in]: 0 off, 1 on; handed to the module as it is.
 * Returns 0, 1, 5, 10 or 354.
 */
ORV_API ORV_RCODE ORV_CALL OrvATSetCLIP(BYTE mode);
/*
 * n [out]: the setting, 0 or 1. m [out]: the service in the network: 0 not provisioned, 1 provisioned, 2 unknown.
 * Larger numbers of the module are cut to eight bits, here and below. Returns 0, 1, 5, 10 or 354; 4 for a null pointer.
 */
ORV_API ORV_RCODE ORV_CALL OrvATGetCLIP(BYTE* n, BYTE* m);

/*
 * The restriction of the own number towards the called party (+CLIR).
 * mode [in]: 0 as subscribed, 1 restricted, 2 shown; handed to the module as it is.
 * Returns 0, 1, 5, 10 or 354.
 */
ORV_API ORV_RCODE ORV_CALL OrvATSetCLIR(BYTE mode);
/*
 * n [out]: the setting, 0 to 2. m [out]: the service in the network: 0 not provisioned, 1 permanent, 2 unknown, 3
 * temporary and restricted, 4 temporary and shown. Returns 0, 1, 5, 10 or 354; 4 for a null pointer.
 */
ORV_API ORV_RCODE ORV_CALL OrvATGetCLIR(BYTE* n, BYTE* m);

/*
 * Kept for compatibility: sends nothing and changes nothing.
 * Returns 0 when the port is open; 10, 1 or 354 otherwise.
 */
ORV_API ORV_RCODE ORV_CALL OrvATSetCOLP(void);
/*
 * The presentation of the connected party's number (+COLP).
 * n [out]: the setting, 0 or 1. m [out]: the service in the network: 0 not provisioned, 1 provisioned, 2 unknown.
 * Returns 0, 1, 5, 10 or 354; 4 for a null pointer.
 */
ORV_API ORV_RCODE ORV_CALL OrvATGetCOLP(BYTE* n, BYTE* m);

/*
 * Kept for compatibility: sends nothing and changes nothing.
 * Returns 0 when the port is open; 10, 1 or 354 otherwise.
 */
ORV_API ORV_RCODE ORV_CALL OrvATSetCOLR(void);
/*
 * The restriction of the own number towards a calling party (+COLR).
 * n [out]: the service in the network: 0 not provisioned, 1 provisioned, 2 unknown.
 * Returns 0, 1, 5, 10 or 354; 4 for a null pointer.
 */
ORV_API ORV_RCODE ORV_CALL OrvATGetCOLR(BYTE* n);

/*
 * Releases one call and leaves the others (+CHLD=1X).
 * callIndex [in]: the number of the call, from 1.
 * Returns 0, 1, 5, 10 or 354.
 */
ORV_API ORV_RCODE ORV_CALL OrvATReleaseCall(ULONG callIndex);

/* --- the module itself, of either technology ---------------------------------------------------------------------- */

/*
 * How the module presents itself on the USB. Opens the port of a CDMA module for the call. Opens the module's
 * restricted command set first. setting [in]: terminated 8-bit text, the module's own; handed to it unchanged, so that
 * a line break in it would begin another command. Returns 0, 5, 10 or 354; 4 for a null text or one that does not fit a
 * command line of 259 characters: nothing is then sent.
 */
ORV_API ORV_RCODE ORV_CALL OrvATSetEnum(const char* setting);

/*
 * The side-tone gain of the audio codec. Opens the module's restricted command set first. Does not open the port of a
 * CDMA module: 354. first [in]: sent in decimal. second [in]: sent in hexadecimal. Both are the module's own. Returns
 * 0, 5, 10 or 354.
 */
ORV_API ORV_RCODE ORV_CALL OrvATSetSideToneGain(int32_t first, int32_t second);

/*
 * Resets the module, which leaves and comes back. Opens the port of a CDMA module for the call.
 * Returns 0, 5, 10 or 354.
 */
ORV_API ORV_RCODE ORV_CALL OrvATReset(void);

/*
 * Puts the module back to the settings of the factory. Opens the port of a CDMA module for the call.
 * reset [in]: terminated 8-bit text, the module's own; as for OrvATSetEnum.
 * Returns as OrvATSetEnum.
 */
ORV_API ORV_RCODE ORV_CALL OrvATRtnReset(const char* reset);

/*
 * Looks at the first six digits of the module's directory number. Opens the port of a CDMA module for the call.
 * flag [out]: 1 when all six are 0, else 0, also when there are fewer.
 * Returns 0, 5, 10 or 354; 4 for a null pointer.
 */
ORV_API ORV_RCODE ORV_CALL OrvATGetProvisionStatus(BYTE* flag);

#endif /* TALVEK_AT_H */
