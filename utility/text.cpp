#include "utility/ov_utility.h"

namespace {

template <class To, class From, class Convert>
void Copy(const From* text, To* out, ULONG size, Convert convert)
{
    if (!out) return;
    ULONG i = 0;
    for (; text && i < size && text[i]; ++i)
        out[i] = convert(text[i]);
    if (i < size) out[i] = 0;
}

} // namespace

void OV_AtoT(const char* text, WCHAR* wide, ULONG size)
{
    Copy(text, wide, size, [](char c) -> WCHAR { return static_cast<BYTE>(c); });
}

void OV_TtoA(const WCHAR* wide, char* text, ULONG size)
{
    Copy(wide, text, size, [](WCHAR c) { return c > 255 ? '?' : static_cast<char>(static_cast<BYTE>(c)); });
}
