#include "utility/log.h"

#include "utility/format.h"
#include "utility/record.h"
#include "utility/text_writer.h"

namespace {

struct Source {
    const WCHAR* module;
    int line;
};

// The first half of an entry, kept for the thread until its second half comes. Without slots entries go without a
// source.
class SourceSlots {
public:
    SourceSlots() : m_module(TlsAlloc()), m_line(TlsAlloc()) {}
    ~SourceSlots()
    {
        if (m_module != TLS_OUT_OF_INDEXES) TlsFree(m_module);
        if (m_line != TLS_OUT_OF_INDEXES) TlsFree(m_line);
    }
    SourceSlots(const SourceSlots&) = delete;
    SourceSlots& operator=(const SourceSlots&) = delete;

    void Store(const Source& source)
    {
        if (!Usable()) return;
        const LPVOID line = reinterpret_cast<LPVOID>(static_cast<intptr_t>(source.line));
        if (TlsSetValue(m_line, line)) TlsSetValue(m_module, const_cast<WCHAR*>(source.module));
    }

    Source Take()
    {
        if (!Usable()) return {nullptr, 0};
        const WCHAR* module = static_cast<const WCHAR*>(TlsGetValue(m_module));
        if (!module) return {nullptr, 0};
        TlsSetValue(m_module, nullptr);
        return {module, static_cast<int>(reinterpret_cast<intptr_t>(TlsGetValue(m_line)))};
    }

private:
    bool Usable() const { return m_module != TLS_OUT_OF_INDEXES && m_line != TLS_OUT_OF_INDEXES; }

    DWORD m_module;
    DWORD m_line;
};

SourceSlots g_sources;

// The name that records show: ".\TALVEK.cpp" is "TALVEK".
class ModuleName {
public:
    explicit ModuleName(const WCHAR* path)
    {
        TextWriter<char> writer(m_text, sizeof m_text);
        const ULONG length = path ? BoundedLength(path, kLongestPath) : 0;
        ULONG start = 0;
        for (ULONG i = 0; i < length; ++i) {
            if (path[i] == '\\' || path[i] == '/') start = i + 1;
        }
        ULONG end = length;
        while (end > start && path[end - 1] != '.')
            --end;
        if (end > start) --end; // onto the dot
        if (end == start) end = length;
        PutText(writer, path + start, end - start);
        writer.Finish();
    }
    const char* Text() const { return m_text; }

private:
    static constexpr ULONG kLongestPath = 260;
    char m_text[64];
};

ULONG FormatText(char (&text)[kTextRoom], const char* format, va_list arguments)
{
    return FormatNarrow(text, kTextRoom, format, arguments);
}

ULONG FormatText(char (&text)[kTextRoom], const WCHAR* format, va_list arguments)
{
    WCHAR wide[kTextRoom];
    const ULONG length = FormatWide(wide, kTextRoom, format, arguments);
    TextWriter<char> writer(text, kTextRoom);
    PutText(writer, wide, length);
    return writer.Finish();
}

// Formats and writes one record, unless its level is switched off.
template <class Char>
void WriteFormatted(OvLogLevel level, const char* function, int kind, const Source& source, const Char* format,
                    va_list arguments)
{
    if (!LogIsOn(level)) return;
    char text[kTextRoom];
    const ULONG length = FormatText(text, format, arguments);
    const ModuleName module(source.module);
    WriteRecord(level, {function, kind, module.Text(), source.line, text}, length);
}

} // namespace

void LogStoreFileLine(const WCHAR* module, int line)
{
    const KeepLastError keep;
    g_sources.Store({module, line});
}

void LogC(const char* format, ...)
{
    const KeepLastError keep;
    va_list arguments;
    va_start(arguments, format);
    WriteFormatted(OV_LOG_INFO, "LogC", 0, g_sources.Take(), format, arguments);
    va_end(arguments);
}

void LogW(const WCHAR* format, ...)
{
    const KeepLastError keep;
    va_list arguments;
    va_start(arguments, format);
    WriteFormatted(OV_LOG_INFO, "LogW", 0, g_sources.Take(), format, arguments);
    va_end(arguments);
}

void WriteLog(int level, const char* format, ...)
{
    const KeepLastError keep;
    va_list arguments;
    va_start(arguments, format);
    WriteFormatted(OV_LOG_TRACE, "WriteLog", level, {nullptr, 0}, format, arguments);
    va_end(arguments);
}

void TBD_Output(int, int kind, const WCHAR* format, ...)
{
    const KeepLastError keep;
    va_list arguments;
    va_start(arguments, format);
    WriteFormatted(kind == 2 ? OV_LOG_ERROR : OV_LOG_INFO, "TBD_Output", kind, {nullptr, 0}, format, arguments);
    va_end(arguments);
}

void TBD_Assert(int condition, const char* text, const WCHAR* module, int line)
{
    if (condition || !LogIsOn(OV_LOG_ERROR)) return;
    const KeepLastError keep;
    const ModuleName name(module);
    char copy[kTextRoom];
    const ULONG length = PrintNarrow(copy, kTextRoom, "%s", text);
    WriteRecord(OV_LOG_ERROR, {"TBD_Assert", 0, name.Text(), line, copy}, length);
}
