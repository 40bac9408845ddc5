// A real volume without room, besides the faults that other tests inject: a memory file system of one megabyte.
// Mounting one takes rights that a user may not have; then the test says loudly that it tried nothing.

#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <string>

#include "platform/ByteSink.h"
#include "tests/support/PluginTest.h"

namespace epg::test {
namespace {

/// A mounted volume with room for several pieces of a file; `error` tells why there is none.
class SmallVolume {
 public:
  explicit SmallVolume(const std::string& path) : path_(path) {
#ifdef __linux__
    error = ::mount("tmpfs", path_.c_str(), "tmpfs", 0, "size=16m") == 0 ? 0 : errno;
#else
    error = ENOTSUP;
#endif
  }
  SmallVolume(const SmallVolume&) = delete;
  SmallVolume& operator=(const SmallVolume&) = delete;
  ~SmallVolume() {
#ifdef __linux__
    if (error == 0) ::umount2(path_.c_str(), MNT_DETACH);
#endif
  }

  void fill() const {
    std::ofstream file(path_ + "/filler", std::ios::binary);
    const std::string block(4096, 'x');
    while (file.write(block.data(), static_cast<std::streamsize>(block.size())) && file.flush()) {
    }
  }
  void makeRoom() const { ::unlink((path_ + "/filler").c_str()); }

  int error = 0;

 private:
  std::string path_;
};

class FullDiskTest : public PluginTest {};

TEST_F(FullDiskTest, KeepsTheOldStoreWholeAndSavesAgainOnceThereIsRoom) {
  const std::string volumePath = folder.makeFolder("volume");
  const SmallVolume volume(volumePath);
  if (volume.error != 0)
    GTEST_SKIP() << "NOT TRIED: no volume can be mounted here (" << std::strerror(volume.error) << ")";
  stop();
  dataFolder = volumePath;
  start();
  put("E1", {{ZRLEPGDSTitleKey, "Before"}});
  save();
  const std::string before = contentOf(storePath());
  volume.fill();

  put("E1", {{ZRLEPGDSTitleKey, "After"}, {ZRLEPGDSDescriptionKey, std::string(2 * ByteSink::pieceSize, 'd')}});
  save();
  EXPECT_EQ(before, contentOf(storePath()));
  EXPECT_EQ((std::vector<std::string>{"EPGItems.plist", "filler"}), namesIn(dataFolder));
  EXPECT_FALSE(plugin->busyWriting());
  EXPECT_TRUE(environment.logged().empty());

  volume.makeRoom();
  save();
  const PropertyListDictionary stored = storeFile();
  EXPECT_EQ("After", *stringValue(*stored.find("E1")->asDictionary(), ZRLEPGDSTitleKey));
  stop();
}

TEST_F(FullDiskTest, KeepsTheOldDayFileWholeAndReportsTheWriteError) {
  const std::string volumePath = folder.makeFolder("volume");
  const SmallVolume volume(volumePath);
  if (volume.error != 0)
    GTEST_SKIP() << "NOT TRIED: no volume can be mounted here (" << std::strerror(volume.error) << ")";
  configure("Small", {{ZRLEPGDSConfigExportPath, volumePath}});
  put("E1", {{ZRLEPGDSTitleKey, "Before"}});
  exportAndWait({eventAt("E1", 0)}, "Small");
  const std::string before = contentOf(volumePath + "/20120304.xml");
  volume.fill();

  put("E1", {{ZRLEPGDSTitleKey, "After"}, {ZRLEPGDSDescriptionKey, std::string(2 * ByteSink::pieceSize, 'd')}});
  exportAndWait({eventAt("E1", 0)}, "Small");
  EXPECT_EQ((std::vector<std::string>{"YES", writeErrorReport}), delegate.outcomes());
  EXPECT_EQ(before, contentOf(volumePath + "/20120304.xml"));
  EXPECT_EQ((std::vector<std::string>{"20120304.xml", "filler"}), namesIn(volumePath));

  volume.makeRoom();
  exportAndWait({eventAt("E1", 0)}, "Small");
  EXPECT_EQ("After", dayFileFrom(contentOf(volumePath + "/20120304.xml")).programs.front().title);
}

}  // namespace
}  // namespace epg::test
