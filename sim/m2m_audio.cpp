// The second audio service. An operation that sets reads the profile and then its values; the one that gets reads the
// profile and fills the same values.
#include <iterator>

#include "sim/call.h"
#include "sim/fields.h"
#include "sim/reset.h"

namespace sim {

static constexpr Field kFields[] = {
    NumberField("m2m.profile", g_module.m2m_audio.profile, 7),
    NumberField("m2m.loopback", g_module.m2m_audio.loopback, 1),
    NumberField("m2m.tone", g_module.m2m_audio.tone),
    NumberField("m2m.tone-volume", g_module.m2m_audio.tone_volume),
    NumberField("m2m.tone-ms", g_module.m2m_audio.tone_ms),
};
const FieldTable kM2mAudioFields = {kFields, std::size(kFields)};

// As the module's memory has it from the factory.
static void RestoreDefaults(M2mAudioState& audio)
{
    audio = {};
    for (ULONG i = 0; i < std::size(audio.profiles); ++i) {
        M2mProfileState& profile = audio.profiles[i];
        profile.volume = 3;
        profile.tx_volume = 0x2000;
        profile.mic_gain = 0x2000;
        profile.echo_cancel = 1;
        profile.noise_suppression = 1;
        profile.config.profile = static_cast<BYTE>(i);
        profile.config.count = 1;
        profile.config.interfaces[0].sampleRateHz = 8000;
    }
}

void ResetM2mAudio() { RestoreDefaults(TheModule().m2m_audio); }

static M2mProfileState* FindProfile(const BYTE* profile)
{
    auto& profiles = TheModule().m2m_audio.profiles;
    return profile && *profile < std::size(profiles) ? &profiles[*profile] : nullptr;
}

// An argument and the value of the profile that it is.
template <class T>
struct Value {
    T* argument;
    T M2mProfileState::*kept;
    ULONG high = static_cast<T>(~T{0});

    bool Fits() const { return argument && *argument <= high; }
};
template <class T>
Value(T*, T M2mProfileState::*) -> Value<T>;
template <class T>
Value(T*, T M2mProfileState::*, ULONG) -> Value<T>;

template <class... T>
static ULONG SetValues(EntryPoint entry, const BYTE* profile, Value<T>... values)
{
    const Call call(entry, At(profile), At(values.argument)...);
    if (const ULONG refused = call.Refused()) return refused;
    M2mProfileState* state = FindProfile(profile);
    if (!state || !(... && values.Fits())) return kInvalidArgument;
    ((state->*values.kept = *values.argument), ...);
    return call.Done();
}

template <class... T>
static ULONG GetValues(EntryPoint entry, const BYTE* profile, Value<T>... values)
{
    Call call(entry, At(profile));
    if (const ULONG refused = call.Refused()) return refused;
    const M2mProfileState* state = FindProfile(profile);
    if (!state) return kInvalidArgument;
    (call.Put(values.argument, state->*values.kept), ...);
    return call.Done();
}

using State = M2mProfileState;

} // namespace sim

using namespace sim;

extern "C" ULONG OrvM2MAV_AudioGetProfile(BYTE* profile, BYTE* ear_mute, BYTE* mic_mute, BYTE* generator, BYTE* volume,
                                          BYTE* waiting_tone_mute, BYTE* side_tone)
{
    Call call(EntryPoint::OrvM2MAV_AudioGetProfile);
    if (const ULONG refused = call.Refused()) return refused;
    const BYTE number = TheModule().m2m_audio.profile;
    const State& state = TheModule().m2m_audio.profiles[number];
    call.Put(profile, number);
    call.Put(ear_mute, state.ear_mute);
    call.Put(mic_mute, state.mic_mute);
    call.Put(generator, state.generator);
    call.Put(volume, state.volume);
    call.Put(waiting_tone_mute, state.waiting_tone_mute);
    call.Put(side_tone, state.side_tone);
    return call.Done();
}

// Takes the profile into use.
extern "C" ULONG OrvM2MAV_AudioSetProfile(BYTE* profile, BYTE* ear_mute, BYTE* mic_mute, BYTE* generator, BYTE* volume,
                                          BYTE* waiting_tone_mute)
{
    const ULONG status =
        SetValues(EntryPoint::OrvM2MAV_AudioSetProfile, profile, Value{ear_mute, &State::ear_mute, 1},
                  Value{mic_mute, &State::mic_mute, 1}, Value{generator, &State::generator},
                  Value{volume, &State::volume}, Value{waiting_tone_mute, &State::waiting_tone_mute, 1});
    if (status != kSuccess) return status;
    Guard guard;
    TheModule().m2m_audio.profile = *profile;
    return kSuccess;
}

extern "C" ULONG OrvM2MAV_AudioGetVolume(BYTE* profile, BYTE* generator, BYTE* volume)
{
    return GetValues(EntryPoint::OrvM2MAV_AudioGetVolume, profile, Value{generator, &State::generator},
                     Value{volume, &State::volume});
}

extern "C" ULONG OrvM2MAV_AudioSetVolume(BYTE* profile, BYTE* generator, BYTE* volume)
{
    return SetValues(EntryPoint::OrvM2MAV_AudioSetVolume, profile, Value{generator, &State::generator},
                     Value{volume, &State::volume});
}

extern "C" ULONG OrvM2MAV_AudioGetAVMute(BYTE* profile, BYTE* ear_mute, BYTE* mic_mute, BYTE* waiting_tone_mute)
{
    return GetValues(EntryPoint::OrvM2MAV_AudioGetAVMute, profile, Value{ear_mute, &State::ear_mute},
                     Value{mic_mute, &State::mic_mute}, Value{waiting_tone_mute, &State::waiting_tone_mute});
}

extern "C" ULONG OrvM2MAV_AudioSetAVMute(BYTE* profile, BYTE* ear_mute, BYTE* mic_mute, BYTE* waiting_tone_mute)
{
    return SetValues(EntryPoint::OrvM2MAV_AudioSetAVMute, profile, Value{ear_mute, &State::ear_mute, 1},
                     Value{mic_mute, &State::mic_mute, 1}, Value{waiting_tone_mute, &State::waiting_tone_mute, 1});
}

extern "C" ULONG OrvM2MAV_AudioGetAVCFG(AudioConfig* config, BYTE* profile)
{
    Call call(EntryPoint::OrvM2MAV_AudioGetAVCFG, At(profile));
    if (const ULONG refused = call.Refused()) return refused;
    const State* state = FindProfile(profile);
    if (!state) return kInvalidArgument;
    AudioConfig told = state->config;
    told.count = call.Told(told.count);
    call.PutRecord(config, told);
    return call.Done();
}

// Replaces the interface of that kind and number, or adds it.
extern "C" ULONG OrvM2MAV_AudioSetAVCFG(BYTE* profile, BYTE* kind, BYTE* id, PIFACETable* table)
{
    const Call call(EntryPoint::OrvM2MAV_AudioSetAVCFG, At(profile), At(kind), At(id));
    if (const ULONG refused = call.Refused()) return refused;
    State* state = FindProfile(profile);
    if (!state || !kind || !id || !table) return kInvalidArgument;
    AudioConfig& config = state->config;
    ULONG place = 0;
    while (place < config.count && (config.interfaces[place].kind != *kind || config.interfaces[place].id != *id))
        ++place;
    if (place == std::size(config.interfaces)) return kNoRoom;
    if (place == config.count) ++config.count;
    config.interfaces[place] = *table;
    config.interfaces[place].kind = *kind;
    config.interfaces[place].id = *id;
    return call.Done();
}

extern "C" ULONG OrvM2MAV_AudioNVDef()
{
    const Call call(EntryPoint::OrvM2MAV_AudioNVDef);
    if (const ULONG refused = call.Refused()) return refused;
    RestoreDefaults(TheModule().m2m_audio);
    return call.Done();
}

extern "C" ULONG OrvM2MAV_AudioSetLPBK(BYTE* enabled)
{
    const Call call(EntryPoint::OrvM2MAV_AudioSetLPBK, At(enabled));
    if (const ULONG refused = call.Refused()) return refused;
    if (!enabled || *enabled > 1) return kInvalidArgument;
    TheModule().m2m_audio.loopback = *enabled;
    return call.Done();
}

extern "C" ULONG OrvM2MAV_AudioGetTxVolume(BYTE* profile, WORD* volume)
{
    return GetValues(EntryPoint::OrvM2MAV_AudioGetTxVolume, profile, Value{volume, &State::tx_volume});
}

extern "C" ULONG OrvM2MAV_AudioSetTxVolume(BYTE* profile, WORD* volume)
{
    return SetValues(EntryPoint::OrvM2MAV_AudioSetTxVolume, profile, Value{volume, &State::tx_volume});
}

extern "C" ULONG OrvM2MAV_AudioGetMicGain(BYTE* profile, WORD* gain)
{
    return GetValues(EntryPoint::OrvM2MAV_AudioGetMicGain, profile, Value{gain, &State::mic_gain});
}

extern "C" ULONG OrvM2MAV_AudioSetMicGain(BYTE* profile, WORD* gain)
{
    return SetValues(EntryPoint::OrvM2MAV_AudioSetMicGain, profile, Value{gain, &State::mic_gain});
}

extern "C" ULONG OrvM2MAV_AudioGetVolDB(BYTE* profile, BYTE* generator, BYTE* level, WORD* gain)
{
    return GetValues(EntryPoint::OrvM2MAV_AudioGetVolDB, profile, Value{generator, &State::db_generator},
                     Value{level, &State::db_level}, Value{gain, &State::db_gain});
}

extern "C" ULONG OrvM2MAV_AudioSetVolDB(BYTE* profile, BYTE* generator, BYTE* level, WORD* gain)
{
    return SetValues(EntryPoint::OrvM2MAV_AudioSetVolDB, profile, Value{generator, &State::db_generator},
                     Value{level, &State::db_level}, Value{gain, &State::db_gain});
}

extern "C" ULONG OrvM2MAV_AudioGetAVTXG(BYTE* profile, WORD* gain)
{
    return GetValues(EntryPoint::OrvM2MAV_AudioGetAVTXG, profile, Value{gain, &State::tx_gain});
}

extern "C" ULONG OrvM2MAV_AudioSetAVTXG(BYTE* profile, WORD* gain)
{
    return SetValues(EntryPoint::OrvM2MAV_AudioSetAVTXG, profile, Value{gain, &State::tx_gain});
}

extern "C" ULONG OrvM2MAV_AudioGetAVRXG(BYTE* profile, WORD* gain)
{
    return GetValues(EntryPoint::OrvM2MAV_AudioGetAVRXG, profile, Value{gain, &State::rx_gain});
}

extern "C" ULONG OrvM2MAV_AudioSetAVRXG(BYTE* profile, WORD* gain)
{
    return SetValues(EntryPoint::OrvM2MAV_AudioSetAVRXG, profile, Value{gain, &State::rx_gain});
}

extern "C" ULONG OrvM2MAV_AudioGetAVEC(BYTE* profile, BYTE* mode)
{
    return GetValues(EntryPoint::OrvM2MAV_AudioGetAVEC, profile, Value{mode, &State::echo_cancel});
}

extern "C" ULONG OrvM2MAV_AudioSetAVEC(BYTE* profile, BYTE* mode)
{
    return SetValues(EntryPoint::OrvM2MAV_AudioSetAVEC, profile, Value{mode, &State::echo_cancel});
}

extern "C" ULONG OrvM2MAV_AudioGetAVNS(BYTE* profile, BYTE* mode)
{
    return GetValues(EntryPoint::OrvM2MAV_AudioGetAVNS, profile, Value{mode, &State::noise_suppression});
}

extern "C" ULONG OrvM2MAV_AudioSetAVNS(BYTE* profile, BYTE* mode)
{
    return SetValues(EntryPoint::OrvM2MAV_AudioSetAVNS, profile, Value{mode, &State::noise_suppression});
}

extern "C" ULONG OrvM2MAV_AudioPlayTone(BYTE* tone, BYTE* volume, WORD* duration)
{
    const Call call(EntryPoint::OrvM2MAV_AudioPlayTone, At(tone), At(volume), At(duration));
    if (const ULONG refused = call.Refused()) return refused;
    if (!tone || !volume || !duration) return kInvalidArgument;
    M2mAudioState& audio = TheModule().m2m_audio;
    audio.tone = *tone;
    audio.tone_volume = *volume;
    audio.tone_ms = *duration;
    return call.Done();
}
