#include "queries/cdma_carrier.h"

#include <iterator>

#include "api/OrvError.h"
#include "utility/log.h"
#include "vendor/package_info.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKCdma.cpp");

struct Carrier {
    const WCHAR* name;
    int32_t id;
};

// By the carrier number of the firmware image.
constexpr ULONG kFirstImageCarrier = 101;
constexpr Carrier kCarriers[] = {
    // clang-format off
    /* 101 */ {TXT("Verizon"),       ORV_CARRIER_VERIZON},
    /* 102 */ {TXT("Sprint"),        ORV_CARRIER_SPRINT},
    /* 103 */ {TXT("Alltel"),        ORV_CARRIER_ALLTEL},
    /* 104 */ {TXT("Bell"),          ORV_CARRIER_BELL},
    /* 105 */ {TXT("Telus"),         ORV_CARRIER_TELUS},
    /* 106 */ {TXT("US Cellular"),   ORV_CARRIER_US_CELLULAR},
    /* 107 */ {TXT("Telstra"),       ORV_CARRIER_TELSTRA},
    /* 108 */ {TXT("China Unicom"),  ORV_CARRIER_CHINA_UNICOM},
    /* 109 */ {TXT("TNZ"),           ORV_CARRIER_TNZ},
    /* 110 */ {TXT("SK Telecom"),    ORV_CARRIER_NONE},
    /* 111 */ {TXT("Reliance Com"),  ORV_CARRIER_RELIANCE_COM},
    /* 112 */ {TXT("Tata Com"),      ORV_CARRIER_TATA_COM},
    /* 113 */ {TXT("MetroPCS Com"),  ORV_CARRIER_NONE},
    /* 114 */ {TXT("Leap Wireless"), ORV_CARRIER_NONE},
    /* 115 */ {TXT("KDDI"),          ORV_CARRIER_NONE},
    /* 116 */ {TXT("Iusacell"),      ORV_CARRIER_IUSACELL},
    /* 117 */ {TXT("China Telecom"), ORV_CARRIER_CHINA_TELECOM},
    /* 118 */ {TXT("OM Handset"),    ORV_CARRIER_NONE},
    // clang-format on
};
static_assert(std::size(kCarriers) == 18);

// The packages of KT52 modules, tried from the top: the second "101" is never reached.
struct Package {
    const WCHAR* carrier;
    ULONG image_carrier;
};
constexpr Package kPackages[] = {{TXT("5"), 101}, {TXT("101"), 101}, {TXT("11"), 102}, {TXT("101"), 102}};

} // namespace

ORV_RCODE CdmaCarrier::Query(COrvGobiDll& gobi)
{
    PackageInfo info;
    info.Query(gobi, kLogSource);
    is_kt52 = info.IsKt52();
    if (is_kt52) {
        for (const Package& package : kPackages) {
            if (!info.PackageCarrierIs(package.carrier)) continue;
            const Carrier& carrier = kCarriers[package.image_carrier - kFirstImageCarrier];
            name = carrier.name;
            id = carrier.id;
            break;
        }
        return ConvertGobiError2OrvRcode(info.package_status);
    }
    if (info.firmware_status != 0) return ConvertGobiError2OrvRcode(info.firmware_status);
    const ULONG row = info.image_carrier - kFirstImageCarrier; // of a number below the first one: beyond the last one
    if (row >= std::size(kCarriers)) {
        LOG_C("Out of range GobiCarrierID for CDMA = %d", info.image_carrier);
        return ORV_RCODE_OK;
    }
    name = kCarriers[row].name;
    id = kCarriers[row].id;
    return ORV_RCODE_OK;
}
