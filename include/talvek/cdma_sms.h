/*
 * Text messages on CDMA modules.
 */
#ifndef TALVEK_CDMA_SMS_H
#define TALVEK_CDMA_SMS_H

#include "talvek/rcode.h"

#endif /* TALVEK_CDMA_SMS_H */
