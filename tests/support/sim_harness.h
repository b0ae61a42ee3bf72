// The simulated module for a test of the public interface: a folder with a registry file, the stand-in vendor library
// in this process, and the environment that leads the library under test to both.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "talvek/notify.h"
#include "tests/support/scratch_folder.h"

class SimHarness {
public:
    // `model`: as the verb `model` takes it, for example "umts" or "cdma:5111". The clock is virtual, the journal
    // empty. The registry names the model's product and the AT port.
    explicit SimHarness(const std::string& model = "umts");

    // Runs one line of the verb table and returns its reply. A line that fails, fails the test.
    std::string Command(const std::string& line);
    // The same; `reply` is then the reason. Returns whether the line succeeded.
    bool TryCommand(const std::string& line, std::string* reply);
    std::vector<std::string> Journal();
    void ClearJournal();

    // The values "DeviceID" and "ComPort".
    void WriteRegistry(const std::string& device_id, const std::string& com_port);
    void RawRegistry(const std::string& text);
    void RemoveRegistry();
    // The folder in which the library under test looks for the vendor library.
    void SetLibraryPath(const std::string& folder);
    // A path in the test's own folder.
    std::string Path(const std::string& name) const { return m_folder.Path(name); }

private:
    ScratchFolder m_folder;
};

// A client: keeps a copy of every record that its callback receives. One at a time.
class ClientRecorder {
public:
    ClientRecorder();
    ~ClientRecorder();
    ClientRecorder(const ClientRecorder&) = delete;
    ClientRecorder& operator=(const ClientRecorder&) = delete;

    OrvNotifyCallback Callback() const { return &Receive; }
    // Waits until `count` records have come. Returns false after `timeout_ms`.
    bool Wait(size_t count, unsigned timeout_ms = 10000);
    std::vector<OrvNotifyRecord> Records() const;
    std::vector<ORV_NOTIFY> Identifiers() const;
    // The thread that each record came on.
    std::vector<std::thread::id> Threads() const;
    void Clear();
    // For a test that registers a callback of its own.
    void Add(const OrvNotifyRecord& record);
    // Runs in the callback, after the record has been kept; null for nothing.
    void OnRecord(std::function<void(const OrvNotifyRecord&)> hook);

private:
    static void ORV_CALL Receive(OrvNotifyRecord* record);

    mutable std::mutex m_mutex;
    std::condition_variable m_came;
    std::vector<OrvNotifyRecord> m_records;
    std::vector<std::thread::id> m_threads;
    std::function<void(const OrvNotifyRecord&)> m_hook;
};

std::vector<std::string> SplitLines(const std::string& text);
// Each octet becomes one 16-bit character.
std::u16string Widen(const std::string& text);
