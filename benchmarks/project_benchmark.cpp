// A project of 5,000 records: written as text, and read and compared with the database.

#include <benchmark/benchmark.h>

#include "project/project_store.h"
#include "project/project_text.h"
#include "tests/random_project.h"

namespace kelvo {
namespace {

constexpr std::size_t kRecords = 5000;

std::vector<RecordHere> Stored(const Project& project) {
  std::vector<RecordHere> records;
  for (const ProjectRecord& record : project.records) records.push_back({record, 0, {}});
  return records;
}

void Export(benchmark::State& state) {
  const Project project = RandomProject(1).Next(kRecords);
  std::size_t bytes = 0;
  for (auto _ : state) bytes = ProjectText(project).value_or("").size();
  state.counters["bytes"] = static_cast<double>(bytes);
}
BENCHMARK(Export)->Unit(benchmark::kMillisecond);

// Half of the records are not as they are in the file.
void ImportPreview(benchmark::State& state) {
  Project project = RandomProject(1).Next(kRecords);
  const std::vector<RecordHere> here = Stored(project);
  RandomProject random(2);
  for (std::size_t i = 0; i < project.records.size(); i += 2) {
    project.records[i] = random.Record(project.records[i].kind);
  }
  const std::string text = ProjectText(project).value_or("");
  for (auto _ : state) {
    const ReadResult read = ReadProject(text);
    benchmark::DoNotOptimize(PlanImport(std::get<Project>(read), here, {}));
  }
}
BENCHMARK(ImportPreview)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace kelvo
