#include "automation/windows/Functions.h"

#include <array>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "automation/windows/Failures.h"
#include "automation/windows/ServedObject.h"

namespace kartix::automation {
namespace {

constexpr std::size_t mostSlots = 96;
constexpr std::size_t mostWords = dispatch::mostArguments + 1;  // the arguments, and where the result goes

template <class Function>
const void* address(Function* function) {
  return reinterpret_cast<const void*>(function);
}

HRESULT STDMETHODCALLTYPE queryInterface(ServedObject* self, REFIID wanted, void** object) {
  return self->queryInterface(wanted, object);
}
ULONG STDMETHODCALLTYPE addRef(ServedObject* self) { return self->addRef(); }
ULONG STDMETHODCALLTYPE release(ServedObject* self) { return self->release(); }

HRESULT STDMETHODCALLTYPE getTypeInfoCount(ServedObject*, UINT* count) {
  if (!count) return E_POINTER;
  *count = 1;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE getTypeInfo(ServedObject* self, UINT index, LCID, ITypeInfo** info) {
  if (!info) return E_POINTER;
  *info = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  std::array<wchar_t, MAX_PATH> file{};
  const DWORD length = GetModuleFileNameW(thisModule(), file.data(), static_cast<DWORD>(file.size()));
  if (length == 0 || length == file.size()) return TYPE_E_CANTLOADLIBRARY;
  ITypeLib* library = nullptr;
  HRESULT result = LoadTypeLibEx(file.data(), REGKIND_NONE, &library);
  if (FAILED(result)) return result;
  result = library->GetTypeInfoOfGuid(self->identity().interfaceId, info);
  library->Release();
  return result;
}

HRESULT STDMETHODCALLTYPE getIdsOfNames(ServedObject* self, REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  return self->idsOfNames(names, count, ids);
}

HRESULT STDMETHODCALLTYPE invoke(ServedObject* self, DISPID id, REFIID, LCID locale, WORD flags, DISPPARAMS* given,
                                 VARIANT* result, EXCEPINFO* failure, UINT* argument) {
  return self->invoke(id, flags, given, locale, result, failure, argument);
}

/// The function in `slot` of a dual interface, for as many words as it is passed. On 32-bit systems the called
/// function takes them from the stack, so their number must be right; every type of the table takes up one word.
template <std::size_t slot, class... Word>
HRESULT STDMETHODCALLTYPE entry(ServedObject* self, Word... words) {
  const std::array<std::uintptr_t, sizeof...(Word)> list = {words...};
  return self->callSlot(slot, list);
}

template <std::size_t>
using WordAt = std::uintptr_t;

template <std::size_t slot, std::size_t... i>
const void* entryFor(std::index_sequence<i...>) {
  return address(&entry<slot, WordAt<i>...>);
}

template <std::size_t slot, std::size_t... words>
const void* entryFor(std::size_t count, std::index_sequence<words...>) {
  const void* found = nullptr;
  ((words == count ? void(found = entryFor<slot>(std::make_index_sequence<words>())) : void()), ...);
  return found;
}

std::size_t wordsOf(const dispatch::Member& member) {
  return member.count + (member.result == dispatch::Type::none ? 0 : 1);
}

template <std::size_t... i>
void appendEntries(std::vector<const void*>& functions, std::span<const dispatch::Member> members,
                   std::index_sequence<i...>) {
  const auto append = [&]<std::size_t index>(std::integral_constant<std::size_t, index>) {
    if (index < members.size()) {
      functions.push_back(entryFor<index + 1>(wordsOf(members[index]), std::make_index_sequence<mostWords + 1>()));
    }
  };
  (append(std::integral_constant<std::size_t, i>()), ...);
}

std::vector<const void*> makeFunctions(const dispatch::Class& type) {
  if (type.members.size() > mostSlots) throw std::length_error("more slots than the dual interface has functions");
  std::vector<const void*> functions = {
      address(&queryInterface), address(&addRef),        address(&release), address(&getTypeInfoCount),
      address(&getTypeInfo),    address(&getIdsOfNames), address(&invoke)};
  appendEntries(functions, type.members, std::make_index_sequence<mostSlots>());
  return functions;
}

}  // namespace

const void* const* functionsOf(const dispatch::Class& type) {
  static std::mutex mutex;
  static std::map<std::string_view, const std::vector<const void*>> made;
  const std::lock_guard lock(mutex);
  auto found = made.find(type.name);
  if (found == made.end()) found = made.emplace(type.name, makeFunctions(type)).first;
  return found->second.data();
}

}  // namespace kartix::automation
