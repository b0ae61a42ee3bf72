// Conversions between the vendor library's values and ours, and searches in small tables. Pure functions over constant
// tables: no state, no allocation, callable from any thread. A value that they do not know gives the documented
// fallback and a log line.
#pragma once

#include "talvek/rcode.h"

// A vendor status as a result code.
ORV_RCODE ConvertGobiError2OrvRcode(ULONG uError);

// The class (1 device configuration, 2 PRL update, 4 neither) and the initiator of an OMA-DM session; 0 and 0 for an
// unknown type.
void ConvertGobi2OrvSessionType(ULONG uSessionType, ULONG* uOut1, ULONG* uOut2);
// Note the order: the reason comes first.
ULONG ConvertGobi2OrvOMADMSessionState(ULONG uFailureReason, ULONG uState);

// Operating modes. The two are not inverse: library mode 2 always becomes vendor mode 5, and 0 never becomes 2.
ULONG ConvertGobi2OrvOperatingMode(ULONG uOperatingMode);
ULONG ConvertOrv2GobiOperatingMode(ULONG uOrvPowerMode);

ULONG ConvertGobi2OrvGSMServiceStatus(ULONG regState);
ULONG ConvertGobi2OrvRoamFlags(bool bFirst, bool bSecond);
ULONG ConvertGobi2OrvDataBearerTech(ULONG dataBearerTech);

// The preferred-mode item. The two are not inverse either. *bNotSupported is 1 for a value that has no counterpart.
ULONG ConvertGobi2OrvNvPrefOpMode(ULONG uPrefMode, BYTE* bNotSupported);
ULONG ConvertOrv2GobiNvPrefOpMode(ULONG uOrvPrefMode, BYTE* bNotSupported);

// The first element equal to uValue; *uIndex is untouched when there is none.
bool FindByteInTable(BYTE uValue, BYTE uCount, const BYTE* pTable, BYTE* uIndex);
bool FindWordInTable(ULONG uValue, BYTE uCount, const ULONG* pTable, BYTE* uIndex);
// Bit v - 1 for each value v of 1 to 32 in the list; other values add nothing. A null list is an empty one.
ULONG BandListToMask(BYTE uCount, const BYTE* pList);

// The number behind "+CME ERROR: " in the reply to `command`. False when there is none.
bool ExtractErrorCode(const char* reply, const char* command, ULONG* code);
