// The second audio service: what belongs to each profile, and which is in use.
#pragma once

#include "talvek/gobi_audio_types.h"

namespace sim {

struct M2mProfileState {
    BYTE ear_mute, mic_mute, waiting_tone_mute, generator, volume, side_tone;
    WORD tx_volume, mic_gain, tx_gain, rx_gain;
    BYTE echo_cancel, noise_suppression;
    BYTE db_generator, db_level; // of the gain that was set last
    WORD db_gain;
    AudioConfig config;
};

struct M2mAudioState {
    BYTE profile; // in use
    BYTE loopback;
    BYTE tone, tone_volume; // that was played last
    WORD tone_ms;
    M2mProfileState profiles[8];
};

} // namespace sim
