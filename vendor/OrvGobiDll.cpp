// The binding's life: loading, look-ups, connecting, and which kind of module it is.

#include <initializer_list>

#include "vendor/entry_points.h"
#include "vendor/forward.h"
#include "vendor/loaded.h"
#include "vendor/package_info.h"

namespace {

// How many instances have the vendor library loaded.
ULONG s_loadedInstances;

HMODULE AsModule(void* library) { return static_cast<HMODULE>(library); }

} // namespace

bool GobiLibraryIsLoaded() { return s_loadedInstances != 0; }

COrvGobiDll::COrvGobiDll() : m_entry(), m_hLibrary(nullptr), m_bInitialized(false), m_dllVersion(0) { Cleanup(); }

COrvGobiDll::~COrvGobiDll() { Cleanup(); }

bool COrvGobiDll::Initialize()
{
    if (m_bInitialized) return true;
    // Set before the load is tried, and left set when it fails: a later call then returns true without trying again,
    // and every method returns 1.
    m_bInitialized = true;
    const HMODULE library = LoadLibraryW(TXT("GobiApi.dll"));
    m_hLibrary = library;
    if (library) {
        ++s_loadedInstances;
        for (const Lookup& lookup : kLookups) {
            const FARPROC address = GetProcAddressW(library, lookup.name);
            if (lookup.set_static)
                lookup.set_static(address);
            else
                SetInstanceField(m_entry, lookup, address);
        }
    }
    const bool usable = m_entry.QCWWANConnect && m_entry.QCWWANDisconnect;
    if (!usable) Cleanup();
    return usable;
}

void COrvGobiDll::Cleanup()
{
    if (!m_hLibrary || !m_bInitialized) return;
    FreeLibrary(AsModule(m_hLibrary));
    --s_loadedInstances;
    m_hLibrary = nullptr;
    m_dllVersion = 0;
    m_bInitialized = false;
    m_entry = GobiEntryPoints();
    const auto emergency_list = &mpFNSetEmergencyListCB;
    const GobiSetEmergencyList kept = *emergency_list; // stays as it was: see SetEmergencyListCB
    for (const Lookup& lookup : kLookups)
        if (lookup.set_static) lookup.set_static(nullptr);
    *emergency_list = kept;
}

ULONG COrvGobiDll::Connect()
{
    if (!m_entry.QCWWANConnect) return kEntryPointMissing;
    const ULONG status = m_entry.QCWWANConnect();
    if (status != 0) LOG_C("GobiConnect failed status = %d", status);
    return status;
}

ULONG COrvGobiDll::Disconnect() { return Forward(m_entry.QCWWANDisconnect); }

ORV_TYPE_WirelessTech COrvGobiDll::GetWirelessTech()
{
    PackageInfo info;
    info.Query(*this, kLogSource);
    if (info.IsKt52()) {
        for (const WCHAR* cdma_carrier : {TXT("5"), TXT("101"), TXT("11"), TXT("102")})
            if (info.PackageCarrierIs(cdma_carrier)) return ORV_TECH_CDMA;
        return ORV_TECH_UMTS;
    }
    if (info.firmware_status == 0) return info.technology != 0 ? ORV_TECH_UMTS : ORV_TECH_CDMA;
    return ORV_TECH_UNDETERMINED;
}
