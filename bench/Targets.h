#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "component/Component.h"
#include "support/TempDir.h"

namespace kartix::bench {

/// A benchmark by its name, and how much work one round of it is.
struct Round {
  std::string benchmark;
  double work = 1;
};

/// What is promised. A ratio: for the same work the slowest of `measured` takes at most `most` times as long as the
/// fastest of `against`. Or a figure that is at most `most`.
struct Target {
  std::string what;
  std::vector<Round> measured = {};
  std::vector<Round> against = {};
  double most = 0;
  std::string unit = {};                     ///< of a figure: "ms", "ns"; empty where it is a plain number
  std::function<double()> figure = nullptr;  ///< measures it; null for a ratio
};

/// Registers a benchmark whose round is one call of `run`; it fails when that gives False.
Round add(const std::string& name, std::function<bool()> run, double work = 1);

/// The same for work that other threads of the process may have a part in.
Round addOfProcess(const std::string& name, std::function<bool()> run);

/// Registers both ways of doing the same, and promises that the component takes at most `most` times as long as the
/// bare library.
Target compare(const std::string& what, std::function<bool()> component, const std::string& library,
               std::function<bool()> bare, double most);

/// The same for work of milliseconds, in which what else the machine does tells: one call of either in turn, so that
/// both meet the same of it. Each gives its seconds, or a negative number when it has failed.
Target compareInTurns(const std::string& what, std::function<double()> component, const std::string& library,
                      std::function<double()> bare, double most);

/// The middle one of seven measurements.
double medianOfSeven(const std::function<double()>& measure);

/// Each registers the benchmarks of its subject.
std::vector<Target> imageTargets();
std::vector<Target> messageTargets();
std::vector<Target> xmlTargets();
std::vector<Target> databaseTargets();
std::vector<Target> operationTargets();
std::vector<Target> surroundingTargets();
std::vector<Target> processTargets();

/// Something to measure with that is made when it is first asked for: a run of few benchmarks makes little.
template <class Thing, class... Arguments>
auto later(Arguments... arguments) {
  return [thing = std::make_shared<std::unique_ptr<Thing>>(), arguments...]() -> Thing& {
    if (!*thing) *thing = std::make_unique<Thing>(arguments...);
    return **thing;
  };
}

/// A component of its own, and a directory for what it works with.
struct Office {
  static Setup setup(const test::TempDir& directory) {
    Setup setup;
    setup.registryFile = directory / "registry.reg";
    return setup;
  }

  test::TempDir directory;
  Component component{setup(directory)};
};

}  // namespace kartix::bench
