#include "sim/host.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <stdlib.h>
#include <time.h>
#include <unistd.h>

#include "sim/signals_posix.h"
#include "sim/text.h"

namespace sim {

// A thread of this library must not outlive its code, and nobody can wait for a thread that may be in a client's
// callback.
static void StayLoaded()
{
    Dl_info self = {};
    if (dladdr(reinterpret_cast<void*>(&StayLoaded), &self) == 0) return;
    // Bound to this library's own copy; the reference is given up on purpose.
    if (void* library = dlopen(self.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE)) dlclose(library);
}

struct Start {
    void (*run)(void*);
    void* argument;
};

static void* Run(void* argument)
{
    const Start start = *static_cast<Start*>(argument);
    free(argument);
    start.run(start.argument);
    return nullptr;
}

bool HostStartThread(void (*run)(void*), void* argument)
{
    StayLoaded();
    Start* start = static_cast<Start*>(malloc(sizeof(Start)));
    if (!start) return false;
    *start = {run, argument};
    const SignalsBlocked blocked;
    pthread_t thread;
    if (pthread_create(&thread, nullptr, Run, start) != 0) {
        free(start);
        return false;
    }
    pthread_detach(thread);
    return true;
}

ULONGLONG HostMilliseconds()
{
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<ULONGLONG>(now.tv_sec) * 1000 + static_cast<ULONGLONG>(now.tv_nsec) / 1000000;
}

static pthread_mutex_t g_pause = PTHREAD_MUTEX_INITIALIZER;
static pthread_cond_t g_woken = PTHREAD_COND_INITIALIZER;
static bool g_wake;

void HostPause(ULONG timeout_ms)
{
    timespec until = {};
    clock_gettime(CLOCK_REALTIME, &until);
    until.tv_sec += timeout_ms / 1000;
    until.tv_nsec += static_cast<decltype(until.tv_nsec)>(timeout_ms % 1000 * 1000000);
    if (until.tv_nsec >= 1000000000) {
        until.tv_nsec -= 1000000000;
        ++until.tv_sec;
    }
    pthread_mutex_lock(&g_pause);
    while (!g_wake && pthread_cond_timedwait(&g_woken, &g_pause, &until) == 0) {
    }
    g_wake = false;
    pthread_mutex_unlock(&g_pause);
}

void HostWake()
{
    pthread_mutex_lock(&g_pause);
    g_wake = true;
    pthread_cond_broadcast(&g_woken);
    pthread_mutex_unlock(&g_pause);
}

void HostSleep(ULONG milliseconds)
{
    timespec time = {};
    time.tv_sec = static_cast<time_t>(milliseconds / 1000);
    time.tv_nsec = static_cast<decltype(time.tv_nsec)>(milliseconds % 1000 * 1000000);
    nanosleep(&time, nullptr);
}

bool HostEnvironment(const char* name, char* value, ULONG room)
{
    const char* text = getenv(name);
    if (room > 0) value[0] = 0;
    return text && *text && Copy(value, room, text);
}

bool HostReadFile(const char* path, char* text, ULONG room)
{
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    if (file < 0) return false;
    ULONG length = 0;
    ssize_t got = 0;
    while (length < room && (got = read(file, text + length, room - length)) > 0)
        length += static_cast<ULONG>(got);
    close(file);
    if (got < 0 || length >= room) return false;
    text[length] = 0;
    return true;
}

void HostComplain(const char* where, const char* what)
{
    char line[512];
    Writer writer(line, sizeof(line) - 1);
    writer.Add("talvek-sim: ").Add(where).Add(": ").Add(what);
    line[writer.Length()] = '\n';
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line, writer.Length() + 1);
}

} // namespace sim
