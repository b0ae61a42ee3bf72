// The command for the file of roaming indicators: eri get.

#include "ctl/client.h"
#include "ctl/session.h"
#include "ctl/text.h"
#include "talvek/cdma_omadm.h"

#include <algorithm>
#include <fstream>

namespace ctl {

namespace {

constexpr ULONG kLargestBuffer = 0xFFFF;
constexpr size_t kRow = 16; // octets

std::vector<BYTE> ReadEri(const std::string& name)
{
    const std::u16string wide(name.begin(), name.end());
    OrvEFileInfo info = {};
    const ORV_RCODE code = OrvGetEFileInfo(wide.c_str(), &info);
    // What is too large for that function may still be read.
    if (code != ORV_RCODE_VENDOR_5 || info.uFileSize <= ORV_ERI_FILE_SIZE) Check("OrvGetEFileInfo", code);
    if (info.uFileSize > kLargestBuffer)
        throw ClientError("the file has " + std::to_string(info.uFileSize) + " octets: too many to be read");
    std::vector<BYTE> file(std::max<size_t>(info.uFileSize, 1));
    Check("OrvGetEFile", OrvGetEFile(wide.c_str(), file.data(), static_cast<WORD>(info.uFileSize)));
    file.resize(info.uFileSize);
    return file;
}

// "00000010  00 03 00 00 01 00 00 00                          ........", a row each.
void AddDump(Report& report, const std::vector<BYTE>& file)
{
    for (size_t begin = 0; begin < file.size(); begin += kRow) {
        std::string octets, text;
        for (size_t i = begin; i < std::min(begin + kRow, file.size()); ++i) {
            octets += " " + Hex(&file[i], 1);
            text += file[i] >= ' ' && file[i] <= '~' ? static_cast<char>(file[i]) : '.';
        }
        octets.resize(3 * kRow, ' ');
        std::string line = HexNumber(static_cast<ULONG>(begin), 8).substr(2);
        line.append(" ").append(octets).append("  ").append(text);
        report.AddLine(line);
    }
}

int Get(Client& client, const std::string& path, const std::string& name)
{
    Session session;
    session.Open();
    const std::vector<BYTE> file = ReadEri(name);
    session.Close();
    Report report("eri get");
    report.Add("name", "Name", name);
    report.Add("size", "Size", file.size(), std::to_string(file.size()) + " octets");
    if (path.empty()) {
        report.AddHidden("data", Hex(file.data(), file.size()));
        AddDump(report, file);
    } else {
        std::ofstream stream(path, std::ios::binary | std::ios::trunc);
        stream.write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
        stream.close();
        if (!stream) throw ClientError(path + " cannot be written");
        report.Add("file", "Written to", path);
    }
    client.Answer(report);
    return 0;
}

} // namespace

void AddEriCommands(Client& client)
{
    CLI::App* const eri = client.App().add_subcommand("eri", "The file of roaming indicators of a CDMA module (ERI)");
    eri->require_subcommand(1);
    CLI::App* const get = eri->add_subcommand("get", "Show the file, or write it to one");
    struct Arguments {
        std::string path, name = "eri_nam1";
    };
    const auto arguments = std::make_shared<Arguments>();
    get->add_option("FILE", arguments->path, "Where to write it (default: show it as hexadecimal octets)");
    get->add_option("--name", arguments->name, "The file's name in the module (default: eri_nam1)")
        ->check(CLI::IsMember({"eri_nam1", "eri_nam2"}));
    client.RunWithModule(get, [&client, arguments] { return Get(client, arguments->path, arguments->name); });
}

} // namespace ctl
