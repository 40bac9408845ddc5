// DayFileBenchmark COSTS      measures exports, from records in memory to the file under its final name. The cost of
// one
//                             event goes to the file COSTS, a line for each number of events.
// DayFileBenchmark --memory FOLDER EVENTS
//                             exports from the folder's store and prints the peak of memory above store and events

#include <unistd.h>

#include <cstddef>
#include <exception>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "benchmarks/ChildProcess.h"
#include "benchmarks/DayFilePeers.h"
#include "benchmarks/Memory.h"
#include "benchmarks/PluginUser.h"
#include "benchmarks/SampleData.h"
#include "benchmarks/Table.h"
#include "benchmarks/Timing.h"
#include "benchmarks/WorkFolder.h"

using namespace epg;
using namespace epg::benchmarks;

namespace {

std::string bytesOf(const std::string& path) {
  std::string content;
  if (readWholeFile(Environment::standard(), path, &content) != 0) throw std::runtime_error("no day file " + path);
  return content;
}

/// An export of the events to the file, as everybody does it. What is measured is all that an export does, up to
/// letting go of the events that it was given.
using Export = std::function<void(std::vector<EPGEvent>&& events)>;

Round roundOf(const std::vector<EPGEvent>& events, const std::string& path, Clock clock, Export work) {
  return [&events, path, clock, work] {
    ::unlink(path.c_str());
    auto given = std::make_unique<std::vector<EPGEvent>>(events);
    const Stopwatch stopwatch(clock);
    work(std::move(*given));
    given.reset();
    return stopwatch.seconds();
  };
}

/// Everything that an export of so many events needs, for everybody.
class Contest {
 public:
  explicit Contest(std::size_t count) : events_(sampleEvents(count)) {
    writeSampleData(folder_, count);
    user_ = std::make_unique<PluginUser>(folder_.path(), environment_);
    user_->prepareExport();
    for (std::size_t i = 0; i < count; ++i) items_.emplace(sampleID(i), sampleItem(i));
    user_->exportHere(events_);
    finished_ = std::make_unique<FinishedDayFile>(bytesOf(user_->dayFile()), events_);
    checkThatAllWriteTheSame();
  }

  enum Contender : std::size_t { Ours, LibXML2, Pugixml, Limit };

  Rounds run(std::size_t rounds) const {
    const std::string path = user_->dayFile();
    return inTurns(rounds, {ours(), contender([this, path](auto&& given) { exportByLibXML2(items_, given, path); }),
                            contender([this, path](auto&& given) { exportByPugixml(items_, given, path); }), limit()});
  }

  Round ours() const {
    return contender([this](auto&& given) { user_->exportHere(std::move(given)); });
  }

  Round limit() const {
    return contender([this, path = user_->dayFile()](auto&& given) { finished_->write(given, path); });
  }

  std::string folder() const { return folder_.path(); }

 private:
  Round contender(Export work) const { return roundOf(events_, user_->dayFile(), processorSeconds, std::move(work)); }

  void checkThatAllWriteTheSame() const {
    const std::string path = user_->dayFile();
    const std::string ours = bytesOf(path);
    const auto check = [&](const char* who) {
      if (bytesOf(path) != ours) throw std::runtime_error(std::string(who) + " writes another file");
    };
    exportByLibXML2(items_, events_, path);
    check("libxml2");
    exportByPugixml(items_, events_, path);
    check("pugixml");
    finished_->write(events_, path);
    check("the limit");
  }

  WorkFolder folder_;
  BenchmarkEnvironment environment_{BenchmarkEnvironment::Flush::None};
  std::vector<EPGEvent> events_;
  std::unique_ptr<PluginUser> user_;
  PeerItems items_;
  std::unique_ptr<FinishedDayFile> finished_;
};

void measureFlushed(Table& table, std::size_t count) {
  const WorkFolder folder = WorkFolder::onDisk();
  writeSampleData(folder, count);
  BenchmarkEnvironment environment(BenchmarkEnvironment::Flush::Real);
  PluginUser user(folder.path(), environment);
  user.prepareExport();
  const std::vector<EPGEvent> events = sampleEvents(count);
  user.exportHere(events);
  const std::string document = bytesOf(user.dayFile());
  const std::string path = user.dayFile();
  const Rounds rounds =
      inTurns(5, {roundOf(events, path, wallSeconds, [&](auto&& given) { user.exportHere(std::move(given)); }),
                  roundOf(events, path, wallSeconds, [&](auto&& /*given*/) { writeFile(path, document, true); })});
  table.information("export 100000 events, with the flush to disk (wall)", rounds, 1, "write and flush its bytes");
}

double measuredPeak(const std::string& folder, std::size_t count) {
  return std::stod(runProgram({ownProgram(), "--memory", folder, std::to_string(count)}).output);
}

void printPeak(const std::string& folder, std::size_t count) {
  BenchmarkEnvironment environment(BenchmarkEnvironment::Flush::None);
  PluginUser user(folder, environment);
  user.prepareExport();
  auto events = sampleEvents(count);
  const PeakMemory peak;
  user.exportHere(std::move(events));
  std::cout << peak.bytes() << '\n';
}

/// What the work would take a hundred times over, each time with nothing of it in the processor's caches: between one
/// day's export and the next one's, a machine does other things.
Round hundredColdOnes(Round work) {
  constexpr int samples = 20;
  constexpr std::size_t largerThanCaches = std::size_t{1} << 29;
  const auto others = std::make_shared<std::vector<char>>(largerThanCaches);
  return [work = std::move(work), others] {
    double sum = 0;
    for (int i = 0; i < samples; ++i) {
      for (char& byte : *others) ++byte;
      sum += work();
    }
    return sum * 100 / samples;
  };
}

/// How much more an event costs among a million than among ten thousand. The small export is repeated, so that both
/// are measured as long, one after the other. The limit's figure says how much of that the memory costs.
void measureGrowth(Table& table, const Contest& large, const Contest& small) {
  enum Contender : std::size_t { Large, Small, LimitOfLarge, LimitOfSmall };
  const Rounds rounds =
      inTurns(3, {large.ours(), hundredColdOnes(small.ours()), large.limit(), hundredColdOnes(small.limit())});
  table.atMost("1000000 events against 100 times 10000", rounds, Small, "the latter", 1.3);
  table.information("the same of the limit", rounds, LimitOfLarge, LimitOfSmall, "the latter");
}

void measureAll(const std::string& costsPath) {
  struct Size {
    std::size_t events;
    std::size_t rounds;
  };
  constexpr Size sizes[] = {{1000, 51}, {10000, 21}, {100000, 9}, {1000000, 1}};
  constexpr double megabyte = 1 << 20;
  constexpr double microseconds = 1e6;
  Table table;
  std::ofstream costs(costsPath);
  for (const auto& [count, rounds] : sizes) {
    const Contest contest(count);
    const Rounds result = contest.run(rounds);
    costs << count;
    for (const auto contender : {Contest::Ours, Contest::LibXML2, Contest::Pugixml, Contest::Limit}) {
      costs << ' ' << result.seconds(contender) / static_cast<double>(count) * microseconds;
    }
    costs << std::endl;
    const std::string target = "export " + std::to_string(count) + " events";
    if (count == 100000) {
      table.atLeastAsFast(target, result, Contest::LibXML2, "libxml2 writer", 4);
      table.atMost(target, result, Contest::Limit, "limit", 1.2);
    } else if (count > 1000) {
      table.information(target, result, Contest::LibXML2, "libxml2 writer");
      table.information(target, result, Contest::Limit, "limit");
    }
    if (count > 1000) table.information(target, result, Contest::Pugixml, "pugixml tree");
    if (count == 1000000) {
      measureGrowth(table, contest, Contest(10000));
      table.figure("memory of exporting 1000000 events", measuredPeak(contest.folder(), count) / megabyte, 32, "MiB");
    }
  }
  measureFlushed(table, 100000);
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  try {
    if (arguments.size() == 3 && arguments[0] == "--memory") {
      printPeak(arguments[1], std::stoul(arguments[2]));
    } else if (arguments.size() == 1) {
      measureAll(arguments[0]);
    } else {
      std::cerr << "usage: DayFileBenchmark COSTS\n";
      return 2;
    }
  } catch (const std::exception& exception) {
    std::cerr << "DayFileBenchmark: " << exception.what() << '\n';
    return 1;
  }
  return 0;
}
