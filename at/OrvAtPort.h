// The serial channel to the module's AT command interpreter: one command line out, one reply in.
#pragma once

#include "platform/win32.h"

// Reply and command buffers, with their terminator. A caller's reply buffer must hold this much.
constexpr ULONG kAtBufferSize = 2048;

// The longest port name, without its terminator. Longer names are refused, never cut.
constexpr ULONG kAtPortNameLength = 260;

class COrvAtPort {
public:
    COrvAtPort() = default;
    // Closes the port.
    ~COrvAtPort();
    COrvAtPort(const COrvAtPort&) = delete;
    COrvAtPort& operator=(const COrvAtPort&) = delete;

    // Opens `port_name` ("COM7" gets its ':') and configures it. Returns 0, ORV_RCODE_PORT_OPEN_FAILED (353) when it cannot
    // be opened (the state before the call is kept, so an open port stays open), or ORV_RCODE_PORT_NOT_OPEN (354) when it
    // cannot be configured (the port is closed). Opening the name of another port closes the one that is open.
    ULONG Open(const WCHAR* port_name, ULONG baud_rate, char parity, BYTE data_bits, BYTE stop_bits, bool dtr_enable,
               bool rts_enable, bool xon_xoff, bool cts_flow, bool dsr_flow);
    // Opens with the module's settings: 115200 baud, 8N1, DTR and RTS on, CTS flow control.
    ULONG OpenModulePort(const WCHAR* port_name);
    // Puts the port's own settings back and closes it. Always returns 0.
    ULONG Close();
    // 1 after a complete open, 0 after close.
    ULONG IsOpen() const { return m_bOpen; }

    // Sends one command line ("\r" is added unless it holds one) and collects the reply into `reply` (kAtBufferSize octets,
    // always terminated). True when the reply holds "OK" and no "ERROR". Has no time-out: it waits for either, or for three
    // failed reads. A command of kAtBufferSize - 1 octets or more, and a reply that does not fit, fail with a log entry.
    bool SendCommand(const char* command, char* reply);
    // The same, given up after `timeout_ms`.
    bool SendCommandTimed(const char* command, char* reply, ULONG timeout_ms);

private:
    bool Send(const char* command, char* reply, const ULONG* timeout_ms);

    WCHAR m_szPortName[kAtPortNameLength + 2] = {}; // as given, with room for the device colon and the terminator
    HANDLE m_hATPort = INVALID_HANDLE_VALUE;
    DCB m_savedBlock = {};   // read at open, written back at close
    DCB m_workingBlock = {}; // applied at open
    ULONG m_bOpen = 0;
};

extern COrvAtPort g_ATPortInstance;
