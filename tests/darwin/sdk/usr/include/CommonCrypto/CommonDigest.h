#pragma once

// CC_SHA256(3cc)

#include <stdint.h>

typedef uint32_t CC_LONG;
typedef struct {
  CC_LONG count[2];
  CC_LONG hash[8];
  CC_LONG buffer[16];
} CC_SHA256_CTX;

#ifdef __cplusplus
extern "C" {
#endif

int CC_SHA256_Init(CC_SHA256_CTX* context);
int CC_SHA256_Update(CC_SHA256_CTX* context, const void* bytes, CC_LONG size);
int CC_SHA256_Final(unsigned char* digest, CC_SHA256_CTX* context);

#ifdef __cplusplus
}
#endif
