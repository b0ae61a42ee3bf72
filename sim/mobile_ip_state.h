// The state behind sim/mobile_ip.cpp.
#pragma once

#include "sim/values.h"

namespace sim {

constexpr ULONG kMobileIPProfiles = 6;

struct MobileIPProfile {
    BYTE enabled, reverse_tunneling;
    ULONG addresses[3]; // own, primary and secondary home agent
    ULONG ha_spi, aaa_spi;
    Text<73> nai;
    Text<17> ha_secret, aaa_secret;
};

struct MobileIPState {
    ULONG mode; // 0 off, 1 preferred, 2 only
    ULONG error;
    BYTE active;
    BYTE retry_limit, retry_interval, rereg_period, rereg_on_traffic, ha_authenticator, ha_rfc2002bis;
    MobileIPProfile profiles[kMobileIPProfiles];
};

} // namespace sim
