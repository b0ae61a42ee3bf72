// Voice calls: their lives, from either side, and the entry points.
#include "sim/calls.h"

#include <iterator>

#include "sim/clock.h"
#include "sim/fields.h"
#include "sim/reset.h"
#include "sim/supplementary.h"

namespace sim {

// Reasons of 3GPP TS 24.008, annex H.
constexpr WORD kNormalClearing = 16;
constexpr WORD kUserBusy = 17;
constexpr WORD kCallRejected = 21;
constexpr WORD kNotInThisState = 98;

static constexpr Field kFields[] = {
    NumberField("calls.next-id", g_module.calls.next_id),
    NumberField("calls.line", g_module.calls.line, 1),
    NumberField("calls.answers", g_module.calls.answers, 1),
    NumberField("calls.refusal", g_module.calls.refusal),
    NumberField("calls.report-ms", g_module.calls.report_ms),
    NumberField("calls.alert-ms", g_module.calls.alert_ms),
    NumberField("calls.answer-ms", g_module.calls.answer_ms),
    NumberField("calls.service-option", g_module.calls.service_option),
    NumberField("calls.voice-privacy", g_module.calls.voice_privacy, 1),
    NumberField("calls.otasp", g_module.calls.otasp),
    TextField("calls.keys", g_module.calls.keys),
    TextField("calls.sim-text", g_module.calls.sim_text),
};
const FieldTable kCallsFields = {kFields, std::size(kFields)};

void ResetCalls(bool umts)
{
    CallsState& state = TheModule().calls;
    state = {};
    state.next_id = 1;
    state.answers = 1;
    state.report_ms = 10;
    state.alert_ms = 100;
    state.answer_ms = 200;
    state.service_option = umts ? 0 : 3; // enhanced variable rate codec
}

void AbandonVoice()
{
    for (VoiceCall& one : TheModule().calls.calls)
        one = {};
    TheModule().ussd.open = 0;
}

// --- who is there

// The next call in that state after `after`, or null.
static VoiceCall* NextIn(BYTE state, const VoiceCall* after = nullptr)
{
    VoiceCall* const calls = TheModule().calls.calls;
    for (ULONG i = after ? static_cast<ULONG>(after - calls) + 1 : 0; i < GOBI_MAX_CALLS; ++i) {
        if (calls[i].id != 0 && calls[i].state == state) return &calls[i];
    }
    return nullptr;
}

static VoiceCall* FindCall(ULONG id)
{
    for (VoiceCall& one : TheModule().calls.calls) {
        if (one.id != 0 && one.id == id) return &one;
    }
    return nullptr;
}

static VoiceCall* NewCall()
{
    CallsState& state = TheModule().calls;
    for (VoiceCall& one : state.calls) {
        if (one.id != 0) continue;
        while (state.next_id == 0 || FindCall(state.next_id))
            ++state.next_id;
        one = {};
        one.id = state.next_id++;
        one.option = TheModule().connection.umts ? 0 : state.service_option;
        return &one;
    }
    return nullptr;
}

// --- the events of changes, as many calls in one as a queued line can hold

class Report {
public:
    Report() : m_writer(m_line) {}
    ~Report() { Send(); }

    void Add(const VoiceCall& one, WORD reason = 0)
    {
        constexpr ULONG kLongestCall = 13 + GOBI_MAX_DIGITS + 7;
        if (m_writer.Length() + kLongestCall >= kMaxKeptLine) Send();
        if (m_writer.Length() == 0) m_writer.Add("emit call");
        m_writer.Character(' ').Unsigned(one.id).Character(':').Unsigned(one.state).Character(':').Unsigned(one.type);
        m_writer.Character(':').Add(one.presentation == 0 ? one.number.octets : "withheld");
        if (one.state == GOBI_CALL_ENDED)
            m_writer.Character(':').Unsigned(reason);
        else if (one.option != 0)
            m_writer.Character(':').Unsigned(one.option);
    }

    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;

private:
    void Send()
    {
        if (m_writer.Length() > 0) ScheduleModuleEvent(TheModule().calls.report_ms, m_line);
        m_writer.Clear();
    }

    Text<kMaxKeptLine> m_line = {};
    Writer m_writer;
};

// --- changes

static void MoveTo(VoiceCall& one, BYTE state, Report& report)
{
    one.state = state;
    one.key = 0;
    report.Add(one);
}

static void End(VoiceCall& one, WORD reason, Report& report)
{
    CallsState& state = TheModule().calls;
    memmove(state.ended + 1, state.ended, sizeof(state.ended) - sizeof(state.ended[0]));
    state.ended[0] = {one.id, reason};
    if (state.ended_count < GOBI_MAX_CALLS) ++state.ended_count;
    one.state = GOBI_CALL_ENDED;
    report.Add(one, reason);
    one = {};
}

// What follows from the end of a call: one that is left of a multiparty call is a call like any other, and one that
// waits alone rings.
static void Settle(Report& report)
{
    CallsState& state = TheModule().calls;
    ULONG calls = 0, joined = 0;
    VoiceCall* last_joined = nullptr;
    for (VoiceCall& one : state.calls) {
        if (one.id == 0) continue;
        ++calls;
        if (!one.multiparty) continue;
        ++joined;
        last_joined = &one;
    }
    if (joined == 1) last_joined->multiparty = 0;
    VoiceCall* const waiting = NextIn(GOBI_CALL_WAITING);
    if (waiting && calls == 1) MoveTo(*waiting, GOBI_CALL_INCOMING, report);
}

// Moves all calls of one state but `kept` to another. Returns whether there was one.
static bool MoveAll(BYTE from, BYTE to, Report& report, const VoiceCall* kept = nullptr)
{
    bool any = false;
    for (VoiceCall* one = NextIn(from); one; one = NextIn(from, one)) {
        if (one == kept) continue;
        MoveTo(*one, to, report);
        any = true;
    }
    return any;
}

static bool EndAll(BYTE from, WORD reason, Report& report)
{
    bool any = false;
    for (VoiceCall* one = NextIn(from); one; one = NextIn(from, one)) {
        End(*one, reason, report);
        any = true;
    }
    return any;
}

static bool SomebodyRings() { return NextIn(GOBI_CALL_ORIGINATING) || NextIn(GOBI_CALL_ALERTING); }

// The calls in conversation are held, and those that were held or wait are talked to. False when the network has no
// room for that, or nobody is there.
static bool Swap(Report& report)
{
    const bool talking = NextIn(GOBI_CALL_CONVERSATION);
    const bool held = NextIn(GOBI_CALL_HELD);
    VoiceCall* const waiting = NextIn(GOBI_CALL_WAITING);
    if ((!talking && !held && !waiting) || (talking && held && waiting)) return false;
    VoiceCall* holding[GOBI_MAX_CALLS];
    ULONG count = 0;
    for (VoiceCall* one = NextIn(GOBI_CALL_HELD); one && !waiting; one = NextIn(GOBI_CALL_HELD, one))
        holding[count++] = one;
    MoveAll(GOBI_CALL_CONVERSATION, GOBI_CALL_HELD, report);
    for (ULONG i = 0; i < count; ++i)
        MoveTo(*holding[i], GOBI_CALL_CONVERSATION, report);
    if (waiting) MoveTo(*waiting, GOBI_CALL_CONVERSATION, report);
    return true;
}

static bool Join(Report& report)
{
    if (!NextIn(GOBI_CALL_CONVERSATION) || !NextIn(GOBI_CALL_HELD)) return false;
    MoveAll(GOBI_CALL_HELD, GOBI_CALL_CONVERSATION, report);
    for (VoiceCall* one = NextIn(GOBI_CALL_CONVERSATION); one; one = NextIn(GOBI_CALL_CONVERSATION, one))
        one->multiparty = 1;
    return true;
}

static bool KeepOne(VoiceCall* kept, Report& report)
{
    if (!kept || kept->state != GOBI_CALL_CONVERSATION || !kept->multiparty || NextIn(GOBI_CALL_HELD)) return false;
    kept->multiparty = 0;
    MoveAll(GOBI_CALL_CONVERSATION, GOBI_CALL_HELD, report, kept);
    return true;
}

static bool Manage(BYTE kind, ULONG id, Report& report)
{
    switch (kind) {
    case GOBI_MANAGE_RELEASE_HELD:
        return EndAll(GOBI_CALL_WAITING, kUserBusy, report) || EndAll(GOBI_CALL_HELD, kNormalClearing, report);
    case GOBI_MANAGE_RELEASE_ACTIVE: {
        VoiceCall* const waiting = NextIn(GOBI_CALL_WAITING);
        const bool ended = EndAll(GOBI_CALL_CONVERSATION, kNormalClearing, report);
        if (!waiting) return MoveAll(GOBI_CALL_HELD, GOBI_CALL_CONVERSATION, report) || ended;
        MoveTo(*waiting, GOBI_CALL_CONVERSATION, report);
        return true;
    }
    case GOBI_MANAGE_HOLD_ACTIVE:
        return Swap(report);
    case GOBI_MANAGE_JOIN:
        return Join(report);
    case GOBI_MANAGE_TRANSFER:
        if (!NextIn(GOBI_CALL_CONVERSATION) || !NextIn(GOBI_CALL_HELD)) return false;
        EndAll(GOBI_CALL_CONVERSATION, kNormalClearing, report);
        return EndAll(GOBI_CALL_HELD, kNormalClearing, report);
    case GOBI_MANAGE_RELEASE_ONE: {
        VoiceCall* const one = FindCall(id);
        if (one) End(*one, kNormalClearing, report);
        return one != nullptr;
    }
    default:
        return KeepOne(FindCall(id), report);
    }
}

static bool IsDialable(const BYTE* digits, ULONG count)
{
    if (count < 1 || count > GOBI_MAX_DIGITS) return false; // before anything is read: the length is the caller's
    for (ULONG i = 0; i < count; ++i) {
        const BYTE digit = digits[i];
        const bool known =
            (digit >= '0' && digit <= '9') || digit == '*' || digit == '#' || digit == '+' || digit == 'p';
        if (!known) return false;
    }
    return true;
}

// Why a call cannot be dialled now, or 0.
static ULONG RefusesToDial(bool international)
{
    const NetworkState& network = TheModule().network;
    if (TheModule().power.mode != 0 || network.registration != 1) return kNoNetwork;
    const bool both = NextIn(GOBI_CALL_CONVERSATION) && NextIn(GOBI_CALL_HELD);
    if (both || SomebodyRings() || NextIn(GOBI_CALL_INCOMING) || NextIn(GOBI_CALL_WAITING)) return kRefusedByNetwork;
    return BarsOutgoingCall(international) ? ULONG{kRefusedByNetwork} : kSuccess;
}

// The call begins, and goes on by itself. Calls in conversation are held.
static const VoiceCall* Dial(const BYTE* digits, ULONG count, BYTE type, BYTE clir)
{
    VoiceCall* const one = NewCall();
    if (!one) return nullptr;
    CallsState& state = TheModule().calls;
    Report report;
    MoveAll(GOBI_CALL_CONVERSATION, GOBI_CALL_HELD, report);
    memcpy(one->number.octets, digits, count);
    one->type = type;
    one->clir = clir;
    one->direction = 1;
    MoveTo(*one, GOBI_CALL_ORIGINATING, report);
    Text<32> step;
    Writer(step).Add("call proceeds ").Unsigned(one->id);
    ScheduleModuleEvent(state.alert_ms, step);
    return one;
}

// A call that rings or waits is answered on this side; those in conversation are held.
static ULONG TakeUp(VoiceCall& one, Report& report)
{
    const bool waits = one.state == GOBI_CALL_WAITING;
    if (one.state != GOBI_CALL_INCOMING && !waits) return kNoEffect;
    if (waits && NextIn(GOBI_CALL_CONVERSATION) && NextIn(GOBI_CALL_HELD)) return kRefusedByNetwork;
    MoveAll(GOBI_CALL_CONVERSATION, GOBI_CALL_HELD, report);
    MoveTo(one, GOBI_CALL_CONVERSATION, report);
    return kSuccess;
}

// The next step of a call, if it still takes one: of one that was dialled the other side's, of one that came in this
// side's, as with the button of a headset.
static void Proceed(VoiceCall& one)
{
    const CallsState& state = TheModule().calls;
    Report report;
    if (one.direction != 1) {
        TakeUp(one, report); // refused as the client would be: nothing changes
    } else if (one.state == GOBI_CALL_ORIGINATING && state.refusal != 0) {
        End(one, state.refusal, report);
        Settle(report);
    } else if (one.state == GOBI_CALL_ORIGINATING) {
        MoveTo(one, GOBI_CALL_ALERTING, report);
        if (!state.answers) return;
        Text<32> step;
        Writer(step).Add("call proceeds ").Unsigned(one.id);
        ScheduleModuleEvent(state.answer_ms, step);
    } else if (one.state == GOBI_CALL_ALERTING) {
        MoveTo(one, GOBI_CALL_CONVERSATION, report);
    }
}

// --- the verb

static void AddCall(Writer& reply, const VoiceCall& one)
{
    constexpr const char* kStates[] = {"",         "originating", "incoming", "conversation",  "proceeding",
                                       "alerting", "held",        "waiting",  "disconnecting", "ended"};
    if (reply.Length() > 0) reply.Character('\n');
    reply.Unsigned(one.id).Character(' ').Add(kStates[one.state]).Add(one.direction == 1 ? " to " : " from ");
    reply.Add(one.presentation == 0 ? one.number.octets : "withheld");
    if (one.multiparty) reply.Add(" multiparty");
    if (one.clir == 1) reply.Add(" without the own number");
    if (one.key) reply.Add(" key ").Character(static_cast<char>(one.key));
}

// A call comes in, as far as the network lets it.
static void ComeIn(Command& command)
{
    const char* number = command.Word("number");
    const bool withheld = Equal(number, "withheld");
    const BYTE type = command.More() ? static_cast<BYTE>(command.Unsigned("type", 255)) : BYTE{0};
    command.End();
    if (!command.Failed() && !withheld && !IsDialable(reinterpret_cast<const BYTE*>(number), Length(number)))
        command.Fail().Add("a number has 1 to ").Unsigned(GOBI_MAX_DIGITS).Add(" of 0-9, *, #, + and p");
    if (command.Failed()) return;
    bool alone = true;
    for (const VoiceCall& one : TheModule().calls.calls)
        alone = alone && one.id == 0;
    const bool off = TheModule().power.mode != 0 || TheModule().network.registration != 1;
    const bool busy =
        !alone && (!WaitingIsActive() || NextIn(GOBI_CALL_WAITING) || NextIn(GOBI_CALL_INCOMING) || SomebodyRings());
    if (BarsIncomingCall()) {
        command.Reply().Add("barred");
    } else if (const char* elsewhere = ForwardsIncomingCall(busy, off)) {
        command.Reply().Add("forwarded to ").Add(elsewhere);
    } else if (off) {
        command.Reply().Add("not reachable");
    } else if (VoiceCall* one = busy ? nullptr : NewCall()) {
        Report report;
        if (!withheld) Copy(one->number, number);
        one->presentation = withheld ? 1 : 0;
        one->type = type;
        one->direction = 2;
        MoveTo(*one, alone ? GOBI_CALL_INCOMING : GOBI_CALL_WAITING, report);
        command.Reply().Unsigned(one->id);
    } else {
        command.Reply().Add("busy");
    }
}

// What happens to calls without the client.
void CallVerb(Command& command)
{
    if (command.Take("incoming")) return ComeIn(command);
    const bool list = command.Take("list");
    if (list) {
        command.End();
        if (command.Failed()) return;
        for (const VoiceCall& one : TheModule().calls.calls) {
            if (one.id != 0) AddCall(command.Reply(), one);
        }
        return;
    }
    const bool proceeds = command.Take("proceeds");
    if (!proceeds && !command.Take("ends")) {
        const char* word = command.Word("incoming, proceeds, ends or list");
        if (!command.Failed()) command.Fail().Add("unknown verb \"call ").Add(word).Add("\"");
        return;
    }
    VoiceCall* const one = FindCall(static_cast<ULONG>(command.Unsigned("call", 255)));
    const WORD reason =
        !proceeds && command.More() ? static_cast<WORD>(command.Unsigned("reason", 0xFFFF)) : kNormalClearing;
    command.End();
    if (command.Failed()) return;
    if (!one) { // this side may have ended it meanwhile
        command.Reply().Add("no such call");
    } else if (proceeds) {
        Proceed(*one);
    } else {
        Report report;
        End(*one, reason, report);
        Settle(report);
    }
}

} // namespace sim

using namespace sim;

extern "C" ULONG DialCall(tDialReqParam* request, BYTE* call_id, alphaIDInfo* text, BYTE* result, ccSUPSType* service)
{
    Call call(EntryPoint::DialCall, MemberOf(request, &tDialReqParam::callType),
              MemberOf(request, &tDialReqParam::clir), MemberOf(request, &tDialReqParam::numberType),
              MemberOf(request, &tDialReqParam::numberPlan),
              request ? Bounded(request->number, request->numberLength) : CountedText{nullptr, 0});
    if (const ULONG refused = call.Refused()) return refused;
    if (!request || !call_id || !IsDialable(request->number, request->numberLength) || request->clir > 2)
        return kInvalidArgument;
    PutOutcome(call, {text, result, nullptr, service}, GOBI_CALL_CONTROL_VOICE, {});
    if (const ULONG status = call.Done()) return status;
    const bool international = request->numberType == 1 || request->number[0] == '+';
    if (const ULONG status = RefusesToDial(international)) return status;
    const VoiceCall* one = Dial(request->number, request->numberLength, request->callType, request->clir);
    if (!one) return kNoRoom;
    call.Put(call_id, one->id);
    return call.Done();
}

extern "C" ULONG AnswerCall(BYTE* call_id, BYTE* answered_id)
{
    Call call(EntryPoint::AnswerCall, At(call_id));
    if (const ULONG refused = call.Refused()) return refused;
    if (!call_id || !answered_id) return kInvalidArgument;
    VoiceCall* const one = FindCall(*call_id);
    if (!one) return kNotFound;
    Report report;
    if (const ULONG status = TakeUp(*one, report)) return status;
    call.Put(answered_id, one->id);
    return call.Done();
}

extern "C" ULONG EndCall(BYTE* call_id, BYTE* ended_id)
{
    Call call(EntryPoint::EndCall, At(call_id));
    if (const ULONG refused = call.Refused()) return refused;
    if (!call_id || !ended_id) return kInvalidArgument;
    VoiceCall* const one = FindCall(*call_id);
    if (!one) return kNotFound;
    const bool rings = one->state == GOBI_CALL_INCOMING || one->state == GOBI_CALL_WAITING;
    Report report;
    call.Put(ended_id, one->id);
    End(*one, rings ? kCallRejected : kNormalClearing, report);
    Settle(report);
    return call.Done();
}

// The id is read by the kinds that name one call.
extern "C" ULONG ManageCalls(BYTE* kind, BYTE* call_id, WORD* failure_cause)
{
    Call call(EntryPoint::ManageCalls, At(kind), At(call_id));
    if (const ULONG refused = call.Refused()) return refused;
    if (!kind || !failure_cause || *kind == 0 || *kind > GOBI_MANAGE_HOLD_ALL_BUT_ONE) return kInvalidArgument;
    const bool names_one = *kind >= GOBI_MANAGE_RELEASE_ONE;
    if (names_one && !call_id) return kInvalidArgument;
    Report report;
    const bool done = Manage(*kind, names_one ? *call_id : 0, report);
    Settle(report);
    call.Put(failure_cause, done ? WORD{0} : kNotInThisState);
    return done ? call.Done() : ULONG{kRefusedByNetwork};
}

// Without digits, the calls change places; with some, another call is dialled.
extern "C" ULONG SendFlash(BYTE* call_id, char* digits, BYTE* kind, BYTE* flashed_id)
{
    Call call(EntryPoint::SendFlash, At(call_id), digits, At(kind));
    if (const ULONG refused = call.Refused()) return refused;
    if (!call_id || !kind || !flashed_id) return kInvalidArgument;
    if (TheModule().connection.umts) return kNotSupported;
    const VoiceCall* const one = FindCall(*call_id);
    if (!one) return kNotFound;
    if (one->state != GOBI_CALL_CONVERSATION) return kNoEffect;
    const BYTE flashed = one->id;
    const ULONG length = digits ? BoundedLength(digits, GOBI_MAX_DIGITS + 1) : 0;
    if (length > 0) {
        const BYTE* number = reinterpret_cast<const BYTE*>(digits);
        if (!IsDialable(number, length)) return kInvalidArgument;
        if (const ULONG status = RefusesToDial(digits[0] == '+')) return status;
        if (!Dial(number, length, 0, 0)) return kNoRoom;
    } else {
        Report report;
        if (!Swap(report)) return kRefusedByNetwork;
    }
    call.Put(flashed_id, flashed);
    return call.Done();
}

extern "C" ULONG StartContDTMF(BYTE* call_id, BYTE* key, BYTE* started_id)
{
    Call call(EntryPoint::StartContDTMF, At(call_id), CountedText{key, 1});
    if (const ULONG refused = call.Refused()) return refused;
    if (!call_id || !key || !started_id) return kInvalidArgument;
    const BYTE tone = *key;
    const bool known = (tone >= '0' && tone <= '9') || tone == '*' || tone == '#' || (tone >= 'A' && tone <= 'D');
    if (!known) return kInvalidArgument;
    VoiceCall* const one = FindCall(*call_id);
    if (!one) return kNotFound;
    if (one->state != GOBI_CALL_CONVERSATION || one->key != 0) return kNoEffect;
    one->key = tone;
    auto& keys = TheModule().calls.keys;
    const ULONG length = Length(keys);
    const bool full = length + 1 == keys.Room();
    if (full) memmove(keys.octets, keys.octets + 1, length);
    const ULONG end = full ? length - 1 : length;
    keys.octets[end] = static_cast<char>(tone);
    keys.octets[end + 1] = 0;
    call.Put(started_id, one->id);
    return call.Done();
}

extern "C" ULONG StopContDTMF(BYTE* call_id, BYTE* stopped_id)
{
    Call call(EntryPoint::StopContDTMF, At(call_id));
    if (const ULONG refused = call.Refused()) return refused;
    if (!call_id || !stopped_id) return kInvalidArgument;
    VoiceCall* const one = FindCall(*call_id);
    if (!one) return kNotFound;
    if (one->key == 0) return kNoEffect;
    one->key = 0;
    call.Put(stopped_id, one->id);
    return call.Done();
}
