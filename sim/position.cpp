// The position service.
#include <iterator>

#include "sim/clock.h"
#include "sim/fields.h"
#include "sim/reset.h"
#include "sim/settings.h"

namespace sim {

constexpr WORD kMinutesOfAWeek = 10080;
constexpr ULONG kRegistered = 1;

static constexpr Field kFields[] = {
    NumberField("position.enabled", g_module.position.enabled, 1),
    NumberField("position.tracking", g_module.position.tracking, 1),
    NumberField("position.service-tracking", g_module.position.service_tracking, 1),
    NumberField("position.port-tracking", g_module.position.port_tracking, 1),
    NumberField("position.time", g_module.position.time_ms),
    NumberField("position.uncertainty", g_module.position.uncertainty_ms),
    NumberField("position.operation", g_module.position.operation),
    NumberField("position.timeout", g_module.position.timeout_s),
    NumberField("position.interval", g_module.position.interval_s),
    NumberField("position.accuracy", g_module.position.accuracy_m),
    NumberField("position.reset-gps", g_module.position.reset_gps),
    NumberField("position.reset-cell", g_module.position.reset_cell),
    NumberField("xtra.automatic", g_module.position.xtra_automatic, 1),
    NumberField("xtra.interval", g_module.position.xtra_interval_h),
    NumberField("xtra.network", g_module.position.xtra_network),
    NumberField("xtra.week", g_module.position.xtra_week),
    NumberField("xtra.offset", g_module.position.xtra_offset_min, kMinutesOfAWeek - 1),
    NumberField("xtra.duration", g_module.position.xtra_duration_h),
    NumberField("xtra.download-ms", g_module.position.xtra_download_ms),
    NumberField("xtra.client", g_module.position.xtra_client, 1),
    NumberField("xtra.client-persistent", g_module.position.xtra_client_persistent, 1),
    NumberField("nmea.enabled", g_module.position.nmea_enabled, 1),
    NumberField("nmea.port", g_module.position.nmea_port),
    NumberField("nmea.interval", g_module.position.nmea_interval_s),
    NumberField("nmea.sentences", g_module.position.nmea_sentences),
    NumberField("agps.address", g_module.position.agps_address),
    NumberField("agps.port", g_module.position.agps_port, 0xFFFF),
};
const FieldTable kPositionFields = {kFields, std::size(kFields)};

void ResetPosition()
{
    PositionState& position = TheModule().position;
    position = {};
    position.timeout_s = 255;
    position.interval_s = 1;
    position.accuracy_m = 50;
    position.xtra_interval_h = 24;
    position.xtra_download_ms = 2000;
    position.nmea_interval_s = 1;
    position.agps_port = 7275; // registered for secure user plane location
}

// A fix starts with the service where that is wanted. Otherwise it goes on as it is.
static void FollowService()
{
    PositionState& position = TheModule().position;
    if (!position.enabled)
        position.tracking = 0;
    else if (position.service_tracking)
        position.tracking = 1;
}

void RestartPosition()
{
    PositionState& position = TheModule().position;
    position.tracking = 0;
    if (!position.xtra_client_persistent) position.xtra_client = 0;
    FollowService();
}

} // namespace sim

using namespace sim;

extern "C" ULONG GetPDSState(ULONG* enabled, ULONG* tracking)
{
    const PositionState& position = TheModule().position;
    return Give(EntryPoint::GetPDSState, Given{enabled, position.enabled}, Given{tracking, position.tracking});
}

extern "C" ULONG SetPDSState(ULONG enabled)
{
    const ULONG status = Keep(EntryPoint::SetPDSState, Kept<ULONG>{TheModule().position.enabled, enabled, 1});
    if (status == kSuccess) {
        Guard guard;
        FollowService();
    }
    return status;
}

extern "C" ULONG PDSInjectTimeReference(ULONGLONG time, WORD uncertainty)
{
    PositionState& position = TheModule().position;
    return Keep(EntryPoint::PDSInjectTimeReference, Kept<ULONGLONG>{position.time_ms, time},
                Kept<WORD>{position.uncertainty_ms, uncertainty});
}

extern "C" ULONG GetPDSDefaults(ULONG* operation, BYTE* timeout, ULONG* interval, ULONG* accuracy)
{
    const PositionState& position = TheModule().position;
    return Give(EntryPoint::GetPDSDefaults, Given{operation, position.operation}, Given{timeout, position.timeout_s},
                Given{interval, position.interval_s}, Given{accuracy, position.accuracy_m});
}

extern "C" ULONG SetPDSDefaults(ULONG operation, BYTE timeout, ULONG interval, ULONG accuracy)
{
    PositionState& position = TheModule().position;
    return Keep(EntryPoint::SetPDSDefaults, Kept<ULONG>{position.operation, operation},
                Kept<BYTE>{position.timeout_s, timeout, 255, 1}, Kept<ULONG>{position.interval_s, interval},
                Kept<ULONG>{position.accuracy_m, accuracy});
}

extern "C" ULONG GetXTRAAutomaticDownload(ULONG* enabled, WORD* interval)
{
    const PositionState& position = TheModule().position;
    return Give(EntryPoint::GetXTRAAutomaticDownload, Given{enabled, position.xtra_automatic},
                Given{interval, position.xtra_interval_h});
}

extern "C" ULONG SetXTRAAutomaticDownload(ULONG enabled, WORD interval)
{
    PositionState& position = TheModule().position;
    return Keep(EntryPoint::SetXTRAAutomaticDownload, Kept<ULONG>{position.xtra_automatic, enabled, 1},
                Kept<WORD>{position.xtra_interval_h, interval});
}

extern "C" ULONG GetXTRANetwork(ULONG* preference)
{
    return Give(EntryPoint::GetXTRANetwork, Given{preference, TheModule().position.xtra_network});
}

extern "C" ULONG SetXTRANetwork(ULONG preference)
{
    return Keep(EntryPoint::SetXTRANetwork, Kept<ULONG>{TheModule().position.xtra_network, preference});
}

extern "C" ULONG GetXTRAValidity(WORD* week, WORD* offset, WORD* duration)
{
    const PositionState& position = TheModule().position;
    return Give(EntryPoint::GetXTRAValidity, Given{week, position.xtra_week}, Given{offset, position.xtra_offset_min},
                Given{duration, position.xtra_duration_h});
}

extern "C" ULONG SetXTRAValidity(WORD week, WORD offset, WORD duration)
{
    PositionState& position = TheModule().position;
    return Keep(EntryPoint::SetXTRAValidity, Kept<WORD>{position.xtra_week, week},
                Kept<WORD>{position.xtra_offset_min, offset, kMinutesOfAWeek - 1},
                Kept<WORD>{position.xtra_duration_h, duration});
}

extern "C" ULONG SetXTRAEmbeddedClient(BYTE enabled, BYTE persistent)
{
    PositionState& position = TheModule().position;
    return Keep(EntryPoint::SetXTRAEmbeddedClient, Kept<BYTE>{position.xtra_client, enabled, 1},
                Kept<BYTE>{position.xtra_client_persistent, persistent, 1});
}

extern "C" ULONG SetNMEAConfig(BYTE enabled, BYTE port, BYTE interval, WORD* sentences)
{
    Call call(EntryPoint::SetNMEAConfig, enabled, port, interval, At(sentences));
    if (const ULONG refused = call.Refused()) return refused;
    if (enabled > 1 || !sentences) return kInvalidArgument;
    PositionState& position = TheModule().position;
    position.nmea_enabled = enabled;
    position.nmea_port = port;
    position.nmea_interval_s = interval;
    position.nmea_sentences = *sentences;
    return call.Done();
}

extern "C" ULONG GetNMEAConfig(BYTE* enabled, BYTE* port, BYTE* interval, WORD* sentences)
{
    const PositionState& position = TheModule().position;
    return Give(EntryPoint::GetNMEAConfig, Given{enabled, position.nmea_enabled}, Given{port, position.nmea_port},
                Given{interval, position.nmea_interval_s}, Given{sentences, position.nmea_sentences});
}

// The file is there, and valid for a week, when it has been loaded.
extern "C" ULONG ForceXTRADownload()
{
    Call call(EntryPoint::ForceXTRADownload);
    if (const ULONG refused = call.Refused()) return refused;
    if (TheModule().power.mode != 0 || TheModule().network.registration != kRegistered) return kNoNetwork;
    ScheduleModuleEvent(TheModule().position.xtra_download_ms, "set xtra.duration 168");
    return call.Done();
}

extern "C" ULONG GetAGPSConfig(ULONG* address, ULONG* port)
{
    const PositionState& position = TheModule().position;
    return Give(EntryPoint::GetAGPSConfig, Given{address, position.agps_address}, Given{port, position.agps_port});
}

extern "C" ULONG SetAGPSConfig(ULONG address, ULONG port)
{
    PositionState& position = TheModule().position;
    return Keep(EntryPoint::SetAGPSConfig, Kept<ULONG>{position.agps_address, address},
                Kept<ULONG>{position.agps_port, port, 0xFFFF, 1});
}

extern "C" ULONG GetServiceAutomaticTracking(ULONG* enabled)
{
    return Give(EntryPoint::GetServiceAutomaticTracking, Given{enabled, TheModule().position.service_tracking});
}

extern "C" ULONG SetServiceAutomaticTracking(ULONG enabled)
{
    const ULONG status =
        Keep(EntryPoint::SetServiceAutomaticTracking, Kept<ULONG>{TheModule().position.service_tracking, enabled, 1});
    if (status == kSuccess) {
        Guard guard;
        FollowService();
    }
    return status;
}

extern "C" ULONG GetPortAutomaticTracking(ULONG* enabled)
{
    return Give(EntryPoint::GetPortAutomaticTracking, Given{enabled, TheModule().position.port_tracking});
}

extern "C" ULONG SetPortAutomaticTracking(ULONG enabled)
{
    return Keep(EntryPoint::SetPortAutomaticTracking, Kept<ULONG>{TheModule().position.port_tracking, enabled, 1});
}

// With any bit of the first mask the time and the assistance file are forgotten.
extern "C" ULONG ResetPDSData(ULONG* gps_data, ULONG* cell_data)
{
    Call call(EntryPoint::ResetPDSData, At(gps_data), At(cell_data));
    if (const ULONG refused = call.Refused()) return refused;
    PositionState& position = TheModule().position;
    position.reset_gps = gps_data ? *gps_data : 0;
    position.reset_cell = cell_data ? *cell_data : 0;
    if (position.reset_gps != 0) {
        position.time_ms = 0;
        position.uncertainty_ms = 0;
        position.xtra_duration_h = 0;
    }
    return call.Done();
}
