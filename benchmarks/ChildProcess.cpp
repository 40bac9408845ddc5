#include "benchmarks/ChildProcess.h"

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>

#include "benchmarks/Timing.h"

extern char** environ;

namespace epg::benchmarks {

namespace {

double secondsOf(const struct timeval& time) {
  constexpr double microsecond = 1e-6;
  return static_cast<double>(time.tv_sec) + microsecond * static_cast<double>(time.tv_usec);
}

std::string readToTheEnd(int descriptor) {
  std::string text;
  char part[4096];
  ssize_t count = 0;
  while ((count = ::read(descriptor, part, sizeof part)) > 0) text.append(part, static_cast<std::size_t>(count));
  return text;
}

}  // namespace

ChildRun runProgram(const std::vector<std::string>& commandLine) {
  std::vector<std::string> words(commandLine);
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  int output[2];
  if (::pipe(output) != 0) throw std::runtime_error("no pipe");
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
  ::posix_spawn_file_actions_addclose(&actions, output[0]);
  ::posix_spawn_file_actions_addclose(&actions, output[1]);

  const Stopwatch wall(wallSeconds);
  pid_t child = -1;
  const int error = ::posix_spawn(&child, arguments.front(), &actions, nullptr, arguments.data(), environ);
  ::posix_spawn_file_actions_destroy(&actions);
  ::close(output[1]);
  if (error != 0) {
    ::close(output[0]);
    throw std::runtime_error("cannot run " + commandLine.front());
  }
  ChildRun run;
  run.output = readToTheEnd(output[0]);
  ::close(output[0]);
  int status = 0;
  struct rusage usage {};
  if (::wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    throw std::runtime_error(commandLine.front() + " failed");
  }
  run.wallSeconds = wall.seconds();
  run.processorSeconds = secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime);
  return run;
}

std::string ownProgram() {
  std::string path(4096, '\0');
  const ssize_t size = ::readlink("/proc/self/exe", path.data(), path.size());
  if (size <= 0) throw std::runtime_error("the system does not say which program runs");
  path.resize(static_cast<std::size_t>(size));
  return path;
}

}  // namespace epg::benchmarks
