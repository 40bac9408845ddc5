#pragma once

#include <Availability.h>
#include <CoreFoundation/CoreFoundation.h>
#include <limits.h>
#include <math.h>
#include <objc/objc.h>
#include <stdarg.h>
#include <stdlib.h>

#ifdef __LP64__
typedef long NSInteger;
typedef unsigned long NSUInteger;
#define NSIntegerMax LONG_MAX
#else
typedef int NSInteger;
typedef unsigned int NSUInteger;
#define NSIntegerMax INT_MAX
#endif

typedef unsigned short unichar;

#ifdef __cplusplus
#define FOUNDATION_EXPORT extern "C"
#define NS_OPTIONS(type, name) \
  type name;                   \
  enum __attribute__((flag_enum)) : type
#else
#define FOUNDATION_EXPORT extern
#define NS_OPTIONS(type, name)                      \
  enum __attribute__((flag_enum)) name : type name; \
  enum name : type
#endif
#define NS_ENUM(type, name) \
  enum name : type name;    \
  enum name : type

#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")
#define NS_FORMAT_FUNCTION(text, first) __attribute__((format(__NSString__, text, first)))
#define NS_REQUIRES_NIL_TERMINATION __attribute__((sentinel))
#define NS_RETURNS_INNER_POINTER __attribute__((objc_returns_inner_pointer))
// Came with the headers of 10.10; older ones know no designated initialisers.
#if __MAC_OS_X_VERSION_MAX_ALLOWED >= 101000
#define NS_DESIGNATED_INITIALIZER __attribute__((objc_designated_initializer))
#define EPG_DESIGNATED NS_DESIGNATED_INITIALIZER
#else
#define EPG_DESIGNATED
#endif

@class NSString, Protocol;

typedef NS_ENUM(NSInteger, NSComparisonResult) { NSOrderedAscending = -1, NSOrderedSame, NSOrderedDescending };
typedef NS_OPTIONS(NSUInteger, NSEnumerationOptions) { NSEnumerationConcurrent = 1, NSEnumerationReverse = 2 };
enum { NSNotFound = NSIntegerMax };

FOUNDATION_EXPORT NSString* _Nonnull NSStringFromSelector(SEL _Nonnull selector);
FOUNDATION_EXPORT SEL _Nonnull NSSelectorFromString(NSString* _Nonnull name);
FOUNDATION_EXPORT Protocol* _Nullable NSProtocolFromString(NSString* _Nonnull name);
FOUNDATION_EXPORT void NSLog(NSString* _Nonnull format, ...) NS_FORMAT_FUNCTION(1, 2);
