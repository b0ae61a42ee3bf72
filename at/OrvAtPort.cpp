#include "at/OrvAtPort.h"

#include <string.h>

#include "talvek/rcode.h"
#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\OrvAtPort.cpp");

constexpr DWORD kQueueSize = 2048;
constexpr DWORD kPurgeAll = PURGE_TXABORT | PURGE_RXABORT | PURGE_TXCLEAR | PURGE_RXCLEAR;
constexpr ULONG kReadRetries = 3;
constexpr ULONG kReplyCapacity = kAtBufferSize - 1; // without the terminator

constexpr char kCarriageReturn = '\r';
constexpr char kResynchronisation[] = "\r\nAT\r\n";
constexpr DWORD kResynchronisationMs = 1000;

// Length of `name`, counted no further than one past the longest name that is taken.
ULONG NameLength(const WCHAR* name)
{
    ULONG length = 0;
    while (length <= kAtPortNameLength && name[length])
        ++length;
    return length;
}

void SetParity(DCB& block, char letter)
{
    struct Row {
        char letter;
        DWORD checked;
        BYTE parity;
    };
    constexpr Row kRows[] = {
        {'E', TRUE, EVENPARITY}, {'M', TRUE, MARKPARITY},  {'N', FALSE, NOPARITY},
        {'O', TRUE, ODDPARITY},  {'S', TRUE, SPACEPARITY},
    };
    if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
    for (const Row& row : kRows) {
        if (row.letter != letter) continue;
        block.fParity = row.checked & 1; // one bit, where the system packs them
        block.Parity = row.parity;
        return;
    }
    TBD_ASSERT(false, "ASSERTION FAILURE: ===>0");
}

void SetCharacterFormat(DCB& block, BYTE data_bits, BYTE stop_bits)
{
    if (data_bits >= 5 && data_bits <= 8)
        block.ByteSize = data_bits;
    else
        TBD_ASSERT(false, "ASSERTION FAILURE: ===>0");

    if (stop_bits == 1)
        block.StopBits = ONESTOPBIT;
    else if (stop_bits == 2)
        block.StopBits = TWOSTOPBITS;
    else
        TBD_ASSERT(false, "ASSERTION FAILURE: ===>0");
}

// The order matters: a handshake overrides the plain setting of its line.
void SetFlowControl(DCB& block, bool dtr_enable, bool rts_enable, bool xon_xoff, bool cts_flow, bool dsr_flow)
{
    block.fDtrControl = dtr_enable ? DTR_CONTROL_ENABLE : DTR_CONTROL_DISABLE;
    block.fRtsControl = rts_enable ? RTS_CONTROL_ENABLE : RTS_CONTROL_DISABLE;
    block.fOutX = xon_xoff;
    block.fInX = xon_xoff;
    if (cts_flow) block.fRtsControl = RTS_CONTROL_HANDSHAKE;
    block.fOutxCtsFlow = cts_flow;
    if (dsr_flow) block.fDtrControl = DTR_CONTROL_HANDSHAKE;
    block.fOutxDsrFlow = dsr_flow;
}

bool Purge(HANDLE port)
{
    if (PurgeComm(port, kPurgeAll)) return true;
    LOG_C("PurgeComm() failed, errno %d", GetLastError());
    return false;
}

bool WriteWhole(HANDLE port, const char* data, ULONG size)
{
    // A write that runs into its time-out succeeds with fewer octets and sets no error.
    SetLastError(ERROR_SUCCESS);
    DWORD written = 0;
    if (WriteFile(port, data, size, &written, nullptr) && written == size) return true;
    LOG_C("WriteFile failed, Win Error = %d", GetLastError());
    return false;
}

// Closes the gaps that zero octets leave, so that they hide nothing of the text behind them. Returns what is left.
ULONG DropZeroOctets(char* data, ULONG size)
{
    ULONG kept = 0;
    for (ULONG i = 0; i < size; ++i)
        if (data[i]) data[kept++] = data[i];
    return kept;
}

// Within the start tick, and after the counter has wrapped, the elapsed time is not compared with the time-out at all.
// Callers live with that: it is how the port has always behaved.
bool HasTimedOut(DWORD start, DWORD now, ULONG timeout_ms)
{
    if (now > start) return now - start > timeout_ms;
    return (0xFFFFFFFFu - start) + now > start;
}

// Removes one unsolicited SIM-ready indication from the reply of `length` octets.
void RemoveNotification(char* reply, ULONG length)
{
    constexpr ULONG kNotificationLength = 9;
    char* found = strstr(reply, "+PACSP0\r\n");
    if (!found) found = strstr(reply, "+PACSP1\r\n");
    if (!found) return;
    if (found == reply) LOG_C("Notification found at the beginning , removed from the response");
    const char* behind = found + kNotificationLength;
    memmove(found, behind, static_cast<size_t>(reply + length - behind) + 1);
}

void LogReply(const char* reply)
{
    if (!LogIsOn(OV_LOG_INFO)) return;
    WCHAR wide[kAtBufferSize];
    OV_AtoT(reply, wide, kAtBufferSize);
    LOG_W(TXT("AT RSP  string = %s"), wide);
}

} // namespace

COrvAtPort::~COrvAtPort()
{
    Close();
    TBD_ASSERT(m_hATPort == INVALID_HANDLE_VALUE, "ASSERTION FAILURE: ===>m_hATPort == INVALID_HANDLE_VALUE");
}

ULONG COrvAtPort::OpenModulePort(const WCHAR* port_name)
{
    return Open(port_name, CBR_115200, 'N', 8, 1, true, true, false, true, false);
}

ULONG COrvAtPort::Open(const WCHAR* port_name, ULONG baud_rate, char parity, BYTE data_bits, BYTE stop_bits,
                       bool dtr_enable, bool rts_enable, bool xon_xoff, bool cts_flow, bool dsr_flow)
{
    const ULONG length = NameLength(port_name);
    if (length > kAtPortNameLength) {
        LOG_C("PortName longer than %d characters, errno %d", kAtPortNameLength, ERROR_FILENAME_EXCED_RANGE);
        SetLastError(ERROR_FILENAME_EXCED_RANGE);
        return ORV_RCODE_PORT_OPEN_FAILED;
    }
    memcpy(m_szPortName, port_name, (length + 1) * sizeof(WCHAR));

    WCHAR device_name[kAtPortNameLength + 2] = {}; // the device colon and the terminator
    memcpy(device_name, port_name, length * sizeof(WCHAR));
    if (length == 0 || device_name[length - 1] != ':') device_name[length] = ':';
    LOG_W(TXT("Final PortName =  %s "), device_name);

    const HANDLE port = OpenPort(device_name);
    if (port == INVALID_HANDLE_VALUE) {
        LOG_W(TXT("CreateFile() on %s failed, errno %d"), device_name, GetLastError());
        return ORV_RCODE_PORT_OPEN_FAILED;
    }
    Close(); // a port that is still open, while its own saved block is at hand
    m_hATPort = port;

    SetLastError(0);
    m_savedBlock = DCB();
    m_savedBlock.DCBlength = sizeof(DCB);
    m_workingBlock = m_savedBlock;
    GetCommState(port, &m_savedBlock);
    GetCommState(port, &m_workingBlock);

    // Both read values at the maximum: what is waiting is returned at once, else the first octet is waited for.
    COMMTIMEOUTS timeouts = {};
    timeouts.ReadIntervalTimeout = MAXDWORD;
    timeouts.ReadTotalTimeoutMultiplier = MAXDWORD;
    timeouts.ReadTotalTimeoutConstant = 5000;
    timeouts.WriteTotalTimeoutMultiplier = 2;
    timeouts.WriteTotalTimeoutConstant = 500;
    if (!SetCommTimeouts(port, &timeouts)) LOG_C("SetCommTimeouts() failed, errno %d", GetLastError());
    if (!SetupComm(port, kQueueSize, kQueueSize)) LOG_C("SetupComm() failed, errno %d", GetLastError());

    m_workingBlock.BaudRate = baud_rate;
    SetParity(m_workingBlock, parity);
    SetCharacterFormat(m_workingBlock, data_bits, stop_bits);
    SetFlowControl(m_workingBlock, dtr_enable, rts_enable, xon_xoff, cts_flow, dsr_flow);
    if (!SetCommState(port, &m_workingBlock)) {
        LOG_C("SetCommState failed, Win Error = %d", GetLastError());
        Close();
        return ORV_RCODE_PORT_NOT_OPEN;
    }
    if (!Purge(port)) {
        Close();
        return ORV_RCODE_PORT_NOT_OPEN;
    }
    m_bOpen = 1;
    return 0;
}

ULONG COrvAtPort::Close()
{
    if (m_hATPort == INVALID_HANDLE_VALUE) return 0;
    if (!SetCommState(m_hATPort, &m_savedBlock)) LOG_C("SetCommState failed, Win Error = %d", GetLastError());
    CloseHandle(m_hATPort);
    m_hATPort = INVALID_HANDLE_VALUE;
    m_bOpen = 0;
    return 0;
}

bool COrvAtPort::SendCommand(const char* command, char* reply) { return Send(command, reply, nullptr); }

bool COrvAtPort::SendCommandTimed(const char* command, char* reply, ULONG timeout_ms)
{
    return Send(command, reply, &timeout_ms);
}

bool COrvAtPort::Send(const char* command, char* reply, const ULONG* timeout_ms)
{
    if (!m_bOpen) {
        LOG_C("AT Port not INIT");
        reply[0] = '\0';
        return false;
    }
    const size_t length = strlen(command);
    if (LogIsOn(OV_LOG_TRACE)) DisplayRawData("WriteFile data: ", command, static_cast<ULONG>(length));

    const bool complete = memchr(command, kCarriageReturn, length) != nullptr;
    const size_t line_length = length + (complete ? 0 : 1);
    if (line_length >= kAtBufferSize) {
        LOG_C("AT command longer than %d octets, not sent", kAtBufferSize - 1);
        reply[0] = '\0';
        return false;
    }
    char line[kAtBufferSize];
    memcpy(line, command, length);
    if (!complete) line[length] = kCarriageReturn;
    reply[0] = '\0';

    Purge(m_hATPort); // a failure is only logged
    if (!WriteWhole(m_hATPort, line, static_cast<ULONG>(line_length))) return false;
    return ReadReply(reply, timeout_ms);
}

bool COrvAtPort::ReadReply(char* reply, const ULONG* timeout_ms)
{
    const DWORD start = timeout_ms ? GetTickCount() : 0;
    ULONG length = 0;
    ULONG failed_reads = 0;
    bool succeeded = false;
    bool finished = false;
    while (!finished) {
        DWORD read = 0;
        if (ReadPort(m_hATPort, reply + length, kReplyCapacity - length, &read)) {
            length += DropZeroOctets(reply + length, read);
        } else if (failed_reads < kReadRetries) {
            LOG_W(TXT("Readfile - retry attempt(%d)"), failed_reads);
            ++failed_reads;
        } else {
            LOG_C("ReadFile failed, Win Error = %d", GetLastError());
            finished = true;
        }
        reply[length] = '\0';

        if (strstr(reply, "OK")) succeeded = finished = true;
        if (strstr(reply, "ERROR")) {
            succeeded = false;
            finished = true;
        }
        if (!finished && length == kReplyCapacity) {
            LOG_C("AT reply longer than %d octets, given up", kReplyCapacity);
            finished = true;
        }
        // Looked at on the pass of the final result too: a late reply costs the resynchronisation, not its verdict.
        if (timeout_ms && HasTimedOut(start, GetTickCount(), *timeout_ms)) {
            LOG_C("atcmd timedout!");
            DWORD written = 0;
            WriteFile(m_hATPort, kResynchronisation, sizeof(kResynchronisation) - 1, &written, nullptr);
            Sleep(kResynchronisationMs);
            PurgeComm(m_hATPort, kPurgeAll);
            finished = true;
        }
    }
    RemoveNotification(reply, length);
    LogReply(reply);
    return succeeded;
}
