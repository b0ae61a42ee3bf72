// A process that loads the utility library, as it finds TALVEK_LOG, and logs: TALVEK_LOG is read at that moment only.
//
//   talvek_log_probe each       every log call once, without looking at the level
//   talvek_log_probe no-slots   the same, with no thread-local word left for the library
//   talvek_log_probe hostile    texts that try to break out of their line
//   talvek_log_probe reloaded   one entry from each of 1200 loads of the library
//   talvek_log_probe killed     one entry, and then the process dies
//   talvek_log_probe captured   one entry of each level while a sink has raised the level
//   talvek_log_probe threads N  100 entries from each of four threads, named N
#include <dlfcn.h>
#include <signal.h>
#include <stdio.h>
#include <sys/resource.h>

#include <string>
#include <thread>
#include <vector>

#include "platform/hooks.h"
#include "utility/ov_utility.h"

namespace {

constexpr const char* kLibrary = TALVEK_LIBRARY_DIRECTORY "/libov_utility.so";

struct Utility {
    decltype(&::LogStoreFileLine) LogStoreFileLine;
    decltype(&::LogC) LogC;
    decltype(&::LogW) LogW;
    decltype(&::WriteLog) WriteLog;
    decltype(&::TBD_Output) TBD_Output;
    decltype(&::TBD_Assert) TBD_Assert;
    decltype(&::DisplayRawData) DisplayRawData;
    decltype(&::OvCaptureLog) OvCaptureLog;
};

template <class Function>
bool Find(void* library, const char* name, Function* function)
{
    *function = reinterpret_cast<Function>(dlsym(library, name));
    if (!*function) fprintf(stderr, "no %s\n", name);
    return *function;
}

void* Load(Utility* u)
{
    void* const library = dlopen(kLibrary, RTLD_NOW);
    if (!library) {
        fprintf(stderr, "%s\n", dlerror());
        return nullptr;
    }
    const bool found = Find(library, "LogStoreFileLine", &u->LogStoreFileLine) && Find(library, "LogC", &u->LogC) &&
                       Find(library, "LogW", &u->LogW) && Find(library, "WriteLog", &u->WriteLog) &&
                       Find(library, "TBD_Output", &u->TBD_Output) && Find(library, "TBD_Assert", &u->TBD_Assert) &&
                       Find(library, "DisplayRawData", &u->DisplayRawData) &&
                       Find(library, "OvCaptureLog", &u->OvCaptureLog);
    return found ? library : nullptr;
}

void LogEach(const Utility& u)
{
    u.LogStoreFileLine(TXT(".\\TALVEK.cpp"), 218);
    u.LogC("narrow %d", 7);
    u.LogStoreFileLine(TXT(".\\sms.cpp"), 3);
    u.LogW(TXT("wide %s"), TXT("Gr\u00FC\u00DFe"));
    u.WriteLog(1, "%s", "OrvApiStartup");
    u.TBD_Output(4, 1, TXT("information %x"), 0xAB);
    u.TBD_Output(4, 2, TXT("fault"));
    u.TBD_Assert(0, "ASSERTION FAILURE: ===>never", TXT(".\\OrvAtPort.cpp"), 42);
    u.TBD_Assert(1, "ASSERTION FAILURE: ===>held", TXT(".\\OrvAtPort.cpp"), 43);
    u.DisplayRawData("WriteFile data: ", "AT\r", 3);
}

void LogHostile(const Utility& u)
{
    u.LogC("two\r\nlines\tand\x01\x1B[2J\x7F");
    u.LogC("NUL %c.", 0);
    u.LogC("octets %s",
           "\xE9 \xC0\x80 \xE0\x9F\x80 \xED\xA0\x80 \xF0\x8F\x80\x80 \xF4\x90\x80\x80 \xF5\x80\x80\x80 \xC3");
    u.LogC("C1 %s", "\xC2\x9B, UTF-8 \xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80");
    static const WCHAR unpaired[] = {'h', 0xD83D, ' ', 'l', 0xDE00, ' ', 0xD83D, 0xDE00, 0};
    u.LogW(TXT("surrogates %s"), unpaired);
    u.LogStoreFileLine(TXT(".\\a\nb.cpp"), 1);
    u.LogC("%s", std::string(3000, 'x').c_str());
    u.LogC("%s%s%s%s%s", std::string(600, '\x01').c_str(), std::string(600, '\x02').c_str(),
           std::string(600, '\x03').c_str(), std::string(600, '\x04').c_str(), "not to be seen");
}

// What the library holds of the process, a file and two thread-local words, it gives back: there are fewer than 1200.
bool LogAndUnload()
{
    const rlimit few_files = {64, 64};
    if (setrlimit(RLIMIT_NOFILE, &few_files) != 0) return false;
    for (int load = 0; load < 1200; ++load) {
        Utility u;
        void* const library = Load(&u);
        if (!library) return false;
        u.LogStoreFileLine(TXT(".\\probe.cpp"), load);
        u.LogC("load %d", load);
        if (dlclose(library) != 0 || dlopen(kLibrary, RTLD_NOW | RTLD_NOLOAD)) return false;
    }
    return true;
}

void LogFromThreads(const Utility& u, const char* name)
{
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&u, name, thread] {
            for (int entry = 0; entry < 100; ++entry) {
                u.LogStoreFileLine(TXT(".\\probe.cpp"), entry);
                u.LogC("%s/%d/%d %s", name, thread, entry, std::string(100 + entry, '=').c_str());
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace

int main(int argc, char** argv)
{
    const std::string mode = argc > 1 ? argv[1] : "";
    if (mode == "no-slots") platform_hooks::FailCall("TlsAlloc", 1, 2, ERROR_NOT_ENOUGH_MEMORY);
    if (mode == "reloaded") return LogAndUnload() ? 0 : 2;
    Utility u;
    if (!Load(&u)) return 2;
    if (mode == "each" || mode == "no-slots") {
        LogEach(u);
    } else if (mode == "hostile") {
        LogHostile(u);
    } else if (mode == "killed") {
        u.LogC("last words");
        raise(SIGKILL);
    } else if (mode == "captured") {
        u.OvCaptureLog([](const OvLogRecord*, void*) {}, nullptr);
        LogEach(u);
    } else if (mode == "threads" && argc > 2) {
        LogFromThreads(u, argv[2]);
    } else {
        return 2;
    }
    return 0;
}
