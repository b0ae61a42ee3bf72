// One command line of the verb table, read from left to right. The reader keeps the first fault: after it every step
// gives nothing, and the reply holds the reason.
#pragma once

#include "sim/text.h"

namespace sim {

constexpr ULONG kMaxLine = 12288;
constexpr ULONG kMaxKeptLine = 512; // of a command that is to run later, with its terminator

class Command {
public:
    // Splits `line` into words: bare ones, and "quoted" ones with \r \n \t \" \\ and \xNN. '#' begins a comment.
    Command(const char* line, Writer& reply);

    bool Failed() const { return m_failed; }
    // Marks the command failed; the caller writes the reason to what this returns.
    Writer& Fail();
    Writer& Reply() { return m_reply; }

    bool More() const { return !m_failed && m_next < m_count; }
    // The next word, or "" after a fault; a missing word is one, told as "missing WHAT".
    const char* Word(const char* what);
    // Octets of the word that was read last, which may hold zeros.
    ULONG WordLength() const { return m_next > 0 ? m_lengths[m_next - 1] : 0; }
    // The next word if it equals `word`.
    bool Take(const char* word);
    // The next word as a number, decimal or 0x, at least `low` and at most `high`.
    int64_t Signed(const char* what, int64_t low, int64_t high);
    ULONGLONG Unsigned(const char* what, ULONGLONG high);
    // The next word as on or off.
    bool Switch(const char* what);
    // The next word as hexadecimal octets ("" or two digits each); returns how many.
    ULONG HexOctets(const char* what, BYTE* octets, ULONG room);
    // What is left of the line, as it stands: a command that runs later. Fails when its verb is unknown or it is too
    // long to be kept (kMaxKeptLine).
    const char* LaterLine();
    // Fails when a word is left.
    void End();

private:
    static constexpr ULONG kMaxWords = 64;

    void Split(const char* line);
    const char* QuotedWord(const char* at, ULONG* used);

    Writer& m_reply;
    const char* m_line;
    bool m_failed = false;
    ULONG m_count = 0;
    ULONG m_next = 0;
    WORD m_sources[kMaxWords]; // where each word begins in the line
    WORD m_starts[kMaxWords];  // and in the storage, unescaped
    WORD m_lengths[kMaxWords];
    char m_storage[kMaxLine + kMaxWords];
};

// Reads all of `text` as a number. False when it is none or exceeds 64 bits.
bool ParseNumber(const char* text, bool* negative, ULONGLONG* magnitude);

// Runs one line of the verb table. Returns 0, or 1 with the reason in `reply`. Not to be called with the sim lock held.
int RunLine(const char* line, Writer& reply);
// Whether the verb table knows the word.
bool KnownVerb(const char* word);
// Runs every line of a text; on failure `reply` begins with the line's number.
int RunScript(const char* text, Writer& reply);

} // namespace sim
