// The vendor's device identity, firmware and image service.

#include "vendor/forward.h"

ULONG COrvGobiDll::GetManufacturer(BYTE size, char* manufacturer)
{
    return Forward(m_entry.GetManufacturer, size, manufacturer);
}

ULONG COrvGobiDll::GetModelID(BYTE size, char* model) { return Forward(m_entry.GetModelID, size, model); }

ULONG COrvGobiDll::GetFirmwareRevision(BYTE size, char* revision)
{
    return Forward(m_entry.GetFirmwareRevision, size, revision);
}

ULONG COrvGobiDll::GetFirmwareRevisions(BYTE firmwareSize, char* firmware, BYTE bootSize, char* boot, BYTE priSize,
                                        char* pri)
{
    return Forward(m_entry.GetFirmwareRevisions, firmwareSize, firmware, bootSize, boot, priSize, pri);
}

ULONG COrvGobiDll::GetHardwareRevision(BYTE size, char* revision)
{
    return Forward(m_entry.GetHardwareRevision, size, revision);
}

ULONG COrvGobiDll::GetVoiceNumber(BYTE numberSize, char* number, BYTE minSize, char* min)
{
    return Forward(m_entry.GetVoiceNumber, numberSize, number, minSize, min);
}

ULONG COrvGobiDll::GetSerialNumbers(BYTE esnSize, char* esn, BYTE imeiSize, char* imei, BYTE meidSize, char* meid)
{
    return Forward(m_entry.GetSerialNumbers, esnSize, esn, imeiSize, imei, meidSize, meid);
}

ULONG COrvGobiDll::GetIMSI(BYTE size, char* imsi) { return Forward(m_entry.GetIMSI, size, imsi); }

ULONG COrvGobiDll::GetDeviceCapabilities(ULONG* maxTxRate, ULONG* maxRxRate, ULONG* dataService, ULONG* simSupported,
                                         ULONG* radioInterfaceCount, BYTE* radioInterfaces)
{
    return Forward(m_entry.GetDeviceCapabilities, maxTxRate, maxRxRate, dataService, simSupported, radioInterfaceCount,
                   radioInterfaces);
}

ULONG COrvGobiDll::GetFirmwareInfo(ULONG* firmwareID, ULONG* technology, ULONG* carrier, ULONG* region,
                                   ULONG* gpsCapability)
{
    return Forward(m_entry.GetFirmwareInfo, firmwareID, technology, carrier, region, gpsCapability);
}

ULONG COrvGobiDll::GetCwePkgsInfo(WORD* modelLength, BYTE* model, WORD* firmwareLength, BYTE* firmware,
                                  WORD* bootLength, BYTE* boot, WORD* priLength, BYTE* pri, WORD* skuLength, BYTE* sku,
                                  WORD* carrierLength, BYTE* carrier, WORD* carrierRevisionLength,
                                  BYTE* carrierRevision)
{
    return Forward(m_entry.OrvGetCwePkgsInfo, modelLength, model, firmwareLength, firmware, bootLength, boot, priLength,
                   pri, skuLength, sku, carrierLength, carrier, carrierRevisionLength, carrierRevision);
}

ULONG COrvGobiDll::GetRTREConfig(BYTE* configuration, BYTE* supported)
{
    if (!m_entry.GetRTREConfig) LOG_C("mpFnGetRTREConfig = NULL");
    return Forward(m_entry.GetRTREConfig, configuration, supported);
}

ULONG COrvGobiDll::UpgradeFirmwareW(WCHAR* path)
{
    LOG_W(TXT("COrvGobiDll::UpgradeFirmware: %s"), path);
    return Forward(m_entry.UpgradeFirmware2kW, path);
}

ULONG COrvGobiDll::GetImageStoreW(WORD size, WCHAR* path) { return Forward(m_entry.GetImageStoreW, size, path); }

ULONG COrvGobiDll::GetImageInfoW(const WCHAR* path, ULONG* firmwareID, ULONG* technology, ULONG* carrier, ULONG* region,
                                 ULONG* gpsCapability)
{
    return Forward(m_entry.GetImageInfoW, path, firmwareID, technology, carrier, region, gpsCapability);
}

ULONG COrvGobiDll::GetImagePreference(ULONG* imageListSize, BYTE* imageList)
{
    return Forward(m_entry.GetImagesPreference, imageListSize, imageList);
}

ULONG COrvGobiDll::SetImagePreference(ULONG imageListSize, BYTE* imageList, ULONG forceDownload, BYTE modemIndex,
                                      ULONG* imageTypesSize, BYTE* imageTypes)
{
    return Forward(m_entry.SetImagesPreference, imageListSize, imageList, forceDownload, modemIndex, imageTypesSize,
                   imageTypes);
}

ULONG COrvGobiDll::ResetToFactoryDefaults(char* spc) { return Forward(m_entry.ResetToFactoryDefaults, spc); }
