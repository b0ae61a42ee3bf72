// The commands for unstructured supplementary service data: ussd send, ussd answer, ussd cancel.

#include "ctl/alphabet.h"
#include "ctl/listen.h"
#include "ctl/session.h"
#include "ctl/text.h"
#include "ctl/vendor.h"

#include <algorithm>
#include <cstring>
#include <deque>

namespace ctl {

namespace {

constexpr BYTE kGsm = 0x0F;
constexpr BYTE kUcs2 = 0x48;
constexpr size_t kMaxOctets = 160; // on the air

struct Arguments {
    std::vector<std::string> texts; // the first one is sent, the others answer what the network asks
    bool ucs2 = false;
    double timeout_s = 30;
};

USSInfo Encode(const std::string& text, bool ucs2)
{
    const std::string octets = ucs2 ? ToUcs2(text) : ToGsm(text);
    if (octets.empty()) throw UsageError("the text is empty");
    if (octets.size() > kMaxOctets)
        throw UsageError("the text is too long: at most " + std::to_string(kMaxOctets / (ucs2 ? 2 : 1)) +
                         (ucs2 ? " characters of UCS2" : " characters"));
    USSInfo info = {};
    info.dcs = ucs2 ? kUcs2 : kGsm;
    info.length = static_cast<BYTE>(octets.size());
    std::memcpy(info.data, octets.data(), octets.size());
    return info;
}

// A request or an answer, the network's replies to it, and the answers to those.
class Dialogue {
public:
    Dialogue(Client& client, std::string command, const Arguments& arguments)
        : m_client(client), m_report(std::move(command)), m_timeout_s(arguments.timeout_s)
    {
        for (const std::string& text : arguments.texts)
            m_unsent.push_back(Encode(text, arguments.ucs2));
    }

    int Run(bool request);

private:
    void Request();
    void Answer();
    // Takes a reply and sends the answer to it, if there is one. Returns whether the dialogue is over.
    bool TakeReply(ULONG scheme, const BYTE* data, size_t length, std::optional<ULONG> type);

    Client& m_client;
    Report m_report;
    double m_timeout_s;
    std::deque<USSInfo> m_unsent;
    Json m_replies = Json::array();
};

void Dialogue::Request()
{
    WORD cause = 0;
    alphaIDInfo text = {};
    USSInfo reply = {};
    BYTE became = GOBI_CALL_CONTROL_USSD, call_id = 0;
    ccSUPSType service = {};
    const ULONG status = Vendor().OrigUSSD(&m_unsent.front(), &cause, &text, &reply, &became, &call_id, &service);
    if (status != 0)
        throw VendorCallFailed("OrigUSSD", status, cause != 0 ? std::optional<ULONG>(cause) : std::nullopt);
    m_unsent.pop_front();
    AddCallControl(m_report, "USSD", became, text);
    if (const std::string shown = m_report.ToText(); !m_client.Json() && !shown.empty()) PrintLine(shown);
    if (reply.length != 0) TakeReply(reply.dcs, reply.data, reply.length, {});
}

void Dialogue::Answer()
{
    CheckVendor("AnswerUSSD", Vendor().AnswerUSSD(&m_unsent.front()));
    m_unsent.pop_front();
}

bool Dialogue::TakeReply(ULONG scheme, const BYTE* data, size_t length, std::optional<ULONG> type)
{
    const std::optional<std::string> text =
        FromCoding(scheme, std::string_view(reinterpret_cast<const char*>(data), length));
    m_replies.push_back({{"type", type ? Json(*type) : Json()},
                         {"data_coding_scheme", scheme},
                         {"data", Hex(data, length)},
                         {"text", text ? Json(*text) : Json()}});
    const bool asks = type == std::optional<ULONG>(GOBI_USSD_ANSWER);
    if (!m_client.Json()) {
        PrintLines(text ? *text : "data " + Hex(data, length) + ", coding " + HexNumber(scheme, 2));
        if (asks && m_unsent.empty()) PrintLine("(The network waits for an answer: ussd answer TEXT, or ussd cancel)");
    }
    if (m_unsent.empty()) return true;
    if (type && !asks) throw ClientError("the network ended the dialogue before the last answer");
    Answer();
    return false;
}

int Dialogue::Run(bool request)
{
    ListenOptions options;
    options.command = m_report.Command();
    options.wanted = {ORV_NOTIFY_USSD};
    options.timeout = std::chrono::milliseconds(static_cast<long long>(m_timeout_s * 1000));
    options.begin = [this, request] {
        // The network's answer to a request may be the request's own result.
        const size_t answers = m_unsent.size() - 1;
        if (request)
            Request();
        else
            Answer();
        return answers != 0 || m_replies.empty();
    };
    options.print = [](const Arrival&) {}; // TakeReply prints
    options.awaited = "the network's reply";
    options.last = [this](const OrvNotifyRecord& record) {
        const OrvUSSDPayload& payload = record.payload.USSD;
        return TakeReply(payload.uDataCodingScheme, payload.aData,
                         std::min<size_t>(payload.uLength, sizeof payload.aData), payload.uType);
    };
    options.end = [](bool interrupted) {
        if (interrupted) Vendor().CancelUSSD(); // whether there is a dialogue or not
    };
    options.report = [this](Report& report) {
        report.Merge(m_report);
        report.AddHidden("replies", m_replies);
    };
    return Listen(m_client, options);
}

int Cancel(Client& client)
{
    Session session;
    session.Open();
    CheckVendor("CancelUSSD", Vendor().CancelUSSD());
    session.Close();
    Report report("ussd cancel");
    report.AddHidden("cancelled", true);
    report.AddLine("The dialogue is cancelled.");
    client.Answer(report);
    return 0;
}

} // namespace

void AddUssdCommands(Client& client)
{
    CLI::App* const ussd = client.App().add_subcommand("ussd", "Unstructured supplementary service data");
    ussd->require_subcommand(1);

    const auto add = [&](const char* name, const char* help, bool request) {
        CLI::App* const sub = ussd->add_subcommand(name, help);
        const auto first = std::make_shared<std::string>();
        const auto arguments = std::make_shared<Arguments>();
        sub->add_option("TEXT", *first, "The text, in the GSM alphabet")->required();
        sub->add_option("--then", arguments->texts, "Answer the next reply with this; may be repeated")
            ->type_name("TEXT")
            ->expected(1)
            ->take_all();
        sub->add_flag("--ucs2", arguments->ucs2, "Send the texts in UCS2, for characters that the GSM alphabet lacks");
        sub->add_option("--timeout", arguments->timeout_s, "Wait for the replies for S seconds (default: 30)")
            ->type_name("S")
            ->check(CLI::Range(0.0, 1e6));
        client.RunWithModule(sub, [&client, first, arguments, name, request] {
            Arguments all = *arguments;
            all.texts.insert(all.texts.begin(), *first);
            return Dialogue(client, std::string("ussd ") + name, all).Run(request);
        });
    };
    add("send", "Send a request, and print what the network replies", true);
    add("answer", "Answer what the network has asked", false);
    client.RunWithModule(ussd->add_subcommand("cancel", "End the dialogue"), [&client] { return Cancel(client); });
}

} // namespace ctl
