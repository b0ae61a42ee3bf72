// What a reset of the module asks of each service. Lock held.
#pragma once

#include "talvek/types.h"

namespace sim {

void InitializeLock(); // once, when the library is loaded

void ResetIdentity(bool umts);
void ResetPower();
void ResetNetwork(bool umts);
void ResetSession();
void ResetFirmware();
void ResetCalls(bool umts);
void ResetSupplementary();
void ResetUssd();
void ResetPhonebook(bool umts);
void ResetCellLocation();
void ResetSms(bool umts);
void ResetUim(bool umts);
void ResetSimFiles();
void ResetPosition();
void ResetImages();
void ResetAudio();
void ResetM2mAudio();
// The module has come back: PINs are to be verified again, and fixes to be started.
void RestartUim();
void RestartSimFiles();
void RestartPosition();
void ResetDataStatus(bool umts);
void ResetProfiles();
void ResetMobileIP(bool umts);
void ResetNetworkScan(bool umts);
void ResetHomeNetwork(bool umts);
void ResetOperators();
void ResetCdma(bool umts);
void ResetSubscriber(bool umts);
void ResetManagement();
void ResetExtendedManagement();

// The module leaves after a while, and comes back with the radio on.
void ScheduleReset();
// A data session begins.
void BeginDataStatus();
// The event that tells how the Mobile IP registration went; none while Mobile IP is off.
void ReportMobileIP(ULONG delay_ms);

// The calls and the USSD dialogue end without a word to the client.
void AbandonVoice();
// Ends the data session, if there is one: without a word to the client, or with the event and its reason.
void EndSession();
void LoseSession(ULONG reason);
// The next byte-totals event: when it is due (0: none), and the session's step past it.
ULONGLONG NextReport();
void StepReport();
// Reports byte totals every so many seconds while a session is up; 0: never.
void ReportEvery(ULONG seconds);

// Runs the file that TALVEK_SIM_SCENARIO names, if any. Returns false, after a line on standard error, when it cannot
// be read or a line of it fails. Lock not held.
bool RunConnectScenario();

} // namespace sim
