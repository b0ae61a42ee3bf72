// The files of the SIM, through restricted and generic commands over the AT port.

#include <string.h>

#include "api/admission.h"
#include "api/at_command.h"
#include "api/sim_response.h"
#include "at/util.h"
#include "talvek/gsm_sim.h"
#include "utility/heap_buffer.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKGsm.cpp");

constexpr AtErrorTexts kRestricted = {"OrvSendRestrictedSIMCmd::Extracted CME Error code = %lu",
                                      "OrvSendRestrictedSIMCmd: Failed to extract CME Error"};
constexpr AtErrorTexts kGeneric = {"OrvSendGenericSimCommand::Extracted CME Error code = %lu",
                                   "OrvSendGenericSimCommand: Failed to extract CME Error"};

enum : ULONG { MASTER_FILE_ID = 0x3F00 };

// GSM/UMTS, as for all of this interface's SIM functions, with the port open.
ORV_RCODE RequireSimOverAtPort()
{
    if (const ORV_RCODE refused = RequireUmts(ORV_RCODE_NOT_AVAILABLE)) return refused;
    return RequireOpenAtPort();
}

// A command line with octets in it, freed at the end.
struct HexCommand {
    HexCommand() = default;
    ~HexCommand() { FreeCommand(text); }
    HexCommand(const HexCommand&) = delete;
    HexCommand& operator=(const HexCommand&) = delete;
    char* text = nullptr;
};

// The parameters of a restricted command; the ones that `mask` does not name are not sent.
struct RestrictedCommand {
    ULONG command, mask, file_id, p1, p2, p3, data_size;
    const BYTE* data;

    // All three or none, and only behind the file identifier.
    bool HasP1ToP3() const
    {
        constexpr ULONG kNeeded =
            ULONG{ORV_RESTRICTED_FILE_ID} | ORV_RESTRICTED_P1 | ORV_RESTRICTED_P2 | ORV_RESTRICTED_P3;
        return (mask & kNeeded) == kNeeded;
    }
    bool HasData() const { return HasP1ToP3() && (mask & ORV_RESTRICTED_DATA); }
};

// Appends to a line; null once it does not fit.
template <class... Arguments>
char* Append(CommandLine& line, char* szPrefixWalk, const char* format, Arguments... arguments)
{
    if (!szPrefixWalk) return nullptr;
    const ULONG room = static_cast<ULONG>(line.text + sizeof(line.text) - szPrefixWalk);
    const ULONG written = PrintNarrow(szPrefixWalk, room, format, arguments...);
    szPrefixWalk = written + 1 < room ? szPrefixWalk + written : nullptr;
    TBD_ASSERT(nullptr != szPrefixWalk, "ASSERTION FAILURE: ===>NULL != szPrefixWalk");
    return szPrefixWalk;
}

// Sends the command and reads what the card has to say to it. The heap is used for data alone.
ORV_RCODE Send(const RestrictedCommand& given, SimResponse* response, SimReply* reply)
{
    *reply = SimReply::Malformed;
    CommandLine prefix;
    char* walk = Append(prefix, prefix.text, "AT+CRSM=%lu", given.command);
    if (given.mask & ORV_RESTRICTED_FILE_ID) walk = Append(prefix, walk, ",%u", given.file_id);
    if (given.HasP1ToP3()) walk = Append(prefix, walk, ",%u,%u,%u", given.p1, given.p2, given.p3);

    HexCommand with_data;
    const char* command = prefix.text;
    if (given.HasData()) {
        walk = Append(prefix, walk, ",");
        if (!BuildHexCommand(prefix.text, given.data, given.data_size, "\r", &with_data.text)) return ORV_RCODE_FAILED;
        command = with_data.text;
    } else {
        walk = Append(prefix, walk, "\r");
    }
    if (!walk) return ORV_RCODE_FAILED;

    char text[kAtBufferSize] = {};
    if (const ORV_RCODE refused = SendAtCommand(kLogSource, command, kRestricted, text)) return refused;
    *reply = ReadRestrictedReply(text, command, response);
    return *reply == SimReply::Whole ? ORV_RCODE_OK : ORV_RCODE_FAILED;
}

// Hands a response over. Its payload is a block of its own.
bool Give(const SimResponse& given, ORV_SIM_RESPONSE* response)
{
    BYTE* payload = nullptr;
    if (given.size > 0) {
        HeapBuffer block(given.size);
        payload = block.Release<BYTE>();
        if (!payload) return false;
        memcpy(payload, given.payload, given.size);
    }
    response->dwParamsMask = given.dwParamsMask;
    response->StatusWord1 = given.sw1;
    response->StatusWord2 = given.sw2;
    response->dwPayloadSize = given.size;
    response->pPayload = payload;
    return true;
}

} // namespace

ORV_RCODE ORV_CALL OrvSendRestrictedSIMCmd(ULONG command, ULONG mask, ULONG fileId, ULONG p1, ULONG p2, ULONG p3,
                                           ULONG dataSize, const BYTE* data, ORV_SIM_RESPONSE* response)
{
    if (const ORV_RCODE refused = RequireSimOverAtPort()) return refused;
    const RestrictedCommand request = {command, mask, fileId, p1, p2, p3, dataSize, data};
    if (!response || (request.HasData() && dataSize > 0 && !data)) return ORV_RCODE_BAD_PARAMETER;
    SimResponse given;
    SimReply reply = SimReply::Malformed;
    const ORV_RCODE result = Send(request, &given, &reply);
    if (reply == SimReply::Malformed) return result;
    if (reply == SimReply::BadFinalResult) {
        given.size = 0; // the status words stand, and the mask, but nothing is handed over
        Give(given, response);
        return result;
    }
    if (Give(given, response)) return ORV_RCODE_OK;
    LOG_C("Failed to allocate memory for CRSM response");
    return ORV_RCODE_FAILED;
}

ORV_RCODE ORV_CALL OrvSendGenericSimCommand(ORV_SIM_GENERIC_REQUEST request, ORV_SIM_RESPONSE* response)
{
    if (const ORV_RCODE refused = RequireSimOverAtPort()) return refused;
    TBD_ASSERT(0 != request.dwPayloadSize, "ASSERTION FAILURE: ===>0 != sAReqCmd.dwPayloadSize");
    if (request.dwPayloadSize == 0 || !request.pPayload || !response) return ORV_RCODE_BAD_PARAMETER;
    CommandLine prefix;
    prefix.Format("AT+CSIM=%u,", 2 * request.dwPayloadSize); // any number fits
    HexCommand command;
    if (!BuildHexCommand(prefix.text, request.pPayload, request.dwPayloadSize, "\r", &command.text)) {
        LOG_C("ComposeCmdWithByteArray Failed");
        return ORV_RCODE_FAILED;
    }
    LOG_C("CSIM AT cmd string = %s", command.text);

    char text[kAtBufferSize] = {};
    if (const ORV_RCODE refused = SendAtCommand(kLogSource, command.text, kGeneric, text)) return refused;
    SimResponse given;
    if (ReadGenericReply(text, command.text, &given) != SimReply::Whole) return ORV_RCODE_FAILED;
    if (Give(given, response)) return ORV_RCODE_OK;
    LOG_C("Failed to allocate memory for CSIM response");
    return ORV_RCODE_FAILED;
}

ORV_RCODE ORV_CALL OrvGetSIMRecordStatus(ULONG fileId, ORV_SIM_RECORD_STATUS* status)
{
    if (const ORV_RCODE refused = RequireSimOverAtPort()) return refused;
    if (!status || fileId > 0xFFFF) return ORV_RCODE_BAD_PARAMETER;
    if (fileId == MASTER_FILE_ID) {
        LOG_C("MASTER_FILE_ID != uFileId");
        return ORV_RCODE_BAD_PARAMETER;
    }
    // Fifteen octets are what the fixed form has; a template comes as long as it is.
    constexpr ULONG kMask = ULONG{ORV_RESTRICTED_FILE_ID} | ORV_RESTRICTED_P1 | ORV_RESTRICTED_P2 | ORV_RESTRICTED_P3;
    const RestrictedCommand request = {ORV_RESTRICTED_GET_RESPONSE, kMask, fileId, 0, 0, 15, 0, nullptr};
    SimResponse sRsRsp;
    SimReply reply = SimReply::Malformed;
    const ORV_RCODE rcode = Send(request, &sRsRsp, &reply);
    if (rcode != ORV_RCODE_OK) {
        LOG_C("OrvSendRestrictedSIMCmd failed with rCode = %d", rcode);
        return rcode;
    }
    TBD_ASSERT((sRsRsp.dwParamsMask & ORV_SR_Param_StatusWord1) && (sRsRsp.dwParamsMask & ORV_SR_Param_StatusWord2),
               "ASSERTION FAILURE: ===>(sRsRsp.dwParamsMask & ORV_SR_Param_StatusWord1) && (sRsRsp.dwParamsMask & "
               "ORV_SR_Param_StatusWord2)");
    ORV_RCODE result = CheckStatusWords(sRsRsp.sw1, sRsRsp.sw2);
    const bool refused = result != ORV_RCODE_OK;
    if (!refused) result = ReadFileControl(sRsRsp.payload, sRsRsp.size, status);
    if (refused || result == ORV_RCODE_OK) {
        status->SW1 = sRsRsp.sw1;
        status->SW2 = sRsRsp.sw2;
    }
    return result;
}
