#include "sim/at_modem.h"

#include <string.h>

#include <initializer_list>
#include <iterator>

#include "sim/at_commands.h"
#include "sim/at_faults.h"
#include "sim/module.h"

namespace sim {

// --- what is to be sent
// -----------------------------------------------------------------------------------------------

constexpr ULONG kOutRoom = 16384;
static BYTE g_out[kOutRoom];
static ULONG g_out_used;
static bool g_hang_up; // when `g_hang_up_after` more octets have been sent
static ULONG g_hang_up_after;

static void Send(const char* octets, ULONG count)
{
    if (count > kOutRoom - g_out_used) count = kOutRoom - g_out_used; // nobody reads: what does not fit is lost
    memcpy(g_out + g_out_used, octets, count);
    g_out_used += count;
}

void AtSendUnasked(const char* octets, ULONG count) { Send(octets, count); }

void AtLineLost()
{
    g_out_used = 0;
    g_hang_up = false;
}

AtStep AtTake(BYTE* out, ULONG room, ULONG* count)
{
    ULONG take = g_out_used < room ? g_out_used : room;
    const ULONG fragment = AtFaultsInForce().fragment;
    const bool fragments = fragment > 0;
    if (fragments && take > fragment) take = fragment;
    if (g_hang_up && take > g_hang_up_after) take = g_hang_up_after;
    memcpy(out, g_out, take);
    memmove(g_out, g_out + take, g_out_used - take);
    g_out_used -= take;
    *count = take;
    if (g_hang_up) {
        g_hang_up_after -= take;
        if (g_hang_up_after == 0) return AtStep::HangUp;
    }
    if (take == 0) return AtStep::Idle;
    return fragments ? AtStep::Fragment : AtStep::Send;
}

// --- commands
// ---------------------------------------------------------------------------------------------------------

struct Settings {
    bool echo;
    ULONG cmee; // 0 ERROR, 1 numbers, 2 texts
};
static Settings g_settings;

static void InformationLine(Writer& reply, const char* text) { reply.Add("\r\n").Add(text).Add("\r\n"); }

static AtResult Attention(const char*, Writer&) { return AtResult::Ok; }

static AtResult EchoSetting(const char* argument, Writer&)
{
    if (!Equal(argument, "0") && !Equal(argument, "1") && !Equal(argument, "")) return AtResult::WrongParameter;
    g_settings.echo = Equal(argument, "1");
    return AtResult::Ok;
}

static AtResult Identification(const char*, Writer& reply)
{
    const IdentityState& identity = TheModule().identity;
    reply.Add("\r\nManufacturer: ").Add(identity.manufacturer).Add("\r\nModel: ").Add(identity.model);
    reply.Add("\r\nRevision: ").Add(identity.firmware).Add("\r\nIMEI: ").Add(identity.imei).Add("\r\n");
    return AtResult::Ok;
}

static AtResult Manufacturer(const char*, Writer& reply)
{
    InformationLine(reply, TheModule().identity.manufacturer);
    return AtResult::Ok;
}
static AtResult Model(const char*, Writer& reply)
{
    InformationLine(reply, TheModule().identity.model);
    return AtResult::Ok;
}
static AtResult Revision(const char*, Writer& reply)
{
    InformationLine(reply, TheModule().identity.firmware);
    return AtResult::Ok;
}
static AtResult SerialNumber(const char*, Writer& reply)
{
    InformationLine(reply, TheModule().identity.imei);
    return AtResult::Ok;
}

static AtResult ErrorFormat(const char* argument, Writer& reply)
{
    if (Equal(argument, "?")) {
        reply.Add("\r\n+CMEE: ").Unsigned(g_settings.cmee).Add("\r\n");
        return AtResult::Ok;
    }
    if (Equal(argument, "=?")) {
        InformationLine(reply, "+CMEE: (0-2)");
        return AtResult::Ok;
    }
    if (argument[0] != '=' || argument[1] < '0' || argument[1] > '2' || argument[2] != 0)
        return AtResult::WrongParameter;
    g_settings.cmee = static_cast<ULONG>(argument[1] - '0');
    return AtResult::Ok;
}

// 0 to 31 for -113 dBm to -51 dBm in steps of 2 dBm, 99 for no signal.
static AtResult SignalQuality(const char*, Writer& reply)
{
    const auto& signal = TheModule().network.signal;
    int32_t quality = 99;
    if (signal.count > 0) {
        quality = (signal.values[0][0] + 113) / 2;
        quality = quality < 0 ? 0 : quality > 31 ? 31 : quality;
    }
    reply.Add("\r\n+CSQ: ").Number(quality).Add(",99\r\n");
    return AtResult::Ok;
}

constexpr ULONG kRegistered = 1;

static AtResult Operator(const char*, Writer& reply)
{
    const NetworkState& network = TheModule().network;
    reply.Add("\r\n+COPS: 0");
    if (network.registration == kRegistered) reply.Add(",0,\"").Add(network.name).Add("\",2");
    reply.Add("\r\n");
    return AtResult::Ok;
}

// 1 at home, 5 roaming, 2 searching, 3 denied, 4 unknown.
static AtResult Registration(const char*, Writer& reply)
{
    const NetworkState& network = TheModule().network;
    constexpr ULONG kRoaming = 0;
    ULONG status = network.registration;
    if (status == kRegistered && network.roaming == kRoaming) status = 5;
    reply.Add("\r\n+CREG: 0,").Unsigned(status).Add("\r\n");
    return AtResult::Ok;
}

constexpr AtCommand kCommands[] = {
    {"AT", false, Attention},         {"ATE", true, EchoSetting},        {"ATI", false, Identification},
    {"AT+CGMI", false, Manufacturer}, {"AT+CGMM", false, Model},         {"AT+CGMR", false, Revision},
    {"AT+CGSN", false, SerialNumber}, {"AT+CMEE", true, ErrorFormat},    {"AT+CSQ", false, SignalQuality},
    {"AT+COPS?", false, Operator},    {"AT+CREG?", false, Registration},
};

constexpr AtCommandTable kOwnCommands = {kCommands, std::size(kCommands)};

// The argument of `line` if it is that command, else null.
static const char* Matches(const AtCommand& command, const char* line)
{
    if (!command.has_argument) return EqualLetters(command.name, line) ? "" : nullptr;
    const ULONG length = Length(command.name);
    if (BoundedLength(line, length) < length) return nullptr;
    char start[16];
    memcpy(start, line, length);
    start[length] = 0;
    if (!EqualLetters(command.name, start)) return nullptr;
    const char* argument = line + length;
    return (*argument >= 'A' && *argument <= 'Z') ? nullptr : argument;
}

static AtResult Run(const char* line, Writer& reply)
{
    AtBeginCommand();
    for (const AtCommandTable& table : {kOwnCommands, kAtSettingCommands, kAtSimFileCommands, kAtOperatorCommands}) {
        for (ULONG i = 0; i < table.count; ++i) {
            const AtCommand& command = table.commands[i];
            if (const char* argument = Matches(command, line)) return command.run(argument, reply);
        }
    }
    return AtResult::NotSupported;
}

static const char* ErrorText(AtResult result)
{
    switch (result) {
    case AtResult::NotAllowed:
        return "operation not allowed";
    case AtResult::NotSupported:
        return "operation not supported";
    case AtResult::NoCard:
        return "SIM not inserted";
    case AtResult::MemoryFull:
        return "memory full";
    case AtResult::InvalidIndex:
        return "invalid index";
    case AtResult::TextTooLong:
        return "text string too long";
    case AtResult::NotFound:
        return "not found";
    case AtResult::WrongParameter:
        return "incorrect parameters";
    case AtResult::Ok:
        break;
    }
    return "";
}

static void FinalResult(AtResult result, Writer& reply)
{
    if (result == AtResult::Ok)
        reply.Add("\r\nOK\r\n");
    else if (g_settings.cmee == 1)
        reply.Add("\r\n+CME ERROR: ").Unsigned(static_cast<ULONG>(result)).Add("\r\n");
    else if (g_settings.cmee == 2)
        reply.Add("\r\n+CME ERROR: ").Add(ErrorText(result)).Add("\r\n");
    else
        reply.Add("\r\nERROR\r\n");
}

// --- lines
// ------------------------------------------------------------------------------------------------------------

constexpr ULONG kLineRoom = 2304;
static char g_line[kLineRoom];
static ULONG g_line_used;
static bool g_line_cut;

constexpr ULONG kReplyRoom = 8192;

// Sends a reply of `length` octets with the faults that wait for one.
static void SendReply(const char* octets, ULONG length)
{
    AtFaults& faults = AtFaultsInForce();
    const ULONG before = g_out_used;
    if (faults.hang_up == AtHangUp::Before) {
        // Nothing of it goes out.
    } else if (faults.insert_armed) {
        const ULONG at = faults.insert_offset < length ? faults.insert_offset : length;
        Send(octets, at);
        Send(faults.inserted.octets, faults.inserted_length);
        Send(octets + at, length - at);
        faults.insert_armed = false;
    } else {
        Send(octets, length);
    }
    if (faults.hang_up == AtHangUp::None) return;
    const ULONG sent = g_out_used - before;
    g_hang_up = true;
    g_hang_up_after = before + (faults.hang_up == AtHangUp::During ? sent / 2 : sent);
    faults.hang_up = AtHangUp::None;
}

static void RunAtLine()
{
    AtLogCommand(g_line);
    if (AtFaultsInForce().silence || !TheModule().connection.present) return;
    char reply[kReplyRoom];
    Writer writer(reply, sizeof(reply));
    if (g_settings.echo) writer.Add(g_line).Character('\r');
    if (g_line_used > 0) {
        ULONG canned_length = 0;
        if (const char* canned = AtCannedReply(g_line, &canned_length)) {
            ULONG length = writer.Length();
            if (canned_length > sizeof(reply) - length) canned_length = ULONG(sizeof(reply)) - length;
            memcpy(reply + length, canned, canned_length);
            SendReply(reply, length + canned_length);
            return;
        }
        const AtResult result = g_line_cut ? AtResult::WrongParameter : Run(g_line, writer);
        FinalResult(result, writer);
    }
    SendReply(reply, writer.Length());
}

void AtReceive(const BYTE* octets, ULONG count)
{
    for (ULONG i = 0; i < count; ++i) {
        const char character = static_cast<char>(octets[i]);
        if (character == '\r') {
            g_line[g_line_used] = 0;
            RunAtLine();
            g_line_used = 0;
            g_line_cut = false;
        } else if (character == '\n' || character == 0) {
            continue;
        } else if (g_line_used + 1 < kLineRoom) {
            g_line[g_line_used++] = character;
        } else {
            g_line_cut = true;
        }
    }
}

void RestartAtModem()
{
    g_settings = {true, 0};
    g_line_used = 0;
    g_line_cut = false;
    RestartAtSettings();
}

void SetEcho(bool on) { g_settings.echo = on; }

void ResetAtModem()
{
    ResetAtSettings();
    RestartAtModem();
    AtLineLost();
    ClearAtFaults();
}

} // namespace sim
