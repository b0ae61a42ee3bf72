#include "api/module_entry.h"

extern "C" int TalvekModuleEntry(void*, DWORD reason, void*)
{
    if (reason == kProcessAttach) NKDbgPrintfW(TXT("TALVEK dll is attached to a process\r\n"));
    return 1;
}
