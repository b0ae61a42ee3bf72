#include "at/util.h"

#include <string.h>

#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\util.cpp");

// Room in a command beside its texts and octets: the quotes, the terminator, and some to spare.
constexpr ULONG kCommandReserve = 260;
constexpr ULONG kDumpWidth = 16;

char HexDigit(BYTE semi_octet)
{
    TBD_ASSERT(0x10 > semi_octet, "ASSERTION FAILURE: ===>0x10 > bSemiByte");
    return "0123456789ABCDEF"[semi_octet & 0xF];
}

} // namespace

bool BuildHexCommand(const char* prefix, const BYTE* data, ULONG size, const char* postfix, char** command)
{
    TBD_ASSERT(nullptr != prefix, "ASSERTION FAILURE: ===>NULL != szPrefix");
    TBD_ASSERT(nullptr != postfix, "ASSERTION FAILURE: ===>NULL != szPostfix");
    if (!prefix || !postfix) return false;

    const size_t prefix_length = strlen(prefix);
    const size_t postfix_length = strlen(postfix);
    const ULONGLONG room = ULONGLONG{prefix_length} + kCommandReserve + postfix_length + 2 * ULONGLONG{size};
    if (room > 0xFFFFFFFFu || (!data && size)) {
        LOG_C("BuildHexCommand refused, %d bytes", size);
        return false;
    }
    char* const begin = static_cast<char*>(HeapAlloc(GetProcessHeap(), 0, static_cast<SIZE_T>(room)));
    if (!begin) return false;

    memcpy(begin, prefix, prefix_length);
    char* walk = begin + prefix_length;
    if (size) {
        *walk++ = '"';
        for (ULONG i = 0; i < size; ++i) {
            TBD_ASSERT(room >= static_cast<ULONGLONG>(walk - begin + 2),
                       "ASSERTION FAILURE: ===>cbCmd >= (UINT)(szWalk - rszCmd + 2)");
            *walk++ = HexDigit(static_cast<BYTE>(data[i] >> 4));
            *walk++ = HexDigit(data[i] & 0xF);
        }
        *walk++ = '"';
    }
    memcpy(walk, postfix, postfix_length + 1);
    *command = begin;
    return true;
}

void FreeCommand(char* command)
{
    if (command) HeapFree(GetProcessHeap(), 0, command);
}

char* AppendAT(char* buffer, ULONG capacity)
{
    if (capacity == 0) return buffer;
    const char* text = "AT";
    while (*text && --capacity)
        *buffer++ = *text++;
    *buffer = '\0';
    return buffer;
}

bool GrowArray(void** array, ULONG element_size, ULONG used, ULONG* allocated, ULONG growth)
{
    const bool usable = array && allocated && (*array || 0 == *allocated);
    TBD_ASSERT(usable, "ASSERTION FAILURE: ===>prgrData && pnAllocated && (*prgrData || (0 == *pnAllocated))");
    if (!usable || used > *allocated) return false;

    const ULONGLONG count = ULONGLONG{*allocated} + growth;
    if (count > 0xFFFFFFFFu) return false;
    const ULONGLONG octets = count * element_size;
    if (octets > static_cast<SIZE_T>(-1)) return false;
    void* const grown = HeapAlloc(GetProcessHeap(), 0, static_cast<SIZE_T>(octets));
    if (!grown) return false;

    if (used) memcpy(grown, *array, SIZE_T{used} * element_size);
    FreeArray(*array);
    *array = grown;
    *allocated = static_cast<ULONG>(count);
    return true;
}

void FreeArray(void* array)
{
    if (array) HeapFree(GetProcessHeap(), 0, array);
}

void HexDump(const void* data, ULONG size)
{
    if (!LogIsOn(OV_LOG_INFO)) return;
    const BYTE* const octets = static_cast<const BYTE*>(data);
    LOG_C("----------------------------------------");
    LOG_C("dumping 0x%x %d bytes", static_cast<ULONG>(reinterpret_cast<uintptr_t>(data)), size);
    ULONG count = 0;
    for (ULONG offset = 0; offset < size; offset += count) {
        char values[kDumpWidth * 4];
        char* walk = values;
        count = size - offset < kDumpWidth ? size - offset : kDumpWidth;
        for (ULONG i = 0; i < count; ++i) {
            const BYTE octet = octets[offset + i];
            if (i) {
                *walk++ = ',';
                *walk++ = ' ';
            }
            *walk++ = octet < 0x10 ? ' ' : "0123456789abcdef"[octet >> 4];
            *walk++ = "0123456789abcdef"[octet & 0xF];
        }
        *walk = '\0';
        LOG_C("%4x: %s", offset, values);
    }
    LOG_C("----------------------------------------");
}
