// The preferred operators that the card keeps, behind AT+CPOL (3GPP TS 27.007).
#include <string.h>

#include <iterator>

#include "sim/at_commands.h"
#include "sim/fields.h"
#include "sim/module.h"
#include "sim/network_names.h"
#include "sim/reset.h"

namespace sim {

static constexpr Field kFields[] = {
    ListField("operators.list", g_module.operators.preferred, 1, kMaxPreferredOperators),
    NumberField("operators.capacity", g_module.operators.capacity, kMaxPreferredOperators),
    NumberField("operators.format", g_module.operators.format, 2),
};
const FieldTable kOperatorFields = {kFields, std::size(kFields)};

enum Column { kPlace, kMcc, kMnc, kMncDigits, kAccess, kColumns };
enum Format : BYTE { kLong, kShort, kDigits };

constexpr ULONG kMccDigits = 3;
constexpr ULONG kAccessColumns = 4;

static OperatorsState& State() { return TheModule().operators; }

void ResetOperators()
{
    State() = {};
    State().preferred = {2, {{1, 1, 1, 2, 5}, {2, 1, 2, 2, 4}}};
    State().capacity = 20;
    State().format = kDigits;
}

// --- the list
// ---------------------------------------------------------------------------------------------------------

// The row of a place, or the one before which it would stand.
static ULONG RowOf(ULONG place)
{
    ULONG row = 0;
    while (row < State().preferred.count && static_cast<ULONG>(State().preferred.values[row][kPlace]) < place)
        ++row;
    return row;
}

static bool IsTaken(ULONG place)
{
    const ULONG row = RowOf(place);
    return row < State().preferred.count && static_cast<ULONG>(State().preferred.values[row][kPlace]) == place;
}

static void MoveRows(ULONG from, ULONG to)
{
    auto& list = State().preferred;
    memmove(list.values + to, list.values + from, (list.count - from) * sizeof(list.values[0]));
    list.count += to - from;
}

static AtResult Remove(ULONG place)
{
    if (place == 0 || place > State().capacity) return AtResult::InvalidIndex;
    if (!IsTaken(place)) return AtResult::NotFound;
    MoveRows(RowOf(place) + 1, RowOf(place));
    return AtResult::Ok;
}

// `place` 0: the first free one.
static AtResult Write(ULONG place, const int32_t (&entry)[kColumns])
{
    if (place == 0) {
        for (place = 1; IsTaken(place); ++place)
            continue;
        if (place > State().capacity) return AtResult::MemoryFull;
    }
    if (place > State().capacity) return AtResult::InvalidIndex;
    const ULONG row = RowOf(place);
    if (!IsTaken(place)) MoveRows(row, row + 1);
    memcpy(State().preferred.values[row], entry, sizeof(entry));
    State().preferred.values[row][kPlace] = static_cast<int32_t>(place);
    return AtResult::Ok;
}

static void ListEntry(const int32_t (&entry)[kColumns], Writer& reply)
{
    NetworkName name = {};
    BYTE format = State().format;
    // Digits for an operator that is not known by name.
    if (!NameOfNetwork(static_cast<WORD>(entry[kMcc]), static_cast<WORD>(entry[kMnc]), name)) format = kDigits;
    if (format == kShort) name.octets[kShortNameLength] = 0;
    if (format == kDigits) {
        Writer digits(name);
        for (ULONG power = 100; power > 0; power /= 10)
            digits.Unsigned(static_cast<ULONG>(entry[kMcc]) / power % 10);
        for (ULONG power = entry[kMncDigits] == 3 ? 100 : 10; power > 0; power /= 10)
            digits.Unsigned(static_cast<ULONG>(entry[kMnc]) / power % 10);
    }
    reply.Add("\r\n+CPOL: ").Number(entry[kPlace]).Character(',').Unsigned(format);
    reply.Add(",\"").Add(name).Character('"');
    for (ULONG i = 0; i < kAccessColumns; ++i)
        reply.Character(',').Unsigned(static_cast<ULONG>(entry[kAccess]) >> i & 1);
    reply.Add("\r\n");
}

// --- what a command says
// ----------------------------------------------------------------------------------------------

// Reads the parts between the commas.
class Parts {
public:
    explicit Parts(const char* text) : m_at(text) {}

    bool AtEnd() const { return *m_at == 0; }
    bool Comma()
    {
        if (*m_at != ',') return false;
        ++m_at;
        return true;
    }
    // False, and nothing taken, when no digit stands here. A number of ten digits and more is some large one.
    bool Number(ULONG* value)
    {
        const char* const begin = m_at;
        for (*value = 0; *m_at >= '0' && *m_at <= '9'; ++m_at)
            *value = *value < 100000000 ? *value * 10 + static_cast<ULONG>(*m_at - '0') : 999999999;
        return m_at != begin;
    }
    // What stands in quotation marks.
    bool Quoted(NetworkName& text)
    {
        const char* const end = *m_at == '"' ? strchr(m_at + 1, '"') : nullptr;
        if (!end || static_cast<ULONG>(end - m_at) > text.Room()) return false;
        const size_t length = static_cast<size_t>(end - m_at - 1);
        memcpy(text.octets, m_at + 1, length);
        text.octets[length] = 0;
        m_at = end + 1;
        return true;
    }

private:
    const char* m_at;
};

// MCC, MNC and the digits of the MNC.
static bool ReadDigits(const char* text, int32_t (&entry)[kColumns])
{
    const ULONG length = BoundedLength(text, 7);
    if (length < kMccDigits + 2 || length > kMccDigits + 3) return false;
    for (ULONG i = 0; i < length; ++i) {
        if (text[i] < '0' || text[i] > '9') return false;
        int32_t& part = entry[i < kMccDigits ? kMcc : kMnc];
        part = part * 10 + (text[i] - '0');
    }
    entry[kMncDigits] = static_cast<int32_t>(length - kMccDigits);
    return true;
}

static AtResult ReadOperator(ULONG format, const char* text, int32_t (&entry)[kColumns])
{
    constexpr ULONG kLongNameLength = 16;
    if (format == kDigits) return ReadDigits(text, entry) ? AtResult::Ok : AtResult::WrongParameter;
    if (Length(text) > (format == kShort ? kShortNameLength : kLongNameLength)) return AtResult::TextTooLong;
    WORD mcc = 0, mnc = 0;
    if (!NetworkOfName(text, format == kShort, &mcc, &mnc)) return AtResult::NotFound;
    entry[kMcc] = mcc;
    entry[kMnc] = mnc;
    entry[kMncDigits] = mnc > 99 ? 3 : 2;
    return AtResult::Ok;
}

// "=[index][,format[,oper[,GSM,GSM compact,UTRAN[,E-UTRAN]]]]": with the index alone the entry is removed, with the
// format alone it is that of the listing.
static AtResult Change(Parts parts)
{
    ULONG place = 0, format = 0;
    const bool has_place = parts.Number(&place);
    if (has_place && place == 0) return AtResult::InvalidIndex;
    if (parts.AtEnd()) return has_place ? Remove(place) : AtResult::WrongParameter;
    if (!parts.Comma() || !parts.Number(&format) || format > kDigits) return AtResult::WrongParameter;
    if (parts.AtEnd()) {
        if (has_place) return AtResult::WrongParameter;
        State().format = static_cast<BYTE>(format);
        return AtResult::Ok;
    }
    NetworkName text = {};
    if (!parts.Comma() || !parts.Quoted(text)) return AtResult::WrongParameter;
    int32_t entry[kColumns] = {};
    ULONG technologies = 0;
    for (; parts.Comma(); ++technologies) {
        ULONG access = 0;
        if (!parts.Number(&access) || access > 1 || technologies == kAccessColumns) return AtResult::WrongParameter;
        entry[kAccess] |= static_cast<int32_t>(access << technologies);
    }
    if (!parts.AtEnd() || (technologies != 0 && technologies < 3)) return AtResult::WrongParameter;
    const AtResult result = ReadOperator(format, text, entry);
    return result == AtResult::Ok ? Write(place, entry) : result;
}

static AtResult PreferredOperators(const char* argument, Writer& reply)
{
    if (Equal(argument, "?")) {
        for (ULONG i = 0; i < State().preferred.count; ++i)
            ListEntry(State().preferred.values[i], reply);
        return AtResult::Ok;
    }
    if (Equal(argument, "=?")) {
        reply.Add("\r\n+CPOL: (1-").Unsigned(State().capacity).Add("),(0-2)\r\n");
        return AtResult::Ok;
    }
    return argument[0] == '=' ? Change(Parts(argument + 1)) : AtResult::WrongParameter;
}

static constexpr AtCommand kCommands[] = {{"AT+CPOL", true, PreferredOperators}};
const AtCommandTable kAtOperatorCommands = {kCommands, std::size(kCommands)};

} // namespace sim
