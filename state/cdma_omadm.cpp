#include "state/cdma_omadm.h"

WORD g_OMADMDCsessionID;
WORD g_OMADMPRLsessionID;
