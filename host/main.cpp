#include <unistd.h>

#include <csignal>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/commands/CommandContext.h"
#include "host/commands/CommandLine.h"
#include "host/commands/CommandLineBundle.h"
#include "host/commands/DataFolder.h"
#include "host/commands/ReportingEnvironment.h"
#include "host/terminal/Messages.h"

int main(int argumentCount, char** arguments) {
  // A closed pipe must not end the program before a command has saved: the write fails instead. Commands that save
  // nothing restore what the program was started with.
  const auto signalHandlerAtStart = std::signal(SIGPIPE, SIG_IGN);
  // Nor must a limit on the size of files: the save fails instead, with a message.
  std::signal(SIGXFSZ, SIG_IGN);
  std::ios::sync_with_stdio(false);
  // Progress is written on another thread. Tied, standard error would flush standard output there.
  std::cerr.tie(nullptr);

  epg::Messages messages(std::cerr, isatty(STDERR_FILENO) != 0);
  epg::ReportingEnvironment environment(messages);
  epg::CommandContext context{environment,
                              messages,
                              std::cin,
                              std::cout,
                              epg::defaultDataFolderPath(environment),
                              epg::programResourceFolder()};
  context.onReadOnlyCommand = [signalHandlerAtStart] { std::signal(SIGPIPE, signalHandlerAtStart); };
  // Never destroyed.
  static auto& kept = *new std::vector<std::shared_ptr<const void>>;
  context.keepUntilExit = [](std::shared_ptr<const void> thing) { kept.push_back(std::move(thing)); };
  return epg::runCommandLine(std::vector<std::string>(arguments + 1, arguments + argumentCount), context);
}
