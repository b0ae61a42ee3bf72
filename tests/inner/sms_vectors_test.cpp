// Messages from the field, whole, cut at every octet, and with every octet changed to every other value.
#include <gtest/gtest.h>

#include <memory>

#include "sms/cdma_decode.h"
#include "sms/gsm_deliver.h"
#include "sms/gsm_submit.h"
#include "tests/support/sms_text.h"
#include "utility/heap_buffer.h"

namespace {

// Semi-octets in the order in which an address has them; a filler counts only in a high half.
std::string AddressDigits(const Octets& octets)
{
    std::string digits;
    for (const BYTE octet : octets) {
        digits += "0123456789ABCDEF"[octet & 15];
        if (octet < 0xF0) digits += "0123456789ABCDEF"[octet >> 4];
    }
    return digits;
}

std::string PlanOf(BYTE type_of_address)
{
    static const std::map<int, const char*> plans = {{1, "1"}, {3, "2"}, {4, "3"}, {8, "6"}, {9, "4"}, {10, "5"}};
    const auto plan = plans.find(type_of_address & 15);
    return std::to_string(type_of_address >> 4 & 7) + "/" + (plan == plans.end() ? "0" : plan->second);
}

// User data behind a header of `header` octets as it is without fill bits, a bit at a time.
Octets WithoutFill(const Octets& octets, size_t header)
{
    const size_t fill = header == 0 || header * 8 % 7 == 0 ? 0 : 7 - header * 8 % 7;
    Octets moved(octets.size());
    for (size_t bit = fill; bit < 8 * octets.size(); ++bit)
        if (octets[bit / 8] >> bit % 8 & 1) {
            moved[(bit - fill) / 8] = static_cast<BYTE>(moved[(bit - fill) / 8] | 1 << (bit - fill) % 8);
        }
    return moved;
}

ULONG AlphabetOf(ULONG dcs) { return dcs & 0xC0 ? dcs >> 2 & 1 : dcs >> 2 & 3; }
ULONG ClassOf(ULONG dcs) { return dcs & 0xC0 || dcs & 0x10 ? dcs & 3 : 4; }

// With the octet of its own length, and without the length octet of an absent header.
size_t HeaderOctets(VectorRow& row) { return row["udhi"] == "1" ? row["udh_hex"].size() / 2 : 0; }

TEST(SmsVectors, GsmMessagesGiveTheFieldsThatTheColumnsTell)
{
    for (VectorRow& row : ReadVectors("gsm_deliver.tsv")) {
        SCOPED_TRACE(row["hex"]);
        const Octets pdu = FromHex(row["hex"]), sender = FromHex(row["sender_raw"]);
        const ULONG dcs = Number(row["dcs"], 16), pid = Number(row["pid"], 16), udl = Number(row["udl"]);
        const size_t header = HeaderOctets(row), centre = pdu[0];
        const Octets elements = FromHex(row["udh_hex"]);
        Octets data = WithoutFill(FromHex(row["ud_hex"]), AlphabetOf(dcs) == 0 ? header : 0);
        const ULONG octets = AlphabetOf(dcs) == 0 ? (udl * 7 + 7) / 8 : udl;
        data.resize(octets > header ? octets - header : 0);
        std::string stamp;
        for (size_t i = 0; i < 14; i += 2)
            stamp += row["scts_raw"][i];

        const std::string expected =
            "smsc " + (centre == 0 ? "-/- " : PlanOf(pdu[1]) + " " + AddressDigits(Octets(&pdu[2], &pdu[1] + centre))) +
            " from " + std::to_string(sender[0]) + " " + PlanOf(sender[1]) + " " +
            AddressDigits(Octets(sender.begin() + 2, sender.end())) + " pid " + std::to_string(pid & 0xF0) + "/" +
            std::to_string(pid & 0x0F) + " dcs " + std::to_string(AlphabetOf(dcs)) + "/" +
            std::to_string(ClassOf(dcs)) + "/" + std::to_string(dcs & 0xC0 ? 0 : dcs >> 5) + " at " + stamp + " udl " +
            row["udl"] + " h " + std::to_string(header ? header - 1 : 0) + " " +
            ToHex(elements).substr(header ? 2 : 0) + " ud " + ToHex(data);
        ORV_GSM_SMS_IN record = Blank<ORV_GSM_SMS_IN>();
        EXPECT_EQ(DecodeCompletePDU(pdu.data(), static_cast<ULONG>(pdu.size()), &record), ORV_RCODE_OK);
        EXPECT_EQ(ToText(record), expected);
    }
    for (VectorRow& row : ReadVectors("gsm_other.tsv")) {
        const Octets pdu = FromHex(row["hex"]);
        ORV_GSM_SMS_IN record = {};
        EXPECT_EQ(DecodeCompletePDU(pdu.data(), static_cast<ULONG>(pdu.size()), &record), Number(row["code"]))
            << row["type"] << " " << row["hex"];
    }
}

// The message of the row as this library builds it: no validity period, TP-MR and TP-PID 0, the general coding group.
TEST(SmsVectors, GsmMessagesToBeSentAreBuiltFromTheirColumns)
{
    int built_rows = 0;
    for (VectorRow& row : ReadVectors("gsm_submit.tsv")) {
        SCOPED_TRACE(row["hex"]);
        const Octets pdu = FromHex(row["hex"]), destination = FromHex(row["dest_raw"]);
        const ULONG dcs = Number(row["dcs"], 16), udl = Number(row["udl"]);
        const size_t header = HeaderOctets(row), centre = pdu[0];
        const Octets elements = FromHex(row["udh_hex"]), data = FromHex(row["ud_hex"]);
        const bool septets = AlphabetOf(dcs) == 0;
        // No destination, an empty header or user data that is cut cannot be asked for.
        if (destination[0] == 0 || header == 1 || header + data.size() != (septets ? (udl * 7 + 7) / 8 : udl)) continue;
        ++built_rows;
        const Octets packed = WithoutFill(data, septets ? header : 0);

        ORV_GSM_SMS_OUT record = {};
        record.uUserDataLen = septets ? udl - static_cast<ULONG>((header * 8 + 6) / 7)
                                      : (udl - static_cast<ULONG>(header)) / (AlphabetOf(dcs) == 2 ? 2 : 1);
        if (centre > 1) {
            record.uSmscTypeOfNumber = pdu[1] >> 4 & 7u;
            record.uSmscNumberingPlan = pdu[1] & 1u;
            record.uSmscAddrLen = static_cast<ULONG>(AddressDigits(Octets(&pdu[2], &pdu[1] + centre)).size());
            std::copy(&pdu[2], &pdu[1] + centre, record.abSmscAddr);
        }
        record.uDestTypeOfNumber = destination[1] >> 4 & 7u;
        record.uDestNumberingPlan = destination[1] & 1u;
        record.uDestAddrLen = destination[0];
        std::copy(destination.begin() + 2, destination.end(), record.abDestAddr);
        record.eEncoding = AlphabetOf(dcs);
        record.eMessageClass = ClassOf(dcs);
        std::copy(packed.begin(), packed.end(), record.abUserData);
        if (header) {
            record.uUserDataHeaderLen = static_cast<ULONG>(header - 1);
            std::copy(elements.begin() + 1, elements.end(), record.abUserDataHeader);
        }

        Octets expected(pdu.begin(), pdu.begin() + 1 + static_cast<int>(centre));
        if (centre == 1) expected = {0}; // a type of address without digits
        expected.push_back(header ? 0x41 : 0x01);
        expected.push_back(0);
        expected.insert(expected.end(), destination.begin(), destination.end());
        expected.push_back(0);
        expected.push_back(static_cast<BYTE>(AlphabetOf(dcs) << 2 | (ClassOf(dcs) < 4 ? 0x10 | ClassOf(dcs) : 0)));
        expected.push_back(static_cast<BYTE>(udl));
        expected.insert(expected.end(), elements.begin(), elements.end());
        expected.insert(expected.end(), data.begin(), data.end());

        Octets built(expected.size() + 1, kBlank);
        WORD length = static_cast<WORD>(expected.size());
        EXPECT_EQ(EncodeMOPDU(&record, built.data(), &length), ORV_RCODE_OK);
        EXPECT_EQ(built.back(), kBlank);
        built.pop_back();
        EXPECT_EQ(ToHex(built), ToHex(expected));
    }
    EXPECT_GE(built_rows, 68);
}

// What decoding the bearer data of a row gives, and the record's text from its identifier on.
ORV_RCODE CdmaExpectation(VectorRow& row, std::string& text)
{
    if (row["message_type"] != "1") return ORV_RCODE_FAILED;
    text = " id " + std::to_string(Number(row["message_id"], 16));
    if (!row["timestamp_raw"].empty()) {
        const std::string stamp = row["timestamp_raw"].substr(row["timestamp_raw"].size() - 12);
        text += " at " + std::to_string(Number(stamp.substr(0, 2))) + " " + stamp.substr(2);
    }
    if (!row["priority"].empty()) text += " priority " + row["priority"];
    const Octets data = FromHex(row["ud_subparam_hex"]);
    const ULONG encoding = Number(row["encoding"]), count = Number(row["num_fields"]);
    if (encoding == 1 || encoding == 3) return ORV_RCODE_UNSUPPORTED;
    const size_t width = encoding == 2 || encoding == 9 ? 7 : 8;
    const size_t length = encoding == 4 ? 2 * count : count;
    Octets characters(length);
    for (size_t i = 0; i < length * width; ++i) {
        const size_t bit = 13 + i;
        const bool set = bit / 8 < data.size() && data[bit / 8] >> (7 - bit % 8) & 1;
        characters[i / width] = static_cast<BYTE>(characters[i / width] << 1 | set);
    }
    if (encoding == 4) {
        for (size_t i = 0; i < length; i += 2)
            std::swap(characters[i], characters[i + 1]);
    }
    if (encoding == 2 && !row["text"].empty()) {
        EXPECT_EQ(std::string(characters.begin(), characters.end()), row["text"]);
    }
    text += " data " + row["encoding"] + "/" + std::to_string(length) + " " + ToHex(characters);
    if (!row["callback"].empty()) {
        text += " callback " + std::to_string(row["callback"].size()) + " " + row["callback"];
    }
    return ORV_RCODE_OK;
}

ORV_RCODE DecodeCdma(const Octets& message, std::string& text)
{
    const std::unique_ptr<ORV_CDMA_SMS> record(new ORV_CDMA_SMS(Blank<ORV_CDMA_SMS>()));
    const std::unique_ptr<BYTE[]> exact(new BYTE[message.size()]); // so that a read behind it is found
    std::copy(message.begin(), message.end(), exact.get());
    const ORV_RCODE result = DecodeCompleteMTSms(exact.get(), static_cast<ULONG>(message.size()), record.get());
    text = ToText(*record); // reads every octet that is handed over
    const ULONG mask = record->uParamMask;
    if (mask != 0xEEEEEEEE && mask & ORV_CDMA_SMS_HAS_USER_DATA) {
        EXPECT_TRUE(result == ORV_RCODE_OK || !record->pUserData);
        HeapBuffer::Free(record->pUserData);
    }
    return result;
}

ORV_RCODE DecodeGsm(const Octets& pdu, std::string& text)
{
    const std::unique_ptr<ORV_GSM_SMS_IN> record(new ORV_GSM_SMS_IN(Blank<ORV_GSM_SMS_IN>()));
    const std::unique_ptr<BYTE[]> exact(new BYTE[pdu.size()]);
    std::copy(pdu.begin(), pdu.end(), exact.get());
    const ORV_RCODE result = DecodeCompletePDU(exact.get(), static_cast<ULONG>(pdu.size()), record.get());
    EXPECT_EQ(record->bMoreMessages, kBlank);
    text = std::to_string(record->uSmscTypeOfNumber + record->uUserDataLen + record->uUserDataHeaderLen);
    return result;
}

// Bearer data alone becomes a message from "12".
Octets WholeMessage(VectorRow& row)
{
    if (!row["hex"].empty()) return FromHex(row["hex"]);
    const Octets bearer = FromHex(row["bearer_hex"]);
    const BYTE length = static_cast<BYTE>(bearer.size());
    return FromHex("00 0203 008480 08" + ToHex(&length, 1) + row["bearer_hex"]);
}

TEST(SmsVectors, CdmaMessagesGiveTheFieldsThatTheColumnsTell)
{
    for (VectorRow& row : ReadVectors("cdma_deliver.tsv")) {
        SCOPED_TRACE(row["hex"]);
        std::string text, rest;
        const ORV_RCODE result = DecodeCdma(WholeMessage(row), text);
        if (row["sms_msg_type"] != "0") {
            EXPECT_EQ(result, ORV_RCODE_UNSUPPORTED);
        } else if (row["orig_address"].empty()) { // a destination instead
            EXPECT_EQ(result, ORV_RCODE_FAILED);
        } else {
            EXPECT_EQ(result, CdmaExpectation(row, rest));
            EXPECT_EQ(text, "category 1 from " + std::to_string(row["orig_address"].size()) + " " +
                                row["orig_address"] + rest);
        }
    }
    for (VectorRow& row : ReadVectors("cdma_bearer.tsv")) {
        SCOPED_TRACE(row["bearer_hex"]);
        std::string text, rest;
        const ORV_RCODE result = DecodeCdma(WholeMessage(row), text), expected = CdmaExpectation(row, rest);
        EXPECT_EQ(result, expected);
        if (expected == ORV_RCODE_OK) {
            EXPECT_EQ(text, "category 1 from 2 12" + rest);
        }
    }
}

// Every prefix of a message, and the message with each octet changed to every value.
void DecodeNeighbours(ORV_RCODE (*decode)(const Octets&, std::string&), const Octets& message, bool change)
{
    const auto is_result = [&](const Octets& octets) {
        std::string text;
        const int result = decode(octets, text);
        return result == 0 || result == 1 || result == 2 || result == 5 || result == 6;
    };
    for (size_t length = 1; length < message.size(); ++length)
        EXPECT_TRUE(is_result(Octets(message.begin(), message.begin() + static_cast<int>(length)))) << length;
    Octets changed = message;
    for (size_t at = 0; change && at < message.size(); ++at) {
        for (int value = 0; value < 256; ++value) {
            changed[at] = static_cast<BYTE>(value);
            ASSERT_TRUE(is_result(changed)) << at << " " << value;
        }
        changed[at] = message[at];
    }
}

TEST(SmsVectors, NoCutAndNoChangedOctetLeadsOutsideTheMessage)
{
    for (const char* table : {"gsm_deliver.tsv", "gsm_submit.tsv", "gsm_other.tsv"}) {
        int row_number = 0;
        for (VectorRow& row : ReadVectors(table))
            DecodeNeighbours(DecodeGsm, WholeMessage(row), row_number++ % 10 == 0);
    }
    for (const char* table : {"cdma_deliver.tsv", "cdma_bearer.tsv"})
        for (VectorRow& row : ReadVectors(table))
            DecodeNeighbours(DecodeCdma, WholeMessage(row), true);
}

} // namespace
