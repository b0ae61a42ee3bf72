// The state behind sim/cdma_provisioning.cpp and sim/subscriber.cpp.
#pragma once

#include "sim/values.h"

namespace sim {

struct CdmaIdentity {
    Text<4> mcc;
    Text<3> imsi1112;
    Text<11> min; // ten digits
    BYTE addr_num;
};

struct CdmaState {
    Text<7> spc;
    BYTE spc_attempts; // left until the code is locked
    BYTE slot_cycle_index, station_class_mark, home_only, sid_registration, nid_registration, force_rev0, custom_scp;
    BYTE accolc;
    ULONG protocol, broadcast, application, roaming;
    ULONG an_aaa;
    WORD prl_version;
    CdmaIdentity min_based, true_imsi;
    Text<16> mdn;
    Octets<1024> eri; // the beginning of the file; zeros follow
    ULONG eri_size;
};

struct ActivationState {
    ULONG state; // 0 not activated, 1 activated, 2 to 10 steps on the way
    ULONG before;
    ULONG step_ms;
    ULONG fail_at; // the step that is not reached; 0: none
    Text<33> code;
};

struct SubscriberState {
    Text<17> esn, meid, imsi;
    ULONG max_tx_rate, max_rx_rate, data_service, sim_supported;
    List<10, 1> interfaces;
    ULONG offline_reasons, platform;
    ULONGLONG time; // units of 1.25 ms since 6 January 1980, when the sim clock reads 0
    ULONG time_source;
};

} // namespace sim
