// What an exchange over the AT port takes, against a bare write and read of the same octets on the same line.
#include <errno.h>
#include <fcntl.h>
#include <sched.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "bench/at_responder.h"
#include "bench/module.h"
#include "bench/pairs.h"

namespace {

constexpr char kCommand[] = "AT+CLIP?\r";
constexpr char kReply[] = "AT+CLIP?\r\r\n+CLIP: 0,1\r\n\r\nOK\r\n";

int s_line = -1;

bool ByLibrary()
{
    BYTE n = 9, m = 9;
    return OrvATGetCLIP(&n, &m) == ORV_RCODE_OK && n == 0 && m == 1;
}

bool ByHand()
{
    constexpr size_t kCommandLength = sizeof kCommand - 1, kReplyLength = sizeof kReply - 1;
    if (write(s_line, kCommand, kCommandLength) != static_cast<ssize_t>(kCommandLength)) return false;
    char reply[kReplyLength];
    for (size_t length = 0; length < kReplyLength;) {
        const ssize_t count = read(s_line, reply + length, kReplyLength - length);
        if (count <= 0 && errno != EINTR) return false;
        if (count > 0) length += static_cast<size_t>(count);
    }
    return memcmp(reply, kReply, kReplyLength) == 0;
}

// The modem and its user take turns, so that one processor serves both; where the scheduler puts them else decides by
// itself in how many pieces the reply arrives.
bool StayOnOneProcessor()
{
    cpu_set_t processors;
    CPU_ZERO(&processors);
    CPU_SET(static_cast<size_t>(sched_getcpu()), &processors);
    return sched_setaffinity(0, sizeof processors, &processors) == 0;
}

} // namespace

int main()
{
    RefuseLog();
    UseBenchModule();
    AtResponder modem;
    ModuleRegistry registry;
    if (!StayOnOneProcessor() || !modem.Start() || !registry.Write(ORV_DEVICE_5120, modem.PortName())) {
        perror("bench_at");
        return 2;
    }
    if (!StartModule(1)) return 2;
    s_line = open(modem.PortName(), O_RDWR | O_NOCTTY);
    if (s_line < 0) {
        perror(modem.PortName());
        return 2;
    }
    const bool met = JudgePair("OrvATGetCLIP against a bare write and read", ByLibrary, ByHand, 1000, 1.05);
    close(s_line);
    OrvApiShutdown();
    return met ? 0 : 1;
}
