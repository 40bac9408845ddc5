// Whoever adds a text value to an item is told here where it is still missing.

#include "model/EPGItemTexts.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "model/KeyConstants.h"

namespace epg::test {
namespace {

std::string projectFile(const std::string& name) {
  std::ifstream file(EPG_PROJECT_FOLDER "/" + name);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

bool fileHolds(const std::string& name, const std::string& text) {
  return projectFile(name).find(text) != std::string::npos;
}

/// "imageURLTextField" for "imageURL".
std::string outletOf(const EPGItemText& text) { return std::string(text.key) + "TextField"; }

TEST(EPGItemTextsTest, HaveTheKeysThatHostAndPluginShare) {
  std::set<std::string> keys;
  for (const EPGItemText& text : epgItemTexts) EXPECT_TRUE(keys.insert(std::string(text.key)).second) << text.key;
  for (const char* const key : {ZRLEPGDSTitleKey, ZRLEPGDSDescriptionKey, ZRLEPGDSImageURLKey}) {
    ASSERT_EQ(keys.count(key), 1U) << key;
    EXPECT_EQ(epgItemTexts[epgItemTextAt(key)].key, key);
  }
  EXPECT_EQ(epgItemTextAt("unknown"), epgItemTexts.size());
}

TEST(EPGItemTextsTest, EachHasAFieldInTheEditor) {
  for (const EPGItemText& text : epgItemTexts) {
    const std::string refresh = "updateTextField(epgItemTextAt(\"" + std::string(text.key) + "\"))";
    EXPECT_TRUE(fileHolds("resources/EPGDorvaSelinEditor.xib", "property=\"" + outletOf(text) + "\"")) << text.key;
    EXPECT_TRUE(fileHolds("cocoa/EPGDorvaSelinViewController.h", "NSTextField* " + outletOf(text) + ";")) << text.key;
    EXPECT_TRUE(fileHolds("editor/EPGDorvaSelinViewController.cpp", refresh)) << text.key;
  }
}

TEST(EPGItemTextsTest, EachStandsInTheGrammarAndInTheDocuments) {
  const std::string grammar = projectFile("docs/day-file.rng");
  std::size_t before = 0;
  for (const EPGItemText& text : epgItemTexts) {
    const std::string element(text.element);
    const std::size_t at = grammar.find("<element name=\"" + element + "\">");
    ASSERT_NE(at, std::string::npos) << element;
    EXPECT_GT(at, before) << element << " is out of its order";
    before = at;
    EXPECT_TRUE(fileHolds("docs/formats.md", "<" + element + ">")) << element;
    EXPECT_TRUE(fileHolds("docs/formats.md", "| `" + std::string(text.key) + "` |")) << text.key;
  }
}

}  // namespace
}  // namespace epg::test
