#pragma once

#include_next <time.h>

#ifdef __USE_POSIX199309
#include <Availability.h>

#ifdef __cplusplus
extern "C" {
#endif

int clock_getres(clockid_t clock, struct timespec* time) EPG_SINCE(10.12);
int clock_gettime(clockid_t clock, struct timespec* time) EPG_SINCE(10.12);

#ifdef __cplusplus
}
#endif
#endif
