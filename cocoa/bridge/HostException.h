#pragma once

#import <Foundation/Foundation.h>

#include <exception>
#include <stdexcept>
#include <type_traits>

#include "cocoa/bridge/CoreException.h"
#import "cocoa/bridge/ExceptionGuard.h"

/// An exception that a host's object raises passes the core, which knows only those of its own language: where the
/// object is called it becomes a `HostException`, and where the host called it becomes the platform's again. On the
/// threads of saves and exports the core itself ends it, in the log or in the report.
namespace epg::cocoa {

class HostException : public std::runtime_error {
 public:
  explicit HostException(NSException* exception);
  HostException(const HostException& other) noexcept;
  HostException& operator=(const HostException&) = delete;
  ~HostException() override;

  /// Autoreleased.
  NSException* exception() const;

 private:
  NSException* exception_;
};

/// Calls a host's object from within the core.
template <typename Body>
void callHost(const Body& body) {
  if (NSException* raised = exceptionRaisedBy(body)) {
    throw HostException(raised);
  }
}

/// What the host catches for an exception of the core's language, autoreleased.
NSException* exceptionForHost(const std::exception& exception);

[[noreturn]] void raise(NSException* exception);

/// Runs the work of an operation that the host called: no exception but the platform's leaves it.
template <typename Body>
auto calledByHost(const Body& body) -> decltype(body()) {
  using Result = decltype(body());
  NSException* raised = nil;
  const auto keep = [&raised](const std::exception& exception) { raised = exceptionForHost(exception); };
  // Raised again outside of the handler, which is left in order.
  if constexpr (std::is_void_v<Result>) {
    runCatching([&body] { body(); }, keep);
    if (raised != nil) raise(raised);
  } else {
    Result result{};
    runCatching([&] { result = body(); }, keep);
    if (raised != nil) raise(raised);
    return result;
  }
}

}  // namespace epg::cocoa
