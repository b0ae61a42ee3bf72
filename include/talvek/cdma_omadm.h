/*
 * Device management of CDMA modules (OMA-DM, OMA-EX) and the file of roaming indicators.
 */
#ifndef TALVEK_CDMA_OMADM_H
#define TALVEK_CDMA_OMADM_H

#include "talvek/rcode.h"

#endif /* TALVEK_CDMA_OMADM_H */
