/*
 * ORV_RCODE: the result of every exported function.
 *
 * The names of 2, 7 and 600 carry the vendor status that they stand for, because the vendor publishes no meaning for
 * it. A vendor status without a value of its own becomes ORV_RCODE_FAILED.
 */
#ifndef TALVEK_RCODE_H
#define TALVEK_RCODE_H

#include "talvek/types.h"

typedef enum tagORV_RCODE {
    /* The call did what it says. */
    ORV_RCODE_OK = 0,
    /* The module or the vendor library cannot do this (vendor status 1025), or an AT function was called on a module
     * that is not GSM/UMTS. Do not retry. */
    ORV_RCODE_UNSUPPORTED = 1,
    /* Vendor status 5. */
    ORV_RCODE_VENDOR_5 = 2,
    /* A required pointer is null, a size is 0, a text is too long, or a device ID is not one of the four accepted ones.
     * Mend the call. */
    ORV_RCODE_BAD_PARAMETER = 4,
    /* The operation failed: every vendor status without a row of its own, an undetermined wireless technology, no
     * module in the registry. The log names the cause. */
    ORV_RCODE_FAILED = 5,
    /* The item asked for is not known to the module. */
    ORV_RCODE_UNKNOWN = 6,
    /* Vendor status 15. */
    ORV_RCODE_VENDOR_15 = 7,
    /* OrvApiStartup could not load the vendor library, or it lacks its connect or disconnect entry point. */
    ORV_RCODE_STARTUP_FAILED = 9,
    /* The vendor binding is not initialised: call OrvApiStartup first. */
    ORV_RCODE_API_NOT_INIT = 10,
    /* The value is not to be had: the binding is not initialised, or nothing has been cached (select a module first).
     */
    ORV_RCODE_NOT_AVAILABLE = 17,
    /* The vendor library cannot serve this function on this module. */
    ORV_RCODE_NOT_SERVED = 18,
    /* The state of the module does not allow the call now. */
    ORV_RCODE_WRONG_STATE = 19,
    /* The AT port could not be opened: it does not exist, is busy, or its name is too long. */
    ORV_RCODE_PORT_OPEN_FAILED = 353,
    /* The AT port could not be configured, or an AT function found it not open. */
    ORV_RCODE_PORT_NOT_OPEN = 354,
    /* Vendor status 1026. Some functions also give 600 for "no more entries" or "already active"; they say so. */
    ORV_RCODE_VENDOR_1026 = 600,
    /* Keeps the enumeration 32 bits wide with every compiler. */
    ORV_RCODE_FORCE_32_BIT = 0x7FFFFFFF
} ORV_RCODE;

/*
 * Additions to the interface: texts for codes. Both are static, never null, and need no start-up.
 * An unknown code gives "ORV_RCODE_?" and "unknown result code".
 */

/* The symbolic name of a code, for example "ORV_RCODE_API_NOT_INIT". */
ORV_API const char* ORV_CALL OrvRcodeName(ORV_RCODE rCode);
/* One sentence: what the code means and what to do about it. */
ORV_API const char* ORV_CALL OrvRcodeMeaning(ORV_RCODE rCode);

#ifdef __cplusplus
static_assert(sizeof(ORV_RCODE) == 4, "results are 32 bits wide");
#endif

#endif /* TALVEK_RCODE_H */
