// ImportBenchmark DORVASELIN BARE-PARSE TV-SORT: measures the three programs with a guide of 100,000 programmes.

#include <exception>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "benchmarks/ChildProcess.h"
#include "benchmarks/SampleData.h"
#include "benchmarks/Table.h"
#include "benchmarks/Timing.h"
#include "benchmarks/WorkFolder.h"
#include "platform/Environment.h"

using namespace epg::benchmarks;

namespace {

constexpr std::size_t programmeCount = 100000;

struct Programs {
  std::string dorvaselin;
  std::string bareParse;
  std::string tvSort;
};

using Time = double ChildRun::*;

Round importing(const Programs& programs, const std::string& guide, Time time) {
  return [programs, guide, time] {
    const WorkFolder dataFolder;
    const ChildRun run = runProgram({programs.dorvaselin, "--data-folder", dataFolder.path(), "import", guide});
    const std::string number = std::to_string(programmeCount);
    if (run.output != number + " programmes, " + number + " new entries, 0 kept entries\n") {
      throw std::runtime_error("the import says: " + run.output);
    }
    return run.*time;
  };
}

ChildRun sortedBy(const std::string& tvSort, const std::string& guide, const std::string& sorted) {
  const ChildRun run = runProgram({tvSort, "--output", sorted, guide});
  std::string content;
  readWholeFile(epg::Environment::standard(), sorted, &content);
  std::size_t programmes = 0;
  for (std::size_t at = 0; (at = content.find("<programme ", at)) != std::string::npos; ++at) ++programmes;
  if (programmes != programmeCount) throw std::runtime_error("tv_sort wrote " + std::to_string(programmes));
  return run;
}

void measure(const Programs& programs) {
  const WorkFolder folder;
  const std::string guide = folder.file("guide.xml");
  folder.write("guide.xml", sampleGuide(programmeCount));
  Table table;
  // A command's end is what somebody waits for; how much the processors do for it is told too.
  const auto against = [&](Time time) {
    return inTurns(5, {importing(programs, guide, time), [&] {
                         return runProgram({programs.bareParse, guide}).*time;
                       }});
  };
  table.atMost("import 100000 programmes (wall)", against(&ChildRun::wallSeconds), 1, "pugixml parse", 3);
  table.information("import 100000 programmes", against(&ChildRun::processorSeconds), 1, "pugixml parse");
  // Once: it takes minutes.
  const auto sort = [&] { return sortedBy(programs.tvSort, guide, folder.file("sorted.xml")).wallSeconds; };
  const Rounds sorting = inTurns(1, {importing(programs, guide, &ChildRun::wallSeconds), sort});
  table.atLeastAsFast("import 100000 programmes (wall)", sorting, 1, "tv_sort", 20);
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (arguments.size() != 3) {
    std::cerr << "usage: ImportBenchmark DORVASELIN BARE-PARSE TV-SORT\n";
    return 2;
  }
  try {
    measure({arguments[0], arguments[1], arguments[2]});
  } catch (const std::exception& exception) {
    std::cerr << "ImportBenchmark: " << exception.what() << '\n';
    return 1;
  }
  return 0;
}
