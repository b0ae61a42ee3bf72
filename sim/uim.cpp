// The card. The entry points of the older service and of the newer one work on the same PINs, as 3GPP TS 102 221 has
// them: a wrong PIN costs an attempt, the PUK replaces a blocked one, and a blocked PUK ends it.
#include <iterator>

#include "sim/call.h"
#include "sim/fields.h"
#include "sim/reset.h"

namespace sim {

constexpr ULONG kPinAttempts = 3;
constexpr ULONG kPukAttempts = 10;
constexpr ULONG kLockAttempts = 10;
constexpr ULONG kNotKnown = 0xFFFFFFFF;
constexpr BYTE kUsim = 2;
constexpr BYTE kCsim = 4;

static constexpr Field kFields[] = {
    NumberField("card.present", g_module.uim.present, 1),
    TextField("card.iccid", g_module.uim.iccid),
    NumberField("card.application", g_module.uim.application),
    OctetsField("card.aid", g_module.uim.aid),
    TextField("pin1.value", g_module.uim.pins[0].value),
    TextField("pin1.puk", g_module.uim.pins[0].puk),
    NumberField("pin1.enabled", g_module.uim.pins[0].enabled, 1),
    NumberField("pin1.verified", g_module.uim.pins[0].verified, 1),
    NumberField("pin1.attempts", g_module.uim.pins[0].attempts),
    NumberField("pin1.puk-attempts", g_module.uim.pins[0].puk_attempts),
    TextField("pin2.value", g_module.uim.pins[1].value),
    TextField("pin2.puk", g_module.uim.pins[1].puk),
    NumberField("pin2.enabled", g_module.uim.pins[1].enabled, 1),
    NumberField("pin2.verified", g_module.uim.pins[1].verified, 1),
    NumberField("pin2.attempts", g_module.uim.pins[1].attempts),
    NumberField("pin2.puk-attempts", g_module.uim.pins[1].puk_attempts),
    ListField("locks.states", g_module.uim.locks, 0, 1),
    TextField("locks.key", g_module.uim.lock_key),
    TextField("locks.unblock-key", g_module.uim.unblock_key),
};
const FieldTable kUimFields = {kFields, std::size(kFields)};

void ResetUim(bool umts)
{
    UimState& uim = TheModule().uim;
    uim = {};
    uim.present = 1;
    Copy(uim.iccid, "89881000000000000018");
    uim.application = umts ? kUsim : kCsim;
    // The registered identifier of the standard's body, then that of the application: 3GPP TS 101 220, annex A.
    constexpr BYTE kUsimAid[] = {0xA0, 0x00, 0x00, 0x00, 0x87, 0x10, 0x02};
    constexpr BYTE kCsimAid[] = {0xA0, 0x00, 0x00, 0x03, 0x43, 0x10, 0x02};
    static_assert(sizeof(kUsimAid) == sizeof(kCsimAid));
    uim.aid.count = sizeof(kUsimAid);
    memcpy(uim.aid.octets, umts ? kUsimAid : kCsimAid, sizeof(kUsimAid));
    for (PinState& pin : uim.pins) {
        pin.attempts = kPinAttempts;
        pin.puk_attempts = kPukAttempts;
    }
    Copy(uim.pins[0].value, "1234");
    Copy(uim.pins[0].puk, "12345678");
    Copy(uim.pins[1].value, "5678");
    Copy(uim.pins[1].puk, "87654321");
    uim.pins[1].enabled = 1;
    for (auto& lock : uim.locks.values) {
        ++uim.locks.count;
        lock[1] = kLockAttempts;
        lock[2] = kLockAttempts;
    }
    Copy(uim.lock_key, "11111111");
    Copy(uim.unblock_key, "22222222");
}

void RestartUim()
{
    for (PinState& pin : TheModule().uim.pins)
        pin.verified = 0;
}

static ULONG StateOf(const PinState& pin)
{
    if (!TheModule().uim.present) return GOBI_PIN_NOT_INITIALISED;
    if (pin.attempts == 0) return pin.puk_attempts == 0 ? GOBI_PIN_PERMANENTLY_BLOCKED : GOBI_PIN_BLOCKED;
    if (!pin.enabled) return GOBI_PIN_DISABLED;
    return pin.verified ? GOBI_PIN_VERIFIED : GOBI_PIN_NOT_VERIFIED;
}

bool CardIsReady()
{
    const ULONG state = StateOf(TheModule().uim.pins[0]);
    return state == GOBI_PIN_VERIFIED || state == GOBI_PIN_DISABLED;
}

// --- what a request does with a PIN
// -----------------------------------------------------------------------------------

static bool Compare(ULONG& attempts, ULONG all, const char* kept, const char* given)
{
    if (Equal(kept, given)) {
        attempts = all;
        return true;
    }
    if (attempts != kNotKnown) --attempts;
    return false;
}

static ULONG Present(PinState& pin, const char* value)
{
    if (pin.attempts == 0) return kPinBlocked;
    if (Compare(pin.attempts, kPinAttempts, pin.value, value)) return kSuccess;
    if (pin.attempts == 0) pin.verified = 0;
    return kWrongPin;
}

static ULONG Verify(PinState& pin, const char* value)
{
    if (pin.attempts > 0 && !pin.enabled) return kNotAllowed;
    if (const ULONG status = Present(pin, value)) return status;
    pin.verified = 1;
    return kSuccess;
}

// Takes the PUK whether or not the PIN is blocked.
static ULONG Unblock(PinState& pin, const char* puk, const char* new_value)
{
    if (pin.puk_attempts == 0) return kPinBlocked;
    if (!Compare(pin.puk_attempts, kPukAttempts, pin.puk, puk)) return kWrongPin;
    Copy(pin.value, new_value);
    pin.attempts = kPinAttempts;
    pin.enabled = 1;
    pin.verified = 1;
    return kSuccess;
}

static ULONG Change(PinState& pin, const char* old_value, const char* new_value)
{
    if (pin.attempts > 0 && !pin.enabled) return kNotAllowed;
    if (const ULONG status = Present(pin, old_value)) return status;
    Copy(pin.value, new_value);
    pin.verified = 1;
    return kSuccess;
}

// PIN2 cannot be switched off.
static ULONG Protect(PinState& pin, BYTE enable, const char* value)
{
    if (&pin == &TheModule().uim.pins[1]) return kNotAllowed;
    if (pin.attempts > 0 && pin.enabled == enable) return kNoEffect;
    if (const ULONG status = Present(pin, value)) return status;
    pin.enabled = enable;
    pin.verified = enable;
    return kSuccess;
}

static PinState* FindPin(ULONG id)
{
    return id == GOBI_PIN1 || id == GOBI_PIN2 ? &TheModule().uim.pins[id - GOBI_PIN1] : nullptr;
}

static bool AreDigits(const char* text, ULONG least, ULONG most)
{
    ULONG length = 0;
    for (; text && text[length] >= '0' && text[length] <= '9' && length <= most; ++length)
        continue;
    return length >= least && length <= most && text[length] == 0;
}
static bool IsPin(const char* text) { return AreDigits(text, 4, GOBI_MAX_PIN); }
static bool IsPuk(const char* text) { return AreDigits(text, GOBI_MAX_PIN, GOBI_MAX_PIN); }

// --- the older service
// ------------------------------------------------------------------------------------------------

// The attempts that are left are told whether the request succeeds or not.
template <class Request>
static ULONG ServePin(Call& call, ULONG id, bool well_formed, ULONG* verify_left, ULONG* unblock_left, Request request)
{
    if (const ULONG refused = call.Refused()) return refused;
    PinState* pin = FindPin(id);
    if (!pin || !well_formed || !verify_left || !unblock_left) return kInvalidArgument;
    if (!TheModule().uim.present) return kNoCard;
    const ULONG status = request(*pin);
    call.Put(verify_left, pin->attempts);
    call.Put(unblock_left, pin->puk_attempts);
    return status;
}

// --- the newer one
// ----------------------------------------------------------------------------------------------------

// Counted digits as a text; an empty one when they are too many.
static Text<GOBI_MAX_PIN + 1> Digits(ULONG length, const BYTE (&digits)[GOBI_MAX_PIN])
{
    Text<GOBI_MAX_PIN + 1> text = {};
    if (length <= GOBI_MAX_PIN) memcpy(text.octets, digits, length);
    return text;
}

// What the journal has of a session: its type and its application identifier.
template <class Session>
static PointedArgument<BYTE> TypeOf(const Session* session)
{
    return MemberOf(session, &Session::sessionType);
}
template <class Session>
static ArrayArgument<BYTE> AidOf(const Session* session)
{
    const ULONG length = session ? session->aidLength : 0;
    return {session ? session->aid : nullptr, length < GOBI_MAX_AID ? length : ULONG{GOBI_MAX_AID}};
}

template <class Session>
static bool IsFor(const Session& session)
{
    const UimState& uim = TheModule().uim;
    switch (session.sessionType) {
    case GOBI_UIM_SESSION_PRIMARY_GW:
        return uim.application != kCsim;
    case GOBI_UIM_SESSION_PRIMARY_1X:
        return uim.application == kCsim;
    case GOBI_UIM_SESSION_BY_AID:
        return session.aidLength == uim.aid.count && memcmp(session.aid, uim.aid.octets, uim.aid.count) == 0;
    default:
        return false;
    }
}

static BYTE Shortened(ULONG count) { return static_cast<BYTE>(count < 255 ? count : 255); }

template <class Session, class Left, class Request>
static ULONG ServeSession(Call& call, const Session* session, ULONG id, bool well_formed, Left* left, Request request)
{
    if (const ULONG refused = call.Refused()) return refused;
    PinState* pin = FindPin(id);
    if (!pin || !well_formed || !session || !left) return kInvalidArgument;
    if (!TheModule().uim.present) return kNoCard;
    if (!IsFor(*session)) return kNotFound;
    const ULONG status = request(*pin);
    call.PutRecord(left, Left{Shortened(pin->attempts), Shortened(pin->puk_attempts)});
    return status;
}

static void DescribeCard(const Call& call, QMI_UIM_GET_CARD_STATUS_RESP& status)
{
    const UimState& uim = TheModule().uim;
    status.cardCount = call.Told(BYTE{1});
    auto& card = status.cards[0];
    card.cardState = uim.present;
    card.applicationCount = call.Told(uim.present);
    if (!uim.present) return;
    auto& application = card.applications[0];
    application.type = uim.application;
    application.aidLength = call.Told(static_cast<BYTE>(uim.aid.count));
    memcpy(application.aid, uim.aid.octets, uim.aid.count);
    application.pin1State = static_cast<BYTE>(StateOf(uim.pins[0]));
    application.pin1VerifyLeft = Shortened(uim.pins[0].attempts);
    application.pin1UnblockLeft = Shortened(uim.pins[0].puk_attempts);
    application.pin2State = static_cast<BYTE>(StateOf(uim.pins[1]));
    application.pin2VerifyLeft = Shortened(uim.pins[1].attempts);
    application.pin2UnblockLeft = Shortened(uim.pins[1].puk_attempts);
    constexpr BYTE kReady = 7;
    constexpr BYTE kStates[] = {0, 2, kReady, kReady, 3, 6}; // by the state of PIN1
    application.state = kStates[application.pin1State];
}

// --- personalisation
// --------------------------------------------------------------------------------------------------

constexpr ULONG kLockBlocked = 2; // else 0 off, 1 on

// The facility's row of the list, or null.
static int32_t* FindLock(ULONG facility)
{
    auto& locks = TheModule().uim.locks;
    return facility < locks.count ? locks.values[facility] : nullptr;
}

// Takes an attempt with a key, of those that are left in `attempts`.
static ULONG PresentKey(int32_t& attempts, const char* kept, const char* key)
{
    if (attempts == 0) return kPinBlocked;
    if (Equal(kept, key)) {
        attempts = kLockAttempts;
        return kSuccess;
    }
    --attempts;
    return kWrongPin;
}

} // namespace sim

using namespace sim;

extern "C" ULONG DMSUIMSetPINProtection(ULONG id, ULONG enable, char* value, ULONG* verify_left, ULONG* unblock_left)
{
    Call call(EntryPoint::DMSUIMSetPINProtection, id, enable, value);
    return ServePin(call, id, enable <= 1 && IsPin(value), verify_left, unblock_left,
                    [&](PinState& pin) { return Protect(pin, enable == 1, value); });
}

extern "C" ULONG DMSUIMVerifyPIN(ULONG id, char* value, ULONG* verify_left, ULONG* unblock_left)
{
    Call call(EntryPoint::DMSUIMVerifyPIN, id, value);
    return ServePin(call, id, IsPin(value), verify_left, unblock_left,
                    [&](PinState& pin) { return Verify(pin, value); });
}

extern "C" ULONG DMSUIMUnblockPIN(ULONG id, char* puk, char* new_value, ULONG* verify_left, ULONG* unblock_left)
{
    Call call(EntryPoint::DMSUIMUnblockPIN, id, puk, new_value);
    return ServePin(call, id, IsPuk(puk) && IsPin(new_value), verify_left, unblock_left,
                    [&](PinState& pin) { return Unblock(pin, puk, new_value); });
}

extern "C" ULONG DMSUIMChangePIN(ULONG id, char* old_value, char* new_value, ULONG* verify_left, ULONG* unblock_left)
{
    Call call(EntryPoint::DMSUIMChangePIN, id, old_value, new_value);
    return ServePin(call, id, IsPin(old_value) && IsPin(new_value), verify_left, unblock_left,
                    [&](PinState& pin) { return Change(pin, old_value, new_value); });
}

// Without a card nothing is known of its PINs.
extern "C" ULONG DMSUIMGetPINStatus(ULONG id, ULONG* status, ULONG* verify_left, ULONG* unblock_left)
{
    Call call(EntryPoint::DMSUIMGetPINStatus, id);
    if (const ULONG refused = call.Refused()) return refused;
    const PinState* pin = FindPin(id);
    if (!pin) return kInvalidArgument;
    const bool known = TheModule().uim.present;
    call.Put(status, StateOf(*pin));
    call.Put(verify_left, known ? pin->attempts : kNotKnown);
    call.Put(unblock_left, known ? pin->puk_attempts : kNotKnown);
    return call.Done();
}

extern "C" ULONG DMSUIMGetICCID(BYTE size, char* iccid)
{
    Call call(EntryPoint::DMSUIMGetICCID, size);
    if (const ULONG refused = call.Refused()) return refused;
    if (!TheModule().uim.present) return kNoCard;
    call.PutText(iccid, size, TheModule().uim.iccid);
    return call.Done();
}

extern "C" ULONG UIMGetCardStatus(int* present, QMI_UIM_GET_CARD_STATUS_RESP* status)
{
    Call call(EntryPoint::UIMGetCardStatus);
    if (const ULONG refused = call.Refused()) return refused;
    QMI_UIM_GET_CARD_STATUS_RESP record = {};
    DescribeCard(call, record);
    call.Put(present, 1);
    call.PutRecord(status, record);
    return call.Done();
}

extern "C" ULONG UIMVerifyPIN(QMI_UIM_VERIFY_PIN_REQ_SESSION_INFORMATION* session,
                              QMI_UIM_VERIFY_PIN_REQ_VERIFY_PIN* request,
                              QMI_UIM_VERIFY_PIN_RESP_RETRIES_REMAINING* left)
{
    const QMI_UIM_VERIFY_PIN_REQ_VERIFY_PIN given = request ? *request : QMI_UIM_VERIFY_PIN_REQ_VERIFY_PIN{};
    const auto value = Digits(given.pinLength, given.pin);
    Call call(EntryPoint::UIMVerifyPIN, TypeOf(session), AidOf(session), given.pinId, value.octets);
    return ServeSession(call, session, given.pinId, IsPin(value), left,
                        [&](PinState& pin) { return Verify(pin, value); });
}

extern "C" ULONG UIMUnblockPIN(QMI_UIM_UNBLOCK_PIN_REQ_SESSION_INFORMATION* session,
                               QMI_UIM_UNBLOCK_PIN_REQ_UNBLOCK_PIN* request,
                               QMI_UIM_UNBLOCK_PIN_RESP_RETRIES_REMAINING* left)
{
    const QMI_UIM_UNBLOCK_PIN_REQ_UNBLOCK_PIN given = request ? *request : QMI_UIM_UNBLOCK_PIN_REQ_UNBLOCK_PIN{};
    const auto puk = Digits(given.pukLength, given.puk);
    const auto new_value = Digits(given.newPinLength, given.newPin);
    Call call(EntryPoint::UIMUnblockPIN, TypeOf(session), AidOf(session), given.pinId, puk.octets, new_value.octets);
    return ServeSession(call, session, given.pinId, IsPuk(puk) && IsPin(new_value), left,
                        [&](PinState& pin) { return Unblock(pin, puk, new_value); });
}

extern "C" ULONG UIMSetPINProtection(QMI_UIM_SET_PIN_PROTECTION_REQ_SESSION_INFORMATION* session,
                                     QMI_UIM_SET_PIN_PROTECTION_REQ_SET_PIN_PROTECTION* request,
                                     QMI_UIM_SET_PIN_PROTECTION_RESP_RETRIES_REMAINING* left)
{
    const auto given = request ? *request : QMI_UIM_SET_PIN_PROTECTION_REQ_SET_PIN_PROTECTION{};
    const auto value = Digits(given.pinLength, given.pin);
    Call call(EntryPoint::UIMSetPINProtection, TypeOf(session), AidOf(session), given.pinId, given.operation,
              value.octets);
    return ServeSession(call, session, given.pinId, given.operation <= 1 && IsPin(value), left,
                        [&](PinState& pin) { return Protect(pin, given.operation, value); });
}

extern "C" ULONG UIMChangePIN(QMI_UIM_CHANGE_PIN_REQ_SESSION_INFORMATION* session,
                              QMI_UIM_CHANGE_PIN_REQ_CHANGE_PIN* request,
                              QMI_UIM_CHANGE_PIN_RESP_RETRIES_REMAINING* left)
{
    const QMI_UIM_CHANGE_PIN_REQ_CHANGE_PIN given = request ? *request : QMI_UIM_CHANGE_PIN_REQ_CHANGE_PIN{};
    const auto old_value = Digits(given.oldPinLength, given.oldPin);
    const auto new_value = Digits(given.newPinLength, given.newPin);
    Call call(EntryPoint::UIMChangePIN, TypeOf(session), AidOf(session), given.pinId, old_value.octets,
              new_value.octets);
    return ServeSession(call, session, given.pinId, IsPin(old_value) && IsPin(new_value), left,
                        [&](PinState& pin) { return Change(pin, old_value, new_value); });
}

extern "C" ULONG DMSUIMGetControlKeyStatus(ULONG facility, ULONG* status, ULONG* verify_left, ULONG* unblock_left)
{
    Call call(EntryPoint::DMSUIMGetControlKeyStatus, facility);
    if (const ULONG refused = call.Refused()) return refused;
    const int32_t* lock = FindLock(facility);
    if (!lock) return kInvalidArgument;
    call.Put(status, lock[1] == 0 ? kLockBlocked : static_cast<ULONG>(lock[0]));
    call.Put(verify_left, static_cast<ULONG>(lock[1]));
    call.Put(unblock_left, static_cast<ULONG>(lock[2]));
    return call.Done();
}

extern "C" ULONG DMSUIMSetControlKeyProtection(ULONG facility, ULONG enable, char* key, ULONG* verify_left)
{
    Call call(EntryPoint::DMSUIMSetControlKeyProtection, facility, enable, key);
    if (const ULONG refused = call.Refused()) return refused;
    int32_t* lock = FindLock(facility);
    if (!lock || enable > 1 || !key || !verify_left) return kInvalidArgument;
    if (lock[1] > 0 && static_cast<ULONG>(lock[0]) == enable) return kNoEffect;
    const ULONG status = PresentKey(lock[1], TheModule().uim.lock_key, key);
    if (status == kSuccess) lock[0] = enable == 1;
    call.Put(verify_left, static_cast<ULONG>(lock[1]));
    return status;
}

extern "C" ULONG DMSUIMUnblockControlKey(ULONG facility, char* key, ULONG* unblock_left)
{
    Call call(EntryPoint::DMSUIMUnblockControlKey, facility, key);
    if (const ULONG refused = call.Refused()) return refused;
    int32_t* lock = FindLock(facility);
    if (!lock || !key || !unblock_left) return kInvalidArgument;
    const ULONG status = PresentKey(lock[2], TheModule().uim.unblock_key, key);
    if (status == kSuccess) lock[1] = kLockAttempts;
    call.Put(unblock_left, static_cast<ULONG>(lock[2]));
    return status;
}
