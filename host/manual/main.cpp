// Writes the manual page or the completion for a shell: dorvaselin-manual man|bash|zsh|fish FILE. Only the build uses
// it.

#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>
#include <string>

#include "host/commands/CommandContext.h"
#include "host/commands/CommandParser.h"
#include "host/commands/DataFolder.h"
#include "host/commands/ReportingEnvironment.h"
#include "host/manual/Documents.h"
#include "host/terminal/Messages.h"

int main(int argumentCount, char** arguments) {
  const std::map<std::string, std::function<std::string(const epg::ProgramDescription&)>> documents = {
      {"man", epg::manualPage},
      {"bash", epg::bashCompletion},
      {"zsh", epg::zshCompletion},
      {"fish", epg::fishCompletion}};
  const auto document = argumentCount == 3 ? documents.find(arguments[1]) : documents.end();
  if (document == documents.end()) {
    std::cerr << "usage: dorvaselin-manual man|bash|zsh|fish FILE\n";
    return 2;
  }
  epg::Messages messages(std::cerr, false);
  epg::ReportingEnvironment environment(messages);
  std::istringstream nothing;
  epg::CommandContext context{environment, messages, nothing, std::cout, epg::defaultDataFolderInWords(), {}};
  std::ofstream file(arguments[2], std::ios::binary);
  file << document->second(epg::describeProgram(context)) << std::flush;
  if (!file) {
    std::cerr << arguments[2] << " cannot be written\n";
    return 1;
  }
  return 0;
}
