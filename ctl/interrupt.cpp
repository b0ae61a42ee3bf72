#include "ctl/interrupt.h"

#include "ctl/error.h"

#include <signal.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

namespace ctl {

namespace {

struct Shared {
    std::mutex mutex;
    std::function<void()> wake;
    std::vector<std::filesystem::path> folders;
    std::optional<termios> terminal; // as it was
};

// Never destroyed: the signal thread outlives main.
Shared& State()
{
    static auto* const state = new Shared;
    return *state;
}

sigset_t Signals()
{
    sigset_t set;
    sigemptyset(&set);
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        sigaddset(&set, number);
    return set;
}

void RemoveFolder(const std::filesystem::path& path)
{
    std::error_code ignored; // what cannot be removed stays; there is nobody to tell at this point
    std::filesystem::remove_all(path, ignored);
}

[[noreturn]] void EndBy(int number)
{
    // The signal ends the process as if it had never been taken, so that a shell sees it.
    signal(number, SIG_DFL);
    const sigset_t set = Signals();
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
    raise(number);
    _exit(128 + number);
}

void WaitForSignals()
{
    const sigset_t set = Signals();
    for (;;) {
        int number = 0;
        if (sigwait(&set, &number) != 0) continue;
        Shared& state = State();
        std::lock_guard<std::mutex> lock(state.mutex);
        if (state.wake) {
            const std::function<void()> wake = std::move(state.wake);
            state.wake = nullptr;
            wake();
            continue;
        }
        for (const std::filesystem::path& folder : state.folders)
            RemoveFolder(folder);
        if (state.terminal) tcsetattr(STDIN_FILENO, TCSANOW, &*state.terminal);
        EndBy(number);
    }
}

} // namespace

void StartSignalThread()
{
    const sigset_t set = Signals();
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    signal(SIGPIPE, SIG_IGN); // a reader that has gone shows as a failed write, so that the folders are still removed
    std::thread(WaitForSignals).detach();
}

Interruptible::Interruptible(std::function<void()> wake)
{
    std::lock_guard<std::mutex> lock(State().mutex);
    State().wake = std::move(wake);
}

Interruptible::~Interruptible()
{
    std::lock_guard<std::mutex> lock(State().mutex);
    State().wake = nullptr;
}

TemporaryFolder::TemporaryFolder()
{
    std::error_code error;
    const std::filesystem::path parent = std::filesystem::temp_directory_path(error);
    if (error) throw ClientError("no folder for temporary files: " + error.message());
    std::string name = (parent / "talvekctl-XXXXXX").string();
    std::lock_guard<std::mutex> lock(State().mutex); // a signal finds either no folder or a listed one
    if (!mkdtemp(name.data())) throw ClientError("no temporary folder " + name + ": " + std::strerror(errno));
    m_path = name;
    State().folders.push_back(m_path);
}

TemporaryFolder::~TemporaryFolder()
{
    std::lock_guard<std::mutex> lock(State().mutex);
    RemoveFolder(m_path);
    auto& folders = State().folders;
    folders.erase(std::remove(folders.begin(), folders.end(), m_path), folders.end());
}

NoEcho::NoEcho()
{
    termios settings;
    if (tcgetattr(STDIN_FILENO, &settings) != 0) return;
    m_is_terminal = true;
    std::lock_guard<std::mutex> lock(State().mutex);
    State().terminal = settings;
    settings.c_lflag &= static_cast<tcflag_t>(~static_cast<tcflag_t>(ECHO));
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &settings);
}

NoEcho::~NoEcho()
{
    std::lock_guard<std::mutex> lock(State().mutex);
    if (!State().terminal) return;
    tcsetattr(STDIN_FILENO, TCSAFLUSH, &*State().terminal);
    State().terminal.reset();
}

} // namespace ctl
