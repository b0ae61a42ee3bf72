// The stand-in vendor library's entry points for a test that calls them itself, each with its own type.
#pragma once

#include <dlfcn.h>

#include "talvek/gobi_entry_points.h"

inline void* SimLibrary()
{
    static void* const library = dlopen(TALVEK_SIM_DIRECTORY "/libGobiApi.so", RTLD_NOW | RTLD_LOCAL);
    return library;
}

// `type` only says which type; its value is not used.
template <class Function>
Function SimEntry(const char* name, Function type)
{
    static_cast<void>(type);
    return reinterpret_cast<Function>(dlsym(SimLibrary(), name));
}
// An entry point of the table.
#define SIM_ENTRY(name) SimEntry(#name, decltype(GobiEntryPoints::name)())
// One that registers a callback.
template <class Setter>
Setter SimRegistration(const char* name)
{
    return SimEntry(name, Setter());
}
