// The vendor library's entry points: each declared with the type that the table of entry points gives it, so that a
// body with another signature does not compile; and the same list as names, for the journal and the fault rules.
#pragma once

#include <type_traits>

#include "talvek/gobi_entry_points.h"

// NOLINTBEGIN(bugprone-macro-parentheses): a declared name takes none.
#define ENTRY_POINT(name) extern "C" ORV_EXPORT std::remove_pointer_t<decltype(GobiEntryPoints::name)> name;
#define REGISTRATION(name, type) extern "C" ORV_EXPORT std::remove_pointer_t<type> name;
#include "sim/entry_point_rows.h"
#undef ENTRY_POINT
#undef REGISTRATION
// NOLINTEND(bugprone-macro-parentheses)

namespace sim {

#define ENTRY_POINT(name) name,
#define REGISTRATION(name, type) name,
enum class EntryPoint : WORD {
#include "sim/entry_point_rows.h"
    Count
};
#undef ENTRY_POINT
#undef REGISTRATION

constexpr ULONG kEntryPoints = static_cast<ULONG>(EntryPoint::Count);
static_assert(kEntryPoints == 220, "the library looks up 220 distinct names");

const char* NameOf(EntryPoint entry);
// False when there is no entry point of that name.
bool FindEntryPoint(const char* name, EntryPoint* entry);

} // namespace sim
