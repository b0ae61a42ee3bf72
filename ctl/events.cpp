#include "ctl/events.h"

#include "ctl/alphabet.h"
#include "ctl/text.h"

#include <algorithm>
#include <cstring>

namespace ctl {

namespace {

using Payload = OrvNotifyPayload;

constexpr int kNoSignal = -250;
constexpr int kNoEcio = -50;

Json Unless(int none, int value) { return value == none ? Json() : Json(value); }

// What an array holds: never more octets than it has, whatever the length beside it says.
Json Octets(const BYTE* data, size_t room, size_t length) { return Hex(data, std::min(room, length)); }

Json Power(const Payload& p)
{
    const OrvPowerStatePayload& power = p.PowerState;
    return {{"power_state", power.uValid == 1 ? Json(power.uPowerState) : Json()},
            {"radio_on", power.uPowerState == 0}};
}

Json SignalStrength(const Payload& p)
{
    return {{"rssi_dbm", Unless(kNoSignal, p.SignalStrength.nRssi)}, {"ecio", Unless(kNoEcio, p.SignalStrength.nEcio)}};
}

Json NetworkTime(const Payload& p)
{
    const OrvNetworkTimePayload& t = p.NetworkTime;
    return {{"year", t.uYear},
            {"month", t.uMonth},
            {"day", t.uDay},
            {"day_of_week", t.uDayOfWeek},
            {"hour", t.uHour},
            {"minute", t.uMinute},
            {"second", t.uSecond},
            {"time_zone", t.uTimeZone},
            {"daylight_saving", t.uDaylightSaving}};
}

// Identifiers that carry no value of their own.
Json Nothing(const Payload&) { return Json::object(); }

Json SmsSendStatus(const Payload& p)
{
    return {{"message_id", p.SMSSendStatus.uMsgId},
            {"sent", p.SMSSendStatus.uStatus == 0},
            {"status", p.SMSSendStatus.uStatus}};
}

Json CellBroadcast(const Payload& p)
{
    const OrvCellBroadcastPayload& cell = p.CellBroadcast;
    return {{"data_type", cell.uDataType},
            {"length", cell.uLength},
            {"data", Octets(cell.aData, sizeof cell.aData, cell.uLength)}};
}

Json Service(const Payload& p) { return {{"service", p.Value.uValue != 0}, {"value", p.Value.uValue}}; }
Json Roaming(const Payload& p) { return {{"indicator", p.Value.uValue}}; }
Json Value(const Payload& p) { return {{"value", p.Value.uValue}}; }

Json ByteTotals(const Payload& p)
{
    return {{"bytes_sent", p.ByteTotals.uBytesSent}, {"bytes_received", p.ByteTotals.uBytesReceived}};
}

Json CallOriginating(const Payload& p)
{
    const OrvCallOriginatingPayload& call = p.CallOriginating;
    return {{"call_type", call.uCallType},
            {"status", call.uStatus},
            {"number", Utf8(call.szNumber, std::size(call.szNumber))}};
}

Json CallIncoming(const Payload& p)
{
    const OrvCallIncomingPayload& call = p.CallIncoming;
    return {{"kind", call.uKind}, {"call_id", call.uCallId}, {"number", Utf8(call.szNumber, sizeof call.szNumber)}};
}

Json CallStatus(const Payload& p, const char* detail)
{
    Json json = {{"status", p.CallStatus.uStatus}, {"call_id", p.CallStatus.uCallId}};
    if (detail) json[detail] = p.CallStatus.uDetail;
    return json;
}
Json CallConnected(const Payload& p) { return CallStatus(p, "service_option"); }
Json CallDisconnected(const Payload& p) { return CallStatus(p, "end_reason"); }
Json CallHold(const Payload& p) { return CallStatus(p, nullptr); }

Json EmergencyMode(const Payload& p) { return {{"mode", p.Flag.bFlag}}; }
Json RadioOff(const Payload& p) { return {{"radio_off", p.Flag.bFlag == 1}}; }

Json Activation(const Payload& p)
{
    return {{"state", p.ActivationStatus.uValid == 1 ? Json(p.ActivationStatus.uState) : Json()}};
}

Json HdrSignalStrength(const Payload& p) { return {{"rssi_dbm", Unless(kNoSignal, p.HdrSignalStrength.nRssi)}}; }

Json SignalQuality(const Payload& p)
{
    const OrvCdmaSignalQualityPayload& q = p.CdmaSignalQuality;
    return {{"cdma_ecio", Unless(kNoEcio, q.nCdmaEcio)},
            {"cdma_rssi_dbm", Unless(kNoSignal, q.nCdmaRssi)},
            {"hdr_ecio", Unless(kNoEcio, q.nHdrEcio)},
            {"hdr_rssi_dbm", Unless(kNoSignal, q.nHdrRssi)}};
}

Json PhonebookRecords(const Payload& p)
{
    const OrvPhonebookRecordsPayload& book = p.PhonebookRecords;
    Json entries = Json::array();
    for (size_t i = 0; i < std::min<size_t>(book.uCount, ORV_PHONEBOOK_BATCH); ++i) {
        const OrvPhonebookEntry& entry = book.entries[i];
        entries.push_back({{"record_id", entry.uRecordId},
                           {"number_type", entry.uNumberType},
                           {"number", Octets(entry.aNumber, sizeof entry.aNumber, entry.uNumberLength)},
                           {"name", Octets(entry.aName, sizeof entry.aName, entry.uNameLength)},
                           {"phonebook_type", entry.uPhonebookType}});
    }
    return {{"entries", std::move(entries)}};
}

Json EmergencyNumbers(const Payload& p)
{
    const OrvEmergencyNumbersPayload& list = p.EmergencyNumbers;
    Json entries = Json::array();
    for (size_t i = 0; i < std::min<size_t>(list.uCount, ORV_EMERGENCY_BATCH); ++i) {
        Json header = Json::array();
        for (const auto& octets : list.aHeader)
            header.push_back(octets[i]);
        const size_t digits = std::min<size_t>(list.aHeader[5][i], ORV_EMERGENCY_DIGITS);
        char number[ORV_EMERGENCY_DIGITS];
        std::memcpy(number, list.aDigits[i], sizeof number);
        entries.push_back({{"header", std::move(header)}, {"number", Utf8(number, digits)}});
    }
    return {{"entries", std::move(entries)}};
}

Json VoiceMail(const Payload& p)
{
    const int32_t waiting = p.VoiceMail.nWaiting;
    return {{"active", p.VoiceMail.bActive == 1}, {"waiting", Unless(-1, waiting)}};
}

Json PacketState(const Payload& p)
{
    return {{"session_state", p.GsmPacketState.uSessionState}, {"technology", p.GsmPacketState.uTechnology}};
}

Json PacketSession(const Payload& p)
{
    const OrvPktSessionPayload& session = p.PktSession;
    const bool connected = session.bConnected != 0;
    return {{"connected", connected}, {"end_reason", connected ? Json() : Json(session.uEndReason)}};
}

Json SystemStatus(const Payload& p)
{
    const OrvGsmSystemStatus& s = p.GsmSystemStatus;
    return {{"radio_state", s.eRadioState},
            {"service_status", s.eServiceStatus},
            {"service_domain", s.eServiceDomain},
            {"registration", s.eRegistration},
            {"roaming", s.eRoaming},
            {"selection_mode", s.eSelectionMode},
            {"data_technology", s.eDataTechnology},
            {"ran", s.uRan},
            {"radio_interface", s.eRadioInterface},
            {"band_class", s.uBandClass},
            {"channel", s.uChannel},
            {"cs_state", s.uCsState},
            {"ps_state", s.uPsState},
            {"mcc", s.uMCC},
            {"mnc", s.uMNC},
            {"network_name", Utf8(s.szNetworkName, std::size(s.szNetworkName))}};
}

Json PacketAlert(const Payload& p) { return {{"value", p.GsmPacketAlert.uValue}}; }

Json OmaDmState(const Payload& p)
{
    const OrvOMADMSessionState& s = p.OMADMState;
    return {{"busy", s.bBusy != 0}, {"pause_seconds", s.uPauseSeconds},
            {"type", s.eType},      {"source", s.eSource},
            {"state", s.nState},    {"error", s.uError},
            {"idle", s.bIdle != 0}};
}

Json OmaDmAlert(const Payload& p)
{
    const OrvOMADMAlert& a = p.OMADMAlert;
    return {{"state", a.nState},
            {"device_configuration_session_id", a.uDcSessionId},
            {"prl_session_id", a.uPrlSessionId},
            {"type", a.nType}};
}

Json UssdText(const OrvUSSDPayload& u)
{
    const size_t length = std::min<size_t>(u.uLength, sizeof u.aData);
    const std::string_view octets(reinterpret_cast<const char*>(u.aData), length);
    const std::optional<std::string> text = FromCoding(u.uDataCodingScheme, octets);
    return text ? Json(*text) : Json();
}

Json Ussd(const Payload& p)
{
    const OrvUSSDPayload& u = p.USSD;
    return {{"type", u.uType},
            {"data_coding_scheme", u.uDataCodingScheme},
            {"length", u.uLength},
            {"data", Octets(u.aData, sizeof u.aData, u.uLength)},
            {"text", UssdText(u)}};
}

// These two carry no length: the trailing zero octets are left out.
Json Trimmed(const BYTE* data, size_t size)
{
    while (size > 0 && data[size - 1] == 0)
        --size;
    return Hex(data, size);
}

Json FumoEvent(const Payload& p)
{
    return {{"event", p.FUMOEvent.uEvent}, {"data", Trimmed(p.FUMOEvent.aData, sizeof p.FUMOEvent.aData)}};
}

Json OmaEvent(const Payload& p)
{
    return {{"event", p.OMAEvent.uEvent},
            {"status", p.OMAEvent.uStatus},
            {"data", Trimmed(p.OMAEvent.aData, sizeof p.OMAEvent.aData)}};
}

// How an identifier comes to be delivered.
constexpr ORV_NOTIFY kItself = 0xFFFFFFFFu; // OrvNotify takes it
constexpr ORV_NOTIFY kNone = 0;             // delivered without being enabled

struct Row {
    ORV_NOTIFY id;
    ORV_NOTIFY enabler; // kItself, kNone, or the identifier that carries it
    Json (*payload)(const Payload&);
};

// In the order of AllEnablers: 2018 ends a power event's walk and 2029 a session event's, so both follow their
// neighbours.
constexpr Row kRows[] = {
    {ORV_NOTIFY_DeviceRemoved, kNone, Nothing},
    {ORV_NOTIFY_PowerState, kItself, Power},
    {ORV_NOTIFY_SignalStrength, kItself, SignalStrength},
    {ORV_NOTIFY_ModemReset, kItself, Nothing},
    {ORV_NOTIFY_RFInfo, kItself, Nothing},
    {ORV_NOTIFY_NetworkTime, ORV_NOTIFY_SignalStrength, NetworkTime},
    {ORV_NOTIFY_NewSMS, kItself, Nothing},
    {ORV_NOTIFY_SMSSendStatus, kItself, SmsSendStatus},
    {ORV_NOTIFY_CellBroadcast, ORV_NOTIFY_NewSMS, CellBroadcast},
    {ORV_NOTIFY_RFInfoCdma, kItself, Nothing},
    {ORV_NOTIFY_CdmaService, kItself, Service},
    {ORV_NOTIFY_CdmaRoaming, kItself, Roaming},
    {ORV_NOTIFY_ByteTotals, kItself, ByteTotals},
    {ORV_NOTIFY_CallOriginating, kItself, CallOriginating},
    {ORV_NOTIFY_CallConnected, kItself, CallConnected},
    {ORV_NOTIFY_CallIncoming, ORV_NOTIFY_CallNotificationStatus, CallIncoming},
    {ORV_NOTIFY_CallDisconnected, kItself, CallDisconnected},
    {ORV_NOTIFY_CallNotificationStatus, kItself, Nothing},
    {ORV_NOTIFY_DormancyStatus, kItself, Nothing},
    {ORV_NOTIFY_EmergencyMode, ORV_NOTIFY_SignalStrength, EmergencyMode},
    {ORV_NOTIFY_ActivationStatus, kItself, Activation},
    {ORV_NOTIFY_HdrSignalStrength, kItself, HdrSignalStrength},
    {ORV_NOTIFY_CdmaSignalQuality, kItself, SignalQuality},
    {ORV_NOTIFY_HdrRoaming, kItself, Roaming},
    {ORV_NOTIFY_HdrService, kItself, Service},
    {ORV_NOTIFY_GsmByteTotals, kItself, ByteTotals},
    {ORV_NOTIFY_PhonebookReady, ORV_NOTIFY_NewSMS, Value},
    {ORV_NOTIFY_PhonebookRecords, ORV_NOTIFY_NewSMS, PhonebookRecords},
    {ORV_NOTIFY_EmergencyNumbers, ORV_NOTIFY_NewSMS, EmergencyNumbers},
    {ORV_NOTIFY_PLMNModeSet, kItself, Value},
    {ORV_NOTIFY_PLMNSearchDone, kItself, Value},
    {ORV_NOTIFY_RadioOff, kItself, RadioOff},
    {ORV_NOTIFY_PLMNManual, kItself, Value},
    {ORV_NOTIFY_VoiceMail, ORV_NOTIFY_NewSMS, VoiceMail},
    {ORV_NOTIFY_GsmPacketState, kItself, PacketState},
    {ORV_NOTIFY_PktSessionCall, kItself, PacketSession},
    {ORV_NOTIFY_GsmSystemStatus, kItself, SystemStatus},
    {ORV_NOTIFY_GsmPacketAlert, kItself, PacketAlert},
    {ORV_NOTIFY_OMADMState, kItself, OmaDmState},
    {ORV_NOTIFY_OMADMAlert, kItself, OmaDmAlert},
    {ORV_NOTIFY_CallHold, ORV_NOTIFY_CallNotificationStatus, CallHold},
    {ORV_NOTIFY_USSD, ORV_NOTIFY_CallNotificationStatus, Ussd},
    {ORV_NOTIFY_FUMOEvent, ORV_NOTIFY_OMADMState, FumoEvent},
    {ORV_NOTIFY_OMAEvent, ORV_NOTIFY_OMADMState, OmaEvent},
};

const Row* Find(ORV_NOTIFY id)
{
    const auto* const row = std::find_if(std::begin(kRows), std::end(kRows), [id](const Row& r) { return r.id == id; });
    return row == std::end(kRows) ? nullptr : row;
}

Json PayloadOf(const OrvNotifyRecord& record)
{
    if (const Row* const row = Find(record.uNotify)) return row->payload(record.payload);
    return {{"octets", Octets(record.payload.aOctets, sizeof record.payload.aOctets, record.uPayloadSize)}};
}

} // namespace

Json EventToJson(const OrvNotifyRecord& record)
{
    Json event;
    event["id"] = record.uNotify;
    event["name"] = OrvNotifyName(record.uNotify);
    event["payload"] = PayloadOf(record);
    return {{"event", std::move(event)}};
}

std::string EventToText(const OrvNotifyRecord& record)
{
    std::string line = std::string(OrvNotifyName(record.uNotify)) + " (" + std::to_string(record.uNotify) + ")";
    const Json payload = PayloadOf(record);
    for (const auto& [key, value] : payload.items()) {
        // A text that is empty or has blanks stands in quotes, as JSON has it.
        const bool quoted =
            value.is_string() && (value == "" || value.get<std::string>().find(' ') != std::string::npos);
        line += " " + key + "=" + PlainText(quoted ? Json(value.dump()) : Json(value));
    }
    return line;
}

std::optional<ORV_NOTIFY> ParseEvent(const std::string& text)
{
    ORV_NOTIFY number = 0;
    if (ParseNumber(text, number)) return number;
    for (const Row& row : kRows)
        if (SameName(text, OrvNotifyName(row.id))) return row.id;
    return {};
}

ORV_NOTIFY EnablerOf(ORV_NOTIFY id)
{
    const Row* const row = Find(id);
    return !row || row->enabler == kItself ? id : row->enabler;
}

std::vector<ORV_NOTIFY> Brought(ORV_NOTIFY id)
{
    if (id != ORV_NOTIFY_CallNotificationStatus) return {id};
    return {ORV_NOTIFY_CallOriginating, ORV_NOTIFY_CallConnected, ORV_NOTIFY_CallDisconnected,
            ORV_NOTIFY_CallIncoming,    ORV_NOTIFY_CallHold,      ORV_NOTIFY_USSD};
}

std::vector<ORV_NOTIFY> AllEnablers()
{
    std::vector<ORV_NOTIFY> ids;
    for (const Row& row : kRows)
        if (row.enabler == kItself && row.id != ORV_NOTIFY_GsmPacketAlert) ids.push_back(row.id);
    return ids;
}

} // namespace ctl
