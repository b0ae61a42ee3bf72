// The PINs of the SIM.

#include <string.h>

#include "api/OrvError.h"
#include "api/admission.h"
#include "state/globals.h"
#include "talvek/gsm_sim.h"
#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKGsm.cpp");

constexpr ULONG kPin1 = 1;
constexpr ULONG kPin2 = 2;

constexpr ULONG kNotKnown = 0xFFFFFFFF; // of attempts

// Statuses of the vendor library.
constexpr ULONG kWrongPassword = 1012;
constexpr ULONG kBlocked = 1035;
constexpr ULONG kNotAllowed = 1082;

struct PinStatus {
    ULONG status = 0; // GOBI_PIN_...
    ULONG verify_left = 0;
    ULONG unblock_left = 0;
};

ULONG ReadPinStatus(ULONG pin, PinStatus* given)
{
    return Gobi().DMSUIMGetPINStatus(pin, &given->status, &given->verify_left, &given->unblock_left);
}

// A password of a client's record as the vendor library takes it: terminated, in room of its own, which is wiped.
class Password {
public:
    explicit Password(const char (&field)[ORV_SIM_PASSWORD_SIZE])
    {
        const void* const end = memchr(field, 0, sizeof(field));
        const size_t length = end ? static_cast<size_t>(static_cast<const char*>(end) - field) : sizeof(field);
        memcpy(m_text, field, length);
        m_text[length] = '\0';
    }
    ~Password()
    {
        for (volatile char& character : m_text) // or the compiler would leave it out
            character = '\0';
    }
    Password(const Password&) = delete;
    Password& operator=(const Password&) = delete;

    bool IsEmpty() const { return m_text[0] == '\0'; }
    char* Text() { return m_text; }

private:
    char m_text[ORV_SIM_PASSWORD_SIZE + 1];
};

// The code for the client's record, from the vendor's own status.
ULONG CmeError(ULONG status)
{
    switch (status) {
    case kWrongPassword:
        return ORV_CME_INCORRECT_PASSWORD;
    case kBlocked:
        return g_PinType == kPin1 ? ORV_CME_SIM_PUK_REQUIRED : ORV_CME_SIM_PUK2_REQUIRED;
    case kNotAllowed:
        return ORV_CME_OPERATION_NOT_ALLOWED;
    default:
        return ORV_CME_UNKNOWN;
    }
}

// The lock is always that of PIN1, and its codes do not tell what is not allowed.
ULONG LockCmeError(ULONG status)
{
    switch (status) {
    case kWrongPassword:
        return ORV_CME_INCORRECT_PASSWORD;
    case kBlocked:
        return ORV_CME_SIM_PUK_REQUIRED;
    default:
        return ORV_CME_UNKNOWN;
    }
}

void WorkOnPin(ULONG pin)
{
    if (g_PinType == pin) return;
    g_PinType = pin;
    LOG_C("OrvSetSimPasswordGobi: PIN TYPE changed to %ld", pin);
}

// What the card waits for while the PIN that is worked on has that status.
ULONG SimState(ULONG status)
{
    const bool pin2 = g_PinType == kPin2;
    switch (status) {
    case GOBI_PIN_NOT_INITIALISED:
    case GOBI_PIN_VERIFIED:
    case GOBI_PIN_DISABLED:
        return ORV_SIM_STATE_READY;
    case GOBI_PIN_NOT_VERIFIED:
        return pin2 ? ORV_SIM_STATE_PIN2_REQUIRED : ORV_SIM_STATE_PIN_REQUIRED;
    case GOBI_PIN_BLOCKED:
        return pin2 ? ORV_SIM_STATE_PUK2_REQUIRED : ORV_SIM_STATE_PUK_REQUIRED;
    default:
        return ORV_SIM_STATE_UNKNOWN;
    }
}

ORV_RCODE OlderForm()
{
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_NOT_AVAILABLE)) return refused;
    return ORV_RCODE_UNSUPPORTED;
}

} // namespace

ORV_RCODE ORV_CALL OrvGetPinStatus(ULONG kind, BYTE* retries)
{
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_NOT_AVAILABLE)) return refused;
    if (!retries || kind > ORV_PIN_KIND_PUK2) return ORV_RCODE_BAD_PARAMETER;
    const bool second = kind == ORV_PIN_KIND_PIN2 || kind == ORV_PIN_KIND_PUK2;
    PinStatus pin;
    const ORV_RCODE result = ConvertGobiError2OrvRcode(ReadPinStatus(second ? kPin2 : kPin1, &pin));
    if (result != ORV_RCODE_OK) {
        LOG_C("OrvGetPinStatus failed with error code rc = %d", result);
        return result;
    }
    if (pin.verify_left == kNotKnown) return ORV_RCODE_UNKNOWN; // for the PUKs too, whatever their own count says
    const bool puk = kind == ORV_PIN_KIND_PUK1 || kind == ORV_PIN_KIND_PUK2;
    *retries = static_cast<BYTE>(puk ? pin.unblock_left : pin.verify_left);
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvGetSimLockGobi(OrvSimLockRecord* record)
{
    if (const ORV_RCODE refused = RequireDetected()) return refused;
    if (!record) return ORV_RCODE_BAD_PARAMETER;
    PinStatus pin;
    const ORV_RCODE result = ConvertGobiError2OrvRcode(ReadPinStatus(kPin1, &pin));
    if (result != ORV_RCODE_OK) {
        LOG_C("OrvGetSimLockGobi failed with error code rc = %d", result);
        return result;
    }
    switch (pin.status) {
    case GOBI_PIN_NOT_VERIFIED:
    case GOBI_PIN_VERIFIED:
    case GOBI_PIN_BLOCKED:
    case GOBI_PIN_PERMANENTLY_BLOCKED:
        record->bLocked = 1;
        break;
    case GOBI_PIN_NOT_INITIALISED:
    case GOBI_PIN_DISABLED:
        record->bLocked = 0;
        break;
    default:
        break; // nothing is known of the protection then
    }
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvSetSimLockGobi(OrvSimLockRecord* record)
{
    if (const ORV_RCODE refused = RequireDetected()) return refused;
    if (!record) return ORV_RCODE_BAD_PARAMETER;
    Password pin(record->szPassword);
    ULONG verify_left = 0, unblock_left = 0;
    const ULONG status =
        Gobi().DMSUIMSetPINProtection(kPin1, record->bLocked != 0, pin.Text(), &verify_left, &unblock_left);
    const ORV_RCODE result = ConvertGobiError2OrvRcode(status);
    if (result != ORV_RCODE_OK) {
        LOG_C("OrvSetSimLockGobi failed with error code rc = %d", result);
        record->dwCmeError = LockCmeError(status);
    }
    return result;
}

ORV_RCODE ORV_CALL OrvSetSimPasswordGobi(OrvSimPasswordRecord* record)
{
    if (const ORV_RCODE refused = RequireDetected()) return refused;
    if (!record) return ORV_RCODE_BAD_PARAMETER;
    TBD_ASSERT(record->dwFacility && NUM_LOCKFACILITIES > record->dwFacility,
               "ASSERTION FAILURE: ===>pSim->dwFacility && NUM_LOCKFACILITIES > pSim->dwFacility");
    Password old_password(record->szOldPassword);
    Password new_password(record->szNewPassword);
    if (old_password.IsEmpty() || new_password.IsEmpty()) return ORV_RCODE_BAD_PARAMETER;

    const ULONG type = record->dwPasswordType;
    ULONG verify_left = 0, unblock_left = 0;
    ULONG status = 0;
    switch (type) {
    case ORV_PASSWORD_CHANGE_PIN1:
    case ORV_PASSWORD_CHANGE_PIN2:
        WorkOnPin(type == ORV_PASSWORD_CHANGE_PIN1 ? kPin1 : kPin2);
        status =
            Gobi().DMSUIMChangePIN(g_PinType, old_password.Text(), new_password.Text(), &verify_left, &unblock_left);
        break;
    case ORV_PASSWORD_UNBLOCK_PIN1:
    case ORV_PASSWORD_UNBLOCK_PIN2:
        WorkOnPin(type == ORV_PASSWORD_UNBLOCK_PIN1 ? kPin1 : kPin2);
        status =
            Gobi().DMSUIMUnblockPIN(g_PinType, old_password.Text(), new_password.Text(), &verify_left, &unblock_left);
        break;
    default:
        record->dwCmeError = ORV_CME_UNKNOWN;
        return ORV_RCODE_FAILED;
    }
    if (status != 0) record->dwCmeError = CmeError(status);
    return ConvertGobiError2OrvRcode(status);
}

ORV_RCODE ORV_CALL OrvGetSimVerifyGobi(ULONG* state)
{
    if (const ORV_RCODE refused = RequireDetected()) return refused;
    if (!state) return ORV_RCODE_BAD_PARAMETER;
    PinStatus pin;
    const ORV_RCODE result = ConvertGobiError2OrvRcode(ReadPinStatus(g_PinType, &pin));
    if (result != ORV_RCODE_OK) {
        LOG_C("OrvGetPinStatus failed with error code rc = %d", result); // the text names the other function
        return result;
    }
    LOG_C("OrvGetSimVerifyGobi: Pin Num = %ld, PinStatus = %ld, Pin Retry = %ld, Unblock Retry = %ld", g_PinType.Load(),
          pin.status, pin.verify_left, pin.unblock_left);
    *state = SimState(pin.status);
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvSetSimVerifyGobi(OrvSimVerifyRecord* record)
{
    if (const ORV_RCODE refused = RequireDetected()) return refused;
    if (!record) return ORV_RCODE_BAD_PARAMETER;
    Password password(record->szPassword);
    Password new_password(record->szNewPassword);
    const ULONG pin = g_PinType;
    ULONG verify_left = 0, unblock_left = 0;
    const ULONG status =
        new_password.IsEmpty()
            ? Gobi().DMSUIMVerifyPIN(pin, password.Text(), &verify_left, &unblock_left)
            : Gobi().DMSUIMUnblockPIN(pin, password.Text(), new_password.Text(), &verify_left, &unblock_left);
    LOG_C("OrvSetSimVerifyGobi: Pin Num = %ld, Gobi return code = %ld, Pin Retry = %ld, Unblock Retry = %ld", pin,
          status, verify_left, unblock_left);
    const ORV_RCODE result = ConvertGobiError2OrvRcode(status);
    if (result != ORV_RCODE_OK) {
        LOG_C("OrvSetSimVerifyGobi failed with error code rc = %d", result);
        record->dwCmeError = CmeError(status);
    }
    return result;
}

ORV_RCODE ORV_CALL OrvGetSimLock(OrvSimLockRecord*) { return OlderForm(); }

ORV_RCODE ORV_CALL OrvSetSimLock(OrvSimLockRecord*) { return OlderForm(); }

ORV_RCODE ORV_CALL OrvSetSimPassword(OrvSimPasswordRecord*) { return OlderForm(); }
