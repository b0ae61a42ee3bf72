// The host's loader calls no entry point of a shared library, so its constructor does. Attaching is the one reason for
// which the entry point does something.

#include "api/module_entry.h"

namespace {

struct Attach {
    Attach() { TalvekModuleEntry(nullptr, kProcessAttach, nullptr); }
} s_attach;

} // namespace
