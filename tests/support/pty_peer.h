// The far end of a serial line: a real pseudo-terminal, with a thread that answers command lines by script.
#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/win32.h"

class PtyPeer {
public:
    static constexpr size_t kWhole = 0;
    enum class Afterwards { Stay, HangUp };

    // Opens the pseudo-terminal; Name() is empty if the host has none to give.
    PtyPeer();
    // Hangs up.
    ~PtyPeer();
    PtyPeer(const PtyPeer&) = delete;
    PtyPeer& operator=(const PtyPeer&) = delete;

    // The path of the line's near end, for COrvAtPort::Open.
    const WCHAR* Name() const { return m_name.c_str(); }
    std::string NarrowName() const { return m_narrow_name; }
    // The near end as the test itself holds it, to look at its settings. Keeps the line up while no port has it open.
    int NearEnd() const { return m_near_end; }

    // Queues the answer to one command line (octets up to a "\r"; empty lines count for nothing): `octets`, written
    // `fragment` at a time, then perhaps the end of the line. A command line with no answer queued is left unanswered.
    void Answer(const std::string& octets, size_t fragment = kWhole, Afterwards afterwards = Afterwards::Stay);
    // Ends the line; returns once it is down.
    void HangUp();

    // Everything that has arrived so far.
    std::string Received() const;
    // Waits until `octets` have arrived somewhere in Received(). False when they have not within ten seconds.
    bool WaitReceived(const std::string& octets) const;

private:
    struct Reply {
        std::string octets;
        size_t fragment;
        Afterwards afterwards;
    };

    void Run();
    // Notes what arrived and returns the answers that are due to it.
    std::vector<Reply> Take(const char* octets, size_t size);
    // Returns whether the line stays up.
    bool Play(const Reply& reply);
    // Waits for the far end to become ready for `events`; false when the peer is to stop.
    bool Await(short events) const;

    int m_far_end = -1;
    int m_near_end = -1;
    int m_stop[2] = {-1, -1};
    std::u16string m_name;
    std::string m_narrow_name;

    mutable std::mutex m_mutex;
    mutable std::condition_variable m_arrived;
    std::deque<Reply> m_replies;
    std::string m_received;
    size_t m_line_start = 0;
    std::thread m_thread;
};
