#include <gtest/gtest.h>

#include "platform/hooks.h"
#include "sms/cdma_decode.h"
#include "sms/cdma_encode.h"
#include "tests/support/log_capture.h"
#include "tests/support/sms_text.h"
#include "utility/heap_buffer.h"

namespace {

// Each row of the table: what a message gives, and texts that are logged once.
TEST(SmsCdmaDecode, ReadsEveryFieldByItsRule)
{
    for (VectorRow& row : ReadVectors("cdma_decode.tsv")) {
        SCOPED_TRACE(row["name"]);
        LogCapture log;
        platform_hooks::CountCall("HeapAlloc");
        platform_hooks::CountCall("HeapFree");
        const Octets message = FromHex(row["message"]);
        ORV_CDMA_SMS record = Blank<ORV_CDMA_SMS>();
        EXPECT_EQ(DecodeCompleteMTSms(message.data(), static_cast<ULONG>(message.size()), &record),
                  Number(row["code"]));
        EXPECT_EQ(ToText(record), row["record"]);
        ExpectLogged(log, row["log"]);
        if (record.uParamMask != 0xEEEEEEEE && record.uParamMask & ORV_CDMA_SMS_HAS_USER_DATA) {
            HeapBuffer::Free(record.pUserData);
            EXPECT_LE(platform_hooks::CallCount("HeapAlloc"), 1u);
        }
        EXPECT_EQ(platform_hooks::CallCount("HeapAlloc"), platform_hooks::CallCount("HeapFree"));
        platform_hooks::Reset();
    }
    const BYTE message[] = {0};
    EXPECT_EQ(DecodeCompleteMTSms(message, 1, nullptr), 4);
    ORV_CDMA_SMS record = {};
    EXPECT_EQ(DecodeCompleteMTSms(message, 1, &record), 6);
    EXPECT_EQ(record.uStructSize, 348u);
    EXPECT_EQ(record.uMsgType, 1u);
    EXPECT_EQ(record.uReserved2, 1u);
}

TEST(SmsCdmaDecode, FailsWithoutMemory)
{
    LogCapture log;
    const Octets message = FromHex("00 0203 008480 0808 0106 102C8CBB366F");
    ORV_CDMA_SMS record = {};
    platform_hooks::FailCall("HeapAlloc", 1, 1, ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(DecodeCompleteMTSms(message.data(), static_cast<ULONG>(message.size()), &record), 5);
    EXPECT_EQ(record.pUserData, nullptr);
    EXPECT_EQ(log.Count("Failed to allocate memeory"), 1) << log.Dump();

    BYTE* block = nullptr;
    ULONG length = 0;
    platform_hooks::FailCall("HeapAlloc", 1, 1, ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(EncodeCompleteMoSms(&block, &length, "1", 1, nullptr, 0, 2, message.data(), 0, 2, 1, 0), 5);
    EXPECT_EQ(block, nullptr);
    EXPECT_EQ(log.Count("Failed to allocate memory"), 1) << log.Dump();
    platform_hooks::Reset();
}

TEST(SmsCdmaEncode, WritesEveryBitByItsRule)
{
    static std::string s_debug_text;
    platform_hooks::SetDebugSink([](const WCHAR* text, void*) { s_debug_text += Narrow(text); }, nullptr);
    for (VectorRow& row : ReadVectors("cdma_encode.tsv")) {
        SCOPED_TRACE(row["name"]);
        LogCapture log;
        const std::string destination = row["destination"], callback = row["callback"];
        Octets data = FromHex(row["data"]);
        data.push_back(0); // so that no data has an address, too
        BYTE* block = nullptr;
        ULONG length = 0;
        EXPECT_EQ(EncodeCompleteMoSms(&block, &length, destination.data(), static_cast<ULONG>(destination.size()),
                                      callback.data(), static_cast<ULONG>(callback.size()), Number(row["encoding"]),
                                      data.data(), static_cast<ULONG>(data.size() - 1), Number(row["type"]),
                                      static_cast<WORD>(Number(row["id"])), Number(row["priority"])),
                  Number(row["code"]));
        EXPECT_EQ(ToHex(block, length), ToHex(FromHex(row["message"])));
        ExpectLogged(log, row["log"]);
        HeapBuffer::Free(block);
    }
    platform_hooks::Reset();
    EXPECT_EQ(s_debug_text, "EncoderUserDataHdr:encoding type unknown 3\r\n");
}

TEST(SmsCdmaEncode, FillsTheLargestMessageAndKeepsToSmallBuffers)
{
    const std::string digits(255, '1'), data(160, 'A');
    const BYTE* const characters = reinterpret_cast<const BYTE*>(data.data());
    BYTE* block = nullptr;
    ULONG length = 0;
    EXPECT_EQ(EncodeCompleteMoSms(&block, &length, digits.data(), 255, digits.data(), 255, 4, characters, 160, 2, 1, 0),
              0);
    EXPECT_EQ(length, 5u + 131 + 2 + 5 + 164 + 3 + 131);
    EXPECT_EQ(block[137], (5 + 164 + 3 + 131) & 0xFF) << "the length of the bearer data, modulo 256";
    HeapBuffer::Free(block);

    BYTE user_data[144];
    for (ULONG room = 0; room <= sizeof user_data; ++room) {
        BitWriter out(user_data, room);
        EXPECT_EQ(EncodeUserDataHdr(out, 2, characters, 160), room < 144 ? 2 : 0) << room;
    }
    EXPECT_EQ(user_data[1], 142);
}

TEST(SmsBits, ReadsZeroPastTheEndAndStaysFailed)
{
    const BYTE octets[] = {0xFF, 0xFF, 0xFF};
    OctetReader whole(octets, 3);
    OctetReader inner = whole.Nested(2);
    BitReader bits(inner);
    EXPECT_EQ(bits.Take(7), 0x7F);
    EXPECT_EQ(bits.Take(7), 0x7F);
    EXPECT_FALSE(bits.Failed());
    EXPECT_EQ(bits.Take(7), 0x60) << "the bits that are there";
    EXPECT_TRUE(bits.Failed());
    EXPECT_EQ(bits.Take(8), 0);
    EXPECT_TRUE(bits.Failed());
    EXPECT_EQ(whole.Left(), 1u);
    EXPECT_EQ(whole.Nested(2).Left(), 0u);
    EXPECT_TRUE(whole.Failed());
    EXPECT_EQ(whole.Take(), 0);
}

} // namespace
