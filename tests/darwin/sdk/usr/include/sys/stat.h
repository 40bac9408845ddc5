#pragma once

#include_next <sys/stat.h>

#include <Availability.h>

#ifdef __cplusplus
extern "C" {
#endif

int fchmodat(int folder, const char* path, mode_t mode, int flags) EPG_SINCE(10.10);
int fstatat(int folder, const char* path, struct stat* status, int flags) EPG_SINCE(10.10);
int mkdirat(int folder, const char* path, mode_t mode) EPG_SINCE(10.10);
int futimens(int descriptor, const struct timespec times[2]) EPG_SINCE(10.13);
int utimensat(int folder, const char* path, const struct timespec times[2], int flags) EPG_SINCE(10.13);

#ifdef __cplusplus
}
#endif
