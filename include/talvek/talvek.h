/*
 * TALVEK: control of a Gobi cellular module. Includes the whole C interface; C++ programs that use the vendor library's
 * methods directly also include "talvek/gobi_dll.h".
 */
#ifndef TALVEK_TALVEK_H
#define TALVEK_TALVEK_H

#include "talvek/at.h"
#include "talvek/core.h"
#include "talvek/notify.h"
#include "talvek/rcode.h"
#include "talvek/types.h"

#endif /* TALVEK_TALVEK_H */
