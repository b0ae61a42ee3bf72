#include "platform/posix/pending_calls.h"

#include <iterator>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace seam {

bool PendingCalls::Open()
{
    m_event = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    return m_event >= 0;
}

void PendingCalls::Close()
{
    if (m_event >= 0) close(m_event);
}

void PendingCalls::EndAll()
{
    const Lock lock(m_mutex);
    if (m_pending == 0) return;
    ++m_generation;
    if (m_event < 0) return;
    eventfd_write(m_event, 1);
    m_signalled = true;
}

void PendingCalls::EndForGood()
{
    {
        const Lock lock(m_mutex);
        m_closed = true;
    }
    EndAll();
}

unsigned PendingCalls::Enter()
{
    const Lock lock(m_mutex);
    ++m_pending;
    return m_generation;
}

void PendingCalls::Leave()
{
    const Lock lock(m_mutex);
    if (--m_pending > 0 || !m_signalled) return;
    eventfd_t ignored;
    eventfd_read(m_event, &ignored); // the last one that was ended puts the signal back
    m_signalled = false;
}

bool PendingCalls::HasEnded(unsigned ticket)
{
    const Lock lock(m_mutex);
    return m_closed || m_generation != ticket;
}

PendingCall::Outcome PendingCall::Await(int descriptor, short events, Deadline deadline, bool* hung_up)
{
    for (;;) {
        if (m_calls.HasEnded(m_ticket)) return Outcome::Ended;
        pollfd watched[] = {{descriptor, events, 0}, {m_calls.Descriptor(), POLLIN, 0}};
        const int ready = poll(watched, std::size(watched), deadline.PollMs());
        if (m_calls.HasEnded(m_ticket)) return Outcome::Ended;
        if (ready > 0 && watched[0].revents != 0) {
            *hung_up = (watched[0].revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
            return Outcome::Ready;
        }
        if (ready == 0 && deadline.PollMs() == 0) return Outcome::TimedOut;
        // Interrupted, or another call of this port has yet to notice its end.
    }
}

} // namespace seam
