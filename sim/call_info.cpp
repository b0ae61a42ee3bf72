// What is told of all calls, and of what became of a request.
#include "sim/calls.h"

namespace sim {

static void FillSimText(const Call& call, alphaIDInfo& info)
{
    const auto& text = TheModule().calls.sim_text;
    const BYTE length = static_cast<BYTE>(Length(text));
    memcpy(info.text, text, length);
    info.length = call.Told(length);
}

void PutOutcome(Call& call, const Outcome& out, BYTE result, ccSUPSType service)
{
    alphaIDInfo info = {};
    FillSimText(call, info);
    call.PutRecord(out.text, info);
    call.Put(out.result, result);
    if (out.call_id) call.Put(out.call_id, BYTE{0});
    call.PutRecord(out.service, service);
}

// An array of the vendor's: its count, then `fill(entry, call)` for each call.
template <class Array, class Entry, size_t kRoom, class Fill>
static void PutCalls(Call& call, Array* out, Entry (Array::*entries)[kRoom], Fill fill)
{
    Array array = {};
    BYTE count = 0;
    for (const VoiceCall& one : TheModule().calls.calls) {
        if (one.id == 0) continue;
        Entry& entry = (array.*entries)[count];
        if (!fill(entry, one)) continue;
        entry.callId = one.id;
        ++count;
    }
    array.count = call.Told(count);
    call.PutRecord(out, array);
}

static BYTE CopyNumber(BYTE (&digits)[GOBI_MAX_DIGITS], const VoiceCall& one)
{
    const BYTE length = one.presentation == 0 ? static_cast<BYTE>(Length(one.number)) : BYTE{0};
    memcpy(digits, one.number, length);
    return length;
}

static void FillNumber(const Call& call, peerNumInfo& info, const VoiceCall& one)
{
    info.presentation = one.presentation;
    info.screening = 3; // given by the network
    info.numberType = one.number[0] == '+' ? 1 : 0;
    info.numberPlan = 1; // telephony
    info.length = call.Told(CopyNumber(info.digits, one));
}

// The mode that arrCallInfo knows: 1 CDMA, 2 GSM, 3 UMTS.
static BYTE RadioMode()
{
    if (!TheModule().connection.umts) return 1;
    const auto& interfaces = TheModule().network.interfaces;
    return interfaces.count > 0 && interfaces.values[0][0] == GOBI_RADIO_GSM ? BYTE{2} : BYTE{3};
}

} // namespace sim

using namespace sim;

extern "C" ULONG GetAllCallInfo(arrCallInfo* calls, arrRemotePartyNum* numbers, arrRemotePartyName* names,
                                arrAlertingType* alertings, arrUUSInfo* user_infos, arrSvcOption* options,
                                BYTE* voice_privacy, BYTE* otasp, arrCallEndReason* reasons, arrAlphaIDInfo* texts,
                                arrPeerNumInfo* connected, arrDiagInfo* diagnostics, arrPeerNumInfo* called,
                                arrPeerNumInfo* redirecting, arrAlertingPattern* patterns)
{
    Call call(EntryPoint::GetAllCallInfo);
    if (const ULONG refused = call.Refused()) return refused;
    const CallsState& state = TheModule().calls;
    const BYTE mode = RadioMode();
    const auto none = [](auto&, const VoiceCall&) { return false; };
    PutCalls(call, calls, &arrCallInfo::calls, [&](auto& entry, const VoiceCall& one) {
        entry = {one.id, one.state, one.type, one.direction, mode, one.multiparty, state.line};
        return true;
    });
    PutCalls(call, numbers, &arrRemotePartyNum::numbers, [&](auto& entry, const VoiceCall& one) {
        entry.presentation = one.presentation;
        entry.length = call.Told(CopyNumber(entry.digits, one));
        return true;
    });
    PutCalls(call, names, &arrRemotePartyName::names, none);
    PutCalls(call, alertings, &arrAlertingType::types, [](auto& entry, const VoiceCall& one) {
        entry.type = one.direction == 1 ? 1 : 0; // the network sounds for those that ring elsewhere
        return one.state == GOBI_CALL_ALERTING || one.state == GOBI_CALL_INCOMING || one.state == GOBI_CALL_WAITING;
    });
    PutCalls(call, user_infos, &arrUUSInfo::infos, none);
    PutCalls(call, options, &arrSvcOption::options, [](auto& entry, const VoiceCall& one) {
        entry.option = one.option;
        return one.option != 0;
    });
    call.Put(voice_privacy, state.voice_privacy);
    call.Put(otasp, state.otasp);
    arrCallEndReason ended = {};
    for (ULONG i = 0; i < state.ended_count; ++i) {
        const WORD reason = state.ended[i].reason;
        ended.reasons[i] = {state.ended[i].id, static_cast<BYTE>(reason & 0xFF), static_cast<BYTE>(reason >> 8)};
    }
    ended.count = call.Told(static_cast<BYTE>(state.ended_count));
    call.PutRecord(reasons, ended);
    PutCalls(call, texts, &arrAlphaIDInfo::alphas, [&](auto& entry, const VoiceCall& one) {
        FillSimText(call, entry.alpha);
        return one.direction == 1 && state.sim_text[0] != 0;
    });
    PutCalls(call, connected, &arrPeerNumInfo::numbers, [&](auto& entry, const VoiceCall& one) {
        FillNumber(call, entry.number, one);
        return one.direction == 1 && (one.state == GOBI_CALL_CONVERSATION || one.state == GOBI_CALL_HELD);
    });
    PutCalls(call, diagnostics, &arrDiagInfo::diagnostics, none);
    PutCalls(call, called, &arrPeerNumInfo::numbers, [&](auto& entry, const VoiceCall& one) {
        FillNumber(call, entry.number, one);
        return one.direction == 1;
    });
    PutCalls(call, redirecting, &arrPeerNumInfo::numbers, none);
    PutCalls(call, patterns, &arrAlertingPattern::patterns, none);
    return call.Done();
}
