// Settings that the vendor library does not offer, over the AT port.

#include "api/admission.h"
#include "api/at_command.h"
#include "api/registry_text.h"
#include "at/OrvAtPort.h"
#include "at/parse.h"
#include "at/reply.h"
#include "state/globals.h"
#include "talvek/at.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEK.cpp");

// --- commands --------------------------------------------------------------------------------------------------------

// Several functions log under another one's name, so that the pairs are named after what they say.
constexpr AtErrorTexts kSetClip = {"OrvATSetCLIP::Extracted CME Error code = %lu",
                                   "OrvATSetCLIP: Failed to extract CME Error"};
constexpr AtErrorTexts kGetClip = {"OrvATGetCLIP::Extracted CME Error code = %lu",
                                   "OrvATGetCLIP: Failed to extract CME Error"};
constexpr AtErrorTexts kSetClir = {"OrvATSetCLIR::Extracted CME Error code = %lu",
                                   "OrvATSetCLIR: Failed to extract CME Error"};
constexpr AtErrorTexts kGetClir = {"OrvATGetCLIR::Extracted CME Error code = %lu",
                                   "OrvATGetCLIR: Failed to extract CME Error"};
constexpr AtErrorTexts kReleaseCall = {"OrvATReleaseCall::Extracted CME Error code = %lu",
                                       "OrvATReleaseCall: Failed to extract CME Error"};
constexpr AtErrorTexts kSetEnum = {"OrvATSetEnum::Extracted CME Error code = %lu",
                                   "OrvATSetEnum: Failed to extract CME Error"};
constexpr AtErrorTexts kSetSideToneGain = {"OrvATSetSideToneGain::Extracted CME Error code = %lu",
                                           "OrvATSetSideToneGain: Failed to extract CME Error"};
constexpr AtErrorTexts kReset = {"OrvATReset::Extracted CME Error code = %lu",
                                 "OrvATReset: Failed to extract CME Error"};
constexpr AtErrorTexts kRtnReset = {"OrvATRtnReset::Extracted CME Error code = %lu",
                                    "OrvATRtnReset: Failed to extract CME Error"};
constexpr AtErrorTexts kGetProvisionStatus = {"OrvATGetProvisionStatus::Extracted CME Error code = %lu",
                                              "OrvATGetProvisionStatus: Failed to extract CME Error"};

ORV_RCODE Send(const char* command, const AtErrorTexts& errors, char* reply)
{
    return SendAtCommand(kLogSource, command, errors, reply);
}

// The same, for a command whose final result says it all.
ORV_RCODE Send(const char* command, const AtErrorTexts& errors)
{
    char reply[kAtBufferSize] = {};
    return Send(command, errors, reply);
}

ORV_RCODE SendNumber(const char* format, ULONG number, const AtErrorTexts& errors)
{
    CommandLine line;
    line.Format(format, number); // any number fits
    return Send(line.text, errors);
}

// Opens the restricted command set for the next command.
ORV_RCODE Unlock(const char* failure)
{
    char reply[kAtBufferSize] = {};
    if (g_ATPortInstance.SendCommand("AT!UNLOCK=\"C582\"\r", reply)) return ORV_RCODE_OK;
    LOG_C(failure);
    return ORV_RCODE_FAILED;
}

// --- replies ---------------------------------------------------------------------------------------------------------

// Reads up to the first value behind `prefix`.
ULONG FirstValue(Reply& reply, const char* prefix)
{
    reply.SkipEcho();
    reply.OptionalLineBreak();
    reply.Expect(prefix, "MatchStringBeginning failed ");
    return reply.Number("ParseUInt 1 failed ");
}

// PREFIX n "," m, on a line of its own.
ORV_RCODE GetPair(const char* command, const char* prefix, const AtErrorTexts& errors, BYTE* n, BYTE* m)
{
    if (!n || !m) return ORV_RCODE_BAD_PARAMETER;
    char text[kAtBufferSize] = {};
    if (const ORV_RCODE refused = Send(command, errors, text)) return refused;

    Reply reply(kLogSource, text, command);
    const ULONG first = FirstValue(reply, prefix);
    reply.Expect(",", "MatchStringBeginning failed ");
    const ULONG second = reply.Number("ParseUInt 1 failed ");
    reply.LineBreak("ParseRspSuffix failed ");
    if (!reply.Finish()) return ORV_RCODE_FAILED;
    *n = static_cast<BYTE>(first);
    *m = static_cast<BYTE>(second);
    return ORV_RCODE_OK;
}

// --- the port of a CDMA module ---------------------------------------------------------------------------------------

// Opens the AT port of a CDMA module for one call. A port that is open already stays open, and the closed one of
// another module stays closed.
class PortForOneCall {
public:
    // `port_text` is logged with the port's name.
    explicit PortForOneCall(const WCHAR* port_text)
    {
        if (g_ATPortInstance.IsOpen() || g_WirelessTech != ORV_TECH_CDMA) return;
        RegistryText name;
        if (!name.ReadPortName()) {
            TRACE_ERROR(TXT("Cannot open Registry for AT port"));
            return;
        }
        LOG_W(port_text, name.text);
        m_opened = g_ATPortInstance.OpenModulePort(name.text) == 0;
    }
    ~PortForOneCall()
    {
        if (m_opened) g_ATPortInstance.Close();
    }
    PortForOneCall(const PortForOneCall&) = delete;
    PortForOneCall& operator=(const PortForOneCall&) = delete;

private:
    bool m_opened = false;
};

// The port texts are shared crosswise: neither is logged by the function that it names.
constexpr const WCHAR* kSetEnumPort = TXT("OrvATSetEnum: AT PORT NAME detected is %s");
constexpr const WCHAR* kRtnResetPort = TXT("OrvATRtnReset: AT PORT NAME detected is %s");

} // namespace

// --- supplementary services ------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvATSetCLIP(BYTE mode)
{
    if (const ORV_RCODE refused = RequireUmtsAtPort()) return refused;
    return SendNumber("AT+CLIP=%u\r", mode, kSetClip);
}

ORV_RCODE ORV_CALL OrvATGetCLIP(BYTE* n, BYTE* m)
{
    if (const ORV_RCODE refused = RequireUmtsAtPort()) return refused;
    return GetPair("AT+CLIP?\r", "+CLIP: ", kGetClip, n, m);
}

ORV_RCODE ORV_CALL OrvATSetCLIR(BYTE mode)
{
    if (const ORV_RCODE refused = RequireUmtsAtPort()) return refused;
    return SendNumber("AT+CLIR=%u\r", mode, kSetClir);
}

ORV_RCODE ORV_CALL OrvATGetCLIR(BYTE* n, BYTE* m)
{
    if (const ORV_RCODE refused = RequireUmtsAtPort()) return refused;
    return GetPair("AT+CLIR?\r", "+CLIR: ", kGetClir, n, m);
}

ORV_RCODE ORV_CALL OrvATSetCOLP(void)
{
    LOG_C("OrvATSetCOLP");
    return RequireUmtsAtPort();
}

ORV_RCODE ORV_CALL OrvATGetCOLP(BYTE* n, BYTE* m)
{
    if (const ORV_RCODE refused = RequireUmtsAtPort()) return refused;
    return GetPair("AT+COLP?\r", "+COLP: ", kGetClip, n, m); // CLIP's texts
}

ORV_RCODE ORV_CALL OrvATSetCOLR(void)
{
    LOG_C("OrvATSetCOLR");
    return RequireUmtsAtPort();
}

ORV_RCODE ORV_CALL OrvATGetCOLR(BYTE* n)
{
    if (const ORV_RCODE refused = RequireUmtsAtPort()) return refused;
    if (!n) return ORV_RCODE_BAD_PARAMETER;
    constexpr const char* kCommand = "AT+COLR?\r";
    char text[kAtBufferSize] = {};
    if (const ORV_RCODE refused = Send(kCommand, kGetClir, text)) return refused; // CLIR's texts

    Reply reply(kLogSource, text, kCommand);
    const ULONG value = FirstValue(reply, "+COLR: "); // nothing need follow it
    if (!reply.Finish()) return ORV_RCODE_FAILED;
    *n = static_cast<BYTE>(value);
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvATReleaseCall(ULONG callIndex)
{
    if (const ORV_RCODE refused = RequireUmtsAtPort()) return refused;
    return SendNumber("AT+CHLD=1%u\r", callIndex, kReleaseCall);
}

// --- the module itself -----------------------------------------------------------------------------------------------

ORV_RCODE ORV_CALL OrvATSetEnum(const char* setting)
{
    if (const ORV_RCODE refused = RequireInitializedLogged()) return refused;
    CommandLine line;
    if (!setting || !line.Format("AT!NVENUM=%s\r", setting)) return ORV_RCODE_BAD_PARAMETER;
    const PortForOneCall port(kSetEnumPort);
    if (const ORV_RCODE refused = RequireOpenAtPort()) return refused;
    if (const ORV_RCODE refused = Unlock("OrvATSetEnum failed to unlock modem")) return refused;
    return Send(line.text, kSetEnum);
}

ORV_RCODE ORV_CALL OrvATSetSideToneGain(int32_t first, int32_t second)
{
    if (const ORV_RCODE refused = RequireInitializedLogged()) return refused;
    if (const ORV_RCODE refused = RequireOpenAtPort()) return refused;
    if (const ORV_RCODE refused = Unlock("OrvATSetSideToneGain failed to unlock modem")) return refused;
    CommandLine line;
    line.Format("AT!AVCODECSTG=%d,%x\r", first, second); // any numbers fit
    return Send(line.text, kSetSideToneGain);
}

ORV_RCODE ORV_CALL OrvATReset(void)
{
    if (const ORV_RCODE refused = RequireInitializedLogged()) return refused;
    const PortForOneCall port(kRtnResetPort);
    if (const ORV_RCODE refused = RequireOpenAtPort()) return refused;
    if (const ORV_RCODE refused = Send("AT!RESET\r", kReset)) return refused;
    LOG_C("OrvATReset::no Error");
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvATRtnReset(const char* reset)
{
    if (const ORV_RCODE refused = RequireInitializedLogged()) return refused;
    CommandLine line;
    if (!reset || !line.Format("AT$RTN=%s\r", reset)) return ORV_RCODE_BAD_PARAMETER;
    const PortForOneCall port(kSetEnumPort);
    if (const ORV_RCODE refused = RequireOpenAtPort()) return refused;
    if (const ORV_RCODE refused = Send(line.text, kRtnReset)) return refused;
    LOG_C("OrvATRtnReset::no Error");
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvATGetProvisionStatus(BYTE* flag)
{
    if (const ORV_RCODE refused = RequireInitializedLogged()) return refused;
    if (!flag) return ORV_RCODE_BAD_PARAMETER;
    const PortForOneCall port(kSetEnumPort);
    if (const ORV_RCODE refused = RequireOpenAtPort()) return refused;
    constexpr const char* kCommand = "AT+MDN\r";
    char text[kAtBufferSize] = {};
    if (const ORV_RCODE refused = Send(kCommand, kGetProvisionStatus, text)) return refused;

    Reply reply(kLogSource, text, kCommand);
    reply.SkipEcho();
    reply.LineBreak("MatchStringBeginning failed ");
    if (!reply.Finish()) return ORV_RCODE_FAILED;
    const char* behind = nullptr;
    *flag = MatchStringBeginning(reply.Rest(), "000000", &behind) ? 1 : 0;
    return ORV_RCODE_OK;
}
