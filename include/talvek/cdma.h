/*
 * CDMA modules: who the module is, how it is served, calls, power, and what else the interface has for them.
 */
#ifndef TALVEK_CDMA_H
#define TALVEK_CDMA_H

#include "talvek/rcode.h"

#endif /* TALVEK_CDMA_H */
