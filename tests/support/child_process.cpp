#include "tests/support/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string.h>

#include <sstream>
#include <stdexcept>

extern char** environ;

namespace {

constexpr int kTimeoutMs = 60000;

int Wait(pid_t pid)
{
    int status = 0;
    if (waitpid(pid, &status, 0) != pid) return -1;
    return WIFSIGNALED(status) ? 1000 + WTERMSIG(status) : WEXITSTATUS(status);
}

// The test's environment without what concerns this library, and the setup's on top.
std::vector<std::string> Environment(const ChildSetup& setup)
{
    std::vector<std::string> all;
    for (char** entry = environ; *entry; ++entry) {
        const std::string text = *entry;
        bool replaced = text.compare(0, 7, "TALVEK_") == 0;
        for (const auto& [name, value] : setup.environment)
            replaced = replaced || text.compare(0, name.size() + 1, name + "=") == 0;
        if (!replaced) all.push_back(text);
    }
    for (const auto& [name, value] : setup.environment)
        all.push_back(name + "=" + value);
    return all;
}

std::vector<char*> Pointers(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

std::vector<std::string> BuiltProgram(const std::string& name)
{
    std::vector<std::string> words;
    std::istringstream emulator(TALVEK_EMULATOR);
    for (std::string word; std::getline(emulator, word, '|');)
        words.push_back(word);
    words.push_back(TALVEK_BINARY_DIRECTORY "/" + name);
    return words;
}

ChildProcess::ChildProcess(const ChildSetup& setup)
{
    int input[2], output[2], error[2];
    if (pipe2(input, O_CLOEXEC) != 0 || pipe2(output, O_CLOEXEC) != 0 || pipe2(error, O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, setup.terminal >= 0 ? setup.terminal : input[0], STDIN_FILENO);
    if (setup.output_file.empty())
        posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    else
        posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, setup.output_file.c_str(), O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, error[1], STDERR_FILENO);

    std::vector<std::string> command = setup.command;
    std::vector<std::string> environment = Environment(setup);
    const int failure = posix_spawnp(&m_pid, command[0].c_str(), &actions, nullptr, Pointers(command).data(),
                                     Pointers(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    close(input[0]);
    close(output[1]);
    close(error[1]);
    m_output_pipe = output[0];
    m_error_pipe = error[0];
    // All inputs of the tests fit a pipe.
    const bool fed = setup.input.empty() || write(input[1], setup.input.data(), setup.input.size()) >= 0;
    close(input[1]);
    if (failure != 0 || !fed) throw std::runtime_error(command[0] + ": " + strerror(failure));
}

ChildProcess::~ChildProcess()
{
    if (m_status < 0 && m_pid > 0) {
        kill(m_pid, SIGKILL);
        Wait(m_pid);
    }
    for (const int pipe : {m_output_pipe, m_error_pipe})
        if (pipe >= 0) close(pipe);
}

bool ChildProcess::ReadSome(int timeout_ms)
{
    pollfd waits[2] = {{m_output_pipe, POLLIN, 0}, {m_error_pipe, POLLIN, 0}};
    if (poll(waits, 2, timeout_ms) <= 0) return false;
    bool any = false;
    for (const pollfd& wait : waits) {
        if (wait.revents == 0) continue;
        char buffer[4096];
        const ssize_t count = read(wait.fd, buffer, sizeof buffer);
        int& pipe = wait.fd == m_output_pipe ? m_output_pipe : m_error_pipe;
        if (count > 0) {
            (wait.fd == m_output_pipe ? m_output : m_error).append(buffer, static_cast<size_t>(count));
        } else {
            close(pipe);
            pipe = -1; // poll leaves a negative descriptor out
        }
        any = true;
    }
    return any;
}

std::string ChildProcess::ReadLine()
{
    for (;;) {
        const size_t end = m_output.find('\n', m_taken);
        if (end != std::string::npos) {
            const std::string line = m_output.substr(m_taken, end - m_taken);
            m_taken = end + 1;
            return line;
        }
        if (m_output_pipe < 0 || !ReadSome(kTimeoutMs)) return "";
    }
}

bool ChildProcess::ReadErrorUntil(const std::string& text)
{
    while (m_error.find(text) == std::string::npos)
        if (m_error_pipe < 0 || !ReadSome(kTimeoutMs)) return false;
    return true;
}

void ChildProcess::Signal(int number) const { kill(m_pid, number); }

int ChildProcess::Finish()
{
    while (m_output_pipe >= 0 || m_error_pipe >= 0) {
        if (!ReadSome(kTimeoutMs)) {
            kill(m_pid, SIGKILL); // it hangs: shown as 1009
            break;
        }
    }
    m_status = Wait(m_pid);
    return m_status;
}
