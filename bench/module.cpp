#include "bench/module.h"

#include <dlfcn.h>
#include <fstream>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

void UseBenchModule()
{
    unsetenv("TALVEK_LOG");
    setenv("TALVEK_LIBRARY_PATH", BENCH_VENDOR_DIRECTORY, 1);
    setenv("TALVEK_REGISTRY", BENCH_REGISTRY, 1);
}

void RefuseLog()
{
    const char* const log = getenv("TALVEK_LOG");
    if (!log || !*log) return;
    fprintf(stderr, "TALVEK_LOG is set: the log would be measured\n");
    exit(2);
}

ModuleRegistry::~ModuleRegistry()
{
    if (*m_file) unlink(m_file);
}

bool ModuleRegistry::Write(ULONG product, const char* port)
{
    strcpy(m_file, "/tmp/talvek-bench-XXXXXX");
    const int descriptor = mkstemp(m_file);
    if (descriptor < 0) {
        *m_file = 0;
        return false;
    }
    close(descriptor);
    char device[32];
    snprintf(device, sizeof device, "VID_3D5E&PID_%04X", product);
    std::ofstream registry(m_file);
    registry << "Windows Registry Editor Version 5.00\n\n[HKEY_CURRENT_USER\\Software\\Kestavo Inc]\n\"DeviceID\"=\""
             << device << "\"\n\n[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\RIL]\n\"ComPort\"=\"" << port << "\"\n";
    setenv("TALVEK_REGISTRY", m_file, 1);
    return static_cast<bool>(registry.flush());
}

BenchGobi* StartModule(ULONG firmware_technology)
{
    ORV_RCODE result = OrvApiStartup();
    if (result != ORV_RCODE_OK) {
        fprintf(stderr, "no vendor library: %s\n", OrvRcodeName(result));
        return nullptr;
    }
    BenchGobi* const gobi = reinterpret_cast<decltype(&BenchGobiState)>(VendorFunction("BenchGobiState"))();
    gobi->firmware_technology = firmware_technology;
    static OrvAirServerList modules;
    result = OrvGetAvailAirServers(&modules);
    if (result == ORV_RCODE_OK) result = OrvSelectAirServer(&modules.airServers[0]);
    if (result != ORV_RCODE_OK) fprintf(stderr, "no module: %s\n", OrvRcodeName(result));
    return result == ORV_RCODE_OK ? gobi : nullptr;
}

void* VendorFunction(const char* name)
{
    void* const library = dlopen(BENCH_VENDOR_DIRECTORY "/libGobiApi.so", RTLD_NOW | RTLD_NOLOAD);
    void* const function = library ? dlsym(library, name) : nullptr;
    if (!function) {
        fprintf(stderr, "%s: %s\n", name, library ? "not in the vendor library" : "the vendor library is not loaded");
        exit(2);
    }
    dlclose(library);
    return function;
}
