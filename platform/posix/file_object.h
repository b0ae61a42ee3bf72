// A file or a serial port behind a HANDLE.
#pragma once

#include <sys/types.h>

#include "platform/posix/handles.h"
#include "platform/posix/pending_calls.h"

namespace seam {

struct FileObject : HandleObject {
    static const HandleKind kKind;

    int descriptor = -1;
    DWORD access = 0;
    bool is_port = false;
    bool is_exclusive = false;
    bool is_pseudo_terminal = false;
    dev_t device = 0; // of a port

    PendingCalls reads;
    PendingCalls writes;

    Mutex mutex; // guards the two below
    COMMTIMEOUTS timeouts = {};
    DCB block = {}; // what the host cannot hold of the last SetCommState
};

// Prepares a port that has just been opened: raw mode, a control block and time-outs to begin with. Returns an error,
// or ERROR_SUCCESS.
DWORD PreparePort(FileObject& port);
void UnpreparePort(FileObject& port);

// ErrorFromErrno for a port: a line that is gone is ERROR_NOT_READY.
DWORD PortErrorFromErrno(int host_error);

} // namespace seam
