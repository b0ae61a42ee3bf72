// The default data profiles, and whether the module starts a session by itself.
#include <iterator>

#include "sim/call.h"
#include "sim/fields.h"
#include "sim/inputs.h"
#include "sim/reset.h"
#include "sim/settings.h"

namespace sim {

static constexpr Field kFields[] = {
    NumberField("auto-connect", g_module.profiles.auto_connect, 1),
    NumberField("profile.0.pdp-type", g_module.profiles.profiles[0].pdp_type),
    NumberField("profile.0.address", g_module.profiles.profiles[0].addresses[0]),
    NumberField("profile.0.primary-dns", g_module.profiles.profiles[0].addresses[1]),
    NumberField("profile.0.secondary-dns", g_module.profiles.profiles[0].addresses[2]),
    NumberField("profile.0.authentication", g_module.profiles.profiles[0].authentication),
    TextField("profile.0.name", g_module.profiles.profiles[0].name),
    TextField("profile.0.apn", g_module.profiles.profiles[0].apn),
    TextField("profile.0.user", g_module.profiles.profiles[0].user),
    TextField("profile.0.password", g_module.profiles.profiles[0].password),
    NumberField("profile.1.pdp-type", g_module.profiles.profiles[1].pdp_type),
    NumberField("profile.1.address", g_module.profiles.profiles[1].addresses[0]),
    NumberField("profile.1.primary-dns", g_module.profiles.profiles[1].addresses[1]),
    NumberField("profile.1.secondary-dns", g_module.profiles.profiles[1].addresses[2]),
    NumberField("profile.1.authentication", g_module.profiles.profiles[1].authentication),
    TextField("profile.1.name", g_module.profiles.profiles[1].name),
    TextField("profile.1.apn", g_module.profiles.profiles[1].apn),
    TextField("profile.1.user", g_module.profiles.profiles[1].user),
    TextField("profile.1.password", g_module.profiles.profiles[1].password),
};
const FieldTable kProfileFields = {kFields, std::size(kFields)};

constexpr ULONG kMaxPdpType = 3;
constexpr ULONG kMaxAuthentication = 3;

void ResetProfiles()
{
    ProfilesState& profiles = TheModule().profiles;
    profiles = {};
    Copy(profiles.profiles[0].name, "default");
    Copy(profiles.profiles[0].apn, "internet");
}

} // namespace sim

using namespace sim;

extern "C" ULONG GetAutoConnect(ULONG* setting)
{
    return Give(EntryPoint::GetAutoConnect, Given{setting, TheModule().profiles.auto_connect});
}

extern "C" ULONG SetAutoConnect(ULONG setting)
{
    return Keep(EntryPoint::SetAutoConnect, Kept<ULONG>{TheModule().profiles.auto_connect, setting, 1});
}

// Null leaves a value as it is, but an address of null is none: a client has no other way to be given one at each
// start. Nothing is kept unless all of it can be.
extern "C" ULONG SetDefaultProfile(ULONG type, ULONG* pdp_type, ULONG* address, ULONG* primary_dns,
                                   ULONG* secondary_dns, ULONG* authentication, char* name, char* apn, char* user,
                                   char* password)
{
    Call call(EntryPoint::SetDefaultProfile, type, At(pdp_type), At(address), At(primary_dns), At(secondary_dns),
              At(authentication), name, apn, user, password);
    if (const ULONG refused = call.Refused()) return refused;
    if (type >= std::size(TheModule().profiles.profiles)) return kInvalidArgument;
    DataProfile profile = TheModule().profiles.profiles[type];
    profile.addresses[0] = address ? *address : 0;
    profile.addresses[1] = primary_dns ? *primary_dns : 0;
    profile.addresses[2] = secondary_dns ? *secondary_dns : 0;
    const bool fits = Take(profile.pdp_type, pdp_type, kMaxPdpType) &&
                      Take(profile.authentication, authentication, kMaxAuthentication) && Take(profile.name, name) &&
                      Take(profile.apn, apn) && Take(profile.user, user) && Take(profile.password, password);
    if (!fits) return kInvalidArgument;
    TheModule().profiles.profiles[type] = profile;
    return call.Done();
}

// The password cannot be read.
extern "C" ULONG GetDefaultProfile(ULONG type, ULONG* pdp_type, ULONG* address, ULONG* primary_dns,
                                   ULONG* secondary_dns, ULONG* authentication, BYTE name_size, char* name,
                                   BYTE apn_size, char* apn, BYTE user_size, char* user)
{
    Call call(EntryPoint::GetDefaultProfile, type, name_size, apn_size, user_size);
    if (const ULONG refused = call.Refused()) return refused;
    if (type >= std::size(TheModule().profiles.profiles)) return kInvalidArgument;
    const DataProfile& profile = TheModule().profiles.profiles[type];
    call.Put(pdp_type, profile.pdp_type);
    call.Put(address, profile.addresses[0]);
    call.Put(primary_dns, profile.addresses[1]);
    call.Put(secondary_dns, profile.addresses[2]);
    call.Put(authentication, profile.authentication);
    call.PutText(name, name_size, profile.name);
    call.PutText(apn, apn_size, profile.apn);
    call.PutText(user, user_size, profile.user);
    return call.Done();
}
