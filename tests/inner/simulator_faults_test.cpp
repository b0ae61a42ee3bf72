// Faults of the simulated module: entry points that fail, that lie, and that are interrupted.

#include <gtest/gtest.h>

#include <string.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/sim_entry.h"
#include "tests/support/sim_harness.h"

namespace {

using Lines = std::vector<std::string>;

class SimulatorFaults : public ::testing::Test {
protected:
    SimHarness sim{"umts"};
};

// --- faults
// -----------------------------------------------------------------------------------------------------------

TEST_F(SimulatorFaults, FailsFromTheNthCallOn)
{
    const struct {
        const char* rule;
        std::vector<ULONG> statuses;
    } rows[] = {
        {"fail SetPower 7", {7, 7, 7, 7}},
        {"fail SetPower 7 from 3", {0, 0, 7, 7}},
        {"fail SetPower 7 times 1", {7, 0, 0, 0}},
        {"fail SetPower 7 from 2 times 2", {0, 7, 7, 0}},
    };
    for (const auto& row : rows) {
        sim.Command(row.rule);
        for (const ULONG status : row.statuses)
            EXPECT_EQ(SIM_ENTRY(SetPower)(0), status) << row.rule;
    }
    sim.Command("fail SetPower 7");
    sim.Command("fail AbortsUSSD 9");
    EXPECT_EQ(SIM_ENTRY(AbortsUSSD)(), 9u) << "also one that takes nothing";
    sim.Command("clear SetPower");
    EXPECT_EQ(SIM_ENTRY(SetPower)(0), 0u);
    sim.Command("clear all");
    EXPECT_EQ(SIM_ENTRY(AbortsUSSD)(), 1026u);
    sim.Command("fail SetPowerCallback 3");
    EXPECT_EQ(SimRegistration<GobiSetPower>("SetPowerCallback")([](ULONG) {}), 3u);
    EXPECT_EQ(sim.Command("registered"), "") << "a failed registration keeps nothing";
}

std::vector<ULONG> g_modes;

TEST_F(SimulatorFaults, RunsALineInTheMiddleOfACall)
{
    g_modes.clear();
    SimRegistration<GobiSetPower>("SetPowerCallback")([](ULONG mode) { g_modes.push_back(mode); });
    sim.Command("on GetPower emit power 9");
    sim.ClearJournal();
    ULONG mode = 0;
    EXPECT_EQ(SIM_ENTRY(GetPower)(&mode), 0u);
    EXPECT_EQ(SIM_ENTRY(GetPower)(&mode), 0u);
    EXPECT_EQ(g_modes, (std::vector<ULONG>{9, 9}));
    EXPECT_EQ(sim.Journal(), (Lines{"GetPower()", "GetPower()"}));
    sim.Command("clear GetPower");
    SIM_ENTRY(GetPower)(&mode);
    EXPECT_EQ(g_modes.size(), 2u);
}

// Buffers of the exact size, so that an address sanitizer sees the first octet too many.
template <class T>
struct Exact {
    explicit Exact(size_t size) : values(new T[size]()), count(size) {}
    operator T*() const { return values.get(); }
    bool All(T value) const
    {
        for (size_t i = 0; i < count; ++i) {
            if (values[i] != value) return false;
        }
        return true;
    }
    std::unique_ptr<T[]> values;
    size_t count;
};

TEST_F(SimulatorFaults, AHostileModuleFillsItsRoomAndLiesAboutCounts)
{
    constexpr BYTE kAllOnes = 0xFF;
    struct Outcome {
        const char* entry;
        const char* kind;
        ULONG count; // that is given
        bool filled; // with nothing but ones
    };
    const auto run = [&](const Outcome& row) -> std::pair<ULONG, bool> {
        const std::string entry = row.entry;
        if (entry == "GetServingNetworkCapabilities") {
            BYTE count = 7;
            Exact<BYTE> caps(7);
            EXPECT_EQ(SIM_ENTRY(GetServingNetworkCapabilities)(&count, caps), 0u);
            return {count, caps.All(kAllOnes)};
        }
        if (entry == "GetSignalStrengths") {
            ULONG count = 3;
            Exact<ORV_INT8> strengths(3);
            Exact<ULONG> interfaces(3);
            EXPECT_EQ(SIM_ENTRY(GetSignalStrengths)(&count, strengths, interfaces), 0u);
            return {count, strengths.All(-1) && interfaces.All(0xFFFFFFFF)};
        }
        if (entry == "GetRFInfo") {
            BYTE count = 2;
            Exact<BYTE> instances(24);
            EXPECT_EQ(SIM_ENTRY(GetRFInfo)(&count, instances), 0u);
            return {count, instances.All(kAllOnes)};
        }
        if (entry == "GetImagesPreference") {
            ULONG count = 5;
            Exact<BYTE> images(5);
            EXPECT_EQ(SIM_ENTRY(GetImagesPreference)(&count, images), 0u);
            return {count, images.All(kAllOnes)};
        }
        BYTE count = 4;
        Exact<BYTE> interfaces(4);
        Exact<char> name(6);
        ULONG words[5];
        WORD halves[2];
        EXPECT_EQ(SIM_ENTRY(GetServingNetwork)(&words[0], &words[1], &words[2], &words[3], &count, interfaces,
                                               &words[4], &halves[0], &halves[1], 6, name),
                  0u);
        return {count, interfaces.All(kAllOnes) && memchr(name, 0, 6) == nullptr && halves[0] == 0xFFFF};
    };
    const Outcome rows[] = {
        {"GetServingNetworkCapabilities", "scribble", 255, true},
        {"GetServingNetworkCapabilities", "count 255", 255, false},
        {"GetSignalStrengths", "scribble", 0xFFFFFFFF, true},
        {"GetSignalStrengths", "count 4294967295", 0xFFFFFFFF, false},
        {"GetSignalStrengths", "count 11", 11, false},
        {"GetRFInfo", "scribble", 255, true},
        {"GetRFInfo", "count 200", 200, false},
        {"GetImagesPreference", "scribble", 0xFFFFFFFF, true},
        {"GetServingNetwork", "scribble", 255, true},
        {"GetServingNetwork", "count 255", 255, false},
    };
    for (const Outcome& row : rows) {
        SCOPED_TRACE(std::string(row.entry) + " " + row.kind);
        sim.Command(std::string("hostile ") + row.entry + " " + row.kind);
        const auto [count, filled] = run(row);
        EXPECT_EQ(count, row.count);
        EXPECT_EQ(filled, row.filled);
        sim.Command("clear all");
    }

    sim.Command("hostile OrvGetCwePkgsInfo scribble");
    WORD sizes[7] = {20, 85, 85, 15, 85, 20, 10};
    std::vector<Exact<BYTE>> texts;
    for (const WORD size : sizes)
        texts.emplace_back(size);
    EXPECT_EQ(SIM_ENTRY(OrvGetCwePkgsInfo)(&sizes[0], texts[0], &sizes[1], texts[1], &sizes[2], texts[2], &sizes[3],
                                           texts[3], &sizes[4], texts[4], &sizes[5], texts[5], &sizes[6], texts[6]),
              0u);
    for (size_t i = 0; i < 7; ++i) {
        EXPECT_EQ(sizes[i], 0xFFFF) << i;
        EXPECT_EQ(memchr(texts[i], 0, texts[i].count), nullptr) << i;
    }
}

TEST_F(SimulatorFaults, CutsWhatTheCallerHasNoRoomFor)
{
    sim.Command("set identity.manufacturer ABCD");
    const struct {
        BYTE size;
        std::string text; // of a buffer of x
    } rows[] = {{0, "xxxxxx"}, {3, "ABCxxx"}, {4, "ABCDxx"}, {5, std::string("ABCD\0x", 6)}};
    for (const auto& row : rows) {
        std::string buffer(6, 'x');
        EXPECT_EQ(SIM_ENTRY(GetManufacturer)(row.size, &buffer[0]), 0u);
        EXPECT_EQ(buffer, row.text);
    }
    ULONG count = 1, interface = 0;
    ORV_INT8 strength = 0;
    sim.Command("set signal.pairs -60:4 -70:5");
    EXPECT_EQ(SIM_ENTRY(GetSignalStrengths)(&count, &strength, &interface), 0u);
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(strength, -60);
    EXPECT_EQ(interface, 4u);
}

} // namespace
