// Mutexes, conditions and points in time for the seam's own use. None of them is ever destroyed, so that a thread that
// outlives the exit of the program still finds them.
#pragma once

#include <limits.h>
#include <pthread.h>
#include <stdint.h>
#include <time.h>

#include "platform/win32.h"

namespace seam {

class Mutex {
public:
    constexpr Mutex() = default;
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;
    pthread_mutex_t* Native() { return &m_mutex; }

private:
    pthread_mutex_t m_mutex = PTHREAD_MUTEX_INITIALIZER;
};

class Lock {
public:
    explicit Lock(Mutex& mutex) : m_mutex(mutex) { pthread_mutex_lock(m_mutex.Native()); }
    ~Lock() { pthread_mutex_unlock(m_mutex.Native()); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

private:
    Mutex& m_mutex;
};

constexpr uint64_t kNanosecondsInMs = 1000000;
constexpr uint64_t kNanosecondsInSecond = 1000 * kNanosecondsInMs;

// Nanoseconds of the monotonic clock; tests cannot replace this one.
inline uint64_t Now()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<uint64_t>(now.tv_sec) * kNanosecondsInSecond + static_cast<uint64_t>(now.tv_nsec);
}

inline timespec ToTimespec(uint64_t nanoseconds)
{
    timespec time = {};
    time.tv_sec = static_cast<decltype(time.tv_sec)>(nanoseconds / kNanosecondsInSecond);
    time.tv_nsec = static_cast<decltype(time.tv_nsec)>(nanoseconds % kNanosecondsInSecond);
    return time;
}

// A point in time up to which a call may wait.
class Deadline {
public:
    static constexpr Deadline Never() { return Deadline(UINT64_MAX); }
    // More than a century is never.
    static Deadline In(uint64_t ms)
    {
        constexpr uint64_t kCenturyMs = uint64_t{100} * 366 * 24 * 60 * 60 * 1000;
        return ms > kCenturyMs ? Never() : Deadline(Now() + ms * kNanosecondsInMs);
    }

    bool IsNever() const { return m_at == UINT64_MAX; }
    uint64_t At() const { return m_at; }
    Deadline Sooner(Deadline other) const { return m_at < other.m_at ? *this : other; }
    // For poll(): rounded up, so that it never returns early; -1 waits for ever.
    int PollMs() const
    {
        if (IsNever()) return -1;
        const uint64_t now = Now();
        if (now >= m_at) return 0;
        const uint64_t ms = (m_at - now + kNanosecondsInMs - 1) / kNanosecondsInMs;
        return ms > INT_MAX ? INT_MAX : static_cast<int>(ms);
    }

private:
    explicit constexpr Deadline(uint64_t at) : m_at(at) {}
    uint64_t m_at;
};

class Condition {
public:
    Condition()
    {
        pthread_condattr_t attributes;
        pthread_condattr_init(&attributes);
        pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
        pthread_cond_init(&m_condition, &attributes);
        pthread_condattr_destroy(&attributes);
    }
    Condition(const Condition&) = delete;
    Condition& operator=(const Condition&) = delete;

    void WakeAll() { pthread_cond_broadcast(&m_condition); }
    // The caller holds `mutex`. Returns false once `deadline` has passed.
    bool WaitUntil(Mutex& mutex, Deadline deadline)
    {
        if (deadline.IsNever()) return pthread_cond_wait(&m_condition, mutex.Native()) == 0;
        const timespec time = ToTimespec(deadline.At());
        return pthread_cond_timedwait(&m_condition, mutex.Native(), &time) == 0;
    }

private:
    pthread_cond_t m_condition;
};

} // namespace seam
