#include "automation/Surroundings.h"

#include <gtest/gtest.h>

#include <array>

#include "adapters/script/Scripted.h"
#include "adapters/sqlite/HostDatabase.h"
#include "component/Component.h"

namespace kartix::test {
namespace {

Surroundings& from(void* context) { return *static_cast<Surroundings*>(context); }

const char* read(void* context, const char* name) {
  const auto found = from(context).settings.find(name);
  return found == from(context).settings.end() ? nullptr : found->second.c_str();
}

std::int32_t write(void* context, const char* name, const char* value) {
  from(context).settings[name] = value;
  return 0;
}

void* create(void* context) {
  ++from(context).objects;
  return context;
}

std::int32_t call(void* object, const char* member, const kartix_value*, std::int32_t, kartix_value* result) {
  const auto& answers = from(object).answers;
  const auto failure = answers.find("!" + std::string(member));
  const auto answer = failure == answers.end() ? answers.find(member) : failure;
  *result = kartix_text(answer == answers.end() ? "" : answer->second.c_str());
  return failure == answers.end() ? 0 : 1;
}

void release(void* object) { --from(object).objects; }

}  // namespace

Surroundings& Surroundings::ofProcess() {
  static Surroundings surroundings;
  return surroundings;
}

Surroundings::Surroundings() : clerk_(adapters::makeScriptUserInterface(script_, nullptr)) {
  settings["FS.DBName"] = directory / "host.db";
  settings["ZKR.KENZA"] = "15003";
  adapters::createHostDatabase(settings["FS.DBName"]);
  const kartix_settings store{this, read, write};
  EXPECT_EQ(kartix_use_settings(&store), KARTIX_OK);
  EXPECT_TRUE(Component::prepareShared([this](Setup& setup) { setup.userInterface = clerk_.get(); }));
  const kartix_host_class inquiry{this, create, call, release};
  EXPECT_EQ(kartix_register_class("TSW.Schnittstellen.KBA.ZKR.ARGO2006Anfrage", &inquiry), KARTIX_OK);
  execute("insert into personalien (personennummer, familienname) values (4711, 'Großmann')");
  execute("insert into fahrerkarte (personennummer, lfdnr) values (4711, '1')");
}

void Surroundings::execute(const std::string& statement) {
  kartix_object database = 0;
  kartix_value result = kartix_empty();
  std::array<kartix_value, 7> login{};
  login.fill(kartix_text(""));
  login[4] = kartix_text(settings["FS.DBName"].c_str());
  std::array<kartix_value, 2> arguments = {kartix_text(statement.c_str()), kartix_boolean(1)};
  EXPECT_EQ(kartix_create("DBETXTDatabase", &database), KARTIX_OK);
  EXPECT_EQ(kartix_call(database, "init", login.data(), 7, nullptr), KARTIX_OK);
  EXPECT_EQ(kartix_call(database, "executeSQL", arguments.data(), 2, &result), KARTIX_OK);
  EXPECT_EQ(result.as.integer, 0) << statement;
  EXPECT_EQ(kartix_release(database), KARTIX_OK);
}

}  // namespace kartix::test
