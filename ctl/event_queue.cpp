#include "ctl/event_queue.h"

#include "ctl/error.h"

namespace ctl {

namespace {
constexpr size_t kCapacity = 1024;
}

EventQueue::EventQueue() : m_ring(kCapacity) {}

EventQueue& EventQueue::Get()
{
    static auto* const queue = new EventQueue;
    return *queue;
}

void EventQueue::Register() { Check("OrvRegisterCallback", OrvRegisterCallback(&Callback, 0)); }

void EventQueue::Deregister() { Check("OrvDeRegisterCallback", OrvDeRegisterCallback(&Callback)); }

void EventQueue::Callback(OrvNotifyRecord* record)
{
    if (record) Get().Push(*record);
}

void EventQueue::Push(const OrvNotifyRecord& record)
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (m_count == m_ring.size()) {
            ++m_lost;
            return;
        }
        m_ring[(m_first + m_count) % m_ring.size()] = {record, std::chrono::system_clock::now()};
        ++m_count;
    }
    m_changed.notify_one();
}

EventQueue::Woken EventQueue::Wait(Arrival& arrival, std::optional<Clock::time_point> deadline)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    const auto ready = [this] { return m_count != 0 || m_wake; };
    if (!deadline)
        m_changed.wait(lock, ready);
    else if (!m_changed.wait_until(lock, *deadline, ready))
        return Woken::ByTimeout;
    if (m_count == 0) {
        m_wake = false;
        return Woken::ByWake;
    }
    arrival = m_ring[m_first];
    m_first = (m_first + 1) % m_ring.size();
    --m_count;
    return Woken::ByEvent;
}

void EventQueue::Wake()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_wake = true;
    }
    m_changed.notify_one();
}

unsigned long EventQueue::Lost() const
{
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_lost;
}

bool WaitWhileSessionLasts(EventQueue& queue)
{
    Arrival arrival;
    const OrvNotifyRecord& record = arrival.record;
    while (queue.Wait(arrival, {}) == EventQueue::Woken::ByEvent)
        if (record.uNotify == ORV_NOTIFY_PktSessionCall && record.payload.PktSession.bConnected == 0) return false;
    return true;
}

} // namespace ctl
