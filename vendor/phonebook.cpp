// The vendor's phonebook service.

#include "vendor/forward.h"

ULONG COrvGobiDll::GetPhonebookCapabilities(BYTE* sessionType, WORD* phonebookType, WORD* used, WORD* capacity,
                                            BYTE* maxNumberLength, BYTE* maxNameLength)
{
    return Forward(m_entry.GetPhonebookCapabilities, sessionType, phonebookType, used, capacity, maxNumberLength,
                   maxNameLength);
}

ULONG COrvGobiDll::ReadPhonebookRecords(BYTE* sessionType, WORD* phonebookType, WORD* first, WORD* last, WORD* count)
{
    return Forward(m_entry.ReadPhonebookRecords, sessionType, phonebookType, first, last, count);
}

ULONG COrvGobiDll::WritePhonebookRecord(BYTE* sessionType, WORD* phonebookType, WORD* recordID, BYTE* numberType,
                                        BYTE* numberLength, BYTE* number, BYTE* nameLength, BYTE* name,
                                        BYTE* nameCoding)
{
    return Forward(m_entry.WritePhonebookRecord, sessionType, phonebookType, recordID, numberType, numberLength, number,
                   nameLength, name, nameCoding);
}

ULONG COrvGobiDll::DeletePhonebookRecord(BYTE* sessionType, WORD* phonebookType, WORD* recordID)
{
    return Forward(m_entry.DeletePhonebookRecord, sessionType, phonebookType, recordID);
}
