// The utility library: log, registry reading and text conversion. A shared library of its own, so that on a device the
// maker's own takes its place.
//
// Formats follow one set of rules on every host (utility/format.h): %lu is 32 bits, %s takes a string of the format's
// own width and %S one of the other width, and nothing is ever handed to the host's printf.
#pragma once

#include "platform/shared.h"
#include "platform/win32.h"

#if !defined(_WIN32)
#define OV_EXPORT __attribute__((visibility("default")))
#elif defined(OV_UTILITY_BUILD)
#define OV_EXPORT __declspec(dllexport)
#else
#define OV_EXPORT __declspec(dllimport)
#endif
#define OV_API extern "C" OV_EXPORT

// --- log -----------------------------------------------------------------------------------------------------------
//
// TALVEK_LOG=LEVEL:FILE switches the log on when the library is loaded: LEVEL is off, error, info or trace, FILE a path
// or "-" for standard error. A file is created for its owner only, added to and never emptied; processes may share one.
// When the setting makes no sense or the file cannot be opened, one line on standard error says so and the log is off.
//
// A record is one line of UTF-8, for example
//
//     2026-11-24 22:13:12.345 [4711] TALVEK:218 OrvHandleSuspend NOOP for targetDx = D3
//
// which is local time, thread, module and line number ("-" where there is none), and the text as it stands. Control
// characters, and octets that are no UTF-8, are written as \r, \n, \t or \xNN. The line is in the file when the call
// that wrote it returns. Texts are cut at 2047 octets; no log call changes the last error or allocates memory.
//
//   error   TBD_Output of kind 2, failed assertions, and faults of the registry file
//   info    also LogC, LogW and TBD_Output of kind 1
//   trace   also WriteLog and DisplayRawData

enum OvLogLevel : ULONG { OV_LOG_OFF = 0, OV_LOG_ERROR = 1, OV_LOG_INFO = 2, OV_LOG_TRACE = 3 };

// The level in force. Callers test it before they format (the macros of utility/log.h do).
extern "C" OV_EXPORT Shared<ULONG> ov_LogLevel;

// First half of an entry: the source module (".\TALVEK.cpp") and line that the calling thread's next LogC or LogW
// carries. `module` must stay valid until then (a literal).
OV_API void LogStoreFileLine(const WCHAR* module, int line);
// Second half of an entry: the text.
OV_API void LogC(const char* format, ...);
OV_API void LogW(const WCHAR* format, ...);
// A trace entry with no source of its own; `level` is 1 for function entries.
OV_API void WriteLog(int level, const char* format, ...);
// A trace for information (kind 1) or an error (kind 2); `category` is 4 in this library.
OV_API void TBD_Output(int category, int kind, const WCHAR* format, ...);
// Logs `text` when `condition` is 0. Does not abort.
OV_API void TBD_Assert(int condition, const char* text, const WCHAR* module, int line);
// Logs `label` and then `size` octets, printable ones as they are, the others as \r, \n, \t or \xNN, which are part of
// the record's text. At most 512 octets are shown.
OV_API void DisplayRawData(const char* label, const void* data, ULONG size);

// --- registry and text ---------------------------------------------------------------------------------------------

// Reads a text value. `*size` is in characters: in, the room at `buffer`; out, the length found. A text of exactly
// `*size` characters fits and gets no terminator; a shorter one gets one. Returns 0, or a Win32 error (also left for
// GetLastError()), and then neither `buffer` nor `*size` has been written: 2 absent, 234 longer than the room or than
// 1024 characters, 13 not a text, 87 a null pointer, 1009 malformed registry file (logged with file and line).
OV_API int32_t GetRegValue(HKEY root, const WCHAR* subkey, const WCHAR* value, WCHAR* buffer, DWORD* size);

// Widens min(size, length of `text`) characters into `wide`, and writes a terminator only when room is left for it, so
// `wide` needs `size` characters and a text that fills it has no terminator. Octet n becomes character n (ISO 8859-1).
// A null `text` is an empty one.
OV_API void OV_AtoT(const char* text, WCHAR* wide, ULONG size);
// The same from wide to narrow; a character above 255 becomes '?'.
OV_API void OV_TtoA(const WCHAR* wide, char* text, ULONG size);

// --- for tests -----------------------------------------------------------------------------------------------------

// One record as the log writes it. Strings are valid during the call only. They are UTF-8, but octets that a narrow
// text brought along are as they were. `module` is "" for WriteLog, TBD_Output, DisplayRawData and entries without a
// source.
struct OvLogRecord {
    const char* function; // "LogC", "LogW", "WriteLog", "TBD_Output", "TBD_Assert", "DisplayRawData"
    int kind;             // WriteLog's level, TBD_Output's kind, else 0
    const char* module;   // "TALVEK", from ".\TALVEK.cpp"
    int line;
    const char* text; // control characters not escaped
};
// Hands every record to `sink` too, and sets the level to trace (the file still gets what TALVEK_LOG asks for); null
// puts the level of TALVEK_LOG back. Calls of the sink come one at a time, on the thread that logs, and none is under
// way any more when this returns. The sink may log and may call this function, but must not wait for another thread
// that logs.
OV_API void OvCaptureLog(void (*sink)(const OvLogRecord* record, void* context), void* context);
