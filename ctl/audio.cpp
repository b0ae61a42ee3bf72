// The commands for the module's two audio services: audio show, audio set, audio tone.

#include "ctl/client.h"
#include "ctl/session.h"
#include "ctl/text.h"
#include "ctl/vendor.h"

#include <array>
#include <limits>

namespace ctl {

namespace {

constexpr ULONG kEntryPointMissing = 1;
constexpr ULONG kNotSupported = 1025;

constexpr size_t kMostValues = 4;
using Values = std::array<ULONG, kMostValues>;
using Operation = ULONG (*)(COrvGobiDll& vendor, Values& values);

// --- the vendor's methods in one shape

template <auto Method, class... T, size_t... I>
ULONG CallWith(COrvGobiDll& vendor, Values& values, ULONG (COrvGobiDll::*)(T*...), std::index_sequence<I...>)
{
    std::tuple<T...> arguments(static_cast<T>(values[I])...);
    const ULONG status = (vendor.*Method)(&std::get<I>(arguments)...);
    ((values[I] = std::get<I>(arguments)), ...);
    return status;
}
template <class... T>
constexpr size_t CountOf(ULONG (COrvGobiDll::*)(T*...))
{
    return sizeof...(T);
}
// A method all of whose arguments are values of the field, read or written.
template <auto Method>
ULONG Call(COrvGobiDll& vendor, Values& values)
{
    return CallWith<Method>(vendor, values, Method, std::make_index_sequence<CountOf(Method)>());
}

// The profile in use of the second service, and what else its methods ask for.
struct SecondProfile {
    BYTE profile, ear_mute, mic_mute, generator, volume, waiting_tone_mute, side_tone;

    ULONG Read(COrvGobiDll& vendor)
    {
        return vendor.OrvM2MAV_AudioGetProfile(&profile, &ear_mute, &mic_mute, &generator, &volume, &waiting_tone_mute,
                                               &side_tone);
    }
};

// A method of the second service with a value of the profile in use.
template <auto Method, class T>
ULONG InSecondProfile(COrvGobiDll& vendor, Values& values, ULONG (COrvGobiDll::*)(BYTE*, T*))
{
    SecondProfile now = {};
    if (const ULONG status = now.Read(vendor)) return status;
    T value = static_cast<T>(values[0]);
    const ULONG status = (vendor.*Method)(&now.profile, &value);
    values[0] = value;
    return status;
}
template <auto Method>
ULONG CallSecond(COrvGobiDll& vendor, Values& values)
{
    return InSecondProfile<Method>(vendor, values, Method);
}

// A member of that profile, and how it is changed.
template <BYTE SecondProfile::*Member>
ULONG GetMember(COrvGobiDll& vendor, Values& values)
{
    SecondProfile now = {};
    const ULONG status = now.Read(vendor);
    values[0] = now.*Member;
    return status;
}
template <BYTE SecondProfile::*Member>
ULONG SetMute(COrvGobiDll& vendor, Values& values)
{
    SecondProfile now = {};
    if (const ULONG status = now.Read(vendor)) return status;
    now.*Member = static_cast<BYTE>(values[0]);
    return vendor.OrvM2MAV_AudioSetAVMute(&now.profile, &now.ear_mute, &now.mic_mute, &now.waiting_tone_mute);
}
ULONG SetSecondVolume(COrvGobiDll& vendor, Values& values)
{
    SecondProfile now = {};
    if (const ULONG status = now.Read(vendor)) return status;
    now.volume = static_cast<BYTE>(values[0]);
    return vendor.OrvM2MAV_AudioSetVolume(&now.profile, &now.generator, &now.volume);
}
template <BYTE SecondProfile::*Member>
ULONG SetSecondProfile(COrvGobiDll& vendor, Values& values)
{
    SecondProfile now = {};
    if (const ULONG status = now.Read(vendor)) return status;
    now.*Member = static_cast<BYTE>(values[0]);
    return vendor.OrvM2MAV_AudioSetProfile(&now.profile, &now.ear_mute, &now.mic_mute, &now.generator, &now.volume,
                                           &now.waiting_tone_mute);
}

// --- the fields

constexpr ULONG kSwitch = 1;
constexpr ULONG kByte = std::numeric_limits<BYTE>::max();
constexpr ULONG kWord = std::numeric_limits<WORD>::max();
constexpr ULONG kLong = std::numeric_limits<ULONG>::max();

struct Field {
    const char* name;  // at the command line
    const char* place; // in the JSON answer; none for what cannot be read
    const char* label;
    const char* getter_name; // null: cannot be read
    Operation getter;
    const char* setter_name; // null: cannot be set
    Operation setter;
    size_t count = 1; // of values
    Values highest = {kByte};
};

using Dll = COrvGobiDll;
constexpr Values kFilter = {kSwitch, kWord, kLong, kWord}; // on or off, stage, coefficient, gain

constexpr Field kFields[] = {
    {"profile", "profile", "Profile", "GetAudioProfile", Call<&Dll::GetAudioProfile>, "SetAudioProfile",
     Call<&Dll::SetAudioProfile>},
    {"mic-mute",
     nullptr,
     "Microphone muted",
     nullptr,
     nullptr,
     "SetMICMuteStatus",
     Call<&Dll::SetMICMuteStatus>,
     1,
     {kSwitch}},
    {"speaker-mute",
     nullptr,
     "Speaker muted",
     nullptr,
     nullptr,
     "SetSpeakerMuteStatus",
     Call<&Dll::SetSpeakerMuteStatus>,
     1,
     {kSwitch}},
    {"receiver-volume", nullptr, "Receiver volume", nullptr, nullptr, "SetReceiverVolume",
     Call<&Dll::SetReceiverVolume>},
    {"mic-volume",
     "mic_volume",
     "Microphone volume",
     "GetMicVolume",
     Call<&Dll::GetMicVolume>,
     "SetMicVolume",
     Call<&Dll::SetMicVolume>,
     1,
     {kWord}},
    {"echo-cancel", "echo_cancel", "Echo cancellation", "GetEchoCancelMode", Call<&Dll::GetEchoCancelMode>,
     "SetEchoCancelMode", Call<&Dll::SetEchoCancelMode>},
    {"noise-suppression", "noise_suppression", "Noise suppression", "GetNoiseSuppression",
     Call<&Dll::GetNoiseSuppression>, "SetNoiseSuppression", Call<&Dll::SetNoiseSuppression>},
    {"output-gain", "output_gain", "Automatic output gain", "GetAutoOutputGain", Call<&Dll::GetAutoOutputGain>,
     "SetAutoOutputGain", Call<&Dll::SetAutoOutputGain>},
    {"input-gain", "input_gain", "Automatic input gain", "GetAutoInputGain", Call<&Dll::GetAutoInputGain>,
     "SetAutoInputGain", Call<&Dll::SetAutoInputGain>},
    {"side-tone",
     "side_tone",
     "Side tone gain",
     "GetSideToneGain",
     Call<&Dll::GetSideToneGain>,
     "SetSideToneGain",
     Call<&Dll::SetSideToneGain>,
     1,
     {kWord}},
    {"tx-filter", "tx_filter", "Transmit filter", "GetTXPCMFilter", Call<&Dll::GetTXPCMFilter>, "SetTXPCMFilter",
     Call<&Dll::SetTXPCMFilter>, 4, kFilter},
    {"rx-filter", "rx_filter", "Receive filter", "GetRXPCMFilter", Call<&Dll::GetRXPCMFilter>, "SetRXPCMFilter",
     Call<&Dll::SetRXPCMFilter>, 4, kFilter},
    {"rx-gain",
     nullptr,
     "Receive gain",
     nullptr,
     nullptr,
     "SetRXGainLevel",
     Call<&Dll::SetRXGainLevel>,
     3,
     {kByte, kWord, kWord}},
    {"m2m-profile", "m2m.profile", "M2M profile", "OrvM2MAV_AudioGetProfile", GetMember<&SecondProfile::profile>,
     "OrvM2MAV_AudioSetProfile", SetSecondProfile<&SecondProfile::profile>},
    {"m2m-generator", "m2m.generator", "M2M generator", "OrvM2MAV_AudioGetProfile",
     GetMember<&SecondProfile::generator>, "OrvM2MAV_AudioSetProfile", SetSecondProfile<&SecondProfile::generator>},
    {"m2m-volume", "m2m.volume", "M2M volume", "OrvM2MAV_AudioGetProfile", GetMember<&SecondProfile::volume>,
     "OrvM2MAV_AudioSetVolume", SetSecondVolume},
    {"m2m-ear-mute",
     "m2m.ear_mute",
     "M2M ear muted",
     "OrvM2MAV_AudioGetProfile",
     GetMember<&SecondProfile::ear_mute>,
     "OrvM2MAV_AudioSetAVMute",
     SetMute<&SecondProfile::ear_mute>,
     1,
     {kSwitch}},
    {"m2m-mic-mute",
     "m2m.mic_mute",
     "M2M microphone muted",
     "OrvM2MAV_AudioGetProfile",
     GetMember<&SecondProfile::mic_mute>,
     "OrvM2MAV_AudioSetAVMute",
     SetMute<&SecondProfile::mic_mute>,
     1,
     {kSwitch}},
    {"m2m-waiting-tone-mute",
     "m2m.waiting_tone_mute",
     "M2M waiting tone muted",
     "OrvM2MAV_AudioGetProfile",
     GetMember<&SecondProfile::waiting_tone_mute>,
     "OrvM2MAV_AudioSetAVMute",
     SetMute<&SecondProfile::waiting_tone_mute>,
     1,
     {kSwitch}},
    {"m2m-side-tone", "m2m.side_tone", "M2M side tone", "OrvM2MAV_AudioGetProfile",
     GetMember<&SecondProfile::side_tone>, nullptr, nullptr},
    {"m2m-tx-volume",
     "m2m.tx_volume",
     "M2M transmit volume",
     "OrvM2MAV_AudioGetTxVolume",
     CallSecond<&Dll::OrvM2MAV_AudioGetTxVolume>,
     "OrvM2MAV_AudioSetTxVolume",
     CallSecond<&Dll::OrvM2MAV_AudioSetTxVolume>,
     1,
     {kWord}},
    {"m2m-mic-gain",
     "m2m.mic_gain",
     "M2M microphone gain",
     "OrvM2MAV_AudioGetMicGain",
     CallSecond<&Dll::OrvM2MAV_AudioGetMicGain>,
     "OrvM2MAV_AudioSetMicGain",
     CallSecond<&Dll::OrvM2MAV_AudioSetMicGain>,
     1,
     {kWord}},
    {"m2m-tx-gain",
     "m2m.tx_gain",
     "M2M transmit gain",
     "OrvM2MAV_AudioGetAVTXG",
     CallSecond<&Dll::OrvM2MAV_AudioGetAVTXG>,
     "OrvM2MAV_AudioSetAVTXG",
     CallSecond<&Dll::OrvM2MAV_AudioSetAVTXG>,
     1,
     {kWord}},
    {"m2m-rx-gain",
     "m2m.rx_gain",
     "M2M receive gain",
     "OrvM2MAV_AudioGetAVRXG",
     CallSecond<&Dll::OrvM2MAV_AudioGetAVRXG>,
     "OrvM2MAV_AudioSetAVRXG",
     CallSecond<&Dll::OrvM2MAV_AudioSetAVRXG>,
     1,
     {kWord}},
    {"m2m-echo-cancel", "m2m.echo_cancel", "M2M echo cancellation", "OrvM2MAV_AudioGetAVEC",
     CallSecond<&Dll::OrvM2MAV_AudioGetAVEC>, "OrvM2MAV_AudioSetAVEC", CallSecond<&Dll::OrvM2MAV_AudioSetAVEC>},
    {"m2m-noise-suppression", "m2m.noise_suppression", "M2M noise suppression", "OrvM2MAV_AudioGetAVNS",
     CallSecond<&Dll::OrvM2MAV_AudioGetAVNS>, "OrvM2MAV_AudioSetAVNS", CallSecond<&Dll::OrvM2MAV_AudioSetAVNS>},
};

std::string Names()
{
    std::string names;
    for (const Field& field : kFields)
        if (field.setter) names += (names.empty() ? "" : ", ") + std::string(field.name);
    return names;
}

// Null where the module does not have it.
Json Read(const Field& field)
{
    Values values = {};
    const ULONG status = field.getter(Vendor(), values);
    if (status == kNotSupported || status == kEntryPointMissing) return nullptr;
    CheckVendor(field.getter_name, status);
    if (field.count == 1 && field.highest[0] == kSwitch) return values[0] != 0;
    if (field.count == 1) return values[0];
    return {{"enabled", values[0] != 0}, {"stage", values[1]}, {"coefficient", values[2]}, {"gain", values[3]}};
}

std::string Text(const Json& value)
{
    if (!value.is_object()) return PlainText(value);
    std::string text = value["enabled"] == true ? "on" : "off";
    for (const char* const name : {"stage", "coefficient", "gain"})
        text += std::string(", ") + name + " " + value[name].dump();
    return text;
}

int Show(Client& client)
{
    Session session;
    session.Open();
    Report report("audio show");
    bool any = false;
    for (const Field& field : kFields) {
        if (!field.getter) continue;
        const Json value = Read(field);
        any = any || !value.is_null();
        report.Add(field.place, field.label, value, Text(value));
    }
    session.Close();
    if (!any) throw VendorCallFailed(kFields[0].getter_name, kNotSupported);
    client.Answer(report);
    return 0;
}

int Set(Client& client, const std::string& name, const std::vector<std::string>& texts)
{
    const auto* const field = std::find_if(std::begin(kFields), std::end(kFields),
                                           [&](const Field& f) { return f.setter && f.name == name; });
    if (field == std::end(kFields)) throw UsageError("'" + name + "' is none of " + Names());
    if (texts.size() != field->count)
        throw UsageError(name + " takes " + std::to_string(field->count) + (field->count == 1 ? " value" : " values"));
    Values values = {};
    for (size_t i = 0; i < texts.size(); ++i)
        if (!ParseNumber(texts[i], values[i]) || values[i] > field->highest[i])
            throw UsageError("'" + texts[i] + "' is no number from 0 to " + std::to_string(field->highest[i]));
    Json given = Json::array();
    for (size_t i = 0; i < texts.size(); ++i)
        given.push_back(values[i]);

    Session session;
    session.Open();
    CheckVendor(field->setter_name, field->setter(Vendor(), values));
    Report report("audio set");
    report.AddHidden("field", name);
    report.AddHidden("given", std::move(given));
    // What the module makes of it, where it tells.
    const Json value = field->getter ? Read(*field) : Json();
    report.Add("value", field->label, value, field->getter ? Text(value) : "set");
    session.Close();
    client.Answer(report);
    return 0;
}

struct Tone {
    ULONG number = 0;
    ULONG volume = 0;
    ULONG duration_ms = 0;
};

// The second service plays a tone for a time, the first one as the module has it.
int Play(Client& client, const Tone& tone, bool timed)
{
    Session session;
    session.Open();
    // The vendor's tone record: its first octet is the tone's number, the others are the module's own.
    BYTE record[32] = {static_cast<BYTE>(tone.number)};
    Report report("audio tone");
    report.Add("tone", "Tone", tone.number);
    if (timed) {
        BYTE volume = static_cast<BYTE>(tone.volume);
        WORD duration_ms = static_cast<WORD>(tone.duration_ms);
        CheckVendor("OrvM2MAV_AudioPlayTone", Vendor().OrvM2MAV_AudioPlayTone(record, &volume, &duration_ms));
        report.Add("volume", "Volume", tone.volume);
        report.Add("duration_ms", "Duration", tone.duration_ms, std::to_string(tone.duration_ms) + " ms");
    } else {
        CheckVendor("PlayAudioTone", Vendor().PlayAudioTone(record));
    }
    session.Close();
    client.Answer(report);
    return 0;
}

} // namespace

void AddAudioCommands(Client& client)
{
    CLI::App* const audio = client.App().add_subcommand("audio", "Audio settings, and tones");
    audio->require_subcommand(1);
    client.RunWithModule(audio->add_subcommand("show", "Show the settings that can be read"),
                         [&client] { return Show(client); });

    CLI::App* const set = audio->add_subcommand("set", "Change a setting of the profile in use");
    const auto name = std::make_shared<std::string>();
    const auto values = std::make_shared<std::vector<std::string>>();
    set->add_option("FIELD", *name, "One of those below")->required();
    set->add_option("VALUE", *values,
                    "Its value; of a filter: 0 or 1, stage, coefficient, gain; of rx-gain: level, codec gain, digital "
                    "gain")
        ->required();
    set->footer("Fields: " + Names());
    client.RunWithModule(set, [&client, name, values] { return Set(client, *name, *values); });

    CLI::App* const tone = audio->add_subcommand("tone", "Play a tone");
    const auto played = std::make_shared<Tone>();
    tone->add_option("N", played->number, "The vendor's number of the tone")->required()->check(CLI::Range(0, 255));
    CLI::Option* const volume = tone->add_option("--volume", played->volume, "How loud, with the second audio service")
                                    ->check(CLI::Range(0, 255));
    CLI::Option* const duration = tone->add_option("--duration", played->duration_ms, "For so many milliseconds")
                                      ->type_name("MS")
                                      ->check(CLI::Range(0, 65535));
    volume->needs(duration);
    duration->needs(volume);
    client.RunWithModule(tone, [&client, played, volume] { return Play(client, *played, volume->count() != 0); });
}

} // namespace ctl
