#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/commands/DataFolder.h"
#include "plugin/EPGDorvaSelinManagerPlugin.h"

namespace epg {

class CommandLineBundle;
struct CommandContext;

/// One plug-in object over the data folder, for the run of one command. The destructor waits until the object's threads
/// have ended.
class PluginSession {
 public:
  enum class Purpose {
    Reading,     ///< Changes nothing.
    Rehearsing,  ///< Changes nothing. A message tells when `Adding` would make the folder.
    Changing,    ///< Locks the folder.
    Adding       ///< Locks the folder. When it is missing makes it, with a message.
  };

  /// Throws a `Refusal` when the item store cannot be read: the plug-in would start with an empty one, and its next
  /// save would replace the file. Throws one also when the operator named a folder that is missing, unless the purpose
  /// is `Adding` or `Rehearsing`. The default folder may be missing; it counts as empty and is made for every change.
  PluginSession(CommandContext& context, Purpose purpose);
  PluginSession(const PluginSession&) = delete;
  PluginSession& operator=(const PluginSession&) = delete;
  ~PluginSession();

  EPGDorvaSelinManagerPlugin& plugin() { return *plugin_; }
  CommandLineBundle& bundle() { return *bundle_; }

  /// The export configurations as the plug-in names them. Throws a `Refusal` when the folder cannot be listed: the
  /// plug-in would then name the default configuration, which writes to the Desktop.
  std::vector<std::string> configurationNames() const;

  /// Drops the plug-in object and waits until it and its threads are gone. A terminal shows `work` meanwhile.
  void end(const char* work);
  /// The same after a command that has started a save. Tells of IDs that the file cannot hold as they are. Throws a
  /// `Refusal` when the save failed.
  void endAfterSave();

 private:
  CommandContext& context_;
  std::unique_ptr<DataFolderLock> lock_;
  std::shared_ptr<CommandLineBundle> bundle_;
  std::shared_ptr<EPGDorvaSelinManagerPlugin> plugin_;
};

}  // namespace epg
