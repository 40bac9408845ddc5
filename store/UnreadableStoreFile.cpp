#include "store/UnreadableStoreFile.h"

#include <cerrno>
#include <cstdio>

#include "platform/AtomicFile.h"
#include "platform/LocalCalendar.h"
#include "platform/Paths.h"

namespace epg {

namespace {

/// "2026-11-22 10.15.00", without what a file name cannot hold on every volume.
std::string timeForName(Environment& environment) {
  const auto now = LocalCalendar(environment.localZone()).components(environment.now());
  if (!now) return "at no time";
  char text[96];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d.%02d.%02d", now->year, now->month, now->day, now->hour,
                now->minute, now->second);
  return text;
}

/// Where the volume has no second names for files.
int copyFile(Environment& environment, const std::string& from, const std::string& to) {
  std::string content;
  const int error = readWholeFile(environment, from, &content);
  return error != 0 ? error : replaceFile(environment, to, content);
}

}  // namespace

std::optional<Environment::FileInfo> unreadableStoreFile(Environment& environment, const std::string& path) {
  Environment::FileInfo info;
  if (environment.pathInfo(path, &info) != 0) return std::nullopt;
  if (info.kind == Environment::FileKind::Regular && info.size > 0) return info;
  return std::nullopt;
}

std::optional<std::string> keepUnreadableStoreFile(Environment& environment, const std::string& path,
                                                   const Environment::FileInfo& unreadable) {
  Environment::FileInfo standing;
  if (environment.pathInfo(path, &standing) != 0 || !isSameFile(standing, unreadable)) return std::nullopt;
  const std::string base = deletePathExtension(path) + " (unreadable, " + timeForName(environment) + ")";
  constexpr int mostNames = 100;
  for (int number = 1; number <= mostNames; ++number) {
    const std::string kept =
        appendPathExtension(number == 1 ? base : base + " " + std::to_string(number), pathExtension(path));
    Environment::FileInfo taken;
    if (environment.pathInfo(kept, &taken) == 0) {
      // Another save that has not replaced the file yet has just kept it.
      if (isSameFile(taken, unreadable)) return std::nullopt;
      continue;
    }
    int error = environment.linkFile(path, kept);
    if (error == EEXIST) continue;
    if (error != 0) error = copyFile(environment, path, kept);
    // Better no file for a moment than none of the old bytes for ever.
    if (error != 0) error = environment.renameFile(path, kept);
    if (error != 0) return std::nullopt;
    // The name has to be there before the file's own name goes.
    flushFolder(environment, parentFolder(path));
    return kept;
  }
  return std::nullopt;
}

void putBackUnreadableStoreFile(Environment& environment, const std::string& kept, const std::string& path) {
  Environment::FileInfo standing;
  if (environment.pathInfo(path, &standing) == ENOENT) {
    environment.renameFile(kept, path);
  } else {
    environment.removeFile(kept);
  }
}

}  // namespace epg
