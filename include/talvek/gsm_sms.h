/*
 * Text messages and the phone book on GSM/UMTS modules.
 */
#ifndef TALVEK_GSM_SMS_H
#define TALVEK_GSM_SMS_H

#include "talvek/rcode.h"

#endif /* TALVEK_GSM_SMS_H */
