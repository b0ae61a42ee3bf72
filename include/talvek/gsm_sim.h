/*
 * The SIM of a GSM/UMTS module: PINs, and its files through restricted and generic commands.
 */
#ifndef TALVEK_GSM_SIM_H
#define TALVEK_GSM_SIM_H

#include "talvek/rcode.h"

#endif /* TALVEK_GSM_SIM_H */
