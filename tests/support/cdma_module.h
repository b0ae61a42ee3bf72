// A CDMA module that is selected, for tests of its functions.
#pragma once

#include "talvek/talvek.h"
#include "tests/support/guard_sweep.h"
#include "tests/support/log_capture.h"

class CdmaModule : public ::testing::Test {
protected:
    using Lines = std::vector<std::string>;

    ~CdmaModule() override { OrvApiShutdown(); }
    void Start() { SelectModule(sim, "cdma:5101"); }
    // Commands for the simulated module, with "; " between them.
    void Run(const std::string& commands)
    {
        for (size_t begin = 0; begin < commands.size();) {
            const size_t end = std::min(commands.find("; ", begin), commands.size());
            sim.Command(commands.substr(begin, end - begin));
            begin = end + 2;
        }
    }

    // The calls since the last time.
    Lines Calls()
    {
        const Lines calls = sim.Journal();
        sim.ClearJournal();
        return calls;
    }

    SimHarness sim{"cdma:5101"};
};

// What a getter answers: "CODE VALUE", the value in hexadecimal where it is large, "-" where it is not written; then
// what it logs, each text behind " | ".
template <class T>
std::string Answer(ORV_RCODE(ORV_CALL* getter)(T* out))
{
    constexpr T kAsItWas = 77;
    LogCapture log;
    T value = kAsItWas;
    const ORV_RCODE code = getter(&value);
    char number[16];
    snprintf(number, sizeof number, value > 0xFFFFFF ? "%X" : "%d", static_cast<unsigned>(value));
    std::string answer = std::to_string(code) + " " + (value == kAsItWas ? "-" : number);
    for (const std::string& text : log.Texts())
        answer += " | " + text;
    return answer;
}
