// The AT modem of the simulated module, over its pseudo-terminal, as a client sees it.

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <string.h>
#include <unistd.h>

#include <string>
#include <thread>

#include "tests/support/sim_harness.h"

namespace {

// A client's end of the line.
class Line {
public:
    explicit Line(const std::string& name) : m_file(open(name.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC)) {}
    ~Line() { close(m_file); }
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    bool IsOpen() const { return m_file >= 0; }
    bool Send(const std::string& text) const
    {
        return write(m_file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    }
    // What one read gives once something is there; "" when the line is down.
    std::string Read()
    {
        char octets[8192];
        pollfd readable = {m_file, POLLIN, 0};
        if (poll(&readable, 1, 10000) <= 0) return "(nothing came)";
        const ssize_t count = read(m_file, octets, sizeof(octets));
        if (count <= 0) m_down = true;
        return count > 0 ? std::string(octets, static_cast<size_t>(count)) : "";
    }
    // Reads until what came ends with `end`, or the line is down.
    std::string ReadTo(const std::string& end)
    {
        std::string text;
        while (!m_down && (text.size() < end.size() || text.compare(text.size() - end.size(), end.size(), end) != 0)) {
            text += Read();
            if (text.find("(nothing came)") != std::string::npos) break;
        }
        return text;
    }
    std::string Ask(const std::string& command, const std::string& end)
    {
        return Send(command) ? ReadTo(end) : "(not sent)";
    }
    bool IsDown() const { return m_down; }

private:
    int m_file;
    bool m_down = false;
};

class SimulatorPort : public ::testing::Test {
protected:
    SimHarness sim{"umts"};
    Line line{sim.Command("serial name")};
};

TEST_F(SimulatorPort, AnswersInTheFormOfTheErrorsThatAreAskedFor)
{
    ASSERT_TRUE(line.IsOpen());
    const struct {
        const char* command;
        const char* answer; // after the echo
    } rows[] = {
        {"AT", "\r\nOK\r\n"},
        {"AT+NOSUCH", "\r\nERROR\r\n"},
        {"AT+CMEE?", "\r\n+CMEE: 0\r\n\r\nOK\r\n"},
        {"at+cmee=1", "\r\nOK\r\n"},
        {"AT+NOSUCH", "\r\n+CME ERROR: 4\r\n"},
        {"AT+CMEE=2", "\r\nOK\r\n"},
        {"AT+NOSUCH", "\r\n+CME ERROR: operation not supported\r\n"},
        {"AT+CMEE=3", "\r\n+CME ERROR: incorrect parameters\r\n"},
        {"AT+CMEE?", "\r\n+CMEE: 2\r\n\r\nOK\r\n"},
        {"AT+CGMM", "\r\nKT5230\r\n\r\nOK\r\n"},
        {"AT+CSQ", "\r\n+CSQ: 21,99\r\n\r\nOK\r\n"},
        {"AT+COPS?", "\r\n+COPS: 0,0,\"Test Network\",2\r\n\r\nOK\r\n"},
        {"AT+CREG?", "\r\n+CREG: 0,1\r\n\r\nOK\r\n"},
        {"ATI",
         "\r\nManufacturer: Kestavo\r\nModel: KT5230\r\nRevision: K2.0.12U-SIM\r\nIMEI: 001017400000018\r\n\r\nOK\r\n"},
    };
    for (const auto& row : rows) {
        const std::string expected = std::string(row.command) + "\r" + row.answer;
        EXPECT_EQ(line.Ask(std::string(row.command) + "\r", row.answer), expected) << row.command;
    }
    sim.Command("set signal.pairs none");
    sim.Command("set network.registration 2");
    EXPECT_EQ(line.Ask("ATE0\r", "OK\r\n"), "ATE0\r\r\nOK\r\n") << "the echo of this one still comes";
    EXPECT_EQ(line.Ask("AT+CSQ\r", "OK\r\n"), "\r\n+CSQ: 99,99\r\n\r\nOK\r\n");
    EXPECT_EQ(line.Ask("AT+COPS?\r", "OK\r\n"), "\r\n+COPS: 0\r\n\r\nOK\r\n");
    EXPECT_EQ(line.Ask("AT+CREG?\r", "OK\r\n"), "\r\n+CREG: 0,2\r\n\r\nOK\r\n");
    sim.Command("at log clear");
    EXPECT_EQ(line.Ask("AT\r", "OK\r\n"), "\r\nOK\r\n");
    EXPECT_EQ(sim.Command("at log"), "AT");
}

TEST_F(SimulatorPort, KnowsTheSettingsAndOpensTheRestrictedOnesForOneCommand)
{
    const struct {
        const char* command;
        const char* answer; // after the echo
    } rows[] = {
        {"AT+CMEE=2", "\r\nOK\r\n"},
        {"AT+CLIP?", "\r\n+CLIP: 0,1\r\n\r\nOK\r\n"},
        {"AT+CLIP=1", "\r\nOK\r\n"},
        {"AT+CLIP=2", "\r\n+CME ERROR: incorrect parameters\r\n"},
        {"AT+CLIP?", "\r\n+CLIP: 1,1\r\n\r\nOK\r\n"},
        {"AT+CLIR=?", "\r\n+CLIR: (0-2)\r\n\r\nOK\r\n"},
        {"AT+COLR?", "\r\n+COLR: 0\r\n\r\nOK\r\n"},
        {"AT+COLR=1", "\r\n+CME ERROR: operation not supported\r\n"},
        {"AT+CHLD=12", "\r\n+CME ERROR: not found\r\n"},
        {"AT+CHLD=1x", "\r\n+CME ERROR: incorrect parameters\r\n"},
        {"AT+CHLD=2", "\r\n+CME ERROR: operation not supported\r\n"},
        {"AT!NVENUM=3", "\r\n+CME ERROR: operation not allowed\r\n"},
        {"AT!UNLOCK=\"C583\"", "\r\n+CME ERROR: incorrect parameters\r\n"},
        {"AT!NVENUM=3", "\r\n+CME ERROR: operation not allowed\r\n"},
        {"AT!UNLOCK=\"C582\"", "\r\nOK\r\n"},
        {"AT!NVENUM=3", "\r\nOK\r\n"},
        {"AT!NVENUM?", "\r\n+CME ERROR: operation not allowed\r\n"},
        {"AT!UNLOCK=\"C582\"", "\r\nOK\r\n"},
        {"AT!NVENUM?", "\r\n3\r\n\r\nOK\r\n"},
        {"AT!UNLOCK=\"C582\"", "\r\nOK\r\n"},
        {"AT", "\r\nOK\r\n"},
        {"AT!AVCODECSTG=1,2", "\r\n+CME ERROR: operation not allowed\r\n"},
        {"AT!UNLOCK=\"C582\"", "\r\nOK\r\n"},
        {"AT!AVCODECSTG=2147483648,2", "\r\n+CME ERROR: incorrect parameters\r\n"},
        {"AT$RTN=", "\r\n+CME ERROR: incorrect parameters\r\n"},
        {"AT+MDN", "\r\n2025550123\r\n\r\nOK\r\n"},
    };
    for (const auto& row : rows) {
        const std::string expected = std::string(row.command) + "\r" + row.answer;
        EXPECT_EQ(line.Ask(std::string(row.command) + "\r", row.answer), expected) << row.command;
    }
}

TEST_F(SimulatorPort, SaysWhatItIsToldToSay)
{
    sim.Command("at echo off");
    sim.Command("at reply AT+CLIP? \"\\r\\n+CLIP: 1,\\x01\\r\\n\\r\\nOK\\r\\n\"");
    EXPECT_EQ(line.Ask("at+clip?\r", "OK\r\n"), "\r\n+CLIP: 1,\x01\r\n\r\nOK\r\n");
    sim.Command("at reply AT+CLIP? \"" + std::string(3000, 'y') + "\"");
    EXPECT_EQ(line.Ask("AT+CLIP?\r", std::string(3000, 'y')), std::string(3000, 'y'))
        << "more than a port reads at once";

    sim.Command("at unsolicited \"\\r\\nRING\\r\\n\"");
    EXPECT_EQ(line.ReadTo("RING\r\n"), "\r\nRING\r\n");
    sim.Command("at insert 3 \"+PACSP0\\r\\n\"");
    EXPECT_EQ(line.Ask("AT\r", "K\r\n"), "\r\nO+PACSP0\r\nK\r\n");
    EXPECT_EQ(line.Ask("AT\r", "OK\r\n"), "\r\nOK\r\n") << "into one reply only";
    sim.Command("at insert 99 \"+PACSP0\\r\\n\"");
    EXPECT_EQ(line.Ask("AT\r", "PACSP0\r\n"), "\r\nOK\r\n+PACSP0\r\n");
}

TEST_F(SimulatorPort, SendsFragmentsOneByOne)
{
    sim.Command("at echo off");
    for (const size_t octets : {1u, 4u}) {
        sim.Command("at fragment " + std::to_string(octets));
        ASSERT_TRUE(line.Send("AT\r"));
        std::string text;
        while (text.size() < 6) {
            const std::string part = line.Read();
            EXPECT_LE(part.size(), octets);
            text += part;
        }
        EXPECT_EQ(text, "\r\nOK\r\n");
    }
}

TEST_F(SimulatorPort, KeepsSilentWhenToldToAndWhileTheModuleIsAway)
{
    for (const char* command : {"at silence on", "module leaves"}) {
        sim.Command(command);
        sim.Command("at log clear");
        ASSERT_TRUE(line.Send("AT\r"));
        while (sim.Command("at log") != "AT" && !HasFailure())
            std::this_thread::yield();
        // The next thing to come is not an answer.
        sim.Command("at unsolicited \"!\"");
        EXPECT_EQ(line.Read(), "!") << command;
        sim.Command("at silence off");
    }
    sim.Command("module returns");
    EXPECT_EQ(line.Ask("AT\r", "OK\r\n"), "AT\r\r\nOK\r\n");
}

TEST(SimulatorLine, HangsUpAroundACommandAndComesBack)
{
    SimHarness sim("umts");
    const struct {
        const char* when;
        const char* answer; // "AT\r\r\nOK\r\n" is the whole of it
    } rows[] = {{"before", ""}, {"during", "AT\r\r"}, {"after", "AT\r\r\nOK\r\n"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.when);
        const std::string name = sim.Command("serial restore");
        Line line(name);
        ASSERT_TRUE(line.IsOpen());
        sim.Command(std::string("at hangup ") + row.when);
        ASSERT_TRUE(line.Send("AT\r"));
        EXPECT_EQ(line.ReadTo("(never)"), row.answer);
        EXPECT_TRUE(line.IsDown());
    }
    Line line(sim.Command("serial restore"));
    EXPECT_EQ(line.Ask("AT\r", "OK\r\n"), "AT\r\r\nOK\r\n") << "asked for one command only";
    sim.Command("serial hangup");
    EXPECT_EQ(line.Read(), "");
    EXPECT_TRUE(line.IsDown());
}

} // namespace
