// What the text messages of both technologies share: the stores, and sending with the notification of its outcome.
#pragma once

#include "api/admission.h"
#include "talvek/gobi_types.h"

constexpr ULONG kSimStore = 0;
constexpr ULONG kModuleStore = 1;
constexpr ULONG kUnread = 1; // tag: from the network, not read

// Lists the unread messages of a store into `room` entries. `*count` is never more than that, and 0 on failure. Returns
// the vendor's status.
ULONG ListUnread(ULONG storage, GobiSMSListEntry* list, ULONG room, ULONG* count);

// A message as it lies in its store.
struct StoredSms {
    ULONG tag = 0;
    ULONG format = 0;
    ULONG size = 0; // octets; never more than there is room for
    BYTE octets[500] = {};

    // Returns the vendor's status.
    ULONG Read(ULONG storage, ULONG index);
};

// Removes a message. A failure is only logged, under the caller's source module.
void DeleteStored(const WCHAR* log_source, ULONG storage, ULONG index, int line = __builtin_LINE());

// Sends a message and keeps whether the module took it. A failure is logged likewise. Returns the vendor's status.
ULONG SendMessage(const WCHAR* log_source, ULONG format, ULONG size, BYTE* message, BYTE link_timer,
                  int line = __builtin_LINE());
// Where notification 501 is enabled, starts the thread that tells the client how the last sending ended.
void NotifySendStatus(const WCHAR* log_source, int line = __builtin_LINE());
