// The card's files: command lines, replies, status words, file control, and the simulated card through both commands.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>

#include "talvek/talvek.h"
#include "tests/support/guard_sweep.h"
#include "tests/support/log_capture.h"

namespace {

std::string Hex(const BYTE* octets, ULONG count)
{
    std::string text;
    for (ULONG i = 0; i < count; ++i) {
        char digits[4];
        snprintf(digits, sizeof digits, "%02X", octets[i]);
        text += digits;
    }
    return text;
}

std::vector<BYTE> Octets(const std::string& hex)
{
    std::vector<BYTE> octets;
    for (size_t i = 0; i + 1 < hex.size(); i += 2)
        octets.push_back(static_cast<BYTE>(std::stoul(hex.substr(i, 2), nullptr, 16)));
    return octets;
}

// "result mask sw1 sw2 payload", the record freed.
std::string Told(ORV_RCODE result, ORV_SIM_RESPONSE& response)
{
    std::string text = std::to_string(static_cast<ULONG>(result));
    if (response.dwParamsMask != 77) {
        text += " " + std::to_string(response.dwParamsMask) + " " + std::to_string(response.StatusWord1) + " " +
                std::to_string(response.StatusWord2);
        if (response.pPayload) text += " " + Hex(response.pPayload, response.dwPayloadSize);
        EXPECT_EQ(response.pPayload != nullptr, response.dwPayloadSize > 0);
        OrvFreeBuffer(response.pPayload);
    }
    return text;
}

std::string Restricted(ULONG command, ULONG mask, ULONG file, ULONG p1, ULONG p2, ULONG p3,
                       const std::string& data = "")
{
    const std::vector<BYTE> octets = Octets(data);
    ORV_SIM_RESPONSE response = {77, 0, 0, 0, nullptr};
    const ORV_RCODE result = OrvSendRestrictedSIMCmd(command, mask, file, p1, p2, p3, static_cast<ULONG>(octets.size()),
                                                     octets.data(), &response);
    return Told(result, response);
}

std::string Generic(const std::string& hex)
{
    const std::vector<BYTE> octets = Octets(hex);
    ORV_SIM_RESPONSE response = {77, 0, 0, 0, nullptr};
    const ORV_RCODE result = OrvSendGenericSimCommand({0, static_cast<ULONG>(octets.size()), octets.data()}, &response);
    return Told(result, response);
}

// "result structure size recordsize count", and the file and status words where they were written.
std::string RecordStatus(ULONG file)
{
    ORV_SIM_RECORD_STATUS record = {};
    const ORV_RCODE result = OrvGetSIMRecordStatus(file, &record);
    std::string text = std::to_string(static_cast<ULONG>(result));
    if (record.sizeStruct) {
        EXPECT_EQ(record.sizeStruct, 32u);
        for (const ULONG value :
             {record.uFileId, record.eStructure, record.uFileSize, record.uRecordSize, record.uRecordCount})
            text += " " + std::to_string(value);
    }
    if (record.SW1) text += " SW " + std::to_string(record.SW1) + " " + std::to_string(record.SW2);
    return text;
}

class GsmSimFiles : public ::testing::Test {
protected:
    GsmSimFiles() { Select(); }
    ~GsmSimFiles() override { OrvApiShutdown(); }

    void Select()
    {
        SelectModule(sim, "umts:5120");
        sim.Command("at log clear");
    }
    // The module answers `command` so from now on. A reply ends with its final result, so that nothing of it is left
    // for the next one.
    void Answer(const std::string& command, const std::string& line, const std::string& result = "\\r\\n\\r\\nOK")
    {
        std::string quoted;
        for (const char c : line)
            quoted += c == '"' ? std::string("\\\"") : std::string(1, c);
        sim.Command("at reply \"" + command + "\" \"\\r\\n" + quoted + result + "\"");
    }
    std::string LastSent()
    {
        const std::vector<std::string> lines = SplitLines(sim.Command("at log"));
        sim.Command("at log clear");
        return lines.empty() ? "" : lines.back();
    }
    SimHarness sim{"umts:5120"};
};

// --- commands

TEST_F(GsmSimFiles, TheMaskTellsWhichParametersAreSent)
{
    const struct {
        ULONG mask;
        const char *data, *sent;
    } rows[] = {
        {0x00, "", "AT+CRSM=214"},
        {0x01, "", "AT+CRSM=214,28474"},
        {0x07, "", "AT+CRSM=214,28474"},
        {0x0E, "", "AT+CRSM=214"},
        {0x11, "A0B0", "AT+CRSM=214,28474"},
        {0x1E, "A0B0", "AT+CRSM=214"},
        {0x0F, "A0B0", "AT+CRSM=214,28474,1,4,4294967295"},
        {0x1F, "A0B0", "AT+CRSM=214,28474,1,4,4294967295,\"A0B0\""},
        {0xFFFFFFFF, "0a", "AT+CRSM=214,28474,1,4,4294967295,\"0A\""},
        {0x1F, "", "AT+CRSM=214,28474,1,4,4294967295,"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.mask);
        Restricted(214, row.mask, 28474, 1, 4, 0xFFFFFFFF, row.data);
        EXPECT_EQ(LastSent(), row.sent);
    }
    LogCapture log;
    EXPECT_EQ(Generic("A0F2000016").substr(0, 12), "0 22 144 0 0");
    EXPECT_EQ(LastSent(), "AT+CSIM=10,\"A0F2000016\"");
    EXPECT_EQ(log.Count("CSIM AT cmd string = AT+CSIM=10,\"A0F2000016\"\r"), 1) << log.Dump();
    EXPECT_EQ(Restricted(214, 0x1F, 1, 1, 1, 1, std::string(2100, 'A')), "5") << "longer than the port's line";
    EXPECT_EQ(Generic(std::string(2100, 'A')), "5");
    EXPECT_EQ(LastSent(), "");
}

TEST_F(GsmSimFiles, ArgumentsAreRefusedBeforeAnythingIsSent)
{
    ORV_SIM_RESPONSE response = {};
    const BYTE octet = 0;
    EXPECT_EQ(OrvSendRestrictedSIMCmd(242, 0, 0, 0, 0, 0, 0, nullptr, nullptr), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvSendRestrictedSIMCmd(214, 0x1F, 0, 0, 0, 1, 1, nullptr, &response), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvSendGenericSimCommand({0, 1, nullptr}, &response), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(OrvSendGenericSimCommand({0, 1, &octet}, nullptr), ORV_RCODE_BAD_PARAMETER);
    LogCapture log;
    EXPECT_EQ(OrvSendGenericSimCommand({0, 0, &octet}, &response), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(log.Count("ASSERTION FAILURE: ===>0 != sAReqCmd.dwPayloadSize"), 1);
    EXPECT_EQ(OrvGetSIMRecordStatus(0x6F07, nullptr), ORV_RCODE_BAD_PARAMETER);
    EXPECT_EQ(RecordStatus(0x16F07), "4");
    EXPECT_EQ(RecordStatus(0x3F00), "4");
    EXPECT_EQ(log.Count("MASTER_FILE_ID != uFileId"), 1);
    EXPECT_EQ(LastSent(), "");
    OrvApiShutdown();

    sim.WriteRegistry("VID_3D5E&PID_5120", "/nonexistent/port");
    SelectModule(sim, "umts:5120");
    EXPECT_EQ(Restricted(242, 0, 0, 0, 0, 0), "354");
    EXPECT_EQ(Generic("00"), "354");
    EXPECT_EQ(RecordStatus(0x6F07), "354");
}

// --- replies

constexpr const char* kUnlimited = "ParseUnlimitedString failed ";
constexpr const char* kPostfix = "ParseRspPostfix failed";

TEST_F(GsmSimFiles, RepliesAreReadInFragmentsOfEverySize)
{
    const struct {
        const char* name;
        const char* line; // of AT+CRSM or AT+CSIM
        const char* told;
        const char* log = nullptr;
        const char* result = "\\r\\n\\r\\nOK";
    } rows[] = {
        {"no data", "+CRSM: 148,4", "0 6 148 4"},
        {"empty data", "+CRSM: 144,0,\"\"", "0 6 144 0"},
        {"lower case, blanks", "+CRSM: 144 , 0 , \"a0bF\" ", "5 22 144 0", kPostfix},
        {"lower case", "+CRSM:144 , 0 , \"a0bF\"", "0 22 144 0 A0BF"},
        {"no line break of its own", "+CRSM: 144,0,A0", "0 22 144 0 A0", nullptr, "\\r\\nOK"},
        {"odd length", "+CRSM: 144,0,\"A0B\"", "0 22 144 0 A0",
         "ASSERTION FAILURE: ===>0 == (cbResponseString - 1) % 2"},
        {"one digit", "+CRSM: 144,0,A", "0 6 144 0", "ASSERTION FAILURE: ===>0 == (cbResponseString - 1) % 2"},
        {"foreign character", "+CRSM: 144,0,\"A0G0\"", "5", kUnlimited},
        {"blank within", "+CRSM: 144,0,A0 B0", "5", kUnlimited},
        {"quote left open", "+CRSM: 144,0,\"A0", "5", kUnlimited},
        {"no first word", "+CRSM: ,0", "5", "ParseUInt 1 failed"},
        {"no second word", "+CRSM: 144,", "5", "ParseUInt 2 failed"},
        {"one word", "+CRSM: 144", "5", "MatchStringBeginning failed "},
        {"another line first", "+CREG: 1", "5", "ParseRspPrefix failed"},
        {"another line behind", "+CRSM: 144,0,\"A0\"\\r\\n+CREG: 1", "5 22 144 0", kPostfix},
        {"refused", "+CME ERROR: 10", "5", "OrvSendRestrictedSIMCmd::Extracted CME Error code = 10", "\\r\\n"},
        {"refused without a number", "ERROR", "5", "OrvSendRestrictedSIMCmd: Failed to extract CME Error", "\\r\\n"},
        {"status words alone", "+CSIM: 4,\"9000\"", "0 6 144 0"},
        {"with data", "+CSIM: 8,\"a0b09F0f\"", "0 22 159 15 A0B0"},
        {"another length", "+CSIM: 99,\"A09000\"", "0 22 144 0 A0"},
        {"nothing", "+CSIM: 0,", "5", kUnlimited},
        {"an empty text", "+CSIM: 0,\"\"", "5", "First char of response is NULL"},
        {"one octet", "+CSIM: 2,\"90\"", "5", kUnlimited},
        {"odd length", "+CSIM: 5,\"90001\"", "5", kUnlimited},
        {"foreign character", "+CSIM: 4,\"9o00\"", "5", kUnlimited},
        {"no length", "+CSIM: \"9000\"", "5", "ParseUInt 1 failed"},
        {"another reply", "+CRSM: 144,0", "5", "ParseRspPrefix failed"},
        {"another line behind", "+CSIM: 4,\"9000\"\\r\\n+CREG: 1", "5", kPostfix},
        {"refused", "+CME ERROR: 10", "5", "OrvSendGenericSimCommand::Extracted CME Error code = 10", "\\r\\n"},
    };
    bool generic = false;
    for (const auto& row : rows) {
        generic = generic || std::string(row.line).rfind("+CSIM", 0) == 0;
        Answer(generic ? "AT+CSIM=10,\\\"A0F2000016\\\"" : "AT+CRSM=242", row.line, row.result);
        for (const char* how : {"at fragment 1", "at fragment 8", "at fragment 0", "at echo off"}) {
            SCOPED_TRACE(std::string(row.name) + ": " + row.line + ", " + how);
            sim.Command(how);
            LogCapture log;
            EXPECT_EQ(generic ? Generic("A0F2000016") : Restricted(242, 0, 0, 0, 0, 0), row.told);
            const bool number_too_late = std::string(row.result) == "\\r\\n"; // a refusal ends the reply at "ERROR"
            if (row.log && !number_too_late) {
                EXPECT_EQ(log.Count(row.log), 1) << log.Dump();
            }
        }
        sim.Command("at echo on");
    }
}

TEST_F(GsmSimFiles, ADataThatFillsThePortIsReadAndALongerOneIsGivenUp)
{
    const std::string longest(1990, 'F'), longer(2100, 'F');
    Answer("AT+CRSM=242", "+CRSM: 144,0," + longest);
    EXPECT_EQ(Restricted(242, 0, 0, 0, 0, 0), "0 22 144 0 " + longest);
    Answer("AT+CRSM=242", "+CRSM: 144,0," + longer);
    EXPECT_EQ(Restricted(242, 0, 0, 0, 0, 0), "5");
    Answer("AT+CSIM=2,\\\"00\\\"", "+CSIM: 1980,\"" + longest.substr(0, 1980) + "\"");
    EXPECT_EQ(Generic("00"), "0 22 255 255 " + longest.substr(0, 1976));
}

TEST_F(GsmSimFiles, RepliesFromTheFieldAreReadAsTheirRowsSay)
{
    std::ifstream file(TALVEK_SOURCE_DIRECTORY "/tests/vectors/at_sim_replies.tsv");
    size_t count = 0;
    for (std::string line; std::getline(file, line);) {
        if (line[0] == '#') continue;
        SCOPED_TRACE(line);
        std::vector<std::string> cells;
        for (size_t begin = 0; begin <= line.size();) {
            const size_t end = std::min(line.find('\t', begin), line.size());
            cells.push_back(line.substr(begin, end - begin));
            begin = end + 1;
        }
        ASSERT_EQ(cells.size(), 5u);
        const bool generic = cells[0] == "CSIM";
        Answer(generic ? "AT+CSIM=2,\\\"00\\\"" : "AT+CRSM=242", cells[1]);
        std::string told = cells[2];
        if (cells[3] != "-") told += (cells[4] == "-" ? " 6 " : " 22 ") + cells[3];
        if (cells[4] != "-") told += " " + cells[4];
        EXPECT_EQ(generic ? Generic("00") : Restricted(242, 0, 0, 0, 0, 0), told);
        ++count;
    }
    EXPECT_EQ(count, 8u);
}

// --- status words and file control

TEST_F(GsmSimFiles, EachClassOfStatusWordsHasItsTextAndItsResult)
{
    const std::string start = "RestrictedSim Rsp contains error code that suggest ";
    const std::string memory = start + "Memory problem";
    const std::string wrong_file = start + "problem with file - filetype or index";
    const std::string security = start + "Security and/or authentication problems";
    const std::string internal = start + "Internal SIM error, no further information given";
    const std::string not_found = start + "NOT FOUND Error";
    const std::string argument = start + "Invalid ARG error";
    const std::string rest = "Rest of possible failures";
    const struct {
        ULONG sw1, sw2, result;
        const std::string& text;
    } rows[] = {
        {0x92, 0x40, 5, memory},     {0x65, 0x81, 5, memory},     {0x6A, 0x84, 5, memory},
        {0x94, 0x00, 5, wrong_file}, {0x94, 0x08, 5, wrong_file}, {0x69, 0x81, 5, wrong_file},
        {0x69, 0x86, 5, wrong_file}, {0x98, 0x04, 5, security},   {0x98, 0x40, 5, security},
        {0x69, 0x82, 5, security},   {0x69, 0x83, 5, security},   {0x6F, 0x00, 5, internal},
        {0x6F, 0x42, 5, internal},   {0x94, 0x04, 6, not_found},  {0x6A, 0x82, 6, not_found},
        {0x6A, 0x83, 6, not_found},  {0x6A, 0x88, 6, not_found},  {0x94, 0x02, 4, argument},
        {0x67, 0x0F, 4, argument},   {0x6A, 0x86, 4, argument},   {0x6B, 0x00, 4, argument},
        {0x6D, 0x00, 5, rest},       {0x6E, 0x00, 5, rest},       {0x94, 0x03, 5, rest},
        {0x62, 0x81, 5, rest},       {0x90, 0x01, 5, rest},       {0x92, 0x10, 5, rest},
        {400, 0, 5, rest},
    };
    for (const auto& row : rows) {
        const std::string words = std::to_string(row.sw1) + "," + std::to_string(row.sw2);
        SCOPED_TRACE(words);
        Answer("AT+CRSM=192,28423,0,0,15", "+CRSM: " + words + ",\"000000090000040011FF44010200\"");
        LogCapture log;
        EXPECT_EQ(RecordStatus(28423),
                  std::to_string(row.result) + " SW " + std::to_string(row.sw1) + " " + std::to_string(row.sw2));
        EXPECT_EQ(log.Count(row.text), 1) << log.Dump();
    }
    for (const char* words : {"144,0", "145,30", "159,15", "97,15", "146,3"}) {
        Answer("AT+CRSM=192,28423,0,0,15", std::string("+CRSM: ") + words + ",\"000000096F07040011FF44010200\"");
        EXPECT_EQ(RecordStatus(28423).substr(0, 15), "0 28423 0 9 0 0") << words;
    }
    Answer("AT+CRSM=192,28423,0,0,15", "+CME ERROR: 10", "\\r\\n");
    LogCapture log;
    EXPECT_EQ(RecordStatus(28423), "5");
    EXPECT_EQ(log.Count("OrvSendRestrictedSIMCmd failed with rCode = 5"), 1);
}

TEST_F(GsmSimFiles, FileControlIsReadInBothFormsAndNeverPastItsEnd)
{
    const struct {
        const char *name, *data, *told;
        const char* log = nullptr;
    } rows[] = {
        // 3GPP TS 51.011: 0 0, size, identifier, type, -, access, status, length, structure, record length
        {"fixed, transparent", "0000000A2FE204000FFF55010200", "0 12258 0 10 0 0", "TAG != FCP_TAG"},
        {"fixed, linear", "000014A06F3C04001155FF010201B0", "0 28476 1 5280 176 30"},
        {"fixed, cyclic, a remainder", "0000000A6F3904401155FF01020303", "0 28473 3 10 3 3"},
        {"nothing", "", "5", "SIM RESPONSE data not present or less the 7 bytes"},
        {"6 octets", "0000000A2FE2", "5", "SIM RESPONSE data not present or less the 7 bytes"},
        {"7 octets", "0000000A2FE204", "5", "SIM RESPONSE data less the 14 bytes"},
        {"13 octets", "0000000A2FE204000FFF550102", "5", "SIM RESPONSE data less the 14 bytes"},
        {"14 octets, linear", "000014A06F3C04001155FF010201", "5", "SIM RESPONSE data less the 15 bytes"},
        {"records without a size", "000014A06F3C04001155FF01020100", "5"},
        {"a structure that there is not", "000014A06F3C04001155FF010202B0", "5"},
        {"fixed, a directory", "000010007F2002000000000A13010304008A838A8300", "5"},
        // ETSI TS 102 221: "T" stands for the template's tag and length
        {"transparent", "T 82024121 83022FE2 8A0105 8002000A", "0 12258 0 10 0 0"},
        {"linear", "T 8205422100B01E 83026F3C 8A0105 800214A0", "0 28476 1 5280 176 30"},
        {"cyclic, no size", "T 82054621000303 83026F39", "0 28473 3 9 3 3"},
        {"another order, long length, long tag", "T 80020009 BF0C0100 83810 26F07 82024121", "0 28423 0 9 0 0"},
        {"the first of two counts", "T 82024121 83026F07 83026F08 80020009", "0 28423 0 9 0 0"},
        {"filling behind", "620C 82024121 83026F07 80020009 FFFF", "0 28423 0 9 0 0"},
        {"a size of 4", "T 82024121 83026F07 800400012345", "0 28423 0 74565 0 0"},
        {"no descriptor", "T 83026F07 80020009", "5", "FILE_DESCRIPTOR_TAG != TAG"},
        {"descriptor of 3", "T 8203412100 83026F07 80020009", "5",
         "ASSERTION FAILURE: ===>2 == cbFileDescDataSize || 5 == cbFileDescDataSize"},
        {"descriptor of 0", "T 8200 83026F07 80020009", "5",
         "ASSERTION FAILURE: ===>2 == cbFileDescDataSize || 5 == cbFileDescDataSize"},
        {"no identifier", "T 82024121 80020009", "5", "tlvFileId.GetLength != 2"},
        {"identifier of 1", "T 82024121 83016F 80020009", "5", "tlvFileId.GetLength != 2"},
        {"identifier of 3", "T 82024121 83036F0700 80020009", "5", "tlvFileId.GetLength != 2"},
        {"a directory", "T 82027821 83027F20 80020009", "5", "the file is no elementary file"},
        {"another structure", "T 82024421 83026F07 80020009", "5", "the file has a structure of another kind"},
        {"transparent without a size", "T 82024121 83026F07", "5", "the file size is none"},
        {"a size of 5", "T 82024121 83026F07 80050000000009", "5", "the file size is none"},
        {"a size of 0", "T 82024121 83026F07 8000", "5", "the file size is none"},
        {"linear without a record size", "T 82024221 83026F3C 80020009", "5", "the records have no size"},
        {"past the response", "620D 82024121 83026F07 80020009", "5", "the template runs past the response"},
        {"past the template", "620C 82024121 83026F07 80030009 FF", "5",
         "a file control parameter runs past the template"},
        {"the last length is missing", "T 82024121 83026F07 80", "5",
         "a file control parameter runs past the template"},
        {"indefinite length", "6280 82024121 83026F07 80020009 0000", "5", "the template runs past the response"},
        {"a length of five octets", "62850000 00000C 82024121 83026F07 80020009", "5",
         "the template runs past the response"},
        {"4 GiB", "6284FFFFFFFF 82024121 83026F07 80020009", "5", "the template runs past the response"},
        {"a tag alone", "62", "5", "the template runs past the response"},
        {"an endless tag", "T 1F8080808080", "5", "a file control parameter runs past the template"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        std::string data = row.data;
        data.erase(std::remove(data.begin(), data.end(), ' '), data.end());
        if (data[0] == 'T') {
            const BYTE head[] = {0x62, static_cast<BYTE>(data.size() / 2)};
            data = Hex(head, 2) + data.substr(1);
        }
        Answer("AT+CRSM=192,28423,0,0,15", "+CRSM: 144,0" + (data.empty() ? "" : ",\"" + data + "\""));
        LogCapture log;
        std::string told = row.told;
        if (told != "5") told += " SW 144 0";
        EXPECT_EQ(RecordStatus(28423), told) << log.Dump();
        if (row.log) {
            EXPECT_EQ(log.Count(row.log), 1) << log.Dump();
        }
    }
}

// --- the simulated card

TEST_F(GsmSimFiles, BothCommandsReadAndWriteTheSameFilesOnBothKindsOfCard)
{
    sim.Command("sms add 0 1 6 07911326040000F0040B911346610089F60000208062917314080CC8F71D14969741F977FD07");
    sim.Command("set identity.imsi 26201123456789"); // an even number of digits
    const std::string message =
        "0307911326040000F0040B911346610089F60000208062917314080CC8F71D14969741F977FD07" + std::string(274, 'F');
    const struct {
        const char* name;
        ULONG file;
        const char* place; // its directory
        ULONG record;      // 0: transparent
        std::string content;
        const char* status;
    } rows[] = {
        {"ICCID", 0x2FE2, "3F00", 0, "98880100000000000081", "0 12258 0 10 0 0 SW 144 0"},
        {"IMSI", 0x6F07, "7F20", 0, "0821261021436587F9", "0 28423 0 9 0 0 SW 144 0"},
        {"SPN", 0x6F46, "7F20", 0, "0154657374204E6574776F726BFFFFFFFF", "0 28486 0 17 0 0 SW 144 0"},
        {"SMS", 0x6F3C, "7F10", 1, message, "0 28476 1 5280 176 30 SW 144 0"},
        {"a free SMS", 0x6F3C, "7F10", 30, "00" + std::string(350, 'F'), "0 28476 1 5280 176 30 SW 144 0"},
        {"ACM", 0x6F39, "7F20", 2, "000000", "0 28473 3 9 3 3 SW 144 0"},
    };
    for (const bool uicc : {true, false}) {
        sim.Command(uicc ? "set card.application 2" : "set card.application 1");
        for (const auto& row : rows) {
            SCOPED_TRACE(std::string(row.name) + (uicc ? " on a UICC" : " on a SIM"));
            EXPECT_EQ(RecordStatus(row.file), row.status);
            const ULONG size = static_cast<ULONG>(row.content.size() / 2);
            const std::string told = "0 22 144 0 " + row.content;
            EXPECT_EQ(Restricted(row.record ? 178 : 176, 0x0F, row.file, row.record, row.record ? 4 : 0, size), told);
            char read[16], select[16];
            snprintf(read, sizeof read, row.record ? "B2%02X04%02X" : "B0%02X00%02X", row.record, size);
            snprintf(select, sizeof select, "02%04X", row.file);
            const std::string cla = uicc ? "00" : "A0";
            const std::string selected = uicc ? "0 6 97 " : "0 6 159 ";
            EXPECT_EQ(Generic(cla + "A4000402" + row.place).substr(0, selected.size()), selected);
            EXPECT_EQ(Generic(cla + "A40004" + select).substr(0, selected.size()), selected);
            EXPECT_EQ(Generic(cla + read), told);
        }
    }
    // What one writes the other reads.
    EXPECT_EQ(Restricted(220, 0x1F, 0x6F3C, 2, 4, 176, "01" + message.substr(2)), "0 6 144 0");
    EXPECT_EQ(sim.Command("sms list 0").substr(sim.Command("sms list 0").find('\n') + 1, 12), "1 0 6 079113");
    EXPECT_EQ(Restricted(220, 0x1F, 0x6F44, 0, 3, 32, std::string(64, '1')), "0 6 144 0");
    EXPECT_EQ(Restricted(220, 0x1F, 0x6F44, 0, 3, 32, std::string(64, '2')), "0 6 144 0");
    EXPECT_EQ(Restricted(178, 0x0F, 0x6F44, 1, 4, 32), "0 22 144 0 " + std::string(64, '2')) << "the newest first";
    EXPECT_EQ(Restricted(178, 0x0F, 0x6F44, 2, 4, 32), "0 22 144 0 " + std::string(64, '1'));
}

// Commands of AT+CSIM in the order in which they are sent; the answers are "status words", behind data if there are
// any.
TEST_F(GsmSimFiles, TheCardAnswersWithTheStatusWordsOfItsStandard)
{
    const struct {
        const char *name, *card; // what is set first, lines apart
        const char *apdu, *answer;
    } rows[] = {
        {"SIM: nothing selected", "set card.application 1", "A0B0000009", "9400"},
        {"SIM: no such file", "", "A0A40000026F99", "9404"},
        {"SIM: a file of another directory", "", "A0A40000026F07", "9404"},
        {"SIM: select DF GSM", "", "A0A40000027F20", "9F17"},
        {"SIM: a response too long", "", "A0C0000018", "6717"},
        {"SIM: it is gone", "", "A0C0000017", "6F00"},
        {"SIM: select EF IMSI", "", "A0A40000026F07", "9F0F"},
        {"SIM: its response", "", "A0C000000F", "000000096F0704001400440102000090 00"},
        {"SIM: PIN1", "set pin1.enabled 1", "A0B0000009", "9804"},
        {"SIM: PIN1 verified", "set pin1.verified 1", "A0B0000009", "0809101010325476989000"},
        {"SIM: from an offset", "", "A0B0000702", "76989000"},
        {"SIM: too much", "", "A0B000000A", "6709"},
        {"SIM: beyond the end", "", "A0B0000901", "6B00"},
        {"SIM: a record of it", "", "A0B2010409", "9408"},
        {"SIM: not to be updated", "", "A0D60000010A", "9804"},
        {"SIM: select DF TELECOM", "", "A0A40000027F10", "9F17"},
        {"SIM: select EF ADN", "", "A0A40000026F3A", "9F0F"},
        {"SIM: record 11 of 10", "", "A0B20B0420", "9402"},
        {"SIM: no current record", "", "A0B2000420", "9402"},
        {"SIM: another record length", "", "A0B2010410", "6720"},
        {"SIM: octets of it", "", "A0B0000001", "9408"},
        {"SIM: a mode that there is not", "", "A0B2010520", "6B00"},
        {"SIM: an instruction that there is not", "", "A0FF000000", "6D00"},
        {"SIM: a class that there is not", "", "00A40004023F00", "6E00"},
        {"SIM: too short", "", "A0A4", "6700"},
        {"SIM: data missing", "", "A0A4000002 3F", "6700"},
        {"UICC: nothing selected", "reset\nset pin1.enabled 1", "00B0000009", "6986"},
        {"UICC: no such file", "", "00A40004026F99", "6A82"},
        {"UICC: by name", "", "00A4040C07A0000000871002", "9000"},
        {"UICC: another name", "", "00A4040C07A0000000871004", "6A82"},
        {"UICC: select EF IMSI", "", "00A40004026F07", "6116"},
        {"UICC: its template", "", "00C0000016", "62148202412183026F078A01058B032F0602800200099000"},
        {"UICC: PIN1", "", "00B0000009", "6982"},
        {"UICC: all of it", "set pin1.enabled 0", "00B0000000", "0809101010325476989000"},
        {"UICC: the length is told", "", "00B000000A", "6C09"},
        {"UICC: a record of it", "", "00B2010409", "6981"},
        {"UICC: select EF ACM", "", "00A4000C026F39", "9000"},
        {"UICC: PIN2", "", "00DC000303000001", "6982"},
        {"UICC: PIN2 verified", "set pin2.verified 1", "00DC000303000001", "9000"},
        {"UICC: only the oldest record", "", "00DC010403000002", "6A86"},
        {"UICC: the newest is current", "", "00B2000403", "0000019000"},
        {"UICC: around to the oldest", "", "00B2000303", "0000009000"},
        {"UICC: the next, and around", "", "00B2000203", "0000019000"},
        {"UICC: record 4 of 3", "", "00B2040403", "6A83"},
        {"UICC: status of another class", "", "00F2000000", "6E00"},
        {"UICC: the beginning of the status", "", "80F2000007", "6220 8202 7821 84 9000"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        for (const std::string& line : SplitLines(row.card))
            sim.Command(line);
        if (std::string(row.card).rfind("reset", 0) == 0) {
            OrvApiShutdown();
            Select();
            sim.Command("set pin1.enabled 1");
        }
        std::string answer = row.answer, apdu = row.apdu;
        answer.erase(std::remove(answer.begin(), answer.end(), ' '), answer.end());
        apdu.erase(std::remove(apdu.begin(), apdu.end(), ' '), apdu.end());

        const std::vector<BYTE> words = Octets(answer.substr(answer.size() - 4));
        std::string expected = "0 " + std::string(answer.size() > 4 ? "22 " : "6 ") + std::to_string(words[0]) + " " +
                               std::to_string(words[1]);
        if (answer.size() > 4) expected += " " + answer.substr(0, answer.size() - 4);
        EXPECT_EQ(Generic(apdu), expected);
    }
}

TEST_F(GsmSimFiles, ARestrictedCommandFindsItsFileAndTellsWhatTheCardSays)
{
    EXPECT_EQ(Restricted(176, 0x0F, 0x6F99, 0, 0, 1), "0 6 106 130") << "no such file";
    EXPECT_EQ(Restricted(178, 0x0F, 0x6F3A, 11, 4, 32), "0 6 106 131") << "no such record";
    EXPECT_EQ(Restricted(176, 0x0F, 0x6FAD, 0, 0, 0), "0 22 144 0 00000002") << "all of it";
    EXPECT_EQ(Restricted(214, 0x1F, 0x6FAD, 0, 0, 1, "00"), "0 6 105 130") << "not to be updated";
    EXPECT_EQ(Restricted(214, 0x0F, 0x6F3A, 0, 0, 1), "5") << "an update without data";
    EXPECT_EQ(Restricted(1, 0x0F, 0x6F3A, 0, 0, 1), "5") << "no such command";
    EXPECT_EQ(Restricted(176, 0x0F, 0x6F3A, 256, 0, 1), "5") << "no octet";
    sim.Command("set pin1.enabled 1");
    EXPECT_EQ(Restricted(176, 0x0F, 0x6F07, 0, 0, 9), "0 6 105 130");
    sim.Command("set card.application 1");
    EXPECT_EQ(Restricted(176, 0x0F, 0x6F07, 0, 0, 9), "0 6 152 4");
    EXPECT_EQ(Restricted(242, 0, 0, 0, 0, 0).substr(0, 27), "0 22 144 0 000010007F200200");
    EXPECT_EQ(Restricted(192, 0x0F, 0x6F07, 0, 0, 16), "0 6 103 15");
    sim.Command("set file.spn " + std::string(1000, '5'));
    EXPECT_EQ(Restricted(176, 0x0F, 0x6F46, 1, 244, 1), "0 6 107 0") << "behind the last octet";
    EXPECT_EQ(Restricted(176, 0x0F, 0x6F46, 1, 243, 1), "0 22 144 0 55");
    sim.Command("set file.spn 0141");
    EXPECT_EQ(Restricted(176, 0x0F, 0x6F46, 0, 0, 2), "0 22 144 0 0141");
    sim.Command("set card.present 0");
    EXPECT_EQ(Restricted(176, 0x0F, 0x6F46, 0, 0, 2), "5");
    EXPECT_EQ(Generic("A0F2000016"), "5");
}

} // namespace
