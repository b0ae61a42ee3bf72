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

// A code pointer as a log text prints it: its low 32 bits.
template <class Function>
ULONG Low32(Function* function)
{
    return static_cast<ULONG>(reinterpret_cast<uintptr_t>(function));
}
