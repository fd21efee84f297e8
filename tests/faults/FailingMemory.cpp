#include <curl/curl.h>
#include <libxml/xmlmemory.h>
#include <malloc.h>
#include <openssl/crypto.h>
#include <sqlite3.h>

#include <cstdlib>
#include <cstring>
#include <new>

#include "faults/calls/FailingCalls.h"

// Allocations of this program: those of C++, and of libcurl, libxml2, SQLite and OpenSSL, for which it brings the
// allocator, since the sanitizers have that of C to themselves.

namespace {

bool fails() noexcept { return kartix::test::calls::fails(kartix::test::calls::Kind::allocation); }

void* allocate(std::size_t size) noexcept { return fails() ? nullptr : std::malloc(size); }
void* allocateZeroed(std::size_t number, std::size_t size) noexcept {
  return fails() ? nullptr : std::calloc(number, size);
}
void* resize(void* memory, std::size_t size) noexcept { return fails() ? nullptr : std::realloc(memory, size); }
char* duplicate(const char* text) noexcept { return fails() ? nullptr : ::strdup(text); }

/// Before anything else of this program runs: the libraries want it so.
bool takeOver() {
  static const sqlite3_mem_methods sqlite = {
      [](int size) { return allocate(static_cast<std::size_t>(size)); },
      std::free,
      [](void* memory, int size) { return resize(memory, static_cast<std::size_t>(size)); },
      [](void* memory) { return static_cast<int>(::malloc_usable_size(memory)); },
      [](int size) { return (size + 7) & ~7; },
      [](void*) { return SQLITE_OK; },
      [](void*) {},
      nullptr};
  return CRYPTO_set_mem_functions(
             [](std::size_t size, const char*, int) { return allocate(size); },
             [](void* memory, std::size_t size, const char*, int) { return resize(memory, size); },
             [](void* memory, const char*, int) { std::free(memory); }) == 1 &&
         sqlite3_config(SQLITE_CONFIG_MALLOC, &sqlite) == SQLITE_OK &&
         xmlMemSetup(std::free, allocate, resize, duplicate) == 0 &&
         curl_global_init_mem(CURL_GLOBAL_DEFAULT, allocate, std::free, resize, duplicate, allocateZeroed) ==
             CURLE_OK;
}

const bool takenOver = takeOver() || (std::abort(), false);

}  // namespace

void* operator new(std::size_t size) {
  if (void* const memory = allocate(size > 0 ? size : 1)) return memory;
  throw std::bad_alloc();
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept { return allocate(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
