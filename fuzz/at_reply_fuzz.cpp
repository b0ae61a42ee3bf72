// Walks a hostile reply with the parse primitives, and with the reader that stands on them. The first octet seeds the
// order of the steps, the rest is the reply.
#include <stdlib.h>
#include <string.h>

#include "at/parse.h"
#include "at/reply.h"
#include "at/util.h"

namespace {

void Require(bool condition)
{
    if (!condition) abort();
}

// One step from `text`; returns the position after it, or null when the reply does not go on as expected.
const char* Step(unsigned choice, const char* text)
{
    static constexpr const char* kExpected[] = {"AT", "\r\n", "+CLIP: ", ",", "\"", "OK", "+CME ERROR: ", ""};
    const char* rest = nullptr;
    ULONG value = 0;
    switch (choice % 5) {
    case 0:
    case 1: {
        const char* const expected = kExpected[choice / 5 % 8];
        const bool matches = MatchStringBeginning(text, expected, &rest);
        Require(matches == (strstr(text, expected) == text));
        Require(rest == (matches ? text + strlen(expected) : nullptr));
        return rest;
    }
    case 2:
        Require(ParseRspPrefix(text, &rest));
        return rest;
    case 3:
        Require(ParseRspSuffix(text, &rest) == (rest != nullptr));
        return rest;
    default:
        const bool read = ParseUInt(text, static_cast<int>(choice / 5 % 2), &value, &rest);
        Require(read == (rest != text));
        Require(read || value == 0);
        return read ? rest : nullptr;
    }
}

// The reader as the getters use it: it never leaves the reply, never goes back, and stays where it failed.
void CheckReader(unsigned choice, const char* text, const char* end)
{
    static constexpr const char* kExpected[] = {"+CLIP: ", ",", "\r\n", ""};
    Reply reply(TXT(".\\at_reply_fuzz.cpp"), text, "AT+CLIP?\r");
    for (unsigned steps = 0; steps < 16; ++steps) {
        choice = choice * 1103515245u + 12345u;
        const char* const before = reply.Rest();
        const bool failed = !reply.Finish();
        ULONG value = 0;
        switch (choice >> 16 & 7) {
        case 0:
            reply.SkipEcho();
            break;
        case 1:
            reply.OptionalLineBreak();
            break;
        case 2:
            reply.LineBreak("line break");
            break;
        case 3:
        case 4:
            value = reply.Number("number");
            break;
        default:
            reply.Expect(kExpected[choice >> 19 & 3], "text");
        }
        Require(reply.Rest() >= before && reply.Rest() <= end);
        if (!reply.Finish()) Require(reply.Rest() == before && value == 0);
        if (failed) Require(!reply.Finish());
    }
}

void CheckHexCommand(const BYTE* data, size_t size, const char* text)
{
    char* command = nullptr;
    Require(BuildHexCommand(text, data, static_cast<ULONG>(size), text, &command));
    Require(strlen(command) == 2 * strlen(text) + (size ? 2 * size + 2 : 0));
    FreeCommand(command);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const BYTE* data, size_t size)
{
    if (size == 0) return 0;
    // A block of the exact size, so that a read behind the terminator is found.
    char* const reply = static_cast<char*>(malloc(size));
    if (!reply) return 0;
    memcpy(reply, data + 1, size - 1);
    reply[size - 1] = '\0';
    const char* const end = reply + strlen(reply);

    unsigned choice = data[0];
    const char* position = reply;
    for (unsigned steps = 0; steps < 64 + 2 * size; ++steps) {
        choice = choice * 1103515245u + 12345u;
        const char* const next = Step(choice >> 16, position);
        if (next) {
            Require(next >= position && next <= end);
            position = next;
        } else if (*position) {
            ++position;
        }
    }
    CheckReader(data[0], reply, end);
    CheckHexCommand(data, size, reply);
    free(reply);
    return 0;
}
