// Ctrl-C and its like, and what must be put back when the process ends by one.
#pragma once

#include <filesystem>
#include <functional>

namespace ctl {

// SIGINT, SIGTERM and SIGHUP are blocked in every thread and taken by one that waits for them. Call first of all:
// threads started later inherit it. Without an Interruptible the signal ends the process, after the temporary folders
// have been removed and the terminal has been restored.
void StartSignalThread();

// While it lives, the first signal calls `wake` (on the signal thread) instead; a second one ends the process. One at a
// time.
class Interruptible {
public:
    explicit Interruptible(std::function<void()> wake);
    ~Interruptible();
    Interruptible(const Interruptible&) = delete;
    Interruptible& operator=(const Interruptible&) = delete;
};

// A new folder for this process alone, removed with its contents.
class TemporaryFolder {
public:
    TemporaryFolder(); // throws ClientError
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

// Standard input does not echo while it lives; nothing happens where it is no terminal.
class NoEcho {
public:
    NoEcho();
    ~NoEcho();
    NoEcho(const NoEcho&) = delete;
    NoEcho& operator=(const NoEcho&) = delete;

    bool IsTerminal() const { return m_is_terminal; }

private:
    bool m_is_terminal = false;
};

} // namespace ctl
