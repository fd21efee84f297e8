#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

namespace kartix::test {

using Json = nlohmann::json;

/// A scenario that cannot be played; `what()` tells why.
class BadScenario : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// One thing to try: what a scenario file holds, with all that it extends put in.
struct Scenario {
  std::string name;  ///< of file and case
  Json content;
  std::string fault;  ///< why it cannot be played; empty when it can
};

/// All scenarios: one for each file, or for each of its cases.
std::vector<Scenario> loadScenarios();

/// What the file `name` of `base/` holds, with all that it extends put in.
Json loadBase(const std::string& name);

/// Where a file that a scenario names stands.
std::filesystem::path scenarioFile(const std::string& folder, const std::string& name);

/// The value of `key`, or an empty object.
const Json& part(const Json& object, const std::string& key);

/// `text` with every `$NAME` of `names` (an object of texts) replaced.
std::string substitute(std::string text, const Json& names);
/// The same for every text in `value`.
Json substituteAll(Json value, const Json& names);

}  // namespace kartix::test
