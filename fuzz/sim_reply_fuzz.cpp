// Reads hostile replies of a card: the line of +CRSM or +CSIM, and the file control parameters in it. The first octet
// chooses the line, the rest is the reply; the same octets are also read as parameters and as TLV elements.
#include <stdlib.h>
#include <string.h>

#include "api/sim_response.h"
#include "at/tlv.h"

namespace {

void Require(bool condition)
{
    if (!condition) abort();
}

// A block of the exact size, so that a read behind it is found.
class Block {
public:
    Block(const BYTE* data, size_t size) : m_octets(static_cast<BYTE*>(malloc(size ? size : 1)))
    {
        if (!m_octets) abort();
        if (size) memcpy(m_octets, data, size);
    }
    ~Block() { free(m_octets); }
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;
    BYTE* Octets() const { return m_octets; }

private:
    BYTE* m_octets;
};

void CheckFileControl(const BYTE* data, ULONG size)
{
    ORV_SIM_RECORD_STATUS status;
    memset(&status, 0x5A, sizeof(status));
    const ORV_SIM_RECORD_STATUS before = status;
    if (ReadFileControl(data, size, &status) != ORV_RCODE_OK) {
        Require(memcmp(&status, &before, sizeof(status)) == 0);
        return;
    }
    Require(status.sizeStruct == sizeof(status) && status.uFileId <= 0xFFFF);
    if (status.eStructure == ORV_SIM_FILE_TRANSPARENT) {
        Require(status.uRecordSize == 0 && status.uRecordCount == 0);
    } else {
        Require(status.eStructure == ORV_SIM_FILE_LINEAR_FIXED || status.eStructure == ORV_SIM_FILE_CYCLIC);
        Require(status.uRecordSize > 0);
    }
}

// Every element lies within its parent, behind the one before it, and a reader that failed gives no more.
void CheckElements(TlvReader reader, const BYTE* begin, const BYTE* end, unsigned depth)
{
    const BYTE* last = begin;
    while (reader.Next()) {
        Require(reader.Value() > last && reader.Value() + reader.Length() <= end);
        last = reader.Value() + reader.Length() - 1;
        if (depth < 8) CheckElements(reader.Inside(), reader.Value(), reader.Value() + reader.Length(), depth + 1);
    }
    const bool failed = reader.Failed();
    Require(!reader.Next() && reader.Failed() == failed && reader.Length() == 0 && reader.Tag() == 0);
}

void CheckReply(bool generic, const char* text)
{
    SimResponse response;
    memset(response.payload, 0x5A, sizeof(response.payload));
    const char* const command = generic ? "AT+CSIM=2,\"00\"\r" : "AT+CRSM=242\r";
    const SimReply reply = (generic ? ReadGenericReply : ReadRestrictedReply)(text, command, &response);
    if (reply == SimReply::Malformed) return;
    Require(response.size <= SimResponse::kCapacity && 2 * response.size <= strlen(text));
    Require(response.dwParamsMask == (response.size > 0 ? 22u : 6u));
    const ORV_RCODE meaning = CheckStatusWords(response.sw1, response.sw2);
    Require(meaning == ORV_RCODE_OK || meaning == ORV_RCODE_BAD_PARAMETER || meaning == ORV_RCODE_FAILED ||
            meaning == ORV_RCODE_UNKNOWN);
    const Block payload(response.payload, response.size);
    CheckFileControl(payload.Octets(), response.size);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const BYTE* data, size_t size)
{
    if (size == 0 || size > 0xFFFF) return 0;
    const bool generic = (data[0] & 1) != 0;
    const Block octets(data + 1, size - 1);
    const ULONG count = static_cast<ULONG>(size - 1);
    CheckFileControl(octets.Octets(), count);
    CheckElements(TlvReader(octets.Octets(), count), octets.Octets() - 1, octets.Octets() + count, 0);

    const Block text(data, size);
    memmove(text.Octets(), data + 1, size - 1);
    text.Octets()[size - 1] = 0;
    CheckReply(generic, reinterpret_cast<const char*>(text.Octets()));
    return 0;
}
