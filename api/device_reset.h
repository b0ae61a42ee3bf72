// A reset of the module that its caller does not wait for.
#pragma once

// Resets the module on a thread of its own. What comes of it is for the client to see: neither a module that refuses
// nor a thread that cannot be had is reported.
void StartDeviceReset();
