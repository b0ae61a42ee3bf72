// What the log calls have in common: a record on its way to the log file and to the test's sink.
#pragma once

#include "utility/ov_utility.h"

// Room for the text of one record, with the terminator. Longer ones are cut.
constexpr ULONG kTextRoom = 2048;

// Hands a record to the log file, if TALVEK_LOG asks for records of this level, and to the sink, if one is set.
// `text_length` counts the octets of record.text, which may contain zeros.
void WriteRecord(OvLogLevel level, const OvLogRecord& record, ULONG text_length);

// Logs a failure that the utility library itself has met.
void WriteFault(const char* text);

// Logging leaves the last error as it was: it is often an argument of the entry, or read right after it.
class KeepLastError {
public:
    KeepLastError() : m_error(GetLastError()) {}
    ~KeepLastError() { SetLastError(m_error); }
    KeepLastError(const KeepLastError&) = delete;
    KeepLastError& operator=(const KeepLastError&) = delete;

private:
    DWORD m_error;
};
