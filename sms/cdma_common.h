// Terms of the CDMA short message service (3GPP2 C.S0015) that reading and building share.
#pragma once

#include "talvek/cdma_sms.h"
#include "talvek/rcode.h"

enum : BYTE { kMsgPointToPoint = 0 }; // SMS_MSG_TYPE

// PARAMETER_ID of the transport layer.
enum : BYTE {
    kParamTeleservice = 0,
    kParamServiceCategory = 1,
    kParamOriginatingAddress = 2,
    kParamOriginatingSubaddress = 3,
    kParamDestinationAddress = 4,
    kParamBearerReplyOption = 6,
    kParamBearerData = 8
};

// SUBPARAMETER_ID of the bearer data. Beyond the last one known there are none.
enum : BYTE {
    kSubMessageIdentifier = 0,
    kSubUserData = 1,
    kSubTimeStamp = 3,
    kSubPriority = 8,
    kSubNumberOfMessages = 11,
    kSubLanguage = 13,
    kSubCallback = 14,
    kSubLastKnown = 20
};

// PRIORITY stands in the top two bits of its octet.
constexpr ULONG kPriorityShift = 6;
constexpr ULONG kPriorities = 4;
