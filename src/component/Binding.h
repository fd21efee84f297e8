#pragma once

#include <cstdint>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "component/Dispatch.h"

/// Makes rows of the dispatch table out of C++ members: types come from the signature, only names are told.
namespace kartix::dispatch {

/// How an argument or result of the C++ type passes as a value.
template <class T>
struct Passing;

template <>
struct Passing<void> {
  static constexpr Type type = Type::none;
};

template <>
struct Passing<bool> {
  static constexpr Type type = Type::boolean;
  static bool from(Value& value) { return std::get<bool>(value); }
};

template <>
struct Passing<std::int16_t> {
  static constexpr Type type = Type::int16;
  static std::int16_t from(Value& value) { return static_cast<std::int16_t>(std::get<std::int64_t>(value)); }
};

template <>
struct Passing<std::int32_t> {
  static constexpr Type type = Type::int32;
  static std::int32_t from(Value& value) { return static_cast<std::int32_t>(std::get<std::int64_t>(value)); }
};

template <>
struct Passing<std::string> {
  static constexpr Type type = Type::text;
};

template <>
struct Passing<const std::string&> : Passing<std::string> {
  static const std::string& from(Value& value) { return std::get<std::string>(value); }
};

template <>
struct Passing<std::string&> : Passing<std::string> {
  static std::string& from(Value& value) { return std::get<std::string>(value); }
};

template <>
struct Passing<std::string_view> : Passing<std::string> {
  static std::string_view from(Value& value) { return std::get<std::string>(value); }
};

inline Value valueOf(bool result) { return result; }
inline Value valueOf(std::int32_t result) { return std::int64_t{result}; }
inline Value valueOf(std::int16_t result) { return std::int64_t{result}; }
inline Value valueOf(const std::string& result) { return result; }

/// Name of an argument in a row.
struct Name {
  constexpr Name(const char* name) : text(name) {}
  constexpr Name(const char* name, bool isOptional, bool isOut) : text(name), optional(isOptional), out(isOut) {}

  const char* text;
  bool optional = false;
  bool out = false;
};
using Names = std::initializer_list<Name>;

constexpr Name optional(const char* name) { return {name, true, false}; }
constexpr Name out(const char* name) { return {name, false, true}; }

/// What there is to know of the member function `member` of `T`.
template <auto member, class T, class R, class... A>
struct Callable {
  static constexpr Type result = Passing<std::remove_cvref_t<R>>::type;

  static consteval Member row(const char* name, Kind kind, Names names) {
    if (names.size() != sizeof...(A)) throw std::logic_error("not as many names as arguments");
    Member made{name, kind, result, {}, sizeof...(A), &call};
    std::size_t i = 0;
    ((made.list[i] = argument<A>(names.begin()[i]), ++i), ...);
    return made;
  }

 private:
  template <class Parameter>
  static consteval Argument argument(const Name& name) {
    constexpr bool writable = std::is_same_v<Parameter, std::string&>;
    if (name.out && !writable) throw std::logic_error("an out argument that cannot be written");
    const Direction direction = name.out ? Direction::out : writable ? Direction::inOut : Direction::in;
    return {name.text, Passing<Parameter>::type, direction, name.optional};
  }

  static Value call(void* object, std::span<Value> arguments) {
    return spread(object, arguments, std::index_sequence_for<A...>());
  }

  template <std::size_t... i>
  static Value spread(void* object, [[maybe_unused]] std::span<Value> arguments, std::index_sequence<i...>) {
    const auto run = [&]() -> R {
      if constexpr (std::is_member_function_pointer_v<decltype(member)>) {
        return (static_cast<T*>(object)->*member)(Passing<A>::from(arguments[i])...);
      } else {
        return member(Passing<A>::from(arguments[i])...);
      }
    };
    if constexpr (std::is_void_v<R>) {
      run();
      return {};
    } else {
      return valueOf(run());
    }
  }
};

template <auto member, class R, class T, class... A>
consteval auto callable(R (T::*)(A...)) -> Callable<member, T, R, A...>;
template <auto member, class R, class T, class... A>
consteval auto callable(R (T::*)(A...) const) -> Callable<member, T, R, A...>;
template <auto member, class R, class... A>
consteval auto callable(R (*)(A...)) -> Callable<member, void, R, A...>;

/// A method, or a static function of the class.
template <auto member>
consteval Member method(const char* name, Names names = {}) {
  return decltype(callable<member>(member))::row(name, Kind::method, names);
}

template <class T>
struct FieldOwner;
template <class T>
struct FieldOwner<std::string T::*> {
  using type = T;
};

template <auto field>
std::string& fieldIn(void* object) {
  return static_cast<typename FieldOwner<decltype(field)>::type*>(object)->*field;
}

/// The reading half of a property: a field, or a function that may take an index.
template <auto member>
consteval Member get(const char* name, Names names = {}) {
  if constexpr (std::is_member_function_pointer_v<decltype(member)>) {
    return decltype(callable<member>(member))::row(name, Kind::get, names);
  } else {
    return {name, Kind::get, Type::text,
            {},   0,         [](void* object, std::span<Value>) -> Value {
              return fieldIn<member>(object); }};
  }
}

/// The writing half of a property.
template <auto member>
consteval Member let(const char* name) {
  if constexpr (std::is_member_function_pointer_v<decltype(member)>) {
    return decltype(callable<member>(member))::row(name, Kind::let, {"value"});
  } else {
    return {name,
            Kind::let,
            Type::none,
            {Argument{"value", Type::text}},
            1,
            [](void* object, std::span<Value> arguments) -> Value {
              fieldIn<member>(object) = std::get<std::string>(arguments.front());
              return {};
            }};
  }
}

/// A property that is a field: get, then let.
template <auto field>
consteval std::array<Member, 2> property(const char* name) {
  return {get<field>(name), let<field>(name)};
}

template <class Row>
inline constexpr std::size_t rowCount = 1;
template <std::size_t n>
inline constexpr std::size_t rowCount<std::array<Member, n>> = n;

/// The rows of a class, single ones and those that come together, one after the other.
template <class... Rows>
consteval auto rows(const Rows&... parts) {
  std::array<Member, (rowCount<Rows> + ...)> all{};
  std::size_t next = 0;
  const auto add = [&](const auto& part) {
    if constexpr (std::is_same_v<decltype(part), const Member&>) {
      all[next++] = part;
    } else {
      for (const Member& member : part) all[next++] = member;
    }
  };
  (add(parts), ...);
  return all;
}

}  // namespace kartix::dispatch
