#include "api/admission.h"

#include "at/OrvAtPort.h"
#include "state/globals.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEK.cpp");

} // namespace

ORV_RCODE RequireCdma()
{
    if (const ORV_RCODE refused = RequireAvailable()) return refused;
    return g_WirelessTech == ORV_TECH_CDMA ? ORV_RCODE_OK : ORV_RCODE_UNSUPPORTED;
}

ORV_RCODE RequireInitializedCdma()
{
    if (const ORV_RCODE refused = RequireInitialized()) return refused;
    return g_WirelessTech == ORV_TECH_CDMA ? ORV_RCODE_OK : ORV_RCODE_UNSUPPORTED;
}

ORV_RCODE RequireUmts(ORV_RCODE otherwise)
{
    if (const ORV_RCODE refused = RequireInitialized()) return refused;
    return g_WirelessTech == ORV_TECH_UMTS ? ORV_RCODE_OK : otherwise;
}

ORV_RCODE RequireDetected()
{
    if (const ORV_RCODE refused = RequireInitialized()) return refused;
    return g_WirelessTech != ORV_TECH_UNDETERMINED ? ORV_RCODE_OK : ORV_RCODE_NOT_AVAILABLE;
}

ORV_RCODE RequireInitializedLogged()
{
    if (Gobi().IsInitialized()) return ORV_RCODE_OK;
    LOG_C("IsInitialized failed");
    return ORV_RCODE_API_NOT_INIT;
}

ORV_RCODE RequireUmtsAtPort()
{
    if (const ORV_RCODE refused = RequireInitializedLogged()) return refused;
    if (g_WirelessTech != ORV_TECH_UMTS) {
        LOG_C("ORV_WIRELESSTECH_Gsm not gsm");
        return ORV_RCODE_UNSUPPORTED;
    }
    return RequireOpenAtPort();
}

ORV_RCODE RequireOpenAtPort()
{
    if (g_ATPortInstance.IsOpen()) return ORV_RCODE_OK;
    LOG_C("g_ATPortInstance not init");
    return ORV_RCODE_PORT_NOT_OPEN;
}
