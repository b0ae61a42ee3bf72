#include "queries/rf_info.h"

ULONG RFInfo::Query(COrvGobiDll& gobi)
{
    static_assert(sizeof(GobiRFInfo) == 3 * sizeof(ULONG), "the module writes three words an instance");
    count = GOBI_MAX_RF_INSTANCES;
    const ULONG status = gobi.GetRFInfo(&count, reinterpret_cast<BYTE*>(instances));
    if (count > GOBI_MAX_RF_INSTANCES) count = GOBI_MAX_RF_INSTANCES;
    if (status != 0) count = 0;
    return status;
}

const GobiRFInfo* RFInfo::Find(ULONG radio_interface) const
{
    for (BYTE i = 0; i < count; ++i)
        if (instances[i].uRadioInterface == radio_interface) return &instances[i];
    return nullptr;
}
