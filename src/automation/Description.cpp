#include "automation/Description.h"

#include <iterator>

#include "automation/Failure.h"
#include "component/Dispatch.h"

namespace kartix::automation {
namespace {

using dispatch::Type;

static_assert(std::size(kartix_member{}.arguments) == dispatch::mostArguments);

std::int32_t typeOf(Type type) {
  switch (type) {
    case Type::boolean:
      return KARTIX_BOOLEAN;
    case Type::int16:
    case Type::int32:
      return KARTIX_INTEGER;
    case Type::text:
      return KARTIX_TEXT;
    case Type::none:
      break;
  }
  return KARTIX_EMPTY;
}

std::int32_t bitsOf(Type type) { return type == Type::int16 ? 16 : type == Type::int32 ? 32 : 0; }

std::int32_t kindOf(dispatch::Kind kind) {
  if (kind == dispatch::Kind::method) return KARTIX_METHOD;
  return kind == dispatch::Kind::get ? KARTIX_GET : KARTIX_LET;
}

std::int32_t directionOf(dispatch::Direction direction) {
  if (direction == dispatch::Direction::in) return KARTIX_IN;
  return direction == dispatch::Direction::inOut ? KARTIX_IN_OUT : KARTIX_OUT;
}

}  // namespace

kartix_member describe(std::string_view className, std::int32_t slot) {
  const dispatch::Member& member = dispatch::classNamed(className).inSlot(slot);
  kartix_member described{member.name,
                          kindOf(member.kind),
                          typeOf(member.result),
                          bitsOf(member.result),
                          static_cast<std::int32_t>(member.count),
                          {}};
  kartix_argument* next = described.arguments;
  for (const dispatch::Argument& argument : member.arguments()) {
    *next++ = {argument.name, typeOf(argument.type), bitsOf(argument.type), directionOf(argument.direction),
               argument.optional ? 1 : 0};
  }
  return described;
}

const char* className(std::int32_t index) {
  const auto classes = dispatch::classes();
  if (index < 0 || static_cast<std::size_t>(index) >= classes.size()) {
    throw Failure(KARTIX_UNKNOWN_CLASS, "no class number " + std::to_string(index));
  }
  return classes[static_cast<std::size_t>(index)].name.data();
}

}  // namespace kartix::automation
