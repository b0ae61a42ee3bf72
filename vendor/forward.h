// What the binding's methods share.
#pragma once

#include "talvek/gobi_dll.h"
#include "utility/log.h"

constexpr const WCHAR* kLogSource = TXT(".\\OrvGobiDll.cpp");

// The status of a call whose entry point the vendor library lacks.
constexpr ULONG kEntryPointMissing = 1;

// Calls the entry point with the caller's arguments, or gives kEntryPointMissing when there is none.
template <class... Parameters>
ULONG Forward(ULONG(ORV_VENDOR_CALL* entry)(Parameters...), Parameters... arguments)
{
    return entry ? entry(arguments...) : kEntryPointMissing;
}

// The same, and a log line with the status of a call that was made; `text` prints it with "%d".
template <class... Parameters>
ULONG ForwardAndLog(const char* text, ULONG(ORV_VENDOR_CALL* entry)(Parameters...), Parameters... arguments)
{
    if (!entry) return kEntryPointMissing;
    const ULONG status = entry(arguments...);
    LOG_C(text, status);
    return status;
}

// An address as a log text prints it: its low 32 bits.
template <class Pointed>
ULONG Low32(Pointed* address)
{
    return static_cast<ULONG>(reinterpret_cast<uintptr_t>(address));
}
