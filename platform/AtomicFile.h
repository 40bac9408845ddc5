#pragma once

#include <string>

namespace epg {

class Environment;

/// Replaces the file at `path` by one that holds `content`, so that whoever looks finds the old file or the new
/// one, whole, also after a crash or a power cut. 0, or the errno value of the call that failed; then what stood
/// under the name stands there still and no temporary file is left. So it is when memory runs out, which throws.
///
/// The content goes to a temporary file beside the target, named with a leading dot and the extension "tmp", is
/// flushed to disk and takes the target's place in one step; then the folder is flushed. Where the system can swap two
/// names, the old file stays at hand until that is done, and comes back when it fails; where it cannot, the new file
/// stays in spite of that error, whole. A new file has the mode of any new file; a replaced one hands on its mode, its
/// access list and, where permitted, its owner and group. Where the group cannot be handed on, its permissions are not
/// either: nobody may read the new file who could not read the old one, but for its writer. A symbolic link under the
/// name is itself replaced, never followed, so nothing outside the folder is written. Temporary files that killed
/// writers of the same target left are removed.
///
/// Any number of threads and processes may replace the same file at once; the last rename wins.
int replaceFile(Environment& environment, const std::string& path, const std::string& content);

}  // namespace epg
