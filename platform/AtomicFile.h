#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/ByteSink.h"

namespace epg {

class Environment;

/// Makes the content of a file: appends it to the sink. 0, or an errno value when there can be no such content. May
/// stop early, whatever it answers, when the sink has failed.
using FileContent = std::function<int(ByteSink&)>;

/// Replaces the file at `path` by one that holds `content`, so that whoever looks finds the old file or the new
/// one, whole, also after a crash or a power cut. 0, or the errno value of the call that failed; then what stood
/// under the name stands there still and no temporary file is left. So it is when the content answers an errno value,
/// which is handed on, and when it throws or memory runs out, which throws.
///
/// The content goes, as it is made, to a temporary file beside the target, named with a leading dot and the extension
/// "tmp", is flushed to disk and takes the target's place in one step; then the folder is flushed. Where the system can
/// swap two names, the old file stays at hand until that is done, and comes back when it fails; where it cannot, the
/// new file stays in spite of that error, whole. A new file has the mode of any new file; a replaced one hands on its
/// mode, its access list and, where permitted, its owner and group. Where the group cannot be handed on, its
/// permissions are not either: nobody may read the new file who could not read the old one, but for its writer. A
/// symbolic link under the name is itself replaced, never followed, so nothing outside the folder is written. Temporary
/// files that killed writers of the same target left are removed.
///
/// Any number of threads and processes may replace the same file at once; the last one wins.
int replaceFile(Environment& environment, const std::string& path, const FileContent& content);
int replaceFile(Environment& environment, const std::string& path, std::string_view content);

/// Asks for the folder's entries to reach the disk. Without this a power failure could lose a name that was just made.
void flushFolder(Environment& environment, const std::string& path);

}  // namespace epg
