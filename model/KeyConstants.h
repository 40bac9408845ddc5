#pragma once

namespace epg {

// The keys of EPG items, EPG events and export configurations. Process-wide; host and plug-in use the same.

extern const char* const ZRLEPGDSUniqueIDKey;     ///< EPG item: the entry's EPG unique ID.
extern const char* const ZRLEPGDSImageURLKey;     ///< EPG item: image URL, free text.
extern const char* const ZRLEPGDSTagsKey;         ///< EPG item: list of tag names.
extern const char* const ZRLEPGDSTitleKey;        ///< EPG item: title.
extern const char* const ZRLEPGDSDescriptionKey;  ///< EPG item: description.

extern const char* const ZRLEPGUniqueIDKey;       ///< EPG event: the EPG unique ID of the entry that it plays.
extern const char* const ZRLEPGEventUniqueIDKey;  ///< EPG event: the unique ID of this playback.
extern const char* const ZRLEPGStartDateTimeKey;  ///< EPG event: start.
extern const char* const ZRLEPGEndDateTimeKey;    ///< EPG event: end.

extern const char* const ZRLEPGDSConfigSourceID;    ///< Export configuration: source identifier; nothing reads it.
extern const char* const ZRLEPGDSConfigExportPath;  ///< Export configuration: folder of the day files.

}  // namespace epg
