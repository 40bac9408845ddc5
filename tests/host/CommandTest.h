#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/commands/CommandContext.h"
#include "host/commands/ReportingEnvironment.h"
#include "plist/PropertyList.h"
#include "store/ItemStoreFile.h"
#include "tests/support/TemporaryFolder.h"

namespace epg::test {

struct CommandResult {
  int status = 0;
  std::string output;    ///< Standard output.
  std::string messages;  ///< Standard error.
};

/// Runs command lines over a data folder and a tag catalogue (Live, Repeat, News, News Magazine, Sport) of the test's
/// own.
class CommandTest : public testing::Test {
 protected:
  using MakeEnvironment = std::function<std::unique_ptr<ReportingEnvironment>(Messages&)>;

  CommandTest();

  CommandResult run(const std::vector<std::string>& arguments, const std::string& input = {});
  /// The same, failing the test unless the command is done.
  CommandResult runWell(const std::vector<std::string>& arguments, const std::string& input = {});

  std::string file(const std::string& name) const { return folder_.file(name); }
  /// Writes a file beside the data folder and gives its path.
  std::string write(const std::string& name, const std::string& content) const;
  /// Writes a guide that holds the given XML inside its <tv> element.
  std::string writeGuide(const std::string& elements) const;
  /// Makes the data folder with an item store of these entries.
  void writeItemStore(const PropertyListDictionary& entries) const;
  PropertyListDictionary store() const;
  std::string storePath() const { return dataFolder() + "/EPGItems.plist"; }
  std::string dataFolder() const { return file("data"); }
  /// Makes an export configuration that writes into a new folder, whose path it gives.
  std::string configureExport(const std::string& name) const;

  /// What the commands run in from now on instead of the real thing.
  void useEnvironment(MakeEnvironment make) { makeEnvironment_ = std::move(make); }
  void useResourceFolder(const std::string& path) { resourceFolder_ = path; }

 private:
  TemporaryFolder folder_;
  std::string resourceFolder_;
  MakeEnvironment makeEnvironment_;
};

/// An item as the store's file holds it.
PropertyListDictionary item(const std::string& uniqueID, std::vector<PropertyListDictionary::Entry> entries);
PropertyListDictionary storeOf(const std::vector<PropertyListDictionary>& items);
PropertyList names(const std::vector<std::string>& texts);

std::vector<std::string> linesOf(const std::string& text);

}  // namespace epg::test
