#pragma once

#include <oaidl.h>

#include <atomic>
#include <cstdint>
#include <span>

#include "automation/windows/Identifiers.h"
#include "automation/windows/Server.h"
#include "component/Dispatch.h"

namespace kartix::automation {

/// An object of one of the four classes as hosts hold it: through `IDispatch`, or through the dual interface of its
/// class, whose functions stand in the order of the slots of the table. Either way its members are called through
/// `dispatch::Object`. Counted by its holders; made on one thread and called there (the system sees to that).
class ServedObject {
 public:
  /// A new object, held once, as interface `wanted`.
  static HRESULT create(const dispatch::Class& type, const Identity& identity, REFIID wanted, void** object);

  HRESULT queryInterface(REFIID wanted, void** object);
  ULONG addRef();
  ULONG release();

  HRESULT idsOfNames(LPOLESTR* names, UINT count, DISPID* ids) const;
  HRESULT invoke(DISPID id, WORD flags, DISPPARAMS* given, LCID locale, VARIANT* result, EXCEPINFO* failure,
                 UINT* argument);
  /// `words` are the arguments of the dual interface's function in `slot`, as they were passed.
  HRESULT callSlot(std::size_t slot, std::span<const std::uintptr_t> words);

  const Identity& identity() const { return identity_; }

 private:
  /// Says for the dual interface that failures have words.
  class ErrorSupport : public ISupportErrorInfo {
   public:
    explicit ErrorSupport(ServedObject& owner) : owner_(owner) {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID wanted, void** object) override {
      return owner_.queryInterface(wanted, object);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return owner_.addRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return owner_.release(); }
    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID id) override {
      return id == owner_.identity_.interfaceId ? S_OK : S_FALSE;
    }

   private:
    ServedObject& owner_;
  };

  ServedObject(const dispatch::Class& type, const Identity& identity);

  const void* const* functions_;  // the first word of an object is where its holders find its functions
  std::atomic<ULONG> holders_{1};
  const Identity& identity_;
  dispatch::Object object_;
  ErrorSupport errorSupport_{*this};
  ServerUse use_;
};

}  // namespace kartix::automation
