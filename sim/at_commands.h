// The commands of the AT interpreter: a row each, in the file of what they are about. Lock held by every caller.
#pragma once

#include "sim/text.h"

namespace sim {

// What a command answers behind its information lines. The numbers are those of "+CME ERROR: ".
enum class AtResult : BYTE {
    NotAllowed = 3,
    NotSupported = 4,
    NoCard = 10,
    MemoryFull = 20,
    InvalidIndex = 21,
    NotFound = 22,
    TextTooLong = 24,
    WrongParameter = 50,
    Ok = 255
};

struct AtCommand {
    const char* name; // a command with an argument: what stands before it
    bool has_argument;
    // `argument` is what stands behind the name: "", "?", "=?", "=VALUE", or a value alone. Information lines go to
    // `reply`, each in line breaks of its own.
    AtResult (*run)(const char* argument, Writer& reply);
};

struct AtCommandTable {
    const AtCommand* commands;
    ULONG count;
};

extern const AtCommandTable kAtSettingCommands, kAtSimFileCommands, kAtOperatorCommands;

// The restricted commands are open for the one command that follows a successful AT!UNLOCK. To be called before each
// command that is run.
void AtBeginCommand();
// What a module has that has just been put in, and what it has after it restarted.
void ResetAtSettings();
void RestartAtSettings();

} // namespace sim
