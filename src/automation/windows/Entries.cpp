// The functions that the system finds the server by.

#include <windows.h>
#include <objbase.h>

#include <atomic>
#include <cwchar>
#include <new>

#include "automation/windows/Identifiers.h"
#include "automation/windows/Registration.h"
#include "automation/windows/ServedObject.h"
#include "automation/windows/Server.h"
#include "component/Dispatch.h"

namespace kartix::automation {
namespace {

/// Makes the objects of one class.
class ClassFactory final : public IClassFactory {
 public:
  ClassFactory(const dispatch::Class& type, const Identity& identity) : type_(type), identity_(identity) {}

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override {
    if (!object) return E_POINTER;
    *object = wanted == IID_IUnknown || wanted == IID_IClassFactory ? this : nullptr;
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++holders_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --holders_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID wanted, void** object) override {
    if (object) *object = nullptr;
    return outer ? CLASS_E_NOAGGREGATION : ServedObject::create(type_, identity_, wanted, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override {
    lock != FALSE ? ServerUse::begin() : ServerUse::end();
    return S_OK;
  }

 private:
  virtual ~ClassFactory() = default;

  const dispatch::Class& type_;
  const Identity& identity_;
  std::atomic<ULONG> holders_{1};
  ServerUse use_;
};

HRESULT getClassObject(REFCLSID classId, REFIID wanted, void** object) noexcept {
  if (!object) return E_POINTER;
  *object = nullptr;
  const auto known = identities();
  for (std::size_t i = 0; i < known.size(); ++i) {
    if (known[i].classId != classId) continue;
    auto* const factory = new (std::nothrow) ClassFactory(dispatch::classes()[i], known[i]);
    if (!factory) return E_OUTOFMEMORY;
    const HRESULT result = factory->QueryInterface(wanted, object);
    factory->Release();
    return result;
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

}  // namespace
}  // namespace kartix::automation

using namespace kartix::automation;

STDAPI DllGetClassObject(REFCLSID classId, REFIID wanted, LPVOID* object) {
  return getClassObject(classId, wanted, object);
}

STDAPI DllCanUnloadNow() { return ServerUse::none() ? S_OK : S_FALSE; }

STDAPI DllRegisterServer() { return registerServer(Scope::machine); }
STDAPI DllUnregisterServer() { return unregisterServer(Scope::machine); }

/// `regsvr32 /n /i:user` registers for the user alone.
STDAPI DllInstall(BOOL install, LPCWSTR commandLine) {
  const bool user = commandLine && _wcsicmp(commandLine, L"user") == 0;
  if (commandLine && *commandLine != L'\0' && !user) return E_INVALIDARG;
  const Scope scope = user ? Scope::user : Scope::machine;
  return install != FALSE ? registerServer(scope) : unregisterServer(scope);
}
