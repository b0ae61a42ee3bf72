/*
 * Constants and records of the vendor's two audio services. See talvek/gobi_types.h for what holds for all records.
 */
#ifndef TALVEK_GOBI_AUDIO_TYPES_H
#define TALVEK_GOBI_AUDIO_TYPES_H

#include "talvek/types.h"

/* What of the audio path "AudioGetPathByte", "AudioGetPathWord" and "AudioGetPathPCMFilter" are asked for. */
enum {
    GOBI_AUDIO_PATH_PROFILE = 1,           /* an octet: the profile in use */
    GOBI_AUDIO_PATH_MIC_VOLUME = 2,        /* a word */
    GOBI_AUDIO_PATH_ECHO_CANCEL = 3,       /* an octet */
    GOBI_AUDIO_PATH_NOISE_SUPPRESSION = 4, /* an octet */
    GOBI_AUDIO_PATH_OUTPUT_GAIN = 5,       /* an octet: automatic gain of what is heard */
    GOBI_AUDIO_PATH_INPUT_GAIN = 6,        /* an octet: automatic gain of what is said */
    GOBI_AUDIO_PATH_TX_FILTER = 7,         /* a PCM filter */
    GOBI_AUDIO_PATH_RX_FILTER = 8,         /* a PCM filter */
    GOBI_AUDIO_PATH_SIDE_TONE = 9          /* a word */
};

/* Which level of the volume table "AudioSetVolTLBConfig" sets. */
enum { GOBI_AUDIO_LEVEL_RX_GAIN = 13 };

enum { GOBI_MAX_AUDIO_INTERFACES = 4 };

/* One interface over which speech goes in and out. */
typedef struct PIFACETable {
    BYTE kind;         /* 0 analogue, 1 PCM, 2 USB */
    BYTE id;           /* which one of its kind, from 0 */
    BYTE clock;        /* of a PCM interface: 0 given from outside, 1 given by the module */
    BYTE format;       /* 0 linear, 1 A-law, 2 mu-law (ITU-T G.711) */
    BYTE frameSync;    /* 0 short, 1 long */
    BYTE slot;         /* of a PCM frame, from 0 */
    WORD sampleRateHz; /* 8000 or 16000 */
} PIFACETable;

/* The interfaces of a profile. */
typedef struct AudioConfig {
    BYTE profile;
    BYTE count; /* 0 to 4 */
    PIFACETable interfaces[GOBI_MAX_AUDIO_INTERFACES];
} AudioConfig;

#ifdef __cplusplus
static_assert(sizeof(PIFACETable) == 8 && offsetof(PIFACETable, sampleRateHz) == 6, "no hidden padding");
static_assert(sizeof(AudioConfig) == 34 && offsetof(AudioConfig, interfaces) == 2, "no hidden padding");
#endif

#endif /* TALVEK_GOBI_AUDIO_TYPES_H */
