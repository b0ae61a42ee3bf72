// The platform seam's files: opening, reading, appending, standard error.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <stdlib.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/win32.h"
#include "tests/inner/platform_open.h"

namespace {

class PlatformFile : public testing::Test {
protected:
    void SetUp() override
    {
        char pattern[] = "/tmp/talvek-platform-XXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        m_folder = pattern;
        m_file = m_folder + "/file";
    }
    void TearDown() override
    {
        unlink(m_file.c_str());
        rmdir(m_folder.c_str());
    }
    std::string m_folder;
    std::string m_file;
};

} // namespace

TEST_F(PlatformFile, NamesThatCannotBeOpenedTellWhy)
{
    const struct {
        const char* what;
        std::string name;
        DWORD access;
        DWORD disposition;
        DWORD error;
    } rows[] = {
        {"a missing file", m_file, kReadWrite, OPEN_EXISTING, ERROR_FILE_NOT_FOUND},
        {"a missing folder", m_folder + "/no/file", kReadWrite, OPEN_EXISTING, ERROR_PATH_NOT_FOUND},
        {"a file for a folder", "/dev/null/file", kReadWrite, OPEN_EXISTING, ERROR_PATH_NOT_FOUND},
        {"a missing device", "talvek-no-such-port:", kReadWrite, OPEN_EXISTING, ERROR_FILE_NOT_FOUND},
        {"a folder", m_folder, kReadWrite, OPEN_EXISTING, ERROR_ACCESS_DENIED},
        {"a folder to read", m_folder, GENERIC_READ, OPEN_EXISTING, ERROR_ACCESS_DENIED},
        {"a folder as a device", "..:", kReadWrite, OPEN_EXISTING, ERROR_ACCESS_DENIED},
        {"too long a name", m_folder + "/" + std::string(256, 'x'), kReadWrite, OPEN_EXISTING,
         ERROR_FILENAME_EXCED_RANGE},
        {"the longest path", std::string(4095, '/'), kReadWrite, OPEN_EXISTING, ERROR_ACCESS_DENIED},
        {"one octet more", std::string(4096, '/'), kReadWrite, OPEN_EXISTING, ERROR_FILENAME_EXCED_RANGE},
        {"too long a path", std::string(5000, 'x'), kReadWrite, OPEN_EXISTING, ERROR_FILENAME_EXCED_RANGE},
        {"too long with /dev/", std::string(4093, 'x'), kReadWrite, OPEN_EXISTING, ERROR_FILENAME_EXCED_RANGE},
        {"nothing", "", kReadWrite, OPEN_EXISTING, ERROR_PATH_NOT_FOUND},
        {"only the device colon", ":", kReadWrite, OPEN_EXISTING, ERROR_PATH_NOT_FOUND},
        {"no access", m_file, 0, OPEN_EXISTING, ERROR_INVALID_PARAMETER},
        {"another access", m_file, 0x10000000, OPEN_EXISTING, ERROR_INVALID_PARAMETER},
        {"another disposition", m_file, kReadWrite, 1, ERROR_INVALID_PARAMETER},
        {"a device by its bare name", "null:", kReadWrite, OPEN_EXISTING, ERROR_SUCCESS},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(OpenErrorOf(row.name, row.access, row.disposition), row.error) << row.what;
    }
    EXPECT_EQ(CreateFileW(nullptr, kReadWrite, 0, nullptr, OPEN_EXISTING, 0, nullptr), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST_F(PlatformFile, IsReadToItsEndAndHasNoSerialCalls)
{
    std::ofstream(m_file) << "text";
    const HANDLE file = Open(m_file);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    char buffer[8];
    DWORD read = 0;
    EXPECT_TRUE(ReadFile(file, buffer, 8, &read, nullptr));
    EXPECT_EQ(std::string(buffer, read), "text");
    EXPECT_TRUE(ReadFile(file, buffer, 8, &read, nullptr));
    EXPECT_EQ(read, 0u);
    int32_t high = 0;
    EXPECT_EQ(SetFilePointer(file, -1, &high, FILE_END), 3u) << "with a high half the low one has no sign";
    EXPECT_EQ(high, 1);
    EXPECT_EQ(SetFilePointer(file, -1, nullptr, FILE_END), 3u);
    EXPECT_TRUE(ReadFile(file, buffer, 8, &read, nullptr));
    EXPECT_EQ(read, 1u);
    EXPECT_EQ(SetFilePointer(file, -9, nullptr, FILE_END), INVALID_SET_FILE_POINTER);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);

    DCB block = {};
    const COMMTIMEOUTS timeouts = {};
    const auto refused = [](BOOL result) {
        const bool right = !result && GetLastError() == ERROR_INVALID_FUNCTION;
        SetLastError(0);
        return right;
    };
    EXPECT_TRUE(refused(GetCommState(file, &block)));
    EXPECT_TRUE(refused(SetCommState(file, &block)));
    EXPECT_TRUE(refused(SetCommTimeouts(file, &timeouts)));
    EXPECT_TRUE(refused(SetupComm(file, 1, 1)));
    EXPECT_TRUE(refused(PurgeComm(file, PURGE_RXCLEAR)));
    EXPECT_TRUE(CloseHandle(file));
}

TEST_F(PlatformFile, EachWriteGoesToTheEndWhoeverElseWrites)
{
    HANDLE files[2];
    for (HANDLE& file : files)
        file = Open(m_file, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_ALWAYS);
    for (const char* text : {"one\n", "two\n", "six\n"}) {
        DWORD written = 0;
        for (const HANDLE file : files)
            EXPECT_TRUE(WriteFile(file, text, 4, &written, nullptr));
    }
    EXPECT_EQ(SetFilePointer(files[0], 0, nullptr, FILE_END), 24u);
    for (const HANDLE file : files)
        EXPECT_TRUE(CloseHandle(file));

    std::ifstream file(m_file);
    const std::string content(std::istreambuf_iterator<char>(file), {});
    EXPECT_EQ(content, "one\none\ntwo\ntwo\nsix\nsix\n");
    struct stat state;
    ASSERT_EQ(stat(m_file.c_str(), &state), 0);
    EXPECT_EQ(state.st_mode & 0777, 0600u) << "its owner's only";
}

TEST_F(PlatformFile, NamesAreUtf8OnTheHost)
{
    m_file = m_folder + "/\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\xEF\xBF\xBD";
    const std::u16string name = WideName(m_folder) + u"/\u00E4\u20AC\U0001F600";
    for (const char16_t half : {u'\xD83D', u'\xDE00'}) { // half a pair is no character
        const HANDLE file = CreateFileW((name + half).c_str(), GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, 0, nullptr);
        EXPECT_NE(file, INVALID_HANDLE_VALUE);
        CloseHandle(file);
        EXPECT_EQ(unlink(m_file.c_str()), 0);
    }
}

TEST_F(PlatformFile, StandardErrorIsAFileThatTakesText)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const int before = dup(STDERR_FILENO);
    dup2(ends[1], STDERR_FILENO);
    const HANDLE file = GetStdHandle(STD_ERROR_HANDLE);
    DWORD written = 0;
    const BOOL wrote = WriteFile(file, "fault\n", 6, &written, nullptr);
    dup2(before, STDERR_FILENO);
    EXPECT_TRUE(wrote);
    char buffer[16];
    EXPECT_EQ(std::string(buffer, static_cast<size_t>(read(ends[0], buffer, sizeof buffer))), "fault\n");
    EXPECT_EQ(GetStdHandle(STD_ERROR_HANDLE), file);
    EXPECT_EQ(GetStdHandle(1), INVALID_HANDLE_VALUE);
    for (const int descriptor : {before, ends[0], ends[1]})
        close(descriptor);
}
