#include "api/device_reset.h"

#include "platform/win32.h"
#include "talvek/core.h"

namespace {

DWORD WINAPI ResetThread(LPVOID)
{
    OrvModemReset();
    return 0;
}

} // namespace

void StartDeviceReset()
{
    if (const HANDLE thread = CreateThread(nullptr, 0, ResetThread, nullptr, 0, nullptr)) CloseHandle(thread);
}
