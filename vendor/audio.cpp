// The vendor's first audio service. What it sets or reads belongs to a generator and a profile, so each method but
// PlayAudioTone first reads those that are in use, and does nothing when they cannot be read.

#include "vendor/forward.h"

namespace {

struct AudioProfile {
    BYTE generator, profile, ear_mute, mic_mute, volume;
};

// Reads the profile in use and hands it, with the operation, to `step`. Both entry points must be there. A text that
// has a place for it prints the status.
template <class Operation, class Step>
ULONG WithProfile(const GobiEntryPoints& entry, Operation operation, Step step,
                  const char* failed = "mpFnGetAudioProfile failed.")
{
    if (!entry.AudioGetProfile || !operation) return kEntryPointMissing;
    AudioProfile now = {};
    const ULONG status = entry.AudioGetProfile(&now.generator, &now.profile, &now.ear_mute, &now.mic_mute, &now.volume);
    if (status != 0) {
        LOG_C(failed, status);
        return status;
    }
    return step(now, operation);
}

struct PcmFilter {
    WORD* enabled = nullptr;
    WORD* stage = nullptr;
    ULONG* coefficient = nullptr;
    WORD* gain = nullptr;
};

// What may be set of the path; null for what stays as it is.
struct AudioPath {
    WORD* mic_volume = nullptr;
    BYTE* echo_cancel = nullptr;
    BYTE* noise_suppression = nullptr;
    BYTE* output_gain = nullptr;
    BYTE* input_gain = nullptr;
    PcmFilter tx;
    PcmFilter rx;
    WORD* side_tone = nullptr;
};

ULONG SetPath(const GobiEntryPoints& entry, const AudioPath& path)
{
    return WithProfile(entry, entry.AudioSetAudioPath, [&path](AudioProfile& now, auto set) {
        return set(&now.generator, &now.profile, path.mic_volume, path.echo_cancel, path.noise_suppression,
                   path.output_gain, path.input_gain, path.tx.enabled, path.tx.stage, path.tx.coefficient, path.tx.gain,
                   path.rx.enabled, path.rx.stage, path.rx.coefficient, path.rx.gain, path.side_tone);
    });
}

template <class... Values>
ULONG GetPath(const GobiEntryPoints& entry, ULONG(ORV_VENDOR_CALL* operation)(BYTE*, BYTE*, BYTE*, Values...),
              BYTE item, Values... values)
{
    return WithProfile(entry, operation, [&item, values...](AudioProfile& now, auto get) {
        return get(&now.generator, &now.profile, &item, values...);
    });
}

} // namespace

ULONG COrvGobiDll::GetAudioProfile(BYTE* profile)
{
    return GetPath(m_entry, m_entry.AudioGetPathByte, GOBI_AUDIO_PATH_PROFILE, profile);
}

ULONG COrvGobiDll::SetAudioProfile(BYTE* profile)
{
    return WithProfile(m_entry, m_entry.AudioSetProfile, [profile](AudioProfile& now, auto set) {
        return set(&now.generator, profile, &now.ear_mute, &now.mic_mute, &now.volume);
    });
}

ULONG COrvGobiDll::SetMICMuteStatus(BYTE* mute)
{
    return WithProfile(
        m_entry, m_entry.AudioSetProfile,
        [mute](AudioProfile& now, auto set) {
            return set(&now.generator, &now.profile, &now.ear_mute, mute, &now.volume);
        },
        "mpFnGetAudioProfile failed. 0x%x");
}

ULONG COrvGobiDll::SetSpeakerMuteStatus(BYTE* mute)
{
    return WithProfile(m_entry, m_entry.AudioSetProfile, [mute](AudioProfile& now, auto set) {
        return set(&now.generator, &now.profile, mute, &now.mic_mute, &now.volume);
    });
}

ULONG COrvGobiDll::SetReceiverVolume(BYTE* volume)
{
    return WithProfile(m_entry, m_entry.AudioSetProfile, [volume](AudioProfile& now, auto set) {
        return set(&now.generator, &now.profile, &now.ear_mute, &now.mic_mute, volume);
    });
}

ULONG COrvGobiDll::SetMicVolume(WORD* volume)
{
    AudioPath path;
    path.mic_volume = volume;
    return SetPath(m_entry, path);
}

ULONG COrvGobiDll::GetMicVolume(WORD* volume)
{
    return GetPath(m_entry, m_entry.AudioGetPathWord, GOBI_AUDIO_PATH_MIC_VOLUME, volume);
}

ULONG COrvGobiDll::SetEchoCancelMode(BYTE* mode)
{
    AudioPath path;
    path.echo_cancel = mode;
    return SetPath(m_entry, path);
}

ULONG COrvGobiDll::GetEchoCancelMode(BYTE* mode)
{
    return GetPath(m_entry, m_entry.AudioGetPathByte, GOBI_AUDIO_PATH_ECHO_CANCEL, mode);
}

ULONG COrvGobiDll::SetNoiseSuppression(BYTE* mode)
{
    AudioPath path;
    path.noise_suppression = mode;
    return SetPath(m_entry, path);
}

ULONG COrvGobiDll::GetNoiseSuppression(BYTE* mode)
{
    return GetPath(m_entry, m_entry.AudioGetPathByte, GOBI_AUDIO_PATH_NOISE_SUPPRESSION, mode);
}

ULONG COrvGobiDll::SetAutoOutputGain(BYTE* mode)
{
    AudioPath path;
    path.output_gain = mode;
    return SetPath(m_entry, path);
}

ULONG COrvGobiDll::GetAutoOutputGain(BYTE* mode)
{
    return GetPath(m_entry, m_entry.AudioGetPathByte, GOBI_AUDIO_PATH_OUTPUT_GAIN, mode);
}

ULONG COrvGobiDll::SetAutoInputGain(BYTE* mode)
{
    AudioPath path;
    path.input_gain = mode;
    return SetPath(m_entry, path);
}

ULONG COrvGobiDll::GetAutoInputGain(BYTE* mode)
{
    return GetPath(m_entry, m_entry.AudioGetPathByte, GOBI_AUDIO_PATH_INPUT_GAIN, mode);
}

ULONG COrvGobiDll::SetTXPCMFilter(WORD* enabled, WORD* stage, ULONG* coefficient, WORD* gain)
{
    AudioPath path;
    path.tx = {enabled, stage, coefficient, gain};
    return SetPath(m_entry, path);
}

ULONG COrvGobiDll::GetTXPCMFilter(WORD* enabled, WORD* stage, ULONG* coefficient, WORD* gain)
{
    return GetPath(m_entry, m_entry.AudioGetPathPCMFilter, GOBI_AUDIO_PATH_TX_FILTER, enabled, stage, coefficient,
                   gain);
}

ULONG COrvGobiDll::SetRXPCMFilter(WORD* enabled, WORD* stage, ULONG* coefficient, WORD* gain)
{
    AudioPath path;
    path.rx = {enabled, stage, coefficient, gain};
    return SetPath(m_entry, path);
}

ULONG COrvGobiDll::GetRXPCMFilter(WORD* enabled, WORD* stage, ULONG* coefficient, WORD* gain)
{
    return GetPath(m_entry, m_entry.AudioGetPathPCMFilter, GOBI_AUDIO_PATH_RX_FILTER, enabled, stage, coefficient,
                   gain);
}

ULONG COrvGobiDll::SetRXGainLevel(BYTE* level, WORD* codecGain, WORD* digitalGain)
{
    return WithProfile(m_entry, m_entry.AudioSetVolTLBConfig,
                       [level, codecGain, digitalGain](AudioProfile& now, auto set) {
                           BYTE item = GOBI_AUDIO_LEVEL_RX_GAIN;
                           return set(&now.generator, &now.profile, &item, level, codecGain, digitalGain);
                       });
}

ULONG COrvGobiDll::SetSideToneGain(WORD* gain)
{
    AudioPath path;
    path.side_tone = gain;
    return SetPath(m_entry, path);
}

ULONG COrvGobiDll::GetSideToneGain(WORD* gain)
{
    return GetPath(m_entry, m_entry.AudioGetPathWord, GOBI_AUDIO_PATH_SIDE_TONE, gain);
}

ULONG COrvGobiDll::PlayAudioTone(BYTE* tone)
{
    if (!m_entry.AudioPlayAudioTone) return kEntryPointMissing;
    const ULONG status = m_entry.AudioPlayAudioTone(tone);
    if (status != 0) LOG_C("mpFnPlayAudioTone failed pTone = 0x%x.", Low32(tone));
    return status;
}
