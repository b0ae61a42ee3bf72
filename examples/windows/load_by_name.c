/* Loads TALVEK.dll by name and calls it, without an import library. */
#include <stdio.h>
#include <talvek/talvek.h>
#include <windows.h>

typedef ORV_RCODE(ORV_CALL* Plain)(void);
typedef ORV_RCODE(ORV_CALL* GetAirServers)(OrvAirServerList* list);
typedef ORV_RCODE(ORV_CALL* SelectAirServer)(OrvAirServer* record);
typedef ORV_RCODE(ORV_CALL* GetText)(WCHAR* text, ULONG room);
typedef const char*(ORV_CALL* RcodeName)(ORV_RCODE code);

static HMODULE library;

static FARPROC find(const char* name)
{
    FARPROC address = library ? GetProcAddress(library, name) : NULL;
    if (address) return address;
    fprintf(stderr, "%s: error %lu\n", library ? name : "TALVEK.dll", GetLastError());
    ExitProcess(1);
}

/* A function of the library under its own type. */
#define FIND(type, name) ((type)(void (*)(void))find(name))

int main(void)
{
    static OrvAirServerList modules;
    WCHAR version[86] = {0};
    ORV_RCODE result;

    library = LoadLibraryW(L"TALVEK.dll");
    result = FIND(Plain, "OrvApiStartup")();
    if (!result) result = FIND(GetAirServers, "OrvGetAvailAirServers")(&modules);
    if (!result) result = FIND(SelectAirServer, "OrvSelectAirServer")(&modules.airServers[0]);
    if (!result) result = FIND(GetText, "OrvGetFirmwareVersion")(version, 85);
    printf("%ls (%s)\n", version, FIND(RcodeName, "OrvRcodeName")(result));
    if (FIND(Plain, "OrvApiShutdown")()) return 1;
    FreeLibrary(library);
    return result != ORV_RCODE_OK;
}
