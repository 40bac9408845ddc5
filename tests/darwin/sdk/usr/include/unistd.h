#pragma once

#include_next <unistd.h>

#include <Availability.h>

#ifdef __cplusplus
extern "C" {
#endif

int faccessat(int folder, const char* path, int mode, int flags) EPG_SINCE(10.10);
int fchownat(int folder, const char* path, uid_t owner, gid_t group, int flags) EPG_SINCE(10.10);
int linkat(int folder, const char* path, int newFolder, const char* newPath, int flags) EPG_SINCE(10.10);
ssize_t readlinkat(int folder, const char* path, char* target, size_t size) EPG_SINCE(10.10);
int symlinkat(const char* target, int folder, const char* path) EPG_SINCE(10.10);
int unlinkat(int folder, const char* path, int flags) EPG_SINCE(10.10);

#ifdef __cplusplus
}
#endif
