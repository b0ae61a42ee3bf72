/*
 * Fixed-width types, the export macros and the calling conventions of the interface.
 *
 * The names are the ones that Windows uses. Where <windows.h> exists the definitions below are the same types, so both
 * headers may be included in either order.
 */
#ifndef TALVEK_TYPES_H
#define TALVEK_TYPES_H

#include <stddef.h>
#include <stdint.h>

#ifdef _WIN32
typedef unsigned char BYTE;
typedef unsigned short WORD;
typedef unsigned long ULONG; /* 32 bits on every Windows */
typedef unsigned long long ULONGLONG;
typedef wchar_t WCHAR; /* 16 bits on every Windows */
#define ORV_TEXT(text) L##text
#ifdef __GNUC__ /* its default; written out it would become part of the names of C++ functions */
#define ORV_CALL
#define ORV_VENDOR_CALL
#else
#define ORV_CALL __cdecl
#define ORV_VENDOR_CALL __cdecl
#endif
#ifdef TALVEK_BUILD
#define ORV_EXPORT __declspec(dllexport)
#else
#define ORV_EXPORT __declspec(dllimport)
#endif
#else
typedef uint8_t BYTE;
typedef uint16_t WORD;
typedef uint32_t ULONG;
typedef uint64_t ULONGLONG;
#ifdef __cplusplus
typedef char16_t WCHAR;
#else
typedef uint_least16_t WCHAR;
#endif
/* A literal of 16-bit characters: ORV_TEXT("COM7"). In C it needs <uchar.h> only for char16_t itself. */
#define ORV_TEXT(text) u##text
#define ORV_CALL
#define ORV_VENDOR_CALL
#define ORV_EXPORT __attribute__((visibility("default")))
#endif

/* One eight-bit two's-complement value, for decibel figures. */
typedef int8_t ORV_INT8;

#ifdef __cplusplus
#define ORV_API extern "C" ORV_EXPORT
#else
#define ORV_API ORV_EXPORT
#endif

#endif /* TALVEK_TYPES_H */
