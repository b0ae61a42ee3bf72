// Connecting to the module, and its coming and going.
#include "sim/module.h"

#include <iterator>

#include "sim/at_modem.h"
#include "sim/call.h"
#include "sim/clock.h"
#include "sim/events.h"
#include "sim/fields.h"
#include "sim/journal.h"
#include "sim/progress.h"
#include "sim/provisioning.h"
#include "sim/reset.h"

namespace sim {

ModuleState g_module;

static CRITICAL_SECTION g_lock;
void InitializeLock() { InitializeCriticalSection(&g_lock); }
void Guard::Enter() { EnterCriticalSection(&g_lock); }
void Guard::Leave() { LeaveCriticalSection(&g_lock); }

static constexpr Field kFields[] = {
    NumberField("module.present", g_module.connection.present, 1),
    NumberField("module.product", g_module.connection.product, 0xFFFF),
    TextField("module.device-id", g_module.connection.device_id),
    NumberField("callbacks.sticky", g_module.connection.sticky_callbacks, 1),
};
const FieldTable kConnectionFields = {kFields, std::size(kFields)};

static void ResetConnection(bool umts, ULONG product)
{
    ConnectionState& connection = TheModule().connection;
    connection = {};
    connection.umts = umts;
    connection.product = product;
    connection.present = 1;
    Writer(connection.device_id).Add("KT52-").Hex(product, 4);
}

void ResetModule(bool umts, ULONG product)
{
    ResetConnection(umts, product);
    ResetIdentity(umts);
    ResetPower();
    ResetNetwork(umts);
    ResetSession();
    ResetFirmware();
    ResetCalls(umts);
    ResetSupplementary();
    ResetUssd();
    ResetPhonebook(umts);
    ResetCellLocation();
    ResetSms(umts);
    ResetUim(umts);
    ResetSimFiles();
    ResetPosition();
    ResetImages();
    ResetAudio();
    ResetM2mAudio();
    ResetDataStatus(umts);
    ResetProfiles();
    ResetMobileIP(umts);
    ResetNetworkScan(umts);
    ResetOperators();
    ResetCdma(umts);
    ResetSubscriber(umts);
    ResetManagement();
    ResetExtendedManagement();
    ResetProgress();
    for (auto& callback : TheModule().callbacks)
        callback = nullptr;
    ClearFaults();
    ClearQueue();
    DeliverOnThreads(false);
    JournalClear();
    ResetAtModem();
}

void ModuleLeaves()
{
    if (!TheModule().connection.present) return;
    TheModule().connection.present = 0;
    EndSession();
    AbandonVoice();
    AbandonProgress();
}

void ModuleReturns()
{
    TheModule().connection.present = 1;
    TheModule().power.mode = 0;
    UnlockSpc();
    RestartUim();
    RestartSimFiles();
    RestartPosition();
    RestartAtModem();
}

} // namespace sim

using namespace sim;

// Runs the scenario that the environment names, which may change anything, before the module is looked at.
extern "C" ULONG QCWWANConnect()
{
    {
        Call call(EntryPoint::QCWWANConnect);
        if (const ULONG fault = call.Fault()) return fault;
        if (TheModule().connection.connected) return kSuccess;
    }
    if (!RunConnectScenario()) return kGeneralFailure;
    Guard guard;
    if (!TheModule().connection.present) return kNoDevice;
    TheModule().connection.connected = true;
    return kSuccess;
}

// The session and its coming events end. It never waits for an event that is being delivered: the callback may itself
// be waiting for the caller of this.
extern "C" ULONG QCWWANDisconnect()
{
    Call call(EntryPoint::QCWWANDisconnect);
    if (const ULONG fault = call.Fault()) return fault;
    EndSession();
    AbandonVoice();
    AbandonProgress();
    DropModuleEvents();
    TheModule().connection.connected = false;
    return kSuccess;
}

extern "C" ULONG QCWWANGetConnectedDeviceID(ULONG size, char* text)
{
    Call call(EntryPoint::QCWWANGetConnectedDeviceID, size);
    if (const ULONG refused = call.Refused()) return refused;
    call.PutText(text, size, TheModule().connection.device_id);
    return call.Done();
}
