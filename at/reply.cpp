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
