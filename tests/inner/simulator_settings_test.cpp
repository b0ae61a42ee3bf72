// Services of the simulated module that keep what they are told: position, firmware images and audio.

#include <gtest/gtest.h>

#include <string.h>

#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "tests/support/sim_entry.h"
#include "tests/support/sim_harness.h"

namespace {

class SimulatorSettings : public ::testing::Test {
protected:
    SimHarness sim{"umts"};

    // Two values in one, as the scenario sees them.
    std::string Fields(const std::vector<const char*>& names)
    {
        std::string text;
        for (const char* name : names)
            text += (text.empty() ? "" : " ") + sim.Command(std::string("get ") + name);
        return text;
    }
};

// Calls `entry` with places of its own for the outputs and tells what they hold, joined by blanks.
template <class... T>
std::string Read(ULONG (*entry)(T*...))
{
    std::tuple<T...> values = {};
    const ULONG status = std::apply([&](auto&... value) { return entry(&value...); }, values);
    if (status != 0) return "status " + std::to_string(status);
    std::string text;
    std::apply([&](auto&... value) { ((text += (text.empty() ? "" : " ") + std::to_string(value)), ...); }, values);
    return text;
}

// --- position
// ---------------------------------------------------------------------------------------------------------

TEST_F(SimulatorSettings, PositionKeepsWhatIsSetAndRefusesTheRest)
{
    WORD sentences = 0x1FF;
    const struct {
        const char* name;
        std::function<ULONG()> set;
        ULONG status;
        std::function<std::string()> get;
        const char* values;
    } rows[] = {
        {"defaults of a fix", [] { return SIM_ENTRY(SetPDSDefaults)(7, 1, 0xFFFFFFFF, 30); }, 0,
         [] { return Read(SIM_ENTRY(GetPDSDefaults)); }, "7 1 4294967295 30"},
        {"no time limit", [] { return SIM_ENTRY(SetPDSDefaults)(1, 0, 2, 3); }, 4,
         [] { return Read(SIM_ENTRY(GetPDSDefaults)); }, "7 1 4294967295 30"},
        {"downloads", [] { return SIM_ENTRY(SetXTRAAutomaticDownload)(1, 48); }, 0,
         [] { return Read(SIM_ENTRY(GetXTRAAutomaticDownload)); }, "1 48"},
        {"downloads, neither", [] { return SIM_ENTRY(SetXTRAAutomaticDownload)(2, 1); }, 4,
         [] { return Read(SIM_ENTRY(GetXTRAAutomaticDownload)); }, "1 48"},
        {"network", [] { return SIM_ENTRY(SetXTRANetwork)(8); }, 0, [] { return Read(SIM_ENTRY(GetXTRANetwork)); },
         "8"},
        {"validity", [] { return SIM_ENTRY(SetXTRAValidity)(1693, 10079, 168); }, 0,
         [] { return Read(SIM_ENTRY(GetXTRAValidity)); }, "1693 10079 168"},
        {"beyond the week", [] { return SIM_ENTRY(SetXTRAValidity)(1, 10080, 1); }, 4,
         [] { return Read(SIM_ENTRY(GetXTRAValidity)); }, "1693 10079 168"},
        {"reports", [&] { return SIM_ENTRY(SetNMEAConfig)(1, 2, 5, &sentences); }, 0,
         [] { return Read(SIM_ENTRY(GetNMEAConfig)); }, "1 2 5 511"},
        {"no sentences", [] { return SIM_ENTRY(SetNMEAConfig)(0, 0, 0, nullptr); }, 4,
         [] { return Read(SIM_ENTRY(GetNMEAConfig)); }, "1 2 5 511"},
        {"server", [] { return SIM_ENTRY(SetAGPSConfig)(0xC0000201, 65535); }, 0,
         [] { return Read(SIM_ENTRY(GetAGPSConfig)); }, "3221225985 65535"},
        {"no port", [] { return SIM_ENTRY(SetAGPSConfig)(1, 0); }, 4, [] { return Read(SIM_ENTRY(GetAGPSConfig)); },
         "3221225985 65535"},
        {"fix with the port", [] { return SIM_ENTRY(SetPortAutomaticTracking)(1); }, 0,
         [] { return Read(SIM_ENTRY(GetPortAutomaticTracking)); }, "1"},
        {"client", [] { return SIM_ENTRY(SetXTRAEmbeddedClient)(1, 1); }, 0,
         [this] {
             return Fields({"xtra.client", "xtra.client-persistent"});
         },
         "1 1"},
        {"client, neither", [] { return SIM_ENTRY(SetXTRAEmbeddedClient)(0, 2); }, 4,
         [this] {
             return Fields({"xtra.client", "xtra.client-persistent"});
         },
         "1 1"},
        {"time", [] { return SIM_ENTRY(PDSInjectTimeReference)(0x123456789ABC, 300); }, 0,
         [this] {
             return Fields({"position.time", "position.uncertainty"});
         },
         "20015998343868 300"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.set(), row.status) << row.name;
        EXPECT_EQ(row.get(), row.values) << row.name;
    }
    EXPECT_EQ(sim.Journal().back(), "PDSInjectTimeReference(20015998343868, 300)");
}

TEST_F(SimulatorSettings, AFixStartsWithTheServiceWhereThatIsWanted)
{
    const auto state = [] { return Read(SIM_ENTRY(GetPDSState)); };
    EXPECT_EQ(SIM_ENTRY(SetPDSState)(1), 0u);
    EXPECT_EQ(state(), "1 0");
    EXPECT_EQ(SIM_ENTRY(SetServiceAutomaticTracking)(1), 0u);
    EXPECT_EQ(Read(SIM_ENTRY(GetServiceAutomaticTracking)), "1");
    EXPECT_EQ(state(), "1 1");
    EXPECT_EQ(SIM_ENTRY(SetPDSState)(2), 4u);
    EXPECT_EQ(state(), "1 1");
    EXPECT_EQ(SIM_ENTRY(SetPDSState)(0), 0u);
    EXPECT_EQ(state(), "0 0");
    EXPECT_EQ(SIM_ENTRY(SetPDSState)(1), 0u);
    EXPECT_EQ(state(), "1 1");
    SIM_ENTRY(SetServiceAutomaticTracking)(0);
    SIM_ENTRY(SetXTRAEmbeddedClient)(1, 0);
    sim.Command("module leaves");
    EXPECT_EQ(SIM_ENTRY(SetPDSState)(0), 6u);
    sim.Command("module returns");
    EXPECT_EQ(state(), "1 0") << "a fix ends with the module's life";
    EXPECT_EQ(sim.Command("get xtra.client"), "0") << "it was not to outlive it";
}

TEST_F(SimulatorSettings, AnAssistanceFileIsLoadedAndForgotten)
{
    ULONG mask = 0;
    EXPECT_EQ(SIM_ENTRY(ForceXTRADownload)(), 0u);
    sim.Command("advance 1999");
    EXPECT_EQ(Read(SIM_ENTRY(GetXTRAValidity)), "0 0 0");
    sim.Command("advance 1");
    EXPECT_EQ(Read(SIM_ENTRY(GetXTRAValidity)), "0 0 168");
    SIM_ENTRY(PDSInjectTimeReference)(5, 6);
    EXPECT_EQ(SIM_ENTRY(ResetPDSData)(nullptr, nullptr), 0u);
    EXPECT_EQ(SIM_ENTRY(ResetPDSData)(&mask, nullptr), 0u);
    EXPECT_EQ(Fields({"xtra.duration", "position.time"}), "168 5") << "nothing was to be forgotten";
    mask = 0x10;
    EXPECT_EQ(SIM_ENTRY(ResetPDSData)(&mask, &mask), 0u);
    EXPECT_EQ(Fields({"xtra.duration", "position.time", "position.reset-gps", "position.reset-cell"}), "0 0 16 16");
    sim.Command("set network.registration 3");
    EXPECT_EQ(SIM_ENTRY(ForceXTRADownload)(), 12u);
    EXPECT_EQ(sim.Command("queue"), "");
}

// --- images
// -----------------------------------------------------------------------------------------------------------

TEST_F(SimulatorSettings, TellsOfTheImagesInItsStore)
{
    sim.Command("set images.store \"C:\\\\\\xC3\\xA9\\xF0\\x9D\\x84\\x9E\"");
    sim.Command("set images.infos 1:0:5:0:1 2:1:103:6:7");
    const std::u16string store = u"C:\\\u00E9\U0001D11E";
    const struct {
        WORD room;
        std::u16string text; // of a buffer of x
    } stores[] = {{0, u"xxxxxxxx"}, {5, u"C:\\\u00E9xxxx"}, {6, store + u"xx"}, {8, store + u'\0' + u'x'}};
    for (const auto& row : stores) {
        std::u16string buffer(8, u'x');
        EXPECT_EQ(SIM_ENTRY(GetImageStoreW)(row.room, reinterpret_cast<WCHAR*>(&buffer[0])), 0u);
        EXPECT_EQ(buffer, row.text) << row.room;
    }
    EXPECT_EQ(SIM_ENTRY(GetImageStoreW)(8, nullptr), 4u);
    const struct {
        const char* octets;
        const char16_t* text;
    } broken[] = {
        {"a\\xFFb", u"a\uFFFDb"},       {"a\\xC3", u"a\uFFFD"},         {"\\xC3b", u"\uFFFDb"},
        {"\\xE0\\x80\\x81", u"\uFFFD"}, {"\\xED\\xA0\\x80", u"\uFFFD"},
    };
    for (const auto& row : broken) {
        char16_t buffer[8] = {};
        sim.Command(std::string("set images.store \"") + row.octets + "\"");
        EXPECT_EQ(SIM_ENTRY(GetImageStoreW)(8, reinterpret_cast<WCHAR*>(buffer)), 0u);
        EXPECT_EQ(std::u16string(buffer), row.text) << row.octets;
    }
    sim.Command("set images.store \"C:\\\\\xC3\xA9\xF0\x9D\x84\x9E\"");

    const struct {
        std::u16string path;
        ULONG status;
        std::vector<ULONG> info;
    } images[] = {
        {store + u"\\0", 0, {1, 0, 5, 0, 1}}, {store + u"/1", 0, {2, 1, 103, 6, 7}},
        {store + u"/2", 9, {9, 9, 9, 9, 9}},  {store, 9, {9, 9, 9, 9, 9}},
        {store + u"/", 9, {9, 9, 9, 9, 9}},   {store + u"/-1", 9, {9, 9, 9, 9, 9}},
        {store + u"1", 9, {9, 9, 9, 9, 9}},   {u"", 9, {9, 9, 9, 9, 9}},
    };
    for (const auto& row : images) {
        std::vector<ULONG> info(5, 9);
        EXPECT_EQ(SIM_ENTRY(GetImageInfoW)(reinterpret_cast<const WCHAR*>(row.path.c_str()), &info[0], &info[1],
                                           &info[2], &info[3], &info[4]),
                  row.status);
        EXPECT_EQ(info, row.info);
    }
    ULONG word = 0;
    EXPECT_EQ(SIM_ENTRY(GetImageInfoW)(nullptr, &word, &word, &word, &word, &word), 4u);
    sim.Command("hostile GetImageStoreW scribble");
    const std::unique_ptr<WCHAR[]> room(new WCHAR[3]());
    EXPECT_EQ(SIM_ENTRY(GetImageStoreW)(3, room.get()), 0u);
    EXPECT_NE(room[2], 0);
}

TEST_F(SimulatorSettings, AnUpgradeTakesTheModuleAwayAndBringsItBackWithTheImage)
{
    WCHAR unknown[] = ORV_TEXT("/images/7"), known[] = ORV_TEXT("/images/0");
    EXPECT_EQ(SIM_ENTRY(UpgradeFirmware2kW)(unknown), 0u);
    EXPECT_EQ(sim.Command("queue"), "") << "there is nothing to upgrade to";
    EXPECT_EQ(SIM_ENTRY(UpgradeFirmware2kW)(known), 0u);
    EXPECT_EQ(Read(SIM_ENTRY(GetFirmwareInfo)), "0 1 103 0 0");
    sim.Command("advance 50");
    EXPECT_EQ(Read(SIM_ENTRY(GetFirmwareInfo)), "status 6");
    sim.Command("advance 3000");
    EXPECT_EQ(Read(SIM_ENTRY(GetFirmwareInfo)), "1 0 101 0 1");
    EXPECT_EQ(sim.Command("get package.carrier"), "101");
    EXPECT_EQ(sim.Command("queue"), "");
}

// --- audio
// ------------------------------------------------------------------------------------------------------------

TEST_F(SimulatorSettings, AudioBelongsToAProfileOfAGenerator)
{
    BYTE generator = 1, profile = 2, zero = 0, one = 1, volume = 9, two = 2, four = 4, eight = 8;
    EXPECT_EQ(Read(SIM_ENTRY(AudioGetProfile)), "0 0 0 0 5");
    EXPECT_EQ(SIM_ENTRY(AudioSetProfile)(&generator, &profile, &one, &zero, &volume), 0u);
    EXPECT_EQ(Read(SIM_ENTRY(AudioGetProfile)), "1 2 1 0 9");
    EXPECT_EQ(SIM_ENTRY(AudioSetProfile)(&zero, &zero, &zero, &one, &volume), 0u);
    EXPECT_EQ(Read(SIM_ENTRY(AudioGetProfile)), "0 0 0 1 9");
    const struct {
        const char* name;
        ULONG status;
    } refusals[] = {
        {"a fifth generator", SIM_ENTRY(AudioSetProfile)(&four, &zero, &zero, &zero, &volume)},
        {"a ninth profile", SIM_ENTRY(AudioSetProfile)(&zero, &eight, &zero, &zero, &volume)},
        {"half muted", SIM_ENTRY(AudioSetProfile)(&zero, &zero, &two, &zero, &volume)},
        {"half muted, microphone", SIM_ENTRY(AudioSetProfile)(&zero, &zero, &zero, &two, &volume)},
        {"no volume", SIM_ENTRY(AudioSetProfile)(&zero, &zero, &zero, &zero, nullptr)},
        {"a tone of nothing", SIM_ENTRY(AudioPlayAudioTone)(nullptr)},
    };
    for (const auto& row : refusals)
        EXPECT_EQ(row.status, 4u) << row.name;
    EXPECT_EQ(Read(SIM_ENTRY(AudioGetProfile)), "0 0 0 1 9");
    WORD codec = 0x1234, digital = 0xFFFF;
    BYTE item = GOBI_AUDIO_LEVEL_RX_GAIN;
    EXPECT_EQ(SIM_ENTRY(AudioSetVolTLBConfig)(&zero, &zero, &item, &two, &codec, &digital), 0u);
    EXPECT_EQ(Fields({"audio.level-item", "audio.level", "audio.codec-gain", "audio.digital-gain"}), "13 2 4660 65535");
    EXPECT_EQ(SIM_ENTRY(AudioPlayAudioTone)(&four), 0u);
    EXPECT_EQ(sim.Command("get audio.tone"), "4");
}

TEST_F(SimulatorSettings, AnAudioPathChangesItemByItem)
{
    BYTE generator = 3, profile = 7, zero = 0, other = 6;
    WORD mic_volume = 1111, side_tone = 2222, on = 1, stage = 3, gain = 4444, two = 2;
    ULONG coefficient = 0xFEDCBA98;
    BYTE echo = 5, noise = 6, output = 7, input = 8;
    const auto byte = [&](BYTE item) {
        BYTE value = 99;
        const ULONG status = SIM_ENTRY(AudioGetPathByte)(&generator, &profile, &item, &value);
        return status == 0 ? int{value} : -static_cast<int>(status);
    };
    const auto word = [&](BYTE item) {
        WORD value = 99;
        const ULONG status = SIM_ENTRY(AudioGetPathWord)(&generator, &profile, &item, &value);
        return status == 0 ? int{value} : -static_cast<int>(status);
    };
    const auto filter = [&](BYTE item) {
        WORD enabled = 9, number = 9, level = 9;
        ULONG value = 9;
        const ULONG status =
            SIM_ENTRY(AudioGetPathPCMFilter)(&generator, &profile, &item, &enabled, &number, &value, &level);
        return std::to_string(status) + ": " + std::to_string(enabled) + " " + std::to_string(number) + " " +
               std::to_string(value) + " " + std::to_string(level);
    };
    const auto set_path = SIM_ENTRY(AudioSetAudioPath);
    EXPECT_EQ(set_path(&generator, &profile, nullptr, &echo, &noise, &output, &input, nullptr, nullptr, nullptr,
                       nullptr, &on, &stage, &coefficient, &gain, nullptr),
              0u);
    EXPECT_EQ(set_path(&generator, &profile, &mic_volume, nullptr, nullptr, nullptr, nullptr, &on, &two, nullptr,
                       nullptr, nullptr, nullptr, nullptr, nullptr, &side_tone),
              0u);
    EXPECT_EQ(set_path(&generator, &profile, nullptr, &zero, nullptr, nullptr, nullptr, &two, nullptr, nullptr, nullptr,
                       nullptr, nullptr, nullptr, nullptr, nullptr),
              4u)
        << "a filter is on or off; nothing is changed otherwise";
    EXPECT_EQ(byte(GOBI_AUDIO_PATH_PROFILE), 0) << "the one in use";
    EXPECT_EQ(byte(GOBI_AUDIO_PATH_ECHO_CANCEL), 5);
    EXPECT_EQ(byte(GOBI_AUDIO_PATH_NOISE_SUPPRESSION), 6);
    EXPECT_EQ(byte(GOBI_AUDIO_PATH_OUTPUT_GAIN), 7);
    EXPECT_EQ(byte(GOBI_AUDIO_PATH_INPUT_GAIN), 8);
    EXPECT_EQ(byte(GOBI_AUDIO_PATH_MIC_VOLUME), -4) << "is a word";
    EXPECT_EQ(word(GOBI_AUDIO_PATH_MIC_VOLUME), 1111);
    EXPECT_EQ(word(GOBI_AUDIO_PATH_SIDE_TONE), 2222);
    EXPECT_EQ(word(GOBI_AUDIO_PATH_ECHO_CANCEL), -4) << "is an octet";
    EXPECT_EQ(filter(GOBI_AUDIO_PATH_TX_FILTER), "0: 1 2 0 0");
    EXPECT_EQ(filter(GOBI_AUDIO_PATH_RX_FILTER), "0: 1 3 4275878552 4444");
    EXPECT_EQ(filter(GOBI_AUDIO_PATH_SIDE_TONE), "4: 9 9 9 9");
    profile = other;
    EXPECT_EQ(byte(GOBI_AUDIO_PATH_ECHO_CANCEL), 1) << "another profile";
    profile = 8;
    EXPECT_EQ(byte(GOBI_AUDIO_PATH_ECHO_CANCEL), -4) << "no profile";
    EXPECT_EQ(sim.Journal()[0], "AudioSetAudioPath(3, 7, null, 5, 6, 7, 8, null, null, null, null, 1, 3, 4275878552, "
                                "4444, null)");
}

// What is set for one profile is read back from it, and from no other.
template <class... T>
void ExpectReadBack(const char* name, ULONG (*set)(BYTE*, T*...), ULONG (*get)(BYTE*, T*...), std::tuple<T...> values)
{
    SCOPED_TRACE(name);
    const auto call = [](auto entry, BYTE profile, std::tuple<T...>& places) {
        return std::apply([&](auto&... place) { return entry(&profile, &place...); }, places);
    };
    std::tuple<T...> before = {}, given = {}, after = {};
    EXPECT_EQ(call(get, 4, before), 0u);
    EXPECT_EQ(call(set, 5, values), 0u);
    EXPECT_EQ(call(get, 5, given), 0u);
    EXPECT_EQ(given, values);
    EXPECT_EQ(call(get, 4, after), 0u);
    EXPECT_EQ(after, before);
    EXPECT_EQ(call(set, 8, values), 4u) << "no profile";
    EXPECT_EQ(call(get, 8, given), 4u) << "no profile";
}

TEST_F(SimulatorSettings, TheSecondAudioFamilyReadsBackWhatIsSet)
{
    ExpectReadBack("volume", SIM_ENTRY(OrvM2MAV_AudioSetVolume), SIM_ENTRY(OrvM2MAV_AudioGetVolume), {2, 7});
    ExpectReadBack("mute", SIM_ENTRY(OrvM2MAV_AudioSetAVMute), SIM_ENTRY(OrvM2MAV_AudioGetAVMute), {1, 0, 1});
    ExpectReadBack("transmit volume", SIM_ENTRY(OrvM2MAV_AudioSetTxVolume), SIM_ENTRY(OrvM2MAV_AudioGetTxVolume),
                   {0xFFFF});
    ExpectReadBack("microphone gain", SIM_ENTRY(OrvM2MAV_AudioSetMicGain), SIM_ENTRY(OrvM2MAV_AudioGetMicGain), {301});
    ExpectReadBack("level's gain", SIM_ENTRY(OrvM2MAV_AudioSetVolDB), SIM_ENTRY(OrvM2MAV_AudioGetVolDB), {1, 2, 303});
    ExpectReadBack("transmit gain", SIM_ENTRY(OrvM2MAV_AudioSetAVTXG), SIM_ENTRY(OrvM2MAV_AudioGetAVTXG), {304});
    ExpectReadBack("receive gain", SIM_ENTRY(OrvM2MAV_AudioSetAVRXG), SIM_ENTRY(OrvM2MAV_AudioGetAVRXG), {305});
    ExpectReadBack("echo", SIM_ENTRY(OrvM2MAV_AudioSetAVEC), SIM_ENTRY(OrvM2MAV_AudioGetAVEC), {9});
    ExpectReadBack("noise", SIM_ENTRY(OrvM2MAV_AudioSetAVNS), SIM_ENTRY(OrvM2MAV_AudioGetAVNS), {8});
    BYTE profile = 5, one = 1, zero = 0, two = 2, volume = 6;
    EXPECT_EQ(Read(SIM_ENTRY(OrvM2MAV_AudioGetProfile)), "0 0 0 0 3 0 0");
    EXPECT_EQ(SIM_ENTRY(OrvM2MAV_AudioSetProfile)(&profile, &zero, &one, &two, &volume, &zero), 0u);
    EXPECT_EQ(Read(SIM_ENTRY(OrvM2MAV_AudioGetProfile)), "5 0 1 2 6 0 0");
    EXPECT_EQ(SIM_ENTRY(OrvM2MAV_AudioSetProfile)(&zero, &zero, &two, &two, &volume, &zero), 4u) << "half muted";
    EXPECT_EQ(SIM_ENTRY(OrvM2MAV_AudioSetVolume)(&profile, nullptr, &volume), 4u);
    EXPECT_EQ(Read(SIM_ENTRY(OrvM2MAV_AudioGetProfile)), "5 0 1 2 6 0 0") << "what is refused changes nothing";
    EXPECT_EQ(sim.Journal().back(), "OrvM2MAV_AudioGetProfile()");
    WORD duration = 700;
    EXPECT_EQ(SIM_ENTRY(OrvM2MAV_AudioSetLPBK)(&one), 0u);
    EXPECT_EQ(SIM_ENTRY(OrvM2MAV_AudioSetLPBK)(&two), 4u);
    EXPECT_EQ(SIM_ENTRY(OrvM2MAV_AudioPlayTone)(&two, &volume, &duration), 0u);
    EXPECT_EQ(Fields({"m2m.loopback", "m2m.tone", "m2m.tone-volume", "m2m.tone-ms"}), "1 2 6 700");
    EXPECT_EQ(SIM_ENTRY(OrvM2MAV_AudioNVDef)(), 0u);
    EXPECT_EQ(Read(SIM_ENTRY(OrvM2MAV_AudioGetProfile)), "0 0 0 0 3 0 0");
    EXPECT_EQ(sim.Command("get m2m.loopback"), "0");
}

TEST_F(SimulatorSettings, AProfileOfTheSecondAudioFamilyHasUpToFourInterfaces)
{
    const std::unique_ptr<AudioConfig> config(new AudioConfig); // of the exact size
    BYTE profile = 3;
    const auto set = [&](BYTE kind, BYTE id, WORD rate) {
        PIFACETable table = {9, 9, 1, 2, 1, 4, rate};
        return SIM_ENTRY(OrvM2MAV_AudioSetAVCFG)(&profile, &kind, &id, &table);
    };
    const auto interfaces = [&] {
        EXPECT_EQ(SIM_ENTRY(OrvM2MAV_AudioGetAVCFG)(config.get(), &profile), 0u);
        std::string text = std::to_string(config->profile) + ":";
        for (BYTE i = 0; i < config->count && i < GOBI_MAX_AUDIO_INTERFACES; ++i) {
            const PIFACETable& one = config->interfaces[i];
            text +=
                " " + std::to_string(one.kind) + "/" + std::to_string(one.id) + "/" + std::to_string(one.sampleRateHz);
        }
        return text;
    };
    EXPECT_EQ(interfaces(), "3: 0/0/8000");
    EXPECT_EQ(set(1, 0, 16000), 0u);
    EXPECT_EQ(set(0, 0, 16000), 0u);
    EXPECT_EQ(interfaces(), "3: 0/0/16000 1/0/16000");
    EXPECT_EQ(set(1, 1, 8000), 0u);
    EXPECT_EQ(set(2, 0, 8000), 0u);
    EXPECT_EQ(set(2, 1, 8000), 10u) << "a fifth";
    EXPECT_EQ(interfaces(), "3: 0/0/16000 1/0/16000 1/1/8000 2/0/8000");
    sim.Command("hostile OrvM2MAV_AudioGetAVCFG count 77");
    interfaces();
    EXPECT_EQ(config->count, 77);
    sim.Command("hostile OrvM2MAV_AudioGetAVCFG scribble");
    interfaces();
    EXPECT_EQ(config->count, 255);
    EXPECT_EQ(config->interfaces[3].sampleRateHz, 0xFFFF);
    profile = 8;
    EXPECT_EQ(set(0, 0, 8000), 4u);
    EXPECT_EQ(SIM_ENTRY(OrvM2MAV_AudioGetAVCFG)(config.get(), nullptr), 4u);
}

} // namespace
