#pragma once

#include <string>
#include <vector>

#include "tests/support/NaiveEditor.h"

namespace epg::test {

/// Few names and texts, so that random items agree and differ often; among them what is easily taken for another.
std::string tagName();
std::string fieldText();

NaiveItem naiveItemOfAnyKind();

std::vector<std::string> tagCatalogueWithRepeats();

}  // namespace epg::test
