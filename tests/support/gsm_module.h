// A GSM/UMTS module that is selected, with a client that the notifications of network selection are enabled for.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <vector>

#include "platform/hooks.h"
#include "talvek/talvek.h"
#include "tests/support/guard_sweep.h"
#include "tests/support/log_capture.h"

// A replaced clock of the host. No reply comes within the very tick of its command, so a timed send takes none for
// late.
inline DWORD TicksByCall()
{
    static std::atomic<DWORD> ticks{1};
    return ++ticks;
}

// The lines between "; ".
inline std::vector<std::string> Parts(std::string text)
{
    std::vector<std::string> parts;
    for (size_t end; !text.empty(); text.erase(0, end == std::string::npos ? end : end + 2)) {
        end = text.find("; ");
        parts.push_back(text.substr(0, end));
    }
    return parts;
}

inline std::string Ascii(const WCHAR* text, size_t size)
{
    std::string narrow;
    for (size_t i = 0; i < size && text[i] != 0; ++i)
        narrow += static_cast<char>(text[i]);
    return narrow;
}

class GsmModule : public ::testing::Test {
public:
    GsmModule() { platform_hooks::ReplaceCall("GetTickCount", reinterpret_cast<FARPROC>(&TicksByCall)); }
    ~GsmModule() override
    {
        EXPECT_TRUE(platform_hooks::DrainThreads(10000));
        OrvApiShutdown();
        platform_hooks::Reset();
    }

    void Start(const std::string& model = "umts:5120")
    {
        sim.WriteRegistry("VID_3D5E&PID_" + model.substr(model.find(':') + 1), sim.Command("serial name"));
        SelectModule(sim, model);
        OrvAirServerList list = {};
        ASSERT_EQ(OrvGetAvailAirServers(&list), ORV_RCODE_OK);
        ASSERT_EQ(OrvRegisterCallback(client.Callback(), 0), ORV_RCODE_OK);
        for (const ORV_NOTIFY id : {2016u, 2017u, 2019u})
            ASSERT_EQ(OrvNotify(id, 0), ORV_RCODE_OK);
        client.Clear();
        sim.ClearJournal();
    }
    void Run(const std::string& commands)
    {
        for (const std::string& command : Parts(commands))
            sim.Command(command);
    }
    // "2017=1" for each value that was delivered.
    std::vector<std::string> Values()
    {
        std::vector<std::string> values;
        for (const OrvNotifyRecord& record : client.Records()) {
            EXPECT_EQ(record.uPayloadSize, 8u);
            values.push_back(std::to_string(record.uNotify) + "=" + std::to_string(record.payload.Value.uValue));
        }
        return values;
    }
    void Scan()
    {
        client.Clear();
        ASSERT_EQ(OrvStartPLMNSearch(), ORV_RCODE_OK);
        ASSERT_TRUE(client.Wait(1));
        ASSERT_TRUE(platform_hooks::DrainThreads(10000)); // it logs once more
    }

    ClientRecorder client; // outlives the module's threads
    SimHarness sim;
};

// "MCC MNC RAT FLAGS NAME", with the flags in the record's order, or the code in angle brackets.
inline std::string NextNetwork()
{
    OrvPlmnRecord r;
    memset(&r, 0x77, sizeof r);
    if (const ORV_RCODE code = OrvGetPLMNSelection(&r)) {
        EXPECT_EQ(r.sizeStruct, 0x77777777u) << "written without success";
        return "<" + std::to_string(code) + ">";
    }
    EXPECT_EQ(r.sizeStruct, 120u);
    EXPECT_EQ(r.eMode, 1u);
    EXPECT_EQ(r.szLongName[0], 0);
    EXPECT_EQ(r.bReserved, 0);
    std::string text = std::to_string(r.nMCC) + " " + std::to_string(r.nMNC) + " " + std::to_string(r.eRat) + " ";
    for (const BYTE flag : {r.bInUse, r.bForbidden, r.bRoaming, r.bPreferred, r.bMore})
        text += std::to_string(flag);
    return text + " " + Ascii(r.szShortName, 14);
}
