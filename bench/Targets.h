#pragma once

#include <functional>
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

/// What is promised: for the same work the slowest of `measured` takes at most `most` times as long as the fastest of
/// `against`.
struct Target {
  std::string what;
  std::vector<Round> measured;
  std::vector<Round> against;
  double most;
};

/// Registers a benchmark whose round is one call of `run`; it fails when that gives False.
Round add(const std::string& name, std::function<bool()> run, double work = 1);

/// Registers both ways of doing the same, and promises that the component takes at most `most` times as long as the
/// bare library.
Target compare(const std::string& what, std::function<bool()> component, const std::string& library,
               std::function<bool()> bare, double most);

/// Each registers the benchmarks of its subject.
std::vector<Target> imageTargets();
std::vector<Target> messageTargets();
std::vector<Target> xmlTargets();
std::vector<Target> databaseTargets();

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
