// Supplementary services: line identification, forwarding, barring and waiting, which the network keeps.
#include "sim/supplementary.h"

#include <iterator>

#include "sim/calls.h"
#include "sim/fields.h"
#include "sim/inputs.h"
#include "sim/reset.h"

namespace sim {

static constexpr Field kFields[] = {
    NumberField("sups.clir", g_module.supplementary.clir, 2),
    NumberField("sups.clir-provision", g_module.supplementary.clir_provision, 4),
    NumberField("sups.clip", g_module.supplementary.clip, 1),
    NumberField("sups.colp", g_module.supplementary.colp, 1),
    NumberField("sups.colr", g_module.supplementary.colr, 1),
    NumberField("sups.classes", g_module.supplementary.classes),
    NumberField("sups.waiting", g_module.supplementary.waiting),
    NumberField("sups.bar-outgoing", g_module.supplementary.barring[0]),
    NumberField("sups.bar-international", g_module.supplementary.barring[1]),
    NumberField("sups.bar-international-except-home", g_module.supplementary.barring[2]),
    NumberField("sups.bar-incoming", g_module.supplementary.barring[3]),
    NumberField("sups.bar-incoming-roaming", g_module.supplementary.barring[4]),
    TextField("sups.password", g_module.supplementary.password),
    NumberField("sups.attempts", g_module.supplementary.attempts),
    NumberField("sups.refusal", g_module.supplementary.refusal),
};
const FieldTable kSupplementaryFields = {kFields, std::size(kFields)};

void ResetSupplementary()
{
    SupplementaryState& state = TheModule().supplementary;
    state = {};
    state.clir_provision = 4; // presentation allowed, call by call
    state.clip = 1;
    state.classes = GOBI_CLASS_VOICE | GOBI_CLASS_DATA | GOBI_CLASS_FAX | GOBI_CLASS_SMS;
    state.waiting = GOBI_CLASS_VOICE;
    Copy(state.password, "0000");
}

// Causes: the operation errors of 3GPP TS 24.080, 4.5.
constexpr WORD kIllegalOperation = 16;
constexpr WORD kWrongStatus = 17; // nothing is registered that could be activated
constexpr WORD kPasswordNotRegistered = 37;
constexpr WORD kPasswordWrong = 38;
constexpr WORD kTooManyPasswords = 43;

constexpr BYTE kInterrogate = 5; // beside GOBI_SUPS_ACTIVATE and following
constexpr BYTE kMaxAttempts = 3;

// A service with its own code, or a group of such: `count` rows from `first` on.
struct Group {
    BYTE code;
    BYTE first, count;
};
constexpr Group kForwardingGroups[] = {{GOBI_SUPS_FORWARD_ALL, 0, 4},      {GOBI_SUPS_FORWARD_CONDITIONAL, 1, 3},
                                       {GOBI_SUPS_FORWARD_ALWAYS, 0, 1},   {GOBI_SUPS_FORWARD_BUSY, 1, 1},
                                       {GOBI_SUPS_FORWARD_NO_REPLY, 2, 1}, {GOBI_SUPS_FORWARD_UNREACHABLE, 3, 1}};
constexpr Group kBarringGroups[] = {{GOBI_SUPS_BAR_ALL, 0, 5},
                                    {GOBI_SUPS_BAR_OUTGOING, 0, 1},
                                    {GOBI_SUPS_BAR_OUTGOING_INTERNATIONAL, 1, 1},
                                    {GOBI_SUPS_BAR_OUTGOING_EXCEPT_HOME, 2, 1},
                                    {GOBI_SUPS_BAR_INCOMING, 3, 1},
                                    {GOBI_SUPS_BAR_INCOMING_ROAMING, 4, 1}};

template <size_t kCount>
static const Group* FindGroup(const Group (&groups)[kCount], BYTE code)
{
    for (const Group& group : groups) {
        if (group.code == code) return &group;
    }
    return nullptr;
}

static BYTE ClassesOf(BYTE service_class) { return service_class ? service_class : TheModule().supplementary.classes; }

// --- what they do to calls

bool BarsOutgoingCall(bool international)
{
    const BYTE(&barring)[kBarrings] = TheModule().supplementary.barring;
    const BYTE bars = international ? barring[0] | barring[1] | barring[2] : barring[0];
    return (bars & GOBI_CLASS_VOICE) != 0;
}

bool BarsIncomingCall()
{
    const BYTE(&barring)[kBarrings] = TheModule().supplementary.barring;
    const bool roams = TheModule().network.roaming == 0;
    const BYTE bars = roams ? barring[3] | barring[4] : barring[3];
    return (bars & GOBI_CLASS_VOICE) != 0;
}

bool WaitingIsActive() { return (TheModule().supplementary.waiting & GOBI_CLASS_VOICE) != 0; }

const char* ForwardsIncomingCall(bool busy, bool off)
{
    const auto& forwarding = TheModule().supplementary.forwarding; // class 0 is voice
    const bool applies[kForwardings] = {true, busy, false, off};
    for (ULONG i = 0; i < kForwardings; ++i) {
        if (applies[i] && forwarding[i][0].active) return forwarding[i][0].number;
    }
    return nullptr;
}

// --- requests: each gives a cause, 0 for success

static WORD CheckPassword(const BYTE (&password)[4])
{
    SupplementaryState& state = TheModule().supplementary;
    if (state.attempts >= kMaxAttempts) return kTooManyPasswords;
    if (memcmp(password, state.password, sizeof(password)) != 0) {
        ++state.attempts;
        return kPasswordWrong;
    }
    state.attempts = 0;
    return 0;
}

static void SetClasses(BYTE& kept, BYTE classes, bool on)
{
    kept = static_cast<BYTE>(on ? kept | classes : kept & ~classes);
}

static WORD SetForwarding(const voiceSetSUPSServiceReq& request, const Group& group)
{
    const BYTE classes = ClassesOf(request.serviceClass);
    const bool registers = request.action == GOBI_SUPS_REGISTER;
    const bool activates = request.action == GOBI_SUPS_ACTIVATE;
    if (registers && request.numberLength == 0) return kIllegalOperation;
    for (ULONG i = group.first; i < ULONG{group.first} + group.count; ++i) {
        for (ULONG bit = 0; bit < kClasses && activates; ++bit) {
            const Forwarding& kept = TheModule().supplementary.forwarding[i][bit];
            if ((classes >> bit & 1) && !kept.registered) return kWrongStatus;
        }
    }
    for (ULONG i = group.first; i < ULONG{group.first} + group.count; ++i) {
        for (ULONG bit = 0; bit < kClasses; ++bit) {
            if (!(classes >> bit & 1)) continue;
            Forwarding& kept = TheModule().supplementary.forwarding[i][bit];
            if (request.action == GOBI_SUPS_ERASE) {
                kept = {};
                continue;
            }
            kept.active = registers || activates ? 1 : 0;
            if (!registers) continue;
            kept = {1, 1, request.noReplySeconds, request.numberType, request.numberPlan, {}};
            memcpy(kept.number.octets, request.number, request.numberLength);
        }
    }
    return 0;
}

static WORD SetBarring(const voiceSetSUPSServiceReq& request, const Group& group)
{
    const bool on = request.action == GOBI_SUPS_ACTIVATE;
    if ((!on && request.action != GOBI_SUPS_DEACTIVATE) || (on && group.count > 1)) return kIllegalOperation;
    if (const WORD cause = CheckPassword(request.password)) return cause;
    for (ULONG i = 0; i < kBarrings; ++i) {
        const bool is_member = i >= group.first && i < ULONG{group.first} + group.count;
        if (is_member) SetClasses(TheModule().supplementary.barring[i], ClassesOf(request.serviceClass), on);
    }
    return 0;
}

static WORD SetOther(const voiceSetSUPSServiceReq& request)
{
    SupplementaryState& state = TheModule().supplementary;
    const bool on = request.action == GOBI_SUPS_ACTIVATE;
    if (!on && request.action != GOBI_SUPS_DEACTIVATE) return kIllegalOperation;
    switch (request.reason) {
    case GOBI_SUPS_CLIP:
        state.clip = on;
        return 0;
    case GOBI_SUPS_CLIR:
        state.clir = on ? 1 : 2;
        return 0;
    case GOBI_SUPS_COLP:
        state.colp = on;
        return 0;
    case GOBI_SUPS_COLR:
        state.colr = on;
        return 0;
    default:
        SetClasses(state.waiting, ClassesOf(request.serviceClass), on);
        return 0;
    }
}

static bool IsKnown(BYTE reason)
{
    return reason == GOBI_SUPS_WAITING || (reason >= GOBI_SUPS_CLIP && reason <= GOBI_SUPS_COLR) ||
           FindGroup(kForwardingGroups, reason) || FindGroup(kBarringGroups, reason);
}

// Forwards on no reply after 5 to 30 seconds in steps of 5, or as the network has it.
static bool IsWellFormed(const voiceSetSUPSServiceReq& request)
{
    return IsKnown(request.reason) && request.action >= GOBI_SUPS_ACTIVATE && request.action <= GOBI_SUPS_ERASE &&
           request.numberLength <= GOBI_MAX_DIGITS && request.noReplySeconds <= 30 && request.noReplySeconds % 5 == 0;
}

static WORD SetService(const voiceSetSUPSServiceReq& request)
{
    if (const Group* group = FindGroup(kForwardingGroups, request.reason)) return SetForwarding(request, *group);
    if (const Group* group = FindGroup(kBarringGroups, request.reason)) return SetBarring(request, *group);
    return SetOther(request);
}

// --- the outputs that requests have in common

template <class Cause>
static ULONG Finish(Call& call, Cause* out_cause, const Outcome& out, BYTE action, BYTE reason, WORD cause)
{
    call.Put(out_cause, static_cast<Cause>(cause));
    PutOutcome(call, out, GOBI_CALL_CONTROL_SUPS, {action, reason});
    if (const ULONG status = call.Done()) return status;
    return cause == 0 ? kSuccess : kRefusedByNetwork;
}

static bool Lacks(const Outcome& out, const void* cause)
{
    return !out.text || !out.result || !out.call_id || !out.service || !cause;
}

// Why nothing can be asked of the network, or 0.
static WORD Refusal() { return TheModule().supplementary.refusal; }

} // namespace sim

using namespace sim;

extern "C" ULONG SetSupsService(voiceSetSUPSServiceReq* request, WORD* cause, alphaIDInfo* text, BYTE* result,
                                BYTE* call_id, ccSUPSType* service)
{
    using Request = voiceSetSUPSServiceReq;
    Call call(EntryPoint::SetSupsService, MemberOf(request, &Request::action), MemberOf(request, &Request::reason),
              MemberOf(request, &Request::serviceClass), request ? Bounded(request->password, 4) : CountedText{},
              MemberOf(request, &Request::noReplySeconds), MemberOf(request, &Request::numberType),
              MemberOf(request, &Request::numberPlan),
              request ? Bounded(request->number, request->numberLength) : CountedText{});
    if (const ULONG refused = call.Refused()) return refused;
    const Outcome out = {text, result, call_id, service};
    if (!request || Lacks(out, cause) || !IsWellFormed(*request)) return kInvalidArgument;
    const WORD refusal = Refusal();
    return Finish(call, cause, out, request->action, request->reason, refusal ? refusal : SetService(*request));
}

extern "C" ULONG GetCLIR(statusResp* status, WORD* cause, alphaIDInfo* text, BYTE* result, BYTE* call_id,
                         ccSUPSType* service)
{
    Call call(EntryPoint::GetCLIR);
    if (const ULONG refused = call.Refused()) return refused;
    const SupplementaryState& state = TheModule().supplementary;
    call.PutRecord(status, {state.clir, state.clir_provision});
    return Finish(call, cause, {text, result, call_id, service}, kInterrogate, GOBI_SUPS_CLIR, Refusal());
}

extern "C" ULONG GetCallWaiting(BYTE* service_class, BYTE* active, WORD* cause, alphaIDInfo* text, BYTE* result,
                                BYTE* call_id, ccSUPSType* service)
{
    Call call(EntryPoint::GetCallWaiting, At(service_class));
    if (const ULONG refused = call.Refused()) return refused;
    if (!service_class) return kInvalidArgument;
    const BYTE classes = ClassesOf(*service_class);
    call.Put(active, static_cast<BYTE>(TheModule().supplementary.waiting & classes));
    return Finish(call, cause, {text, result, call_id, service}, kInterrogate, GOBI_SUPS_WAITING, Refusal());
}

extern "C" ULONG GetCallBarring(BYTE* reason, BYTE* service_class, BYTE* active, WORD* cause, alphaIDInfo* text,
                                BYTE* result, BYTE* call_id, ccSUPSType* service)
{
    Call call(EntryPoint::GetCallBarring, At(reason), At(service_class));
    if (const ULONG refused = call.Refused()) return refused;
    const Group* const group = reason ? FindGroup(kBarringGroups, *reason) : nullptr;
    if (!group || !service_class) return kInvalidArgument;
    BYTE bars = 0;
    for (ULONG i = group->first; i < ULONG{group->first} + group->count; ++i)
        bars |= TheModule().supplementary.barring[i];
    call.Put(active, static_cast<BYTE>(bars & ClassesOf(*service_class)));
    return Finish(call, cause, {text, result, call_id, service}, kInterrogate, *reason, Refusal());
}

// One entry a class that has a number; if none has, one that says so.
extern "C" ULONG GetCallForwarding(BYTE* reason, BYTE* service_class, getCallFWInfo* info, BYTE* cause,
                                   alphaIDInfo* text, BYTE* result, BYTE* call_id, ccSUPSType* service,
                                   getExtCallFWInfo* extended)
{
    Call call(EntryPoint::GetCallForwarding, At(reason), At(service_class));
    if (const ULONG refused = call.Refused()) return refused;
    const Group* const group = reason ? FindGroup(kForwardingGroups, *reason) : nullptr;
    if (!group || group->count != 1 || !service_class) return kInvalidArgument;
    const BYTE classes = ClassesOf(*service_class);
    getCallFWInfo plain = {};
    getExtCallFWInfo full = {};
    BYTE count = 0;
    for (ULONG bit = 0; bit < kClasses; ++bit) {
        const Forwarding& kept = TheModule().supplementary.forwarding[group->first][bit];
        if (!(classes >> bit & 1) || !kept.registered) continue;
        const BYTE length = static_cast<BYTE>(Length(kept.number));
        auto& one = plain.entries[count];
        one = {kept.active, static_cast<BYTE>(1u << bit), kept.no_reply_seconds, call.Told(length), {}};
        memcpy(one.number, kept.number, length);
        auto& same = full.entries[count];
        same.active = one.active;
        same.serviceClass = one.serviceClass;
        same.noReplySeconds = one.noReplySeconds;
        same.number = {0, 0, kept.number_type, kept.number_plan, one.numberLength, {}};
        memcpy(same.number.digits, kept.number, length);
        ++count;
    }
    if (count == 0) {
        plain.entries[0].serviceClass = full.entries[0].serviceClass = classes;
        count = 1;
    }
    plain.count = full.count = call.Told(count);
    call.PutRecord(info, plain);
    call.PutRecord(extended, full);
    return Finish(call, cause, {text, result, call_id, service}, kInterrogate, *reason, Refusal());
}

extern "C" ULONG SetCallBarringPassword(callBarringPwd* change, WORD* cause, alphaIDInfo* text, BYTE* result,
                                        BYTE* call_id, ccSUPSType* service)
{
    Call call(EntryPoint::SetCallBarringPassword, MemberOf(change, &callBarringPwd::reason),
              change ? Bounded(change->oldPassword, 4) : CountedText{},
              change ? Bounded(change->newPassword, 4) : CountedText{},
              change ? Bounded(change->newPasswordAgain, 4) : CountedText{});
    if (const ULONG refused = call.Refused()) return refused;
    const Outcome out = {text, result, call_id, service};
    if (!change || Lacks(out, cause) || !FindGroup(kBarringGroups, change->reason)) return kInvalidArgument;
    const char* const wanted = reinterpret_cast<const char*>(change->newPassword);
    WORD outcome = Refusal();
    if (outcome == 0) outcome = CheckPassword(change->oldPassword);
    const bool same = memcmp(change->newPassword, change->newPasswordAgain, 4) == 0;
    if (outcome == 0 && (!same || !AreDigits(wanted, 4))) outcome = kPasswordNotRegistered;
    if (outcome == 0) memcpy(TheModule().supplementary.password.octets, wanted, 4);
    return Finish(call, cause, out, GOBI_SUPS_REGISTER, change->reason, outcome);
}
