#include "ctl/management.h"

#include <algorithm>

namespace ctl {

namespace {

const char* NameOf(ULONG number, std::initializer_list<NumberName> names)
{
    const auto* const found =
        std::find_if(names.begin(), names.end(), [number](const NumberName& row) { return row.number == number; });
    return found == names.end() ? nullptr : found->name;
}

} // namespace

std::string WithName(ULONG number, std::initializer_list<NumberName> names)
{
    const char* const name = NameOf(number, names);
    return std::to_string(number) + (name ? std::string(" (") + name + ")" : "");
}

void AddWithName(Report& report, const std::string& place, const std::string& label, ULONG number,
                 std::initializer_list<NumberName> names)
{
    report.Add(place, label, number, WithName(number, names));
    const char* const name = NameOf(number, names);
    report.AddHidden(place + "_name", name ? Json(name) : Json());
}

void AddSwitch(CLI::App* sub, const std::string& name, std::optional<bool>& value, const std::string& help)
{
    sub->add_option_function<std::string>(
           name, [&value](const std::string& text) { value = text == "on"; }, help)
        ->type_name("on|off")
        ->check(CLI::IsMember({"on", "off"}));
}

void AddAnswer(CLI::App* sub, bool& accept)
{
    sub->add_option_function<std::string>(
           "ANSWER", [&accept](const std::string& text) { accept = text == "accept"; }, "accept or reject")
        ->type_name("")
        ->required()
        ->check(CLI::IsMember({"accept", "reject"}));
}

void AddSessionType(CLI::App* sub, ULONG& type, const std::map<std::string, ULONG>& types)
{
    std::string names;
    for (const auto& [name, number] : types)
        names += (names.empty() ? "" : ", ") + name;
    sub->add_option_function<std::string>(
           "TYPE", [&type, types](const std::string& text) { type = types.at(text); }, "What it is for: " + names)
        ->type_name("")
        ->required()
        ->check(CLI::IsMember(types));
}

} // namespace ctl
