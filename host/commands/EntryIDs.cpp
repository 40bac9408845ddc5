#include "host/commands/EntryIDs.h"

#include <unordered_set>

#include "host/terminal/LineText.h"
#include "host/terminal/Refusal.h"
#include "model/EPGItemStore.h"
#include "xml/XMLText.h"

namespace epg {

std::string noItemMessage(const EPGItemStore& store, const std::string& id) {
  if (!store.snapshot()->find(id)) return escapedForLine(id) + ": no such entry";
  return "the store holds something under " + escapedForLine(id) +
         " that is no entry; it is left as it is (EPGItems.plist)";
}

std::vector<std::string> idsWithoutItem(const EPGItemStore& store, const std::vector<std::string>& ids) {
  std::vector<std::string> without;
  std::unordered_set<std::string> seen;
  for (const std::string& id : ids) {
    if (!store.item(id) && seen.insert(id).second) without.push_back(id);
  }
  return without;
}

void refuseUnsavableID(const std::string& id) {
  if (isCarriedByXML(id)) return;
  throw Refusal(escapedForLine(id) + ": an entry cannot be saved under an ID with such control characters");
}

void refuseUnusableID(const EPGItemStore& store, const std::string& id) {
  if (id.empty()) throw Refusal("an entry cannot be made under an empty EPG unique ID");
  if (store.snapshot()->find(id)) throw Refusal(noItemMessage(store, id));
}

}  // namespace epg
