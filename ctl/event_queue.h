// Notifications on their way from the library's threads to the thread that prints them.
#pragma once

#include "talvek/core.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <vector>

namespace ctl {

// A notification, and when the library delivered it.
struct Arrival {
    OrvNotifyRecord record;
    std::chrono::system_clock::time_point time;
};

// One a process and never destroyed: a delivery may still be in flight after the callback has been removed. It is of
// fixed size, so that a delivery neither allocates nor throws into the library.
class EventQueue {
public:
    using Clock = std::chrono::steady_clock;
    enum class Woken { ByEvent, ByTimeout, ByWake };

    static EventQueue& Get();

    // Makes the queue the library's client. After start-up, which drops the registration. Throws CallFailed.
    void Register();
    void Deregister();

    // Takes the next event, waiting for it at most until `deadline`. Events that are there come before a wake-up.
    Woken Wait(Arrival& arrival, std::optional<Clock::time_point> deadline);
    // Ends the current wait, or the next one, once. From any thread.
    void Wake();
    // Events that came while the queue was full.
    unsigned long Lost() const;

private:
    EventQueue();
    static void ORV_CALL Callback(OrvNotifyRecord* record);
    void Push(const OrvNotifyRecord& record);

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<Arrival> m_ring;
    size_t m_first = 0;
    size_t m_count = 0;
    unsigned long m_lost = 0;
    bool m_wake = false;
};

// Waits until the queue is woken, or until the module says that the data session has ended (PktSessionCall). Returns
// whether it was woken.
bool WaitWhileSessionLasts(EventQueue& queue);

} // namespace ctl
