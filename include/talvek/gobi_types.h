/*
 * The records and constants of the vendor library's interface, service by service. The binding passes pointers to
 * records through and never reads a field.
 *
 * A record of octets has no padding and any alignment; one with wider members is laid out on their natural boundaries,
 * with the padding named. Texts are counted, not terminated, unless their comment says so. A count or length tells how
 * many of the places are in use; what lies beyond them is undefined. Lengths and counts that the module gives may
 * exceed the places: whoever reads a record bounds them.
 */
#ifndef TALVEK_GOBI_TYPES_H
#define TALVEK_GOBI_TYPES_H

#include "talvek/gobi_audio_types.h"
#include "talvek/gobi_data_types.h"
#include "talvek/gobi_radio_types.h"
#include "talvek/gobi_uim_types.h"
#include "talvek/gobi_voice_types.h"

#endif /* TALVEK_GOBI_TYPES_H */
