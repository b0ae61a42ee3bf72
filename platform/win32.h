// The Win32 subset that the library stands on, and nothing more.
//
// On Windows these are the system's own declarations (platform/windows). Elsewhere they are declared below, under their
// Win32 names and with their Win32 meanings, and platform/posix implements them in a shared library of its own, so that
// everything that runs in a process shares one last error, one set of handles and one set of test hooks
// (platform/hooks.h).
//
// Each entry tells what it does, what it returns, the error it leaves for GetLastError() and who calls it.
#pragma once

#include "talvek/types.h"

// A literal of 16-bit characters.
#define TXT(text) ORV_TEXT(text)

#if defined(_WIN32)
#include "platform/windows/win32_native.h"
#else

#define PLATFORM_API __attribute__((visibility("default")))

// A namespace keeps these names apart from a client's own functions of the same name (Sleep is a popular one).
namespace talvek_platform {

using BOOL = int;
using DWORD = ULONG;
using UINT = ULONG;
using LPVOID = void*;
using LPCVOID = const void*;
using SIZE_T = size_t;
using FARPROC = void (*)();

struct HandleObject;
using HANDLE = HandleObject*;
struct Module;
using HMODULE = Module*;
struct RegistryKey;
using HKEY = RegistryKey*;

constexpr BOOL FALSE = 0;
constexpr BOOL TRUE = 1;
constexpr DWORD MAXDWORD = 0xFFFFFFFFu;
constexpr DWORD INFINITE = 0xFFFFFFFFu;
#define INVALID_HANDLE_VALUE (reinterpret_cast<::talvek_platform::HANDLE>(~static_cast<uintptr_t>(0)))

// --- errors ---------------------------------------------------------------------------------------------------------

constexpr DWORD ERROR_SUCCESS = 0;
constexpr DWORD ERROR_INVALID_FUNCTION = 1; // a serial call on something that is no serial port
constexpr DWORD ERROR_FILE_NOT_FOUND = 2;   // no such file, port, key or value
constexpr DWORD ERROR_PATH_NOT_FOUND = 3;   // a folder of the path is missing
constexpr DWORD ERROR_ACCESS_DENIED = 5;    // no permission, a directory, or the port is held by somebody else
constexpr DWORD ERROR_INVALID_HANDLE = 6;
constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
constexpr DWORD ERROR_INVALID_DATA = 13; // the registry value is no text
constexpr DWORD ERROR_NOT_READY = 21;    // the line was hung up
constexpr DWORD ERROR_GEN_FAILURE = 31;  // any host error without a row of its own
constexpr DWORD ERROR_SHARING_VIOLATION = 32;
constexpr DWORD ERROR_INVALID_PARAMETER = 87;
constexpr DWORD ERROR_INSUFFICIENT_BUFFER = 122;
constexpr DWORD ERROR_MOD_NOT_FOUND = 126; // LoadLibraryW found no library of that name
constexpr DWORD ERROR_PROC_NOT_FOUND = 127;
constexpr DWORD ERROR_BAD_EXE_FORMAT = 193; // LoadLibraryW found a file that is no library (truncated, other machine)
constexpr DWORD ERROR_ENVVAR_NOT_FOUND = 203;
constexpr DWORD ERROR_FILENAME_EXCED_RANGE = 206; // a name longer than the system takes
constexpr DWORD ERROR_MORE_DATA = 234;            // the value does not fit the buffer
constexpr DWORD ERROR_BADDB = 1009;               // the registry file is malformed or unreadable
constexpr DWORD ERROR_OPERATION_ABORTED = 995;

// The last error of the calling thread. Called where a log text prints it.
PLATFORM_API DWORD GetLastError();
PLATFORM_API void SetLastError(DWORD error);

// --- threads --------------------------------------------------------------------------------------------------------

#define WINAPI // the system's calling convention, where it has several
using LPTHREAD_START_ROUTINE = DWORD(WINAPI*)(LPVOID);

// Starts `start(argument)` on a new thread. `security`, `stack_size`, `flags` and `thread_id` must be null or 0.
// Returns a handle that the caller closes with CloseHandle (the thread goes on), or null with the last error set.
// Called for every delivery thread, the resume work and the scan. Makes no heap allocation of its own while at most 64
// threads run.
PLATFORM_API HANDLE CreateThread(void* security, SIZE_T stack_size, LPTHREAD_START_ROUTINE start, LPVOID argument,
                                 DWORD flags, DWORD* thread_id);
// Waits until the thread of `handle` has ended, or `timeout_ms` have passed (INFINITE waits for ever).
// Returns WAIT_OBJECT_0, WAIT_TIMEOUT or WAIT_FAILED.
PLATFORM_API DWORD WaitForSingleObject(HANDLE handle, DWORD timeout_ms);
constexpr DWORD WAIT_OBJECT_0 = 0;
constexpr DWORD WAIT_TIMEOUT = 258;
constexpr DWORD WAIT_FAILED = 0xFFFFFFFFu;
// An identifier of the calling thread that no other living thread has.
PLATFORM_API DWORD GetCurrentThreadId();

PLATFORM_API void Sleep(DWORD milliseconds);
// Milliseconds since an arbitrary start, wrapping after 49.7 days.
PLATFORM_API DWORD GetTickCount();

// A word a thread. TlsAlloc returns TLS_OUT_OF_INDEXES when none is left; a slot reads null until it is set. As on
// Windows, a successful TlsGetValue sets the last error to 0, so that a stored null can be told from a failure; whoever
// reads a slot on behalf of others keeps their last error.
constexpr DWORD TLS_OUT_OF_INDEXES = 0xFFFFFFFFu;
PLATFORM_API DWORD TlsAlloc();
PLATFORM_API BOOL TlsFree(DWORD index);
PLATFORM_API LPVOID TlsGetValue(DWORD index);
PLATFORM_API BOOL TlsSetValue(DWORD index, LPVOID value);

// --- critical sections ----------------------------------------------------------------------------------------------

// Re-entrant for the owning thread. The storage belongs to the caller; 64 octets hold the host's own object.
struct alignas(16) CRITICAL_SECTION {
    BYTE opaque[64];
};
PLATFORM_API void InitializeCriticalSection(CRITICAL_SECTION* section);
PLATFORM_API void DeleteCriticalSection(CRITICAL_SECTION* section);
PLATFORM_API void EnterCriticalSection(CRITICAL_SECTION* section);
PLATFORM_API BOOL TryEnterCriticalSection(CRITICAL_SECTION* section);
PLATFORM_API void LeaveCriticalSection(CRITICAL_SECTION* section);

// --- interlocked words ----------------------------------------------------------------------------------------------

using LONG = int32_t;
// Stores `value` and returns what was there, as one step and as a full barrier. Called to claim a slot of a fixed pool.
inline LONG InterlockedExchange(volatile LONG* target, LONG value)
{
    return __atomic_exchange_n(target, value, __ATOMIC_SEQ_CST);
}

// --- loading libraries ----------------------------------------------------------------------------------------------

// Loads a library by its Windows name. "GobiApi.dll" is mapped to "libGobiApi.so" and looked for in the folders of the
// environment variable TALVEK_LIBRARY_PATH (colon-separated), then beside the library itself, then by the loader's own
// rules. The name keeps its case and is never a path. A file that is found but cannot be loaded ends the search:
// ERROR_BAD_EXE_FORMAT. Nothing found: ERROR_MOD_NOT_FOUND. Returns null on failure. Called by COrvGobiDll::Initialize.
PLATFORM_API HMODULE LoadLibraryW(const WCHAR* name);
// The address of an exported function, looked up under the vendor's own name; null when it is missing
// (ERROR_PROC_NOT_FOUND).
PLATFORM_API FARPROC GetProcAddressW(HMODULE module, const WCHAR* name);
PLATFORM_API BOOL FreeLibrary(HMODULE module);

// --- files and serial ports -----------------------------------------------------------------------------------------

constexpr DWORD GENERIC_READ = 0x80000000u;
constexpr DWORD GENERIC_WRITE = 0x40000000u;
constexpr DWORD FILE_SHARE_READ = 1;
constexpr DWORD FILE_SHARE_WRITE = 2;
constexpr DWORD OPEN_EXISTING = 3;
constexpr DWORD OPEN_ALWAYS = 4;
constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
constexpr DWORD FILE_END = 2;
constexpr DWORD INVALID_SET_FILE_POINTER = 0xFFFFFFFFu;

// Opens a serial port or a file. `security` and `template_file` must be null, `flags` 0 or FILE_ATTRIBUTE_NORMAL.
// Returns INVALID_HANDLE_VALUE on failure.
//
// OPEN_EXISTING: One trailing ':' is the device colon and is removed; a name without '/' is looked for below /dev, and
// "COM1" to "COM9" are the first nine serial ports there. A terminal is opened as a port and left in raw mode (no echo,
// no line editing, no signals). A share mode of 0 on a port is exclusive: a second open, by this process or by another
// one, fails with ERROR_ACCESS_DENIED. Opening a plain file succeeds, as on Windows; the serial calls below then fail
// with ERROR_INVALID_FUNCTION.
//
// OPEN_ALWAYS: The name is a file's as it stands. A missing one is created, for its owner only. A terminal is written
// to as if it were a file and keeps its mode. With GENERIC_WRITE alone each WriteFile appends at the end in one step,
// so that the lines of several processes do not mix.
PLATFORM_API HANDLE CreateFileW(const WCHAR* name, DWORD access, DWORD share_mode, void* security, DWORD disposition,
                                DWORD flags, HANDLE template_file);
// Ends a read or write that another thread has pending on the handle. A thread goes on without its handle.
// ERROR_INVALID_HANDLE for a handle that is not open.
PLATFORM_API BOOL CloseHandle(HANDLE handle);
// The process's standard error; the caller does not close it. INVALID_HANDLE_VALUE for any other `which`. Called by the
// log, whose messages about itself and whose destination "-" go there; a terminal stays in the mode that it is in.
constexpr DWORD STD_ERROR_HANDLE = 0xFFFFFFF4u;
PLATFORM_API HANDLE GetStdHandle(DWORD which);
// Reads up to `size` octets. On a port with the read interval and multiplier at MAXDWORD: returns at once what is
// waiting, else waits up to the read constant for the first octet; then TRUE with `*read` = 0. A port that has been
// hung up gives FALSE with ERROR_NOT_READY, never TRUE with 0 octets; what the host still holds of it is delivered
// first. Also FALSE with ERROR_OPERATION_ABORTED (PurgeComm), ERROR_ACCESS_DENIED (opened without GENERIC_READ) or
// ERROR_INVALID_PARAMETER. Until SetCommTimeouts a port has 250 ms between octets and 10 ms an octet plus 100 ms. A
// file gives TRUE with 0 at its end.
PLATFORM_API BOOL ReadFile(HANDLE handle, LPVOID buffer, DWORD size, DWORD* read, void* overlapped);
// Writes all of `size` octets, or fails. On a port the time allowed is multiplier * size + constant milliseconds; past
// it the call returns TRUE with what was written in `*written`. Fails as ReadFile does.
PLATFORM_API BOOL WriteFile(HANDLE handle, LPCVOID buffer, DWORD size, DWORD* written, void* overlapped);
// Moves a file's position and returns its low 32 bits, or INVALID_SET_FILE_POINTER. Called with FILE_END before a log
// is written.
PLATFORM_API DWORD SetFilePointer(HANDLE handle, int32_t distance, int32_t* distance_high, DWORD method);

// Ours, not Win32. Opens a serial port for reading and writing and for this process alone. Each system's names for
// ports are taken, with and without the device colon. Called by COrvAtPort.
inline HANDLE OpenPort(const WCHAR* name)
{
    return CreateFileW(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}
// Ours, not Win32: ReadFile on a port, with the meaning described there also where the system's own differs. Called by
// COrvAtPort.
inline BOOL ReadPort(HANDLE port, LPVOID buffer, DWORD size, DWORD* read)
{
    return ReadFile(port, buffer, size, read, nullptr);
}

struct DCB {
    DWORD DCBlength;
    DWORD BaudRate;
    DWORD fBinary, fParity, fOutxCtsFlow, fOutxDsrFlow, fDtrControl, fDsrSensitivity, fTXContinueOnXoff, fOutX, fInX,
        fErrorChar, fNull, fRtsControl, fAbortOnError;
    WORD XonLim, XoffLim;
    BYTE ByteSize, Parity, StopBits;
    char XonChar, XoffChar, ErrorChar, EofChar, EvtChar;
};
constexpr DWORD CBR_115200 = 115200;
constexpr BYTE NOPARITY = 0, ODDPARITY = 1, EVENPARITY = 2, MARKPARITY = 3, SPACEPARITY = 4;
constexpr BYTE ONESTOPBIT = 0, ONE5STOPBITS = 1, TWOSTOPBITS = 2;
constexpr DWORD DTR_CONTROL_DISABLE = 0, DTR_CONTROL_ENABLE = 1, DTR_CONTROL_HANDSHAKE = 2;
constexpr DWORD RTS_CONTROL_DISABLE = 0, RTS_CONTROL_ENABLE = 1, RTS_CONTROL_HANDSHAKE = 2;

struct COMMTIMEOUTS {
    DWORD ReadIntervalTimeout;
    DWORD ReadTotalTimeoutMultiplier;
    DWORD ReadTotalTimeoutConstant;
    DWORD WriteTotalTimeoutMultiplier;
    DWORD WriteTotalTimeoutConstant;
};

constexpr DWORD PURGE_TXABORT = 1, PURGE_RXABORT = 2, PURGE_TXCLEAR = 4, PURGE_RXCLEAR = 8;

// The control block of the port as the host holds it. SetCommState applies baud rate, parity, data and stop bits and
// software flow control; a pseudo-terminal has no modem lines, parity or data bits, so DTR, RTS and those are
// remembered with the handle only. ERROR_INVALID_PARAMETER for an unknown baud rate, stop bits that do not go with the
// data bits (two with five, one and a half with more), a wrong DCBlength, or equal XON and XOFF characters;
// ERROR_NOT_READY after a hang-up.
PLATFORM_API BOOL GetCommState(HANDLE port, DCB* block);
PLATFORM_API BOOL SetCommState(HANDLE port, const DCB* block);
PLATFORM_API BOOL SetCommTimeouts(HANDLE port, const COMMTIMEOUTS* timeouts);
// Advice on queue sizes; the host keeps its own.
PLATFORM_API BOOL SetupComm(HANDLE port, DWORD in_queue, DWORD out_queue);
// Discards what waits in either direction and ends a read or write that another thread has pending (FALSE with
// ERROR_OPERATION_ABORTED).
PLATFORM_API BOOL PurgeComm(HANDLE port, DWORD flags);

// --- registry -------------------------------------------------------------------------------------------------------

#define HKEY_CLASSES_ROOT (reinterpret_cast<::talvek_platform::HKEY>(static_cast<uintptr_t>(0x80000000u)))
#define HKEY_CURRENT_USER (reinterpret_cast<::talvek_platform::HKEY>(static_cast<uintptr_t>(0x80000001u)))
#define HKEY_LOCAL_MACHINE (reinterpret_cast<::talvek_platform::HKEY>(static_cast<uintptr_t>(0x80000002u)))
constexpr DWORD KEY_READ = 0x20019;
constexpr DWORD REG_SZ = 1;
constexpr DWORD REG_DWORD = 4;

// The registry is a text file in .reg syntax: "Windows Registry Editor Version 5.00", then [HKEY_…] sections with
// "name"="text" and "name"=dword:hex lines; UTF-8, or UTF-16 little-endian with a byte order mark. It is named by
// TALVEK_REGISTRY, else talvek/registry.reg in the user's configuration folder ($XDG_CONFIG_HOME or ~/.config), else
// /etc/talvek/registry.reg, and is read afresh at each RegOpenKeyExW. Keys and value names compare without regard to
// case. Where a value stands twice the last one counts. Values of other types (hex:) can be read as octets; lines that
// delete a key or a value are faults. `root` is one of the three above.
//
// Results are the Win32 ERROR_… values (0 = success): ERROR_FILE_NOT_FOUND when the file, the key or the value is
// absent, ERROR_BADDB when the file is malformed, unreadable or larger than 4 MiB; RegistryFault() then tells where.
PLATFORM_API int32_t RegOpenKeyExW(HKEY root, const WCHAR* subkey, DWORD options, DWORD access, HKEY* key);
// `*size` is in octets, in: room, out: size of the value with its terminator. ERROR_MORE_DATA when it does not fit.
PLATFORM_API int32_t RegQueryValueExW(HKEY key, const WCHAR* name, DWORD* reserved, DWORD* type, BYTE* data,
                                      DWORD* size);
PLATFORM_API int32_t RegCloseKey(HKEY key);
// Ours, not Win32: "FILE:LINE: what is wrong" of the calling thread's last ERROR_BADDB, UTF-8; empty if there was none.
// The line is 0 when the file as a whole is at fault. Valid until the thread's next RegOpenKeyExW.
PLATFORM_API const char* RegistryFault();

// --- text, memory, environment --------------------------------------------------------------------------------------

constexpr UINT CP_ACP = 0; // here: ISO 8859-1, octet n is character n
constexpr UINT CP_UTF8 = 65001;
// Converts `size` octets (-1: up to and with the terminator) to 16-bit characters. Returns how many were written, or
// the room needed when `room` is 0, or 0 with ERROR_INSUFFICIENT_BUFFER (nothing is written) or
// ERROR_INVALID_PARAMETER. Malformed UTF-8 becomes U+FFFD. `flags` is 0 or 1 (precomposed characters, the default).
PLATFORM_API int MultiByteToWideChar(UINT code_page, DWORD flags, const char* text, int size, WCHAR* wide, int room);

constexpr DWORD HEAP_ZERO_MEMORY = 8;
struct Heap;
using ProcessHeap = Heap*;
PLATFORM_API ProcessHeap GetProcessHeap();
PLATFORM_API LPVOID HeapAlloc(ProcessHeap heap, DWORD flags, SIZE_T size);
PLATFORM_API BOOL HeapFree(ProcessHeap heap, DWORD flags, LPVOID block);

// Copies the variable (UTF-8 on the host) into `buffer`. Returns its length, or 0 with ERROR_ENVVAR_NOT_FOUND, or the
// room needed with the terminator when it does not fit.
PLATFORM_API DWORD GetEnvironmentVariableW(const WCHAR* name, WCHAR* buffer, DWORD room);

// Kernel debug output; on the host, the debug sink of platform/hooks.h, else nothing. The format knows %s (16-bit), %d,
// %x.
PLATFORM_API void NKDbgPrintfW(const WCHAR* format, ...);

struct SYSTEMTIME {
    WORD wYear, wMonth, wDayOfWeek, wDay, wHour, wMinute, wSecond, wMilliseconds;
};
PLATFORM_API void GetLocalTime(SYSTEMTIME* time);

} // namespace talvek_platform

using namespace talvek_platform;

#endif
