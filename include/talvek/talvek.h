/*
 * TALVEK: control of a Gobi cellular module. Includes the whole C interface; C++ programs that use the vendor library's
 * methods directly also include "talvek/gobi_dll.h".
 */
#ifndef TALVEK_TALVEK_H
#define TALVEK_TALVEK_H

#include "talvek/at.h"
#include "talvek/cdma.h"
#include "talvek/cdma_omadm.h"
#include "talvek/cdma_provisioning.h"
#include "talvek/cdma_sms.h"
#include "talvek/core.h"
#include "talvek/gsm_network.h"
#include "talvek/gsm_profile.h"
#include "talvek/gsm_sim.h"
#include "talvek/gsm_sms.h"
#include "talvek/notify.h"
#include "talvek/rcode.h"
#include "talvek/sms_text.h"
#include "talvek/types.h"

#endif /* TALVEK_TALVEK_H */
