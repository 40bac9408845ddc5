#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Environment.h"

namespace epg::cocoa {

/// The operating system as Foundation sees it where that differs: time zone, system log and home folders.
class CocoaEnvironment : public Environment {
 public:
  /// Never destroyed.
  static CocoaEnvironment& shared();

  /// Foundation's default time zone, in which the host's other times are shown.
  std::shared_ptr<const LocalZone> localZone() override;
  /// As the platform, leaves out names that are no UTF-8: they make strings that raise when they are used.
  int listFolder(const std::string& path, std::vector<std::string>* names) override;
  void log(const std::string& line) override;
  std::string homeFolder() override;
  std::optional<std::string> homeFolderOfUser(const std::string& user) override;
};

}  // namespace epg::cocoa
