#pragma once

#include <string>

/// Where Apple documents that a call raises an exception and GNUstep lets it pass (nil objects and keys, characters
/// without an address, ranges beyond the end), the platform raises in the programs of these tests, too, when it is the
/// bundle that calls. GNUstep itself goes on as it is used to.
namespace epg::test {

/// To be called once, before the first test. At the end of all tests it fails when the bundle has made such a call.
void makePlatformStrict();

/// While it lives, the platform is as strict with the test's own calls; these are not held against the bundle.
class StrictWithTheTest {
 public:
  StrictWithTheTest();
  StrictWithTheTest(const StrictWithTheTest&) = delete;
  StrictWithTheTest& operator=(const StrictWithTheTest&) = delete;
  ~StrictWithTheTest();
};

}  // namespace epg::test
