#import <Foundation/Foundation.h>

#include "cocoa/bridge/CocoaEnvironment.h"
#import "cocoa/bridge/FoundationValues.h"

#include <algorithm>
#include <cstdint>

#include "xml/XMLText.h"

namespace epg::cocoa {

namespace {

class FoundationZone : public LocalZone {
 public:
  explicit FoundationZone(NSTimeZone* zone) : zone_([zone retain]) {}
  ~FoundationZone() override { [zone_ release]; }

  /// Asking the platform takes longer than all else that is done with an event, so one answer serves a few hours.
  std::optional<std::int64_t> secondsAheadOfUTC(std::int64_t secondsSince1970) const override {
    // No zone has ever changed twice within this time and been back where it was.
    constexpr std::int64_t span = 6 * 3600;
    const std::int64_t start = secondsSince1970 - ((secondsSince1970 % span) + span) % span;
    if (start != start_) {
      start_ = start;
      atStart_ = asked(start);
      isSteady_ = asked(start + span - 1) == atStart_;
    }
    return isSteady_ ? atStart_ : asked(secondsSince1970);
  }

 private:
  std::int64_t asked(std::int64_t secondsSince1970) const {
    NSDate* date = [[NSDate alloc] initWithTimeIntervalSince1970:static_cast<NSTimeInterval>(secondsSince1970)];
    const NSInteger seconds = [zone_ secondsFromGMTForDate:date];
    [date release];
    return seconds;
  }

  NSTimeZone* zone_;
  mutable std::optional<std::int64_t> start_;
  mutable std::int64_t atStart_ = 0;
  mutable bool isSteady_ = false;
};

}  // namespace

CocoaEnvironment& CocoaEnvironment::shared() {
  // Left to the end of the process: detached threads may still use it while static objects are destroyed.
  static CocoaEnvironment* const environment = new CocoaEnvironment;
  return *environment;
}

std::shared_ptr<const LocalZone> CocoaEnvironment::localZone() {
  return std::make_shared<FoundationZone>([NSTimeZone defaultTimeZone]);
}

int CocoaEnvironment::listFolder(const std::string& path, std::vector<std::string>* names) {
  const int error = Environment::listFolder(path, names);
  names->erase(std::remove_if(names->begin(), names->end(), [](const std::string& name) { return !isUTF8(name); }),
               names->end());
  return error;
}

void CocoaEnvironment::log(const std::string& line) { NSLog(@"%@", toString(line)); }

std::string CocoaEnvironment::homeFolder() { return fromString(NSHomeDirectory()); }

std::optional<std::string> CocoaEnvironment::homeFolderOfUser(const std::string& user) {
  NSString* folder = NSHomeDirectoryForUser(toString(user));
  return [folder length] > 0 ? optionalString(folder) : std::nullopt;
}

}  // namespace epg::cocoa
