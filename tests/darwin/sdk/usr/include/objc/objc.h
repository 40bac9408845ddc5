#pragma once

// https://developer.apple.com/documentation/objectivec/objective-c_runtime

#include <stddef.h>
#include <stdint.h>
#ifndef __cplusplus
#include <stdbool.h>
#endif

typedef struct objc_class* Class;
struct objc_object {
  Class isa;
};
typedef struct objc_object* id;
typedef struct objc_selector* SEL;

#ifdef __OBJC_BOOL_IS_BOOL
typedef bool BOOL;
#else
typedef signed char BOOL;
#endif
#define YES __objc_yes
#define NO __objc_no

#ifdef __cplusplus
#define nil nullptr
#define Nil nullptr
#else
#define nil NULL
#define Nil NULL
#endif
