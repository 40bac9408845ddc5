#include "export/XMLElement.h"

namespace epg {

void XMLElement::addChild(std::optional<XMLElement> child) {
  if (child) children.push_back(std::move(*child));
}

}  // namespace epg
