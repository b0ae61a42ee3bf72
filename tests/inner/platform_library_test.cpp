// The platform seam: loading libraries and looking up their functions, over copies of a real one.
#include <gtest/gtest.h>

#include <algorithm>
#include <dlfcn.h>
#include <fstream>
#include <iterator>
#include <link.h>
#include <stdlib.h>
#include <string.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "platform/hooks.h"
#include "platform/win32.h"

namespace {

// Folders with copies of a real library, and TALVEK_LIBRARY_PATH.
class PlatformLibrary : public testing::Test {
protected:
    void SetUp() override
    {
        char pattern[] = "/tmp/talvek-platform-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        m_folder = pattern;
        for (const char* name : {"one", "two", "one/libsub"})
            ASSERT_EQ(mkdir((m_folder + "/" + name).c_str(), 0700), 0);
        setenv("TALVEK_LIBRARY_PATH", (m_folder + "/none::" + m_folder + "/one:" + m_folder + "/two").c_str(), 1);

        void* maths = dlopen("libm.so.6", RTLD_NOW);
        link_map* map = nullptr;
        ASSERT_TRUE(maths && dlinfo(maths, RTLD_DI_LINKMAP, &map) == 0);
        std::ifstream file(map->l_name, std::ios::binary);
        m_library.assign(std::istreambuf_iterator<char>(file), {});
        ASSERT_GT(m_library.size(), 10000u);
        dlclose(maths);
    }
    void TearDown() override
    {
        platform_hooks::Reset();
        unsetenv("TALVEK_LIBRARY_PATH");
        for (const std::string& path : m_paths)
            unlink(path.c_str());
        for (const char* name : {"/one/libsub", "/one", "/two", ""})
            rmdir((m_folder + name).c_str());
    }
    void Put(const char* name, const std::string& content)
    {
        m_paths.push_back(m_folder + "/" + name);
        std::ofstream(m_paths.back(), std::ios::binary) << content;
    }
    // How much of the library's file the loader maps.
    size_t MappedSize() const
    {
        ElfW(Ehdr) header;
        memcpy(&header, m_library.data(), sizeof header);
        size_t size = 0;
        for (unsigned i = 0; i < header.e_phnum; ++i) {
            ElfW(Phdr) part;
            memcpy(&part, m_library.data() + header.e_phoff + i * sizeof part, sizeof part);
            size = std::max<size_t>(size, part.p_offset + part.p_filesz);
        }
        return size;
    }
    static DWORD ErrorOf(const WCHAR* name)
    {
        SetLastError(0);
        const HMODULE module = LoadLibraryW(name);
        if (module) FreeLibrary(module);
        return GetLastError();
    }

    std::string m_folder;
    std::string m_library;
    std::vector<std::string> m_paths;
};

} // namespace

TEST_F(PlatformLibrary, IsFoundByItsWindowsNameAndGivesItsFunctions)
{
    Put("two/libVendor.so", m_library);
    for (const WCHAR* name : {TXT("Vendor.dll"), TXT("Vendor.DLL"), TXT("Vendor")}) {
        const HMODULE module = LoadLibraryW(name);
        ASSERT_NE(module, nullptr);
        Dl_info found;
        const FARPROC address = GetProcAddressW(module, TXT("cos"));
        ASSERT_TRUE(address && dladdr(reinterpret_cast<void*>(address), &found));
        EXPECT_EQ(found.dli_fname, m_folder + "/two/libVendor.so");
        EXPECT_EQ(reinterpret_cast<double (*)(double)>(address)(0.0), 1.0);
        EXPECT_TRUE(FreeLibrary(module));
    }
}

TEST_F(PlatformLibrary, EarlierFoldersComeFirstAndABadFileEndsTheSearch)
{
    Put("two/libVendor.so", m_library);
    EXPECT_EQ(ErrorOf(TXT("Vendor.dll")), 0u);
    for (const size_t length : {size_t{0}, size_t{20}, size_t{70}, size_t{5000}, MappedSize() - 1}) {
        Put("one/libVendor.so", m_library.substr(0, length));
        EXPECT_EQ(ErrorOf(TXT("Vendor.dll")), ERROR_BAD_EXE_FORMAT) << length;
    }
    Put("one/libVendor.so", std::string(5000, 'x'));
    EXPECT_EQ(ErrorOf(TXT("Vendor.dll")), ERROR_BAD_EXE_FORMAT);
    unsetenv("TALVEK_LIBRARY_PATH");
    EXPECT_EQ(ErrorOf(TXT("Vendor.dll")), ERROR_MOD_NOT_FOUND) << "the variable is read at each call";
}

TEST_F(PlatformLibrary, IsLookedForBesideThePlatformLibraryToo)
{
    EXPECT_EQ(ErrorOf(TXT("talvek_platform.dll")), 0u);
    Dl_info platform;
    ASSERT_NE(dladdr(reinterpret_cast<void*>(&LoadLibraryW), &platform), 0);
    const std::string name = "neighbour" + std::to_string(getpid());
    m_paths.push_back(platform.dli_fname);
    m_paths.back().replace(m_paths.back().rfind('/') + 1, std::string::npos, "lib" + name + ".so");
    std::ofstream(m_paths.back(), std::ios::binary) << m_library.substr(0, MappedSize() - 1);
    EXPECT_EQ(ErrorOf(std::u16string(name.begin(), name.end()).c_str()), ERROR_BAD_EXE_FORMAT);
    Put("one/libtalvek_platform.so", "shadowed");
    EXPECT_EQ(ErrorOf(TXT("talvek_platform.dll")), ERROR_BAD_EXE_FORMAT);
}

TEST_F(PlatformLibrary, NamesThatFindNothing)
{
    Put("one/libVendor.so", m_library);
    Put("one/libsub/Vendor.so", m_library);
    const struct {
        const char* what;
        std::u16string name;
        DWORD error;
    } rows[] = {
        {"absent", u"Absent.dll", ERROR_MOD_NOT_FOUND},
        {"another case", u"vendor.dll", ERROR_MOD_NOT_FOUND},
        {"a path", u"sub/Vendor.dll", ERROR_MOD_NOT_FOUND},
        {"a Windows path", u"C:\\Vendor.dll", ERROR_MOD_NOT_FOUND},
        {"empty", u"", ERROR_INVALID_PARAMETER},
        {"longer than a file name", std::u16string(300, u'v'), ERROR_FILENAME_EXCED_RANGE},
        {"longer with its prefix", std::u16string(252, u'v'), ERROR_FILENAME_EXCED_RANGE},
    };
    for (const auto& row : rows)
        EXPECT_EQ(ErrorOf(row.name.c_str()), row.error) << row.what;
    EXPECT_EQ(ErrorOf(nullptr), ERROR_INVALID_PARAMETER);
}

TEST_F(PlatformLibrary, LookUpsCanBeHiddenAndWatched)
{
    Put("one/libVendor.so", m_library);
    const HMODULE module = LoadLibraryW(TXT("Vendor.dll"));
    ASSERT_NE(module, nullptr);
    std::vector<std::string> names;
    platform_hooks::WatchLookups(
        [](const char* name, void* context) { static_cast<std::vector<std::string>*>(context)->push_back(name); },
        &names);
    ASSERT_TRUE(platform_hooks::HideSymbol("sin"));
    EXPECT_NE(GetProcAddressW(module, TXT("cos")), nullptr);
    EXPECT_EQ(GetProcAddressW(module, TXT("sin")), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_PROC_NOT_FOUND);
    EXPECT_EQ(names, (std::vector<std::string>{"cos", "sin"}));
    platform_hooks::Reset();
    EXPECT_NE(GetProcAddressW(module, TXT("sin")), nullptr);
    EXPECT_EQ(names.size(), 2u);

    for (const std::u16string& name : {std::u16string(u"NoSuchEntry"), std::u16string(u"cos\u00F6"), std::u16string(),
                                       std::u16string(500, u'x'), std::u16string(128, u'x')}) {
        SetLastError(0);
        EXPECT_EQ(GetProcAddressW(module, name.c_str()), nullptr);
        EXPECT_EQ(GetLastError(), ERROR_PROC_NOT_FOUND);
    }
    EXPECT_EQ(GetProcAddressW(module, nullptr), nullptr);
    EXPECT_TRUE(FreeLibrary(module));
    for (const HMODULE bad : {HMODULE{nullptr}, reinterpret_cast<HMODULE>(~uintptr_t{0})}) {
        EXPECT_EQ(GetProcAddressW(bad, TXT("malloc")), nullptr) << "not a search through the whole process";
        EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
        EXPECT_FALSE(FreeLibrary(bad));
    }
}
