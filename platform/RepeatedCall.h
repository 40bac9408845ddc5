#pragma once

#include <cerrno>

namespace epg {

/// How often an interrupted call is made at most: again and again, but not for ever.
constexpr int maximumTries = 100;

/// Makes a call, which answers 0 or an errno value, until it ends in something else than an interruption.
template <typename Call>
int repeatedWhileInterrupted(Call call) {
  int error = EINTR;
  for (int i = 0; i < maximumTries && error == EINTR; ++i) error = call();
  return error;
}

}  // namespace epg
