// The AT commands that reach the card: AT+CRSM and AT+CSIM of 3GPP TS 27.007.
#include <iterator>

#include "sim/at_commands.h"
#include "sim/module.h"
#include "sim/sim_files.h"

namespace sim {

// Walks an argument from left to right; a fault stays.
class Argument {
public:
    explicit Argument(const char* text) : m_rest(text) {}

    bool Failed() const { return m_failed; }
    bool Ended() const { return m_failed || *m_rest == 0; }

    // The character, if it stands here.
    bool Has(char character)
    {
        if (m_failed || *m_rest != character) return false;
        ++m_rest;
        return true;
    }
    void Need(char character)
    {
        if (!Has(character)) m_failed = true;
    }
    ULONG Number(ULONG highest)
    {
        ULONG value = 0;
        const char* const begin = m_rest;
        for (; !m_failed && *m_rest >= '0' && *m_rest <= '9' && value <= highest; ++m_rest)
            value = value * 10 + ULONG(*m_rest - '0');
        if (m_rest == begin || value > highest) m_failed = true;
        return m_failed ? 0 : value;
    }
    BYTE Octet() { return static_cast<BYTE>(Number(255)); }
    // "HEX" in quotes; returns the octets.
    ULONG Quoted(BYTE* octets, ULONG room)
    {
        ULONG digits = 0;
        Need('"');
        for (; !m_failed && *m_rest != '"'; ++m_rest, ++digits) {
            const int digit = Digit(*m_rest);
            if (digit < 0 || digits == 2 * room) {
                m_failed = true;
                return 0;
            }
            octets[digits / 2] = static_cast<BYTE>(digits % 2 ? octets[digits / 2] << 4 | digit : digit);
        }
        Need('"');
        if (digits % 2) m_failed = true;
        return m_failed ? 0 : digits / 2;
    }

private:
    static int Digit(char character)
    {
        if (character >= '0' && character <= '9') return character - '0';
        if (character >= 'A' && character <= 'F') return character - 'A' + 10;
        return character >= 'a' && character <= 'f' ? character - 'a' + 10 : -1;
    }

    const char* m_rest;
    bool m_failed = false;
};

// "=COMMAND[,FILE[,P1,P2,P3[,"DATA"[,"PATH"]]]]". The path is taken and not needed: no two files have the same
// identifier.
static AtResult RestrictedAccess(const char* text, Writer& reply)
{
    if (Equal(text, "=?")) return AtResult::Ok;
    Argument argument(text);
    argument.Need('=');
    SimCommand command = {argument.Octet(), 0, 0, 0, nullptr};
    BYTE data[256], path[16];
    ULONG data_size = 0;
    WORD file = 0;
    if (argument.Has(',')) file = static_cast<WORD>(argument.Number(0xFFFF));
    if (argument.Has(',')) {
        command.p1 = argument.Octet();
        argument.Need(',');
        command.p2 = argument.Octet();
        argument.Need(',');
        command.p3 = argument.Octet();
    }
    if (argument.Has(',')) data_size = argument.Quoted(data, sizeof(data));
    if (argument.Has(',')) argument.Quoted(path, sizeof(path));
    if (argument.Failed() || !argument.Ended()) return AtResult::WrongParameter;

    const bool updates = command.instruction == kUpdateBinary || command.instruction == kUpdateRecord;
    const bool reads = command.instruction == kReadBinary || command.instruction == kReadRecord ||
                       command.instruction == kGetResponse || command.instruction == kCardStatus;
    if (!updates && !reads) return AtResult::NotSupported;
    if (updates && (data_size != command.p3 || data_size == 0)) return AtResult::WrongParameter;
    if (!TheModule().uim.present) return AtResult::NoCard;
    if (updates) command.data = data;
    SimAnswer answer;
    SimRestricted(file, command, answer);
    reply.Add("\r\n+CRSM: ").Unsigned(answer.status >> 8).Character(',').Unsigned(answer.status & 0xFFu);
    if (answer.size > 0) reply.Add(",\"").HexOctets(answer.data, answer.size).Character('"');
    reply.Add("\r\n");
    return AtResult::Ok;
}

// "=LENGTH,"COMMAND"", a length in characters.
static AtResult GenericAccess(const char* text, Writer& reply)
{
    if (Equal(text, "=?")) return AtResult::Ok;
    Argument argument(text);
    BYTE octets[262];
    argument.Need('=');
    const ULONG length = argument.Number(2 * sizeof(octets));
    argument.Need(',');
    const ULONG count = argument.Quoted(octets, sizeof(octets));
    if (argument.Failed() || !argument.Ended() || length != 2 * count) return AtResult::WrongParameter;
    if (!TheModule().uim.present) return AtResult::NoCard;
    SimAnswer answer;
    SimTransmit(octets, count, answer);
    reply.Add("\r\n+CSIM: ").Unsigned(2 * answer.size + 4).Add(",\"").HexOctets(answer.data, answer.size);
    reply.Hex(answer.status, 4).Add("\"\r\n");
    return AtResult::Ok;
}

static constexpr AtCommand kCommands[] = {
    {"AT+CRSM", true, RestrictedAccess},
    {"AT+CSIM", true, GenericAccess},
};
const AtCommandTable kAtSimFileCommands = {kCommands, std::size(kCommands)};

} // namespace sim
