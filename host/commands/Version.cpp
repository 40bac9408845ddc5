#include "host/commands/Version.h"

namespace epg {

const char* const programVersion = "dorvaselin " DORVASELIN_VERSION;
const char* const programVersionDate = DORVASELIN_VERSION_DATE;

}  // namespace epg
