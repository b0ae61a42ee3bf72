// The module that the measurements work on: the vendor library that costs next to nothing.
#pragma once

#include "bench/bench_gobi.h"
#include "talvek/talvek.h"

// Points the library at the vendor library of the measurements, with the log off.
void UseBenchModule();

// Ends the program if the log was asked for, which would be measured.
void RefuseLog();

// A registry file of this program's own that names the module and its AT port. Removed with the object.
class ModuleRegistry {
public:
    ModuleRegistry() = default;
    ~ModuleRegistry();
    ModuleRegistry(const ModuleRegistry&) = delete;
    ModuleRegistry& operator=(const ModuleRegistry&) = delete;

    // Points the library at the file. False with errno set when it cannot be written.
    bool Write(ULONG product, const char* port);

private:
    char m_file[32] = "";
};

// Starts the library and selects the module, which is a CDMA one (0) or a GSM/UMTS one (1). Null after a message when
// that fails.
BenchGobi* StartModule(ULONG firmware_technology);

// A function of the vendor library that is loaded in this process. Ends the program if it is not there.
void* VendorFunction(const char* name);
