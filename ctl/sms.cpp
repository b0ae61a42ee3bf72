// The commands for the text messages of a module: sms list, sms read, sms send, sms watch, sms smsc.

#include "ctl/listen.h"
#include "ctl/message.h"
#include "ctl/session.h"
#include "ctl/text.h"
#include "ctl/vendor.h"

#include <array>
#include <deque>
#include <utility>

namespace ctl {

namespace {

bool IsCdma(const Session& session) { return session.Info().eTechnology == ORV_TECH_CDMA; }

// What a function of the interface failed with.
struct Failure {
    const char* function;
    ORV_RCODE code;
};

// --- sms list --------------------------------------------------------------------------------------------------------

// Messages with this tag in a store; null where the store cannot be read.
Json Count(ULONG storage, ULONG tag)
{
    std::array<GobiSMSListEntry, GOBI_MAX_LISTED_SMS> entries = {};
    ULONG count = static_cast<ULONG>(entries.size());
    const ULONG status = Vendor().GetSMSList(storage, &tag, &count, reinterpret_cast<BYTE*>(entries.data()));
    return status == 0 ? Json(count) : Json();
}

int List(Client& client)
{
    constexpr std::pair<const char*, const char*> kStores[] = {{"card", "card"}, {"module", "module"}};
    constexpr std::pair<const char*, const char*> kTags[] = {
        {"read", "read"}, {"unread", "not read"}, {"unsent", "not sent"}, {"sent", "sent"}}; // from 0 on
    Session session;
    session.Open();
    Report report("sms list");
    for (ULONG storage = 0; storage < std::size(kStores); ++storage) {
        const auto& [place, label] = kStores[storage];
        std::string line;
        bool readable = true;
        for (ULONG tag = 0; tag < std::size(kTags); ++tag) {
            const Json count = Count(storage, tag);
            report.AddHidden(std::string(place) + "." + kTags[tag].first, count);
            readable = readable && !count.is_null();
            line += (line.empty() ? "" : ", ") + PlainText(count) + " " + kTags[tag].second;
        }
        report.Add(std::string(place) + ".readable", label, readable, readable ? line : "cannot be read");
    }
    session.Close();
    client.Answer(report);
    return 0;
}

// --- sms read --------------------------------------------------------------------------------------------------------

ULONG UnreadCount(bool cdma)
{
    if (cdma) {
        ORV_CDMA_SMS_STATUS status = {};
        Check("OrvGetCdmaSMSMessageStatus", OrvGetCdmaSMSMessageStatus(&status));
        return status.uUnreadCount;
    }
    ORV_GSM_SMS_STATUS status = {};
    Check("OrvGetSMSMessageStatus", OrvGetSMSMessageStatus(&status));
    return status.uUnreadCount;
}

// Takes unread messages out of the module, one at a time.
class Reader {
public:
    // `listening`: somebody else takes the events.
    Reader(bool cdma, bool listening) : m_cdma(cdma), m_listening(listening) {}

    // The next message. Nothing when there is none, and after a failure, which `failure` then has.
    std::optional<Report> Next(std::optional<Failure>& failure) const { return m_cdma ? Cdma(failure) : Gsm(failure); }
    ULONG Unread() const { return UnreadCount(m_cdma); }

private:
    static std::optional<Report> Gsm(std::optional<Failure>& failure)
    {
        ORV_GSM_SMS_IN record = {};
        if (const ORV_RCODE code = OrvRetrieveSMSMessageGobi(&record)) failure = {"OrvRetrieveSMSMessageGobi", code};
        if (failure || record.uMsgPresent == 0) return std::nullopt;
        Report report("");
        AddGsmMessage(report, record);
        return report;
    }
    // An indication that messages wait leaves the record: it comes as notification 2020 while the function runs.
    std::optional<Report> Cdma(std::optional<Failure>& failure) const
    {
        EventQueue& queue = EventQueue::Get();
        if (!m_listening) queue.Register();
        while (const ULONG before = Unread()) {
            ReceivedCdmaSms record;
            if (const ORV_RCODE code = OrvRetrieveCdmaSMSMessage(&record))
                failure = {"OrvRetrieveCdmaSMSMessage", code};
            Report report("");
            if (!failure && record.uParamMask != 0) {
                AddCdmaMessage(report, record);
                return report;
            }
            if (failure || Unread() >= before) break;
            Arrival arrival;
            if (m_listening || queue.Wait(arrival, EventQueue::Clock::now()) != EventQueue::Woken::ByEvent) continue;
            report.Add("waiting_indication", "messages waiting elsewhere", arrival.record.payload.VoiceMail.nWaiting);
            return report;
        }
        return std::nullopt;
    }

    bool m_cdma, m_listening;
};

Json ToResult(const Report& message) { return message.ToJson()["result"]; }

int Read(Client& client, bool all)
{
    Session session;
    session.Open();
    const Reader reader(IsCdma(session), false);
    Report report("sms read");
    Json messages = Json::array();
    std::optional<Failure> failure;
    while (all || messages.empty()) {
        const std::optional<Report> message = reader.Next(failure);
        if (!message) break;
        messages.push_back(ToResult(*message));
        if (!client.Json()) PrintLine(message->ToText() + "\n"); // it is in the module no longer
    }
    if (failure && messages.empty()) Check(failure->function, failure->code);
    report.AddHidden("messages", messages);
    if (messages.empty()) report.AddLine("There is no unread message.");
    if (failure)
        report.AddLine(std::string("Reading ended: ") + failure->function + " gave " + std::to_string(failure->code) +
                       ".");
    report.AddHidden("failure", failure ? Json({{"function", failure->function}, {"code", failure->code}}) : Json());
    report.Add("unread_left", "still unread in the module", reader.Unread());
    session.Close();
    client.Answer(report);
    return 0;
}

int Watch(Client& client, ListenOptions options)
{
    options.command = "sms watch";
    options.wanted = {ORV_NOTIFY_NewSMS, ORV_NOTIFY_VoiceMail};
    const auto cdma = std::make_shared<bool>();
    options.selected = [cdma](const Session& session) { *cdma = IsCdma(session); };
    const auto print_all = [&client, cdma] {
        std::optional<Failure> failure;
        const Reader reader(*cdma, true);
        reader.Unread(); // on GSM/UMTS, this has messages stored and told
        while (const std::optional<Report> message = reader.Next(failure)) {
            if (client.Json())
                PrintJson({{"message", ToResult(*message)}});
            else
                PrintLine(message->ToText() + "\n");
        }
        if (failure && !client.Json())
            PrintLine(std::string("(a message cannot be read: ") + failure->function + " gave " +
                      std::to_string(failure->code) + ")");
    };
    options.begin = [print_all] {
        print_all();
        return true;
    };
    options.print = [&client, print_all](const Arrival& arrival) {
        if (arrival.record.uNotify == ORV_NOTIFY_VoiceMail)
            PrintArrival(client, arrival);
        else
            print_all();
    };
    return Listen(client, options);
}

// --- sms send --------------------------------------------------------------------------------------------------------

struct Outgoing {
    std::string number, text;
    bool ucs2 = false;
    ULONG reference = 0;
    double timeout_s = 30;
};

// The parts of a message, each sent when the outcome of the one before it is known.
class Sending {
public:
    Sending(Client& client, Outgoing message) : m_client(client), m_message(std::move(message)) {}

    int Run();

private:
    // Stores and sends the next part.
    void Send();
    void StoreGsm();
    void StoreCdma();
    // Returns whether it was the outcome of the last part.
    bool TakeOutcome(const OrvSMSSendStatusPayload& outcome);

    Client& m_client;
    Outgoing m_message;
    bool m_cdma = false;
    ULONG m_sent = 0, m_count = 1;
    ORV_RCODE m_code = ORV_RCODE_OK; // of the part that is on its way
};

void Sending::StoreGsm()
{
    ORV_SMS_OPTIONS options = ORV_SMS_OPTIONS_DEFAULT;
    options.bUcs2 = m_message.ucs2;
    options.uReference = m_message.reference;
    ORV_GSM_SMS_OUT record = {};
    CheckText("OrvGsmSmsPart",
              OrvGsmSmsPart(m_message.number.c_str(), m_message.text.data(), static_cast<ULONG>(m_message.text.size()),
                            &options, m_sent, &record, &m_count),
              "the text is too long: it needs more than 255 parts");
    Check("OrvStoreSMSMessageGobi", OrvStoreSMSMessageGobi(&record));
}

void Sending::StoreCdma()
{
    BYTE data[ORV_CDMA_SMS_MAX_USER_DATA];
    ORV_CDMA_SMS_SEND record = CdmaSmsFromText(m_message.number, m_message.text, data);
    record.uMsgId = static_cast<WORD>(m_message.reference);
    Check("OrvStoreCdmaSMSMessage", OrvStoreCdmaSMSMessage(&record));
}

void Sending::Send()
{
    if (m_cdma) {
        StoreCdma();
        m_code = OrvSendCdmaSMS();
    } else {
        StoreGsm();
        m_code = OrvSendSMS();
    }
}

bool Sending::TakeOutcome(const OrvSMSSendStatusPayload& outcome)
{
    if (outcome.uStatus != 0) {
        Check(m_cdma ? "OrvSendCdmaSMS" : "OrvSendSMS", m_code);
        throw ClientError("the message was not sent: status " + std::to_string(outcome.uStatus));
    }
    ++m_sent;
    if (!m_client.Json())
        PrintLine(m_count == 1 ? "The message was sent."
                               : "Part " + std::to_string(m_sent) + " of " + std::to_string(m_count) + " was sent.");
    if (m_sent == m_count) return true;
    Send();
    return false;
}

int Sending::Run()
{
    ListenOptions options;
    options.command = "sms send";
    options.wanted = {ORV_NOTIFY_SMSSendStatus};
    options.timeout = std::chrono::milliseconds(static_cast<long long>(m_message.timeout_s * 1000));
    options.selected = [this](const Session& session) { m_cdma = IsCdma(session); };
    options.begin = [this] {
        if (!m_cdma) CheckNumber(m_message.number, "the destination");
        Send();
        return true;
    };
    options.print = [](const Arrival&) {}; // TakeOutcome prints
    options.awaited = "the outcome of the sending";
    options.last = [this](const OrvNotifyRecord& record) { return TakeOutcome(record.payload.SMSSendStatus); };
    options.report = [this](Report& report) {
        report.AddHidden("number", m_message.number);
        report.AddHidden("parts", m_count);
        report.AddHidden("parts_sent", m_sent);
        report.AddHidden("sent", m_sent == m_count); // false: interrupted
    };
    return Listen(m_client, options);
}

// --- sms smsc --------------------------------------------------------------------------------------------------------

int Smsc(Client& client, const std::string& given, bool national)
{
    constexpr BYTE kNotWritten = 0xFF;
    Session session;
    session.Open();
    if (!given.empty()) Check("OrvSetGsmSMSCAddr", OrvSetGsmSMSCAddr(given.c_str(), national ? 0 : 1));
    char address[64] = {};
    BYTE international = kNotWritten;
    Check("OrvGetGsmSMSCAddr", OrvGetGsmSMSCAddr(sizeof address, address, &international));
    session.Close();
    Report report("sms smsc");
    report.AddHidden("action", given.empty() ? "get" : "set");
    const bool known = international != kNotWritten; // else the answer is the library's substitute
    report.Add("address", "service centre", known ? Json(Utf8(address, sizeof address)) : Json(),
               known ? Utf8(address, sizeof address) : "the module does not tell");
    report.Add("international", "international", known ? Json(international != 0) : Json());
    client.Answer(report);
    return 0;
}

} // namespace

void AddSmsCommands(Client& client)
{
    CLI::App* const sms = client.App().add_subcommand("sms", "Text messages");
    sms->require_subcommand(1);
    client.RunWithModule(sms->add_subcommand("list", "Count the messages of the card and of the module, by status"),
                         [&client] { return List(client); });

    CLI::App* const read = sms->add_subcommand("read", "Print the next unread message, and remove it from the module");
    const auto all = std::make_shared<bool>(false);
    read->add_flag("--all", *all, "Every unread message");
    read->footer("A message that cannot be decoded stays in the module, unread.");
    client.RunWithModule(read, [&client, all] { return Read(client, *all); });

    CLI::App* const watch =
        sms->add_subcommand("watch", "Print messages as they come, and remove them from the module");
    watch->footer("It begins with the messages that are unread already, and ends with Ctrl-C.");
    client.Run(watch, [&client, given = AddListenOptions(watch)] {
        ListenOptions options = given();
        options.ends_with_cause = options.cause && !options.count && !options.timeout;
        return Watch(client, std::move(options));
    });

    CLI::App* const send = sms->add_subcommand("send", "Send a message, and wait for the outcome");
    const auto message = std::make_shared<Outgoing>();
    send->add_option("NUMBER", message->number, "The receiver; \"+\" before an international number on GSM/UMTS")
        ->required();
    send->add_option("TEXT", message->text, "The text")->required();
    send->add_flag("--ucs2", message->ucs2, "On GSM/UMTS, use UCS2 even where the GSM alphabet does");
    send->add_option("--reference", message->reference,
                     "The reference of a long message's parts, on CDMA the message identifier (default: 0)")
        ->type_name("N")
        ->check(CLI::Range(0, 255));
    send->add_option("--timeout", message->timeout_s, "Wait for the outcome for S seconds (default: 30)")
        ->type_name("S")
        ->check(CLI::Range(0.0, 1e6));
    send->footer("A text that does not fit into one message goes as several parts on GSM/UMTS; CDMA has none.");
    client.RunWithModule(send, [&client, message] { return Sending(client, *message).Run(); });

    CLI::App* const smsc = sms->add_subcommand("smsc", "Show or set the service centre's address (GSM/UMTS)");
    const auto address = std::make_shared<std::string>();
    const auto national = std::make_shared<bool>(false);
    CLI::Option* const given = smsc->add_option("ADDRESS", *address, "The new address");
    smsc->add_flag("--national", *national, "It is no international number")->needs(given);
    client.RunWithModule(smsc, [&client, address, national] { return Smsc(client, *address, *national); });
}

} // namespace ctl
