#pragma once

#include_next <stdio.h>

#include <Availability.h>

#ifdef __cplusplus
extern "C" {
#endif

FILE* fmemopen(void* buffer, size_t size, const char* mode) EPG_SINCE(10.13);
FILE* open_memstream(char** buffer, size_t* size) EPG_SINCE(10.13);
int renameat(int folder, const char* path, int newFolder, const char* newPath) EPG_SINCE(10.10);
int vasprintf(char** result, const char* format, va_list arguments);

#ifdef __cplusplus
}
#endif
