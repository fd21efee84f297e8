#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <malloc.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <set>
#include <vector>

#include "automation/Surroundings.h"

/// Of the sanitizers' allocator; their header is not there with every compiler.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();

namespace kartix::test {
namespace {

using testing::HasSubstr;

/// An object of one of the four classes.
class Object {
 public:
  explicit Object(const char* name) { EXPECT_EQ(kartix_create(name, &number), KARTIX_OK) << kartix_error_text(); }
  ~Object() { EXPECT_EQ(kartix_release(number), KARTIX_OK); }
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  kartix_value call(const char* member, std::vector<kartix_value> arguments) {
    kartix_value result = kartix_empty();
    const auto count = static_cast<std::int32_t>(arguments.size());
    EXPECT_EQ(kartix_call(number, member, arguments.data(), count, &result), KARTIX_OK) << kartix_error_text();
    return result;
  }
  std::int64_t integer(const char* member, std::vector<kartix_value> arguments) {
    const kartix_value result = call(member, std::move(arguments));
    EXPECT_EQ(result.type, KARTIX_INTEGER) << member;
    return result.as.integer;
  }
  std::string get(const char* member) {
    kartix_value result = kartix_empty();
    EXPECT_EQ(kartix_get(number, member, &result), KARTIX_OK) << kartix_error_text();
    EXPECT_EQ(result.type, KARTIX_TEXT) << member;
    return result.type == KARTIX_TEXT ? result.as.text : "";
  }

  kartix_object number = 0;
};

std::string lastError(std::int32_t& number) {
  const char* text = nullptr;
  EXPECT_EQ(kartix_last_error(&number, &text), KARTIX_OK);
  return text;
}

class CInterface : public testing::Test {
 protected:
  CInterface() {
    host.play("[]");
    host.answers.clear();
  }

  Surroundings& host = Surroundings::ofProcess();
};

TEST_F(CInterface, DescribesFourClassesWhoseNamesDifferInMoreThanCase) {
  const char* className = nullptr;
  std::int32_t classes = 0;
  for (; kartix_class_name(classes, &className) == KARTIX_OK; ++classes) {
    std::set<std::pair<std::string, std::int32_t>> names;
    kartix_member member;
    std::int32_t slot = 1;
    for (; kartix_describe(className, slot, &member) == KARTIX_OK; ++slot) {
      std::string lower;
      for (const char* c = member.name; *c != 0; ++c) lower += static_cast<char>(std::tolower(*c));
      // Hosts with automation of their own tell names apart without regard to case.
      EXPECT_TRUE(names.emplace(lower, member.kind).second) << member.name;
    }
    Object object(className);
    EXPECT_EQ(kartix_call_slot(object.number, slot, nullptr, 0, nullptr), KARTIX_UNKNOWN_MEMBER);
    EXPECT_THAT(kartix_error_text(), HasSubstr(std::string(className) + " has no slot " + std::to_string(slot)));
  }
  EXPECT_EQ(classes, 4);
}

TEST_F(CInterface, TellsWhatIsWrongWithACall) {
  Object kartix("Kartix");
  Object database("DBETXTDatabase");
  Object person("CPersonalien");
  const auto calling = [](const Object& object, const char* member, std::vector<kartix_value> given) {
    return kartix_call(object.number, member, given.data(), static_cast<std::int32_t>(given.size()), nullptr);
  };
  kartix_object released = 0;
  ASSERT_EQ(kartix_create("CPersonalien", &released), KARTIX_OK);
  ASSERT_EQ(kartix_release(released), KARTIX_OK);
  kartix_value value = kartix_text("1");
  const char* text = nullptr;
  const kartix_host_class noCall{};
  const kartix_settings noRead{};
  const struct {
    std::int32_t code;
    std::int32_t expected;
  } calls[] = {
      {kartix_create("Kartiks", &released), KARTIX_UNKNOWN_CLASS},
      {kartix_create(nullptr, &released), KARTIX_NULL_POINTER},
      {kartix_create("Kartix", nullptr), KARTIX_NULL_POINTER},
      {kartix_create("\xFF", &released), KARTIX_INVALID_TEXT},
      {kartix_release(0), KARTIX_UNKNOWN_OBJECT},
      {kartix_release(released), KARTIX_UNKNOWN_OBJECT},
      {kartix_get(released, "familienname", &value), KARTIX_UNKNOWN_OBJECT},
      {kartix_get(kartix.number, "Kartennr", &value), KARTIX_UNKNOWN_MEMBER},
      {kartix_get(kartix.number, "init", &value), KARTIX_UNKNOWN_MEMBER},
      {kartix_get(database.number, "Datafield", &value), KARTIX_WRONG_COUNT},
      {kartix_get(kartix.number, "kartennr", nullptr), KARTIX_NULL_POINTER},
      {kartix_let(kartix.number, "kartennr", value), KARTIX_UNKNOWN_MEMBER},
      {kartix_call(kartix.number, nullptr, nullptr, 0, nullptr), KARTIX_NULL_POINTER},
      {kartix_call(kartix.number, "ZKRAnfrage", nullptr, 1, nullptr), KARTIX_NULL_POINTER},
      {kartix_call(kartix.number, "ZKRAnfrage", &value, -1, nullptr), KARTIX_WRONG_COUNT},
      {kartix_call_slot(kartix.number, 0, nullptr, 0, nullptr), KARTIX_UNKNOWN_MEMBER},
      {kartix_describe("Kartix", 1, nullptr), KARTIX_NULL_POINTER},
      {kartix_class_name(-1, &text), KARTIX_UNKNOWN_CLASS},
      {kartix_register_class(nullptr, nullptr), KARTIX_NULL_POINTER},
      {kartix_register_class("Eigene.Klasse", &noCall), KARTIX_NULL_POINTER},
      {kartix_use_settings(nullptr), KARTIX_NULL_POINTER},
      {kartix_use_settings(&noRead), KARTIX_NULL_POINTER},
      {calling(kartix, "ZKRAnfrage", {}), KARTIX_WRONG_COUNT},
      {calling(kartix, "ZKRAnfrage", {value, value}), KARTIX_WRONG_COUNT},
      {calling(kartix, "ZKRAnfrage", {kartix_integer(1)}), KARTIX_WRONG_TYPE},
      {calling(kartix, "ZKRAnfrage", {kartix_empty()}), KARTIX_WRONG_TYPE},
      {calling(kartix, "ZKRAnfrage", {{17, {}}}), KARTIX_WRONG_TYPE},
      {calling(kartix, "ZKRAnfrage", {kartix_text("\xC3")}), KARTIX_INVALID_TEXT},
      {calling(kartix, "ZKRAnfrage", {kartix_text(nullptr)}), KARTIX_NULL_POINTER},
      {calling(database, "Datafield", {kartix_integer(std::int64_t{1} << 15)}), KARTIX_OUT_OF_RANGE},
      {calling(database, "Datafield", {kartix_text("1")}), KARTIX_WRONG_TYPE},
      {kartix_let(person.number, "anrede", kartix_integer(1)), KARTIX_WRONG_TYPE},
      {kartix_let(person.number, "anrede", kartix_text("1")), KARTIX_OK},
      {kartix_last_error(nullptr, &text), KARTIX_NULL_POINTER},
  };
  for (const auto& call : calls) EXPECT_EQ(call.code, call.expected) << "call " << &call - calls;
  EXPECT_STREQ(kartix_error_text(), "number is NULL");
  EXPECT_EQ(person.get("argoanrede"), "Herr");
  // A text that is longer than what is kept of it ends between two characters.
  std::string longName = "x" + std::string(300, '?');
  for (int i = 0; i < 200; ++i) longName += "ü";
  EXPECT_EQ(kartix_get(kartix.number, longName.c_str(), &value), KARTIX_UNKNOWN_MEMBER);
  EXPECT_THAT(kartix_error_text(), testing::EndsWith("ü"));
}

TEST_F(CInterface, TellsTheLastMessageOfAnOperation) {
  host.answers = {{"!DoAnfrage", "Dienst antwortet nicht"}};
  host.play(R"([{"window": "StartForm", "click": "Button[0]"}])");
  Object kartix("Kartix");
  std::int32_t number = -1;
  kartix.call("init", {kartix_text("Meier"), kartix_text("4711")});
  EXPECT_EQ(lastError(number), "");
  EXPECT_EQ(number, 0);
  EXPECT_EQ(kartix.integer("ZKRAnfrage", {kartix_text("1")}), -1);
  EXPECT_THAT(lastError(number), HasSubstr("Dienst antwortet nicht"));
  EXPECT_EQ(number, 2022);
  kartix.call("init", {kartix_text("Meier"), kartix_text("4711")});
  EXPECT_EQ(lastError(number), "");
}

std::size_t heapInUse() {
#if defined(__SANITIZE_ADDRESS__)
  return __sanitizer_get_current_allocated_bytes();
#else
  return mallinfo2().uordblks;
#endif
}

std::ptrdiff_t openDescriptors() { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); }

TEST_F(CInterface, NeedsNoMoreMemoryAndDescriptorsForMoreOperations) {
  constexpr int warmUp = 20;
  const char* const wanted = std::getenv("KARTIX_TEST_OPERATIONS");
  const int operations = wanted ? std::atoi(wanted) : 200;
  host.answers = {{"DoAnfrage", "1"}, {"GetKartennummer", "DF000000000100"}};
  const auto carryOut = [&](int times) {
    for (int i = 0; i < times; ++i) {
      host.play(R"([{"window": "StartForm", "click": "Button[0]"}, {"window": "ZKR", "click": "Button[0]"}])");
      Object kartix("Kartix");
      kartix.call("init", {kartix_text("Meier"), kartix_text("4711")});
      ASSERT_EQ(kartix.integer("ZKRAnfrage", {kartix_text("1")}), 1) << i;
      ASSERT_EQ(kartix.get("kartennr"), "DF000000000100");
      ASSERT_EQ(host.objects, 0);
    }
  };
  carryOut(warmUp);
  const std::size_t memory = heapInUse();
  const auto descriptors = openDescriptors();
  carryOut(operations);
  EXPECT_LT(heapInUse(), memory + 20 * operations) << "bytes that stay, after " << operations << " operations";
  EXPECT_EQ(openDescriptors(), descriptors);
}

}  // namespace
}  // namespace kartix::test
