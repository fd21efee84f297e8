#pragma once

#include <string>
#include <string_view>

/// The reversible scrambled form in which passwords are stored. It hides a password from casual reading; it uses no
/// key. Works on the characters of the single-byte code page; texts come and go as UTF-8.
namespace kartix {

/// Told of every step, for the trace.
class ScramblingObserver {
 public:
  virtual ~ScramblingObserver() = default;
  virtual void entered(std::string_view routine) = 0;
  virtual void left(std::string_view routine) = 0;
};

/// Stored form of `plain`, always a multiple of 9 characters.
std::string CryptLong(std::string_view plain, ScramblingObserver* observer = nullptr);

/// Plain text of `stored`; blocks that are not of the stored form contribute nothing.
std::string DecryptLong(std::string_view stored, ScramblingObserver* observer = nullptr);

}  // namespace kartix
