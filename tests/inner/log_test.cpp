// The log: in this process through its sink, and in processes of their own as TALVEK_LOG sets it.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <map>
#include <memory>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/child_process.h"
#include "tests/support/log_capture.h"
#include "tests/support/scratch_folder.h"
#include "utility/log.h"

namespace {

using Lines = std::vector<std::string>;

// Starts the probe with standard error in the folder's file "stderr".
pid_t StartProbe(const ScratchFolder& folder, const std::string& setting, const std::vector<std::string>& arguments)
{
    setenv("TALVEK_LOG", setting.c_str(), 1);
    std::vector<std::string> words = BuiltProgram("talvek_log_probe");
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& word : words)
        argv.push_back(word.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    posix_spawn_file_actions_addopen(&files, STDERR_FILENO, folder.Path("stderr").c_str(),
                                     O_WRONLY | O_CREAT | O_APPEND, 0600);
    pid_t process = -1;
    posix_spawnp(&process, argv[0], &files, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&files);
    unsetenv("TALVEK_LOG");
    return process;
}

int WaitForProbe(pid_t process)
{
    int status = -1;
    EXPECT_EQ(waitpid(process, &status, 0), process);
    return status;
}

int RunProbe(const ScratchFolder& folder, const std::string& setting, const std::string& mode)
{
    return WaitForProbe(StartProbe(folder, setting, {mode}));
}

// Checks the form of each line and takes off what differs from run to run: time and thread.
Lines WithoutStamps(const Lines& lines)
{
    static const std::regex stamp(R"(\d{4}-[01]\d-[0-3]\d [0-2]\d:[0-5]\d:[0-6]\d\.\d{3} \[\d+\] )");
    Lines rest;
    for (const std::string& line : lines) {
        std::smatch match;
        const bool stamped = std::regex_search(line, match, stamp, std::regex_constants::match_continuous);
        EXPECT_TRUE(stamped) << line;
        rest.push_back(stamped ? std::string(match.suffix()) : line);
    }
    return rest;
}

// --- TALVEK_LOG ----------------------------------------------------------------------------------------------------

const Lines kErrors = {"- fault", "OrvAtPort:42 ASSERTION FAILURE: ===>never"};
const Lines kInformation = {"TALVEK:218 narrow 7", u8"sms:3 wide Gr\u00FC\u00DFe", "- information ab", "- fault",
                            "OrvAtPort:42 ASSERTION FAILURE: ===>never"};
const Lines kEverything = {"TALVEK:218 narrow 7",
                           u8"sms:3 wide Gr\u00FC\u00DFe",
                           "- OrvApiStartup",
                           "- information ab",
                           "- fault",
                           "OrvAtPort:42 ASSERTION FAILURE: ===>never",
                           R"(- WriteFile data: AT\r)"};

TEST(LogFile, GetsWhatItsLevelAsksFor)
{
    const struct {
        const char* level;
        Lines expected;
    } rows[] = {{"error", kErrors}, {"info", kInformation}, {"trace", kEverything}};
    for (const auto& row : rows) {
        const ScratchFolder folder;
        EXPECT_EQ(RunProbe(folder, row.level + (":" + folder.Path("log")), "each"), 0) << row.level;
        EXPECT_EQ(WithoutStamps(folder.Lines("log")), row.expected) << row.level;
        EXPECT_EQ(folder.Read("stderr"), "") << row.level;
    }
}

TEST(LogFile, IsAddedTo)
{
    const ScratchFolder folder;
    const std::string path = folder.Write("log", "from before\n");
    EXPECT_EQ(RunProbe(folder, "error:" + path, "each"), 0);
    const Lines lines = folder.Lines("log");
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], "from before");
}

TEST(LogFile, MayBeABareName)
{
    const ScratchFolder folder;
    ASSERT_EQ(chdir(folder.Path("").c_str()), 0);
    EXPECT_EQ(RunProbe(folder, "error:talvek.log", "each"), 0);
    EXPECT_EQ(WithoutStamps(folder.Lines("talvek.log")), kErrors);
}

TEST(LogFile, MayBeStandardError)
{
    const ScratchFolder folder;
    EXPECT_EQ(RunProbe(folder, "trace:-", "each"), 0);
    EXPECT_EQ(WithoutStamps(folder.Lines("stderr")), kEverything);
}

TEST(LogFile, HasAnEntryBeforeItsCallReturns)
{
    const ScratchFolder folder;
    const int status = RunProbe(folder, "info:" + folder.Path("log"), "killed");
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WithoutStamps(folder.Lines("log")), Lines{"- last words"});
}

TEST(LogFile, IsGivenBackWhenTheLibraryIsUnloaded)
{
    const ScratchFolder folder;
    EXPECT_EQ(RunProbe(folder, "info:" + folder.Path("log"), "reloaded"), 0) << folder.Read("stderr");
    const Lines lines = WithoutStamps(folder.Lines("log"));
    ASSERT_EQ(lines.size(), 1200u);
    EXPECT_EQ(lines.back(), "probe:1199 load 1199");
}

TEST(LogFile, KeepsItsLevelWhileASinkListens)
{
    const ScratchFolder folder;
    EXPECT_EQ(RunProbe(folder, "error:" + folder.Path("log"), "captured"), 0);
    EXPECT_EQ(WithoutStamps(folder.Lines("log")), kErrors);
}

TEST(LogFile, HasEntriesWithoutSourceWhenNoThreadLocalWordsAreLeft)
{
    const ScratchFolder folder;
    EXPECT_EQ(RunProbe(folder, "info:" + folder.Path("log"), "no-slots"), 0);
    Lines expected = kInformation;
    expected[0] = "- narrow 7";
    expected[1] = u8"- wide Gr\u00FC\u00DFe";
    EXPECT_EQ(WithoutStamps(folder.Lines("log")), expected);
}

TEST(LogFile, KeepsEachEntryOnItsLine)
{
    const ScratchFolder folder;
    EXPECT_EQ(RunProbe(folder, "info:" + folder.Path("log"), "hostile"), 0);
    const Lines lines = WithoutStamps(folder.Lines("log"));
    const Lines expected = {
        R"(- two\r\nlines\tand\x01\x1B[2J\x7F)",
        R"(- NUL \x00.)",
        R"(- octets \xE9 \xC0\x80 \xE0\x9F\x80 \xED\xA0\x80 \xF0\x8F\x80\x80 \xF4\x90\x80\x80 \xF5\x80\x80\x80 \xC3)",
        u8R"(- C1 \xC2\x9B, UTF-8 )"
        u8"\u00E9 \u20AC \U0001F600",
        u8"- surrogates h\uFFFD l\uFFFD \U0001F600",
        R"(a\nb:1 )" + std::string(512, 'x'),
    };
    ASSERT_EQ(lines.size(), expected.size() + 1);
    for (size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(lines[i], expected[i]);
    EXPECT_EQ(lines.back().compare(0, 10, R"(- \x01\x01)"), 0);
    EXPECT_LE(folder.Lines("log").back().size(), 3072u);
    EXPECT_EQ(lines.back().find("not to be seen"), std::string::npos);
}

TEST(LogSetting, IsRefusedInOneLineWhenItMakesNoSense)
{
    const ScratchFolder folder;
    const std::string missing = folder.Path("missing/log");
    const struct {
        std::string setting;
        std::string complaint;
    } rows[] = {
        {"verbose:/dev/null",
         "TALVEK_LOG=verbose:/dev/null: unknown level (off, error, info or trace); the log is off"},
        {"ERROR:/dev/null", "TALVEK_LOG=ERROR:/dev/null: unknown level (off, error, info or trace); the log is off"},
        {"err:x\ny", R"(TALVEK_LOG=err:x\ny: unknown level (off, error, info or trace); the log is off)"},
        {":/dev/null", "TALVEK_LOG=:/dev/null: unknown level (off, error, info or trace); the log is off"},
        {"trace", "TALVEK_LOG=trace: no file (LEVEL:FILE); the log is off"},
        {"trace:", "TALVEK_LOG=trace:: no file (LEVEL:FILE); the log is off"},
        {"info:" + missing, "TALVEK_LOG=info:" + missing + ": cannot open the file (error 3); the log is off"},
        {"info:" + folder.Path(""),
         "TALVEK_LOG=info:" + folder.Path("") + ": cannot open the file (error 5); the log is off"},
        {"info:/" + std::string(5000, 'x'), "TALVEK_LOG=...: too long; the log is off"},
    };
    for (const auto& row : rows) {
        const ScratchFolder own;
        EXPECT_EQ(RunProbe(own, row.setting, "each"), 0);
        EXPECT_EQ(own.Read("stderr"), row.complaint + "\n");
    }
}

TEST(LogSetting, MayBeOff)
{
    for (const char* setting : {"", "off", "off:"}) {
        const ScratchFolder folder;
        EXPECT_EQ(RunProbe(folder, setting, "each"), 0) << setting;
        EXPECT_EQ(folder.Read("stderr"), "") << setting;
    }
    const ScratchFolder folder;
    EXPECT_EQ(RunProbe(folder, "off:" + folder.Path("log"), "each"), 0);
    EXPECT_FALSE(std::filesystem::exists(folder.Path("log")));
}

// --- records -------------------------------------------------------------------------------------------------------

TEST(LogRecord, TellsWhatWasCalled)
{
    const LogCapture log;
    const char* const no_text = nullptr;
    LogStoreFileLine(TXT(".\\OrvNotify.cpp"), 12);
    WriteLog(2, "between the halves");
    LogC("narrow\n");
    LogC("no source of its own");
    LogStoreFileLine(TXT(".\\first.cpp"), 1);
    LogStoreFileLine(TXT("C:\\deep.er/second.cxx.cpp"), -2);
    LogW(TXT("wide %c"), 0x20AC);
    LogStoreFileLine(nullptr, 3);
    LogW(TXT("null source"));
    TBD_Output(4, 2, TXT("error %S"), "narrow");
    TBD_Assert(0, no_text, TXT("bare"), 5);
    DisplayRawData("data: ", "a\0\r\n\t\xFF~\x7F\\", 9);
    DisplayRawData(no_text, nullptr, 3);

    const struct {
        const char* function;
        int kind;
        const char* module;
        int line;
        const char* text;
    } rows[] = {
        {"WriteLog", 2, "", 0, "between the halves"},
        {"LogC", 0, "OrvNotify", 12, "narrow\n"},
        {"LogC", 0, "", 0, "no source of its own"},
        {"LogW", 0, "second.cxx", -2, u8"wide \u20AC"},
        {"LogW", 0, "", 0, "null source"},
        {"TBD_Output", 2, "", 0, "error narrow"},
        {"TBD_Assert", 0, "bare", 5, "(null)"},
        {"DisplayRawData", 0, "", 0, R"(data: a\x00\r\n\t\xFF~\x7F\)"},
        {"DisplayRawData", 0, "", 0, "(null)(null)"},
    };
    const std::vector<LogCapture::Record> records = log.Records();
    ASSERT_EQ(records.size(), std::size(rows)) << log.Dump();
    for (size_t i = 0; i < records.size(); ++i) {
        EXPECT_EQ(records[i].function, rows[i].function) << rows[i].text;
        EXPECT_EQ(records[i].kind, rows[i].kind) << rows[i].text;
        EXPECT_EQ(records[i].module, rows[i].module) << rows[i].text;
        EXPECT_EQ(records[i].line, rows[i].line) << rows[i].text;
        EXPECT_EQ(records[i].text, rows[i].text);
    }
}

TEST(LogRecord, ShowsAtMost512OctetsOfData)
{
    const LogCapture log;
    const std::vector<BYTE> data(512, 0xAA); // as long as what may be read
    DisplayRawData(std::string(600, 'l').c_str(), data.data(), 0xFFFFFFFF);
    std::string expected(512, 'l');
    for (int i = 0; i < 512; ++i)
        expected += R"(\xAA)";
    EXPECT_EQ(log.Texts(), Lines{expected});
}

TEST(LogRecord, IsCutAtItsLongest)
{
    const LogCapture log;
    const std::string part(500, 'p');
    const std::u16string wide_part(500, 0x20AC);
    LogC("%s%s%s%s%s", part.c_str(), part.c_str(), part.c_str(), part.c_str(), part.c_str());
    LogW(TXT("%s%s"), wide_part.c_str(), wide_part.c_str());
    ASSERT_EQ(log.Texts().size(), 2u);
    EXPECT_EQ(log.Texts()[0], std::string(2047, 'p'));
    EXPECT_EQ(log.Texts()[1].size(), 2046u) << "682 whole characters of three octets";
}

TEST(LogRecord, LeavesTheLastErrorAlone)
{
    const LogCapture log;
    SetLastError(4711);
    LogStoreFileLine(TXT(".\\TALVEK.cpp"), 1);
    LogC("error = %d", GetLastError());
    LogW(TXT("w"));
    WriteLog(1, "w");
    TBD_Output(4, 2, TXT("w"));
    TBD_Assert(0, "w", TXT("w"), 1);
    DisplayRawData("w", "w", 1);
    EXPECT_EQ(GetLastError(), 4711u);
    EXPECT_EQ(log.Count("error = 4711"), 1) << log.Dump();
}

TEST(LogSink, RaisesTheLevelAndPutsItBack)
{
    EXPECT_EQ(ov_LogLevel, OV_LOG_OFF);
    {
        const LogCapture log;
        EXPECT_EQ(ov_LogLevel, OV_LOG_TRACE);
    }
    EXPECT_EQ(ov_LogLevel, OV_LOG_OFF);
}

TEST(LogSink, GetsNothingThatTheLevelKeepsBack)
{
    const LogCapture log;
    const struct {
        OvLogLevel level;
        Lines expected;
    } rows[] = {
        {OV_LOG_OFF, {}},
        {OV_LOG_ERROR, {"tbd 2", "assert"}},
        {OV_LOG_INFO, {"c", "w", "tbd 1", "tbd 2", "assert"}},
        {OV_LOG_TRACE, {"c", "w", "write", "tbd 1", "tbd 2", "assert", "raw"}},
    };
    for (const auto& row : rows) {
        ov_LogLevel = row.level;
        const size_t before = log.Texts().size();
        LogC("c");
        LogW(TXT("w"));
        WriteLog(1, "write");
        TBD_Output(4, 1, TXT("tbd 1"));
        TBD_Output(4, 2, TXT("tbd 2"));
        TBD_Assert(0, "assert", TXT("m"), 1);
        DisplayRawData("raw", "", 0);
        const Lines texts = log.Texts();
        EXPECT_EQ(Lines(texts.begin() + before, texts.end()), row.expected) << row.level;
    }
}

struct Nested {
    int depth;
    Lines texts;
};

void LogFromSink(const OvLogRecord* record, void* context)
{
    Nested* const nested = static_cast<Nested*>(context);
    nested->texts.push_back(record->text);
    if (++nested->depth < 3) LogC("nested %d", nested->depth);
    if (nested->depth == 3) OvCaptureLog(nullptr, nullptr);
}

TEST(LogSink, MayLogAndMayEndItself)
{
    Nested nested = {0, {}};
    OvCaptureLog(&LogFromSink, &nested);
    LogC("outermost");
    LogC("not seen any more");
    EXPECT_EQ(nested.texts, (Lines{"outermost", "nested 1", "nested 2"}));
}

// --- threads -------------------------------------------------------------------------------------------------------

TEST(ThreadsLog, KeepTheirSourcesApart)
{
    static const WCHAR* const modules[] = {TXT(".\\m0.cpp"), TXT(".\\m1.cpp"), TXT(".\\m2.cpp"), TXT(".\\m3.cpp")};
    const LogCapture log;
    std::atomic<int> ready{0};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([thread, &ready] {
            ++ready;
            while (ready < 4)
                std::this_thread::yield();
            for (int entry = 0; entry < 200; ++entry) {
                LogStoreFileLine(modules[thread], entry);
                std::this_thread::yield();
                LogC("m%d:%d", thread, entry);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    const std::vector<LogCapture::Record> records = log.Records();
    EXPECT_EQ(records.size(), 800u);
    for (const LogCapture::Record& record : records)
        EXPECT_EQ(record.module + ":" + std::to_string(record.line), record.text);
}

void CountRecord(const OvLogRecord*, void* context) { ++*static_cast<int*>(context); }

// The counter is no atomic, and it is gone once the sink has been taken away: two calls at once, or a late one, show up
// in a sanitizer.
TEST(ThreadsLog, SinksComeAndGoWhileOthersLog)
{
    std::atomic<bool> stop{false};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 3; ++thread) {
        threads.emplace_back([&stop] {
            while (!stop) {
                TRACE_ERROR(TXT("busy"));
                std::this_thread::yield();
            }
        });
    }
    for (int round = 0; round < 200; ++round) {
        const auto count = std::make_unique<int>(0);
        OvCaptureLog(&CountRecord, count.get());
        LogC("mine");
        OvCaptureLog(nullptr, nullptr);
        EXPECT_GE(*count, 1);
    }
    stop = true;
    for (std::thread& thread : threads)
        thread.join();
}

TEST(ThreadsLog, WriteWholeLinesIntoOneFileEvenFromTwoProcesses)
{
    const ScratchFolder folder;
    const std::string setting = "info:" + folder.Path("log");
    const pid_t first = StartProbe(folder, setting, {"threads", "A"});
    const pid_t second = StartProbe(folder, setting, {"threads", "B"});
    EXPECT_EQ(WaitForProbe(first), 0) << folder.Read("stderr");
    EXPECT_EQ(WaitForProbe(second), 0) << folder.Read("stderr");

    const Lines lines = WithoutStamps(folder.Lines("log"));
    ASSERT_EQ(lines.size(), 800u);
    std::map<std::string, int> next; // entry, by process and thread
    for (const std::string& line : lines) {
        int number = 0;
        char process = 0;
        int thread = 0;
        int entry = 0;
        ASSERT_EQ(sscanf(line.c_str(), "probe:%d %c/%d/%d ", &number, &process, &thread, &entry), 4) << line;
        const std::string start = std::string(1, process) + "/" + std::to_string(thread);
        EXPECT_EQ(entry, next[start]++) << line;
        EXPECT_EQ(line, "probe:" + std::to_string(entry) + " " + start + "/" + std::to_string(entry) + " " +
                            std::string(100 + static_cast<size_t>(entry), '='));
    }
}

} // namespace
