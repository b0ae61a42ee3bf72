// The files of the card. Those of the subscription and of the text messages show what the rest of the module keeps.
#include "sim/sim_files.h"

#include <string.h>

#include <iterator>

#include "sim/fields.h"
#include "sim/reset.h"

namespace sim {

static constexpr Field kFields[] = {
    OctetsField("file.spn", g_module.sim_files.spn), OctetsField("file.ad", g_module.sim_files.ad),
    OctetsField("file.acm", g_module.sim_files.acm), OctetsField("file.adn", g_module.sim_files.adn),
    OctetsField("file.lnd", g_module.sim_files.lnd),
};
const FieldTable kSimFileFields = {kFields, std::size(kFields)};

// --- the tree
// ---------------------------------------------------------------------------------------------------------

constexpr WORD kMaster = 0x3F00, kTelecom = 0x7F10, kGsm = 0x7F20, kApplication = 0x7FFF;

// The directories that a file stands in. The GSM directory and the application's have the same files.
constexpr BYTE kInMaster = 1, kInTelecom = 2, kInApplication = 4;

// Who may, as 3GPP TS 51.011 numbers it.
enum class Access : BYTE { Always = 0, Pin1 = 1, Pin2 = 2, Administrator = 4 };

enum class Structure : BYTE { Transparent = 0, LinearFixed = 1, Cyclic = 3 }; // likewise

struct File {
    WORD id;
    BYTE places;
    Structure structure;
    BYTE record_size;
    Access read, update;
    Octets<kFileRoom>* kept; // null: shows what is kept elsewhere
};

constexpr WORD kIccid = 0x2FE2, kImsi = 0x6F07, kSms = 0x6F3C;
constexpr ULONG kIccidSize = 10, kImsiSize = 9, kSmsSize = 176, kDialSize = 32, kAcmSize = 3;

static constexpr File kFiles[] = {
    {kIccid, kInMaster, Structure::Transparent, 0, Access::Always, Access::Administrator, nullptr},
    {kImsi, kInApplication, Structure::Transparent, 0, Access::Pin1, Access::Administrator, nullptr},
    {0x6F46, kInApplication, Structure::Transparent, 0, Access::Always, Access::Administrator, &g_module.sim_files.spn},
    {0x6FAD, kInApplication, Structure::Transparent, 0, Access::Always, Access::Administrator, &g_module.sim_files.ad},
    {0x6F39, kInApplication, Structure::Cyclic, kAcmSize, Access::Pin1, Access::Pin2, &g_module.sim_files.acm},
    {0x6F3A, kInTelecom, Structure::LinearFixed, kDialSize, Access::Pin1, Access::Pin1, &g_module.sim_files.adn},
    {kSms, kInTelecom | kInApplication, Structure::LinearFixed, kSmsSize, Access::Pin1, Access::Pin1, nullptr},
    {0x6F44, kInTelecom, Structure::Cyclic, kDialSize, Access::Pin1, Access::Pin1, &g_module.sim_files.lnd},
};

static const File* FindFile(WORD id, BYTE places)
{
    for (const File& file : kFiles) {
        if (file.id == id && (file.places & places)) return &file;
    }
    return nullptr;
}

constexpr BYTE kSimApplication = 1; // of UimState
static bool IsUicc() { return TheModule().uim.application != kSimApplication; }

static bool IsDirectory(WORD id)
{
    return id == kMaster || id == kTelecom || id == kGsm || (id == kApplication && IsUicc());
}
static BYTE PlaceOf(WORD directory)
{
    return directory == kMaster ? kInMaster : directory == kTelecom ? kInTelecom : kInApplication;
}

void ResetSimFiles()
{
    SimFilesState& files = TheModule().sim_files;
    memset(&files, 0, sizeof(files));
    // The name is shown with that of the network (3GPP TS 51.011, 10.3.11).
    constexpr char kName[] = "Test Network";
    files.spn.count = 17;
    memset(files.spn.octets, 0xFF, files.spn.count);
    files.spn.octets[0] = 1;
    memcpy(files.spn.octets + 1, kName, sizeof(kName) - 1);
    files.ad = {4, {0, 0, 0, 2}}; // network codes of two digits
    files.acm.count = 3 * kAcmSize;
    files.adn.count = 10 * kDialSize;
    memset(files.adn.octets, 0xFF, files.adn.count);
    constexpr BYTE kNumber[] = {7, 0x91, 0x21, 0x20, 0x55, 0x05, 0x01, 0xF0}; // +12025550100
    memcpy(files.adn.octets, "Operator", 8);
    memcpy(files.adn.octets + kDialSize - 14, kNumber, sizeof(kNumber));
    files.lnd.count = 5 * kDialSize;
    memset(files.lnd.octets, 0xFF, files.lnd.count);
    RestartSimFiles();
}

void RestartSimFiles() { TheModule().sim_files.selection = {kMaster, 0, 0, {}}; }

// --- contents
// ---------------------------------------------------------------------------------------------------------

// Digits, the first of a pair in the low half of its octet; what is left of the room is filled up.
static void PutDigits(BYTE* out, ULONG room, const char* digits)
{
    memset(out, 0xFF, room);
    for (ULONG i = 0; digits[i] && i < 2 * room; ++i) {
        const BYTE digit = static_cast<BYTE>(digits[i] - '0') & 15;
        out[i / 2] = i % 2 ? static_cast<BYTE>((out[i / 2] & 0x0F) | digit << 4) : static_cast<BYTE>(0xF0 | digit);
    }
}

// 3GPP TS 51.011, 10.3.2: a length, then the digits, whose first half octet tells whether their number is odd.
static void PutImsi(BYTE* out, const char* imsi)
{
    const ULONG length = BoundedLength(imsi, 15);
    Text<17> digits = {};
    Writer(digits).Character(length % 2 ? '9' : '1').Add(imsi);
    PutDigits(out + 1, kImsiSize - 1, digits);
    out[0] = length > 0 ? static_cast<BYTE>(length / 2 + 1) : 0xFF;
}

// The status octet of a message (3GPP TS 51.011, 10.5.3) by its tag.
constexpr BYTE kSmsStatus[] = {1, 3, 7, 5};
constexpr ULONG kGsmFormat = 6;

static void PutMessage(BYTE* out, const StoredSms& message)
{
    memset(out, 0xFF, kSmsSize);
    out[0] = 0;
    if (!message.used) return;
    out[0] = message.tag < std::size(kSmsStatus) ? kSmsStatus[message.tag] : kSmsStatus[0];
    memcpy(out + 1, message.octets, message.size < kSmsSize ? message.size : kSmsSize - 1);
}

static void TakeMessage(StoredSms& message, const BYTE* record)
{
    message = {};
    message.used = (record[0] & 1) != 0;
    if (!message.used) return;
    for (ULONG tag = 0; tag < std::size(kSmsStatus); ++tag) {
        if (kSmsStatus[tag] == (record[0] & 7)) message.tag = tag;
    }
    message.format = kGsmFormat;
    ULONG size = kSmsSize - 1;
    while (size > 0 && record[size] == 0xFF) // the message does not tell where it ends, but the filling does
        --size;
    message.size = static_cast<WORD>(size);
    memcpy(message.octets, record + 1, size);
}

// Of a transparent file the whole is one record.
static ULONG RecordSize(const File& file)
{
    if (file.structure != Structure::Transparent) return file.record_size;
    return file.kept ? file.kept->count : file.id == kIccid ? kIccidSize : kImsiSize;
}

static ULONG RecordCount(const File& file)
{
    if (file.structure == Structure::Transparent) return 1;
    if (file.kept) return file.kept->count / file.record_size;
    const ULONG capacity = TheModule().sms.capacity[0];
    return capacity < 254 ? capacity : 254;
}

// Where a record of a kept file begins.
static BYTE* KeptRecord(const File& file, ULONG index) { return file.kept->octets + size_t{index} * RecordSize(file); }

static void Load(const File& file, ULONG index, BYTE (&out)[kFileRoom])
{
    if (file.kept)
        memcpy(out, KeptRecord(file, index), RecordSize(file));
    else if (file.id == kIccid)
        PutDigits(out, kIccidSize, TheModule().uim.iccid);
    else if (file.id == kImsi)
        PutImsi(out, TheModule().subscriber.imsi);
    else
        PutMessage(out, TheModule().sms.messages[0][index]);
}

// Nobody may write what is shown from elsewhere, the messages aside.
static void Store(const File& file, ULONG index, const BYTE* octets)
{
    if (file.kept)
        memcpy(KeptRecord(file, index), octets, RecordSize(file));
    else if (file.id == kSms)
        TakeMessage(TheModule().sms.messages[0][index], octets);
}

// The new record of a cyclic file becomes the first one, in place of the oldest.
static void StoreNewest(const File& file, const BYTE* octets)
{
    for (ULONG index = RecordCount(file) - 1; index > 0; --index)
        memcpy(KeptRecord(file, index), KeptRecord(file, index - 1), RecordSize(file));
    Store(file, 0, octets);
}

// --- what a selection tells
// -------------------------------------------------------------------------------------------

static bool Fulfilled(const PinState& pin) { return pin.attempts > 0 && (pin.verified || !pin.enabled); }

static bool May(Access access)
{
    if (access == Access::Pin1) return Fulfilled(TheModule().uim.pins[0]);
    if (access == Access::Pin2) return Fulfilled(TheModule().uim.pins[1]);
    return access == Access::Always;
}

class OctetWriter {
public:
    explicit OctetWriter(Octets<64>& out) : m_out(out) { out.count = 0; }
    OctetWriter& Add(ULONG octet)
    {
        m_out.octets[m_out.count++] = static_cast<BYTE>(octet); // what is written here has its room
        return *this;
    }
    OctetWriter& Word(ULONG word) { return Add(word >> 8).Add(word); }

private:
    Octets<64>& m_out;
};

// ETSI TS 102 221, 11.1.1.4: the template of file control parameters.
static void DescribeForUicc(WORD directory, const File* file, Octets<64>& out)
{
    OctetWriter writer(out);
    writer.Add(0x62).Add(0); // the length follows
    if (file) {
        const bool records = file->structure != Structure::Transparent;
        constexpr BYTE kShareable = 0x40;
        const BYTE structure = !records ? 1 : file->structure == Structure::LinearFixed ? 2 : 6;
        writer.Add(0x82).Add(records ? 5 : 2).Add(kShareable | structure).Add(0x21);
        if (records) writer.Word(file->record_size).Add(RecordCount(*file));
        writer.Add(0x83).Add(2).Word(file->id);
    } else {
        writer.Add(0x82).Add(2).Add(0x78).Add(0x21);
        if (directory == kApplication) {
            const auto& aid = TheModule().uim.aid;
            writer.Add(0x84).Add(aid.count);
            for (ULONG i = 0; i < aid.count; ++i)
                writer.Add(aid.octets[i]);
        } else {
            writer.Add(0x83).Add(2).Word(directory);
        }
    }
    writer.Add(0x8A).Add(1).Add(5);                         // activated
    writer.Add(0x8B).Add(3).Word(0x2F06).Add(file ? 2 : 1); // where the access rules stand
    if (file) {
        writer.Add(0x80).Add(2).Word(RecordSize(*file) * RecordCount(*file));
    } else {
        const auto& pins = TheModule().uim.pins;
        writer.Add(0xC6).Add(9).Add(0x90).Add(1).Add((pins[0].enabled ? 0x80u : 0u) | (pins[1].enabled ? 0x40u : 0u));
        writer.Add(0x83).Add(1).Add(0x01).Add(0x83).Add(1).Add(0x81);
    }
    out.octets[1] = static_cast<BYTE>(out.count - 2);
}

// The state of a PIN or PUK in 3GPP TS 51.011, 9.2.1.
static ULONG PinOctet(ULONG attempts) { return 0x80 | (attempts < 15 ? attempts : 15); }

static void DescribeForSim(WORD directory, const File* file, Octets<64>& out)
{
    OctetWriter writer(out);
    writer.Word(0);
    if (file) {
        const auto access = [](Access who) { return static_cast<ULONG>(who); };
        writer.Word(RecordSize(*file) * RecordCount(*file)).Word(file->id).Add(4).Add(0);
        writer.Add(access(file->read) << 4 | access(file->update)).Add(0).Add(0x44).Add(1).Add(2);
        writer.Add(static_cast<ULONG>(file->structure)).Add(file->record_size);
        return;
    }
    const auto& pins = TheModule().uim.pins;
    ULONG files = 0;
    for (const File& one : kFiles)
        files += (one.places & PlaceOf(directory)) != 0;
    writer.Word(0x1000).Word(directory).Add(directory == kMaster ? 1 : 2);
    writer.Word(0).Word(0).Add(0).Add(10); // ten octets follow
    writer.Add(pins[0].enabled ? 0x13 : 0x93).Add(directory == kMaster ? 2 : 0).Add(files).Add(4).Add(0);
    for (const PinState& pin : pins)
        writer.Add(PinOctet(pin.attempts)).Add(PinOctet(pin.puk_attempts));
    writer.Add(0);
}

// --- commands
// ---------------------------------------------------------------------------------------------------------

// The status words of 3GPP TS 51.011, 9.4, and of ETSI TS 102 221, 10.2.1, for the same thing.
struct StatusWords {
    WORD sim, uicc;
};
constexpr StatusWords kDone = {0x9000, 0x9000};
constexpr StatusWords kNoSuchFile = {0x9404, 0x6A82};
constexpr StatusWords kNothingSelected = {0x9400, 0x6986};
constexpr StatusWords kOtherStructure = {0x9408, 0x6981};
constexpr StatusWords kNoSuchRecord = {0x9402, 0x6A83};
constexpr StatusWords kSecurity = {0x9804, 0x6982};
constexpr StatusWords kWrongAddress = {0x6B00, 0x6B00};
constexpr StatusWords kWrongMode = {0x6B00, 0x6A86};
constexpr StatusWords kWrongData = {0x6700, 0x6700};
constexpr StatusWords kOtherLength = {0x6700, 0x6C00}; // the second octet tells which one is right
constexpr StatusWords kNothingWaits = {0x6F00, 0x6985};
constexpr StatusWords kMoreWaits = {0x9F00, 0x6100}; // the second octet tells how much
constexpr StatusWords kNoSuchInstruction = {0x6D00, 0x6D00};
constexpr StatusWords kNoSuchClass = {0x6E00, 0x6E00};

class SimSession {
public:
    SimSession(bool uicc, SimSelection& selection, SimAnswer& answer)
        : m_uicc(uicc), m_selection(selection), m_answer(answer)
    {
        answer.size = 0;
    }

    void Finish(StatusWords words, ULONG second = 0)
    {
        m_answer.status = static_cast<WORD>((m_uicc ? words.uicc : words.sim) | (second & 0xFF));
    }

    void Run(const SimCommand& command)
    {
        const Octets<64> waiting = m_selection.response;
        m_selection.response.count = 0; // for the next command alone
        switch (command.instruction) {
        case kSelect:
            return Select(command);
        case kGetResponse:
            return waiting.count > 0 ? Give(waiting.octets, waiting.count, command.p3) : Finish(kNothingWaits);
        case kCardStatus:
            return Status(command);
        case kReadBinary:
        case kUpdateBinary:
            return Binary(command);
        case kReadRecord:
        case kUpdateRecord:
            return Record(command);
        default:
            return Finish(kNoSuchInstruction);
        }
    }

    void Describe(Octets<64>& out) const
    {
        const File* file = m_selection.file ? FindFile(m_selection.file, 0xFF) : nullptr;
        (m_uicc ? DescribeForUicc : DescribeForSim)(m_selection.directory, file, out);
    }

private:
    // As many octets as are asked for; 0 stands for all on a UICC, and for 256 on a SIM.
    void Give(const BYTE* octets, ULONG available, BYTE p3)
    {
        if (available > sizeof(m_answer.data)) available = sizeof(m_answer.data);
        const ULONG wanted = p3 ? p3 : m_uicc ? available : ULONG(sizeof(m_answer.data));
        if (wanted > available) return Finish(kOtherLength, available);
        memcpy(m_answer.data, octets, wanted);
        m_answer.size = wanted;
        Finish(kDone);
    }

    bool IsOwnApplication(const SimCommand& command) const
    {
        const auto& aid = TheModule().uim.aid;
        return command.p3 <= aid.count && memcmp(command.data, aid.octets, command.p3) == 0;
    }

    void Select(const SimCommand& command)
    {
        constexpr BYTE kById = 0, kByName = 4;
        WORD id = kMaster;
        if (m_uicc && command.p1 == kByName) {
            if (!command.data || !IsOwnApplication(command)) return Finish(kNoSuchFile);
            id = kApplication;
        } else if (command.p1 != kById) {
            return Finish(kWrongMode);
        } else if (command.data && command.p3 == 2) {
            id = static_cast<WORD>(command.data[0] << 8 | command.data[1]);
        } else if (!m_uicc || command.p3 != 0) {
            return Finish(kWrongData);
        }
        if (IsDirectory(id)) {
            m_selection.directory = id;
            m_selection.file = 0;
        } else if (FindFile(id, PlaceOf(m_selection.directory))) {
            m_selection.file = id;
        } else {
            return Finish(kNoSuchFile);
        }
        m_selection.record = 0;
        constexpr BYTE kNoResponse = 0x0C;
        if (m_uicc && (command.p2 & kNoResponse) == kNoResponse) return Finish(kDone);
        Describe(m_selection.response);
        Finish(kMoreWaits, m_selection.response.count);
    }

    void Status(const SimCommand& command)
    {
        Octets<64> response;
        (m_uicc ? DescribeForUicc : DescribeForSim)(m_selection.directory, nullptr, response);
        Give(response.octets, response.count, command.p3);
    }

    // The file that a command works on, or null, with the reason told.
    const File* Selected(bool update, bool records)
    {
        const File* file = m_selection.file ? FindFile(m_selection.file, 0xFF) : nullptr;
        if (!file)
            Finish(kNothingSelected);
        else if (records != (file->structure != Structure::Transparent))
            Finish(kOtherStructure);
        else if (!May(update ? file->update : file->read))
            Finish(kSecurity);
        else
            return file;
        return nullptr;
    }

    void Binary(const SimCommand& command)
    {
        const bool update = command.instruction == kUpdateBinary;
        const File* file = Selected(update, false);
        if (!file) return;
        BYTE content[kFileRoom];
        const ULONG offset = ULONG{command.p1} << 8 | command.p2;
        if (offset >= RecordSize(*file)) return Finish(kWrongAddress);
        const ULONG left = RecordSize(*file) - offset;
        Load(*file, 0, content);
        if (!update) return Give(content + offset, left, command.p3);
        if (!command.data || command.p3 > left) return Finish(kWrongData);
        memcpy(content + offset, command.data, command.p3);
        Store(*file, 0, content);
        Finish(kDone);
    }

    // The record that P1 and P2 tell, from 1, or 0. The next and the previous one become current.
    ULONG FindRecord(const File& file, const SimCommand& command)
    {
        constexpr BYTE kNext = 2, kPrevious = 3;
        const ULONG count = RecordCount(file);
        const bool wraps = file.structure == Structure::Cyclic;
        ULONG& current = m_selection.record;
        ULONG record = command.p1 ? command.p1 : current;
        if (command.p2 == kNext) record = current < count ? current + 1 : wraps;
        if (command.p2 == kPrevious) record = current > 1 ? current - 1 : current == 0 || wraps ? count : 0;
        if (record > count) record = 0;
        if (record > 0 && (command.p2 == kNext || command.p2 == kPrevious)) current = record;
        return record;
    }

    void Record(const SimCommand& command)
    {
        const bool update = command.instruction == kUpdateRecord;
        const File* file = Selected(update, true);
        if (!file) return;
        constexpr BYTE kPrevious = 3, kAbsolute = 4;
        const bool newest = update && file->structure == Structure::Cyclic;
        if (command.p2 < 2 || command.p2 > kAbsolute || (newest && command.p2 != kPrevious)) return Finish(kWrongMode);
        if (command.p3 != file->record_size) return Finish(update ? kWrongData : kOtherLength, file->record_size);
        if (newest) {
            if (RecordCount(*file) == 0) return Finish(kNoSuchRecord);
            StoreNewest(*file, command.data);
            m_selection.record = 1;
            return Finish(kDone);
        }
        const ULONG record = FindRecord(*file, command);
        if (record == 0) return Finish(kNoSuchRecord);
        if (update) {
            Store(*file, record - 1, command.data);
            return Finish(kDone);
        }
        BYTE content[kFileRoom];
        Load(*file, record - 1, content);
        Give(content, file->record_size, command.p3);
    }

    const bool m_uicc;
    SimSelection& m_selection;
    SimAnswer& m_answer;
};

static bool TakesData(BYTE instruction)
{
    return instruction == kSelect || instruction == kUpdateBinary || instruction == kUpdateRecord;
}

void SimTransmit(const BYTE* octets, ULONG count, SimAnswer& answer)
{
    constexpr BYTE kSimClass = 0xA0, kUiccClass = 0x00, kUiccStatusClass = 0x80;
    const bool of_sim = count > 0 && octets[0] == kSimClass;
    SimSession session(!of_sim, TheModule().sim_files.selection, answer);
    if (count < 4) return session.Finish(kWrongData);
    SimCommand command = {octets[1], octets[2], octets[3], count > 4 ? octets[4] : BYTE{0}, nullptr};
    const BYTE uicc_class = command.instruction == kCardStatus ? kUiccStatusClass : kUiccClass;
    if (!of_sim && (octets[0] != uicc_class || !IsUicc())) return session.Finish(kNoSuchClass);
    if (TakesData(command.instruction) && command.p3 > 0) {
        // The length of the answer may stand behind the data.
        if (count != 5u + command.p3 && count != 6u + command.p3) return session.Finish(kWrongData);
        command.data = octets + 5;
    } else if (count > 5) {
        return session.Finish(kWrongData);
    }
    session.Run(command);
}

void SimRestricted(WORD id, const SimCommand& command, SimAnswer& answer)
{
    const bool uicc = IsUicc();
    SimSelection selection = {uicc ? kApplication : kGsm, 0, 0, {}};
    SimSession session(uicc, selection, answer);
    if (IsDirectory(id))
        selection.directory = id;
    else if (FindFile(id, 0xFF))
        selection.file = id;
    else if (id != 0)
        return session.Finish(kNoSuchFile);
    // A template comes whole, as modems fetch it, however much was asked for; so does what nobody asked a length of.
    SimCommand asked = command;
    const bool response = command.instruction == kGetResponse;
    if (response || command.instruction == kCardStatus) {
        if (!response) selection.file = 0;
        session.Describe(selection.response);
        if (command.p3 == 0 || (response && uicc)) asked.p3 = static_cast<BYTE>(selection.response.count);
    }
    session.Run(asked);
}

} // namespace sim
