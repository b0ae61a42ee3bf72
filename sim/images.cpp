// The store of firmware images, and the upgrade to one of them.
#include "sim/images.h"

#include <iterator>

#include "sim/call.h"
#include "sim/clock.h"
#include "sim/fields.h"
#include "sim/reset.h"

namespace sim {

static constexpr Field kFields[] = {
    TextField("images.store", g_module.images.store),
    ListField("images.infos", g_module.images.infos, 0, 0x7FFFFFFF),
};
const FieldTable kImagesFields = {kFields, std::size(kFields)};

void ResetImages()
{
    ImagesState& images = TheModule().images;
    images = {};
    Copy(images.store, "/images");
    constexpr int32_t kInfos[][5] = {{1, 0, 101, 0, 1}, {2, 1, 103, 0, 1}};
    images.infos.count = 2;
    memcpy(images.infos.values, kInfos, sizeof(kInfos));
}

// The row of the image in that folder, or null.
static const int32_t* FindImage(const char* path)
{
    const ImagesState& images = TheModule().images;
    const char* store = images.store;
    while (*store && *store == *path) {
        ++store;
        ++path;
    }
    if (*store || (*path != '/' && *path != '\\')) return nullptr;
    bool negative = false;
    ULONGLONG row = 0;
    if (!ParseNumber(path + 1, &negative, &row) || negative || row >= images.infos.count) return nullptr;
    return images.infos.values[row];
}

void UpgradeTo(const char* path)
{
    const int32_t* info = FindImage(path);
    if (!info) return;
    constexpr const char* kFirmwareNames[] = {"firmware.id ", "firmware.technology ", "firmware.carrier ",
                                              "firmware.region ", "firmware.gps "};
    const PowerState& power = TheModule().power;
    const ULONG back_ms = power.settle_ms + power.reset_ms;
    ScheduleModuleEvent(power.settle_ms, "module leaves");
    Text<64> line;
    for (ULONG i = 0; i < std::size(kFirmwareNames); ++i) {
        Writer(line).Add("set ").Add(kFirmwareNames[i]).Unsigned(static_cast<ULONG>(info[i]));
        ScheduleModuleEvent(back_ms, line);
    }
    Writer(line).Add("set package.carrier ").Unsigned(static_cast<ULONG>(info[2]));
    ScheduleModuleEvent(back_ms, line);
    ScheduleModuleEvent(back_ms, "module returns");
    ScheduleModuleEvent(back_ms, "emit power 0");
}

} // namespace sim

using namespace sim;

extern "C" ULONG GetImageStoreW(WORD size, WCHAR* path)
{
    Call call(EntryPoint::GetImageStoreW, size);
    if (const ULONG refused = call.Refused()) return refused;
    call.PutWideText(path, size, TheModule().images.store);
    return call.Done();
}

extern "C" ULONG GetImageInfoW(const WCHAR* path, ULONG* id, ULONG* technology, ULONG* carrier, ULONG* region,
                               ULONG* gps)
{
    Text<2048> narrow = {};
    if (path) Narrow(narrow.octets, narrow.Room(), path);
    Call call(EntryPoint::GetImageInfoW, path ? static_cast<const char*>(narrow) : nullptr);
    if (const ULONG refused = call.Refused()) return refused;
    if (!path) return kInvalidArgument;
    const int32_t* info = FindImage(narrow);
    if (!info) return kNotFound;
    ULONG* const outputs[] = {id, technology, carrier, region, gps};
    for (ULONG i = 0; i < std::size(outputs); ++i)
        call.Put(outputs[i], static_cast<ULONG>(info[i]));
    return call.Done();
}
