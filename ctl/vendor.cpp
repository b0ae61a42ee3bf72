#include "ctl/vendor.h"

#include "ctl/alphabet.h"

#include <algorithm>
#include <iterator>

namespace ctl {

namespace {

constexpr ULONG kEntryPointMissing = 1;
constexpr ULONG kNotSupported = 1025;

std::string Describe(const char* method, ULONG status, std::optional<ULONG> failure_reason)
{
    std::string text = std::string(method) + " failed: vendor status " + std::to_string(status);
    if (status == kEntryPointMissing) text += " (it failed, or the vendor library does not have it)";
    if (status == kNotSupported) text += " (the module does not support it)";
    if (failure_reason) text += " (failure reason " + std::to_string(*failure_reason) + ")";
    return text;
}

Json SimText(const alphaIDInfo& info)
{
    constexpr BYTE kUcs2 = 0x80;      // in this record
    constexpr ULONG kUcs2Text = 0x48; // as a scheme
    const size_t length = std::min<size_t>(info.length, sizeof info.text);
    if (length == 0) return nullptr;
    const std::string_view octets(reinterpret_cast<const char*>(info.text), length);
    const std::optional<std::string> text = FromCoding(info.dcs == kUcs2 ? kUcs2Text : info.dcs, octets);
    return text ? Json(*text) : Json();
}

} // namespace

VendorCallFailed::VendorCallFailed(const char* method, ULONG status, std::optional<ULONG> failure_reason)
    : std::runtime_error(Describe(method, status, failure_reason)), m_method(method), m_status(status),
      m_failure_reason(failure_reason)
{
}

void CheckVendor(const char* method, ULONG status)
{
    if (status != 0) throw VendorCallFailed(method, status);
}

COrvGobiDll& Vendor()
{
    static auto* const vendor = new COrvGobiDll;
    if (!vendor->Initialize()) throw ClientError("the vendor library lacks its connect or disconnect entry point");
    return *vendor;
}

void AddCallControl(Report& report, const std::string& asked, BYTE result, const alphaIDInfo& info)
{
    constexpr const char* kNames[] = {"call", "supplementary service", "USSD"};
    const Json became = result < std::size(kNames) ? Json(kNames[result]) : Json(result);
    const Json text = SimText(info);
    if (became == asked)
        report.AddHidden("became", became);
    else
        report.Add("became", "Made by the SIM into", became);
    if (text.is_null())
        report.AddHidden("sim_text", text);
    else
        report.Add("sim_text", "The SIM says", text);
}

} // namespace ctl
