// Who the module is: names, revisions, packages, card configuration.
#include <iterator>

#include "sim/call.h"
#include "sim/fields.h"
#include "sim/reset.h"

namespace sim {

static constexpr Field kFields[] = {
    TextField("identity.manufacturer", g_module.identity.manufacturer),
    TextField("identity.model", g_module.identity.model),
    TextField("identity.hardware", g_module.identity.hardware),
    TextField("identity.firmware", g_module.identity.firmware),
    TextField("identity.boot", g_module.identity.boot),
    TextField("identity.pri", g_module.identity.pri),
    TextField("identity.imei", g_module.identity.imei),
    NumberField("firmware.id", g_module.identity.firmware_id),
    NumberField("firmware.technology", g_module.identity.technology),
    NumberField("firmware.carrier", g_module.identity.carrier),
    NumberField("firmware.region", g_module.identity.region),
    NumberField("firmware.gps", g_module.identity.gps),
    TextField("package.model", g_module.identity.package[0]),
    TextField("package.firmware", g_module.identity.package[1]),
    TextField("package.boot", g_module.identity.package[2]),
    TextField("package.pri", g_module.identity.package[3]),
    TextField("package.sku", g_module.identity.package[4]),
    TextField("package.carrier", g_module.identity.package[5]),
    TextField("package.revision", g_module.identity.package[6]),
    NumberField("rtre.current", g_module.identity.rtre_current),
    NumberField("rtre.pending", g_module.identity.rtre_pending),
    NumberField("rtre.status", g_module.identity.rtre_status),
};
const FieldTable kIdentityFields = {kFields, std::size(kFields)};

void ResetIdentity(bool umts)
{
    IdentityState& identity = TheModule().identity;
    identity = {};
    Copy(identity.manufacturer, "Kestavo");
    Copy(identity.model, "KT5230");
    Copy(identity.hardware, "10012");
    Copy(identity.firmware, umts ? "K2.0.12U-SIM" : "K2.0.12C-SIM");
    Copy(identity.boot, "KB2.0.3-SIM");
    Copy(identity.pri, umts ? "03020104" : "05010203");
    Copy(identity.imei, "001017400000018");
    identity.technology = umts ? 1 : 0;
    identity.carrier = umts ? 103 : 101;
    Copy(identity.package[0], "KT5230");
    Copy(identity.package[1], identity.firmware);
    Copy(identity.package[2], identity.boot);
    Copy(identity.package[3], identity.pri);
    Copy(identity.package[4], "1100001");
    Copy(identity.package[5], umts ? "103" : "5");
    Copy(identity.package[6], "001_002");
}

static ULONG GiveText(EntryPoint entry, BYTE size, char* text, const char* value)
{
    Call call(entry, size);
    if (const ULONG refused = call.Refused()) return refused;
    call.PutText(text, size, value);
    return call.Done();
}

} // namespace sim

using namespace sim;

extern "C" ULONG GetManufacturer(BYTE size, char* text)
{
    return GiveText(EntryPoint::GetManufacturer, size, text, TheModule().identity.manufacturer);
}

extern "C" ULONG GetModelID(BYTE size, char* text)
{
    return GiveText(EntryPoint::GetModelID, size, text, TheModule().identity.model);
}

extern "C" ULONG GetHardwareRevision(BYTE size, char* text)
{
    return GiveText(EntryPoint::GetHardwareRevision, size, text, TheModule().identity.hardware);
}

extern "C" ULONG GetFirmwareRevision(BYTE size, char* text)
{
    return GiveText(EntryPoint::GetFirmwareRevision, size, text, TheModule().identity.firmware);
}

extern "C" ULONG GetFirmwareRevisions(BYTE firmware_size, char* firmware, BYTE boot_size, char* boot, BYTE pri_size,
                                      char* pri)
{
    Call call(EntryPoint::GetFirmwareRevisions, firmware_size, boot_size, pri_size);
    if (const ULONG refused = call.Refused()) return refused;
    call.PutText(firmware, firmware_size, TheModule().identity.firmware);
    call.PutText(boot, boot_size, TheModule().identity.boot);
    call.PutText(pri, pri_size, TheModule().identity.pri);
    return call.Done();
}

extern "C" ULONG GetFirmwareInfo(ULONG* id, ULONG* technology, ULONG* carrier, ULONG* region, ULONG* gps)
{
    Call call(EntryPoint::GetFirmwareInfo);
    if (const ULONG refused = call.Refused()) return refused;
    const IdentityState& identity = TheModule().identity;
    call.Put(id, identity.firmware_id);
    call.Put(technology, identity.technology);
    call.Put(carrier, identity.carrier);
    call.Put(region, identity.region);
    call.Put(gps, identity.gps);
    return call.Done();
}

extern "C" ULONG OrvGetCwePkgsInfo(WORD* size0, BYTE* text0, WORD* size1, BYTE* text1, WORD* size2, BYTE* text2,
                                   WORD* size3, BYTE* text3, WORD* size4, BYTE* text4, WORD* size5, BYTE* text5,
                                   WORD* size6, BYTE* text6)
{
    Call call(EntryPoint::OrvGetCwePkgsInfo, At(size0), At(size1), At(size2), At(size3), At(size4), At(size5),
              At(size6));
    if (const ULONG refused = call.Refused()) return refused;
    WORD* const sizes[] = {size0, size1, size2, size3, size4, size5, size6};
    BYTE* const texts[] = {text0, text1, text2, text3, text4, text5, text6};
    for (ULONG i = 0; i < 7; ++i)
        call.PutCountedText(sizes[i], texts[i], TheModule().identity.package[i]);
    return call.Done();
}

// The status is a field of its own: the card configuration counts even where the call fails.
extern "C" ULONG GetRTREConfig(BYTE* current, BYTE* pending)
{
    Call call(EntryPoint::GetRTREConfig, At(current), At(pending));
    if (const ULONG refused = call.Refused()) return refused;
    call.Put(current, TheModule().identity.rtre_current);
    call.Put(pending, TheModule().identity.rtre_pending);
    return call.Done() ? call.Done() : TheModule().identity.rtre_status;
}
