// The command monitor: every event with its time, and on a terminal the signal strength as a bar that moves.

#include "ctl/events.h"
#include "ctl/listen.h"

#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <iostream>

namespace ctl {

namespace {

struct BrokenDownTime {
    tm parts = {};
    char text[sizeof "2000-01-01T00:00:00"] = {};
    std::string milliseconds; // ".007"

    BrokenDownTime(std::chrono::system_clock::time_point time, bool local, const char* format)
    {
        const auto since = std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
        const auto seconds = static_cast<time_t>(since / 1000);
        if (local)
            localtime_r(&seconds, &parts);
        else
            gmtime_r(&seconds, &parts);
        strftime(text, sizeof text, format, &parts);
        const std::string digits = std::to_string(since % 1000);
        milliseconds = "." + std::string(3 - digits.size(), '0') + digits;
    }
};

// --- the bar

constexpr int kWeakestDbm = -113;
constexpr int kStrongestDbm = -51;
constexpr int kNoSignal = -250;
constexpr int kBarWidth = 20;

// "-71 dBm [#############-------]"
std::string Bar(int rssi_dbm)
{
    int filled = 0;
    if (rssi_dbm != kNoSignal) {
        const int above = std::clamp(rssi_dbm, kWeakestDbm, kStrongestDbm) - kWeakestDbm;
        filled = (above * kBarWidth + (kStrongestDbm - kWeakestDbm) / 2) / (kStrongestDbm - kWeakestDbm);
    }
    const std::string value = rssi_dbm == kNoSignal ? "none" : std::to_string(rssi_dbm) + " dBm";
    return value + " [" + std::string(static_cast<size_t>(filled), '#') +
           std::string(static_cast<size_t>(kBarWidth - filled), '-') + "]";
}

// The last line of a terminal, below the events.
class SignalLine {
public:
    ~SignalLine()
    {
        if (m_shown) std::cout << '\n' << std::flush; // what comes next begins a line of its own
    }
    void Take(const OrvNotifyRecord& record)
    {
        if (record.uNotify == ORV_NOTIFY_SignalStrength) m_rssi_dbm = record.payload.SignalStrength.nRssi;
        if (record.uNotify == ORV_NOTIFY_HdrSignalStrength) m_hdr_rssi_dbm = record.payload.HdrSignalStrength.nRssi;
    }
    void Clear() const
    {
        if (m_shown) std::cout << "\r\x1b[K";
    }
    void Draw()
    {
        std::string line;
        if (m_rssi_dbm) line += "signal " + Bar(*m_rssi_dbm);
        if (m_hdr_rssi_dbm) line += (line.empty() ? "" : "  ") + ("HDR " + Bar(*m_hdr_rssi_dbm));
        if (line.empty()) return;
        std::cout << line << std::flush;
        m_shown = true;
    }

private:
    std::optional<int> m_rssi_dbm, m_hdr_rssi_dbm;
    bool m_shown = false;
};

int Monitor(Client& client, ListenOptions options)
{
    SignalLine signal;
    const bool draws = !client.Json() && isatty(STDOUT_FILENO) != 0;
    options.command = "monitor";
    options.print = [&](const Arrival& arrival) {
        if (client.Json()) {
            const BrokenDownTime time(arrival.time, false, "%Y-%m-%dT%H:%M:%S");
            Json line = EventToJson(arrival.record);
            line["event"]["time"] = time.text + time.milliseconds + "Z";
            PrintJson(line);
            return;
        }
        const BrokenDownTime time(arrival.time, true, "%H:%M:%S");
        signal.Clear();
        PrintLine(time.text + time.milliseconds + "  " + EventToText(arrival.record));
        if (!draws) return;
        signal.Take(arrival.record);
        signal.Draw();
    };
    return Listen(client, options);
}

} // namespace

void AddMonitorCommands(Client& client)
{
    CLI::App* const sub = client.App().add_subcommand("monitor", "Print everything that happens, with its time");
    client.Run(sub, [&client, given = AddListenOptions(sub)] {
        ListenOptions options = given();
        options.ends_with_cause = true;
        return Monitor(client, std::move(options));
    });
}

} // namespace ctl
