// What the commands for device management, omadm and omaex, have in common.
#pragma once

#include "ctl/client.h"

#include <initializer_list>
#include <map>
#include <string>

namespace ctl {

struct NumberName {
    ULONG number;
    const char* name;
};

// A number, and behind it in brackets its name where the list has one.
std::string WithName(ULONG number, std::initializer_list<NumberName> names);
// The number under `place`, and its name, or null, under `place`_name.
void AddWithName(Report& report, const std::string& place, const std::string& label, ULONG number,
                 std::initializer_list<NumberName> names);

// Adds an option that takes "on" or "off".
void AddSwitch(CLI::App* sub, const std::string& name, std::optional<bool>& value, const std::string& help);
// Adds the argument of a command that accepts or rejects.
void AddAnswer(CLI::App* sub, bool& accept);
// Adds the argument of a command that begins a session: one of `types`, by name.
void AddSessionType(CLI::App* sub, ULONG& type, const std::map<std::string, ULONG>& types);

} // namespace ctl
