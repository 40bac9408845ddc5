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
#include "plist/PropertyListFile.h"

namespace epg {

namespace {

const char* const storeFilename = "EPGItems.plist";
const char* const editorNibName = "EPGDorvaSelinEditor";
constexpr ViewSize minimumSize{300, 200};
constexpr ViewSize maximumSize{5000, 5000};

/// The store as the file holds it, empty when the file cannot be read.
std::shared_ptr<EPGItemStore> loadedStore(Environment& environment, const std::string& path) {
  const auto content = readPropertyListDictionary(environment, path);
  return content ? std::make_shared<EPGItemStore>(*content) : std::make_shared<EPGItemStore>();
}

}  // namespace

std::string EPGDorvaSelinManagerPlugin::pluginName() { return "EPG DorvaSelin"; }

std::shared_ptr<EPGDorvaSelinManagerPlugin> EPGDorvaSelinManagerPlugin::initWithBundle(
    std::shared_ptr<Bundle> bundle, const std::string& dataFolderPath, Environment& environment) {
  return std::make_shared<EPGDorvaSelinManagerPlugin>(Private(), std::move(bundle), dataFolderPath, environment);
}

std::shared_ptr<EPGDorvaSelinManagerPlugin> EPGDorvaSelinManagerPlugin::initWithBundle(
    std::shared_ptr<Bundle> bundle, const std::string& dataFolderPath) {
  return initWithBundle(std::move(bundle), dataFolderPath, Environment::standard());
}

EPGDorvaSelinManagerPlugin::EPGDorvaSelinManagerPlugin(Private /*key*/, std::shared_ptr<Bundle> bundle,
                                                       const std::string& dataFolderPath, Environment& environment)
    : environment_(environment),
      bundle_(std::move(bundle)),
      dataFolderPath_(dataFolderPath),
      epgItems_(loadedStore(environment, storePath())),
      editedItems_(std::make_shared<EPGItemList>()),
      shortDateFormatter_("yyyyMMdd"),
      dorvaSelinDateFormatter_("dd-MM-yyyy"),
      exportFailure_(errorWithMessage("EPG XML File Write Error")) {}

EPGDorvaSelinManagerPlugin::~EPGDorvaSelinManagerPlugin() = default;

std::string EPGDorvaSelinManagerPlugin::storePath() const {
  return appendPathComponent(dataFolderPath_, storeFilename);
}

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
  store->setItem(targetID, source->mutableCopy());
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

void EPGDorvaSelinManagerPlugin::detachSaveThread(EPGItemStoreSnapshot snapshot) {
  // Shared, because what starts the thread copies what it is to run.
  const auto shared = std::make_shared<const EPGItemStoreSnapshot>(std::move(snapshot));
  // safeguard: threads that hold the object
  environment_.detachThread([self = shared_from_this(), shared] { self->saveEPGItemsToFileThread(*shared); });
}

void EPGDorvaSelinManagerPlugin::saveEPGItemsToFileThread(const EPGItemStoreSnapshot& snapshot) {
  busyWriting_ = true;
  try {
    replaceFile(environment_, storePath(), [&](ByteSink& file) { return writeStore(file, snapshot) ? 0 : EILSEQ; });
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
      const auto workingCopy = stored ? stored->mutableCopy() : std::make_shared<EPGItem>();
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
  // safeguard: one export at a time
  if (busyExporting_.exchange(true)) {
    const EPGError error{shortErrorDomain, EPGError::onlyCode, "Already Busy Exporting!"};
    reportExport(false, &error);
    return;
  }
  try {
    auto configuration = std::make_shared<const PropertyListDictionary>(
        exportConfiguration(environment_, dataFolderPath_, configurationFilename));
    {
      const std::lock_guard<std::mutex> lock(fieldsMutex_);
      configurationDictionary_.swap(configuration);
    }
    cancelExport_ = false;
    detachExportThread(std::move(events));
  } catch (const std::exception&) {
    // Whatever kept it from starting: an export that was not refused is reported.
    reportExport(false, &exportFailure_);
    busyExporting_ = false;
  }
}

void EPGDorvaSelinManagerPlugin::detachExportThread(std::vector<EPGEvent> events) {
  // Handed over, not copied: on the thread there is nobody who could be told that memory ran out.
  const auto shared = std::make_shared<std::vector<EPGEvent>>(std::move(events));
  environment_.detachThread([self = shared_from_this(), shared] { self->exportEventsThread(std::move(*shared)); });
}

void EPGDorvaSelinManagerPlugin::cancelExportEvents() { cancelExport_ = true; }

void EPGDorvaSelinManagerPlugin::exportEventsThread(std::vector<EPGEvent> events) {
  exportEventsRead([&events] { return std::move(events); });
}

void EPGDorvaSelinManagerPlugin::exportEventsRead(const std::function<std::vector<EPGEvent>()>& read) {
  bool written = false;
  try {
    const std::vector<EPGEvent> events = read();
    written = writeXMLFile(EventOrder::byStart(events), environment_.now());
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
  return isSameCalendarDay(first, second);
}

// The day file.

EPGItemLookup EPGDorvaSelinManagerPlugin::itemLookup() const {
  return [store = epgItems()](const std::string& uniqueID) -> std::optional<PropertyListDictionary> {
    const auto item = store ? store->item(uniqueID) : nullptr;
    if (!item) return std::nullopt;
    return item->values();
  };
}

bool EPGDorvaSelinManagerPlugin::writeXMLFileWithEvents(const std::vector<EPGEvent>& events, Instant date) const {
  return writeXMLFile(EventOrder(events), date);
}

bool EPGDorvaSelinManagerPlugin::writeXMLFile(const EventOrder& events, Instant date) const {
  const std::string name = shortDateStringWithDate(date);
  const std::optional<std::string> folder = exportPath();
  // Without a folder the file would land wherever the host happens to have been started.
  if (!folder || folder->empty() || name.empty()) return false;
  const auto itemsAhead = [store = epgItems()](const std::vector<const std::string*>& uniqueIDs) {
    if (store) store->fetchAhead(uniqueIDs);
  };
  const auto content = [&](ByteSink& file) {
    const bool isWhole =
        writeDayFile(file, LocalCalendar(), dorvaSelinDateFormatter_, itemLookup(), events, playbackHash(), itemsAhead);
    return isWhole ? 0 : EILSEQ;
  };
  return replaceFile(environment_, appendPathComponent(*folder, name + ".xml"), content) == 0;
}

std::string EPGDorvaSelinManagerPlugin::shortDateStringWithDate(Instant date) const {
  return shortDateFormatter_.stringFromDate(date);
}

XMLElement EPGDorvaSelinManagerPlugin::dateXMLElementWithDate(std::optional<Instant> date) const {
  return epg::dateXMLElementWithDate(LocalCalendar(), date);
}

XMLElement EPGDorvaSelinManagerPlugin::timeXMLElementWithDate(std::optional<Instant> date) const {
  return epg::timeXMLElementWithDate(LocalCalendar(), date);
}

XMLElement EPGDorvaSelinManagerPlugin::tagsXMLElementWithTags(const PropertyList::Elements* tags) const {
  return epg::tagsXMLElementWithTags(tags);
}

std::optional<XMLElement> EPGDorvaSelinManagerPlugin::xmlEventWithDictionary(const EPGEvent& event) const {
  return epg::xmlEventWithDictionary(LocalCalendar(), itemLookup(), event, playbackHash());
}

PlaybackIDHash EPGDorvaSelinManagerPlugin::playbackHash() const {
  return [this](const std::string& playbackUniqueID) { return hashOfPlaybackID(playbackUniqueID); };
}

std::size_t EPGDorvaSelinManagerPlugin::hashOfPlaybackID(const std::string& playbackUniqueID) const {
  return playbackIDHash(playbackUniqueID);
}

}  // namespace epg
