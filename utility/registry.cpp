#include "utility/ov_utility.h"
#include "utility/record.h"
#include "utility/text_writer.h"

namespace {

// In characters. No name that is kept in the registry comes near it, and it bounds what a hostile file can make us
// read.
constexpr ULONG kLongestValue = 1024;

DWORD ReadText(HKEY key, const WCHAR* name, WCHAR* buffer, DWORD* size)
{
    WCHAR value[kLongestValue + 1];
    DWORD octets = sizeof value;
    DWORD type = REG_SZ;
    const int32_t result = RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<BYTE*>(value), &octets);
    const bool read = result == ERROR_SUCCESS || result == ERROR_MORE_DATA;
    if (read && type != REG_SZ) return ERROR_INVALID_DATA;
    if (result != ERROR_SUCCESS) return static_cast<DWORD>(result);

    // Nothing obliges a registry to end its texts with a terminator.
    const ULONG stored = octets / static_cast<ULONG>(sizeof(WCHAR));
    const ULONG length = BoundedLength(value, stored < kLongestValue + 1 ? stored : kLongestValue + 1);
    if (length > kLongestValue || length > *size) return ERROR_MORE_DATA;

    for (ULONG i = 0; i < length; ++i)
        buffer[i] = value[i];
    if (length < *size) buffer[length] = 0;
    *size = length;
    return ERROR_SUCCESS;
}

DWORD ReadValue(HKEY root, const WCHAR* subkey, const WCHAR* name, WCHAR* buffer, DWORD* size)
{
    if (!subkey || !name || !buffer || !size) return ERROR_INVALID_PARAMETER;
    HKEY key = nullptr;
    if (const int32_t result = RegOpenKeyExW(root, subkey, 0, KEY_READ, &key)) return static_cast<DWORD>(result);
    const DWORD error = ReadText(key, name, buffer, size);
    RegCloseKey(key);
    return error;
}

} // namespace

int32_t GetRegValue(HKEY root, const WCHAR* subkey, const WCHAR* value, WCHAR* buffer, DWORD* size)
{
    const DWORD error = ReadValue(root, subkey, value, buffer, size);
    if (error == ERROR_BADDB) WriteFault(RegistryFault());
    if (error != ERROR_SUCCESS) SetLastError(error);
    return static_cast<int32_t>(error);
}
