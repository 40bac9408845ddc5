#pragma once

#include <functional>

namespace epg::test {

/// Runs `body` in a process of its own and waits for it. What `body` returns, 0 to 255; the negative number of the
/// signal that ended it. Needs a caller without other threads.
int exitOfChild(const std::function<int()>& body);

/// The process of `body`, not waited for.
int startChild(const std::function<int()>& body);
int waitForChild(int process);

/// From now on this process may do only what every user may. False where that cannot be had.
bool becomeUnprivileged();

}  // namespace epg::test
