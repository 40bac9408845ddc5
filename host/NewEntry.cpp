#include "host/NewEntry.h"

#include "host/LineText.h"
#include "host/Refusal.h"

namespace epg {

void refuseUnusableID(const std::string& id) {
  if (id.empty()) throw Refusal("an entry cannot be made under an empty EPG unique ID");
  if (!canBeStored(id)) {
    throw Refusal(escapedForLine(id) + ": an entry cannot be made under an ID with such control characters");
  }
}

}  // namespace epg
