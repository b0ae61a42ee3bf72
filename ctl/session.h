// The library between start-up and shutdown.
#pragma once

#include "ctl/error.h"
#include "talvek/core.h"

#include <string>

namespace ctl {

// One a process at a time. The constructor starts the library up, Open finds and selects the module, and the destructor
// shuts down what Close did not. Each failing call throws CallFailed.
class Session {
public:
    Session();
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    void Discover();
    void Select();
    void Open()
    {
        Discover();
        Select();
    }
    // Shuts down and throws where that fails.
    void Close();

    ULONG DeviceId() const { return m_record.uDeviceID; }
    // Name, technology and interface of the selected module.
    OrvAirServerInfo Info() const;

private:
    OrvAirServer m_record = {};
    bool m_open = true;
};

// "CDMA", "GSM/UMTS" or "undetermined".
const char* TechnologyName(ULONG technology);

// The text that a getter of the library writes into `size` characters, for example OrvGetFirmwareVersion.
std::string ReadText(const char* function, ORV_RCODE(ORV_CALL* getter)(WCHAR* buffer, ULONG size));

} // namespace ctl
