#include "tests/support/Property.h"

#include <rapidcheck.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "tests/support/Drawing.h"
#include "tests/support/SimplerChoices.h"

// RapidCheck chooses seed and size of every case, looks for the simplest one that breaks the property, and reports.
// What a case draws is recorded here: one of RapidCheck's own draws takes microseconds, and a case makes hundreds.

namespace epg::test {

namespace {

using rc::detail::CaseDescription;
using rc::detail::CaseResult;
using rc::detail::Example;

/// Where the values of the case go that is run to be told.
thread_local Example* told = nullptr;

class BrokenProperty : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct Property {
  std::function<void()> body;
  std::size_t size;  ///< Of the case.
};

CaseResult resultOf(const Property& property, Drawing& drawing) {
  const CurrentDrawing scope(drawing);
  try {
    property.body();
  } catch (const BrokenProperty& broken) {
    return {CaseResult::Type::Failure, broken.what()};
  } catch (const std::exception& exception) {
    return {CaseResult::Type::Failure, std::string("An exception was thrown: ") + exception.what()};
  } catch (...) {
    return {CaseResult::Type::Failure, "Something was thrown that is no exception."};
  }
  return {CaseResult::Type::Success};
}

Example exampleOf(const Property& property, const Choices& choices) {
  Example example;
  told = &example;
  Drawing drawing(choices.numbers, property.size);
  resultOf(property, drawing);
  told = nullptr;
  std::ostringstream numbers;
  for (const std::uint64_t number : choices.numbers) numbers << number << ' ';
  example.emplace_back("drawn numbers", numbers.str());
  return example;
}

/// A case with its result, and where to begin with making it simpler.
class TriedCase {
 public:
  TriedCase(std::shared_ptr<const Property> property, Drawing drawing, std::size_t place = 0)
      : property_(std::move(property)), result_(resultOf(*property_, drawing)), place_(place) {
    // One that keeps the property will not be looked at again.
    if (result_.type == CaseResult::Type::Failure) choices_ = std::move(drawing.choices);
  }

  const Choices& choices() const { return choices_; }

  CaseDescription value() const {
    CaseDescription description;
    description.result = result_;
    if (result_.type == CaseResult::Type::Failure) {
      description.example = [property = property_, choices = choices_] { return exampleOf(*property, choices); };
    }
    return description;
  }

  rc::Seq<rc::Shrinkable<CaseDescription>> shrinks() const;

 private:
  std::shared_ptr<const Property> property_;
  CaseResult result_;
  Choices choices_;
  std::size_t place_;
};

/// The simpler cases of one that broke the property, tried as they are asked for. A change of the numbers may lead to
/// other draws and so to a case that is no simpler: such are passed over, or there might be no end.
class SimplerCases {
 public:
  SimplerCases(std::shared_ptr<const Property> property, const Choices& choices, std::size_t place)
      : property_(std::move(property)), numbers_(choices.numbers), simpler_(choices, place) {}

  rc::Maybe<rc::Shrinkable<CaseDescription>> operator()() {
    while (auto numbers = simpler_.next()) {
      TriedCase tried(property_, Drawing(*std::move(numbers), property_->size), simpler_.place());
      if (areSimpler(tried.choices().numbers, numbers_)) return rc::makeShrinkable<TriedCase>(std::move(tried));
    }
    return rc::Nothing;
  }

 private:
  std::shared_ptr<const Property> property_;
  std::vector<std::uint64_t> numbers_;
  SimplerChoices simpler_;
};

rc::Seq<rc::Shrinkable<CaseDescription>> TriedCase::shrinks() const {
  if (result_.type != CaseResult::Type::Failure) return {};
  return rc::makeSeq<SimplerCases>(property_, choices_, place_);
}

}  // namespace

void expectForCases(int cases, const std::function<void()>& property) {
  const ::testing::TestInfo& test = *::testing::UnitTest::GetInstance()->current_test_info();
  rc::detail::TestMetadata metadata;
  metadata.id = std::string(test.test_suite_name()) + "/" + test.name();
  metadata.description = test.name();
  rc::detail::TestParams params = rc::detail::configuration().testParams;
  const char* const given = std::getenv("RC_PARAMS");  // NOLINT(concurrency-mt-unsafe): nobody here sets it
  if (!given || !std::strstr(given, "max_success")) params.maxSuccess = cases;

  const rc::detail::Property triedCases = [&](rc::Random random, int size) {
    const auto sized = std::make_shared<const Property>(Property{property, static_cast<std::size_t>(size)});
    return rc::makeShrinkable<TriedCase>(sized, Drawing(random.next(), sized->size));
  };
  const rc::detail::TestResult result = rc::detail::checkProperty(triedCases, metadata, params);
  std::ostringstream message;
  rc::detail::printResultMessage(result, message);
  ASSERT_TRUE(result.is<rc::detail::SuccessResult>()) << message.str();
  EXPECT_EQ(result.get<rc::detail::SuccessResult>().numSuccess, params.maxSuccess);
}

void breakProperty(const char* expression, const char* file, int line) {
  std::ostringstream message;
  message << file << ':' << line << ":\n" << expression;
  throw BrokenProperty(message.str());
}

bool isTold() { return told != nullptr; }

void tellText(const char* name, std::string value) {
  if (told) told->emplace_back(name, std::move(value));
}

}  // namespace epg::test
