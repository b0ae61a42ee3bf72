#include "bench/at_responder.h"

#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <termios.h>
#include <unistd.h>

namespace {

// What stands between the echo and "OK". A command that is not here is answered by "OK" alone.
struct Answers {
    const char* command;
    const char* text;
};
constexpr Answers kAnswers[] = {
    {"AT+CLIP?", "\r\n+CLIP: 0,1\r\n"},
    {"AT+CLIR?", "\r\n+CLIR: 0,4\r\n"},
    {"AT+COLP?", "\r\n+COLP: 0,1\r\n"},
    {"AT+COLR?", "\r\n+COLR: 0\r\n"},
    {"AT+MDN", "\r\n2025550123\r\n"},
    {"AT+CRSM=192,32,0,0,15", "\r\n+CRSM: 144,0,\"62148202412183026F078A01058B032F060280020009\"\r\n"},
};

void Write(int file, const char* text)
{
    for (size_t left = strlen(text); left > 0;) {
        const ssize_t written = write(file, text, left);
        if (written <= 0) return;
        text += written;
        left -= static_cast<size_t>(written);
    }
}

} // namespace

AtResponder::~AtResponder()
{
    if (m_running) {
        pthread_cancel(m_thread);
        pthread_join(m_thread, nullptr);
    }
    if (m_held >= 0) close(m_held);
    if (m_modem >= 0) close(m_modem);
}

bool AtResponder::Start()
{
    m_modem = posix_openpt(O_RDWR | O_NOCTTY);
    if (m_modem < 0 || grantpt(m_modem) != 0 || unlockpt(m_modem) != 0) return false;
    if (ptsname_r(m_modem, m_port, sizeof m_port) != 0) return false;
    // Held open, so that the line does not hang up between two users of it.
    m_held = open(m_port, O_RDWR | O_NOCTTY);
    termios settings;
    if (m_held < 0 || tcgetattr(m_held, &settings) != 0) return false;
    cfmakeraw(&settings);
    if (tcsetattr(m_held, TCSANOW, &settings) != 0) return false;
    m_running = pthread_create(&m_thread, nullptr, Run, this) == 0;
    return m_running;
}

void* AtResponder::Run(void* self)
{
    const AtResponder& responder = *static_cast<AtResponder*>(self);
    char line[2048];
    size_t length = 0;
    char octet;
    while (read(responder.m_modem, &octet, 1) == 1) {
        if (octet != '\r') {
            if (length < sizeof line - 1) line[length++] = octet;
            continue;
        }
        line[length] = 0;
        length = 0;
        responder.Answer(line);
    }
    return nullptr;
}

void AtResponder::Answer(const char* line) const
{
    Write(m_modem, line);
    Write(m_modem, "\r");
    for (const Answers& answer : kAnswers)
        if (strcmp(answer.command, line) == 0) Write(m_modem, answer.text);
    Write(m_modem, "\r\nOK\r\n");
}
