#include "model/KeyConstants.h"

namespace epg {

const char* const ZRLEPGDSUniqueIDKey = "uniqueID";
const char* const ZRLEPGDSImageURLKey = "imageURL";
const char* const ZRLEPGDSTagsKey = "tags";
const char* const ZRLEPGDSTitleKey = "title";
const char* const ZRLEPGDSDescriptionKey = "description";

const char* const ZRLEPGUniqueIDKey = "eventEPGUniqueID";
const char* const ZRLEPGEventUniqueIDKey = "eventEPGPlaybackUniqueID";
const char* const ZRLEPGStartDateTimeKey = "eventEPGStartDateTime";
const char* const ZRLEPGEndDateTimeKey = "eventEPGEndDateTime";

const char* const ZRLEPGDSConfigSourceID = "SourceID";
const char* const ZRLEPGDSConfigExportPath = "exportPath";

}  // namespace epg
