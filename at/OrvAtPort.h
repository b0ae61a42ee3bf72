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

    // Opens `port_name` ("COM7" gets its ':') and configures it.
    //   baud_rate  in baud
    //   parity     one of E M N O S, in either case
    //   data_bits  5 to 8
    //   stop_bits  1 or 2
    // A value outside these fails an assertion and leaves the port's own setting. CTS flow control takes over RTS, and
    // DSR flow control DTR, whatever the two enables say.
    //
    // Returns 0, ORV_RCODE_PORT_OPEN_FAILED (353) when the port cannot be opened or its name is too long (a port that
    // was open before stays open), or ORV_RCODE_PORT_NOT_OPEN (354) when it cannot be configured (the port is closed).
    // Once the new port could be opened, one that was open before is closed.
    ULONG Open(const WCHAR* port_name, ULONG baud_rate, char parity, BYTE data_bits, BYTE stop_bits, bool dtr_enable,
               bool rts_enable, bool xon_xoff, bool cts_flow, bool dsr_flow);
    // Opens with the module's settings: 115200 baud, 8N1, DTR and RTS on, CTS flow control.
    ULONG OpenModulePort(const WCHAR* port_name);
    // Puts the port's own settings back and closes it. Always returns 0.
    ULONG Close();
    // 1 after a complete open, 0 after close.
    ULONG IsOpen() const { return m_bOpen; }

    // Sends one command line ("\r" is added unless it holds one) and collects the reply into `reply` (kAtBufferSize
    // octets, always terminated; zero octets are dropped). True when the reply holds "OK" and no "ERROR". Has no
    // time-out: it waits for either, or until reads have failed four times. False with a log entry when the port is
    // closed, the line does not fit kAtBufferSize with its "\r" and terminator, it cannot be written whole, or the
    // reply reaches kAtBufferSize - 1 octets without a result.
    bool SendCommand(const char* command, char* reply);
    // The same, given up after `timeout_ms`. The time is looked at after each read, which may itself wait for five
    // seconds; a reply that is still incomplete within the very tick of its start counts as timed out.
    bool SendCommandTimed(const char* command, char* reply, ULONG timeout_ms);

private:
    // A null `timeout_ms` stands for no time-out.
    bool Send(const char* command, char* reply, const ULONG* timeout_ms);
    bool ReadReply(char* reply, const ULONG* timeout_ms);

    WCHAR m_szPortName[kAtPortNameLength + 1] = {}; // as last given to Open
    HANDLE m_hATPort = INVALID_HANDLE_VALUE;
    DCB m_savedBlock = {};   // read at open, written back at close
    DCB m_workingBlock = {}; // applied at open
    ULONG m_bOpen = 0;
};

extern COrvAtPort g_ATPortInstance;
