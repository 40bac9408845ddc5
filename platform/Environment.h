#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Instant.h"
#include "platform/LocalZone.h"

namespace epg {

/// Everything the system takes from the operating system, in one replaceable place.
///
/// The base class is the real thing (POSIX). A face, such as the bundle, overrides what its platform knows better (time
/// zone, home folders, log); a test overrides what it wants to fail. One object serves any number of plug-in objects,
/// must outlive them and their threads, and may be called from any thread.
///
/// File calls answer 0 or an errno value; they neither retry nor report.
class Environment {
 public:
  enum class FileKind { Regular, Folder, Link, Other };
  struct FileInfo {
    FileKind kind = FileKind::Other;
    std::uint64_t size = 0;  ///< In bytes, of a regular file. It may have another by the time it is read.
    mode_t mode = 0;         ///< Permission bits only.
    uid_t owner = 0;
    gid_t group = 0;
    dev_t device = 0;
    ino_t inode = 0;
  };

  Environment() = default;
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;
  virtual ~Environment() = default;

  /// The environment of a plug-in object that was given none. Never destroyed.
  static Environment& standard();

  // File calls, named after what they do to the disk.
  virtual int openFile(const std::string& path, int flags, mode_t mode, int* descriptor);
  virtual int readFile(int descriptor, char* buffer, std::size_t capacity, std::size_t* count);
  virtual int writeFile(int descriptor, const char* bytes, std::size_t size, std::size_t* written);
  virtual int fileInfo(int descriptor, FileInfo* info);
  virtual int setFileMode(int descriptor, mode_t mode);
  virtual int setFileOwner(int descriptor, uid_t owner, gid_t group);
  /// Gives the open file the list of further users and groups that the file at `from` has, or none where that has
  /// none. Nothing to do, and no failure, where the volume keeps no such lists.
  virtual int copyAccessList(const std::string& from, int descriptor);
  /// Takes an exclusive advisory lock at once or fails with EWOULDBLOCK.
  virtual int lockFile(int descriptor);
  /// Waits until the bytes (or a folder's entries) have reached the disk itself.
  virtual int flushFile(int descriptor);
  virtual int closeFile(int descriptor);
  virtual int renameFile(const std::string& from, const std::string& to);
  /// Swaps what stands under two names in one step; ENOTSUP where system or volume cannot.
  virtual int exchangeFiles(const std::string& one, const std::string& other);
  /// Gives the regular file a second name on the same volume. EEXIST when the name is taken.
  virtual int linkFile(const std::string& from, const std::string& to);
  virtual int removeFile(const std::string& path);
  /// Of the path itself: a symbolic link is not followed.
  virtual int pathInfo(const std::string& path, FileInfo* info);
  /// Names in the folder without "." and "..", in the order the system lists them.
  virtual int listFolder(const std::string& path, std::vector<std::string>* names);

  /// Of the machine, in bytes. No file that is larger is read.
  virtual std::uint64_t memorySize();

  virtual Instant now();
  /// The local time zone as it is now: the C library's, unless a face knows better. Any thread.
  virtual std::shared_ptr<const LocalZone> localZone();

  /// Runs `body` on a new thread that nobody joins. When the system has no thread to give, `body` runs on the
  /// caller's thread before the call returns: late is better than not at all.
  virtual void detachThread(std::function<void()> body);

  /// One line to the system log.
  virtual void log(const std::string& line);

  /// The home folder of the current user, or of the named one. Nothing for an unknown user.
  virtual std::string homeFolder();
  virtual std::optional<std::string> homeFolderOfUser(const std::string& user);

  /// Called by whatever replaces a file once it is done: 0 when the new file stands, the errno value of the call
  /// that failed otherwise. A host that must know the fate of a save listens here; the base class does nothing.
  virtual void fileReplaced(const std::string& path, int error);
};

inline bool isSameFile(const Environment::FileInfo& a, const Environment::FileInfo& b) {
  return a.device == b.device && a.inode == b.inode;
}

/// The whole content of a regular file. Anything else under that name (a folder, a pipe) fails with EINVAL without
/// waiting for it, a file that memory cannot hold with EFBIG or ENOMEM.
int readWholeFile(Environment& environment, const std::string& path, std::string* content);

}  // namespace epg
