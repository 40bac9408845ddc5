#import <Foundation/Foundation.h>

#include "cocoa/bridge/CocoaEnvironment.h"
#import "cocoa/bridge/FoundationValues.h"

namespace epg::cocoa {

CocoaEnvironment& CocoaEnvironment::shared() {
  // Left to the end of the process: detached threads may still use it while static objects are destroyed.
  static CocoaEnvironment* const environment = new CocoaEnvironment;
  return *environment;
}

void CocoaEnvironment::log(const std::string& line) { NSLog(@"%@", toString(line)); }

std::string CocoaEnvironment::homeFolder() { return fromString(NSHomeDirectory()); }

std::optional<std::string> CocoaEnvironment::homeFolderOfUser(const std::string& user) {
  NSString* folder = NSHomeDirectoryForUser(toString(user));
  return [folder length] > 0 ? optionalString(folder) : std::nullopt;
}

}  // namespace epg::cocoa
