#include "ctl/message.h"

#include "ctl/pdu_explain.h"
#include "ctl/text.h"

#include <algorithm>

namespace ctl {

namespace {

std::string Shown(const Json& text) { return text.is_null() ? "- (no text)" : text.get<std::string>(); }

std::string NameOf(ULONG value, const std::vector<const char*>& names)
{
    return value < names.size() ? names[value] : std::to_string(value);
}

Json Bcd(BYTE octet) { return (octet >> 4) * 10 + (octet & 15); }

} // namespace

void AddGsmMessage(Report& report, const ORV_GSM_SMS_IN& record)
{
    report.Add("sender", "sender", TextOrNull(OrvGsmSmsSender, &record));
    report.AddHidden("sender_type", record.uSenderTypeOfNumber);
    report.Add("protocol", "protocol", record.uPidGroup | record.uPidValue,
               HexNumber(record.uPidGroup | record.uPidValue, 2));
    report.Add("alphabet", "alphabet",
               NameOf(record.eEncoding, {"GSM 7 bit", "8-bit data", "UCS2", "reserved"}) +
                   (record.bCompressed != 0 ? ", compressed" : ""));
    report.Add("message_class", "class", record.eMessageClass > 3 ? Json() : Json(record.eMessageClass));
    Json units = Json::array();
    std::string shown;
    for (size_t i = 0; i < 7; ++i) {
        units.push_back(record.abTimeStamp[i]);
        shown += std::to_string(record.abTimeStamp[i]) + " ";
    }
    report.Add("time_stamp_units", "time stamp", units, shown + "(units alone; see pdu explain)");

    const ULONG header = record.uUserDataHeaderLen;
    ULONG octets = record.eEncoding == ORV_GSM_ALPHABET_7BIT ? (record.uUserDataLen * 7 + 7) / 8 : record.uUserDataLen;
    octets -= std::min(octets, header != 0 ? header + 1 : 0);
    report.Add("user_data_length", "user data length", record.uUserDataLen);
    report.Add("user_data_header", "header", header != 0 ? Json(Hex(record.abUserDataHeader, header)) : Json());
    ORV_SMS_CONCATENATION part = {};
    Json concatenation;
    if (OrvGsmSmsConcatenation(&record, &part) == ORV_RCODE_OK) {
        concatenation = {{"reference", part.uReference},
                         {"reference_bits", part.bWideReference != 0 ? 16 : 8},
                         {"parts", part.uParts},
                         {"part", part.uPart}};
        report.AddHidden("concatenation", concatenation);
        report.AddLine("part " + std::to_string(part.uPart) + " of " + std::to_string(part.uParts) + ", reference " +
                       std::to_string(part.uReference));
    } else {
        report.AddHidden("concatenation", nullptr);
    }
    report.Add("user_data", "user data", Hex(record.abUserData, octets));
    const Json text = TextOrNull(OrvGsmSmsToText, &record);
    report.Add("text", "text", text, Shown(text));
}

void AddCdmaMessage(Report& report, const ReceivedCdmaSms& record)
{
    const auto if_present = [&record](ULONG part, Json value) { return record.Has(part) ? std::move(value) : Json(); };
    report.Add("sender", "sender", Utf8(record.szAddress, record.uAddrLen));
    report.Add("category", "category",
               record.uMsgCategory == ORV_CDMA_SMS_CATEGORY_VOICE_MAIL ? "voice mail notification" : "text");
    report.Add("message_id", "message id", record.uMsgId);
    report.Add("reply_seq", "reply sequence", if_present(ORV_CDMA_SMS_HAS_REPLY_OPTION, record.uReplySeq));
    Json stamp;
    if (record.Has(ORV_CDMA_SMS_HAS_TIME_STAMP)) {
        stamp = {{"year", record.uYear},      {"month", Bcd(record.uMonth)},   {"day", Bcd(record.uDay)},
                 {"hour", Bcd(record.uHour)}, {"minute", Bcd(record.uMinute)}, {"second", Bcd(record.uSecond)}};
        const auto two = [](ULONG value) { return (value < 10 ? "0" : "") + std::to_string(value); };
        report.Add("time_stamp", "time stamp", stamp,
                   FullYear(two(record.uYear)) + "-" + PlainDigits(record.uMonth) + "-" + PlainDigits(record.uDay) +
                       " " + PlainDigits(record.uHour) + ":" + PlainDigits(record.uMinute) + ":" +
                       PlainDigits(record.uSecond));
    } else {
        report.Add("time_stamp", "time stamp", stamp);
    }
    report.Add("priority", "priority",
               if_present(ORV_CDMA_SMS_HAS_PRIORITY,
                          NameOf(record.uPriority, {"normal", "interactive", "urgent", "emergency"})));
    report.Add("callback", "call-back number",
               if_present(ORV_CDMA_SMS_HAS_CALLBACK, Utf8(record.szCallback, record.uCallbackLen)));
    report.Add("messages_waiting", "messages waiting",
               if_present(ORV_CDMA_SMS_HAS_MESSAGE_COUNT, Bcd(record.uNumMsgs)));
    const bool has_data = record.Has(ORV_CDMA_SMS_HAS_USER_DATA);
    report.Add("encoding", "encoding", if_present(ORV_CDMA_SMS_HAS_USER_DATA, record.uEncoding));
    report.AddHidden("user_data", has_data ? Json(Hex(record.pUserData, record.uUserDataLen)) : Json());
    const Json text = has_data ? TextOrNull(OrvCdmaSmsToText, static_cast<const ORV_CDMA_SMS*>(&record)) : Json();
    report.Add("text", "text", text, Shown(text));
}

void CheckText(const char* function, ORV_RCODE code, const char* too_long)
{
    if (code == ORV_RCODE_VENDOR_5) throw UsageError(too_long);
    if (code == ORV_RCODE_FAILED) throw UsageError("the text is not UTF-8");
    Check(function, code);
}

void CheckNumber(const std::string& number, const char* what)
{
    ULONG type = 0, plan = 0, digits = 0;
    BYTE octets[20];
    const ORV_RCODE result = OrvGsmAddressFromText(number.c_str(), &type, &plan, &digits, octets, sizeof octets);
    if (result != ORV_RCODE_OK) throw UsageError(std::string(what) + " '" + number + "' is no telephone number");
}

void CheckCdmaNumber(const std::string& number)
{
    if (number.empty() || number.size() > ORV_CDMA_SMS_MAX_DIGITS ||
        !std::all_of(number.begin(), number.end(), [](char c) { return c >= '0' && c <= '9'; }))
        throw UsageError("a CDMA message takes numbers of 1 to 66 digits, without '+'");
}

ORV_CDMA_SMS_SEND CdmaSmsFromText(const std::string& number, const std::string& text,
                                  BYTE (&user_data)[ORV_CDMA_SMS_MAX_USER_DATA])
{
    CheckCdmaNumber(number);
    if (text.empty()) throw UsageError("a CDMA message needs a text");
    ORV_CDMA_SMS_SEND record = {};
    CheckText("OrvCdmaSmsFromText",
              OrvCdmaSmsFromText(number.c_str(), text.data(), static_cast<ULONG>(text.size()), &record, user_data,
                                 sizeof user_data),
              "the text is too long: at most 160 characters of ASCII or 80 of Unicode");
    return record;
}

} // namespace ctl
