#pragma once

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

#import "cocoa/TelvarinManagerEPGPluginProtocol.h"

struct EPGDorvaSelinManagerPluginParts;

/// The bundle's principal class. The operations of the protocol are for the host's main thread; each save and each
/// export runs on a thread of its own that keeps the object until it ends, so a host may drop it at any time.
///
/// What an object of the host's raises leaves the operation that the host called; on the threads it ends in the log or
/// in the report.
@interface EPGDorvaSelinManagerPlugin : NSObject <TelvarinManagerEPGPluginProtocol> {
 @private
  struct EPGDorvaSelinManagerPluginParts* _parts;
}

@property (atomic, assign) id<TelvarinManagerEPGPluginProtocol_Delegate> delegate;
/// The live item store: EPG unique ID to a mutable dictionary with the item's values. What is changed in it the
/// plug-in sees at once and saves with the next save.
/// Another dictionary that is set is used in place, also from the threads of saves and exports. Where its class is the
/// platform's own, the plug-in's uses take turns; one of a class of the host's is called without any lock of the
/// plug-in's and has to be safe by itself.
@property (atomic, retain) NSMutableDictionary* epgItems;
/// The live working copies of the items under edit: mutable dictionaries.
@property (atomic, retain) NSMutableArray* editedItems;

/// Always nil.
- (NSString*)stringValue;

/// Starts a save of the whole store; dropped while another one is writing.
- (void)saveEPGItemsToFile;
/// The save thread's work. The snapshot is a dictionary like the store.
- (void)saveEPGItemsToFileThread:(NSDictionary*)snapshot;

/// NO when the day file was not written, for any reason.
- (BOOL)writeXMLFileWithEvents:(NSArray*)events forDate:(NSDate*)date;
/// The export thread's work.
- (void)exportEventsThread:(NSArray*)events;

- (NSString*)shortDateStringWithDate:(NSDate*)date;
- (NSXMLElement*)dateXMLElementWithDate:(NSDate*)date;
- (NSXMLElement*)timeXMLElementWithDate:(NSDate*)date;
- (NSXMLElement*)tagsXMLElementWithTags:(NSArray*)tags;
/// Nil when the event has no EPG item.
- (NSXMLElement*)xmlEventWithDictionary:(NSDictionary*)event;

- (NSError*)errorWithMessage:(NSString*)message;

/// The same day of the user's calendar; two absent dates are equal.
+ (BOOL)isDate:(NSDate*)first equalToDate:(NSDate*)second;

@end
