// The loader of Windows calls a library's entry point under this name, for each process and each thread.

#include "api/module_entry.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID reserved)
{
    return TalvekModuleEntry(module, reason, reserved);
}
