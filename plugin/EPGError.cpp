#include "plugin/EPGError.h"

namespace epg {

const char* const shortErrorDomain = "tv.dorvaselin";
const char* const longErrorDomain = "tv.dorvaselin.TelvarinManager.EPG";

}  // namespace epg
