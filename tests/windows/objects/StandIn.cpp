// Stands in for the automation objects that an authority has installed: an in-process server whose objects perform
// the exchanges with the gateway of the settings. Which class an object is of is what the registry says of its
// identifier.

#include <windows.h>
#include <oaidl.h>
#include <psapi.h>

#include <array>
#include <atomic>
#include <exception>
#include <string>
#include <vector>

#include "automation/windows/Strings.h"
#include "automation/windows/Variants.h"
#include "component/Component.h"
#include "component/Dispatch.h"
#include "hostdb/Session.h"
#include "dialogs/Workplace.h"
#include "objects/GatewayObjects.h"

namespace {

using namespace kartix;
using automation::fromBstr;
using automation::fromWide;

constexpr const char* usageName = "KartixTest.Usage";

/// The component that the objects exchange with, in a session of its own.
Component& component() {
  static Component made{Setup{}};
  static const bool ready = [] {
    dispatch::Object kartix(dispatch::classNamed("Kartix"), made);
    std::array<dispatch::Value, 2> session = {"Vermittler", "4711"};
    return std::get<bool>(kartix.call("init", session));
  }();
  if (!ready) throw platform::AutomationError("Die Vermittlung ist nicht bereit");
  return made;
}

class Counted : public IDispatch {
 public:
  virtual ~Counted() = default;
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override {
    const bool known = wanted == IID_IUnknown || wanted == IID_IDispatch;
    *object = known ? this : nullptr;
    if (known) AddRef();
    return known ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++holders_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --holders_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override { return *count = 0, S_OK; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }

 private:
  std::atomic<ULONG> holders_ = 1;
};

class Object final : public Counted {
 public:
  explicit Object(const std::string& progId) {
    const Workplace& place = component().workplace();
    // When the change was recorded is what a host knows by itself.
    place.session.OperationCard.changedate = "20261124093000";
    object_ = objects::GatewayObjects({place.runtime, place.session, place.kba, place.login}).createObject(progId);
  }

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
    names_.push_back(fromWide(names[0]));
    *ids = static_cast<DISPID>(names_.size());
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID locale, WORD, DISPPARAMS* given, VARIANT* result,
                                   EXCEPINFO* failure, UINT*) override {
    try {
      std::vector<platform::Value> arguments;
      for (UINT i = given->cArgs; i > 0; --i) {
        arguments.push_back(automation::fromVariant(given->rgvarg[i - 1], dispatch::Type::text, locale));
      }
      const platform::Value answer = object_->call(names_.at(static_cast<std::size_t>(id) - 1), arguments);
      const bool number = std::holds_alternative<std::int64_t>(answer);
      if (result) automation::toVariant(answer, number ? dispatch::Type::int32 : dispatch::Type::text, *result);
      return S_OK;
    } catch (const std::exception& error) {
      *failure = {};
      failure->bstrDescription = automation::toBstr(error.what());
      return DISP_E_EXCEPTION;
    }
  }

 private:
  std::unique_ptr<platform::AutomationObject> object_;
  std::vector<std::string> names_;
};

/// What the process holds, so that hosts can look whether it grows: `Handles`, how many of them lie close together
/// (not every system counts them), and `WorkingSet` in kB.
class Usage final : public Counted {
 public:
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
    *ids = fromWide(names[0]) == "Handles" ? handles : workingSet;
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result, EXCEPINFO*,
                                   UINT*) override {
    PROCESS_MEMORY_COUNTERS memory{};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    result->vt = VT_I4;
    result->lVal = static_cast<LONG>(id == handles ? nextHandle() : memory.WorkingSetSize / 1024);
    return S_OK;
  }

 private:
  /// A new handle gets the lowest number that is free: their multiple of four grows with every one that stays.
  static std::uintptr_t nextHandle() {
    const HANDLE next = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    CloseHandle(next);
    return reinterpret_cast<std::uintptr_t>(next) / 4;
  }

  static constexpr DISPID handles = 1;
  static constexpr DISPID workingSet = 2;
};

class Factory final : public IClassFactory {
 public:
  explicit Factory(std::string progId) : progId_(std::move(progId)) {}
  virtual ~Factory() = default;
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override { return *object = this, AddRef(), S_OK; }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++holders_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --holders_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID wanted, void** object) override {
    try {
      Counted* const made = progId_ == usageName ? new Usage : static_cast<Counted*>(new Object(progId_));
      const HRESULT result = made->QueryInterface(wanted, object);
      made->Release();
      return result;
    } catch (const std::exception&) {
      return E_FAIL;
    }
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  std::string progId_;
  std::atomic<ULONG> holders_ = 1;
};

}  // namespace

STDAPI DllGetClassObject(REFCLSID classId, REFIID, LPVOID* object) {
  LPOLESTR name = nullptr;
  if (FAILED(ProgIDFromCLSID(classId, &name))) return CLASS_E_CLASSNOTAVAILABLE;
  *object = new Factory(fromWide(name));
  CoTaskMemFree(name);
  return S_OK;
}
STDAPI DllCanUnloadNow() { return S_FALSE; }
