#include "api/sim_response.h"

#include "api/scan.h"
#include "at/reply.h"
#include "at/tlv.h"
#include "utility/log.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKGsm.cpp");

// --- replies ---------------------------------------------------------------------------------------------------------

// Digits that stand between quotes, or, where these need not be there, up to the end of the line.
struct Digits {
    const char* text;
    ULONG length;
};

Digits TakeDigits(Reply& reply, bool quotes_needed, const char* fault)
{
    while (reply.Has(" "))
        continue;
    Digits digits = {};
    if (reply.Has("\"")) {
        digits.text = reply.UpTo("\"\r\n", &digits.length);
        reply.Expect("\"", fault);
    } else {
        digits.text = reply.UpTo("\r\n", &digits.length);
        while (digits.length > 0 && digits.text[digits.length - 1] == ' ')
            --digits.length;
        if (quotes_needed) reply.Refuse(fault);
    }
    return digits;
}

// Pairs of digits as octets; a last digit without a partner is left out.
ULONG ToOctets(Reply& reply, const Digits& digits, BYTE (&octets)[SimResponse::kCapacity], const char* fault)
{
    const ULONG count = digits.length / 2;
    if (count > SimResponse::kCapacity) reply.Refuse(fault);
    for (ULONG i = 0; i < count && reply.Finish(); ++i) {
        const char* const pair = digits.text + size_t{2} * i;
        const ULONG high = scan::Digit(pair[0]);
        const ULONG low = scan::Digit(pair[1]);
        if (high > 15 || low > 15) reply.Refuse(fault);
        octets[i] = static_cast<BYTE>(high << 4 | (low & 15));
    }
    return reply.Finish() ? count : 0;
}

// "\r\nOK\r\n" behind the information line, whose own line break some modules leave out. The port gives a reply as soon
// as "OK" is there.
SimReply Finish(Reply& reply, SimResponse* response)
{
    if (!reply.Finish()) return SimReply::Malformed;
    response->dwParamsMask = ULONG{ORV_SR_Param_StatusWord1} | ORV_SR_Param_StatusWord2;
    if (response->size > 0) response->dwParamsMask |= ORV_SR_Param_Payload;
    if (reply.Has("\r\nOK")) return SimReply::Whole;
    reply.OptionalLineBreak();
    reply.Expect("\r\nOK", "ParseRspPostfix failed");
    return reply.Finish() ? SimReply::Whole : SimReply::BadFinalResult;
}

// --- status words ----------------------------------------------------------------------------------------------------

struct StatusWordClass {
    const char* text;
    ORV_RCODE result;
};

constexpr StatusWordClass kMemory = {"RestrictedSim Rsp contains error code that suggest Memory problem",
                                     ORV_RCODE_FAILED};
constexpr StatusWordClass kFile = {
    "RestrictedSim Rsp contains error code that suggest problem with file - filetype or index", ORV_RCODE_FAILED};
constexpr StatusWordClass kSecurity = {
    "RestrictedSim Rsp contains error code that suggest Security and/or authentication problems", ORV_RCODE_FAILED};
constexpr StatusWordClass kInternal = {
    "RestrictedSim Rsp contains error code that suggest Internal SIM error, no further information given",
    ORV_RCODE_FAILED};
constexpr StatusWordClass kNotFound = {"RestrictedSim Rsp contains error code that suggest NOT FOUND Error",
                                       ORV_RCODE_UNKNOWN};
constexpr StatusWordClass kInvalidArgument = {"RestrictedSim Rsp contains error code that suggest Invalid ARG error",
                                              ORV_RCODE_BAD_PARAMETER};
constexpr StatusWordClass kRest = {"Rest of possible failures", ORV_RCODE_FAILED};

constexpr ULONG kAny = 0x100;

// The first row that fits. 3GPP TS 51.011, 9.4, and ETSI TS 102 221, 10.2.1.
constexpr struct {
    ULONG sw1, sw2;
    const StatusWordClass& meaning;
} kFailures[] = {
    {0x92, 0x40, kMemory},
    {0x65, 0x81, kMemory},
    {0x6A, 0x84, kMemory},
    {0x94, 0x00, kFile},
    {0x94, 0x08, kFile},
    {0x94, 0x02, kInvalidArgument},
    {0x94, 0x04, kNotFound},
    {0x98, kAny, kSecurity},
    {0x69, 0x82, kSecurity},
    {0x69, 0x83, kSecurity},
    {0x69, kAny, kFile},
    {0x6F, kAny, kInternal},
    {0x6A, 0x82, kNotFound},
    {0x6A, 0x83, kNotFound},
    {0x6A, 0x88, kNotFound},
    {0x6A, 0x80, kInvalidArgument},
    {0x6A, 0x86, kInvalidArgument},
    {0x6A, 0x87, kInvalidArgument},
    {0x67, kAny, kInvalidArgument},
    {0x6B, kAny, kInvalidArgument},
    {kAny, kAny, kRest},
};

// 90 00; 91, 9F and 61, which tell of more to fetch; and 92 0X, after X attempts of the card's own.
bool IsSuccess(ULONG sw1, ULONG sw2)
{
    return (sw1 == 0x90 && sw2 == 0x00) || sw1 == 0x91 || sw1 == 0x9F || sw1 == 0x61 || (sw1 == 0x92 && sw2 < 0x10);
}

// --- file control ----------------------------------------------------------------------------------------------------

enum : ULONG { FCP_TAG = 0x62, FILE_SIZE_TAG = 0x80, FILE_DESCRIPTOR_TAG = 0x82, FILE_ID_TAG = 0x83 };

ULONG Number(const BYTE* octets, ULONG count)
{
    ULONG value = 0;
    for (ULONG i = 0; i < count; ++i)
        value = value << 8 | octets[i];
    return value;
}

ORV_RCODE Refuse(const char* text)
{
    LOG_C(text);
    return ORV_RCODE_FAILED;
}

// A record file has records of a size, a whole number of them.
bool IsSound(const ORV_SIM_RECORD_STATUS& file)
{
    return file.eStructure == ORV_SIM_FILE_TRANSPARENT || file.uRecordSize > 0;
}

ORV_RCODE ReadTemplate(TlvReader parameters, ORV_SIM_RECORD_STATUS* file)
{
    struct Parameter {
        const BYTE* value = nullptr;
        ULONG length = 0;
    } descriptor, identifier, size;
    while (parameters.Next()) {
        Parameter* const found = parameters.Tag() == FILE_DESCRIPTOR_TAG ? &descriptor
                                 : parameters.Tag() == FILE_ID_TAG       ? &identifier
                                 : parameters.Tag() == FILE_SIZE_TAG     ? &size
                                                                         : nullptr;
        if (found && !found->value) *found = {parameters.Value(), parameters.Length()};
    }
    if (parameters.Failed()) return Refuse("a file control parameter runs past the template");

    if (!descriptor.value) return Refuse("FILE_DESCRIPTOR_TAG != TAG");
    const ULONG cbFileDescDataSize = descriptor.length;
    const bool described = 2 == cbFileDescDataSize || 5 == cbFileDescDataSize;
    TBD_ASSERT(described, "ASSERTION FAILURE: ===>2 == cbFileDescDataSize || 5 == cbFileDescDataSize");
    if (!described) return ORV_RCODE_FAILED;
    if (identifier.length != 2) return Refuse("tlvFileId.GetLength != 2");
    if (size.value && (size.length == 0 || size.length > 4)) return Refuse("the file size is none");

    // Bits 4 to 6 are all set for a directory, and bits 1 to 3 tell how a file is organised.
    const BYTE organisation = descriptor.value[0];
    if ((organisation & 0x38) == 0x38) return Refuse("the file is no elementary file");
    switch (organisation & 7) {
    case 1:
        file->eStructure = ORV_SIM_FILE_TRANSPARENT;
        break;
    case 2:
        file->eStructure = ORV_SIM_FILE_LINEAR_FIXED;
        break;
    case 6:
        file->eStructure = ORV_SIM_FILE_CYCLIC;
        break;
    default:
        return Refuse("the file has a structure of another kind");
    }
    file->uFileId = Number(identifier.value, 2);
    if (file->eStructure != ORV_SIM_FILE_TRANSPARENT && cbFileDescDataSize == 5) {
        file->uRecordSize = Number(descriptor.value + 2, 2);
        file->uRecordCount = descriptor.value[4];
    }
    file->uFileSize = size.value ? Number(size.value, size.length) : file->uRecordSize * file->uRecordCount;
    if (!size.value && file->eStructure == ORV_SIM_FILE_TRANSPARENT) return Refuse("the file size is none");
    return IsSound(*file) ? ORV_RCODE_OK : Refuse("the records have no size");
}

ORV_RCODE ReadFixedForm(const BYTE* data, ULONG size, ORV_SIM_RECORD_STATUS* file)
{
    constexpr BYTE kElementaryFile = 4;
    if (size < 7) return Refuse("SIM RESPONSE data not present or less the 7 bytes");
    if (data[6] != kElementaryFile) return Refuse("the file is no elementary file");
    if (size < 14) return Refuse("SIM RESPONSE data less the 14 bytes");
    file->uFileSize = Number(data + 2, 2);
    file->uFileId = Number(data + 4, 2);
    file->eStructure = data[13]; // the interface has the same numbers
    if (file->eStructure == ORV_SIM_FILE_TRANSPARENT) return ORV_RCODE_OK;
    if (file->eStructure != ORV_SIM_FILE_LINEAR_FIXED && file->eStructure != ORV_SIM_FILE_CYCLIC)
        return Refuse("the file has a structure of another kind");
    if (size < 15) return Refuse("SIM RESPONSE data less the 15 bytes");
    file->uRecordSize = data[14];
    if (!IsSound(*file)) return Refuse("the records have no size");
    file->uRecordCount = file->uFileSize / file->uRecordSize;
    return ORV_RCODE_OK;
}

} // namespace

SimReply ReadRestrictedReply(const char* text, const char* command, SimResponse* response)
{
    Reply reply(kLogSource, text, command);
    reply.SkipEcho();
    reply.OptionalLineBreak();
    reply.Expect("+CRSM:", "ParseRspPrefix failed"); // "+CRSM: ", but some modules leave the blank out
    response->sw1 = reply.Number("ParseUInt 1 failed");
    reply.Expect(",", "MatchStringBeginning failed ");
    response->sw2 = reply.Number("ParseUInt 2 failed");
    response->size = 0;
    if (reply.Has(",")) {
        constexpr const char* kFault = "ParseUnlimitedString failed ";
        const Digits digits = TakeDigits(reply, false, kFault);
        TBD_ASSERT(0 == digits.length % 2, "ASSERTION FAILURE: ===>0 == (cbResponseString - 1) % 2");
        response->size = ToOctets(reply, digits, response->payload, kFault);
    }
    return Finish(reply, response);
}

SimReply ReadGenericReply(const char* text, const char* command, SimResponse* response)
{
    constexpr const char* kFault = "ParseUnlimitedString failed ";
    Reply reply(kLogSource, text, command);
    reply.SkipEcho();
    reply.OptionalLineBreak();
    reply.Expect("+CSIM:", "ParseRspPrefix failed"); // "+CSIM: ", as above
    reply.Number("ParseUInt 1 failed");              // modules count in more than one way: the digits themselves decide
    reply.Expect(",", "MatchStringBeginning failed ");
    const Digits digits = TakeDigits(reply, true, kFault);
    if (digits.length == 0) reply.Refuse("First char of response is NULL");
    const ULONG count = ToOctets(reply, digits, response->payload, kFault);
    if (digits.length % 2 != 0 || count < 2) reply.Refuse(kFault); // the status words are not to be told from the rest
    if (!reply.Finish()) return SimReply::Malformed;
    response->size = count - 2;
    response->sw1 = response->payload[count - 2];
    response->sw2 = response->payload[count - 1];
    return Finish(reply, response);
}

ORV_RCODE CheckStatusWords(ULONG sw1, ULONG sw2)
{
    if (IsSuccess(sw1, sw2)) return ORV_RCODE_OK;
    for (const auto& failure : kFailures) {
        if (failure.sw1 != kAny && failure.sw1 != sw1) continue;
        if (failure.sw2 != kAny && failure.sw2 != sw2) continue;
        LOG_C(failure.meaning.text);
        return failure.meaning.result;
    }
    return ORV_RCODE_FAILED;
}

ORV_RCODE ReadFileControl(const BYTE* data, ULONG size, ORV_SIM_RECORD_STATUS* status)
{
    ORV_SIM_RECORD_STATUS file = {};
    file.sizeStruct = sizeof(file);
    ORV_RCODE result = ORV_RCODE_FAILED;
    if (size > 0 && data[0] == FCP_TAG) {
        TlvReader whole(data, size);
        result = whole.Next() ? ReadTemplate(whole.Inside(), &file) : Refuse("the template runs past the response");
    } else {
        LOG_C("TAG != FCP_TAG");
        result = ReadFixedForm(data, size, &file);
    }
    if (result == ORV_RCODE_OK) *status = file;
    return result;
}
