// The vendor library that the measurements stand on: no module behind it, no journal, next to no time of its own.
#pragma once

#include "talvek/gobi_callbacks.h"

// The callbacks that are registered, and what the module says it is. Written by the entry points, read by the program
// that raises the events; the state is that of the loaded library, so it is gone with it.
struct BenchGobi {
    ULONG firmware_technology; // 0 CDMA, 1 GSM/UMTS

    GobiSessionStateCallback session_state;
    GobiDataBearerCallback data_bearer;
    GobiDormancyStatusCallback dormancy_status;
    GobiMobileIPStatusCallback mobile_ip_status;
    GobiActivationStatusCallback activation_status;
    GobiPowerCallback power;
    GobiRoamingIndicatorCallback roaming_indicator;
    GobiSignalStrengthCallback signal_strength;
    GobiRFInfoCallback rf_info;
    GobiNewSMSCallback new_sms;
    GobiNewSMSCBCallback cell_broadcast;
    GobiMsgWaitingCallback message_waiting;
    GobiDataCapabilitiesCallback data_capabilities;
    GobiByteTotalsCallback byte_totals;
    GobiOMADMStateCallback oma_dm_state;
    GobiOMADMAlertCallback oma_dm_alert;
    GobiCallInfoCallback call_info;
    GobiInfoRecCallback info_record;
    GobiUSSDCallback ussd;
    GobiPhonebookRecordReadCallback phonebook_records;
    GobiAllPhonebookInitDoneCallback phonebooks_ready;
    GobiEmergencyListCallback emergency_list;
    GobiNetworkTimeCallback network_time;
    GobiSystemSelectionPrefCallback system_selection;
    GobiOMAEXEventCallback oma_ex_event;
    GobiDeviceRemovalCallback device_removal;
};

// Exported by the library under this name.
extern "C" ORV_EXPORT BenchGobi* BenchGobiState();
