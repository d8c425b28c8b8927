// Lets the compiler check the arguments of a printf-like function against its format text.

#ifndef WEXPOL_PLATFORM_PRINTF_H_
#define WEXPOL_PLATFORM_PRINTF_H_

#include <cstdio>

// Takes the positions of the format and of the first argument; 0 for a va_list. The rules are those
// of the target's C library.
#ifdef __MINGW_PRINTF_FORMAT
#define WEXPOL_PRINTF(text, first) __attribute__((format(__MINGW_PRINTF_FORMAT, text, first)))
#else
#define WEXPOL_PRINTF(text, first) __attribute__((format(printf, text, first)))
#endif

#endif  // WEXPOL_PLATFORM_PRINTF_H_
