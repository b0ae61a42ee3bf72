// talvekctl pdu: messages as octets, decoded, encoded and explained without a module.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/support/talvekctl.h"
#include "tests/support/vectors.h"

namespace {

using talvekctl::Contains;
using talvekctl::Json;
using talvekctl::Parse;
using talvekctl::RunClient;
using talvekctl::Texts;

Json Answer(Texts arguments)
{
    arguments.insert(arguments.begin(), "pdu");
    arguments.emplace_back("--json");
    const talvekctl::Result result = RunClient(arguments);
    const Json answer = Parse(result.output);
    EXPECT_EQ(result.status == 0, answer["ok"] == true) << result.output;
    return answer["ok"] == true ? answer["result"] : answer["error"];
}

// Every member of `expected` as the answer has it.
void ExpectMembers(const Json& answer, const Json& expected)
{
    for (const auto& member : expected.items())
        EXPECT_EQ(answer.value(member.key(), Json("missing")), member.value()) << member.key() << " in " << answer;
}

// "name = meaning" of all fields with that name.
std::string Meanings(const Json& explanation, const std::string& name)
{
    std::string out;
    for (const Json& field : explanation["fields"]) {
        if (field["name"] == name) out += (out.empty() ? "" : " | ") + field["meaning"].get<std::string>();
    }
    return out;
}

constexpr const char* kCdma =
    "00 0002:1002 020702955686AA9080 060144 0820 00031ABCD0 01 06 10 2C 8C BB 36 6F 0306091231235958 080180 0B0112 "
    "0E0301C888";

TEST(CtlPdu, DecodesWhatTheLibraryDecodes)
{
    const struct {
        const char* name;
        Texts arguments;
        Json expected;
    } rows[] = {
        {"UCS2 from a name",
         {"decode", "07919730071111F10414D04937BD2C7797E9D3E614000811309291024061080442043504410442"},
         {{"technology", "GSM/UMTS"},
          {"smsc", "+79037011111"},
          {"sender", "InternetSMS"},
          {"alphabet", "UCS2"},
          {"time_stamp_units", {1, 3, 9, 9, 0, 4, 6}},
          {"message_class", nullptr},
          {"concatenation", nullptr},
          {"text", "тест"}}},
        {"a part",
         {"decode", "07919730071111F1400B919746121611F10000100161916233230E0500032E020240ED303D4C0F03"},
         {{"sender", "+79642161111"},
          {"user_data_header", "00032e0202"},
          {"text", " matata"},
          {"concatenation", {{"reference", 46}, {"reference_bits", 8}, {"parts", 2}, {"part", 2}}}}},
        {"8-bit data",
         {"decode", "0791361907002004040C913619777397780004805082713235230A000000033C746578743E"},
         {{"alphabet", "8-bit data"}, {"user_data", "000000033c746578743e"}, {"text", nullptr}}},
        {"CDMA",
         {"decode", "0000021002020501C48D159C080D00031BEEF00106102C8CBB366F"},
         {{"technology", "CDMA"},
          {"sender", "1234567"},
          {"message_id", 0xBEEF},
          {"encoding", 2},
          {"text", "Hello"},
          {"priority", nullptr},
          {"time_stamp", nullptr}}},
        {"refused", {"decode", "0011000B915155551532F40008003A"}, {{"function", "OrvGsmSmsDecode"}, {"code", 5}}},
        {"read as the other kind",
         {"decode", "0000021002020501C48D159C080D00031BEEF00106102C8CBB366F", "--gsm"},
         {{"technology", "GSM/UMTS"}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ExpectMembers(Answer(row.arguments), row.expected);
    }
}

TEST(CtlPdu, EncodesOneLineAPart)
{
    const std::string long_text(161, 'x');
    const struct {
        Texts arguments;
        Texts lines; // or beginnings of them
    } rows[] = {
        {{"--to", "+15551234567", "--text", "hello"}, {"0001000b915155214365f7000005e8329bfd06"}},
        {{"--to", "+12345", "--smsc", "+49171", "--class", "1", "--text", "hello"},
         {"04919471f1010005912143f5001105e8329bfd06"}},
        {{"--to", "12345", "--text", "é€", "--ucs2"}, {"0001000581 2143f50008 04 00e920ac"}},
        {{"--to", "+12345", "--reference", "170", "--text", long_text},
         {"0041000591 2143f50000 a0 050003aa0201", "0041000591 2143f50000 0f 050003aa0202"}},
        {{"--to", "+12345", "--reference", "4660", "--wide-reference", "--text", long_text},
         {"0041000591 2143f50000 a0 060804 1234 0201", "0041000591 2143f50000 11 060804 1234 0202"}},
        {{"--cdma", "--to", "5551234567", "--message-id", "0x1234", "--text", "Hi"},
         {"0000021002 0407029554 48d159c0 080e 0003212340 010410148d20 080100"}},
        {{"--cdma", "--to", "100", "--callback", "911", "--priority", "3", "--text", "é€"},
         {"0000021002 040300c6a8 0815"}},
    };
    for (const auto& row : rows) {
        Texts arguments = {"pdu", "encode"};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        const talvekctl::Result result = RunClient(arguments);
        EXPECT_EQ(result.status, 0) << result.error;
        ASSERT_EQ(result.lines.size(), row.lines.size()) << result.output;
        for (size_t i = 0; i < row.lines.size(); ++i) {
            std::string begin = row.lines[i];
            begin.erase(std::remove(begin.begin(), begin.end(), ' '), begin.end());
            EXPECT_EQ(result.lines[i].substr(0, begin.size()), begin);
        }
    }
    const Json answer = Answer({"encode", "--to", "1", "--text", long_text});
    EXPECT_EQ(answer["technology"], "GSM/UMTS");
    EXPECT_EQ(answer["parts"].size(), 2u);
}

TEST(CtlPdu, ExplainsEachKindByItsStandard)
{
    const struct {
        const char* name;
        Texts arguments;
        const char* kind;
        std::vector<std::pair<const char*, const char*>> meanings;
        int code; // of the library's decoder; -1: not asked
    } rows[] = {
        {"deliver",
         {"07912180958750F84401800500C07020027160112B06040102000000"},
         "SMS-DELIVER",
         {{"address value", "+12085978058 | 5"},
          {"TP-SCTS", "2007-02-20 17:06:11 UTC-8:00"},
          {"coding group", "message waiting, discard, GSM 7 bit default alphabet"},
          {"IEI", "special SMS message indication"},
          {"TP-UDHI", "TP-UD begins with a header"}},
         0},
        {"submit",
         {"0011000B915155551532F400080004041404300000", "--gsm"},
         "SMS-SUBMIT",
         {{"TP-VPF", "relative"}, {"TP-VP", "5 minutes"}, {"address value", "+15555551234"}},
         5},
        {"submit without service centre",
         {"010005912143F500000BC8329BFD06DDDF723619", "--no-smsc"},
         "SMS-SUBMIT",
         {{"TP-UD", "\"Hello world\""}, {"TP-UDL", "11 septets in 10 octets"}},
         -1},
        {"status report",
         {"079194710600400706360D91947106000000F122206151457440222061514584400000"},
         "SMS-STATUS-REPORT",
         {{"TP-MR", "54"},
          {"TP-SCTS", "2022-02-16 15:54:47 UTC+1:00"},
          {"TP-DT", "2022-02-16 15:54:48 UTC+1:00"},
          {"TP-ST", "received by the SME"}},
         5},
        {"CDMA",
         {kCdma},
         "CDMA: SMS point-to-point",
         {{"IDENTIFIER", "4098, CMT-95: messaging"},
          {"CHARi", "5550100042 | \"Hello\" | 911"},
          {"YEAR to SECONDS", "2009-12-31 23:59:58"},
          {"PRIORITY", "urgent"},
          {"MSG_COUNT", "12"}},
         0},
        {"CDMA in the GSM alphabet",
         {"0000021002081900031040900112488EA794E074D69E1B7392C270326CDE9E98"},
         "CDMA: SMS point-to-point",
         {{"MESSAGE_ID", "0x0409"}, {"CHARi", "\"Test standard SMS\""}},
         6},
        {"CDMA with a header",
         {"000002100208140003100018010D0058280019701012432B636378"},
         "CDMA: SMS point-to-point",
         {{"IED", "reference 46, part 2 of 2"}, {"UDHL", "5 octets"}, {"CHARi", ""}},
         6},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Texts arguments = {"explain"};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        const Json answer = Answer(arguments);
        EXPECT_EQ(answer["kind"], row.kind) << answer;
        for (const auto& [name, meaning] : row.meanings)
            EXPECT_EQ(Meanings(answer, name), meaning) << name;
        if (row.code >= 0) {
            EXPECT_EQ(answer["library"]["code"], row.code);
        } else {
            EXPECT_FALSE(answer.contains("library"));
        }
    }
}

TEST(CtlPdu, PositionsAreOctetsAndBits)
{
    const Json answer = Answer({"explain", kCdma});
    const auto field = [&answer](const std::string& name) {
        for (const Json& row : answer["fields"]) {
            if (row["name"] == name) return row;
        }
        return Json();
    };
    ExpectMembers(field("MESSAGE_ID"), {{"first_octet", 21},
                                        {"first_bit", 3},
                                        {"last_octet", 23},
                                        {"last_bit", 4},
                                        {"bits", 16},
                                        {"level", 2},
                                        {"raw", "1010101111001101"}});
    const talvekctl::Result text = RunClient(Texts{"pdu", "explain", kCdma});
    EXPECT_TRUE(Contains(text.output, "21 b3 - 23 b4")) << text.output;
    EXPECT_TRUE(Contains(text.output, "7 b7 "));
    EXPECT_TRUE(Contains(text.output, "34-39 "));
}

// Every bit that an explanation names lies in the message, whatever the message; it tells where it ends.
TEST(CtlPdu, ExplainsMessagesFromTheFieldAndTheirBeginnings)
{
    for (const char* const file : {"gsm_deliver.tsv", "gsm_submit.tsv", "gsm_other.tsv", "cdma_deliver.tsv"}) {
        const auto rows = ReadVectors(file);
        for (size_t i = 0; i < rows.size(); i += 15) {
            const std::string& hex = rows[i].at("hex");
            if (hex.find('=') != std::string::npos || hex.size() % 2 != 0) continue;
            for (const size_t size : {hex.size(), hex.size() / 4 * 2, size_t{10}}) {
                const std::string part = hex.substr(0, size);
                SCOPED_TRACE(part);
                const Json answer = Answer({"explain", part});
                ASSERT_TRUE(answer.contains("fields")) << answer;
                for (const Json& field : answer["fields"])
                    EXPECT_LT(field["last_octet"].get<size_t>(), part.size() / 2) << field;
                if (size < hex.size()) {
                    EXPECT_FALSE(answer["whole"].get<bool>());
                }
            }
        }
    }
    const Json cut = Answer({"explain", "0791214365870"
                                        "9F1040B918100551512F2000011101021"});
    EXPECT_EQ(Meanings(cut, "TP-SCTS"), "cut short: 4 of 7 octets");
    EXPECT_TRUE(Contains(cut["faults"].dump(), "octet 19: ")) << cut["faults"];
}

TEST(CtlPdu, UsageErrorsEndWithTwo)
{
    const Texts rows[] = {
        {},
        {"decode"},
        {"decode", "0"},
        {"decode", "0x"},
        {"decode", " "},
        {"decode", "00", "--gsm", "--cdma"},
        {"encode", "--to", "1"},
        {"encode", "--to", "x", "--text", "a"},
        {"encode", "--to", "1", "--text", "a", "--class", "4"},
        {"encode", "--to", "1", "--text", "\xFF"},
        {"encode", "--to", "1", "--text", std::string(255 * 153 + 1, 'a')},
        {"encode", "--to", "1", "--text", "a", "--smsc", "1 2"},
        {"encode", "--to", "1", "--text", "a", "--priority", "1"},
        {"encode", "--cdma", "--to", "+1", "--text", "a"},
        {"encode", "--cdma", "--to", "1", "--text", std::string(161, 'a')},
        {"encode", "--cdma", "--to", "1", "--text", "a", "--class", "1"},
        {"explain", "00", "--no-smsc", "--cdma"},
    };
    for (const Texts& row : rows) {
        Texts arguments = {"pdu"};
        arguments.insert(arguments.end(), row.begin(), row.end());
        SCOPED_TRACE(row.empty() ? "" : row.back().substr(0, 20));
        EXPECT_EQ(RunClient(arguments).status, 2);
    }
}

} // namespace
