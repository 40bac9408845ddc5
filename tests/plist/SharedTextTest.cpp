#include "plist/SharedText.h"

#include <gtest/gtest.h>

#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace epg {
namespace {

TEST(SharedText, HoldsAnyBytes) {
  const std::string bytes("a\0b\xFF", 4);
  EXPECT_EQ(SharedText(bytes).view(), bytes);
  EXPECT_EQ(std::string(SharedText(bytes)), bytes);
}

TEST(SharedText, IsEmptyAtFirst) {
  EXPECT_TRUE(SharedText().empty());
  EXPECT_EQ(SharedText(), SharedText(""));
  EXPECT_EQ(SharedText().view(), "");
}

TEST(SharedText, CopiesShareTheBytesAndOutliveTheOriginal) {
  SharedText copy;
  {
    const SharedText original("A text that is longer than any string keeps inside itself");
    copy = original;
    EXPECT_EQ(copy.view().data(), original.view().data());
  }
  EXPECT_EQ(copy, "A text that is longer than any string keeps inside itself");
}

TEST(SharedText, IsComparedByItsBytes) {
  EXPECT_EQ(SharedText("ab"), SharedText(std::string("ab")));
  EXPECT_NE(SharedText("ab"), SharedText("ac"));
  EXPECT_LT(SharedText("Z"), SharedText("a"));
  EXPECT_LT(SharedText("a"), SharedText("\xC3\xA4"));
  EXPECT_TRUE(SharedText("ab") == std::string("ab") && "ab" == SharedText("ab"));
  EXPECT_TRUE(SharedText("ab") != "abc" && std::string("a") != SharedText("ab"));
}

TEST(SharedText, CanBeCopiedAndDroppedOnManyThreadsAtOnce) {
  SharedText text("shared by all");
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([mine = text] {
      for (int round = 0; round < 10000; ++round) {
        const SharedText copy = mine;  // NOLINT(performance-unnecessary-copy-initialization): what is tested
        EXPECT_EQ(copy.size(), 13U);
      }
    });
  }
  text = SharedText();
  for (std::thread& thread : threads) thread.join();
}

TEST(SharedTextPool, GivesEqualShortTextsOneBlock) {
  SharedTextPool pool;
  const SharedText first = pool.shared("title");
  EXPECT_EQ(pool.shared(std::string("title")).view().data(), first.view().data());
}

TEST(SharedTextPool, AlwaysGivesTheTextThatWasAskedFor) {
  SharedTextPool pool;
  // More than it remembers, twice over.
  for (int i = 0; i < 10000; ++i) EXPECT_EQ(pool.shared(std::to_string(i % 5000)), std::to_string(i % 5000));
  EXPECT_EQ(pool.shared(""), "");
  EXPECT_EQ(pool.shared(std::string(100000, 'x')), std::string(100000, 'x'));
}

TEST(SharedTextPool, KeepsWhatIsAskedForAgainAndAgainWhileOthersComeAndGo) {
  SharedTextPool pool;
  std::vector<SharedText> tags;
  for (int tag = 0; tag < 200; ++tag) tags.push_back(pool.shared("Tag " + std::to_string(tag)));
  std::size_t others = 0;
  for (int round = 0; round < 1000; ++round) {
    for (int i = 0; i < 50; ++i) pool.shared("An entry of its own, number " + std::to_string(round * 50 + i));
    for (SharedText& tag : tags) {
      const SharedText given = pool.shared(tag);
      ASSERT_EQ(given, tag);
      if (given.view().data() != tag.view().data()) ++others;
      tag = given;
    }
  }
  // Of 200,000 askings. A few are lost before they were asked for often enough to stay.
  EXPECT_LT(others, 100U);
}

/// Counts those that stand.
class Counted {
 public:
  explicit Counted(int* standing, bool refusesCopies = false) : standing_(standing), refusesCopies_(refusesCopies) {
    ++*standing_;
  }
  Counted(const Counted& other) : standing_(other.standing_), refusesCopies_(other.refusesCopies_) {
    if (refusesCopies_) throw std::runtime_error("not this one");
    ++*standing_;
  }
  Counted& operator=(const Counted&) = delete;
  ~Counted() { --*standing_; }

 private:
  int* standing_;
  bool refusesCopies_;
};

TEST(SharedRun, EndsItsElementsWithTheLastCopy) {
  int standing = 0;
  {
    SharedRun<Counted> last;
    {
      const std::vector<Counted> elements(3, Counted(&standing));
      const SharedRun<Counted> run(elements.begin(), elements.end());
      last = run;
      EXPECT_EQ(standing, 6);
    }
    EXPECT_EQ(standing, 3);
    EXPECT_EQ(last.size(), 3U);
    last = SharedRun<Counted>(last);
    EXPECT_EQ(standing, 3);
  }
  EXPECT_EQ(standing, 0);
}

/// Goes through elements that are kept by pointers.
struct Dereferencing {
  using iterator_category = std::forward_iterator_tag;
  using value_type = Counted;
  using difference_type = std::ptrdiff_t;
  using pointer = const Counted*;
  using reference = const Counted&;

  const std::unique_ptr<Counted>* at;

  reference operator*() const { return **at; }
  Dereferencing& operator++() {
    ++at;
    return *this;
  }
  Dereferencing operator++(int) { return Dereferencing{at++}; }
  bool operator==(const Dereferencing& other) const { return at == other.at; }
  bool operator!=(const Dereferencing& other) const { return at != other.at; }
};

TEST(SharedRun, LeavesNothingBehindWhenAnElementCannotBeMade) {
  int standing = 0;
  std::vector<std::unique_ptr<Counted>> elements;
  for (int i = 0; i < 3; ++i) elements.push_back(std::make_unique<Counted>(&standing, i == 2));
  const Dereferencing first{elements.data()};
  const Dereferencing last{elements.data() + elements.size()};
  EXPECT_THROW(SharedRun<Counted>(first, last), std::runtime_error);
  EXPECT_EQ(standing, 3);
}

TEST(SharedRun, OfNothingTakesNoMemoryAndHasNoPlace) {
  const SharedRun<Counted> empty;
  EXPECT_TRUE(empty.empty());
  EXPECT_EQ(empty.begin(), empty.end());
  EXPECT_EQ(empty.data(), nullptr);
}

}  // namespace
}  // namespace epg
