#include "tests/support/EditorViews.h"

namespace epg::test {

void JournalField::setStringValue(const std::string& text) {
  journal_.push_back(name_ + " text " + text);
  text_ = text;
}

void JournalField::setPlaceholderString(const std::optional<std::string>& placeholder) {
  journal_.push_back(name_ + " placeholder " + placeholder.value_or("none"));
  placeholder_ = placeholder;
}

std::optional<std::string> EditorViews::pathForResource(const std::string& name, const std::string& type) const {
  resourcesAsked.push_back(name + "." + type);
  return resourcesAsked.back() == "Tags.plist" ? catalogue : std::nullopt;
}

EditorOutlets EditorViews::loadInterface(const std::string& nibName, EPGDorvaSelinViewController& interfaceOwner) {
  interfacesLoaded.push_back(nibName);
  owner = &interfaceOwner;
  return connected;
}

}  // namespace epg::test
