#include "automation/windows/ServedObject.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "automation/windows/Failures.h"
#include "automation/windows/Functions.h"
#include "automation/windows/Variants.h"
#include "common/Text.h"
#include "component/Component.h"

namespace kartix::automation {
namespace {

using dispatch::Argument;
using dispatch::Direction;
using dispatch::Kind;
using dispatch::Member;
using dispatch::Type;
using platform::Value;

/// The identifier of a name is the first of its slots, so that both halves of a property have one.
DISPID idOf(const dispatch::Class& type, std::string_view name) {
  const auto found = std::find_if(type.members.begin(), type.members.end(),
                                  [&](const Member& member) { return text::equalNoCase(member.name, name); });
  return found == type.members.end() ? DISPID_UNKNOWN : static_cast<DISPID>(found - type.members.begin()) + 1;
}

/// The slot that a caller of `id` means who asks for it in the way that `flags` say.
std::size_t slotOf(const dispatch::Class& type, DISPID id, WORD flags) {
  const std::string_view name = type.inSlot(id).name;
  const auto means = [&](const Member& member) {
    if (member.name != name) return false;
    if ((flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0) return member.kind == Kind::let;
    if (member.kind == Kind::method) return (flags & DISPATCH_METHOD) != 0;
    return member.kind == Kind::get && (flags & (DISPATCH_PROPERTYGET | DISPATCH_METHOD)) != 0;
  };
  const auto found = std::find_if(type.members.begin(), type.members.end(), means);
  if (found == type.members.end()) throw CallFailure(DISP_E_MEMBERNOTFOUND);
  return static_cast<std::size_t>(found - type.members.begin()) + 1;
}

/// Where in `given` the arguments of `member` stand; `given.cArgs` for one that was left out.
std::vector<UINT> placesOf(const Member& member, const DISPPARAMS& given) {
  if (given.cNamedArgs > given.cArgs) throw CallFailure(E_INVALIDARG);
  std::vector<UINT> places(member.count, given.cArgs);
  const UINT positional = given.cArgs - given.cNamedArgs;
  if (given.cArgs > member.count) throw CallFailure(DISP_E_BADPARAMCOUNT);
  for (UINT i = 0; i < positional; ++i) places[i] = given.cArgs - 1 - i;
  for (UINT i = 0; i < given.cNamedArgs; ++i) {
    const DISPID name = given.rgdispidNamedArgs[i];
    const std::size_t place = name == DISPID_PROPERTYPUT ? member.count - 1 : static_cast<std::size_t>(name);
    if (place >= places.size() || places[place] != given.cArgs) throw CallFailure(DISP_E_PARAMNOTFOUND, i);
    places[place] = i;
  }
  return places;
}

/// Runs `action`; a failure is told of the argument at fault, which is passed in `place`.
template <class Action>
void atArgument(UINT place, Action action) {
  try {
    action();
  } catch (const CallFailure& failure) {
    throw CallFailure(failure.code(), place);
  }
}

std::vector<Value> valuesOf(const Member& member, const std::vector<UINT>& places, const DISPPARAMS& given,
                            LCID locale) {
  std::vector<Value> values(member.count);
  for (std::size_t i = 0; i < member.count; ++i) {
    const Argument& argument = member.list[i];
    const bool absent = places[i] == given.cArgs || isAbsent(given.rgvarg[places[i]]);
    if (absent && !argument.optional) throw CallFailure(DISP_E_PARAMNOTOPTIONAL);
    if (absent || argument.direction == Direction::out) continue;
    atArgument(places[i], [&] { values[i] = fromVariant(given.rgvarg[places[i]], argument.type, locale); });
  }
  return values;
}

void writeAllBack(const Member& member, const std::vector<UINT>& places, const DISPPARAMS& given,
                  const std::vector<Value>& values, LCID locale) {
  for (std::size_t i = 0; i < member.count; ++i) {
    const Argument& argument = member.list[i];
    if (argument.direction == Direction::in || places[i] == given.cArgs) continue;
    atArgument(places[i], [&] { writeBack(values[i], argument.type, given.rgvarg[places[i]], locale); });
  }
}

Value fromWord(std::uintptr_t word, const Argument& argument) {
  if (argument.direction != Direction::in) {
    auto* const place = reinterpret_cast<BSTR*>(word);
    if (!place) throw CallFailure(E_POINTER);
    return fromBstr(*place);
  }
  switch (argument.type) {
    case Type::boolean:
      return static_cast<VARIANT_BOOL>(word) != VARIANT_FALSE;
    case Type::int16:
      return std::int64_t{static_cast<SHORT>(word)};
    case Type::int32:
      return std::int64_t{static_cast<LONG>(word)};
    case Type::text:
      return fromBstr(reinterpret_cast<BSTR>(word));
    case Type::none:
      break;
  }
  return {};
}

/// Puts `value` where `word` points to.
void toWord(const Value& value, Type type, std::uintptr_t word) {
  VARIANT made;
  toVariant(value, type, made);
  switch (type) {
    case Type::boolean:
      *reinterpret_cast<VARIANT_BOOL*>(word) = made.boolVal;
      return;
    case Type::int16:
      *reinterpret_cast<SHORT*>(word) = made.iVal;
      return;
    case Type::int32:
      *reinterpret_cast<LONG*>(word) = made.lVal;
      return;
    default:
      *reinterpret_cast<BSTR*>(word) = made.bstrVal;
  }
}

/// Calls the member in `slot` with what was passed to the dual interface.
void callWithWords(dispatch::Object& object, std::size_t slot, std::span<const std::uintptr_t> words) {
  const Member& member = object.type().inSlot(static_cast<std::int64_t>(slot));
  std::vector<Value> values(member.count);
  for (std::size_t i = 0; i < member.count; ++i) values[i] = fromWord(words[i], member.list[i]);
  const bool answers = member.result != Type::none;
  if (answers && words[member.count] == 0) throw CallFailure(E_POINTER);
  const Value result = object.callSlot(static_cast<std::int64_t>(slot), values);
  for (std::size_t i = 0; i < member.count; ++i) {
    if (member.list[i].direction == Direction::in) continue;
    BSTR written = toBstr(std::get<std::string>(values[i]));
    std::swap(*reinterpret_cast<BSTR*>(words[i]), written);
    SysFreeString(written);
  }
  if (answers) toWord(result, member.result, words[member.count]);
}

}  // namespace

ServedObject::ServedObject(const dispatch::Class& type, const Identity& identity)
    : functions_(functionsOf(type)), identity_(identity), object_(type, Component::shared()) {
  ServerUse::componentMade();
}

HRESULT ServedObject::create(const dispatch::Class& type, const Identity& identity, REFIID wanted, void** object) {
  if (!object) return E_POINTER;
  *object = nullptr;
  try {
    // Owned by its holders from here on.
    ServedObject* const made = std::unique_ptr<ServedObject>(new ServedObject(type, identity)).release();
    const HRESULT result = made->queryInterface(wanted, object);
    made->release();
    return result;
  } catch (...) {
    return tell(currentFailure(), identity);
  }
}

HRESULT ServedObject::queryInterface(REFIID wanted, void** object) {
  if (!object) return E_POINTER;
  const bool own = wanted == IID_IUnknown || wanted == IID_IDispatch || wanted == identity_.interfaceId;
  *object = own                               ? static_cast<void*>(this)
            : wanted == IID_ISupportErrorInfo ? static_cast<ISupportErrorInfo*>(&errorSupport_)
                                              : nullptr;
  if (!*object) return E_NOINTERFACE;
  addRef();
  return S_OK;
}

ULONG ServedObject::addRef() { return ++holders_; }

ULONG ServedObject::release() {
  const ULONG left = --holders_;
  if (left == 0) delete this;
  return left;
}

HRESULT ServedObject::idsOfNames(LPOLESTR* names, UINT count, DISPID* ids) const {
  if (!names || !ids || count == 0) return E_INVALIDARG;
  try {
    std::fill_n(ids, count, DISPID_UNKNOWN);
    const dispatch::Class& type = object_.type();
    ids[0] = idOf(type, fromWide(names[0]));
    if (ids[0] == DISPID_UNKNOWN) return DISP_E_UNKNOWNNAME;
    const auto arguments = type.inSlot(ids[0]).arguments();
    for (UINT i = 1; i < count; ++i) {
      const std::string name = fromWide(names[i]);
      const auto found = std::find_if(arguments.begin(), arguments.end(),
                                      [&](const Argument& one) { return text::equalNoCase(one.name, name); });
      if (found != arguments.end()) ids[i] = static_cast<DISPID>(found - arguments.begin());
    }
    return std::count(ids, ids + count, DISPID_UNKNOWN) == 0 ? S_OK : DISP_E_UNKNOWNNAME;
  } catch (...) {
    return tell(currentFailure(), identity_);
  }
}

HRESULT ServedObject::invoke(DISPID id, WORD flags, DISPPARAMS* given, LCID locale, VARIANT* result,
                             EXCEPINFO* failure, UINT* argument) {
  if (!given) return E_POINTER;
  // What the call does may make the host let go of the object.
  addRef();
  HRESULT outcome = S_OK;
  try {
    if (result) VariantInit(result);
    const std::size_t slot = slotOf(object_.type(), id, flags);
    const Member& member = object_.type().inSlot(static_cast<std::int64_t>(slot));
    const std::vector<UINT> places = placesOf(member, *given);
    std::vector<Value> values = valuesOf(member, places, *given, locale);
    const Value answer = object_.callSlot(static_cast<std::int64_t>(slot), values);
    writeAllBack(member, places, *given, values, locale);
    if (result) toVariant(answer, member.result, *result);
  } catch (...) {
    const Failed failed = currentFailure();
    if (argument && failed.argument != CallFailure::noArgument) *argument = failed.argument;
    outcome = tell(failed, identity_, failure);
  }
  release();
  return outcome;
}

HRESULT ServedObject::callSlot(std::size_t slot, std::span<const std::uintptr_t> words) {
  addRef();
  HRESULT outcome = S_OK;
  try {
    callWithWords(object_, slot, words);
  } catch (...) {
    outcome = tell(currentFailure(), identity_);
  }
  release();
  return outcome;
}

}  // namespace kartix::automation
