#include <unistd.h>

#include <csignal>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/commands/CommandContext.h"
#include "host/commands/CommandLine.h"
#include "host/commands/DataFolder.h"
#include "host/commands/HostBundle.h"
#include "host/commands/ReportingEnvironment.h"
#include "host/terminal/Messages.h"

int main(int argumentCount, char** arguments) {
  // A reader that leaves early must not cut a command short before its save: writing fails instead. Where nothing is to
  // be saved it ends the program like any other, unless whoever started it wanted otherwise.
  const auto whenReaderLeaves = std::signal(SIGPIPE, SIG_IGN);
  // Nor must a file that may not grow: a save then fails like any other, with a message.
  std::signal(SIGXFSZ, SIG_IGN);
  std::ios::sync_with_stdio(false);
  // Else whoever shows progress would flush standard output, on another thread than the one that writes there.
  std::cerr.tie(nullptr);

  epg::Messages messages(std::cerr, isatty(STDERR_FILENO) != 0);
  epg::ReportingEnvironment environment(messages);
  epg::CommandContext context{
      environment, messages, std::cin, std::cout, epg::defaultDataFolderPath(environment), epg::resourceFolder()};
  context.nothingToLose = [whenReaderLeaves] { std::signal(SIGPIPE, whenReaderLeaves); };
  // Never destroyed, which is what it is for.
  static auto& kept = *new std::vector<std::shared_ptr<const void>>;
  context.keep = [](std::shared_ptr<const void> thing) { kept.push_back(std::move(thing)); };
  return epg::runCommandLine(std::vector<std::string>(arguments + 1, arguments + argumentCount), context);
}
