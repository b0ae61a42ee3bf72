/* A program without any run-time library: `start` is where the loader enters. Its status is the library's result. */
#include <talvek/talvek.h>

int start(void)
{
    static OrvAirServerList modules;
    ORV_RCODE result = OrvApiStartup();
    if (!result) result = OrvGetAvailAirServers(&modules);
    if (!result) result = OrvSelectAirServer(&modules.airServers[0]);
    return OrvApiShutdown() || result;
}
