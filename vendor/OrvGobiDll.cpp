// The binding's life: loading, look-ups, connecting, and which kind of module it is.

#include <initializer_list>
#include <string.h>

#include "vendor/entry_points.h"
#include "vendor/forward.h"
#include "vendor/loaded.h"

namespace {

// How many instances have the vendor library loaded.
ULONG s_loadedInstances;

HMODULE AsModule(void* library) { return static_cast<HMODULE>(library); }

// A text that the vendor fills, with the capacity that it is told and room for a terminator.
template <WORD Capacity>
struct PackageText {
    BYTE text[Capacity + 1] = {};
    WORD length = Capacity;

    // The returned length is the vendor's word and may be anything.
    void Terminate() { text[length < Capacity ? length : Capacity] = 0; }
};

constexpr ULONG kWideTextLength = 20;

struct WideText {
    WCHAR text[kWideTextLength + 1] = {};

    template <WORD Capacity>
    explicit WideText(const PackageText<Capacity>& package)
    {
        static_assert(Capacity <= kWideTextLength, "the text would be cut");
        const char* narrow = reinterpret_cast<const char*>(package.text);
        MultiByteToWideChar(CP_ACP, 0, narrow, static_cast<int>(strnlen(narrow, Capacity)), text,
                            static_cast<int>(kWideTextLength));
    }

    bool Is(const WCHAR* other) const
    {
        ULONG i = 0;
        while (text[i] && text[i] == other[i])
            ++i;
        return text[i] == other[i];
    }

    bool Contains(const WCHAR* part) const
    {
        for (const WCHAR* start = text; *start; ++start) {
            ULONG i = 0;
            while (part[i] && start[i] == part[i])
                ++i;
            if (!part[i]) return true;
        }
        return false;
    }
};

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
    PackageText<20> model;
    PackageText<85> firmware, boot;
    PackageText<15> pri;
    PackageText<85> sku;
    PackageText<20> carrier;
    PackageText<10> carrier_revision;
    const ULONG package_status = GetCwePkgsInfo(
        &model.length, model.text, &firmware.length, firmware.text, &boot.length, boot.text, &pri.length, pri.text,
        &sku.length, sku.text, &carrier.length, carrier.text, &carrier_revision.length, carrier_revision.text);
    if (package_status != 0) {
        LOG_C("GetCwePkgsInfo returns %d", package_status);
    } else {
        model.Terminate();
        carrier.Terminate();
    }
    const WideText wide_model(model);
    const WideText wide_carrier(carrier);

    ULONG firmware_id = 0, technology = 0, firmware_carrier = 0, region = 0, gps_capability = 0;
    const ULONG firmware_status =
        GetFirmwareInfo(&firmware_id, &technology, &firmware_carrier, &region, &gps_capability);
    if (firmware_status != 0) LOG_C("GetFirmwareInfo returns %d", firmware_status);

    if (package_status == 0 && wide_model.Contains(TXT("KT52"))) {
        for (const WCHAR* cdma_carrier : {TXT("5"), TXT("101"), TXT("11"), TXT("102")})
            if (wide_carrier.Is(cdma_carrier)) return ORV_TECH_CDMA;
        return ORV_TECH_UMTS;
    }
    if (firmware_status == 0) return technology != 0 ? ORV_TECH_UMTS : ORV_TECH_CDMA;
    return ORV_TECH_UNDETERMINED;
}
