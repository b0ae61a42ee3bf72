// The entry points that a module may lack and this one does: each is there, is journalled, obeys the fault rules, and
// answers that it is not supported. The rows stand in the order in which the names are looked up.
#include "sim/call.h"

namespace sim {

static ULONG NotSupported(EntryPoint entry)
{
    const Call call(entry);
    return call.Fault() ? call.Fault() : kNotSupported;
}

} // namespace sim

#define NOT_SUPPORTED(name, ...)                                                                                       \
    extern "C" ULONG name(__VA_ARGS__) { return sim::NotSupported(sim::EntryPoint::name); }

NOT_SUPPORTED(AudioSetProfile, BYTE*, BYTE*, BYTE*, BYTE*, BYTE*)
NOT_SUPPORTED(AudioGetProfile, BYTE*, BYTE*, BYTE*, BYTE*, BYTE*)
NOT_SUPPORTED(AudioSetVolTLBConfig, BYTE*, BYTE*, BYTE*, BYTE*, WORD*, WORD*)
NOT_SUPPORTED(AudioPlayAudioTone, BYTE*)
NOT_SUPPORTED(AudioSetAudioPath, BYTE*, BYTE*, BYTE*, BYTE*, WORD*, WORD*, WORD*, ULONG*, WORD*, WORD*, WORD*, ULONG*,
              WORD*)
NOT_SUPPORTED(AudioGetPathByte, BYTE*, BYTE*, BYTE*, BYTE*)
NOT_SUPPORTED(AudioGetPathWord, BYTE*, BYTE*, BYTE*, WORD*)
NOT_SUPPORTED(AudioGetPathPCMFilter, BYTE*, BYTE*, BYTE*, WORD*, WORD*, ULONG*, WORD*)
NOT_SUPPORTED(GetPDSState, ULONG*, ULONG*)
NOT_SUPPORTED(SetPDSState, ULONG)
NOT_SUPPORTED(PDSInjectTimeReference, ULONGLONG, WORD)
NOT_SUPPORTED(GetPDSDefaults, ULONG*, BYTE*, ULONG*, ULONG*)
NOT_SUPPORTED(SetPDSDefaults, ULONG, BYTE, ULONG, ULONG)
NOT_SUPPORTED(GetXTRAAutomaticDownload, ULONG*, WORD*)
NOT_SUPPORTED(SetXTRAAutomaticDownload, ULONG, WORD)
NOT_SUPPORTED(GetXTRANetwork, ULONG*)
NOT_SUPPORTED(SetXTRANetwork, ULONG)
NOT_SUPPORTED(GetXTRAValidity, WORD*, WORD*, WORD*)
NOT_SUPPORTED(SetXTRAValidity, WORD, WORD, WORD)
NOT_SUPPORTED(SetXTRAEmbeddedClient, BYTE, BYTE)
NOT_SUPPORTED(SetNMEAConfig, BYTE, BYTE, BYTE, WORD*)
NOT_SUPPORTED(GetNMEAConfig, BYTE*, BYTE*, BYTE*, WORD*)
NOT_SUPPORTED(ForceXTRADownload, )
NOT_SUPPORTED(GetAGPSConfig, ULONG*, ULONG*)
NOT_SUPPORTED(SetAGPSConfig, ULONG, ULONG)
NOT_SUPPORTED(GetServiceAutomaticTracking, ULONG*)
NOT_SUPPORTED(SetServiceAutomaticTracking, ULONG)
NOT_SUPPORTED(GetPortAutomaticTracking, ULONG*)
NOT_SUPPORTED(SetPortAutomaticTracking, ULONG)
NOT_SUPPORTED(ResetPDSData, ULONG*, ULONG*)
NOT_SUPPORTED(GetImageStoreW, WORD, WCHAR*)
NOT_SUPPORTED(GetImageInfoW, const WCHAR*, ULONG*, ULONG*, ULONG*, ULONG*, ULONG*)
NOT_SUPPORTED(OrvM2MAV_AudioGetProfile, BYTE*, BYTE*, BYTE*, BYTE*, BYTE*, BYTE*, BYTE*)
NOT_SUPPORTED(OrvM2MAV_AudioSetProfile, BYTE*, BYTE*, BYTE*, BYTE*, BYTE*, BYTE*)
NOT_SUPPORTED(OrvM2MAV_AudioGetVolume, BYTE*, BYTE*, BYTE*)
NOT_SUPPORTED(OrvM2MAV_AudioSetVolume, BYTE*, BYTE*, BYTE*)
NOT_SUPPORTED(OrvM2MAV_AudioGetAVMute, BYTE*, BYTE*, BYTE*, BYTE*)
NOT_SUPPORTED(OrvM2MAV_AudioSetAVMute, BYTE*, BYTE*, BYTE*, BYTE*)
NOT_SUPPORTED(OrvM2MAV_AudioGetAVCFG, AudioConfig*, BYTE*)
NOT_SUPPORTED(OrvM2MAV_AudioSetAVCFG, BYTE*, BYTE*, BYTE*, PIFACETable*)
NOT_SUPPORTED(OrvM2MAV_AudioNVDef, )
NOT_SUPPORTED(OrvM2MAV_AudioSetLPBK, BYTE*)
NOT_SUPPORTED(OrvM2MAV_AudioGetTxVolume, BYTE*, WORD*)
NOT_SUPPORTED(OrvM2MAV_AudioSetTxVolume, BYTE*, WORD*)
NOT_SUPPORTED(OrvM2MAV_AudioGetMicGain, BYTE*, WORD*)
NOT_SUPPORTED(OrvM2MAV_AudioSetMicGain, BYTE*, WORD*)
NOT_SUPPORTED(OrvM2MAV_AudioGetVolDB, BYTE*, BYTE*, BYTE*, WORD*)
NOT_SUPPORTED(OrvM2MAV_AudioSetVolDB, BYTE*, BYTE*, BYTE*, WORD*)
NOT_SUPPORTED(OrvM2MAV_AudioGetAVTXG, BYTE*, WORD*)
NOT_SUPPORTED(OrvM2MAV_AudioSetAVTXG, BYTE*, WORD*)
NOT_SUPPORTED(OrvM2MAV_AudioGetAVRXG, BYTE*, WORD*)
NOT_SUPPORTED(OrvM2MAV_AudioSetAVRXG, BYTE*, WORD*)
NOT_SUPPORTED(OrvM2MAV_AudioGetAVEC, BYTE*, BYTE*)
NOT_SUPPORTED(OrvM2MAV_AudioSetAVEC, BYTE*, BYTE*)
NOT_SUPPORTED(OrvM2MAV_AudioGetAVNS, BYTE*, BYTE*)
NOT_SUPPORTED(OrvM2MAV_AudioSetAVNS, BYTE*, BYTE*)
NOT_SUPPORTED(OrvM2MAV_AudioPlayTone, BYTE*, BYTE*, WORD*)

#undef NOT_SUPPORTED
