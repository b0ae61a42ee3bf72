// The vendor library as a class, for the commands whose operations the interface does not export.
#pragma once

#include "ctl/output.h"
#include "talvek/gobi_dll.h"

namespace ctl {

// The client's own instance, once the library is started up and connected. Its destructor would clear the callbacks of
// all instances, the library's own among them, so it lives as long as the process. Throws ClientError.
COrvGobiDll& Vendor();

// What the SIM's call control made of a request, "became", and its text for it, "sim_text". In text form only what is
// out of the ordinary: that the request became something else than `asked`, and a text that there is.
void AddCallControl(Report& report, const std::string& asked, BYTE result, const alphaIDInfo& info);

} // namespace ctl
