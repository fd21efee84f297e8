#include <iconv.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>

#include "adapters/libxml2/Conversion.h"

namespace kartix::adapters {
namespace {

/// Converter to UTF-8.
class Converter {
 public:
  explicit Converter(const std::string& encoding) : converter_(iconv_open("UTF-8", encoding.c_str())) {}
  ~Converter() {
    if (known()) iconv_close(converter_);
  }
  Converter(const Converter&) = delete;
  Converter& operator=(const Converter&) = delete;

  bool known() const { return reinterpret_cast<std::intptr_t>(converter_) != -1; }
  iconv_t get() const { return converter_; }

 private:
  iconv_t converter_;
};

}  // namespace

std::optional<std::string> converted(std::string_view bytes, const std::string& name) {
  const Converter converter(name);
  if (!converter.known()) return std::nullopt;

  std::string text;
  std::array<char, 16384> piece{};
  std::string source(bytes);
  char* in = source.data();
  std::size_t inLeft = source.size();
  while (inLeft > 0) {
    char* out = piece.data();
    std::size_t outLeft = piece.size();
    const std::size_t result = iconv(converter.get(), &in, &inLeft, &out, &outLeft);
    text.append(piece.data(), piece.size() - outLeft);
    if (result == static_cast<std::size_t>(-1) && errno != E2BIG) return std::nullopt;
  }
  return text;
}

}  // namespace kartix::adapters
