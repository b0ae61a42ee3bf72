// Every function of the interface that gets something, one row each. bench_allocations.cpp says what a row becomes;
// hence no guard.

// core.h
READS_REGISTRY(OrvGetAvailAirServers)
GETTER(OrvGetAirServerInfo)
GETTER(OrvGetHardwareVersion)
GETTER(OrvGetFirmwareVersion)
GETTER(OrvGetBootVersion)
GETTER(OrvGetPriVersion)
GETTER(OrvGetPriInfo)
GETTER(OrvGetModelID)
GETTER(OrvGetRadioPower)
GETTER(OrvGetServingNetworkGobi)
GETTER(OrvGetAudioMode)
GETTER(OrvGetImagePreference)
GETTER(OrvGetIPConfigurationGobi)

// at.h
GETTER(OrvATGetCLIP)
GETTER(OrvATGetCLIR)
GETTER(OrvATGetCOLP)
GETTER(OrvATGetCOLR)
READS_REGISTRY(OrvATGetProvisionStatus)

// gsm_profile.h
GETTER(OrvGetGsmProfileBasic)
GETTER(OrvGetGsmProfileSummary)
GETTER(OrvGetIPAddress)
GETTER(OrvGetTrafficStatistics)
GETTER(OrvGetPktSessionStatusEx)
NOT_SERVED(OrvGetProfile)
NOT_SERVED(OrvGetProfileSummary)
NOT_SERVED(OrvGetPktSessionStatus)
