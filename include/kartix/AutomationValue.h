#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace kartix {

/// A value as it passes between the component and an automation object of the host. Texts are UTF-8.
struct AutomationValue : std::variant<std::monostate, bool, std::int64_t, double, std::string> {
  using Alternatives = std::variant<std::monostate, bool, std::int64_t, double, std::string>;
  using Alternatives::Alternatives;

  AutomationValue() = default;
  AutomationValue(const AutomationValue& other) : Alternatives(copied(other)) {}
  AutomationValue(AutomationValue&&) noexcept = default;
  AutomationValue& operator=(const AutomationValue& other) { return *this = AutomationValue(other); }
  AutomationValue& operator=(AutomationValue&&) noexcept = default;
  ~AutomationValue() = default;

 private:
  /// With some standard libraries a variant whose text cannot be copied destroys what was never made.
  static Alternatives copied(const Alternatives& other) {
    if (const auto* const text = std::get_if<std::string>(&other)) return std::string(*text);
    return other;
  }
};

}  // namespace kartix
