// The file of roaming indicators.

#include "api/OrvError.h"
#include "api/admission.h"
#include "talvek/cdma_omadm.h"
#include "utility/heap_buffer.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEKCdma.cpp");

constexpr ULONG kLoggedNameSize = 260;

bool IsName(const WCHAR* name, const WCHAR* known)
{
    while (*name == *known && *known != 0)
        ++name, ++known;
    return *name == *known;
}

bool IsEriName(const WCHAR* name) { return IsName(name, TXT("eri_nam1")) || IsName(name, TXT("eri_nam2")); }

// A name for the log, which cuts a longer one.
struct NarrowName {
    explicit NarrowName(const WCHAR* name)
    {
        if (LogIsOn(OV_LOG_INFO)) OV_TtoA(name, text, kLoggedNameSize - 1);
    }
    char text[kLoggedNameSize] = {};
};

} // namespace

ORV_RCODE ORV_CALL OrvGetEFileInfo(const WCHAR* pszEFilename, OrvEFileInfo* pInfo)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!pszEFilename || !pInfo) return ORV_RCODE_BAD_PARAMETER;
    if (!IsEriName(pszEFilename)) {
        LOG_C("OrvGetEFileInfo doesn't handle pszEFilename = %s", NarrowName(pszEFilename).text);
        return ORV_RCODE_NOT_SERVED;
    }
    *pInfo = {sizeof *pInfo, 1, ORV_ERI_FILE_SIZE, 0};
    const HeapBuffer file(ORV_ERI_FILE_SIZE); // too large for the stack of a device
    if (!file.As<BYTE>()) return ORV_RCODE_FAILED;
    ULONG size = ORV_ERI_FILE_SIZE;
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().GetERIFile(&size, file.As<BYTE>()));
    pInfo->uFileSize = size;
    if (result == ORV_RCODE_OK && size <= ORV_ERI_FILE_SIZE) return ORV_RCODE_OK;
    LOG_C("GetERIFile returns rc = %d, fileSizeSensor = %d, ERI_FILE_SIZE = %d", result, size, ORV_ERI_FILE_SIZE);
    return size > ORV_ERI_FILE_SIZE ? ORV_RCODE_VENDOR_5 : result; // the size decides, whatever the vendor says to it
}

ORV_RCODE ORV_CALL OrvGetEFile(const WCHAR* pszEFilename, BYTE* pBuffer, WORD nBufLen)
{
    if (const ORV_RCODE refused = RequireCdma()) return refused;
    if (!pszEFilename || !pBuffer) return ORV_RCODE_BAD_PARAMETER;
    if (!IsEriName(pszEFilename)) {
        LOG_C("OrvGetEFile doesn't handle pszEFilename = %s", NarrowName(pszEFilename).text);
        return ORV_RCODE_NOT_SERVED;
    }
    ULONG size = nBufLen;
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().GetERIFile(&size, pBuffer));
    if (result == ORV_RCODE_OK && size <= nBufLen) return ORV_RCODE_OK;
    LOG_C("GetERIFile returns rc = %d, fileSizeSensor = %d, nBufLen = %d", result, size, nBufLen);
    return size > nBufLen ? ORV_RCODE_VENDOR_5 : result;
}
