// The AT commands for what the vendor library does not offer: supplementary services, release of one call, and the
// manufacturer's own settings behind their lock.
#include <string.h>

#include <iterator>

#include "sim/at_commands.h"
#include "sim/fields.h"
#include "sim/module.h"
#include "sim/reset.h"

namespace sim {

constexpr ULONGLONG kAnyNumber = 0x7FFFFFFF;

static constexpr Field kFields[] = {
    NumberField("at.clip", g_module.at.clip, 1),
    NumberField("at.clip-service", g_module.at.clip_service),
    NumberField("at.clir", g_module.at.clir, 2),
    NumberField("at.clir-service", g_module.at.clir_service),
    NumberField("at.colp", g_module.at.colp, 1),
    NumberField("at.colp-service", g_module.at.colp_service),
    NumberField("at.colr-service", g_module.at.colr_service),
    ListField("at.calls", g_module.at.calls, 1, 7),
    TextField("at.enumeration", g_module.at.enumeration),
    ListField("at.side-tone", g_module.at.side_tone, -int64_t{kAnyNumber} - 1, kAnyNumber),
    TextField("at.factory-reset", g_module.at.factory_reset),
    NumberField("at.resets", g_module.at.resets),
    TextField("at.mdn", g_module.at.mdn),
    NumberField("at.answer-ms", g_module.at.answer_ms, 60000),
};
const FieldTable kAtFields = {kFields, std::size(kFields)};

static AtState& State() { return TheModule().at; }

static void FactorySettings()
{
    Copy(State().enumeration, "");
    State().side_tone = {1, {{0, 0}}};
}

void ResetAtSettings()
{
    State() = {};
    State().clip_service = 1;
    State().clir_service = 4; // temporary, shown
    State().colp_service = 1;
    State().colr_service = 0;
    Copy(State().mdn, "2025550123");
    State().answer_ms = 2;
    FactorySettings();
}

void RestartAtSettings()
{
    State().clip = State().clir = State().colp = 0;
    State().calls.count = 0;
    State().unlocked = State().unlocked_next = false;
}

// --- supplementary services
// -------------------------------------------------------------------------------------------

// "=VALUE" with one digit of 0 to `highest`.
static bool OneDigit(const char* argument, BYTE highest, BYTE* value)
{
    if (argument[0] != '=' || argument[1] < '0' || argument[1] > '0' + highest || argument[2] != 0) return false;
    *value = static_cast<BYTE>(argument[1] - '0');
    return true;
}

// Reads, tests and sets "NAME: setting,service".
static AtResult Service(const char* argument, Writer& reply, const char* name, BYTE highest, BYTE* setting,
                        BYTE service)
{
    if (Equal(argument, "?")) {
        reply.Add("\r\n").Add(name).Unsigned(*setting).Character(',').Unsigned(service).Add("\r\n");
        return AtResult::Ok;
    }
    if (Equal(argument, "=?")) {
        reply.Add("\r\n").Add(name).Add("(0-").Unsigned(highest).Add(")\r\n");
        return AtResult::Ok;
    }
    return OneDigit(argument, highest, setting) ? AtResult::Ok : AtResult::WrongParameter;
}

static AtResult CallingLine(const char* argument, Writer& reply)
{
    return Service(argument, reply, "+CLIP: ", 1, &State().clip, State().clip_service);
}

static AtResult CallingLineRestriction(const char* argument, Writer& reply)
{
    return Service(argument, reply, "+CLIR: ", 2, &State().clir, State().clir_service);
}

static AtResult ConnectedLine(const char* argument, Writer& reply)
{
    return Service(argument, reply, "+COLP: ", 1, &State().colp, State().colp_service);
}

// The network alone decides: there is nothing to set.
static AtResult ConnectedLineRestriction(const char* argument, Writer& reply)
{
    if (Equal(argument, "=?")) return AtResult::Ok;
    if (!Equal(argument, "?") && !Equal(argument, "")) return AtResult::NotSupported;
    reply.Add("\r\n+COLR: ").Unsigned(State().colr_service).Add("\r\n");
    return AtResult::Ok;
}

// Of the many things that this command does, the release of one call: "=1X".
static AtResult ReleaseCall(const char* argument, Writer&)
{
    if (argument[0] != '=' || argument[1] != '1' || argument[2] == 0) return AtResult::NotSupported;
    bool negative = false;
    ULONGLONG number = 0;
    if (argument[2] == '-' || !ParseNumber(argument + 2, &negative, &number)) return AtResult::WrongParameter;
    auto& calls = State().calls;
    for (ULONG i = 0; i < calls.count; ++i) {
        if (static_cast<ULONGLONG>(calls.values[i][0]) != number) continue;
        --calls.count;
        memmove(calls.values + i, calls.values + i + 1, (calls.count - i) * sizeof(calls.values[0]));
        return AtResult::Ok;
    }
    return AtResult::NotFound;
}

// --- the manufacturer's own
// -------------------------------------------------------------------------------------------

void AtBeginCommand()
{
    State().unlocked = State().unlocked_next;
    State().unlocked_next = false;
}

static AtResult Unlock(const char* argument, Writer&)
{
    if (!Equal(argument, "=\"C582\"")) return AtResult::WrongParameter;
    State().unlocked_next = true;
    return AtResult::Ok;
}

static AtResult Enumeration(const char* argument, Writer& reply)
{
    if (!State().unlocked) return AtResult::NotAllowed;
    if (Equal(argument, "?")) {
        reply.Add("\r\n").Add(State().enumeration).Add("\r\n");
        return AtResult::Ok;
    }
    const bool taken = argument[0] == '=' && argument[1] != 0 && Copy(State().enumeration, argument + 1);
    return taken ? AtResult::Ok : AtResult::WrongParameter;
}

// "=DECIMAL,HEXADECIMAL", each 32 bits.
static bool ReadGains(const char* argument, int32_t (&gains)[2])
{
    Text<64> text;
    if (argument[0] != '=' || !Copy(text, argument + 1)) return false;
    char* const comma = strchr(text.octets, ',');
    if (!comma || BoundedLength(comma + 1, 9) > 8) return false;
    *comma = 0;
    Text<16> second;
    Writer(second).Add("0x").Add(comma + 1);
    bool negative = false, ignored = false;
    ULONGLONG first_magnitude = 0, second_bits = 0;
    if (!ParseNumber(text, &negative, &first_magnitude) || !ParseNumber(second, &ignored, &second_bits)) return false;
    if (first_magnitude > kAnyNumber + (negative ? 1 : 0)) return false;
    const int64_t first = negative ? -static_cast<int64_t>(first_magnitude) : static_cast<int64_t>(first_magnitude);
    gains[0] = static_cast<int32_t>(first);
    gains[1] = static_cast<int32_t>(static_cast<ULONG>(second_bits));
    return true;
}

static AtResult SideToneGain(const char* argument, Writer&)
{
    if (!State().unlocked) return AtResult::NotAllowed;
    int32_t gains[2] = {};
    if (!ReadGains(argument, gains)) return AtResult::WrongParameter;
    State().side_tone = {1, {{gains[0], gains[1]}}};
    return AtResult::Ok;
}

static AtResult ResetCommand(const char*, Writer&)
{
    ++State().resets;
    ScheduleReset();
    return AtResult::Ok;
}

static AtResult ReturnToFactory(const char* argument, Writer&)
{
    const bool taken = argument[0] == '=' && argument[1] != 0 && Copy(State().factory_reset, argument + 1);
    if (!taken) return AtResult::WrongParameter;
    FactorySettings();
    return AtResult::Ok;
}

static AtResult DirectoryNumber(const char*, Writer& reply)
{
    reply.Add("\r\n").Add(State().mdn).Add("\r\n");
    return AtResult::Ok;
}

static constexpr AtCommand kCommands[] = {
    {"AT+CLIP", true, CallingLine},     {"AT+CLIR", true, CallingLineRestriction},
    {"AT+COLP", true, ConnectedLine},   {"AT+COLR", true, ConnectedLineRestriction},
    {"AT+CHLD", true, ReleaseCall},     {"AT!UNLOCK", true, Unlock},
    {"AT!NVENUM", true, Enumeration},   {"AT!AVCODECSTG", true, SideToneGain},
    {"AT!RESET", false, ResetCommand},  {"AT$RTN", true, ReturnToFactory},
    {"AT+MDN", false, DirectoryNumber},
};
const AtCommandTable kAtSettingCommands = {kCommands, std::size(kCommands)};

} // namespace sim
