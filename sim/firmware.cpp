// Firmware images: which ones are preferred, and which one was last given for an upgrade.
#include <iterator>

#include "sim/call.h"
#include "sim/fields.h"
#include "sim/images.h"
#include "sim/reset.h"

namespace sim {

static constexpr Field kFields[] = {
    OctetsField("images.list", g_module.firmware.images), NumberField("images.force", g_module.firmware.force),
    NumberField("images.index", g_module.firmware.index), OctetsField("images.types", g_module.firmware.image_types),
    TextField("images.path", g_module.firmware.path),
};
const FieldTable kFirmwareFields = {kFields, std::size(kFields)};

void ResetFirmware()
{
    FirmwareState& firmware = TheModule().firmware;
    firmware = {};
    constexpr BYTE kImages[] = {0x02, 0x00, 0x01};
    firmware.images.count = sizeof(kImages);
    memcpy(firmware.images.octets, kImages, sizeof(kImages));
    firmware.image_types.count = 2;
    firmware.image_types.octets[1] = 1;
}

template <ULONG kRoom>
static void PutOctets(Call& call, ULONG* count, BYTE* out, const Octets<kRoom>& octets)
{
    call.PutArray(out, Call::Room(count), octets.count, [&](ULONG i) { return octets.octets[i]; });
    call.PutCount(count, octets.count);
}

} // namespace sim

using namespace sim;

extern "C" ULONG GetImagesPreference(ULONG* size, BYTE* images)
{
    Call call(EntryPoint::GetImagesPreference, At(size));
    if (const ULONG refused = call.Refused()) return refused;
    PutOctets(call, size, images, TheModule().firmware.images);
    return call.Done();
}

extern "C" ULONG SetImagesPreference(ULONG size, BYTE* images, ULONG force, BYTE index, ULONG* types_size, BYTE* types)
{
    Call call(EntryPoint::SetImagesPreference, size, force, index, At(types_size));
    if (const ULONG refused = call.Refused()) return refused;
    FirmwareState& firmware = TheModule().firmware;
    if (size > sizeof(firmware.images.octets) || (size > 0 && !images)) return kInvalidArgument;
    PutOctets(call, types_size, types, firmware.image_types);
    if (const ULONG status = call.Done()) return status;
    firmware.images.count = size;
    if (size > 0) memcpy(firmware.images.octets, images, size);
    firmware.force = force;
    firmware.index = index;
    return kSuccess;
}

extern "C" ULONG UpgradeFirmware2kW(WCHAR* path)
{
    Text<2048> narrow = {};
    if (path) Narrow(narrow.octets, narrow.Room(), path);
    Call call(EntryPoint::UpgradeFirmware2kW, path ? static_cast<const char*>(narrow) : nullptr);
    if (const ULONG refused = call.Refused()) return refused;
    if (!path) return kInvalidArgument;
    TheModule().firmware.path = narrow;
    UpgradeTo(narrow);
    return call.Done();
}
