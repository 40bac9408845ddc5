#pragma once

#include <string>

namespace epg {

class Environment;
class Messages;
class ReportingEnvironment;

/// The default data folder, where the platform keeps application data: on a Mac "Library/Application Support/EPG
/// DorvaSelin" in the home folder, elsewhere "EPGDorvaSelin" in XDG_DATA_HOME or, where that names no absolute path, in
/// "~/.local/share".
std::string defaultDataFolderPath(Environment& environment);

/// The same folder as a manual writes it, with variables instead of anybody's home folder.
const char* defaultDataFolderInWords();

/// 0 when the folder can be opened, otherwise the errno value.
int folderError(Environment& environment, const std::string& path);

/// Makes the folder and its missing parents; false when it was there already. Throws a `Refusal` that names
/// the folder that cannot be made.
bool makeDataFolder(ReportingEnvironment& environment, const std::string& path);

/// Locks the folder against other commands that change it for as long as the object lives, so that none works on a
/// store that another one is about to replace. The lock is on the folder itself: it leaves no file behind.
class DataFolderLock {
 public:
  /// Waits, with a message, while another program holds the lock. Throws a `Refusal` when the folder cannot be locked.
  DataFolderLock(ReportingEnvironment& environment, Messages& messages, const std::string& path);
  DataFolderLock(const DataFolderLock&) = delete;
  DataFolderLock& operator=(const DataFolderLock&) = delete;
  ~DataFolderLock();

 private:
  Environment& environment_;
  int descriptor_ = -1;
};

}  // namespace epg
