// Texts for codes: additions to the interface, for clients that report to people.

#include "talvek/notify.h"
#include "talvek/rcode.h"

namespace {

struct RcodeText {
    ORV_RCODE code;
    const char* name;
    const char* meaning;
};

#define ROW(name, meaning)                                                                                             \
    {                                                                                                                  \
        ORV_RCODE_##name, "ORV_RCODE_" #name, meaning                                                                  \
    }
constexpr RcodeText kRcodeTexts[] = {
    ROW(OK, "success"),
    ROW(UNSUPPORTED, "the module, its kind, or the vendor library does not support this; do not retry"),
    ROW(VENDOR_5, "the vendor library reports status 5"),
    ROW(BAD_PARAMETER,
        "a pointer is null, a size is 0, a text is too long or a device ID is not accepted; mend the call"),
    ROW(FAILED, "the operation failed; the log names the cause"),
    ROW(UNKNOWN, "the module does not know the item asked for"),
    ROW(VENDOR_15, "the vendor library reports status 15"),
    ROW(STARTUP_FAILED, "the vendor library cannot be loaded or lacks its connect or disconnect entry point"),
    ROW(API_NOT_INIT, "the interface is not initialised; call OrvApiStartup first"),
    ROW(NOT_AVAILABLE, "the value is not available; start up and select a module first"),
    ROW(NOT_SERVED, "the vendor library cannot serve this function on this module"),
    ROW(WRONG_STATE, "the state of the module does not allow this now"),
    ROW(PORT_OPEN_FAILED, "the AT port cannot be opened; check that it exists and that nobody else holds it"),
    ROW(PORT_NOT_OPEN, "the AT port is not open or cannot be configured"),
    ROW(VENDOR_1026, "the vendor library reports status 1026, or there are no more entries, or it is already active"),
};
#undef ROW

struct NotifyText {
    ORV_NOTIFY id;
    const char* name;
};

#define ROW(name)                                                                                                      \
    {                                                                                                                  \
        ORV_NOTIFY_##name, #name                                                                                       \
    }
constexpr NotifyText kNotifyTexts[] = {
    ROW(DeviceRemoved),
    ROW(PowerState),
    ROW(SignalStrength),
    ROW(ModemReset),
    ROW(RFInfo),
    ROW(NetworkTime),
    ROW(NewSMS),
    ROW(SMSSendStatus),
    ROW(CellBroadcast),
    ROW(RFInfoCdma),
    ROW(CdmaService),
    ROW(CdmaRoaming),
    ROW(ByteTotals),
    ROW(CallOriginating),
    ROW(CallConnected),
    ROW(CallIncoming),
    ROW(CallDisconnected),
    ROW(CallNotificationStatus),
    ROW(DormancyStatus),
    ROW(EmergencyMode),
    ROW(ActivationStatus),
    ROW(HdrSignalStrength),
    ROW(CdmaSignalQuality),
    ROW(HdrRoaming),
    ROW(HdrService),
    ROW(GsmByteTotals),
    ROW(PhonebookReady),
    ROW(PhonebookRecords),
    ROW(EmergencyNumbers),
    ROW(PLMNModeSet),
    ROW(PLMNSearchDone),
    ROW(RadioOff),
    ROW(PLMNManual),
    ROW(VoiceMail),
    ROW(GsmPacketState),
    ROW(PktSessionCall),
    ROW(GsmSystemStatus),
    ROW(GsmPacketAlert),
    ROW(OMADMState),
    ROW(OMADMAlert),
    ROW(CallHold),
    ROW(USSD),
    ROW(FUMOEvent),
    ROW(OMAEvent),
};
#undef ROW

const RcodeText* FindText(ORV_RCODE code)
{
    for (const RcodeText& text : kRcodeTexts)
        if (text.code == code) return &text;
    return nullptr;
}

} // namespace

const char* ORV_CALL OrvRcodeName(ORV_RCODE rCode)
{
    const RcodeText* text = FindText(rCode);
    return text ? text->name : "ORV_RCODE_?";
}

const char* ORV_CALL OrvRcodeMeaning(ORV_RCODE rCode)
{
    const RcodeText* text = FindText(rCode);
    return text ? text->meaning : "unknown result code";
}

const char* ORV_CALL OrvNotifyName(ORV_NOTIFY id)
{
    for (const NotifyText& text : kNotifyTexts)
        if (text.id == id) return text.name;
    return "?";
}
