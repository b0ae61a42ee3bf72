// The device itself: identity and revisions, radio power, network preference, firmware images.

#include <string.h>

#include "api/OrvError.h"
#include "api/admission.h"
#include "api/scan.h"
#include "queries/serving_network.h"
#include "state/globals.h"

namespace {

constexpr const WCHAR* kLogSource = TXT(".\\TALVEK.cpp");

constexpr ULONG kVendorModeOnline = 0;
constexpr ULONG kVendorModeReset = 5;
constexpr ULONG kVendorModeRadioOff = 6;
constexpr BYTE kHighestReportedCapability = 9;

// Composes "part:part:part" in the room that the caller's buffer allows. The vendor counts sizes in 8 bits, so all
// lengths are octets.
class ColonList {
public:
    explicit ColonList(BYTE room) : m_room(room) {}

    const char* Text() const { return m_text; }
    // Room at the end for the next part, and where it goes.
    BYTE Room() const { return static_cast<BYTE>(m_room - m_used); }
    char* End() { return m_text + m_used; }
    // The length of the part that the vendor wrote at the end, terminated or not.
    BYTE PartLength()
    {
        m_text[m_room] = 0;
        return static_cast<BYTE>(strlen(End()));
    }
    // Closes the part with a colon.
    void Close(BYTE part_length)
    {
        m_used = static_cast<BYTE>(m_used + part_length);
        m_text[m_used++] = ':';
    }

private:
    char m_text[257] = {};
    BYTE m_room;
    BYTE m_used = 0;
};

ORV_RCODE ComposeHardwareVersion(ColonList& list)
{
    ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().GetManufacturer(list.Room(), list.End()));
    BYTE length = list.PartLength();
    if (result != ORV_RCODE_OK || list.Room() <= length) {
        LOG_C("GetManufacturer yields rc = %d, remainStrSize = %d", result, list.Room() - length);
        return result;
    }
    list.Close(length);

    result = ConvertGobiError2OrvRcode(Gobi().GetModelID(list.Room(), list.End()));
    length = list.PartLength();
    if (result != ORV_RCODE_OK || list.Room() <= length) {
        LOG_C("GetModelID yields rc = %d, remainStrSize = %d", result, list.Room() - length);
        return result;
    }
    list.Close(length);

    result = ConvertGobiError2OrvRcode(Gobi().GetHardwareRevision(list.Room(), list.End()));
    list.PartLength();
    if (result != ORV_RCODE_OK) LOG_C("GetHardwareRevision yields rc = %d", result);
    return result;
}

// A revision that OrvSelectAirServer cached.
ORV_RCODE GiveRevision(const char* revision, WCHAR* buffer, ULONG size)
{
    if (revision[0] == 0) return ORV_RCODE_NOT_AVAILABLE;
    if (!buffer && size != 0) return ORV_RCODE_BAD_PARAMETER;
    OV_AtoT(revision, buffer, size);
    return ORV_RCODE_OK;
}

} // namespace

ORV_RCODE ORV_CALL OrvGetHardwareVersion(WCHAR* buffer, ULONG size)
{
    if (!buffer || size == 0) return ORV_RCODE_BAD_PARAMETER; // before the guard
    ColonList list(static_cast<BYTE>(size - 1));
    ORV_RCODE result = RequireAvailable();
    if (result == ORV_RCODE_OK) result = ComposeHardwareVersion(list);
    OV_AtoT(list.Text(), buffer, size); // what there is, in every case
    return result;
}

ORV_RCODE ORV_CALL OrvGetFirmwareVersion(WCHAR* buffer, ULONG size)
{
    if (const ORV_RCODE refused = RequireAvailable()) return refused;
    if (size == 0) return ORV_RCODE_BAD_PARAMETER;
    return GiveRevision(g_FirmwareRevision, buffer, size);
}

ORV_RCODE ORV_CALL OrvGetBootVersion(WCHAR* buffer, ULONG size)
{
    if (const ORV_RCODE refused = RequireAvailable()) return refused;
    if (size == 0) return ORV_RCODE_BAD_PARAMETER;
    return GiveRevision(g_BootRevision, buffer, size);
}

ORV_RCODE ORV_CALL OrvGetPriVersion(WCHAR* buffer, ULONG size)
{
    if (const ORV_RCODE refused = RequireAvailable()) return refused;
    return GiveRevision(g_PriRevision, buffer, size); // a size of 0 is accepted here
}

ORV_RCODE ORV_CALL OrvGetPriInfo(OrvPriInfo* record)
{
    if (const ORV_RCODE refused = RequireAvailable()) return refused;
    if (g_PriRevision[0] == 0) return ORV_RCODE_NOT_AVAILABLE;
    if (!record) return ORV_RCODE_BAD_PARAMETER;
    *record = OrvPriInfo();
    record->sizeStruct = sizeof *record;
    Scan(g_PriRevision, "%2d%4d%2d", {&record->uPriCarrier, &record->uPriVersion, &record->uPriRevision});
    return ORV_RCODE_OK;
}

ORV_RCODE ORV_CALL OrvGetModelID(ULONG size, char* buffer)
{
    if (const ORV_RCODE refused = RequireInitialized()) return refused;
    return ConvertGobiError2OrvRcode(Gobi().GetModelID(static_cast<BYTE>(size), buffer));
}

ORV_RCODE ORV_CALL OrvGetRadioPower(OrvRadioPower* record)
{
    if (const ORV_RCODE refused = RequireInitialized()) return refused;
    if (!record) return ORV_RCODE_BAD_PARAMETER;
    ULONG mode = 0;
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().GetPower(&mode));
    if (result == ORV_RCODE_OK) record->bRadioOn = ConvertGobi2OrvOperatingMode(mode) == 0 ? 1 : 0;
    record->sizeStruct = sizeof *record; // also when the module does not answer
    return result;
}

ORV_RCODE ORV_CALL OrvSetRadioPower(OrvRadioPower* record)
{
    if (const ORV_RCODE refused = RequireInitialized()) return refused;
    if (!record) return ORV_RCODE_BAD_PARAMETER;
    return ConvertGobiError2OrvRcode(Gobi().SetPower(record->bRadioOn == 1 ? kVendorModeOnline : kVendorModeRadioOff));
}

ORV_RCODE ORV_CALL OrvModemReset(void)
{
    if (const ORV_RCODE refused = RequireInitialized()) return refused;
    return ConvertGobiError2OrvRcode(Gobi().SetPower(kVendorModeReset));
}

ORV_RCODE ORV_CALL OrvSetNetworkPreferenceGobi(ULONG techPref)
{
    const ORV_RCODE result = ConvertGobiError2OrvRcode(Gobi().SetNetworkPreference(techPref, 0));
    if (result != ORV_RCODE_OK) LOG_C("SetNetworkPreference failed, TechPref = %d, rc = %d", techPref, result);
    TRACE_ENTRY("DEBUG: OrvSetNetworkPreferenceGobi is called with TechPref = %d, rc = %d", techPref, result);
    return result;
}

ORV_RCODE ORV_CALL OrvGetServingNetworkGobi(ULONG* mask)
{
    TRACE_ENTRY("OrvGetServingNetworkGobi");
    if (!mask) return ORV_RCODE_BAD_PARAMETER; // before the guard
    if (!Gobi().IsInitialized()) {
        TRACE_ERROR(TXT("Gobi API not initialized"));
        return ORV_RCODE_API_NOT_INIT;
    }
    ServingNetworkCaps caps;
    const ORV_RCODE result = ConvertGobiError2OrvRcode(caps.Query(Gobi()));
    if (result != ORV_RCODE_OK) return result;
    ULONG bits = 0;
    for (BYTE i = 0; i < caps.count; ++i)
        if (caps.list[i] >= 1 && caps.list[i] <= kHighestReportedCapability)
            bits |= static_cast<ULONG>(1) << (caps.list[i] - 1);
    *mask = bits;
    return result;
}

ORV_RCODE ORV_CALL OrvGetAudioMode(ULONG*) { return ORV_RCODE_OK; }

ORV_RCODE ORV_CALL OrvSetAudioMode(ULONG) { return ORV_RCODE_OK; }

ORV_RCODE ORV_CALL OrvGetImagePreference(ULONG* pImageListSize, BYTE* pImageList)
{
    if (const ORV_RCODE refused = RequireInitialized()) return refused;
    return ConvertGobiError2OrvRcode(Gobi().GetImagePreference(pImageListSize, pImageList));
}

ORV_RCODE ORV_CALL OrvSetImagePreference(ULONG imageListSize, BYTE* pImageList, ULONG forceDownload, BYTE modemIndex,
                                         ULONG* pImageTypesSize, BYTE* pImageTypes)
{
    if (const ORV_RCODE refused = RequireInitialized()) return refused;
    return ConvertGobiError2OrvRcode(
        Gobi().SetImagePreference(imageListSize, pImageList, forceDownload, modemIndex, pImageTypesSize, pImageTypes));
}

ORV_RCODE ORV_CALL OrvUpgradeFirmware(WCHAR* path)
{
    LOG_W(TXT("OrvUpgradeFirmware: %s"), path);
    if (const ORV_RCODE refused = RequireInitialized()) return refused;
    return ConvertGobiError2OrvRcode(Gobi().UpgradeFirmwareW(path));
}
