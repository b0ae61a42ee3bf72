// The methods of the binding that read the audio profile in use before they set or read anything.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/hooks.h"
#include "talvek/gobi_dll.h"
#include "tests/support/log_capture.h"
#include "tests/support/recording_library.h"

namespace {

using Lines = std::vector<std::string>;

// What the client holds. Each is alike to no other.
struct Client {
    BYTE octet = 0xA1;
    WORD word = 0xB1B2;
    WORD second = 0xC1C2;
    WORD third = 0xD1D2;
    ULONG wide = 0xE1E2E3E4;

    bool operator==(const Client& other) const
    {
        return octet == other.octet && word == other.word && second == other.second && third == other.third &&
               wide == other.wide;
    }
};

// What a vendor library gives that fills all it can.
constexpr ULONG kGiven = 0x12345678;

struct Row {
    const char* name;
    ULONG (*call)(COrvGobiDll& gobi, Client& client);
    const char* entry;     // the second one that it needs
    const char* arguments; // which that one is called with, by value
    void (*filled)(Client& client);
    const char* failure = "mpFnGetAudioProfile failed.";
};

#define OCTET(method) [](COrvGobiDll& gobi, Client& c) { return gobi.method(&c.octet); }
#define WORD_OF(method) [](COrvGobiDll& gobi, Client& c) { return gobi.method(&c.word); }
#define FILTER(method) [](COrvGobiDll& gobi, Client& c) { return gobi.method(&c.word, &c.second, &c.wide, &c.third); }
void Nothing(Client&) {}
void Octet(Client& client) { client.octet = static_cast<BYTE>(kGiven & 0xFF); }
void Word(Client& client) { client.word = static_cast<WORD>(kGiven & 0xFFFF); }
void Filter(Client& client)
{
    client.word = client.second = client.third = static_cast<WORD>(kGiven & 0xFFFF);
    client.wide = kGiven;
}

// The profile in use is generator 0x11, profile 0x22, ear mute 0x33, microphone mute 0x44, volume 0x55.
const Row kRows[] = {
    // clang-format off
    {"GetAudioProfile",      OCTET(GetAudioProfile),      "AudioGetPathByte", "0x11, 0x22, 0x01, 0xa1", Octet},
    {"SetAudioProfile",      OCTET(SetAudioProfile),      "AudioSetProfile",  "0x11, 0xa1, 0x33, 0x44, 0x55", Nothing},
    {"SetMICMuteStatus",     OCTET(SetMICMuteStatus),     "AudioSetProfile",  "0x11, 0x22, 0x33, 0xa1, 0x55", Nothing,
     "mpFnGetAudioProfile failed. 0xf0e1d2c3"},
    {"SetMICMuteStatus, null", [](COrvGobiDll& gobi, Client&) { return gobi.SetMICMuteStatus(nullptr); },
                                                          "AudioSetProfile",  "0x11, 0x22, 0x33, null, 0x55", Nothing,
     "mpFnGetAudioProfile failed. 0xf0e1d2c3"},
    {"SetSpeakerMuteStatus", OCTET(SetSpeakerMuteStatus), "AudioSetProfile",  "0x11, 0x22, 0xa1, 0x44, 0x55", Nothing},
    {"SetReceiverVolume",    OCTET(SetReceiverVolume),    "AudioSetProfile",  "0x11, 0x22, 0x33, 0x44, 0xa1", Nothing},
    {"SetMicVolume", WORD_OF(SetMicVolume), "AudioSetAudioPath",
     "0x11, 0x22, 0xb1b2, null, null, null, null, null, null, null, null, null, null, null, null, null", Nothing},
    {"GetMicVolume", WORD_OF(GetMicVolume), "AudioGetPathWord", "0x11, 0x22, 0x02, 0xb1b2", Word},
    {"SetEchoCancelMode", OCTET(SetEchoCancelMode), "AudioSetAudioPath",
     "0x11, 0x22, null, 0xa1, null, null, null, null, null, null, null, null, null, null, null, null", Nothing},
    {"GetEchoCancelMode", OCTET(GetEchoCancelMode), "AudioGetPathByte", "0x11, 0x22, 0x03, 0xa1", Octet},
    {"SetNoiseSuppression", OCTET(SetNoiseSuppression), "AudioSetAudioPath",
     "0x11, 0x22, null, null, 0xa1, null, null, null, null, null, null, null, null, null, null, null", Nothing},
    {"GetNoiseSuppression", OCTET(GetNoiseSuppression), "AudioGetPathByte", "0x11, 0x22, 0x04, 0xa1", Octet},
    {"SetAutoOutputGain", OCTET(SetAutoOutputGain), "AudioSetAudioPath",
     "0x11, 0x22, null, null, null, 0xa1, null, null, null, null, null, null, null, null, null, null", Nothing},
    {"GetAutoOutputGain", OCTET(GetAutoOutputGain), "AudioGetPathByte", "0x11, 0x22, 0x05, 0xa1", Octet},
    {"SetAutoInputGain", OCTET(SetAutoInputGain), "AudioSetAudioPath",
     "0x11, 0x22, null, null, null, null, 0xa1, null, null, null, null, null, null, null, null, null", Nothing},
    {"GetAutoInputGain", OCTET(GetAutoInputGain), "AudioGetPathByte", "0x11, 0x22, 0x06, 0xa1", Octet},
    {"SetTXPCMFilter", FILTER(SetTXPCMFilter), "AudioSetAudioPath",
     "0x11, 0x22, null, null, null, null, null, 0xb1b2, 0xc1c2, 0xe1e2e3e4, 0xd1d2, null, null, null, null, null", Nothing},
    {"GetTXPCMFilter", FILTER(GetTXPCMFilter), "AudioGetPathPCMFilter",
     "0x11, 0x22, 0x07, 0xb1b2, 0xc1c2, 0xe1e2e3e4, 0xd1d2", Filter},
    {"SetRXPCMFilter", FILTER(SetRXPCMFilter), "AudioSetAudioPath",
     "0x11, 0x22, null, null, null, null, null, null, null, null, null, 0xb1b2, 0xc1c2, 0xe1e2e3e4, 0xd1d2, null", Nothing},
    {"GetRXPCMFilter", FILTER(GetRXPCMFilter), "AudioGetPathPCMFilter",
     "0x11, 0x22, 0x08, 0xb1b2, 0xc1c2, 0xe1e2e3e4, 0xd1d2", Filter},
    {"SetRXGainLevel", [](COrvGobiDll& gobi, Client& c) { return gobi.SetRXGainLevel(&c.octet, &c.word, &c.second); },
     "AudioSetVolTLBConfig", "0x11, 0x22, 0x0d, 0xa1, 0xb1b2, 0xc1c2", Nothing},
    {"SetSideToneGain", WORD_OF(SetSideToneGain), "AudioSetAudioPath",
     "0x11, 0x22, null, null, null, null, null, null, null, null, null, null, null, null, null, 0xb1b2", Nothing},
    {"GetSideToneGain", WORD_OF(GetSideToneGain), "AudioGetPathWord", "0x11, 0x22, 0x09, 0xb1b2", Word},
    // clang-format on
};
#undef OCTET
#undef WORD_OF
#undef FILTER

const char kProfileRead[] = "AudioGetProfile(0x00, 0x00, 0x00, 0x00, 0x00)";

TEST(GobiAudio, GoesOnWithTheProfileThatItRead)
{
    RecordingLibrary library;
    COrvGobiDll gobi;
    ASSERT_TRUE(gobi.Initialize());
    LogCapture log;
    for (const ULONG status : {0u, 0xF0E1D2C3u}) {
        for (const Row& row : kRows) {
            SCOPED_TRACE(row.name);
            library.Reset();
            library.Answer("AudioGetProfile", 0, {0x11, 0x22, 0x33, 0x44, 0x55});
            const ULONG given = row.filled == Nothing ? kRecordingLeaves : kGiven;
            library.Answer(row.entry, status,
                           {kRecordingLeaves, kRecordingLeaves, kRecordingLeaves, given, given, given, given});
            Client client, expected;
            row.filled(expected);
            EXPECT_EQ(row.call(gobi, client), status);
            EXPECT_EQ(library.CallsByValue(),
                      (Lines{kProfileRead, std::string(row.entry) + "(" + row.arguments + ")"}));
            EXPECT_TRUE(client == expected);
        }
    }
    EXPECT_EQ(log.Texts(), Lines());
}

TEST(GobiAudio, StopsWhenTheProfileCannotBeRead)
{
    RecordingLibrary library;
    COrvGobiDll gobi;
    ASSERT_TRUE(gobi.Initialize());
    LogCapture log;
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.name);
        library.Reset();
        library.Answer("AudioGetProfile", 0xF0E1D2C3);
        log.Clear();
        Client client;
        EXPECT_EQ(row.call(gobi, client), 0xF0E1D2C3u);
        EXPECT_EQ(library.CallsByValue(), Lines{kProfileRead});
        EXPECT_TRUE(client == Client());
        EXPECT_EQ(log.Texts(), Lines{row.failure});
    }
}

TEST(GobiAudio, Returns1WithoutEitherEntryPoint)
{
    RecordingLibrary library;
    LogCapture log;
    for (const Row& row : kRows) {
        for (const char* hidden : {"AudioGetProfile", row.entry}) {
            SCOPED_TRACE(std::string(row.name) + " without " + hidden);
            platform_hooks::HideSymbol(hidden);
            COrvGobiDll gobi;
            ASSERT_TRUE(gobi.Initialize());
            platform_hooks::Reset();
            Client client;
            EXPECT_EQ(row.call(gobi, client), 1u);
            EXPECT_EQ(library.Calls(), Lines());
            EXPECT_TRUE(client == Client());
        }
    }
    EXPECT_EQ(log.Texts(), Lines());
}

} // namespace
