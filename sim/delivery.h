// One event on its way to the client: its row has read the arguments, its call makes the client's.
#pragma once

#include "sim/command.h"

namespace sim {

constexpr ULONG kMaxOctets = 5200; // ten phonebook records

struct Delivery {
    void (*callback)();
    void (*call)(Delivery& delivery);
    ULONGLONG numbers[10];
    ULONG octet_count;
    bool has_octets; // false: the client gets null pointers
    alignas(8) BYTE octets[kMaxOctets];

    ULONG Long(ULONG index) const { return static_cast<ULONG>(numbers[index]); }
    WORD Word(ULONG index) const { return static_cast<WORD>(numbers[index]); }
    BYTE Byte(ULONG index) const { return static_cast<BYTE>(numbers[index]); }
    BYTE* Octets(ULONG column = 0) { return has_octets ? octets + size_t{column} * octet_count : nullptr; }
    template <class Callback>
    Callback As() const
    {
        return reinterpret_cast<Callback>(callback);
    }
    // The octets as a record of the vendor's, or null.
    template <class Record>
    Record* Octets(size_t offset, bool there)
    {
        static_assert(alignof(Record) <= 8);
        return has_octets && there ? reinterpret_cast<Record*>(octets + offset) : nullptr;
    }
};

// Events that carry the vendor's records: what `emit` reads, and the call that is made of it. Lock held by the takers,
// not by the callers.
void TakeCalls(Command& command, Delivery& delivery);
void CallCalls(Delivery& delivery);
void TakeInformation(Command& command, Delivery& delivery);
void CallInformation(Delivery& delivery);
void TakeUssd(Command& command, Delivery& delivery);
void CallUssd(Delivery& delivery);
void TakePhonebook(Command& command, Delivery& delivery);
void CallPhonebook(Delivery& delivery);
void TakeEmergencyList(Command& command, Delivery& delivery);
void CallEmergencyList(Delivery& delivery);
void TakeFirmwareUpdate(Command& command, Delivery& delivery);
void CallFirmwareUpdate(Delivery& delivery);
void TakeManagement(Command& command, Delivery& delivery);
void CallManagement(Delivery& delivery);

} // namespace sim
