// The SIM's preferred operators, over the AT port (3GPP TS 27.007, +CPOL).

#include <string.h>

#include <iterator>

#include "api/admission.h"
#include "api/at_command.h"
#include "at/OrvAtPort.h"
#include "at/reply.h"
#include "at/util.h"
#include "talvek/gsm_network.h"
#include "utility/heap_buffer.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKGsm.cpp");

constexpr ULONG kTimeout_ms = 2000;
constexpr ULONG kMaxName = 32;
constexpr ULONG kGrowth = 16; // entries by which the list grows

// The functions log under another one's name: adding under removing, removing under listing.
constexpr AtErrorTexts kAddErrors = {"OrvRemovePreferredOperator: Extracted CME Error code = %lu",
                                     "OrvRemovePreferredOperator: Failed to extract CME Error"};
constexpr AtErrorTexts kListErrors = {"OrvGetPreferredOperatorListGobi::Extracted CME Error code = %lu",
                                      "OrvGetPreferredOperatorListGobi: Failed to extract CME Error"};

ORV_RCODE RequireOperators()
{
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_UNSUPPORTED)) return refused;
    return RequireOpenAtPort();
}

// `if_refused` is logged before what the module has against the command.
ORV_RCODE Send(const char* command, const AtErrorTexts& errors, char* reply, const char* if_refused = nullptr,
               int line = __builtin_LINE())
{
    if (g_ATPortInstance.SendCommandTimed(command, reply, kTimeout_ms)) return ORV_RCODE_OK;
    if (if_refused && LogIsOn(OV_LOG_INFO)) {
        LogStoreFileLine(kLogSource, line);
        LogC("%s", if_refused);
    }
    LogAtRefusal(kLogSource, command, errors, reply, line);
    return ORV_RCODE_FAILED;
}

// --- adding ----------------------------------------------------------------------------------------------------------

// What stands for a flag; the first one that is set counts.
struct FlagText {
    ULONG flag;
    const char* text;
};
constexpr FlagText kNaming[] = {
    {ORV_OPERATOR_IS_NUMERIC, "2,\"%s\""}, {ORV_OPERATOR_IS_SHORT, "1,\"%s\""}, {ORV_OPERATOR_IS_LONG, "0,\"%s\""}};
constexpr FlagText kAccess[] = {
    {ORV_OPERATOR_UTRAN, ",0,0,1"}, {ORV_OPERATOR_GSM_COMPACT, ",0,1,0"}, {ORV_OPERATOR_GSM, ",1,0,0"}};

// Null when none is set.
template <size_t n>
const char* Choose(const FlagText (&table)[n], ULONG flags)
{
    for (const FlagText& row : table)
        if (flags & row.flag) return row.text;
    return nullptr;
}

// Anything that would end the quoted text in the command would begin another one.
bool IsName(const char* name)
{
    if (!name) return false;
    ULONG length = 0;
    for (; name[length] != 0; ++length) {
        const BYTE character = static_cast<BYTE>(name[length]);
        if (length == kMaxName || character < ' ' || character == '"' || character == 0x7F) return false;
    }
    return true;
}

// A command line that is put together from left to right.
class CommandBuilder {
public:
    template <class... Arguments>
    void Append(const char* format, Arguments... arguments)
    {
        if (szWalk) {
            const ULONG room = static_cast<ULONG>(std::end(m_text) - szWalk);
            const ULONG length = PrintNarrow(szWalk, room, format, arguments...);
            szWalk = length + 1 < room ? szWalk + length : nullptr;
        }
        TBD_ASSERT(nullptr != szWalk, "ASSERTION FAILURE: ===>NULL != szWalk");
    }
    // Null for a line that does not fit.
    const char* Text() const { return szWalk ? m_text : nullptr; }

private:
    char m_text[CommandLine::kSize] = {};
    char* szWalk = m_text;
};

// --- the list --------------------------------------------------------------------------------------------------------

class OperatorList {
public:
    OperatorList() = default;
    ~OperatorList() { FreeArray(m_entries); }
    OperatorList(const OperatorList&) = delete;
    OperatorList& operator=(const OperatorList&) = delete;

    bool Add(const ORV_PREF_OPERATOR& entry)
    {
        if (m_count == m_allocated && !GrowArray(&m_entries, sizeof entry, m_count, &m_allocated, kGrowth)) {
            LOG_C("OrvGetPreferredOperatorListGobi:  FAILED to allocate memory");
            return false;
        }
        static_cast<ORV_PREF_OPERATOR*>(m_entries)[m_count++] = entry;
        return true;
    }
    // The entries are the client's from now on.
    void HandOver(ORV_PREF_OPERATOR_LIST* list)
    {
        list->sizeStruct = sizeof *list;
        list->uCount = m_count;
        list->pEntries = static_cast<ORV_PREF_OPERATOR*>(m_entries);
        m_entries = nullptr;
    }

private:
    void* m_entries = nullptr;
    ULONG m_count = 0;
    ULONG m_allocated = 0;
};

// "+CPOL: index,format[,operator[,GSM,GSM compact,UTRAN[,…]]]". A module that tells no technologies gives the first
// three only; one that knows more of them gives more numbers.
ORV_PREF_OPERATOR ReadEntry(Reply& reply)
{
    constexpr const char* kFormatFault = "OrvGetPreferredOperatorListGobi: ParseUInt for format failed";
    constexpr const char* kRestFault = "ParseRspSuffix failed ";
    constexpr ULONG kAccessFlags[] = {ORV_OPERATOR_GSM, ORV_OPERATOR_GSM_COMPACT, ORV_OPERATOR_UTRAN};

    ORV_PREF_OPERATOR entry = {};
    reply.Expect("+CPOL: ", "ParseRspPrefix failed");
    entry.uIndex = reply.Number("OrvGetPreferredOperatorListGobi: ParseUInt for Index failed");
    reply.Expect(",", kFormatFault);
    entry.uFormat = reply.Number(kFormatFault);
    if (reply.Stands(",")) {
        reply.Expect(",", kRestFault);
        reply.Text(entry.szOperator, sizeof entry.szOperator, kRestFault);
    }
    for (ULONG i = 0; reply.Stands(","); ++i) {
        reply.Expect(",", kRestFault);
        if (reply.Number(kRestFault) != 0 && i < std::size(kAccessFlags)) entry.uAccessFlags |= kAccessFlags[i];
    }
    reply.LineBreak(kRestFault);
    return entry;
}

} // namespace

ORV_RCODE ORV_CALL OrvAddPreferredOperatorGobi(ULONG index, ULONG flags, const char* name)
{
    if (const ORV_RCODE refused = RequireOperators()) return refused;
    const char* const naming = Choose(kNaming, flags);
    if (!naming || !IsName(name)) return ORV_RCODE_BAD_PARAMETER;
    CommandBuilder command;
    if (index == ORV_OPERATOR_ANY_INDEX)
        command.Append("AT+CPOL=,");
    else
        command.Append("AT+CPOL=%u,", index);
    command.Append(naming, name);
    if (const char* const access = Choose(kAccess, flags)) command.Append("%s", access);
    command.Append("\r");
    if (!command.Text()) return ORV_RCODE_BAD_PARAMETER;
    char reply[kAtBufferSize] = {};
    return Send(command.Text(), kAddErrors, reply);
}

ORV_RCODE ORV_CALL OrvRemovePreferredOperatorGobi(ULONG index)
{
    if (const ORV_RCODE refused = RequireOperators()) return refused;
    CommandLine command;
    command.Format("AT+CPOL=%u\r", index); // any number fits
    char reply[kAtBufferSize] = {};
    return Send(command.text, kListErrors, reply);
}

ORV_RCODE ORV_CALL OrvGetPreferredOperatorListGobi(ULONG format, ORV_PREF_OPERATOR_LIST* list)
{
    constexpr const char* kCommand = "AT+CPOL?\r";
    constexpr const char* kFinalResult = "\r\nOK\r\n";
    if (const ORV_RCODE refused = RequireOperators()) return refused;
    if (!list) return ORV_RCODE_BAD_PARAMETER;

    CommandLine set_format, failure;
    set_format.Format("AT+CPOL=,%u\r", format);
    failure.Format("AT command to set the Operator format AT+CPOL=,%u FAILED", format);
    char text[kAtBufferSize] = {};
    if (const ORV_RCODE refused = Send(set_format.text, kListErrors, text, failure.text)) return refused;
    if (const ORV_RCODE refused = Send(kCommand, kListErrors, text)) return refused;

    if (!strstr(text, kFinalResult)) {
        LOG_C("OrvGetPreferredOperatorListGobi: FindRspPostfix failed");
        return ORV_RCODE_FAILED;
    }
    Reply reply(kLogSource, text, kCommand);
    reply.SkipEcho();
    OperatorList found;
    while (!reply.Stands(kFinalResult)) {
        reply.OptionalLineBreak();
        const ORV_PREF_OPERATOR entry = ReadEntry(reply);
        if (!reply.Finish() || !found.Add(entry)) return ORV_RCODE_FAILED;
    }
    found.HandOver(list);
    return ORV_RCODE_OK;
}
