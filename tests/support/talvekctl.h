// talvekctl as a user runs it: a child process with its arguments, outputs and exit status.
#pragma once

#include "tests/support/child_process.h"

#include <nlohmann/json.hpp>

#include <string>
#include <utility>
#include <vector>

namespace talvekctl {

using Json = nlohmann::json;
using Texts = std::vector<std::string>;
using Environment = std::vector<std::pair<std::string, std::string>>;

inline const Texts kClient = BuiltProgram("talvekctl");

inline ChildSetup Talvekctl(const Texts& arguments, const Environment& environment = {})
{
    ChildSetup setup;
    setup.command = kClient;
    setup.command.insert(setup.command.end(), arguments.begin(), arguments.end());
    setup.environment = environment;
    return setup;
}

struct Result {
    int status;
    std::string output;
    std::string error;
    Texts lines; // of the output
};

inline Result RunClient(const ChildSetup& setup)
{
    ChildProcess child(setup);
    Texts lines;
    for (std::string line = child.ReadLine(); !line.empty(); line = child.ReadLine())
        lines.push_back(line);
    const int status = child.Finish();
    return {status, child.Output(), child.Error(), lines};
}

inline Result RunClient(const Texts& arguments, const Environment& environment = {})
{
    return RunClient(Talvekctl(arguments, environment));
}

// A discarded value, not an exception, when the line is malformed.
inline Json Parse(const std::string& line) { return Json::parse(line, nullptr, false); }

inline bool Contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

} // namespace talvekctl
