// The card's phonebook and the emergency numbers: delivered directly, with no lock, in batches.

#include <string.h>

#include "notify/adapters.h"
#include "notify/direct.h"
#include "notify/record.h"
#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\OrvNotify.cpp");

// The entries that the vendor's emergency list has room for.
constexpr BYTE kEmergencyListRoom = 50;
constexpr size_t kHeaderOctets = 6;
constexpr size_t kDigitCount = 5; // its place in the header

ULONG Bounded(ULONG value, ULONG limit) { return value < limit ? value : limit; }

void FillEntry(OrvPhonebookEntry& entry, const arrPBInfo& record, BYTE phonebook_type)
{
    entry.uRecordId = record.recordId;
    entry.uNumberType = record.numberType;
    entry.uNumberLength = Bounded(record.numberLength, sizeof entry.aNumber);
    entry.uNameLength = Bounded(record.nameLength, sizeof entry.aName);
    memcpy(entry.aNumber, record.number, entry.uNumberLength);
    memcpy(entry.aName, record.name, entry.uNameLength);
    entry.uPhonebookType = phonebook_type;
    LOG_C("SIM record id = %d, type=%d, NumLen=%d, NameLen=%d!!", entry.uRecordId, entry.uNumberType,
          entry.uNumberLength, entry.uNameLength);
}

// Entry `k` of the batch: one array an octet of the header, one field of digits.
void FillEntry(OrvEmergencyNumbersPayload& payload, ULONG k, const emergencyNumberEntry& entry)
{
    for (size_t octet = 0; octet < kHeaderOctets; ++octet)
        payload.aHeader[octet][k] = entry.hdr[octet];
    memcpy(payload.aDigits[k], entry.digits, Bounded(entry.hdr[kDigitCount], sizeof payload.aDigits[k]));
}

} // namespace

void ORV_VENDOR_CALL AllPhonebookInitDoneCallback(BYTE, BYTE*, WORD*)
{
    LOG_C("AllSIMPhonebookInitDoneCallback");
    OrvNotifyRecord record;
    BeginRecord(record, ORV_NOTIFY_PhonebookReady, sizeof(OrvValuePayload));
    record.payload.Value.uValue = 1;
    DeliverDirectly(record);
}

void ORV_VENDOR_CALL ReadSIMPhoneBookCallback(BYTE phonebookType, WORD count, arrPBInfo* records)
{
    LOG_C("ReadSIMPhoneBookCallback");
    if (!records) {
        LOG_C("NULL Pointer!!");
        return;
    }
    for (ULONG first = 0; first < count; first += ORV_PHONEBOOK_BATCH) {
        OrvNotifyRecord record;
        BeginRecord(record, ORV_NOTIFY_PhonebookRecords, sizeof(OrvPhonebookRecordsPayload));
        OrvPhonebookRecordsPayload& payload = record.payload.PhonebookRecords;
        payload.uCount = Bounded(count - first, ORV_PHONEBOOK_BATCH);
        for (ULONG k = 0; k < payload.uCount; ++k)
            FillEntry(payload.entries[k], records[first + k], phonebookType);
        DeliverDirectly(record);
    }
}

void ORV_VENDOR_CALL EmergencyListCallback(BYTE count, emergencyNumberEntry* entries)
{
    if (count == kEmergencyListRoom) LOG_C("EmergencyListCallback: noOfInstance = 50, some entries may be missing");
    if (count == 0 || !entries) {
        LOG_C("EmergencyListCallback: noOfInstance = %d, noOfInstance is 0 or arrEmergencyNumberEntry is NULL!", count);
        return;
    }
    if (count > kEmergencyListRoom) LOG_C("Emergency list of %d entries cut to %d", count, kEmergencyListRoom);
    const ULONG usable = Bounded(count, kEmergencyListRoom);
    for (ULONG first = 0; first < usable; first += ORV_EMERGENCY_BATCH) {
        OrvNotifyRecord record;
        BeginRecord(record, ORV_NOTIFY_EmergencyNumbers, sizeof(OrvEmergencyNumbersPayload));
        OrvEmergencyNumbersPayload& payload = record.payload.EmergencyNumbers;
        payload.uCount = Bounded(usable - first, ORV_EMERGENCY_BATCH);
        for (ULONG k = 0; k < payload.uCount; ++k)
            FillEntry(payload, k, entries[first + k]);
        DeliverDirectly(record);
    }
}
