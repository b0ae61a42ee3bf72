// Events that carry the vendor's records: calls, information records, USSD, phonebook records, emergency numbers and
// extended device management.
#include <string.h>

#include "sim/delivery.h"
#include "sim/phonebook.h"
#include "talvek/gobi_callbacks.h"

namespace sim {

// One part of a word whose parts are joined by ':', moved past it and its ':'. The part as it stands; false when it
// does not fit.
template <ULONG kRoom>
static bool TakePart(const char** word, Text<kRoom>& part)
{
    Writer writer(part);
    while (**word && **word != ':')
        writer.Character(*(*word)++);
    if (**word == ':') ++*word;
    return !writer.Cut();
}

// The same as a number of at most `high`.
static bool TakeNumber(const char** word, ULONG high, ULONG* value)
{
    Text<12> part;
    bool negative = false;
    ULONGLONG number = 0;
    if (!TakePart(word, part) || !ParseNumber(part, &negative, &number) || negative || number > high) return false;
    *value = static_cast<ULONG>(number);
    return true;
}

static BYTE CopyDigits(BYTE* out, ULONG room, const char* digits)
{
    const ULONG length = Length(digits);
    memcpy(out, digits, length < room ? length : room);
    return static_cast<BYTE>(length < room ? length : room);
}

// --- calls

struct CallArrays {
    arrCallInfo calls;
    arrRemotePartyNum numbers;
    arrSvcOption options;
    arrCallEndReason reasons;
};
static_assert(sizeof(CallArrays) <= kMaxOctets && alignof(CallArrays) == 1);

// "ID:STATE:TYPE[:NUMBER[:DETAIL]]": the detail is the reason of an ended call, and the service option of another.
static bool TakeCall(const char* word, CallArrays& arrays)
{
    const ULONG i = arrays.calls.count;
    ULONG id = 0, state = 0, type = 0, detail = 0;
    Text<GOBI_MAX_DIGITS + 1> number = {};
    if (i == GOBI_MAX_CALLS || !TakeNumber(&word, 255, &id) || !TakeNumber(&word, 255, &state) ||
        !TakeNumber(&word, 255, &type) || !TakePart(&word, number)) {
        return false;
    }
    const bool detailed = *word != 0;
    const bool ended = state == GOBI_CALL_ENDED;
    if (detailed && (!TakeNumber(&word, ended ? 0xFFFF : 255, &detail) || *word)) return false;
    const BYTE call_id = static_cast<BYTE>(id);
    auto& call = arrays.calls.calls[i];
    call.callId = call_id;
    call.state = static_cast<BYTE>(state);
    call.type = static_cast<BYTE>(type);
    ++arrays.calls.count;
    // Entry i of the numbers and of the reasons belongs to call i.
    auto& remote = arrays.numbers.numbers[i];
    remote.callId = call_id;
    const bool withheld = Equal(number, "withheld");
    remote.length = withheld ? BYTE{0} : CopyDigits(remote.digits, sizeof(remote.digits), number);
    remote.presentation = withheld ? 1 : remote.length > 0 ? 0 : 2;
    arrays.numbers.count = arrays.calls.count;
    if (detailed && ended) {
        arrays.reasons.reasons[i] = {call_id, static_cast<BYTE>(detail & 0xFF), static_cast<BYTE>(detail >> 8)};
        arrays.reasons.count = arrays.calls.count;
    } else if (detailed) {
        arrays.options.options[arrays.options.count++] = {call_id, static_cast<BYTE>(detail)};
    }
    return true;
}

void TakeCalls(Command& command, Delivery& delivery)
{
    delivery.has_octets = !command.Take("null");
    CallArrays arrays = {};
    while (delivery.has_octets && command.More()) {
        if (TakeCall(command.Word("call"), arrays)) continue;
        command.Fail().Add("at most ").Unsigned(GOBI_MAX_CALLS).Add(" calls such as 1:3:0:5551234");
        return;
    }
    command.End();
    memcpy(delivery.octets, &arrays, sizeof(arrays));
}

void CallCalls(Delivery& d)
{
    CallArrays* arrays = d.Octets<CallArrays>(0, true);
    d.As<GobiCallInfoCallback>()(arrays ? &arrays->calls : nullptr, arrays ? &arrays->numbers : nullptr, nullptr,
                                 nullptr, arrays && arrays->options.count > 0 ? &arrays->options : nullptr,
                                 arrays && arrays->reasons.count > 0 ? &arrays->reasons : nullptr, nullptr, nullptr,
                                 nullptr, nullptr);
}

// --- information records: the call, the caller's number, and how it sounds

struct Information {
    BYTE call_id;
    callerIDInfo caller;
    signalInfo signal;
    BYTE has_caller, has_signal;
};

void TakeInformation(Command& command, Delivery& delivery)
{
    delivery.has_octets = true;
    Information information = {};
    information.call_id = static_cast<BYTE>(command.Unsigned("call", 255));
    if (!command.Take("null")) {
        const char* number = command.Word("number");
        if (Length(number) > GOBI_MAX_DIGITS) {
            command.Fail().Add("a number has at most ").Unsigned(GOBI_MAX_DIGITS).Add(" digits");
            return;
        }
        information.has_caller = 1;
        information.caller.numberPlan = 1; // telephony
        information.caller.length = CopyDigits(information.caller.digits, GOBI_MAX_DIGITS, number);
    }
    if (command.More()) {
        information.has_signal = 1;
        information.signal.signalType = static_cast<BYTE>(command.Unsigned("signal type", 255));
        information.signal.alertPitch = static_cast<BYTE>(command.Unsigned("pitch", 255));
        information.signal.signal = static_cast<BYTE>(command.Unsigned("signal", 255));
    }
    command.End();
    memcpy(delivery.octets, &information, sizeof(information));
}

void CallInformation(Delivery& d)
{
    Information& information = *d.Octets<Information>(0, true);
    d.As<GobiInfoRecCallback>()(&information.call_id, information.has_signal ? &information.signal : nullptr,
                                information.has_caller ? &information.caller : nullptr, nullptr, nullptr, nullptr,
                                nullptr, nullptr, nullptr, nullptr, nullptr);
}

// --- USSD

void TakeUssd(Command& command, Delivery& delivery)
{
    delivery.has_octets = !command.Take("null");
    USSInfo info = {};
    if (delivery.has_octets) {
        delivery.numbers[0] = command.Unsigned("type", 255);
        info.dcs = static_cast<BYTE>(command.Unsigned("coding", 255));
        if (command.Take("hex")) {
            info.length = static_cast<BYTE>(command.HexOctets("octets", info.data, 255));
        } else {
            const char* text = command.Word("text");
            const ULONG length = command.WordLength();
            if (length > 255) {
                command.Fail().Add("a text has at most 255 octets");
                return;
            }
            info.length = static_cast<BYTE>(length);
            memcpy(info.data, text, length);
        }
    }
    command.End();
    memcpy(delivery.octets, &info, sizeof(info));
}

void CallUssd(Delivery& d)
{
    BYTE type = d.Byte(0);
    d.As<GobiUSSDCallback>()(d.has_octets ? &type : nullptr, d.Octets<USSInfo>(0, true));
}

// --- phonebook records

constexpr ULONG kMaxRecords = kMaxOctets / sizeof(arrPBInfo);
static_assert(kMaxRecords >= kPhonebookBatch);

// "ID:NUMBERTYPE:NUMBER:NAME"; the name is the rest.
static bool TakeRecord(const char* word, arrPBInfo& record)
{
    ULONG id = 0, type = 0;
    Text<GOBI_MAX_PHONEBOOK_TEXT + 1> number;
    if (!TakeNumber(&word, 0xFFFF, &id) || !TakeNumber(&word, 255, &type) || !TakePart(&word, number)) return false;
    const ULONG name_length = Length(word);
    if (name_length > GOBI_MAX_PHONEBOOK_TEXT) return false;
    record.recordId = static_cast<WORD>(id);
    record.numberType = static_cast<BYTE>(type);
    record.numberLength = static_cast<WORD>(Length(number));
    memcpy(record.number, number, record.numberLength);
    record.nameLength = static_cast<WORD>(name_length);
    memcpy(record.name, word, name_length);
    return true;
}

void TakePhonebook(Command& command, Delivery& delivery)
{
    delivery.numbers[0] = command.Unsigned("type", 255);
    delivery.has_octets = !command.Take("null");
    ULONG count = 0;
    if (!delivery.has_octets) {
        count = static_cast<ULONG>(command.Unsigned("count", 0xFFFF));
    } else if (command.Take("stored")) {
        const ULONG first = static_cast<ULONG>(command.Unsigned("first", 0xFFFF));
        const ULONG last = static_cast<ULONG>(command.Unsigned("last", 0xFFFF));
        arrPBInfo* records = reinterpret_cast<arrPBInfo*>(delivery.octets);
        count = StoredRecords(delivery.Byte(0), first, last, records, kPhonebookBatch);
    } else {
        while (command.More()) {
            arrPBInfo record = {};
            if (count == kMaxRecords || !TakeRecord(command.Word("record"), record)) {
                command.Fail().Add("at most ").Unsigned(kMaxRecords).Add(" records such as \"1:0:5551234:A name\"");
                return;
            }
            memcpy(delivery.octets + sizeof(record) * count++, &record, sizeof(record));
        }
    }
    command.End();
    delivery.numbers[1] = count;
}

void CallPhonebook(Delivery& d)
{
    d.As<GobiPhonebookRecordReadCallback>()(d.Byte(0), d.Word(1), d.Octets<arrPBInfo>(0, true));
}

// --- emergency numbers

constexpr ULONG kMaxEntries = 50;
static_assert(kMaxEntries * sizeof(emergencyNumberEntry) <= kMaxOctets);

// "112", or with the five octets of its header before the length, "1:0:2:0:0:112".
static bool TakeEntry(const char* word, emergencyNumberEntry& entry)
{
    ULONG colons = 0;
    for (const char* at = word; *at; ++at)
        colons += *at == ':' ? 1 : 0;
    if (colons != 0 && colons != 5) return false;
    for (ULONG i = 0; i < colons; ++i) {
        ULONG value = 0;
        if (!TakeNumber(&word, 255, &value)) return false;
        entry.hdr[i] = static_cast<BYTE>(value);
    }
    if (Length(word) > GOBI_MAX_DIGITS) return false;
    entry.hdr[5] = CopyDigits(entry.digits, GOBI_MAX_DIGITS, word);
    return true;
}

void TakeEmergencyList(Command& command, Delivery& delivery)
{
    delivery.has_octets = !command.Take("null");
    ULONG count = delivery.has_octets ? 0 : static_cast<ULONG>(command.Unsigned("count", 255));
    while (delivery.has_octets && command.More()) {
        emergencyNumberEntry entry = {};
        if (count == kMaxEntries || !TakeEntry(command.Word("entry"), entry)) {
            command.Fail().Add("at most ").Unsigned(kMaxEntries).Add(" entries such as 112 or 1:0:2:0:0:112");
            return;
        }
        memcpy(delivery.octets + sizeof(entry) * count++, &entry, sizeof(entry));
    }
    command.End();
    delivery.numbers[0] = count;
}

void CallEmergencyList(Delivery& d)
{
    d.As<GobiEmergencyListCallback>()(d.Byte(0), d.Octets<emergencyNumberEntry>(0, true));
}

// --- extended device management: an event of one kind or of the other

void TakeFirmwareUpdate(Command& command, Delivery& delivery)
{
    FUMOInfo info = {};
    delivery.has_octets = !command.Take("null");
    if (delivery.has_octets) {
        info.event = static_cast<ULONG>(command.Unsigned("event", 0xFFFFFFFF));
        if (command.More()) command.HexOctets("octets", info.data, sizeof(info.data));
    }
    command.End();
    memcpy(delivery.octets, &info, sizeof(info));
}

void CallFirmwareUpdate(Delivery& d) { d.As<GobiOMAEXEventCallback>()(d.Octets<FUMOInfo>(0, true), nullptr); }

void TakeManagement(Command& command, Delivery& delivery)
{
    OMAInfo info = {};
    delivery.has_octets = !command.Take("null");
    if (delivery.has_octets) {
        info.event = static_cast<ULONG>(command.Unsigned("event", 0xFFFFFFFF));
        info.status = static_cast<ULONG>(command.Unsigned("status", 0xFFFFFFFF));
        if (command.More()) command.HexOctets("octets", info.data, sizeof(info.data));
    }
    command.End();
    memcpy(delivery.octets, &info, sizeof(info));
}

void CallManagement(Delivery& d) { d.As<GobiOMAEXEventCallback>()(nullptr, d.Octets<OMAInfo>(0, true)); }

} // namespace sim
