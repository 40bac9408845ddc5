#pragma once

// sysctl(3)

#include <stddef.h>

#ifdef __cplusplus
extern "C"
#endif
    int
    sysctlbyname(const char* name, void* old, size_t* oldSize, void* newer, size_t newSize);
