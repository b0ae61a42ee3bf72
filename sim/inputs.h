// Inputs of which a null pointer leaves the kept value as it is. Each gives false when the value does not fit.
#pragma once

#include "sim/text.h"

namespace sim {

template <class T>
bool Take(T& kept, const T* value, T highest = static_cast<T>(~T{0}))
{
    if (!value) return true;
    if (*value > highest) return false;
    kept = *value;
    return true;
}

template <ULONG kRoom>
bool Take(Text<kRoom>& kept, const char* text)
{
    return !text || Copy(kept, text);
}

// Whether all of `count` characters are decimal digits.
inline bool AreDigits(const char* text, ULONG count)
{
    for (ULONG i = 0; i < count; ++i) {
        if (text[i] < '0' || text[i] > '9') return false;
    }
    return true;
}

} // namespace sim
