// Random events with random arrays, while a client switches, registers, suspends and resumes: every record that arrives
// has the size of its payload, and nothing in the payload contradicts it. TALVEK_STORM_EVENTS sets how many (./dev
// soak).

#include <gtest/gtest.h>

#include <stdlib.h>
#include <string.h>

#include <atomic>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "api/objects.h"
#include "notify/OrvNotify.h"
#include "notify/adapters.h"
#include "platform/hooks.h"
#include "state/globals.h"
#include "tests/support/sim_harness.h"

namespace {

constexpr unsigned kDefaultEvents = 20000;
constexpr unsigned kAtOnce = 64; // delivery threads before the storm waits for them
constexpr unsigned kThreads = 4;

unsigned EventCount()
{
    const char* const setting = getenv("TALVEK_STORM_EVENTS");
    return setting ? static_cast<unsigned>(strtoul(setting, nullptr, 10)) : kDefaultEvents;
}

std::atomic<unsigned> g_received;
std::atomic<unsigned> g_wrong;

// Whether the payload is as its size says.
bool IsSound(const OrvNotifyRecord& record)
{
    const OrvNotifyPayload& payload = record.payload;
    switch (record.uNotify) {
    case 5:
        return record.uPayloadSize == 12 && payload.PowerState.uPowerState <= 5;
    case 105:
        return record.uPayloadSize == 4;
    case 103:
        return record.uPayloadSize == 12 && payload.SignalStrength.nRssi <= 0 && payload.SignalStrength.nRssi >= -250;
    case 116:
        return record.uPayloadSize == 40 && payload.NetworkTime.uMonth <= 255;
    case 500:
        return record.uPayloadSize == 16 || record.uPayloadSize == 28;
    case 502:
        return record.uPayloadSize == 176 && payload.CellBroadcast.uLength <= 168;
    case 1002:
    case 1042:
        return record.uPayloadSize == 8 && payload.Value.uValue <= 4;
    case 1003:
    case 1041:
    case 1030:
    case 2013:
    case 2018:
    case 1039:
        return record.uPayloadSize == 8;
    case 1006:
    case 2012:
    case 1040:
        return record.uPayloadSize == 12;
    case 1007:
        return record.uPayloadSize == 84;
    case 1008:
    case 1012:
    case 2280:
    case 2020:
        return record.uPayloadSize == 16;
    case 1009:
        return record.uPayloadSize == 48 && strnlen(payload.CallIncoming.szNumber, 36) < 36;
    case 1032:
        return record.uPayloadSize == 12 && payload.ActivationStatus.uState <= 9;
    case 2014:
        if (record.uPayloadSize != 5328 || payload.PhonebookRecords.uCount > 10) return false;
        for (const OrvPhonebookEntry& entry : payload.PhonebookRecords.entries)
            if (entry.uNumberLength > 256 || entry.uNameLength > 256) return false;
        return true;
    case 2015:
        return record.uPayloadSize == 880 && payload.EmergencyNumbers.uCount - 1 < 10;
    case 2029:
        return record.uPayloadSize == 92 && payload.PktSession.bConnected <= 1;
    case 2269:
        return record.uPayloadSize == 32 && payload.OMADMState.sizeStruct == 32;
    case 2270:
        return record.uPayloadSize == 20 && payload.OMADMAlert.nState == 2;
    case 2281:
        return record.uPayloadSize == 276 && payload.USSD.uLength <= 255;
    case 2283:
        return record.uPayloadSize == 4104;
    case 2284:
        return record.uPayloadSize == 524;
    default:
        return false;
    }
}

void ORV_CALL Inspect(OrvNotifyRecord* record)
{
    ++g_received;
    if (!IsSound(*record)) {
        ++g_wrong;
        ADD_FAILURE() << "identifier " << record->uNotify << ", size " << record->uPayloadSize;
    }
}

// One thread's source of random events. Arrays are blocks of their exact size, so that a read beyond one is found.
class Storm {
public:
    explicit Storm(unsigned seed) : m_random(seed) {}

    void Send()
    {
        switch (m_random() % 20) {
        case 0:
            return GobiAPIPowerCallback(Small());
        case 1:
            return GobiAPIRoamingIndicatorCallback(Small());
        case 2:
            return GobiAPISignalStrengthCallback(static_cast<ORV_INT8>(m_random()), Small());
        case 3:
            return WithOctets(255, [&](BYTE* octets) { GobiAPIDataCapabilities(octets ? Octet() : 7, octets); });
        case 4:
            return RFInfoCallback(Small(), Word(), Word());
        case 5:
            return SessionStateCallback(Small(), Word());
        case 6:
            return ByteTotalsCallback(Word() * 0x100000001ull, Word());
        case 7:
            return ActivationStatusCallback(Small());
        case 8:
            return NITZCallback(Half(), Octet(), Octet(), Octet(), Octet(), Octet(), Octet(), Octet(), Octet());
        case 9:
            return NewSMSCallback(Small(), Word());
        case 10:
            return SendBroadcast();
        case 11:
            return SendVoiceMail();
        case 12:
            return OMADMStateCallback(Small(), Small());
        case 13:
            return OMADMAlertCallback(Small(), Half());
        case 14:
            return SendCalls();
        case 15:
            return SendInformation();
        case 16:
            return WithRecord<USSInfo>([&](USSInfo* info) {
                BYTE type = Octet();
                USSDCallback(Maybe(&type), info);
            });
        case 17:
            return SendPhonebook();
        case 18:
            return SendEmergencyList();
        default:
            return SendOmaEx();
        }
    }

private:
    ULONG Word() { return static_cast<ULONG>(m_random()); }
    WORD Half() { return static_cast<WORD>(m_random()); }
    BYTE Octet() { return static_cast<BYTE>(m_random()); }
    ULONG Small() { return m_random() % 8 ? Word() % 12 : Word(); }
    template <class T>
    T* Maybe(T* pointer)
    {
        return m_random() % 16 ? pointer : nullptr;
    }
    template <class T>
    std::unique_ptr<T[]> Random(size_t count)
    {
        std::unique_ptr<T[]> block(new T[count]);
        BYTE* octets = reinterpret_cast<BYTE*>(block.get());
        for (size_t i = 0; i < count * sizeof(T); ++i)
            octets[i] = Octet();
        return block;
    }
    template <class Use>
    void WithOctets(size_t count, Use use)
    {
        const auto block = Random<BYTE>(count);
        use(Maybe(block.get()));
    }
    template <class T, class Use>
    void WithRecord(Use use)
    {
        const auto block = Random<T>(1);
        use(Maybe(block.get()));
    }
    void SendBroadcast()
    {
        const WORD length = m_random() % 4 ? static_cast<WORD>(m_random() % 200) : Half();
        WithOctets(length ? length : 1,
                   [&](BYTE* octets) { NewSMSCBCallback(Octet(), Word(), Octet(), length, octets); });
    }
    void SendVoiceMail()
    {
        const BYTE count = Octet();
        const auto a = Random<BYTE>(count + 1u), b = Random<BYTE>(count + 1u), c = Random<BYTE>(count + 1u);
        VoiceMessageCallback(count, Maybe(a.get()), Maybe(b.get()), Maybe(c.get()));
    }
    void SendCalls()
    {
        const auto calls = Random<arrCallInfo>(1);
        const auto numbers = Random<arrRemotePartyNum>(1);
        const auto options = Random<arrSvcOption>(1);
        const auto reasons = Random<arrCallEndReason>(1);
        for (auto& call : calls[0].calls)
            call.state = static_cast<BYTE>(m_random() % 11);
        CallInfoCallback(Maybe(calls.get()), Maybe(numbers.get()), nullptr, nullptr, Maybe(options.get()),
                         Maybe(reasons.get()), nullptr, nullptr, nullptr, nullptr);
    }
    void SendInformation()
    {
        const auto signal = Random<signalInfo>(1);
        const auto caller = Random<callerIDInfo>(1);
        BYTE call_id = Octet();
        InfoRecCallback(Maybe(&call_id), Maybe(signal.get()), Maybe(caller.get()), nullptr, nullptr, nullptr, nullptr,
                        nullptr, nullptr, nullptr, nullptr);
    }
    void SendPhonebook()
    {
        const WORD count = static_cast<WORD>(m_random() % 30);
        const auto records = Random<arrPBInfo>(count + 1u);
        ReadSIMPhoneBookCallback(Octet(), count, Maybe(records.get()));
        AllPhonebookInitDoneCallback(Octet(), nullptr, nullptr);
    }
    void SendEmergencyList()
    {
        const auto entries = Random<emergencyNumberEntry>(50);
        EmergencyListCallback(Octet(), Maybe(entries.get()));
    }
    void SendOmaEx()
    {
        const auto update = Random<FUMOInfo>(1);
        const auto oma = Random<OMAInfo>(1);
        OMAEXEventCallback(Maybe(update.get()), Maybe(oma.get()));
        BYTE mode = Octet();
        EmergencyModeCallback(Maybe(&mode));
    }

    std::mt19937 m_random;
};

// What the client does meanwhile, a step at a time.
void DisturbAsAClient(std::mt19937& random)
{
    constexpr ORV_NOTIFY kIdentifiers[] = {5,    105,  103,  114,  500,  501,  1002, 1003, 1006, 1007, 1008, 1012,
                                           1027, 1032, 1039, 1040, 1041, 1042, 2012, 2018, 2029, 2269, 2270};
    const ORV_NOTIFY id = kIdentifiers[random() % std::size(kIdentifiers)];
    switch (random() % 8) {
    case 0:
        g_OrvNotify.Remove(id, 0);
        break;
    case 1:
        g_OrvNotify.DeregisterClient();
        break;
    case 2:
        g_OrvNotify.DisableOnSuspend();
        break;
    case 3:
        g_OrvNotify.EnableOnResume();
        break;
    default:
        g_OrvNotify.RegisterClient(Inspect, &g_GobiDll);
        g_OrvNotify.Add(id, 0);
    }
}

TEST(ThreadsEventStorm, NoRecordContradictsItsSize)
{
    SimHarness sim("cdma");
    ASSERT_TRUE(g_GobiDll.Initialize());
    g_WirelessTech = ORV_TECH_CDMA;
    sim.Command("hostile GetSignalStrengths scribble");
    sim.Command("hostile GetServingNetworkCapabilities scribble");
    g_OrvNotify.RegisterClient(Inspect, &g_GobiDll);

    std::atomic<bool> finished{false};
    std::thread client([&] {
        std::mt19937 random(99);
        while (!finished)
            DisturbAsAClient(random);
    });
    std::vector<std::thread> module;
    for (unsigned i = 0; i < kThreads; ++i) {
        module.emplace_back([i] {
            Storm storm(i + 1);
            for (unsigned sent = 0; sent < EventCount() / kThreads; ++sent) {
                storm.Send();
                if (platform_hooks::RunningThreads() > kAtOnce) platform_hooks::DrainThreads(30000);
            }
        });
    }
    for (std::thread& thread : module)
        thread.join();
    finished = true;
    client.join();
    ASSERT_TRUE(platform_hooks::DrainThreads(60000));
    g_OrvNotify.DeregisterClient();
    EXPECT_GT(g_received.load(), 0u);
    EXPECT_EQ(g_wrong.load(), 0u);
}

} // namespace
