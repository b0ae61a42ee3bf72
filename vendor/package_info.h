// What a module tells of its software package and of its firmware image, read together: the one or the other decides
// which kind of module it is, and which carrier it belongs to.
#pragma once

#include "talvek/gobi_dll.h"

class PackageInfo {
public:
    // Asks for both. What fails is logged under `log_source`, and its status kept.
    void Query(COrvGobiDll& gobi, const WCHAR* log_source);

    ULONG package_status = 0;
    ULONG firmware_status = 0;
    ULONG technology = 0;    // of the firmware image: 0 CDMA, else GSM/UMTS
    ULONG image_carrier = 0; // of the firmware image

    // Whether the package has been read and is that of a KT52 module, which tells its carrier by the package.
    bool IsKt52() const { return m_is_kt52; }
    bool PackageCarrierIs(const WCHAR* carrier) const;

private:
    static constexpr ULONG kTextCapacity = 20;
    bool m_is_kt52 = false;
    WCHAR m_carrier[kTextCapacity + 1] = {};
};
