// The simulated module's calls, supplementary services and USSD: what is set is read back, what the network does is
// seen, and what is hostile stays within its record.

#include "tests/inner/simulator_voice.h"

namespace {

using SimulatorVoice = VoiceClient;

// --- calls

TEST_F(SimulatorVoice, ADialledCallLivesItsLife)
{
    sim.Command("set calls.sim-text Calling");
    ASSERT_EQ(Dial("5551234", 1), 0u);
    EXPECT_EQ(call_id, 1);
    EXPECT_EQ(result, GOBI_CALL_CONTROL_VOICE);
    EXPECT_EQ(std::string(alpha.text, alpha.text + alpha.length), "Calling");
    EXPECT_EQ(sim.Command("call list"), "1 originating to 5551234 without the own number");
    EXPECT_EQ(Dial("5550000"), 13u) << "while the other one rings";
    EXPECT_EQ(Told(10), Lines{"1:1:0 5551234"});
    EXPECT_EQ(Told(100), Lines{"1:5:0 5551234"});
    EXPECT_EQ(Told(199), Lines{});
    EXPECT_EQ(Told(1), Lines{"1:3:0 5551234"});
    EXPECT_EQ(End(9), 9u) << "no such call";
    ASSERT_EQ(End(1), 0u);
    EXPECT_EQ(Told(), Lines{"1:9:0 5551234 reason 16"});
    EXPECT_EQ(End(1), 9u) << "has ended";

    sim.Command("set calls.refusal 17");
    ASSERT_EQ(Dial("5551234"), 0u);
    EXPECT_EQ(Told(1000), (Lines{"2:1:0 5551234", "2:9:0 5551234 reason 17"})) << "busy";
    sim.Command("set calls.refusal 0");
    sim.Command("set calls.answers 0");
    ASSERT_EQ(Dial("5551234"), 0u);
    EXPECT_EQ(Told(60000), (Lines{"3:1:0 5551234", "3:5:0 5551234"})) << "nobody answers";
    ASSERT_EQ(End(3), 0u);
    EXPECT_EQ(sim.Command("call list"), "");
}

TEST_F(SimulatorVoice, ACallThatComesInIsAnsweredRefusedOrGivenUp)
{
    EXPECT_EQ(sim.Command("call incoming +4912345 6"), "1");
    EXPECT_EQ(Told(), Lines{"1:2:6 +4912345"});
    EXPECT_EQ(sim.Command("call incoming 999"), "busy") << "nothing waits for a call that rings";
    ASSERT_EQ(Answer(1), 0u);
    EXPECT_EQ(Answer(1), 1026u);
    EXPECT_EQ(Answer(2), 9u);
    EXPECT_EQ(Told(), Lines{"1:3:6 +4912345"});
    EXPECT_EQ(sim.Command("call incoming withheld"), "2");
    EXPECT_EQ(Told(), Lines{"2:7:0 withheld"}) << "waits";
    ASSERT_EQ(Answer(2), 0u);
    EXPECT_EQ(Told(), Lines{"1:6:6 +4912345, 2:3:0 withheld"});
    EXPECT_EQ(sim.Command("call incoming 777"), "3");
    EXPECT_EQ(Answer(3), 13u) << "one talks and one is held";
    EXPECT_EQ(Manage(GOBI_MANAGE_HOLD_ACTIVE), 13u);
    sim.Command("call ends 1 41");
    sim.Command("call ends 2");
    EXPECT_EQ(Told(), (Lines{"3:7:0 777", "1:9:6 +4912345 reason 41", "2:9:0 withheld reason 16, 3:2:0 777"}))
        << "who waits alone, rings";
    ASSERT_EQ(End(3), 0u);
    EXPECT_EQ(Told(), Lines{"3:9:0 777 reason 21"}) << "rejected";
    EXPECT_EQ(sim.Command("call ends 3"), "no such call");
    sim.Command("set power.mode 6");
    EXPECT_EQ(sim.Command("call incoming 777"), "not reachable");
    EXPECT_EQ(Dial("777"), 12u);
}

TEST_F(SimulatorVoice, ACallThatComesInCanBeAnsweredWithoutTheClient)
{
    sim.Command("call incoming 11");
    sim.Command("call proceeds 1");
    EXPECT_EQ(Told(), (Lines{"1:2:0 11", "1:3:0 11"}));
    sim.Command("call incoming 22");
    sim.Command("call proceeds 2");
    sim.Command("call incoming 33");
    Told();
    sim.Command("call proceeds 3");
    EXPECT_EQ(Told(), Lines{}) << "one talks and one is held";
    EXPECT_EQ(sim.Command("call list"), "1 held from 11\n2 conversation from 22\n3 waiting from 33");
}

// Call 1 talks and call 2 waits, or is held, or both belong together.
TEST_F(SimulatorVoice, ManagesCallsAsEachKindSays)
{
    const std::string talks = "1:3:0 11", waits = "2:7:0 22";
    const struct {
        const char* name;
        BYTE prepare; // a kind that is done first, 0 for none; then 2 talks and 1 is held
        BYTE kind, id;
        ULONG status;
        const char* told;
        const char* list;
    } rows[] = {
        {"refuse as busy", 0, 1, 0, 0, "2:9:0 22 reason 17", "1 conversation from 11"},
        {"release held", 3, 1, 0, 0, "1:9:0 11 reason 16", "2 conversation from 22"},
        {"release and take", 0, 2, 0, 0, "1:9:0 11 reason 16, 2:3:0 22", "2 conversation from 22"},
        {"release and resume", 3, 2, 0, 0, "2:9:0 22 reason 16, 1:3:0 11", "1 conversation from 11"},
        {"hold and take", 0, 3, 0, 0, "1:6:0 11, 2:3:0 22", "1 held from 11\n2 conversation from 22"},
        {"swap", 3, 3, 0, 0, "2:6:0 22, 1:3:0 11", "1 conversation from 11\n2 held from 22"},
        {"join nobody", 0, 4, 0, 13, "", "1 conversation from 11\n2 waiting from 22"},
        {"join", 3, 4, 0, 0, "1:3:0 11", "1 conversation from 11 multiparty\n2 conversation from 22 multiparty"},
        {"transfer", 3, 5, 0, 0, "2:9:0 22 reason 16, 1:9:0 11 reason 16", ""},
        {"release one", 3, 6, 1, 0, "1:9:0 11 reason 16", "2 conversation from 22"},
        {"release nobody", 0, 6, 7, 13, "", "1 conversation from 11\n2 waiting from 22"},
        {"private, alone", 3, 7, 2, 13, "", "1 held from 11\n2 conversation from 22"},
        {"no such kind", 0, 8, 0, 4, "", "1 conversation from 11\n2 waiting from 22"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        sim.Command("reset");
        Register();
        sim.Command("call incoming 11");
        ASSERT_EQ(Answer(1), 0u);
        sim.Command("call incoming 22");
        const BYTE prepare = row.prepare ? row.prepare : BYTE{GOBI_MANAGE_JOIN}; // refused while nobody is held
        EXPECT_EQ(Manage(prepare) == 0, row.prepare != 0);
        Told();
        cause = 7;
        EXPECT_EQ(Manage(row.kind, row.id), row.status);
        EXPECT_EQ(cause, row.status == 0 ? 0 : row.status == 13 ? 98 : 7);
        EXPECT_EQ(Told(), *row.told ? Lines{row.told} : Lines{});
        EXPECT_EQ(sim.Command("call list"), row.list);
    }
}

TEST_F(SimulatorVoice, AConferenceIsLeftOneByOne)
{
    for (const char* number : {"11", "22", "33"}) {
        ASSERT_EQ(Dial(number), 0u);
        Told(1000);
        EXPECT_EQ(Manage(GOBI_MANAGE_JOIN), call_id > 1 ? 0u : 13u);
    }
    ASSERT_EQ(Manage(GOBI_MANAGE_HOLD_ALL_BUT_ONE, 2), 0u);
    EXPECT_EQ(sim.Command("call list"), "1 held to 11 multiparty\n2 conversation to 22\n3 held to 33 multiparty");
    EXPECT_EQ(Dial("44"), 13u) << "one talks and others are held";
    ASSERT_EQ(End(3), 0u);
    EXPECT_EQ(sim.Command("call list"), "1 held to 11\n2 conversation to 22");
    sim.Command("module leaves");
    EXPECT_EQ(End(1), 6u);
    sim.Command("module returns");
    EXPECT_EQ(sim.Command("call list"), "") << "calls do not outlive the module";
}

TEST_F(SimulatorVoice, RefusesWhatNoCallCanBe)
{
    tDialReqParam request = {};
    request.numberLength = 81;
    memset(request.number, '5', 81);
    const auto dial = [&] { return SIM_ENTRY(DialCall)(&request, &call_id, &alpha, &result, &service); };
    EXPECT_EQ(dial(), 0u) << "the longest";
    EXPECT_EQ(Told()[0].size(), strlen("1:1:0 ") + 81);
    ASSERT_EQ(End(1), 0u);
    request.numberLength = 82;
    EXPECT_EQ(dial(), 4u);
    request.numberLength = 255;
    EXPECT_EQ(dial(), 4u);
    request.numberLength = 0;
    EXPECT_EQ(dial(), 4u);
    request.numberLength = 3;
    request.number[1] = ':';
    EXPECT_EQ(dial(), 4u);
    request.number[1] = 'p';
    request.clir = 3;
    EXPECT_EQ(dial(), 4u);
    request.clir = 0;
    EXPECT_EQ(SIM_ENTRY(DialCall)(&request, nullptr, &alpha, &result, &service), 4u);
    EXPECT_EQ(SIM_ENTRY(DialCall)(&request, &call_id, &alpha, &result, nullptr), 4u);
    EXPECT_EQ(sim.Command("call list"), "") << "a refused call leaves nothing";
}

TEST_F(SimulatorVoice, TellsEverythingAboutItsCalls)
{
    auto calls = std::make_unique<arrCallInfo>();
    auto numbers = std::make_unique<arrRemotePartyNum>();
    auto names = std::make_unique<arrRemotePartyName>();
    auto alertings = std::make_unique<arrAlertingType>();
    auto users = std::make_unique<arrUUSInfo>();
    auto options = std::make_unique<arrSvcOption>();
    auto reasons = std::make_unique<arrCallEndReason>();
    auto texts = std::make_unique<arrAlphaIDInfo>();
    auto diagnostics = std::make_unique<arrDiagInfo>();
    auto connected = std::make_unique<arrPeerNumInfo>(), called = std::make_unique<arrPeerNumInfo>(),
         redirecting = std::make_unique<arrPeerNumInfo>();
    auto patterns = std::make_unique<arrAlertingPattern>();
    BYTE privacy = 0, otasp = 0;
    const auto get = [&] {
        return SIM_ENTRY(GetAllCallInfo)(calls.get(), numbers.get(), names.get(), alertings.get(), users.get(),
                                         options.get(), &privacy, &otasp, reasons.get(), texts.get(), connected.get(),
                                         diagnostics.get(), called.get(), redirecting.get(), patterns.get());
    };
    ASSERT_EQ(Dial("11"), 0u);
    ASSERT_EQ(get(), 0u);
    EXPECT_EQ(Join({calls->count, calls->calls[0].mode, options->count}), "1:3:0");
    sim.Command("model cdma");
    Register();
    sim.Command("set calls.voice-privacy 1");
    ASSERT_EQ(Dial("11"), 0u);
    ASSERT_EQ(End(1), 0u);
    ASSERT_EQ(Dial("22"), 0u);
    EXPECT_EQ(Told(1000).back(), "2:3:0 22 option 3");
    sim.Command("call incoming withheld");
    ASSERT_EQ(get(), 0u);
    EXPECT_EQ(calls->count, 2);
    const auto& first = calls->calls[0];
    EXPECT_EQ(Join({first.callId, first.state, first.direction, first.mode}), "2:3:1:1");
    const auto& second = calls->calls[1];
    EXPECT_EQ(Join({second.callId, second.state, second.direction}), "3:7:2");
    EXPECT_EQ(Join({numbers->count, numbers->numbers[1].presentation, numbers->numbers[1].length}), "2:1:0");
    EXPECT_EQ(Join({alertings->count, alertings->types[0].callId}), "1:3");
    EXPECT_EQ(Join({options->count, options->options[0].option, privacy, otasp}), "2:3:1:0");
    EXPECT_EQ(Join({reasons->count, reasons->reasons[0].callId, reasons->reasons[0].reasonLo}), "1:1:16");
    EXPECT_EQ(Join({connected->count, called->count, redirecting->count, texts->count}), "1:1:0:0");
    EXPECT_EQ(memcmp(called->numbers[0].number.digits, "22", 2), 0);

    sim.Command("hostile GetAllCallInfo count 255");
    ASSERT_EQ(get(), 0u);
    EXPECT_EQ(Join({calls->count, numbers->count, numbers->numbers[0].length, reasons->count}), "255:255:255:255");
    sim.Command("hostile GetAllCallInfo scribble");
    ASSERT_EQ(get(), 0u); // each record is on the heap by itself: an octet too many is seen
    EXPECT_EQ(patterns->patterns[7].pattern, 0xFF);
    sim.Command("fail GetAllCallInfo 5");
    EXPECT_EQ(get(), 5u);
}

TEST_F(SimulatorVoice, KeysAndFlashesReachTheCallThatTalks)
{
    BYTE id = 1, key = '5', kind = 0, done = 0;
    EXPECT_EQ(SIM_ENTRY(StartContDTMF)(&id, &key, &done), 9u);
    sim.Command("call incoming 11");
    EXPECT_EQ(SIM_ENTRY(StartContDTMF)(&id, &key, &done), 1026u) << "rings only";
    ASSERT_EQ(Answer(1), 0u);
    EXPECT_EQ(SIM_ENTRY(StopContDTMF)(&id, &done), 1026u);
    for (const BYTE tone : {'5', '#', 'D'}) {
        ASSERT_EQ(SIM_ENTRY(StartContDTMF)(&id, const_cast<BYTE*>(&tone), &done), 0u);
        EXPECT_EQ(sim.Command("call list"), std::string("1 conversation from 11 key ") + char(tone));
        EXPECT_EQ(SIM_ENTRY(StartContDTMF)(&id, &key, &done), 1026u) << "one sounds";
        ASSERT_EQ(SIM_ENTRY(StopContDTMF)(&id, &done), 0u);
    }
    key = 'E';
    EXPECT_EQ(SIM_ENTRY(StartContDTMF)(&id, &key, &done), 4u);
    EXPECT_EQ(sim.Command("get calls.keys"), "5#D");
    EXPECT_EQ(SIM_ENTRY(SendFlash)(&id, nullptr, &kind, &done), 1025u) << "of CDMA";

    sim.Command("model cdma");
    Register();
    char digits[] = "22", longest[200];
    memset(longest, '1', sizeof(longest) - 1);
    longest[199] = 0;
    sim.Command("call incoming 11");
    ASSERT_EQ(Answer(1), 0u);
    EXPECT_EQ(SIM_ENTRY(SendFlash)(&id, longest, &kind, &done), 4u);
    ASSERT_EQ(SIM_ENTRY(SendFlash)(&id, digits, &kind, &done), 0u);
    Told(1000);
    EXPECT_EQ(sim.Command("call list"), "1 held from 11\n2 conversation to 22");
    EXPECT_EQ(SIM_ENTRY(SendFlash)(&id, nullptr, &kind, &done), 1026u) << "is held";
    id = 2;
    key = '9';
    ASSERT_EQ(SIM_ENTRY(StartContDTMF)(&id, &key, &done), 0u);
    ASSERT_EQ(SIM_ENTRY(SendFlash)(&id, nullptr, &kind, &done), 0u) << "which also ends the key";
    EXPECT_EQ(sim.Command("call list"), "1 conversation from 11\n2 held to 22");
}

// --- supplementary services

TEST_F(SimulatorVoice, ServicesAreSetAndReadBack)
{
    statusResp clir = {};
    const auto get_clir = [&] { return SIM_ENTRY(GetCLIR)(&clir, &cause, &alpha, &result, &call_id, &service); };
    ASSERT_EQ(Set(GOBI_SUPS_ACTIVATE, GOBI_SUPS_CLIR, 0), 0u);
    EXPECT_EQ(Join({result, service.serviceType, service.reason}), "1:1:18");
    ASSERT_EQ(get_clir(), 0u);
    EXPECT_EQ(Join({clir.active, clir.provision, service.serviceType, service.reason}), "1:4:5:18");
    EXPECT_EQ(Set(GOBI_SUPS_REGISTER, GOBI_SUPS_CLIR, 0), 13u);
    EXPECT_EQ(cause, 16);

    BYTE classes = 0, active = 0;
    ASSERT_EQ(Set(GOBI_SUPS_ACTIVATE, GOBI_SUPS_WAITING, GOBI_CLASS_FAX), 0u);
    ASSERT_EQ(SIM_ENTRY(GetCallWaiting)(&classes, &active, &cause, &alpha, &result, &call_id, &service), 0u);
    EXPECT_EQ(active, GOBI_CLASS_VOICE | GOBI_CLASS_FAX);

    const auto bars = [&](BYTE reason) {
        active = 99;
        SIM_ENTRY(GetCallBarring)(&reason, &classes, &active, &cause, &alpha, &result, &call_id, &service);
        return active;
    };
    EXPECT_EQ(Set(GOBI_SUPS_ACTIVATE, GOBI_SUPS_BAR_OUTGOING, 1, "1111"), 13u);
    EXPECT_EQ(cause, 38);
    ASSERT_EQ(Set(GOBI_SUPS_ACTIVATE, GOBI_SUPS_BAR_OUTGOING, 1), 0u);
    EXPECT_EQ(bars(GOBI_SUPS_BAR_OUTGOING), 1);
    EXPECT_EQ(bars(GOBI_SUPS_BAR_INCOMING), 0);
    EXPECT_EQ(bars(GOBI_SUPS_CLIP), 99) << "is no barring";
    EXPECT_EQ(Dial("11"), 13u);
    ASSERT_EQ(Set(GOBI_SUPS_DEACTIVATE, GOBI_SUPS_BAR_ALL, 0), 0u);
    EXPECT_EQ(Dial("11"), 0u);
    ASSERT_EQ(Set(GOBI_SUPS_ACTIVATE, GOBI_SUPS_BAR_INCOMING, 1), 0u);
    EXPECT_EQ(sim.Command("call incoming 11"), "barred");

    sim.Command("set sups.refusal 50");
    EXPECT_EQ(get_clir(), 13u);
    EXPECT_EQ(cause, 50);
    EXPECT_EQ(Set(9, GOBI_SUPS_CLIR, 0), 4u);
    EXPECT_EQ(Set(GOBI_SUPS_ACTIVATE, 0x55, 0), 4u);
}

TEST_F(SimulatorVoice, TheBarringPasswordChangesAndIsBlocked)
{
    const auto change = [&](const char* from, const char* to, const char* again) {
        callBarringPwd request = {GOBI_SUPS_BAR_ALL, {}, {}, {}};
        memcpy(request.oldPassword, from, 4);
        memcpy(request.newPassword, to, 4);
        memcpy(request.newPasswordAgain, again, 4);
        const ULONG status = SIM_ENTRY(SetCallBarringPassword)(&request, &cause, &alpha, &result, &call_id, &service);
        return Join({status, cause});
    };
    EXPECT_EQ(change("0000", "1234", "1235"), "13:37");
    EXPECT_EQ(change("0000", "12a4", "12a4"), "13:37");
    EXPECT_EQ(change("9999", "1234", "1234"), "13:38");
    EXPECT_EQ(change("9999", "1234", "1234"), "13:38");
    EXPECT_EQ(change("0000", "1234", "1234"), "0:0") << "and the wrong ones are forgotten";
    EXPECT_EQ(sim.Command("get sups.password"), "1234");
    EXPECT_EQ(Set(GOBI_SUPS_ACTIVATE, GOBI_SUPS_BAR_INCOMING, 1, "1234"), 0u);
    for (const char* outcome : {"13:38", "13:38", "13:38", "13:43"})
        EXPECT_EQ(change("0000", "1111", "1111"), outcome);
    EXPECT_EQ(change("1234", "1111", "1111"), "13:43") << "even the right one";
}

TEST_F(SimulatorVoice, ForwardingIsKeptByClassAndActsOnCalls)
{
    auto info = std::make_unique<getCallFWInfo>();
    auto extended = std::make_unique<getExtCallFWInfo>();
    BYTE octet_cause = 0;
    const auto get = [&](BYTE which, BYTE of) {
        const ULONG status = SIM_ENTRY(GetCallForwarding)(&which, &of, info.get(), &octet_cause, &alpha, &result,
                                                          &call_id, &service, extended.get());
        std::string text = std::to_string(status);
        for (BYTE i = 0; status == 0 && i < info->count; ++i) {
            const auto& one = info->entries[i];
            text += " " + Join({one.active, one.serviceClass}) + ":" +
                    std::string(one.number, one.number + one.numberLength);
            EXPECT_EQ(memcmp(one.number, extended->entries[i].number.digits, one.numberLength), 0);
        }
        return text;
    };
    EXPECT_EQ(Set(GOBI_SUPS_ACTIVATE, GOBI_SUPS_FORWARD_BUSY, 1), 13u);
    EXPECT_EQ(cause, 17) << "nothing is registered";
    EXPECT_EQ(Set(GOBI_SUPS_REGISTER, GOBI_SUPS_FORWARD_BUSY, 1), 13u);
    EXPECT_EQ(cause, 16) << "without a number";
    ASSERT_EQ(Set(GOBI_SUPS_REGISTER, GOBI_SUPS_FORWARD_BUSY, 1, "0000", "777"), 0u);
    ASSERT_EQ(Set(GOBI_SUPS_REGISTER, GOBI_SUPS_FORWARD_CONDITIONAL, 4, "0000", "888"), 0u);
    EXPECT_EQ(get(GOBI_SUPS_FORWARD_BUSY, 0), "0 1:1:777 1:4:888");
    EXPECT_EQ(get(GOBI_SUPS_FORWARD_BUSY, 1), "0 1:1:777");
    EXPECT_EQ(get(GOBI_SUPS_FORWARD_UNREACHABLE, 5), "0 1:4:888");
    EXPECT_EQ(get(GOBI_SUPS_FORWARD_ALWAYS, 1), "0 0:1:");
    EXPECT_EQ(get(GOBI_SUPS_FORWARD_ALL, 1), "4") << "names no single one";

    sim.Command("set sups.waiting 0");
    EXPECT_EQ(sim.Command("call incoming 11"), "1");
    EXPECT_EQ(sim.Command("call incoming 22"), "forwarded to 777");
    ASSERT_EQ(Set(GOBI_SUPS_DEACTIVATE, GOBI_SUPS_FORWARD_BUSY, 1), 0u);
    EXPECT_EQ(sim.Command("call incoming 22"), "busy");
    ASSERT_EQ(Set(GOBI_SUPS_ACTIVATE, GOBI_SUPS_FORWARD_BUSY, 1), 0u) << "the number is still there";
    EXPECT_EQ(sim.Command("call incoming 22"), "forwarded to 777");
    ASSERT_EQ(Set(GOBI_SUPS_ERASE, GOBI_SUPS_FORWARD_ALL, 255), 0u);
    EXPECT_EQ(get(GOBI_SUPS_FORWARD_BUSY, 5), "0 0:5:");
    EXPECT_EQ(sim.Command("call incoming 22"), "busy");

    sim.Command("hostile GetCallForwarding scribble");
    BYTE reason = GOBI_SUPS_FORWARD_BUSY, classes = 1;
    SIM_ENTRY(GetCallForwarding)
    (&reason, &classes, info.get(), &octet_cause, &alpha, &result, &call_id, &service, extended.get());
    EXPECT_EQ(Join({info->count, extended->entries[12].number.digits[80], octet_cause}), "255:255:255");
}

// --- USSD

TEST_F(SimulatorVoice, ADialogueOfUssdGoesOnUntilTheNetworkIsDone)
{
    USSInfo request = {0x0F, 5, {'*', '1', '0', '0', '#'}}, answer = {};
    const auto ask = [&] {
        return SIM_ENTRY(OrigUSSD)(&request, &cause, &alpha, &answer, &result, &call_id, &service);
    };
    EXPECT_EQ(SIM_ENTRY(AnsUSSD)(&request), 1026u) << "nobody asked";
    EXPECT_EQ(SIM_ENTRY(AbortsUSSD)(), 1026u);
    ASSERT_EQ(ask(), 0u);
    EXPECT_EQ(std::string(answer.data, answer.data + answer.length), "Credit 12.50");
    EXPECT_EQ(result, GOBI_CALL_CONTROL_USSD);
    EXPECT_EQ(sim.Command("get ussd.request"), "2A31303023");
    EXPECT_EQ(SIM_ENTRY(AnsUSSD)(&request), 1026u) << "the network has said it all";

    sim.Command("set ussd.questions 2");
    ASSERT_EQ(ask(), 0u);
    EXPECT_EQ(ask(), 1026u) << "one is open";
    request = {0x0F, 1, {'7'}};
    ASSERT_EQ(SIM_ENTRY(AnsUSSD)(&request), 0u);
    EXPECT_EQ(Told(100), Lines{"2:15 1 more, 0 end"});
    ASSERT_EQ(SIM_ENTRY(AnsUSSD)(&request), 0u);
    EXPECT_EQ(Told(100), Lines{"1:15 Goodbye"});
    EXPECT_EQ(sim.Command("get ussd.answer") + sim.Command("get ussd.open"), "370");
    ASSERT_EQ(ask(), 0u);
    EXPECT_EQ(SIM_ENTRY(AbortsUSSD)(), 0u);
    EXPECT_EQ(SIM_ENTRY(AnsUSSD)(&request), 1026u);

    request.length = 161;
    EXPECT_EQ(ask(), 4u);
    request.length = 0;
    EXPECT_EQ(ask(), 4u);
    request.length = 255;
    sim.Command("set ussd.open 1");
    EXPECT_EQ(SIM_ENTRY(AnsUSSD)(&request), 4u);
    sim.Command("set ussd.open 0");
    request.length = 1;
    sim.Command("set ussd.refusal 34");
    EXPECT_EQ(ask(), 13u);
    EXPECT_EQ(Join({cause, answer.length}), "34:0");
    sim.Command("set ussd.refusal 0");
    sim.Command("hostile OrigUSSD count 255");
    ask();
    EXPECT_EQ(Join({answer.length, alpha.length}), "255:255");
}

} // namespace
