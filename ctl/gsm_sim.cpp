// The commands for the SIM card: sim status, sim pin, sim puk, sim lock, sim file, sim apdu. PINs and PUKs come from
// standard input, a line each.

#include "talvek/gsm_sim.h"
#include "ctl/alphabet.h"
#include "ctl/client.h"
#include "ctl/secret.h"
#include "ctl/session.h"
#include "ctl/text.h"
#include "talvek/core.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

namespace ctl {

namespace {

using Octets = std::vector<BYTE>;

// --- PINs ------------------------------------------------------------------------------------------------------------

const char* CmeMeaning(ULONG cme_error)
{
    switch (cme_error) {
    case ORV_CME_OPERATION_NOT_ALLOWED:
        return "operation not allowed";
    case ORV_CME_SIM_PUK_REQUIRED:
        return "SIM PUK required";
    case ORV_CME_INCORRECT_PASSWORD:
        return "incorrect password";
    case ORV_CME_SIM_PUK2_REQUIRED:
        return "SIM PUK2 required";
    default:
        return "unknown";
    }
}

const char* StateName(ULONG state)
{
    switch (state) {
    case ORV_SIM_STATE_READY:
        return "ready";
    case ORV_SIM_STATE_PIN_REQUIRED:
        return "PIN required";
    case ORV_SIM_STATE_PUK_REQUIRED:
        return "PUK required";
    case ORV_SIM_STATE_PIN2_REQUIRED:
        return "PIN2 required";
    case ORV_SIM_STATE_PUK2_REQUIRED:
        return "PUK2 required";
    default:
        return "unknown";
    }
}

std::string Remark(ULONG cme_error, std::optional<ULONG> attempts_left)
{
    std::string text = " (CME error " + std::to_string(cme_error) + ": " + CmeMeaning(cme_error);
    if (attempts_left)
        text += ", " + std::to_string(*attempts_left) + (*attempts_left == 1 ? " attempt" : " attempts") + " left";
    return text + ")";
}

// The attempts that are left with a PIN or PUK; nothing where the module does not know, or is no GSM/UMTS one.
std::optional<ULONG> AttemptsLeft(ULONG kind)
{
    BYTE retries = 0;
    const ORV_RCODE code = OrvGetPinStatus(kind, &retries);
    if (code == ORV_RCODE_UNKNOWN || code == ORV_RCODE_NOT_AVAILABLE) return {};
    Check("OrvGetPinStatus", code);
    return retries;
}

// `kind` is what the attempt was made with.
void CheckPin(const char* function, ORV_RCODE code, ULONG cme_error, ULONG kind)
{
    if (code == ORV_RCODE_OK) return;
    if (cme_error == 0) throw CallFailed(function, code);
    BYTE retries = 0;
    const bool known = OrvGetPinStatus(kind, &retries) == ORV_RCODE_OK;
    throw PinRefused(function, code, cme_error, known ? std::optional<ULONG>(retries) : std::nullopt);
}

// A password in a client's record, wiped with it.
template <class Record>
struct Wiped : Record {
    Wiped() { static_cast<Record&>(*this) = Record{}; }
    ~Wiped() { explicit_bzero(static_cast<Record*>(this), sizeof(Record)); }
    Wiped(const Wiped&) = delete;
    Wiped& operator=(const Wiped&) = delete;
};

void Put(char (&field)[ORV_SIM_PASSWORD_SIZE], const Secret& secret)
{
    std::memcpy(field, secret.Text().data(), secret.Text().size()); // at most 255, behind which the field is 0
}

void AddAttempts(Report& report)
{
    const struct {
        const char *place, *label;
        ULONG kind;
    } rows[] = {{"pin1_attempts", "PIN1 attempts left", ORV_PIN_KIND_PIN1},
                {"puk1_attempts", "PUK1 attempts left", ORV_PIN_KIND_PUK1},
                {"pin2_attempts", "PIN2 attempts left", ORV_PIN_KIND_PIN2},
                {"puk2_attempts", "PUK2 attempts left", ORV_PIN_KIND_PUK2}};
    for (const auto& row : rows) {
        const std::optional<ULONG> left = AttemptsLeft(row.kind);
        report.Add(row.place, row.label, left ? Json(*left) : Json());
    }
}

void AddLock(Report& report)
{
    OrvSimLockRecord record = {};
    Check("OrvGetSimLockGobi", OrvGetSimLockGobi(&record));
    report.Add("locked", "PIN1 protection", record.bLocked != 0, record.bLocked ? "on" : "off");
}

void AddState(Report& report)
{
    ULONG state = ORV_SIM_STATE_UNKNOWN;
    Check("OrvGetSimVerifyGobi", OrvGetSimVerifyGobi(&state));
    report.Add("state", "State", state, std::to_string(state) + " (" + StateName(state) + ")");
    report.AddHidden("state_name", StateName(state));
}

int ShowStatus(Client& client, const char* command, bool state, bool attempts)
{
    Session session;
    session.Open();
    Report report(command);
    if (state) AddState(report);
    AddLock(report);
    if (attempts) AddAttempts(report);
    session.Close();
    client.Answer(report);
    return 0;
}

int Verify(Client& client)
{
    const Secret pin("PIN1");
    Session session;
    session.Open();
    Wiped<OrvSimVerifyRecord> record;
    Put(record.szPassword, pin);
    const ORV_RCODE code = OrvSetSimVerifyGobi(&record);
    CheckPin("OrvSetSimVerifyGobi", code, record.dwCmeError, ORV_PIN_KIND_PIN1);
    Report report("sim pin verify");
    AddState(report);
    session.Close();
    client.Answer(report);
    return 0;
}

int Protect(Client& client, const char* command, bool lock)
{
    const Secret pin("PIN1");
    Session session;
    session.Open();
    Wiped<OrvSimLockRecord> record;
    record.bLocked = lock;
    Put(record.szPassword, pin);
    const ORV_RCODE code = OrvSetSimLockGobi(&record);
    CheckPin("OrvSetSimLockGobi", code, record.dwCmeError, ORV_PIN_KIND_PIN1);
    Report report(command);
    AddLock(report);
    session.Close();
    client.Answer(report);
    return 0;
}

// Changes a PIN, or sets it anew with its PUK.
int SetPin(Client& client, const char* command, bool with_puk, bool pin2)
{
    const std::string digit = pin2 ? "2" : "1";
    const Secret old_password(with_puk ? "PUK" + digit : "old PIN" + digit);
    const Secret new_password("new PIN" + digit);
    Session session;
    session.Open();
    Wiped<OrvSimPasswordRecord> record;
    record.dwFacility = 1;
    record.dwPasswordType = with_puk ? (pin2 ? ORV_PASSWORD_UNBLOCK_PIN2 : ORV_PASSWORD_UNBLOCK_PIN1)
                                     : (pin2 ? ORV_PASSWORD_CHANGE_PIN2 : ORV_PASSWORD_CHANGE_PIN1);
    Put(record.szOldPassword, old_password);
    Put(record.szNewPassword, new_password);
    const ORV_RCODE code = OrvSetSimPasswordGobi(&record);
    const ULONG kind =
        with_puk ? (pin2 ? ORV_PIN_KIND_PUK2 : ORV_PIN_KIND_PUK1) : (pin2 ? ORV_PIN_KIND_PIN2 : ORV_PIN_KIND_PIN1);
    CheckPin("OrvSetSimPasswordGobi", code, record.dwCmeError, kind);
    Report report(command);
    report.Add("pin", "Set anew", "PIN" + digit);
    AddState(report);
    session.Close();
    client.Answer(report);
    return 0;
}

// --- what the card answers -------------------------------------------------------------------------------------------

// ETSI TS 102 221, 10.2.1, and 3GPP TS 51.011, 9.4.
std::string StatusMeaning(ULONG sw1, ULONG sw2)
{
    const ULONG words = sw1 << 8 | sw2;
    const auto octets = [sw2](const char* what) { return std::to_string(sw2) + what; };
    switch (words) {
    case 0x9000:
        return "done";
    case 0x9240:
    case 0x6581:
        return "memory problem";
    case 0x9400:
    case 0x6986:
        return "no file is selected";
    case 0x9402:
    case 0x6A83:
        return "no such record";
    case 0x9404:
    case 0x6A82:
        return "no such file";
    case 0x9408:
    case 0x6981:
        return "the file is organised otherwise";
    case 0x9804:
    case 0x6982:
        return "not allowed before the PIN is verified";
    case 0x9840:
    case 0x6983:
        return "blocked";
    default:
        break;
    }
    switch (sw1) {
    case 0x91:
        return "done; the card has a command of its own";
    case 0x9F:
    case 0x61:
        return octets(" octets wait");
    case 0x63:
        if (sw2 >> 4 == 0xC) return "wrong, " + std::to_string(sw2 & 15) + " attempts left";
        return "warning";
    case 0x6C:
        return "wrong length, right is " + octets("");
    case 0x67:
        return "wrong length";
    case 0x6B:
    case 0x6A:
        return "wrong parameters";
    case 0x69:
    case 0x98:
        return "not allowed";
    case 0x6D:
        return "unknown instruction";
    case 0x6E:
        return "unknown class";
    case 0x6F:
        return "error within the card";
    default:
        return "unknown";
    }
}

std::string StatusText(ULONG sw1, ULONG sw2)
{
    char words[24];
    std::snprintf(words, sizeof words, "%02X %02X", static_cast<unsigned>(sw1), static_cast<unsigned>(sw2));
    return std::string(words) + " (" + StatusMeaning(sw1, sw2) + ")";
}

struct CardAnswer {
    ULONG sw1, sw2;
    Octets data;
};

CardAnswer Take(ORV_SIM_RESPONSE& response)
{
    CardAnswer answer = {response.StatusWord1, response.StatusWord2, {}};
    if (response.pPayload) answer.data.assign(response.pPayload, response.pPayload + response.dwPayloadSize);
    OrvFreeBuffer(response.pPayload);
    return answer;
}

// The octets that a read command gives. Throws when the card refuses it.
Octets Read(ULONG command, ULONG file, ULONG p1, ULONG p2, ULONG p3)
{
    constexpr ULONG kMask = ULONG{ORV_RESTRICTED_FILE_ID} | ORV_RESTRICTED_P1 | ORV_RESTRICTED_P2 | ORV_RESTRICTED_P3;
    ORV_SIM_RESPONSE response = {};
    Check("OrvSendRestrictedSIMCmd", OrvSendRestrictedSIMCmd(command, kMask, file, p1, p2, p3, 0, nullptr, &response));
    const CardAnswer answer = Take(response);
    if (answer.sw1 != 0x90 && answer.sw1 != 0x91)
        throw ClientError("the card refuses: " + StatusText(answer.sw1, answer.sw2));
    return answer.data;
}

// --- files -----------------------------------------------------------------------------------------------------------

// Digits, the first of a pair in the low half of its octet, up to the filling.
std::string Digits(const BYTE* octets, size_t count)
{
    std::string digits;
    for (size_t i = 0; i < 2 * count; ++i) {
        const unsigned digit = i % 2 ? octets[i / 2] >> 4 : octets[i / 2] & 15u;
        if (digit == 15) break;
        digits += "0123456789*#abc"[digit];
    }
    return digits;
}

// Characters of the GSM alphabet, one an octet, or behind an octet 0x80 those of UCS2, up to the filling (3GPP
// TS 51.011, annex B, whose two other forms are not read).
std::string Name(const BYTE* octets, size_t count)
{
    constexpr ULONG kGsm = 0x0F, kUcs2 = 0x48; // data coding schemes
    const bool ucs2 = count > 0 && octets[0] == 0x80;
    const auto* const text = reinterpret_cast<const char*>(octets) + ucs2;
    size_t length = 0;
    for (const size_t width = ucs2 ? 2 : 1; length + width + ucs2 <= count; length += width)
        if (octets[length + ucs2] == 0xFF && (!ucs2 || octets[length + 2] == 0xFF)) break;
    return FromCoding(ucs2 ? kUcs2 : kGsm, {text, length}).value_or("");
}

std::string ReadIccid(const Octets& data) { return Digits(data.data(), data.size()); }

std::string ReadImsi(const Octets& data)
{
    if (data.size() < 2) return {};
    const std::string digits = Digits(data.data() + 1, std::min<size_t>(data[0], data.size() - 1));
    return digits.substr(std::min<size_t>(1, digits.size())); // the first one tells what the others are
}

std::string ReadSpn(const Octets& data) { return data.empty() ? "" : Name(data.data() + 1, data.size() - 1); }

std::string ReadSms(const Octets& data)
{
    if (data.empty()) return {};
    switch (data[0] & 7) {
    case 1:
        return "received, read";
    case 3:
        return "received, not read";
    case 5:
        return "sent";
    case 7:
        return "not sent";
    default:
        return "free";
    }
}

// 3GPP TS 51.011, 10.5.1: a name, then fourteen octets with the number.
std::string ReadNumber(const Octets& data)
{
    constexpr size_t kTail = 14;
    if (data.size() < kTail) return {};
    const BYTE* const number = data.data() + data.size() - kTail;
    const std::string name = Name(data.data(), data.size() - kTail);
    if (number[0] == 0xFF || number[0] < 2) return name.empty() ? "free" : name;
    const std::string digits = Digits(number + 2, std::min<size_t>(number[0] - 1u, 10));
    return name + (name.empty() ? "" : " ") + ((number[1] & 0x70) == 0x10 ? "+" : "") + digits;
}

std::string ReadCounter(const Octets& data)
{
    ULONG value = 0;
    for (const BYTE octet : data)
        value = value << 8 | octet;
    return data.size() > 4 ? "" : std::to_string(value);
}

struct KnownFile {
    const char* name;
    ULONG id;
    std::string (*read)(const Octets& data); // null: no reading
};

constexpr KnownFile kFiles[] = {
    {"iccid", 0x2FE2, ReadIccid}, {"imsi", 0x6F07, ReadImsi},     {"spn", 0x6F46, ReadSpn},
    {"ad", 0x6FAD, nullptr},      {"sms", 0x6F3C, ReadSms},       {"adn", 0x6F3A, ReadNumber},
    {"fdn", 0x6F3B, ReadNumber},  {"msisdn", 0x6F40, ReadNumber}, {"lnd", 0x6F44, ReadNumber},
    {"acm", 0x6F39, ReadCounter}, {"loci", 0x6F7E, nullptr},      {"smsp", 0x6F42, nullptr},
};

const KnownFile* Known(ULONG id)
{
    const auto* const found =
        std::find_if(std::begin(kFiles), std::end(kFiles), [id](auto& file) { return file.id == id; });
    return found == std::end(kFiles) ? nullptr : found;
}

// A name of the table, or four hexadecimal digits.
ULONG FileId(const std::string& text)
{
    for (const KnownFile& file : kFiles)
        if (SameName(file.name, text)) return file.id;
    ULONG id = 0;
    const bool prefixed = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    const std::string digits = prefixed ? text : "0x" + text;
    if (digits.size() == 6 && ParseNumber(digits, id)) return id;
    std::string names;
    for (const KnownFile& file : kFiles)
        names += std::string(names.empty() ? "" : ", ") + file.name;
    throw UsageError("'" + text + "' is no file: four hexadecimal digits such as 6F07, or one of " + names);
}

const char* StructureName(ULONG structure)
{
    switch (structure) {
    case ORV_SIM_FILE_TRANSPARENT:
        return "transparent";
    case ORV_SIM_FILE_LINEAR_FIXED:
        return "linear fixed";
    case ORV_SIM_FILE_CYCLIC:
        return "cyclic";
    default:
        return "unknown";
    }
}

// The whole of a transparent file, in parts that fit a command.
Octets ReadWhole(const ORV_SIM_RECORD_STATUS& file, ULONG id)
{
    constexpr ULONG kPart = 255;
    Octets data;
    while (data.size() < file.uFileSize) {
        const ULONG offset = static_cast<ULONG>(data.size());
        const ULONG length = std::min(kPart, file.uFileSize - offset);
        const Octets part = Read(ORV_RESTRICTED_READ_BINARY, id, offset >> 8, offset & 0xFF, length);
        if (part.empty()) throw ClientError("the card gives no more than " + std::to_string(offset) + " octets");
        data.insert(data.end(), part.begin(), part.end());
    }
    return data;
}

// What a content says, or null.
Json Reading(const KnownFile* known, const Octets& data)
{
    return known && known->read ? Json(known->read(data)) : Json();
}

int ReadFile(Client& client, const std::string& name, std::optional<ULONG> only)
{
    const ULONG id = FileId(name);
    const KnownFile* const known = Known(id);
    Session session;
    session.Open();
    ORV_SIM_RECORD_STATUS file = {};
    const ORV_RCODE code = OrvGetSIMRecordStatus(id, &file);
    if (code != ORV_RCODE_OK && file.SW1 != 0)
        throw CallFailed("OrvGetSIMRecordStatus", code, {}, ": the card answers " + StatusText(file.SW1, file.SW2));
    Check("OrvGetSIMRecordStatus", code);
    const bool has_records = file.eStructure != ORV_SIM_FILE_TRANSPARENT;
    if (only && !has_records) throw UsageError("the file has no records");
    if (only && *only > file.uRecordCount)
        throw UsageError("the file has " + std::to_string(file.uRecordCount) + " records");

    Report report("sim file read");
    report.Add("file", "File", file.uFileId,
               HexNumber(file.uFileId, 4) + (known ? std::string(" (") + known->name + ")" : ""));
    report.AddHidden("name", known ? Json(known->name) : Json());
    report.Add("structure", "Structure", StructureName(file.eStructure));
    report.Add("size", "Size", file.uFileSize, std::to_string(file.uFileSize) + " octets");
    if (has_records) {
        report.Add("record_size", "Record size", file.uRecordSize, std::to_string(file.uRecordSize) + " octets");
        report.Add("record_count", "Records", file.uRecordCount);
        constexpr ULONG kAbsolute = 4;
        Json records = Json::array();
        for (ULONG number = only.value_or(1); number <= only.value_or(file.uRecordCount); ++number) {
            const Octets data = Read(ORV_RESTRICTED_READ_RECORD, id, number, kAbsolute, file.uRecordSize & 0xFF);
            const Json reading = Reading(known, data);
            const std::string hex = Hex(data.data(), data.size());
            records.push_back({{"record", number}, {"data", hex}, {"reading", reading}});
            // What is free is all filling.
            const bool free = !only && reading == "free";
            report.AddText(std::to_string(number), free ? "free" : hex);
            if (!free && !reading.is_null()) report.AddText("", PlainText(reading));
        }
        report.AddHidden("records", std::move(records));
    } else {
        const Octets data = ReadWhole(file, id);
        report.Add("data", "Data", Hex(data.data(), data.size()));
        report.Add("reading", "Reading", Reading(known, data));
    }
    session.Close();
    client.Answer(report);
    return 0;
}

// --- generic commands ------------------------------------------------------------------------------------------------

Octets FromHex(const std::string& text)
{
    Octets octets;
    ULONG octet = 0;
    for (size_t i = 0; i + 1 < text.size() && ParseNumber("0x" + text.substr(i, 2), octet); i += 2)
        octets.push_back(static_cast<BYTE>(octet));
    if (octets.empty() || 2 * octets.size() != text.size())
        throw UsageError("'" + text + "' is no command: two hexadecimal digits an octet, such as A0A40000023F00");
    return octets;
}

int SendApdu(Client& client, const std::string& text)
{
    const Octets octets = FromHex(text);
    Session session;
    session.Open();
    ORV_SIM_GENERIC_REQUEST request = {};
    request.sizeStruct = sizeof request;
    request.dwPayloadSize = static_cast<ULONG>(octets.size());
    request.pPayload = octets.data();
    ORV_SIM_RESPONSE response = {};
    Check("OrvSendGenericSimCommand", OrvSendGenericSimCommand(request, &response));
    const CardAnswer answer = Take(response);
    session.Close();
    Report report("sim apdu");
    report.Add("data", "Data", answer.data.empty() ? Json() : Json(Hex(answer.data.data(), answer.data.size())));
    report.Add("sw1", "Status", answer.sw1, StatusText(answer.sw1, answer.sw2));
    report.AddHidden("sw2", answer.sw2);
    report.AddHidden("meaning", StatusMeaning(answer.sw1, answer.sw2));
    client.Answer(report);
    return 0;
}

} // namespace

PinRefused::PinRefused(const char* function, ORV_RCODE code, ULONG cme_error, std::optional<ULONG> attempts_left)
    : CallFailed(function, code, {}, Remark(cme_error, attempts_left)), m_cme_error(cme_error),
      m_attempts_left(attempts_left)
{
}

void AddGsmSimCommands(Client& client)
{
    constexpr const char* kGroup = "The SIM card";
    CLI::App* const sim = client.App().get_subcommand("sim");
    const auto add = [&client](CLI::App* parent, const char* name, const char* help, const Client::Body& body) {
        CLI::App* const sub = parent->add_subcommand(name, help);
        client.RunWithModule(sub, body);
        return sub;
    };
    const auto add_group = [sim](const char* name, const char* help) {
        CLI::App* const group = sim->add_subcommand(name, help)->group(kGroup);
        group->require_subcommand(1);
        return group;
    };

    add(sim, "status", "Show what the card waits for, its protection and the attempts that are left", [&client] {
        return ShowStatus(client, "sim status", true, true);
    })->group(kGroup);

    CLI::App* const pin = add_group("pin", "PINs, read from standard input");
    add(pin, "status", "Show the protection and the attempts that are left",
        [&client] { return ShowStatus(client, "sim pin status", false, true); });
    add(pin, "verify", "Verify PIN1", [&client] { return Verify(client); });
    add(pin, "enable", "Switch the protection by PIN1 on",
        [&client] { return Protect(client, "sim pin enable", true); });
    add(pin, "disable", "Switch the protection by PIN1 off",
        [&client] { return Protect(client, "sim pin disable", false); });
    const auto change_pin2 = std::make_shared<bool>(false);
    add(pin, "change", "Change PIN1: the old one and the new one, a line each", [&client, change_pin2] {
        return SetPin(client, "sim pin change", false, *change_pin2);
    })->add_flag("--pin2", *change_pin2, "PIN2 instead");

    const auto unblock_pin2 = std::make_shared<bool>(false);
    CLI::App* const puk = add(sim, "puk", "Set PIN1 anew: PUK1 and the new PIN from standard input, a line each",
                              [&client, unblock_pin2] { return SetPin(client, "sim puk", true, *unblock_pin2); });
    puk->group(kGroup)->add_flag("--pin2", *unblock_pin2, "PIN2 with PUK2 instead");

    add(sim, "lock", "Show whether PIN1 protects the card", [&client] {
        return ShowStatus(client, "sim lock", false, false);
    })->group(kGroup);

    CLI::App* const file = add_group("file", "Files of the card");
    const auto id = std::make_shared<std::string>();
    const auto record = std::make_shared<std::optional<ULONG>>();
    CLI::App* const read = add(file, "read", "Read an elementary file: what it holds, and what that says",
                               [&client, id, record] { return ReadFile(client, *id, *record); });
    read->add_option(
            "ID", *id,
            "Four hexadecimal digits (6F07), or iccid, imsi, spn, ad, sms, adn, fdn, msisdn, lnd, acm, loci, smsp")
        ->required();
    read->add_option("--record", *record, "This record alone (default: all)")
        ->type_name("N")
        ->check(CLI::Range(1, 255));

    const auto apdu = std::make_shared<std::string>();
    add(sim, "apdu", "Send the card any command, and print what it answers (not for PINs: it is logged)",
        [&client, apdu] { return SendApdu(client, *apdu); })
        ->group(kGroup)
        ->add_option("HEX", *apdu, "The command: class, instruction, P1, P2, P3 and data")
        ->required();
}

} // namespace ctl
