#import "cocoa/EPGDorvaSelinManagerPlugin.h"

#include <atomic>
#include <mutex>
#include <utility>

#import "cocoa/EPGDorvaSelinViewController.h"
#import "cocoa/EPGDorvaSelinViewControllerParts.h"
#import "cocoa/bridge/CocoaEnvironment.h"
#import "cocoa/bridge/EPGDorvaSelinItemStore.h"
#import "cocoa/bridge/ExceptionGuard.h"
#import "cocoa/bridge/FoundationItemList.h"
#import "cocoa/bridge/FoundationValues.h"
#import "cocoa/bridge/HostException.h"
#include "plugin/EPGDorvaSelinManagerPlugin.h"
#include "store/ItemStoreFile.h"

using epg::cocoa::calledByHost;
using epg::cocoa::fromString;
using epg::cocoa::optionalDate;
using epg::cocoa::toString;
using epg::cocoa::toXMLElement;

namespace {

/// Passes the core's report on to whoever is the host's delegate at that moment.
class DelegateCaller : public epg::TelvarinManagerEPGPluginProtocol_Delegate {
 public:
  void setDelegate(id delegate) { delegate_ = reinterpret_cast<void*>(delegate); }
  id delegate() const { return reinterpret_cast<id>(delegate_.load()); }

  void epgExportEventCompleted(bool succeeded, const epg::EPGError* error) override {
    const id current = delegate();
    if (![current respondsToSelector:@selector(epgExportEventCompleted:error:)]) return;
    NSError* const object = error != nullptr ? epg::cocoa::toError(*error) : nil;
    // The export is over, and on its thread there is nobody whom an exception would tell anything.
    NSException* const raised =
        epg::cocoa::exceptionRaisedBy([&] { [current epgExportEventCompleted:succeeded ? YES : NO error:object]; });
    if (raised != nil) NSLog(@"The delegate raised an exception when it was told of an export (%@)", raised);
  }

 private:
  std::atomic<void*> delegate_{nullptr};  ///< Not owned.
};

/// The core's plug-in with the platform's threads and view controller. Lives as long as the object it belongs to.
class PluginOfObject : public epg::EPGDorvaSelinManagerPlugin {
 public:
  PluginOfObject(::EPGDorvaSelinManagerPlugin* object, NSBundle* bundle, const std::string& dataFolderPath,
                 std::shared_ptr<epg::EPGItemStore> epgItems,
                 const std::optional<epg::Environment::FileInfo>& unreadableStore,
                 std::shared_ptr<epg::EPGItemList> editedItems)
      : epg::EPGDorvaSelinManagerPlugin(Private(), nullptr, dataFolderPath, epg::cocoa::CocoaEnvironment::shared(),
                                        std::move(epgItems), unreadableStore, std::move(editedItems)),
        object_(object),
        bundle_([bundle retain]) {}
  ~PluginOfObject() override {
    releaseViewController();
    [bundle_ release];
  }

  using epg::EPGDorvaSelinManagerPlugin::exportEvents;

  /// The events are read on the export's own thread, out of a list that the host no longer changes.
  void exportEvents(NSArray* events, const std::string& configurationFilename) {
    if (beginExport(configurationFilename)) detachThread(@selector(exportEventsThread:), events);
  }

  void exportEventsThread(NSArray* events) {
    epg::EPGDorvaSelinManagerPlugin::exportEventsThread([events] {
      std::vector<epg::EPGEvent> read;
      epg::cocoa::callHost([&] { read = epg::cocoa::fromEvents(events); });
      return read;
    });
  }

 protected:
  void detachSaveThread(const std::shared_ptr<const epg::EPGItemStoreSnapshot>& snapshot) override {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    detachThread(@selector(saveEPGItemsToFileThread:), epg::cocoa::objectOfSnapshot(snapshot));
    [pool drain];
  }

  std::shared_ptr<epg::EPGDorvaSelinViewController> makeViewController(const std::string& nibName) override {
    viewController_ = [[::EPGDorvaSelinViewController alloc] initWithNibName:toString(nibName) bundle:bundle_];
    [viewController_ setDelegate:object_];
    // Owned by the platform's view controller, which goes only with this object.
    return std::shared_ptr<epg::EPGDorvaSelinViewController>(std::shared_ptr<void>(),
                                                             &[viewController_ parts].controller);
  }

#ifdef __APPLE__
  std::size_t hashOfPlaybackID(const std::string& playbackUniqueID) const override {
    return [toString(playbackUniqueID) hash];
  }
#endif

 private:
  void detachThread(SEL selector, id argument) {
    const auto detach = [&] { [NSThread detachNewThreadSelector:selector toTarget:object_ withObject:argument]; };
    if (epg::cocoa::exceptionRaisedBy(detach) != nil) {
      // The system has no thread to give. Late is better than not at all.
      [object_ performSelector:selector withObject:argument];
    }
  }

  void releaseViewController() {
    if ([NSThread isMainThread]) {
      [viewController_ release];
    } else {
      // The last to hold the object was a thread of its own, where views must not go away. The main thread lets go in
      // this one's place: whichever of the two is faster, the last hold is never here.
      [viewController_ performSelectorOnMainThread:@selector(release) withObject:nil waitUntilDone:NO];
    }
  }

  ::EPGDorvaSelinManagerPlugin* object_;
  NSBundle* bundle_;
  ::EPGDorvaSelinViewController* viewController_ = nil;
};

/// A path that no file can have, for a host without a data folder: nothing is read and nothing is written.
const std::string noFolder(1, '\0');

}  // namespace

struct EPGDorvaSelinManagerPluginParts {
  EPGDorvaSelinManagerPluginParts(EPGDorvaSelinManagerPlugin* object, NSBundle* bundle, NSString* dataFolderPath) {
    const std::string folder = dataFolderPath != nil ? fromString(dataFolderPath) : noFolder;
    const epg::ItemStoreContents contents =
        epg::readItemStore(epg::cocoa::CocoaEnvironment::shared(), epg::itemStorePath(folder));
    const auto store = std::make_shared<epg::cocoa::BridgedItemStore>(contents.entries);
    epgItems = [epg::cocoa::objectOfStore(store) retain];
    plugin = std::make_shared<PluginOfObject>(object, bundle, folder, store, contents.unreadable,
                                              std::make_shared<epg::cocoa::FoundationItemList>([NSMutableArray array]));
    plugin->setDelegate(&delegateCaller);
  }
  ~EPGDorvaSelinManagerPluginParts() { [epgItems release]; }

  DelegateCaller delegateCaller;
  std::shared_ptr<PluginOfObject> plugin;
  std::mutex epgItemsMutex;  ///< Guards the reference below and the core's as one.
  NSMutableDictionary* epgItems = nil;
};

// Headers before those of 10.10 have no word for it.
#ifndef NS_DESIGNATED_INITIALIZER
#define NS_DESIGNATED_INITIALIZER
#endif

@interface EPGDorvaSelinManagerPlugin ()
- (id)initWithBundle:(NSBundle*)bundle dataFolderPath:(NSString*)dataFolderPath NS_DESIGNATED_INITIALIZER;
@end

@implementation EPGDorvaSelinManagerPlugin

+ (NSString*)pluginName {
  return calledByHost([] { return toString(epg::EPGDorvaSelinManagerPlugin::pluginName()); });
}

- (id)initWithBundle:(NSBundle*)bundle dataFolderPath:(NSString*)dataFolderPath {
  self = [super init];
  if (self != nil) {
    EPGDorvaSelinManagerPlugin* const object = self;
    _parts = calledByHost([&] { return new EPGDorvaSelinManagerPluginParts(object, bundle, dataFolderPath); });
  }
  return self;
}

- (id)init {
  return [self initWithBundle:nil dataFolderPath:nil];
}

- (void)dealloc {
  delete _parts;
  [super dealloc];
}

- (void)setDelegate:(id<TelvarinManagerEPGPluginProtocol_Delegate>)delegate {
  _parts->delegateCaller.setDelegate(delegate);
}

- (id<TelvarinManagerEPGPluginProtocol_Delegate>)delegate {
  return _parts->delegateCaller.delegate();
}

- (NSString*)exportPath {
  const auto& plugin = *_parts->plugin;
  return calledByHost([&] { return toString(plugin.exportPath()); });
}

- (NSArray*)configurationFilenames {
  const auto& plugin = *_parts->plugin;
  return calledByHost([&] { return epg::cocoa::toStrings(plugin.configurationFilenames()); });
}

- (void)setEditedEPGUniqueIDs:(NSArray*)uniqueIDs {
  auto& plugin = *_parts->plugin;
  calledByHost([&] { plugin.setEditedEPGUniqueIDs(epg::cocoa::fromStrings(uniqueIDs)); });
}

- (NSView*)editorView {
  auto& plugin = *_parts->plugin;
  epg::View* view = calledByHost([&] { return plugin.editorView(); });
  return view != nullptr ? static_cast<epg::cocoa::CocoaView*>(view)->view : nil;
}

- (NSSize)minimumEditorViewSize {
  const epg::ViewSize size = _parts->plugin->minimumEditorViewSize();
  return NSMakeSize(static_cast<CGFloat>(size.width), static_cast<CGFloat>(size.height));
}

- (NSSize)maximumEditorViewSize {
  const epg::ViewSize size = _parts->plugin->maximumEditorViewSize();
  return NSMakeSize(static_cast<CGFloat>(size.width), static_cast<CGFloat>(size.height));
}

- (BOOL)commitEditing {
  auto& plugin = *_parts->plugin;
  return calledByHost([&] { return plugin.commitEditing(); }) ? YES : NO;
}

- (void)revertEditing {
  auto& plugin = *_parts->plugin;
  calledByHost([&] { plugin.revertEditing(); });
}

- (void)removeEPGItemsWithUniqueIDs:(NSArray*)uniqueIDs {
  auto& plugin = *_parts->plugin;
  calledByHost([&] { plugin.removeEPGItemsWithUniqueIDs(epg::cocoa::fromStrings(uniqueIDs)); });
}

- (void)duplicateEPGItemWithUniqueID:(NSString*)sourceUniqueID toItemWithUniqueID:(NSString*)targetUniqueID {
  auto& plugin = *_parts->plugin;
  if (sourceUniqueID != nil && targetUniqueID != nil) {
    calledByHost([&] { plugin.duplicateEPGItemWithUniqueID(fromString(sourceUniqueID), fromString(targetUniqueID)); });
  }
}

- (void)exportEvents:(NSArray*)events configurationFilename:(NSString*)configurationFilename {
  auto& plugin = *_parts->plugin;
  // Before anything has begun, as a list of the host's may raise an exception.
  NSArray* copy = events != nil ? [[events copy] autorelease] : [NSArray array];
  calledByHost([&] { plugin.exportEvents(copy, fromString(configurationFilename)); });
}

- (void)cancelExportEvents {
  _parts->plugin->cancelExportEvents();
}

- (NSString*)stringValue {
  return toString(_parts->plugin->stringValue());
}

- (void)saveEPGItemsToFile {
  auto& plugin = *_parts->plugin;
  calledByHost([&] { plugin.saveEPGItemsToFile(); });
}

- (void)saveEPGItemsToFileThread:(NSDictionary*)snapshot {
  auto& plugin = *_parts->plugin;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  if (snapshot != nil) {
    calledByHost([&] { plugin.saveEPGItemsToFileThread(*epg::cocoa::snapshotOfObject(snapshot)); });
  }
  [pool drain];
}

- (BOOL)writeXMLFileWithEvents:(NSArray*)events forDate:(NSDate*)date {
  auto& plugin = *_parts->plugin;
  const std::optional<epg::Instant> instant = optionalDate(date);
  const auto write = [&] { return plugin.writeXMLFileWithEvents(epg::cocoa::fromEvents(events), *instant); };
  return instant && calledByHost(write) ? YES : NO;
}

- (void)exportEventsThread:(NSArray*)events {
  auto& plugin = *_parts->plugin;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  calledByHost([&] { plugin.exportEventsThread(events); });
  [pool drain];
}

- (NSString*)shortDateStringWithDate:(NSDate*)date {
  const std::optional<epg::Instant> instant = optionalDate(date);
  const auto& plugin = *_parts->plugin;
  return instant ? calledByHost([&] { return toString(plugin.shortDateStringWithDate(*instant)); }) : nil;
}

- (NSXMLElement*)dateXMLElementWithDate:(NSDate*)date {
  const auto& plugin = *_parts->plugin;
  return calledByHost([&] { return toXMLElement(plugin.dateXMLElementWithDate(optionalDate(date))); });
}

- (NSXMLElement*)timeXMLElementWithDate:(NSDate*)date {
  const auto& plugin = *_parts->plugin;
  return calledByHost([&] { return toXMLElement(plugin.timeXMLElementWithDate(optionalDate(date))); });
}

- (NSXMLElement*)tagsXMLElementWithTags:(NSArray*)tags {
  auto& plugin = *_parts->plugin;
  return calledByHost([&] {
    const epg::PropertyList list = epg::cocoa::fromObject(tags != nil ? tags : [NSArray array]);
    return toXMLElement(plugin.tagsXMLElementWithTags(list.asArray()));
  });
}

- (NSXMLElement*)xmlEventWithDictionary:(NSDictionary*)event {
  auto& plugin = *_parts->plugin;
  return calledByHost([&]() -> NSXMLElement* {
    const std::optional<epg::XMLElement> program = plugin.xmlEventWithDictionary(epg::cocoa::fromEvent(event));
    return program ? toXMLElement(*program) : nil;
  });
}

- (NSError*)errorWithMessage:(NSString*)message {
  const auto& plugin = *_parts->plugin;
  return calledByHost([&] { return epg::cocoa::toError(plugin.errorWithMessage(fromString(message))); });
}

- (NSMutableDictionary*)epgItems {
  const std::lock_guard<std::mutex> lock(_parts->epgItemsMutex);
  return [[_parts->epgItems retain] autorelease];
}

- (void)setEpgItems:(NSMutableDictionary*)epgItems {
  const std::shared_ptr<epg::EPGItemStore> store = calledByHost([&] { return epg::cocoa::storeOfObject(epgItems); });
  const std::lock_guard<std::mutex> lock(_parts->epgItemsMutex);
  [_parts->epgItems autorelease];
  _parts->epgItems = [epgItems retain];
  _parts->plugin->setEpgItems(store);
}

- (NSMutableArray*)editedItems {
  const std::shared_ptr<epg::EPGItemList> list = _parts->plugin->editedItems();
  return list != nullptr ? static_cast<epg::cocoa::FoundationItemList*>(list.get())->array() : nil;
}

- (void)setEditedItems:(NSMutableArray*)editedItems {
  auto& plugin = *_parts->plugin;
  calledByHost([&] {
    plugin.setEditedItems(editedItems != nil ? std::make_shared<epg::cocoa::FoundationItemList>(editedItems) : nullptr);
  });
}

+ (BOOL)isDate:(NSDate*)first equalToDate:(NSDate*)second {
  const auto isEqual = [&] {
    return epg::EPGDorvaSelinManagerPlugin::isDateEqualToDate(optionalDate(first), optionalDate(second),
                                                              epg::cocoa::CocoaEnvironment::shared());
  };
  return calledByHost(isEqual) ? YES : NO;
}

@end
