#include "bench/bench_gobi.h"

#include <string.h>

#include "sim/entry_points.h"

namespace {

BenchGobi s_state;

template <class Callback>
ULONG Register(Callback& slot, Callback callback)
{
    slot = callback;
    return 0;
}

ULONG GiveText(BYTE size, char* out, const char* text)
{
    const size_t length = strlen(text);
    if (length >= size) return 22; // does not fit
    memcpy(out, text, length + 1);
    return 0;
}

} // namespace

extern "C" {

BenchGobi* BenchGobiState() { return &s_state; }

// --- what the measured functions call --------------------------------------------------------------------------------

ULONG GetPower(ULONG* mode)
{
    *mode = 0;
    return 0;
}

ULONG GetSessionState(ULONG* state)
{
    *state = 2;
    return 0;
}

// --- identity --------------------------------------------------------------------------------------------------------

// Refused, so that the firmware's word decides what kind of module this is.
ULONG OrvGetCwePkgsInfo(WORD*, BYTE*, WORD*, BYTE*, WORD*, BYTE*, WORD*, BYTE*, WORD*, BYTE*, WORD*, BYTE*, WORD*,
                        BYTE*)
{
    return 1025;
}

ULONG GetFirmwareInfo(ULONG* firmware, ULONG* technology, ULONG* carrier, ULONG* region, ULONG* gps)
{
    *firmware = *carrier = *region = *gps = 0;
    *technology = s_state.firmware_technology;
    return 0;
}

ULONG GetFirmwareRevisions(BYTE firmware_size, char* firmware, BYTE boot_size, char* boot, BYTE pri_size, char* pri)
{
    const ULONG status = GiveText(firmware_size, firmware, "B1.0") | GiveText(boot_size, boot, "B1.1");
    return status | GiveText(pri_size, pri, "05000102");
}

ULONG GetManufacturer(BYTE size, char* text) { return GiveText(size, text, "Bench"); }
ULONG GetModelID(BYTE size, char* text) { return GiveText(size, text, "Bench 1"); }
ULONG GetHardwareRevision(BYTE size, char* text) { return GiveText(size, text, "1.0"); }
ULONG GetIMSI(BYTE size, char* text) { return GiveText(size, text, "001010123456789"); }

ULONG GetSerialNumbers(BYTE esn_size, char* esn, BYTE imei_size, char* imei, BYTE meid_size, char* meid)
{
    const ULONG status = GiveText(esn_size, esn, "80000001") | GiveText(imei_size, imei, "004401000000001");
    return status | GiveText(meid_size, meid, "A0000000000001");
}

// --- the network -----------------------------------------------------------------------------------------------------

// Registered, on both CDMA interfaces or on UMTS.
ULONG GetServingNetwork(ULONG* registration, ULONG* cs, ULONG* ps, ULONG* ran, BYTE* interface_count, BYTE* interfaces,
                        ULONG* roaming, WORD* mcc, WORD* mnc, BYTE, char*)
{
    *registration = *cs = *ps = *ran = *roaming = 1;
    *mcc = *mnc = 1;
    const bool is_cdma = s_state.firmware_technology == 0;
    *interface_count = is_cdma ? 2 : 1;
    interfaces[0] = is_cdma ? 1 : 5;
    interfaces[1] = 2;
    return 0;
}

ULONG GetRFInfo(BYTE* count, BYTE* instances)
{
    const GobiRFInfo instance = {s_state.firmware_technology == 0 ? 1u : 5u, 1, 425};
    *count = 1;
    memcpy(instances, &instance, sizeof instance);
    return 0;
}

ULONG GetSignalStrengths(ULONG* count, ORV_INT8* strengths, ULONG* interfaces)
{
    *count = 1;
    strengths[0] = -71;
    interfaces[0] = s_state.firmware_technology == 0 ? 1 : 5;
    return 0;
}

// --- registration ----------------------------------------------------------------------------------------------------

ULONG SetSessionStateCallback(GobiSessionStateCallback c) { return Register(s_state.session_state, c); }
ULONG SetDataBearerCallback(GobiDataBearerCallback c) { return Register(s_state.data_bearer, c); }
ULONG SetDormancyStatusCallback(GobiDormancyStatusCallback c) { return Register(s_state.dormancy_status, c); }
ULONG SetMobileIPStatusCallback(GobiMobileIPStatusCallback c) { return Register(s_state.mobile_ip_status, c); }
ULONG SetActivationStatusCallback(GobiActivationStatusCallback c) { return Register(s_state.activation_status, c); }
ULONG SetPowerCallback(GobiPowerCallback c) { return Register(s_state.power, c); }
ULONG SetRoamingIndicatorCallback(GobiRoamingIndicatorCallback c) { return Register(s_state.roaming_indicator, c); }
ULONG SetSignalStrengthCallback(GobiSignalStrengthCallback c, BYTE, ORV_INT8*)
{
    return Register(s_state.signal_strength, c);
}
ULONG SetRFInfoCallback(GobiRFInfoCallback c) { return Register(s_state.rf_info, c); }
ULONG SetNewSMSCallback(GobiNewSMSCallback c) { return Register(s_state.new_sms, c); }
ULONG SetNewSMSCBCallback(GobiNewSMSCBCallback c) { return Register(s_state.cell_broadcast, c); }
ULONG SetMsgWaitingCallback(GobiMsgWaitingCallback c) { return Register(s_state.message_waiting, c); }
ULONG SetDataCapabilitiesCallback(GobiDataCapabilitiesCallback c) { return Register(s_state.data_capabilities, c); }
ULONG SetByteTotalsCallback(GobiByteTotalsCallback c, BYTE) { return Register(s_state.byte_totals, c); }
ULONG SetOMADMStateCallback(GobiOMADMStateCallback c) { return Register(s_state.oma_dm_state, c); }
ULONG SetOMADMAlertCallback(GobiOMADMAlertCallback c) { return Register(s_state.oma_dm_alert, c); }
ULONG SetCallInfoCallback(GobiCallInfoCallback c) { return Register(s_state.call_info, c); }
ULONG SetInfoRecCallback(GobiInfoRecCallback c) { return Register(s_state.info_record, c); }
ULONG SetUSSDNotificationCallback(GobiUSSDCallback c) { return Register(s_state.ussd, c); }
ULONG SetPhonebookRecordReadCallback(GobiPhonebookRecordReadCallback c)
{
    return Register(s_state.phonebook_records, c);
}
ULONG SetAllPhonebookInitDoneCallback(GobiAllPhonebookInitDoneCallback c)
{
    return Register(s_state.phonebooks_ready, c);
}
ULONG SetEmergencyListCallback(GobiEmergencyListCallback c) { return Register(s_state.emergency_list, c); }
ULONG SetNetworkTimeCallback(GobiNetworkTimeCallback c) { return Register(s_state.network_time, c); }
ULONG SetSystemSelectionPrefCallback(GobiSystemSelectionPrefCallback c)
{
    return Register(s_state.system_selection, c);
}
ULONG SetORVOMAEXEventCallback(GobiOMAEXEventCallback c) { return Register(s_state.oma_ex_event, c); }
ULONG OrvSetDeviceRemovalCallback(GobiDeviceRemovalCallback c) { return Register(s_state.device_removal, c); }

} // extern "C"
