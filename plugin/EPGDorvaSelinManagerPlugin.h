#pragma once

#include <atomic>
#include <cstddef>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "editor/EPGDorvaSelinViewController.h"
#include "export/DayFileElements.h"
#include "export/EventOrder.h"
#include "export/XMLElement.h"
#include "model/EPGItemList.h"
#include "model/EPGItemStore.h"
#include "platform/Environment.h"
#include "platform/LocalCalendar.h"
#include "plugin/ObjectEnd.h"
#include "plugin/TelvarinManagerEPGPluginProtocol.h"

namespace epg {

/// The plug-in: item store and its file, editing session, day export.
///
/// Held by shared pointer; every save and every export runs on a detached thread that holds the object until it
/// ends, so dropping it never cuts a write short. A host that wants to leave cleanly keeps `end()`, drops the
/// object and waits. Protocol operations are for the host's thread; the threads are the object's own affair, and
/// nothing that they share is unguarded.
class EPGDorvaSelinManagerPlugin : public TelvarinManagerEPGPluginProtocol,
                                   public std::enable_shared_from_this<EPGDorvaSelinManagerPlugin> {
 protected:
  struct Private {
    explicit Private() = default;
  };

 public:
  static std::string pluginName();

  /// Loads the item store from the data folder; a store that cannot be read starts empty, silently, and is
  /// overwritten by the next save. `bundle` may be null (an editor without catalogue and views).
  static std::shared_ptr<EPGDorvaSelinManagerPlugin> initWithBundle(std::shared_ptr<Bundle> bundle,
                                                                    const std::string& dataFolderPath,
                                                                    Environment& environment);
  static std::shared_ptr<EPGDorvaSelinManagerPlugin> initWithBundle(std::shared_ptr<Bundle> bundle,
                                                                    const std::string& dataFolderPath);

  /// Only for `initWithBundle` and derived classes, which give the store and the list of their face; the object has to
  /// be held by a shared pointer.
  EPGDorvaSelinManagerPlugin(Private, std::shared_ptr<Bundle> bundle, const std::string& dataFolderPath,
                             Environment& environment, std::shared_ptr<EPGItemStore> epgItems,
                             const std::optional<Environment::FileInfo>& unreadableStore,
                             std::shared_ptr<EPGItemList> editedItems);
  EPGDorvaSelinManagerPlugin(const EPGDorvaSelinManagerPlugin&) = delete;
  EPGDorvaSelinManagerPlugin& operator=(const EPGDorvaSelinManagerPlugin&) = delete;
  ~EPGDorvaSelinManagerPlugin() override;

  /// Tells when this object is gone. Outlives it.
  std::shared_ptr<ObjectEnd> end() const { return endTeller_.end; }

  void setDelegate(TelvarinManagerEPGPluginProtocol_Delegate* delegate) override;
  TelvarinManagerEPGPluginProtocol_Delegate* delegate() const override;
  std::optional<std::string> exportPath() const override;
  std::vector<std::string> configurationFilenames() const override;
  void setEditedEPGUniqueIDs(const std::vector<std::string>& uniqueIDs) override;
  View* editorView() override;
  ViewSize minimumEditorViewSize() const override;
  ViewSize maximumEditorViewSize() const override;
  bool commitEditing() override;
  void revertEditing() override;
  void removeEPGItemsWithUniqueIDs(const std::vector<std::string>& uniqueIDs) override;
  void duplicateEPGItemWithUniqueID(const std::string& sourceID, const std::string& targetID) override;
  void exportEvents(std::vector<EPGEvent> events, const std::string& configurationFilename) override;
  void cancelExportEvents() override;

  // Operations outside the protocol.

  /// Always nothing; part of the class's interface.
  std::optional<std::string> stringValue() const { return std::nullopt; }

  /// Starts a save of the whole store on a thread of its own. Dropped, not queued, while another save is writing:
  /// the change then reaches the file with the next save. When memory runs out, that is logged as for a failed write.
  void saveEPGItemsToFile();
  /// The save thread's work: writes the snapshot. Silent when the file cannot be written.
  void saveEPGItemsToFileThread(const EPGItemStoreSnapshot& snapshot);

  /// Writes the day file named after `date` into the export folder. False when it was not written, for any reason.
  bool writeXMLFileWithEvents(const std::vector<EPGEvent>& events, Instant date) const;
  /// The export thread's work: sorts, writes, reports.
  void exportEventsThread(const std::vector<EPGEvent>& events);

  std::string shortDateStringWithDate(Instant date) const;
  XMLElement dateXMLElementWithDate(std::optional<Instant> date) const;
  XMLElement timeXMLElementWithDate(std::optional<Instant> date) const;
  XMLElement tagsXMLElementWithTags(const PropertyList::Elements* tags) const;
  std::optional<XMLElement> xmlEventWithDictionary(const EPGEvent& event) const;

  EPGError errorWithMessage(const std::string& message) const;

  /// The live store; what a host changes in it the plug-in sees. Any thread. With a null store there are no items
  /// and nothing is saved.
  std::shared_ptr<EPGItemStore> epgItems() const;
  void setEpgItems(std::shared_ptr<EPGItemStore> epgItems);
  /// The live list of working copies. The accessors are safe from any thread, the list is the host thread's.
  std::shared_ptr<EPGItemList> editedItems() const;
  void setEditedItems(std::shared_ptr<EPGItemList> editedItems);

  /// Same day of the local calendar, the standard environment's without one; two absent dates are equal.
  static bool isDateEqualToDate(std::optional<Instant> first, std::optional<Instant> second);
  static bool isDateEqualToDate(std::optional<Instant> first, std::optional<Instant> second, Environment& environment);

  /// Whether a save is writing, or an export is running, at this moment. Of two saves that overlap, the first to end
  /// clears the mark.
  bool busyWriting() const { return busyWriting_; }
  bool busyExporting() const { return busyExporting_; }

 protected:
  // What a face whose platform has objects of its own does its own way.

  /// Makes `saveEPGItemsToFileThread` run with the snapshot on a thread that holds this object until it ends.
  virtual void detachSaveThread(const std::shared_ptr<const EPGItemStoreSnapshot>& snapshot);

  // An export in its two halves, for a face that brings its own list to a thread of its own.

  /// On the thread that asks: whether the export may run, with the configuration read and the object marked busy. The
  /// other half has to follow then. Otherwise it has been refused, or has failed, and is reported.
  bool beginExport(const std::string& configurationFilename);
  /// The work of the export's thread, for events that are read there. What `read` throws is reported like any failure.
  void exportEventsThread(const std::function<std::vector<EPGEvent>()>& read);

  virtual std::shared_ptr<EPGDorvaSelinViewController> makeViewController(const std::string& nibName);
  virtual std::size_t hashOfPlaybackID(const std::string& playbackUniqueID) const;

 private:
  std::shared_ptr<const PropertyListDictionary> configurationDictionary() const;
  std::string storePath() const;
  PlaybackIDHash playbackHash() const;
  /// The live store, or one without items.
  std::shared_ptr<const EPGItemStore> items() const;
  bool writeXMLFile(const EventOrder& events, Instant date) const;
  void runExport(const std::function<bool()>& write);
  /// Ends an export that was not refused and has not run.
  void failExport();
  void reportExport(bool succeeded, const EPGError* error) const;
  void logFailedSave(const std::exception& exception, int error) const noexcept;

  /// The first member, so that the end is told after every other one is gone.
  struct EndTeller {
    ~EndTeller() { end->signal(); }
    std::shared_ptr<ObjectEnd> end = std::make_shared<ObjectEnd>();
  };

  EndTeller endTeller_;
  Environment& environment_;
  std::atomic<TelvarinManagerEPGPluginProtocol_Delegate*> delegate_{nullptr};
  std::shared_ptr<Bundle> bundle_;
  const std::string dataFolderPath_;
  const std::optional<Environment::FileInfo> unreadableStore_;  ///< The store file at the start, if it was unreadable.

  mutable std::mutex fieldsMutex_;  ///< Guards the three references below, not what they refer to.
  std::shared_ptr<EPGItemStore> epgItems_;
  std::shared_ptr<const PropertyListDictionary> configurationDictionary_;
  std::shared_ptr<EPGItemList> editedItems_;

  std::shared_ptr<EPGDorvaSelinViewController> viewController_;
  const DateFormatter shortDateFormatter_;       ///< Names the day files.
  const DateFormatter dorvaSelinDateFormatter_;  ///< Writes the root's dates.
  const EPGError exportFailure_;                 ///< Made beforehand: an export that ran out of memory is reported too.
  std::atomic<bool> busyWriting_{false};
  std::atomic<bool> busyExporting_{false};
  std::atomic<bool> cancelExport_{false};
};

}  // namespace epg
