/*
 * GSM/UMTS modules: registration, network scan, preferred operators, identity and system status.
 */
#ifndef TALVEK_GSM_NETWORK_H
#define TALVEK_GSM_NETWORK_H

#include "talvek/rcode.h"

#endif /* TALVEK_GSM_NETWORK_H */
