// The guards of the exported functions. Each function names the one that it has:
//
//     if (const ORV_RCODE refused = RequireInitialized()) return refused;
#pragma once

#include "api/objects.h"
#include "utility/log.h"

// The vendor binding.
inline COrvGobiDll& Gobi() { return g_GobiDll; }

// 10 before start-up.
inline ORV_RCODE RequireInitialized() { return Gobi().IsInitialized() ? ORV_RCODE_OK : ORV_RCODE_API_NOT_INIT; }

// 10 before start-up, with a trace.
inline ORV_RCODE RequireInitializedTraced()
{
    if (Gobi().IsInitialized()) return ORV_RCODE_OK;
    TRACE_ERROR(TXT("API not initialized"));
    return ORV_RCODE_API_NOT_INIT;
}

// The same, with the trace that Mobile IP profiles and activation have.
inline ORV_RCODE RequireInitializedMisspelt()
{
    if (Gobi().IsInitialized()) return ORV_RCODE_OK;
    TRACE_ERROR(TXT("API not initialzed"));
    return ORV_RCODE_API_NOT_INIT;
}

// 17 before start-up: cached values, the notification switches.
inline ORV_RCODE RequireAvailable() { return Gobi().IsInitialized() ? ORV_RCODE_OK : ORV_RCODE_NOT_AVAILABLE; }

// 17 before start-up, then 1 on a module that is not CDMA.
ORV_RCODE RequireCdma();
// 10 before start-up, then 1 on a module that is not CDMA.
ORV_RCODE RequireInitializedCdma();
// 10 before start-up, then `otherwise` (1 or 17, as the function has it) on a module that is not GSM/UMTS.
ORV_RCODE RequireUmts(ORV_RCODE otherwise);
// 10 before start-up, then 17 while the kind of the module is not known.
ORV_RCODE RequireDetected();

// The guards of the functions over the AT port. Each refusal has its log line.

// 10 before start-up.
ORV_RCODE RequireInitializedLogged();
// 10 before start-up, then 1 on a module that is not GSM/UMTS, then 354 while the port is closed.
ORV_RCODE RequireUmtsAtPort();
// 354 while the port is closed.
ORV_RCODE RequireOpenAtPort();
