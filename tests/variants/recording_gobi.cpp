#include "tests/variants/recording_gobi.h"

#include <stdio.h>

#include <map>
#include <string>
#include <type_traits>
#include <vector>

#include "talvek/gobi_entry_points.h"

namespace {

struct Answer {
    ULONG status = 0;
    std::vector<ULONG> values;
};

std::map<std::string, Answer> g_answers;
std::string g_calls, g_calls_by_value;

std::string Hexadecimal(ULONGLONG value, size_t octets)
{
    char text[24];
    snprintf(text, sizeof(text), "0x%0*llx", static_cast<int>(2 * octets), static_cast<unsigned long long>(value));
    return text;
}

template <class T>
std::string AsItArrived(T argument)
{
    if constexpr (std::is_pointer_v<T>)
        return Hexadecimal(reinterpret_cast<uintptr_t>(argument), sizeof(argument));
    else
        return Hexadecimal(static_cast<ULONGLONG>(argument), sizeof(argument));
}

template <class T>
std::string ByValue(T argument)
{
    if constexpr (!std::is_pointer_v<T>)
        return AsItArrived(argument);
    else if (!argument)
        return "null";
    else if constexpr (std::is_integral_v<std::remove_pointer_t<T>>)
        return Hexadecimal(std::make_unsigned_t<std::remove_cv_t<std::remove_pointer_t<T>>>(*argument),
                           sizeof(*argument));
    else
        return "record";
}

template <class T>
void Fill(const Answer& answer, size_t i, T argument)
{
    using Pointed = std::remove_pointer_t<T>;
    if constexpr (std::is_pointer_v<T> && std::is_integral_v<Pointed> && !std::is_const_v<Pointed>)
        if (argument && i < answer.values.size() && answer.values[i] != kRecordingLeaves)
            *argument = static_cast<Pointed>(answer.values[i]);
}

void Note(std::string& calls, const char* name, const std::vector<std::string>& arguments)
{
    calls += std::string(calls.empty() ? "" : "\n") + name + "(";
    for (size_t i = 0; i < arguments.size(); ++i)
        calls += (i == 0 ? "" : ", ") + arguments[i];
    calls += ")";
}

// The body of the entry point `kName`, for whatever arguments it has.
template <class Signature, const char* kName>
struct Recorder;
template <class... Parameters, const char* kName>
struct Recorder<ULONG(Parameters...), kName> {
    static ULONG ORV_VENDOR_CALL Call(Parameters... arguments)
    {
        Note(g_calls, kName, {AsItArrived(arguments)...});
        Note(g_calls_by_value, kName, {ByValue(arguments)...});
        const Answer& answer = g_answers[kName];
        [[maybe_unused]] size_t i = 0;
        (Fill(answer, i++, arguments), ...);
        return answer.status;
    }
};

} // namespace

// Each name is bound to its recorder when it is looked up, so that nothing is written here that the table of entry
// points does not say. That the GNU loader can do this is why the library exists on such systems only.
// NOLINTBEGIN(bugprone-macro-parentheses): a declared name takes none.
#define RECORDED(name, type)                                                                                           \
    static constexpr char kName_##name[] = #name;                                                                      \
    extern "C" std::remove_pointer_t<type>* Resolve_##name()                                                           \
    {                                                                                                                  \
        return &Recorder<std::remove_pointer_t<type>, kName_##name>::Call;                                             \
    }                                                                                                                  \
    extern "C" ORV_EXPORT std::remove_pointer_t<type> name __attribute__((ifunc("Resolve_" #name)));
#define ENTRY_POINT(name) RECORDED(name, decltype(GobiEntryPoints::name))
#define REGISTRATION(name, type) RECORDED(name, type)
#include "sim/entry_point_rows.h"
#undef REGISTRATION
#undef ENTRY_POINT
#undef RECORDED
// NOLINTEND(bugprone-macro-parentheses)

extern "C" {

ORV_EXPORT void RecordingReset()
{
    g_answers.clear();
    g_calls.clear();
    g_calls_by_value.clear();
}

ORV_EXPORT void RecordingAnswer(const char* entry, ULONG status, const ULONG* values, ULONG count)
{
    g_answers[entry] = {status, std::vector<ULONG>(values, values + count)};
}

ORV_EXPORT const char* RecordingCalls() { return g_calls.c_str(); }

ORV_EXPORT const char* RecordingCallsByValue() { return g_calls_by_value.c_str(); }
}
