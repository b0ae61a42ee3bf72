#include "ctl/output.h"

#include "ctl/text.h"

#include <algorithm>
#include <iostream>

namespace ctl {

namespace {

Json::json_pointer Pointer(std::string place)
{
    std::replace(place.begin(), place.end(), '.', '/');
    return Json::json_pointer("/" + place);
}

// "function" and "code" are null for errors of the client's own.
Json ErrorObject(const std::exception& error)
{
    if (const auto* call = dynamic_cast<const CallFailed*>(&error)) {
        Json object = {{"function", call->Function()},
                       {"code", static_cast<ULONG>(call->Code())},
                       {"name", OrvRcodeName(call->Code())},
                       {"meaning", OrvRcodeMeaning(call->Code())}};
        if (call->FailureReason()) object["failure_reason"] = *call->FailureReason();
        if (const auto* refused = dynamic_cast<const PinRefused*>(&error)) {
            object["cme_error"] = refused->CmeError();
            object["attempts_left"] = refused->AttemptsLeft() ? Json(*refused->AttemptsLeft()) : Json();
        }
        return object;
    }
    if (const auto* call = dynamic_cast<const VendorCallFailed*>(&error)) {
        Json object = {{"function", std::string("COrvGobiDll::") + call->Method()},
                       {"code", call->Status()},
                       {"name", "VENDOR_STATUS"},
                       {"meaning", error.what()}};
        if (call->FailureReason()) object["failure_reason"] = *call->FailureReason();
        return object;
    }
    const bool usage = dynamic_cast<const UsageError*>(&error) != nullptr;
    return {{"function", nullptr},
            {"code", nullptr},
            {"name", usage ? "USAGE_ERROR" : "CLIENT_ERROR"},
            {"meaning", error.what()}};
}

} // namespace

std::string PlainText(const Json& value)
{
    if (value.is_null()) return "-";
    if (value.is_boolean()) return value.get<bool>() ? "yes" : "no";
    if (value.is_string()) return Printable(value.get<std::string>());
    return Printable(value.dump(-1, ' ', false, Json::error_handler_t::replace));
}

void Report::Add(const std::string& place, const std::string& label, Json value, std::optional<std::string> text)
{
    m_rows.push_back({label, text ? Printable(*text) : PlainText(value)});
    AddHidden(place, std::move(value));
}

void Report::AddNamed(const std::string& place, const std::string& label, ULONG number, const char* name)
{
    Add(place, label, number, std::to_string(number) + (name ? std::string(" (") + name + ")" : ""));
    AddHidden(place + "_name", name ? Json(name) : Json());
}

void Report::AddHidden(const std::string& place, Json value) { m_result[Pointer(place)] = std::move(value); }

void Report::AddLine(const std::string& line) { m_rows.push_back({"", Printable(line)}); }

void Report::AddText(const std::string& label, const std::string& text)
{
    m_rows.push_back({label.empty() ? " " : label, Printable(text)}); // one without a label has a line by itself
}

void Report::Merge(const Report& other)
{
    m_rows.insert(m_rows.end(), other.m_rows.begin(), other.m_rows.end());
    m_result.update(other.m_result);
}

std::string Report::ToText() const
{
    size_t width = 0;
    for (const Row& row : m_rows)
        width = std::max(width, row.label.size());
    std::string out;
    for (const Row& row : m_rows) {
        if (!out.empty()) out += '\n';
        if (!row.label.empty()) out += row.label + std::string(width - row.label.size() + 2, ' ');
        out += row.text;
    }
    return out;
}

Json Report::ToJson() const { return {{"ok", true}, {"command", m_command}, {"result", m_result}}; }

void PrintLine(const std::string& line)
{
    std::cout << line << '\n' << std::flush;
    if (!std::cout) throw ClientError("standard output cannot be written");
}

void PrintLines(const std::string& text)
{
    for (size_t begin = 0; begin <= text.size();) {
        const size_t end = std::min(text.find_first_of("\r\n", begin), text.size());
        PrintLine(Printable(text.substr(begin, end - begin)));
        begin = end + (text.compare(end, 2, "\r\n") == 0 ? 2 : 1);
    }
}

void PrintJson(const Json& value) { PrintLine(value.dump(-1, ' ', false, Json::error_handler_t::replace)); }

void Print(const Report& report, bool json)
{
    if (json)
        PrintJson(report.ToJson());
    else
        PrintLine(report.ToText());
}

void PrintError(const std::exception& error, bool json) noexcept
{
    try {
        if (json) {
            PrintJson({{"ok", false}, {"error", ErrorObject(error)}});
            return;
        }
    } catch (const std::exception&) {
        // Standard output is gone: standard error is what is left.
    }
    std::cerr << "error: " << Printable(error.what()) << '\n';
    if (dynamic_cast<const UsageError*>(&error)) std::cerr << "talvekctl --help lists the commands.\n";
}

} // namespace ctl
