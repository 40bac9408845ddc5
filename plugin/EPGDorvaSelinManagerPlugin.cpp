#include "plugin/EPGDorvaSelinManagerPlugin.h"

#include <cerrno>
#include <exception>
#include <new>
#include <utility>

#include "export/DayFile.h"
#include "export/ExportConfiguration.h"
#include "model/KeyConstants.h"
#include "platform/AtomicFile.h"
#include "platform/Environment.h"
#include "platform/LocalCalendar.h"
#include "platform/Paths.h"
#include "store/ItemStoreFile.h"
#include "store/MemoryItem.h"
#include "store/MemoryItemList.h"
#include "store/ShardedItemStore.h"
#include "store/UnreadableStoreFile.h"

namespace epg {

namespace {

const char* const editorNibName = "EPGDorvaSelinEditor";
constexpr ViewSize minimumSize{300, 200};
constexpr ViewSize maximumSize{5000, 5000};

}  // namespace

std::string EPGDorvaSelinManagerPlugin::pluginName() { return "EPG DorvaSelin"; }

std::shared_ptr<EPGDorvaSelinManagerPlugin> EPGDorvaSelinManagerPlugin::initWithBundle(
    std::shared_ptr<Bundle> bundle, const std::string& dataFolderPath, Environment& environment) {
  const ItemStoreContents contents = readItemStore(environment, itemStorePath(dataFolderPath));
  return std::make_shared<EPGDorvaSelinManagerPlugin>(Private(), std::move(bundle), dataFolderPath, environment,
                                                      std::make_shared<ShardedItemStore>(contents.entries),
                                                      contents.unreadable, std::make_shared<MemoryItemList>());
}

std::shared_ptr<EPGDorvaSelinManagerPlugin> EPGDorvaSelinManagerPlugin::initWithBundle(
    std::shared_ptr<Bundle> bundle, const std::string& dataFolderPath) {
  return initWithBundle(std::move(bundle), dataFolderPath, Environment::standard());
}

EPGDorvaSelinManagerPlugin::EPGDorvaSelinManagerPlugin(Private /*key*/, std::shared_ptr<Bundle> bundle,
                                                       const std::string& dataFolderPath, Environment& environment,
                                                       std::shared_ptr<EPGItemStore> epgItems,
                                                       const std::optional<Environment::FileInfo>& unreadableStore,
                                                       std::shared_ptr<EPGItemList> editedItems)
    : environment_(environment),
      bundle_(std::move(bundle)),
      dataFolderPath_(dataFolderPath),
      unreadableStore_(unreadableStore),
      epgItems_(std::move(epgItems)),
      editedItems_(std::move(editedItems)),
      shortDateFormatter_("yyyyMMdd"),
      dorvaSelinDateFormatter_("dd-MM-yyyy"),
      exportFailure_(errorWithMessage("EPG XML File Write Error")) {}

EPGDorvaSelinManagerPlugin::~EPGDorvaSelinManagerPlugin() = default;

std::string EPGDorvaSelinManagerPlugin::storePath() const { return itemStorePath(dataFolderPath_); }

void EPGDorvaSelinManagerPlugin::setDelegate(TelvarinManagerEPGPluginProtocol_Delegate* delegate) {
  delegate_ = delegate;
}

TelvarinManagerEPGPluginProtocol_Delegate* EPGDorvaSelinManagerPlugin::delegate() const { return delegate_; }

std::shared_ptr<const PropertyListDictionary> EPGDorvaSelinManagerPlugin::configurationDictionary() const {
  const std::lock_guard<std::mutex> lock(fieldsMutex_);
  return configurationDictionary_;
}

std::shared_ptr<EPGItemStore> EPGDorvaSelinManagerPlugin::epgItems() const {
  const std::lock_guard<std::mutex> lock(fieldsMutex_);
  return epgItems_;
}

void EPGDorvaSelinManagerPlugin::setEpgItems(std::shared_ptr<EPGItemStore> epgItems) {
  const std::lock_guard<std::mutex> lock(fieldsMutex_);
  epgItems_.swap(epgItems);
}

std::shared_ptr<EPGItemList> EPGDorvaSelinManagerPlugin::editedItems() const {
  const std::lock_guard<std::mutex> lock(fieldsMutex_);
  return editedItems_;
}

void EPGDorvaSelinManagerPlugin::setEditedItems(std::shared_ptr<EPGItemList> editedItems) {
  const std::lock_guard<std::mutex> lock(fieldsMutex_);
  editedItems_.swap(editedItems);
}

std::optional<std::string> EPGDorvaSelinManagerPlugin::exportPath() const {
  const auto configuration = configurationDictionary();
  return configuration ? exportFolder(environment_, *configuration) : std::nullopt;
}

std::vector<std::string> EPGDorvaSelinManagerPlugin::configurationFilenames() const {
  return exportConfigurationNames(environment_, dataFolderPath_);
}

EPGError EPGDorvaSelinManagerPlugin::errorWithMessage(const std::string& message) const {
  return EPGError{longErrorDomain, EPGError::onlyCode, message};
}

// The item store and its file.

void EPGDorvaSelinManagerPlugin::removeEPGItemsWithUniqueIDs(const std::vector<std::string>& uniqueIDs) {
  if (const auto store = epgItems()) {
    for (const std::string& uniqueID : uniqueIDs) store->removeItem(uniqueID);
  }
  saveEPGItemsToFile();
}

void EPGDorvaSelinManagerPlugin::duplicateEPGItemWithUniqueID(const std::string& sourceID,
                                                              const std::string& targetID) {
  const auto store = epgItems();
  const auto source = store ? store->item(sourceID) : nullptr;
  if (!source) return;
  // "uniqueID" goes on naming the source: nothing finds an item by it, and editing the target sets it right.
  store->setItem(targetID, std::make_shared<MemoryItem>(source->values()));
  saveEPGItemsToFile();
}

void EPGDorvaSelinManagerPlugin::saveEPGItemsToFile() {
  if (busyWriting_) return;
  const auto store = epgItems();
  if (!store) return;
  try {
    detachSaveThread(store->snapshot());
  } catch (const std::exception& exception) {
    // The change is made and in the store; whoever made it has nothing to put right.
    logFailedSave(exception, ENOMEM);
  }
}

void EPGDorvaSelinManagerPlugin::detachSaveThread(const std::shared_ptr<const EPGItemStoreSnapshot>& snapshot) {
  // safeguard: threads that hold the object
  environment_.detachThread([self = shared_from_this(), snapshot] { self->saveEPGItemsToFileThread(*snapshot); });
}

void EPGDorvaSelinManagerPlugin::saveEPGItemsToFileThread(const EPGItemStoreSnapshot& snapshot) {
  busyWriting_ = true;
  try {
    std::optional<std::string> kept;
    if (unreadableStore_) kept = keepUnreadableStoreFile(environment_, storePath(), *unreadableStore_);
    const auto content = [&](ByteSink& file) { return writeItemStore(file, snapshot) ? 0 : EILSEQ; };
    const int error = replaceFile(environment_, storePath(), content);
    if (error != 0 && kept) putBackUnreadableStoreFile(environment_, *kept, storePath());
  } catch (const std::bad_alloc& exception) {
    // safeguard: clearing the mark after an exception
    logFailedSave(exception, ENOMEM);
  } catch (const std::exception& exception) {
    logFailedSave(exception, EIO);
  }
  busyWriting_ = false;
}

void EPGDorvaSelinManagerPlugin::logFailedSave(const std::exception& exception, int error) const noexcept {
  try {
    environment_.log("An error occured while trying to write the EPG items to disk (" + std::string(exception.what()) +
                     ")");
    environment_.fileReplaced(storePath(), error);
  } catch (const std::exception&) {
    // Memory is too short even for the line. The thread has to end all the same, and nothing else can be told.
    return;
  }
}

// The editing session.

void EPGDorvaSelinManagerPlugin::setEditedEPGUniqueIDs(const std::vector<std::string>& uniqueIDs) {
  const auto list = editedItems();
  if (list) {
    list->clear();
    const auto store = epgItems();
    for (const std::string& uniqueID : uniqueIDs) {
      const auto stored = store ? store->item(uniqueID) : nullptr;
      const auto workingCopy = stored ? std::make_shared<MemoryItem>(stored->values()) : std::make_shared<MemoryItem>();
      workingCopy->set(ZRLEPGDSUniqueIDKey, uniqueID);
      list->append(workingCopy);
    }
  }
  if (viewController_) viewController_->setItems(list);
}

View* EPGDorvaSelinManagerPlugin::editorView() {
  if (!viewController_) {
    // It is not given the list under edit: that reaches it with the next setEditedEPGUniqueIDs or revertEditing.
    viewController_ = makeViewController(editorNibName);
    viewController_->setDelegate(this);
  }
  return viewController_->view();
}

std::shared_ptr<EPGDorvaSelinViewController> EPGDorvaSelinManagerPlugin::makeViewController(
    const std::string& nibName) {
  return std::make_shared<EPGDorvaSelinViewController>(nibName, bundle_.get(), environment_);
}

ViewSize EPGDorvaSelinManagerPlugin::minimumEditorViewSize() const { return minimumSize; }

ViewSize EPGDorvaSelinManagerPlugin::maximumEditorViewSize() const { return maximumSize; }

bool EPGDorvaSelinManagerPlugin::commitEditing() {
  if (viewController_) viewController_->applyChanges();
  const auto list = editedItems();
  const auto store = epgItems();
  for (std::size_t i = 0; list && store && i < list->size(); ++i) {
    // The working copy itself goes in, not a copy of it: until new IDs are named, editor and store share it.
    const std::shared_ptr<EPGItem> workingCopy = list->at(i);
    const PropertyListDictionary values = workingCopy->values();
    if (const auto uniqueID = epg::stringValue(values, ZRLEPGDSUniqueIDKey)) {
      store->setItem(std::string(*uniqueID), workingCopy);
    }
  }
  saveEPGItemsToFile();
  return true;
}

void EPGDorvaSelinManagerPlugin::revertEditing() {
  if (viewController_) viewController_->setItems(editedItems());
}

// The day export.

void EPGDorvaSelinManagerPlugin::exportEvents(std::vector<EPGEvent> events, const std::string& configurationFilename) {
  if (!beginExport(configurationFilename)) return;
  try {
    // Handed over, not copied: on the thread there is nobody who could be told that memory ran out.
    const auto shared = std::make_shared<const std::vector<EPGEvent>>(std::move(events));
    environment_.detachThread([self = shared_from_this(), shared] { self->exportEventsThread(*shared); });
  } catch (const std::exception&) {
    failExport();
  }
}

bool EPGDorvaSelinManagerPlugin::beginExport(const std::string& configurationFilename) {
  // safeguard: one export at a time
  if (busyExporting_.exchange(true)) {
    const EPGError error{shortErrorDomain, EPGError::onlyCode, "Already Busy Exporting!"};
    reportExport(false, &error);
    return false;
  }
  try {
    auto configuration = std::make_shared<const PropertyListDictionary>(
        exportConfiguration(environment_, dataFolderPath_, configurationFilename));
    const std::lock_guard<std::mutex> lock(fieldsMutex_);
    configurationDictionary_.swap(configuration);
  } catch (const std::exception&) {
    failExport();
    return false;
  }
  cancelExport_ = false;
  return true;
}

void EPGDorvaSelinManagerPlugin::failExport() {
  // Whatever kept it from running: an export that was not refused is reported.
  reportExport(false, &exportFailure_);
  busyExporting_ = false;
}

void EPGDorvaSelinManagerPlugin::cancelExportEvents() { cancelExport_ = true; }

void EPGDorvaSelinManagerPlugin::exportEventsThread(const std::vector<EPGEvent>& events) {
  runExport([&] { return writeXMLFile(EventOrder::byStart(events), environment_.now()); });
}

void EPGDorvaSelinManagerPlugin::exportEventsThread(const std::function<std::vector<EPGEvent>()>& read) {
  runExport([&] {
    const std::vector<EPGEvent> events = read();
    return writeXMLFile(EventOrder::byStart(events), environment_.now());
  });
}

void EPGDorvaSelinManagerPlugin::runExport(const std::function<bool()>& write) {
  bool written = false;
  try {
    written = write();
  } catch (const std::exception&) {
    written = false;
  }
  // safeguard: the mark kept until the report is over
  reportExport(written, written ? nullptr : &exportFailure_);
  // Only now: a delegate that exports again from inside its report is refused.
  busyExporting_ = false;
}

void EPGDorvaSelinManagerPlugin::reportExport(bool succeeded, const EPGError* error) const {
  TelvarinManagerEPGPluginProtocol_Delegate* const delegate = delegate_;
  if (delegate && delegate->respondsToEPGExportEventCompleted()) delegate->epgExportEventCompleted(succeeded, error);
}

bool EPGDorvaSelinManagerPlugin::isDateEqualToDate(std::optional<Instant> first, std::optional<Instant> second) {
  return isDateEqualToDate(first, second, Environment::standard());
}

bool EPGDorvaSelinManagerPlugin::isDateEqualToDate(std::optional<Instant> first, std::optional<Instant> second,
                                                   Environment& environment) {
  return isSameCalendarDay(LocalCalendar(environment.localZone()), first, second);
}

// The day file.

std::shared_ptr<const EPGItemStore> EPGDorvaSelinManagerPlugin::items() const {
  const std::shared_ptr<EPGItemStore> store = epgItems();
  return store ? store : std::make_shared<ShardedItemStore>();
}

bool EPGDorvaSelinManagerPlugin::writeXMLFileWithEvents(const std::vector<EPGEvent>& events, Instant date) const {
  return writeXMLFile(EventOrder(events), date);
}

bool EPGDorvaSelinManagerPlugin::writeXMLFile(const EventOrder& events, Instant date) const {
  const LocalCalendar calendar(environment_.localZone());
  const std::string name = shortDateFormatter_.stringFromDate(calendar, date);
  const std::optional<std::string> folder = exportPath();
  // Without a folder the file would land wherever the host happens to have been started.
  if (!folder || folder->empty() || name.empty()) return false;
  const std::shared_ptr<const EPGItemStore> items = this->items();
  const auto content = [&](ByteSink& file) {
    const bool isWhole = writeDayFile(file, calendar, dorvaSelinDateFormatter_, *items, events, playbackHash());
    return isWhole ? 0 : EILSEQ;
  };
  return replaceFile(environment_, appendPathComponent(*folder, name + ".xml"), content) == 0;
}

std::string EPGDorvaSelinManagerPlugin::shortDateStringWithDate(Instant date) const {
  return shortDateFormatter_.stringFromDate(LocalCalendar(environment_.localZone()), date);
}

XMLElement EPGDorvaSelinManagerPlugin::dateXMLElementWithDate(std::optional<Instant> date) const {
  return epg::dateXMLElementWithDate(LocalCalendar(environment_.localZone()), date);
}

XMLElement EPGDorvaSelinManagerPlugin::timeXMLElementWithDate(std::optional<Instant> date) const {
  return epg::timeXMLElementWithDate(LocalCalendar(environment_.localZone()), date);
}

XMLElement EPGDorvaSelinManagerPlugin::tagsXMLElementWithTags(const PropertyList::Elements* tags) const {
  return epg::tagsXMLElementWithTags(tags);
}

std::optional<XMLElement> EPGDorvaSelinManagerPlugin::xmlEventWithDictionary(const EPGEvent& event) const {
  return epg::xmlEventWithDictionary(LocalCalendar(environment_.localZone()), *items(), event, playbackHash());
}

PlaybackIDHash EPGDorvaSelinManagerPlugin::playbackHash() const {
  return [this](const std::string& playbackUniqueID) { return hashOfPlaybackID(playbackUniqueID); };
}

std::size_t EPGDorvaSelinManagerPlugin::hashOfPlaybackID(const std::string& playbackUniqueID) const {
  return playbackIDHash(playbackUniqueID);
}

}  // namespace epg
