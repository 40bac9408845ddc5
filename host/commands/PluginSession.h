#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/commands/DataFolder.h"
#include "plugin/EPGDorvaSelinManagerPlugin.h"

namespace epg {

class HostBundle;
struct CommandContext;

/// One plug-in object over the data folder, for the run of one command. However the command ends, the object's
/// threads have ended before it.
class PluginSession {
 public:
  enum class Purpose {
    Reading,     ///< Changes nothing.
    Rehearsing,  ///< Changes nothing, and tells where `Adding` would make the folder.
    Changing,    ///< Keeps other commands from changing the folder.
    Adding       ///< As `Changing`; makes the folder, and tells so, where it is missing.
  };

  /// Throws a `Refusal` when there is an item store that cannot be read (the plug-in would start with an empty one
  /// and its next save would replace what is there), and when the folder is missing that somebody named and that only
  /// `Adding` makes. The usual folder may be missing; it counts as empty, and is made for every change.
  PluginSession(CommandContext& context, Purpose purpose);
  PluginSession(const PluginSession&) = delete;
  PluginSession& operator=(const PluginSession&) = delete;
  ~PluginSession();

  EPGDorvaSelinManagerPlugin& plugin() { return *plugin_; }
  HostBundle& bundle() { return *bundle_; }

  /// As the plug-in names them. Throws a `Refusal` where the folder cannot be listed: the plug-in would then name the
  /// default configuration, which writes to the Desktop. A folder that is missing has none.
  std::vector<std::string> configurationNames() const;

  /// Drops the plug-in object and waits until it and its threads are gone. `work` is what a terminal shows meanwhile.
  void end(const char* work);
  /// As `end`, after the one save of a command. Tells of IDs that the file does not give back. Throws a `Refusal` when
  /// the save did not reach the disk.
  void endAfterSave();

 private:
  CommandContext& context_;
  std::unique_ptr<DataFolderLock> lock_;
  std::shared_ptr<HostBundle> bundle_;
  std::shared_ptr<EPGDorvaSelinManagerPlugin> plugin_;
};

}  // namespace epg
