// Measures the component against the bare libraries behind it, in one run of one process. Ratios are judged, not
// times: they hold on any machine. Takes the options of Google Benchmark; ends with 1 when a target is missed. What a
// whole run has measured is written to bench/results.json and bench/results.svg.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <regex>
#include <span>
#include <string_view>
#include <utility>

#include "bench/Bureau.h"
#include "bench/Results.h"
#include "bench/Targets.h"

namespace kartix::bench {
namespace {

double medianOf(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

/// Shows the runs as usual, and keeps the time of each round: the processor's, so that the disk does not count.
class Keeper : public benchmark::ConsoleReporter {
 public:
  Keeper() : ConsoleReporter(OO_Tabular) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.error_occurred || run.run_type != Run::RT_Iteration) continue;
      const double seconds = run.cpu_accumulated_time / static_cast<double>(run.iterations);
      rounds_[run.run_name.function_name].push_back(seconds);
    }
  }

  /// The middle time per work of each of `rounds` that ran, in order.
  std::vector<double> times(const std::vector<Round>& rounds) const {
    std::vector<double> times;
    for (const Round& round : rounds) {
      const auto kept = rounds_.find(round.benchmark);
      if (kept != rounds_.end()) times.push_back(medianOf(kept->second) / round.work);
    }
    std::sort(times.begin(), times.end());
    return times;
  }

 private:
  std::map<std::string, std::vector<double>> rounds_;
};

/// What the options ask for, as the library has it.
bool isWanted(const Target& target, std::span<char* const> options) {
  constexpr std::string_view filter = "--benchmark_filter=";
  const auto matches = [&](const std::string& name, const char* pattern) {
    return std::regex_search(name, std::regex(pattern + filter.size()));
  };
  return std::all_of(options.begin(), options.end(), [&](const char* option) {
    if (!std::string_view(option).starts_with(filter)) return true;
    const auto ran = [&](const Round& round) { return matches(round.benchmark, option); };
    return target.figure ? matches(target.what, option)
                         : std::any_of(target.measured.begin(), target.measured.end(), ran);
  });
}

Result resultOf(const Target& target, const Keeper& keeper) {
  if (target.figure) return {target.what, target.unit, target.figure(), target.most};
  const auto measured = keeper.times(target.measured);
  const auto against = keeper.times(target.against);
  const bool all = measured.size() == target.measured.size() && against.size() == target.against.size();
  return {target.what, "times", all ? measured.back() / against.front() : -1, target.most};
}

}  // namespace

namespace {

/// What a benchmark works with is made in a call before those that count: by the first of these the library reckons
/// how many there are to be.
benchmark::internal::Benchmark* registered(const std::string& name, std::function<bool()> run) {
  return benchmark::RegisterBenchmark(
             name.c_str(),
             [run = std::move(run), ready = std::make_shared<bool>()](benchmark::State& state) {
               if (!std::exchange(*ready, true)) run();
               while (state.KeepRunning()) {
                 if (!run()) state.SkipWithError("failed");
               }
             })
      ->Unit(benchmark::kMicrosecond);
}

}  // namespace

Round add(const std::string& name, std::function<bool()> run, double work) {
  registered(name, std::move(run));
  return {name, work};
}

Round addOfProcess(const std::string& name, std::function<bool()> run) {
  registered(name, std::move(run))->MeasureProcessCPUTime();
  return {name, 1};
}

Target compare(const std::string& what, std::function<bool()> component, const std::string& library,
               std::function<bool()> bare, double most) {
  return {what + ", to plain " + library,
          {add(what + ", component", std::move(component))},
          {add(what + ", " + library, std::move(bare))},
          most};
}

Target compareInTurns(const std::string& what, std::function<double()> component, const std::string& library,
                      std::function<double()> bare, double most) {
  const auto figure = [component = std::move(component), bare = std::move(bare)] {
    constexpr int rounds = 15;
    constexpr double secondsOfRound = 0.5;
    if (component() < 0 || bare() < 0) return -1.0;
    std::vector<double> ratios;
    for (int round = 0; round < rounds; ++round) {
      double own = 0;
      double other = 0;
      while (own + other < secondsOfRound) {
        const double first = component();
        const double second = bare();
        if (first < 0 || second < 0) return -1.0;
        own += first;
        other += second;
      }
      ratios.push_back(own / other);
    }
    return medianOf(std::move(ratios));
  };
  return {.what = what + ", to plain " + library, .most = most, .unit = "times", .figure = figure};
}

double medianOfSeven(const std::function<double()>& measure) {
  constexpr int rounds = 7;
  std::vector<double> values(rounds);
  for (double& value : values) value = measure();
  return medianOf(values);
}

}  // namespace kartix::bench

int main(int given, char** arguments) {
  using namespace kartix::bench;
  // The rounds of all benchmarks are mixed, so that a busy moment of the machine meets all of them.
  std::vector<std::string> options = {"--benchmark_repetitions=7", "--benchmark_min_time=0.1",
                                      "--benchmark_enable_random_interleaving=true"};
  std::vector<char*> all = {arguments[0]};
  for (std::string& option : options) all.push_back(option.data());
  all.insert(all.end(), arguments + 1, arguments + given);
  int count = static_cast<int>(all.size());
  benchmark::Initialize(&count, all.data());
  if (benchmark::ReportUnrecognizedArguments(count, all.data())) return 2;

  const std::vector<char*> wishes(arguments + 1, arguments + given);
  std::vector<Target> targets;
  for (const auto subject : {operationTargets, imageTargets, messageTargets, xmlTargets, databaseTargets,
                             surroundingTargets, processTargets}) {
    const auto more = subject();
    targets.insert(targets.end(), more.begin(), more.end());
  }
  Keeper keeper;
  benchmark::RunSpecifiedBenchmarks(&keeper);
  std::vector<Result> results;
  for (const Target& target : targets) {
    if (isWanted(target, wishes)) results.push_back(resultOf(target, keeper));
  }
  print(results);
  if (wishes.empty()) write(results, KARTIX_BENCH_FOLDER);
  return std::all_of(results.begin(), results.end(), [](const Result& result) { return result.reached(); }) ? 0 : 1;
}
