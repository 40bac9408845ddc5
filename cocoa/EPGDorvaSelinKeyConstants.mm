#import "cocoa/EPGDorvaSelinKeyConstants.h"

// Hidden like everything else in the bundle if this did not say otherwise.
#pragma GCC visibility push(default)

NSString* const ZRLEPGDSUniqueIDKey = @"uniqueID";
NSString* const ZRLEPGDSImageURLKey = @"imageURL";
NSString* const ZRLEPGDSTagsKey = @"tags";
NSString* const ZRLEPGDSTitleKey = @"title";
NSString* const ZRLEPGDSDescriptionKey = @"description";

NSString* const ZRLEPGUniqueIDKey = @"eventEPGUniqueID";
NSString* const ZRLEPGEventUniqueIDKey = @"eventEPGPlaybackUniqueID";
NSString* const ZRLEPGStartDateTimeKey = @"eventEPGStartDateTime";
NSString* const ZRLEPGEndDateTimeKey = @"eventEPGEndDateTime";

NSString* const ZRLEPGDSConfigSourceID = @"SourceID";
NSString* const ZRLEPGDSConfigExportPath = @"exportPath";

#pragma GCC visibility pop
