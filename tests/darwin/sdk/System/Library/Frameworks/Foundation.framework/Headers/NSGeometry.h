#pragma once

#import <Foundation/NSObject.h>

// Those of CoreGraphics where a machine has 64 bits, their own types of the same shape elsewhere.
#ifdef __LP64__
typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;
#else
typedef struct _NSPoint {
  CGFloat x;
  CGFloat y;
} NSPoint;
typedef struct _NSSize {
  CGFloat width;
  CGFloat height;
} NSSize;
typedef struct _NSRect {
  NSPoint origin;
  NSSize size;
} NSRect;
#endif

FOUNDATION_EXPORT const NSRect NSZeroRect;

static inline NSPoint NSMakePoint(CGFloat x, CGFloat y) {
  NSPoint point;
  point.x = x;
  point.y = y;
  return point;
}
static inline NSSize NSMakeSize(CGFloat width, CGFloat height) {
  NSSize size;
  size.width = width;
  size.height = height;
  return size;
}
static inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
  NSRect rect;
  rect.origin = NSMakePoint(x, y);
  rect.size = NSMakeSize(width, height);
  return rect;
}
static inline CGFloat NSMinX(NSRect rect) { return rect.origin.x; }
static inline CGFloat NSMinY(NSRect rect) { return rect.origin.y; }
static inline CGFloat NSMaxX(NSRect rect) { return rect.origin.x + rect.size.width; }
static inline CGFloat NSMaxY(NSRect rect) { return rect.origin.y + rect.size.height; }
static inline CGFloat NSWidth(NSRect rect) { return rect.size.width; }
static inline CGFloat NSHeight(NSRect rect) { return rect.size.height; }

FOUNDATION_EXPORT NSRect NSIntersectionRect(NSRect one, NSRect other);
