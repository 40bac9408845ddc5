#pragma once

#include_next <dirent.h>

#include <Availability.h>

#ifdef __cplusplus
extern "C" {
#endif

DIR* fdopendir(int descriptor) EPG_SINCE(10.10);

#ifdef __cplusplus
}
#endif
