// Events of the module's power, dormancy and activation.

#include "api/OrvError.h"
#include "notify/adapters.h"
#include "notify/delivery.h"
#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\OrvNotify.cpp");

constexpr ULONG kModeReset = 4;
constexpr ULONG kFirstModeWithoutRadio = 5;
constexpr ULONG kLastModeWithoutRadio = 6;

struct PowerEvent {
    ULONG mode;

    void Dispatch(COrvNotify& registry)
    {
        if (registry.Admit(NotifySource::Power)) registry.Walk(NotifySource::Power, *this);
    }

    Outcome Fill(OrvNotifyRecord& record, const szNotifyItem& item)
    {
        switch (item.aNotify) {
        case ORV_NOTIFY_PowerState:
            record.uPayloadSize = sizeof(OrvPowerStatePayload);
            record.payload.PowerState.uPowerState = ConvertGobi2OrvOperatingMode(mode);
            record.payload.PowerState.uValid = 1;
            return Outcome::Deliver;
        case ORV_NOTIFY_ModemReset:
            record.uPayloadSize = 4;
            return mode == kModeReset ? Outcome::Deliver : Outcome::Nothing;
        case ORV_NOTIFY_RadioOff:
            record.uPayloadSize = sizeof(OrvFlagPayload);
            record.payload.Flag.bFlag = mode >= kFirstModeWithoutRadio && mode <= kLastModeWithoutRadio ? 1 : 0;
            return Outcome::DeliverAndStop; // identifiers enabled after it get nothing for this event
        default:
            return Outcome::Nothing;
        }
    }
};

// Index: the module's activation state; entry: ours. State 0 is delivered by a rule of its own.
constexpr ULONG kActivationStates[] = {65535, 9, 0, 1, 2, 4, 5, 6, 7, 3, 8};
constexpr ULONG kNotActivated = 8;
constexpr ULONG kLastActivationState = 10;
static_assert(sizeof kActivationStates / sizeof kActivationStates[0] == kLastActivationState + 1, "one entry a state");

struct ActivationEvent {
    ULONG state;

    void Dispatch(COrvNotify& registry)
    {
        LOG_C("Activation Status State = %d", state);
        if (state > kLastActivationState) {
            LOG_C("Activation state %d is out of range, event dropped", state);
            return;
        }
        if (registry.Admit(NotifySource::ActivationStatus)) registry.Walk(NotifySource::ActivationStatus, *this);
    }

    Outcome Fill(OrvNotifyRecord& record, const szNotifyItem&)
    {
        record.uPayloadSize = sizeof(OrvActivationStatusPayload);
        record.payload.ActivationStatus.uState = state == 0 ? kNotActivated : kActivationStates[state];
        record.payload.ActivationStatus.uValid = state == 0 ? 0 : 1;
        return Outcome::Deliver;
    }
};

} // namespace

void ORV_VENDOR_CALL GobiAPIPowerCallback(ULONG operatingMode)
{
    LOG_C("GobiAPIPowerCallback: operatingMode = %d", operatingMode);
    DeliverOnThread<PowerEvent>(operatingMode);
}

// Only logged: nothing is delivered for it.
void ORV_VENDOR_CALL DormancyStatusCallback(ULONG status)
{
    LOG_C("DormancyStatusCallback: dormancyStatus = %d", status);
}

void ORV_VENDOR_CALL ActivationStatusCallback(ULONG state) { DeliverUnderLock(ActivationEvent{state}); }
