#include "automation/windows/Server.h"

#include <atomic>

namespace kartix::automation {
namespace {

/// Of the library, for as long as it is loaded.
struct Use {
  std::atomic<long> holders = 0;
  std::atomic<bool> componentMade = false;
};

Use& ofProcess() {
  static constinit Use use;
  return use;
}

}  // namespace

void ServerUse::begin() { ++ofProcess().holders; }
void ServerUse::end() { --ofProcess().holders; }
bool ServerUse::none() { return ofProcess().holders == 0 && !ofProcess().componentMade; }
void ServerUse::componentMade() { ofProcess().componentMade = true; }

HMODULE thisModule() {
  constexpr DWORD byAddress = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  HMODULE found = nullptr;
  GetModuleHandleExW(byAddress, reinterpret_cast<LPCWSTR>(&thisModule), &found);
  return found;
}

}  // namespace kartix::automation
