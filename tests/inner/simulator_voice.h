// A client of the simulated module's voice services: it notes, a text an event, what it is told.
#pragma once

#include <gtest/gtest.h>

#include <string.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/sim_entry.h"
#include "tests/support/sim_harness.h"

using Lines = std::vector<std::string>;

inline Lines g_told;

inline std::string Join(std::initializer_list<ULONG> numbers)
{
    std::string text;
    for (const ULONG number : numbers)
        text += (text.empty() ? "" : ":") + std::to_string(number);
    return text;
}

// "ID:STATE:TYPE NUMBER" and, if given, " option N" and " reason N", for each call of one event.
inline void NoteCalls(arrCallInfo* calls, arrRemotePartyNum* numbers, arrRemotePartyName*, arrAlertingType*,
                      arrSvcOption* options, arrCallEndReason* reasons, arrAlphaIDInfo*, arrPeerNumInfo*,
                      arrPeerNumInfo*, arrPeerNumInfo*)
{
    std::string line;
    for (BYTE i = 0; calls && i < calls->count; ++i) {
        const auto& call = calls->calls[i];
        const auto& number = numbers->numbers[i];
        EXPECT_EQ(number.callId, call.callId);
        line += (i > 0 ? ", " : "") + Join({call.callId, call.state, call.type}) + " ";
        line += number.presentation == 1 ? "withheld" : std::string(number.digits, number.digits + number.length);
        for (BYTE k = 0; options && k < options->count; ++k) {
            if (options->options[k].callId == call.callId) line += " option " + Join({options->options[k].option});
        }
        if (reasons && reasons->reasons[i].callId == call.callId)
            line += " reason " + Join({reasons->reasons[i].reasonLo + 256u * reasons->reasons[i].reasonHi});
    }
    g_told.push_back(calls ? line : "no calls");
}

inline void NoteInformation(BYTE* id, signalInfo* signal, callerIDInfo* caller, char*, BYTE*, peerNumInfo*, BYTE*,
                            redirectNumInfo*, BYTE*, lineCtlInfo*, extDisplayInfo*)
{
    std::string line = Join({*id});
    if (caller) line += " from " + std::string(caller->digits, caller->digits + caller->length);
    if (signal) line += " signal " + Join({signal->signalType, signal->alertPitch, signal->signal});
    g_told.push_back(line);
}

inline void NoteUssd(BYTE* type, USSInfo* info)
{
    g_told.push_back(type ? Join({*type, info->dcs}) + " " + std::string(info->data, info->data + info->length)
                          : "no USSD");
}

inline void NotePhonebook(BYTE type, WORD count, arrPBInfo* records)
{
    std::string line = Join({type, count});
    for (WORD i = 0; records && i < count; ++i) {
        const arrPBInfo& one = records[i];
        line += " " + Join({one.recordId, one.numberType}) + ":" +
                std::string(one.number, one.number + one.numberLength) + ":" +
                std::string(one.name, one.name + one.nameLength);
    }
    g_told.push_back(line + (records ? "" : " null"));
}

inline void NoteEmergency(BYTE count, emergencyNumberEntry* entries)
{
    std::string line = Join({count});
    for (BYTE i = 0; entries && i < count; ++i) {
        const emergencyNumberEntry& one = entries[i];
        line +=
            " " + Join({one.hdr[0], one.hdr[4], one.hdr[5]}) + ":" + std::string(one.digits, one.digits + one.hdr[5]);
    }
    g_told.push_back(line + (entries ? "" : " null"));
}

inline void NoteManagement(FUMOInfo* firmware, OMAInfo* oma)
{
    std::string line = firmware || oma ? "" : "nothing";
    if (firmware) line += "firmware " + Join({firmware->event, firmware->data[0], firmware->data[4095]});
    if (oma) line += "oma " + Join({oma->event, oma->status, oma->data[0], oma->data[511]});
    g_told.push_back(line);
}

class VoiceClient : public ::testing::Test {
protected:
    void SetUp() override { Register(); }
    static void Register()
    {
        g_told.clear();
        SimRegistration<GobiSetCallInfo>("SetCallInfoCallback")(NoteCalls);
        SimRegistration<GobiSetInfoRec>("SetInfoRecCallback")(NoteInformation);
        SimRegistration<GobiSetUSSD>("SetUSSDNotificationCallback")(NoteUssd);
        SimRegistration<GobiSetPhonebookRecordRead>("SetPhonebookRecordReadCallback")(NotePhonebook);
        SimRegistration<GobiSetEmergencyList>("SetEmergencyListCallback")(NoteEmergency);
        SimRegistration<GobiSetOMAEXEvent>("SetORVOMAEXEventCallback")(NoteManagement);
    }

    // What has been told since the last time, after `ms` more.
    Lines Told(unsigned ms = 10)
    {
        sim.Command("advance " + std::to_string(ms));
        Lines told;
        told.swap(g_told);
        return told;
    }

    ULONG Dial(const std::string& number, BYTE clir = 0)
    {
        tDialReqParam request = {};
        request.clir = clir;
        request.numberLength = static_cast<BYTE>(number.size());
        memcpy(request.number, number.data(), number.size());
        return SIM_ENTRY(DialCall)(&request, &call_id, &alpha, &result, &service);
    }
    ULONG Answer(BYTE id) { return SIM_ENTRY(AnswerCall)(&id, &call_id); }
    ULONG End(BYTE id) { return SIM_ENTRY(EndCall)(&id, &call_id); }
    ULONG Manage(BYTE kind, BYTE id = 0) { return SIM_ENTRY(ManageCalls)(&kind, &id, &cause); }
    ULONG Set(BYTE action, BYTE reason, BYTE classes, const char* password = "0000", const char* number = "")
    {
        voiceSetSUPSServiceReq request = {};
        request.action = action;
        request.reason = reason;
        request.serviceClass = classes;
        memcpy(request.password, password, 4);
        request.numberLength = static_cast<BYTE>(strlen(number));
        memcpy(request.number, number, request.numberLength);
        return SIM_ENTRY(SetSupsService)(&request, &cause, &alpha, &result, &call_id, &service);
    }

    SimHarness sim{"umts"};
    WORD cause = 0;
    alphaIDInfo alpha = {};
    BYTE result = 0, call_id = 0;
    ccSUPSType service = {};
};
