#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Fuzz targets: each takes any bytes for what comes from outside, and ends the process where a promise is broken.
namespace kartix::fuzz {

/// The bytes of one run, taken piece by piece. Pieces of what is not there are empty.
class Input {
 public:
  explicit Input(std::string_view bytes) : rest_(bytes) {}

  bool empty() const { return rest_.empty(); }
  std::string_view rest() const { return rest_; }
  std::uint8_t byte();
  /// Up to the next line feed, which goes too.
  std::string line() { return until("\n"); }
  /// Up to the next line that holds "~" alone.
  std::string part() { return until("\n~\n"); }

 private:
  std::string until(std::string_view end);

  std::string_view rest_;
};

/// Ends the process, and says what was promised and seen, unless it `holds`.
void expect(bool holds, const char* promise, const std::string& seen = {});

/// Runs the target `name`, after which its folder in `corpus/` is called. Ends the process when there is none.
void run(std::string_view name, std::string_view bytes);

// The targets, one a source or two.
void answers(Input input);
void book(Input input);
void calls(Input input);
void documents(Input input);
void images(Input input);
void ini(Input input);
void names(Input input);
void objects(Input input);
void registry(Input input);
void rows(Input input);
void script(Input input);
void transport(Input input);
void values(Input input);

}  // namespace kartix::fuzz
