#import "cocoa/bridge/HostException.h"

#include <new>

#import "cocoa/bridge/FoundationValues.h"

namespace epg::cocoa {

HostException::HostException(NSException* exception)
    : std::runtime_error(fromString([exception description])), exception_([exception retain]) {}

HostException::HostException(const HostException& other) noexcept
    : std::runtime_error(other), exception_([other.exception_ retain]) {}

HostException::~HostException() { [exception_ release]; }

NSException* HostException::exception() const { return [[exception_ retain] autorelease]; }

NSException* exceptionForHost(const std::exception& exception) {
  if (const HostException* const hosts = dynamic_cast<const HostException*>(&exception)) {
    return hosts->exception();
  }
  NSString* name = dynamic_cast<const std::bad_alloc*>(&exception) != nullptr ? NSMallocException : NSGenericException;
  return [NSException exceptionWithName:name reason:toString(std::string(exception.what())) userInfo:nil];
}

void raise(NSException* exception) {
  [exception raise];
  std::terminate();
}

}  // namespace epg::cocoa
