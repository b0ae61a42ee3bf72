// What is built and read again is what it was, for messages made up at random (RC_PARAMS="seed=…" repeats a run).
#include <gtest/gtest.h>
#include <rapidcheck.h>
#include <rapidcheck/gtest.h>

#include "sms/cdma_decode.h"
#include "sms/cdma_encode.h"
#include "sms/gsm_common.h"
#include "sms/gsm_deliver.h"
#include "sms/gsm_submit.h"
#include "tests/support/vectors.h"
#include "utility/heap_buffer.h"

namespace {

Octets AnyOctets(size_t count) { return *rc::gen::container<Octets>(count, rc::gen::arbitrary<BYTE>()); }
ULONG Below(ULONG limit) { return *rc::gen::inRange<ULONG>(0, limit); }

// `count` digits below 15, packed, with a filler behind an odd number.
Octets PackedDigits(ULONG count, Octets& digits)
{
    digits = *rc::gen::container<Octets>(count, rc::gen::inRange<BYTE>(0, 15));
    Octets packed((count + 1) / 2, 0xFF);
    for (size_t i = 0; i < count; ++i)
        packed[i / 2] = static_cast<BYTE>(i % 2 ? (packed[i / 2] & 0x0F) | digits[i] << 4 : 0xF0 | digits[i]);
    return packed;
}

RC_GTEST_PROP(SmsRoundTrip, GsmMessage, ())
{
    ORV_GSM_SMS_OUT out = {};
    Octets centre_digits, sender_digits;
    out.uSmscTypeOfNumber = Below(8), out.uSmscNumberingPlan = Below(7), out.uSmscAddrLen = Below(21);
    out.uDestTypeOfNumber = Below(8), out.uDestNumberingPlan = Below(7), out.uDestAddrLen = 1 + Below(20);
    const Octets centre = PackedDigits(out.uSmscAddrLen, centre_digits);
    const Octets sender = PackedDigits(out.uDestAddrLen, sender_digits);
    std::copy(centre.begin(), centre.end(), out.abSmscAddr);
    std::copy(sender.begin(), sender.end(), out.abDestAddr);
    out.eEncoding = Below(3), out.eMessageClass = Below(5), out.bCompressed = Below(2);
    const Octets header = AnyOctets(Below(30));
    out.uUserDataHeaderLen = static_cast<ULONG>(header.size());
    std::copy(header.begin(), header.end(), out.abUserDataHeader);
    out.uUserDataLen = Below(out.eEncoding == 2 ? 55 : 110);
    const ULONG octets = out.eEncoding == 0   ? OctetsOfSeptets(out.uUserDataLen)
                         : out.eEncoding == 1 ? out.uUserDataLen
                                              : 2 * out.uUserDataLen;
    Octets data = AnyOctets(octets);
    // What a record holds behind the last septet has no place behind a header's fill bits.
    const ULONG spare = out.eEncoding == 0 ? 8 * octets - 7 * out.uUserDataLen : 0;
    if (spare) data.back() = static_cast<BYTE>(data.back() & 0xFF >> spare);
    std::copy(data.begin(), data.end(), out.abUserData);

    Octets pdu(600);
    WORD length = static_cast<WORD>(pdu.size());
    RC_ASSERT(EncodeMOPDU(&out, pdu.data(), &length) == ORV_RCODE_OK);
    pdu.resize(length);
    // SMS-SUBMIT becomes SMS-DELIVER: the type, no TP-MR, a time stamp in front of TP-UDL.
    const long first = 1 + pdu[0], behind_scheme = first + 2 + 2 + static_cast<long>(sender.size()) + 2;
    const Octets stamp = AnyOctets(7);
    pdu[static_cast<size_t>(first)] &= 0xFC;
    pdu.insert(pdu.begin() + behind_scheme, stamp.begin(), stamp.end());
    pdu.erase(pdu.begin() + first + 1);

    ORV_GSM_SMS_IN in = {};
    RC_ASSERT(DecodeCompletePDU(pdu.data(), static_cast<ULONG>(pdu.size()), &in) == ORV_RCODE_OK);
    if (out.uSmscAddrLen) {
        RC_ASSERT(in.uSmscTypeOfNumber == out.uSmscTypeOfNumber);
        RC_ASSERT(in.uSmscNumberingPlan == out.uSmscNumberingPlan);
        RC_ASSERT(Octets(in.abSmscDigits, in.abSmscDigits + centre_digits.size()) == centre_digits);
    }
    RC_ASSERT(in.uSenderTypeOfNumber == out.uDestTypeOfNumber);
    RC_ASSERT(in.uSenderNumberingPlan == out.uDestNumberingPlan);
    RC_ASSERT(in.uSenderAddrLen == out.uDestAddrLen);
    RC_ASSERT(Octets(in.abSenderDigits, in.abSenderDigits + sender_digits.size()) == sender_digits);
    RC_ASSERT(in.eEncoding == out.eEncoding);
    RC_ASSERT(in.eMessageClass == out.eMessageClass);
    RC_ASSERT(in.bCompressed == out.bCompressed);
    for (size_t i = 0; i < stamp.size(); ++i)
        RC_ASSERT(in.abTimeStamp[i] == stamp[i] >> 4);
    RC_ASSERT(Octets(in.abUserDataHeader, in.abUserDataHeader + in.uUserDataHeaderLen) == header);
    RC_ASSERT(Octets(in.abUserData, in.abUserData + octets) == data);
}

RC_GTEST_PROP(SmsRoundTrip, CdmaMessage, ())
{
    const auto digits = rc::gen::container<std::string>(rc::gen::inRange('0', ':'));
    const std::string destination = *rc::gen::suchThat(
        digits, [](const std::string& s) { return !s.empty() && s.size() <= ORV_CDMA_SMS_MAX_DIGITS; });
    const std::string callback = (*digits).substr(0, ORV_CDMA_SMS_MAX_DIGITS);
    const bool wide = *rc::gen::arbitrary<bool>();
    Octets data = AnyOctets(wide ? 2 * Below(60) : Below(110)); // bearer data of a message has at most 255 octets
    if (!wide) {
        for (BYTE& octet : data)
            octet &= 0x7F;
    }
    const WORD id = *rc::gen::arbitrary<WORD>();
    const ULONG priority = Below(4);
    const BYTE none = 0;
    BYTE* block = nullptr;
    ULONG length = 0;
    RC_ASSERT(EncodeCompleteMoSms(&block, &length, destination.data(), static_cast<ULONG>(destination.size()),
                                  callback.data(), static_cast<ULONG>(callback.size()), wide ? 4 : 2,
                                  data.empty() ? &none : data.data(), static_cast<ULONG>(data.size()),
                                  ORV_CDMA_SMS_DELIVER, id, priority) == ORV_RCODE_OK);
    block[5] = 2; // the destination becomes the originating address
    ORV_CDMA_SMS record = {};
    const ORV_RCODE result = DecodeCompleteMTSms(block, length, &record);
    HeapBuffer::Free(block);
    RC_ASSERT(result == ORV_RCODE_OK);
    const Octets decoded(record.pUserData, record.pUserData + record.uUserDataLen);
    HeapBuffer::Free(record.pUserData);

    RC_ASSERT(std::string(record.szAddress, record.szAddress + record.uAddrLen) == destination);
    RC_ASSERT(std::string(record.szCallback, record.szCallback + record.uCallbackLen) == callback);
    RC_ASSERT((record.uParamMask & ORV_CDMA_SMS_HAS_CALLBACK) == (callback.empty() ? 0u : 0x8000u));
    RC_ASSERT(record.uMsgId == id);
    RC_ASSERT(record.uPriority == priority);
    for (size_t i = 0; wide && i < data.size(); i += 2) {
        const WORD character = static_cast<WORD>(data[i] << 8 | data[i + 1]);
        memcpy(&data[i], &character, sizeof character);
    }
    RC_ASSERT(decoded == data);
}

// Any fields, written one by one, are read again one by one and in runs.
RC_GTEST_PROP(SmsRoundTrip, Bits, (const std::vector<std::pair<BYTE, BYTE>>& fields))
{
    Octets octets(fields.size() + 1);
    BitWriter out(octets.data(), static_cast<ULONG>(octets.size()));
    for (const auto& field : fields)
        out.Put(field.first, 1 + field.second % 8u);
    out.Pad();
    RC_ASSERT(!out.Failed());
    BitReader in(OctetReader(octets.data(), out.Length()));
    for (const auto& field : fields) {
        const ULONG width = 1 + field.second % 8u;
        RC_ASSERT(in.Take(width) == (field.first & ((1u << width) - 1)));
    }
    RC_ASSERT(!in.Failed());

    const ULONG offset = Below(8), count = Below(40);
    const auto run =
        *rc::gen::element(std::make_pair(4u, &BitReader::TakeSemiOctets), std::make_pair(7u, &BitReader::TakeSeptets),
                          std::make_pair(8u, &BitReader::TakeOctets));
    BitReader single(OctetReader(octets.data(), out.Length())), runs = single;
    if (offset) {
        single.Take(offset);
        runs.Take(offset);
    }
    Octets taken(count);
    (runs.*run.second)(taken.data(), count);
    for (const BYTE octet : taken)
        RC_ASSERT(octet == single.Take(run.first));
    RC_ASSERT(runs.Failed() == single.Failed());
    RC_ASSERT(runs.BitsLeft() == single.BitsLeft());
}

} // namespace
