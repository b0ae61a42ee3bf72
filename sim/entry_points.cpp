#include "sim/entry_points.h"

#include <iterator>

#include "sim/text.h"

namespace sim {

#define ENTRY_POINT(name) #name,
#define REGISTRATION(name, type) #name,
constexpr const char* kNames[] = {
#include "sim/entry_point_rows.h"
};
#undef ENTRY_POINT
#undef REGISTRATION
static_assert(std::size(kNames) == kEntryPoints);

const char* NameOf(EntryPoint entry) { return kNames[static_cast<ULONG>(entry)]; }

bool FindEntryPoint(const char* name, EntryPoint* entry)
{
    for (ULONG i = 0; i < kEntryPoints; ++i) {
        if (!Equal(kNames[i], name)) continue;
        *entry = static_cast<EntryPoint>(i);
        return true;
    }
    return false;
}

} // namespace sim
