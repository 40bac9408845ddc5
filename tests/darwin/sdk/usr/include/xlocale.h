#pragma once

// What libc++ calls for locales on Darwin, and the C library's headers of this machine keep for its own name of them.
// xlocale(3)

#include <locale.h>
#include <stdarg.h>
#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

int asprintf_l(char** result, locale_t locale, const char* format, ...);
int snprintf_l(char* result, size_t size, locale_t locale, const char* format, ...);
int sscanf_l(const char* text, locale_t locale, const char* format, ...);
double strtod_l(const char* text, char** end, locale_t locale);
float strtof_l(const char* text, char** end, locale_t locale);
long double strtold_l(const char* text, char** end, locale_t locale);
long long strtoll_l(const char* text, char** end, int base, locale_t locale);
unsigned long long strtoull_l(const char* text, char** end, int base, locale_t locale);

#ifdef __cplusplus
}
#endif
