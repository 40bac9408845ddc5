#pragma once

#include <functional>
#include <istream>
#include <memory>
#include <ostream>
#include <string>

namespace epg {

class Messages;
class ReportingEnvironment;

/// What every command of the command line works with.
struct CommandContext {
  ReportingEnvironment& environment;
  Messages& messages;    ///< Standard error.
  std::istream& input;   ///< Standard input.
  std::ostream& output;  ///< Standard output.
  std::string dataFolderPath;
  std::string resourceFolder;
  bool dataFolderIsNamed = false;  ///< By the operator, who may have misspelt it. Otherwise it is the default folder.
  /// When set, called before a command that changes no file writes output. From then on a closed pipe may end the
  /// program.
  std::function<void()> onReadOnlyCommand = nullptr;
  /// When set, is given objects that need not be freed because the process ends soon: to free the millions of parts of
  /// a large store takes longer than to save them.
  std::function<void(std::shared_ptr<const void>)> keepUntilExit = nullptr;
};

}  // namespace epg
