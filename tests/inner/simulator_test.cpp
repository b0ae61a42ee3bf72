// The simulated module itself: its entry points, its verbs, and what its environment asks for.

#include <gtest/gtest.h>

#include <stdlib.h>
#include <string.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "sim/control.h"
#include "tests/support/sim_entry.h"
#include "tests/support/sim_harness.h"

namespace {

using Lines = std::vector<std::string>;

class Simulator : public ::testing::Test {
protected:
    SimHarness sim{"umts"};
};

// --- entry points
// -----------------------------------------------------------------------------------------------------

template <class... Arguments>
ULONG CallWithNothing(ULONG (*entry)(Arguments...))
{
    return entry(Arguments{}...);
}

struct EntryRow {
    const char* name;
    ULONG (*call)(); // with nulls and zeros
};
#define ENTRY_POINT(name) {#name, [] { return CallWithNothing(SIM_ENTRY(name)); }},
#define REGISTRATION(name, type) {#name, [] { return CallWithNothing(SimRegistration<type>(#name)); }},
const EntryRow kEntryRows[] = {
#include "sim/entry_point_rows.h"
};
#undef ENTRY_POINT
#undef REGISTRATION

TEST_F(Simulator, HasEveryEntryPointThatIsLookedUp)
{
    std::ifstream file(TALVEK_SOURCE_DIRECTORY "/tests/vectors/lookup_order.txt");
    std::set<std::string> names;
    for (std::string name; std::getline(file, name);)
        names.insert(name);
    EXPECT_EQ(names.size(), 220u);
    for (const std::string& name : names)
        EXPECT_NE(dlsym(SimLibrary(), name.c_str()), nullptr) << name;
    EXPECT_EQ(dlsym(SimLibrary(), "OrvM2MAV_AudioGetSTG"), nullptr) << "is looked up by nobody";
}

TEST_F(Simulator, EveryEntryPointTakesNullsAndIsSupportedByOneKindOfModule)
{
    std::set<std::string> supported;
    for (const char* model : {"cdma", "umts"}) {
        sim.Command(std::string("model ") + model);
        for (const EntryRow& row : kEntryRows) {
            SCOPED_TRACE(std::string(model) + " " + row.name);
            ASSERT_NE(dlsym(SimLibrary(), row.name), nullptr);
            sim.ClearJournal();
            const ULONG status = row.call();
            if (status != 1025) supported.insert(row.name);
            EXPECT_TRUE(!strstr(row.name, "Callback") || status == 0) << status;
            const Lines journal = sim.Journal();
            ASSERT_EQ(journal.size(), 1u);
            EXPECT_EQ(journal[0].substr(0, journal[0].find('(')), row.name);
        }
    }
    EXPECT_EQ(supported.size(), std::size(kEntryRows));
}

TEST_F(Simulator, EveryEntryPointObeysAFaultAndMissesAModuleThatIsAbsent)
{
    const std::set<std::string> without_module = {"QCWWANDisconnect"};
    for (const EntryRow& row : kEntryRows) {
        sim.Command(std::string("fail ") + row.name + " 77");
        EXPECT_EQ(row.call(), 77u) << row.name;
    }
    sim.Command("clear all");
    sim.Command("module leaves");
    for (const EntryRow& row : kEntryRows) {
        const bool works = strstr(row.name, "Callback") != nullptr || without_module.count(row.name) > 0;
        EXPECT_EQ(row.call(), works ? 0u : 6u) << row.name;
    }
}

TEST_F(Simulator, JournalsCallsWithTheirInputs)
{
    char apn[] = "inter\"net\n";
    WCHAR path[] = ORV_TEXT("/a\u00E9");
    char text[85];
    ULONG word = 7;
    BYTE octet = 20, octets[20];
    ORV_INT8 thresholds[] = {-105, -95, -85, -75, -65};
    SIM_ENTRY(GetPower)(&word);
    SIM_ENTRY(SetPower)(5);
    SIM_ENTRY(StartDataSession2)(apn, nullptr, nullptr, &word, nullptr);
    SIM_ENTRY(GetFirmwareRevisions)(85, text, 85, text, 85, text);
    SIM_ENTRY(GetServingNetworkCapabilities)(&octet, octets);
    SIM_ENTRY(GetRFInfo)(nullptr, nullptr);
    SIM_ENTRY(UpgradeFirmware2kW)(path);
    SimRegistration<GobiSetPower>("SetPowerCallback")([](ULONG) {});
    SimRegistration<GobiSetPower>("SetPowerCallback")(nullptr);
    SimRegistration<GobiSetSignalStrength>("SetSignalStrengthCallback")([](ORV_INT8, ULONG) {}, 5, thresholds);
    EXPECT_EQ(sim.Command("registered"), "SetSignalStrengthCallback");
    EXPECT_EQ(sim.Journal(),
              (Lines{"GetPower()", "SetPower(5)", "StartDataSession2(\"inter\\\"net\\n\", null, null)",
                     "GetFirmwareRevisions(85, 85, 85)", "GetServingNetworkCapabilities(20)", "GetRFInfo(null)",
                     "UpgradeFirmware2kW(\"/a\\xC3\\xA9\")", "SetPowerCallback(set)", "SetPowerCallback(null)",
                     "SetSignalStrengthCallback(set, 5, [-105 -95 -85 -75 -65])"}));
}

TEST_F(Simulator, SaysHowManyLinesTheJournalDropped)
{
    constexpr size_t kCalls = 9000;
    for (size_t i = 0; i < kCalls; ++i)
        SIM_ENTRY(SetAutoConnect)(0);
    SIM_ENTRY(SetPower)(0);
    const Lines journal = sim.Journal();
    ASSERT_GT(journal.size(), 2000u);
    EXPECT_EQ(journal[0], "# " + std::to_string(kCalls + 2 - journal.size()) + " earlier lines dropped");
    EXPECT_EQ(journal[1], "SetAutoConnect(0)") << "a whole line";
    EXPECT_EQ(journal.back(), "SetPower(0)");
}

// --- verbs
// ------------------------------------------------------------------------------------------------------------

TEST_F(Simulator, RefusesWhatItDoesNotKnow)
{
    const struct {
        const char* line;
        const char* reason;
    } rows[] = {
        {"frobnicate", "unknown verb \"frobnicate\""},
        {"set network.colour 3", "unknown field \"network.colour\""},
        {"set network.mcc", "missing network.mcc"},
        {"set network.mcc 65536", "network.mcc 65536 is not within 0 and 65535"},
        {"set network.mcc -1", "network.mcc -1 is not within 0 and 65535"},
        {"set network.mcc 0x", "network.mcc \"0x\" is not a number"},
        {"set network.mcc 1 2", "unexpected \"2\""},
        {"set session.sent 18446744073709551616", "session.sent \"18446744073709551616\" is not a number"},
        {"set signal.pairs -70", "signal.pairs takes rows of 2 numbers joined by ':'"},
        {"set signal.pairs -70:5 -129:5", "-129 is not within -128 and 127"},
        {"set network.interfaces 1 2 3 4 5 6 7 8 9 10 11", "network.interfaces has more than 10 rows"},
        {"set ip.address 192.0.2.256", "ip.address takes an address such as 192.0.2.1"},
        {"set ip.address 192.0.2", "ip.address takes an address such as 192.0.2.1"},
        {"set images.list 0g", "images.list is not a row of octets, two hexadecimal digits each"},
        {"set identity.model \"no end", "a quoted word has no end"},
        {"set identity.model \"a\"b", "a blank must follow a quoted word"},
        {"set identity.model \"\\q\"", "unknown escape \\q"},
        {"set identity.model \"\\x4\"", "\\x needs two hexadecimal digits"},
        {"emit thunder 1", "unknown event \"thunder\""},
        {"emit power", "missing MODE"},
        {"emit signal -129 5", "DBM INTERFACE -129 is not within -128 and 127"},
        {"emit voicemail 0:1", "at most 32 triples of octets such as 0:1:3"},
        {"fail GetNothing 1", "unknown entry point \"GetNothing\""},
        {"fail GetPower 0", "status 0 is not within 1 and 4294967295"},
        {"hostile GetPower rudeness", "unknown hostility \"rudeness\""},
        {"clear GetNothing", "unknown entry point \"GetNothing\""},
        {"on GetPower frobnicate", "unknown verb \"frobnicate\""},
        {"after 10 frobnicate 1", "unknown verb \"frobnicate\""},
        {"after soon emit power 1", "milliseconds \"soon\" is not a number"},
        {"clock slow", "unknown clock \"slow\""},
        {"model umts:5121", "unknown model \"umts:5121\""},
        {"model gsm", "unknown model \"gsm\""},
        {"at frobnicate", "unknown verb \"at frobnicate\""},
        {"at hangup sometimes", "unknown time \"sometimes\""},
        {"serial frobnicate", "unknown verb \"serial frobnicate\""},
        {"threads maybe", "threads \"maybe\" is neither on nor off"},
    };
    for (const auto& row : rows) {
        std::string reason;
        EXPECT_FALSE(sim.TryCommand(row.line, &reason)) << row.line;
        EXPECT_EQ(reason, row.reason) << row.line;
    }
    std::string reason;
    EXPECT_FALSE(sim.TryCommand("set identity.model " + std::string(12300, 'x'), &reason));
    EXPECT_EQ(reason, "the line has 12288 octets or more");
}

TEST_F(Simulator, KeepsWhatIsSet)
{
    const struct {
        const char* set;
        const char* field;
        const char* value;
    } rows[] = {
        {"set identity.model \"a b\\r\\n\\\"\\\\\\x41\"", "identity.model", "a b\r\n\"\\A"},
        {"set identity.model \"\"  # a remark", "identity.model", ""},
        {"set network.mnc 0xFFff", "network.mnc", "65535"},
        {"set session.sent 18446744073709551615", "session.sent", "18446744073709551615"},
        {"set signal.pairs -128:1 127:2", "signal.pairs", "-128:1 127:2"},
        {"set network.caps \"1 3\" 9", "network.caps", "1 3 9"},
        {"set network.caps none", "network.caps", ""},
        {"set rf.instances 1:0:384", "rf.instances", "1:0:384"},
        {"set images.list 00ff10", "images.list", "00FF10"},
        {"set ip.gateway 198.51.100.7", "ip.gateway", "198.51.100.7"},
    };
    for (const auto& row : rows) {
        sim.Command(row.set);
        EXPECT_EQ(sim.Command(std::string("get ") + row.field), row.value) << row.set;
    }
    const Lines fields = SplitLines(sim.Command("fields"));
    for (const auto& row : rows)
        EXPECT_EQ(std::count(fields.begin(), fields.end(), row.field), 1) << row.field;
    for (const std::string& field : fields)
        sim.Command("get " + field);
    sim.Command("reset");
    EXPECT_EQ(sim.Command("get identity.model"), "KT5230");
}

TEST_F(Simulator, AScriptNamesTheLineThatFails)
{
    const auto script = SimEntry("TalvekSimScript", decltype (&TalvekSimScript)());
    char reply[100];
    EXPECT_EQ(script("# a remark\n\n  set power.mode 6 # another\r\nset network.mcc 262\n", reply, sizeof(reply)), 0);
    EXPECT_STREQ(reply, "");
    EXPECT_EQ(sim.Command("get power.mode") + " " + sim.Command("get network.mcc"), "6 262");
    EXPECT_EQ(script("\nset power.mode 5\nemit thunder\nset power.mode 4", reply, sizeof(reply)), 1);
    EXPECT_STREQ(reply, "line 3: unknown event \"thunder\"");
    EXPECT_EQ(sim.Command("get power.mode"), "5") << "ends at the fault";
    EXPECT_EQ(script("bad", reply, 8), 1);
    EXPECT_STREQ(reply, "line 1:") << "cut and terminated";
    EXPECT_EQ(script("bad", nullptr, 0), 1);
    EXPECT_EQ(script(nullptr, reply, sizeof(reply)), 1);
}

TEST_F(Simulator, ModelsDifferInTechnologyAndProduct)
{
    const struct {
        const char* model;
        const char* product;
        const char* technology;
        std::string carrier;
    } rows[] = {{"cdma", "20737", "0", "5"},
                {"cdma:5111", "20753", "0", "5"},
                {"umts", "20768", "1", "103"},
                {"umts:5141", "20801", "1", "103"}};
    for (const auto& row : rows) {
        sim.Command(std::string("model ") + row.model);
        EXPECT_EQ(sim.Command("get module.product"), row.product) << row.model;
        EXPECT_EQ(sim.Command("get firmware.technology"), row.technology) << row.model;
        EXPECT_EQ(sim.Command("get package.carrier"), row.carrier) << row.model;
    }
}

TEST_F(Simulator, IsDocumentedAndDocumentsNothingElse)
{
    std::ifstream file(TALVEK_SOURCE_DIRECTORY "/docs/simulator.md");
    std::set<std::string> documented[3];
    enum { kVerbs, kFields, kEvents, kOther } part = kOther;
    for (std::string line; std::getline(file, line);) {
        if (line.rfind("## ", 0) == 0) {
            part = line == "## Verbs" ? kVerbs : line == "## Fields" ? kFields : line == "## Events" ? kEvents : kOther;
        }
        if (part == kOther || line.rfind("| `", 0) != 0) continue;
        const std::string cell = line.substr(0, line.find(" | ", 2));
        for (size_t at = cell.find('`'); at != std::string::npos; at = cell.find('`', cell.find('`', at + 1) + 1)) {
            documented[part].insert(cell.substr(at + 1, cell.find_first_of(" `", at + 1) - at - 1));
        }
    }
    const char* const lists[] = {"help", "fields", "events"};
    for (const auto kind : {kVerbs, kFields, kEvents}) {
        std::set<std::string> known;
        for (const std::string& line : SplitLines(sim.Command(lists[kind])))
            known.insert(line.substr(0, line.find(' ')));
        EXPECT_EQ(documented[kind], known) << lists[kind];
    }
}

TEST_F(Simulator, RunsTheScenariosOfTheExamples)
{
    const auto script = SimEntry("TalvekSimScript", decltype (&TalvekSimScript)());
    size_t scenarios = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TALVEK_SOURCE_DIRECTORY "/examples/scenarios")) {
        std::ifstream file(entry.path());
        std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        char reply[200];
        EXPECT_EQ(script(text.c_str(), reply, sizeof(reply)), 0) << entry.path() << ": " << reply;
        sim.Command("advance 60000");
        EXPECT_EQ(sim.Command("queue"), "");
        EXPECT_EQ(sim.Command("get module.present"), "1");
        ++scenarios;
    }
    EXPECT_GE(scenarios, 2u);
}

// --- environment
// ------------------------------------------------------------------------------------------------------

TEST(SimulatorEnvironment, ChoosesTheModelThePortAndTheScenarioWhenTheLibraryIsLoaded)
{
    ScratchFolder folder;
    const std::string scenario = folder.Write("start.sim", "set network.mcc 262\n");
    setenv("TALVEK_SIM", "cdma:5111", 1);
    setenv("TALVEK_SIM_PORT", folder.Path("port").c_str(), 1);
    setenv("TALVEK_SIM_SCENARIO", scenario.c_str(), 1);
    // A library of its own, which nobody has loaded yet.
    void* const library = dlopen(TALVEK_VARIANTS_DIRECTORY "/no_rtre_config/libGobiApi.so", RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    const auto command = reinterpret_cast<decltype(&TalvekSimCommand)>(dlsym(library, "TalvekSimCommand"));
    const auto connect = reinterpret_cast<ULONG (*)()>(dlsym(library, "QCWWANConnect"));
    const auto disconnect = reinterpret_cast<ULONG (*)()>(dlsym(library, "QCWWANDisconnect"));
    const auto get = [&](const char* line) {
        char reply[200];
        EXPECT_EQ(command(line, reply, sizeof(reply)), 0) << reply;
        return std::string(reply);
    };
    EXPECT_EQ(get("get module.product"), std::to_string(0x5111));
    EXPECT_EQ(std::filesystem::read_symlink(folder.Path("port")).string(), get("serial name"));
    EXPECT_EQ(get("get network.mcc"), "1");
    EXPECT_EQ(connect(), 0u);
    EXPECT_EQ(get("get network.mcc"), "262");
    disconnect();
    folder.Write("start.sim", "set network.mcc 262\nset network.mcc red\n");
    testing::internal::CaptureStderr();
    EXPECT_EQ(connect(), 1u);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "talvek-sim: " + scenario + ": line 2: network.mcc \"red\" is not a number\n");
    for (const char* name : {"TALVEK_SIM", "TALVEK_SIM_PORT", "TALVEK_SIM_SCENARIO"})
        unsetenv(name);
    dlclose(library);
    EXPECT_FALSE(std::filesystem::is_symlink(folder.Path("port"))) << "nothing stays behind";
}

} // namespace
