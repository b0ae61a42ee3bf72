// A serial port played by script, read by read, in place of the platform's calls; and a reply buffer that tells on
// overruns.
#pragma once

#include <gtest/gtest.h>
#include <string.h>

#include <algorithm>
#include <deque>
#include <iterator>
#include <string>
#include <vector>

#include "at/OrvAtPort.h"
#include "platform/hooks.h"
#include "tests/support/pty_peer.h"

// A caller's reply buffer, with a strip behind it that nothing may touch.
class ReplyBuffer {
public:
    ReplyBuffer() { memset(m_octets, kUntouched, sizeof(m_octets)); }
    char* Octets() { return m_octets; }
    std::string Text() const { return std::string(m_octets, strnlen(m_octets, kAtBufferSize)); }
    bool Sound() const
    {
        return memchr(m_octets, 0, kAtBufferSize) &&
               std::all_of(m_octets + kAtBufferSize, std::end(m_octets), [](char c) { return c == kUntouched; });
    }

private:
    static constexpr char kUntouched = 0x5A;
    char m_octets[kAtBufferSize + 64];
};

// What the replaced calls play and note. Reads that the script does not provide for fail.
struct Script {
    struct Read {
        std::string octets;
        bool failed = false;
    };
    std::deque<Read> reads;
    std::deque<DWORD> ticks; // the last one stays
    std::string written;
    std::vector<DWORD> sleeps;
    PtyPeer* wait_in_sleep = nullptr;
};
inline Script g_script;

inline BOOL ScriptedRead(HANDLE, LPVOID buffer, DWORD size, DWORD* read, void*)
{
    if (g_script.reads.empty() || g_script.reads.front().failed) {
        if (!g_script.reads.empty()) g_script.reads.pop_front();
        SetLastError(ERROR_NOT_READY);
        return FALSE;
    }
    std::string& octets = g_script.reads.front().octets;
    *read = static_cast<DWORD>(octets.copy(static_cast<char*>(buffer), size));
    octets.erase(0, *read);
    if (octets.empty()) g_script.reads.pop_front();
    return TRUE;
}

inline BOOL ScriptedWrite(HANDLE, LPCVOID data, DWORD size, DWORD* written, void*)
{
    g_script.written.append(static_cast<const char*>(data), size);
    *written = size;
    return TRUE;
}

inline BOOL ShortWrite(HANDLE, LPCVOID, DWORD size, DWORD* written, void*)
{
    *written = size - 1;
    return TRUE;
}

inline DWORD ScriptedTick()
{
    const DWORD tick = g_script.ticks.front();
    if (g_script.ticks.size() > 1) g_script.ticks.pop_front();
    return tick;
}

inline void ScriptedSleep(DWORD milliseconds)
{
    g_script.sleeps.push_back(milliseconds);
    if (g_script.wait_in_sleep) {
        EXPECT_TRUE(g_script.wait_in_sleep->WaitReceived("\r\nAT\r\n"));
    }
}

template <class Function>
void Replace(const char* call, Function* function)
{
    ASSERT_TRUE(platform_hooks::ReplaceCall(call, reinterpret_cast<FARPROC>(function))) << call;
}
