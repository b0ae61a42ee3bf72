#include "queries/serving_network.h"

#include <string.h>

#include "api/OrvError.h"

namespace {

BYTE Bounded(BYTE returned, BYTE capacity) { return returned < capacity ? returned : capacity; }

} // namespace

ULONG ServingNetworkCaps::Query(COrvGobiDll& gobi)
{
    count = sizeof list;
    const ULONG status = gobi.GetServingNetworkCaps(&count, list);
    count = status == 0 ? Bounded(count, sizeof list) : 0;
    return status;
}

ULONG ServingNetwork::Query(COrvGobiDll& gobi, BYTE interface_room, BYTE name_room)
{
    interface_room = Bounded(interface_room, sizeof radio_interfaces);
    radio_interface_count = interface_room;
    memset(name, 0, sizeof name);
    const ULONG status =
        gobi.GetServingNetwork(&registration_state, &cs_domain, &ps_domain, &ran, &radio_interface_count,
                               radio_interfaces, &roaming, &mcc, &mnc, name_room, name);
    radio_interface_count = status == 0 ? Bounded(radio_interface_count, interface_room) : static_cast<BYTE>(0);
    name[sizeof name - 1] = 0;
    return status;
}

BYTE ServingNetwork::IndexOf(BYTE radio_interface) const
{
    BYTE index = kNotListed;
    FindByteInTable(radio_interface, radio_interface_count, radio_interfaces, &index);
    return index;
}
