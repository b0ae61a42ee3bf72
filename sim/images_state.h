// The firmware images that the host keeps for the module.
#pragma once

#include "sim/values.h"

namespace sim {

struct ImagesState {
    Text<256> store;  // the folder, UTF-8; an image's folder in it has the number of its row as its name
    List<8, 5> infos; // identifier, technology, carrier, region, GPS capability
};

} // namespace sim
