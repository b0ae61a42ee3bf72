// Loading and unloading: what the environment asks for, and what must not stay behind.
#include "sim/at_terminal.h"
#include "sim/clock.h"
#include "sim/host.h"
#include "sim/module.h"
#include "sim/reset.h"

namespace sim {

constexpr ULONG kScenarioRoom = 65536;

bool RunConnectScenario()
{
    char path[1024];
    if (!HostEnvironment("TALVEK_SIM_SCENARIO", path, sizeof(path))) return true;
    static char text[kScenarioRoom]; // one client call at a time connects
    if (!HostReadFile(path, text, sizeof(text))) {
        HostComplain(path, "cannot be read");
        return false;
    }
    char reason[256];
    Writer reply(reason, sizeof(reason));
    if (RunScript(text, reply) == 0) return true;
    HostComplain(path, reason);
    return false;
}

// The module of TALVEK_SIM: "cdma", "umts", "umts:5111" and so on.
static void PlugIn()
{
    char model[64];
    if (!HostEnvironment("TALVEK_SIM", model, sizeof(model))) return;
    Text<80> line;
    Writer(line).Add("model ").Add(model);
    char reason[256];
    Writer reply(reason, sizeof(reason));
    if (RunLine(line, reply) != 0) HostComplain("TALVEK_SIM", reason);
}

static void OpenPort()
{
    char path[256];
    if (!HostEnvironment("TALVEK_SIM_PORT", path, sizeof(path))) return;
    if (!LinkTerminal(path) || !OpenTerminal()) HostComplain(path, "the AT port cannot be opened there");
}

struct Loader {
    Loader()
    {
        InitializeLock();
        {
            Guard guard;
            ResetModule(true, 0x5120);
        }
        PlugIn();
        OpenPort();
    }
    ~Loader()
    {
        CloseClock();
        HangUpTerminal();
    }
};
static Loader g_loader;

} // namespace sim
