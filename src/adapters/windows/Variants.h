#pragma once

#include <oaidl.h>

#include "platform/ObjectClasses.h"

namespace kartix::adapters::windows {

/// A VARIANT that gives back what it holds.
class Variant {
 public:
  Variant() { VariantInit(&value_); }
  /// Raises `std::bad_alloc` when a text finds no memory.
  explicit Variant(const platform::Value& value);
  ~Variant() { VariantClear(&value_); }
  Variant(const Variant&) = delete;
  Variant& operator=(const Variant&) = delete;

  VARIANT* get() { return &value_; }

  /// What it holds, with references followed: numbers and texts as such, dates and amounts as the system writes them,
  /// an object as its default property. Raises `AutomationError` for what is none of these.
  platform::Value value();

 private:
  VARIANT value_;
};

}  // namespace kartix::adapters::windows
