#include "tests/support/FilesInMemory.h"

#include <algorithm>
#include <cerrno>

namespace epg::test {

std::size_t FilesInMemory::timesOpened(const std::string& path) const {
  return static_cast<std::size_t>(std::count(opened_.begin(), opened_.end(), path));
}

int FilesInMemory::openFile(const std::string& path, int /*flags*/, mode_t /*mode*/, int* descriptor) {
  opened_.push_back(path);
  const auto refused = refused_.find(path);
  if (refused != refused_.end()) return refused->second;
  const auto file = files_.find(path);
  if (file == files_.end()) return ENOENT;
  *descriptor = nextDescriptor_++;
  open_[*descriptor].content = file->second;
  return 0;
}

int FilesInMemory::fileInfo(int descriptor, FileInfo* info) {
  if (open_.find(descriptor) == open_.end()) return EBADF;
  info->kind = FileKind::Regular;
  return 0;
}

int FilesInMemory::readFile(int descriptor, char* buffer, std::size_t capacity, std::size_t* count) {
  const auto file = open_.find(descriptor);
  if (file == open_.end()) return EBADF;
  *count = file->second.content.copy(buffer, capacity, file->second.position);
  file->second.position += *count;
  return 0;
}

int FilesInMemory::closeFile(int descriptor) { return open_.erase(descriptor) == 1 ? 0 : EBADF; }

}  // namespace epg::test
