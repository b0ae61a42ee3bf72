// Questions about the serving network. The counts that the module returns are bounded to what was asked for.
#pragma once

#include "talvek/gobi_dll.h"

// What the serving network can do.
struct ServingNetworkCaps {
    BYTE count = 0;
    BYTE list[GOBI_MAX_SERVING_NETWORK_CAPS] = {};

    // Returns the vendor's status.
    ULONG Query(COrvGobiDll& gobi);
};

// The most radio interfaces and characters of a name that are ever asked for.
constexpr BYTE kMaxServingInterfaces = 20;
constexpr BYTE kMaxServingName = 255;

// How the module is served.
struct ServingNetwork {
    static constexpr ULONG kRegistered = 1;
    static constexpr BYTE kNotListed = 255;

    ULONG registration_state = 0; // kRegistered, or another
    ULONG cs_domain = 0;
    ULONG ps_domain = 0;
    ULONG ran = 0;
    BYTE radio_interface_count = 0;
    BYTE radio_interfaces[kMaxServingInterfaces] = {};
    ULONG roaming = 0;
    WORD mcc = 0;
    WORD mnc = 0;
    char name[kMaxServingName + 1] = {}; // terminated

    // Asks with room for so many radio interfaces (at most kMaxServingInterfaces) and so many characters of the name.
    // Returns the vendor's status.
    ULONG Query(COrvGobiDll& gobi, BYTE interface_room = GOBI_MAX_RADIO_INTERFACES, BYTE name_room = 50);
    // Where that radio interface stands in the list, or kNotListed.
    BYTE IndexOf(BYTE radio_interface) const;
    bool IsServedBy(BYTE radio_interface) const { return IndexOf(radio_interface) != kNotListed; }
    // The roaming indicator as clients know it: the module's 0 and 1 change places, and any other value stands.
    ULONG RoamingIndicator() const { return roaming < 2 ? 1 - roaming : roaming; }
};
