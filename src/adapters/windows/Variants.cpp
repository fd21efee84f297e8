#include "adapters/windows/System.h"

// After the system's own header.
#include <oleauto.h>

#include <limits>
#include <new>

#include "adapters/windows/Variants.h"
#include "adapters/windows/Wide.h"

namespace kartix::adapters::windows {
namespace {

BSTR newText(const std::string& utf8) {
  const std::wstring text = wide(utf8);
  const BSTR result = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  if (!result) throw std::bad_alloc();
  return result;
}

void put(VARIANT& to, std::int64_t number) {
  using Long = std::numeric_limits<LONG>;
  // Hosts of those days know no numbers of 64 bits.
  if (number >= Long::min() && number <= Long::max()) {
    to.vt = VT_I4;
    to.lVal = static_cast<LONG>(number);
  } else {
    to.vt = VT_R8;
    to.dblVal = static_cast<double>(number);
  }
}

struct Put {
  VARIANT& to;

  void operator()(std::monostate) const {}
  void operator()(bool value) const {
    to.vt = VT_BOOL;
    to.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  }
  void operator()(std::int64_t value) const { put(to, value); }
  void operator()(double value) const {
    to.vt = VT_R8;
    to.dblVal = value;
  }
  void operator()(const std::string& value) const {
    to.bstrVal = newText(value);
    to.vt = VT_BSTR;
  }
};

/// `from` as a value of type `type`, in a VARIANT of its own.
void change(VARIANT* to, VARIANT* from, VARTYPE type) {
  const HRESULT result = VariantChangeType(to, from, 0, type);
  if (FAILED(result)) throw platform::AutomationError(systemText(static_cast<unsigned long>(result)));
}

}  // namespace

Variant::Variant(const platform::Value& value) {
  VariantInit(&value_);
  std::visit(Put{value_}, static_cast<const platform::Value::Alternatives&>(value));
}

platform::Value Variant::value() {
  Variant plain;
  if (FAILED(VariantCopyInd(plain.get(), &value_))) throw std::bad_alloc();
  VARIANT& held = plain.value_;
  Variant changed;
  switch (held.vt) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_ERROR:  // an argument that was left out
      return {};
    case VT_BOOL:
      return held.boolVal != VARIANT_FALSE;
    case VT_R4:
      return static_cast<double>(held.fltVal);
    case VT_R8:
      return held.dblVal;
    case VT_I1:
    case VT_I2:
    case VT_I4:
    case VT_I8:
    case VT_INT:
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_UINT:
      change(changed.get(), &held, VT_I8);
      return std::int64_t{changed.value_.llVal};
    default:
      change(changed.get(), &held, VT_BSTR);
      return narrow({changed.value_.bstrVal, SysStringLen(changed.value_.bstrVal)});
  }
}

}  // namespace kartix::adapters::windows
