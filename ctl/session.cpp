#include "ctl/session.h"

#include "ctl/text.h"

namespace ctl {

namespace {

std::string Describe(const char* function, ORV_RCODE code, std::optional<ULONG> failure_reason)
{
    std::string text = std::string(function) + " failed: " + OrvRcodeName(code) + " (" +
                       std::to_string(static_cast<ULONG>(code)) + "): " + OrvRcodeMeaning(code);
    if (failure_reason) text += " (failure reason " + std::to_string(*failure_reason) + ")";
    return text;
}

} // namespace

CallFailed::CallFailed(const char* function, ORV_RCODE code, std::optional<ULONG> failure_reason,
                       const std::string& remark)
    : std::runtime_error(Describe(function, code, failure_reason) + remark), m_function(function), m_code(code),
      m_failure_reason(failure_reason)
{
}

void Check(const char* function, ORV_RCODE code)
{
    if (code != ORV_RCODE_OK) throw CallFailed(function, code);
}

Session::Session()
{
    m_record.sizeStruct = sizeof m_record;
    Check("OrvApiStartup", OrvApiStartup());
}

Session::~Session()
{
    if (m_open) OrvApiShutdown(); // on the way out of an error, which says more than a second one
}

void Session::Discover()
{
    OrvAirServerList list = {};
    list.sizeStruct = sizeof list;
    Check("OrvGetAvailAirServers", OrvGetAvailAirServers(&list));
    m_record.uDeviceID = list.airServers[0].uDeviceID;
}

void Session::Select() { Check("OrvSelectAirServer", OrvSelectAirServer(&m_record)); }

void Session::Close()
{
    m_open = false;
    Check("OrvApiShutdown", OrvApiShutdown());
}

OrvAirServerInfo Session::Info() const
{
    OrvAirServerInfo info = {};
    info.sizeStruct = sizeof info;
    Check("OrvGetAirServerInfo", OrvGetAirServerInfo(m_record, &info));
    return info;
}

const char* TechnologyName(ULONG technology)
{
    switch (technology) {
    case ORV_TECH_CDMA:
        return "CDMA";
    case ORV_TECH_UMTS:
        return "GSM/UMTS";
    default:
        return "undetermined";
    }
}

std::string ReadText(const char* function, ORV_RCODE(ORV_CALL* getter)(WCHAR* buffer, ULONG size))
{
    WCHAR buffer[256] = {}; // sizes count modulo 256: 255 is the most that can be asked for
    Check(function, getter(buffer, 255));
    return Utf8(buffer, 255);
}

} // namespace ctl
