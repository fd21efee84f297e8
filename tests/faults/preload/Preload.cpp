/// The library that is loaded before all others into a process whose calls are to fail:
///
///   KARTIX_FAULT=KIND:FIRST:SPAN:ERRNO   which do, counted from the start of `main`; first 0 for none
///   KARTIX_FAULT_STATE=FILE              receives the `State`, so that it outlives the process
///   KARTIX_FAULT_SPARE=FILE              is never written to in vain
#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>

#include "faults/calls/FailingCalls.h"

using namespace kartix::test::calls;

namespace {

using Main = int(int, char**, char**);
Main* realMain = nullptr;

[[noreturn]] void complain(const char* what) {
  std::fprintf(stderr, "failing calls: %s\n", what);
  std::_Exit(99);
}

/// True for an allocation of Qt's own, or of a library that is being loaded: neither is made to go on without memory,
/// they stop the process or hang.
bool isLetBe() {
  std::array<void*, 24> frames{};
  const int count = ::backtrace(frames.data(), static_cast<int>(frames.size()));
  bool inner = true;  // so far there were only those through which allocations come
  for (int i = 0; i < count; ++i) {
    Dl_info info{};
    if (::dladdr(frames[static_cast<std::size_t>(i)], &info) == 0) continue;
    const std::string_view file = info.dli_fname;
    const auto has = [&](std::string_view name) { return file.find(name) != std::string_view::npos; };
    if (has("/ld-linux") || (inner && (has("/libQt") || has("/qt6/")))) return true;
    inner = inner && (has("kartix_preload") || has("/libstdc++") || has("/libc.so") || has("/libjpeg"));
  }
  return false;
}

void begin() {
  const char* const file = std::getenv("KARTIX_FAULT_STATE");
  const char* const plan = std::getenv("KARTIX_FAULT");
  if (!file || !plan) return;  // a process that this one has started
  const int opened = ::open(file, O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  void* const memory = opened >= 0 && ::ftruncate(opened, sizeof(State)) == 0
                           ? ::mmap(nullptr, sizeof(State), PROT_READ | PROT_WRITE, MAP_SHARED, opened, 0)
                           : MAP_FAILED;
  if (memory == MAP_FAILED) complain("KARTIX_FAULT_STATE cannot be used");
  ::close(opened);
  share(*new (memory) State());
  if (const char* const spared = std::getenv("KARTIX_FAULT_SPARE")) spare(spared);

  static_cast<void>(isLetBe());  // the first time takes memory of its own
  std::array<char, 16> name{};
  long first = 0;
  long span = 0;
  int error = 0;
  if (std::sscanf(plan, "%15[a-z]:%ld:%ld:%d", name.data(), &first, &span, &error) != 4) complain(plan);
  for (std::size_t i = 0; i < kindNames.size(); ++i) {
    if (std::strcmp(kindNames[i], name.data()) == 0) return failFrom(Kind(i), first, first > 0 ? span : 0, error);
  }
  complain(plan);
}

bool allocationFails() noexcept {
  if (!fails(Kind::allocation)) return false;
  if (!isLetBe()) return true;
  --state().failed;
  ++state().passedOver;
  return false;
}

int counted(int count, char** arguments, char** environment) {
  begin();
  return realMain(count, arguments, environment);
}

}  // namespace

// NOLINTBEGIN: names and signatures are the system's
#pragma GCC visibility push(default)
extern "C" {

void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
void* __libc_memalign(size_t, size_t);

void* malloc(size_t size) noexcept { return allocationFails() ? nullptr : __libc_malloc(size); }
void* calloc(size_t count, size_t size) noexcept { return allocationFails() ? nullptr : __libc_calloc(count, size); }
void* realloc(void* memory, size_t size) noexcept {
  return allocationFails() ? nullptr : __libc_realloc(memory, size);
}
void* aligned_alloc(size_t alignment, size_t size) noexcept {
  return allocationFails() ? nullptr : __libc_memalign(alignment, size);
}
int posix_memalign(void** memory, size_t alignment, size_t size) noexcept {
  void* const got = aligned_alloc(alignment, size);
  if (!got) return ENOMEM;
  *memory = got;
  return 0;
}

int __libc_start_main(Main* main, int count, char** arguments, void (*init)(), void (*fini)(), void (*end)(),
                      void* stack) {
  realMain = main;
  using Start = int(Main*, int, char**, void (*)(), void (*)(), void (*)(), void*);
  auto* const start = reinterpret_cast<Start*>(::dlsym(RTLD_NEXT, "__libc_start_main"));
  return start(counted, count, arguments, init, fini, end, stack);
}

}  // extern "C"
#pragma GCC visibility pop
// NOLINTEND
