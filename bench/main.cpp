// Measures the component against the bare libraries behind it, in one run of one process. Ratios are judged, not
// times: they hold on any machine. Takes the options of Google Benchmark; ends with 1 when a target is missed.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <map>

#include "bench/Targets.h"

namespace kartix::bench {
namespace {

/// Shows the runs as usual, and keeps the fastest of each benchmark: what disturbs a run only makes it slower. The
/// processor's time counts, so that the disk does not.
class Keeper : public benchmark::ConsoleReporter {
 public:
  Keeper() : ConsoleReporter(OO_Tabular) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.error_occurred || run.run_type != Run::RT_Iteration) continue;
      const double seconds = run.cpu_accumulated_time / static_cast<double>(run.iterations);
      const auto kept = fastest_.emplace(run.run_name.function_name, seconds).first;
      kept->second = std::min(kept->second, seconds);
    }
  }

  /// Time per work of each of `rounds` that ran, in order.
  std::vector<double> times(const std::vector<Round>& rounds) const {
    std::vector<double> times;
    for (const Round& round : rounds) {
      const auto kept = fastest_.find(round.benchmark);
      if (kept != fastest_.end()) times.push_back(kept->second / round.work);
    }
    std::sort(times.begin(), times.end());
    return times;
  }

 private:
  std::map<std::string, double> fastest_;
};

bool reached(const Keeper& keeper, const Target& target) {
  const auto measured = keeper.times(target.measured);
  const auto against = keeper.times(target.against);
  if (measured.size() < target.measured.size() || against.size() < target.against.size()) {
    std::printf("%-62s %7s %8.2f  NOT MEASURED\n", target.what.c_str(), "", target.most);
    return false;
  }
  const double ratio = measured.back() / against.front();
  const bool good = ratio <= target.most;
  std::printf("%-62s %7.2f %8.2f%s\n", target.what.c_str(), ratio, target.most, good ? "" : "  MISSED");
  return good;
}

}  // namespace

Round add(const std::string& name, std::function<bool()> run, double work) {
  benchmark::RegisterBenchmark(name.c_str(), [run = std::move(run)](benchmark::State& state) {
    while (state.KeepRunning()) {
      if (!run()) state.SkipWithError("failed");
    }
  })->Unit(benchmark::kMicrosecond);
  return {name, work};
}

Target compare(const std::string& what, std::function<bool()> component, const std::string& library,
               std::function<bool()> bare, double most) {
  return {what + ", to plain " + library,
          {add(what + ", component", std::move(component))},
          {add(what + ", " + library, std::move(bare))},
          most};
}

}  // namespace kartix::bench

int main(int count, char** arguments) {
  using namespace kartix::bench;
  // The rounds of all benchmarks are mixed, so that a busy moment of the machine meets all of them.
  std::vector<std::string> options = {"--benchmark_repetitions=5", "--benchmark_min_time=0.1",
                                      "--benchmark_enable_random_interleaving=true"};
  std::vector<char*> all = {arguments[0]};
  for (std::string& option : options) all.push_back(option.data());
  all.insert(all.end(), arguments + 1, arguments + count);
  count = static_cast<int>(all.size());
  benchmark::Initialize(&count, all.data());
  if (benchmark::ReportUnrecognizedArguments(count, all.data())) return 2;

  std::vector<Target> targets;
  for (const auto subject : {imageTargets, messageTargets, xmlTargets, databaseTargets}) {
    const auto more = subject();
    targets.insert(targets.end(), more.begin(), more.end());
  }
  Keeper keeper;
  benchmark::RunSpecifiedBenchmarks(&keeper);
  std::printf("\n%-62s %7s %8s\n", "ratio", "is", "at most");
  const auto missed =
      std::count_if(targets.begin(), targets.end(), [&](const Target& target) { return !reached(keeper, target); });
  return missed == 0 ? 0 : 1;
}
