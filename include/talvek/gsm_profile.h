/*
 * The data profile of a GSM/UMTS module and its packet session.
 */
#ifndef TALVEK_GSM_PROFILE_H
#define TALVEK_GSM_PROFILE_H

#include "talvek/rcode.h"

#endif /* TALVEK_GSM_PROFILE_H */
