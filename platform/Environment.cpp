#include "platform/Environment.h"

#include <dirent.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <syslog.h>
#include <unistd.h>
#if defined(__linux__)
#include <linux/limits.h>
#include <sys/xattr.h>
#elif defined(__APPLE__)
#include <sys/acl.h>
#include <sys/sysctl.h>
#endif

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <vector>

#include "platform/LocalCalendar.h"
#include "platform/RepeatedCall.h"

namespace epg {

namespace {

/// Two numbers say on some systems what one says on others; here it is one.
int lastError() { return errno == EOPNOTSUPP ? ENOTSUP : errno; }

int resultOf(int returned) { return returned == -1 ? lastError() : 0; }

/// The system would take the path to end there, and do to another file what is meant for this one.
bool holdsZeroByte(const std::string& path) { return path.find('\0') != std::string::npos; }

Environment::FileInfo infoFrom(const struct stat& status) {
  Environment::FileInfo info;
  if (S_ISREG(status.st_mode)) info.kind = Environment::FileKind::Regular;
  if (S_ISDIR(status.st_mode)) info.kind = Environment::FileKind::Folder;
  if (S_ISLNK(status.st_mode)) info.kind = Environment::FileKind::Link;
  if (S_ISREG(status.st_mode) && status.st_size > 0) info.size = static_cast<std::uint64_t>(status.st_size);
  info.mode = status.st_mode & 07777;
  info.owner = status.st_uid;
  info.group = status.st_gid;
  info.device = status.st_dev;
  info.inode = status.st_ino;
  return info;
}

/// The home folder in the user database; `user` null for the user that runs the process.
std::optional<std::string> homeFolderInDatabase(const char* user) {
  std::vector<char> buffer(1024);
  struct passwd entry {};
  struct passwd* found = nullptr;
  constexpr std::size_t largestBuffer = 1 << 20;
  for (;;) {
    const int error = user ? getpwnam_r(user, &entry, buffer.data(), buffer.size(), &found)
                           : getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found);
    if (error != ERANGE || buffer.size() >= largestBuffer) break;
    buffer.resize(buffer.size() * 2);
  }
  if (!found || !found->pw_dir || found->pw_dir[0] == '\0') return std::nullopt;
  return std::string(found->pw_dir);
}

}  // namespace

Environment& Environment::standard() {
  // Left to the end of the process: detached threads may still use it while static objects are destroyed.
  static Environment* const environment = new Environment;
  return *environment;
}

int Environment::openFile(const std::string& path, int flags, mode_t mode, int* descriptor) {
  if (holdsZeroByte(path)) return EINVAL;
  *descriptor = ::open(path.c_str(), flags | O_CLOEXEC, static_cast<unsigned>(mode));
  return resultOf(*descriptor);
}

int Environment::readFile(int descriptor, char* buffer, std::size_t capacity, std::size_t* count) {
  const ssize_t result = ::read(descriptor, buffer, capacity);
  if (result < 0) return errno;
  *count = static_cast<std::size_t>(result);
  return 0;
}

int Environment::writeFile(int descriptor, const char* bytes, std::size_t size, std::size_t* written) {
  const ssize_t result = ::write(descriptor, bytes, size);
  if (result < 0) return errno;
  *written = static_cast<std::size_t>(result);
  return 0;
}

int Environment::fileInfo(int descriptor, FileInfo* info) {
  struct stat status {};
  const int error = resultOf(::fstat(descriptor, &status));
  if (error == 0) *info = infoFrom(status);
  return error;
}

int Environment::setFileMode(int descriptor, mode_t mode) { return resultOf(::fchmod(descriptor, mode)); }

int Environment::setFileOwner(int descriptor, uid_t owner, gid_t group) {
  return resultOf(::fchown(descriptor, owner, group));
}

int Environment::copyAccessList(const std::string& from, int descriptor) {
  if (holdsZeroByte(from)) return EINVAL;
#if defined(__linux__)
  const auto isNone = [](int error) { return error == ENODATA || error == ENOTSUP; };
  const char* const attribute = "system.posix_acl_access";
  std::vector<char> list(XATTR_SIZE_MAX);  // The largest that there can be.
  const ssize_t size = ::lgetxattr(from.c_str(), attribute, list.data(), list.size());
  if (size >= 0) return resultOf(::fsetxattr(descriptor, attribute, list.data(), static_cast<std::size_t>(size), 0));
  if (!isNone(lastError())) return lastError();
  // The new file may have got one from its folder.
  const int error = resultOf(::fremovexattr(descriptor, attribute));
  return isNone(error) ? 0 : error;
#elif defined(__APPLE__)
  // acl_get_link_np(3), acl_set_fd(3)
  acl_t list = ::acl_get_link_np(from.c_str(), ACL_TYPE_EXTENDED);
  if (!list && errno != ENOENT) return lastError() == ENOTSUP ? 0 : lastError();
  if (!list) list = ::acl_init(0);
  if (!list) return lastError();
  const int error = resultOf(::acl_set_fd(descriptor, list));
  ::acl_free(list);
  return error == ENOTSUP ? 0 : error;
#else
  static_cast<void>(descriptor);
  return 0;
#endif
}

int Environment::lockFile(int descriptor) { return resultOf(::flock(descriptor, LOCK_EX | LOCK_NB)); }

int Environment::flushFile(int descriptor) {
#ifdef F_FULLFSYNC
  // There, fsync stops at the drive's own cache. Not every volume knows the stronger call. fsync(2), fcntl(2)
  const int error = resultOf(::fcntl(descriptor, F_FULLFSYNC));
  if (error != ENOTSUP && error != EINVAL && error != ENOTTY) return error;
#endif
  return resultOf(::fsync(descriptor));
}

int Environment::closeFile(int descriptor) { return resultOf(::close(descriptor)); }

int Environment::renameFile(const std::string& from, const std::string& to) {
  if (holdsZeroByte(from) || holdsZeroByte(to)) return EINVAL;
  return resultOf(::rename(from.c_str(), to.c_str()));
}

int Environment::exchangeFiles(const std::string& one, const std::string& other) {
  if (holdsZeroByte(one) || holdsZeroByte(other)) return EINVAL;
#ifdef RENAME_EXCHANGE
  const int error = resultOf(::renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE));
  // EPERM is what a sandbox answers to a call that it does not know.
  return error == EINVAL || error == ENOSYS || error == EPERM ? ENOTSUP : error;
#else
  return ENOTSUP;
#endif
}

int Environment::linkFile(const std::string& from, const std::string& to) {
  if (holdsZeroByte(from) || holdsZeroByte(to)) return EINVAL;
  return resultOf(::link(from.c_str(), to.c_str()));
}

int Environment::removeFile(const std::string& path) {
  if (holdsZeroByte(path)) return EINVAL;
  return resultOf(::unlink(path.c_str()));
}

int Environment::pathInfo(const std::string& path, FileInfo* info) {
  if (holdsZeroByte(path)) return EINVAL;
  struct stat status {};
  const int error = resultOf(::lstat(path.c_str(), &status));
  if (error == 0) *info = infoFrom(status);
  return error;
}

int Environment::listFolder(const std::string& path, std::vector<std::string>* names) {
  names->clear();
  if (holdsZeroByte(path)) return EINVAL;
  DIR* const folder = ::opendir(path.c_str());
  if (!folder) return errno;
  int error = 0;
  for (;;) {
    errno = 0;
    // Each stream has one user, which is what readdir needs.
    const struct dirent* const entry = ::readdir(folder);  // NOLINT(concurrency-mt-unsafe)
    if (!entry) {
      error = errno;
      break;
    }
    const std::string name = entry->d_name;
    if (name != "." && name != "..") names->push_back(name);
  }
  ::closedir(folder);
  return error;
}

std::uint64_t Environment::memorySize() {
#ifdef __APPLE__
  // sysctl(3)
  std::uint64_t bytes = 0;
  std::size_t size = sizeof bytes;
  return ::sysctlbyname("hw.memsize", &bytes, &size, nullptr, 0) == 0 ? bytes : UINT64_MAX;
#else
  const long pages = ::sysconf(_SC_PHYS_PAGES);
  const long pageSize = ::sysconf(_SC_PAGESIZE);
  return pages > 0 && pageSize > 0 ? static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize)
                                   : UINT64_MAX;
#endif
}

Instant Environment::now() {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return Instant::fromUnixTime(std::chrono::duration<double>(sinceEpoch).count());
}

std::shared_ptr<const LocalZone> Environment::localZone() { return systemZone(); }

// The body is wanted again where there is no thread. NOLINTNEXTLINE(performance-unnecessary-value-param)
void Environment::detachThread(std::function<void()> body) {
  try {
    std::thread(body).detach();
  } catch (const std::system_error&) {
    body();
  }
}

void Environment::log(const std::string& line) { ::syslog(LOG_USER | LOG_ERR, "%s", line.c_str()); }

std::string Environment::homeFolder() {
  const char* const home = std::getenv("HOME");  // NOLINT(concurrency-mt-unsafe): nobody here sets it
  if (home && home[0] == '/') return home;
  return homeFolderInDatabase(nullptr).value_or("/");
}

std::optional<std::string> Environment::homeFolderOfUser(const std::string& user) {
  return homeFolderInDatabase(user.c_str());
}

void Environment::fileReplaced(const std::string& /*path*/, int /*error*/) {}

int readWholeFile(Environment& environment, const std::string& path, std::string* content) {
  content->clear();
  std::vector<char> buffer(std::size_t{1} << 16);
  int descriptor = -1;
  // Not to wait for the other end of a pipe that stands in the file's place.
  int error =
      repeatedWhileInterrupted([&] { return environment.openFile(path, O_RDONLY | O_NONBLOCK, 0, &descriptor); });
  if (error != 0) return error;
  Environment::FileInfo info;
  error = repeatedWhileInterrupted([&] { return environment.fileInfo(descriptor, &info); });
  // safeguard: not waiting for a pipe in a file's place
  if (error == 0 && info.kind != Environment::FileKind::Regular) error = EINVAL;
  // safeguard: not reading what memory cannot hold
  if (error == 0 && info.size > std::min<std::uint64_t>(environment.memorySize(), content->max_size())) error = EFBIG;
  try {
    // Room at once: a text that grows piece by piece is copied again and again.
    if (error == 0) content->reserve(static_cast<std::size_t>(info.size));
    while (error == 0) {
      std::size_t count = 0;
      error = repeatedWhileInterrupted(
          [&] { return environment.readFile(descriptor, buffer.data(), buffer.size(), &count); });
      if (error != 0 || count == 0) break;
      content->append(buffer.data(), count);
    }
  } catch (const std::bad_alloc&) {
    error = ENOMEM;
  } catch (const std::length_error&) {
    error = EFBIG;
  } catch (...) {
    environment.closeFile(descriptor);
    throw;
  }
  environment.closeFile(descriptor);
  if (error != 0) std::string().swap(*content);
  return error;
}

}  // namespace epg
