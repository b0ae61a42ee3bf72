// A text value of the registry.
#pragma once

#include "utility/ov_utility.h"

// Always terminated; at most 259 characters.
struct RegistryText {
    static constexpr DWORD kLength = 259;
    WCHAR text[kLength + 1] = {};

    // False, with the last error set, when there is no such value or it does not fit.
    bool Read(HKEY root, const WCHAR* subkey, const WCHAR* value)
    {
        DWORD size = kLength;
        const bool found = GetRegValue(root, subkey, value, text, &size) == 0;
        text[kLength] = 0;
        return found;
    }
    // The name of the AT port.
    bool ReadPortName() { return Read(HKEY_LOCAL_MACHINE, TXT("Software\\Microsoft\\RIL"), TXT("ComPort")); }
};
