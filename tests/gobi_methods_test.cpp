// Every method of the binding, driven against a vendor library that notes what reaches it. A row is all that a method
// needs here: its arguments are made from its own type. The methods that read the audio profile first have a test of
// their own, gobi_audio_test.cpp.

#include <gtest/gtest.h>
#include <stdio.h>
#include <string.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/hooks.h"
#include "talvek/gobi_dll.h"
#include "tests/support/log_capture.h"
#include "tests/support/recording_library.h"

namespace {

using Lines = std::vector<std::string>;

// The arguments of one call: integers with every bit of their width in use and no two alike, and pointers to places of
// their own, filled and watched.
class Arguments {
public:
    Arguments()
    {
        for (size_t i = 0; i < kPlaces; ++i)
            memset(m_places[i], static_cast<int>(0xC1 + i), sizeof(m_places[i]));
    }

    template <class T>
    T Make(size_t i)
    {
        if constexpr (!std::is_pointer_v<T>) {
            const T value = static_cast<T>(0xF1E2D3C4B5A69788 ^ (0x0101010101010101 * i));
            Note(value, std::to_string(static_cast<int>(value)));
            return value;
        } else {
            const T pointer = reinterpret_cast<T>(m_places[i]);
            std::string logged = Low32(m_places[i]);
            if constexpr (std::is_same_v<T, char*>) {
                strcpy(pointer, "narrow text");
                logged = pointer;
            } else if constexpr (std::is_same_v<T, WCHAR*>) {
                memcpy(pointer, u"wide text", sizeof(u"wide text"));
                logged = "wide text";
            }
            Note(reinterpret_cast<uintptr_t>(m_places[i]), logged);
            return pointer;
        }
    }
    // When all arguments are made, what is in their places is what shall stay there.
    void Watch() { memcpy(m_kept, m_places, sizeof(m_places)); }
    bool Untouched() const { return memcmp(m_kept, m_places, sizeof(m_places)) == 0; }

    // As the vendor library notes them.
    const std::string& Texts() const { return m_texts; }
    // As a log text prints one.
    std::string Logged(size_t i) const { return i < m_logged.size() ? m_logged[i] : ""; }

    static std::string Low32(const void* address)
    {
        char text[16];
        snprintf(text, sizeof(text), "%x", static_cast<unsigned>(reinterpret_cast<uintptr_t>(address)));
        return text;
    }

private:
    static constexpr size_t kPlaces = 22; // the most that any method takes

    template <class T>
    void Note(T value, const std::string& logged)
    {
        char text[24];
        snprintf(text, sizeof(text), "0x%0*llx", static_cast<int>(2 * sizeof(value)),
                 static_cast<unsigned long long>(value));
        m_texts += (m_texts.empty() ? "" : ", ") + std::string(text);
        m_logged.push_back(logged);
    }

    alignas(16) BYTE m_places[kPlaces][64];
    BYTE m_kept[kPlaces][64];
    std::string m_texts;
    Lines m_logged;
};

template <class... Parameters, class Call, size_t... kIndex>
ULONG Drive(Arguments& arguments, std::index_sequence<kIndex...>, Call call)
{
    // Braces, so that they are made from the first to the last.
    const std::tuple<Parameters...> made{arguments.Make<Parameters>(kIndex)...};
    arguments.Watch();
    return std::apply(call, made);
}

template <class... Parameters>
ULONG Drive(COrvGobiDll& gobi, Arguments& arguments, ULONG (COrvGobiDll::*method)(Parameters...))
{
    return Drive<Parameters...>(arguments, std::index_sequence_for<Parameters...>(),
                                [&](Parameters... made) { return (gobi.*method)(made...); });
}

template <class... Parameters>
ULONG Drive(COrvGobiDll&, Arguments& arguments, ULONG (*setter)(Parameters...))
{
    return Drive<Parameters...>(arguments, std::index_sequence_for<Parameters...>(), setter);
}

enum When { Never, OnEntry, AfterCall, OnFailure, WhenMissing, Always };

struct Method {
    const char* name;
    const char* entry; // null: the vendor library has none
    ULONG (*call)(COrvGobiDll& gobi, Arguments& arguments);
    When when;        // it writes to the log ...
    const char* text; // ... this, where $s is the status, $0 the first argument and $e the entry point's address
};

bool Logs(When when, ULONG status, bool missing)
{
    switch (when) {
    case OnEntry:
    case Always:
        return true;
    case AfterCall:
        return !missing;
    case OnFailure:
        return !missing && status != 0;
    case WhenMissing:
        return missing;
    default:
        return false;
    }
}

Lines ExpectedLog(const Method& method, const Arguments& arguments, ULONG status, const void* address)
{
    if (!Logs(method.when, status, !address)) return {};
    std::string text = method.text;
    const std::pair<const char*, std::string> places[] = {{"$s", std::to_string(static_cast<int>(status))},
                                                          {"$0", arguments.Logged(0)},
                                                          {"$e", Arguments::Low32(address)}};
    for (const auto& [place, value] : places)
        if (const size_t at = text.find(place); at != std::string::npos) text.replace(at, 2, value);
    return {text};
}

#define METHOD(name, entry) LOGGED(name, entry, Never, "")
#define LOGGED(name, entry, when, text)                                                                                \
    {                                                                                                                  \
#name, entry, [](COrvGobiDll & gobi, Arguments & a) { return Drive(gobi, a, &COrvGobiDll::name); }, when, text \
    }
const Method kMethods[] = {
    // clang-format off
    METHOD(GetConnectedDeviceID, "QCWWANGetConnectedDeviceID"),
    METHOD(GetFirmwareInfo, "GetFirmwareInfo"),
    METHOD(GetCwePkgsInfo, "OrvGetCwePkgsInfo"),
    METHOD(GetSessionState, "GetSessionState"),
    METHOD(GetDormancyState, "GetDormancyState"),
    METHOD(GetDunCallInfo, "GetDunCallInfo"),
    METHOD(StartDataSession, "StartDataSession2"),
    METHOD(StopDataSession, "StopDataSession"),
    METHOD(GetIPAddress, "GetIPAddress"),
    METHOD(GetPacketStatus, "GetPacketStatus"),
    METHOD(SetMobileIP, "SetMobileIP"),
    METHOD(GetMobileIP, "GetMobileIP"),
    METHOD(SetActiveMobileIPProfile, "SetActiveMobileIPProfile"),
    METHOD(GetActiveMobileIPProfile, "GetActiveMobileIPProfile"),
    METHOD(SetMobileIPProfile, "SetMobileIPProfile"),
    METHOD(GetMobileIPProfile, "GetMobileIPProfile"),
    METHOD(SetMobileIPParameters, "SetMobileIPParameters"),
    METHOD(GetMobileIPParameters, "GetMobileIPParameters"),
    METHOD(GetLastMobileIPError, "GetLastMobileIPError"),
    METHOD(GetAutoconnect, "GetAutoConnect"),
    METHOD(SetAutoconnect, "SetAutoConnect"),
    LOGGED(SetDefaultProfile, "SetDefaultProfile", AfterCall, "SetDefaultProfile returns uStatus = $s"),
    LOGGED(GetDefaultProfile, "GetDefaultProfile", AfterCall, "GetDefaultProfile returns uStatus = $s"),
    METHOD(GetByteTotals, "GetByteTotals"),
    METHOD(GetRFInfo, "GetRFInfo"),
    METHOD(PerformNetworkScan, "PerformNetworkScan"),
    METHOD(PerformNetworkRATScan, "PerformNetworkRATScan"),
    METHOD(InitiateNetworkRegistration, "InitiateNetworkRegistration"),
    METHOD(InitiateDomainAttach, "InitiateDomainAttach"),
    METHOD(GetNetworkPreference, "GetNetworkPreference"),
    METHOD(SetNetworkPreference, "SetNetworkPreference"),
    METHOD(SetCDMANetworkParameters, "SetCDMANetworkParameters"),
    METHOD(GetCDMANetworkParameters, "GetCDMANetworkParameters"),
    METHOD(GetACCOLC, "GetACCOLC"),
    METHOD(SetACCOLC, "SetACCOLC"),
    METHOD(GetANAAAAuthenticationStatus, "GetANAAAAuthenticationStatus"),
    METHOD(GetDeviceCapabilities, "GetDeviceCapabilities"),
    METHOD(GetFirmwareRevisions, "GetFirmwareRevisions"),
    METHOD(GetPRLVersion, "GetPRLVersion"),
    METHOD(Set3Gpp2SubscriptionInfo, "Set3Gpp2SubscriptionInfo"),
    METHOD(Get3Gpp2SubscriptionInfo, "Get3Gpp2SubscriptionInfo"),
    METHOD(GetERIFile, "GetERIFile"),
    METHOD(ActivateManual, "ActivateManual"),
    METHOD(GetPower, "GetPower"),
    METHOD(GetOfflineReason, "GetOfflineReason"),
    METHOD(GetNetworkTime, "GetNetworkTime"),
    METHOD(ValidateSPC, "ValidateSPC"),
    LOGGED(DeleteSMS, "DeleteSMS", OnEntry, "DeleteSMS"),
    LOGGED(GetSMSList, "GetSMSList", OnEntry, "GetSMSList"),
    LOGGED(GetSMS, "GetSMS", OnEntry, "GetSMS"),
    LOGGED(ModifySMSStatus, "ModifySMSStatus", OnEntry, "ModifySMSStatus"),
    LOGGED(SaveSMS, "SaveSMS", OnEntry, "SaveSMS"),
    LOGGED(SendSMS, "SendSMS", OnEntry, "SendSMS"),
    LOGGED(GetSMSCAddress, "GetSMSCAddress", OnEntry, "GetSMSCAddress"),
    LOGGED(SetSMSCAddress, "SetSMSCAddress", OnEntry, "SetSMSCAddress"),
    LOGGED(SetSMSProtocol, "SetSMSProtocol", OnEntry, "SetSMSProtocol"),
    LOGGED(SetSMSRoute, "SetRoutes", OnEntry, "SetSMSRoute"),
    LOGGED(SetSMSBroadcastActivation, "SetBroadcastActivation", OnEntry, "SetSMSBroadcastActivation"),
    METHOD(DMSUIMSetPINProtection, "DMSUIMSetPINProtection"),
    METHOD(UIMGetCardStatus, "UIMGetCardStatus"),
    METHOD(UIMVerifyPIN, "UIMVerifyPIN"),
    METHOD(UIMUnblockPIN, "UIMUnblockPIN"),
    METHOD(UIMSetPINProtection, "UIMSetPINProtection"),
    METHOD(UIMChangePIN, "UIMChangePIN"),
    METHOD(DMSUIMVerifyPIN, "DMSUIMVerifyPIN"),
    METHOD(DMSUIMUnblockPIN, "DMSUIMUnblockPIN"),
    METHOD(DMSUIMChangePIN, "DMSUIMChangePIN"),
    METHOD(DMSUIMGetPINStatus, "DMSUIMGetPINStatus"),
    METHOD(DMSUIMGetICCID, "DMSUIMGetICCID"),
    METHOD(DMSUIMGetControlKeyStatus, "DMSUIMGetControlKeyStatus"),
    METHOD(DMSUIMSetControlKeyProtection, "DMSUIMSetControlKeyProtection"),
    METHOD(DMSUIMUnblockControlKey, "DMSUIMUnblockControlKey"),
    METHOD(ResetToFactoryDefaults, "ResetToFactoryDefaults"),
    METHOD(GetPDSState, "GetPDSState"),
    METHOD(SetPDSState, "SetPDSState"),
    METHOD(PDSInjectTimeReference, "PDSInjectTimeReference"),
    METHOD(GetPDSDefaults, "GetPDSDefaults"),
    METHOD(SetPDSDefaults, "SetPDSDefaults"),
    METHOD(GetXTRAAutomaticDownload, "GetXTRAAutomaticDownload"),
    METHOD(SetXTRAAutomaticDownload, "SetXTRAAutomaticDownload"),
    METHOD(GetXTRANetwork, "GetXTRANetwork"),
    METHOD(SetXTRANetwork, "SetXTRANetwork"),
    METHOD(GetXTRAValidity, "GetXTRAValidity"),
    METHOD(SetXTRAValidity, "SetXTRAValidity"),
    METHOD(SetXTRAEmbeddedClient, "SetXTRAEmbeddedClient"),
    METHOD(SetNMEAConfig, "SetNMEAConfig"),
    METHOD(GetNMEAConfig, "GetNMEAConfig"),
    METHOD(ForceXTRADownload, "ForceXTRADownload"),
    METHOD(GetAGPSConfig, "GetAGPSConfig"),
    METHOD(SetAGPSConfig, "SetAGPSConfig"),
    METHOD(GetServiceAutomaticTracking, "GetServiceAutomaticTracking"),
    METHOD(SetServiceAutomaticTracking, "SetServiceAutomaticTracking"),
    METHOD(GetPortAutomaticTracking, "GetPortAutomaticTracking"),
    METHOD(SetPortAutomaticTracking, "SetPortAutomaticTracking"),
    METHOD(ResetPDSData, "ResetPDSData"),
    METHOD(GetDataBearerTechnology, "GetDataBearerTechnology"),
    METHOD(GetSessionDuration, "GetSessionDuration"),
    LOGGED(GetSignalStrengths, "GetSignalStrengths", OnFailure, "GetSignalStrengths returns status = $s"),
    METHOD(GetServingNetworkCaps, "GetServingNetworkCapabilities"),
    METHOD(GetConnectionRate, "GetConnectionRate"),
    METHOD(GetServingNetwork, "GetServingNetwork"),
    METHOD(GetHomeNetwork, "GetHomeNetwork"),
    METHOD(GetManufacturer, "GetManufacturer"),
    METHOD(GetModelID, "GetModelID"),
    METHOD(GetFirmwareRevision, "GetFirmwareRevision"),
    METHOD(GetHardwareRevision, "GetHardwareRevision"),
    METHOD(GetVoiceNumber, "GetVoiceNumber"),
    METHOD(GetSerialNumbers, "GetSerialNumbers"),
    METHOD(GetIMSI, "GetIMSI"),
    LOGGED(UpgradeFirmwareW, "UpgradeFirmware2kW", OnEntry, "COrvGobiDll::UpgradeFirmware: $0"),
    METHOD(GetImageStoreW, "GetImageStoreW"),
    METHOD(GetImageInfoW, "GetImageInfoW"),
    LOGGED(SetPower, "SetPower", AfterCall, "SetPower powerMode = $0 returns status = $s"),
    LOGGED(ActivateAutomatic, "ActivateAutomatic", AfterCall, "ActivateAutomatic pActivationCode = $0 returns status = $s"),
    LOGGED(GetActivationState, "GetActivationState", AfterCall, "GetActivationState returns status = $s"),
    LOGGED(OMADMGetFeatureSettings, "OMADMGetFeatureSettings", AfterCall, "OMADMGetFeatureSettings returns status = $s"),
    LOGGED(OMADMGetSessionInfo, "OMADMGetSessionInfo", AfterCall, "OMADMGetSessionInfo returns status = $s"),
    LOGGED(OMADMSetProvisioningFeature, "OMADMSetProvisioningFeature", AfterCall, "OMADMSetProvisioningFeature returns status = $s"),
    LOGGED(OMADMSetPRLUpdateFeature, "OMADMSetPRLUpdateFeature", AfterCall, "OMADMSetPRLUpdateFeature returns status = $s"),
    LOGGED(OMADMStartSession, "OMADMStartSession", AfterCall, "OMADMStartSession returns status = $s"),
    LOGGED(OMADMCancelSession, "OMADMCancelSession", AfterCall, "OMADMCancelSession returns status = $s"),
    LOGGED(OMADMGetPendingNIA, "OMADMGetPendingNIA", AfterCall, "OMADMGetPendingNIA returns status = $s"),
    LOGGED(OMADMSendSelection, "OMADMSendSelection", AfterCall, "OMADMSendSelection returns status = $s"),
    LOGGED(GetIPConfiguration, "GetIPConfiguration", AfterCall, "GetIPConfiguration returns status = $s"),
    LOGGED(OMAEXSetEventReport, "ORVOMAEXSetEventReport", AfterCall, "OMAEXSetEventReport returns status = $s"),
    LOGGED(OMAEXSessionStart, "ORVOMAEXSessionStart", AfterCall, "OMAEXSessionStart returns status = $s"),
    LOGGED(OMAEXSessionCancel, "ORVOMAEXSessionCancel", AfterCall, "OMAEXSessionCancel returns status = $s"),
    LOGGED(OMAEXSelection, "ORVOMAEXSelection", AfterCall, "OMAEXSelection returns status = $s"),
    LOGGED(OMAEXGetSettings, "ORVOMAEXGetSettings", AfterCall, "OMAEXGetSettings returns status = $s"),
    LOGGED(OMAEXSetSettings, "ORVOMAEXSetSettings", AfterCall, "OMAEXSetSettings returns status = $s"),
    LOGGED(OMAEXSessionGetInfo, "ORVOMAEXSessionGetInfo", AfterCall, "OMAEXSessionGetInfo returns status = $s"),
    LOGGED(OMAEXInit, "ORVOMAEXInitApi", AfterCall, "OMAEXInit returns status = $s"),
    LOGGED(OMAEXShutdown, "ORVOMAEXShutdownApi", AfterCall, "OMAEXShutdown returns status = $s"),
    METHOD(GetImagePreference, "GetImagesPreference"),
    METHOD(SetImagePreference, "SetImagesPreference"),
    LOGGED(PlayAudioTone, "AudioPlayAudioTone", OnFailure, "mpFnPlayAudioTone failed pTone = 0x$0."),
    METHOD(OrigUSSD, "OrigUSSD"),
    METHOD(AnswerUSSD, "AnsUSSD"),
    METHOD(CancelUSSD, "AbortsUSSD"),
    METHOD(ChangeBarringPwd, "SetCallBarringPassword"),
    METHOD(DialCall, "DialCall"),
    METHOD(EndCall, "EndCall"),
    METHOD(AnserCall, "AnswerCall"),
    METHOD(ManageCalls, "ManageCalls"),
    METHOD(GetCLIR, "GetCLIR"),
    METHOD(GetCallWaiting, "GetCallWaiting"),
    METHOD(SetSUPS, "SetSupsService"),
    METHOD(GetCallBarring, "GetCallBarring"),
    METHOD(GetCallForwarding, "GetCallForwarding"),
    METHOD(GetAllCallInfo, "GetAllCallInfo"),
    METHOD(SendFlash, "SendFlash"),
    METHOD(StartDTMF, "StartContDTMF"),
    METHOD(StopDTMF, "StopContDTMF"),
    METHOD(GetPhonebookCapabilities, "GetPhonebookCapabilities"),
    METHOD(ReadPhonebookRecords, "ReadPhonebookRecords"),
    METHOD(WritePhonebookRecord, "WritePhonebookRecord"),
    METHOD(DeletePhonebookRecord, "DeletePhonebookRecord"),
    LOGGED(GetCellLocationInfo, "GetCellLocationInfo", WhenMissing, "mpFnGetCellLocationInfoMsg = NULL"),
    LOGGED(GetWaitingMessage, "GetWaitingMsgInfo", WhenMissing, "mpFnGetWaitingMsg = NULL"),
    LOGGED(GetRTREConfig, "GetRTREConfig", WhenMissing, "mpFnGetRTREConfig = NULL"),
    METHOD(OrvM2MAV_AudioGetProfile, "OrvM2MAV_AudioGetProfile"),
    METHOD(OrvM2MAV_AudioSetProfile, "OrvM2MAV_AudioSetProfile"),
    METHOD(OrvM2MAV_AudioGetVolume, "OrvM2MAV_AudioGetVolume"),
    METHOD(OrvM2MAV_AudioSetVolume, "OrvM2MAV_AudioSetVolume"),
    METHOD(OrvM2MAV_AudioGetAVMute, "OrvM2MAV_AudioGetAVMute"),
    METHOD(OrvM2MAV_AudioSetAVMute, "OrvM2MAV_AudioSetAVMute"),
    METHOD(OrvM2MAV_AudioGetAVCFG, "OrvM2MAV_AudioGetAVCFG"),
    METHOD(OrvM2MAV_AudioSetAVCFG, "OrvM2MAV_AudioSetAVCFG"),
    METHOD(OrvM2MAV_AudioNVDef, "OrvM2MAV_AudioNVDef"),
    METHOD(OrvM2MAV_AudioSetLPBK, "OrvM2MAV_AudioSetLPBK"),
    METHOD(OrvM2MAV_AudioGetSpeakerGain, nullptr),
    METHOD(OrvM2MAV_AudioSetSpeakerGain, nullptr),
    METHOD(OrvM2MAV_AudioGetSTG, nullptr),
    METHOD(OrvM2MAV_AudioSetSTG, nullptr),
    METHOD(OrvM2MAV_AudioGetTxVolume, "OrvM2MAV_AudioGetTxVolume"),
    METHOD(OrvM2MAV_AudioSetTxVolume, "OrvM2MAV_AudioSetTxVolume"),
    METHOD(OrvM2MAV_AudioGetMicGain, "OrvM2MAV_AudioGetMicGain"),
    METHOD(OrvM2MAV_AudioSetMicGain, "OrvM2MAV_AudioSetMicGain"),
    METHOD(OrvM2MAV_AudioGetVolDB, "OrvM2MAV_AudioGetVolDB"),
    METHOD(OrvM2MAV_AudioSetVolDB, "OrvM2MAV_AudioSetVolDB"),
    METHOD(OrvM2MAV_AudioGetAVTXG, "OrvM2MAV_AudioGetAVTXG"),
    METHOD(OrvM2MAV_AudioSetAVTXG, "OrvM2MAV_AudioSetAVTXG"),
    METHOD(OrvM2MAV_AudioGetAVRXG, "OrvM2MAV_AudioGetAVRXG"),
    METHOD(OrvM2MAV_AudioSetAVRXG, "OrvM2MAV_AudioSetAVRXG"),
    METHOD(OrvM2MAV_AudioGetAVEC, "OrvM2MAV_AudioGetAVEC"),
    METHOD(OrvM2MAV_AudioSetAVEC, "OrvM2MAV_AudioSetAVEC"),
    METHOD(OrvM2MAV_AudioGetAVNS, "OrvM2MAV_AudioGetAVNS"),
    METHOD(OrvM2MAV_AudioSetAVNS, "OrvM2MAV_AudioSetAVNS"),
    METHOD(OrvM2MAV_AudioPlayTone, "OrvM2MAV_AudioPlayTone"),
    LOGGED(SetDeviceRemovalCallback, "OrvSetDeviceRemovalCallback", OnFailure,
           "SetDeviceRemovalCallback returns status = $s"),
    LOGGED(SetSessionStateCB, "SetSessionStateCallback", OnFailure,
           "Calling mpFNSetSessionStateCB = 0x$e return status = $s"),
    METHOD(SetDataBearerCB, "SetDataBearerCallback"),
    METHOD(SetDormancyStatusCB, "SetDormancyStatusCallback"),
    METHOD(SetMobileIPStatusCB, "SetMobileIPStatusCallback"),
    METHOD(SetActivationStatusCB, "SetActivationStatusCallback"),
    METHOD(SetPowerCB, "SetPowerCallback"),
    METHOD(SetRoamingIndicatorCB, "SetRoamingIndicatorCallback"),
    METHOD(SetSignalStrengthCB, "SetSignalStrengthCallback"),
    METHOD(SetRFInfoCB, "SetRFInfoCallback"),
    METHOD(SetNewSMSCB, "SetNewSMSCallback"),
    METHOD(SetNewSMSCBCB, "SetNewSMSCBCallback"),
    LOGGED(SetVoiceMessageCB, "SetMsgWaitingCallback", Always, "SetVoiceMessageCB $s"),
    METHOD(SetDataCapsCB, "SetDataCapabilitiesCallback"),
    METHOD(SetByteTotalsCB, "SetByteTotalsCallback"),
    METHOD(SetOMADMStateCB, "SetOMADMStateCallback"),
    METHOD(SetOMADMAlertCB, "SetOMADMAlertCallback"),
    METHOD(SetCallInfoCB, "SetCallInfoCallback"),
    METHOD(SetInfoRecCB, "SetInfoRecCallback"),
    METHOD(SetUSSDInfoCB, "SetUSSDNotificationCallback"),
    METHOD(SetPhonebookRecordReadCB, "SetPhonebookRecordReadCallback"),
    LOGGED(SetAllPbInitDoneCB, "SetAllPhonebookInitDoneCallback", WhenMissing, "mpFNSetAllPbInitDoneCB is NULL!"),
    LOGGED(SetEmergencyListCB, "SetEmergencyListCallback", WhenMissing, "mpFNSetEmergencyListCB is NULL!"),
    METHOD(SetNITZCB, "SetNetworkTimeCallback"),
    METHOD(SetEmergencyModeCB, "SetSystemSelectionPrefCallback"),
    LOGGED(SetOMAEXEventCB, "SetORVOMAEXEventCallback", WhenMissing, "mpFNSetOMAEXEventCB is NULL!"),
    // clang-format on
};
#undef METHOD
#undef LOGGED

// 211 operations without the 22 that read the audio profile first, and the setters of 26 callbacks.
static_assert(std::size(kMethods) == 211 - 22 + 26);

void CheckCalls(ULONG status)
{
    RecordingLibrary library;
    COrvGobiDll gobi;
    ASSERT_TRUE(gobi.Initialize());
    LogCapture log;
    for (const Method& method : kMethods) {
        SCOPED_TRACE(method.name);
        if (!method.entry) continue;
        library.Reset();
        library.Answer(method.entry, status);
        log.Clear();
        Arguments arguments;
        EXPECT_EQ(method.call(gobi, arguments), status);
        EXPECT_EQ(library.Calls(), Lines{std::string(method.entry) + "(" + arguments.Texts() + ")"});
        EXPECT_TRUE(arguments.Untouched()) << "the vendor library wrote nothing";
        EXPECT_EQ(log.Texts(), ExpectedLog(method, arguments, status, library.Address(method.entry)));
    }
}

TEST(GobiMethods, HandArgumentsOnUnchangedAndLogWhatTheyMust) { CheckCalls(0); }

TEST(GobiMethods, ReturnTheVendorsStatusUnchanged) { CheckCalls(0xF0E1D2C3); }

// An instance that has loaded nothing lacks every entry point.
TEST(GobiMethods, Return1AndTouchNothingWithoutTheirEntryPoint)
{
    COrvGobiDll gobi;
    LogCapture log;
    for (const Method& method : kMethods) {
        SCOPED_TRACE(method.name);
        log.Clear();
        Arguments arguments;
        EXPECT_EQ(method.call(gobi, arguments), 1u);
        EXPECT_TRUE(arguments.Untouched());
        EXPECT_EQ(log.Texts(), ExpectedLog(method, arguments, 1, nullptr));
    }
}

// The same where the library is loaded and lacks just the one.
TEST(GobiMethods, CallNoOtherEntryPointInPlaceOfOneThatIsMissing)
{
    RecordingLibrary library;
    for (const Method& method : kMethods) {
        SCOPED_TRACE(method.name);
        library.Reset();
        if (method.entry) platform_hooks::HideSymbol(method.entry);
        COrvGobiDll gobi;
        ASSERT_TRUE(gobi.Initialize());
        Arguments arguments;
        EXPECT_EQ(method.call(gobi, arguments), 1u);
        EXPECT_EQ(library.Calls(), Lines());
        platform_hooks::Reset();
    }
}

std::string g_noted;

ULONG ORV_VENDOR_CALL NoteGain(BYTE* profile, WORD* gain)
{
    g_noted = std::to_string(*profile) + " " + std::to_string(*gain);
    return 77;
}

// The table is the first member, and a caller may fill the fields that no look-up fills.
TEST(GobiMethods, ForwardToFieldsThatACallerFilled)
{
    static_assert(std::is_standard_layout_v<COrvGobiDll>, "else the table would not begin where the instance does");
    struct {
        const char* name;
        ULONG (*GobiEntryPoints::*field)(BYTE*, WORD*);
        ULONG (COrvGobiDll::*method)(BYTE*, WORD*);
    } const rows[] = {
        {"GetSpeakerGain", &GobiEntryPoints::OrvM2MAV_AudioGetSpeakerGain, &COrvGobiDll::OrvM2MAV_AudioGetSpeakerGain},
        {"SetSpeakerGain", &GobiEntryPoints::OrvM2MAV_AudioSetSpeakerGain, &COrvGobiDll::OrvM2MAV_AudioSetSpeakerGain},
        {"GetSTG", &GobiEntryPoints::OrvM2MAV_AudioGetSTG, &COrvGobiDll::OrvM2MAV_AudioGetSTG},
        {"SetSTG", &GobiEntryPoints::OrvM2MAV_AudioSetSTG, &COrvGobiDll::OrvM2MAV_AudioSetSTG},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        COrvGobiDll gobi;
        reinterpret_cast<GobiEntryPoints&>(gobi).*row.field = NoteGain;
        g_noted.clear();
        BYTE profile = 3;
        WORD gain = 40000;
        EXPECT_EQ((gobi.*row.method)(&profile, &gain), 77u);
        EXPECT_EQ(g_noted, "3 40000");
    }
}

// No method comes into the interface without a row.
TEST(GobiMethods, AreAllDrivenHereOrInATestOfTheirOwn)
{
    // The life cycle and the audio profile.
    const Lines elsewhere = {"COrvGobiDll",         "~COrvGobiDll",       "Cleanup",           "Connect",
                             "Disconnect",          "DisableCallbacks",   "GetWirelessTech",   "Initialize",
                             "GetAudioProfile",     "SetAudioProfile",    "SetMICMuteStatus",  "SetSpeakerMuteStatus",
                             "SetMicVolume",        "GetMicVolume",       "SetReceiverVolume", "SetEchoCancelMode",
                             "SetRXGainLevel",      "GetEchoCancelMode",  "SetAutoOutputGain", "GetAutoOutputGain",
                             "SetAutoInputGain",    "GetAutoInputGain",   "SetTXPCMFilter",    "GetTXPCMFilter",
                             "SetRXPCMFilter",      "GetRXPCMFilter",     "SetSideToneGain",   "GetSideToneGain",
                             "GetNoiseSuppression", "SetNoiseSuppression"};
    std::ifstream file(TALVEK_SOURCE_DIRECTORY "/tests/exports.txt");
    const std::string prefix = "COrvGobiDll::";
    size_t methods = 0;
    for (std::string line; std::getline(file, line);) {
        const size_t end = line.find('(');
        if (line.compare(0, prefix.size(), prefix) != 0 || end == std::string::npos) continue;
        const std::string name = line.substr(prefix.size(), end - prefix.size());
        ++methods;
        const bool driven = std::any_of(std::begin(kMethods), std::end(kMethods),
                                        [&](const Method& method) { return name == method.name; });
        EXPECT_TRUE(driven || std::count(elsewhere.begin(), elsewhere.end(), name) == 1) << name;
    }
    EXPECT_EQ(methods, std::size(kMethods) + elsewhere.size());
}

} // namespace
