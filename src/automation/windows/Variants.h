#pragma once

#include <windows.h>
#include <oleauto.h>

#include <stdexcept>

#include "automation/windows/Strings.h"
#include "component/Dispatch.h"

namespace kartix::automation {

/// A call by way of the system that cannot be done, with the code for it and the argument at fault.
class CallFailure : public std::runtime_error {
 public:
  static constexpr UINT noArgument = ~UINT{0};

  explicit CallFailure(HRESULT code, UINT argument = noArgument)
      : std::runtime_error("automation call"), code_(code), argument_(argument) {}
  HRESULT code() const { return code_; }
  /// Its index among those that were passed.
  UINT argument() const { return argument_; }

 private:
  HRESULT code_;
  UINT argument_;
};

/// True for what stands in the place of an argument that was left out.
bool isAbsent(const VARIANT& value);

/// `value`, converted to `type` as the system converts, by the rules of language `locale`. What `value` refers to is
/// read. Raises `CallFailure` when that cannot be done.
platform::Value fromVariant(const VARIANT& value, dispatch::Type type, LCID locale);

/// Puts `value` into `target`, which is empty or holds nothing that is its own.
void toVariant(const platform::Value& value, dispatch::Type type, VARIANT& target);

/// Writes `value` back into the variable that `reference` refers to, in the type that the variable has; what it held
/// is freed. A `reference` that refers to nothing was passed by value, and keeps it.
void writeBack(const platform::Value& value, dispatch::Type type, const VARIANT& reference, LCID locale);

}  // namespace kartix::automation
