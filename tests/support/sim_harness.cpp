#include "tests/support/sim_harness.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <stdlib.h>

#include <chrono>
#include <utility>

#include "sim/control.h"

namespace {

// The library stays loaded: its state is then the same for the harness and for the library under test, however often
// that one loads and frees it.
decltype(&TalvekSimCommand) LoadedCommand()
{
    static const auto command = [] {
        void* const library = dlopen(TALVEK_SIM_DIRECTORY "/libGobiApi.so", RTLD_NOW | RTLD_LOCAL);
        EXPECT_NE(library, nullptr) << dlerror();
        void* const address = library ? dlsym(library, "TalvekSimCommand") : nullptr;
        return reinterpret_cast<decltype(&TalvekSimCommand)>(address);
    }();
    return command;
}

std::string RegistryText(const std::string& text)
{
    std::string escaped;
    for (const char character : text) {
        if (character == '\\' || character == '"') escaped += '\\';
        escaped += character;
    }
    return escaped;
}

std::mutex g_client_mutex;
ClientRecorder* g_client;

} // namespace

SimHarness::SimHarness(const std::string& model)
{
    SetLibraryPath(TALVEK_SIM_DIRECTORY);
    setenv("TALVEK_REGISTRY", m_folder.Path("registry.reg").c_str(), 1);
    Command("clock virtual");
    Command("model " + model); // which sets the clock to 0
    const std::string product = Command("get module.product");
    char hexadecimal[16];
    snprintf(hexadecimal, sizeof(hexadecimal), "%04X", static_cast<unsigned>(strtoul(product.c_str(), nullptr, 10)));
    WriteRegistry(std::string("VID_3D5E&PID_") + hexadecimal, Command("serial name"));
    ClearJournal();
}

bool SimHarness::TryCommand(const std::string& line, std::string* reply)
{
    const auto command = LoadedCommand();
    if (!command) {
        *reply = "the simulated module is not loaded";
        return false;
    }
    std::vector<char> answer(65536);
    const int status = command(line.c_str(), answer.data(), static_cast<ULONG>(answer.size()));
    *reply = answer.data();
    return status == 0;
}

std::string SimHarness::Command(const std::string& line)
{
    std::string reply;
    if (!TryCommand(line, &reply)) ADD_FAILURE() << line << ": " << reply;
    return reply;
}

std::vector<std::string> SimHarness::Journal() { return SplitLines(Command("journal")); }

void SimHarness::ClearJournal() { Command("journal clear"); }

void SimHarness::WriteRegistry(const std::string& device_id, const std::string& com_port)
{
    RawRegistry("Windows Registry Editor Version 5.00\n\n"
                "[HKEY_CURRENT_USER\\Software\\Kestavo Inc]\n"
                "\"DeviceID\"=\"" +
                RegistryText(device_id) +
                "\"\n\n"
                "[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\RIL]\n"
                "\"ComPort\"=\"" +
                RegistryText(com_port) + "\"\n");
}

void SimHarness::RawRegistry(const std::string& text) { m_folder.Write("registry.reg", text); }

void SimHarness::RemoveRegistry() { std::filesystem::remove(m_folder.Path("registry.reg")); }

void SimHarness::SetLibraryPath(const std::string& folder) { setenv("TALVEK_LIBRARY_PATH", folder.c_str(), 1); }

ClientRecorder::ClientRecorder()
{
    const std::lock_guard<std::mutex> lock(g_client_mutex);
    EXPECT_EQ(g_client, nullptr) << "one client at a time";
    g_client = this;
}

ClientRecorder::~ClientRecorder()
{
    const std::lock_guard<std::mutex> lock(g_client_mutex);
    g_client = nullptr;
}

void ORV_CALL ClientRecorder::Receive(OrvNotifyRecord* record)
{
    std::function<void(const OrvNotifyRecord&)> hook;
    OrvNotifyRecord copy;
    {
        // Held until the copy is kept, so that a client that is taken down meanwhile is waited for.
        const std::lock_guard<std::mutex> lock(g_client_mutex);
        if (!g_client) return;
        copy = *record;
        g_client->Add(copy);
        const std::lock_guard<std::mutex> hooks(g_client->m_mutex);
        hook = g_client->m_hook;
    }
    if (hook) hook(copy);
}

void ClientRecorder::Add(const OrvNotifyRecord& record)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_records.push_back(record);
    m_threads.push_back(std::this_thread::get_id());
    m_came.notify_all();
}

bool ClientRecorder::Wait(size_t count, unsigned timeout_ms)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_came.wait_for(lock, std::chrono::milliseconds(timeout_ms), [&] { return m_records.size() >= count; });
}

std::vector<OrvNotifyRecord> ClientRecorder::Records() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_records;
}

std::vector<ORV_NOTIFY> ClientRecorder::Identifiers() const
{
    std::vector<ORV_NOTIFY> identifiers;
    for (const OrvNotifyRecord& record : Records())
        identifiers.push_back(record.uNotify);
    return identifiers;
}

std::vector<std::thread::id> ClientRecorder::Threads() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_threads;
}

void ClientRecorder::Clear()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_records.clear();
    m_threads.clear();
}

void ClientRecorder::OnRecord(std::function<void(const OrvNotifyRecord&)> hook)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_hook = std::move(hook);
}

std::vector<std::string> SplitLines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

std::u16string Widen(const std::string& text)
{
    std::u16string wide;
    for (const char character : text)
        wide += static_cast<char16_t>(static_cast<unsigned char>(character));
    return wide;
}
