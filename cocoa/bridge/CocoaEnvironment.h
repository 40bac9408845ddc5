#pragma once

#include <optional>
#include <string>

#include "platform/Environment.h"

namespace epg::cocoa {

/// The operating system as Foundation sees it where that differs: system log and home folders.
class CocoaEnvironment : public Environment {
 public:
  /// Never destroyed.
  static CocoaEnvironment& shared();

  void log(const std::string& line) override;
  std::string homeFolder() override;
  std::optional<std::string> homeFolderOfUser(const std::string& user) override;
};

}  // namespace epg::cocoa
