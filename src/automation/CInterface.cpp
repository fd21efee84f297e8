#include <exception>
#include <new>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "automation/Description.h"
#include "automation/ErrorText.h"
#include "automation/Failure.h"
#include "automation/HostClass.h"
#include "automation/Objects.h"
#include "automation/Values.h"
#include "component/Dispatch.h"
#include "kartix/Hosting.h"
#include "kartix/ObjectClasses.h"
#include "kartix/automation.h"

namespace kartix::automation {
namespace {

using dispatch::Refusal;

std::int32_t codeOf(Refusal::Reason reason) {
  switch (reason) {
    case Refusal::Reason::unknownClass:
      return KARTIX_UNKNOWN_CLASS;
    case Refusal::Reason::unknownMember:
      return KARTIX_UNKNOWN_MEMBER;
    case Refusal::Reason::wrongCount:
      return KARTIX_WRONG_COUNT;
    case Refusal::Reason::wrongType:
      return KARTIX_WRONG_TYPE;
    case Refusal::Reason::outOfRange:
      return KARTIX_OUT_OF_RANGE;
  }
  return KARTIX_FAILED;
}

std::int32_t failed(std::int32_t code, std::string_view text) noexcept {
  setErrorText(text);
  return code;
}

/// Runs `action`, out of which nothing may be thrown: a failure becomes a code and its words.
template <class Action>
std::int32_t answered(Action action) noexcept {
  try {
    setErrorText({});
    action();
    return KARTIX_OK;
  } catch (const Failure& failure) {
    return failed(failure.code(), failure.what());
  } catch (const Refusal& refusal) {
    return failed(codeOf(refusal.reason()), refusal.what());
  } catch (const std::bad_alloc&) {
    return failed(KARTIX_NO_MEMORY, "no memory");
  } catch (const std::exception& error) {
    return failed(KARTIX_FAILED, error.what());
  } catch (...) {
    return failed(KARTIX_FAILED, "unknown failure");
  }
}

template <class T>
T& needed(T* pointer, const char* what) {
  if (!pointer) throw Failure(KARTIX_NULL_POINTER, std::string(what) + " is NULL");
  return *pointer;
}

/// The caller's arguments as the component knows them.
std::vector<platform::Value> received(const kartix_value* arguments, std::int32_t count) {
  if (count < 0) throw Failure(KARTIX_WRONG_COUNT, "a negative number of arguments");
  if (count > 0) needed(arguments, "arguments");
  std::vector<platform::Value> values;
  values.reserve(static_cast<std::size_t>(count));
  for (std::int32_t i = 0; i < count; ++i) {
    values.push_back(fromC(arguments[i], "argument " + std::to_string(i + 1)));
  }
  return values;
}

/// Makes `call` with the caller's arguments; gives out its result and what it wrote into them.
template <class Call>
void passed(kartix_object number, kartix_value* arguments, std::int32_t count, kartix_value* result, Call call) {
  const auto held = Objects::ofProcess().find(number);
  auto values = received(arguments, count);
  const std::vector<platform::Value> before = values;
  platform::Value outcome = call(held->object, std::span(values));
  held->written = std::move(values);
  held->result = std::move(outcome);
  std::string place;
  for (std::size_t i = 0; i < before.size(); ++i) {
    if (held->written[i] != before[i]) arguments[i] = toC(held->written[i], place);
  }
  if (result) *result = toC(held->result, place);
}

}  // namespace
}  // namespace kartix::automation

using namespace kartix::automation;

const char* kartix_error_text() { return errorText(); }

int32_t kartix_create(const char* class_name, kartix_object* object) {
  return answered([&] {
    auto& created = needed(object, "object");
    created = Objects::ofProcess().create(textFrom(class_name, "the name of the class"));
  });
}

int32_t kartix_release(kartix_object object) {
  return answered([&] { Objects::ofProcess().release(object); });
}

int32_t kartix_call(kartix_object object, const char* member, kartix_value* arguments, int32_t count,
                    kartix_value* result) {
  return answered([&] {
    const auto name = textFrom(member, "the name of the member");
    passed(object, arguments, count, result, [&](auto& called, auto values) { return called.call(name, values); });
  });
}

int32_t kartix_call_slot(kartix_object object, int32_t slot, kartix_value* arguments, int32_t count,
                         kartix_value* result) {
  return answered([&] {
    passed(object, arguments, count, result,
           [&](auto& called, auto values) { return called.callSlot(slot, values); });
  });
}

int32_t kartix_get(kartix_object object, const char* member, kartix_value* result) {
  return answered([&] {
    const auto name = textFrom(member, "the name of the member");
    passed(object, nullptr, 0, &needed(result, "result"), [&](auto& called, auto) { return called.get(name); });
  });
}

int32_t kartix_let(kartix_object object, const char* member, kartix_value value) {
  return answered([&] {
    const auto name = textFrom(member, "the name of the member");
    passed(object, &value, 1, nullptr, [&](auto& called, auto values) {
      called.let(name, values.front());
      return kartix::platform::Value();
    });
  });
}

int32_t kartix_describe(const char* class_name, int32_t slot, kartix_member* member) {
  return answered([&] { needed(member, "member") = describe(textFrom(class_name, "the name of the class"), slot); });
}

int32_t kartix_class_name(int32_t index, const char** class_name) {
  return answered([&] { needed(class_name, "class_name") = className(index); });
}

int32_t kartix_register_class(const char* class_name, const kartix_host_class* host_class) {
  return answered([&] { registerClass(textFrom(class_name, "the name of the class"), host_class); });
}

int32_t kartix_use_gateway_objects() {
  return answered([] { kartix::useGatewayObjects(); });
}

int32_t kartix_image_file(const char* name, const char** path) {
  return answered([&] {
    thread_local std::string kept;
    needed(path, "path");
    kept = kartix::imageFile(std::string(textFrom(name, "the name of the file")));
    *path = kept.c_str();
  });
}

int32_t kartix_use_settings(const kartix_settings* settings) {
  return answered([&] {
    const kartix_settings own = needed(settings, "settings");
    if (!own.read) throw Failure(KARTIX_NULL_POINTER, "read is NULL");
    const auto read = [own](const std::string& name) -> std::optional<std::string> {
      const char* const value = own.read(own.context, name.c_str());
      return value ? std::optional<std::string>(value) : std::nullopt;
    };
    const auto write = [own](const std::string& name, const std::string& value) {
      return own.write && own.write(own.context, name.c_str(), value.c_str()) == 0;
    };
    if (!kartix::useSettings(read, write)) throw Failure(KARTIX_TOO_LATE, "the component is in use already");
  });
}

int32_t kartix_last_error(int32_t* number, const char** text) {
  return answered([&] {
    thread_local std::string kept;
    auto& where = needed(number, "number");
    needed(text, "text");
    kartix::LastError last = kartix::lastError();
    kept = std::move(last.text);
    where = last.number;
    *text = kept.c_str();
  });
}

int32_t kartix_use_test_clerk(const char* script, const char* transcript, const char* now) {
  return answered([&] {
    const auto given = [](const char* text, const char* what) {
      return text ? std::string(textFrom(text, what)) : std::string();
    };
    const kartix::TestClerk clerk = {given(script, "script"), given(transcript, "transcript"), given(now, "now")};
    if (kartix::useTestClerk(clerk)) return;
    const std::string reason = kartix::testClerkMismatch();
    throw Failure(KARTIX_FAILED, reason.empty() ? "a window is open" : reason);
  });
}

int32_t kartix_test_clerk_mismatch(const char** text) {
  return answered([&] {
    thread_local std::string kept;
    needed(text, "text");
    kept = kartix::testClerkMismatch();
    *text = kept.c_str();
  });
}
