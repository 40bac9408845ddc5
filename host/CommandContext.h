#pragma once

#include <istream>
#include <ostream>
#include <string>

namespace epg {

class Messages;
class ReportingEnvironment;

/// What every command works with.
struct CommandContext {
  ReportingEnvironment& environment;
  Messages& messages;    ///< Standard error.
  std::istream& input;   ///< Standard input.
  std::ostream& output;  ///< Standard output.
  std::string dataFolderPath;
  std::string resourceFolder;
  bool dataFolderIsNamed = false;  ///< By whoever gave the command, who may have misspelt it; else it is the usual one.
};

}  // namespace epg
