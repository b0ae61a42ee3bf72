// Serial ports: termios, seen as a DCB.
#include <errno.h>
#include <sys/ioctl.h>
#include <termios.h>

#include "platform/posix/file_object.h"
#include "platform/posix/seam.h"

using seam::Call;
using seam::Fail;
using seam::FileObject;
using seam::Lock;

namespace {

struct BaudRow {
    DWORD rate;
    speed_t speed;
};
constexpr BaudRow kBaudRates[] = {
    {50, B50},           {75, B75},           {110, B110},         {134, B134},         {150, B150},
    {200, B200},         {300, B300},         {600, B600},         {1200, B1200},       {1800, B1800},
    {2400, B2400},       {4800, B4800},       {9600, B9600},       {19200, B19200},     {38400, B38400},
    {57600, B57600},     {115200, B115200},   {230400, B230400},   {460800, B460800},   {500000, B500000},
    {576000, B576000},   {921600, B921600},   {1000000, B1000000}, {1152000, B1152000}, {1500000, B1500000},
    {2000000, B2000000}, {2500000, B2500000}, {3000000, B3000000}, {3500000, B3500000}, {4000000, B4000000},
};

constexpr tcflag_t kCharacterSizes[] = {CS5, CS6, CS7, CS8}; // from five data bits on

constexpr tcflag_t kParityFlags[] = {0, PARENB | PARODD, PARENB, PARENB | PARODD | CMSPAR, PARENB | CMSPAR};
static_assert(NOPARITY == 0 && ODDPARITY == 1 && EVENPARITY == 2 && MARKPARITY == 3 && SPACEPARITY == 4);
constexpr tcflag_t kParityMask = PARENB | PARODD | CMSPAR;

constexpr cc_t kXonCharacter = 0x11;
constexpr cc_t kXoffCharacter = 0x13;

BYTE ParityOf(tcflag_t control)
{
    if (!(control & PARENB)) return NOPARITY;
    BYTE parity = ODDPARITY;
    while (parity < SPACEPARITY && kParityFlags[parity] != (control & kParityMask))
        ++parity;
    return parity;
}

BYTE ByteSizeOf(tcflag_t control)
{
    BYTE size = 5;
    while (size < 8 && kCharacterSizes[size - 5] != (control & CSIZE))
        ++size;
    return size;
}

// Overwrites what termios knows in `block`. A pseudo-terminal has neither parity nor a choice of data bits, so there
// the block's own values stand.
void ReadSettings(const termios& settings, bool is_pseudo_terminal, DCB* block)
{
    block->BaudRate = 0;
    for (const BaudRow& row : kBaudRates) {
        if (row.speed == cfgetospeed(&settings)) block->BaudRate = row.rate;
    }
    if (!is_pseudo_terminal) {
        block->Parity = ParityOf(settings.c_cflag);
        block->ByteSize = ByteSizeOf(settings.c_cflag);
    }
    block->fParity = settings.c_iflag & INPCK ? TRUE : FALSE;
    block->StopBits = !(settings.c_cflag & CSTOPB) ? ONESTOPBIT : block->ByteSize == 5 ? ONE5STOPBITS : TWOSTOPBITS;
    block->fOutX = settings.c_iflag & IXON ? TRUE : FALSE;
    block->fInX = settings.c_iflag & IXOFF ? TRUE : FALSE;
    const bool told_apart = settings.c_cc[VSTART] != settings.c_cc[VSTOP];
    block->XonChar = static_cast<char>(told_apart ? settings.c_cc[VSTART] : kXonCharacter);
    block->XoffChar = static_cast<char>(told_apart ? settings.c_cc[VSTOP] : kXoffCharacter);
}

bool IsValid(const DCB& block)
{
    if (block.DCBlength != sizeof(DCB) || block.XonChar == block.XoffChar) return false;
    if (block.ByteSize < 5 || block.ByteSize > 8 || block.Parity > SPACEPARITY) return false;
    // 1.5 stop bits go with five data bits, two with more.
    return block.StopBits == ONESTOPBIT || block.StopBits == (block.ByteSize == 5 ? ONE5STOPBITS : TWOSTOPBITS);
}

template <class Flags>
void SetFlag(Flags* flags, Flags flag, bool on)
{
    *flags = on ? *flags | flag : *flags & ~flag;
}

// Returns false for a baud rate that the host does not know.
bool WriteSettings(const DCB& block, termios* settings)
{
    const BaudRow* baud = nullptr;
    for (const BaudRow& row : kBaudRates) {
        if (row.rate == block.BaudRate) baud = &row;
    }
    if (!baud) return false;
    cfsetispeed(settings, baud->speed);
    cfsetospeed(settings, baud->speed);
    settings->c_cflag &= ~(CSIZE | kParityMask);
    settings->c_cflag |= kCharacterSizes[block.ByteSize - 5] | kParityFlags[block.Parity];
    SetFlag<tcflag_t>(&settings->c_cflag, CSTOPB, block.StopBits != ONESTOPBIT);
    SetFlag<tcflag_t>(&settings->c_iflag, INPCK, block.fParity);
    SetFlag<tcflag_t>(&settings->c_iflag, IXON, block.fOutX);
    SetFlag<tcflag_t>(&settings->c_iflag, IXOFF, block.fInX);
    settings->c_cc[VSTART] = static_cast<cc_t>(block.XonChar);
    settings->c_cc[VSTOP] = static_cast<cc_t>(block.XoffChar);
    return true;
}

// Every octet passes as it is; the modem lines are not waited for. The rate and the framing stay.
bool MakeRaw(int descriptor)
{
    termios settings;
    if (tcgetattr(descriptor, &settings) != 0) return false;
    settings.c_iflag &=
        ~static_cast<tcflag_t>(IGNBRK | BRKINT | PARMRK | ISTRIP | INLCR | IGNCR | ICRNL | IXON | IXANY);
    settings.c_oflag &= ~static_cast<tcflag_t>(OPOST);
    settings.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL | ICANON | ISIG | IEXTEN);
    settings.c_cflag |= CLOCAL | CREAD;
    settings.c_cc[VMIN] = 1; // with 0 a port where nothing waits would look like one that was hung up
    settings.c_cc[VTIME] = 0;
    return tcsetattr(descriptor, TCSANOW, &settings) == 0;
}

// For the serial calls: the file is held, and is a port.
bool IsPort(const seam::Held<FileObject>& file)
{
    if (!file) return false;
    return file->is_port || Fail(ERROR_INVALID_FUNCTION);
}

BOOL FailPort() { return Fail(seam::PortErrorFromErrno(errno)); }

} // namespace

namespace seam {

DWORD PortErrorFromErrno(int host_error)
{
    return host_error == EIO || host_error == ENXIO || host_error == ENODEV ? ERROR_NOT_READY
                                                                            : ErrorFromErrno(host_error);
}

DWORD PreparePort(FileObject& port)
{
    // Keeps out the programs that take no locks. On a pseudo-terminal the host would keep this state after a crash of
    // the client, for as long as the other side lives, so there the lock must do.
    if (port.is_exclusive && !port.is_pseudo_terminal && ioctl(port.descriptor, TIOCEXCL) != 0) {
        return PortErrorFromErrno(errno);
    }
    if (!MakeRaw(port.descriptor)) return PortErrorFromErrno(errno);

    const Lock lock(port.mutex);
    port.timeouts.ReadIntervalTimeout = 250;
    port.timeouts.ReadTotalTimeoutMultiplier = 10;
    port.timeouts.ReadTotalTimeoutConstant = 100;
    port.timeouts.WriteTotalTimeoutMultiplier = 10;
    port.timeouts.WriteTotalTimeoutConstant = 100;
    port.block.DCBlength = sizeof(DCB);
    port.block.fBinary = TRUE;
    port.block.ByteSize = 8;
    port.block.fDtrControl = DTR_CONTROL_ENABLE;
    port.block.fRtsControl = RTS_CONTROL_ENABLE;
    return ERROR_SUCCESS;
}

void UnpreparePort(FileObject& port)
{
    if (port.is_exclusive && !port.is_pseudo_terminal) ioctl(port.descriptor, TIOCNXCL);
}

} // namespace seam

namespace talvek_platform {

BOOL GetCommState(HANDLE port, DCB* block)
{
    if (seam::Faulted(Call::GetCommState)) return FALSE;
    const seam::Held<FileObject> file(port);
    if (!IsPort(file)) return FALSE;
    if (!block) return Fail(ERROR_INVALID_PARAMETER);
    termios settings;
    if (tcgetattr(file->descriptor, &settings) != 0) return FailPort();
    const Lock lock(file->mutex);
    *block = file->block;
    ReadSettings(settings, file->is_pseudo_terminal, block);
    return TRUE;
}

BOOL SetCommState(HANDLE port, const DCB* block)
{
    if (seam::Faulted(Call::SetCommState)) return FALSE;
    const seam::Held<FileObject> file(port);
    if (!IsPort(file)) return FALSE;
    if (!block || !IsValid(*block)) return Fail(ERROR_INVALID_PARAMETER);
    termios settings;
    if (tcgetattr(file->descriptor, &settings) != 0) return FailPort();
    if (!WriteSettings(*block, &settings)) return Fail(ERROR_INVALID_PARAMETER);
    if (tcsetattr(file->descriptor, TCSANOW, &settings) != 0) {
        // Some hosts report the framing that a pseudo-terminal does not have, having done the rest.
        if (!file->is_pseudo_terminal || errno != EINVAL) return FailPort();
    }
    {
        const Lock lock(file->mutex);
        file->block = *block;
    }
    seam::NoteBlock(*block);
    return TRUE;
}

BOOL SetCommTimeouts(HANDLE port, const COMMTIMEOUTS* timeouts)
{
    if (seam::Faulted(Call::SetCommTimeouts)) return FALSE;
    const seam::Held<FileObject> file(port);
    if (!IsPort(file)) return FALSE;
    if (!timeouts) return Fail(ERROR_INVALID_PARAMETER);
    // At once, waiting for the first octet for ever: the one combination that has no meaning.
    if (timeouts->ReadIntervalTimeout == MAXDWORD && timeouts->ReadTotalTimeoutMultiplier == MAXDWORD &&
        timeouts->ReadTotalTimeoutConstant == MAXDWORD) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    {
        const Lock lock(file->mutex);
        file->timeouts = *timeouts;
    }
    seam::NoteTimeouts(*timeouts);
    return TRUE;
}

BOOL SetupComm(HANDLE port, DWORD in_queue, DWORD out_queue)
{
    if (seam::Faulted(Call::SetupComm)) return FALSE;
    const seam::Held<FileObject> file(port);
    if (!IsPort(file)) return FALSE;
    seam::NoteQueues(in_queue, out_queue);
    return TRUE;
}

BOOL PurgeComm(HANDLE port, DWORD flags)
{
    if (seam::Faulted(Call::PurgeComm)) return FALSE;
    const seam::Held<FileObject> file(port);
    if (!IsPort(file)) return FALSE;
    constexpr DWORD kAllFlags = PURGE_TXABORT | PURGE_RXABORT | PURGE_TXCLEAR | PURGE_RXCLEAR;
    if (flags == 0 || (flags & ~kAllFlags)) return Fail(ERROR_INVALID_PARAMETER);
    seam::NotePurge(flags);
    if (flags & PURGE_TXABORT) file->writes.EndAll();
    if (flags & PURGE_RXABORT) file->reads.EndAll();
    const bool out = flags & PURGE_TXCLEAR, in = flags & PURGE_RXCLEAR;
    if (!out && !in) return TRUE;
    return tcflush(file->descriptor, out && in ? TCIOFLUSH : out ? TCOFLUSH : TCIFLUSH) == 0 || FailPort();
}

} // namespace talvek_platform
