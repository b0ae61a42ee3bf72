// Passwords, PINs and codes: read without echo, never in the arguments of the process, never printed, wiped.
#pragma once

#include <string>

namespace ctl {

// A text that is wiped when it is no longer needed.
class Secret {
public:
    // Reads one line of standard input; on a terminal `name` is asked for on standard error, and nothing is echoed.
    // Throws UsageError for an empty line, one of more than 255 octets, or one with a zero octet.
    explicit Secret(const std::string& name);
    ~Secret();
    Secret(const Secret&) = delete;
    Secret& operator=(const Secret&) = delete;

    const std::string& Text() const { return m_text; }
    char* Data() { return m_text.data(); } // for functions that take no const

private:
    std::string m_text;
};

} // namespace ctl
