#pragma once

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cstdlib>
#include <cstring>
#include <sstream>
#include <utility>

namespace epg::test {

/// Holds the property against this many random cases, and fails the test when it breaks or when fewer were tried.
/// RC_PARAMS in the environment goes before: "max_success=1000000" for a long run, "seed=…" to repeat one.
template <typename Property>
void expectForCases(int cases, Property&& property) {
  const ::testing::TestInfo& test = *::testing::UnitTest::GetInstance()->current_test_info();
  rc::detail::TestMetadata metadata;
  metadata.id = std::string(test.test_suite_name()) + "/" + test.name();
  metadata.description = test.name();
  rc::detail::TestParams params = rc::detail::configuration().testParams;
  const char* const given = std::getenv("RC_PARAMS");  // NOLINT(concurrency-mt-unsafe): nobody here sets it
  if (!given || !std::strstr(given, "max_success")) params.maxSuccess = cases;

  const rc::detail::TestResult result =
      rc::detail::checkProperty(rc::detail::toProperty(std::forward<Property>(property)), metadata, params);
  std::ostringstream message;
  rc::detail::printResultMessage(result, message);
  ASSERT_TRUE(result.is<rc::detail::SuccessResult>()) << message.str();
  EXPECT_EQ(result.get<rc::detail::SuccessResult>().numSuccess, params.maxSuccess);
}

}  // namespace epg::test
