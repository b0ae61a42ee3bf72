#include <stdio.h>
#include <talvek/talvek.h>

int main(void)
{
    static OrvAirServerList modules;
    WCHAR version[86] = {0};
    ORV_RCODE result = OrvApiStartup();
    if (!result) result = OrvGetAvailAirServers(&modules);
    if (!result) result = OrvSelectAirServer(&modules.airServers[0]);
    if (!result) result = OrvGetFirmwareVersion(version, 85);
    for (const WCHAR* c = version; *c; c++)
        putchar(*c);
    printf(" (%s)\n", OrvRcodeName(result));
    return OrvApiShutdown() || result;
}
