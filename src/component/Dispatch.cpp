#include "component/Dispatch.h"

#include <algorithm>
#include <initializer_list>
#include <limits>

#include "common/Values.h"

namespace kartix::dispatch {
namespace {

using Reason = Refusal::Reason;

/// The row called `name` of the first of `kinds` that has one. A property is known by name twice, get and let.
const Member& memberNamed(const Class& type, std::string_view name, std::initializer_list<Kind> kinds) {
  for (const Kind kind : kinds) {
    const auto found = std::find_if(type.members.begin(), type.members.end(),
                                    [&](const Member& member) { return member.kind == kind && member.name == name; });
    if (found != type.members.end()) return *found;
  }
  const char* const sought = kinds.size() > 1              ? "no method or readable property "
                             : *kinds.begin() == Kind::let ? "no writable property "
                                                           : "no readable property ";
  throw Refusal(Reason::unknownMember, std::string(type.name) + " has " + sought + std::string(name));
}

std::string_view typeName(Type type) {
  switch (type) {
    case Type::boolean:
      return "a Boolean";
    case Type::int16:
      return "a 16-bit integer";
    case Type::int32:
      return "a 32-bit integer";
    case Type::text:
      return "a text";
    case Type::none:
      break;
  }
  return "nothing";
}

template <class T>
bool within(std::int64_t number) {
  return number >= std::numeric_limits<T>::min() && number <= std::numeric_limits<T>::max();
}

/// What an argument is when the caller leaves it out.
Value absent(Type type) {
  switch (type) {
    case Type::boolean:
      return false;
    case Type::int16:
    case Type::int32:
      return std::int64_t{0};
    default:
      return std::string();
  }
}

bool holds(const Value& value, Type type) {
  switch (type) {
    case Type::boolean:
      return std::holds_alternative<bool>(value);
    case Type::int16:
    case Type::int32:
      return std::holds_alternative<std::int64_t>(value);
    case Type::text:
      return std::holds_alternative<std::string>(value);
    case Type::none:
      break;
  }
  return false;
}

/// Makes `value` one that the argument can take, or raises `Refusal`.
void fit(Value& value, const Argument& argument, const std::string& call) {
  const bool mayLack = argument.optional || argument.direction == Direction::out;
  if (mayLack && std::holds_alternative<std::monostate>(value)) value = absent(argument.type);
  const auto refuse = [&](Reason reason, std::string_view what) {
    throw Refusal(reason,
                  call + ": " + argument.name + " is " + std::string(what) + std::string(typeName(argument.type)));
  };
  if (!holds(value, argument.type)) refuse(Reason::wrongType, "to be ");
  const auto* const number = std::get_if<std::int64_t>(&value);
  const bool fits =
      !number || (argument.type == Type::int16 ? within<std::int16_t>(*number) : within<std::int32_t>(*number));
  if (!fits) refuse(Reason::outOfRange, "beyond ");
}

}  // namespace

const Class& classNamed(std::string_view name) {
  for (const Class& type : classes()) {
    if (type.name == name) return type;
  }
  throw Refusal(Reason::unknownClass, "no class " + std::string(name));
}

const Member& Class::inSlot(std::int64_t slot) const {
  if (slot < 1 || slot > std::ssize(members)) {
    throw Refusal(Reason::unknownMember, std::string(name) + " has no slot " + std::to_string(slot));
  }
  return members[static_cast<std::size_t>(slot) - 1];
}

Value Object::invoke(const Member& member, std::span<Value> given) {
  const auto expected = member.arguments();
  const auto needed = std::count_if(expected.begin(), expected.end(), [](const Argument& a) { return !a.optional; });
  const std::string call = std::string(type_->name) + "." + member.name;
  if (given.size() > expected.size() || given.size() < static_cast<std::size_t>(needed)) {
    throw Refusal(Reason::wrongCount, call + " takes " + std::to_string(expected.size()) + " arguments, not " +
                                          std::to_string(given.size()));
  }
  std::vector<Value> arguments(given.begin(), given.end());
  arguments.resize(expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) fit(arguments[i], expected[i], call);
  Value result = member.call(instance_.get(), arguments);
  for (std::size_t i = 0; i < given.size(); ++i) {
    if (expected[i].direction != Direction::in) given[i] = std::move(arguments[i]);
  }
  return result;
}

Value Object::call(std::string_view name, std::span<Value> arguments) {
  return invoke(memberNamed(*type_, name, {Kind::method, Kind::get}), arguments);
}

Value Object::get(std::string_view name) { return invoke(memberNamed(*type_, name, {Kind::get}), {}); }

void Object::let(std::string_view name, Value value) {
  invoke(memberNamed(*type_, name, {Kind::let}), std::span(&value, 1));
}

Value Object::callSlot(std::int64_t slot, std::span<Value> arguments) {
  return invoke(type_->inSlot(slot), arguments);
}

std::vector<std::pair<std::string, std::string>> properties(Object& object) {
  std::vector<std::pair<std::string, std::string>> values;
  for (const Member& member : object.type().members) {
    if (member.kind == Kind::get && member.count == 0)
      values.emplace_back(member.name, toText(object.get(member.name)));
  }
  return values;
}

}  // namespace kartix::dispatch
