// What a CDMA module is provisioned with, the code that guards it, and its activation.
#include <iterator>

#include "sim/call.h"
#include "sim/clock.h"
#include "sim/fields.h"
#include "sim/inputs.h"
#include "sim/progress.h"
#include "sim/provisioning.h"
#include "sim/reset.h"
#include "sim/settings.h"

namespace sim {

static constexpr Field kFields[] = {
    TextField("cdma.spc", g_module.cdma.spc),
    NumberField("cdma.spc-attempts", g_module.cdma.spc_attempts),
    NumberField("cdma.slot-cycle-index", g_module.cdma.slot_cycle_index),
    NumberField("cdma.station-class-mark", g_module.cdma.station_class_mark),
    NumberField("cdma.home-only", g_module.cdma.home_only),
    NumberField("cdma.sid-registration", g_module.cdma.sid_registration),
    NumberField("cdma.nid-registration", g_module.cdma.nid_registration),
    NumberField("cdma.force-rev0", g_module.cdma.force_rev0),
    NumberField("cdma.custom-scp", g_module.cdma.custom_scp),
    NumberField("cdma.protocol", g_module.cdma.protocol),
    NumberField("cdma.broadcast", g_module.cdma.broadcast),
    NumberField("cdma.application", g_module.cdma.application),
    NumberField("cdma.roaming", g_module.cdma.roaming),
    NumberField("cdma.accolc", g_module.cdma.accolc),
    NumberField("cdma.an-aaa", g_module.cdma.an_aaa),
    NumberField("cdma.prl-version", g_module.cdma.prl_version),
    TextField("cdma.mdn", g_module.cdma.mdn),
    TextField("cdma.mcc", g_module.cdma.min_based.mcc),
    TextField("cdma.imsi-11-12", g_module.cdma.min_based.imsi1112),
    TextField("cdma.min", g_module.cdma.min_based.min),
    TextField("cdma.true-mcc", g_module.cdma.true_imsi.mcc),
    TextField("cdma.true-imsi-11-12", g_module.cdma.true_imsi.imsi1112),
    TextField("cdma.true-min", g_module.cdma.true_imsi.min),
    NumberField("cdma.true-addr-num", g_module.cdma.true_imsi.addr_num),
    OctetsField("eri.file", g_module.cdma.eri),
    NumberField("eri.size", g_module.cdma.eri_size),
    NumberField("activation.state", g_module.activation.state),
    NumberField("activation.step-ms", g_module.activation.step_ms),
    NumberField("activation.fail-at", g_module.activation.fail_at),
    TextField("activation.code", g_module.activation.code),
};
const FieldTable kCdmaFields = {kFields, std::size(kFields)};

constexpr BYTE kSpcAttempts = 10;
constexpr ULONG kSpcDigits = 6;
constexpr ULONG kMinDigits = 10;
constexpr ULONG kMdnDigits = 15;
constexpr WORD kMaxSid = 32767;
constexpr BYTE kMaxAccolc = 15;
constexpr ULONG kMaxRoaming = 3;
constexpr BYTE kCurrentNam = 0xFF;
constexpr BYTE kMaxAddrNum = 7;
enum Activation : ULONG { kNotActivated = 0, kActivated = 1, kFirstStep = 2, kLastStep = 10 };

void ResetCdma(bool umts)
{
    CdmaState& cdma = TheModule().cdma;
    cdma = {};
    Copy(cdma.spc, "000000");
    cdma.spc_attempts = kSpcAttempts;
    TheModule().activation = {kActivated, kActivated, 100, 0, {}};
    Copy(cdma.mdn, "12025550123");
    if (umts) return;
    cdma.slot_cycle_index = 2;
    cdma.station_class_mark = 0x52;
    cdma.sid_registration = 1;
    cdma.nid_registration = 1;
    cdma.accolc = 1;
    cdma.an_aaa = 1;
    cdma.prl_version = 50001;
    Copy(cdma.mdn, "2025550123");
    for (CdmaIdentity* identity : {&cdma.min_based, &cdma.true_imsi}) {
        Copy(identity->mcc, "001");
        Copy(identity->imsi1112, "01");
        Copy(identity->min, "2025550123");
    }
    constexpr BYTE kEri[] = {0x00, 0x03, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00};
    memcpy(cdma.eri.octets, kEri, sizeof(kEri));
    cdma.eri.count = cdma.eri_size = sizeof(kEri);
}

// --- the code
// ---------------------------------------------------------------------------------------------------------

ULONG CheckSpc(const char* spc)
{
    CdmaState& cdma = TheModule().cdma;
    if (!spc) return kInvalidArgument;
    if (cdma.spc_attempts == 0) return kCodeLocked;
    if (BoundedLength(spc, kSpcDigits + 1) != kSpcDigits || !AreDigits(spc, kSpcDigits)) return kInvalidArgument;
    if (!Equal(spc, cdma.spc)) {
        --cdma.spc_attempts;
        return kWrongCode;
    }
    cdma.spc_attempts = kSpcAttempts;
    return kSuccess;
}

void UnlockSpc() { TheModule().cdma.spc_attempts = kSpcAttempts; }

// --- identities
// -------------------------------------------------------------------------------------------------------

// At most `count` digits of a text; what it lacks stays 0.
static void PutDigits(char* out, const char* text, ULONG count) { memcpy(out, text, BoundedLength(text, count)); }

template <class Record>
static Record RecordOf(const CdmaIdentity& identity)
{
    Record record = {};
    PutDigits(record.mcc, identity.mcc, sizeof(record.mcc));
    PutDigits(record.imsi1112, identity.imsi1112, sizeof(record.imsi1112));
    PutDigits(record.s2, identity.min, sizeof(record.s2));
    if (BoundedLength(identity.min, sizeof(record.s2)) == sizeof(record.s2)) {
        PutDigits(record.s1, identity.min + sizeof(record.s2), sizeof(record.s1));
    }
    return record;
}

// A null record leaves the identity as it is. False when a character is no digit.
template <class Record>
static bool TakeIdentity(CdmaIdentity& identity, const Record* record)
{
    if (!record) return true;
    if (!AreDigits(record->mcc, sizeof(record->mcc)) || !AreDigits(record->imsi1112, sizeof(record->imsi1112)) ||
        !AreDigits(record->s1, sizeof(record->s1)) || !AreDigits(record->s2, sizeof(record->s2))) {
        return false;
    }
    identity = {};
    memcpy(identity.mcc.octets, record->mcc, sizeof(record->mcc));
    memcpy(identity.imsi1112.octets, record->imsi1112, sizeof(record->imsi1112));
    memcpy(identity.min.octets, record->s2, sizeof(record->s2));
    memcpy(identity.min.octets + sizeof(record->s2), record->s1, sizeof(record->s1));
    return true;
}

// How an identity stands in the journal: its digits in the order of the record; null for a null one.
struct IdentityText {
    char digits[16];
    const char* text;

    template <class Record>
    explicit IdentityText(const Record* record) : digits{}, text(record ? digits : nullptr)
    {
        if (record) memcpy(digits, record, sizeof(MinBasedImsi));
    }
};

static bool IsNam(const BYTE* nam) { return nam && (*nam == 0 || *nam == kCurrentNam); }

// --- activation
// -------------------------------------------------------------------------------------------------------

static void TellActivation()
{
    Text<40> line;
    Writer(line).Add("emit activation ").Unsigned(TheModule().activation.state);
    ScheduleModuleEvent(0, line);
}

static void EnterActivation(ULONG state)
{
    ActivationState& activation = TheModule().activation;
    const bool fails = activation.fail_at != 0 && state == activation.fail_at;
    activation.state = fails ? ULONG{kNotActivated} : state;
    TellActivation();
    if (activation.state >= kFirstStep) PlanStep(Progress::Activation, activation.step_ms);
}

void StepActivation()
{
    const ULONG state = TheModule().activation.state;
    if (state >= kFirstStep) EnterActivation(state >= kLastStep ? ULONG{kActivated} : state + 1);
}

void AbandonActivation() { TheModule().activation.state = TheModule().activation.before; }

static bool IsUnderWay() { return TheModule().activation.state >= kFirstStep; }

// `interrupted`: the state that is left when the module goes meanwhile.
static void BeginActivation(ULONG first, ULONG interrupted)
{
    TheModule().activation.before = interrupted;
    EnterActivation(first);
}

} // namespace sim

using namespace sim;

extern "C" ULONG ValidateSPC(char* spc)
{
    Call call(EntryPoint::ValidateSPC, spc);
    if (const ULONG refused = call.Refused()) return refused;
    if (const ULONG status = CheckSpc(spc)) return status;
    return call.Done();
}

// Null leaves a value as it is. Nothing is kept unless all of it can be.
extern "C" ULONG SetCDMANetworkParameters(char* spc, BYTE* force_rev0, BYTE* custom_scp, ULONG* protocol,
                                          ULONG* broadcast, ULONG* application, ULONG* roaming)
{
    Call call(EntryPoint::SetCDMANetworkParameters, spc, At(force_rev0), At(custom_scp), At(protocol), At(broadcast),
              At(application), At(roaming));
    if (const ULONG refused = call.Refused()) return refused;
    if (const ULONG status = CheckSpc(spc)) return status;
    CdmaState cdma = TheModule().cdma;
    const bool fits = Take(cdma.force_rev0, force_rev0, BYTE{1}) && Take(cdma.custom_scp, custom_scp, BYTE{1}) &&
                      Take(cdma.protocol, protocol) && Take(cdma.broadcast, broadcast) &&
                      Take(cdma.application, application) && Take(cdma.roaming, roaming, kMaxRoaming);
    if (!fits) return kInvalidArgument;
    TheModule().cdma = cdma;
    return call.Done();
}

extern "C" ULONG GetCDMANetworkParameters(BYTE* slot_cycle_index, BYTE* station_class_mark, BYTE* home_only,
                                          BYTE* sid_registration, BYTE* nid_registration, BYTE* force_rev0,
                                          BYTE* custom_scp, ULONG* protocol, ULONG* broadcast, ULONG* application,
                                          ULONG* roaming)
{
    const auto& cdma = TheModule().cdma;
    return Give(EntryPoint::GetCDMANetworkParameters, Given{slot_cycle_index, cdma.slot_cycle_index},
                Given{station_class_mark, cdma.station_class_mark}, Given{home_only, cdma.home_only},
                Given{sid_registration, cdma.sid_registration}, Given{nid_registration, cdma.nid_registration},
                Given{force_rev0, cdma.force_rev0}, Given{custom_scp, cdma.custom_scp}, Given{protocol, cdma.protocol},
                Given{broadcast, cdma.broadcast}, Given{application, cdma.application}, Given{roaming, cdma.roaming});
}

extern "C" ULONG GetACCOLC(BYTE* accolc) { return Give(EntryPoint::GetACCOLC, Given{accolc, TheModule().cdma.accolc}); }

extern "C" ULONG SetACCOLC(char* spc, BYTE accolc)
{
    Call call(EntryPoint::SetACCOLC, spc, accolc);
    if (const ULONG refused = call.Refused()) return refused;
    if (accolc > kMaxAccolc) return kInvalidArgument;
    if (const ULONG status = CheckSpc(spc)) return status;
    TheModule().cdma.accolc = accolc;
    return call.Done();
}

extern "C" ULONG GetANAAAAuthenticationStatus(ULONG* status)
{
    return Give(EntryPoint::GetANAAAAuthenticationStatus, Given{status, TheModule().cdma.an_aaa});
}

extern "C" ULONG GetPRLVersion(WORD* version)
{
    return Give(EntryPoint::GetPRLVersion, Given{version, TheModule().cdma.prl_version});
}

// There is one NAM, 0. Null leaves a value as it is; the number needs both its length and its digits.
extern "C" ULONG Set3Gpp2SubscriptionInfo(BYTE* nam, MinBasedImsi* min_based, TrueImsi* true_imsi, BYTE* mdn_length,
                                          BYTE* mdn)
{
    const ULONG length = mdn_length && mdn ? *mdn_length : 0;
    Text<16> number = {};
    const bool number_fits = length <= kMdnDigits;
    if (length > 0 && number_fits) memcpy(number.octets, mdn, length);
    Call call(EntryPoint::Set3Gpp2SubscriptionInfo, At(nam), IdentityText(min_based).text, IdentityText(true_imsi).text,
              At(mdn_length), mdn ? number.octets : nullptr);
    if (const ULONG refused = call.Refused()) return refused;
    CdmaState cdma = TheModule().cdma;
    if (!IsNam(nam) || !number_fits || !AreDigits(number, length) || (mdn_length == nullptr) != (mdn == nullptr) ||
        !TakeIdentity(cdma.min_based, min_based) || !TakeIdentity(cdma.true_imsi, true_imsi)) {
        return kInvalidArgument;
    }
    if (true_imsi) {
        if (true_imsi->addrNum > kMaxAddrNum) return kInvalidArgument;
        cdma.true_imsi.addr_num = true_imsi->addrNum;
    }
    if (mdn) cdma.mdn = number;
    TheModule().cdma = cdma;
    return call.Done();
}

extern "C" ULONG Get3Gpp2SubscriptionInfo(BYTE* nam, MinBasedImsi* min_based, TrueImsi* true_imsi, BYTE* mdn_length,
                                          BYTE* mdn)
{
    Call call(EntryPoint::Get3Gpp2SubscriptionInfo, At(nam), At(mdn_length));
    if (const ULONG refused = call.Refused()) return refused;
    if (!IsNam(nam)) return kInvalidArgument;
    const CdmaState& cdma = TheModule().cdma;
    TrueImsi record = RecordOf<TrueImsi>(cdma.true_imsi);
    record.addrNum = cdma.true_imsi.addr_num;
    call.PutRecord(min_based, RecordOf<MinBasedImsi>(cdma.min_based));
    call.PutRecord(true_imsi, record);
    const ULONG length = Length(cdma.mdn);
    call.PutArray(mdn, Call::Room(mdn_length), length, [&](ULONG i) { return static_cast<BYTE>(cdma.mdn.octets[i]); });
    call.PutCount(mdn_length, length);
    return call.Done();
}

// The size that comes back is the file's, even where the room holds only its beginning.
extern "C" ULONG GetERIFile(ULONG* size, BYTE* file)
{
    Call call(EntryPoint::GetERIFile, At(size));
    if (const ULONG refused = call.Refused()) return refused;
    const CdmaState& cdma = TheModule().cdma;
    call.PutArray(file, Call::Room(size), cdma.eri_size,
                  [&](ULONG i) { return i < cdma.eri.count ? cdma.eri.octets[i] : BYTE{0}; });
    call.PutTotal(size, cdma.eri_size);
    return call.Done();
}

// The version of a roaming list stands in its third and fourth octet.
extern "C" ULONG ActivateManual(char* spc, WORD sid, char* mdn, char* min, ULONG prl_size, BYTE* prl, char* ha_secret,
                                char* aaa_secret)
{
    Call call(EntryPoint::ActivateManual, spc, sid, mdn, min, prl_size, ha_secret, aaa_secret);
    if (const ULONG refused = call.Refused()) return refused;
    if (!mdn || !min || sid > kMaxSid || (prl_size > 0 && (!prl || prl_size < 4))) return kInvalidArgument;
    const ULONG mdn_length = BoundedLength(mdn, kMdnDigits + 1);
    if (mdn_length > kMdnDigits || !AreDigits(mdn, mdn_length) || BoundedLength(min, kMinDigits + 1) != kMinDigits ||
        !AreDigits(min, kMinDigits)) {
        return kInvalidArgument;
    }
    if (const ULONG status = CheckSpc(spc)) return status;
    if (IsUnderWay()) return kNoEffect;
    CdmaState& cdma = TheModule().cdma;
    TheModule().scan.home_sid = sid;
    Copy(cdma.mdn, mdn);
    Copy(cdma.min_based.min, min);
    Copy(cdma.true_imsi.min, min);
    if (prl_size > 0) cdma.prl_version = static_cast<WORD>(prl[2] << 8 | prl[3]);
    KeepMobileIPSecrets(ha_secret, aaa_secret);
    BeginActivation(kLastStep, kActivated); // all of it is in the module by now
    return call.Done();
}

extern "C" ULONG ActivateAutomatic(char* code)
{
    Call call(EntryPoint::ActivateAutomatic, code);
    if (const ULONG refused = call.Refused()) return refused;
    if (!code || !*code) return kInvalidArgument;
    if (IsUnderWay()) return kNoEffect;
    if (TheModule().power.mode != 0) return kNoNetwork;
    if (!Copy(TheModule().activation.code, code)) return kInvalidArgument;
    BeginActivation(kFirstStep, TheModule().activation.state);
    return call.Done();
}

extern "C" ULONG GetActivationState(ULONG* state)
{
    return Give(EntryPoint::GetActivationState, Given{state, TheModule().activation.state});
}

// What has been set comes back to what a fresh module has, the code too; the module is then to be activated.
extern "C" ULONG ResetToFactoryDefaults(char* spc)
{
    Call call(EntryPoint::ResetToFactoryDefaults, spc);
    if (const ULONG refused = call.Refused()) return refused;
    if (const ULONG status = CheckSpc(spc)) return status;
    AbandonProgress();
    const bool umts = TheModule().connection.umts;
    ResetCdma(umts);
    ResetMobileIP(umts);
    ResetHomeNetwork(umts);
    ResetProfiles();
    ResetManagement();
    ResetExtendedManagement();
    NetworkState& network = TheModule().network;
    network.preference = network.preference_duration = network.preference_persistent = 0;
    TheModule().activation.state = kNotActivated;
    TellActivation();
    return call.Done();
}
