// The log calls as the library writes them. A call that is switched off costs one load and one branch.
//
// A file that uses LOG_C, LOG_W or TBD_ASSERT names its source module once:
//     constexpr const WCHAR* kLogSource = TXT(".\\OrvNotify.cpp");
#pragma once

#include "utility/ov_utility.h"

inline bool LogIsOn(OvLogLevel level) { return __builtin_expect(ov_LogLevel >= level, 0); }

#define LOG_C(...)                                                                                                     \
    do {                                                                                                               \
        if (LogIsOn(OV_LOG_INFO)) {                                                                                    \
            LogStoreFileLine(kLogSource, __LINE__);                                                                    \
            LogC(__VA_ARGS__);                                                                                         \
        }                                                                                                              \
    } while (0)

#define LOG_W(...)                                                                                                     \
    do {                                                                                                               \
        if (LogIsOn(OV_LOG_INFO)) {                                                                                    \
            LogStoreFileLine(kLogSource, __LINE__);                                                                    \
            LogW(__VA_ARGS__);                                                                                         \
        }                                                                                                              \
    } while (0)

// TBD_Output for information and for errors. Texts are wide.
#define TRACE_INFO(...)                                                                                                \
    do {                                                                                                               \
        if (LogIsOn(OV_LOG_INFO)) TBD_Output(4, 1, __VA_ARGS__);                                                       \
    } while (0)
#define TRACE_ERROR(...)                                                                                               \
    do {                                                                                                               \
        if (LogIsOn(OV_LOG_ERROR)) TBD_Output(4, 2, __VA_ARGS__);                                                      \
    } while (0)

// WriteLog at level 1: function entries.
#define TRACE_ENTRY(...)                                                                                               \
    do {                                                                                                               \
        if (LogIsOn(OV_LOG_TRACE)) WriteLog(1, __VA_ARGS__);                                                           \
    } while (0)

// Logs a failed condition and goes on. The text is written out, so that it can be found as it appears in the log.
#define TBD_ASSERT(condition, text)                                                                                    \
    do {                                                                                                               \
        if (__builtin_expect(!(condition), 0)) TBD_Assert(0, text, kLogSource, __LINE__);                              \
    } while (0)
