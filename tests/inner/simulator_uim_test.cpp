// The card of the simulated module: PINs, personalisation and what the card tells.

#include <gtest/gtest.h>

#include <string.h>

#include <memory>
#include <string>
#include <vector>

#include "tests/support/sim_entry.h"
#include "tests/support/sim_harness.h"

namespace {

class SimulatorUim : public ::testing::Test {
protected:
    SimHarness sim{"umts"};

    std::string State(ULONG pin)
    {
        ULONG status = 99, verify = 99, unblock = 99;
        EXPECT_EQ(SIM_ENTRY(DMSUIMGetPINStatus)(pin, &status, &verify, &unblock), 0u);
        return std::to_string(status) + " " + std::to_string(verify) + " " + std::to_string(unblock);
    }
};

void Put(BYTE (&digits)[GOBI_MAX_PIN], BYTE& length, const char* text)
{
    length = static_cast<BYTE>(strlen(text));
    memcpy(digits, text, length);
}

// One request to either service: v verify, u unblock, c change, e enable, d disable.
struct Request {
    char kind;
    ULONG pin;
    std::string first, second;
};

ULONG AskOlder(const Request& request, ULONG* verify, ULONG* unblock)
{
    char first[16], second[16];
    snprintf(first, sizeof(first), "%s", request.first.c_str());
    snprintf(second, sizeof(second), "%s", request.second.c_str());
    switch (request.kind) {
    case 'v':
        return SIM_ENTRY(DMSUIMVerifyPIN)(request.pin, first, verify, unblock);
    case 'u':
        return SIM_ENTRY(DMSUIMUnblockPIN)(request.pin, first, second, verify, unblock);
    case 'c':
        return SIM_ENTRY(DMSUIMChangePIN)(request.pin, first, second, verify, unblock);
    default:
        return SIM_ENTRY(DMSUIMSetPINProtection)(request.pin, request.kind == 'e', first, verify, unblock);
    }
}

ULONG AskNewer(const Request& request, ULONG* verify, ULONG* unblock)
{
    const BYTE pin = static_cast<BYTE>(request.pin);
    ULONG status = 0;
    const auto keep = [&](auto left) {
        *verify = left.verifyLeft;
        *unblock = left.unblockLeft;
    };
    if (request.kind == 'v') {
        QMI_UIM_VERIFY_PIN_REQ_SESSION_INFORMATION session = {};
        QMI_UIM_VERIFY_PIN_REQ_VERIFY_PIN record = {pin, 0, {}};
        QMI_UIM_VERIFY_PIN_RESP_RETRIES_REMAINING left = {99, 99};
        Put(record.pin, record.pinLength, request.first.c_str());
        status = SIM_ENTRY(UIMVerifyPIN)(&session, &record, &left);
        keep(left);
    } else if (request.kind == 'u') {
        QMI_UIM_UNBLOCK_PIN_REQ_SESSION_INFORMATION session = {};
        QMI_UIM_UNBLOCK_PIN_REQ_UNBLOCK_PIN record = {pin, 0, {}, 0, {}};
        QMI_UIM_UNBLOCK_PIN_RESP_RETRIES_REMAINING left = {99, 99};
        Put(record.puk, record.pukLength, request.first.c_str());
        Put(record.newPin, record.newPinLength, request.second.c_str());
        status = SIM_ENTRY(UIMUnblockPIN)(&session, &record, &left);
        keep(left);
    } else if (request.kind == 'c') {
        QMI_UIM_CHANGE_PIN_REQ_SESSION_INFORMATION session = {};
        QMI_UIM_CHANGE_PIN_REQ_CHANGE_PIN record = {pin, 0, {}, 0, {}};
        QMI_UIM_CHANGE_PIN_RESP_RETRIES_REMAINING left = {99, 99};
        Put(record.oldPin, record.oldPinLength, request.first.c_str());
        Put(record.newPin, record.newPinLength, request.second.c_str());
        status = SIM_ENTRY(UIMChangePIN)(&session, &record, &left);
        keep(left);
    } else {
        QMI_UIM_SET_PIN_PROTECTION_REQ_SESSION_INFORMATION session = {};
        QMI_UIM_SET_PIN_PROTECTION_REQ_SET_PIN_PROTECTION record = {pin, request.kind == 'e', 0, {}};
        QMI_UIM_SET_PIN_PROTECTION_RESP_RETRIES_REMAINING left = {99, 99};
        Put(record.pin, record.pinLength, request.first.c_str());
        status = SIM_ENTRY(UIMSetPINProtection)(&session, &record, &left);
        keep(left);
    }
    return status;
}

TEST_F(SimulatorUim, APinLivesFromDisabledToBlockedForGoodThroughEitherService)
{
    struct Step {
        const char* name;
        Request request;
        ULONG status;
        ULONG verify_left, unblock_left; // that the request tells
        const char* state;               // status, attempts, attempts with the PUK, of the same PIN afterwards
    };
    const std::vector<Step> steps = {
        {"verify while disabled", {'v', 1, "1234", ""}, 1082, 3, 10, "3 3 10"},
        {"change while disabled", {'c', 1, "1234", "4321"}, 1082, 3, 10, "3 3 10"},
        {"disable while disabled", {'d', 1, "1234", ""}, 1026, 3, 10, "3 3 10"},
        {"enable with a wrong PIN", {'e', 1, "0000", ""}, 1012, 2, 10, "3 2 10"},
        {"enable", {'e', 1, "1234", ""}, 0, 3, 10, "2 3 10"},
        {"change", {'c', 1, "1234", "98765432"}, 0, 3, 10, "2 3 10"},
        {"the old PIN", {'v', 1, "1234", ""}, 1012, 2, 10, "2 2 10"},
        {"the new PIN", {'v', 1, "98765432", ""}, 0, 3, 10, "2 3 10"},
        {"wrong once", {'v', 1, "1111", ""}, 1012, 2, 10, "2 2 10"},
        {"wrong twice", {'c', 1, "1111", "2222"}, 1012, 1, 10, "2 1 10"},
        {"wrong thrice", {'d', 1, "1111", ""}, 1012, 0, 10, "4 0 10"},
        {"the right PIN, too late", {'v', 1, "98765432", ""}, 1035, 0, 10, "4 0 10"},
        {"a change, too late", {'c', 1, "98765432", "1234"}, 1035, 0, 10, "4 0 10"},
        {"the wrong PUK", {'u', 1, "00000000", "2468"}, 1012, 0, 9, "4 0 9"},
        {"the right PUK", {'u', 1, "12345678", "2468"}, 0, 3, 10, "2 3 10"},
        {"the PIN that the PUK set", {'d', 1, "2468", ""}, 0, 3, 10, "3 3 10"},
        {"PIN2 is another", {'v', 2, "2468", ""}, 1012, 2, 10, "1 2 10"},
        {"PIN2", {'v', 2, "5678", ""}, 0, 3, 10, "2 3 10"},
        {"PIN2 stays protected", {'d', 2, "5678", ""}, 1082, 3, 10, "2 3 10"},
        {"PIN2 wrong once", {'v', 2, "0000", ""}, 1012, 2, 10, "2 2 10"},
        {"PIN2 wrong twice", {'v', 2, "0000", ""}, 1012, 1, 10, "2 1 10"},
        {"PIN2 wrong thrice", {'v', 2, "0000", ""}, 1012, 0, 10, "4 0 10"},
        {"PUK of PIN1 for PIN2", {'u', 2, "12345678", "1111"}, 1012, 0, 9, "4 0 9"},
    };
    for (const auto ask : {AskOlder, AskNewer}) {
        SCOPED_TRACE(ask == AskOlder ? "older service" : "newer service");
        sim.Command("reset");
        const auto run = [&](const Step& step) {
            SCOPED_TRACE(step.name);
            ULONG verify = 77, unblock = 77;
            EXPECT_EQ(ask(step.request, &verify, &unblock), step.status);
            EXPECT_EQ(verify, step.verify_left);
            EXPECT_EQ(unblock, step.unblock_left);
            EXPECT_EQ(State(step.request.pin), step.state);
        };
        for (const Step& step : steps)
            run(step);
        for (ULONG left = 9; left-- > 0;) {
            ULONG verify = 0, unblock = 0;
            EXPECT_EQ(ask({'u', 2, "00000000", "1111"}, &verify, &unblock), 1012u);
            EXPECT_EQ(unblock, left);
        }
        run({"the right PUK, too late", {'u', 2, "87654321", "1111"}, 1035, 0, 0, "5 0 0"});
        run({"nothing helps any more", {'v', 2, "5678", ""}, 1035, 0, 0, "5 0 0"});
        EXPECT_EQ(State(1), "3 3 10") << "PIN1 is not touched";
    }
}

TEST_F(SimulatorUim, RefusesWhatIsNoPinAndCountsNoAttempt)
{
    const Request rows[] = {
        {'v', 0, "1234", ""},     {'v', 3, "1234", ""},        {'v', 1, "123", ""},
        {'v', 1, "12a4", ""},     {'u', 1, "1234567", "1234"}, {'u', 1, "12345678", "123"},
        {'c', 1, "1234", "12 4"}, {'c', 1, "1234", ""},        {'e', 1, "", ""},
        {'v', 1, "", ""},
    };
    for (const Request& row : rows) {
        for (const auto ask : {AskOlder, AskNewer}) {
            ULONG verify = 0, unblock = 0;
            EXPECT_EQ(ask(row, &verify, &unblock), 4u) << row.kind << row.pin << row.first << "/" << row.second;
        }
    }
    ULONG word = 0;
    char pin[] = "0000", long_pin[] = "123456789";
    EXPECT_EQ(SIM_ENTRY(DMSUIMVerifyPIN)(2, pin, nullptr, &word), 4u);
    EXPECT_EQ(SIM_ENTRY(DMSUIMVerifyPIN)(2, pin, &word, nullptr), 4u);
    EXPECT_EQ(SIM_ENTRY(DMSUIMVerifyPIN)(2, long_pin, &word, &word), 4u);
    EXPECT_EQ(SIM_ENTRY(DMSUIMSetPINProtection)(1, 2, pin, &word, &word), 4u);
    // A length that says more than the record holds.
    QMI_UIM_VERIFY_PIN_REQ_SESSION_INFORMATION session = {};
    session.aidLength = 255;
    QMI_UIM_VERIFY_PIN_REQ_VERIFY_PIN request = {GOBI_PIN2, 255, {'5', '6', '7', '8', '5', '6', '7', '8'}};
    QMI_UIM_VERIFY_PIN_RESP_RETRIES_REMAINING left = {};
    EXPECT_EQ(SIM_ENTRY(UIMVerifyPIN)(&session, &request, &left), 4u);
    EXPECT_EQ(State(1) + ", " + State(2), "3 3 10, 1 3 10");
}

TEST_F(SimulatorUim, AsksForThePinAgainWhenTheModuleComesBackAndClosesTheCardUntilThen)
{
    ULONG verify = 0, unblock = 0, count = 10;
    BYTE list[80];
    AskOlder({'e', 1, "1234", ""}, &verify, &unblock);
    EXPECT_EQ(SIM_ENTRY(GetSMSList)(0, nullptr, &count, list), 0u);
    sim.Command("module leaves");
    sim.Command("module returns");
    EXPECT_EQ(State(1), "1 3 10");
    EXPECT_EQ(SIM_ENTRY(GetSMSList)(0, nullptr, &count, list), 11u) << "messages on the card";
    EXPECT_EQ(SIM_ENTRY(GetSMSList)(1, nullptr, &count, list), 0u) << "messages in the module";
    AskNewer({'v', 1, "1234", ""}, &verify, &unblock);
    EXPECT_EQ(SIM_ENTRY(GetSMSList)(0, nullptr, &count, list), 0u);
}

TEST_F(SimulatorUim, TellsOfTheCardAndItsApplication)
{
    const struct {
        const char* name;
        std::vector<const char*> lines;
        std::vector<int> told; // cards, card state, applications, type, state, AID length, PIN1: state and attempts
    } rows[] = {
        {"a USIM", {"model umts"}, {1, 1, 1, 2, 7, 7, 3, 3}},
        {"a CSIM", {"model cdma"}, {1, 1, 1, 4, 7, 7, 3, 3}},
        {"PIN1 needed", {"model umts", "set pin1.enabled 1"}, {1, 1, 1, 2, 2, 7, 1, 3}},
        {"PUK needed", {"model umts", "set pin1.attempts 0"}, {1, 1, 1, 2, 3, 7, 4, 0}},
        {"for good", {"set pin1.attempts 0", "set pin1.puk-attempts 0"}, {1, 1, 1, 2, 6, 7, 5, 0}},
        {"not known", {"model umts", "set pin1.attempts 4294967295"}, {1, 1, 1, 2, 7, 7, 3, 255}},
        {"no card", {"set card.present 0"}, {1, 0, 0, 0, 0, 0, 0, 0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        for (const char* line : row.lines)
            sim.Command(line);
        int present = 0;
        QMI_UIM_GET_CARD_STATUS_RESP status;
        memset(&status, 0x55, sizeof(status));
        EXPECT_EQ(SIM_ENTRY(UIMGetCardStatus)(&present, &status), 0u);
        const auto& card = status.cards[0];
        const auto& application = card.applications[0];
        EXPECT_EQ(present, 1);
        EXPECT_EQ((std::vector<int>{status.cardCount, card.cardState, card.applicationCount, application.type,
                                    application.state, application.aidLength, application.pin1State,
                                    application.pin1VerifyLeft}),
                  row.told);
    }
    char iccid[24] = {};
    ULONG verify = 1, unblock = 1;
    EXPECT_EQ(SIM_ENTRY(DMSUIMGetICCID)(24, iccid), 11u);
    EXPECT_EQ(AskOlder({'v', 2, "5678", ""}, &verify, &unblock), 11u);
    EXPECT_EQ(AskNewer({'v', 2, "5678", ""}, &verify, &unblock), 11u);
    EXPECT_EQ(State(1), "0 4294967295 4294967295") << "nothing is known of a card that is not there";
    sim.Command("set card.present 1");
    EXPECT_EQ(SIM_ENTRY(DMSUIMGetICCID)(24, iccid), 0u);
    EXPECT_STREQ(iccid, "89881000000000000018");
}

TEST_F(SimulatorUim, ServesTheApplicationThatTheSessionNames)
{
    const struct {
        const char* name;
        BYTE type;
        std::string aid;
        ULONG status;
    } rows[] = {
        {"GSM/UMTS", GOBI_UIM_SESSION_PRIMARY_GW, "", 0},
        {"CDMA", GOBI_UIM_SESSION_PRIMARY_1X, "", 9},
        {"its AID", GOBI_UIM_SESSION_BY_AID, std::string("\xA0\0\0\0\x87\x10\x02", 7), 0},
        {"a shorter AID", GOBI_UIM_SESSION_BY_AID, std::string("\xA0\0\0\0\x87\x10", 6), 9},
        {"another AID", GOBI_UIM_SESSION_BY_AID, std::string("\xA0\0\0\0\x87\x10\x04", 7), 9},
        {"another kind", 2, "", 9},
    };
    for (const auto& row : rows) {
        QMI_UIM_VERIFY_PIN_REQ_SESSION_INFORMATION session = {row.type, static_cast<BYTE>(row.aid.size()), {}};
        memcpy(session.aid, row.aid.data(), row.aid.size());
        QMI_UIM_VERIFY_PIN_REQ_VERIFY_PIN request = {GOBI_PIN2, 4, {'5', '6', '7', '8'}};
        QMI_UIM_VERIFY_PIN_RESP_RETRIES_REMAINING left = {};
        EXPECT_EQ(SIM_ENTRY(UIMVerifyPIN)(&session, &request, &left), row.status) << row.name;
    }
    EXPECT_EQ(sim.Journal()[2], "UIMVerifyPIN(4, [160 0 0 0 135 16 2], 2, \"5678\")");
}

TEST_F(SimulatorUim, AControlKeyLocksUnlocksAndIsBlocked)
{
    char key[] = "11111111", wrong[] = "0", unblock_key[] = "22222222";
    ULONG left = 0;
    const auto state = [](ULONG facility) {
        ULONG status = 9, verify = 0, unblock = 0;
        EXPECT_EQ(SIM_ENTRY(DMSUIMGetControlKeyStatus)(facility, &status, &verify, &unblock), 0u);
        return std::to_string(status) + " " + std::to_string(verify) + " " + std::to_string(unblock);
    };
    EXPECT_EQ(state(4), "0 10 10");
    EXPECT_EQ(SIM_ENTRY(DMSUIMSetControlKeyProtection)(4, 0, key, &left), 1026u);
    EXPECT_EQ(SIM_ENTRY(DMSUIMSetControlKeyProtection)(4, 1, key, &left), 0u);
    EXPECT_EQ(state(4), "1 10 10");
    EXPECT_EQ(state(3), "0 10 10") << "a facility of its own";
    for (ULONG expected = 10; expected-- > 0;) {
        EXPECT_EQ(SIM_ENTRY(DMSUIMSetControlKeyProtection)(4, 0, wrong, &left), 1012u);
        EXPECT_EQ(left, expected);
    }
    EXPECT_EQ(state(4), "2 0 10");
    EXPECT_EQ(SIM_ENTRY(DMSUIMSetControlKeyProtection)(4, 0, key, &left), 1035u);
    EXPECT_EQ(SIM_ENTRY(DMSUIMUnblockControlKey)(4, key, &left), 1012u);
    EXPECT_EQ(left, 9u);
    EXPECT_EQ(SIM_ENTRY(DMSUIMUnblockControlKey)(4, unblock_key, &left), 0u);
    EXPECT_EQ(SIM_ENTRY(DMSUIMSetControlKeyProtection)(4, 0, key, &left), 0u);
    EXPECT_EQ(state(4), "0 10 10");
    EXPECT_EQ(SIM_ENTRY(DMSUIMGetControlKeyStatus)(5, &left, &left, &left), 4u);
    EXPECT_EQ(SIM_ENTRY(DMSUIMSetControlKeyProtection)(0, 2, key, &left), 4u);
}

TEST_F(SimulatorUim, AHostileModuleStaysWithinTheRecords)
{
    // On the heap, so that an address sanitizer sees the first octet too many.
    const auto status = std::make_unique<QMI_UIM_GET_CARD_STATUS_RESP>();
    const auto present = std::make_unique<int>(0);
    sim.Command("hostile UIMGetCardStatus count 200");
    EXPECT_EQ(SIM_ENTRY(UIMGetCardStatus)(present.get(), status.get()), 0u);
    EXPECT_EQ(status->cardCount, 200);
    EXPECT_EQ(status->cards[0].applicationCount, 200);
    EXPECT_EQ(status->cards[0].applications[0].aidLength, 200);
    sim.Command("hostile UIMGetCardStatus scribble");
    EXPECT_EQ(SIM_ENTRY(UIMGetCardStatus)(present.get(), status.get()), 0u);
    EXPECT_EQ(status->cards[1].applications[7].pin2UnblockLeft, 255);
    EXPECT_EQ(*present, -1);
    const auto iccid = std::make_unique<char[]>(5);
    sim.Command("hostile DMSUIMGetICCID scribble");
    EXPECT_EQ(SIM_ENTRY(DMSUIMGetICCID)(5, iccid.get()), 0u);
    EXPECT_EQ(memchr(iccid.get(), 0, 5), nullptr);
    sim.Command("hostile DMSUIMGetPINStatus scribble");
    EXPECT_EQ(State(2), "4294967295 4294967295 4294967295");
    sim.Command("fail UIMGetCardStatus 31 times 1");
    EXPECT_EQ(SIM_ENTRY(UIMGetCardStatus)(present.get(), status.get()), 31u);
    sim.Command("module leaves");
    EXPECT_EQ(SIM_ENTRY(UIMGetCardStatus)(present.get(), status.get()), 6u);
}

} // namespace
