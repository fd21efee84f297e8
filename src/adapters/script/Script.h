#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kartix::adapters {

/// A script or objects file that cannot be used; `what()` tells place and reason.
class BadInput : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// One step of a scripted clerk: the window that must be waiting and what the clerk does there.
struct Step {
  enum class Action { choose, click, type, select, pick, close };

  std::string window;
  Action action = Action::close;
  std::string control;                                       ///< `choose`, `click`
  std::vector<std::pair<std::string, std::string>> entries;  ///< `type`, `select`: control and text, in file order
  std::size_t row = 0;                                       ///< `pick`, from 0
};

/// What a scripted clerk does, taken step by step, and the first thing that did not fit.
///
/// ```json
/// [{"window": "StartForm", "type": {"Text[8]": "b072rre2i55"}},
///  {"window": "StartForm", "click": "Button[0]"}]
/// ```
class Script {
 public:
  /// Checks all of `json` (UTF-8, an array of steps). Raises `BadInput` that names the first bad step.
  static Script parse(std::string_view json);
  /// The same for a file of at most 16 MiB.
  static Script load(const std::filesystem::path& file);

  /// The step to take next; nothing when all are taken or the script has failed.
  const Step* next() const;

  /// Number of a step, from 0.
  using Place = std::size_t;
  /// Counts the next step as taken; gives its place.
  Place advance() { return position_++; }

  /// The step at `place` does not fit, or a play that is to end does not: gives up the remaining steps. False when
  /// the script had failed before; the first failure stays.
  bool failAt(Place place, std::string_view expected, std::string_view found);
  /// Place of the step to take next.
  Place place() const { return position_; }

  /// Adds to the words for the failure what there was in its place, in lines.
  void addToFailure(std::string_view lines) { failure_->append(lines); }

  /// Once the play is over: what was expected and what was found, left-over steps included; nothing when every step
  /// was taken. One line, and indented ones for what there was.
  std::optional<std::string> mismatch() const;

 private:
  std::vector<Step> steps_;
  std::size_t position_ = 0;
  std::optional<std::string> failure_;
};

/// The step in words: `click "Button[0]" in window "StartForm"`. Typed texts are left out.
std::string describe(const Step& step);

/// `text` in quotes, control characters as blanks: fit for a terminal.
std::string inQuotes(std::string_view text);

/// Name of the action as it stands in a script.
std::string_view actionName(Step::Action action);

}  // namespace kartix::adapters
