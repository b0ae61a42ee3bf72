#include "api/at_command.h"

#include "api/OrvError.h"
#include "api/objects.h"
#include "at/OrvAtPort.h"
#include "state/globals.h"
#include "utility/log.h"

ORV_RCODE SendAtCommand(const WCHAR* log_source, const char* command, const AtErrorTexts& errors, char* reply, int line)
{
    if (g_ATPortInstance.SendCommand(command, reply)) return ORV_RCODE_OK;
    LogAtRefusal(log_source, command, errors, reply, line);
    return ORV_RCODE_FAILED;
}

void LogAtRefusal(const WCHAR* log_source, const char* command, const AtErrorTexts& errors, const char* reply, int line)
{
    if (!LogIsOn(OV_LOG_INFO)) return;
    ULONG code = 0;
    const char* text = "CME Error values from modem are not in NUMERIC format, Cannot parse error value";
    if (g_CmeeNumeric) text = ExtractErrorCode(reply, command, &code) ? errors.code : errors.no_code;
    LogStoreFileLine(log_source, line); // behind the extraction, which logs under its own source
    LogC(text, code);
}
