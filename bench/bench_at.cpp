// What an exchange over the AT port takes, against a bare write and read of the same octets on the same line, which
// ends at the AT modem of the simulated module. `bench_at immediate` puts a responder there that answers at once, to
// see the library's own share larger than life. On a machine that is busy otherwise nobody waits for a processor to
// wake, an exchange takes a fifth of the time, and the library's few microseconds weigh more.
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <initializer_list>
#include <sched.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "bench/at_responder.h"
#include "bench/module.h"
#include "bench/pairs.h"
#include "sim/control.h"

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

// The path of the simulated module's AT port, or null after a message.
const char* SimulatedPort()
{
    static char port[256];
    void* const library = dlopen(BENCH_SIMULATOR, RTLD_NOW | RTLD_LOCAL);
    using Command = decltype(&TalvekSimCommand);
    const auto command = library ? reinterpret_cast<Command>(dlsym(library, "TalvekSimCommand")) : nullptr;
    bool ready = command != nullptr;
    for (const char* line : {"model umts:5120", "set at.answer-ms 0", "serial name"})
        ready = ready && command(line, port, sizeof port) == 0;
    if (ready) return port;
    fprintf(stderr, "no simulated module: %s\n", command ? port : dlerror());
    return nullptr;
}

} // namespace

int main(int argc, char** argv)
{
    RefuseLog();
    UseBenchModule();
    const bool immediate = argc > 1 && strcmp(argv[1], "immediate") == 0;
    AtResponder modem;
    ModuleRegistry registry;
    if (!StayOnOneProcessor() || (immediate && !modem.Start())) {
        perror("bench_at");
        return 2;
    }
    const char* const port = immediate ? modem.PortName() : SimulatedPort();
    if (!port) return 2;
    if (!registry.Write(ORV_DEVICE_5120, port)) {
        perror("bench_at");
        return 2;
    }
    if (!StartModule(1)) return 2;
    s_line = open(port, O_RDWR | O_NOCTTY);
    if (s_line < 0) {
        perror(port);
        return 2;
    }
    const bool met = JudgePair("OrvATGetCLIP against a bare write and read", ByLibrary, ByHand, 1000, 1.05);
    close(s_line);
    OrvApiShutdown();
    return met ? 0 : 1;
}
