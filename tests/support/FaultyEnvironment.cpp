#include "tests/support/FaultyEnvironment.h"

#include <algorithm>
#include <cerrno>

namespace epg::test {

std::vector<std::string> FaultyEnvironment::callNames() const {
  std::vector<std::string> names;
  for (const Call& call : calls_) names.push_back(call.name);
  return names;
}

int FaultyEnvironment::begin(const char* name, const std::string& path) {
  const std::size_t number = calls_.size();
  calls_.push_back({name, path});
  const auto action = actions_.find(number);
  if (action != actions_.end()) action->second();
  if (interruptedSoFar_ < interruptions_) {
    ++interruptedSoFar_;
    return EINTR;
  }
  interruptedSoFar_ = 0;
  const auto fault = faults_.find(number);
  if (fault != faults_.end()) return fault->second;
  const auto namedFault = namedFaults_.find(name);
  return namedFault == namedFaults_.end() ? 0 : namedFault->second;
}

int FaultyEnvironment::openFile(const std::string& path, int flags, mode_t mode, int* descriptor) {
  const int error = begin("openFile", path);
  return error != 0 ? error : Environment::openFile(path, flags, mode, descriptor);
}

int FaultyEnvironment::readFile(int descriptor, char* buffer, std::size_t capacity, std::size_t* count) {
  const int error = begin("readFile");
  return error != 0 ? error : Environment::readFile(descriptor, buffer, capacity, count);
}

int FaultyEnvironment::writeFile(int descriptor, const char* bytes, std::size_t size, std::size_t* written) {
  const int error = begin("writeFile");
  return error != 0 ? error : Environment::writeFile(descriptor, bytes, std::min(size, longestWrite_), written);
}

int FaultyEnvironment::fileInfo(int descriptor, FileInfo* info) {
  const int error = begin("fileInfo");
  return error != 0 ? error : Environment::fileInfo(descriptor, info);
}

int FaultyEnvironment::setFileMode(int descriptor, mode_t mode) {
  const int error = begin("setFileMode");
  return error != 0 ? error : Environment::setFileMode(descriptor, mode);
}

int FaultyEnvironment::setFileOwner(int descriptor, uid_t owner, gid_t group) {
  const int error = begin("setFileOwner");
  return error != 0 ? error : Environment::setFileOwner(descriptor, owner, group);
}

int FaultyEnvironment::copyAccessList(const std::string& from, int descriptor) {
  const int error = begin("copyAccessList", from);
  return error != 0 ? error : Environment::copyAccessList(from, descriptor);
}

int FaultyEnvironment::lockFile(int descriptor) {
  const int error = begin("lockFile");
  return error != 0 ? error : Environment::lockFile(descriptor);
}

int FaultyEnvironment::flushFile(int descriptor) {
  const int error = begin("flushFile");
  FileInfo info;
  return error != 0 ? error : Environment::fileInfo(descriptor, &info);
}

int FaultyEnvironment::closeFile(int descriptor) {
  const int error = begin("closeFile");
  // Never asked again after a failure, so an interruption is not one of several.
  interruptedSoFar_ = 0;
  const int closed = Environment::closeFile(descriptor);
  return error != 0 ? error : closed;
}

int FaultyEnvironment::renameFile(const std::string& from, const std::string& to) {
  const int error = begin("renameFile", to);
  return error != 0 ? error : Environment::renameFile(from, to);
}

int FaultyEnvironment::exchangeFiles(const std::string& one, const std::string& other) {
  const int error = begin("exchangeFiles", other);
  return error != 0 ? error : Environment::exchangeFiles(one, other);
}

int FaultyEnvironment::linkFile(const std::string& from, const std::string& to) {
  const int error = begin("linkFile", to);
  return error != 0 ? error : Environment::linkFile(from, to);
}

int FaultyEnvironment::removeFile(const std::string& path) {
  const int error = begin("removeFile", path);
  return error != 0 ? error : Environment::removeFile(path);
}

int FaultyEnvironment::pathInfo(const std::string& path, FileInfo* info) {
  const int error = begin("pathInfo", path);
  return error != 0 ? error : Environment::pathInfo(path, info);
}

int FaultyEnvironment::listFolder(const std::string& path, std::vector<std::string>* names) {
  const int error = begin("listFolder", path);
  return error != 0 ? error : Environment::listFolder(path, names);
}

}  // namespace epg::test
