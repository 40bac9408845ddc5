#pragma once

#import <Foundation/Foundation.h>

// The keys of EPG items, EPG events and export configurations, exported by the bundle.

#ifdef __cplusplus
extern "C" {
#endif

extern NSString* const ZRLEPGDSUniqueIDKey;     ///< EPG item: the entry's EPG unique ID (string).
extern NSString* const ZRLEPGDSImageURLKey;     ///< EPG item: image URL (string).
extern NSString* const ZRLEPGDSTagsKey;         ///< EPG item: tag names (array of strings).
extern NSString* const ZRLEPGDSTitleKey;        ///< EPG item: title (string).
extern NSString* const ZRLEPGDSDescriptionKey;  ///< EPG item: description (string).

extern NSString* const ZRLEPGUniqueIDKey;       ///< EPG event: EPG unique ID of the entry that it plays (string).
extern NSString* const ZRLEPGEventUniqueIDKey;  ///< EPG event: unique ID of this playback (string).
extern NSString* const ZRLEPGStartDateTimeKey;  ///< EPG event: start (NSDate).
extern NSString* const ZRLEPGEndDateTimeKey;    ///< EPG event: end (NSDate).

extern NSString* const ZRLEPGDSConfigSourceID;    ///< Export configuration: source identifier; nothing reads it.
extern NSString* const ZRLEPGDSConfigExportPath;  ///< Export configuration: folder of the day files (string).

#ifdef __cplusplus
}
#endif
