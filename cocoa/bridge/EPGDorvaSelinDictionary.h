#pragma once

#import <Foundation/Foundation.h>

/// What the live dictionaries over the core share. A class of its own has `init`, which makes it empty, and the
/// operations that NSMutableDictionary leaves to its classes, with the two below in the enumerator's place.
///
/// Whatever looks at more than one entry (enumerating, comparing, copying, describing) sees the entries of one moment,
/// so other threads may change the dictionary meanwhile.
@interface EPGDorvaSelinDictionary : NSMutableDictionary
@end

@interface EPGDorvaSelinDictionary (OfItsClasses)
/// A dictionary of the platform's own with the entries of this moment, autoreleased.
- (NSDictionary*)entries;
/// The keys of this moment, autoreleased.
- (NSArray*)allKeys;
@end

namespace epg::cocoa {

/// One step of a fast enumeration over keys that are taken from the dictionary at the first step.
NSUInteger nextKeys(NSDictionary* dictionary, NSFastEnumerationState* state, id* buffer, NSUInteger length);

/// A dictionary of the platform's own, autoreleased, in which no live dictionary stands: descriptions look at those
/// more than once.
NSDictionary* withoutLiveDictionaries(NSDictionary* entries);

}  // namespace epg::cocoa
