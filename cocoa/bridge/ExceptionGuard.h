#pragma once

#import <Foundation/Foundation.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Runs the function and answers the platform's exception that came out of it (autoreleased), nil when none did.
/// What lies between unwinds properly in either language. Exceptions of C++ pass.
NSException* EPGDorvaSelinExceptionRaisedBy(void (*function)(void* context), void* context);

#ifdef __cplusplus
}

namespace epg::cocoa {

template <typename Body>
NSException* exceptionRaisedBy(const Body& body) {
  return EPGDorvaSelinExceptionRaisedBy([](void* context) { (*static_cast<const Body*>(context))(); },
                                        const_cast<Body*>(&body));
}

}  // namespace epg::cocoa
#endif
