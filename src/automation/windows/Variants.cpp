#include "automation/windows/Variants.h"

#include <cstdint>
#include <new>
#include <utility>

namespace kartix::automation {
namespace {

using dispatch::Type;
using platform::Value;

/// A value of the system's that is freed with this object.
class HeldVariant {
 public:
  HeldVariant() { VariantInit(&value_); }
  ~HeldVariant() { VariantClear(&value_); }
  HeldVariant(const HeldVariant&) = delete;
  HeldVariant& operator=(const HeldVariant&) = delete;

  VARIANT& operator*() { return value_; }

 private:
  VARIANT value_;
};

VARTYPE variantType(Type type) {
  switch (type) {
    case Type::boolean:
      return VT_BOOL;
    case Type::int16:
      return VT_I2;
    case Type::int32:
      return VT_I4;
    case Type::text:
      return VT_BSTR;
    case Type::none:
      break;
  }
  return VT_EMPTY;
}

void check(HRESULT result) {
  if (result == E_OUTOFMEMORY) throw std::bad_alloc();
  if (FAILED(result)) throw CallFailure(result);
}

/// What `value` holds or refers to, in a value of its own.
void copyOf(const VARIANT& value, VARIANT& copy) {
  // A reference to nothing would be followed.
  if ((value.vt & VT_BYREF) != 0 && !value.byref) throw CallFailure(E_POINTER);
  check(VariantCopyInd(&copy, const_cast<VARIANT*>(&value)));
}

Value valueIn(const VARIANT& value) {
  switch (value.vt) {
    case VT_BOOL:
      return value.boolVal != VARIANT_FALSE;
    case VT_I2:
      return std::int64_t{value.iVal};
    case VT_I4:
      return std::int64_t{value.lVal};
    case VT_BSTR:
      return fromBstr(value.bstrVal);
    default:
      return {};
  }
}

}  // namespace

BSTR toBstr(std::string_view utf8) {
  const std::u16string text = utf16::encode(utf8);
  BSTR made = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()), static_cast<UINT>(text.size()));
  if (!made) throw std::bad_alloc();
  return made;
}

bool isAbsent(const VARIANT& value) {
  if (value.vt == (VT_BYREF | VT_VARIANT)) return value.pvarVal && isAbsent(*value.pvarVal);
  return value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND;
}

Value fromVariant(const VARIANT& value, Type type, LCID locale) {
  HeldVariant held;
  copyOf(value, *held);
  // A variable that nothing was written to yet is the empty text, 0 or False.
  if ((*held).vt == VT_NULL) throw CallFailure(DISP_E_TYPEMISMATCH);
  if ((*held).vt != variantType(type)) check(VariantChangeTypeEx(&*held, &*held, locale, 0, variantType(type)));
  return valueIn(*held);
}

void toVariant(const Value& value, Type type, VARIANT& target) {
  VARIANT made;
  VariantInit(&made);
  made.vt = variantType(type);
  if (const auto* const text = std::get_if<std::string>(&value)) {
    made.bstrVal = toBstr(*text);
  } else if (const auto* const truth = std::get_if<bool>(&value)) {
    made.boolVal = *truth ? VARIANT_TRUE : VARIANT_FALSE;
  } else if (const auto* const number = std::get_if<std::int64_t>(&value)) {
    if (type == Type::int16) made.iVal = static_cast<SHORT>(*number);
    if (type == Type::int32) made.lVal = static_cast<LONG>(*number);
  } else {
    made.vt = VT_EMPTY;
  }
  target = made;
}

void writeBack(const Value& value, Type type, const VARIANT& reference, LCID locale) {
  if ((reference.vt & VT_BYREF) == 0) return;
  HeldVariant held;
  toVariant(value, type, *held);
  if (reference.vt == (VT_BYREF | VT_VARIANT)) {
    VARIANT& variable = *reference.pvarVal;
    if ((variable.vt & VT_BYREF) != 0) return writeBack(value, type, variable, locale);
    check(VariantClear(&variable));
    std::swap(variable, *held);
    return;
  }
  const VARTYPE wanted = reference.vt & static_cast<VARTYPE>(~VT_BYREF);
  if (wanted != variantType(type)) check(VariantChangeTypeEx(&*held, &*held, locale, 0, wanted));
  switch (wanted) {
    case VT_BSTR:
      std::swap(*reference.pbstrVal, (*held).bstrVal);
      return;
    case VT_BOOL:
      *reference.pboolVal = (*held).boolVal;
      return;
    case VT_I2:
      *reference.piVal = (*held).iVal;
      return;
    case VT_I4:
      *reference.plVal = (*held).lVal;
      return;
    default:
      throw CallFailure(DISP_E_TYPEMISMATCH);
  }
}

}  // namespace kartix::automation
