#include "ctl/simulator.h"

#include "ctl/error.h"
#include "ctl/text.h"
#include "talvek/core.h"

#include <dlfcn.h>
#include <stdlib.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string_view>
#include <vector>

namespace ctl {

namespace {

constexpr ULONG kVendorId = 0x3D5E;
constexpr const char* kLibraryFile = "libGobiApi.so";
constexpr size_t kReplySize = 1 << 20; // a journal is the longest answer

// In a .reg file a backslash and a quotation mark are escaped.
std::string RegistryText(std::string_view text)
{
    std::string out;
    for (const char c : text) {
        if (c == '\\' || c == '"') out += '\\';
        out += c;
    }
    return out;
}

template <class Function>
Function Symbol(void* library, const char* name)
{
    void* const address = dlsym(library, name);
    if (!address) throw ClientError(std::string("the simulator library lacks ") + name);
    return reinterpret_cast<Function>(address);
}

} // namespace

std::optional<Model> Model::Parse(const std::string& text)
{
    Model model;
    const size_t colon = text.find(':');
    model.technology = text.substr(0, colon);
    if (model.technology != "cdma" && model.technology != "umts") return {};
    if (colon != std::string::npos) {
        const std::string digits = text.substr(colon + 1);
        ULONG product_id = 0;
        constexpr ULONG kProducts[] = {ORV_DEVICE_5101, ORV_DEVICE_5111, ORV_DEVICE_5120, ORV_DEVICE_5141};
        if (digits.size() != 4 || !ParseNumber("0x" + digits, product_id)) return {};
        if (std::find(std::begin(kProducts), std::end(kProducts), product_id) == std::end(kProducts)) return {};
        model.product_id = product_id;
    } else {
        model.product_id = model.technology == "cdma" ? ORV_DEVICE_5101 : ORV_DEVICE_5120;
    }
    return model;
}

std::string Model::Text() const { return technology + ":" + HexNumber(product_id, 4).substr(2); }

std::filesystem::path SimulatorFolder()
{
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    std::vector<std::filesystem::path> folders;
    if (!error) {
        const std::filesystem::path prefix = program.parent_path().parent_path();
        folders.push_back(prefix / "lib" / "talvek-sim");
        const std::filesystem::path installed = prefix / TALVEKCTL_LIBRARY_DIRECTORY / "talvek-sim";
        if (installed != folders[0]) folders.push_back(installed);
    }
    if (const char* const named = getenv("TALVEK_SIM_LIBRARY")) folders.emplace_back(named);
    for (const std::filesystem::path& folder : folders)
        if (std::filesystem::exists(folder / kLibraryFile, error)) return std::filesystem::absolute(folder);
    std::string tried;
    for (const std::filesystem::path& folder : folders)
        tried += (tried.empty() ? "" : ", ") + folder.string();
    throw ClientError(std::string("no simulator library ") + kLibraryFile + " in " + tried +
                      " (TALVEK_SIM_LIBRARY names its folder)");
}

void WriteRegistry(const std::filesystem::path& file, ULONG product_id, const std::string& port)
{
    std::ofstream out(file);
    out << "Windows Registry Editor Version 5.00\n\n"
        << "[HKEY_CURRENT_USER\\Software\\Kestavo Inc]\n"
        << "\"DeviceID\"=\"VID_" << HexNumber(kVendorId, 4).substr(2) << "&PID_" << HexNumber(product_id, 4).substr(2)
        << "\"\n\n"
        << "[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\RIL]\n"
        << "\"ComPort\"=\"" << RegistryText(port) << "\"\n";
    out.close();
    if (!out) throw ClientError("the registry file " + file.string() + " cannot be written");
}

Simulator::Simulator(const Model& model) : m_model(model)
{
    const std::filesystem::path folder = SimulatorFolder();
    void* const library = dlopen((folder / kLibraryFile).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library) throw ClientError(std::string("the simulator library cannot be loaded: ") + dlerror());
    m_command = Symbol<decltype(m_command)>(library, "TalvekSimCommand");
    m_script = Symbol<decltype(m_script)>(library, "TalvekSimScript");

    Command("model " + model.Text());
    const std::filesystem::path registry = m_folder.Path() / "registry.reg";
    WriteRegistry(registry, model.product_id, Command("serial name"));
    setenv("TALVEK_REGISTRY", registry.c_str(), 1);
    setenv("TALVEK_LIBRARY_PATH", folder.c_str(), 1);
}

std::string Simulator::Run(int (*entry)(const char*, char*, ULONG), const char* text, const std::string& what)
{
    std::vector<char> reply(kReplySize);
    const int status = entry(text, reply.data(), static_cast<ULONG>(reply.size()));
    std::string answer(reply.data(), strnlen(reply.data(), reply.size()));
    if (status != 0) throw ClientError(what + ": " + answer);
    return answer;
}

std::string Simulator::Command(const std::string& line) { return Run(m_command, line.c_str(), "simulator: " + line); }

void Simulator::RunScenario(const std::string& file)
{
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    if (!in.is_open() || in.bad()) throw ClientError("the scenario " + file + " cannot be read");
    Run(m_script, text.str().c_str(), file);
}

} // namespace ctl
