// benchmarks [--benchmark_filter=PATTERN]: measures, and says how the results compare.

#include "benchmarks/Comparison.h"
#include "benchmarks/Subjects.h"

int main(int argc, char** argv) {
  epg::benchmarks::addEditorBenchmarks();
  epg::benchmarks::addDayFileBenchmarks();
  epg::benchmarks::addStoreFileBenchmarks();
  ::benchmark::Initialize(&argc, argv);
  if (::benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  epg::benchmarks::ComparisonReporter reporter;
  ::benchmark::RunSpecifiedBenchmarks(&reporter);
  return 0;
}
