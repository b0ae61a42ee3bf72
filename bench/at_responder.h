// A modem on a pseudo-terminal that answers each command line from a table, on a thread that never uses the heap.
#pragma once

#include <pthread.h>

class AtResponder {
public:
    AtResponder() = default;
    ~AtResponder();
    AtResponder(const AtResponder&) = delete;
    AtResponder& operator=(const AtResponder&) = delete;

    // False with errno set when there is no pseudo-terminal.
    bool Start();
    const char* PortName() const { return m_port; }

private:
    static void* Run(void* self);
    void Answer(const char* line) const;

    int m_modem = -1, m_held = -1;
    char m_port[64] = "";
    pthread_t m_thread = {};
    bool m_running = false;
};
