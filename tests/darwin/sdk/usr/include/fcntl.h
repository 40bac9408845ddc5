#pragma once

#include_next <fcntl.h>

#include <Availability.h>

/// fcntl(2)
#define F_FULLFSYNC 51

#ifdef __cplusplus
extern "C" {
#endif

int openat(int folder, const char* path, int flags, ...) EPG_SINCE(10.10);

#ifdef __cplusplus
}
#endif
