// USSD: requests of the client, and the dialogue that may follow.
#include <iterator>

#include "sim/calls.h"
#include "sim/clock.h"
#include "sim/fields.h"
#include "sim/reset.h"

namespace sim {

static constexpr Field kFields[] = {
    NumberField("ussd.open", g_module.ussd.open, 1),
    NumberField("ussd.questions", g_module.ussd.questions),
    NumberField("ussd.answer-ms", g_module.ussd.answer_ms),
    NumberField("ussd.refusal", g_module.ussd.refusal),
    TextField("ussd.reply", g_module.ussd.reply),
    TextField("ussd.next", g_module.ussd.next),
    TextField("ussd.end", g_module.ussd.end),
    OctetsField("ussd.request", g_module.ussd.request),
    OctetsField("ussd.answer", g_module.ussd.answer),
};
const FieldTable kUssdFields = {kFields, std::size(kFields)};

constexpr BYTE kPlain = 0x0F; // the coding of what the network says: GSM 7-bit, a character an octet

void ResetUssd()
{
    UssdState& state = TheModule().ussd;
    state = {};
    state.answer_ms = 100;
    Copy(state.reply, "Credit 12.50");
    Copy(state.next, "1 more, 0 end");
    Copy(state.end, "Goodbye");
}

// At most 160 octets are sent.
static bool Keep(Octets<160>& kept, const USSInfo& info)
{
    if (info.length == 0 || info.length > sizeof(kept.octets)) return false;
    kept.count = info.length;
    memcpy(kept.octets, info.data, info.length);
    return true;
}

} // namespace sim

using namespace sim;

// The reply of the network is the answer; if it asks for more, the dialogue stays open.
extern "C" ULONG OrigUSSD(USSInfo* request, WORD* cause, alphaIDInfo* text, USSInfo* answer, BYTE* result,
                          BYTE* call_id, ccSUPSType* service)
{
    Call call(EntryPoint::OrigUSSD, MemberOf(request, &USSInfo::dcs),
              request ? Bounded(request->data, request->length) : CountedText{});
    if (const ULONG refused = call.Refused()) return refused;
    UssdState& state = TheModule().ussd;
    if (!request || !cause || !text || !answer || !result || !call_id || !service) return kInvalidArgument;
    if (state.open) return kNoEffect;
    if (!Keep(state.request, *request)) return kInvalidArgument;
    USSInfo reply = {};
    const BYTE length = state.refusal ? BYTE{0} : static_cast<BYTE>(Length(state.reply));
    reply.dcs = kPlain;
    reply.length = call.Told(length);
    memcpy(reply.data, state.reply, length);
    call.Put(cause, state.refusal);
    call.PutRecord(answer, reply);
    PutOutcome(call, {text, result, call_id, service}, GOBI_CALL_CONTROL_USSD, {});
    if (state.refusal) return kRefusedByNetwork;
    state.asked = state.questions;
    state.open = state.asked > 0 ? 1 : 0;
    return call.Done();
}

// What the network makes of it comes by an event.
extern "C" ULONG AnsUSSD(USSInfo* answer)
{
    Call call(EntryPoint::AnsUSSD, MemberOf(answer, &USSInfo::dcs),
              answer ? Bounded(answer->data, answer->length) : CountedText{});
    if (const ULONG refused = call.Refused()) return refused;
    UssdState& state = TheModule().ussd;
    if (!answer) return kInvalidArgument;
    if (!state.open) return kNoEffect;
    if (!Keep(state.answer, *answer)) return kInvalidArgument;
    if (state.asked > 0) --state.asked;
    state.open = state.asked > 0 ? 1 : 0;
    char line[kMaxKeptLine];
    Writer(line, sizeof(line))
        .Add("emit ussd ")
        .Unsigned(state.open ? GOBI_USSD_ANSWER : GOBI_USSD_NO_ACTION)
        .Add(" 15 hex ")
        .HexOctets(reinterpret_cast<const BYTE*>(state.open ? state.next.octets : state.end.octets),
                   Length(state.open ? state.next : state.end));
    ScheduleModuleEvent(state.answer_ms, line);
    return call.Done();
}

extern "C" ULONG AbortsUSSD()
{
    Call call(EntryPoint::AbortsUSSD);
    if (const ULONG refused = call.Refused()) return refused;
    if (!TheModule().ussd.open) return kNoEffect;
    TheModule().ussd.open = 0;
    return call.Done();
}
