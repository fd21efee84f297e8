#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/ObjectClasses.h"

namespace kartix {

class Component;

/// The four public classes as data, for whoever calls them by name or by slot: every member in the order of the
/// slots. The rows stand in `Classes.cpp`.
namespace dispatch {

using platform::Value;

enum class Type { none, boolean, int16, int32, text };
enum class Direction { in, inOut, out };
/// An indexed property is a `get` with arguments.
enum class Kind { method, get, let };

struct Argument {
  const char* name = "";
  Type type = Type::none;
  Direction direction = Direction::in;
  bool optional = false;  ///< left out, it is False or the empty text
};

inline constexpr std::size_t mostArguments = 8;

struct Member {
  const char* name = "";
  Kind kind = Kind::method;
  Type result = Type::none;
  std::array<Argument, mostArguments> list = {};
  std::size_t count = 0;  ///< how many of `list` there are
  /// Calls the member of `object` with values of exactly the types of `list`; out arguments are written back. A
  /// number is a `std::int64_t` within the range of its type.
  Value (*call)(void* object, std::span<Value> arguments) = nullptr;

  constexpr std::span<const Argument> arguments() const { return std::span(list).first(count); }
};

struct Class {
  std::string_view name;
  std::span<const Member> members;  ///< slot 1 first
  std::shared_ptr<void> (*create)(Component& component);

  /// The member in `slot`, which begins at 1. Raises `Refusal`.
  const Member& inSlot(std::int64_t slot) const;
};

/// The four classes.
std::span<const Class> classes();

/// Why a call by name was refused before anything was called.
class Refusal : public std::runtime_error {
 public:
  enum class Reason { unknownClass, unknownMember, wrongCount, wrongType, outOfRange };

  Refusal(Reason reason, const std::string& text) : std::runtime_error(text), reason_(reason) {}
  Reason reason() const { return reason_; }

 private:
  Reason reason_;
};

/// The class called `name`. Raises `Refusal`.
const Class& classNamed(std::string_view name);

/// An object of one of the four classes.
class Object {
 public:
  Object(const Class& type, Component& component) : type_(&type), instance_(type.create(component)) {}

  const Class& type() const { return *type_; }

  // All of these raise `Refusal` when there is no such member, or when the number, the types or the ranges of the
  // arguments are not its own. Trailing optional arguments may be left out, out arguments may be empty.

  /// Calls the method `name`, or reads the property `name`. Arguments are written back.
  Value call(std::string_view name, std::span<Value> arguments);
  Value get(std::string_view name);
  void let(std::string_view name, Value value);
  Value callSlot(std::int64_t slot, std::span<Value> arguments);

 private:
  Value invoke(const Member& member, std::span<Value> arguments);

  const Class* type_;
  std::shared_ptr<void> instance_;
};

/// Names and values of all properties of `object` that can be read without an index, in the order of their slots.
std::vector<std::pair<std::string, std::string>> properties(Object& object);

}  // namespace dispatch
}  // namespace kartix
