#include "adapters/windows/System.h"

// After the system's own header.
#include <combaseapi.h>
#include <oleauto.h>

#include <memory>
#include <utility>

#include "adapters/windows/Apartment.h"
#include "adapters/windows/Variants.h"
#include "adapters/windows/Wide.h"
#include "adapters/windows/Windows.h"

namespace kartix::adapters {
namespace {

using platform::AutomationError;
using windows::Apartment;
using windows::narrow;
using windows::systemText;
using windows::Variant;
using windows::wide;

std::string textOf(HRESULT failure) { return systemText(static_cast<unsigned long>(failure)); }

struct Release {
  void operator()(IUnknown* object) const { object->Release(); }
};
using Dispatch = std::unique_ptr<IDispatch, Release>;

/// What an object says of its failure.
class Failure {
 public:
  Failure() = default;
  ~Failure() {
    SysFreeString(info_.bstrDescription);
    SysFreeString(info_.bstrHelpFile);
    SysFreeString(info_.bstrSource);
  }
  Failure(const Failure&) = delete;
  Failure& operator=(const Failure&) = delete;

  EXCEPINFO* get() { return &info_; }

  std::string text(HRESULT result) {
    if (result != DISP_E_EXCEPTION) return textOf(result);
    if (info_.pfnDeferredFillIn) info_.pfnDeferredFillIn(&info_);
    std::string description = narrow({info_.bstrDescription, SysStringLen(info_.bstrDescription)});
    if (!description.empty()) return description;
    return info_.scode == 0 ? "Fehler " + std::to_string(info_.wCode) : textOf(info_.scode);
  }

 private:
  EXCEPINFO info_{};
};

class Object final : public platform::AutomationObject {
 public:
  explicit Object(Dispatch dispatch) : dispatch_(std::move(dispatch)) {}

  platform::Value call(std::string_view member, const std::vector<platform::Value>& arguments) override {
    std::wstring name = wide(member);
    LPOLESTR names = name.data();
    DISPID id = 0;
    const HRESULT found = dispatch_->GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
    if (FAILED(found)) throw AutomationError(textOf(found) + ": " + std::string(member));

    // The last argument comes first.
    std::vector<std::unique_ptr<Variant>> kept;
    std::vector<VARIANT> passed;
    for (auto value = arguments.rbegin(); value != arguments.rend(); ++value) {
      kept.push_back(std::make_unique<Variant>(*value));
      passed.push_back(*kept.back()->get());
    }
    DISPPARAMS parameters{passed.data(), nullptr, static_cast<UINT>(passed.size()), 0};
    Variant result;
    Failure failure;
    UINT wrong = 0;
    const HRESULT called =
        dispatch_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD | DISPATCH_PROPERTYGET, &parameters,
                          result.get(), failure.get(), &wrong);
    if (FAILED(called)) throw AutomationError(failure.text(called));
    return result.value();
  }

 private:
  Apartment apartment_;  ///< outlives the object
  Dispatch dispatch_;
};

std::optional<CLSID> classOf(std::string_view progId) {
  CLSID found{};
  if (FAILED(CLSIDFromProgID(wide(progId).c_str(), &found))) return std::nullopt;
  return found;
}

class AutomationClasses final : public platform::InstalledClasses {
 public:
  bool has(std::string_view progId) override {
    const Apartment apartment;
    return classOf(progId).has_value();
  }

  std::unique_ptr<platform::AutomationObject> createObject(std::string_view progId) override {
    const std::string refused = "Objekterstellung durch ActiveX-Komponente nicht möglich: " + std::string(progId);
    const Apartment apartment;
    const auto found = classOf(progId);
    if (!found) throw AutomationError(refused);
    void* made = nullptr;
    const HRESULT result = CoCreateInstance(*found, nullptr, CLSCTX_SERVER, IID_IDispatch, &made);
    Dispatch object(static_cast<IDispatch*>(made));
    if (FAILED(result) || !object) throw AutomationError(refused + " (" + textOf(result) + ")");
    return std::make_unique<Object>(std::move(object));
  }
};

}  // namespace

std::unique_ptr<platform::InstalledClasses> makeAutomationClasses() { return std::make_unique<AutomationClasses>(); }

}  // namespace kartix::adapters
