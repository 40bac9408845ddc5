#include "host/commands/DataFolder.h"

#include <fcntl.h>

#include <cerrno>
#include <cstdlib>

#include "host/commands/ReportingEnvironment.h"
#include "host/guide/InputFile.h"
#include "host/terminal/Messages.h"
#include "host/terminal/Refusal.h"
#include "platform/AtomicFile.h"
#include "platform/Paths.h"

namespace epg {

namespace {

constexpr int folderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

}  // namespace

std::string defaultDataFolderPath(Environment& environment) {
#ifdef __APPLE__
  return appendPathComponent(environment.homeFolder(), "Library/Application Support/EPG DorvaSelin");
#else
  const char* const dataHome = std::getenv("XDG_DATA_HOME");
  if (dataHome && dataHome[0] == '/') return appendPathComponent(dataHome, "EPGDorvaSelin");
  return appendPathComponent(environment.homeFolder(), ".local/share/EPGDorvaSelin");
#endif
}

const char* defaultDataFolderInWords() {
#ifdef __APPLE__
  return "~/Library/Application Support/EPG DorvaSelin";
#else
  return "$XDG_DATA_HOME/EPGDorvaSelin, or ~/.local/share/EPGDorvaSelin without XDG_DATA_HOME";
#endif
}

int folderError(Environment& environment, const std::string& path) {
  int descriptor = -1;
  const int error = environment.openFile(path, folderFlags, 0, &descriptor);
  if (error == 0) environment.closeFile(descriptor);
  return error;
}

bool makeDataFolder(ReportingEnvironment& environment, const std::string& path) {
  int error = environment.makeFolder(path);
  const std::string parent = parentFolder(path);
  if (error == ENOENT && parent != path) {
    makeDataFolder(environment, parent);
    error = environment.makeFolder(path);
  }
  if (error == EEXIST) return false;
  if (error != 0) throw Refusal(path + ": the folder cannot be made: " + systemMessage(error));
  // An error is no reason to give up: the folder can be used nevertheless.
  flushFolder(environment, parent);
  return true;
}

DataFolderLock::DataFolderLock(ReportingEnvironment& environment, Messages& messages, const std::string& path)
    : environment_(environment) {
  int error = environment.openFile(path, folderFlags, 0, &descriptor_);
  if (error != 0) throw Refusal(path + ": " + systemMessage(error));
  error = environment.lockFile(descriptor_);
  if (error == EWOULDBLOCK) {
    messages.line("Waiting for another dorvaselin to finish its change in " + path);
    error = environment.waitForLock(descriptor_);
  }
  if (error != 0) {
    environment.closeFile(descriptor_);
    throw Refusal(path + ": the folder cannot be locked: " + systemMessage(error));
  }
}

DataFolderLock::~DataFolderLock() { environment_.closeFile(descriptor_); }

}  // namespace epg
