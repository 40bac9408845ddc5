#pragma once

namespace epg::benchmarks {

// Each registers the benchmarks of its subject.
void addEditorBenchmarks();
void addDayFileBenchmarks();
void addStoreFileBenchmarks();

}  // namespace epg::benchmarks
