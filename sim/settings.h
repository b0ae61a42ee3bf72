// Entry points that do no more than keep values, or give what is kept: a line each, with the values in the order of the
// arguments.
#pragma once

#include "sim/call.h"

namespace sim {

// One that is kept: `value` goes to `kept` when it is within `low` and `high`.
template <class T>
struct Kept {
    T& kept;
    T value;
    ULONGLONG high = static_cast<T>(~T{0});
    ULONGLONG low = 0;

    bool Fits() const { return value >= low && value <= high; }
};

template <class... T>
ULONG Keep(EntryPoint entry, Kept<T>... values)
{
    Call call(entry, At(&values.value)...);
    if (const ULONG refused = call.Refused()) return refused;
    if (!(... && values.Fits())) return kInvalidArgument;
    ((values.kept = values.value), ...);
    return call.Done();
}

// One that is given: `kept`, as it is while the call runs, goes to `out`.
template <class T>
struct Given {
    T* out;
    const T& kept;
};
template <class T>
Given(T*, const T&) -> Given<T>;

template <class... T>
ULONG Give(EntryPoint entry, Given<T>... values)
{
    Call call(entry);
    if (const ULONG refused = call.Refused()) return refused;
    (call.Put(values.out, values.kept), ...);
    return call.Done();
}

} // namespace sim
