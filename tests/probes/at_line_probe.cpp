// A client of a simulated GSM/UMTS module on Windows: a command is answered over the serial line, one during which the
// line is hung up fails, and so does the next. Prints what is wrong; the exit status is the number of such lines.

#include <stdio.h>
#include <string>

#include "platform/win32.h"
#include "sim/control.h"
#include "talvek/talvek.h"

namespace {

int g_faults;

void Expect(bool holds, const char* what)
{
    if (holds) return;
    printf("not so: %s\n", what);
    ++g_faults;
}

// Shows this process a volatile key of its own in the place of `root`, so that nobody's own values are touched.
void PutValue(HKEY root, const WCHAR* scratch, const WCHAR* path, const WCHAR* name, const std::wstring& text)
{
    HKEY key = nullptr, value = nullptr;
    const DWORD size = static_cast<DWORD>((text.size() + 1) * sizeof(WCHAR));
    const bool put =
        !RegCreateKeyExW(HKEY_CURRENT_USER, scratch, 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr, &key,
                         nullptr) &&
        !RegCreateKeyExW(key, path, 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr, &value, nullptr) &&
        !RegSetValueExW(value, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()), size) &&
        !RegOverridePredefKey(root, key);
    Expect(put, "the registry takes a value");
}

} // namespace

int main()
{
    const HMODULE module = LoadLibraryA(TALVEK_SIM_DIRECTORY "/GobiApi.dll");
    const auto simulate = reinterpret_cast<decltype(&TalvekSimCommand)>(
        reinterpret_cast<void*>(module ? GetProcAddress(module, "TalvekSimCommand") : nullptr));
    Expect(simulate, "the simulated module can be loaded");
    if (!simulate) return g_faults;
    char reply[256] = "";
    simulate("model umts:5120", reply, sizeof reply);
    Expect(simulate("serial name", reply, sizeof reply) == 0, "the module has a serial line");
    const std::string port = reply;

    // The local machine first: the scratch keys lie below the current user.
    PutValue(HKEY_LOCAL_MACHINE, L"TalvekLineProbeMachine", L"Software\\Microsoft\\RIL", L"ComPort",
             std::wstring(port.begin(), port.end()));
    PutValue(HKEY_CURRENT_USER, L"TalvekLineProbeUser", L"Software\\Kestavo Inc", L"DeviceID", L"VID_3D5E&PID_5120");

    OrvAirServer server = {};
    server.uDeviceID = 0x5120;
    Expect(OrvApiStartup() == ORV_RCODE_OK && OrvSelectAirServer(&server) == ORV_RCODE_OK, "the module is selected");
    BYTE n = 9, m = 9;
    Expect(OrvATSetCLIP(1) == ORV_RCODE_OK, "a setting is accepted");
    Expect(OrvATGetCLIP(&n, &m) == ORV_RCODE_OK && n == 1 && m <= 2, "the setting is read back");
    Expect(simulate("at hangup during", reply, sizeof reply) == 0, "the module will hang up");
    Expect(OrvATGetCLIP(&n, &m) == ORV_RCODE_FAILED, "a command whose reply breaks off fails");
    Expect(OrvATGetCLIP(&n, &m) == ORV_RCODE_FAILED, "a command on a line that was hung up fails");
    OrvApiShutdown();
    return g_faults;
}
