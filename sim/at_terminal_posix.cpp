// The AT line as a pseudo-terminal. One thread holds the modem's end; it alone closes it.
#include "sim/at_terminal.h"

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/eventfd.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include "platform/shared.h"
#include "sim/at_modem.h"
#include "sim/clock.h"
#include "sim/host.h"
#include "sim/module.h"
#include "sim/signals_posix.h"

namespace sim {

// Opening, hanging up and naming the line, from any thread. The line's own thread never takes it.
static pthread_mutex_t g_mutex = PTHREAD_MUTEX_INITIALIZER;
static pthread_t g_thread;
static bool g_started; // g_thread is to be joined
static int g_modem = -1;
static int g_client = -1; // the client's end, held open too: its settings stay, and it tells what is still unread
static Text<64> g_name;
static Text<256> g_link;
static Shared<int> g_wake{-1}; // an event counter, open from the first use on
static Shared<ULONG> g_stop;
static Shared<ULONG> g_open;

constexpr ULONG kReadTimeoutMs = 2000; // for the client to read a fragment, or the last octets before a hang-up

static void SendSlowly(const BYTE* octets, ULONG count)
{
    while (count > 0 && !g_stop) {
        const ssize_t sent = write(g_modem, octets, count);
        if (sent > 0) {
            octets += sent;
            count -= static_cast<ULONG>(sent);
            continue;
        }
        if (sent < 0 && errno != EAGAIN && errno != EINTR) return;
        pollfd writable = {g_modem, POLLOUT, 0};
        poll(&writable, 1, 20);
    }
}

// Waits until the client has taken what was sent. Asking whether the client's end is readable also makes the host hand
// over what is on its way there, which the count of waiting octets would miss.
static void AwaitRead()
{
    const ULONGLONG start_ms = HostMilliseconds();
    pollfd unread = {g_client, POLLIN, 0};
    while (!g_stop && poll(&unread, 1, 0) > 0 && HostMilliseconds() - start_ms < kReadTimeoutMs)
        HostSleep(1);
}

// Sends what the modem has to send. Returns false when the line is to be hung up.
static bool SendAll()
{
    for (;;) {
        BYTE octets[1024];
        ULONG count = 0;
        AtStep step = AtStep::Idle;
        {
            Guard guard;
            step = AtTake(octets, sizeof(octets), &count);
        }
        SendSlowly(octets, count);
        if (g_stop) return false;
        if (step == AtStep::Idle) return true;
        if (step != AtStep::Send) AwaitRead();
        if (step == AtStep::HangUp) return false;
    }
}

static void ReceiveAll()
{
    BYTE octets[1024];
    ssize_t count = 0;
    while ((count = read(g_modem, octets, sizeof(octets))) > 0) {
        Guard guard;
        AtReceive(octets, static_cast<ULONG>(count));
    }
}

static void RemoveLink()
{
    char target[64];
    const ssize_t length = *g_link ? readlink(g_link, target, sizeof(target) - 1) : -1;
    if (length < 0) return;
    target[length] = 0;
    if (Equal(target, g_name)) unlink(g_link); // else somebody has put another one there
}

// A modem takes its time: a client that counts milliseconds must not see an answer in the one of its command.
static void TakeTimeForAnswer()
{
    ULONG answer_ms = 0;
    {
        Guard guard;
        if (IsLive()) answer_ms = TheModule().at.answer_ms;
    }
    if (answer_ms > 0) HostSleep(answer_ms);
}

static void* ServeLine(void*)
{
    while (SendAll()) {
        pollfd waiting[2] = {{g_modem, POLLIN, 0}, {g_wake, POLLIN, 0}};
        poll(waiting, 2, -1);
        uint64_t wakes = 0;
        if (waiting[1].revents != 0) [[maybe_unused]]
            const ssize_t got = read(g_wake, &wakes, sizeof(wakes));
        if (waiting[0].revents != 0) TakeTimeForAnswer();
        ReceiveAll();
    }
    g_open = 0; // first: whoever sees the line go down may ask for a new one at once
    RemoveLink();
    close(g_modem);
    close(g_client);
    {
        Guard guard;
        AtLineLost();
    }
    return nullptr;
}

static bool MakeLink()
{
    if (!*g_link) return true;
    struct stat there = {};
    if (lstat(g_link, &there) == 0 && !S_ISLNK(there.st_mode)) return false;
    Text<288> fresh;
    Writer(fresh).Add(g_link).Add(".").Unsigned(static_cast<ULONG>(getpid()));
    unlink(fresh);
    if (symlink(g_name, fresh) != 0) return false;
    if (rename(fresh, g_link) == 0) return true;
    unlink(fresh);
    return false;
}

// Both ends of a new pseudo-terminal, the client's without any processing of its own.
static bool OpenPair()
{
    g_modem = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (g_modem < 0) return false;
    termios settings = {};
    if (grantpt(g_modem) == 0 && unlockpt(g_modem) == 0 && ptsname_r(g_modem, g_name.octets, g_name.Room()) == 0) {
        g_client = open(g_name, O_RDWR | O_NOCTTY | O_CLOEXEC);
        if (g_client >= 0 && tcgetattr(g_client, &settings) == 0) {
            cfmakeraw(&settings);
            if (tcsetattr(g_client, TCSANOW, &settings) == 0) return true;
        }
        if (g_client >= 0) close(g_client);
    }
    close(g_modem);
    return false;
}

class Locked {
public:
    Locked() { pthread_mutex_lock(&g_mutex); }
    ~Locked() { pthread_mutex_unlock(&g_mutex); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;
};

static void JoinThread()
{
    if (!g_started) return;
    pthread_join(g_thread, nullptr);
    g_started = false;
}

bool OpenTerminal()
{
    Locked locked;
    if (g_open) return true;
    JoinThread();
    if (g_wake < 0) g_wake = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    if (g_wake < 0 || !OpenPair()) return false;
    g_stop = 0;
    g_open = 1;
    const SignalsBlocked blocked;
    g_started = pthread_create(&g_thread, nullptr, ServeLine, nullptr) == 0;
    if (!g_started) {
        close(g_modem);
        close(g_client);
        g_open = 0;
        return false;
    }
    return MakeLink();
}

void HangUpTerminal()
{
    Locked locked;
    g_stop = 1;
    WakeTerminal();
    JoinThread();
}

void TerminalName(char* name, ULONG room)
{
    Locked locked;
    Writer writer(name, room);
    if (g_open) writer.Add(g_name);
}

bool LinkTerminal(const char* path)
{
    Locked locked;
    return Copy(g_link, path);
}

void WakeTerminal()
{
    const uint64_t one = 1;
    if (g_wake >= 0) [[maybe_unused]]
        const ssize_t written = write(g_wake, &one, sizeof(one));
}

} // namespace sim
