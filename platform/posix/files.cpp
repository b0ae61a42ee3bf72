#include <errno.h>
#include <fcntl.h>
#include <limits.h>
#include <new>
#include <poll.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <strings.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <termios.h>
#include <unistd.h>

#include "platform/posix/file_object.h"
#include "platform/posix/seam.h"
#include "platform/posix/text.h"

using seam::Call;
using seam::Deadline;
using seam::Fail;
using seam::FileObject;
using seam::Lock;
using seam::PendingCall;
using seam::PendingCalls;

namespace {

// --- opening --------------------------------------------------------------------------------------------------------

// What a log may hold (telephone numbers, messages) concerns its owner only.
constexpr mode_t kNewFileMode = S_IRUSR | S_IWUSR;

// For opening what exists, "COM7:" becomes "/dev/ttyS6" and "ttyUSB2" "/dev/ttyUSB2"; a name with '/', and each name
// that may be created, stays as it is. Returns an error, or ERROR_SUCCESS.
DWORD HostPath(const WCHAR* name, DWORD disposition, char (&path)[PATH_MAX])
{
    char text[PATH_MAX];
    if (!seam::ToUtf8(name, text, sizeof text)) return ERROR_FILENAME_EXCED_RANGE;
    size_t length = strlen(text);
    const bool may_be_device = disposition == OPEN_EXISTING;
    if (may_be_device && length > 0 && text[length - 1] == ':') text[--length] = 0;
    if (length == 0) return ERROR_PATH_NOT_FOUND;

    int written;
    if (!may_be_device || strchr(text, '/')) {
        written = snprintf(path, sizeof path, "%s", text);
    } else if (length == 4 && strncasecmp(text, "COM", 3) == 0 && text[3] >= '1' && text[3] <= '9') {
        written = snprintf(path, sizeof path, "/dev/ttyS%d", text[3] - '1');
    } else {
        written = snprintf(path, sizeof path, "/dev/%s", text);
    }
    return written < static_cast<int>(sizeof path) ? ERROR_SUCCESS : ERROR_FILENAME_EXCED_RANGE;
}

// What a failed open means. `path` is spoilt.
DWORD OpenError(int host_error, char (&path)[PATH_MAX])
{
    if (host_error == EIO) return ERROR_FILE_NOT_FOUND; // a device node without a line behind it
    char* slash = strrchr(path, '/');
    if (host_error != ENOENT || !slash || slash == path) return seam::ErrorFromErrno(host_error);
    *slash = 0;
    struct stat folder;
    return stat(path, &folder) == 0 ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
}

int OpenFlags(DWORD access, DWORD disposition)
{
    int flags = O_NOCTTY | O_NONBLOCK | O_CLOEXEC;
    switch (access) {
    case GENERIC_READ:
        flags |= O_RDONLY;
        break;
    case GENERIC_WRITE:
        flags |= O_WRONLY;
        break;
    default:
        flags |= O_RDWR;
    }
    if (disposition == OPEN_ALWAYS) {
        flags |= O_CREAT;
        if (access == GENERIC_WRITE) flags |= O_APPEND;
    }
    return flags;
}

bool IsPseudoTerminal(dev_t device)
{
    return major(device) >= 136 && major(device) <= 143; // numbers that the host reserves for them
}

// Enters the object into the list of open handles, unless another handle of this process excludes it.
bool AddUnlessExcluded(FileObject* file)
{
    const Lock lock(seam::g_objects);
    for (HandleObject* object = seam::g_open_handles; file->is_port && object; object = object->next_open) {
        if (object->kind != &FileObject::kKind) continue;
        const auto* other = static_cast<FileObject*>(object);
        const bool same_port = other->is_port && other->device == file->device;
        if (same_port && (other->is_exclusive || file->is_exclusive)) return false;
    }
    seam::AddOpenHandle(file);
    return true;
}

// Tells the file's kind and claims it if it is a port. Returns an error, or ERROR_SUCCESS.
DWORD Classify(FileObject* file, DWORD share_mode, DWORD disposition)
{
    struct stat status;
    if (fstat(file->descriptor, &status) != 0) return seam::ErrorFromErrno(errno);
    if (S_ISDIR(status.st_mode)) return ERROR_ACCESS_DENIED;
    if (disposition != OPEN_EXISTING) return ERROR_SUCCESS;
    if (!isatty(file->descriptor)) return errno == EIO ? ERROR_FILE_NOT_FOUND : ERROR_SUCCESS;

    file->is_port = true;
    file->is_exclusive = share_mode == 0;
    file->is_pseudo_terminal = IsPseudoTerminal(status.st_rdev);
    file->device = status.st_rdev;
    // Keeps the other processes out. A file system without locks leaves only this process's own check.
    const int claim = file->is_exclusive ? LOCK_EX : LOCK_SH;
    if (flock(file->descriptor, claim | LOCK_NB) != 0 && errno == EWOULDBLOCK) return ERROR_ACCESS_DENIED;
    if (!file->reads.Open() || !file->writes.Open()) return ERROR_GEN_FAILURE;
    return ERROR_SUCCESS;
}

void EndPending(HandleObject* object)
{
    auto* file = static_cast<FileObject*>(object);
    file->reads.EndForGood();
    file->writes.EndForGood();
}

void ReleaseFile(FileObject* file)
{
    file->reads.Close();
    file->writes.Close();
    close(file->descriptor);
    free(file);
}

void DestroyFile(HandleObject* object)
{
    auto* file = static_cast<FileObject*>(object);
    if (file->is_port) seam::UnpreparePort(*file);
    ReleaseFile(file);
}

FileObject* NewFileObject()
{
    void* block = malloc(sizeof(FileObject));
    if (!block) return nullptr;
    auto* file = new (block) FileObject();
    file->kind = &FileObject::kKind;
    file->references = 1;
    return file;
}

HANDLE NoFile(DWORD error)
{
    seam::SetError(error);
    return INVALID_HANDLE_VALUE;
}

// --- reading and writing --------------------------------------------------------------------------------------------

// How long a transfer may wait, and for what.
struct Patience {
    Deadline total = Deadline::Never();
    DWORD interval_ms = 0;  // between octets; 0 for no limit
    bool any_amount = true; // the first octets that come end the transfer
};

Patience ReadPatience(FileObject& port, DWORD size)
{
    const Lock lock(port.mutex);
    const COMMTIMEOUTS& timeouts = port.timeouts;
    const DWORD multiplier = timeouts.ReadTotalTimeoutMultiplier;
    const DWORD constant = timeouts.ReadTotalTimeoutConstant;
    Patience patience;
    patience.any_amount = timeouts.ReadIntervalTimeout == MAXDWORD;
    if (patience.any_amount && multiplier == MAXDWORD) {
        patience.total = Deadline::In(constant);
    } else if (patience.any_amount || multiplier || constant) {
        patience.total = Deadline::In(uint64_t{multiplier} * size + constant);
    }
    if (!patience.any_amount) patience.interval_ms = timeouts.ReadIntervalTimeout;
    return patience;
}

Patience WritePatience(FileObject& port, DWORD size)
{
    const Lock lock(port.mutex);
    const DWORD multiplier = port.timeouts.WriteTotalTimeoutMultiplier;
    const DWORD constant = port.timeouts.WriteTotalTimeoutConstant;
    Patience patience;
    patience.any_amount = false;
    if (multiplier || constant) patience.total = Deadline::In(uint64_t{multiplier} * size + constant);
    return patience;
}

// Moves up to `size` octets by `step(done)`, which is a host's read or write of what remains. On a port that was hung
// up, what still waits is moved first.
template <class Step>
BOOL Transfer(const FileObject& file, PendingCalls& calls, short events, const Patience& patience, DWORD size,
              DWORD* done, Step step)
{
    PendingCall call(calls);
    bool hung_up = false;
    Deadline deadline = patience.total;
    while (*done < size) {
        const ssize_t count = step(*done);
        if (count > 0) {
            *done += static_cast<DWORD>(count);
            if (patience.any_amount) return TRUE;
            if (patience.interval_ms) deadline = patience.total.Sooner(Deadline::In(patience.interval_ms));
            continue;
        }
        if (count == 0 && !file.is_port) return TRUE; // the end of the file
        const bool must_wait = count < 0 && (errno == EAGAIN || errno == EWOULDBLOCK);
        if (count < 0 && errno == EINTR) continue;
        if (!must_wait || hung_up) {
            if (*done > 0 && events == POLLIN) return TRUE; // what was read counts; the failure is the next call's
            if (must_wait || count == 0) return Fail(ERROR_NOT_READY);
            return Fail(file.is_port ? seam::PortErrorFromErrno(errno) : seam::ErrorFromErrno(errno));
        }
        switch (call.Await(file.descriptor, events, deadline, &hung_up)) {
        case PendingCall::Outcome::Ready:
            break;
        case PendingCall::Outcome::TimedOut:
            return TRUE;
        case PendingCall::Outcome::Ended:
            return Fail(ERROR_OPERATION_ABORTED);
        }
    }
    return TRUE;
}

bool IsHungUp(const FileObject& file)
{
    termios settings;
    return file.is_port && tcgetattr(file.descriptor, &settings) != 0;
}

// What ReadFile and WriteFile ask of their arguments before anything moves.
bool CanTransfer(const seam::Held<FileObject>& file, DWORD right, LPCVOID buffer, DWORD size, void* overlapped)
{
    if (!file) return false;
    if ((!buffer && size > 0) || overlapped) return Fail(ERROR_INVALID_PARAMETER);
    if (!(file->access & right)) return Fail(ERROR_ACCESS_DENIED);
    if (size == 0 && IsHungUp(*file)) return Fail(ERROR_NOT_READY);
    return true;
}

} // namespace

namespace seam {

const HandleKind FileObject::kKind = {EndPending, DestroyFile};

} // namespace seam

namespace talvek_platform {

HANDLE CreateFileW(const WCHAR* name, DWORD access, DWORD share_mode, void* security, DWORD disposition, DWORD flags,
                   HANDLE template_file)
{
    if (seam::Faulted(Call::CreateFileW)) return INVALID_HANDLE_VALUE;
    const bool known_access = access != 0 && (access & ~(GENERIC_READ | GENERIC_WRITE)) == 0;
    const bool known_disposition = disposition == OPEN_EXISTING || disposition == OPEN_ALWAYS;
    if (!name || !known_access || !known_disposition || security || (flags & ~FILE_ATTRIBUTE_NORMAL) || template_file) {
        return NoFile(ERROR_INVALID_PARAMETER);
    }
    char path[PATH_MAX];
    if (const DWORD error = HostPath(name, disposition, path)) return NoFile(error);

    FileObject* file = NewFileObject();
    if (!file) return NoFile(ERROR_NOT_ENOUGH_MEMORY);
    file->access = access;
    do {
        file->descriptor = open(path, OpenFlags(access, disposition), kNewFileMode);
    } while (file->descriptor < 0 && errno == EINTR);
    if (file->descriptor < 0) {
        const DWORD error = OpenError(errno, path);
        free(file);
        return NoFile(error);
    }
    DWORD error = Classify(file, share_mode, disposition);
    if (!error && !AddUnlessExcluded(file)) error = ERROR_ACCESS_DENIED;
    if (error) {
        ReleaseFile(file);
        return NoFile(error);
    }
    if (file->is_port) error = seam::PreparePort(*file);
    if (error) {
        seam::CloseOpenHandle(file);
        return NoFile(error);
    }
    return file;
}

BOOL ReadFile(HANDLE handle, LPVOID buffer, DWORD size, DWORD* read, void* overlapped)
{
    if (seam::Armed()) {
        if (seam::FaultedWhileArmed(Call::ReadFile)) return FALSE;
        const seam::StandIn stand_in(Call::ReadFile);
        if (stand_in) return stand_in.As<decltype(ReadFile)>()(handle, buffer, size, read, overlapped);
    }
    if (!read) return Fail(ERROR_INVALID_PARAMETER);
    *read = 0;
    const seam::Held<FileObject> file(handle);
    if (!CanTransfer(file, GENERIC_READ, buffer, size, overlapped)) return FALSE;
    const Patience patience = file->is_port ? ReadPatience(*file, size) : Patience();
    return Transfer(*file, file->reads, POLLIN, patience, size, read, [&](DWORD done) {
        return ::read(file->descriptor, static_cast<BYTE*>(buffer) + done, size - done);
    });
}

BOOL WriteFile(HANDLE handle, LPCVOID buffer, DWORD size, DWORD* written, void* overlapped)
{
    if (seam::Armed()) {
        if (seam::FaultedWhileArmed(Call::WriteFile)) return FALSE;
        const seam::StandIn stand_in(Call::WriteFile);
        if (stand_in) return stand_in.As<decltype(WriteFile)>()(handle, buffer, size, written, overlapped);
    }
    if (!written) return Fail(ERROR_INVALID_PARAMETER);
    *written = 0;
    const seam::Held<FileObject> file(handle);
    if (!CanTransfer(file, GENERIC_WRITE, buffer, size, overlapped)) return FALSE;
    Patience patience;
    patience.any_amount = false;
    if (file->is_port) patience = WritePatience(*file, size);
    return Transfer(*file, file->writes, POLLOUT, patience, size, written, [&](DWORD done) {
        return write(file->descriptor, static_cast<const BYTE*>(buffer) + done, size - done);
    });
}

DWORD SetFilePointer(HANDLE handle, int32_t distance, int32_t* distance_high, DWORD method)
{
    if (seam::Faulted(Call::SetFilePointer)) return INVALID_SET_FILE_POINTER;
    const auto fail = [](DWORD error) {
        seam::SetError(error);
        return INVALID_SET_FILE_POINTER;
    };
    const seam::Held<FileObject> file(handle);
    if (!file) return INVALID_SET_FILE_POINTER;
    if (file->is_port) return fail(ERROR_INVALID_FUNCTION);
    if (method > FILE_END) return fail(ERROR_INVALID_PARAMETER);

    constexpr int kOrigins[] = {SEEK_SET, SEEK_CUR, SEEK_END}; // FILE_BEGIN, FILE_CURRENT, FILE_END
    int64_t offset = distance;
    if (distance_high) offset = int64_t{*distance_high} * (int64_t{1} << 32) + static_cast<uint32_t>(distance);
    const off_t position = lseek(file->descriptor, static_cast<off_t>(offset), kOrigins[method]);
    if (position < 0) return fail(seam::ErrorFromErrno(errno));
    if (distance_high) *distance_high = static_cast<int32_t>(static_cast<int64_t>(position) >> 32);
    if (static_cast<DWORD>(position) == INVALID_SET_FILE_POINTER) seam::SetError(ERROR_SUCCESS);
    return static_cast<DWORD>(position);
}

} // namespace talvek_platform
