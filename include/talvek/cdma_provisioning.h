/*
 * Provisioning of CDMA modules, Mobile IP included.
 */
#ifndef TALVEK_CDMA_PROVISIONING_H
#define TALVEK_CDMA_PROVISIONING_H

#include "talvek/rcode.h"

#endif /* TALVEK_CDMA_PROVISIONING_H */
