// What an upgrade does with an image.
#pragma once

namespace sim {

// If there is an image in the folder `path` (UTF-8), the module leaves and comes back with it. Lock held.
void UpgradeTo(const char* path);

} // namespace sim
