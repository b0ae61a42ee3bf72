// Messages of CDMA networks (3GPP2 C.S0015).

#include "ctl/pdu_explain.h"
#include "ctl/text.h"
#include "talvek/core.h"
#include "talvek/sms_text.h"

#include <algorithm>

namespace ctl {

namespace {

constexpr PduMeaning kMessageTypes[] = {{0, "SMS point-to-point"}, {1, "SMS broadcast"}, {2, "SMS acknowledge"}};
constexpr PduMeaning kTeleservices[] = {{4096, "AMPS extended protocol"},
                                        {4097, "CPT-95: paging"},
                                        {4098, "CMT-95: messaging"},
                                        {4099, "VMN-95: voice mail notification"},
                                        {4100, "WAP"},
                                        {4101, "WEMT: enhanced messaging"},
                                        {4102, "SCPT: service category programming"},
                                        {4103, "CATPT: card application toolkit"}};
constexpr PduMeaning kParameters[] = {
    {0, "Teleservice Identifier"}, {1, "Service Category"},    {2, "Originating Address"},
    {3, "Originating Subaddress"}, {4, "Destination Address"}, {5, "Destination Subaddress"},
    {6, "Bearer Reply Option"},    {7, "Cause Codes"},         {8, "Bearer Data"}};
constexpr PduMeaning kSubparameters[] = {{0, "Message Identifier"},
                                         {1, "User Data"},
                                         {2, "User Response Code"},
                                         {3, "Message Center Time Stamp"},
                                         {4, "Validity Period - Absolute"},
                                         {5, "Validity Period - Relative"},
                                         {6, "Deferred Delivery Time - Absolute"},
                                         {7, "Deferred Delivery Time - Relative"},
                                         {8, "Priority Indicator"},
                                         {9, "Privacy Indicator"},
                                         {10, "Reply Option"},
                                         {11, "Number of Messages"},
                                         {12, "Alert on Message Delivery"},
                                         {13, "Language Indicator"},
                                         {14, "Call-Back Number"},
                                         {15, "Message Display Mode"},
                                         {16, "Multiple Encoding User Data"},
                                         {17, "Message Deposit Index"},
                                         {18, "Service Category Program Data"},
                                         {19, "Service Category Program Results"},
                                         {20, "Message Status"},
                                         {21, "TP-Failure Cause"},
                                         {22, "Enhanced VMN"},
                                         {23, "Enhanced VMN Ack"}};
constexpr PduMeaning kDataTypes[] = {{1, "Deliver"},
                                     {2, "Submit"},
                                     {3, "Cancellation"},
                                     {4, "Delivery Acknowledgment"},
                                     {5, "User Acknowledgment"},
                                     {6, "Read Acknowledgment"},
                                     {7, "Deliver Report"},
                                     {8, "Submit Report"}};
constexpr PduMeaning kEncodings[] = {{0, "octet, unspecified"},
                                     {1, "IS-91 extended protocol message"},
                                     {2, "7-bit ASCII"},
                                     {3, "IA5"},
                                     {4, "Unicode"},
                                     {5, "Shift-JIS"},
                                     {6, "Korean"},
                                     {7, "Latin/Hebrew"},
                                     {8, "Latin"},
                                     {9, "GSM 7-bit default alphabet"},
                                     {10, "GSM data coding scheme"}};
enum : ULONG { // MSG_ENCODING
    kOctet = 0,
    kIs91 = 1,
    kAscii = 2,
    kIa5 = 3,
    kUnicode = 4,
    kLatin = 8,
    kGsm = 9,
    kGsmScheme = 10
};
constexpr PduMeaning kPriorities[] = {{0, "normal"}, {1, "interactive"}, {2, "urgent"}, {3, "emergency"}};
constexpr PduMeaning kPrivacies[] = {{0, "not restricted"}, {1, "restricted"}, {2, "confidential"}, {3, "secret"}};
constexpr PduMeaning kAlerts[] = {{0, "the mobile's default"}, {1, "low"}, {2, "medium"}, {3, "high"}};
constexpr PduMeaning kDisplayModes[] = {{0, "immediate"}, {1, "the mobile's default"}, {2, "user invoke"}};
constexpr PduMeaning kLanguages[] = {{0, "unknown"},  {1, "English"}, {2, "French"},  {3, "Spanish"},
                                     {4, "Japanese"}, {5, "Korean"},  {6, "Chinese"}, {7, "Hebrew"}};
constexpr PduMeaning kErrorClasses[] = {{0, "no error"}, {2, "temporary"}, {3, "permanent"}};

// Beyond the codes that 3GPP TS 23.040 has, too.
constexpr PduMeaning kRelativeTimes[] = {{245, "indefinite"},
                                         {246, "immediate"},
                                         {247, "until the mobile becomes inactive"},
                                         {248, "until the mobile registers elsewhere"}};

// What is left of an octet.
void Reserved(PduReader& in)
{
    if (in.BitsLeft() % 8 != 0) in.Field(in.BitsLeft() % 8, "RESERVED", "");
}

// --- addresses -------------------------------------------------------------------------------------------------------

// Digits of four bits: 1 to 9, 10 for 0, 11 and 12 for star and pound.
std::string DtmfDigits(const std::vector<BYTE>& digits)
{
    std::string out;
    for (const BYTE digit : digits)
        out += "?1234567890*#???"[digit & 15];
    return out;
}

// As the library has them in its records.
std::string LibraryDigits(const std::vector<BYTE>& digits)
{
    std::string out;
    for (const BYTE digit : digits)
        out += static_cast<char>('0' + (digit == 10 ? 0 : digit));
    return out;
}

// NUM_FIELDS and the digits or characters.
void Characters(PduReader& in, bool ascii)
{
    const ULONG count = in.Number(8, "NUM_FIELDS");
    const size_t width = ascii ? 8 : 4;
    const size_t at = in.Skip(count * width, "CHARi");
    std::vector<BYTE> values;
    for (size_t i = 0; i < count; ++i)
        values.push_back(static_cast<BYTE>(in.Out().Value(at + i * width, width)));
    const std::string text(values.begin(), values.end());
    in.AddLast(ascii ? Utf8(text.data(), text.size()) : DtmfDigits(values));
    if (!ascii && LibraryDigits(values) != DtmfDigits(values))
        in.Out().Library("reads these as \"" + LibraryDigits(values) + "\".");
    Reserved(in);
}

void Address(PduReader& in, bool originating)
{
    const ULONG digit_mode = in.Take(1, "DIGIT_MODE");
    in.AddLast(digit_mode != 0 ? "8-bit characters" : "4-bit DTMF digits");
    const ULONG number_mode = in.Take(1, "NUMBER_MODE");
    in.AddLast(number_mode != 0 ? "data network address" : "telephone number");
    if (originating && (digit_mode | number_mode) != 0) in.Out().Library("does not read such an address: 1.");
    if (digit_mode != 0) in.Number(3, "NUMBER_TYPE");
    if (digit_mode != 0 && number_mode == 0) in.Number(4, "NUMBER_PLAN");
    Characters(in, digit_mode != 0);
}

void Subaddress(PduReader& in)
{
    const ULONG type = in.Take(3, "TYPE");
    in.AddLast(type == 0 ? "NSAP" : "user specified");
    in.Number(1, "ODD");
    Characters(in, true);
}

void CallbackNumber(PduReader& in)
{
    const ULONG digit_mode = in.Take(1, "DIGIT_MODE");
    in.AddLast(digit_mode != 0 ? "8-bit characters" : "4-bit DTMF digits");
    if (digit_mode != 0) {
        in.Number(3, "NUMBER_TYPE");
        in.Number(4, "NUMBER_PLAN");
    }
    Characters(in, digit_mode != 0);
}

// --- user data -------------------------------------------------------------------------------------------------------

// The header in front of the characters; returns its octets, the length among them.
size_t UserDataHeader(PduReader& in)
{
    const ULONG length = in.Take(8, "UDHL");
    in.AddLast(Count(length, "octet"));
    in.Out().Library("takes the header for characters.");
    const Explanation::Inner inner(in.Out());
    ExplainHeaderElements(in.Nested(length));
    return length + size_t{1};
}

std::string TextOf(ULONG encoding, const std::vector<BYTE>& characters)
{
    switch (encoding) {
    case kAscii:
    case kIa5:
    case kLatin: {
        const std::string text(characters.begin(), characters.end());
        return Quoted(Utf8(text.data(), text.size()));
    }
    case kUnicode:
        return Quoted(Ucs2Text(characters));
    default:
        return "";
    }
}

// Octets from any bit on.
std::vector<BYTE> OctetsFrom(const Explanation& message, size_t bit, size_t count, size_t width = 8)
{
    std::vector<BYTE> out;
    for (size_t i = 0; i < count; ++i)
        out.push_back(static_cast<BYTE>(message.Value(bit + i * width, width)));
    return out;
}

// Where the characters end before their number is reached.
void CheckCharacters(PduReader& in, size_t there, size_t units)
{
    if (there >= units) return;
    in.Out().Fault("octet " + std::to_string(in.At() / 8) + ": the user data ends after " + std::to_string(there) +
                   " of " + Count(units, "character"));
    in.Out().Library("reads what is missing as 0.");
}

// Packed as 3GPP TS 23.038 packs them, into octets that may begin at any bit. The octets of a header count as septets.
void GsmCharacters(PduReader& in, size_t begin, size_t header, size_t count)
{
    const size_t units = count - std::min(count, (header * 8 + 6) / 7);
    const size_t octets = (count * 7 + 7) / 8, there = std::min(octets - std::min(octets, header), in.OctetsLeft());
    const size_t septets = std::min(count, (header + there) * 8 / 7);
    in.Skip(there * 8, "CHARi");
    const size_t first = count - units;
    in.AddLast(Quoted(GsmText(OctetsFrom(in.Out(), begin, header + there), std::min(first, septets),
                              septets - std::min(first, septets))));
    in.Out().Library("takes seven bits at a time, from the most significant end on.");
    CheckCharacters(in, septets - std::min(first, septets), units);
    Reserved(in);
}

void UserData(PduReader& in, bool has_header)
{
    const ULONG encoding = in.Take(5, "MSG_ENCODING");
    in.AddLast(MeaningOf(kEncodings, encoding));
    if (encoding != kOctet && encoding != kAscii && encoding != kUnicode && encoding != kGsm)
        in.Out().Library("does not read this encoding: 1.");
    if (encoding == kIs91 || encoding == kGsmScheme) in.Number(8, "MESSAGE_TYPE");
    const ULONG count = in.Number(8, "NUM_FIELDS");
    const size_t begin = in.At(), header = has_header ? UserDataHeader(in) : 0;
    if (encoding == kIs91 || encoding == kGsmScheme) return in.Rest("CHARi", "in the coding that MESSAGE_TYPE names");
    if (encoding == kGsm) return GsmCharacters(in, begin, header, count);

    const size_t width = encoding == kAscii || encoding == kIa5 ? 7 : encoding == kUnicode ? 16 : 8;
    const size_t over = header * 8 % width;
    if (over != 0) in.Field(width - over, "fill bits", "up to the next character");
    const size_t units = count - std::min<size_t>(count, (header * 8 + width - 1) / width);
    const size_t there = std::min(units, in.BitsLeft() / width), step = width == 7 ? 7 : 8;
    const size_t at = in.Skip(there * width, "CHARi");
    in.AddLast(TextOf(encoding, OctetsFrom(in.Out(), at, there * width / step, step)));
    CheckCharacters(in, there, units);
    Reserved(in);
}

// --- bearer data -----------------------------------------------------------------------------------------------------

void MessageIdentifier(PduReader& in, bool& has_header)
{
    const ULONG type = in.Take(4, "MESSAGE_TYPE");
    in.AddLast(MeaningOf(kDataTypes, type));
    if (type != 1) in.Out().Library("decodes messages of type Deliver: 5 for others (and takes the octet 0f for one).");
    const ULONG identifier = in.Take(16, "MESSAGE_ID");
    in.AddLast(HexNumber(identifier, 4));
    has_header = in.Take(1, "HEADER_IND") != 0;
    in.AddLast(has_header ? "the user data begins with a header" : "no header");
    Reserved(in);
}

void Time(PduReader& in, bool delivery)
{
    const std::vector<BYTE> octets = in.Octets(6, "YEAR to SECONDS");
    std::string parts[6];
    std::transform(octets.begin(), octets.end(), parts, PlainDigits);
    in.AddLast(FullYear(parts[0]) + "-" + parts[1] + "-" + parts[2] + " " + parts[3] + ":" + parts[4] + ":" + parts[5]);
    if (delivery) in.Out().Library("uYear is the number, the other five fields are the octets as they stand.");
}

void RelativePeriod(PduReader& in)
{
    const ULONG value = in.Take(8, "VALIDITY");
    in.AddLast(value < 245 ? RelativeTime(value) : MeaningOf(kRelativeTimes, value));
}

void Priority(PduReader& in)
{
    const ULONG octet = in.Out().Value(in.At(), in.BitsLeft() < 8 ? 0 : 8);
    const ULONG value = in.Take(2, "PRIORITY");
    in.AddLast(MeaningOf(kPriorities, value));
    if ((octet & 0x3F) != 0) in.Out().Library("uPriority 0, because the reserved bits are not 0.");
    Reserved(in);
}

void ReplyOption(PduReader& in)
{
    for (const char* const name : {"USER_ACK_REQ", "DAK_REQ", "READ_ACK_REQ", "REPORT_REQ"}) {
        const ULONG asked = in.Take(1, name);
        in.AddLast(asked != 0 ? "requested" : "not requested");
    }
    Reserved(in);
}

void NumberOfMessages(PduReader& in)
{
    const ULONG value = in.Take(8, "MSG_COUNT");
    in.AddLast(PlainDigits(static_cast<BYTE>(value)));
    in.Out().Library("uNumMsgs is the octet as it stands, " + HexNumber(value, 2) + ".");
}

template <size_t count>
void Choice(PduReader& in, size_t bits, const char* name, const PduMeaning (&table)[count])
{
    const ULONG value = in.Take(bits, name);
    in.AddLast(MeaningOf(table, value));
    Reserved(in);
}

void MessageStatus(PduReader& in)
{
    const ULONG value = in.Take(2, "ERROR_CLASS");
    in.AddLast(MeaningOf(kErrorClasses, value));
    in.Number(6, "MESSAGE_STATUS_CODE");
}

void Subparameter(PduReader& in, ULONG identifier, bool& has_header)
{
    switch (identifier) {
    case 0:
        return MessageIdentifier(in, has_header);
    case 1:
        return UserData(in, has_header);
    case 2:
        in.Number(8, "RESPONSE_CODE");
        return;
    case 3:
    case 4:
    case 6:
        return Time(in, identifier == 3);
    case 5:
    case 7:
        return RelativePeriod(in);
    case 8:
        return Priority(in);
    case 9:
        return Choice(in, 2, "PRIVACY", kPrivacies);
    case 10:
        return ReplyOption(in);
    case 11:
        return NumberOfMessages(in);
    case 12:
        return Choice(in, 2, "ALERT_PRIORITY", kAlerts);
    case 13:
        return Choice(in, 8, "LANGUAGE", kLanguages);
    case 14:
        return CallbackNumber(in);
    case 15:
        return Choice(in, 2, "MSG_DISPLAY_MODE", kDisplayModes);
    case 17:
        in.Number(16, "MESSAGE_DEPOSIT_INDEX");
        return;
    case 20:
        return MessageStatus(in);
    default:
        return in.Rest("(its octets)", "");
    }
}

// One identifier, length and body after the other. A body that ends too early spoils itself alone.
template <class Body>
void Walk(PduReader& in, const char* identifier_name, const char* length_name, Body body)
{
    while (in.BitsLeft() != 0) {
        const ULONG identifier = in.Take(8, identifier_name);
        body(identifier, [&] {
            const Explanation::Inner inner(in.Out());
            const ULONG length = in.Take(8, length_name);
            in.AddLast(Count(length, "octet"));
            const bool whole = in.OctetsLeft() >= length;
            if (!whole) {
                in.Out().Fault("octet " + std::to_string(in.At() / 8) + ": " + length_name + " " +
                               std::to_string(length) + " goes past the end, " + Count(in.OctetsLeft(), "octet") +
                               " left");
            }
            return in.Nested(length);
        });
    }
}

template <class Explain>
void Body(PduReader in, Explain explain)
{
    const Explanation::Inner inner(in.Out());
    try {
        explain(in);
        in.Rest("(its rest)", "belongs to no field");
    } catch (const PduReader::Ended&) { // noted where it happened
    }
}

void BearerData(PduReader& in)
{
    bool has_header = false;
    Walk(in, "SUBPARAMETER_ID", "SUBPARAM_LEN", [&](ULONG identifier, auto&& open) {
        in.AddLast(MeaningOf(kSubparameters, identifier));
        if (identifier > 20) in.Out().Library("does not know this subparameter: 5.");
        Body(open(), [&](PduReader& body) { Subparameter(body, identifier, has_header); });
    });
}

// --- transport layer -------------------------------------------------------------------------------------------------

void Teleservice(PduReader& in)
{
    const ULONG value = in.Take(16, "IDENTIFIER");
    in.AddLast(std::to_string(value) + ", " + MeaningOf(kTeleservices, value));
    if ((value & 0xFF) == 3) in.Out().Library("looks at the second octet alone; 03 is voice mail, uMsgCategory 2.");
}

void CauseCodes(PduReader& in)
{
    in.Number(6, "REPLY_SEQ");
    const ULONG error = in.Take(2, "ERROR_CLASS");
    in.AddLast(MeaningOf(kErrorClasses, error));
    if (error != 0) in.Number(8, "CAUSE_CODE");
}

void Parameter(PduReader& in, ULONG identifier)
{
    switch (identifier) {
    case 0:
        return Teleservice(in);
    case 1:
        in.Number(16, "CATEGORY");
        return;
    case 2:
    case 4:
        return Address(in, identifier == 2);
    case 3:
    case 5:
        return Subaddress(in);
    case 6:
        in.Number(6, "REPLY_SEQ");
        return Reserved(in);
    case 7:
        return CauseCodes(in);
    case 8:
        return BearerData(in);
    default:
        return in.Rest("(its octets)", "");
    }
}

} // namespace

void ExplainCdma(Explanation& out)
{
    PduReader in(out);
    out.kind = "a CDMA message";
    try {
        const ULONG type = in.Take(8, "SMS_MSG_TYPE");
        out.kind = "CDMA: " + MeaningOf(kMessageTypes, type);
        in.AddLast(MeaningOf(kMessageTypes, type));
        if (type != 0) out.Library("decodes point-to-point messages alone: 1.");
        Walk(in, "PARAMETER_ID", "PARAMETER_LEN", [&](ULONG identifier, auto&& open) {
            in.AddLast(MeaningOf(kParameters, identifier));
            const bool unknown = identifier == 4 || identifier == 5 || identifier == 7 || identifier > 8;
            if (unknown) out.Library("does not take this parameter: 5.");
            Body(open(), [&](PduReader& body) { Parameter(body, identifier); });
        });
    } catch (const PduReader::Ended&) { // noted where it happened
    }
    ORV_CDMA_SMS record = {};
    const std::vector<BYTE>& octets = out.Octets();
    out.Result("OrvCdmaSmsDecode",
               static_cast<ULONG>(OrvCdmaSmsDecode(octets.data(), static_cast<ULONG>(octets.size()), &record)));
    OrvFreeBuffer(record.pUserData);
}

} // namespace ctl
