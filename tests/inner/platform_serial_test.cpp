// The platform seam's serial ports, over real pseudo-terminals.
#include <gtest/gtest.h>

#include <dirent.h>
#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <string>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

#include "platform/hooks.h"
#include "platform/win32.h"
#include "tests/inner/platform_open.h"

namespace {

uint64_t NowMs(clockid_t clock = CLOCK_MONOTONIC)
{
    timespec now;
    clock_gettime(clock, &now);
    return static_cast<uint64_t>(now.tv_sec) * 1000 + static_cast<uint64_t>(now.tv_nsec) / 1000000;
}

// The seam's port, and the side where the module would be.
class Line {
public:
    Line() : master(posix_openpt(O_RDWR | O_NOCTTY))
    {
        char path[64] = "";
        if (master >= 0 && grantpt(master) == 0 && unlockpt(master) == 0) ptsname_r(master, path, sizeof path);
        name = path;
    }
    ~Line()
    {
        CloseHandle(port);
        HangUp();
    }
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    // Opens the port with the time-outs of the AT channel, except that the first octet may take `first_ms`.
    bool OpenPort(DWORD first_ms, DWORD write_ms = 500)
    {
        port = Open(name);
        const COMMTIMEOUTS timeouts = {MAXDWORD, MAXDWORD, first_ms, 0, write_ms};
        return port != INVALID_HANDLE_VALUE && SetCommTimeouts(port, &timeouts);
    }
    void Send(const std::string& text) const
    {
        ASSERT_EQ(write(master, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    void HangUp()
    {
        if (master >= 0) close(master);
        master = -1;
    }
    // What one ReadFile gives: the octets, or "!" and the error.
    std::string Read(DWORD size = 64) const
    {
        char buffer[2048];
        DWORD read = 99;
        SetLastError(0);
        if (ReadFile(port, buffer, size, &read, nullptr)) return std::string(buffer, read);
        return "!" + std::to_string(GetLastError());
    }

    int master;
    std::string name;
    HANDLE port = INVALID_HANDLE_VALUE;
};

const std::string kNotReady = "!21";
const std::string kAborted = "!995";

// A call on the port in a thread of its own.
struct Pending {
    explicit Pending(const Line& on) : line(on) {}
    ~Pending() { CloseHandle(thread); }
    bool Start(LPTHREAD_START_ROUTINE routine)
    {
        thread = CreateThread(nullptr, 0, routine, this, 0, nullptr);
        return thread != nullptr;
    }
    // Does `what` until the call has ended: it may not have been pending yet.
    template <class What>
    void EndBy(What what)
    {
        do {
            what();
        } while (WaitForSingleObject(thread, 1) == WAIT_TIMEOUT);
    }

    const Line& line;
    std::string result;
    HANDLE thread = nullptr;
};

DWORD ReadInThread(LPVOID context)
{
    auto* pending = static_cast<Pending*>(context);
    pending->result = pending->line.Read();
    return 0;
}

// Writes more than ever fits.
DWORD WriteInThread(LPVOID context)
{
    auto* pending = static_cast<Pending*>(context);
    const std::string text(size_t{1024} * 1024, 'x');
    DWORD written = 0;
    const BOOL done = WriteFile(pending->line.port, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    pending->result = done ? std::to_string(written) : "!" + std::to_string(GetLastError());
    return 0;
}

class PlatformSerial : public testing::Test {
protected:
    void TearDown() override { platform_hooks::Reset(); }
};

} // namespace

// --- reading --------------------------------------------------------------------------------------------------------

TEST_F(PlatformSerial, AReadReturnsAtOnceWhatWaits)
{
    Line line;
    ASSERT_TRUE(line.OpenPort(20000));
    const uint64_t start = NowMs();
    line.Send("\r\nOK\r\n\x03\x04\x11\x13\xFF");
    std::string all;
    while (all.size() < 11)
        all += line.Read();
    EXPECT_EQ(all, "\r\nOK\r\n\x03\x04\x11\x13\xFF") << "raw, each octet as it is";
    line.Send("abcdef");
    EXPECT_EQ(line.Read(2), "ab");
    EXPECT_EQ(line.Read(4), "cdef");
    EXPECT_EQ(line.Read(0), "");
    EXPECT_LT(NowMs() - start, 10000u);
}

TEST_F(PlatformSerial, AReadWaitsForTheFirstOctetOnly)
{
    Line line;
    ASSERT_TRUE(line.OpenPort(60));
    uint64_t start = NowMs();
    EXPECT_EQ(line.Read(), "");
    EXPECT_GE(NowMs() - start, 59u);

    const COMMTIMEOUTS at_once = {MAXDWORD, 0, 0, 0, 0};
    ASSERT_TRUE(SetCommTimeouts(line.port, &at_once));
    EXPECT_EQ(line.Read(), "");
    line.Send("x");
    EXPECT_EQ(line.Read(), "x");

    const COMMTIMEOUTS in_all = {0, 1, 40, 0, 0};
    ASSERT_TRUE(SetCommTimeouts(line.port, &in_all));
    line.Send("abc");
    start = NowMs();
    EXPECT_EQ(line.Read(10), "abc") << "waits for the rest, and gives what came";
    EXPECT_GE(NowMs() - start, 49u);
    line.Send("abc");
    EXPECT_EQ(line.Read(3), "abc");

    const COMMTIMEOUTS between = {20, 0, 0, 0, 0};
    ASSERT_TRUE(SetCommTimeouts(line.port, &between));
    line.Send("abc");
    EXPECT_EQ(line.Read(10), "abc") << "the gap ends it";

    const COMMTIMEOUTS meaningless = {MAXDWORD, MAXDWORD, MAXDWORD, 0, 0};
    EXPECT_FALSE(SetCommTimeouts(line.port, &meaningless));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST_F(PlatformSerial, AHungUpLineIsNeverAnEmptyRead)
{
    Line line;
    ASSERT_TRUE(line.OpenPort(20000));
    line.HangUp();
    DWORD moved = 9;
    DCB block;
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(line.Read(), kNotReady);
        EXPECT_EQ(line.Read(0), kNotReady);
        EXPECT_FALSE(WriteFile(line.port, "AT\r", 3, &moved, nullptr));
        EXPECT_EQ(GetLastError(), ERROR_NOT_READY);
        EXPECT_EQ(moved, 0u);
        EXPECT_FALSE(GetCommState(line.port, &block));
        EXPECT_EQ(GetLastError(), ERROR_NOT_READY);
        EXPECT_FALSE(PurgeComm(line.port, PURGE_RXCLEAR));
        EXPECT_EQ(GetLastError(), ERROR_NOT_READY);
    }
    EXPECT_TRUE(CloseHandle(line.port));
    line.port = INVALID_HANDLE_VALUE;
}

// The host drops what a vanished terminal had sent, so the port is the other side here, where it is kept.
TEST_F(PlatformSerial, WhatWaitsIsDeliveredBeforeTheHangUp)
{
    const HANDLE port = Open("/dev/ptmx", kReadWrite, FILE_SHARE_READ | FILE_SHARE_WRITE);
    ASSERT_NE(port, INVALID_HANDLE_VALUE);
    int slave = -1;
    DIR* folder = opendir("/proc/self/fd");
    while (const dirent* entry = folder ? readdir(folder) : nullptr) {
        int unlock = 0;
        const int descriptor = atoi(entry->d_name);
        if (slave >= 0 || ioctl(descriptor, TIOCSPTLCK, &unlock) != 0) continue;
        slave = ioctl(descriptor, TIOCGPTPEER, O_RDWR | O_NOCTTY);
    }
    closedir(folder);
    ASSERT_GE(slave, 0);
    termios settings;
    ASSERT_EQ(tcgetattr(slave, &settings), 0);
    cfmakeraw(&settings);
    ASSERT_EQ(tcsetattr(slave, TCSANOW, &settings), 0);
    ASSERT_EQ(write(slave, "OK", 2), 2);
    close(slave);

    DCB block;
    ASSERT_TRUE(GetCommState(port, &block));
    EXPECT_EQ(block.ByteSize, 8);
    EXPECT_EQ(block.Parity, NOPARITY);
    char buffer[8];
    DWORD read = 0;
    EXPECT_TRUE(ReadFile(port, buffer, 8, &read, nullptr));
    EXPECT_EQ(std::string(buffer, read), "OK");
    EXPECT_FALSE(ReadFile(port, buffer, 8, &read, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_NOT_READY);
    EXPECT_TRUE(CloseHandle(port));
}

TEST_F(PlatformSerial, ArgumentsAndRightsAreChecked)
{
    Line line;
    ASSERT_TRUE(line.OpenPort(20000));
    char octet;
    DWORD moved = 9;
    EXPECT_FALSE(ReadFile(line.port, &octet, 1, nullptr, nullptr));
    EXPECT_FALSE(ReadFile(line.port, nullptr, 1, &moved, nullptr));
    EXPECT_FALSE(ReadFile(line.port, &octet, 1, &moved, &octet));
    EXPECT_FALSE(WriteFile(line.port, &octet, 1, nullptr, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    EXPECT_FALSE(PurgeComm(line.port, 0));
    EXPECT_FALSE(PurgeComm(line.port, 16));
    EXPECT_FALSE(GetCommState(line.port, nullptr));
    EXPECT_FALSE(SetCommState(line.port, nullptr));
    EXPECT_FALSE(SetCommTimeouts(line.port, nullptr));
    EXPECT_EQ(SetFilePointer(line.port, 0, nullptr, FILE_END), INVALID_SET_FILE_POINTER);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_FUNCTION);
    EXPECT_EQ(moved, 0u);

    const HANDLE reader = Open("/dev/null", GENERIC_READ);
    EXPECT_FALSE(WriteFile(reader, "x", 1, &moved, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    CloseHandle(reader);
    const HANDLE writer = Open("/dev/null", GENERIC_WRITE);
    EXPECT_FALSE(ReadFile(writer, &octet, 1, &moved, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    CloseHandle(writer);
}

// --- writing, purging -----------------------------------------------------------------------------------------------

TEST_F(PlatformSerial, AWriteArrivesAndOneThatDoesNotFitIsCutByTheTime)
{
    Line line;
    ASSERT_TRUE(line.OpenPort(20000, 60));
    DWORD written = 0;
    ASSERT_TRUE(WriteFile(line.port, "AT\r\n", 4, &written, nullptr));
    EXPECT_EQ(written, 4u);
    char buffer[16];
    EXPECT_EQ(std::string(buffer, static_cast<size_t>(read(line.master, buffer, sizeof buffer))), "AT\r\n");

    const std::string much(1024 * 1024, 'x');
    const uint64_t start = NowMs();
    EXPECT_TRUE(WriteFile(line.port, much.data(), static_cast<DWORD>(much.size()), &written, nullptr));
    EXPECT_GE(NowMs() - start, 59u);
    EXPECT_GT(written, 0u);
    EXPECT_LT(written, much.size());
}

TEST_F(PlatformSerial, PurgingDiscardsWhatWaitsAndIsNoted)
{
    Line line;
    ASSERT_TRUE(line.OpenPort(20000));
    line.Send("stale");
    ASSERT_EQ(line.Read(1), "s") << "it has arrived";
    ASSERT_TRUE(PurgeComm(line.port, PURGE_TXABORT | PURGE_RXABORT | PURGE_TXCLEAR | PURGE_RXCLEAR));
    line.Send("fresh");
    EXPECT_EQ(line.Read(), "fresh");
    ASSERT_TRUE(SetupComm(line.port, 2048, 1024));
    const platform_hooks::SerialSettings last = platform_hooks::LastSerialSettings();
    EXPECT_EQ(last.purges, 1u);
    EXPECT_EQ(last.purge_flags, 15u);
    EXPECT_EQ(last.in_queue, 2048u);
    EXPECT_EQ(last.out_queue, 1024u);
    EXPECT_EQ(last.timeouts.ReadTotalTimeoutConstant, 20000u);
}

TEST(ThreadsSerial, APendingReadIsEndedByPurgingClosingOrHangingUp)
{
    for (const char* how : {"purge", "close", "hang up"}) {
        SCOPED_TRACE(how);
        Line line;
        ASSERT_TRUE(line.OpenPort(600000));
        Pending reader(line);
        Pending other(line);
        ASSERT_TRUE(reader.Start(ReadInThread));
        ASSERT_TRUE(other.Start(ReadInThread));
        const auto end = [&] {
            switch (how[0]) {
            case 'p':
                PurgeComm(line.port, PURGE_RXABORT);
                break;
            case 'c':
                CloseHandle(line.port);
                break;
            default:
                line.HangUp();
            }
        };
        reader.EndBy(end);
        other.EndBy(end);
        if (how[0] == 'p') {
            EXPECT_EQ(reader.result, kAborted);
            EXPECT_EQ(other.result, kAborted);
            line.Send("next");
            EXPECT_EQ(line.Read(), "next") << "later reads are not ended";
            const COMMTIMEOUTS timeouts = {MAXDWORD, MAXDWORD, 60, 0, 0};
            ASSERT_TRUE(SetCommTimeouts(line.port, &timeouts));
            const uint64_t before = NowMs(CLOCK_THREAD_CPUTIME_ID);
            EXPECT_EQ(line.Read(), "");
            EXPECT_LT(NowMs(CLOCK_THREAD_CPUTIME_ID) - before, 30u) << "and wait without turning round";
        } else if (how[0] == 'h') {
            EXPECT_EQ(reader.result, kNotReady);
        } else {
            EXPECT_TRUE(reader.result == kAborted || reader.result == "!6") << reader.result;
        }
    }
    EXPECT_TRUE(platform_hooks::DrainThreads(20000));
}

TEST(ThreadsSerial, APendingWriteIsEndedByPurgingOrHangingUp)
{
    Line line;
    ASSERT_TRUE(line.OpenPort(20000, 600000));
    Pending purged(line);
    ASSERT_TRUE(purged.Start(WriteInThread));
    purged.EndBy([&] { PurgeComm(line.port, PURGE_TXABORT); });
    EXPECT_EQ(purged.result, kAborted);

    Line other;
    ASSERT_TRUE(other.OpenPort(20000, 600000));
    Pending hung_up(other);
    ASSERT_TRUE(hung_up.Start(WriteInThread));
    char octet;
    ASSERT_EQ(read(other.master, &octet, 1), 1);
    hung_up.EndBy([&] { other.HangUp(); });
    EXPECT_EQ(hung_up.result, kNotReady) << "a part that was written makes it no success";
    EXPECT_TRUE(platform_hooks::DrainThreads(20000));
}

TEST_F(PlatformSerial, ReadAndWriteCanBeReplacedAndFailed)
{
    Line line;
    ASSERT_TRUE(line.OpenPort(20000));
    const auto shorter = [](HANDLE handle, LPVOID buffer, DWORD size, DWORD* read, void* overlapped) -> BOOL {
        return ReadFile(handle, buffer, size < 2 ? size : 2, read, overlapped);
    };
    ASSERT_TRUE(platform_hooks::ReplaceCall("ReadFile", reinterpret_cast<FARPROC>(+shorter)));
    ASSERT_TRUE(platform_hooks::FailCall("ReadFile", 2, 1, ERROR_GEN_FAILURE));
    line.Send("abcd");
    EXPECT_EQ(line.Read(), "ab");
    EXPECT_EQ(line.Read(), "!31");
    EXPECT_EQ(line.Read(), "cd");

    const auto full = [](HANDLE, LPCVOID, DWORD, DWORD* written, void*) -> BOOL {
        *written = 0;
        return TRUE;
    };
    ASSERT_TRUE(platform_hooks::ReplaceCall("WriteFile", reinterpret_cast<FARPROC>(+full)));
    DWORD written = 9;
    EXPECT_TRUE(WriteFile(line.port, "AT\r", 3, &written, nullptr));
    EXPECT_EQ(written, 0u);
}

// --- settings -------------------------------------------------------------------------------------------------------

TEST_F(PlatformSerial, TheControlBlockComesBackAsItWasSet)
{
    Line line;
    ASSERT_TRUE(line.OpenPort(20000));
    DCB block;
    ASSERT_TRUE(GetCommState(line.port, &block));
    EXPECT_EQ(block.DCBlength, sizeof(DCB));
    EXPECT_EQ(block.ByteSize, 8);
    EXPECT_EQ(block.Parity, NOPARITY);
    const DCB initial = block;

    block.BaudRate = CBR_115200;
    block.fParity = TRUE;
    block.Parity = MARKPARITY;
    block.ByteSize = 7;
    block.StopBits = TWOSTOPBITS;
    block.fOutX = TRUE;
    block.fOutxCtsFlow = TRUE;
    block.fRtsControl = RTS_CONTROL_HANDSHAKE;
    block.fDtrControl = DTR_CONTROL_DISABLE;
    block.EvtChar = 'e';
    ASSERT_TRUE(SetCommState(line.port, &block));
    DCB again;
    ASSERT_TRUE(GetCommState(line.port, &again));
    EXPECT_EQ(memcmp(&again, &block, sizeof block), 0);
    const DCB noted = platform_hooks::LastSerialSettings().block;
    EXPECT_EQ(memcmp(&noted, &block, sizeof block), 0);

    termios host;
    ASSERT_EQ(tcgetattr(line.master, &host), 0);
    EXPECT_EQ(cfgetospeed(&host), static_cast<speed_t>(B115200));
    EXPECT_NE(host.c_cflag & CSTOPB, 0u);
    EXPECT_NE(host.c_iflag & IXON, 0u);
    EXPECT_EQ(host.c_iflag & IXOFF, 0u);

    ASSERT_TRUE(SetCommState(line.port, &initial));
    ASSERT_TRUE(GetCommState(line.port, &again));
    EXPECT_EQ(memcmp(&again, &initial, sizeof initial), 0);
}

TEST_F(PlatformSerial, ControlBlocksThatMakeNoSenseAreRefused)
{
    Line line;
    ASSERT_TRUE(line.OpenPort(20000));
    DCB good;
    ASSERT_TRUE(GetCommState(line.port, &good));
    good.BaudRate = 9600;
    ASSERT_TRUE(SetCommState(line.port, &good));
    const struct {
        const char* name;
        void (*spoil)(DCB&);
        bool accepted;
    } rows[] = {
        {"all zero", [](DCB& block) { block = {}; }, false},
        {"wrong length", [](DCB& block) { --block.DCBlength; }, false},
        {"unknown baud rate", [](DCB& block) { block.BaudRate = 115201; }, false},
        {"baud rate 0", [](DCB& block) { block.BaudRate = 0; }, false},
        {"four data bits", [](DCB& block) { block.ByteSize = 4; }, false},
        {"nine data bits", [](DCB& block) { block.ByteSize = 9; }, false},
        {"parity 5", [](DCB& block) { block.Parity = 5; }, false},
        {"parity 255", [](DCB& block) { block.Parity = 255; }, false},
        {"one and a half stop bits of eight", [](DCB& block) { block.StopBits = ONE5STOPBITS; }, false},
        {"two stop bits of five", [](DCB& block) { block.ByteSize = 5, block.StopBits = TWOSTOPBITS; }, false},
        {"one and a half of five", [](DCB& block) { block.ByteSize = 5, block.StopBits = ONE5STOPBITS; }, true},
        {"stop bits 3", [](DCB& block) { block.StopBits = 3; }, false},
        {"XON is XOFF", [](DCB& block) { block.XonChar = block.XoffChar; }, false},
        {"space parity", [](DCB& block) { block.Parity = SPACEPARITY; }, true},
        {"4 Mbaud", [](DCB& block) { block.BaudRate = 4000000; }, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        DCB block = good;
        row.spoil(block);
        SetLastError(0);
        EXPECT_EQ(SetCommState(line.port, &block), row.accepted ? TRUE : FALSE);
        EXPECT_EQ(GetLastError(), row.accepted ? ERROR_SUCCESS : ERROR_INVALID_PARAMETER);
    }
}

// --- opening --------------------------------------------------------------------------------------------------------

TEST_F(PlatformSerial, APortWithoutSharingIsOpenOnce)
{
    Line line;
    ASSERT_TRUE(line.OpenPort(20000));
    EXPECT_EQ(OpenErrorOf(line.name), ERROR_ACCESS_DENIED);
    EXPECT_EQ(OpenErrorOf(line.name + ":"), ERROR_ACCESS_DENIED) << "the device colon makes no difference";
    const HANDLE shared = Open(line.name, kReadWrite, FILE_SHARE_READ | FILE_SHARE_WRITE);
    EXPECT_EQ(shared, INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    ASSERT_TRUE(CloseHandle(line.port));

    // Another program holds it, and finds it held.
    const int other = open(line.name.c_str(), O_RDWR | O_NOCTTY);
    ASSERT_EQ(flock(other, LOCK_SH | LOCK_NB), 0);
    EXPECT_EQ(OpenErrorOf(line.name), ERROR_ACCESS_DENIED);
    ASSERT_EQ(flock(other, LOCK_UN), 0);
    line.port = Open(line.name + ":");
    EXPECT_NE(line.port, INVALID_HANDLE_VALUE);
    EXPECT_NE(flock(other, LOCK_SH | LOCK_NB), 0);
    close(other);
}

TEST_F(PlatformSerial, SharedPortsOpenTwice)
{
    Line line;
    line.port = Open(line.name, kReadWrite, FILE_SHARE_READ | FILE_SHARE_WRITE);
    ASSERT_NE(line.port, INVALID_HANDLE_VALUE);
    const HANDLE second = Open(line.name, kReadWrite, FILE_SHARE_READ | FILE_SHARE_WRITE);
    EXPECT_NE(second, INVALID_HANDLE_VALUE);
    EXPECT_EQ(OpenErrorOf(line.name), ERROR_ACCESS_DENIED) << "exclusive is too late now";
    CloseHandle(second);
}

TEST_F(PlatformSerial, ATerminalThatIsWrittenToAsAFileKeepsItsMode)
{
    Line line;
    termios before;
    termios after;
    ASSERT_EQ(tcgetattr(line.master, &before), 0);
    line.port = Open(line.name, GENERIC_WRITE, 0, OPEN_ALWAYS);
    ASSERT_NE(line.port, INVALID_HANDLE_VALUE);
    ASSERT_EQ(tcgetattr(line.master, &after), 0);
    EXPECT_EQ(after.c_lflag, before.c_lflag);
    DWORD written = 0;
    EXPECT_TRUE(WriteFile(line.port, "log\n", 4, &written, nullptr));
    EXPECT_EQ(OpenErrorOf(line.name), ERROR_SUCCESS) << "and does not claim it";
}
