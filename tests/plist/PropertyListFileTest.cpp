#include "plist/PropertyListFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <optional>
#include <string>

#include "platform/AtomicFile.h"
#include "tests/plist/BinaryPropertyListBuilder.h"
#include "tests/plist/PropertyListPrinting.h"
#include "tests/support/FaultyEnvironment.h"
#include "tests/support/TemporaryFolder.h"

namespace epg::test {
namespace {

class PropertyListOnDisk : public ::testing::Test {
 protected:
  std::optional<PropertyListDictionary> read() { return readPropertyListDictionary(environment, path, &problem); }

  /// Why the content cannot be read as a dictionary.
  std::string problemWith(const std::string& content) {
    writeFile(path, content);
    EXPECT_FALSE(read());
    EXPECT_FALSE(readPropertyListDictionary(environment, path));
    return problem;
  }

  TemporaryFolder folder;
  std::string path = folder.file("list.plist");
  FaultyEnvironment environment;
  std::string problem;
};

TEST_F(PropertyListOnDisk, IsReadAsItWasWritten) {
  const PropertyListDictionary dictionary({{"a", "é"}, {"b", arrayOf({PropertyList::fromInteger(-1)})}});
  ASSERT_EQ(replaceFile(environment, path, propertyListXML(PropertyList(dictionary)).value_or("")), 0);
  EXPECT_EQ(read(), dictionary);
}

TEST_F(PropertyListOnDisk, MayBeBinary) {
  BinaryPropertyListBuilder builder;
  builder.add(builder.dictionary({1}, {1}));
  builder.add(BinaryPropertyListBuilder::ascii("a"));
  writeFile(path, builder.file());
  EXPECT_EQ(read(), *dictionaryOf({{"a", "a"}}).asDictionary());
}

TEST_F(PropertyListOnDisk, WithAnotherTopLevelIsRefused) {
  EXPECT_EQ(problemWith("<plist><array/></plist>"), "the top level is no dictionary");
}

TEST_F(PropertyListOnDisk, ThatIsNoneIsRefusedWithThePlace) {
  EXPECT_EQ(problemWith("<plist>\n<text/></plist>"), "line 2, column 1: <text> is no property-list value");
  EXPECT_EQ(problemWith("bplist00"), "byte 9: the file is cut off");
  EXPECT_EQ(problemWith(""), "line 1, column 1: no XML element in the file");
}

TEST_F(PropertyListOnDisk, ThatIsMissingIsRefusedWithTheSystemsReason) {
  EXPECT_FALSE(read());
  EXPECT_EQ(problem, std::strerror(ENOENT));
}

TEST_F(PropertyListOnDisk, WithAFolderOrPipeInItsPlaceIsRefused) {
  ASSERT_EQ(::mkdir(path.c_str(), 0755), 0);
  EXPECT_FALSE(read());
  path = folder.file("pipe");
  ASSERT_EQ(::mkfifo(path.c_str(), 0644), 0);
  EXPECT_FALSE(read());
}

TEST_F(PropertyListOnDisk, ThatTheDiskFailsToReadIsRefused) {
  writeFile(path, "<plist><dict/></plist>");
  environment.failEvery("readFile", EIO);
  EXPECT_FALSE(read());
  EXPECT_EQ(problem, std::strerror(EIO));
}

}  // namespace
}  // namespace epg::test
