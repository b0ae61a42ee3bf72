#include "utility/record.h"

#include <iterator>

#include "utility/format.h"
#include "utility/log.h"
#include "utility/text_writer.h"

Shared<ULONG> ov_LogLevel;

namespace {

// A text that is all control characters takes more room in its line than in its record; what is left over here is
// enough for the longest dump, and the line still goes through a pipe in one piece.
constexpr ULONG kLineRoom = 3072;
constexpr ULONG kSettingRoom = 4096;

struct LevelName {
    const WCHAR* name;
    OvLogLevel level;
};
constexpr LevelName kLevels[] = {
    {TXT("off"), OV_LOG_OFF},
    {TXT("error"), OV_LOG_ERROR},
    {TXT("info"), OV_LOG_INFO},
    {TXT("trace"), OV_LOG_TRACE},
};

bool Equals(const WCHAR* text, ULONG length, const WCHAR* name)
{
    ULONG i = 0;
    while (i < length && name[i] && text[i] == name[i])
        ++i;
    return i == length && !name[i];
}

// C1 controls are two octets in UTF-8, and a terminal obeys them as well.
bool IsControl(const char* text, ULONG length)
{
    const BYTE first = static_cast<BYTE>(text[0]);
    if (length == 1) return first < 0x20 || first == 0x7F;
    return length == 2 && first == 0xC2 && static_cast<BYTE>(text[1]) < 0xA0;
}

// Puts a text such that it stays on its line: controls and octets that are no UTF-8 are escaped.
void PutOnLine(TextWriter<char>& line, const char* text, ULONG length)
{
    for (ULONG at = 0; at < length && !line.Full();) {
        const ULONG size = Utf8CharacterLength(text + at, length - at);
        if (size > 0 && !IsControl(text + at, size)) {
            line.PutWhole(text + at, size);
            at += size;
            continue;
        }
        for (const ULONG end = at + (size > 0 ? size : 1); at < end; ++at)
            PutEscaped(line, text[at]);
    }
}

void WriteLine(HANDLE file, char* line, ULONG length)
{
    line[length] = '\n'; // in the place of the terminator
    DWORD written = 0;
    WriteFile(file, line, length + 1, &written, nullptr);
}

void WriteRecordLine(HANDLE file, const OvLogRecord& record, ULONG text_length)
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    char line[kLineRoom];
    const ULONG stamp =
        PrintNarrow(line, kLineRoom, "%04u-%02u-%02u %02u:%02u:%02u.%03u [%u] ", now.wYear, now.wMonth, now.wDay,
                    now.wHour, now.wMinute, now.wSecond, now.wMilliseconds, GetCurrentThreadId());
    char source[96] = "- ";
    ULONG source_length = 2;
    if (record.module[0]) source_length = PrintNarrow(source, sizeof source, "%s:%d ", record.module, record.line);

    TextWriter<char> rest(line + stamp, kLineRoom - stamp);
    PutOnLine(rest, source, source_length);
    PutOnLine(rest, record.text, text_length);
    WriteLine(file, line, stamp + rest.Finish());
}

// Where records go. TALVEK_LOG is read when the library is loaded, before any other code can log.
class LogState {
public:
    LogState()
    {
        InitializeCriticalSection(&m_section);
        ReadSetting();
        ov_LogLevel = m_level;
    }

    // The section stays: a thread that outlives the process's main function may be about to enter it.
    ~LogState()
    {
        EnterCriticalSection(&m_section);
        ov_LogLevel = OV_LOG_OFF;
        m_level = OV_LOG_OFF;
        m_sink = nullptr;
        if (m_owns_file) CloseHandle(m_file);
        LeaveCriticalSection(&m_section);
    }
    LogState(const LogState&) = delete;
    LogState& operator=(const LogState&) = delete;

    // One critical section keeps lines whole, times in order and calls of the sink apart.
    void Write(OvLogLevel level, const OvLogRecord& record, ULONG text_length)
    {
        EnterCriticalSection(&m_section);
        if (level <= m_level) {
            if (m_owns_file) SetFilePointer(m_file, 0, nullptr, FILE_END); // another process may have added to it
            WriteRecordLine(m_file, record, text_length);
        }
        if (m_sink) m_sink(&record, m_context);
        LeaveCriticalSection(&m_section);
    }

    void Capture(void (*sink)(const OvLogRecord*, void*), void* context)
    {
        EnterCriticalSection(&m_section);
        m_sink = sink;
        m_context = context;
        ov_LogLevel = sink ? OV_LOG_TRACE : m_level;
        LeaveCriticalSection(&m_section);
    }

private:
    void ReadSetting()
    {
        WCHAR setting[kSettingRoom];
        const DWORD length = GetEnvironmentVariableW(TXT("TALVEK_LOG"), setting, kSettingRoom);
        if (length == 0) return;
        if (length >= kSettingRoom) return Complain(TXT("..."), "too long");

        const WCHAR* file = setting;
        while (*file && *file != ':')
            ++file;
        const ULONG name_length = static_cast<ULONG>(file - setting);
        const LevelName* found = kLevels;
        while (found != std::end(kLevels) && !Equals(setting, name_length, found->name))
            ++found;
        if (found == std::end(kLevels)) return Complain(setting, "unknown level (off, error, info or trace)");
        if (found->level == OV_LOG_OFF) return;
        if (!file[0] || !file[1]) return Complain(setting, "no file (LEVEL:FILE)");
        if (!Open(file + 1)) {
            char fault[48];
            PrintNarrow(fault, sizeof fault, "cannot open the file (error %u)", GetLastError());
            return Complain(setting, fault);
        }
        m_level = found->level;
    }

    bool Open(const WCHAR* name)
    {
        if (Equals(name, BoundedLength(name, kSettingRoom), TXT("-"))) {
            m_file = GetStdHandle(STD_ERROR_HANDLE);
            return m_file && m_file != INVALID_HANDLE_VALUE;
        }
        m_file = CreateFileW(name, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS,
                             FILE_ATTRIBUTE_NORMAL, nullptr);
        m_owns_file = m_file != INVALID_HANDLE_VALUE;
        return m_owns_file;
    }

    // The setting is at fault: one line on standard error, and no log.
    void Complain(const WCHAR* setting, const char* fault)
    {
        const HANDLE error_output = GetStdHandle(STD_ERROR_HANDLE);
        if (!error_output || error_output == INVALID_HANDLE_VALUE) return;
        char message[kTextRoom];
        const ULONG length = PrintNarrow(message, kTextRoom, "TALVEK_LOG=%S: %s; the log is off", setting, fault);
        char line[kLineRoom];
        TextWriter<char> writer(line, kLineRoom);
        PutOnLine(writer, message, length);
        WriteLine(error_output, line, writer.Finish());
    }

    CRITICAL_SECTION m_section;
    HANDLE m_file = INVALID_HANDLE_VALUE;
    bool m_owns_file = false;
    OvLogLevel m_level = OV_LOG_OFF; // of TALVEK_LOG
    void (*m_sink)(const OvLogRecord*, void*) = nullptr;
    void* m_context = nullptr;
};

LogState g_log;

} // namespace

void WriteRecord(OvLogLevel level, const OvLogRecord& record, ULONG text_length)
{
    g_log.Write(level, record, text_length);
}

void WriteFault(const char* text)
{
    const KeepLastError keep;
    if (!LogIsOn(OV_LOG_ERROR)) return;
    WriteRecord(OV_LOG_ERROR, {"TBD_Output", 2, "", 0, text}, BoundedLength(text, kTextRoom));
}

void OvCaptureLog(void (*sink)(const OvLogRecord* record, void* context), void* context)
{
    g_log.Capture(sink, context);
}
