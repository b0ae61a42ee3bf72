// Command lines for the AT port, and what is logged when the module refuses one.
#pragma once

#include "platform/win32.h"
#include "talvek/rcode.h"
#include "utility/format.h"

// The texts for a refusal with a number and for one without.
struct AtErrorTexts {
    const char* code;
    const char* no_code;
};

// A command line in a buffer of 260 characters.
struct CommandLine {
    static constexpr ULONG kSize = 260;
    char text[kSize + 1]; // one more, by which a line that does not fit shows

    // False when the line does not fit.
    template <class... Arguments>
    bool Format(const char* format, Arguments... arguments)
    {
        return PrintNarrow(text, sizeof text, format, arguments...) < kSize;
    }
};

// Sends a command line. `reply`, of kAtBufferSize characters, receives what the module answers. What the module has
// against the command is only logged, under the caller's source module; the result is then 5.
ORV_RCODE SendAtCommand(const WCHAR* log_source, const char* command, const AtErrorTexts& errors, char* reply,
                        int line = __builtin_LINE());

// The logging alone, of the `reply` by which a command was refused.
void LogAtRefusal(const WCHAR* log_source, const char* command, const AtErrorTexts& errors, const char* reply,
                  int line = __builtin_LINE());
