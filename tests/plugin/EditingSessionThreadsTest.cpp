// An editing session, saves and exports at the same time. EPG_STRESS_ROUNDS in the environment sets how many rounds.

#include <gtest/gtest.h>

#include <condition_variable>
#include <cstddef>
#include <cstdlib>
#include <map>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "store/MemoryItem.h"
#include "tests/support/NaiveEditor.h"
#include "tests/support/SessionTest.h"

namespace epg::test {
namespace {

std::size_t roundsOr(std::size_t usual) {
  const char* const given = std::getenv("EPG_STRESS_ROUNDS");  // NOLINT(concurrency-mt-unsafe): nobody here sets it
  const long rounds = given ? std::strtol(given, nullptr, 10) : 0;
  return rounds > 0 ? static_cast<std::size_t>(rounds) : usual;
}

/// Where a fixed number of threads wait for each other, again and again.
class Barrier {
 public:
  explicit Barrier(std::size_t threads) : threads_(threads) {}

  void arriveAndWait() {
    std::unique_lock<std::mutex> lock(mutex_);
    const std::size_t meeting = meeting_;
    if (++arrived_ == threads_) {
      arrived_ = 0;
      ++meeting_;
      condition_.notify_all();
      return;
    }
    condition_.wait(lock, [&] { return meeting_ != meeting; });
  }

 private:
  const std::size_t threads_;
  std::mutex mutex_;
  std::condition_variable condition_;
  std::size_t arrived_ = 0;
  std::size_t meeting_ = 0;
};

/// What the session did to the store, once more, one step after another.
class SequentialModel {
 public:
  using Record = std::shared_ptr<NaiveItem>;

  void name(const Names& ids) {
    edited_.clear();
    for (const std::string& id : ids) {
      const auto record = store_.find(id);
      edited_.push_back(std::make_shared<NaiveItem>(record == store_.end() ? NaiveItem() : *record->second));
      edited_.back()->texts[ZRLEPGDSUniqueIDKey] = id;
    }
  }

  void click(const std::string& tag, int state) { setNaively(pointers(), tag, state); }

  void commit(const std::string& text) {
    for (const char* const key : {ZRLEPGDSTitleKey, ZRLEPGDSDescriptionKey, ZRLEPGDSImageURLKey}) {
      applyNaively(pointers(), key, {false, text});
    }
    for (const Record& record : edited_) store_[*record->texts[ZRLEPGDSUniqueIDKey]] = record;
  }

  void remove(const std::string& id) { store_.erase(id); }

  void duplicate(const std::string& source, const std::string& target) {
    const auto record = store_.find(source);
    if (record != store_.end()) store_[target] = std::make_shared<NaiveItem>(*record->second);
  }

  const std::map<std::string, Record>& store() const { return store_; }

 private:
  NaiveItems pointers() const {
    NaiveItems items;
    for (const Record& record : edited_) items.push_back(record.get());
    return items;
  }

  std::map<std::string, Record> store_;
  std::vector<Record> edited_;
};

class EditingSessionAmongThreads : public SessionTest {
 protected:
  static constexpr int entries = 6;

  static std::string entry(std::size_t number) { return "entry " + std::to_string(number % entries); }

  EditingSessionAmongThreads() {
    constexpr double firstStart = 1330880400;
    for (std::size_t i = 0; i < entries; ++i) {
      events_.push_back(eventAt(entry(i), firstStart + static_cast<double>(i)));
    }
    plugin->editorView();
  }

  /// One round of an operator: names entries, clicks, types, commits, clicks on into the store, reverts, and a host
  /// that removes and duplicates. Every commit writes the same text into all three fields.
  void sessionRound(std::size_t round) {
    std::mt19937 random(static_cast<unsigned>(round));
    const auto any = [&random](std::size_t below) { return static_cast<std::size_t>(random()) % below; };
    const Names ids = {entry(any(entries)), entry(any(entries)), entry(any(entries))};
    plugin->setEditedEPGUniqueIDs(ids);
    model_.name(ids);
    clickBoth(any(3), 1);

    typeAndCommit("text of round " + std::to_string(round));
    // The second commit changes items that are the store's records already, in the sight of every reader.
    typeAndCommit("text of round " + std::to_string(round) + ", second thoughts");

    // These reach the store's records at once, while they are being written and exported.
    clickBoth(any(3), 0);
    clickBoth(any(3), -1);
    plugin->revertEditing();
    if (round % 7 == 3) {
      const std::string gone = entry(any(entries));
      plugin->removeEPGItemsWithUniqueIDs({gone});
      model_.remove(gone);
    }
    if (round % 5 == 2) {
      const std::string source = entry(any(entries));
      const std::string target = entry(any(entries));
      plugin->duplicateEPGItemWithUniqueID(source, target);
      model_.duplicate(source, target);
    }
    views->journal.clear();
  }

  void expectTheStoreOfTheModel() const {
    ASSERT_EQ(plugin->epgItems()->size(), model_.store().size());
    for (const auto& [id, record] : model_.store()) {
      ASSERT_TRUE(stored(id)) << id;
      EXPECT_EQ(naiveItem(*stored(id)), *record) << id;
    }
  }

  /// No reader ever saw half of a commit: the three texts of an item are those of one commit, its tags are the
  /// catalogue's and each stands once.
  static void expectOneCommit(const std::string& title, const std::string& description, const std::string& imageURL,
                              const Names& tags) {
    EXPECT_EQ(title, description);
    EXPECT_EQ(title, imageURL);
    EXPECT_EQ(title.rfind("text of round ", 0), 0u) << title;
    std::map<std::string, int> count;
    for (const std::string& tag : tags) EXPECT_EQ(++count[tag], 1) << tag;
  }

  void expectOneCommitInTheStoreFile() const {
    for (const auto& [id, item] : storeFile()) {
      ASSERT_TRUE(item.asDictionary()) << id;
      const MemoryItem read(*item.asDictionary());
      expectOneCommit(textOf(read, "title").value_or("(none)"), textOf(read, "description").value_or("(none)"),
                      textOf(read, "imageURL").value_or("(none)"), tagsOf(read).value_or(Names()));
    }
  }

  void expectOneCommitInTheDayFile() const {
    for (const DayFileProgram& program : dayFile().programs) {
      expectOneCommit(program.title, program.description, program.imgUrl, program.tags);
    }
  }

  const std::vector<EPGEvent>& events() const { return events_; }

 private:
  void typeAndCommit(const std::string& text) {
    for (JournalField* const field : {&views->title, &views->description, &views->imageURL}) {
      field->type(text);
      field->setPlaceholderString(std::nullopt);  // Whatever the entries held, they all get the text.
    }
    plugin->commitEditing();
    model_.commit(text);
  }

  void clickBoth(std::size_t row, int proposedState) {
    const Names catalogue = {"x", "y", "z"};
    click(static_cast<int>(row), proposedState);
    model_.click(catalogue[row], proposedState == -1 ? 1 : proposedState);
  }

  std::vector<EPGEvent> events_;
  SequentialModel model_;
};

TEST_F(EditingSessionAmongThreads, BesideASaveAndAnExportInEveryRoundEndsAsIfItWereAlone) {
  const std::size_t rounds = roundsOr(300);
  // Saves and exports that the session and this test ask for are all made by the two threads below.
  plugin->exportEvents(events(), "Test");  // The export folder is that of the export last accepted.
  environment.waitForThreads();

  Barrier barrier(3);
  const auto everyRound = [&](auto work) {
    return [&barrier, rounds, work] {
      for (std::size_t round = 0; round < rounds; ++round) {
        barrier.arriveAndWait();
        work(round);
      }
    };
  };
  // Looking at a file takes longer than writing it; now and then is enough.
  constexpr std::size_t looks = 16;
  std::thread saving(everyRound([&](std::size_t round) {
    plugin->saveEPGItemsToFileThread(*plugin->epgItems()->snapshot());
    if (round % looks == 0) expectOneCommitInTheStoreFile();
  }));
  std::thread exporting(everyRound([&](std::size_t round) {
    plugin->exportEventsThread(events());
    if (round % looks == 0) expectOneCommitInTheDayFile();
  }));
  everyRound([&](std::size_t round) { sessionRound(round); })();
  saving.join();
  exporting.join();
  environment.waitForThreads();

  expectTheStoreOfTheModel();
  for (const std::string& outcome : delegate.outcomes()) ASSERT_EQ(outcome, "YES");
  EXPECT_EQ(delegate.outcomes().size(), rounds + 1);
  expectOneCommitInTheStoreFile();
  expectOneCommitInTheDayFile();

  save();
  exportAndWait(events());
  expectTheStoreOfTheModel();
  startWithEditor();
  expectTheStoreOfTheModel();
}

TEST_F(EditingSessionAmongThreads, BesideItsOwnSavesAndExportsEndsAsIfItWereAlone) {
  const std::size_t rounds = roundsOr(300);
  for (std::size_t round = 0; round < rounds; ++round) {
    // Most of these find a save or an export still running: the save is dropped, the export refused.
    plugin->exportEvents(events(), "Test");
    sessionRound(round);
  }
  environment.waitForThreads();
  expectTheStoreOfTheModel();
  EXPECT_EQ(delegate.outcomes().size(), rounds);
  for (const std::string& outcome : delegate.outcomes()) EXPECT_TRUE(outcome == "YES" || outcome == busyRefusal);
  expectOneCommitInTheDayFile();

  save();
  startWithEditor();
  expectTheStoreOfTheModel();
}

TEST_F(EditingSessionAmongThreads, ReadersSeeOnlyWholeCommits) {
  const std::size_t rounds = roundsOr(300);
  std::mutex mutex;
  bool over = false;
  const auto isOver = [&] {
    const std::lock_guard<std::mutex> lock(mutex);
    return over;
  };
  std::thread reading([&] {
    while (!isOver()) {
      const std::shared_ptr<const EPGItemStoreSnapshot> snapshot = plugin->epgItems()->snapshot();
      for (const EPGItemStoreRecord* const record : snapshot->records()) {
        const MemoryItem seen(record->entry.item->values());
        expectOneCommit(textOf(seen, "title").value_or("(none)"), textOf(seen, "description").value_or("(none)"),
                        textOf(seen, "imageURL").value_or("(none)"), tagsOf(seen).value_or(Names()));
      }
    }
  });
  for (std::size_t round = 0; round < rounds; ++round) sessionRound(round);
  {
    const std::lock_guard<std::mutex> lock(mutex);
    over = true;
  }
  reading.join();
  environment.waitForThreads();
  expectTheStoreOfTheModel();
}

TEST_F(EditingSessionAmongThreads, DroppedInTheMiddleOfBothLeavesWholeFiles) {
  const std::size_t rounds = roundsOr(300) / 10 + 1;
  for (std::size_t round = 0; round < rounds; ++round) {
    plugin->editorView();
    sessionRound(round);
    plugin->exportEvents(events(), "Test");
    const auto end = plugin->end();
    plugin.reset();
    end->wait();
    environment.waitForThreads();
    expectOneCommitInTheStoreFile();
    expectOneCommitInTheDayFile();
    startWithEditor();
  }
}

}  // namespace
}  // namespace epg::test
