// Text messages: the records of the library as rows of a report, and what is to be sent checked beforehand.
#pragma once

#include "ctl/output.h"
#include "talvek/core.h"
#include "talvek/sms_text.h"

#include <string>

namespace ctl {

// A text that the library gives, or null where there is none.
template <class Function, class... Arguments>
Json TextOrNull(Function function, Arguments... arguments)
{
    std::string text(4096, '\0'); // more than user data of 1024 octets makes
    ULONG length = 0;
    if (function(arguments..., text.data(), static_cast<ULONG>(text.size()), &length) != ORV_RCODE_OK) return nullptr;
    text.resize(length);
    return text;
}

// A received message; frees its user data.
struct ReceivedCdmaSms : ORV_CDMA_SMS {
    ReceivedCdmaSms() : ORV_CDMA_SMS() {}
    ~ReceivedCdmaSms() { OrvFreeBuffer(pUserData); }
    ReceivedCdmaSms(const ReceivedCdmaSms&) = delete;
    ReceivedCdmaSms& operator=(const ReceivedCdmaSms&) = delete;
    bool Has(ULONG part) const { return (uParamMask & part) != 0; }
};

void AddGsmMessage(Report& report, const ORV_GSM_SMS_IN& record);
void AddCdmaMessage(Report& report, const ReceivedCdmaSms& record);

// Throws what the result of a function that was given a text means; `too_long` stands for 2.
void CheckText(const char* function, ORV_RCODE code, const char* too_long);
// Throws UsageError for what no message can be sent to. `what` begins the sentence: "the destination".
void CheckNumber(const std::string& number, const char* what);
void CheckCdmaNumber(const std::string& number);
// Throws UsageError for a number or a text that no CDMA message takes. The record points into `user_data`.
ORV_CDMA_SMS_SEND CdmaSmsFromText(const std::string& number, const std::string& text,
                                  BYTE (&user_data)[ORV_CDMA_SMS_MAX_USER_DATA]);

} // namespace ctl
