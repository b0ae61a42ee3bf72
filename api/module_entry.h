// The module's entry point, as the loader of Windows and Windows CE calls it.
#pragma once

#include "platform/win32.h"

constexpr DWORD kProcessAttach = 1;

// Announces the module on the kernel's debug output when a process attaches. Always 1.
extern "C" int TalvekModuleEntry(void* module, DWORD reason, void* reserved);
