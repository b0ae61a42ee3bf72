// The first audio service: what belongs to each profile of each generator, and which are in use.
#pragma once

#include "talvek/types.h"

namespace sim {

struct PcmFilterState {
    WORD enabled, stage, gain;
    ULONG coefficient;
};

struct AudioProfileState {
    BYTE ear_mute, mic_mute, volume;
    WORD mic_volume, side_tone;
    BYTE echo_cancel, noise_suppression, output_gain, input_gain;
    PcmFilterState tx, rx;
};

struct AudioState {
    BYTE generator, profile; // in use
    BYTE tone;               // the first octet of the tone that was played last
    // What AudioSetVolTLBConfig was given last.
    BYTE level_item, level;
    WORD codec_gain, digital_gain;
    AudioProfileState profiles[4][8]; // by generator, profile
};

} // namespace sim
