// The state of the simulated module: one in a process, one lock. The vendor library's entry points and the AT modem
// both read and change it.
#pragma once

#include "platform/win32.h"
#include "sim/audio_state.h"
#include "sim/calls_state.h"
#include "sim/cdma_state.h"
#include "sim/cell_location_state.h"
#include "sim/data_state.h"
#include "sim/entry_points.h"
#include "sim/images_state.h"
#include "sim/m2m_audio_state.h"
#include "sim/management_state.h"
#include "sim/mobile_ip_state.h"
#include "sim/network_scan_state.h"
#include "sim/operators_state.h"
#include "sim/phonebook_state.h"
#include "sim/position_state.h"
#include "sim/profiles_state.h"
#include "sim/sim_files_state.h"
#include "sim/sms_state.h"
#include "sim/supplementary_state.h"
#include "sim/uim_state.h"
#include "sim/ussd_state.h"
#include "sim/values.h"

namespace sim {

// What the vendor library answers. The vendor publishes no meanings; these are the simulated module's own.
enum Status : ULONG {
    kSuccess = 0,
    kGeneralFailure = 1,
    kInvalidArgument = 4, // a null pointer, or a value that the entry point does not take
    kNoDevice = 6,        // no module is plugged in
    kNotFound = 9,        // nothing is kept there
    kNoRoom = 10,         // what is to be kept does not fit
    kNoCard = 11,         // there is no card, or its PIN is to be verified first
    kNoNetwork = 12,      // the module is not registered
    kRefusedByNetwork = 13,
    kNoSession = 15, // there is no session
    kWrongCode = 20, // of the service programming code
    kCodeLocked = 21,
    kNotBegun = 22,    // the service has not been begun
    kSwitchedOff = 23, // the feature is
    kNotSupported = 1025,
    kNoEffect = 1026, // what was asked for is already so
    // Those of the card service, which clients know.
    kWrongPin = 1012,
    kPinBlocked = 1035,
    kNotAllowed = 1082 // in the state in which that PIN is
};

struct ConnectionState {
    bool umts;
    ULONG product; // USB product ID
    BYTE present;  // 1: plugged in
    bool connected;
    BYTE sticky_callbacks; // 1: what is unregistered goes on being reported
    Text<64> device_id;
};

struct IdentityState {
    Text<256> manufacturer, model, hardware, firmware, boot, pri, imei;
    ULONG firmware_id, technology, carrier, region, gps;
    Text<256> package[7];
    BYTE rtre_current, rtre_pending;
    ULONG rtre_status;
};

struct PowerState {
    ULONG mode;      // 0 online, 5 reset, 6 low power; any other value is kept as it is
    ULONG settle_ms; // from SetPower to its event
    ULONG reset_ms;  // for how long a reset module is gone
};

struct NetworkState {
    ULONG registration, cs_domain, ps_domain, ran, roaming;
    WORD mcc, mnc;
    Text<256> name;
    List<10, 1> interfaces;
    List<20, 1> capabilities;
    List<10, 2> signal; // dBm, interface
    List<20, 3> rf;     // interface, band class, channel
    ULONG preference, preference_duration, preference_persistent;
};

struct SessionState {
    ULONG state;  // 1 disconnected, 2 connected
    ULONG handle; // of the session, or of the last one
    ULONG next_handle;
    ULONG start_status, failure_reason; // a non-zero status makes StartDataSession2 fail with this reason
    ULONG end_reason;                   // carried by the event that follows StopDataSession, or the loss of a session
    ULONG connect_ms, release_ms;       // from the call to its event
    Text<128> apn, user, password;
    BYTE address[4], primary_dns[4], secondary_dns[4], gateway[4], netmask[4];
    BYTE static_address[4]; // of the profile that the session started with; 0.0.0.0: `address` was assigned
    ULONGLONG sent, received;
    ULONG report_seconds;     // between two byte-totals events; 0: none
    ULONGLONG next_report_ms; // on the sim clock; 0: none
};

struct FirmwareState {
    Octets<1024> images;
    ULONG force;
    BYTE index;
    Octets<16> image_types;
    Text<2048> path; // that UpgradeFirmware2kW was given, UTF-8
};

// What only AT commands reach. Values are those of 3GPP TS 27.007.
struct AtState {
    BYTE clip, clir, colp;                                       // the settings, gone when the module restarts
    BYTE clip_service, clir_service, colp_service, colr_service; // what the network has
    List<7, 1> calls;                                            // the numbers of the calls that are up
    bool unlocked;                                               // for the command that is being run
    bool unlocked_next;                                          // and for the one after it
    Text<256> enumeration;
    List<1, 2> side_tone;
    Text<256> factory_reset; // what the last return to factory settings was given
    ULONG resets;            // how many were asked for
    Text<32> mdn;
    ULONG answer_ms; // from a command to its answer, on a live clock
};

struct ModuleState {
    ConnectionState connection;
    IdentityState identity;
    PowerState power;
    NetworkState network;
    SessionState session;
    FirmwareState firmware;
    AtState at;
    CallsState calls;
    SupplementaryState supplementary;
    UssdState ussd;
    PhonebookState phonebook;
    CellState cell;
    WaitingState waiting;
    SmsState sms;
    UimState uim;
    SimFilesState sim_files;
    PositionState position;
    ImagesState images;
    AudioState audio;
    M2mAudioState m2m_audio;
    DataState data;
    ProfilesState profiles;
    MobileIPState mobile_ip;
    NetworkScanState scan;
    OperatorsState operators;
    CdmaState cdma;
    ActivationState activation;
    SubscriberState subscriber;
    ManagementState management;
    ExtendedManagementState extended;
    void (*callbacks[kEntryPoints])(); // by registration entry point
};

extern ModuleState g_module;
inline ModuleState& TheModule() { return g_module; }

// The sim lock. It is never held while a callback of the client runs.
class Guard {
public:
    Guard() { Enter(); }
    ~Guard() { Leave(); }
    void Enter();
    void Leave();
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;
};

// Makes everything as a fresh module of that kind has it: state, callbacks, faults, queue and journal. The clock keeps
// its kind. Lock held.
void ResetModule(bool umts, ULONG product);

// The module leaves (its session ends) and comes back (powered on, AT settings at their defaults). Lock held.
void ModuleLeaves();
void ModuleReturns();

} // namespace sim
