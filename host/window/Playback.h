#pragma once

#import <Foundation/Foundation.h>

/// One line of the window's list: an event of the file, or a copy of an entry, which is not scheduled.
@interface Playback : NSObject {
 @private
  NSString* _uniqueID;
  NSString* _playbackID;
  NSString* _title;
  NSString* _channel;
  NSDate* _start;
  NSDate* _end;
  BOOL _isCopy;
}

/// Everything but the title and the channel may be nil.
- (id)initWithUniqueID:(NSString*)uniqueID
            playbackID:(NSString*)playbackID
                 title:(NSString*)title
               channel:(NSString*)channel
                 start:(NSDate*)start
                   end:(NSDate*)end;

/// A copy of an entry that the window made. It is not scheduled and not exported.
- (id)initWithUniqueID:(NSString*)uniqueID title:(NSString*)title copyOf:(Playback*)original;

/// Nil for an event that names no entry: it has no metadata and cannot be edited.
- (NSString*)uniqueID;
- (NSString*)title;
- (NSString*)channel;
- (BOOL)isCopy;
/// Nil for an event without a start and for a copy.
- (NSDate*)startDate;
/// Earlier starts first, those without one last.
- (NSComparisonResult)compareStart:(Playback*)playback;
/// Local time, empty without a start.
- (NSString*)startText;
/// The event for the plug-in's export, with the keys that the file has for it.
- (NSDictionary*)event;
/// Whether it is a playback, or the copy, of one of these entries.
- (BOOL)isOfAny:(NSSet*)uniqueIDs;
- (BOOL)matches:(NSString*)searchText;

@end

/// Playbacks of a guide or a list of events, earliest first. Nil when it is neither; `problem` then says why.
NSArray* playbacksInFile(NSString* path, NSString** problem);
