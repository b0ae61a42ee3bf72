#include "vendor/package_info.h"

#include <string.h>

#include "utility/log.h"

namespace {

// A text that the vendor fills, with the capacity that it is told and room for a terminator.
template <WORD Capacity>
struct PackageText {
    BYTE text[Capacity + 1] = {};
    WORD length = Capacity;

    // The returned length is the vendor's word and may be anything.
    void Terminate() { text[length < Capacity ? length : Capacity] = 0; }
};

template <WORD Capacity, ULONG Room>
void Widen(const PackageText<Capacity>& package, WCHAR (&wide)[Room])
{
    static_assert(Capacity < Room, "the text would be cut");
    const char* narrow = reinterpret_cast<const char*>(package.text);
    MultiByteToWideChar(CP_ACP, 0, narrow, static_cast<int>(strnlen(narrow, Capacity)), wide,
                        static_cast<int>(Room - 1));
}

bool Contains(const WCHAR* text, const WCHAR* part)
{
    for (; *text; ++text) {
        ULONG i = 0;
        while (part[i] && text[i] == part[i])
            ++i;
        if (!part[i]) return true;
    }
    return false;
}

} // namespace

void PackageInfo::Query(COrvGobiDll& gobi, const WCHAR* kLogSource)
{
    PackageText<kTextCapacity> model;
    PackageText<85> firmware, boot;
    PackageText<15> pri;
    PackageText<85> sku;
    PackageText<kTextCapacity> carrier;
    PackageText<10> carrier_revision;
    package_status = gobi.GetCwePkgsInfo(&model.length, model.text, &firmware.length, firmware.text, &boot.length,
                                         boot.text, &pri.length, pri.text, &sku.length, sku.text, &carrier.length,
                                         carrier.text, &carrier_revision.length, carrier_revision.text);
    if (package_status != 0) {
        LOG_C("GetCwePkgsInfo returns %d", package_status);
    } else {
        model.Terminate();
        carrier.Terminate();
    }
    WCHAR wide_model[kTextCapacity + 1] = {};
    Widen(model, wide_model);
    Widen(carrier, m_carrier);
    m_is_kt52 = package_status == 0 && Contains(wide_model, TXT("KT52"));

    ULONG firmware_id = 0, region = 0, gps_capability = 0;
    firmware_status = gobi.GetFirmwareInfo(&firmware_id, &technology, &image_carrier, &region, &gps_capability);
    if (firmware_status != 0) LOG_C("GetFirmwareInfo returns %d", firmware_status);
}

bool PackageInfo::PackageCarrierIs(const WCHAR* carrier) const
{
    ULONG i = 0;
    while (m_carrier[i] && m_carrier[i] == carrier[i])
        ++i;
    return m_carrier[i] == carrier[i];
}
