#include "ctl/secret.h"

#include "ctl/error.h"
#include "ctl/interrupt.h"

#include <string.h>

#include <cctype>
#include <iostream>

namespace ctl {

namespace {

constexpr size_t kLongest = 255;

} // namespace

Secret::Secret(const std::string& name)
{
    m_text.reserve(kLongest + 1); // no copies left behind by growth
    const NoEcho quiet;
    if (quiet.IsTerminal()) {
        std::string prompt = name + ": ";
        prompt[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(prompt[0])));
        std::cerr << prompt << std::flush;
    }
    for (int c = std::cin.get(); c != EOF && c != '\n'; c = std::cin.get()) {
        if (m_text.size() == kLongest) throw UsageError("the " + name + " is longer than 255 octets");
        if (c == 0) throw UsageError("the " + name + " holds a zero octet");
        m_text += static_cast<char>(c);
    }
    if (!m_text.empty() && m_text.back() == '\r') m_text.pop_back();
    if (quiet.IsTerminal()) std::cerr << '\n';
    if (m_text.empty()) throw UsageError("no " + name + " on standard input");
}

Secret::~Secret() { explicit_bzero(m_text.data(), m_text.size()); }

} // namespace ctl
