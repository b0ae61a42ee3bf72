// Text messages.
#include <iterator>

#include "sim/call.h"
#include "sim/clock.h"
#include "sim/fields.h"
#include "sim/reset.h"
#include "sim/sms_loopback.h"
#include "sim/sms_verb.h"

namespace sim {

constexpr ULONG kOnCard = 0;
constexpr ULONG kNotRead = 1; // tags
constexpr ULONG kNotSent = 2;
constexpr ULONG kMaxTag = 3;
constexpr ULONG kFormatCdma = 0;
constexpr ULONG kFormatGsm = 6;
constexpr ULONG kRegistered = 1;
constexpr ULONG kNoNetworkService = 331; // 3GPP TS 27.005, 3.2.5

static constexpr Field kFields[] = {
    NumberField("sms.card-capacity", g_module.sms.capacity[0], kMaxStoredSms),
    NumberField("sms.module-capacity", g_module.sms.capacity[1], kMaxStoredSms),
    NumberField("sms.protocol", g_module.sms.protocol, 1),
    NumberField("sms.broadcast-cdma", g_module.sms.broadcast[0], 1),
    NumberField("sms.broadcast-gsm", g_module.sms.broadcast[1], 1),
    OctetsField("sms.routes", g_module.sms.routes),
    TextField("sms.centre", g_module.sms.centre),
    TextField("sms.centre-type", g_module.sms.centre_type),
    NumberField("sms.send-status", g_module.sms.send_status),
    NumberField("sms.failure-cause", g_module.sms.failure_cause),
    NumberField("sms.send-count", g_module.sms.send_count),
    NumberField("sms.sent-format", g_module.sms.sent_format),
    OctetsField("sms.sent", g_module.sms.sent),
    NumberField("sms.reference", g_module.sms.reference),
    NumberField("sms.link-timer", g_module.sms.link_timer),
    NumberField("sms.loopback", g_module.sms.loopback, 9),
    NumberField("sms.loopback-ms", g_module.sms.loopback_ms),
};
const FieldTable kSmsFields = {kFields, std::size(kFields)};

void ResetSms(bool umts)
{
    SmsState& sms = TheModule().sms;
    memset(&sms, 0, sizeof(sms));
    sms.capacity[0] = 30;
    sms.capacity[1] = 255;
    sms.protocol = umts;
    sms.loopback_ms = 100;
    Copy(sms.centre, "+12025550100");
    Copy(sms.centre_type, "145");
}

// A store can be used: it exists, and the card lets itself be read.
static ULONG StoreStatus(ULONG storage)
{
    if (storage >= kSmsStores) return kInvalidArgument;
    return storage == kOnCard && !CardIsReady() ? kNoCard : kSuccess;
}

static StoredSms* FindMessage(ULONG storage, ULONG index)
{
    if (storage >= kSmsStores || index >= kMaxStoredSms) return nullptr;
    StoredSms& message = TheModule().sms.messages[storage][index];
    return message.used ? &message : nullptr;
}

// Keeps a message at the lowest free index. Returns false when the store is full.
static bool KeepMessage(ULONG storage, ULONG tag, ULONG format, ULONG size, const BYTE* octets, ULONG* index)
{
    for (ULONG i = 0; i < TheModule().sms.capacity[storage]; ++i) {
        StoredSms& message = TheModule().sms.messages[storage][i];
        if (message.used) continue;
        message.used = true;
        message.tag = tag;
        message.format = format;
        message.size = static_cast<WORD>(size);
        if (size > 0) memcpy(message.octets, octets, size);
        *index = i;
        return true;
    }
    return false;
}

// --- the verb
// ---------------------------------------------------------------------------------------------------------

static ULONG TakeStorage(Command& command) { return static_cast<ULONG>(command.Unsigned("storage", kSmsStores - 1)); }

static void AddVerb(Command& command, bool arrives)
{
    const ULONG storage = TakeStorage(command);
    const ULONG tag = arrives ? kNotRead : static_cast<ULONG>(command.Unsigned("tag", 0xFFFFFFFF));
    const ULONG format = static_cast<ULONG>(command.Unsigned("format", 0xFFFFFFFF));
    BYTE octets[kMaxSmsOctets];
    const ULONG size = command.HexOctets("message", octets, sizeof(octets));
    command.End();
    if (command.Failed()) return;
    ULONG index = 0;
    if (!KeepMessage(storage, tag, format, size, octets, &index)) {
        command.Fail().Add("store ").Unsigned(storage).Add(" is full");
        return;
    }
    command.Reply().Unsigned(index);
    if (!arrives) return;
    Text<48> line;
    Writer(line).Add("emit sms ").Unsigned(storage).Character(' ').Unsigned(index);
    ScheduleModuleEvent(0, line);
}

static void TagVerb(Command& command)
{
    const ULONG storage = TakeStorage(command);
    const ULONG index = static_cast<ULONG>(command.Unsigned("index", kMaxStoredSms - 1));
    const ULONG tag = static_cast<ULONG>(command.Unsigned("tag", 0xFFFFFFFF));
    command.End();
    if (command.Failed()) return;
    StoredSms* message = FindMessage(storage, index);
    if (message)
        message->tag = tag;
    else
        command.Fail().Add("there is no message ").Unsigned(index);
}

static void ListVerb(Command& command)
{
    const ULONG storage = TakeStorage(command);
    command.End();
    if (command.Failed()) return;
    Writer& reply = command.Reply();
    for (ULONG i = 0; i < kMaxStoredSms; ++i) {
        const StoredSms* message = FindMessage(storage, i);
        if (!message) continue;
        if (reply.Length() > 0) reply.Character('\n');
        reply.Unsigned(i).Character(' ').Unsigned(message->tag).Character(' ').Unsigned(message->format);
        reply.Character(' ').HexOctets(message->octets, message->size);
    }
}

void SmsVerb(Command& command)
{
    if (command.Take("add")) return AddVerb(command, false);
    if (command.Take("arrives")) return AddVerb(command, true);
    if (command.Take("tag")) return TagVerb(command);
    if (command.Take("list")) return ListVerb(command);
    const char* word = command.Word("add, arrives, tag or list");
    if (!command.Failed()) command.Fail().Add("unknown verb \"sms ").Add(word).Add("\"");
}

// --- sending
// ----------------------------------------------------------------------------------------------------------

// Why a message does not go out now, and the cause that the caller is given.
static ULONG SendStatus(ULONG* cause)
{
    const SmsState& sms = TheModule().sms;
    *cause = 0;
    if (TheModule().power.mode != 0 || TheModule().network.registration != kRegistered) {
        *cause = kNoNetworkService;
        return kNoNetwork;
    }
    if (sms.send_status != kSuccess) *cause = sms.failure_cause;
    return sms.send_status;
}

} // namespace sim

using namespace sim;

// A null index stands for every message, a null tag for any tag.
extern "C" ULONG DeleteSMS(ULONG storage, ULONG* index, ULONG* tag)
{
    Call call(EntryPoint::DeleteSMS, storage, At(index), At(tag));
    if (const ULONG refused = call.Refused()) return refused;
    if (const ULONG status = StoreStatus(storage)) return status;
    ULONG deleted = 0;
    for (ULONG i = 0; i < kMaxStoredSms; ++i) {
        StoredSms* message = FindMessage(storage, i);
        if (!message || (index && *index != i) || (tag && *tag != message->tag)) continue;
        message->used = false;
        ++deleted;
    }
    return index && deleted == 0 ? kNotFound : call.Done();
}

// A null tag stands for any.
extern "C" ULONG GetSMSList(ULONG storage, ULONG* tag, ULONG* count, BYTE* list)
{
    Call call(EntryPoint::GetSMSList, storage, At(tag), At(count));
    if (const ULONG refused = call.Refused()) return refused;
    if (const ULONG status = StoreStatus(storage)) return status;
    WORD found[kMaxStoredSms];
    ULONG available = 0;
    for (ULONG i = 0; i < kMaxStoredSms; ++i) {
        const StoredSms* message = FindMessage(storage, i);
        if (message && (!tag || *tag == message->tag)) found[available++] = static_cast<WORD>(i);
    }
    call.PutRecords<GobiSMSListEntry>(list, Call::Room(count), available, [&](ULONG i) {
        return GobiSMSListEntry{found[i], TheModule().sms.messages[storage][found[i]].tag};
    });
    call.PutCount(count, available);
    return call.Done();
}

// The tag stays: it is the client's to change.
extern "C" ULONG GetSMS(ULONG storage, ULONG index, ULONG* tag, ULONG* format, ULONG* size, BYTE* octets)
{
    Call call(EntryPoint::GetSMS, storage, index, At(size));
    if (const ULONG refused = call.Refused()) return refused;
    if (const ULONG status = StoreStatus(storage)) return status;
    const StoredSms* message = FindMessage(storage, index);
    if (!message) return kNotFound;
    call.Put(tag, message->tag);
    call.Put(format, message->format);
    call.PutArray(octets, Call::Room(size), message->size, [&](ULONG i) { return message->octets[i]; });
    call.PutCount(size, message->size);
    return call.Done();
}

extern "C" ULONG ModifySMSStatus(ULONG storage, ULONG index, ULONG tag)
{
    Call call(EntryPoint::ModifySMSStatus, storage, index, tag);
    if (const ULONG refused = call.Refused()) return refused;
    if (const ULONG status = StoreStatus(storage)) return status;
    if (tag > kMaxTag) return kInvalidArgument;
    StoredSms* message = FindMessage(storage, index);
    if (!message) return kNotFound;
    message->tag = tag;
    return call.Done();
}

extern "C" ULONG SaveSMS(ULONG storage, ULONG format, ULONG size, BYTE* octets, ULONG* index)
{
    Call call(EntryPoint::SaveSMS, storage, format, size);
    if (const ULONG refused = call.Refused()) return refused;
    if (const ULONG status = StoreStatus(storage)) return status;
    const bool known = format == kFormatCdma || format == kFormatGsm;
    if (!known || size == 0 || size > kMaxSmsOctets || !octets || !index) return kInvalidArgument;
    ULONG kept = 0;
    if (!KeepMessage(storage, kNotSent, format, size, octets, &kept)) return kNoRoom;
    call.Put(index, kept);
    return call.Done();
}

// The format is that of the protocol in use. A message that goes out takes the next reference.
extern "C" ULONG SendSMS(ULONG format, ULONG size, BYTE* octets, BYTE link_timer, ULONG* failure_cause)
{
    Call call(EntryPoint::SendSMS, format, size, link_timer);
    if (const ULONG refused = call.Refused()) return refused;
    SmsState& sms = TheModule().sms;
    if (format != (sms.protocol ? kFormatGsm : kFormatCdma)) return kInvalidArgument;
    if (size == 0 || size > sizeof(sms.sent.octets) || !octets || !failure_cause) return kInvalidArgument;
    ULONG cause = 0;
    const ULONG status = SendStatus(&cause);
    call.Put(failure_cause, cause);
    if (status != kSuccess) return status;
    ++sms.send_count;
    ++sms.reference;
    sms.sent_format = format;
    sms.link_timer = link_timer;
    sms.sent.count = size;
    memcpy(sms.sent.octets, octets, size);
    if (format == kFormatGsm) SendBack(octets, size);
    return call.Done();
}

extern "C" ULONG GetSMSCAddress(BYTE address_size, char* address, BYTE type_size, char* type)
{
    Call call(EntryPoint::GetSMSCAddress, address_size, type_size);
    if (const ULONG refused = call.Refused()) return refused;
    call.PutText(address, address_size, TheModule().sms.centre);
    call.PutText(type, type_size, TheModule().sms.centre_type);
    return call.Done();
}

extern "C" ULONG SetSMSCAddress(char* address, char* type)
{
    Call call(EntryPoint::SetSMSCAddress, address, type);
    if (const ULONG refused = call.Refused()) return refused;
    if (!address || !type) return kInvalidArgument;
    SmsState& sms = TheModule().sms;
    if (Length(address) >= sms.centre.Room() || Length(type) >= sms.centre_type.Room()) return kInvalidArgument;
    Copy(sms.centre, address);
    Copy(sms.centre_type, type);
    return call.Done();
}

extern "C" ULONG SetSMSProtocol(BYTE protocol)
{
    Call call(EntryPoint::SetSMSProtocol, protocol);
    if (const ULONG refused = call.Refused()) return refused;
    if (protocol > 1) return kInvalidArgument;
    TheModule().sms.protocol = protocol;
    return call.Done();
}

extern "C" ULONG SetRoutes(ULONG count, BYTE* routes)
{
    Call call(EntryPoint::SetRoutes, count);
    if (const ULONG refused = call.Refused()) return refused;
    auto& kept = TheModule().sms.routes;
    constexpr ULONG kRoom = sizeof(kept.octets) / sizeof(GobiSMSRoute);
    if (count > kRoom || (count > 0 && !routes)) return kInvalidArgument;
    kept.count = count * static_cast<ULONG>(sizeof(GobiSMSRoute));
    if (count > 0) memcpy(kept.octets, routes, kept.count);
    return call.Done();
}

extern "C" ULONG SetBroadcastActivation(BYTE mode, BYTE activate)
{
    Call call(EntryPoint::SetBroadcastActivation, mode, activate);
    if (const ULONG refused = call.Refused()) return refused;
    if (mode > 1 || activate > 1) return kInvalidArgument;
    TheModule().sms.broadcast[mode] = activate;
    return call.Done();
}
