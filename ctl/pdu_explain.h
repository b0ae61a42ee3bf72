// A message taken apart, field by field, as its standard has it.
#pragma once

#include "ctl/output.h"
#include "talvek/types.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace ctl {

// What has been said about a message so far. Positions are in bits from its first one, the most significant bit of an
// octet first; they are shown as octets from 0 and bits 7 to 0.
class Explanation {
public:
    explicit Explanation(std::vector<BYTE> octets) : m_octets(std::move(octets)) {}

    const std::vector<BYTE>& Octets() const { return m_octets; }
    // At most 32 bits, which the message has.
    ULONG Value(size_t first_bit, size_t bits) const;

    void Add(size_t first_bit, size_t bits, std::string name, std::string meaning);
    // A line below the field that was added last: where the library reads it otherwise.
    void Library(std::string note);
    // Something that contradicts itself, or the place where the message ends too early.
    void Fault(std::string fault) { m_faults.push_back(std::move(fault)); }
    // What a decoder of the library gives.
    void Result(std::string function, ULONG code) { m_result = {std::move(function), code}; }
    std::string kind; // "SMS-DELIVER", "CDMA point-to-point"

    // Fields are one step further in as long as this lives.
    class Inner {
    public:
        explicit Inner(Explanation& owner) : m_owner(owner) { ++m_owner.m_level; }
        ~Inner() { --m_owner.m_level; }
        Inner(const Inner&) = delete;
        Inner& operator=(const Inner&) = delete;

    private:
        Explanation& m_owner;
    };

    Report ToReport() const;

private:
    struct Field {
        size_t first_bit, bits;
        int level;
        std::string name, meaning;
        std::vector<std::string> notes;
    };

    std::string Position(const Field& field) const;
    std::string Raw(const Field& field) const;

    std::vector<BYTE> m_octets;
    std::vector<Field> m_fields;
    std::vector<std::string> m_faults;
    std::optional<std::pair<std::string, ULONG>> m_result;
    int m_level = 0;
};

// A stretch of a message that is read from its front.
class PduReader {
public:
    // Thrown where the stretch ends inside of a field, after the rest of it and the fault have been noted.
    struct Ended {};

    explicit PduReader(Explanation& out) : m_out(out), m_at(0), m_end(out.Octets().size() * 8) {}

    Explanation& Out() const { return m_out; }
    size_t At() const { return m_at; }
    size_t BitsLeft() const { return m_end - m_at; }
    size_t OctetsLeft() const { return BitsLeft() / 8; }

    // Passes a field by and returns its position. The caller adds it, or its parts.
    size_t Skip(size_t bits, const char* name);
    // A field of at most 32 bits, still to be added with AddLast.
    ULONG Take(size_t bits, const char* name);
    void AddLast(std::string meaning);
    // Both in one, for a field whose meaning is its value or is fixed.
    ULONG Number(size_t bits, const char* name);
    ULONG Field(size_t bits, const char* name, std::string meaning);
    // Whole octets, still to be added with AddLast.
    std::vector<BYTE> Octets(size_t count, const char* name);
    // The next octets as a reader of their own, cut where this one ends.
    PduReader Nested(size_t octets);
    // Adds what is left under this name, if anything is.
    void Rest(const char* name, const std::string& meaning);

private:
    PduReader(Explanation& out, size_t at, size_t end) : m_out(out), m_at(at), m_end(end) {}

    Explanation& m_out;
    size_t m_at, m_end;
    size_t m_last = 0, m_last_bits = 0;
    const char* m_last_name = "";
};

// A meaning by value, for tables that look like the standard's.
struct PduMeaning {
    ULONG value;
    const char* text;
};
template <size_t count>
std::string MeaningOf(const PduMeaning (&table)[count], ULONG value)
{
    for (const PduMeaning& row : table) {
        if (row.value == value) return row.text;
    }
    return "reserved or unknown (" + std::to_string(value) + ")";
}

// "1 octet", "2 octets"
std::string Count(size_t number, const std::string& what);
// A text between quotation marks.
std::string Quoted(const std::string& text);
// The text of packed septets from the `first` one on, and of UCS2 octets.
std::string GsmText(const std::vector<BYTE>& octets, size_t first, size_t septets);
std::string Ucs2Text(const std::vector<BYTE>& octets);
// One digit of two a semi-octet holds, the first in the low half: "59" of 0x95. Other values than digits as
// hexadecimal.
std::string SwappedDigits(BYTE octet);
std::string PlainDigits(BYTE octet);
// The century of a year of two digits.
std::string FullYear(const std::string& digits);
// The elements of a user data header (3GPP TS 23.040, 9.2.3.24), without its length.
void ExplainHeaderElements(PduReader in);
// A validity period or a delay in one octet (TS 23.040, 9.2.3.12.1, which 3GPP2 C.S0015, 4.5.6 shares).
std::string RelativeTime(ULONG value);

// 3GPP TS 23.040: SMS-DELIVER, SMS-SUBMIT, SMS-STATUS-REPORT; behind the service centre's address, if there is one.
void ExplainGsm(Explanation& out, bool service_centre);
// 3GPP2 C.S0015: a message of the transport layer.
void ExplainCdma(Explanation& out);

} // namespace ctl
