#include <errno.h>

#include "platform/posix/seam.h"

namespace {

thread_local DWORD t_last_error = ERROR_SUCCESS;

struct ErrorRow {
    int host_error;
    DWORD error;
};
constexpr ErrorRow kErrors[] = {
    {EPERM, ERROR_ACCESS_DENIED},
    {EACCES, ERROR_ACCESS_DENIED},
    {EBUSY, ERROR_ACCESS_DENIED},
    {EISDIR, ERROR_ACCESS_DENIED},
    {EROFS, ERROR_ACCESS_DENIED},
    {ETXTBSY, ERROR_ACCESS_DENIED},
    {EWOULDBLOCK, ERROR_ACCESS_DENIED}, // of flock: somebody else has it
    {ENOENT, ERROR_FILE_NOT_FOUND},
    {ENXIO, ERROR_FILE_NOT_FOUND},
    {ENODEV, ERROR_FILE_NOT_FOUND},
    {ENOTDIR, ERROR_PATH_NOT_FOUND},
    {ENAMETOOLONG, ERROR_FILENAME_EXCED_RANGE},
    {ENOMEM, ERROR_NOT_ENOUGH_MEMORY},
    {EBADF, ERROR_INVALID_HANDLE},
    {EINVAL, ERROR_INVALID_PARAMETER},
    {EFAULT, ERROR_INVALID_PARAMETER},
    {ENOTTY, ERROR_INVALID_FUNCTION},
    {ESPIPE, ERROR_INVALID_FUNCTION},
};

} // namespace

namespace seam {

void SetError(DWORD error) { t_last_error = error; }

DWORD CurrentError() { return t_last_error; }

BOOL Fail(DWORD error)
{
    t_last_error = error;
    return FALSE;
}

DWORD ErrorFromErrno(int host_error)
{
    for (const ErrorRow& row : kErrors) {
        if (row.host_error == host_error) return row.error;
    }
    return ERROR_GEN_FAILURE;
}

} // namespace seam

namespace talvek_platform {

DWORD GetLastError()
{
    seam::Count(seam::Call::GetLastError);
    return t_last_error;
}

void SetLastError(DWORD error)
{
    seam::Count(seam::Call::SetLastError);
    t_last_error = error;
}

} // namespace talvek_platform
