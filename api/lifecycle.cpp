// Start-up and shut-down, discovery and selection of the module, suspend and resume.

#include <initializer_list>

#include "api/OrvError.h"
#include "api/admission.h"
#include "api/registry_text.h"
#include "api/scan.h"
#include "at/OrvAtPort.h"
#include "notify/OrvNotify.h"
#include "notify/record.h"
#include "state/globals.h"
#include "state/sync_block.h"
#include "utility/heap_buffer.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEK.cpp");

constexpr ULONG kUsbVendorID = 0x3D5E;
constexpr ULONG kTechnologyAttempts = 4;
constexpr ULONG kSuspendState = 2; // D2
constexpr ULONG kResumeState = 0;  // D0
constexpr ULONG kInterfaceKind = 3;
constexpr ULONG kDeviceNameSize = 20;

bool IsAcceptedDevice(ULONG device_id)
{
    for (const ULONG accepted : {ORV_DEVICE_5101, ORV_DEVICE_5111, ORV_DEVICE_5120, ORV_DEVICE_5141})
        if (device_id == accepted) return true;
    return false;
}

// 4, with its traces, for a device that is not one of the accepted ones.
ORV_RCODE RequireAcceptedDevice(ULONG device_id)
{
    TRACE_INFO(TXT("Device ID: %i"), device_id);
    if (IsAcceptedDevice(device_id)) return ORV_RCODE_OK;
    TRACE_ERROR(TXT("TALVEK do not handle deviceID = %i yet"), device_id);
    return ORV_RCODE_BAD_PARAMETER;
}

// Called by the vendor library, on a thread of its own, when the module leaves.
void ORV_VENDOR_CALL DeviceRemoval(ULONG status)
{
    LOG_C("DeviceRemoval, nStatus = %d", status);
    const OrvNotifyCallback callback = g_OrvNotify.ClientCallback();
    if (!callback) return;
    OrvNotifyRecord record;
    BeginRecord(record, ORV_NOTIFY_DeviceRemoved, 32);
    callback(&record);
}

bool DecideTechnology()
{
    for (ULONG attempt = 0; attempt < kTechnologyAttempts; ++attempt) {
        g_WirelessTech = Gobi().GetWirelessTech();
        BYTE configuration = 0, supported = 0;
        // The card counts as present when the call does not succeed and yet sets the first octet: the required rule.
        if (Gobi().GetRTREConfig(&configuration, &supported) != 0 && configuration == 1) g_RuimCard = 1;
        if (g_WirelessTech != ORV_TECH_UNDETERMINED) return true;
    }
    LOG_C("*****Could not determine wireless technology*****");
    return false;
}

void ReadRevisions()
{
    Gobi().GetFirmwareRevisions(GOBI_REVISION_SIZE, g_FirmwareRevision, GOBI_REVISION_SIZE, g_BootRevision,
                                GOBI_REVISION_SIZE, g_PriRevision);
    for (char* revision : {g_FirmwareRevision, g_BootRevision, g_PriRevision})
        revision[GOBI_REVISION_SIZE - 1] = 0;
    if (LogIsOn(OV_LOG_INFO)) {
        WCHAR wide[GOBI_REVISION_SIZE] = {};
        OV_AtoT(g_PriRevision, wide, GOBI_REVISION_SIZE);
        LOG_W(TXT("PRI version is = %s"), wide);
    }
}

// Makes the module report AT errors as numbers.
void AskForNumericErrors()
{
    char reply[kAtBufferSize];
    if (g_ATPortInstance.SendCommand("AT+CMEE=1", reply)) {
        LOG_C("AT+CMEE=1 AT cmd error string = %s", reply);
        LOG_C("Mobile Termination Error Values set to Numeric");
        g_CmeeNumeric = 1;
    } else {
        LOG_C("Failed to set Mobile Termination Error Values to Numeric");
        g_CmeeNumeric = 0;
    }
}

void PrepareUmtsModule()
{
    RegistryText port_name;
    if (!port_name.ReadPortName()) {
        TRACE_ERROR(TXT("Cannot open Registry for AT port"));
        return;
    }
    LOG_W(TXT("AT PORT NAME detected is %s"), port_name.text);
    g_ATPortInstance.OpenModulePort(port_name.text);
    if (!g_ATPortInstance.IsOpen()) {
        TRACE_ERROR(TXT("AT Port Initialize failed"));
        return;
    }
    AskForNumericErrors();
    g_SimAccess = 1;
}

void PrepareCdmaModule()
{
    g_bSmsStored = 0;
    g_SmsStoredMsgId = 0;
    if (g_RuimCard == 1) g_SimAccess = 1;
}

DWORD WINAPI ResumeWorkThread(LPVOID)
{
    g_OrvNotify.EnableOnResume();
    return 0;
}

} // namespace

ORV_RCODE ORV_CALL OrvApiStartup(void)
{
    TRACE_ENTRY("OrvApiStartup");
    g_OrvNotify.RemoveAll();
    return Gobi().Initialize() ? ORV_RCODE_OK : ORV_RCODE_STARTUP_FAILED;
}

ORV_RCODE ORV_CALL OrvApiShutdown(void)
{
    TRACE_ENTRY("OrvApiShutdown");
    const OrvSyncGuard guard;
    LOG_C("OrvApiShutdown::Inside  ORVSYNCBLOCK");
    Gobi().SetDeviceRemovalCallback(nullptr);
    g_ATPortInstance.Close();
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().Disconnect());
    if (result == ORV_RCODE_OK) {
        g_WirelessTech = ORV_TECH_UNDETERMINED;
        g_SimAccess = 0;
        g_PktSessionHandle = 0;
        g_PinType = 0;
    }
    return result;
}

ORV_RCODE ORV_CALL OrvGetAvailAirServers(OrvAirServerList* list)
{
    TRACE_ENTRY("OrvGetAvailAirServers");
    if (!list) return ORV_RCODE_FAILED;
    RegistryText identity;
    if (!Gobi().IsInitialized() || !identity.Read(HKEY_CURRENT_USER, TXT("Software\\Kestavo Inc"), TXT("DeviceID"))) {
        LOG_C("Failed to read Device ID, error = %d", GetLastError());
        return ORV_RCODE_FAILED;
    }
    ULONG vendor_id = 0, product_id = 0;
    Scan(identity.text, "VID_%x&PID_%x", {&vendor_id, &product_id});
    LOG_W(TXT("DEBUG: vidpidStr detected is %s, iVid = %x, iPid = 0x%x; %d"), identity.text, vendor_id, product_id,
          product_id);
    if (vendor_id != kUsbVendorID || !IsAcceptedDevice(product_id)) {
        LOG_C("Vid = %d and Pid = %d, do not match", vendor_id, product_id);
        return ORV_RCODE_FAILED;
    }
    list->numAirServers = 1;
    list->airServers[0].uDeviceID = product_id;
    const OrvSyncGuard guard;
    g_AirServerList.sizeStruct = sizeof g_AirServerList;
    g_AirServerList.numAirServers = list->numAirServers;
    g_AirServerList.airServers[0].sizeStruct = sizeof g_AirServerList.airServers[0];
    g_AirServerList.airServers[0].uDeviceID = product_id;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvSelectAirServer(OrvAirServer* record)
{
    TRACE_ENTRY("OrvSelectAirServer");
    if (const ORV_RCODE refused = RequireInitializedTraced()) return refused;
    if (!record) return ORV_RCODE_BAD_PARAMETER;
    if (const ORV_RCODE refused = RequireAcceptedDevice(record->uDeviceID)) return refused;
    const ORV_RCODE connected = ConvertGobiError2OrvRcode(Gobi().Connect());
    if (connected != ORV_RCODE_OK) {
        TRACE_ERROR(TXT("OrvSelectAirServer returning: %d"), connected);
        return connected;
    }
    Gobi().SetDeviceRemovalCallback(DeviceRemoval);
    if (!DecideTechnology()) return ORV_RCODE_FAILED; // the connection stays up
    g_OrvNotify.Add(ORV_NOTIFY_PowerState, 0);
    ReadRevisions();
    if (g_WirelessTech == ORV_TECH_UMTS) PrepareUmtsModule();
    if (g_WirelessTech == ORV_TECH_CDMA) PrepareCdmaModule();
    g_PinType = 1;
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvGetAirServerInfo(OrvAirServer record, OrvAirServerInfo* info)
{
    TRACE_ENTRY("OrvGetAirServerInfo");
    if (const ORV_RCODE refused = RequireInitializedTraced()) return refused;
    if (!info) return ORV_RCODE_BAD_PARAMETER;
    if (const ORV_RCODE refused = RequireAcceptedDevice(record.uDeviceID)) return refused;
    char name[kDeviceNameSize] = {};
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().GetConnectedDeviceID(kDeviceNameSize, name));
    if (result != ORV_RCODE_OK) {
        TRACE_ERROR(TXT("Failed to get additional device information, rCode = %d"), result);
        return result;
    }
    name[kDeviceNameSize - 1] = 0;
    OV_AtoT(name, info->szName, kDeviceNameSize);
    info->eClass = 0;
    info->eInterface = kInterfaceKind;
    info->eTechnology = g_WirelessTech;
    TRACE_INFO(TXT("Name: %s - Class: %i - Interface: %i - Technology: %i"), info->szName, info->eClass,
               info->eInterface, info->eTechnology);
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvHandleSuspend(ULONG targetDx)
{
    if (!Gobi().IsInitialized()) {
        LOG_W(TXT("OrvHandleSuspend: API not initialized"));
        return ORV_RCODE_API_NOT_INIT;
    }
    if (targetDx == kSuspendState)
        g_OrvNotify.DisableOnSuspend();
    else
        LOG_C("OrvHandleSuspend NOOP for targetDx = D%d", targetDx);
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvHandleResume(ULONG targetDx)
{
    if (!Gobi().IsInitialized()) {
        LOG_W(TXT("OrvHandleResume: API not initialized"));
        return ORV_RCODE_API_NOT_INIT;
    }
    if (targetDx == kResumeState) {
        if (const HANDLE thread = CreateThread(nullptr, 0, ResumeWorkThread, nullptr, 0, nullptr)) CloseHandle(thread);
    } else {
        LOG_C("OrvHandleResume NOOP for targetDx = D%d", targetDx);
    }
    LOG_W(TXT("About to return from OrvHandleResume"));
    return ORV_RCODE_OK;
}

void ORV_CALL OrvFreeBuffer(void* buffer) { HeapBuffer::Free(buffer); }
