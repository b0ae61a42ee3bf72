#include "at/OrvAtPort.h"

#include <gtest/gtest.h>
#include <string.h>
#include <termios.h>

#include <deque>
#include <string>
#include <vector>

#include "platform/hooks.h"
#include "talvek/rcode.h"
#include "tests/support/log_capture.h"
#include "tests/support/pty_peer.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/scripted_port.h"

namespace {

class AtPort : public ::testing::Test {
protected:
    AtPort() { g_script = Script(); }
    ~AtPort() override { platform_hooks::Reset(); }

    void OpenPort()
    {
        ASSERT_FALSE(peer.NarrowName().empty()) << "no pseudo-terminal";
        ASSERT_EQ(port.OpenModulePort(peer.Name()), 0u) << log.Dump();
        log.Clear();
    }
    void PlayScript(std::deque<Script::Read> reads)
    {
        g_script.reads = std::move(reads);
        Replace("ReadFile", &ScriptedRead);
        Replace("WriteFile", &ScriptedWrite);
    }

    PtyPeer peer;
    LogCapture log;
    COrvAtPort port;
    ReplyBuffer reply;
};

std::string Retry(int number) { return "Readfile - retry attempt(" + std::to_string(number) + ")"; }
const char* const kAssertion = "ASSERTION FAILURE: ===>0";

// --- opening and closing ---------------------------------------------------------------------------------------------

TEST_F(AtPort, AppliesTheSettingsGiven)
{
    struct Row {
        const char* name;
        char parity;
        BYTE data_bits, stop_bits;
        bool dtr, rts, xon, cts, dsr;
        DWORD parity_checked;
        BYTE parity_value, stop_value;
        DWORD dtr_control, rts_control;
    };
    const Row rows[] = {
        // name                     par bit st  dtr    rts    xon    cts    dsr   chk  parity       stop         dtr rts
        {"the module's", 'N', 8, 1, true, true, false, true, false, 0, NOPARITY, ONESTOPBIT, 1, 2},
        {"no flow control", 'n', 8, 1, true, true, false, false, false, 0, NOPARITY, ONESTOPBIT, 1, 1},
        {"lines off", 'N', 8, 2, false, false, true, false, false, 0, NOPARITY, TWOSTOPBITS, 0, 0},
        {"handshakes override off", 'e', 7, 1, false, false, false, true, true, 1, EVENPARITY, ONESTOPBIT, 2, 2},
        {"DSR takes DTR only", 'E', 7, 1, true, false, false, false, true, 1, EVENPARITY, ONESTOPBIT, 2, 0},
        {"odd", 'o', 6, 1, true, true, false, false, false, 1, ODDPARITY, ONESTOPBIT, 1, 1},
        {"mark", 'm', 5, 1, true, true, false, false, false, 1, MARKPARITY, ONESTOPBIT, 1, 1},
        {"space", 's', 8, 1, true, true, true, true, true, 1, SPACEPARITY, ONESTOPBIT, 2, 2},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ASSERT_EQ(port.Open(peer.Name(), 9600, row.parity, row.data_bits, row.stop_bits, row.dtr, row.rts, row.xon,
                            row.cts, row.dsr),
                  0u)
            << log.Dump();
        EXPECT_EQ(port.IsOpen(), 1u);
        const DCB block = platform_hooks::LastSerialSettings().block;
        EXPECT_EQ(block.BaudRate, 9600u);
        EXPECT_EQ(block.fParity, row.parity_checked);
        EXPECT_EQ(block.Parity, row.parity_value);
        EXPECT_EQ(block.ByteSize, row.data_bits);
        EXPECT_EQ(block.StopBits, row.stop_value);
        EXPECT_EQ(block.fDtrControl, row.dtr_control);
        EXPECT_EQ(block.fRtsControl, row.rts_control);
        EXPECT_EQ(block.fOutX, DWORD{row.xon});
        EXPECT_EQ(block.fInX, DWORD{row.xon});
        EXPECT_EQ(block.fOutxCtsFlow, DWORD{row.cts});
        EXPECT_EQ(block.fOutxDsrFlow, DWORD{row.dsr});
        EXPECT_EQ(log.Count(kAssertion), 0);
        EXPECT_EQ(port.Close(), 0u);
        EXPECT_EQ(port.IsOpen(), 0u);
    }
}

TEST_F(AtPort, AssertsOnSettingsItDoesNotKnowAndLeavesThePortsOwn)
{
    struct Row {
        const char* name;
        char parity;
        BYTE data_bits, stop_bits;
    };
    const Row rows[] = {
        {"parity X", 'X', 8, 1},       {"parity 0", '\0', 8, 1},   {"four data bits", 'N', 4, 1},
        {"nine data bits", 'N', 9, 1}, {"no stop bit", 'N', 8, 0}, {"three stop bits", 'N', 8, 3},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        log.Clear();
        EXPECT_EQ(
            port.Open(peer.Name(), 115200, row.parity, row.data_bits, row.stop_bits, true, true, false, true, false),
            0u);
        EXPECT_EQ(log.Count(kAssertion), 1) << log.Dump();
        EXPECT_EQ(log.Find(kAssertion).function, "TBD_Assert");
        const DCB block = platform_hooks::LastSerialSettings().block;
        EXPECT_EQ(block.Parity, NOPARITY);
        EXPECT_EQ(block.ByteSize, 8);
        EXPECT_EQ(block.StopBits, ONESTOPBIT);
        port.Close();
    }
}

TEST_F(AtPort, SetsTimeoutsAndQueuesAndPurgesAtOpen)
{
    const unsigned purges = platform_hooks::LastSerialSettings().purges;
    OpenPort();
    const platform_hooks::SerialSettings settings = platform_hooks::LastSerialSettings();
    EXPECT_EQ(settings.timeouts.ReadIntervalTimeout, 0xFFFFFFFFu);
    EXPECT_EQ(settings.timeouts.ReadTotalTimeoutMultiplier, 0xFFFFFFFFu);
    EXPECT_EQ(settings.timeouts.ReadTotalTimeoutConstant, 5000u);
    EXPECT_EQ(settings.timeouts.WriteTotalTimeoutMultiplier, 2u);
    EXPECT_EQ(settings.timeouts.WriteTotalTimeoutConstant, 500u);
    EXPECT_EQ(settings.in_queue, 2048u);
    EXPECT_EQ(settings.out_queue, 2048u);
    EXPECT_EQ(settings.purge_flags, 15u);
    EXPECT_EQ(settings.purges, purges + 1);
}

TEST_F(AtPort, AddsTheDeviceColonUnlessItIsThere)
{
    const std::u16string with_colon = peer.Name() + std::u16string(u":");
    for (const WCHAR* name : {peer.Name(), with_colon.c_str()}) {
        log.Clear();
        EXPECT_EQ(port.OpenModulePort(name), 0u) << log.Dump();
        const LogCapture::Record record = log.Find("Final PortName =  " + peer.NarrowName() + ": ");
        EXPECT_EQ(record.function, "LogW") << log.Dump();
        EXPECT_EQ(record.module, "OrvAtPort");
        port.Close();
    }
}

TEST_F(AtPort, RefusesANameThatIsTooLong)
{
    const std::u16string longest(kAtPortNameLength, u'x');
    EXPECT_EQ(port.OpenModulePort(longest.c_str()), ULONG{ORV_RCODE_PORT_OPEN_FAILED});
    EXPECT_EQ(log.Count("Final PortName =  " + std::string(kAtPortNameLength, 'x') + ": "), 1) << log.Dump();

    log.Clear();
    platform_hooks::CountCall("CreateFileW");
    EXPECT_EQ(port.OpenModulePort((longest + u'x').c_str()), ULONG{ORV_RCODE_PORT_OPEN_FAILED});
    EXPECT_EQ(GetLastError(), ERROR_FILENAME_EXCED_RANGE);
    EXPECT_EQ(platform_hooks::CallCount("CreateFileW"), 0u);
    EXPECT_EQ(log.Texts(), std::vector<std::string>{"PortName longer than 260 characters, errno 206"});
}

TEST_F(AtPort, ReportsEachStepOfOpeningThatFails)
{
    struct Row {
        const char* call;
        unsigned nth, times;
        ULONG result;
        std::string text;
        int count;
    };
    const Row rows[] = {
        {"CreateFileW", 1, 1, 353, "CreateFile() on " + peer.NarrowName() + ": failed, errno 31", 1},
        {"GetCommState", 2, 1, 354, "SetCommState failed, Win Error = 87", 1}, // nothing to start from
        {"SetCommTimeouts", 1, 1, 0, "SetCommTimeouts() failed, errno 31", 1},
        {"SetupComm", 1, 1, 0, "SetupComm() failed, errno 31", 1},
        {"SetCommState", 1, 1, 354, "SetCommState failed, Win Error = 31", 1},
        {"SetCommState", 1, 2, 354, "SetCommState failed, Win Error = 31", 2}, // the second one while closing
        {"PurgeComm", 1, 1, 354, "PurgeComm() failed, errno 31", 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.call << " from use " << row.nth << ", " << row.times << " times");
        log.Clear();
        ASSERT_TRUE(platform_hooks::FailCall(row.call, row.nth, row.times, ERROR_GEN_FAILURE));
        EXPECT_EQ(port.OpenModulePort(peer.Name()), row.result);
        platform_hooks::Reset();
        EXPECT_EQ(log.Count(row.text), row.count) << log.Dump();
        EXPECT_EQ(port.IsOpen(), row.result == 0);

        if (row.result == 0) port.Close();
        COrvAtPort other;
        EXPECT_EQ(other.OpenModulePort(peer.Name()), 0u) << "the port was not let go";
    }
}

TEST_F(AtPort, IsNotOpenedOnAPlainFile)
{
    const ScratchFolder folder;
    const std::string path = folder.Write("plain", "");
    const std::u16string name(path.begin(), path.end());
    EXPECT_EQ(port.OpenModulePort(name.c_str()), ULONG{ORV_RCODE_PORT_NOT_OPEN});
    EXPECT_EQ(port.IsOpen(), 0u);
    EXPECT_EQ(log.Count("SetupComm() failed, errno 1"), 1) << log.Dump();
}

TEST_F(AtPort, PutsThePortsOwnSettingsBackAtClose)
{
    termios own = {};
    ASSERT_EQ(tcgetattr(peer.NearEnd(), &own), 0);
    cfsetspeed(&own, B9600);
    ASSERT_EQ(tcsetattr(peer.NearEnd(), TCSANOW, &own), 0);

    termios seen = {};
    OpenPort();
    tcgetattr(peer.NearEnd(), &seen);
    EXPECT_EQ(cfgetospeed(&seen), speed_t{B115200});
    port.Close();
    tcgetattr(peer.NearEnd(), &seen);
    EXPECT_EQ(cfgetospeed(&seen), speed_t{B9600});

    platform_hooks::CountCall("SetCommState");
    EXPECT_EQ(port.Close(), 0u);
    EXPECT_EQ(platform_hooks::CallCount("SetCommState"), 0u);
}

TEST_F(AtPort, OpeningAnotherPortClosesTheOneThatIsOpen)
{
    OpenPort();
    PtyPeer second;
    platform_hooks::FailCall("CreateFileW", 1, 1, ERROR_ACCESS_DENIED);
    EXPECT_EQ(port.OpenModulePort(second.Name()), ULONG{ORV_RCODE_PORT_OPEN_FAILED});
    EXPECT_EQ(port.IsOpen(), 1u);
    peer.Answer("\r\nOK\r\n");
    EXPECT_TRUE(port.SendCommand("AT", reply.Octets())) << "the open port was lost";

    EXPECT_EQ(port.OpenModulePort(second.Name()), 0u);
    second.Answer("\r\nOK\r\n");
    EXPECT_TRUE(port.SendCommand("AT", reply.Octets()));
    COrvAtPort other;
    EXPECT_EQ(other.OpenModulePort(peer.Name()), 0u) << "the first port was not let go";
}

// --- sending ---------------------------------------------------------------------------------------------------------

TEST_F(AtPort, FailsEverySendWhileClosed)
{
    platform_hooks::CountCall("WriteFile");
    for (const bool timed : {false, true}) {
        log.Clear();
        EXPECT_FALSE(timed ? port.SendCommandTimed("AT\r", reply.Octets(), 2000)
                           : port.SendCommand("AT\r", reply.Octets()));
        EXPECT_EQ(log.Texts(), std::vector<std::string>{"AT Port not INIT"});
        EXPECT_EQ(reply.Text(), "");
    }
    EXPECT_EQ(platform_hooks::CallCount("WriteFile"), 0u);
}

TEST_F(AtPort, WritesTheLineWithOneCarriageReturn)
{
    OpenPort();
    struct Row {
        const char* name;
        std::string command, written;
    };
    const Row rows[] = {
        {"without", "AT", "AT\r"},
        {"with", "AT\r", "AT\r"},
        {"in the middle", "AT\rX", "AT\rX"},
        {"empty", "", "\r"},
        {"the longest without", std::string(2046, 'A'), std::string(2046, 'A') + "\r"},
        {"the longest with", std::string(2046, 'A') + "\r", std::string(2046, 'A') + "\r"},
        {"too long without", std::string(2047, 'A'), ""},
        {"too long with", std::string(2047, 'A') + "\r", ""},
        {"far too long", std::string(10000, 'A'), ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        log.Clear();
        g_script = Script();
        PlayScript({{"\r\nOK\r\n"}});
        EXPECT_EQ(port.SendCommand(row.command.c_str(), reply.Octets()), !row.written.empty());
        EXPECT_EQ(g_script.written, row.written);
        EXPECT_EQ(log.Count("AT command longer than 2047 octets, not sent"), row.written.empty()) << log.Dump();
        ASSERT_FALSE(log.Records().empty());
        EXPECT_EQ(log.Records()[0].function, "DisplayRawData");
        EXPECT_EQ(log.Texts()[0].find("WriteFile data: "), 0u);
    }
}

TEST_F(AtPort, ReportsWritesThatFailOrFallShort)
{
    OpenPort();
    ASSERT_TRUE(platform_hooks::FailCall("WriteFile", 1, 1, ERROR_GEN_FAILURE));
    EXPECT_FALSE(port.SendCommand("AT", reply.Octets()));
    EXPECT_EQ(log.Count("WriteFile failed, Win Error = 31"), 1) << log.Dump();
    EXPECT_EQ(reply.Text(), "");

    Replace("WriteFile", &ShortWrite);
    EXPECT_FALSE(port.SendCommand("AT", reply.Octets()));
    EXPECT_EQ(log.Count("WriteFile failed, Win Error = 0"), 1) << log.Dump();
}

TEST_F(AtPort, GoesOnWhenThePurgeBeforeASendFails)
{
    OpenPort();
    peer.Answer("\r\nOK\r\n");
    ASSERT_TRUE(platform_hooks::FailCall("PurgeComm", 1, 1, ERROR_GEN_FAILURE));
    EXPECT_TRUE(port.SendCommand("AT", reply.Octets()));
    EXPECT_EQ(log.Count("PurgeComm() failed, errno 31"), 1) << log.Dump();
}

TEST_F(AtPort, JudgesRepliesInFragmentsOfAnySize)
{
    struct Row {
        const char* name;
        std::string octets;
        bool verdict;
    };
    const Row rows[] = {
        {"OK", "\r\nOK\r\n", true},
        {"echo and OK", "AT\r\r\nOK\r\n", true},
        {"value and OK", "AT+CLIP?\r\r\n+CLIP: 0,1\r\n\r\nOK\r\n", true},
        {"OK within a word", "BOOK", true},
        {"ERROR", "\r\nERROR\r\n", false},
        {"numeric error", "\r\n+CME ERROR: 30\r\n", false},
        {"ERROR before OK", "\r\nERROR\r\n\r\nOK\r\n", false},
    };
    for (const Row& row : rows) {
        for (const size_t fragment : {size_t{1}, size_t{8}, PtyPeer::kWhole}) {
            SCOPED_TRACE(testing::Message() << row.name << ", fragments of " << fragment);
            PtyPeer far_end; // one each: the line end behind a result may still be under way to a reader that has gone
            ASSERT_EQ(port.OpenModulePort(far_end.Name()), 0u);
            far_end.Answer(row.octets, fragment);
            EXPECT_EQ(port.SendCommand("AT", reply.Octets()), row.verdict) << log.Dump();
            const std::string text = reply.Text();
            EXPECT_NE(text.find(row.verdict ? "OK" : "ERROR"), std::string::npos) << text;
            EXPECT_EQ(text, row.octets.substr(0, text.size()));
            EXPECT_TRUE(reply.Sound());
            port.Close();
        }
    }
}

TEST_F(AtPort, ReadsPassByPass)
{
    OpenPort();
    const std::string zero(1, '\0');
    struct Row {
        const char* name;
        std::deque<Script::Read> reads;
        bool verdict;
        std::string text;
        size_t reads_left;
    };
    const Row rows[] = {
        {"OK and ERROR in one read", {{"\r\nOK\r\nERROR"}}, false, "\r\nOK\r\nERROR", 0},
        {"OK a read before ERROR", {{"\r\nOK\r\n"}, {"ERROR"}}, true, "\r\nOK\r\n", 1},
        {"OK split over two reads", {{"\r\nO"}, {"K\r\n"}}, true, "\r\nOK\r\n", 0},
        {"ERROR split over two reads", {{"\r\nERR"}, {"OR"}, {"OK"}}, false, "\r\nERROR", 1},
        {"silent reads", {{""}, {""}, {"A"}, {""}, {"OK"}}, true, "AOK", 0},
        {"zero octets in a read", {{zero + "\r\n" + zero + zero + "OK" + zero}}, true, "\r\nOK", 0},
        {"zero octets alone", {{zero + zero}, {"O" + zero}, {zero + "K"}}, true, "OK", 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        log.Clear();
        PlayScript(row.reads);
        EXPECT_EQ(port.SendCommand("AT", reply.Octets()), row.verdict) << log.Dump();
        EXPECT_EQ(reply.Text(), row.text);
        EXPECT_EQ(g_script.reads.size(), row.reads_left);
        EXPECT_EQ(log.Find("AT RSP  string = " + row.text).function, "LogW") << log.Dump();
    }
}

TEST_F(AtPort, TriesAgainAfterThreeFailedReadsButNotAfterFour)
{
    OpenPort();
    for (unsigned failures = 0; failures <= 4; ++failures) {
        SCOPED_TRACE(failures);
        log.Clear();
        peer.Answer("\r\nOK\r\n");
        ASSERT_TRUE(platform_hooks::FailCall("ReadFile", 1, failures, ERROR_NOT_READY));
        EXPECT_EQ(port.SendCommand("AT", reply.Octets()), failures < 4);
        for (int retry = 0; retry < 4; ++retry) {
            EXPECT_EQ(log.Count(Retry(retry)), retry < 3 && retry < static_cast<int>(failures)) << log.Dump();
        }
        EXPECT_EQ(log.Count("ReadFile failed, Win Error = 21"), failures == 4) << log.Dump();
        platform_hooks::Reset();
    }
    // Successes in between do not start the count again.
    PlayScript({{"", true}, {"A"}, {"", true}, {"B"}, {"", true}, {"C"}, {"", true}, {"OK"}});
    EXPECT_FALSE(port.SendCommand("AT", reply.Octets()));
    EXPECT_EQ(reply.Text(), "ABC");
}

TEST_F(AtPort, RemovesOneSimReadyIndication)
{
    OpenPort();
    struct Row {
        const char* name;
        std::string octets, text;
        bool logged;
    };
    const Row rows[] = {
        {"at the start", "+PACSP1\r\n\r\nOK\r\n", "\r\nOK\r\n", true},
        {"the other at the start", "+PACSP0\r\n\r\nOK\r\n", "\r\nOK\r\n", true},
        {"in the middle", "AT\r+PACSP1\r\n\r\nOK\r\n", "AT\r\r\nOK\r\n", false},
        {"at the end", "\r\nOK\r\n+PACSP0\r\n", "\r\nOK\r\n", false},
        {"without its line end", "+PACSP1\r\r\nOK\r\n", "+PACSP1\r\r\nOK\r\n", false},
        {"of another value", "+PACSP2\r\n\r\nOK\r\n", "+PACSP2\r\n\r\nOK\r\n", false},
        {"twice", "+PACSP1\r\n+PACSP1\r\nOK", "+PACSP1\r\nOK", true},
        {"both: 0 goes, though behind", "+PACSP1\r\n+PACSP0\r\nOK", "+PACSP1\r\nOK", false},
        {"in a failed reply", "+PACSP0\r\nERROR", "ERROR", true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        log.Clear();
        PlayScript({{row.octets}});
        port.SendCommand("AT", reply.Octets());
        EXPECT_EQ(reply.Text(), row.text);
        EXPECT_EQ(log.Count("Notification found at the beginning , removed from the response"), row.logged)
            << log.Dump();
    }
}

TEST_F(AtPort, GivesUpOnAReplyThatDoesNotFit)
{
    OpenPort();
    struct Row {
        const char* name;
        size_t size; // of the reply; its last two octets are "OK"
        bool verdict;
    };
    const Row rows[] = {{"fits", 2047, true}, {"one too many", 2048, false}, {"far too many", 10000, false}};
    for (const Row& row : rows) {
        for (const size_t fragment : {size_t{100}, PtyPeer::kWhole}) {
            SCOPED_TRACE(testing::Message() << row.name << ", fragments of " << fragment);
            log.Clear();
            std::string octets(row.size - 2, '\0');
            for (size_t i = 0; i < octets.size(); ++i)
                octets[i] = static_cast<char>('a' + i % 26);
            octets += "OK";
            PtyPeer far_end; // one each, so that the rest of a long reply is not in the way of the next one
            ASSERT_EQ(port.OpenModulePort(far_end.Name()), 0u);
            far_end.Answer(octets, fragment);
            EXPECT_EQ(port.SendCommand("AT", reply.Octets()), row.verdict);
            EXPECT_EQ(reply.Text(), octets.substr(0, 2047));
            EXPECT_TRUE(reply.Sound());
            EXPECT_EQ(log.Count("AT reply longer than 2047 octets, given up"), !row.verdict) << log.Dump();
            port.Close();
        }
    }
}

TEST_F(AtPort, SurvivesAHangUp)
{
    struct Row {
        const char* name;
        std::string octets;
    };
    const Row rows[] = {{"without a reply", ""}, {"during a reply", "\r\n+CLIP: 0,"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        log.Clear();
        PtyPeer far_end;
        ASSERT_EQ(port.OpenModulePort(far_end.Name()), 0u);
        far_end.Answer(row.octets, PtyPeer::kWhole, PtyPeer::Afterwards::HangUp);
        EXPECT_FALSE(port.SendCommand("AT", reply.Octets()));
        EXPECT_EQ(reply.Text(), row.octets.substr(0, reply.Text().size()));
        EXPECT_EQ(log.Count(Retry(2)), 1) << log.Dump();
        EXPECT_EQ(log.Count("ReadFile failed, Win Error = 21"), 1) << log.Dump();

        log.Clear();
        EXPECT_FALSE(port.SendCommand("AT", reply.Octets())) << "the line has been down since";
        EXPECT_EQ(reply.Text(), "");
        port.Close();
    }
}

TEST_F(AtPort, SurvivesAHangUpBetweenCommands)
{
    OpenPort();
    peer.Answer("\r\nOK\r\n");
    EXPECT_TRUE(port.SendCommand("AT", reply.Octets()));
    peer.HangUp();
    EXPECT_FALSE(port.SendCommand("AT", reply.Octets())) << log.Dump();
    EXPECT_EQ(port.Close(), 0u);
    EXPECT_EQ(port.IsOpen(), 0u);
    PtyPeer next;
    EXPECT_EQ(port.OpenModulePort(next.Name()), 0u);
}

// --- time-out --------------------------------------------------------------------------------------------------------

TEST_F(AtPort, TimesOutByTheTicksOfItsClock)
{
    OpenPort();
    struct Row {
        const char* name;
        DWORD start, now;
        bool timed_out;
    };
    const Row rows[] = {
        {"same tick", 1000, 1000, true},
        {"one tick later", 1000, 1001, false},
        {"at the time-out", 1000, 3000, false},
        {"one past the time-out", 1000, 3001, true},
        {"no tick at all yet", 0, 0, true},
        {"wrapped, late start", 0xFFFFFF00u, 5, false},
        {"wrapped, at half the range", 0x80000000u, 1, false},
        {"wrapped, one past half the range", 0x80000000u, 2, true},
        {"wrapped, early start", 0x10, 8, true},
        {"last tick, same", 0xFFFFFFFFu, 0xFFFFFFFFu, false},
        {"last tick, wrapped", 0xFFFFFFFFu, 0, false},
    };
    Replace("GetTickCount", &ScriptedTick);
    Replace("Sleep", &ScriptedSleep);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        log.Clear();
        g_script = Script();
        g_script.ticks = {row.start, row.now};
        PlayScript({{"\r\n"}, {"OK\r\n"}});
        EXPECT_EQ(port.SendCommandTimed("AT", reply.Octets(), 2000), !row.timed_out) << log.Dump();
        EXPECT_EQ(log.Count("atcmd timedout!"), row.timed_out);
        EXPECT_EQ(g_script.written, row.timed_out ? "AT\r\r\nAT\r\n" : "AT\r");
        EXPECT_EQ(g_script.sleeps, row.timed_out ? std::vector<DWORD>{1000} : std::vector<DWORD>());
        EXPECT_EQ(reply.Text(), row.timed_out ? "\r\n" : "\r\nOK\r\n");
    }
}

TEST_F(AtPort, KeepsTheVerdictOfAResultThatArrivesLate)
{
    OpenPort();
    Replace("GetTickCount", &ScriptedTick);
    Replace("Sleep", &ScriptedSleep);
    for (const bool verdict : {true, false}) {
        SCOPED_TRACE(verdict);
        log.Clear();
        g_script = Script();
        g_script.ticks = {1000, 9000};
        PlayScript({{verdict ? "OK" : "ERROR"}});
        EXPECT_EQ(port.SendCommandTimed("AT", reply.Octets(), 2000), verdict);
        EXPECT_EQ(log.Count("atcmd timedout!"), 1);
        EXPECT_EQ(g_script.written, "AT\r\r\nAT\r\n");
    }
}

TEST_F(AtPort, ResynchronisesTheModuleAfterATimeOut)
{
    OpenPort();
    Replace("GetTickCount", &ScriptedTick);
    Replace("Sleep", &ScriptedSleep);
    g_script.ticks = {1000, 9000};
    g_script.wait_in_sleep = &peer;
    const unsigned purges = platform_hooks::LastSerialSettings().purges;
    peer.Answer("\r\n+COPS: ");
    EXPECT_FALSE(port.SendCommandTimed("AT+COPS?", reply.Octets(), 2000));
    EXPECT_EQ(peer.Received(), "AT+COPS?\r\r\nAT\r\n");
    EXPECT_EQ(g_script.sleeps, std::vector<DWORD>{1000});
    EXPECT_EQ(platform_hooks::LastSerialSettings().purges, purges + 2);
    EXPECT_EQ(platform_hooks::LastSerialSettings().purge_flags, 15u);

    peer.Answer("\r\nOK\r\n");
    EXPECT_TRUE(port.SendCommand("AT", reply.Octets())) << log.Dump();
}

} // namespace
