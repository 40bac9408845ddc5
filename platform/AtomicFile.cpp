#include "platform/AtomicFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <new>
#include <vector>

#include "platform/Environment.h"
#include "platform/Paths.h"
#include "platform/RepeatedCall.h"

namespace epg {

namespace {

const char* const temporarySuffix = ".tmp";

/// Of a name so long that nothing can be added to it only the beginning is used, in whole characters.
std::string temporaryPrefix(const std::string& name) {
  constexpr std::size_t longest = 200;  // Of 255 that file systems have, so that there is room for the number.
  std::size_t size = name.size();
  if (size > longest) {
    size = longest;
    while (size > 0 && (static_cast<unsigned char>(name[size]) & 0xC0) == 0x80) --size;
  }
  return "." + name.substr(0, size) + ".";
}

int pathInfo(Environment& environment, const std::string& path, Environment::FileInfo* info) {
  return repeatedWhileInterrupted([&] { return environment.pathInfo(path, info); });
}

/// An open file of ours, closed when it goes out of sight.
class OpenFile {
 public:
  explicit OpenFile(Environment& environment) : environment_(environment) {}
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  ~OpenFile() { close(); }

  int open(const std::string& path, int flags, mode_t mode) {
    return repeatedWhileInterrupted([&] { return environment_.openFile(path, flags, mode, &descriptor_); });
  }
  bool isOpen() const { return descriptor_ >= 0; }
  int descriptor() const { return descriptor_; }
  int close() {
    if (!isOpen()) return 0;
    const int descriptor = descriptor_;
    descriptor_ = -1;
    const int error = environment_.closeFile(descriptor);
    return error == EINTR ? 0 : error;  // Closed all the same; asking again could close somebody else's file.
  }

 private:
  Environment& environment_;
  int descriptor_ = -1;
};

/// A new file beside the target, gone again unless it took the target's place.
///
/// It is locked through a descriptor of its own, which stays open until the end and says that the writer lives: a
/// temporary file that can be locked was left by a writer that was killed.
class TemporaryFile {
 public:
  TemporaryFile(Environment& environment, const std::string& target)
      : environment_(environment), written_(environment), lock_(environment) {
    static std::atomic<unsigned> counter{0};
    const std::string start = appendPathComponent(parentFolder(target), temporaryPrefix(lastPathComponent(target)));
    // Names of a former process with the same number may stand; each of its files is met once at most.
    for (int i = 0; i < 10 * maximumTries; ++i) {
      path_ = start + std::to_string(::getpid()) + "-" + std::to_string(++counter) + temporarySuffix;
      error_ = written_.open(path_, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0666);
      if (error_ == EEXIST) continue;
      if (error_ != 0) return;
      exists_ = true;
      error_ = repeatedWhileInterrupted([&] { return environment_.fileInfo(written_.descriptor(), &info_); });
      if (error_ != 0 || lock()) return;
      exists_ = false;
      error_ = EAGAIN;
      written_.close();
      lock_.close();
    }
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  ~TemporaryFile() {
    written_.close();
    // safeguard: removal of the temporary file after a failure
    if (exists_) repeatedWhileInterrupted([&] { return environment_.removeFile(path_); });
  }

  int error() const { return error_; }
  OpenFile& written() { return written_; }
  const std::string& path() const { return path_; }
  /// As the file was made.
  const Environment::FileInfo& info() const { return info_; }

  /// No file stands under the temporary name any more.
  void noteGone() { exists_ = false; }

 private:
  /// False when another writer, tidying up between the creation and the lock, took the file for a left one.
  bool lock() {
    // A volume without locks has nobody who tidies up by them either.
    if (lock_.open(path_, O_RDONLY | O_NOFOLLOW, 0) == ENOENT) return false;
    if (lock_.isOpen() && takeLock() == EWOULDBLOCK) return false;
    // The name may even be taken again, by a process with the same number on another machine that has the folder.
    Environment::FileInfo named;
    const int error = pathInfo(environment_, path_, &named);
    return error == 0 ? isSameFile(named, info_) : error != ENOENT;
  }

  int takeLock() {
    return repeatedWhileInterrupted([&] { return environment_.lockFile(lock_.descriptor()); });
  }

  Environment& environment_;
  std::string path_;
  OpenFile written_;
  OpenFile lock_;
  Environment::FileInfo info_;
  int error_ = 0;
  bool exists_ = false;
};

/// Writes to an open file.
class FileSink : public ByteSink {
 public:
  FileSink(Environment& environment, int descriptor) : environment_(environment), descriptor_(descriptor) {}

  /// 0, or the errno value of the write that failed.
  int error() const { return error_; }

 protected:
  bool take(std::string_view piece) override {
    while (error_ == 0 && !piece.empty()) {
      std::size_t written = 0;
      error_ = repeatedWhileInterrupted(
          [&] { return environment_.writeFile(descriptor_, piece.data(), piece.size(), &written); });
      if (error_ == 0 && written == 0) error_ = EIO;
      piece.remove_prefix(written);
    }
    return error_ == 0;
  }

 private:
  Environment& environment_;
  int descriptor_;
  int error_ = 0;
};

int writeAll(Environment& environment, int descriptor, const FileContent& content) {
  FileSink sink(environment, descriptor);
  const int contentError = content(sink);
  if (contentError == 0) sink.flush();
  // Content that is given up because a write failed is not what went wrong.
  // safeguard: the end of content that is given up
  return sink.error() != 0 ? sink.error() : contentError;
}

/// Gives the new file the old one's owner and group as far as that is permitted; whether it has that group now.
bool takeOverGroup(Environment& environment, const Environment::FileInfo& old, const Environment::FileInfo& fresh,
                   int descriptor) {
  if (old.owner == fresh.owner && old.group == fresh.group) return true;
  const auto give = [&](uid_t owner) {
    return repeatedWhileInterrupted([&] { return environment.setFileOwner(descriptor, owner, old.group); }) == 0;
  };
  // Only root may give files away, but everybody hands them to a group of his own. Otherwise the new file is the
  // writer's, which is no failure.
  return give(old.owner) || old.group == fresh.group || (old.owner != fresh.owner && give(static_cast<uid_t>(-1)));
}

/// The permissions without those of the group. What the group was denied, others are denied too: its members are some
/// of them now.
mode_t withoutGroup(mode_t permissions) { return (permissions & 0700) | (permissions & (permissions >> 3) & 07); }

/// A replaced file hands on who may read and write it. Only a regular file has that to hand on.
int takeOverMode(Environment& environment, const std::string& target, const Environment::FileInfo& fresh,
                 int descriptor) {
  Environment::FileInfo old;
  const int noTarget = pathInfo(environment, target, &old);
  if (noTarget == ENOENT) return 0;
  if (noTarget != 0) return noTarget;
  if (old.kind != Environment::FileKind::Regular) return 0;
  const auto setMode = [&](mode_t permissions) {
    return repeatedWhileInterrupted([&] { return environment.setFileMode(descriptor, permissions); });
  };
  const mode_t permissions = old.mode & 0777;
  // Next to an access list, the group's permissions are those that the list may grant at most, not the group's own.
  // safeguard: no rights for a group that the old file did not have
  if (!takeOverGroup(environment, old, fresh, descriptor)) return setMode(withoutGroup(permissions));
  const int error = permissions == (fresh.mode & 0777) ? 0 : setMode(permissions);
  if (error != 0) return error;
  const int noList = repeatedWhileInterrupted([&] { return environment.copyAccessList(target, descriptor); });
  return noList == 0 ? 0 : setMode(withoutGroup(permissions));
}

/// Waits until the entries of an open folder are on disk.
int flushFolder(Environment& environment, const OpenFile& folder) {
  if (!folder.isOpen()) return 0;
  const int error = repeatedWhileInterrupted([&] { return environment.flushFile(folder.descriptor()); });
  return error == EINVAL || error == ENOTSUP ? 0 : error;  // Some volumes cannot flush folders and say so.
}

/// Puts the temporary file in the target's place and makes that last. When it cannot be made to last, what stood
/// there before stands there again.
int takePlace(Environment& environment, TemporaryFile& file, const std::string& target, const OpenFile& folder) {
  Environment::FileInfo old;
  const int noTarget = pathInfo(environment, target, &old);
  if (noTarget != 0 && noTarget != ENOENT) return noTarget;
  const auto exchange = [&] { return environment.exchangeFiles(file.path(), target); };
  bool exchanged = false;
  int error = ENOTSUP;
  // safeguard: not exchanging a folder in the target's place
  if (noTarget == 0 && old.kind != Environment::FileKind::Folder) {
    // What stood there stays at hand, under the temporary name.
    error = repeatedWhileInterrupted(exchange);
    exchanged = error == 0;
  }
  // Without an exchange, or when somebody has just removed what was to be exchanged.
  if (error == ENOTSUP || error == ENOENT) {
    error = repeatedWhileInterrupted([&] { return environment.renameFile(file.path(), target); });
    if (error == 0) file.noteGone();
  }
  if (error != 0) return error;
  // safeguard: flush of the folder
  error = flushFolder(environment, folder);
  if (error == 0) return 0;
  // Another writer may have come after this one; what it has put there is not undone.
  Environment::FileInfo standing;
  if (pathInfo(environment, target, &standing) != 0 || !isSameFile(standing, file.info())) return error;
  // safeguard: the old file's return when the folder cannot be flushed
  if (exchanged) repeatedWhileInterrupted(exchange);
  if (noTarget == ENOENT) repeatedWhileInterrupted([&] { return environment.removeFile(target); });
  return error;
}

/// Removes what killed writers of the same target left. Files of living writers are locked and stay.
void removeLeftFiles(Environment& environment, const std::string& target) {
  const std::string folder = parentFolder(target);
  const std::string prefix = temporaryPrefix(lastPathComponent(target));
  const std::string suffix = temporarySuffix;
  std::vector<std::string> names;
  if (environment.listFolder(folder, &names) != 0) return;
  for (const std::string& name : names) {
    if (name.size() <= prefix.size() + suffix.size() || name.compare(0, prefix.size(), prefix) != 0 ||
        name.compare(name.size() - suffix.size(), suffix.size(), suffix) != 0 ||
        name.find_first_not_of("0123456789-", prefix.size()) != name.size() - suffix.size()) {
      continue;
    }
    const std::string path = appendPathComponent(folder, name);
    Environment::FileInfo info;
    if (environment.pathInfo(path, &info) != 0 || info.kind == Environment::FileKind::Folder) continue;
    if (info.kind != Environment::FileKind::Regular) {
      // No writer's new file, but a link or a pipe that one has replaced; such a thing has no lock.
      environment.removeFile(path);
      continue;
    }
    OpenFile left(environment);
    if (left.open(path, O_RDONLY | O_NOFOLLOW | O_NONBLOCK, 0) != 0) continue;
    // safeguard: sparing the temporary files of living writers
    if (environment.lockFile(left.descriptor()) == 0) environment.removeFile(path);
  }
}

int replace(Environment& environment, const std::string& path, const FileContent& content) {
  OpenFile folder(environment);
  int error = folder.open(parentFolder(path), O_RDONLY | O_DIRECTORY, 0);
  // A folder that may be written but not read cannot be opened, nor flushed; its files can be replaced all the same.
  if (error != 0 && error != EACCES) return error;
  TemporaryFile file(environment, path);
  if (file.error() != 0) return file.error();
  OpenFile& written = file.written();
  // Before a byte is written: who may not read the old file must not read the new one either.
  // safeguard: the replaced file's mode before its text
  error = takeOverMode(environment, path, file.info(), written.descriptor());
  if (error == 0) error = writeAll(environment, written.descriptor(), content);
  // safeguard: flush of the temporary file
  if (error == 0) error = repeatedWhileInterrupted([&] { return environment.flushFile(written.descriptor()); });
  if (error == 0) error = written.close();
  // safeguard: taking the target's place in one step
  if (error == 0) error = takePlace(environment, file, path, folder);
  return error;
}

}  // namespace

int replaceFile(Environment& environment, const std::string& path, const FileContent& content) {
  const int error = replace(environment, path, content);
  if (error == 0) {
    try {
      removeLeftFiles(environment, path);
    } catch (const std::bad_alloc&) {
      // The new file stands. What was left stays until the next time.
    }
  }
  environment.fileReplaced(path, error);
  return error;
}

int replaceFile(Environment& environment, const std::string& path, std::string_view content) {
  return replaceFile(environment, path, [content](ByteSink& sink) {
    sink.append(content);
    return 0;
  });
}

void flushFolder(Environment& environment, const std::string& path) {
  int descriptor = -1;
  if (environment.openFile(path, O_RDONLY | O_DIRECTORY, 0, &descriptor) != 0) return;
  environment.flushFile(descriptor);
  environment.closeFile(descriptor);
}

}  // namespace epg
