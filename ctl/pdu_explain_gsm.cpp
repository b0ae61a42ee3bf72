// Messages of GSM/UMTS (3GPP TS 23.040, with the data coding scheme of TS 23.038).

#include "ctl/pdu_explain.h"
#include "ctl/text.h"
#include "talvek/sms_text.h"

#include <algorithm>

namespace ctl {

namespace {

constexpr PduMeaning kTypesOfNumber[] = {{0, "unknown"},
                                         {1, "international number"},
                                         {2, "national number"},
                                         {3, "network specific number"},
                                         {4, "subscriber number"},
                                         {5, "alphanumeric, in the GSM alphabet"},
                                         {6, "abbreviated number"},
                                         {7, "reserved for extension"}};
constexpr PduMeaning kNumberingPlans[] = {{0, "unknown"},
                                          {1, "ISDN/telephone (E.164)"},
                                          {3, "data (X.121)"},
                                          {4, "telex"},
                                          {5, "service centre specific"},
                                          {6, "service centre specific"},
                                          {8, "national"},
                                          {9, "private"},
                                          {10, "ERMES"},
                                          {15, "reserved for extension"}};
constexpr PduMeaning kValidityFormats[] = {{0, "no TP-VP"}, {1, "enhanced"}, {2, "relative"}, {3, "absolute"}};
constexpr PduMeaning kInterworking[] = {{0x00, "implicit"},
                                        {0x01, "telex"},
                                        {0x02, "group 3 telefax"},
                                        {0x03, "group 4 telefax"},
                                        {0x04, "voice telephone"},
                                        {0x05, "ERMES"},
                                        {0x06, "national paging"},
                                        {0x07, "videotex"},
                                        {0x08, "teletex"},
                                        {0x10, "message handling facility"},
                                        {0x11, "public X.400"},
                                        {0x12, "Internet e-mail"},
                                        {0x1F, "a GSM/UMTS mobile station"}};
constexpr PduMeaning kProtocols[] = {{0, "short message type 0: not shown"},
                                     {1, "replace short message type 1"},
                                     {2, "replace short message type 2"},
                                     {3, "replace short message type 3"},
                                     {4, "replace short message type 4"},
                                     {5, "replace short message type 5"},
                                     {6, "replace short message type 6"},
                                     {7, "replace short message type 7"},
                                     {8, "device triggering"},
                                     {0x1E, "enhanced message service (obsolete)"},
                                     {0x1F, "return call message"},
                                     {0x3C, "ANSI-136 R-DATA"},
                                     {0x3D, "ME data download"},
                                     {0x3E, "ME de-personalization"},
                                     {0x3F, "(U)SIM data download"}};
constexpr PduMeaning kAlphabets[] = {
    {0, "GSM 7 bit default alphabet"}, {1, "8-bit data"}, {2, "UCS2"}, {3, "reserved"}};
constexpr PduMeaning kClasses[] = {{0, "class 0: shown at once"},
                                   {1, "class 1: for the mobile equipment"},
                                   {2, "class 2: for the SIM"},
                                   {3, "class 3: for the terminal equipment"}};
constexpr PduMeaning kIndications[] = {{0, "voice mail"}, {1, "fax"}, {2, "e-mail"}, {3, "other"}};
constexpr PduMeaning kStatuses[] = {{0x00, "received by the SME"},
                                    {0x01, "forwarded, but the service centre cannot confirm delivery"},
                                    {0x02, "replaced by the service centre"},
                                    {0x20, "congestion; still trying"},
                                    {0x21, "SME busy; still trying"},
                                    {0x22, "no response from the SME; still trying"},
                                    {0x23, "service rejected; still trying"},
                                    {0x24, "quality of service not available; still trying"},
                                    {0x25, "error in the SME; still trying"},
                                    {0x40, "remote procedure error; given up"},
                                    {0x41, "incompatible destination; given up"},
                                    {0x42, "connection rejected by the SME; given up"},
                                    {0x43, "not obtainable; given up"},
                                    {0x44, "quality of service not available; given up"},
                                    {0x45, "no interworking available; given up"},
                                    {0x46, "validity period expired; given up"},
                                    {0x47, "deleted by the sender; given up"},
                                    {0x48, "deleted by the service centre's administration; given up"},
                                    {0x49, "the message does not exist; given up"},
                                    {0x60, "congestion; no more attempts"},
                                    {0x61, "SME busy; no more attempts"},
                                    {0x62, "no response from the SME; no more attempts"},
                                    {0x63, "service rejected; no more attempts"},
                                    {0x64, "quality of service not available; no more attempts"},
                                    {0x65, "error in the SME; no more attempts"}};

enum : ULONG { kDeliver = 0, kSubmit = 1, kStatusReport = 2 }; // TP-MTI, from or to the service centre
enum : ULONG { kGsmAlphabet = 0, kData = 1, kUcs2 = 2 };
constexpr size_t kMaxAddressOctets = 10; // that the library reads

struct Coding {
    ULONG alphabet = kGsmAlphabet;
    bool compressed = false;
};

// TP-ST: sixteen values each are the service centre's own.
std::string StatusMeaning(ULONG status)
{
    const ULONG group = status >> 4;
    if (status < 0x80 && group % 2 == 1) return "specific to the service centre";
    return MeaningOf(kStatuses, status);
}

// One of several parts of the octet that was taken last: `low` and what is above it.
void AddBits(PduReader& in, size_t octet, size_t high, size_t low, const char* name, const std::string& meaning)
{
    in.Out().Add(octet + 7 - high, high - low + 1, name, meaning);
}

std::string YesNo(bool value, const char* yes, const char* no) { return value ? yes : no; }

// --- addresses -------------------------------------------------------------------------------------------------------

ULONG TypeOfAddress(PduReader& in)
{
    const ULONG octet = in.Take(8, "type of address");
    const size_t at = in.At() - 8;
    in.AddLast("");
    const Explanation::Inner inner(in.Out());
    AddBits(in, at, 7, 7, "extension", YesNo(octet & 0x80, "no extension", "0: not as the standard has it"));
    AddBits(in, at, 6, 4, "type of number", MeaningOf(kTypesOfNumber, octet >> 4 & 7));
    AddBits(in, at, 3, 0, "numbering plan", MeaningOf(kNumberingPlans, octet & 15));
    constexpr ULONG kPlansOfTheRecords = 0x71B; // bit n: plan n has a code
    if ((kPlansOfTheRecords >> (octet & 15) & 1) == 0) in.Out().Library("reads this plan as unknown.");
    return octet >> 4 & 7;
}

void AddressValue(PduReader& in, ULONG type_of_number, size_t digits)
{
    const size_t octets = (digits + 1) / 2;
    if (octets == 0) return;
    const std::vector<BYTE> value = in.Octets(octets, "address value");
    if (type_of_number == ORV_GSM_TON_ALPHANUMERIC) {
        in.AddLast(Quoted(GsmText(value, 0, digits * 4 / 7)));
        if (std::any_of(value.begin(), value.end(), [](BYTE octet) { return octet >> 4 == 15; }))
            in.Out().Library("leaves out semi-octets of 15, so the name comes out wrong.");
    } else {
        std::string text(digits + 1, '\0');
        ULONG length = 0;
        Check("OrvSemiOctetsToText",
              OrvSemiOctetsToText(value.data(), static_cast<ULONG>(octets), static_cast<ULONG>(digits), text.data(),
                                  static_cast<ULONG>(text.size()), &length));
        text.resize(length);
        in.AddLast((type_of_number == ORV_GSM_TON_INTERNATIONAL ? "+" : "") + text);
    }
    if (octets > kMaxAddressOctets) in.Out().Library("refuses more than 20 digits with 2.");
}

void ServiceCentre(PduReader& in)
{
    const ULONG length = in.Take(8, "SMSC address length");
    in.AddLast(length == 0 ? "none: the module's own" : Count(length, "octet"));
    if (length == 0) return;
    const Explanation::Inner inner(in.Out());
    const ULONG type = TypeOfAddress(in);
    AddressValue(in, type, size_t{2} * (length - 1));
}

void Address(PduReader& in, const char* name)
{
    const ULONG digits = in.Take(8, name);
    in.AddLast(Count(digits, "semi-octet"));
    const Explanation::Inner inner(in.Out());
    const ULONG type = TypeOfAddress(in);
    AddressValue(in, type, digits);
}

// --- times -----------------------------------------------------------------------------------------------------------

// 9.2.3.11: the digits swapped, the zone in quarters of an hour with its sign in bit 3.
void TimeStamp(PduReader& in, const char* name)
{
    const std::vector<BYTE> octets = in.Octets(7, name);
    std::string digits[6];
    std::transform(octets.begin(), octets.begin() + 6, digits, SwappedDigits);
    const int quarters = (octets[6] & 7) * 10 + (octets[6] >> 4);
    std::string zone = std::to_string(quarters % 4 * 15);
    zone = std::to_string(quarters / 4) + ":" + (zone.size() == 1 ? "0" : "") + zone;
    in.AddLast(FullYear(digits[0]) + "-" + digits[1] + "-" + digits[2] + " " + digits[3] + ":" + digits[4] + ":" +
               digits[5] + " UTC" + ((octets[6] & 8) != 0 ? "-" : "+") + zone);
    const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
    for (const std::string& pair : digits) {
        if (!std::all_of(pair.begin(), pair.end(), is_digit)) {
            in.Out().Fault(std::string(name) + " has a semi-octet that is no digit");
            return;
        }
    }
}

void LibraryTimeStamp(PduReader& in)
{
    const size_t first = in.At() / 8 - 7;
    std::string units;
    for (size_t i = 0; i < 7; ++i)
        units += " " + std::to_string(in.Out().Octets()[first + i] >> 4);
    in.Out().Library("abTimeStamp has the units alone:" + units);
}

void ValidityPeriod(PduReader& in, ULONG format)
{
    constexpr const char* kName = "TP-VP";
    if (format == 2) {
        const ULONG value = in.Take(8, kName);
        in.AddLast(RelativeTime(value));
    } else if (format == 3) {
        TimeStamp(in, kName);
    } else if (format == 1) {
        const std::vector<BYTE> value = in.Octets(7, kName);
        const std::string seconds = SwappedDigits(value[3]);
        switch (value[0] & 7) {
        case 0:
            return in.AddLast("none");
        case 1:
            return in.AddLast(RelativeTime(value[1]));
        case 2:
            return in.AddLast(Count(value[1], "second"));
        case 3:
            return in.AddLast(SwappedDigits(value[1]) + ":" + SwappedDigits(value[2]) + ":" + seconds + " from now");
        default:
            return in.AddLast("reserved");
        }
    }
}

// --- protocol and coding ---------------------------------------------------------------------------------------------

std::string DeviceMeaning(ULONG device)
{
    return device >= 0x18 && device < 0x1F ? "specific to the service centre" : MeaningOf(kInterworking, device);
}

void ProtocolIdentifier(PduReader& in)
{
    const ULONG octet = in.Take(8, "TP-PID");
    switch (octet >> 6) {
    case 0:
        return in.AddLast((octet & 0x20) != 0 ? "telematic interworking: " + DeviceMeaning(octet & 0x1F)
                          : octet == 0        ? "short message"
                                              : "protocol " + std::to_string(octet) + " between SMEs");
    case 1:
        return in.AddLast(MeaningOf(kProtocols, octet & 0x3F));
    default:
        return in.AddLast(octet >> 6 == 2 ? "reserved" : "for the service centre");
    }
}

// What the library makes of a scheme, in a record's terms.
std::string LibraryReading(ULONG scheme)
{
    const bool general = (scheme & 0xC0) == 0;
    const ULONG alphabet = general ? scheme >> 2 & 3 : scheme >> 2 & 1;
    const ULONG message_class = !general || (scheme & 0x10) != 0 ? scheme & 3 : ULONG{ORV_GSM_CLASS_NONE};
    return "eEncoding " + std::to_string(alphabet) + ", eMessageClass " + std::to_string(message_class);
}

// TS 23.038, section 4.
Coding DataCodingScheme(PduReader& in, bool delivered)
{
    const ULONG scheme = in.Take(8, "TP-DCS");
    const size_t at = in.At() - 8;
    const ULONG group = scheme >> 4;
    Coding coding;
    in.AddLast("");
    if (delivered && group >= 4)
        in.Out().Library("reads every group from 0100 on as data coding/message class: " + LibraryReading(scheme) +
                         ".");
    const Explanation::Inner inner(in.Out());
    if (group < 8) {
        coding = {scheme >> 2 & 3, (scheme & 0x20) != 0};
        AddBits(in, at, 7, 6, "coding group", group < 4 ? "general" : "marked for automatic deletion");
        AddBits(in, at, 5, 5, "compression", YesNo(coding.compressed, "compressed", "uncompressed"));
        AddBits(in, at, 4, 4, "class meaning", YesNo(scheme & 0x10, "bits 1 and 0 are a class", "no class"));
        AddBits(in, at, 3, 2, "alphabet", MeaningOf(kAlphabets, coding.alphabet));
        AddBits(in, at, 1, 0, "message class", (scheme & 0x10) != 0 ? MeaningOf(kClasses, scheme & 3) : "no meaning");
    } else if (group < 12) {
        AddBits(in, at, 7, 4, "coding group", "reserved: read as the GSM 7 bit default alphabet");
        AddBits(in, at, 3, 0, "reserved", "");
    } else if (group < 15) {
        coding.alphabet = group == 14 ? kUcs2 : kGsmAlphabet;
        AddBits(in, at, 7, 4, "coding group",
                std::string("message waiting, ") + (group == 12 ? "discard" : "store") +
                    (group == 14 ? ", UCS2" : ", GSM 7 bit default alphabet"));
        AddBits(in, at, 3, 3, "indication", YesNo(scheme & 8, "active", "inactive"));
        AddBits(in, at, 2, 2, "reserved", "");
        AddBits(in, at, 1, 0, "indication type", MeaningOf(kIndications, scheme & 3));
    } else {
        coding.alphabet = scheme >> 2 & 1;
        AddBits(in, at, 7, 4, "coding group", "data coding/message class");
        AddBits(in, at, 3, 3, "reserved", "");
        AddBits(in, at, 2, 2, "alphabet", MeaningOf(kAlphabets, coding.alphabet));
        AddBits(in, at, 1, 0, "message class", MeaningOf(kClasses, scheme & 3));
    }
    return coding;
}

// --- user data -------------------------------------------------------------------------------------------------------

// The header at the front of TP-UD; returns its octets, UDHL among them.
size_t UserDataHeader(PduReader& in)
{
    const ULONG length = in.Take(8, "TP-UDHL");
    in.AddLast(Count(length, "octet"));
    const bool whole = in.OctetsLeft() >= length;
    const Explanation::Inner inner(in.Out());
    ExplainHeaderElements(in.Nested(length));
    if (!whole) {
        in.Out().Fault("TP-UDHL: the header is longer than what there is of TP-UD");
        throw PduReader::Ended{};
    }
    return length + 1;
}

void UserData(PduReader& in, const Coding& coding, bool has_header)
{
    const ULONG length = in.Take(8, "TP-UDL");
    const bool septets = coding.alphabet == kGsmAlphabet && !coding.compressed;
    const size_t octets = septets ? (length * 7 + 7) / 8 : length;
    in.AddLast(septets ? Count(length, "septet") + " in " + Count(octets, "octet") : Count(length, "octet"));
    if (octets > 140) in.Out().Fault("TP-UDL: a message has room for 140 octets, not for " + std::to_string(octets));
    const bool whole = in.OctetsLeft() >= octets;
    if (!whole) {
        in.Out().Fault("TP-UD: the message ends after " + std::to_string(in.OctetsLeft()) + " of " +
                       Count(octets, "octet"));
    }
    PduReader data = in.Nested(octets);
    const size_t begin = data.At() / 8;
    size_t header = 0, header_units = 0;
    if (has_header) {
        header = UserDataHeader(data);
        header_units = septets ? (header * 8 + 6) / 7 : header;
        in.Out().Library("uUserDataLen is TP-UDL, the header counted.");
    }
    const size_t there = data.OctetsLeft();
    if (header_units > length) {
        in.Out().Fault("TP-UDL: shorter than the header");
        return;
    }
    if (there == 0) return;
    const std::vector<BYTE>& all = in.Out().Octets();
    const size_t fill = septets ? header_units * 7 - header * 8 : 0;
    if (fill != 0) in.Out().Add(data.At() + 8 - fill, fill, "fill bits", "up to the next septet");
    data.Octets(there, "TP-UD");
    if (coding.compressed || coding.alphabet == kData) return data.AddLast(coding.compressed ? "compressed" : "data");
    if (coding.alphabet == kUcs2)
        return data.AddLast(Quoted(Ucs2Text({all.begin() + static_cast<std::ptrdiff_t>(data.At() / 8 - there),
                                             all.begin() + static_cast<std::ptrdiff_t>(data.At() / 8)})));
    if (!septets) return data.AddLast("reserved alphabet");
    const std::vector<BYTE> user_data(all.begin() + static_cast<std::ptrdiff_t>(begin),
                                      all.begin() + static_cast<std::ptrdiff_t>(data.At() / 8));
    const size_t present = std::min<size_t>(length, user_data.size() * 8 / 7);
    data.AddLast(Quoted(GsmText(user_data, header_units, present - std::min(present, header_units))));
}

// --- messages --------------------------------------------------------------------------------------------------------

struct FirstOctet {
    ULONG type;
    ULONG validity_format;
    bool has_header;
};

FirstOctet MessageFlags(PduReader& in)
{
    constexpr PduMeaning kTypes[] = {
        {kDeliver, "SMS-DELIVER"}, {kSubmit, "SMS-SUBMIT"}, {kStatusReport, "SMS-STATUS-REPORT"}, {3, "reserved"}};
    const ULONG octet = in.Take(8, "first octet");
    const size_t at = in.At() - 8;
    const auto bit = [&](size_t number, const char* name, const char* set, const char* clear) {
        AddBits(in, at, number, number, name, YesNo(octet >> number & 1, set, clear));
    };
    const FirstOctet out = {octet & 3, octet >> 3 & 3, (octet & 0x40) != 0};
    in.Out().kind = MeaningOf(kTypes, out.type);
    in.AddLast("");
    if (out.type != kDeliver) in.Out().Library("decodes SMS-DELIVER alone: 5.");
    const Explanation::Inner inner(in.Out());
    AddBits(in, at, 1, 0, "TP-MTI", in.Out().kind);
    if (out.type == kSubmit) {
        bit(2, "TP-RD", "refuse duplicates", "accept duplicates");
        AddBits(in, at, 4, 3, "TP-VPF", MeaningOf(kValidityFormats, out.validity_format));
        bit(5, "TP-SRR", "a status report is asked for", "no status report");
    } else {
        bit(2, "TP-MMS", "no more messages wait", "more messages wait");
        bit(3, "TP-LP", "forwarded or spawned", "not forwarded, or not said");
        bit(4, "(unused)", "", "");
        if (out.type == kDeliver) bit(5, "TP-SRI", "a status report goes to the sender", "no status report");
        if (out.type == kStatusReport) bit(5, "TP-SRQ", "for an SMS-COMMAND", "for an SMS-SUBMIT");
    }
    bit(6, "TP-UDHI", "TP-UD begins with a header", "no header");
    if (out.type != kStatusReport) bit(7, "TP-RP", "a reply path is set", "no reply path");
    return out;
}

void ExplainReport(PduReader& in, bool has_header)
{
    in.Number(8, "TP-MR");
    Address(in, "TP-RA");
    TimeStamp(in, "TP-SCTS");
    TimeStamp(in, "TP-DT");
    const ULONG status = in.Take(8, "TP-ST");
    in.AddLast(StatusMeaning(status));
    if (in.BitsLeft() == 0) return;
    const ULONG present = in.Take(8, "TP-PI");
    in.AddLast(std::string("what follows:") + ((present & 1) != 0 ? " TP-PID" : "") +
               ((present & 2) != 0 ? " TP-DCS" : "") + ((present & 4) != 0 ? " TP-UDL" : ""));
    if ((present & 1) != 0) ProtocolIdentifier(in);
    const Coding coding = (present & 2) != 0 ? DataCodingScheme(in, false) : Coding();
    if ((present & 4) != 0) UserData(in, coding, has_header);
}

void ExplainMessage(PduReader& in)
{
    const FirstOctet first = MessageFlags(in);
    switch (first.type) {
    case kDeliver: {
        Address(in, "TP-OA");
        ProtocolIdentifier(in);
        const Coding coding = DataCodingScheme(in, true);
        TimeStamp(in, "TP-SCTS");
        LibraryTimeStamp(in);
        return UserData(in, coding, first.has_header);
    }
    case kSubmit: {
        in.Number(8, "TP-MR");
        Address(in, "TP-DA");
        ProtocolIdentifier(in);
        const Coding coding = DataCodingScheme(in, false);
        ValidityPeriod(in, first.validity_format);
        return UserData(in, coding, first.has_header);
    }
    case kStatusReport:
        return ExplainReport(in, first.has_header);
    default:
        in.Out().Fault("TP-MTI 3 is reserved: nothing is known about what follows");
        return in.Rest("(the rest)", "");
    }
}

} // namespace

void ExplainGsm(Explanation& out, bool service_centre)
{
    out.kind = "a GSM message";
    PduReader in(out);
    try {
        if (service_centre) ServiceCentre(in);
        ExplainMessage(in);
        in.Rest("(behind it)", "belongs to no field");
    } catch (const PduReader::Ended&) { // noted where it happened
    }
    if (!service_centre) return;
    ORV_GSM_SMS_IN record = {};
    const std::vector<BYTE>& octets = out.Octets();
    out.Result("OrvGsmSmsDecode",
               static_cast<ULONG>(OrvGsmSmsDecode(octets.data(), static_cast<ULONG>(octets.size()), &record)));
}

} // namespace ctl
