// Building of commands, growth of arrays, hex dumps.
#pragma once

#include "platform/win32.h"

// prefix, then the octets as quoted upper-case hex (no quotes when there are none), then postfix. The command is
// allocated from the process heap; the caller frees it with FreeCommand. False when the memory or the lengths do not
// allow it.
bool BuildHexCommand(const char* prefix, const BYTE* data, ULONG size, const char* postfix, char** command);
void FreeCommand(char* command);
// Writes "AT" (cut at `capacity`) and returns the position of its terminator.
char* AppendAT(char* buffer, ULONG capacity);
// Enlarges an array of plain elements by `growth` elements. False, with everything as it was, when memory or arithmetic
// fails.
bool GrowArray(void** array, ULONG element_size, ULONG used, ULONG* allocated, ULONG growth);
void FreeArray(void* array);
// Logs a hex dump of `size` octets, 16 a line.
void HexDump(const void* data, ULONG size);
