// What a command prints: one report, as aligned text or as one line of JSON (docs/json.md).
#pragma once

#include "ctl/error.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <vector>

namespace ctl {

using Json = nlohmann::ordered_json;

// The answer of a command, built once and printed either way.
class Report {
public:
    explicit Report(std::string command) : m_command(std::move(command)) {}

    // One value: its place in "result" ("pri.carrier" is a member of an object), its label in text output, and the text
    // where that is not the plain value.
    void Add(const std::string& place, const std::string& label, Json value, std::optional<std::string> text = {});
    // A number under `place`, and its name, null for none, under `place`_name.
    void AddNamed(const std::string& place, const std::string& label, ULONG number, const char* name);
    // A value that only the JSON form has; a line, and a text with a label, that only the text form has.
    void AddHidden(const std::string& place, Json value);
    void AddLine(const std::string& line);
    void AddText(const std::string& label, const std::string& text);
    // Everything that `other` has.
    void Merge(const Report& other);

    const std::string& Command() const { return m_command; }
    std::string ToText() const;
    Json ToJson() const;

private:
    struct Row {
        std::string label; // empty: a line by itself
        std::string text;
    };
    std::string m_command;
    std::vector<Row> m_rows;
    Json m_result = Json::object();
};

// The plain text of a value: "yes", "no", "-" for null, a string without quotes, anything else as JSON has it.
std::string PlainText(const Json& value);

// Writes one line to standard output and flushes it. Throws ClientError when it cannot be written.
void PrintLine(const std::string& line);
// A text of the module's: its line breaks, of whichever kind, stand; other control characters show as \xNN.
void PrintLines(const std::string& text);
// One line, valid UTF-8 whatever the strings hold.
void PrintJson(const Json& value);
void Print(const Report& report, bool json);

// The error on standard error, or as JSON on standard output. Does not throw.
void PrintError(const std::exception& error, bool json) noexcept;

} // namespace ctl
