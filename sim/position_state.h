// The position service: its switches, its assistance data and its reports.
#pragma once

#include "talvek/types.h"

namespace sim {

struct PositionState {
    ULONG enabled, tracking;               // tracking: a fix is under way
    ULONG service_tracking, port_tracking; // 1: a fix starts with the service, or when the port is opened
    ULONGLONG time_ms;                     // that was injected; 0: none
    WORD uncertainty_ms;
    ULONG operation, interval_s, accuracy_m; // of a fix
    BYTE timeout_s;
    ULONG reset_gps, reset_cell; // the masks of the last reset

    ULONG xtra_automatic, xtra_network;
    WORD xtra_interval_h;
    WORD xtra_week, xtra_offset_min, xtra_duration_h; // a duration of 0: there is no file
    ULONG xtra_download_ms;
    BYTE xtra_client, xtra_client_persistent;

    BYTE nmea_enabled, nmea_port, nmea_interval_s;
    WORD nmea_sentences;

    ULONG agps_address, agps_port;
};

} // namespace sim
