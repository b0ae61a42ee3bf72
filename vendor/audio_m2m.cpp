// The vendor's second audio service.

#include "vendor/forward.h"

ULONG COrvGobiDll::OrvM2MAV_AudioGetProfile(BYTE* profile, BYTE* earMute, BYTE* micMute, BYTE* generator, BYTE* volume,
                                            BYTE* waitingToneMute, BYTE* sideTone)
{
    return Forward(m_entry.OrvM2MAV_AudioGetProfile, profile, earMute, micMute, generator, volume, waitingToneMute,
                   sideTone);
}

ULONG COrvGobiDll::OrvM2MAV_AudioSetProfile(BYTE* profile, BYTE* earMute, BYTE* micMute, BYTE* generator, BYTE* volume,
                                            BYTE* waitingToneMute)
{
    return Forward(m_entry.OrvM2MAV_AudioSetProfile, profile, earMute, micMute, generator, volume, waitingToneMute);
}

ULONG COrvGobiDll::OrvM2MAV_AudioGetVolume(BYTE* profile, BYTE* generator, BYTE* volume)
{
    return Forward(m_entry.OrvM2MAV_AudioGetVolume, profile, generator, volume);
}

ULONG COrvGobiDll::OrvM2MAV_AudioSetVolume(BYTE* profile, BYTE* generator, BYTE* volume)
{
    return Forward(m_entry.OrvM2MAV_AudioSetVolume, profile, generator, volume);
}

ULONG COrvGobiDll::OrvM2MAV_AudioGetAVMute(BYTE* profile, BYTE* earMute, BYTE* micMute, BYTE* waitingToneMute)
{
    return Forward(m_entry.OrvM2MAV_AudioGetAVMute, profile, earMute, micMute, waitingToneMute);
}

ULONG COrvGobiDll::OrvM2MAV_AudioSetAVMute(BYTE* profile, BYTE* earMute, BYTE* micMute, BYTE* waitingToneMute)
{
    return Forward(m_entry.OrvM2MAV_AudioSetAVMute, profile, earMute, micMute, waitingToneMute);
}

ULONG COrvGobiDll::OrvM2MAV_AudioGetAVCFG(AudioConfig* config, BYTE* profile)
{
    return Forward(m_entry.OrvM2MAV_AudioGetAVCFG, config, profile);
}

ULONG COrvGobiDll::OrvM2MAV_AudioSetAVCFG(BYTE* profile, BYTE* kind, BYTE* id, PIFACETable* table)
{
    return Forward(m_entry.OrvM2MAV_AudioSetAVCFG, profile, kind, id, table);
}

ULONG COrvGobiDll::OrvM2MAV_AudioNVDef() { return Forward(m_entry.OrvM2MAV_AudioNVDef); }

ULONG COrvGobiDll::OrvM2MAV_AudioSetLPBK(BYTE* enabled) { return Forward(m_entry.OrvM2MAV_AudioSetLPBK, enabled); }

ULONG COrvGobiDll::OrvM2MAV_AudioGetSpeakerGain(BYTE* profile, WORD* gain)
{
    return Forward(m_entry.OrvM2MAV_AudioGetSpeakerGain, profile, gain);
}

ULONG COrvGobiDll::OrvM2MAV_AudioSetSpeakerGain(BYTE* profile, WORD* gain)
{
    return Forward(m_entry.OrvM2MAV_AudioSetSpeakerGain, profile, gain);
}

ULONG COrvGobiDll::OrvM2MAV_AudioGetSTG(BYTE* profile, WORD* gain)
{
    return Forward(m_entry.OrvM2MAV_AudioGetSTG, profile, gain);
}

ULONG COrvGobiDll::OrvM2MAV_AudioSetSTG(BYTE* profile, WORD* gain)
{
    return Forward(m_entry.OrvM2MAV_AudioSetSTG, profile, gain);
}

ULONG COrvGobiDll::OrvM2MAV_AudioGetTxVolume(BYTE* profile, WORD* volume)
{
    return Forward(m_entry.OrvM2MAV_AudioGetTxVolume, profile, volume);
}

ULONG COrvGobiDll::OrvM2MAV_AudioSetTxVolume(BYTE* profile, WORD* volume)
{
    return Forward(m_entry.OrvM2MAV_AudioSetTxVolume, profile, volume);
}

ULONG COrvGobiDll::OrvM2MAV_AudioGetMicGain(BYTE* profile, WORD* gain)
{
    return Forward(m_entry.OrvM2MAV_AudioGetMicGain, profile, gain);
}

ULONG COrvGobiDll::OrvM2MAV_AudioSetMicGain(BYTE* profile, WORD* gain)
{
    return Forward(m_entry.OrvM2MAV_AudioSetMicGain, profile, gain);
}

ULONG COrvGobiDll::OrvM2MAV_AudioGetVolDB(BYTE* profile, BYTE* generator, BYTE* level, WORD* gain)
{
    return Forward(m_entry.OrvM2MAV_AudioGetVolDB, profile, generator, level, gain);
}

ULONG COrvGobiDll::OrvM2MAV_AudioSetVolDB(BYTE* profile, BYTE* generator, BYTE* level, WORD* gain)
{
    return Forward(m_entry.OrvM2MAV_AudioSetVolDB, profile, generator, level, gain);
}

ULONG COrvGobiDll::OrvM2MAV_AudioGetAVTXG(BYTE* profile, WORD* gain)
{
    return Forward(m_entry.OrvM2MAV_AudioGetAVTXG, profile, gain);
}

ULONG COrvGobiDll::OrvM2MAV_AudioSetAVTXG(BYTE* profile, WORD* gain)
{
    return Forward(m_entry.OrvM2MAV_AudioSetAVTXG, profile, gain);
}

ULONG COrvGobiDll::OrvM2MAV_AudioGetAVRXG(BYTE* profile, WORD* gain)
{
    return Forward(m_entry.OrvM2MAV_AudioGetAVRXG, profile, gain);
}

ULONG COrvGobiDll::OrvM2MAV_AudioSetAVRXG(BYTE* profile, WORD* gain)
{
    return Forward(m_entry.OrvM2MAV_AudioSetAVRXG, profile, gain);
}

ULONG COrvGobiDll::OrvM2MAV_AudioGetAVEC(BYTE* profile, BYTE* mode)
{
    return Forward(m_entry.OrvM2MAV_AudioGetAVEC, profile, mode);
}

ULONG COrvGobiDll::OrvM2MAV_AudioSetAVEC(BYTE* profile, BYTE* mode)
{
    return Forward(m_entry.OrvM2MAV_AudioSetAVEC, profile, mode);
}

ULONG COrvGobiDll::OrvM2MAV_AudioGetAVNS(BYTE* profile, BYTE* mode)
{
    return Forward(m_entry.OrvM2MAV_AudioGetAVNS, profile, mode);
}

ULONG COrvGobiDll::OrvM2MAV_AudioSetAVNS(BYTE* profile, BYTE* mode)
{
    return Forward(m_entry.OrvM2MAV_AudioSetAVNS, profile, mode);
}

ULONG COrvGobiDll::OrvM2MAV_AudioPlayTone(BYTE* tone, BYTE* volume, WORD* duration)
{
    return Forward(m_entry.OrvM2MAV_AudioPlayTone, tone, volume, duration);
}
