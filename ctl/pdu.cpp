// The commands for messages as octets, which need no module: pdu decode, pdu encode, pdu explain.

#include "ctl/client.h"
#include "ctl/message.h"
#include "ctl/pdu_explain.h"
#include "ctl/text.h"
#include "talvek/core.h"
#include "talvek/sms_text.h"

#include <algorithm>

namespace ctl {

namespace {

struct Choice {
    std::string hex;
    bool gsm = false, cdma = false, no_smsc = false;
};

// --- what is given ---------------------------------------------------------------------------------------------------

std::vector<BYTE> Octets(const std::string& hex)
{
    std::vector<BYTE> out;
    std::string digits;
    for (const char c : hex) {
        if (c == ' ' || c == ':' || c == '\n') continue;
        digits += c;
        if (digits.size() < 2) continue;
        ULONG value = 0;
        if (!ParseNumber("0x" + digits, value)) throw UsageError("'" + digits + "' is no octet in hexadecimal");
        out.push_back(static_cast<BYTE>(value));
        digits.clear();
    }
    if (!digits.empty()) throw UsageError("the last octet has one digit only");
    if (out.empty()) throw UsageError("a message has one octet at least");
    return out;
}

// Whether the octets are a message of the CDMA transport layer: its parameters fill it to the end, or it begins with a
// teleservice. A GSM message with no service centre begins with 00, too, but a type of address is 80 or above.
bool LooksLikeCdma(const std::vector<BYTE>& octets)
{
    constexpr BYTE kLastMessageType = 2, kLastParameter = 8;
    if (octets[0] > kLastMessageType) return false;
    if (octets.size() > 3 && octets[1] == 0 && octets[2] == 2 && octets[3] < 0x80) return true;
    size_t at = 1;
    while (at + 2 <= octets.size() && octets[at] <= kLastParameter)
        at += 2u + octets[at + 1];
    return at == octets.size() && at > 1;
}

bool IsCdma(const Choice& choice, const std::vector<BYTE>& octets)
{
    return choice.cdma || (!choice.gsm && !choice.no_smsc && LooksLikeCdma(octets));
}

// --- pdu decode ------------------------------------------------------------------------------------------------------

// The address's digits are counted by its length octet alone: the record does not keep it.
Json ServiceCentre(const std::vector<BYTE>& pdu, ULONG type_of_number)
{
    const ULONG octets = static_cast<ULONG>(std::min<size_t>(pdu[0], pdu.size() - 1));
    if (octets < 2) return nullptr;
    Json digits = TextOrNull(OrvSemiOctetsToText, &pdu[2], octets - 1, (octets - 1) * 2);
    if (type_of_number != ORV_GSM_TON_INTERNATIONAL) return digits;
    return "+" + digits.get<std::string>();
}

void DecodeGsm(Report& report, const std::vector<BYTE>& pdu)
{
    ORV_GSM_SMS_IN record = {};
    Check("OrvGsmSmsDecode", OrvGsmSmsDecode(pdu.data(), static_cast<ULONG>(pdu.size()), &record));
    report.Add("technology", "technology", "GSM/UMTS");
    const Json smsc = ServiceCentre(pdu, record.uSmscTypeOfNumber);
    report.Add("smsc", "service centre", smsc, smsc.is_null() ? "the module's own" : PlainText(smsc));
    AddGsmMessage(report, record);
}

void DecodeCdma(Report& report, const std::vector<BYTE>& message)
{
    ReceivedCdmaSms record;
    Check("OrvCdmaSmsDecode", OrvCdmaSmsDecode(message.data(), static_cast<ULONG>(message.size()), &record));
    report.Add("technology", "technology", "CDMA");
    AddCdmaMessage(report, record);
}

int Decode(const Client& client, const Choice& choice)
{
    const std::vector<BYTE> octets = Octets(choice.hex);
    Report report("pdu decode");
    if (IsCdma(choice, octets)) {
        DecodeCdma(report, octets);
    } else {
        DecodeGsm(report, octets);
    }
    client.Answer(report);
    return 0;
}

int Explain(const Client& client, const Choice& choice)
{
    Explanation explanation(Octets(choice.hex));
    if (IsCdma(choice, explanation.Octets())) {
        ExplainCdma(explanation);
    } else {
        ExplainGsm(explanation, !choice.no_smsc);
    }
    client.Answer(explanation.ToReport());
    return 0;
}

// --- pdu encode ------------------------------------------------------------------------------------------------------

struct Outgoing {
    std::string to, text;
    bool cdma = false, ucs2 = false, wide = false;
    std::string smsc, callback;
    ULONG message_class = ORV_GSM_CLASS_NONE;
    ULONG reference = 0, priority = ORV_CDMA_SMS_PRIORITY_NORMAL;
    WORD message_id = 0;
};

std::vector<std::string> EncodeGsm(const Outgoing& message)
{
    CheckNumber(message.to, "the destination");
    if (!message.smsc.empty()) CheckNumber(message.smsc, "the service centre");
    ORV_SMS_OPTIONS options = ORV_SMS_OPTIONS_DEFAULT;
    options.bUcs2 = message.ucs2;
    options.eMessageClass = message.message_class;
    options.uReference = message.reference;
    options.bWideReference = message.wide;
    options.pSmsc = message.smsc.empty() ? nullptr : message.smsc.c_str();
    std::vector<std::string> out;
    for (ULONG part = 0, count = 1; part < count; ++part) {
        ORV_GSM_SMS_OUT record = {};
        BYTE pdu[ORV_GSM_SMS_PDU_ROOM];
        ULONG length = sizeof pdu;
        CheckText("OrvGsmSmsPart",
                  OrvGsmSmsPart(message.to.c_str(), message.text.data(), static_cast<ULONG>(message.text.size()),
                                &options, part, &record, &count),
                  "the text is too long: it needs more than 255 parts");
        Check("OrvGsmSmsEncode", OrvGsmSmsEncode(&record, pdu, &length));
        out.push_back(Hex(pdu, length));
    }
    return out;
}

std::vector<std::string> EncodeCdma(const Outgoing& message)
{
    if (!message.callback.empty()) CheckCdmaNumber(message.callback);
    BYTE data[ORV_CDMA_SMS_MAX_USER_DATA], octets[ORV_CDMA_SMS_MESSAGE_ROOM];
    ORV_CDMA_SMS_SEND record = CdmaSmsFromText(message.to, message.text, data);
    record.uMsgId = message.message_id;
    record.uPriority = message.priority;
    record.uCallbackLen = static_cast<BYTE>(message.callback.size());
    std::copy(message.callback.begin(), message.callback.end(), record.szCallback);
    ULONG length = sizeof octets;
    Check("OrvCdmaSmsEncode", OrvCdmaSmsEncode(&record, octets, &length));
    return {Hex(octets, length)};
}

int Encode(const Client& client, const Outgoing& message)
{
    Report report("pdu encode");
    const std::vector<std::string> parts = message.cdma ? EncodeCdma(message) : EncodeGsm(message);
    report.AddHidden("technology", message.cdma ? "CDMA" : "GSM/UMTS");
    report.AddHidden("parts", parts);
    for (const std::string& part : parts)
        report.AddLine(part);
    client.Answer(report);
    return 0;
}

} // namespace

void AddPduCommands(Client& client)
{
    CLI::App* const pdu = client.App().add_subcommand("pdu", "Messages as octets; needs no module");
    pdu->require_subcommand(1);

    const auto add = [&](const char* name, const char* help, int (*run)(const Client&, const Choice&)) {
        CLI::App* const sub = pdu->add_subcommand(name, help);
        const auto choice = std::make_shared<Choice>();
        sub->add_option("HEX", choice->hex, "The message in hexadecimal; blanks and colons may stand between octets")
            ->required();
        CLI::Option* const gsm =
            sub->add_flag("--gsm", choice->gsm, "It is a GSM message (otherwise told by its form)");
        CLI::Option* const cdma = sub->add_flag("--cdma", choice->cdma, "It is a CDMA message")->excludes(gsm);
        client.Run(sub, [&client, choice, run] { return run(client, *choice); });
        if (run != Explain) return;
        sub->add_flag("--no-smsc", choice->no_smsc,
                      "It is a GSM message without the service centre's address before it")
            ->excludes(cdma);
    };
    add("decode", "Decode a received message as the library does", Decode);
    add("explain", "Explain a message field by field, as its standard has it", Explain);

    CLI::App* const encode = pdu->add_subcommand("encode", "Encode a message, one line a part");
    const auto message = std::make_shared<Outgoing>();
    encode->add_option("--to", message->to, "The destination")->type_name("NUMBER")->required();
    encode->add_option("--text", message->text, "The text")->type_name("TEXT")->required();
    CLI::Option* const cdma = encode->add_flag("--cdma", message->cdma, "Encode a CDMA message rather than a GSM one");
    const auto of_gsm = [cdma](CLI::Option* option) { option->excludes(cdma); };
    of_gsm(encode->add_flag("--ucs2", message->ucs2, "Use UCS2 even where the GSM alphabet does"));
    of_gsm(encode->add_option("--class", message->message_class, "The message class, 0 to 3")
               ->type_name("N")
               ->check(CLI::Range(0, 3)));
    of_gsm(encode->add_option("--smsc", message->smsc, "The service centre (default: the module's own)")
               ->type_name("NUMBER"));
    of_gsm(encode->add_option("--reference", message->reference, "The reference of a long message's parts (default: 0)")
               ->type_name("N")
               ->check(CLI::Range(0, 65535)));
    of_gsm(encode->add_flag("--wide-reference", message->wide, "Give the reference 16 bits instead of 8"));
    encode->add_option("--callback", message->callback, "The call-back number")->type_name("NUMBER")->needs(cdma);
    encode->add_option("--priority", message->priority, "0 normal, 1 interactive, 2 urgent, 3 emergency")
        ->type_name("N")
        ->check(CLI::Range(0, 3))
        ->needs(cdma);
    encode->add_option("--message-id", message->message_id, "MESSAGE_ID (default: 0)")
        ->type_name("N")
        ->check(CLI::Range(0, 65535))
        ->needs(cdma);
    client.Run(encode, [&client, message] { return Encode(client, *message); });
}

} // namespace ctl
