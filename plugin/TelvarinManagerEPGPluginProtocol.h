#pragma once

#include <optional>
#include <string>
#include <vector>

#include "model/EPGEvent.h"
#include "plugin/EPGError.h"

namespace epg {

class View;

/// A width and a height in the host's view units.
struct ViewSize {
  double width = 0;
  double height = 0;
};

/// What the host implements to hear how an export ended.
class TelvarinManagerEPGPluginProtocol_Delegate {
 public:
  virtual ~TelvarinManagerEPGPluginProtocol_Delegate() = default;

  /// Whether `epgExportEventCompleted` is to be called at all; asked afresh before every report.
  virtual bool respondsToEPGExportEventCompleted() const { return true; }

  /// `error` is null when the export succeeded and lives only during the call. The report of an export comes on
  /// that export's own thread, the refusal of one, or of memory to start it, on the thread that asked for it. Must not
  /// throw.
  virtual void epgExportEventCompleted(bool /*succeeded*/, const EPGError* /*error*/) {}
};

/// What the host drives a plug-in with. All operations are for the host's main thread; none waits for the disk.
///
/// Creation and the plug-in's display name belong to the class, not to an object: see
/// `EPGDorvaSelinManagerPlugin::initWithBundle` and `pluginName`.
class TelvarinManagerEPGPluginProtocol {
 public:
  virtual ~TelvarinManagerEPGPluginProtocol() = default;

  /// The delegate is not owned. Whoever destroys it sets another one (or null) first and waits for a running export.
  virtual void setDelegate(TelvarinManagerEPGPluginProtocol_Delegate* delegate) = 0;
  virtual TelvarinManagerEPGPluginProtocol_Delegate* delegate() const = 0;

  /// The folder of the export last accepted; nothing before the first or where its configuration names none.
  virtual std::optional<std::string> exportPath() const = 0;
  virtual std::vector<std::string> configurationFilenames() const = 0;

  virtual void setEditedEPGUniqueIDs(const std::vector<std::string>& uniqueIDs) = 0;
  /// Owned by the plug-in. Null when its bundle has no interface.
  virtual View* editorView() = 0;
  virtual ViewSize minimumEditorViewSize() const = 0;
  virtual ViewSize maximumEditorViewSize() const = 0;
  virtual bool commitEditing() = 0;
  virtual void revertEditing() = 0;

  virtual void removeEPGItemsWithUniqueIDs(const std::vector<std::string>& uniqueIDs) = 0;
  virtual void duplicateEPGItemWithUniqueID(const std::string& sourceID, const std::string& targetID) = 0;

  virtual void exportEvents(std::vector<EPGEvent> events, const std::string& configurationFilename) = 0;
  virtual void cancelExportEvents() = 0;
};

}  // namespace epg
