// The first audio service. Every setting belongs to a profile of a generator.
#include <iterator>

#include "sim/call.h"
#include "sim/fields.h"
#include "sim/inputs.h"
#include "sim/reset.h"

namespace sim {

static constexpr Field kFields[] = {
    NumberField("audio.generator", g_module.audio.generator, 3),
    NumberField("audio.profile", g_module.audio.profile, 7),
    NumberField("audio.tone", g_module.audio.tone),
    NumberField("audio.level-item", g_module.audio.level_item),
    NumberField("audio.level", g_module.audio.level),
    NumberField("audio.codec-gain", g_module.audio.codec_gain),
    NumberField("audio.digital-gain", g_module.audio.digital_gain),
};
const FieldTable kAudioFields = {kFields, std::size(kFields)};

void ResetAudio()
{
    AudioState& audio = TheModule().audio;
    audio = {};
    for (auto& generator : audio.profiles) {
        for (AudioProfileState& profile : generator) {
            profile.volume = 5;
            profile.mic_volume = 0x2000;
            profile.echo_cancel = 1;
            profile.noise_suppression = 1;
        }
    }
}

// Null for a null pointer, or for a generator or a profile that there is not.
static AudioProfileState* FindProfile(const BYTE* generator, const BYTE* profile)
{
    auto& profiles = TheModule().audio.profiles;
    if (!generator || *generator >= std::size(profiles)) return nullptr;
    if (!profile || *profile >= std::size(profiles[0])) return nullptr;
    return &profiles[*generator][*profile];
}

// What is to be changed of a path; null for what stays.
struct PcmFilterChange {
    const WORD* enabled;
    const WORD* stage;
    const ULONG* coefficient;
    const WORD* gain;
};
struct PathChange {
    const WORD* mic_volume;
    const BYTE* echo_cancel;
    const BYTE* noise_suppression;
    const BYTE* output_gain;
    const BYTE* input_gain;
    PcmFilterChange tx, rx;
    const WORD* side_tone;
};

static bool IsSwitch(const WORD* value) { return !value || *value <= 1; }

static void ChangeFilter(PcmFilterState& filter, const PcmFilterChange& change)
{
    Take(filter.enabled, change.enabled);
    Take(filter.stage, change.stage);
    Take(filter.coefficient, change.coefficient);
    Take(filter.gain, change.gain);
}

static ULONG ChangePath(const Call& call, const BYTE* generator, const BYTE* profile, const PathChange& change)
{
    if (const ULONG refused = call.Refused()) return refused;
    AudioProfileState* kept = FindProfile(generator, profile);
    if (!kept || !IsSwitch(change.tx.enabled) || !IsSwitch(change.rx.enabled)) return kInvalidArgument;
    Take(kept->mic_volume, change.mic_volume);
    Take(kept->echo_cancel, change.echo_cancel);
    Take(kept->noise_suppression, change.noise_suppression);
    Take(kept->output_gain, change.output_gain);
    Take(kept->input_gain, change.input_gain);
    ChangeFilter(kept->tx, change.tx);
    ChangeFilter(kept->rx, change.rx);
    Take(kept->side_tone, change.side_tone);
    return call.Done();
}

// Where a path keeps an item, or null.
static const BYTE* ByteOf(const AudioProfileState& path, BYTE item)
{
    switch (item) {
    case GOBI_AUDIO_PATH_PROFILE:
        return &TheModule().audio.profile;
    case GOBI_AUDIO_PATH_ECHO_CANCEL:
        return &path.echo_cancel;
    case GOBI_AUDIO_PATH_NOISE_SUPPRESSION:
        return &path.noise_suppression;
    case GOBI_AUDIO_PATH_OUTPUT_GAIN:
        return &path.output_gain;
    case GOBI_AUDIO_PATH_INPUT_GAIN:
        return &path.input_gain;
    default:
        return nullptr;
    }
}
static const WORD* WordOf(const AudioProfileState& path, BYTE item)
{
    if (item == GOBI_AUDIO_PATH_MIC_VOLUME) return &path.mic_volume;
    return item == GOBI_AUDIO_PATH_SIDE_TONE ? &path.side_tone : nullptr;
}
static const PcmFilterState* FilterOf(const AudioProfileState& path, BYTE item)
{
    if (item == GOBI_AUDIO_PATH_TX_FILTER) return &path.tx;
    return item == GOBI_AUDIO_PATH_RX_FILTER ? &path.rx : nullptr;
}

// The item of the path that the three inputs name, as `find` finds it; null when there is none.
template <class Item>
static const Item* FindItem(const BYTE* generator, const BYTE* profile, const BYTE* item,
                            const Item* (*find)(const AudioProfileState& path, BYTE item))
{
    const AudioProfileState* path = FindProfile(generator, profile);
    return path && item ? find(*path, *item) : nullptr;
}

} // namespace sim

using namespace sim;

extern "C" ULONG AudioGetProfile(BYTE* generator, BYTE* profile, BYTE* ear_mute, BYTE* mic_mute, BYTE* volume)
{
    Call call(EntryPoint::AudioGetProfile);
    if (const ULONG refused = call.Refused()) return refused;
    const AudioState& audio = TheModule().audio;
    const AudioProfileState& now = audio.profiles[audio.generator][audio.profile];
    call.Put(generator, audio.generator);
    call.Put(profile, audio.profile);
    call.Put(ear_mute, now.ear_mute);
    call.Put(mic_mute, now.mic_mute);
    call.Put(volume, now.volume);
    return call.Done();
}

// Takes the profile into use.
extern "C" ULONG AudioSetProfile(BYTE* generator, BYTE* profile, BYTE* ear_mute, BYTE* mic_mute, BYTE* volume)
{
    Call call(EntryPoint::AudioSetProfile, At(generator), At(profile), At(ear_mute), At(mic_mute), At(volume));
    if (const ULONG refused = call.Refused()) return refused;
    AudioProfileState* kept = FindProfile(generator, profile);
    if (!kept || !ear_mute || *ear_mute > 1 || !mic_mute || *mic_mute > 1 || !volume) return kInvalidArgument;
    TheModule().audio.generator = *generator;
    TheModule().audio.profile = *profile;
    kept->ear_mute = *ear_mute;
    kept->mic_mute = *mic_mute;
    kept->volume = *volume;
    return call.Done();
}

extern "C" ULONG AudioSetVolTLBConfig(BYTE* generator, BYTE* profile, BYTE* item, BYTE* level, WORD* codec_gain,
                                      WORD* digital_gain)
{
    Call call(EntryPoint::AudioSetVolTLBConfig, At(generator), At(profile), At(item), At(level), At(codec_gain),
              At(digital_gain));
    if (const ULONG refused = call.Refused()) return refused;
    if (!FindProfile(generator, profile) || !item || !level || !codec_gain || !digital_gain) return kInvalidArgument;
    AudioState& audio = TheModule().audio;
    audio.level_item = *item;
    audio.level = *level;
    audio.codec_gain = *codec_gain;
    audio.digital_gain = *digital_gain;
    return call.Done();
}

extern "C" ULONG AudioPlayAudioTone(BYTE* tone)
{
    Call call(EntryPoint::AudioPlayAudioTone, At(tone));
    if (const ULONG refused = call.Refused()) return refused;
    if (!tone) return kInvalidArgument;
    TheModule().audio.tone = *tone;
    return call.Done();
}

extern "C" ULONG AudioSetAudioPath(BYTE* generator, BYTE* profile, WORD* mic_volume, BYTE* echo_cancel,
                                   BYTE* noise_suppression, BYTE* output_gain, BYTE* input_gain, WORD* tx_enabled,
                                   WORD* tx_stage, ULONG* tx_coefficient, WORD* tx_gain, WORD* rx_enabled,
                                   WORD* rx_stage, ULONG* rx_coefficient, WORD* rx_gain, WORD* side_tone)
{
    const Call call(EntryPoint::AudioSetAudioPath, At(generator), At(profile), At(mic_volume), At(echo_cancel),
                    At(noise_suppression), At(output_gain), At(input_gain), At(tx_enabled), At(tx_stage),
                    At(tx_coefficient), At(tx_gain), At(rx_enabled), At(rx_stage), At(rx_coefficient), At(rx_gain),
                    At(side_tone));
    return ChangePath(call, generator, profile,
                      {mic_volume,
                       echo_cancel,
                       noise_suppression,
                       output_gain,
                       input_gain,
                       {tx_enabled, tx_stage, tx_coefficient, tx_gain},
                       {rx_enabled, rx_stage, rx_coefficient, rx_gain},
                       side_tone});
}

extern "C" ULONG AudioGetPathByte(BYTE* generator, BYTE* profile, BYTE* item, BYTE* value)
{
    Call call(EntryPoint::AudioGetPathByte, At(generator), At(profile), At(item));
    if (const ULONG refused = call.Refused()) return refused;
    const BYTE* kept = FindItem(generator, profile, item, ByteOf);
    if (!kept) return kInvalidArgument;
    call.Put(value, *kept);
    return call.Done();
}

extern "C" ULONG AudioGetPathWord(BYTE* generator, BYTE* profile, BYTE* item, WORD* value)
{
    Call call(EntryPoint::AudioGetPathWord, At(generator), At(profile), At(item));
    if (const ULONG refused = call.Refused()) return refused;
    const WORD* kept = FindItem(generator, profile, item, WordOf);
    if (!kept) return kInvalidArgument;
    call.Put(value, *kept);
    return call.Done();
}

extern "C" ULONG AudioGetPathPCMFilter(BYTE* generator, BYTE* profile, BYTE* item, WORD* enabled, WORD* stage,
                                       ULONG* coefficient, WORD* gain)
{
    Call call(EntryPoint::AudioGetPathPCMFilter, At(generator), At(profile), At(item));
    if (const ULONG refused = call.Refused()) return refused;
    const PcmFilterState* kept = FindItem(generator, profile, item, FilterOf);
    if (!kept) return kInvalidArgument;
    call.Put(enabled, kept->enabled);
    call.Put(stage, kept->stage);
    call.Put(coefficient, kept->coefficient);
    call.Put(gain, kept->gain);
    return call.Done();
}
