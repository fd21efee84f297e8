#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <system_error>

#include "adapters/sqlite/FreshFile.h"

namespace kartix::adapters {
namespace {

[[noreturn]] void fail(int error) { throw std::system_error(error, std::generic_category()); }

std::filesystem::path make(const std::filesystem::path& target) {
  std::string name = target.string() + ".XXXXXX";
  const int file = ::mkostemp(name.data(), O_CLOEXEC);
  if (file < 0) fail(errno);
  ::close(file);
  return name;
}

}  // namespace

FreshFile::FreshFile(const std::filesystem::path& target) : path_(make(target)) {}
FreshFile::~FreshFile() { ::unlink(path_.c_str()); }

void FreshFile::become(const std::filesystem::path& target) const {
  // Unlike a rename, a link never takes the place of a file.
  if (::link(path_.c_str(), target.c_str()) == 0) return;
  const bool noLinks = errno == EPERM || errno == EOPNOTSUPP;
  if (noLinks && ::renameat2(AT_FDCWD, path_.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0) return;
  fail(errno);
}

}  // namespace kartix::adapters
