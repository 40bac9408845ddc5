#include "tests/platform/ChildProcess.h"

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace epg::test {

int startChild(const std::function<int()>& body) {
  std::fflush(nullptr);
  const pid_t process = ::fork();
  if (process == 0) ::_exit(body());
  return process;
}

int waitForChild(int process) {
  int status = 0;
  while (::waitpid(process, &status, 0) == -1 && errno == EINTR) {
  }
  return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

int exitOfChild(const std::function<int()>& body) { return waitForChild(startChild(body)); }

bool becomeUnprivileged() {
  if (::geteuid() != 0) return true;
  constexpr unsigned nobody = 65534;
  return ::setgroups(0, nullptr) == 0 && ::setgid(nobody) == 0 && ::setuid(nobody) == 0;
}

}  // namespace epg::test
