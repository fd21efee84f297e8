#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace kartix::automation {

/// A call of the C interface that cannot be done: its code and the words for it.
class Failure : public std::runtime_error {
 public:
  Failure(std::int32_t code, const std::string& text) : std::runtime_error(text), code_(code) {}
  std::int32_t code() const { return code_; }

 private:
  std::int32_t code_;
};

}  // namespace kartix::automation
