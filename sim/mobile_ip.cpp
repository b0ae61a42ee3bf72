// Mobile IP: the mode, six profiles, and the parameters that they share.
#include <iterator>

#include "sim/call.h"
#include "sim/clock.h"
#include "sim/fields.h"
#include "sim/inputs.h"
#include "sim/provisioning.h"
#include "sim/reset.h"
#include "sim/settings.h"

namespace sim {

static constexpr Field kFields[] = {
    NumberField("mip.mode", g_module.mobile_ip.mode),
    NumberField("mip.active", g_module.mobile_ip.active, kMobileIPProfiles - 1),
    NumberField("mip.error", g_module.mobile_ip.error),
    NumberField("mip.retry-limit", g_module.mobile_ip.retry_limit),
    NumberField("mip.retry-interval", g_module.mobile_ip.retry_interval),
    NumberField("mip.re-registration-period", g_module.mobile_ip.rereg_period),
    TextField("mip.0.nai", g_module.mobile_ip.profiles[0].nai),
    TextField("mip.0.ha-secret", g_module.mobile_ip.profiles[0].ha_secret),
    TextField("mip.0.aaa-secret", g_module.mobile_ip.profiles[0].aaa_secret),
    TextField("mip.1.nai", g_module.mobile_ip.profiles[1].nai),
    TextField("mip.1.ha-secret", g_module.mobile_ip.profiles[1].ha_secret),
    TextField("mip.1.aaa-secret", g_module.mobile_ip.profiles[1].aaa_secret),
    TextField("mip.2.nai", g_module.mobile_ip.profiles[2].nai),
    TextField("mip.2.ha-secret", g_module.mobile_ip.profiles[2].ha_secret),
    TextField("mip.2.aaa-secret", g_module.mobile_ip.profiles[2].aaa_secret),
    TextField("mip.3.nai", g_module.mobile_ip.profiles[3].nai),
    TextField("mip.3.ha-secret", g_module.mobile_ip.profiles[3].ha_secret),
    TextField("mip.3.aaa-secret", g_module.mobile_ip.profiles[3].aaa_secret),
    TextField("mip.4.nai", g_module.mobile_ip.profiles[4].nai),
    TextField("mip.4.ha-secret", g_module.mobile_ip.profiles[4].ha_secret),
    TextField("mip.4.aaa-secret", g_module.mobile_ip.profiles[4].aaa_secret),
    TextField("mip.5.nai", g_module.mobile_ip.profiles[5].nai),
    TextField("mip.5.ha-secret", g_module.mobile_ip.profiles[5].ha_secret),
    TextField("mip.5.aaa-secret", g_module.mobile_ip.profiles[5].aaa_secret),
};
const FieldTable kMobileIPFields = {kFields, std::size(kFields)};

constexpr ULONG kModeOff = 0;
constexpr ULONG kMaxMode = 2;
constexpr BYTE kOn = 1; // of a flag

void ResetMobileIP(bool umts)
{
    MobileIPState& mobile_ip = TheModule().mobile_ip;
    mobile_ip = {};
    mobile_ip.retry_limit = 3;
    mobile_ip.retry_interval = 2;
    mobile_ip.rereg_period = 5;
    if (umts) return;
    MobileIPProfile& first = mobile_ip.profiles[0];
    first.enabled = 1;
    first.reverse_tunneling = 1;
    first.addresses[1] = 0xC0000205; // 192.0.2.5
    first.addresses[2] = 0xC0000206;
    first.ha_spi = 300;
    first.aaa_spi = 2;
    Copy(first.nai, "user@example.net");
    Copy(first.ha_secret, "secret");
    Copy(first.aaa_secret, "secret");
}

void KeepMobileIPSecrets(const char* ha_secret, const char* aaa_secret)
{
    MobileIPProfile& profile = TheModule().mobile_ip.profiles[TheModule().mobile_ip.active];
    Take(profile.ha_secret, ha_secret);
    Take(profile.aaa_secret, aaa_secret);
}

void ReportMobileIP(ULONG delay_ms)
{
    const MobileIPState& mobile_ip = TheModule().mobile_ip;
    if (mobile_ip.mode == kModeOff) return;
    Text<48> line;
    Writer(line).Add("emit mobileip ").Unsigned(mobile_ip.error);
    ScheduleModuleEvent(delay_ms, line);
}

} // namespace sim

using namespace sim;

extern "C" ULONG SetMobileIP(ULONG mode)
{
    return Keep(EntryPoint::SetMobileIP, Kept<ULONG>{TheModule().mobile_ip.mode, mode, kMaxMode});
}

extern "C" ULONG GetMobileIP(ULONG* mode)
{
    return Give(EntryPoint::GetMobileIP, Given{mode, TheModule().mobile_ip.mode});
}

extern "C" ULONG SetActiveMobileIPProfile(char* spc, BYTE index)
{
    Call call(EntryPoint::SetActiveMobileIPProfile, spc, index);
    if (const ULONG refused = call.Refused()) return refused;
    if (index >= kMobileIPProfiles) return kInvalidArgument;
    if (const ULONG status = CheckSpc(spc)) return status;
    TheModule().mobile_ip.active = index;
    return call.Done();
}

extern "C" ULONG GetActiveMobileIPProfile(BYTE* index)
{
    return Give(EntryPoint::GetActiveMobileIPProfile, Given{index, TheModule().mobile_ip.active});
}

// Null leaves a value as it is. Nothing is kept unless all of it can be.
extern "C" ULONG SetMobileIPProfile(char* spc, BYTE index, BYTE* enabled, ULONG* address, ULONG* primary_ha,
                                    ULONG* secondary_ha, BYTE* reverse_tunneling, char* nai, ULONG* ha_spi,
                                    ULONG* aaa_spi, char* ha_secret, char* aaa_secret)
{
    Call call(EntryPoint::SetMobileIPProfile, spc, index, At(enabled), At(address), At(primary_ha), At(secondary_ha),
              At(reverse_tunneling), nai, At(ha_spi), At(aaa_spi), ha_secret, aaa_secret);
    if (const ULONG refused = call.Refused()) return refused;
    if (index >= kMobileIPProfiles) return kInvalidArgument;
    if (const ULONG status = CheckSpc(spc)) return status;
    MobileIPProfile profile = TheModule().mobile_ip.profiles[index];
    const bool fits = Take(profile.enabled, enabled, kOn) && Take(profile.addresses[0], address) &&
                      Take(profile.addresses[1], primary_ha) && Take(profile.addresses[2], secondary_ha) &&
                      Take(profile.reverse_tunneling, reverse_tunneling, kOn) && Take(profile.nai, nai) &&
                      Take(profile.ha_spi, ha_spi) && Take(profile.aaa_spi, aaa_spi) &&
                      Take(profile.ha_secret, ha_secret) && Take(profile.aaa_secret, aaa_secret);
    if (!fits) return kInvalidArgument;
    TheModule().mobile_ip.profiles[index] = profile;
    return call.Done();
}

extern "C" ULONG GetMobileIPProfile(BYTE index, BYTE* enabled, ULONG* address, ULONG* primary_ha, ULONG* secondary_ha,
                                    BYTE* reverse_tunneling, BYTE nai_size, char* nai, ULONG* ha_spi, ULONG* aaa_spi)
{
    Call call(EntryPoint::GetMobileIPProfile, index, nai_size);
    if (const ULONG refused = call.Refused()) return refused;
    if (index >= kMobileIPProfiles) return kInvalidArgument;
    const MobileIPProfile& profile = TheModule().mobile_ip.profiles[index];
    call.Put(enabled, profile.enabled);
    call.Put(address, profile.addresses[0]);
    call.Put(primary_ha, profile.addresses[1]);
    call.Put(secondary_ha, profile.addresses[2]);
    call.Put(reverse_tunneling, profile.reverse_tunneling);
    call.PutText(nai, nai_size, profile.nai);
    call.Put(ha_spi, profile.ha_spi);
    call.Put(aaa_spi, profile.aaa_spi);
    return call.Done();
}

// The mode is the one of SetMobileIP.
extern "C" ULONG SetMobileIPParameters(char* spc, ULONG* mode, BYTE* retry_limit, BYTE* retry_interval,
                                       BYTE* rereg_period, BYTE* rereg_on_traffic, BYTE* ha_authenticator,
                                       BYTE* ha_rfc2002bis)
{
    Call call(EntryPoint::SetMobileIPParameters, spc, At(mode), At(retry_limit), At(retry_interval), At(rereg_period),
              At(rereg_on_traffic), At(ha_authenticator), At(ha_rfc2002bis));
    if (const ULONG refused = call.Refused()) return refused;
    if (const ULONG status = CheckSpc(spc)) return status;
    MobileIPState parameters = TheModule().mobile_ip;
    const bool fits = Take(parameters.mode, mode, kMaxMode) && Take(parameters.retry_limit, retry_limit) &&
                      Take(parameters.retry_interval, retry_interval) && Take(parameters.rereg_period, rereg_period) &&
                      Take(parameters.rereg_on_traffic, rereg_on_traffic, kOn) &&
                      Take(parameters.ha_authenticator, ha_authenticator, kOn) &&
                      Take(parameters.ha_rfc2002bis, ha_rfc2002bis, kOn);
    if (!fits) return kInvalidArgument;
    TheModule().mobile_ip = parameters;
    return call.Done();
}

extern "C" ULONG GetMobileIPParameters(ULONG* mode, BYTE* retry_limit, BYTE* retry_interval, BYTE* rereg_period,
                                       BYTE* rereg_on_traffic, BYTE* ha_authenticator, BYTE* ha_rfc2002bis)
{
    const auto& mobile_ip = TheModule().mobile_ip;
    return Give(EntryPoint::GetMobileIPParameters, Given{mode, mobile_ip.mode},
                Given{retry_limit, mobile_ip.retry_limit}, Given{retry_interval, mobile_ip.retry_interval},
                Given{rereg_period, mobile_ip.rereg_period}, Given{rereg_on_traffic, mobile_ip.rereg_on_traffic},
                Given{ha_authenticator, mobile_ip.ha_authenticator}, Given{ha_rfc2002bis, mobile_ip.ha_rfc2002bis});
}

extern "C" ULONG GetLastMobileIPError(ULONG* error)
{
    return Give(EntryPoint::GetLastMobileIPError, Given{error, TheModule().mobile_ip.error});
}
