// A program run as a child, with its input, output, environment and signals in the test's hands.
#pragma once

#include <sys/types.h>

#include <string>
#include <utility>
#include <vector>

// What starts a program that was built here: its path, behind the emulator and its options if this machine needs one.
std::vector<std::string> BuiltProgram(const std::string& name);

struct ChildSetup {
    std::vector<std::string> command;                             // the program first
    std::vector<std::pair<std::string, std::string>> environment; // set on top of the test's own
    std::string input;
    std::string output_file; // instead of a pipe that is read, for example /dev/full
    int terminal = -1;       // standard input instead of `input`
};

class ChildProcess {
public:
    explicit ChildProcess(const ChildSetup& setup);
    // Ends the child if it still runs.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // Reads standard output until it has a line break more than were taken so far; returns the line without it. Empty
    // at the end of the output and after 60 seconds.
    std::string ReadLine();
    // The same for standard error, up to and with `text`; false when the child ends before.
    bool ReadErrorUntil(const std::string& text);
    void Signal(int number) const;
    // Reads both outputs to their ends and waits. Returns the exit status, or 1000 and the signal that ended the child.
    int Finish();

    const std::string& Output() const { return m_output; }
    const std::string& Error() const { return m_error; }

private:
    bool ReadSome(int timeout_ms);

    pid_t m_pid = -1;
    int m_output_pipe = -1;
    int m_error_pipe = -1;
    std::string m_output;
    std::string m_error;
    size_t m_taken = 0;
    int m_status = -1;
};
