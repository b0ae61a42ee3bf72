#include "at/reply.h"

#include <string.h>

#include "at/parse.h"
#include "utility/log.h"

void Reply::Log(const char* text, int line) const
{
    if (!LogIsOn(OV_LOG_INFO)) return;
    LogStoreFileLine(m_log_source, line);
    LogC("%s", text);
}

void Reply::Fail(const char* fault, int line)
{
    Log(fault, line);
    m_failed = true;
}

void Reply::SkipEcho(int line)
{
    if (m_failed) return;
    if (!MatchStringBeginning(m_rest, m_command, &m_rest)) Log("MatchStringBeginning failed (echo ) ", line);
}

void Reply::OptionalLineBreak()
{
    if (!m_failed) ParseRspPrefix(m_rest, &m_rest);
}

void Reply::Expect(const char* text, const char* fault, int line)
{
    if (!m_failed && !MatchStringBeginning(m_rest, text, &m_rest)) Fail(fault, line);
}

ULONG Reply::Number(const char* fault, int line)
{
    ULONG value = 0;
    if (!m_failed && !ParseUInt(m_rest, 1, &value, &m_rest)) Fail(fault, line);
    return value;
}

void Reply::Text(char* out, ULONG size, const char* fault, int line)
{
    *out = 0;
    if (m_failed) return;
    const bool quoted = *m_rest == '"';
    const char* const begin = quoted ? m_rest + 1 : m_rest;
    const char* const end = begin + strcspn(begin, quoted ? "\"\r\n" : ",\r\n");
    if (quoted && *end != '"') return Fail(fault, line);
    const size_t length = static_cast<size_t>(end - begin) < size ? static_cast<size_t>(end - begin) : size - 1;
    memcpy(out, begin, length);
    out[length] = 0;
    m_rest = quoted ? end + 1 : end;
}

void Reply::LineBreak(const char* fault, int line)
{
    if (!m_failed && !ParseRspSuffix(m_rest, &m_rest)) Fail(fault, line);
}

bool Reply::Has(const char* text) { return !m_failed && MatchStringBeginning(m_rest, text, &m_rest); }

const char* Reply::UpTo(const char* stops, ULONG* length)
{
    const char* const begin = m_rest;
    if (!m_failed) m_rest += strcspn(m_rest, stops);
    *length = static_cast<ULONG>(m_rest - begin);
    return begin;
}

void Reply::Refuse(const char* fault, int line)
{
    if (!m_failed) Fail(fault, line);
}

bool Reply::Stands(const char* text) const
{
    const char* rest;
    return !m_failed && MatchStringBeginning(m_rest, text, &rest);
}
