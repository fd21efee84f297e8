#include "faults/calls/FailingCalls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <stdio_ext.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>

namespace kartix::test::calls {
namespace {

State own;
std::atomic<State*> current = &own;
struct stat spared {};

/// What a transfer over `file` is: of a file or a standard stream, over a socket, or none that is counted.
Kind kindOf(int file, Kind ofFile, Kind ofSocket) noexcept {
  const int before = errno;
  struct stat status {};
  const bool known = state().counting != 0 && ::fstat(file, &status) == 0;
  errno = before;
  if (!known || (spared.st_ino != 0 && status.st_ino == spared.st_ino && status.st_dev == spared.st_dev)) {
    return Kind::none;
  }
  if (S_ISSOCK(status.st_mode)) return ofSocket;
  return S_ISREG(status.st_mode) || file == STDOUT_FILENO || file == STDERR_FILENO ? ofFile : Kind::none;
}

bool writeFails(int file) noexcept { return fails(kindOf(file, Kind::write, Kind::send)); }
bool readFails(int file) noexcept { return fails(kindOf(file, Kind::read, Kind::receive)); }

/// The function that this one stands in front of.
template <class Function>
Function* behind(Function* /*of this type*/, const char* name) noexcept {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

State& state() noexcept { return *current; }
void share(State& other) noexcept { current = &other; }
void spare(const char* path) noexcept { ::stat(path, &spared); }

void failFrom(Kind kind, long first, long span, int error) noexcept {
  State& now = state();
  for (auto& count : now.counts) count = 0;
  now.failed = 0;
  now.failing = static_cast<long>(kind);
  now.first = first;
  now.span = span;
  now.error = error;
  now.counting = 1;
}

long failNoMore() noexcept {
  state().counting = 0;
  return state().failed.exchange(0);
}

bool fails(Kind kind) noexcept {
  State& now = state();
  if (kind == Kind::none || now.counting == 0) return false;
  const long number = ++now.counts.at(static_cast<std::size_t>(kind));
  if (static_cast<long>(kind) != now.failing || number < now.first || number - now.first >= now.span) return false;
  ++now.failed;
  errno = static_cast<int>(now.error);
  return true;
}

}  // namespace kartix::test::calls

// NOLINTBEGIN: names and signatures are the system's
using namespace kartix::test::calls;

#define BEHIND(name) static auto* const real = behind(&::name, #name)

#pragma GCC visibility push(default)
extern "C" {

ssize_t write(int file, const void* data, size_t size) {
  BEHIND(write);
  return writeFails(file) ? -1 : real(file, data, size);
}
ssize_t writev(int file, const iovec* parts, int count) {
  BEHIND(writev);
  return writeFails(file) ? -1 : real(file, parts, count);
}
ssize_t pwrite64(int file, const void* data, size_t size, off64_t place) {
  BEHIND(pwrite64);
  return writeFails(file) ? -1 : real(file, data, size, place);
}
ssize_t read(int file, void* data, size_t size) {
  BEHIND(read);
  return readFails(file) ? -1 : real(file, data, size);
}
ssize_t pread64(int file, void* data, size_t size, off64_t place) {
  BEHIND(pread64);
  return readFails(file) ? -1 : real(file, data, size, place);
}
ssize_t pread(int file, void* data, size_t size, off_t place) {
  BEHIND(pread);
  return readFails(file) ? -1 : real(file, data, size, place);
}
int fsync(int file) {
  BEHIND(fsync);
  return fails(Kind::flush) ? -1 : real(file);
}
int fdatasync(int file) {
  BEHIND(fdatasync);
  return fails(Kind::flush) ? -1 : real(file);
}
int rename(const char* from, const char* to) noexcept {
  BEHIND(rename);
  return fails(Kind::rename) ? -1 : real(from, to);
}
int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept {
  BEHIND(renameat2);
  return fails(Kind::rename) ? -1 : real(fromFolder, from, toFolder, to, flags);
}
int connect(int file, const sockaddr* address, socklen_t size) {
  BEHIND(connect);
  return fails(Kind::connect) ? -1 : real(file, address, size);
}
ssize_t send(int file, const void* data, size_t size, int flags) {
  BEHIND(send);
  return fails(Kind::send) ? -1 : real(file, data, size, flags);
}
ssize_t recv(int file, void* data, size_t size, int flags) {
  BEHIND(recv);
  return fails(Kind::receive) ? -1 : real(file, data, size, flags);
}

// The streams of the C library call the system by ways of their own: what has to be written counts when it is.
int fflush(FILE* stream) {
  BEHIND(fflush);
  if (!stream || __fpending(stream) == 0 || !writeFails(fileno(stream))) return real(stream);
  __fpurge(stream);
  return EOF;
}
size_t fwrite(const void* data, size_t size, size_t count, FILE* stream) {
  BEHIND(fwrite);
  return stream == stderr && writeFails(STDERR_FILENO) ? 0 : real(data, size, count, stream);
}

}  // extern "C"
#pragma GCC visibility pop
// NOLINTEND
