// Opening of files and ports through the seam, by a narrow name.
#pragma once

#include <string>

#include "platform/win32.h"

constexpr DWORD kReadWrite = GENERIC_READ | GENERIC_WRITE;

inline std::u16string WideName(const std::string& text) { return std::u16string(text.begin(), text.end()); }

inline HANDLE Open(const std::string& name, DWORD access = kReadWrite, DWORD share_mode = 0,
                   DWORD disposition = OPEN_EXISTING)
{
    return CreateFileW(WideName(name).c_str(), access, share_mode, nullptr, disposition, FILE_ATTRIBUTE_NORMAL,
                       nullptr);
}

// The error that an exclusive open leaves, or ERROR_SUCCESS.
inline DWORD OpenErrorOf(const std::string& name, DWORD access = kReadWrite, DWORD disposition = OPEN_EXISTING)
{
    SetLastError(0);
    const HANDLE file = Open(name, access, 0, disposition);
    if (file == INVALID_HANDLE_VALUE) return GetLastError();
    CloseHandle(file);
    return ERROR_SUCCESS;
}
