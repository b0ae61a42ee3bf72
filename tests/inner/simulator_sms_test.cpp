// Text messages of the simulated module: its two stores, and sending.

#include <gtest/gtest.h>

#include <string.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/sim_entry.h"
#include "tests/support/sim_harness.h"

namespace {

std::vector<std::string> g_arrived;

class SimulatorSms : public ::testing::Test {
protected:
    SimHarness sim{"umts"};

    // "INDEX:TAG ..." of a store.
    static std::string Listed(ULONG storage, const ULONG* tag = nullptr, ULONG room = 1000)
    {
        std::vector<GobiSMSListEntry> entries(room); // of the exact size
        ULONG count = room;
        ULONG wanted = tag ? *tag : 0;
        EXPECT_EQ(
            SIM_ENTRY(GetSMSList)(storage, tag ? &wanted : nullptr, &count, reinterpret_cast<BYTE*>(entries.data())),
            0u);
        std::string text;
        for (ULONG i = 0; i < count && i < room; ++i)
            text += (i ? " " : "") + std::to_string(entries[i].index) + ":" + std::to_string(entries[i].tag);
        return text;
    }
};

TEST_F(SimulatorSms, KeepsMessagesInTwoStoresAndGivesThemBack)
{
    BYTE octets[] = {0x11, 0x00, 0xFF};
    ULONG index = 99;
    EXPECT_EQ(sim.Command("sms add 0 1 6 0791"), "0");
    EXPECT_EQ(sim.Command("sms add 0 0 6 \"\""), "1");
    EXPECT_EQ(sim.Command("sms add 1 1 8 03"), "0");
    EXPECT_EQ(SIM_ENTRY(SaveSMS)(0, 6, 3, octets, &index), 0u);
    EXPECT_EQ(index, 2u);
    EXPECT_EQ(Listed(0), "0:1 1:0 2:2");
    EXPECT_EQ(Listed(1), "0:1");
    const ULONG not_read = 1, not_sent = 2;
    EXPECT_EQ(Listed(0, &not_read), "0:1");
    EXPECT_EQ(Listed(0, &not_sent), "2:2");
    EXPECT_EQ(Listed(0, nullptr, 2), "0:1 1:0") << "as many as there is room for";

    ULONG tag = 9, format = 9, size = 500;
    BYTE given[500];
    EXPECT_EQ(SIM_ENTRY(GetSMS)(0, 2, &tag, &format, &size, given), 0u);
    EXPECT_EQ(tag, 2u);
    EXPECT_EQ(format, 6u);
    ASSERT_EQ(size, 3u);
    EXPECT_EQ(memcmp(given, octets, 3), 0);
    EXPECT_EQ(SIM_ENTRY(GetSMS)(1, 0, &tag, &format, &size, given), 0u);
    EXPECT_EQ(std::to_string(tag) + std::to_string(format) + std::to_string(size), "181");
    EXPECT_EQ(Listed(1), "0:1") << "reading changes no tag";
    EXPECT_EQ(SIM_ENTRY(ModifySMSStatus)(1, 0, 0), 0u);
    EXPECT_EQ(Listed(1), "0:0");
    EXPECT_EQ(sim.Command("sms list 0"), "0 1 6 0791\n1 0 6 \n2 2 6 1100FF");

    ULONG one = 0;
    EXPECT_EQ(SIM_ENTRY(DeleteSMS)(0, &one, nullptr), 0u);
    EXPECT_EQ(SIM_ENTRY(DeleteSMS)(0, &one, nullptr), 9u) << "it is gone";
    EXPECT_EQ(SIM_ENTRY(SaveSMS)(0, 0, 1, octets, &index), 0u);
    EXPECT_EQ(index, 0u) << "the free index is used again";
    tag = 2;
    EXPECT_EQ(SIM_ENTRY(DeleteSMS)(0, nullptr, &tag), 0u);
    EXPECT_EQ(Listed(0), "1:0");
    EXPECT_EQ(SIM_ENTRY(DeleteSMS)(0, nullptr, nullptr), 0u);
    EXPECT_EQ(Listed(0), "");
    EXPECT_EQ(Listed(1), "0:0") << "the other store";
    EXPECT_EQ(sim.Journal().back(), "GetSMSList(1, null, 1000)");
}

TEST_F(SimulatorSms, AStoreIsFullAtItsCapacity)
{
    sim.Command("set sms.card-capacity 2");
    BYTE octet = 1;
    ULONG index = 0;
    EXPECT_EQ(SIM_ENTRY(SaveSMS)(0, 6, 1, &octet, &index), 0u);
    EXPECT_EQ(SIM_ENTRY(SaveSMS)(0, 6, 1, &octet, &index), 0u);
    EXPECT_EQ(SIM_ENTRY(SaveSMS)(0, 6, 1, &octet, &index), 10u);
    std::string reason;
    EXPECT_FALSE(sim.TryCommand("sms arrives 0 6 00", &reason));
    EXPECT_EQ(reason, "store 0 is full");
    sim.Command("set sms.module-capacity 1000");
    for (int i = 0; i < 1000; ++i)
        sim.Command("sms add 1 1 6 00");
    EXPECT_FALSE(sim.TryCommand("sms add 1 1 6 00", &reason));
    const std::string all = Listed(1);
    EXPECT_EQ(all.substr(all.rfind(' ')), " 999:1");
}

TEST_F(SimulatorSms, AnArrivalIsKeptAndReported)
{
    g_arrived.clear();
    SimRegistration<GobiSetNewSMS>("SetNewSMSCallback")(
        [](ULONG storage, ULONG index) { g_arrived.push_back(std::to_string(storage) + " " + std::to_string(index)); });
    sim.Command("sms add 1 0 6 00");
    sim.Command("sms arrives 1 6 0102");
    sim.Command("after 500 sms arrives 0 6 03");
    EXPECT_EQ(Listed(1), "0:0 1:1");
    sim.Command("advance 0");
    EXPECT_EQ(g_arrived, (std::vector<std::string>{"1 1"}));
    sim.Command("advance 500");
    EXPECT_EQ(g_arrived, (std::vector<std::string>{"1 1", "0 0"}));
    EXPECT_EQ(Listed(0), "0:1");
}

TEST_F(SimulatorSms, SendsAsTheNetworkAllows)
{
    BYTE octets[] = {1, 2, 3};
    const struct {
        const char* name;
        std::vector<const char*> lines;
        ULONG format, size;
        ULONG status, cause;
        const char* state; // reference, count, link timer, octets
    } rows[] = {
        {"a network that takes it", {"reset"}, 6, 3, 0, 0, "1 1 3 010203"},
        {"the next reference", {}, 6, 2, 0, 0, "2 2 3 0102"},
        {"refused", {"set sms.send-status 13", "set sms.failure-cause 38"}, 6, 1, 13, 38, "2 2 3 0102"},
        {"taken again", {"set sms.send-status 0"}, 6, 1, 0, 0, "3 3 3 01"},
        {"searching", {"set network.registration 2"}, 6, 2, 12, 331, "3 3 3 01"},
        {"the radio is off", {"set network.registration 1", "set power.mode 6"}, 6, 2, 12, 331, "3 3 3 01"},
        {"the references end", {"reset", "set sms.reference 255"}, 6, 1, 0, 0, "0 1 3 01"},
        {"the other protocol's format", {"reset"}, 0, 1, 4, 77, "0 0 0 "},
        {"CDMA", {"model cdma"}, 0, 1, 0, 0, "1 1 3 01"},
        {"not a message to send", {}, 8, 1, 4, 77, "1 1 3 01"},
        {"nothing", {}, 0, 0, 4, 77, "1 1 3 01"},
        {"too much", {}, 0, 1027, 4, 77, "1 1 3 01"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        for (const char* line : row.lines)
            sim.Command(line);
        ULONG cause = 77;
        EXPECT_EQ(SIM_ENTRY(SendSMS)(row.format, row.size, octets, 3, &cause), row.status);
        EXPECT_EQ(cause, row.cause);
        EXPECT_EQ(sim.Command("get sms.reference") + " " + sim.Command("get sms.send-count") + " " +
                      sim.Command("get sms.link-timer") + " " + sim.Command("get sms.sent"),
                  row.state);
    }
    BYTE protocol = 1;
    ULONG cause = 0;
    EXPECT_EQ(SIM_ENTRY(SetSMSProtocol)(protocol), 0u);
    EXPECT_EQ(SIM_ENTRY(SendSMS)(6, 3, octets, 0, &cause), 0u) << "after the change of protocol";
}

TEST_F(SimulatorSms, KeepsTheServiceCentreAndItsSwitches)
{
    char address[42] = {}, type[8] = {}, new_address[] = "+4917222", new_type[] = "129";
    EXPECT_EQ(SIM_ENTRY(GetSMSCAddress)(42, address, 8, type), 0u);
    EXPECT_EQ(std::string(address) + "/" + type, "+12025550100/145");
    EXPECT_EQ(SIM_ENTRY(SetSMSCAddress)(new_address, new_type), 0u);
    EXPECT_EQ(SIM_ENTRY(GetSMSCAddress)(42, address, 8, type), 0u);
    EXPECT_EQ(std::string(address) + "/" + type, "+4917222/129");
    std::string long_address(42, '1');
    EXPECT_EQ(SIM_ENTRY(SetSMSCAddress)(&long_address[0], new_type), 4u);
    EXPECT_EQ(SIM_ENTRY(SetSMSCAddress)(new_address, &long_address[0]), 4u);
    EXPECT_EQ(SIM_ENTRY(SetSMSCAddress)(new_address, nullptr), 4u);
    EXPECT_EQ(sim.Command("get sms.centre"), "+4917222") << "a refused change changes nothing";
    BYTE routes[20] = {0, 0xFF, 1, 1, 0, 2, 0, 1};
    EXPECT_EQ(SIM_ENTRY(SetRoutes)(2, routes), 0u);
    EXPECT_EQ(SIM_ENTRY(SetRoutes)(5, routes), 4u);
    EXPECT_EQ(sim.Command("get sms.routes"), "00FF010100020001");
    EXPECT_EQ(SIM_ENTRY(SetBroadcastActivation)(1, 1), 0u);
    EXPECT_EQ(SIM_ENTRY(SetBroadcastActivation)(2, 1), 4u);
    EXPECT_EQ(SIM_ENTRY(SetBroadcastActivation)(0, 2), 4u);
    EXPECT_EQ(sim.Command("get sms.broadcast-gsm") + sim.Command("get sms.broadcast-cdma"), "10");
    EXPECT_EQ(SIM_ENTRY(SetSMSProtocol)(2), 4u);
}

TEST_F(SimulatorSms, RefusesWhatIsNotThere)
{
    ULONG word = 5;
    BYTE octets[8] = {};
    const struct {
        const char* name;
        ULONG status, expected;
    } rows[] = {
        {"a third store", SIM_ENTRY(GetSMSList)(2, nullptr, &word, octets), 4},
        {"no message", SIM_ENTRY(GetSMS)(0, 0, &word, &word, &word, octets), 9},
        {"an index beyond all", SIM_ENTRY(GetSMS)(0, 0xFFFFFFFF, &word, &word, &word, octets), 9},
        {"no message to mark", SIM_ENTRY(ModifySMSStatus)(1, 1000, 0), 9},
        {"no such tag", SIM_ENTRY(ModifySMSStatus)(1, 0, 4), 4},
        {"nothing to save", SIM_ENTRY(SaveSMS)(0, 6, 0, octets, &word), 4},
        {"too much to save", SIM_ENTRY(SaveSMS)(0, 6, 513, octets, &word), 4},
        {"a format to save", SIM_ENTRY(SaveSMS)(0, 5, 1, octets, &word), 4},
        {"nowhere to tell", SIM_ENTRY(SaveSMS)(0, 6, 1, octets, nullptr), 4},
        {"no list", SIM_ENTRY(GetSMSList)(0, nullptr, &word, nullptr), 4},
        {"no cause", SIM_ENTRY(SendSMS)(6, 1, octets, 0, nullptr), 4},
    };
    for (const auto& row : rows)
        EXPECT_EQ(row.status, row.expected) << row.name;
    EXPECT_EQ(Listed(0) + Listed(1), "");
    sim.Command("set card.present 0");
    EXPECT_EQ(SIM_ENTRY(SaveSMS)(0, 6, 1, octets, &word), 11u);
    EXPECT_EQ(SIM_ENTRY(DeleteSMS)(0, nullptr, nullptr), 11u);
    EXPECT_EQ(SIM_ENTRY(SaveSMS)(1, 6, 1, octets, &word), 0u);
}

TEST_F(SimulatorSms, AHostileModuleStaysWithinTheRoom)
{
    sim.Command("sms add 1 1 6 010203");
    const std::unique_ptr<BYTE[]> list(new BYTE[3 * sizeof(GobiSMSListEntry)]), octets(new BYTE[4]);
    const std::unique_ptr<char[]> address(new char[6]), type(new char[2]);
    const struct {
        const char* kind;
        ULONG count;
        BYTE last; // octet of the room
    } rows[] = {{"scribble", 0xFFFFFFFF, 0xFF}, {"count 5000", 5000, 1}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.kind);
        sim.Command(std::string("hostile GetSMSList ") + row.kind);
        sim.Command(std::string("hostile GetSMS ") + row.kind);
        ULONG count = 3, tag = 0, format = 0, size = 4;
        EXPECT_EQ(SIM_ENTRY(GetSMSList)(1, nullptr, &count, list.get()), 0u);
        EXPECT_EQ(count, row.count);
        EXPECT_EQ(SIM_ENTRY(GetSMS)(1, 0, &tag, &format, &size, octets.get()), 0u);
        EXPECT_EQ(size, row.count);
        EXPECT_EQ(octets[3], row.last);
    }
    sim.Command("hostile GetSMSCAddress scribble");
    EXPECT_EQ(SIM_ENTRY(GetSMSCAddress)(6, address.get(), 2, type.get()), 0u);
    EXPECT_EQ(memchr(address.get(), 0, 6), nullptr);
    EXPECT_EQ(memchr(type.get(), 0, 2), nullptr);
    sim.Command("clear all");
    ULONG tag = 0, format = 0, size = 2;
    EXPECT_EQ(SIM_ENTRY(GetSMS)(1, 0, &tag, &format, &size, octets.get()), 0u);
    EXPECT_EQ(size, 2u) << "cut, where there is no room";
    sim.Command("on GetSMS sms tag 1 0 0");
    EXPECT_EQ(SIM_ENTRY(GetSMS)(1, 0, &tag, &format, &size, octets.get()), 0u);
    EXPECT_EQ(tag, 0u) << "a tag that changed behind the client's back";
}

TEST_F(SimulatorSms, WhatIsSentComesBackAsTheNetworkDeliversIt)
{
    const struct {
        const char* name;
        std::vector<BYTE> sent;
        const char* delivered;
    } rows[] = {
        {"no validity period",
         {0, 0x01, 9, 3, 0x81, 0x21, 0xF3, 0x39, 0x04, 1, 0xAA},
         "0004038121F339045210100000000001AA"},
        {"relative, with a header",
         {0, 0x51, 9, 2, 0x81, 0x21, 0, 0, 0xA7, 2, 0xBB, 0xCC},
         "004402812100005210100000000002BBCC"},
        {"absolute, cut short", {0, 0x19, 9, 2, 0x81, 0x21, 0, 0, 1, 2, 3, 4, 5, 6, 7}, ""},
        {"no SMS-SUBMIT", {0, 0x00, 9, 2, 0x81, 0x21, 0, 0, 1, 0xAA}, ""},
        {"service centre longer than all", {0xFF, 0x01, 9, 2, 0x81}, ""},
        {"number longer than all", {0, 0x01, 9, 0xFF, 0x81, 0x21, 0, 0, 1}, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        sim.Command("reset");
        sim.Command("clock virtual");
        sim.Command("set sms.loopback 1");
        std::vector<BYTE> sent = row.sent; // of the exact size
        ULONG cause = 0;
        EXPECT_EQ(SIM_ENTRY(SendSMS)(6, static_cast<ULONG>(sent.size()), sent.data(), 0, &cause), 0u);
        EXPECT_EQ(sim.Command("sms list 1"), "");
        sim.Command("advance 100");
        EXPECT_EQ(sim.Command("sms list 1"), *row.delivered ? std::string("0 1 6 ") + row.delivered : "");
    }
}

} // namespace
