#pragma once

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

/// What the host implements to hear how an export ended. The plug-in asks for the operation before every call, so
/// a host may leave it out.
@protocol TelvarinManagerEPGPluginProtocol_Delegate <NSObject>
@optional
/// `error` is nil when the export succeeded. The report of an export comes on that export's own thread, the refusal
/// of one on the thread that asked for it.
- (void)epgExportEventCompleted:(BOOL)succeeded error:(NSError*)error;
@end

/// What the host drives a plug-in with. The host creates one object of the bundle's principal class and calls it on
/// its main thread; no operation waits for the disk.
@protocol TelvarinManagerEPGPluginProtocol

/// `bundle` is the plug-in's own; `dataFolderPath` the folder of its item store and export configurations.
- (id)initWithBundle:(NSBundle*)bundle dataFolderPath:(NSString*)dataFolderPath;
- (void)dealloc;

/// The delegate is not retained. A host that goes away sets nil first.
- (void)setDelegate:(id<TelvarinManagerEPGPluginProtocol_Delegate>)delegate;
- (id<TelvarinManagerEPGPluginProtocol_Delegate>)delegate;

/// The folder of the export last accepted; nil before the first, or where its configuration names none.
- (NSString*)exportPath;
- (NSArray*)configurationFilenames;

/// Strings, in the order in which the editor is to show the entries. What was edited but not committed is dropped.
- (void)setEditedEPGUniqueIDs:(NSArray*)uniqueIDs;
/// The same view every time, owned by the plug-in. It shows the entries once they are named (again) or reverted.
- (NSView*)editorView;
- (NSSize)minimumEditorViewSize;
- (NSSize)maximumEditorViewSize;
/// Always YES.
- (BOOL)commitEditing;
/// Texts go back to what the items hold; tag clicks stay, because they reach the items at once.
- (void)revertEditing;

- (void)removeEPGItemsWithUniqueIDs:(NSArray*)uniqueIDs;
- (void)duplicateEPGItemWithUniqueID:(NSString*)sourceUniqueID toItemWithUniqueID:(NSString*)targetUniqueID;

/// `events` holds dictionaries with the keys of EPGDorvaSelinKeyConstants.h. Refused while an export runs.
- (void)exportEvents:(NSArray*)events configurationFilename:(NSString*)configurationFilename;
/// A running export ends as if nothing had been asked.
- (void)cancelExportEvents;

+ (NSString*)pluginName;

@end
