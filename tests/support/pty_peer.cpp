#include "tests/support/pty_peer.h"

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>

PtyPeer::PtyPeer()
{
    m_far_end = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    char path[64];
    if (m_far_end < 0 || grantpt(m_far_end) != 0 || unlockpt(m_far_end) != 0 ||
        ptsname_r(m_far_end, path, sizeof(path)) != 0)
        return;
    m_near_end = open(path, O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios settings = {};
    if (m_near_end < 0 || pipe2(m_stop, O_CLOEXEC) != 0 || tcgetattr(m_near_end, &settings) != 0) return;
    cfmakeraw(&settings);
    tcsetattr(m_near_end, TCSANOW, &settings);

    m_narrow_name = path;
    m_name.assign(m_narrow_name.begin(), m_narrow_name.end());
    m_thread = std::thread([this] { Run(); });
}

PtyPeer::~PtyPeer()
{
    HangUp();
    for (const int descriptor : {m_far_end, m_near_end, m_stop[0], m_stop[1]})
        if (descriptor >= 0) close(descriptor);
}

void PtyPeer::Answer(const std::string& octets, size_t fragment, Afterwards afterwards)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_replies.push_back({octets, fragment == kWhole ? octets.size() : fragment, afterwards});
}

void PtyPeer::HangUp()
{
    if (!m_thread.joinable()) return;
    while (write(m_stop[1], "", 1) < 0 && errno == EINTR) {
    }
    m_thread.join();
}

std::string PtyPeer::Received() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_received;
}

bool PtyPeer::WaitReceived(const std::string& octets) const
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_arrived.wait_for(lock, std::chrono::seconds(10),
                              [&] { return m_received.find(octets) != std::string::npos; });
}

void PtyPeer::Run()
{
    char octets[512];
    bool up = true;
    while (up && Await(POLLIN)) {
        const ssize_t size = read(m_far_end, octets, sizeof(octets));
        if (size <= 0) continue;
        for (const Reply& reply : Take(octets, static_cast<size_t>(size)))
            up = up && Play(reply);
    }
    close(m_far_end);
    m_far_end = -1;
}

// Under one lock, so that whoever sees octets arrive may queue the answer to the next line.
std::vector<PtyPeer::Reply> PtyPeer::Take(const char* octets, size_t size)
{
    std::vector<Reply> due;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_received.append(octets, size);
        for (size_t end; (end = m_received.find('\r', m_line_start)) != std::string::npos; m_line_start = end + 1) {
            const bool empty = m_received.find_first_not_of('\n', m_line_start) == end;
            if (empty || m_replies.empty()) continue;
            due.push_back(m_replies.front());
            m_replies.pop_front();
        }
    }
    m_arrived.notify_all();
    return due;
}

bool PtyPeer::Play(const Reply& reply)
{
    size_t done = 0;
    while (done < reply.octets.size()) {
        const size_t wanted = std::min(reply.fragment, reply.octets.size() - done);
        const ssize_t written = write(m_far_end, reply.octets.data() + done, wanted);
        if (written > 0) {
            done += static_cast<size_t>(written);
            std::this_thread::yield(); // so that the reader sees the fragment by itself, as a rule
        } else if (!Await(POLLOUT)) {
            return false;
        }
    }
    return reply.afterwards == Afterwards::Stay;
}

bool PtyPeer::Await(short events) const
{
    pollfd waits[] = {{m_far_end, events, 0}, {m_stop[0], POLLIN, 0}};
    while (poll(waits, 2, -1) < 0 && errno == EINTR) {
    }
    return (waits[1].revents & POLLIN) == 0;
}
