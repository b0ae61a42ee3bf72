#include "notify/sources.h"

#include <iterator>

#include "notify/OrvNotify.h"
#include "notify/adapters.h"
#include "talvek/gobi_dll.h"
#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\OrvNotify.cpp");

// The module reports when the strength crosses one of these, in dBm.
ORV_INT8 kSignalThresholds[] = {-105, -95, -85, -75, -65};

constexpr BYTE kByteTotalsInterval = 1;

// --- signal strength: brings network time and emergency mode along, which stay when it goes

ULONG ReportSignal()
{
    return COrvGobiDll::SetSignalStrengthCB(GobiAPISignalStrengthCallback, std::size(kSignalThresholds),
                                            kSignalThresholds);
}

ULONG EnableSignal(ORV_NOTIFY)
{
    const ULONG nitz = COrvGobiDll::SetNITZCB(NITZCallback);
    LOG_C("SetNITZCB enabled, setCBResult = %d", nitz);
    ReportSignal();
    COrvGobiDll::SetDataCapsCB(GobiAPIDataCapabilities);
    const ULONG emergency_mode = COrvGobiDll::SetEmergencyModeCB(EmergencyModeCallback);
    LOG_C("SetEmergencyModeCB enabled, setCBResult = %d", emergency_mode);
    return emergency_mode;
}

ULONG DisableSignal()
{
    const ULONG status = COrvGobiDll::SetSignalStrengthCB(nullptr, 0, nullptr);
    COrvGobiDll::SetDataCapsCB(nullptr);
    return status;
}

ULONG ResumeSignal()
{
    const ULONG status = ReportSignal();
    COrvGobiDll::SetDataCapsCB(GobiAPIDataCapabilities);
    return status;
}

// --- RF information

ULONG EnableRFInfo(ORV_NOTIFY) { return COrvGobiDll::SetRFInfoCB(RFInfoCallback); }
ULONG DisableRFInfo() { return COrvGobiDll::SetRFInfoCB(nullptr); }
ULONG ResumeRFInfo() { return COrvGobiDll::SetRFInfoCB(RFInfoCallback); }

// --- SMS: brings the phonebook and the emergency list along; the emergency list stays when it goes

ULONG EnableSms(ORV_NOTIFY)
{
    ULONG status = COrvGobiDll::SetAllPbInitDoneCB(AllPhonebookInitDoneCallback);
    LOG_C("SetAllPbInitDoneCB enabled, setCBResult = %d", status);
    status = COrvGobiDll::SetPhonebookRecordReadCB(ReadSIMPhoneBookCallback);
    LOG_C("SetPhonebookRecordReadCB enabled, setCBResult = %d", status);
    status = COrvGobiDll::SetNewSMSCBCB(NewSMSCBCallback);
    if (status != 0) LOG_C("SetNewSMSCBCB failed, setCBResult = 0x%x", status);
    status = COrvGobiDll::SetNewSMSCB(NewSMSCallback);
    if (status != 0) LOG_C("SetNewSMSCB failed, setCBResult = 0x%x", status);
    status = COrvGobiDll::SetVoiceMessageCB(VoiceMessageCallback);
    if (status != 0) LOG_C("SetVoiceMessageCB failed, setCBResult = 0x%x", status);
    status = COrvGobiDll::SetEmergencyListCB(EmergencyListCallback);
    if (status != 0) LOG_C("SetEmergencyListCB failed, setCBResult = 0x%x", status);
    return status;
}

ULONG DisableSms()
{
    ULONG status = COrvGobiDll::SetPhonebookRecordReadCB(nullptr);
    if (status != 0) LOG_C("COrvNotify::Remove SetPhonebookRecordReadCB failed, setCBResult = 0x%x", status);
    status = COrvGobiDll::SetAllPbInitDoneCB(nullptr);
    if (status != 0) LOG_C("COrvNotify::Remove SetAllPbInitDoneCB failed, setCBResult = 0x%x", status);
    status = COrvGobiDll::SetNewSMSCBCB(nullptr);
    if (status != 0) LOG_C("COrvNotify::Remove SetNewSMSCBCB failed, setCBResult = 0x%x", status);
    status = COrvGobiDll::SetVoiceMessageCB(nullptr);
    if (status != 0) LOG_C("COrvNotify::Remove SetVoiceMessageCB failed, setCBResult = 0x%x", status);
    status = COrvGobiDll::SetNewSMSCB(nullptr);
    if (status != 0) LOG_C("COrvNotify::Remove SetNewSMSCB failed, setCBResult = 0x%x", status);
    return status;
}

// --- data session

ULONG EnableByteTotals(ORV_NOTIFY) { return COrvGobiDll::SetByteTotalsCB(ByteTotalsCallback, kByteTotalsInterval); }
ULONG DisableByteTotals() { return COrvGobiDll::SetByteTotalsCB(nullptr, kByteTotalsInterval); }

ULONG EnableSessionState(ORV_NOTIFY row)
{
    const ULONG status = COrvGobiDll::SetSessionStateCB(SessionStateCallback);
    LOG_C("SetSessionStateCB for aNotify = %d, setCBResult = %d", row, status);
    return status;
}

ULONG DisableSessionState() { return COrvGobiDll::SetSessionStateCB(nullptr); }

// --- calls: a bundle of other notifications, whose three events stay when it goes

constexpr ORV_NOTIFY kCallNotifications[] = {ORV_NOTIFY_DormancyStatus, ORV_NOTIFY_CallOriginating,
                                             ORV_NOTIFY_CallConnected, ORV_NOTIFY_CallDisconnected};

ULONG EnableCallNotification(ORV_NOTIFY)
{
    for (const ORV_NOTIFY id : kCallNotifications)
        g_OrvNotify.Add(id, 0);
    ULONG status = COrvGobiDll::SetCallInfoCB(CallInfoCallback);
    LOG_C("ORV_NOTIFY_CallNotificationStatus enabled, setCBResult = %d", status);
    status = COrvGobiDll::SetInfoRecCB(InfoRecCallback);
    LOG_C("ORV_NOTIFY_CallNotificationStatus enabled, setCBResult = %d", status);
    status = COrvGobiDll::SetUSSDInfoCB(USSDCallback);
    LOG_C("ORV_NOTIFY_CallNotificationStatus enabled, setCBResult = %d", status);
    return status;
}

ULONG DisableCallNotification()
{
    for (const ORV_NOTIFY id : kCallNotifications)
        g_OrvNotify.Remove(id, 0);
    return 0;
}

// --- OMA-DM

ULONG EnableOmadmState(ORV_NOTIFY)
{
    COrvGobiDll::SetOMADMStateCB(OMADMStateCallback);
    const ULONG status = COrvGobiDll::SetOMAEXEventCB(OMAEXEventCallback);
    LOG_C("SetOMAEXEventCB enabled, setCBResult = %d", status);
    return status;
}

ULONG DisableOmadmState()
{
    COrvGobiDll::SetOMADMStateCB(nullptr);
    return COrvGobiDll::SetOMAEXEventCB(nullptr);
}

ULONG EnableOmadmAlert(ORV_NOTIFY) { return COrvGobiDll::SetOMADMAlertCB(OMADMAlertCallback); }
ULONG DisableOmadmAlert() { return COrvGobiDll::SetOMADMAlertCB(nullptr); }

struct SourceRow {
    NotifySource source;
    SourceActions actions;
};

// clang-format off
constexpr SourceRow kSources[] = {
    // source                          adapter                          enable                  disable                  suspend        resume
    {NotifySource::Power,             {GobiAPIPowerCallback,            nullptr,                nullptr,                 nullptr,       nullptr}},
    {NotifySource::SignalStrength,    {nullptr,                         EnableSignal,           DisableSignal,           DisableSignal, ResumeSignal}},
    {NotifySource::RFInfo,            {nullptr,                         EnableRFInfo,           DisableRFInfo,           DisableRFInfo, ResumeRFInfo}},
    {NotifySource::Sms,               {nullptr,                         EnableSms,              DisableSms,              nullptr,       nullptr}},
    {NotifySource::RoamingIndicator,  {GobiAPIRoamingIndicatorCallback, nullptr,                nullptr,                 nullptr,       nullptr}},
    {NotifySource::ByteTotals,        {nullptr,                         EnableByteTotals,       DisableByteTotals,       nullptr,       nullptr}},
    {NotifySource::SessionState,      {nullptr,                         EnableSessionState,     DisableSessionState,     nullptr,       nullptr}},
    {NotifySource::DormancyStatus,    {DormancyStatusCallback,          nullptr,                nullptr,                 nullptr,       nullptr}},
    {NotifySource::CallNotification,  {nullptr,                         EnableCallNotification, DisableCallNotification, nullptr,       nullptr}},
    {NotifySource::ActivationStatus,  {ActivationStatusCallback,        nullptr,                nullptr,                 nullptr,       nullptr}},
    {NotifySource::OmadmState,        {nullptr,                         EnableOmadmState,       DisableOmadmState,       nullptr,       nullptr}},
    {NotifySource::OmadmAlert,        {nullptr,                         EnableOmadmAlert,       DisableOmadmAlert,       nullptr,       nullptr}},
    {NotifySource::SmsSendStatus,     {nullptr,                         nullptr,                nullptr,                 nullptr,       nullptr}},
    {NotifySource::PhonebookReady,    {nullptr,                         nullptr,                nullptr,                 nullptr,       nullptr}},
    {NotifySource::PlmnModeSet,       {nullptr,                         nullptr,                nullptr,                 nullptr,       nullptr}},
    {NotifySource::PlmnSearchDone,    {nullptr,                         nullptr,                nullptr,                 nullptr,       nullptr}},
    {NotifySource::PlmnManual,        {nullptr,                         nullptr,                nullptr,                 nullptr,       nullptr}},
};
// clang-format on

constexpr bool SourcesStandAtTheirPlace()
{
    for (size_t i = 0; i < std::size(kSources); ++i)
        if (static_cast<size_t>(kSources[i].source) != i) return false;
    return std::size(kSources) == kNotifySourceCount;
}
static_assert(SourcesStandAtTheirPlace(), "the table is indexed by source");

} // namespace

const SourceActions& ActionsOf(NotifySource source) { return kSources[static_cast<size_t>(source)].actions; }

// clang-format off
constexpr NotifyRow kNotifyRows[] = {
    {ORV_NOTIFY_PowerState,             COrvGobiDll::SetPowerCB,            NotifySource::Power},
    {ORV_NOTIFY_ModemReset,             COrvGobiDll::SetPowerCB,            NotifySource::Power},
    {ORV_NOTIFY_SignalStrength,         nullptr,                            NotifySource::SignalStrength},
    {ORV_NOTIFY_RFInfo,                 nullptr,                            NotifySource::RFInfo},
    {ORV_NOTIFY_NewSMS,                 nullptr,                            NotifySource::Sms},
    {ORV_NOTIFY_SMSSendStatus,          nullptr,                            NotifySource::SmsSendStatus},
    {ORV_NOTIFY_RFInfoCdma,             nullptr,                            NotifySource::RFInfo},
    {ORV_NOTIFY_CdmaService,            nullptr,                            NotifySource::SignalStrength},
    {ORV_NOTIFY_CdmaRoaming,            COrvGobiDll::SetRoamingIndicatorCB, NotifySource::RoamingIndicator},
    {ORV_NOTIFY_ByteTotals,             nullptr,                            NotifySource::ByteTotals},
    {ORV_NOTIFY_CallOriginating,        nullptr,                            NotifySource::SessionState},
    {ORV_NOTIFY_CallConnected,          nullptr,                            NotifySource::SessionState},
    {ORV_NOTIFY_CallDisconnected,       nullptr,                            NotifySource::SessionState},
    {ORV_NOTIFY_DormancyStatus,         COrvGobiDll::SetDormancyStatusCB,   NotifySource::DormancyStatus},
    {ORV_NOTIFY_CallNotificationStatus, nullptr,                            NotifySource::CallNotification},
    {ORV_NOTIFY_ActivationStatus,       COrvGobiDll::SetActivationStatusCB, NotifySource::ActivationStatus},
    {ORV_NOTIFY_HdrSignalStrength,      nullptr,                            NotifySource::SignalStrength},
    {ORV_NOTIFY_CdmaSignalQuality,      nullptr,                            NotifySource::SignalStrength},
    {ORV_NOTIFY_HdrRoaming,             COrvGobiDll::SetRoamingIndicatorCB, NotifySource::RoamingIndicator},
    {ORV_NOTIFY_HdrService,             nullptr,                            NotifySource::SignalStrength},
    {ORV_NOTIFY_GsmByteTotals,          nullptr,                            NotifySource::ByteTotals},
    {ORV_NOTIFY_PhonebookReady,         nullptr,                            NotifySource::PhonebookReady},
    {ORV_NOTIFY_PLMNModeSet,            nullptr,                            NotifySource::PlmnModeSet},
    {ORV_NOTIFY_PLMNSearchDone,         nullptr,                            NotifySource::PlmnSearchDone},
    {ORV_NOTIFY_RadioOff,               COrvGobiDll::SetPowerCB,            NotifySource::Power},
    {ORV_NOTIFY_PLMNManual,             nullptr,                            NotifySource::PlmnManual},
    {ORV_NOTIFY_GsmPacketState,         nullptr,                            NotifySource::SignalStrength},
    {ORV_NOTIFY_PktSessionCall,         nullptr,                            NotifySource::SessionState},
    {ORV_NOTIFY_GsmSystemStatus,        nullptr,                            NotifySource::SignalStrength},
    {ORV_NOTIFY_OMADMState,             nullptr,                            NotifySource::OmadmState},
    {ORV_NOTIFY_OMADMAlert,             nullptr,                            NotifySource::OmadmAlert},
};
// clang-format on

namespace {

constexpr BYTE MostRowsOfOneSource()
{
    BYTE most = 0;
    for (const NotifyRow& row : kNotifyRows) {
        BYTE rows = 0;
        for (const NotifyRow& other : kNotifyRows)
            if (other.source == row.source) ++rows;
        if (rows > most) most = rows;
    }
    return most;
}
static_assert(MostRowsOfOneSource() == kMaxItemsPerSource, "a source's list holds all its identifiers");

} // namespace
