#pragma once

// What of CoreFoundation this project uses, written from
// https://developer.apple.com/documentation/corefoundation

#include <Availability.h>
#include <stddef.h>
#include <stdint.h>

#ifdef __LP64__
typedef double CGFloat;
#define CGFLOAT_MAX 1.7976931348623157e+308
#else
typedef float CGFloat;
#define CGFLOAT_MAX 3.40282347e+38F
#endif

struct CGPoint {
  CGFloat x;
  CGFloat y;
};
typedef struct CGPoint CGPoint;
struct CGSize {
  CGFloat width;
  CGFloat height;
};
typedef struct CGSize CGSize;
struct CGRect {
  CGPoint origin;
  CGSize size;
};
typedef struct CGRect CGRect;

typedef signed long CFIndex;
typedef const void* CFTypeRef;
typedef const struct __CFAllocator* CFAllocatorRef;
typedef struct __attribute__((objc_bridge_mutable(NSMutableDictionary))) __CFDictionary* CFMutableDictionaryRef;

typedef struct {
  CFIndex version;
  const void* (*retain)(CFAllocatorRef allocator, const void* value);
  void (*release)(CFAllocatorRef allocator, const void* value);
  const void* (*copyDescription)(const void* value);
  unsigned char (*equal)(const void* value, const void* other);
  unsigned long (*hash)(const void* value);
} CFDictionaryKeyCallBacks;
typedef struct {
  CFIndex version;
  const void* (*retain)(CFAllocatorRef allocator, const void* value);
  void (*release)(CFAllocatorRef allocator, const void* value);
  const void* (*copyDescription)(const void* value);
  unsigned char (*equal)(const void* value, const void* other);
} CFDictionaryValueCallBacks;

#ifdef __cplusplus
extern "C" {
#endif

extern const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
extern const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;
CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef allocator, CFIndex capacity,
                                                 const CFDictionaryKeyCallBacks* keyCallBacks,
                                                 const CFDictionaryValueCallBacks* valueCallBacks);
void CFRelease(CFTypeRef object);

#ifdef __cplusplus
}
#endif
