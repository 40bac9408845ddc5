#import "host/window/Playback.h"

#include <optional>
#include <string>

#include "host/window/PlaylistFile.h"
#import "host/window/Text.h"

namespace {

// The keys of an event in the protocol between host and plug-in.
NSString* const uniqueIDKey = @"eventEPGUniqueID";
NSString* const playbackIDKey = @"eventEPGPlaybackUniqueID";
NSString* const startKey = @"eventEPGStartDateTime";
NSString* const endKey = @"eventEPGEndDateTime";

NSString* stringOrNil(const std::optional<std::string>& text) { return text ? stringOf(*text) : nil; }

NSDate* dateOf(const std::optional<epg::Instant>& instant) {
  return instant ? [NSDate dateWithTimeIntervalSinceReferenceDate:instant->secondsSinceReferenceDate] : nil;
}

/// The ID of its entry stands in for the title of an event whose file has none.
NSString* titleOf(const epg::EPGEvent& event, const epg::EventDetails& details) {
  if (!details.title.empty()) {
    return stringOf(details.title);
  }
  return event.eventEPGUniqueID ? stringOf(*event.eventEPGUniqueID) : @"(no entry)";
}

Playback* playbackOf(const epg::EPGEvent& event, const epg::EventDetails& details, NSString* channel) {
  return [[[Playback alloc] initWithUniqueID:stringOrNil(event.eventEPGUniqueID)
                                  playbackID:stringOrNil(event.eventEPGPlaybackUniqueID)
                                       title:titleOf(event, details)
                                     channel:channel
                                       start:dateOf(event.eventEPGStartDateTime)
                                         end:dateOf(event.eventEPGEndDateTime)] autorelease];
}

}  // namespace

@implementation Playback

- (id)initWithUniqueID:(NSString*)uniqueID
            playbackID:(NSString*)playbackID
                 title:(NSString*)title
               channel:(NSString*)channel
                 start:(NSDate*)start
                   end:(NSDate*)end {
  self = [super init];
  if (self != nil) {
    _uniqueID = [uniqueID copy];
    _playbackID = [playbackID copy];
    _title = [title copy];
    _channel = [channel copy];
    _start = [start retain];
    _end = [end retain];
  }
  return self;
}

- (id)initWithUniqueID:(NSString*)uniqueID title:(NSString*)title copyOf:(Playback*)original {
  self = [self initWithUniqueID:uniqueID playbackID:nil title:title channel:[original channel] start:nil end:nil];
  if (self != nil) {
    _isCopy = YES;
  }
  return self;
}

- (void)dealloc {
  [_uniqueID release];
  [_playbackID release];
  [_title release];
  [_channel release];
  [_start release];
  [_end release];
  [super dealloc];
}

- (NSString*)uniqueID {
  return _uniqueID;
}

- (NSString*)title {
  return _title;
}

- (NSString*)channel {
  return _channel;
}

- (BOOL)isCopy {
  return _isCopy;
}

- (NSDate*)startDate {
  return _start;
}

- (NSComparisonResult)compareStart:(Playback*)playback {
  NSDate* other = [playback startDate];
  if (_start == nil || other == nil) {
    return _start == other ? NSOrderedSame : _start == nil ? NSOrderedDescending : NSOrderedAscending;
  }
  return [_start compare:other];
}

- (NSString*)startText {
  if (_start == nil) {
    return @"";
  }
  NSDateFormatter* formatter = [[[NSDateFormatter alloc] init] autorelease];
  [formatter setDateFormat:@"yyyy-MM-dd HH:mm"];
  return [formatter stringFromDate:_start];
}

- (NSDictionary*)event {
  NSMutableDictionary* event = [NSMutableDictionary dictionary];
  if (_uniqueID != nil) {
    [event setObject:_uniqueID forKey:uniqueIDKey];
  }
  if (_playbackID != nil) {
    [event setObject:_playbackID forKey:playbackIDKey];
  }
  if (_start != nil) {
    [event setObject:_start forKey:startKey];
  }
  if (_end != nil) {
    [event setObject:_end forKey:endKey];
  }
  return event;
}

- (BOOL)isOfAny:(NSSet*)uniqueIDs {
  return _uniqueID != nil && [uniqueIDs containsObject:_uniqueID] ? YES : NO;
}

- (BOOL)matches:(NSString*)searchText {
  if ([searchText length] == 0) {
    return YES;
  }
  NSString* all = [NSString
      stringWithFormat:@"%@\n%@\n%@\n%@", _title, _uniqueID != nil ? _uniqueID : @"", _channel, [self startText]];
  return [all rangeOfString:searchText options:NSCaseInsensitiveSearch].location != NSNotFound;
}

@end

NSArray* playbacksInFile(NSString* path, NSString** problem) {
  if ([path length] == 0) {
    *problem = @"no file of events was named (EventsFile)";
    return nil;
  }
  epg::Schedule schedule;
  std::string message;
  if (!epg::readPlaylistFile([path fileSystemRepresentation], &schedule, &message)) {
    *problem = stringOf(message);
    return nil;
  }
  NSMutableArray* playbacks = [NSMutableArray array];
  for (std::size_t index = 0; index < schedule.events.size(); ++index) {
    const epg::EventDetails& details = schedule.details[index];
    const auto named = schedule.channelNames.find(details.channel);
    NSString* channel = stringOf(named != schedule.channelNames.end() ? named->second : details.channel);
    [playbacks addObject:playbackOf(schedule.events[index], details, channel)];
  }
  return [playbacks sortedArrayUsingSelector:@selector(compareStart:)];
}
