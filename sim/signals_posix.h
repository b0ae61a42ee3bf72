// Blocks every signal on the calling thread for as long as it lives. A thread started meanwhile inherits that: the
// module's threads leave the client's signals to the client.
#pragma once

#include <pthread.h>
#include <signal.h>

namespace sim {

class SignalsBlocked {
public:
    SignalsBlocked()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_BLOCK, &all, &m_before);
    }
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
    sigset_t m_before;
};

} // namespace sim
