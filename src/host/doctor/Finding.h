#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kartix::host {

/// What a check of the installation has found. Texts are German.
struct Finding {
  enum class Level {
    good,
    note,   ///< works, and deserves a look
    fault,  ///< something does not work, will not soon, or works in another way than the settings seem to say
  };

  Level level = Level::good;
  std::string area;     ///< "Einstellungen", "Datenbank", ...
  std::string setting;  ///< the one to look at ("FS.DBName"); empty when it is none in particular
  std::string text;
  std::string mend;  ///< what to do about it; empty when nothing is wrong
};

using Findings = std::vector<Finding>;

/// Makes the findings of one area.
class Area {
 public:
  explicit Area(std::string name) : name_(std::move(name)) {}

  Finding good(std::string text) const { return {Finding::Level::good, name_, {}, std::move(text), {}}; }
  Finding note(std::string setting, std::string text, std::string mend) const {
    return {Finding::Level::note, name_, std::move(setting), std::move(text), std::move(mend)};
  }
  Finding fault(std::string setting, std::string text, std::string mend) const {
    return {Finding::Level::fault, name_, std::move(setting), std::move(text), std::move(mend)};
  }

 private:
  std::string name_;
};

inline void append(Findings& all, Findings more) {
  all.insert(all.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
}

/// A path as it stands in a command that is to be copied.
inline std::string asArgument(const std::string& path) {
  constexpr std::string_view plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-./\\:";
  return path.find_first_not_of(plain) == std::string::npos ? path : "'" + path + "'";
}

/// True when one of the findings is a fault, of a setting whose name begins with `start`.
inline bool hasFault(const Findings& findings, std::string_view start = {}) {
  return std::any_of(findings.begin(), findings.end(), [&](const Finding& each) {
    return each.level == Finding::Level::fault && each.setting.starts_with(start);
  });
}

/// True when one of the findings is a fault of just this setting.
inline bool isFaulty(const Findings& findings, std::string_view setting) {
  return std::any_of(findings.begin(), findings.end(), [&](const Finding& each) {
    return each.level == Finding::Level::fault && each.setting == setting;
  });
}

}  // namespace kartix::host
