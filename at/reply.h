// A reply of the modem, read from left to right. The reader keeps the first fault: it is logged with the text of the
// step that failed, and every later step does nothing and gives 0. The caller asks once, at the end:
//
//     Reply reply(kLogSource, text, "AT+CLIP?\r");
//     reply.SkipEcho();
//     reply.OptionalLineBreak();
//     reply.Expect("+CLIP: ", "MatchStringBeginning failed ");
//     const ULONG n = reply.Number("ParseUInt 1 failed ");
//     if (!reply.Finish()) return ORV_RCODE_FAILED;
#pragma once

#include "platform/win32.h"

class Reply {
public:
    // `text`, terminated, is what the module answered to `command`, the line as it was sent; both must outlive the
    // reader. `log_source` is the source module that the caller's log entries carry.
    Reply(const WCHAR* log_source, const char* text, const char* command)
        : m_log_source(log_source), m_rest(text), m_command(command)
    {
    }

    // The echo of the command. A module that does not echo is no fault; it is only logged.
    void SkipEcho(int line = __builtin_LINE());
    // A line break, which may be missing.
    void OptionalLineBreak();
    // Exactly this text. `fault` is what is logged when something else stands there, here and below.
    void Expect(const char* text, const char* fault, int line = __builtin_LINE());
    // Decimal digits with blanks around them; leading zeros are allowed, and the value wraps at 32 bits.
    ULONG Number(const char* fault, int line = __builtin_LINE());
    // A text in quotation marks, or without them one that ends at a comma or a line break. What does not fit `size`
    // characters with the terminator is left out. A quoted text holds no line break.
    void Text(char* out, ULONG size, const char* fault, int line = __builtin_LINE());
    // The line break that must follow a value.
    void LineBreak(const char* fault, int line = __builtin_LINE());
    // Whether exactly this text stands here; it is then read. Never a fault.
    bool Has(const char* text);
    // What stands before the first of the characters `stops`, or before the end; `*length` characters.
    const char* UpTo(const char* stops, ULONG* length);
    // The caller's own fault with what was read.
    void Refuse(const char* fault, int line = __builtin_LINE());

    // Whether this text comes next; false after a fault.
    bool Stands(const char* text) const;
    // What has not been read yet, terminated.
    const char* Rest() const { return m_rest; }
    // Whether every step found what it looked for. What is left of the reply is not looked at.
    bool Finish() const { return !m_failed; }

private:
    void Log(const char* text, int line) const;
    void Fail(const char* fault, int line);

    const WCHAR* m_log_source;
    const char* m_rest;
    const char* m_command;
    bool m_failed = false;
};
