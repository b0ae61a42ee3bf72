// The phonebooks on the card.
#pragma once

#include "sim/values.h"

namespace sim {

constexpr ULONG kPhonebooks = 3;      // by type: 0 contacts, 1 fixed dialling, 2 own numbers
constexpr ULONG kPhonebookRoom = 100; // records of the greatest
constexpr ULONG kNumberRoom = 40;     // octets
constexpr ULONG kNameRoom = 60;

struct PhonebookRecord {
    BYTE used;
    BYTE number_type, number_length;
    BYTE name_length, name_coding;
    BYTE number[kNumberRoom];
    BYTE name[kNameRoom];
};

struct PhonebookState {
    PhonebookRecord records[kPhonebooks][kPhonebookRoom];
    WORD capacity[kPhonebooks];
    BYTE max_number, max_name; // at most the room
    ULONG read_ms;             // from ReadPhonebookRecords to each of its events
};

} // namespace sim
