// The phonebooks on the card.
#include "sim/phonebook.h"

#include <iterator>

#include "sim/call.h"
#include "sim/clock.h"
#include "sim/fields.h"
#include "sim/reset.h"

namespace sim {

static constexpr Field kFields[] = {
    NumberField("phonebook.contacts", g_module.phonebook.capacity[0], kPhonebookRoom),
    NumberField("phonebook.fixed", g_module.phonebook.capacity[1], kPhonebookRoom),
    NumberField("phonebook.own", g_module.phonebook.capacity[2], kPhonebookRoom),
    NumberField("phonebook.number-room", g_module.phonebook.max_number, kNumberRoom),
    NumberField("phonebook.name-room", g_module.phonebook.max_name, kNameRoom),
    NumberField("phonebook.read-ms", g_module.phonebook.read_ms),
};
const FieldTable kPhonebookFields = {kFields, std::size(kFields)};

constexpr BYTE kPlainName = 0x0F; // GSM 7-bit, a character an octet

// --- records

static ULONG Used(ULONG type)
{
    ULONG used = 0;
    for (ULONG i = 0; i < TheModule().phonebook.capacity[type]; ++i)
        used += TheModule().phonebook.records[type][i].used;
    return used;
}

static void Write(PhonebookRecord& record, BYTE number_type, const BYTE* number, ULONG number_length, const BYTE* name,
                  ULONG name_length, BYTE coding)
{
    record = {};
    record.used = 1;
    record.number_type = number_type;
    record.number_length = static_cast<BYTE>(number_length);
    memcpy(record.number, number, number_length);
    record.name_coding = coding;
    record.name_length = static_cast<BYTE>(name_length);
    memcpy(record.name, name, name_length);
}

static void WriteText(PhonebookRecord& record, const char* number, const char* name)
{
    Write(record, number[0] == '+' ? 1 : 0, reinterpret_cast<const BYTE*>(number), Length(number),
          reinterpret_cast<const BYTE*>(name), Length(name), kPlainName);
}

void ResetPhonebook(bool umts)
{
    PhonebookState& state = TheModule().phonebook;
    state = {};
    state.capacity[0] = 100;
    state.capacity[1] = 20;
    state.capacity[2] = 2;
    state.max_number = 20;
    state.max_name = 18;
    state.read_ms = 10;
    WriteText(state.records[0][0], "+12025550199", "Voice mail");
    WriteText(state.records[2][0], umts ? "+12025550123" : "2025550123", "");
}

ULONG StoredRecords(BYTE type, ULONG first, ULONG last, arrPBInfo* records, ULONG room)
{
    ULONG count = 0;
    if (type >= kPhonebooks) return 0;
    const PhonebookState& state = TheModule().phonebook;
    for (ULONG id = first; id >= 1 && id <= last && id <= state.capacity[type] && count < room; ++id) {
        const PhonebookRecord& kept = state.records[type][id - 1];
        if (!kept.used) continue;
        arrPBInfo& record = records[count++];
        record = {};
        record.recordId = static_cast<WORD>(id);
        record.numberType = kept.number_type;
        record.numberLength = kept.number_length;
        record.nameLength = kept.name_length;
        memcpy(record.number, kept.number, kept.number_length);
        memcpy(record.name, kept.name, kept.name_length);
    }
    return count;
}

// One event for each ten records in use, read when it is sent.
static WORD Announce(ULONG type, ULONG first, ULONG last)
{
    const PhonebookState& state = TheModule().phonebook;
    WORD count = 0;
    ULONG begin = first;
    for (ULONG id = first; id <= last; ++id) {
        count = static_cast<WORD>(count + state.records[type][id - 1].used);
        const bool full = state.records[type][id - 1].used && count % kPhonebookBatch == 0;
        const bool rest = id == last && count % kPhonebookBatch != 0;
        if (!full && !rest) continue;
        Text<64> line;
        Writer(line).Add("emit phonebook ").Unsigned(type).Add(" stored ").Unsigned(begin).Character(' ').Unsigned(id);
        ScheduleModuleEvent(state.read_ms, line);
        begin = id + 1;
    }
    return count;
}

// --- the verb: what is done to the card elsewhere

void PhonebookVerb(Command& command)
{
    const bool list = command.Take("list");
    const bool deletes = !list && command.Take("delete");
    if (!list && !deletes && !command.Take("write")) {
        const char* word = command.Word("write, delete or list");
        if (!command.Failed()) command.Fail().Add("unknown verb \"phonebook ").Add(word).Add("\"");
        return;
    }
    PhonebookState& state = TheModule().phonebook;
    const ULONG type = static_cast<ULONG>(command.Unsigned("type", kPhonebooks - 1));
    const ULONG id =
        list || command.Failed() ? 0 : static_cast<ULONG>(command.Unsigned("record", state.capacity[type]));
    const char* const number = list || deletes ? "" : command.Word("number");
    const char* const name = command.More() && !list && !deletes ? command.Word("name") : "";
    command.End();
    if (!command.Failed() && !list && id == 0) command.Fail().Add("records count from 1");
    if (!command.Failed() && (Length(number) > state.max_number || Length(name) > state.max_name))
        command.Fail().Add("the number or the name is too long");
    if (command.Failed()) return;
    if (deletes) {
        state.records[type][id - 1] = {};
    } else if (!list) {
        WriteText(state.records[type][id - 1], number, name);
    }
    for (ULONG i = 0; list && i < state.capacity[type]; ++i) {
        const PhonebookRecord& record = state.records[type][i];
        if (!record.used) continue;
        if (command.Reply().Length() > 0) command.Reply().Character('\n');
        command.Reply().Unsigned(i + 1).Character(' ').QuotedOctets(record.number, record.number_length, kNumberRoom);
        command.Reply().Character(' ').QuotedOctets(record.name, record.name_length, kNameRoom);
    }
}

// The phonebook that a client names, or kPhonebooks: the card has one application, that of its network.
static ULONG Named(const BYTE* session_type, const WORD* phonebook_type)
{
    const BYTE session =
        TheModule().connection.umts ? BYTE{GOBI_UIM_SESSION_PRIMARY_GW} : BYTE{GOBI_UIM_SESSION_PRIMARY_1X};
    if (!session_type || !phonebook_type || *session_type != session) return kPhonebooks;
    return *phonebook_type < kPhonebooks ? *phonebook_type : kPhonebooks;
}

} // namespace sim

using namespace sim;

extern "C" ULONG GetPhonebookCapabilities(BYTE* session_type, WORD* phonebook_type, WORD* used, WORD* capacity,
                                          BYTE* max_number, BYTE* max_name)
{
    Call call(EntryPoint::GetPhonebookCapabilities, At(session_type), At(phonebook_type));
    if (const ULONG refused = call.Refused()) return refused;
    const PhonebookState& state = TheModule().phonebook;
    const ULONG type = Named(session_type, phonebook_type);
    if (type == kPhonebooks) return kInvalidArgument;
    call.Put(used, static_cast<WORD>(Used(type)));
    call.Put(capacity, state.capacity[type]);
    call.Put(max_number, call.Told(state.max_number));
    call.Put(max_name, call.Told(state.max_name));
    return call.Done();
}

extern "C" ULONG ReadPhonebookRecords(BYTE* session_type, WORD* phonebook_type, WORD* first, WORD* last, WORD* count)
{
    Call call(EntryPoint::ReadPhonebookRecords, At(session_type), At(phonebook_type), At(first), At(last));
    if (const ULONG refused = call.Refused()) return refused;
    const ULONG type = Named(session_type, phonebook_type);
    if (type == kPhonebooks || !first || !last || !count) return kInvalidArgument;
    if (*first == 0 || *last < *first || *last > TheModule().phonebook.capacity[type]) return kInvalidArgument;
    call.Put(count, call.Told(Announce(type, *first, *last)));
    return call.Done();
}

extern "C" ULONG WritePhonebookRecord(BYTE* session_type, WORD* phonebook_type, WORD* record_id, BYTE* number_type,
                                      BYTE* number_length, BYTE* number, BYTE* name_length, BYTE* name,
                                      BYTE* name_coding)
{
    Call call(EntryPoint::WritePhonebookRecord, At(session_type), At(phonebook_type), At(record_id), At(number_type),
              number && number_length ? CountedText{number, *number_length} : CountedText{},
              name && name_length ? CountedText{name, *name_length} : CountedText{}, At(name_coding));
    if (const ULONG refused = call.Refused()) return refused;
    PhonebookState& state = TheModule().phonebook;
    const ULONG type = Named(session_type, phonebook_type);
    const bool complete = record_id && number_type && number_length && number && name_length && name && name_coding;
    if (type == kPhonebooks || !complete || *record_id > state.capacity[type]) return kInvalidArgument;
    if (*number_length > state.max_number || *name_length > state.max_name) return kInvalidArgument;
    WORD id = *record_id;
    for (WORD free = 1; id == 0 && free <= state.capacity[type]; ++free)
        id = state.records[type][free - 1].used ? id : free;
    if (id == 0) return kNoRoom;
    Write(state.records[type][id - 1], *number_type, number, *number_length, name, *name_length, *name_coding);
    call.Put(record_id, id);
    return call.Done();
}

extern "C" ULONG DeletePhonebookRecord(BYTE* session_type, WORD* phonebook_type, WORD* record_id)
{
    Call call(EntryPoint::DeletePhonebookRecord, At(session_type), At(phonebook_type), At(record_id));
    if (const ULONG refused = call.Refused()) return refused;
    const ULONG type = Named(session_type, phonebook_type);
    if (type == kPhonebooks || !record_id) return kInvalidArgument;
    if (*record_id == 0 || *record_id > TheModule().phonebook.capacity[type]) return kInvalidArgument;
    PhonebookRecord& record = TheModule().phonebook.records[type][*record_id - 1];
    if (!record.used) return kNotFound;
    record = {};
    return call.Done();
}
