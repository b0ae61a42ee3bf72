// The card's phonebook and the emergency numbers. Records and emergency numbers are reported to the log; they are not
// delivered yet.

#include "notify/OrvNotify.h"
#include "notify/adapters.h"
#include "notify/record.h"
#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\OrvNotify.cpp");

} // namespace

void ORV_VENDOR_CALL AllPhonebookInitDoneCallback(BYTE, BYTE*, WORD*)
{
    LOG_C("AllSIMPhonebookInitDoneCallback");
    const OrvNotifyCallback callback = g_pOrvNotify.Load()->ClientCallback();
    if (!callback) return;
    OrvNotifyRecord record;
    BeginRecord(record, ORV_NOTIFY_PhonebookReady, sizeof(OrvValuePayload));
    record.payload.Value.uValue = 1;
    callback(&record);
}

void ORV_VENDOR_CALL ReadSIMPhoneBookCallback(BYTE, WORD, arrPBInfo*) { LOG_C("ReadSIMPhoneBookCallback"); }

void ORV_VENDOR_CALL EmergencyListCallback(BYTE count, emergencyNumberEntry*)
{
    LOG_C("EmergencyListCallback: noOfInstance = %d", count);
}
