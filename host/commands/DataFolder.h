#pragma once

#include <string>

namespace epg {

class Environment;
class Messages;
class ReportingEnvironment;

/// Where the platform keeps application data: on a Mac "Library/Application Support/EPG DorvaSelin" in the home
/// folder, elsewhere "EPGDorvaSelin" in XDG_DATA_HOME or, where that names no absolute path, in "~/.local/share".
std::string defaultDataFolderPath(Environment& environment);

/// The same folder in the words of a manual, which do not hang on anybody's home folder.
const char* defaultDataFolderInWords();

/// 0 where the folder can be opened, otherwise the errno value.
int folderError(Environment& environment, const std::string& path);

/// Makes the folder and those above it that are missing; false when it was there already. Throws a `Refusal` that names
/// the folder that cannot be made.
bool makeDataFolder(ReportingEnvironment& environment, const std::string& path);

/// Keeps every other command that would change the folder waiting for as long as the object lives, so that none
/// works on a store that another one is about to replace. The lock is on the folder itself: nothing is left in it.
class DataFolderLock {
 public:
  /// Waits for whoever has the lock, with a message. Throws a `Refusal` when the folder cannot be locked.
  DataFolderLock(ReportingEnvironment& environment, Messages& messages, const std::string& path);
  DataFolderLock(const DataFolderLock&) = delete;
  DataFolderLock& operator=(const DataFolderLock&) = delete;
  ~DataFolderLock();

 private:
  Environment& environment_;
  int descriptor_ = -1;
};

}  // namespace epg
