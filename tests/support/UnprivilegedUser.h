#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

namespace epg::test {

/// Lets the process act as a user without special rights for as long as this lives: root may write everywhere, and
/// would see no permission refused. Does nothing where the tests do not run as root.
class UnprivilegedUser {
 public:
  UnprivilegedUser() {
    if (isRoot_) {
      EXPECT_EQ(0, ::seteuid(nobody)) << "root cannot become another user here";
    }
  }
  UnprivilegedUser(const UnprivilegedUser&) = delete;
  UnprivilegedUser& operator=(const UnprivilegedUser&) = delete;
  ~UnprivilegedUser() {
    if (isRoot_) {
      EXPECT_EQ(0, ::seteuid(0));
    }
  }

 private:
  static constexpr uid_t nobody = 65534;
  const bool isRoot_ = ::geteuid() == 0;
};

}  // namespace epg::test
