#include <new>
#include <unistd.h>

#include "platform/posix/file_object.h"
#include "platform/posix/seam.h"

using seam::FileObject;
using seam::Lock;

namespace {

alignas(FileObject) unsigned char g_storage[sizeof(FileObject)];
FileObject* g_standard_error = nullptr; // guarded by g_objects

} // namespace

namespace talvek_platform {

HANDLE GetStdHandle(DWORD which)
{
    if (seam::Faulted(seam::Call::GetStdHandle)) return INVALID_HANDLE_VALUE;
    if (which != STD_ERROR_HANDLE) {
        seam::SetError(ERROR_INVALID_PARAMETER);
        return INVALID_HANDLE_VALUE;
    }
    const Lock lock(seam::g_objects);
    if (!g_standard_error) {
        g_standard_error = new (g_storage) FileObject();
        g_standard_error->kind = &FileObject::kKind;
        g_standard_error->references = 2; // one too many: it is never destroyed, even if a caller closes it
        g_standard_error->descriptor = STDERR_FILENO;
        g_standard_error->access = GENERIC_WRITE;
        seam::AddOpenHandle(g_standard_error);
    }
    return g_standard_error;
}

} // namespace talvek_platform
