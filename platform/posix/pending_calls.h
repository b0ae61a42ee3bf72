// The reads or the writes that wait on one port, so that another thread can end them.
#pragma once

#include "platform/posix/sync.h"

namespace seam {

class PendingCalls {
public:
    // Returns false when the host has no descriptor left. Without Open nothing can be ended.
    bool Open();
    void Close();

    // Ends the calls that are pending now.
    void EndAll();
    // Also ends each later one at once: the handle is being closed.
    void EndForGood();

    unsigned Enter(); // returns the ticket of a call that begins
    void Leave();
    bool HasEnded(unsigned ticket);
    // Readable when a pending call was ended, or negative.
    int Descriptor() const { return m_event; }

private:
    int m_event = -1;
    Mutex m_mutex;
    // Guarded by m_mutex.
    unsigned m_pending = 0;
    unsigned m_generation = 0; // counts the times that the pending calls were ended; a ticket is its value at the start
    bool m_signalled = false;  // m_event is readable
    bool m_closed = false;
};

// One call that is pending for as long as this object lives.
class PendingCall {
public:
    explicit PendingCall(PendingCalls& calls) : m_calls(calls), m_ticket(calls.Enter()) {}
    ~PendingCall() { m_calls.Leave(); }
    PendingCall(const PendingCall&) = delete;
    PendingCall& operator=(const PendingCall&) = delete;

    enum class Outcome { Ready, TimedOut, Ended };
    // Waits until `descriptor` has one of the poll `events` or was hung up (`*hung_up`), or the time has passed, or the
    // call was ended.
    Outcome Await(int descriptor, short events, Deadline deadline, bool* hung_up);

private:
    PendingCalls& m_calls;
    unsigned m_ticket;
};

} // namespace seam
