#include "cocoa/bridge/CoreException.h"

namespace epg::cocoa {

void runCatching(const std::function<void()>& body, const std::function<void(const std::exception&)>& handle) {
  try {
    body();
  } catch (const std::exception& exception) {
    handle(exception);
  }
}

}  // namespace epg::cocoa
