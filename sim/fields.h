// The fields that `set` and `get` reach by name: a row a field, in the file of the service that owns it.
#pragma once

#include "sim/command.h"
#include "sim/module.h"

namespace sim {

enum class FieldKind : BYTE { Number, Text, List, Octets, Address };

struct Field {
    const char* name;
    void* storage;
    int64_t low;    // of a number, or of a list's first column
    ULONGLONG high; // likewise
    ULONG room;     // octets of a text or of octets, rows of a list
    FieldKind kind;
    BYTE size;    // octets of a number
    BYTE columns; // of a list
};

template <class T>
constexpr Field NumberField(const char* name, T& storage, ULONGLONG high = static_cast<T>(~T{0}))
{
    return {name, &storage, 0, high, 0, FieldKind::Number, sizeof(T), 1};
}
template <ULONG kRoom>
constexpr Field TextField(const char* name, Text<kRoom>& storage)
{
    return {name, &storage, 0, 0, kRoom, FieldKind::Text, 0, 1};
}
// Rows are written as values joined by ':'.
template <ULONG kRows, ULONG kColumns>
constexpr Field ListField(const char* name, List<kRows, kColumns>& storage, int64_t low, ULONGLONG high)
{
    return {name, &storage, low, high, kRows, FieldKind::List, 0, kColumns};
}
template <ULONG kRoom>
constexpr Field OctetsField(const char* name, Octets<kRoom>& storage)
{
    return {name, &storage, 0, 0, kRoom, FieldKind::Octets, 0, 1};
}
constexpr Field AddressField(const char* name, BYTE (&storage)[4])
{
    return {name, &storage, 0, 0, 4, FieldKind::Address, 0, 1};
}

struct FieldTable {
    const Field* fields;
    ULONG count;
};

// One a service.
extern const FieldTable kConnectionFields, kIdentityFields, kPowerFields, kNetworkFields, kSessionFields,
    kFirmwareFields, kSmsFields, kUimFields, kPositionFields, kImagesFields, kAudioFields, kM2mAudioFields, kDataFields,
    kProfileFields, kMobileIPFields, kNetworkScanFields, kCdmaFields, kSubscriberFields, kManagementFields,
    kExtendedManagementFields, kCallsFields, kSupplementaryFields, kUssdFields, kPhonebookFields, kCellFields,
    kAtFields, kSimFileFields, kOperatorFields;

// The verbs. Lock held.
void SetField(Command& command);
void GetField(Command& command);
void ListFields(Command& command);

} // namespace sim
