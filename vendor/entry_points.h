// Which entry points of the vendor library are looked up, in which order, and where each goes.
#pragma once

#include <iterator>
#include <stddef.h>
#include <string.h>

#include "platform/win32.h"
#include "talvek/gobi_dll.h"

// The offset of a look-up that fills no field of the table.
constexpr size_t kStaticMember = ~static_cast<size_t>(0);

// One look-up: a field of the instance's table, or a static member of the class.
struct Lookup {
    const WCHAR* name;           // the vendor's own
    size_t offset;               // in GobiEntryPoints, or kStaticMember
    void (*set_static)(FARPROC); // for a static member, else null
};

// Walked from the top; the order is part of the contract.
constexpr size_t kLookupCount = 221;
extern const Lookup kLookups[kLookupCount];

inline void SetInstanceField(GobiEntryPoints& table, const Lookup& lookup, FARPROC address)
{
    static_assert(sizeof(FARPROC) == sizeof(table.GetPower), "every field is one code pointer");
    memcpy(reinterpret_cast<BYTE*>(&table) + lookup.offset, &address, sizeof address);
}
