// The Win32 subset on Windows itself: the system's own declarations, and what Windows CE has and the desktop lacks.
#pragma once

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include "platform/debug_text.h"

#define PLATFORM_API

namespace talvek_platform {

using ProcessHeap = HANDLE;

// Windows CE looks names up as 16-bit text. A name beyond ASCII, or longer than any identifier, is not found.
inline FARPROC GetProcAddressW(HMODULE module, const WCHAR* name)
{
    char narrow[256];
    size_t length = 0;
    while (name[length] && name[length] < 0x80 && length < sizeof narrow - 1) {
        narrow[length] = static_cast<char>(name[length]);
        ++length;
    }
    narrow[length] = 0;
    if (!name[length]) return GetProcAddress(module, narrow);
    SetLastError(ERROR_PROC_NOT_FOUND);
    return nullptr;
}

// To the debugger, or to whoever listens to OutputDebugStringW.
inline void NKDbgPrintfW(const WCHAR* format, ...)
{
    WCHAR text[debug_text::kRoom];
    va_list arguments;
    va_start(arguments, format);
    debug_text::Format(text, format, arguments);
    va_end(arguments);
    OutputDebugStringW(text);
}

// The system's registry is no file of ours: its faults have no line.
inline const char* RegistryFault() { return "the registry is damaged (ERROR_BADDB)"; }

// Opens a serial port for reading and writing, for this process alone. `name` may end in the device colon of Windows
// CE ("COM7:"). In the desktop's file names only COM1 to COM9 are ports, so the name goes to the device namespace.
inline HANDLE OpenPort(const WCHAR* name)
{
    constexpr WCHAR kDevices[] = TXT("\\\\.\\");
    constexpr size_t kPrefix = 4;
    WCHAR path[MAX_PATH];
    size_t length = 0;
    if (name[0] != '\\') {
        for (; length < kPrefix; ++length)
            path[length] = kDevices[length];
    }
    while (*name && length < MAX_PATH)
        path[length++] = *name++;
    if (length > 0 && path[length - 1] == ':') --length;
    if (length >= MAX_PATH) {
        SetLastError(ERROR_FILENAME_EXCED_RANGE);
        return INVALID_HANDLE_VALUE;
    }
    path[length] = 0;
    return CreateFileW(path, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}

// Reads what waits on a port, or waits for it as its time-outs say. With the read interval and multiplier at MAXDWORD a
// read is to return with the first octets. Some implementations of Win32 go on waiting until the request is filled, so
// one octet is asked for, and then exactly what waits behind it. To some of them a line that was hung up is one on
// which nothing comes, so its status is asked, too.
inline BOOL ReadPort(HANDLE port, LPVOID buffer, DWORD size, DWORD* read)
{
    COMSTAT status = {};
    DWORD errors = 0;
    *read = 0;
    if (!ClearCommError(port, &errors, &status)) {
        SetLastError(ERROR_NOT_READY);
        return FALSE;
    }
    if (!ReadFile(port, buffer, size > 0 ? 1 : 0, read, nullptr)) return FALSE;
    if (*read == 0) return TRUE;
    if (!ClearCommError(port, &errors, &status)) return TRUE; // the next read tells
    const DWORD waiting = status.cbInQue < size - 1 ? status.cbInQue : size - 1;
    DWORD more = 0;
    if (waiting > 0 && ReadFile(port, static_cast<BYTE*>(buffer) + 1, waiting, &more, nullptr)) *read += more;
    return TRUE;
}

} // namespace talvek_platform

using namespace talvek_platform;
