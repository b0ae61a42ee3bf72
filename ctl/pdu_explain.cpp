#include "ctl/pdu_explain.h"

#include "ctl/text.h"
#include "talvek/sms_text.h"

#include <algorithm>

namespace ctl {

// --- what is printed -------------------------------------------------------------------------------------------------

ULONG Explanation::Value(size_t first_bit, size_t bits) const
{
    ULONG value = 0;
    for (size_t bit = first_bit; bit < first_bit + bits; ++bit)
        value = value << 1 | (m_octets[bit / 8] >> (7 - bit % 8) & 1u);
    return value;
}

void Explanation::Add(size_t first_bit, size_t bits, std::string name, std::string meaning)
{
    m_fields.push_back({first_bit, bits, m_level, std::move(name), std::move(meaning), {}});
}

void Explanation::Library(std::string note) { m_fields.back().notes.push_back(std::move(note)); }

// "7", "7-13", and with bits "7 b5", "7 b5-4", "7 b5 - 8 b6".
std::string Explanation::Position(const Field& field) const
{
    const size_t last_bit = field.first_bit + std::max<size_t>(field.bits, 1) - 1;
    const std::string first = std::to_string(field.first_bit / 8), last = std::to_string(last_bit / 8);
    const size_t from = 7 - field.first_bit % 8, to = 7 - last_bit % 8;
    if (field.bits == 0 || (from == 7 && to == 0)) return first == last ? first : first + "-" + last;
    if (first != last) return first + " b" + std::to_string(from) + " - " + last + " b" + std::to_string(to);
    return first + " b" + std::to_string(from) + (from == to ? "" : "-" + std::to_string(to));
}

// Whole octets as hexadecimal, bits as bits.
std::string Explanation::Raw(const Field& field) const
{
    if (field.first_bit % 8 == 0 && field.bits % 8 == 0)
        return Hex(m_octets.data() + field.first_bit / 8, field.bits / 8);
    std::string out;
    for (size_t bit = field.first_bit; bit < field.first_bit + field.bits; ++bit)
        out += Value(bit, 1) != 0 ? '1' : '0';
    return out;
}

Report Explanation::ToReport() const
{
    Report report("pdu explain");
    constexpr size_t kLongestRaw = 16, kLongLine = 64;
    size_t position_width = 5, name_width = 5; // of the headings
    for (const Field& field : m_fields) {
        position_width = std::max(position_width, Position(field).size());
        name_width = std::max(name_width, field.name.size() + static_cast<size_t>(field.level) * 2);
    }
    const auto padded = [](std::string text, size_t width) {
        text.resize(std::max(width, text.size()), ' ');
        return text + "  ";
    };
    report.AddLine(kind);
    report.AddLine(padded("octet", position_width) + padded("field", name_width) + padded("raw", kLongestRaw) +
                   "meaning");
    ctl::Json fields = ctl::Json::array();
    for (const Field& field : m_fields) {
        const std::string raw = Raw(field), name = std::string(static_cast<size_t>(field.level) * 2, ' ') + field.name;
        const bool is_long = raw.size() > kLongestRaw;
        const std::string margin = padded("", position_width) + padded("", name_width);
        report.AddLine(padded(Position(field), position_width) + padded(name, name_width) +
                       padded(is_long ? "(below)" : raw, kLongestRaw) + field.meaning);
        for (size_t at = 0; is_long && at < raw.size(); at += kLongLine)
            report.AddLine(std::string(margin).append(raw, at, kLongLine));
        for (const std::string& note : field.notes)
            report.AddLine(std::string(margin).append("The library: ").append(note));
        const size_t last_bit = field.first_bit + std::max<size_t>(field.bits, 1) - 1;
        fields.push_back({{"first_octet", field.first_bit / 8},
                          {"first_bit", 7 - field.first_bit % 8},
                          {"last_octet", last_bit / 8},
                          {"last_bit", 7 - last_bit % 8},
                          {"bits", field.bits},
                          {"level", field.level},
                          {"name", field.name},
                          {"raw", raw},
                          {"meaning", field.meaning},
                          {"library", field.notes}});
    }
    for (const std::string& fault : m_faults)
        report.AddLine("Fault: " + fault);
    if (m_result) {
        const auto code = static_cast<ORV_RCODE>(m_result->second);
        report.AddLine("The library: " + m_result->first + " gives " + std::to_string(m_result->second) + " (" +
                       OrvRcodeName(code) + ").");
        report.AddHidden("library", {{"function", m_result->first}, {"code", m_result->second}});
    }
    report.AddHidden("kind", kind);
    report.AddHidden("whole", m_faults.empty());
    report.AddHidden("faults", m_faults);
    report.AddHidden("fields", std::move(fields));
    return report;
}

// --- reading ---------------------------------------------------------------------------------------------------------

size_t PduReader::Skip(size_t bits, const char* name)
{
    if (bits > BitsLeft()) {
        const size_t left = BitsLeft();
        const bool octets = bits % 8 == 0 && left % 8 == 0;
        const std::string there = octets ? std::to_string(left / 8) + " of " + Count(bits / 8, "octet")
                                         : std::to_string(left) + " of " + Count(bits, "bit");
        if (left != 0) m_out.Add(m_at, left, name, "cut short: " + there);
        m_out.Fault("octet " + std::to_string(m_at / 8) + ": the message, or the part of it that this belongs to, " +
                    "ends inside of " + name + " (" + there + ")");
        m_at = m_end;
        throw Ended{};
    }
    m_last = m_at;
    m_last_bits = bits;
    m_last_name = name;
    m_at += bits;
    return m_last;
}

ULONG PduReader::Take(size_t bits, const char* name) { return m_out.Value(Skip(bits, name), bits); }

void PduReader::AddLast(std::string meaning) { m_out.Add(m_last, m_last_bits, m_last_name, std::move(meaning)); }

ULONG PduReader::Number(size_t bits, const char* name)
{
    const ULONG value = Take(bits, name);
    AddLast(std::to_string(value));
    return value;
}

ULONG PduReader::Field(size_t bits, const char* name, std::string meaning)
{
    const ULONG value = Take(bits, name);
    AddLast(std::move(meaning));
    return value;
}

std::vector<BYTE> PduReader::Octets(size_t count, const char* name)
{
    const size_t at = Skip(count * 8, name);
    std::vector<BYTE> out;
    for (size_t i = 0; i < count; ++i)
        out.push_back(static_cast<BYTE>(m_out.Value(at + i * 8, 8)));
    return out;
}

PduReader PduReader::Nested(size_t octets)
{
    const size_t bits = std::min(octets * 8, BitsLeft());
    m_at += bits;
    return {m_out, m_at - bits, m_at};
}

void PduReader::Rest(const char* name, const std::string& meaning)
{
    if (BitsLeft() == 0) return;
    m_out.Add(m_at, BitsLeft(), name, meaning);
    m_at = m_end;
}

// --- what both standards have ----------------------------------------------------------------------------------------

std::string Count(size_t number, const std::string& what)
{
    return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

std::string GsmText(const std::vector<BYTE>& octets, size_t first, size_t septets)
{
    std::string text(septets * 3 + 1, '\0');
    ULONG length = 0;
    Check("OrvGsmTextUnpack",
          OrvGsmTextUnpack(octets.data(), static_cast<ULONG>(octets.size()), static_cast<ULONG>(first),
                           static_cast<ULONG>(septets), text.data(), static_cast<ULONG>(text.size()), &length));
    text.resize(length);
    return text;
}

std::string Ucs2Text(const std::vector<BYTE>& octets)
{
    std::string text(octets.size() * 3 + 1, '\0');
    ULONG length = 0;
    Check("OrvUcs2ToText", OrvUcs2ToText(octets.data(), static_cast<ULONG>(octets.size()), ORV_UCS2_BIG_ENDIAN,
                                         text.data(), static_cast<ULONG>(text.size()), &length));
    text.resize(length);
    return text;
}

std::string PlainDigits(BYTE octet) { return Hex(&octet, 1); }

std::string SwappedDigits(BYTE octet) { return PlainDigits(static_cast<BYTE>(octet << 4 | octet >> 4)); }

std::string FullYear(const std::string& digits) { return (digits >= "90" && digits <= "99" ? "19" : "20") + digits; }

std::string RelativeTime(ULONG value)
{
    if (value <= 143) return Count((size_t{value} + 1) * 5, "minute");
    if (value <= 167) {
        const ULONG half_hours = 24 + value - 143;
        return std::to_string(half_hours / 2) + (half_hours % 2 != 0 ? ".5 hours" : " hours");
    }
    return value <= 196 ? Count(value - 166, "day") : Count(value - 192, "week");
}

namespace {

// 3GPP TS 23.040, 9.2.3.24
constexpr PduMeaning kElements[] = {
    {0x00, "concatenated short messages, 8-bit reference"},
    {0x01, "special SMS message indication"},
    {0x04, "application port addressing, 8 bit"},
    {0x05, "application port addressing, 16 bit"},
    {0x06, "SMSC control parameters"},
    {0x07, "UDH source indicator"},
    {0x08, "concatenated short messages, 16-bit reference"},
    {0x09, "wireless control message protocol"},
    {0x0A, "text formatting"},
    {0x0B, "predefined sound"},
    {0x0C, "user defined sound"},
    {0x0D, "predefined animation"},
    {0x0E, "large animation"},
    {0x0F, "small animation"},
    {0x10, "large picture"},
    {0x11, "small picture"},
    {0x12, "variable picture"},
    {0x13, "user prompt indicator"},
    {0x14, "extended object"},
    {0x15, "reused extended object"},
    {0x16, "compression control"},
    {0x17, "object distribution indicator"},
    {0x18, "standard WVG object"},
    {0x19, "character size WVG object"},
    {0x1A, "extended object data request command"},
    {0x20, "RFC 5322 e-mail header"},
    {0x21, "hyperlink format"},
    {0x22, "reply address"},
    {0x23, "enhanced voice mail information"},
    {0x24, "national language single shift"},
    {0x25, "national language locking shift"},
};

// What the value of an element says; empty where the octets have to do.
std::string ElementMeaning(ULONG identifier, const std::vector<BYTE>& data)
{
    const auto part = [&data](size_t at) {
        std::string text = "part " + std::to_string(data[at + 1]) + " of " + std::to_string(data[at]);
        if (data[at + 1] == 0 || data[at + 1] > data[at]) text += ": to be ignored";
        return text;
    };
    const auto wide = [&data](size_t at) { return std::to_string(data[at] << 8 | data[at + 1]); };
    switch (identifier << 8 | data.size()) {
    case 0x0003:
        return "reference " + std::to_string(data[0]) + ", " + part(1);
    case 0x0804:
        return "reference " + wide(0) + ", " + part(2);
    case 0x0402:
        return "to port " + std::to_string(data[0]) + " from port " + std::to_string(data[1]);
    case 0x0504:
        return "to port " + wide(0) + " from port " + wide(2);
    case 0x2401:
    case 0x2501:
        return "language " + std::to_string(data[0]) + "; the text is shown in the default alphabet";
    default:
        return "";
    }
}

} // namespace

void ExplainHeaderElements(PduReader in)
{
    while (in.BitsLeft() != 0) {
        const ULONG identifier = in.Take(8, "IEI");
        in.AddLast(MeaningOf(kElements, identifier));
        const Explanation::Inner inner(in.Out());
        const ULONG length = in.Take(8, "IEDL");
        in.AddLast(Count(length, "octet"));
        if (length == 0) continue;
        const std::vector<BYTE> data = in.Octets(length, "IED");
        in.AddLast(ElementMeaning(identifier, data));
    }
}

} // namespace ctl
