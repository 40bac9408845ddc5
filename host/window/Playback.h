#pragma once

#import <Foundation/Foundation.h>

/// One line of the window's list: a scheduled playback of an entry, or an entry without one.
@interface Playback : NSObject {
 @private
  NSString* _uniqueID;
  NSString* _playbackID;
  NSString* _title;
  NSString* _channel;
  NSDate* _start;
  NSDate* _end;
}

/// `playbackID`, `start` and `end` may be nil.
- (id)initWithUniqueID:(NSString*)uniqueID
            playbackID:(NSString*)playbackID
                 title:(NSString*)title
               channel:(NSString*)channel
                 start:(NSDate*)start
                   end:(NSDate*)end;

- (NSString*)uniqueID;
- (NSString*)title;
- (NSString*)channel;
/// Nil for an entry without a playback.
- (NSDate*)startDate;
/// Local time, empty for an entry without a playback.
- (NSString*)startText;
/// The event as the plug-in exports it.
- (NSDictionary*)event;
- (BOOL)matches:(NSString*)searchText;

@end

/// Playbacks of a guide or a list of events, earliest first. Nil when it is neither; `problem` then says why.
NSArray* playbacksInFile(NSString* path, NSString** problem);
