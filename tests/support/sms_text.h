// Message records on one line. Fields that hold only what Blank() put there are left out or shown as '-'.
#pragma once

#include <string.h>

#include <string>

#include "talvek/cdma_sms.h"
#include "talvek/gsm_sms.h"
#include "tests/support/log_capture.h"
#include "tests/support/vectors.h"

// Each of the texts, with " | " between them, once.
inline void ExpectLogged(const LogCapture& log, const std::string& texts)
{
    for (size_t begin = 0, end; begin < texts.size(); begin = end == std::string::npos ? end : end + 3) {
        end = texts.find(" | ", begin);
        const std::string text = texts.substr(begin, end == std::string::npos ? end : end - begin);
        EXPECT_EQ(log.Count(text), 1) << text << "\n" << log.Dump();
    }
}

constexpr BYTE kBlank = 0xEE;

template <class Record>
Record Blank()
{
    Record record;
    memset(static_cast<void*>(&record), kBlank, sizeof record);
    return record;
}

inline std::string Word(ULONG word) { return word == 0xEEEEEEEE ? "-" : std::to_string(word); }

// Up to the last octet that has been written.
template <size_t n>
std::string Written(const BYTE (&octets)[n])
{
    size_t count = n;
    while (count > 0 && octets[count - 1] == kBlank)
        --count;
    return ToHex(octets, count);
}
// The same, one digit an octet.
template <size_t n>
std::string Digits(const BYTE (&octets)[n])
{
    std::string digits;
    for (const BYTE octet : octets)
        if (octet != kBlank) digits += octet < 16 ? "0123456789ABCDEF"[octet] : '?';
    return digits;
}

inline std::string ToText(const ORV_GSM_SMS_IN& record)
{
    return "smsc " + Word(record.uSmscTypeOfNumber) + "/" + Word(record.uSmscNumberingPlan) + " " +
           Digits(record.abSmscDigits) + " from " + Word(record.uSenderAddrLen) + " " +
           Word(record.uSenderTypeOfNumber) + "/" + Word(record.uSenderNumberingPlan) + " " +
           Digits(record.abSenderDigits) + " pid " + Word(record.uPidGroup) + "/" + Word(record.uPidValue) + " dcs " +
           Word(record.eEncoding) + "/" + Word(record.eMessageClass) + "/" + Word(record.bCompressed) + " at " +
           Digits(record.abTimeStamp) + " udl " + Word(record.uUserDataLen) + " h " + Word(record.uUserDataHeaderLen) +
           " " + Written(record.abUserDataHeader) + " ud " + Written(record.abUserData);
}

inline std::string Narrow(const WCHAR* text) // up to the terminator
{
    std::string narrow;
    for (; *text; ++text)
        narrow += static_cast<char>(*text);
    return narrow;
}

// Of the parts that the mask has.
inline std::string ToText(const ORV_CDMA_SMS& record)
{
    const ULONG mask = record.uParamMask;
    if (mask == 0xEEEEEEEE) return "-";
    std::string text = "category " + Word(record.uMsgCategory);
    if (mask & ORV_CDMA_SMS_HAS_REPLY_OPTION) text += " reply " + std::to_string(record.uReplySeq);
    if (mask & ORV_CDMA_SMS_HAS_ADDRESS) {
        text += " from " + std::to_string(record.uAddrLen) + " " + Narrow(record.szAddress);
    }
    if (record.uMsgId != 0xEEEE) text += " id " + std::to_string(record.uMsgId);
    if (mask & ORV_CDMA_SMS_HAS_TIME_STAMP) {
        const BYTE stamp[] = {record.uMonth, record.uDay, record.uHour, record.uMinute, record.uSecond};
        text += " at " + std::to_string(record.uYear) + " " + ToHex(stamp, sizeof stamp);
    }
    if (mask & ORV_CDMA_SMS_HAS_PRIORITY) text += " priority " + std::to_string(record.uPriority);
    if (mask & ORV_CDMA_SMS_HAS_USER_DATA) {
        text += " data " + Word(record.uEncoding) + "/" + std::to_string(record.uUserDataLen) + " " +
                (record.pUserData ? ToHex(record.pUserData, record.uUserDataLen) : "none");
    }
    if (mask & ORV_CDMA_SMS_HAS_CALLBACK) {
        text += " callback " + std::to_string(record.uCallbackLen) + " " + Narrow(record.szCallback);
    }
    if (mask & ORV_CDMA_SMS_HAS_MESSAGE_COUNT) text += " waiting " + ToHex(&record.uNumMsgs, 1);
    return text;
}
