#pragma once

#include <functional>
#include <istream>
#include <memory>
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
  /// Called, where it is set, before a command that changes no file writes anything: from then on a reader that leaves
  /// early may end the program.
  std::function<void()> nothingToLose = nullptr;
  /// Where it is set, takes what is of no more use once the command ends, for the process to end with: giving back a
  /// store's millions of pieces one by one takes longer than to save them, and nobody would be the better for it.
  std::function<void(std::shared_ptr<const void>)> keep = nullptr;
};

}  // namespace epg
