// The platform seam's registry: the .reg grammar, the search for the file, and the calls.
#include <gtest/gtest.h>

#include <fstream>
#include <stdlib.h>
#include <string.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "platform/hooks.h"
#include "platform/win32.h"

namespace {

const std::string kHeader = "Windows Registry Editor Version 5.00\n";
const std::string kKey = "[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\RIL]\n";
constexpr const WCHAR* kSubkey = TXT("Software\\Microsoft\\RIL");

// A registry file of this test's own.
class PlatformRegistry : public testing::Test {
protected:
    void SetUp() override
    {
        char pattern[] = "/tmp/talvek-registry-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        m_folder = pattern;
        m_file = m_folder + "/registry.reg";
        setenv("TALVEK_REGISTRY", m_file.c_str(), 1);
    }
    void TearDown() override
    {
        platform_hooks::Reset();
        for (const char* name : {"TALVEK_REGISTRY", "XDG_CONFIG_HOME", "HOME"})
            unsetenv(name);
        for (const char* name : {"/registry.reg", "/.config/talvek/registry.reg", "/.config/talvek", "/.config",
                                 "/talvek/registry.reg", "/talvek", ""}) {
            remove((m_folder + name).c_str());
        }
    }
    void Write(const std::string& content) const { WriteTo(m_file, content); }
    static void WriteTo(const std::string& path, const std::string& content)
    {
        std::ofstream file(path, std::ios::binary);
        file << content;
        ASSERT_TRUE(file.flush());
    }

    // The value as "TYPE:OCTETS" (a text as its characters), or "!" and the error.
    static std::string Value(HKEY root, const WCHAR* subkey, const WCHAR* name)
    {
        HKEY key = nullptr;
        if (const int32_t error = RegOpenKeyExW(root, subkey, 0, KEY_READ, &key)) return "!" + std::to_string(error);
        BYTE data[4096];
        DWORD size = sizeof data;
        DWORD type = 99;
        const int32_t error = RegQueryValueExW(key, name, nullptr, &type, data, &size);
        EXPECT_EQ(RegCloseKey(key), 0);
        if (error) return "!" + std::to_string(error);
        std::string text = std::to_string(type) + ":";
        if (type != REG_SZ) {
            char digits[4];
            for (DWORD i = 0; i < size; ++i)
                snprintf(digits, sizeof digits, "%02x", data[i]), text += digits;
            return text;
        }
        EXPECT_EQ(data[size - 2] | data[size - 1], 0) << "a text has its terminator";
        for (DWORD i = 0; i + 2 < size; i += 2)
            text += data[i + 1] ? '?' : static_cast<char>(data[i]);
        return text;
    }
    static std::string Value(const WCHAR* name) { return Value(HKEY_LOCAL_MACHINE, kSubkey, name); }

    std::string m_folder;
    std::string m_file;
};

const std::string kAbsent = "!2";
const std::string kMalformed = "!1009";

} // namespace

TEST_F(PlatformRegistry, ValuesAreReadAsTheyAreWritten)
{
    const struct {
        const char* what;
        std::string text; // after the header and the key
        const WCHAR* name;
        const char* value;
    } rows[] = {
        {"a text", "\"ComPort\"=\"COM7\"", TXT("ComPort"), "1:COM7"},
        {"names in any case", "\"ComPort\"=\"COM7\"", TXT("comPORT"), "1:COM7"},
        {"escapes", "\"a\\\"b\"=\"c:\\\\d\\\"\"", TXT("a\"b"), "1:c:\\d\""},
        {"an empty text", "\"a\"=\"\"", TXT("a"), "1:"},
        {"what looks like a remark within", "\"a;b\"=\"[c];d\"", TXT("a;b"), "1:[c];d"},
        {"blanks and a remark", " \t\"a\" = \"b\" \t; remark", TXT("a"), "1:b"},
        {"the default value", "@=\"b\"", TXT(""), "1:b"},
        {"the default value by null", "@=\"b\"", nullptr, "1:b"},
        {"no characters but ASCII", "\"\xC3\xA4\"=\"\xE2\x82\xAC\xC3\xA4\"", TXT("\u00E4"), "1:?\xE4"},
        {"a number", "\"a\"=dword:0000001f", TXT("a"), "4:1f000000"},
        {"a number, short and upper case", "\"a\"=DWORD:FEDCB", TXT("a"), "4:cbed0f00"},
        {"octets", "\"a\"=hex:01,2,fF", TXT("a"), "3:0102ff"},
        {"no octets", "\"a\"=hex:", TXT("a"), "3:"},
        {"a type of its own", "\"a\"=hex(2):41,00", TXT("a"), "2:4100"},
        {"octets on several lines", "\"a\"=hex(b):01,02,\\\r\n  03,04,\\ ; more\n05 ; end", TXT("a"), "11:0102030405"},
        {"Windows line ends", "\"a\"=\"b\"\r\n\r\n; remark\r\n\"c\"=\"d\"\r\n", TXT("c"), "1:d"},
        {"the last of two counts", "\"a\"=\"b\"\n\"A\"=\"c\"", TXT("a"), "1:c"},
        {"two sections of one key", "\"a\"=\"b\"\n[HKEY_CURRENT_USER]\n\"a\"=\"x\"\n" + kKey + "\"c\"=\"d\"", TXT("c"),
         "1:d"},
        {"and its first section", "\"a\"=\"b\"\n[HKEY_CURRENT_USER]\n\"a\"=\"x\"\n" + kKey + "\"c\"=\"d\"", TXT("a"),
         "1:b"},
        {"a longer name", "\"ab\"=\"c\"", TXT("a"), "!2"},
        {"another key's value", "[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\RIL2]\n\"a\"=\"b\"", TXT("a"), "!2"},
        {"another root's value", "[HKEY_USERS\\Software\\Microsoft\\RIL]\n\"a\"=\"b\"", TXT("a"), "!2"},
    };
    for (const auto& row : rows) {
        Write(kHeader + kKey + row.text);
        EXPECT_EQ(Value(row.name), row.value) << row.what;
    }
}

TEST_F(PlatformRegistry, FilesOfEachEncodingAreRead)
{
    const std::string text = kHeader + kKey + "\"a\"=\"b\"\r\n";
    std::string wide = "\xFF\xFE";
    for (const char character : text)
        wide += character, wide += '\0';
    Write("\xEF\xBB\xBF" + text);
    EXPECT_EQ(Value(TXT("a")), "1:b") << "UTF-8 with a mark";
    Write(wide);
    EXPECT_EQ(Value(TXT("a")), "1:b") << "UTF-16";
    Write(wide + "x");
    EXPECT_EQ(Value(TXT("a")), kMalformed) << "half a character";
    Write("\xFE\xFF" + wide.substr(2));
    EXPECT_EQ(Value(TXT("a")), kMalformed) << "UTF-16 of the other order";
}

TEST_F(PlatformRegistry, KeysAreFoundByTheirPath)
{
    Write(kHeader +
          "[HKEY_LOCAL_MACHINE\\Software\\A]b]\n\"a\"=\"1\"\n[hkey_current_user\\One\\Two] ; x\n\"a\"=\"2\"\n" +
          "[HKEY_CLASSES_ROOT]\n\"a\"=\"3\"\n");
    const struct {
        const char* what;
        HKEY root;
        const WCHAR* subkey;
        const char* value;
    } rows[] = {
        {"a bracket in the name", HKEY_LOCAL_MACHINE, TXT("Software\\A]b"), "1:1"},
        {"any case", HKEY_CURRENT_USER, TXT("ONE\\two"), "1:2"},
        {"a backslash at the end", HKEY_CURRENT_USER, TXT("One\\Two\\"), "1:2"},
        {"the root", HKEY_CLASSES_ROOT, nullptr, "1:3"},
        {"a key above, without values", HKEY_CURRENT_USER, TXT("One"), "!2"},
        {"an absent key", HKEY_CURRENT_USER, TXT("On"), "!2"},
        {"under another root", HKEY_CURRENT_USER, TXT("Software\\A]b"), "!2"},
        {"an unknown root", reinterpret_cast<HKEY>(uintptr_t{0x80000003u}), TXT("One"), "!6"},
        {"no root", nullptr, TXT("One"), "!6"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Value(row.root, row.subkey, TXT("a")), row.value) << row.what;

    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, TXT("One"), 0, KEY_READ, &key), 0) << "a key above is there";
    EXPECT_EQ(RegCloseKey(key), 0);
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, TXT("On"), 0, KEY_READ, &key), 2);
    EXPECT_EQ(key, nullptr);
}

TEST_F(PlatformRegistry, AMalformedFileTellsTheLine)
{
    const struct {
        const char* what;
        std::string text; // the whole file
        unsigned line;
        const char* reason;
    } rows[] = {
        {"empty", "", 1, "header"},
        {"no header", kKey, 1, "header"},
        {"an old header", "REGEDIT4\n", 1, "header"},
        {"a header that goes on", "Windows Registry Editor Version 5.00.1\n", 1, "header"},
        {"a blank line first", "\n" + kHeader, 1, "header"},
        {"a key without its end", kHeader + "[HKEY_CURRENT_USER\\a\n", 2, "']'"},
        {"text after the key", kHeader + "[HKEY_CURRENT_USER\\a] b\n", 2, "']'"},
        {"an unknown root", kHeader + "\n[HKEY_NOWHERE\\a]\n", 3, "root"},
        {"no root", kHeader + "[]\n", 2, "root"},
        {"an empty part", kHeader + "[HKEY_CURRENT_USER\\\\a]\n", 2, "empty"},
        {"an empty end", kHeader + "[HKEY_CURRENT_USER\\a\\]\n", 2, "empty"},
        {"a deleted key", kHeader + "[-HKEY_CURRENT_USER\\a]\n", 2, "deleted"},
        {"a value without a key", kHeader + "\"a\"=\"b\"\n", 2, "before the first key"},
        {"a deleted value", kHeader + kKey + "\"a\"=-\n", 3, "deleted"},
        {"a name without its end", kHeader + kKey + "\"a=b\n", 3, "closing quote"},
        {"a text without its end", kHeader + kKey + "\"a\"=\"b\n", 3, "closing quote"},
        {"a text that ends in a backslash", kHeader + kKey + "\"a\"=\"b\\\"\n", 3, "closing quote"},
        {"an escape", kHeader + kKey + "\"a\"=\"\\n\"\n", 3, "escaped"},
        {"an escape at the end", kHeader + kKey + "\"a\"=\"b\\", 3, "escaped"},
        {"text after a text", kHeader + kKey + "\"a\"=\"b\" c\n", 3, "after the value"},
        {"no equals sign", kHeader + kKey + "\"a\" \"b\"\n", 3, "'='"},
        {"no value", kHeader + kKey + "\"a\"=\n", 3, "neither text"},
        {"a bare value", kHeader + kKey + "\"a\"=b\n", 3, "neither text"},
        {"a bare name", kHeader + kKey + "a=\"b\"\n", 3, "neither a key"},
        {"a number of no digits", kHeader + kKey + "\"a\"=dword:\n", 3, "dword"},
        {"a number of nine digits", kHeader + kKey + "\"a\"=dword:123456789\n", 3, "dword"},
        {"a number of other digits", kHeader + kKey + "\"a\"=dword:12g\n", 3, "after the value"},
        {"octets of three digits", kHeader + kKey + "\"a\"=hex:123\n", 3, "octet"},
        {"octets without commas", kHeader + kKey + "\"a\"=hex:12 34\n", 3, "','"},
        {"an octet too few", kHeader + kKey + "\"a\"=hex:12,\n", 3, "','"},
        {"two commas", kHeader + kKey + "\"a\"=hex:12,,13\n", 3, "octet"},
        {"a type without its end", kHeader + kKey + "\"a\"=hex(2:12\n", 3, "hex("},
        {"no colon", kHeader + kKey + "\"a\"=hex12\n", 3, "':'"},
        {"a fault on a later line", kHeader + kKey + "\"a\"=hex:12,\\\n 13,\\\n xx\n", 5, "octet"},
        {"octets that go on past the end", kHeader + kKey + "\"a\"=hex:12,\\\n", 3, "end of the file"},
        {"text after the backslash", kHeader + kKey + "\"a\"=hex:12,\\ 13\n", 3, "backslash"},
        {"a control character", kHeader + kKey + "\"a\"=\"b\x01\"\n", 3, "control"},
        {"a NUL", kHeader + kKey + std::string("\"a\"=\"b\0c\"\n", 10), 3, "control"},
        {"no UTF-8", kHeader + kKey + "; caf\xE9\n", 3, "UTF-8"},
        {"a fault behind the key asked for", kHeader + kKey + "\"a\"=\"b\"\n\nfault\n", 5, "neither a key"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Write(row.text);
        EXPECT_EQ(Value(TXT("a")), kMalformed);
        const std::string fault = RegistryFault();
        const std::string place = m_file + ":" + std::to_string(row.line) + ": ";
        EXPECT_EQ(fault.substr(0, place.size()), place);
        EXPECT_NE(fault.find(row.reason, place.size()), std::string::npos) << fault;
    }
}

TEST_F(PlatformRegistry, EveryPrefixOfAGoodFileIsReadOrRefused)
{
    const std::string text =
        kHeader + kKey + "\"ComPort\"=\"C\\\\M7\" ; x\r\n\"n\"=dword:12\n@=hex(7):1,2,\\\n 3\n[HKEY_USERS\\x]\n";
    const size_t header = kHeader.size() - 1;
    for (size_t length = 0; length <= text.size(); ++length) {
        Write(text.substr(0, length));
        const std::string value = Value(TXT("ComPort"));
        EXPECT_TRUE(value == "1:C\\M7" || value == kAbsent || value == kMalformed) << value;
        if (length < header) {
            EXPECT_EQ(value, kMalformed) << length;
        }
        if (length == text.size()) {
            EXPECT_EQ(value, "1:C\\M7");
        }
    }
}

TEST_F(PlatformRegistry, AFileThatCannotBeReadIsAFault)
{
    EXPECT_EQ(Value(TXT("a")), kAbsent) << "an absent file is none";
    ASSERT_EQ(mkdir(m_file.c_str(), 0700), 0);
    EXPECT_EQ(Value(TXT("a")), kMalformed);
    EXPECT_EQ(RegistryFault(), m_file + ":0: it is not a plain file");
    rmdir(m_file.c_str());
    ASSERT_EQ(symlink(m_file.c_str(), m_file.c_str()), 0);
    EXPECT_EQ(Value(TXT("a")), kMalformed);
    EXPECT_EQ(std::string(RegistryFault()).substr(0, m_file.size() + 3), m_file + ":0:");
    unlink(m_file.c_str());

    const std::string start = kHeader + kKey + "\"a\"=\"b\"\n;";
    constexpr size_t kLargest = size_t{4} * 1024 * 1024;
    Write(start + std::string(kLargest - start.size(), 'x'));
    EXPECT_EQ(Value(TXT("a")), "1:b");
    Write(start + std::string(kLargest - start.size() + 1, 'x'));
    EXPECT_EQ(Value(TXT("a")), kMalformed);
    EXPECT_EQ(RegistryFault(), m_file + ":0: it is larger than 4 MiB");

    setenv("TALVEK_REGISTRY", (m_folder + std::string(5000, '/')).c_str(), 1);
    EXPECT_EQ(Value(TXT("a")), kMalformed) << "too long a name";
}

TEST_F(PlatformRegistry, TheFileIsFoundInItsOrder)
{
    unsetenv("TALVEK_REGISTRY");
    if (access("/etc/talvek/registry.reg", F_OK) == 0) GTEST_SKIP() << "this host has a registry of its own";
    const auto text = [](const char* value) { return kHeader + kKey + "\"a\"=\"" + value + "\"\n"; };
    setenv("HOME", m_folder.c_str(), 1);
    EXPECT_EQ(Value(TXT("a")), kAbsent);
    for (const char* name : {"/.config", "/.config/talvek", "/talvek"})
        mkdir((m_folder + name).c_str(), 0700);
    WriteTo(m_folder + "/.config/talvek/registry.reg", text("home"));
    WriteTo(m_folder + "/talvek/registry.reg", text("xdg"));
    EXPECT_EQ(Value(TXT("a")), "1:home");
    setenv("XDG_CONFIG_HOME", m_folder.c_str(), 1);
    EXPECT_EQ(Value(TXT("a")), "1:xdg");
    setenv("XDG_CONFIG_HOME", "relative", 1);
    EXPECT_EQ(Value(TXT("a")), "1:home") << "a relative folder does not count";
    Write(text("named"));
    setenv("TALVEK_REGISTRY", m_file.c_str(), 1);
    EXPECT_EQ(Value(TXT("a")), "1:named");
    Write(text("changed"));
    EXPECT_EQ(Value(TXT("a")), "1:changed") << "it is read at each call";
    unlink(m_file.c_str());
    EXPECT_EQ(Value(TXT("a")), kAbsent) << "a named file that is absent is not looked for elsewhere";
}

TEST_F(PlatformRegistry, SizesAreInOctetsWithTheTerminator)
{
    Write(kHeader + kKey + "\"a\"=\"COM7\"\n");
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, kSubkey, 0, KEY_READ, &key), 0);
    DWORD type = 0;
    DWORD size = 1;
    EXPECT_EQ(RegQueryValueExW(key, TXT("a"), nullptr, &type, nullptr, &size), 0);
    EXPECT_EQ(size, 10u);
    EXPECT_EQ(type, REG_SZ);
    BYTE data[12];
    memset(data, '#', sizeof data);
    size = 9;
    EXPECT_EQ(RegQueryValueExW(key, TXT("a"), nullptr, nullptr, data, &size), static_cast<int32_t>(ERROR_MORE_DATA));
    EXPECT_EQ(size, 10u);
    EXPECT_EQ(data[0], '#');
    EXPECT_EQ(RegQueryValueExW(key, TXT("a"), nullptr, nullptr, data, &size), 0);
    EXPECT_EQ(data[10], '#');
    EXPECT_EQ(RegQueryValueExW(key, TXT("a"), nullptr, nullptr, data, nullptr), 87);
    EXPECT_EQ(RegQueryValueExW(key, TXT("a"), &size, nullptr, nullptr, nullptr), 87);
    EXPECT_EQ(RegQueryValueExW(key, TXT("a"), nullptr, nullptr, nullptr, nullptr), 0)
        << "asks only whether it is there";

    EXPECT_EQ(RegCloseKey(key), 0);
    for (const HKEY bad : {key, HKEY{nullptr}, HKEY_LOCAL_MACHINE}) {
        EXPECT_EQ(RegQueryValueExW(bad, TXT("a"), nullptr, nullptr, nullptr, nullptr), 6);
        EXPECT_EQ(RegCloseKey(bad), 6);
    }
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, kSubkey, 0, KEY_READ, nullptr), 87);
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, kSubkey, 1, KEY_READ, &key), 87);
    EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, kSubkey, 0, 0xF003F, &key), 5) << "it cannot be written";
}

TEST(ThreadsRegistry, IsReadByManyAtOnce)
{
    char path[] = "/tmp/talvek-registry-XXXXXX";
    const int descriptor = mkstemp(path);
    const std::string text = kHeader + kKey + "\"a\"=\"b\"\n";
    ASSERT_EQ(write(descriptor, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    close(descriptor);
    setenv("TALVEK_REGISTRY", path, 1);
    static int wrong[4];
    for (int& count : wrong) {
        const auto read = [](LPVOID context) -> DWORD {
            for (int i = 0; i < 20; ++i) {
                HKEY key = nullptr;
                DWORD size = 0;
                if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kSubkey, 0, KEY_READ, &key) ||
                    RegQueryValueExW(key, TXT("a"), nullptr, nullptr, nullptr, &size) || size != 4 ||
                    RegCloseKey(key)) {
                    ++*static_cast<int*>(context);
                }
            }
            return 0;
        };
        CloseHandle(CreateThread(nullptr, 0, read, &count, 0, nullptr));
    }
    EXPECT_TRUE(platform_hooks::DrainThreads(20000));
    for (const int count : wrong)
        EXPECT_EQ(count, 0);
    unlink(path);
    unsetenv("TALVEK_REGISTRY");
}
