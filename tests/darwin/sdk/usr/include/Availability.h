#pragma once

// Of what Apple's Availability.h offers, what the platform's declarations here need.
// https://developer.apple.com/documentation/swift/marking-api-availability-in-objective-c

/// The newest macOS whose declarations are here: 10.8 for the oldest headers that this project is built with.
#ifndef __MAC_OS_X_VERSION_MAX_ALLOWED
#define __MAC_OS_X_VERSION_MAX_ALLOWED 140000
#endif
#define __MAC_OS_X_VERSION_MIN_REQUIRED __ENVIRONMENT_MAC_OS_X_VERSION_MIN_REQUIRED__

#define EPG_SINCE(version) __attribute__((availability(macos, introduced = version)))
#define EPG_SINCE_UNTIL(first, last, text) \
  __attribute__((availability(macos, introduced = first, deprecated = last, message = text)))
