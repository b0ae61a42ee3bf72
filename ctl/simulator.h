// The simulated module: in this process (--sim), or set up for another program (sim exec).
#pragma once

#include "ctl/interrupt.h"
#include "sim/control.h"

#include <filesystem>
#include <optional>
#include <string>

namespace ctl {

struct Model {
    std::string technology; // "cdma" or "umts"
    ULONG product_id;       // one of those that the library accepts

    // Reads "cdma" or "umts", with ":PID" (four hexadecimal digits) where the product matters.
    static std::optional<Model> Parse(const std::string& text);
    // With the product ID, always.
    std::string Text() const;
};

// The folder of the stand-in vendor library: beside the client's own folder, else $TALVEK_SIM_LIBRARY. Throws
// ClientError.
std::filesystem::path SimulatorFolder();

// Writes a registry that names the product and the AT port. Throws ClientError.
void WriteRegistry(const std::filesystem::path& file, ULONG product_id, const std::string& port);

// Loads the stand-in vendor library, chooses the model, and points this process's environment at both. One a process,
// before start-up; the library stays loaded. Throws ClientError.
class Simulator {
public:
    explicit Simulator(const Model& model);

    const Model& SimulatedModel() const { return m_model; }
    // Runs one line and returns its answer. Throws ClientError with the reason.
    std::string Command(const std::string& line);
    // Runs a scenario file. Throws ClientError with the file's name, the line and the reason.
    void RunScenario(const std::string& file);

private:
    std::string Run(int (*entry)(const char*, char*, ULONG), const char* text, const std::string& what);

    Model m_model;
    TemporaryFolder m_folder;
    decltype(&TalvekSimCommand) m_command = nullptr;
    decltype(&TalvekSimScript) m_script = nullptr;
};

} // namespace ctl
